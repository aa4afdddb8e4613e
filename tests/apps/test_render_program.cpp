// Runs the built plotvane-render on generated data and inspects its PNGs.
#include "apps/program_run.h"

#include <gtest/gtest.h>

#include <png.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{
struct Rgba
{
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> px;

    std::uint32_t At(int x, int y) const // 0xRRGGBB
    {
        const std::uint8_t* p = &px[(std::size_t(y) * width + x) * 4];
        return (std::uint32_t(p[0]) << 16) | (std::uint32_t(p[1]) << 8) | p[2];
    }
};

bool ReadPng(const std::string& path, Rgba& out)
{
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&image, path.c_str()))
        return false;
    image.format = PNG_FORMAT_RGBA;
    out.width = int(image.width);
    out.height = int(image.height);
    out.px.resize(PNG_IMAGE_SIZE(image));
    bool ok = png_image_finish_read(&image, nullptr, out.px.data(), 0, nullptr) != 0;
    png_image_free(&image);
    return ok;
}

using plotvane_test::Result;

class RenderProgram : public plotvane_test::RenderProgramTest
{
protected:
    void WriteSampled(const char* name, const char* header, double (*f)(double), int n,
                      char sep = ',') const
    {
        std::ofstream csv(Path(name));
        csv << header << '\n';
        for (int i = 0; i < n; ++i)
            csv << i * 1e-9 << sep << f(i * 1e-9) << '\n';
    }
};

// Bounding box and count of the pixels of one colour.
struct Extent
{
    int count = 0, minX = 1 << 30, maxX = -1, minY = 1 << 30, maxY = -1;
};

Extent ColorExtent(const Rgba& img, std::uint32_t rgb)
{
    Extent e;
    for (int y = 0; y < img.height; ++y)
        for (int x = 0; x < img.width; ++x)
            if (img.At(x, y) == rgb)
            {
                ++e.count;
                e.minX = std::min(e.minX, x), e.maxX = std::max(e.maxX, x);
                e.minY = std::min(e.minY, y), e.maxY = std::max(e.maxY, y);
            }
    return e;
}

double Sine(double t)
{
    return std::sin(2 * M_PI * t / 500e-9);
}
double Square(double t)
{
    return std::fmod(t, 400e-9) < 200e-9 ? 1.2 : 0.0;
}
} // namespace

TEST_F(RenderProgram, DrawsCurvesOnTheBackground)
{
    WriteSampled("sine.csv", "time,DQ0", Sine, 1000);
    Result r = Run("--size 800x500 --x-unit s --y-unit V -o sine.png --save-chart c.pvc sine.csv");
    ASSERT_EQ(r.status, 0) << r.err;
    Rgba img, reloaded;
    ASSERT_TRUE(ReadPng(Path("sine.png"), img));
    // The saved chart, loaded again, draws the same frame.
    r = Run("--size 800x500 -o reloaded.png --chart c.pvc");
    ASSERT_EQ(r.status, 0) << r.err;
    ASSERT_TRUE(ReadPng(Path("reloaded.png"), reloaded));
    EXPECT_EQ(img.px, reloaded.px);
    EXPECT_EQ(img.width, 800);
    EXPECT_EQ(img.height, 500);
    // Dark look: black background at the right corners, and the first curve
    // colour (red) along a sine that spans most of the plot.
    EXPECT_EQ(img.At(799, 0), 0x000000u);
    EXPECT_EQ(img.At(799, 499), 0x000000u);
    Extent red = ColorExtent(img, 0xFF0000);
    EXPECT_GT(red.count, 600);
    EXPECT_GT(red.maxX - red.minX, 800 * 6 / 10);
    EXPECT_GT(red.maxY - red.minY, 500 * 5 / 10);

    // Light look with a square wave: white background, and the edges are
    // vertical runs of the curve colour.
    WriteSampled("square.csv", "t;v", Square, 1000, ';');
    r = Run("--light --grid 1 --size 640x400 -o " + Path("square.png") + " " + Path("square.csv"));
    ASSERT_EQ(r.status, 0) << r.err;
    ASSERT_TRUE(ReadPng(Path("square.png"), img));
    EXPECT_EQ(img.At(639, 0), 0xFFFFFFu);
    red = ColorExtent(img, 0xFF0000);
    // An edge may step over to the next column part of the way down.
    std::vector<int> run(img.width + 1, 0);
    for (int x = red.minX; x <= red.maxX; ++x)
        for (int y = red.minY; y <= red.maxY; ++y)
            run[x] += img.At(x, y) == 0xFF0000;
    int nEdges = 0;
    bool bInEdge = false;
    for (int x = red.minX; x <= red.maxX; ++x)
    {
        bool bEdge = run[x] + run[x + 1] > (red.maxY - red.minY) * 8 / 10;
        nEdges += bEdge && !bInEdge;
        bInEdge = bEdge;
    }
    EXPECT_EQ(nEdges, 4); // every 200 ns in 1 us, starting high
}

TEST_F(RenderProgram, ErrorsAndHelp)
{
    Result r = Run("--help");
    EXPECT_EQ(r.status, 0);
    EXPECT_NE(r.out.find("--save-chart"), std::string::npos);

    // The reader's and the parser's messages reach stderr, with a failing
    // status.
    std::ofstream(Path("bad.csv")) << "t,v\n0,1\n1,2x\n";
    r = Run("-o " + Path("x.png") + " " + Path("bad.csv"));
    EXPECT_NE(r.status, 0);
    EXPECT_NE(r.err.find(Path("bad.csv") + ":3: bad number '2x'"), std::string::npos) << r.err;

    r = Run("--grid 5 -o x.png a.csv");
    EXPECT_NE(r.status, 0);
    EXPECT_NE(r.err.find("--grid"), std::string::npos);

    // Without an EGL display the GL window's own message comes out, and the
    // program fails without writing an image.
    std::ofstream(Path("ok.csv")) << "0,1\n1,2\n";
    r = Run("-o " + Path("nogl.png") + " " + Path("ok.csv"), "PLOTVANE_HEADLESS_NO_EGL=1");
    EXPECT_EQ(r.status, 1);
    EXPECT_NE(r.err.find("Error Obtaining DC"), std::string::npos) << r.err;
    EXPECT_NE(access(Path("nogl.png").c_str(), F_OK), 0);
}
