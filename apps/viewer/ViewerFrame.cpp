#include "viewer/ViewerFrame.h"

#include "viewer/ViewerMenus.h"

#include "render/ChartInput.h"
#include "render/CsvReader.h"

#include <wx/config.h>
#include <wx/filedlg.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/panel.h>
#include <wx/sizer.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <exception>

namespace plotvane::viewer
{

namespace
{

enum
{
    ID_SAVE_CHART = wxID_HIGHEST + 1,
    ID_EXPORT_PNG,
    ID_ZOOM_FIT,
    ID_GRID,
    ID_DARK,
    ID_LIGHT,
    ID_LINE_1,
    ID_LINE_2,
    ID_LINE_3,
};

// The colour presets of "Chart.uis": 0 dark, 1 light.
constexpr int kDarkPreset = 0;
constexpr int kLightPreset = 1;

bool EndsWith(const std::string& s, const std::string& tail)
{
    return s.size() >= tail.size() &&
           std::equal(tail.rbegin(), tail.rend(), s.rbegin(),
                      [](char a, char b) { return std::tolower(a) == std::tolower(b); });
}

} // namespace

ViewerFrame::ViewerFrame(bool bBatch)
    : wxFrame(nullptr, wxID_ANY, "Plotvane Viewer", wxDefaultPosition, wxSize(900, 640)),
      m_bBatch(bBatch)
{
    InstallWxBackend();
    BuildMenus();
    m_pChartPanel = new wxPanel(this);
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(m_pChartPanel, 1, wxEXPAND);
    SetSizer(sizer);
    Layout();
    Show();
    // The chart dialog follows the panel; it lays out its view and status
    // bar itself.
    CreateDialogIn(m_manager.m_ChartDlg, m_host, m_pChartPanel);
    m_pChartPanel->Bind(wxEVT_SIZE, [this](wxSizeEvent& e) {
        e.Skip();
        if (m_manager.m_ChartDlg.GetSafeHwnd() != nullptr)
        {
            const wxSize s = m_pChartPanel->GetClientSize();
            m_manager.m_ChartDlg.MoveWindow(0, 0, s.x, s.y);
        }
    });
    m_env.LoadEnvironmentFIle();
    ApplyLook();
    Bind(wxEVT_CLOSE_WINDOW, &ViewerFrame::OnClose, this);
}

ViewerFrame::~ViewerFrame()
{
    m_manager.m_ChartDlg.DestroyWindow();
    InstallWxBackend().DetachWindow(m_host);
}

void ViewerFrame::BuildMenus()
{
    auto* file = new wxMenu;
    file->Append(wxID_OPEN, "&Open...\tCtrl+O", "Open a CSV file or a chart archive (.pvc)");
    auto* recent = new wxMenu;
    file->AppendSubMenu(recent, "Open &Recent");
    m_history.UseMenu(recent);
    wxConfig config("plotvane-viewer");
    m_history.Load(config);
    file->Append(ID_SAVE_CHART, "&Save Chart...\tCtrl+S", "Save the chart archive (.pvc)");
    file->Append(ID_EXPORT_PNG, "&Export PNG...\tCtrl+E", "Write the chart as a PNG picture");
    file->AppendSeparator();
    file->Append(wxID_EXIT, "E&xit\tCtrl+Q");

    auto* view = new wxMenu;
    view->Append(ID_ZOOM_FIT, "&Zoom to Fit\tAlt+1");
    view->AppendCheckItem(ID_GRID, "&Grid Lines");
    view->AppendSeparator();
    view->AppendRadioItem(ID_DARK, "&Dark Colours");
    view->AppendRadioItem(ID_LIGHT, "&Light Colours");
    view->AppendSeparator();
    view->AppendRadioItem(ID_LINE_1, "Line Width &1");
    view->AppendRadioItem(ID_LINE_2, "Line Width &2");
    view->AppendRadioItem(ID_LINE_3, "Line Width &3");

    auto* help = new wxMenu;
    help->Append(wxID_ABOUT, "&About");

    auto* bar = new wxMenuBar;
    bar->Append(file, "&File");
    bar->Append(view, "&View");
    AddInteractionMenus(*this, *bar);
    AddDialogMenus(*this, *bar);
    AddMeasureMenu(*this, *bar);
    bar->Append(help, "&Help");
    SetMenuBar(bar);

    Bind(wxEVT_MENU, &ViewerFrame::OnOpen, this, wxID_OPEN);
    Bind(wxEVT_MENU, &ViewerFrame::OnSaveChart, this, ID_SAVE_CHART);
    Bind(wxEVT_MENU, &ViewerFrame::OnExportPng, this, ID_EXPORT_PNG);
    Bind(wxEVT_MENU, [this](wxCommandEvent&) { Close(); }, wxID_EXIT);
    Bind(wxEVT_MENU, &ViewerFrame::OnRecent, this, wxID_FILE1, wxID_FILE9);
    Bind(wxEVT_MENU, &ViewerFrame::OnZoomFit, this, ID_ZOOM_FIT);
    Bind(wxEVT_MENU, &ViewerFrame::OnGrid, this, ID_GRID);
    Bind(wxEVT_MENU, &ViewerFrame::OnColours, this, ID_DARK, ID_LIGHT);
    Bind(wxEVT_MENU, &ViewerFrame::OnLineWidth, this, ID_LINE_1, ID_LINE_3);
    Bind(wxEVT_MENU, &ViewerFrame::OnAbout, this, wxID_ABOUT);
}

void ViewerFrame::Tell(const wxString& text)
{
    m_messages.push_back(text.utf8_string());
    if (m_bBatch)
        std::fprintf(stderr, "plotvane-viewer: %s\n", text.utf8_str().data());
    else
        wxMessageBox(text, "Plotvane Viewer", wxOK | wxICON_ERROR, this);
}

bool ViewerFrame::OpenFile(const std::string& path)
{
    // A file is read whole before the chart changes, so that a bad file
    // leaves the chart shown as it was.
    try
    {
        if (EndsWith(path, ".pvc"))
        {
            CPlotvane_Manager probe;
            LoadChartFile(probe, path);
            m_manager.RemoveAllData();
            LoadChartFile(m_manager, path);
        }
        else
        {
            const CsvTable table = ReadCsvFile(path);
            m_manager.RemoveAllData();
            for (size_t i = 0; i < table.series.size(); ++i)
                AddSeriesToChart(m_manager, table.series[i],
                                 CurveColor(int(i), m_env.GetCurColorIndex() == kLightPreset));
            if (!table.xName.empty())
                m_manager.SetAxisXName(CString(table.xName));
        }
    }
    catch (const std::exception& e)
    {
        Tell(wxString::Format("Cannot open %s:\n%s", wxString::FromUTF8(path),
                              wxString::FromUTF8(e.what())));
        return false;
    }
    m_manager.SetChartDrawFit();
    SetTitle("Plotvane Viewer - " + wxString::FromUTF8(FileStem(path)));
    m_history.AddFileToHistory(wxString::FromUTF8(path));
    Redraw();
    return true;
}

bool ViewerFrame::SaveChart(const std::string& path)
{
    try
    {
        SaveChartFile(m_manager, path);
    }
    catch (const std::exception& e)
    {
        Tell(wxString::Format("Cannot save %s:\n%s", wxString::FromUTF8(path),
                              wxString::FromUTF8(e.what())));
        return false;
    }
    return true;
}

bool ViewerFrame::ExportPng(const std::string& path)
{
    Redraw();
    if (!SaveChartImage(m_manager, CString(path)))
    {
        Tell(wxString::Format("Cannot write %s", wxString::FromUTF8(path)));
        return false;
    }
    return true;
}

void ViewerFrame::Redraw()
{
    m_manager.RedrawGLChartView();
}

void ViewerFrame::ApplyLook()
{
    m_manager.SetChartEnvironment(&m_env);
    wxMenuBar* bar = GetMenuBar();
    bar->Check(m_env.GetCurColorIndex() == kLightPreset ? ID_LIGHT : ID_DARK, true);
    bar->Check(ID_GRID, m_env.GetGridLine() != 0);
    const int width = std::max(1, std::min(3, m_env.GetLineWidth()));
    bar->Check(ID_LINE_1 + width - 1, true);
}

void ViewerFrame::OnOpen(wxCommandEvent&)
{
    wxFileDialog dlg(this, "Open", "", "",
                     "Charts and data (*.pvc;*.csv;*.txt)|*.pvc;*.csv;*.txt|All files|*",
                     wxFD_OPEN | wxFD_FILE_MUST_EXIST);
    if (dlg.ShowModal() == wxID_OK)
        OpenFile(dlg.GetPath().utf8_string());
}

void ViewerFrame::OnSaveChart(wxCommandEvent&)
{
    wxFileDialog dlg(this, "Save Chart", "", "chart.pvc", "Chart archives (*.pvc)|*.pvc",
                     wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    if (dlg.ShowModal() == wxID_OK)
        SaveChart(dlg.GetPath().utf8_string());
}

void ViewerFrame::OnExportPng(wxCommandEvent&)
{
    wxFileDialog dlg(this, "Export PNG", "", "chart.png", "PNG pictures (*.png)|*.png",
                     wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    if (dlg.ShowModal() == wxID_OK)
        ExportPng(dlg.GetPath().utf8_string());
}

void ViewerFrame::OnRecent(wxCommandEvent& e)
{
    OpenFile(m_history.GetHistoryFile(size_t(e.GetId() - wxID_FILE1)).utf8_string());
}

void ViewerFrame::OnZoomFit(wxCommandEvent&)
{
    m_manager.ViewZoomfit();
    Redraw();
}

void ViewerFrame::OnGrid(wxCommandEvent&)
{
    m_env.SetGridLine(m_env.GetGridLine() != 0 ? 0 : 1);
    m_env.SaveEnvironmentFIle();
    ApplyLook();
}

void ViewerFrame::OnColours(wxCommandEvent& e)
{
    m_env.SetCurColorIndex(e.GetId() == ID_LIGHT ? kLightPreset : kDarkPreset);
    m_env.SaveEnvironmentFIle();
    ApplyLook();
}

void ViewerFrame::OnLineWidth(wxCommandEvent& e)
{
    m_env.SetLineWidth(e.GetId() - ID_LINE_1 + 1);
    m_env.SaveEnvironmentFIle();
    ApplyLook();
}

void ViewerFrame::OnAbout(wxCommandEvent&)
{
    wxMessageBox("Plotvane Viewer\nXY charts of waveforms, drawn with OpenGL.\n\n"
                 "Right-drag pans, the wheel zooms, a right click offers Zoom All.",
                 "About", wxOK | wxICON_INFORMATION, this);
}

void ViewerFrame::OnClose(wxCloseEvent& e)
{
    wxConfig config("plotvane-viewer");
    m_history.Save(config);
    e.Skip();
}

} // namespace plotvane::viewer
