// What the Measure menu asks and reads: a small dialog of labelled fields,
// and the chart's drawn data sets to choose from.
#pragma once

#include <wx/arrstr.h>
#include <wx/dialog.h>

#include <vector>

class CChartPointDArray;
class CPlotvane_Manager;
class wxControl;
class wxFlexGridSizer;

namespace plotvane::viewer
{

// Numbers, texts and choices under one another, with OK and Cancel. Each
// field's control carries its label as its window name, so that a test can
// find and fill it as a user would.
class ParamDialog : public wxDialog
{
public:
    ParamDialog(wxWindow* parent, const wxString& title, const wxString& intro);

    // Each answers the field's number for the getters below.
    int AddNumber(const wxString& label, double value);
    int AddText(const wxString& label, const wxString& value);
    int AddChoice(const wxString& label, const wxArrayString& items, int selection);

    // Shows the dialog; true on OK. OK keeps it open while a number field
    // does not hold a finite number.
    bool Ask();
    double Number(int field) const;
    wxString Text(int field) const;
    int Choice(int field) const;

private:
    int Add(const wxString& label, wxControl* control, bool bNumber);
    void OnOk(wxCommandEvent& e);

    wxFlexGridSizer* m_pGrid;
    std::vector<wxControl*> m_fields;
    std::vector<bool> m_bNumber;
};

// The drawn data sets, in drawing order, with the names a choice shows.
struct DrawnSets
{
    std::vector<int> index;
    wxArrayString names;

    explicit DrawnSets(CPlotvane_Manager& mgr);
    std::size_t size() const { return index.size(); }
};

// Lowest and highest X and Y over a data set.
struct Extent
{
    double x0, x1, y0, y1;
};
Extent ExtentOf(const CChartPointDArray& set);

// The level a waveform settles at in the upper (or lower) half of its
// swing: the mean of its samples there.
double SettledLevel(const CChartPointDArray& set, bool bUpper);

// "1e-12, 1e-6" or "1 2; 3 4": the numbers of a text, groups split at ";".
// Empty when something in it is not a number.
std::vector<std::vector<double>> ParseGroups(const wxString& text);

} // namespace plotvane::viewer
