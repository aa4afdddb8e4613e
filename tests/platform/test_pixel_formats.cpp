// The nearest-format rule that backends answer ChoosePixelFormat with, over
// candidate lists shaped like real EGL/GLX config lists: where each step of
// the ranking decides, and what the filter leaves out.
#include <plotvane/platform/PixelFormats.h>

#include <gtest/gtest.h>

#include <vector>

using plotvane::ChooseNearestPixelFormat;

namespace
{

constexpr DWORD kWindowGL = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER;

PIXELFORMATDESCRIPTOR Format(DWORD flags, int r, int g, int b, int a, int depth, int stencil)
{
    PIXELFORMATDESCRIPTOR pfd{};
    pfd.nSize = sizeof(pfd);
    pfd.nVersion = 1;
    pfd.dwFlags = flags;
    pfd.iPixelType = PFD_TYPE_RGBA;
    pfd.cColorBits = BYTE(r + g + b + a);
    pfd.cRedBits = BYTE(r);
    pfd.cGreenBits = BYTE(g);
    pfd.cBlueBits = BYTE(b);
    pfd.cAlphaBits = BYTE(a);
    pfd.cDepthBits = BYTE(depth);
    pfd.cStencilBits = BYTE(stencil);
    return pfd;
}

// What CGLWnd asks for on a 32-bit display: 32 colour bits, 16 depth bits,
// one stencil bit.
PIXELFORMATDESCRIPTOR Wanted(DWORD extraFlags = 0, int colorBits = 32, int depth = 16,
                             int stencil = 1)
{
    PIXELFORMATDESCRIPTOR pfd{};
    pfd.nSize = sizeof(pfd);
    pfd.nVersion = 1;
    pfd.dwFlags = kWindowGL | extraFlags;
    pfd.iPixelType = PFD_TYPE_RGBA;
    pfd.cColorBits = BYTE(colorBits);
    pfd.cDepthBits = BYTE(depth);
    pfd.cStencilBits = BYTE(stencil);
    return pfd;
}

} // namespace

TEST(NearestPixelFormat, RanksGenericFlagThenShortfallThenCloseness)
{
    // A GPU's list with the software renderer's formats first.
    const std::vector<PIXELFORMATDESCRIPTOR> gpu = {
        Format(kWindowGL | PFD_GENERIC_FORMAT, 8, 8, 8, 8, 24, 8), // 1
        Format(kWindowGL, 5, 6, 5, 0, 16, 0),                      // 2
        Format(kWindowGL, 8, 8, 8, 0, 24, 8),                      // 3
        Format(kWindowGL, 10, 10, 10, 2, 24, 8),                   // 4
        Format(kWindowGL, 8, 8, 8, 8, 24, 8),                      // 5
        Format(kWindowGL, 8, 8, 8, 8, 16, 0),                      // 6: no stencil
    };
    // Not generic; 32 colour bits; a stencil bit outranks the exact depth of
    // 6; 8-bit channels decide between 4 and 5.
    EXPECT_EQ(ChooseNearestPixelFormat(gpu, Wanted()), 5);
    // Generic asked: the software format, whatever the others offer.
    EXPECT_EQ(ChooseNearestPixelFormat(gpu, Wanted(PFD_GENERIC_FORMAT)), 1);
    // No stencil asked: 6 matches the depth exactly.
    EXPECT_EQ(ChooseNearestPixelFormat(gpu, Wanted(0, 32, 16, 0)), 6);
    // A 16-bit display: the closest colour depth comes before 8-bit channels.
    EXPECT_EQ(ChooseNearestPixelFormat(gpu, Wanted(0, 16, 16, 0)), 2);

    // The generic flag outranks a shortfall in every other field.
    const std::vector<PIXELFORMATDESCRIPTOR> poorSoftware = {
        Format(kWindowGL, 8, 8, 8, 8, 24, 8),
        Format(kWindowGL | PFD_GENERIC_FORMAT, 5, 6, 5, 0, 0, 0),
    };
    EXPECT_EQ(ChooseNearestPixelFormat(poorSoftware, Wanted(PFD_GENERIC_FORMAT)), 2);
    EXPECT_EQ(ChooseNearestPixelFormat(poorSoftware, Wanted()), 1);

    // Candidates that differ only outside the ranking: the earlier one, so
    // that the backend's order decides.
    const PIXELFORMATDESCRIPTOR copy = Format(kWindowGL | PFD_SWAP_COPY, 8, 8, 8, 8, 24, 8);
    const PIXELFORMATDESCRIPTOR plain = Format(kWindowGL, 8, 8, 8, 8, 24, 8);
    EXPECT_EQ(ChooseNearestPixelFormat({copy, plain}, Wanted()), 1);
    EXPECT_EQ(ChooseNearestPixelFormat({plain, copy}, Wanted()), 1);
}

TEST(NearestPixelFormat, FiltersOnWindowGLDoubleBufferAndPixelType)
{
    PIXELFORMATDESCRIPTOR colorIndex = Format(kWindowGL, 8, 8, 8, 8, 24, 8);
    colorIndex.iPixelType = PFD_TYPE_COLORINDEX;
    const std::vector<PIXELFORMATDESCRIPTOR> unfit = {
        Format(PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL, 8, 8, 8, 8, 24, 8), // single buffered
        Format(PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER, 8, 8, 8, 8, 24, 8),
        Format(PFD_DRAW_TO_WINDOW | PFD_DOUBLEBUFFER, 8, 8, 8, 8, 24, 8), // no OpenGL
        colorIndex,
    };
    EXPECT_EQ(ChooseNearestPixelFormat(unfit, Wanted()), 0);
    EXPECT_EQ(ChooseNearestPixelFormat({}, Wanted()), 0);

    // Without double buffering asked, a single-buffered format is fine.
    PIXELFORMATDESCRIPTOR single = Wanted();
    single.dwFlags &= ~PFD_DOUBLEBUFFER;
    EXPECT_EQ(ChooseNearestPixelFormat(unfit, single), 1);
    PIXELFORMATDESCRIPTOR indexed = Wanted();
    indexed.iPixelType = PFD_TYPE_COLORINDEX;
    EXPECT_EQ(ChooseNearestPixelFormat(unfit, indexed), 4);
}
