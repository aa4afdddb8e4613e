// The main window of plotvane-viewer: one chart per window, with menus to
// open data, save the chart, export a picture and change the look.
#pragma once

#include <plotvane/plotvane_wx.h>

#include <wx/filehistory.h>
#include <wx/frame.h>
#include <wx/panel.h>

#include <memory>
#include <string>
#include <vector>

namespace plotvane::viewer
{

class ViewerFrame : public wxFrame
{
public:
    // bBatch: messages go to standard error instead of boxes, for tests.
    explicit ViewerFrame(bool bBatch);
    ~ViewerFrame() override;

    // Opens a CSV file or a chart archive (.pvc) in place of the chart
    // shown. False, with a message, when the file cannot be read.
    bool OpenFile(const std::string& path);
    bool SaveChart(const std::string& path);
    bool ExportPng(const std::string& path);
    // Draws the chart now (after a load or a change of look).
    void Redraw();
    CPlotvane_Manager& Manager() { return m_manager; }
    CGLPlotvane_Environment& Environment() { return m_env; }
    const std::vector<std::string>& Messages() const { return m_messages; }
    // A message box, or standard error in batch mode.
    void Tell(const wxString& text);
    bool IsBatch() const { return m_bBatch; }

private:
    void BuildMenus();
    void ApplyLook();
    void OnOpen(wxCommandEvent&);
    void OnSaveChart(wxCommandEvent&);
    void OnExportPng(wxCommandEvent&);
    void OnRecent(wxCommandEvent& e);
    void OnZoomFit(wxCommandEvent&);
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
    std::vector<std::string> m_messages;
};

} // namespace plotvane::viewer
