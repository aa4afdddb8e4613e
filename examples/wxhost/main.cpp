// A wx host embedding the chart dialog, as an application would: its own
// frame and panel, a manager per chart, data handed over through the
// manager's API, and the view's notifications through the backend's
// callback. With --check it draws once, prints the size of the frame it
// drew and exits; otherwise it runs until closed.
#include <plotvane/plotvane_wx.h>

#include <wx/app.h>
#include <wx/frame.h>
#include <wx/panel.h>

#include <cmath>
#include <cstdio>
#include <cstring>

class HostApp : public wxApp
{
public:
    bool OnInit() override
    {
        plotvane::WxBackend& backend = plotvane::InstallWxBackend();
        backend.SetMessageCallback([](HWND, UINT message, WPARAM, LPARAM) {
            std::printf("chart message %u\n", message);
            return LRESULT(0);
        });
        auto* frame = new wxFrame(nullptr, wxID_ANY, "Plotvane in a wx host", wxDefaultPosition,
                                  wxSize(800, 600));
        auto* panel = new wxPanel(frame);
        frame->Show();
        if (!plotvane::CreateDialogIn(m_chart.m_ChartDlg, m_host, panel))
            return false;
        m_chart.m_pParentWnd = &m_host;
        panel->Bind(wxEVT_SIZE, [this, panel](wxSizeEvent& e) {
            e.Skip();
            const wxSize s = panel->GetClientSize();
            m_chart.m_ChartDlg.MoveWindow(0, 0, s.x, s.y);
        });

        CPlotvane_InputData& data = m_chart.m_InputData;
        m_chart.RemoveAllData();
        const int set = data.AddNewDataSet();
        data.SetCurrentEditSet(set);
        data.SetCurrentEditSetName("ringing step");
        for (int i = 0; i < 500; ++i)
        {
            const double t = i * 2e-12;
            data.AddData(t, t < 1e-10 ? 0.0 : 1.0 - std::exp(-(t - 1e-10) / 1e-10) *
                                                        std::cos((t - 1e-10) * 6e10));
        }
        data.AddDrawDataSetIndex(set);
        m_chart.SetAxisXName("Time (s)");
        m_chart.SetAxisYName("Voltage (V)");
        m_chart.SetChartDrawFit();
        m_chart.SetChartEnvironment();
        m_chart.RedrawGLChartView();

        if (m_bCheck)
        {
            const plotvane::Image* image = plotvane::GetChartImage(m_chart);
            std::printf("drew %dx%d\n", image ? image->width : 0, image ? image->height : 0);
            m_chart.m_ChartDlg.DestroyWindow();
            backend.DetachWindow(m_host);
            frame->Destroy();
            return image != nullptr && image->width > 0 ? (ExitMainLoopSoon(), true) : false;
        }
        return true;
    }
    void ExitMainLoopSoon()
    {
        CallAfter([this] { ExitMainLoop(); });
    }

    bool m_bCheck = false;

private:
    CPlotvane_Manager m_chart;
    CWnd m_host;
};

wxIMPLEMENT_APP_NO_MAIN(HostApp);

int main(int argc, char** argv)
{
    auto* app = new HostApp;
    app->m_bCheck = argc > 1 && std::strcmp(argv[1], "--check") == 0;
    wxApp::SetInstance(app);
    int wxArgc = 1;
    return wxEntry(wxArgc, argv);
}
