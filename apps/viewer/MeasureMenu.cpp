#include "viewer/ViewerMenus.h"

#include "viewer/ViewerFrame.h"

#include <wx/menu.h>
#include <wx/msgdlg.h>

namespace plotvane::viewer
{

namespace
{

void ShowEyeMargins(ViewerFrame& frame)
{
    // The overlay draws itself whenever the chart holds DQ/DQS sets, and
    // leaves its margins in the DQ set.
    frame.Redraw();
    wxString text;
    CPlotvane_InputData& data = frame.Manager().m_InputData;
    for (int i = 0; i < int(data.GetDataSetSize()); ++i)
    {
        const CChartPointDArray* set = data.GetChartPointDArray(i);
        if (set->m_dSetupMargin != 0.0 || set->m_dHoldMargin != 0.0)
            text += wxString::Format("%s: setup %.0f ps, hold %.0f ps\n",
                                     wxString::FromUTF8(set->m_strName.GetString()),
                                     set->m_dSetupMargin, set->m_dHoldMargin);
    }
    if (text.empty())
        text = "The chart holds no measured DQ/DQS sets.\nOpen a chart written by "
               "plotvane-render --demo ddr-write --save-chart, for example.";
    wxMessageBox(text, "DDR Eye Margins", wxOK | wxICON_INFORMATION, &frame);
}

} // namespace

void AddMeasureMenu(ViewerFrame& frame, wxMenuBar& bar)
{
    auto* measure = new wxMenu;
    wxMenuItem* eye = measure->Append(wxID_ANY, "&DDR Eye Margins",
                                      "Setup and hold margins of the DQ/DQS sets");
    frame.Bind(wxEVT_MENU, [&frame](wxCommandEvent&) { ShowEyeMargins(frame); }, eye->GetId());
    bar.Append(measure, "&Measure");
}

} // namespace plotvane::viewer
