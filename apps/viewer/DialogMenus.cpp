// Data, Chart and Tools: the library's own dialogs on the chart shown. The
// data and axis dialogs stay open beside the chart (the axis dialog shows
// the mouse position over it) and are made afresh from the chart each time
// they are asked for; the appearance dialog is modal and writes
// "Chart.uis", which the chart then shows.
#include "viewer/ViewerMenus.h"

#include "viewer/ViewerFrame.h"

#include <plotvane/dialogs/GLPlotvane_Environment_Dlg.h>

#include <wx/menu.h>

#include <exception>

namespace plotvane::viewer
{

namespace
{

void ShowModeless(CDialog& dlg)
{
    if (dlg.GetSafeHwnd() != nullptr)
        dlg.DestroyWindow();
    if (dlg.Create(dlg.GetTemplateId()))
        dlg.ShowWindow(SW_SHOW);
}

void EditAppearance(ViewerFrame& frame)
{
    try
    {
        CGLPlotvane_Environment_Dlg dlg;
        if (dlg.DoModal() != IDOK)
            return;
        // A fresh object: a second load into the same one would add the
        // user's colour sets again.
        CGLPlotvane_Environment saved;
        saved.LoadEnvironmentFIle();
        frame.Environment() = saved;
    }
    catch (const std::exception& e)
    {
        frame.Tell(wxString::Format("Cannot read the appearance settings:\n%s",
                                    wxString::FromUTF8(e.what())));
        return;
    }
    frame.ApplyLook();
    frame.Redraw();
}

} // namespace

void AddDialogMenus(ViewerFrame& frame, wxMenuBar& bar)
{
    auto* data = new wxMenu;
    const int idData = data->Append(wxID_ANY, "&Edit Data Sets and Points...",
                                    "Type data sets and their points, choose the sets drawn")
                           ->GetId();
    auto* chart = new wxMenu;
    const int idAxes =
        chart->Append(wxID_ANY, "&Axes and Ranges...", "Axis names, ranges and grid intervals")
            ->GetId();
    auto* tools = new wxMenu;
    const int idLook =
        tools->Append(wxID_ANY, "&Appearance...", "Grid, line widths, font sizes and colour sets")
            ->GetId();
    bar.Append(data, "&Data");
    bar.Append(chart, "Ch&art"); // Alt+C is "Cursors"
    bar.Append(tools, "&Tools");

    CPlotvane_Manager& m = frame.Manager();
    frame.Bind(
        wxEVT_MENU, [&m](wxCommandEvent&) { ShowModeless(m.m_InputDataDlg); }, idData);
    frame.Bind(
        wxEVT_MENU, [&m](wxCommandEvent&) { ShowModeless(m.m_AttributeDlg); }, idAxes);
    frame.Bind(
        wxEVT_MENU, [&frame](wxCommandEvent&) { EditAppearance(frame); }, idLook);
    // The dialogs go before the frame that holds them.
    frame.Bind(wxEVT_CLOSE_WINDOW,
               [&m](wxCloseEvent& e)
               {
                   e.Skip();
                   m.m_InputDataDlg.DestroyWindow();
                   m.m_AttributeDlg.DestroyWindow();
               });
}

} // namespace plotvane::viewer
