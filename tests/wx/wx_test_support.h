// What the window tests share: a frame holding a chart dialog, pumping the
// event loop, and real X input through xdotool.
#pragma once

#include <plotvane/plotvane_wx.h>

#include <gtest/gtest.h>

#include <wx/app.h>
#include <wx/frame.h>

#include <chrono>
#include <cmath>
#include <cstdlib>
#include <string>
#include <thread>

namespace plotvane::test
{

// Where tests leave their screenshots: PLOTVANE_SHOT_DIR, or here.
inline std::string ShotDir()
{
    const char* dir = std::getenv("PLOTVANE_SHOT_DIR");
    return dir != nullptr ? dir : ".";
}

// Where tests leave the pictures a person should look at:
// PLOTVANE_ARTIFACT_DIR (CTest sets build/test-artifacts), or test-artifacts
// under the screenshot folder.
inline std::string ArtifactDir()
{
    const char* dir = std::getenv("PLOTVANE_ARTIFACT_DIR");
    return dir != nullptr ? std::string(dir) : ShotDir() + "/test-artifacts";
}

// Runs the event loop for about ms milliseconds.
inline void Pump(int ms = 100)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    do
    {
        wxTheApp->Yield(true);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    } while (std::chrono::steady_clock::now() < end);
}

// Runs an xdotool command line; fails the test when xdotool fails.
inline void XDo(const std::string& args)
{
    const std::string cmd = "xdotool " + args;
    ASSERT_EQ(std::system(cmd.c_str()), 0) << cmd;
    Pump(150);
}

// A sine of a few periods: curves, grid and labels to compare.
inline void FillSine(CPlotvane_Manager& m)
{
    CPlotvane_InputData& d = m.m_InputData;
    const int set = d.AddNewDataSet();
    d.SetCurrentEditSet(set);
    d.SetCurrentEditSetName("sine");
    for (int i = 0; i <= 400; ++i)
    {
        const double t = i * 1e-11;
        d.AddData(t, 0.6 + 0.5 * std::sin(t * 2.0e9 * 3.14159265358979));
    }
    // A new set takes a random colour (rand()); both sides of a comparison
    // must draw the same one.
    d.GetChartPointDArray(set)->m_Color = CColor(RGB(80, 160, 255));
    d.AddDrawDataSetIndex(set);
    m.SetChartDrawFit();
}

// A top-level frame whose client area holds a manager's chart dialog.
class ChartFrame
{
public:
    ChartFrame(int width, int height)
    {
        frame = new wxFrame(nullptr, wxID_ANY, "plotvane test", wxPoint(40, 40));
        frame->SetClientSize(width, height);
        frame->Show();
        Pump(200);
        created = CreateDialogIn(m.m_ChartDlg, host, frame);
        frame->Raise();
        Pump(300);
    }
    ~ChartFrame()
    {
        m.m_ChartDlg.DestroyWindow();
        InstallWxBackend().DetachWindow(host);
        frame->Destroy();
        Pump(50);
    }
    CGLChartView* View() { return m.m_ChartDlg.GetGLChartView(); }
    // The view's client point (x, y) on the screen.
    wxPoint Screen(int x, int y)
    {
        CPoint pt(x, y);
        View()->ClientToScreen(&pt);
        return wxPoint(pt.x, pt.y);
    }

    CPlotvane_Manager m;
    CWnd host;
    wxFrame* frame = nullptr;
    bool created = false;
};

} // namespace plotvane::test
