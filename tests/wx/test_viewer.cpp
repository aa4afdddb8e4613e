// plotvane-viewer as a user starts it: files on the command line, drawn in
// a real window, written out with --screenshot.
#include "wx_test_support.h"

#include <plotvane/plotvane.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

using plotvane::test::ShotDir;

namespace
{

struct ViewerRun
{
    int rc = -1;
    std::string err;
};

// Runs the viewer on args with --screenshot shot; standard error captured.
ViewerRun Viewer(const std::string& args, const std::string& shot)
{
    const std::string errFile = shot + ".err";
    std::remove(shot.c_str());
    const std::string cmd = std::string(PLOTVANE_VIEWER_EXE) + " --screenshot " + shot + " " +
                            args + " 2>" + errFile;
    ViewerRun r;
    const int status = std::system(cmd.c_str());
    r.rc = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    std::ifstream in(errFile);
    r.err.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    return r;
}

// How many pixels of the picture are not its background (the top-left
// corner's colour): grid, labels, curves.
int DrawnPixels(const std::string& png)
{
    plotvane::Image image;
    if (!plotvane::ReadPng(CString(png), image))
        return -1;
    const COLORREF bg = image.Pixel(0, 0);
    return image.width * image.height - image.CountColor(bg);
}

int CountPixelsOf(const std::string& png, COLORREF color)
{
    plotvane::Image image;
    return plotvane::ReadPng(CString(png), image) ? image.CountColor(color) : -1;
}

} // namespace

TEST(Viewer, StartsWithoutFileOnTheNoDataChart)
{
    const std::string shot = ShotDir() + "/viewer-empty.png";
    const ViewerRun r = Viewer("", shot);
    EXPECT_EQ(r.rc, 0) << r.err;
    EXPECT_GT(DrawnPixels(shot), 100); // the frame and grid of the neutral range
}

TEST(Viewer, OpensCsvAndChartArchiveFromTheCommandLine)
{
    const std::string csv = ShotDir() + "/viewer-sine.csv";
    {
        std::ofstream out(csv);
        out << "Time (s),Voltage (V)\n";
        for (int i = 0; i <= 200; ++i)
            out << i * 1e-11 << "," << (i % 50 < 25 ? 1.2 : 0.1) << "\n";
    }
    const std::string csvShot = ShotDir() + "/viewer-csv.png";
    ViewerRun r = Viewer(csv, csvShot);
    EXPECT_EQ(r.rc, 0) << r.err;
    const int csvPixels = DrawnPixels(csvShot);
    EXPECT_GT(csvPixels, 1000);

    // A DDR write eye saved by plotvane-render: the eye and its overlay.
    const std::string pvc = ShotDir() + "/viewer-ddr.pvc";
    const std::string make = std::string(PLOTVANE_RENDER_EXE) + " --demo ddr-write -o " +
                             ShotDir() + "/viewer-ddr-render.png --save-chart " + pvc +
                             " >/dev/null";
    ASSERT_EQ(std::system(make.c_str()), 0);
    const std::string pvcShot = ShotDir() + "/viewer-pvc.png";
    r = Viewer(pvc, pvcShot);
    EXPECT_EQ(r.rc, 0) << r.err;
    EXPECT_GT(DrawnPixels(pvcShot), csvPixels);
    // The setup/hold overlay draws its marks in red.
    EXPECT_GT(CountPixelsOf(pvcShot, RGB(255, 0, 0)), 50);
}

TEST(Viewer, UnreadableFilesGiveAMessageNotACrash)
{
    const std::string badPvc = ShotDir() + "/viewer-corrupt.pvc";
    {
        std::ofstream out(badPvc, std::ios::binary);
        out << "\x04\x00\x00\x00this is not a chart archive";
    }
    const std::string badCsv = ShotDir() + "/viewer-corrupt.csv";
    {
        std::ofstream out(badCsv);
        out << "1,2\n3,abc\n";
    }
    const std::string shot = ShotDir() + "/viewer-corrupt.png";
    const ViewerRun r = Viewer(badPvc + " " + badCsv + " " + ShotDir() + "/no-such-file.csv", shot);
    EXPECT_EQ(r.rc, 1);
    EXPECT_NE(r.err.find("Cannot open " + badPvc), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("Cannot open " + badCsv), std::string::npos) << r.err;
    EXPECT_NE(r.err.find("no-such-file.csv"), std::string::npos) << r.err;
    // Still the empty chart, still drawn.
    EXPECT_GT(DrawnPixels(shot), 100);
}

TEST(Viewer, ExportsAtAChosenSizeAndRefusesABadOne)
{
    const std::string csv = ShotDir() + "/viewer-sized.csv";
    {
        std::ofstream out(csv);
        out << "Time (s),Voltage (V)\n";
        for (int i = 0; i <= 100; ++i)
            out << i * 1e-11 << "," << (i % 40 < 20 ? 1.0 : 0.0) << "\n";
    }
    const std::string shot = ShotDir() + "/viewer-sized.png";
    ViewerRun r = Viewer("--size 320x200 " + csv, shot);
    ASSERT_EQ(r.rc, 0) << r.err;
    plotvane::Image image;
    ASSERT_TRUE(plotvane::ReadPng(CString(shot), image));
    EXPECT_EQ(image.width, 320);
    EXPECT_EQ(image.height, 200);
    EXPECT_GT(DrawnPixels(shot), 500);

    r = Viewer("--size 0x20 " + csv, shot);
    EXPECT_EQ(r.rc, 2);
    EXPECT_NE(r.err.find("--size"), std::string::npos) << r.err;
}

// A one-port Touchstone file opens as a |Z| chart on log axes.
TEST(Viewer, OpensATouchstoneFileAsAnImpedanceChart)
{
    const std::string s1p = ShotDir() + "/viewer-pdn.s1p";
    {
        std::ofstream out(s1p);
        out << "! a capacitor to ground, 1 uF\n# MHz Z RI R 50\n";
        for (double f = 0.01; f < 1000.0; f *= 1.5)
            out << f << " 0.001 " << -1.0 / (2 * 3.14159265 * f * 1e6 * 1e-6) / 50.0 << "\n";
    }
    const std::string shot = ShotDir() + "/viewer-s1p.png";
    const ViewerRun r = Viewer(s1p, shot);
    EXPECT_EQ(r.rc, 0) << r.err;
    EXPECT_GT(DrawnPixels(shot), 1000);
}
