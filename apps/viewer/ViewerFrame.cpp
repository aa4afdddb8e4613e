#include "viewer/ViewerFrame.h"

#include "viewer/CurrentPointFeed.h"
#include "viewer/ViewerMenus.h"

#include "render/Axes.h"
#include "render/ChartInput.h"
#include "render/Legend.h"
#include "render/Measure.h"
#include "render/Options.h"
#include "render/SignalInput.h"
#include "render/demos/OverlayHost.h"

#include <plotvane/io/CsvReader.h>
#include <plotvane/io/SignalFile.h>

#include <wx/choicdlg.h>
#include <wx/config.h>
#include <wx/dnd.h>
#include <wx/filedlg.h>
#include <wx/filename.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/numdlg.h>
#include <wx/panel.h>
#include <wx/sizer.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <exception>
#include <stdexcept>

namespace plotvane::viewer
{

namespace
{

enum
{
    ID_SAVE_CHART = wxID_HIGHEST + 1,
    ID_EXPORT_PNG,
    ID_EXPORT_PNG_SIZED,
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

// Files dropped on the window open as if chosen with File > Open.
class FileDrop : public wxFileDropTarget
{
public:
    explicit FileDrop(ViewerFrame& frame) : m_frame(frame) {}
    bool OnDropFiles(wxCoord, wxCoord, const wxArrayString& names) override
    {
        for (const wxString& name : names)
            m_frame.OpenFile(name.utf8_string());
        return true;
    }

private:
    ViewerFrame& m_frame;
};

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
    // The panel first: some menus listen to the chart it hosts.
    m_pChartPanel = new wxPanel(this);
    BuildMenus();
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(m_pChartPanel, 1, wxEXPAND);
    SetSizer(sizer);
    Layout();
    Show();
    // The chart dialog follows the panel; it lays out its view and status
    // bar itself.
    CreateDialogIn(m_manager.m_ChartDlg, m_host, m_pChartPanel);
    // The view tells its host about zooms.
    m_manager.m_pParentWnd = &m_host;
    // The axis dialog's "Current Point" follows the mouse over the chart.
    m_pointFeed = std::make_unique<CurrentPointFeed>(m_manager);
    // A zoom may leave the grid too coarse or too fine; the view has drawn
    // already when it says so.
    m_pChartPanel->Bind(EVT_PLOTVANE_MESSAGE, [this](WxMessageEvent& e) {
        e.Skip();
        if (e.message == 2527 && RefineGrid())
            CallAfter([this] { m_manager.RedrawGLChartView(); });
    });
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
    SetDropTarget(new FileDrop(*this));
}

ViewerFrame::~ViewerFrame()
{
    m_manager.m_pParentWnd = nullptr;
    m_manager.m_ChartDlg.DestroyWindow();
    InstallWxBackend().DetachWindow(m_host);
}

void ViewerFrame::BuildMenus()
{
    auto* file = new wxMenu;
    file->Append(wxID_OPEN, "&Open...\tCtrl+O", "Open a CSV, ngspice raw or Touchstone file, or a chart archive (.pvc)");
    auto* recent = new wxMenu;
    file->AppendSubMenu(recent, "Open &Recent");
    m_history.UseMenu(recent);
    wxConfig config("plotvane-viewer");
    m_history.Load(config);
    file->Append(ID_SAVE_CHART, "&Save Chart...\tCtrl+S", "Save the chart archive (.pvc)");
    file->Append(ID_EXPORT_PNG, "&Export PNG...\tCtrl+E", "Write the chart as a PNG picture");
    file->Append(ID_EXPORT_PNG_SIZED, "Export PNG at &Size...",
                 "Write the chart as a PNG picture of a chosen size");
    file->AppendSeparator();
    file->Append(wxID_EXIT, "E&xit\tCtrl+Q");

    auto* view = new wxMenu;
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
    Bind(wxEVT_MENU, &ViewerFrame::OnExportPngSized, this, ID_EXPORT_PNG_SIZED);
    Bind(wxEVT_MENU, [this](wxCommandEvent&) { Close(); }, wxID_EXIT);
    Bind(wxEVT_MENU, &ViewerFrame::OnRecent, this, wxID_FILE1, wxID_FILE9);
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
            ClearMarks();
            LoadChartFile(m_manager, path);
            // The eye overlay's summary stands near the top of the view: a
            // chart with eyes gets the wide fit, which keeps the upper rail
            // below it.
            m_manager.m_InputData.m_bFitMarginTight = EyeReferenceLevels(m_manager).empty() ? 1 : 0;
        }
        else
        {
            m_manager.m_InputData.m_bFitMarginTight = 1;
            OpenDataFile(path);
        }
    }
    catch (const std::exception& e)
    {
        Tell(wxString::Format("Cannot open %s:\n%s", wxString::FromUTF8(path),
                              wxString::FromUTF8(e.what())));
        return false;
    }
    if (EndsWith(path, ".pvc"))
    {
        m_manager.SetChartDrawFit();
        KeepLastXValueWhole(m_manager, m_manager.GetDefaultFontSize());
        // An archive keeps no texts: the legend is made anew.
        AddLegend(m_manager, m_manager.GetDefaultFontSize(), HasEyeSummary(m_manager));
    }
    SetTitle("Plotvane Viewer - " + wxString::FromUTF8(FileStem(path)));
    m_history.AddFileToHistory(wxString::FromUTF8(path));
    Redraw();
    ChartReplaced();
    return true;
}

void ViewerFrame::ClearMarks()
{
    m_manager.RemoveClippingLineArray();
    m_manager.RemoveClippingBoxArray();
    CGLChartView& view = View();
    view.ClearTextDB();
    view.ClearLineDB();
    view.ClearSelectNodeNames();
}

void ViewerFrame::ChartReplaced()
{
    for (const auto& listener : m_chartReplaced)
        listener();
}

bool ViewerFrame::IsLight() const
{
    return m_env.GetCurColorIndex() == kLightPreset;
}

// A CSV, ngspice raw or Touchstone file, read the way plotvane-render reads
// it: the axes get names and units that read true, an impedance file makes
// a log-log |Z| chart. A raw file of many vectors asks which to show.
void ViewerFrame::OpenDataFile(const std::string& path)
{
    RenderOptions options;
    options.bLight = IsLight();
    options.dataFiles = ChooseSignals(path);
    if (options.dataFiles.empty())
        throw std::runtime_error("no signal chosen");
    const auto warn = [this](const std::string& text) { Tell(wxString::FromUTF8(text)); };
    {
        // Read whole first, so that a bad file leaves the chart as it was.
        CPlotvane_Manager probe;
        AddDataFiles(probe, options, [](const std::string&) {});
        CheckChartData(probe, [](const std::string&) {});
    }
    m_manager.RemoveAllData();
    ClearMarks();
    // The overlay and axis kinds of the chart before belong to its data.
    ClearOverlays(m_manager);
    m_manager.m_nFrequencyScale = 0;
    m_manager.m_bUseMagnitude = 0;
    m_manager.m_nMagnitudeScale = 0;
    const DataAxes axes = AddDataFiles(m_manager, options, warn);
    CheckChartData(m_manager, warn);
    ApplyAxes(m_manager, axes.x, axes.y);
    m_manager.SetChartDrawFit();
    KeepLastXValueWhole(m_manager, m_manager.GetDefaultFontSize());
    AddLegend(m_manager, m_manager.GetDefaultFontSize(), false);
}

namespace
{

// The names of a CSV file's y columns, when they share its first column:
// the header alone is read.
std::vector<std::string> CsvColumnNames(const std::string& path)
{
    struct Stop
    {
    };
    struct HeaderOnly : CsvSink
    {
        std::vector<std::string> names;
        void Begin(const CsvTable& layout, std::size_t) override
        {
            for (const CsvSeries& s : layout.series)
                names.push_back(s.name);
            throw Stop();
        }
        void Points(std::vector<CsvSeries>&) override {}
    } header;
    CsvReadOptions options;
    options.bSharedX = true;
    try
    {
        ReadCsvFile(path, header, options);
    }
    catch (const Stop&)
    {
    }
    return header.names;
}

// The names of a raw file's vectors past its scale.
std::vector<std::string> RawVectorNames(const std::string& path)
{
    const io::SignalFile file = io::ReadSignalFile(path);
    std::vector<std::string> names;
    if (!file.plots.empty())
        for (std::size_t i = 1; i < file.plots[0].vectors.size(); ++i)
            names.push_back(file.plots[0].vectors[i].name);
    return names;
}

} // namespace

std::vector<std::string> ViewerFrame::ChooseSignals(const std::string& path)
{
    // A raw file holds many vectors, and a CSV file may hold columns that
    // share its first one: each is a FILE:SIGNAL of its own. A Touchstone
    // file and a plain x,y CSV are read whole.
    const bool bRaw = EndsWith(path, ".raw");
    if (!bRaw && !IsWholeCsvFile(SignalRef{path, ""}))
        return {path};
    std::vector<std::string> names;
    try
    {
        names = bRaw ? RawVectorNames(path) : CsvColumnNames(path);
    }
    catch (const std::exception&)
    {
        return {path}; // the reading proper says what is wrong
    }
    if (names.size() <= 1)
        return {path};
    wxArrayInt chosen;
    for (std::size_t i = 0; i < names.size(); ++i)
        chosen.Add(int(i));
    if (!m_bBatch)
    {
        wxArrayString items;
        for (const std::string& name : names)
            items.Add(wxString::FromUTF8(name));
        if (wxGetSelectedChoices(chosen,
                                 "Signals to show from " + wxString::FromUTF8(FileStem(path)),
                                 "Choose Signals", items, this) < 0)
            return {};
    }
    std::vector<std::string> refs;
    for (int i : chosen)
        refs.push_back(path + ":" + names[std::size_t(i)]);
    return refs;
}

bool ViewerFrame::SaveChart(const std::string& path)
{
    // The archive keeps the chart's own grid, not the viewer's.
    UndoRefinedYGrid(m_manager, m_dRefinedY);
    m_dRefinedY = 0.0;
    bool ok = true;
    try
    {
        SaveChartFile(m_manager, path);
    }
    catch (const std::exception& e)
    {
        Tell(wxString::Format("Cannot save %s:\n%s", wxString::FromUTF8(path),
                              wxString::FromUTF8(e.what())));
        ok = false;
    }
    RefineGrid();
    return ok;
}

bool ViewerFrame::ExportPng(const std::string& path, int width, int height)
{
    if (width > 0 && height > 0)
        return ExportPngOffscreen(path, width, height);
    Redraw();
    if (!SaveChartImage(m_manager, CString(path)))
    {
        Tell(wxString::Format("Cannot write %s", wxString::FromUTF8(path)));
        return false;
    }
    return true;
}

// The chart goes through its archive into an offscreen chart of that size;
// the view area, look and annotations follow, so that the picture shows
// what the window shows.
bool ViewerFrame::ExportPngOffscreen(const std::string& path, int width, int height)
{
    const wxString archive = wxFileName::CreateTempFileName("plotvane-export");
    bool ok = false;
    try
    {
        SaveChartFile(m_manager, archive.utf8_string());
        // One thread has one current context: the window's goes before EGL's.
        GetBackend().MakeCurrent(nullptr, nullptr);
        BackendScope offscreen(HeadlessBackend::Default());
        CPlotvane_Manager copy;
        if (CreateHeadlessChart(copy, width, height))
        {
            LoadChartFile(copy, archive.utf8_string());
            copy.SetChartEnvironment(&m_env);
            CGLChartView& from = View();
            CGLChartView& to = *copy.m_ChartDlg.GetGLChartView();
            to.m_rcViewArea = from.m_rcViewArea;
            to.m_nZoomExponent = from.m_nZoomExponent;
            *to.m_pTextDB = *from.m_pTextDB;
            *to.m_pLineDB = *from.m_pLineDB;
            *to.m_pSelectNodeNames = *from.m_pSelectNodeNames;
            copy.RedrawGLChartView();
            ok = SaveChartImage(copy, CString(path));
        }
    }
    catch (const std::exception& e)
    {
        Tell(wxString::Format("Cannot export %s:\n%s", wxString::FromUTF8(path),
                              wxString::FromUTF8(e.what())));
        wxRemoveFile(archive);
        return false;
    }
    wxRemoveFile(archive);
    if (!ok)
        Tell(wxString::Format("Cannot write %s", wxString::FromUTF8(path)));
    return ok;
}

void ViewerFrame::Redraw()
{
    RefineGrid();
    m_manager.RedrawGLChartView();
}

bool ViewerFrame::RefineGrid()
{
    const double before = m_dRefinedY;
    UndoRefinedYGrid(m_manager, m_dRefinedY);
    m_dRefinedY = RefineYGrid(m_manager, EyeReferenceLevels(m_manager));
    return m_dRefinedY != before;
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
                     "Charts and data (*.pvc;*.csv;*.txt;*.raw;*.s1p;*.s2p)|"
                     "*.pvc;*.csv;*.txt;*.raw;*.s1p;*.s2p;*.S1P;*.S2P|All files|*",
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

void ViewerFrame::OnExportPngSized(wxCommandEvent&)
{
    const wxSize shown = m_pChartPanel->GetClientSize();
    const long width = wxGetNumberFromUser("Width of the picture in pixels", "Width:",
                                           "Export PNG at Size", shown.x, 16, 16384, this);
    if (width < 0)
        return;
    const long height = wxGetNumberFromUser("Height of the picture in pixels", "Height:",
                                            "Export PNG at Size", shown.y, 16, 16384, this);
    if (height < 0)
        return;
    wxFileDialog dlg(this, "Export PNG", "", "chart.png", "PNG pictures (*.png)|*.png",
                     wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    if (dlg.ShowModal() == wxID_OK)
        ExportPng(dlg.GetPath().utf8_string(), int(width), int(height));
}

void ViewerFrame::OnRecent(wxCommandEvent& e)
{
    OpenFile(m_history.GetHistoryFile(size_t(e.GetId() - wxID_FILE1)).utf8_string());
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
