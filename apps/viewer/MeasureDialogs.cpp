#include "viewer/MeasureDialogs.h"

#include <plotvane/plotvane.h>

#include <wx/button.h>
#include <wx/choice.h>
#include <wx/msgdlg.h>
#include <wx/sizer.h>
#include <wx/stattext.h>
#include <wx/textctrl.h>
#include <wx/tokenzr.h>

#include <cmath>

namespace plotvane::viewer
{

namespace
{
bool ParseNumber(const wxString& text, double& v)
{
    return text.Strip(wxString::both).ToCDouble(&v) && std::isfinite(v);
}
} // namespace

ParamDialog::ParamDialog(wxWindow* parent, const wxString& title, const wxString& intro)
    : wxDialog(parent, wxID_ANY, title), m_pGrid(new wxFlexGridSizer(2, 6, 10))
{
    m_pGrid->AddGrowableCol(1);
    auto* top = new wxBoxSizer(wxVERTICAL);
    if (!intro.empty())
        top->Add(new wxStaticText(this, wxID_ANY, intro), 0, wxALL, 10);
    top->Add(m_pGrid, 1, wxEXPAND | wxLEFT | wxRIGHT, 10);
    top->Add(CreateStdDialogButtonSizer(wxOK | wxCANCEL), 0, wxEXPAND | wxALL, 10);
    SetSizer(top);
    Bind(wxEVT_BUTTON, &ParamDialog::OnOk, this, wxID_OK);
}

int ParamDialog::Add(const wxString& label, wxControl* control, bool bNumber)
{
    control->SetName(label);
    m_pGrid->Add(new wxStaticText(this, wxID_ANY, label), 0, wxALIGN_CENTER_VERTICAL);
    m_pGrid->Add(control, 1, wxEXPAND);
    m_fields.push_back(control);
    m_bNumber.push_back(bNumber);
    return int(m_fields.size()) - 1;
}

int ParamDialog::AddNumber(const wxString& label, double value)
{
    return Add(label, new wxTextCtrl(this, wxID_ANY, wxString::FromCDouble(value)), true);
}

int ParamDialog::AddText(const wxString& label, const wxString& value)
{
    auto* text = new wxTextCtrl(this, wxID_ANY, value, wxDefaultPosition, wxSize(320, -1));
    return Add(label, text, false);
}

int ParamDialog::AddChoice(const wxString& label, const wxArrayString& items, int selection)
{
    auto* choice = new wxChoice(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, items);
    choice->SetSelection(selection);
    return Add(label, choice, false);
}

bool ParamDialog::Ask()
{
    GetSizer()->SetSizeHints(this);
    CentreOnParent();
    return ShowModal() == wxID_OK;
}

void ParamDialog::OnOk(wxCommandEvent& e)
{
    for (std::size_t i = 0; i < m_fields.size(); ++i)
    {
        double v = 0.0;
        if (m_bNumber[i] && !ParseNumber(Text(int(i)), v))
        {
            wxMessageBox(m_fields[i]->GetName() + " needs a number, such as 1.2 or 25e-12.",
                         GetTitle(), wxOK | wxICON_WARNING, this);
            m_fields[i]->SetFocus();
            return;
        }
    }
    e.Skip(); // the dialog's own handler ends it
}

double ParamDialog::Number(int field) const
{
    double v = 0.0;
    ParseNumber(Text(field), v);
    return v;
}

wxString ParamDialog::Text(int field) const
{
    return static_cast<wxTextCtrl*>(m_fields[std::size_t(field)])->GetValue();
}

int ParamDialog::Choice(int field) const
{
    return static_cast<wxChoice*>(m_fields[std::size_t(field)])->GetSelection();
}

DrawnSets::DrawnSets(CPlotvane_Manager& mgr)
{
    CPlotvane_InputData& data = mgr.m_InputData;
    for (int i : data.m_DrawSet)
    {
        const CChartPointDArray* set = data.GetChartPointDArray(i);
        if (set == nullptr || set->GetSize() == 0)
            continue;
        index.push_back(i);
        const wxString name = wxString::FromUTF8(set->m_strName.GetString());
        names.Add(name.empty() ? wxString::Format("set %d", i + 1) : name);
    }
}

Extent ExtentOf(const CChartPointDArray& set)
{
    return {set.GetMinX(), set.GetMaxX(), set.GetMinY(), set.GetMaxY()};
}

double SettledLevel(const CChartPointDArray& set, bool bUpper)
{
    const Extent e = ExtentOf(set);
    const double mid = (e.y0 + e.y1) / 2;
    double sum = 0.0;
    int n = 0;
    for (INT_PTR i = 0; i < set.GetSize(); ++i)
    {
        const double y = set.GetPointY(i);
        if (bUpper ? y > mid : y < mid)
        {
            sum += y;
            ++n;
        }
    }
    return n > 0 ? sum / n : mid;
}

std::vector<std::vector<double>> ParseGroups(const wxString& text)
{
    std::vector<std::vector<double>> groups;
    wxStringTokenizer byGroup(text, ";", wxTOKEN_STRTOK);
    while (byGroup.HasMoreTokens())
    {
        std::vector<double> group;
        wxStringTokenizer byNumber(byGroup.GetNextToken(), ", \t", wxTOKEN_STRTOK);
        while (byNumber.HasMoreTokens())
        {
            double v = 0.0;
            if (!ParseNumber(byNumber.GetNextToken(), v))
                return {};
            group.push_back(v);
        }
        if (!group.empty())
            groups.push_back(group);
    }
    return groups;
}

} // namespace plotvane::viewer
