// The main window of plotvane-viewer: one chart per window, with menus to
// open data, save the chart, export a picture and change the look.
#pragma once

#include <plotvane/plotvane_wx.h>

#include <wx/filehistory.h>
#include <wx/frame.h>
#include <wx/panel.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace plotvane::viewer
{

class CurrentPointFeed;

class ViewerFrame : public wxFrame
{
public:
    // bBatch: messages go to standard error instead of boxes, for tests.
    explicit ViewerFrame(bool bBatch);
    ~ViewerFrame() override;

    // Opens a CSV, ngspice raw or Touchstone file, or a chart archive
    // (.pvc), in place of the chart shown. False, with a message, when the
    // file cannot be read.
    bool OpenFile(const std::string& path);
    bool SaveChart(const std::string& path);
    // At the window's size, or drawn offscreen at width x height pixels
    // (both above 0) showing the same area of the chart.
    bool ExportPng(const std::string& path, int width = 0, int height = 0);
    // Draws the chart now (after a load or a change of look), with a finer Y
    // grid where the chart's own would leave fewer than four lines.
    void Redraw();
    CPlotvane_Manager& Manager() { return m_manager; }
    CGLPlotvane_Environment& Environment() { return m_env; }
    // The environment on the chart, and the View menu's checks after it.
    void ApplyLook();
    const std::vector<std::string>& Messages() const { return m_messages; }
    // A message box, or standard error in batch mode.
    void Tell(const wxString& text);
    bool IsBatch() const { return m_bBatch; }
    CGLChartView& View() { return *m_manager.m_ChartDlg.GetGLChartView(); }
    // The panel that hosts the chart dialog: the view's messages to its host
    // (2524, 2525, 2527) arrive there as EVT_PLOTVANE_MESSAGE.
    wxPanel* ChartPanel() { return m_pChartPanel; }
    // Called after a file, or a chart made from the one shown, replaced the
    // chart.
    void AddChartReplacedListener(std::function<void()> listener)
    {
        m_chartReplaced.push_back(std::move(listener));
    }
    void ChartReplaced();
    // Cursors, boxes, texts, lines and curve labels off the chart: they
    // belong to the data they were placed on.
    void ClearMarks();
    // The light colour set is in use: new curves take its colours.
    bool IsLight() const;

private:
    void BuildMenus();
    // Throws with a message when the file cannot be read or shown.
    void OpenDataFile(const std::string& path);
    // FILE:SIGNAL refs of what to show; empty when the user cancelled.
    std::vector<std::string> ChooseSignals(const std::string& path);
    // The finer Y grid for the view as it stands; true when it changed.
    bool RefineGrid();
    void OnOpen(wxCommandEvent&);
    void OnSaveChart(wxCommandEvent&);
    void OnExportPng(wxCommandEvent&);
    void OnExportPngSized(wxCommandEvent&);
    bool ExportPngOffscreen(const std::string& path, int width, int height);
    void OnRecent(wxCommandEvent& e);
    void OnGrid(wxCommandEvent&);
    void OnColours(wxCommandEvent& e);
    void OnLineWidth(wxCommandEvent& e);
    void OnAbout(wxCommandEvent&);
    void OnClose(wxCloseEvent& e);

    CPlotvane_Manager m_manager;
    CWnd m_host;
    wxPanel* m_pChartPanel = nullptr;
    CGLPlotvane_Environment m_env;
    wxFileHistory m_history;
    bool m_bBatch;
    double m_dRefinedY = 0.0; // the Y grid interval the viewer set, or 0
    std::unique_ptr<CurrentPointFeed> m_pointFeed;
    std::vector<std::string> m_messages;
    std::vector<std::function<void()>> m_chartReplaced;
};

} // namespace plotvane::viewer
