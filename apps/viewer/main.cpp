// plotvane-viewer [--screenshot PNG [--size WxH]] [FILE...]
//
// Opens each FILE (CSV or .pvc) in turn in one chart window; the last one
// readable stays shown. With --screenshot the viewer draws, writes the
// chart as PNG, reports any unreadable file on standard error and exits
// (1 when a file could not be read): what the tests and the README's
// screenshot use.
#include "viewer/ViewerFrame.h"

#include <wx/app.h>
#include <wx/init.h>

#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <thread>
#include <vector>

namespace
{

void Pump(int ms)
{
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
    do
    {
        wxTheApp->Yield(true);
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    } while (std::chrono::steady_clock::now() < end);
}

int Usage()
{
    std::fprintf(stderr, "usage: plotvane-viewer [--screenshot PNG [--size WxH]] [FILE...]\n"
                         "FILE: a CSV file (x,y columns) or a chart archive (.pvc)\n");
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    std::string screenshot;
    int width = 0;
    int height = 0;
    std::vector<std::string> files;
    for (int i = 1; i < argc; ++i)
    {
        if (std::strcmp(argv[i], "--screenshot") == 0 && i + 1 < argc)
            screenshot = argv[++i];
        else if (std::strcmp(argv[i], "--size") == 0 && i + 1 < argc)
        {
            if (std::sscanf(argv[++i], "%dx%d", &width, &height) != 2 || width < 16 ||
                height < 16 || width > 16384 || height > 16384)
            {
                std::fprintf(stderr, "plotvane-viewer: --size wants WIDTHxHEIGHT, 16 to 16384 "
                                     "pixels each, not \"%s\"\n", argv[i]);
                return 2;
            }
        }
        else if (std::strcmp(argv[i], "--help") == 0 || std::strcmp(argv[i], "-h") == 0)
            return Usage() == 2 ? 0 : 0;
        else if (argv[i][0] == '-' && argv[i][1] == '-')
            return Usage();
        else
            files.push_back(argv[i]);
    }

    wxApp::SetInstance(new wxApp);
    int wxArgc = 1;
    if (!wxEntryStart(wxArgc, argv) || !wxTheApp->CallOnInit())
    {
        std::fprintf(stderr, "plotvane-viewer: cannot open the display (is DISPLAY set?)\n");
        return 1;
    }
    wxTheApp->SetAppName("plotvane-viewer");
    const bool batch = !screenshot.empty();
    auto* frame = new plotvane::viewer::ViewerFrame(batch);
    Pump(200);
    bool allRead = true;
    for (const std::string& f : files)
        allRead = frame->OpenFile(f) && allRead;
    frame->Redraw();

    int rc = 0;
    if (batch)
    {
        Pump(300);
        if (!frame->ExportPng(screenshot, width, height))
            rc = 1;
        if (!allRead)
            rc = 1;
        frame->Destroy();
        Pump(50);
    }
    else
    {
        wxTheApp->OnRun();
    }
    wxTheApp->OnExit();
    wxEntryCleanup();
    return rc;
}
