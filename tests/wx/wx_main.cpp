// Runs the window tests inside a wx application on a real X display. Without
// a display the program fails: these tests exist to prove real windows.
#include <plotvane/plotvane_wx.h>

#include <gtest/gtest.h>

#include <wx/app.h>
#include <wx/debug.h>
#include <wx/init.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    // A wx assertion is a fault of ours, not a dialog to wait on.
    wxSetAssertHandler([](const wxString& file, int line, const wxString& func,
                          const wxString& cond, const wxString& msg) {
        ADD_FAILURE_AT(file.utf8_str(), line)
            << "wx assertion in " << func << ": " << cond << " " << msg;
    });
    if (std::getenv("DISPLAY") == nullptr || *std::getenv("DISPLAY") == '\0')
    {
        std::fprintf(stderr, "no X display: run these tests under xvfb-run\n");
        return 1;
    }
    wxApp::SetInstance(new wxApp);
    if (!wxEntryStart(argc, argv) || !wxTheApp->CallOnInit())
    {
        std::fprintf(stderr, "wxWidgets could not start on DISPLAY=%s\n", std::getenv("DISPLAY"));
        return 1;
    }
    plotvane::InstallWxBackend();
    const int rc = RUN_ALL_TESTS();
    wxTheApp->OnExit();
    wxEntryCleanup();
    return rc;
}
