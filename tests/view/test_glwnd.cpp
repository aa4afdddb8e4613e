// CGLWnd: context creation and its failures, the pixel format search, the
// coordinate mappings, zoom and projection, and right-button dragging, drawn
// offscreen through the headless backend.
#include <plotvane/view/GLWnd.h>

#include "common/gl_required.h"
#include "common/scoped_data_dir.h"

#include <plotvane/platform/Backend.h>
#include <plotvane/platform/WinApi.h>
#include <plotvane/platform/headless/HeadlessBackend.h>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

using plotvane::HeadlessBackend;

namespace
{

// A GL window that paints as the chart view does: fit, render, finish, swap.
class CTestGLWnd : public CGLWnd
{
public:
    void OnPaint() override
    {
        CPaintDC dc(this);
        FitCurViewAreaWithWindow();
        RenderScene();
        glFinish();
        SwapBuffers(m_pDC->GetSafeHdc());
    }
    void RenderScene() override
    {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        ApplyViewZoom();
        if (scene)
            scene();
    }
    bool CreateOffscreen(int width, int height)
    {
        return Create(nullptr, "", WS_VISIBLE, CRect(0, 0, width, height), nullptr, 0) &&
               m_hRC != nullptr;
    }
    const plotvane::Image& Front() const { return *plotvane::GetBackend().GetFrontImage(m_hWnd); }

    std::function<void()> scene;
};

// Every test runs with an empty data directory of its own, so that no
// marker file of the machine changes the pixel format path.
class GLWndTest : public testing::Test
{
protected:
    ScopedDataDir m_data;
};

// A backend whose context operations fail on request.
class CFailingBackend : public HeadlessBackend
{
public:
    HGLRC CreateContext(HDC hdc) override
    {
        return failCreate ? nullptr : HeadlessBackend::CreateContext(hdc);
    }
    bool MakeCurrent(HDC hdc, HGLRC hrc) override
    {
        return failMakeCurrent && hrc != nullptr ? false : HeadlessBackend::MakeCurrent(hdc, hrc);
    }
    bool DeleteContext(HGLRC hrc) override
    {
        return HeadlessBackend::DeleteContext(hrc) && !failDelete;
    }

    bool failCreate = false;
    bool failMakeCurrent = false;
    bool failDelete = false;
};

// A backend that lists made-up pixel formats.
class CSyntheticFormats : public HeadlessBackend
{
public:
    int DescribePixelFormat(HDC, int format, UINT, PIXELFORMATDESCRIPTOR* pfd) override
    {
        if (format < 1 || size_t(format) > formats.size())
            return 0;
        *pfd = formats[size_t(format) - 1];
        return int(formats.size());
    }
    int ChoosePixelFormat(HDC, const PIXELFORMATDESCRIPTOR*) override
    {
        ++chooseCalls;
        return 42;
    }

    std::vector<PIXELFORMATDESCRIPTOR> formats;
    int chooseCalls = 0;
};

// A backend that claims hardware and records the descriptors it is given.
class CRecordingBackend : public HeadlessBackend
{
public:
    bool IsHardwareAccelerated(HWND, CString& info) override
    {
        info = "test hardware";
        return true;
    }
    int ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* pfd) override
    {
        ++chooseCalls;
        return HeadlessBackend::ChoosePixelFormat(hdc, pfd);
    }
    bool SetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR* pfd) override
    {
        given.push_back(*pfd);
        return HeadlessBackend::SetPixelFormat(hdc, format, pfd);
    }

    int chooseCalls = 0;
    std::vector<PIXELFORMATDESCRIPTOR> given;
};

PIXELFORMATDESCRIPTOR Format(DWORD flags, BYTE color, BYTE depth, BYTE stencil)
{
    PIXELFORMATDESCRIPTOR pfd{};
    pfd.nSize = sizeof(pfd);
    pfd.nVersion = 1;
    pfd.dwFlags = flags;
    pfd.iPixelType = PFD_TYPE_RGBA;
    pfd.cColorBits = color;
    pfd.cDepthBits = depth;
    pfd.cStencilBits = stencil;
    return pfd;
}

constexpr DWORD kWindowFlags = PFD_DOUBLEBUFFER | PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL; // 37
const HDC kAnyDC = reinterpret_cast<HDC>(1);

int WhitePixels(const plotvane::Image& image, int left, int top, int right, int bottom)
{
    return image.CountColor(RGB(255, 255, 255), left, top, right, bottom);
}

} // namespace

TEST_F(GLWndTest, CreatesAContextThatPaints)
{
    PLOTVANE_REQUIRE_GL();
    CTestGLWnd wnd;
    ASSERT_TRUE(wnd.CreateOffscreen(64, 32));
    EXPECT_EQ(wnd.GetRenderContext(), wnd.m_hRC);
    ASSERT_NE(wnd.m_pDC, nullptr);
    EXPECT_GT(GetPixelFormat(wnd.m_pDC->GetSafeHdc()), 0);
    EXPECT_TRUE(glIsEnabled(GL_DEPTH_TEST));

    wnd.m_rcViewArea.SetData(0.0f, 0.0f, 2.0f, 1.0f);
    wnd.MakeCurrent();
    glClearColor(0.2f, 0.4f, 0.6f, 0.0f);
    wnd.RedrawWindow();
    EXPECT_EQ(wnd.Front().Pixel(10, 10), RGB(51, 102, 153));

    // The depth bits asked for came from the display depth: half of it.
    GLint depthBits = 0;
    glGetIntegerv(GL_DEPTH_BITS, &depthBits);
    EXPECT_GE(depthBits, 16);
}

TEST_F(GLWndTest, ContextFailuresShowTheirMessages)
{
    auto createAndDestroy = [](CFailingBackend& backend)
    {
        plotvane::BackendScope scope(backend);
        testing::internal::CaptureStderr();
        {
            CTestGLWnd wnd;
            EXPECT_TRUE(
                wnd.Create(nullptr, "", 0, CRect(0, 0, 16, 16), nullptr, 0)); // creation goes on
        }
        return testing::internal::GetCapturedStderr();
    };

    setenv("PLOTVANE_HEADLESS_NO_EGL", "1", 1);
    CFailingBackend noDisplay;
    const std::string noDC = createAndDestroy(noDisplay);
    unsetenv("PLOTVANE_HEADLESS_NO_EGL");
    EXPECT_NE(noDC.find("Plotvane: Error Obtaining DC\n"), std::string::npos);
    EXPECT_EQ(noDisplay.GetMessageBoxLog().size(), 1u); // no context: nothing to delete

    PLOTVANE_REQUIRE_GL();
    const struct
    {
        bool CFailingBackend::*pFail;
        const char* message;
    } cases[] = {{&CFailingBackend::failCreate, "Error Creating RC"},
                 {&CFailingBackend::failMakeCurrent, "Error making RC Current"},
                 {&CFailingBackend::failDelete, "Could not delete RC"}};
    for (const auto& c : cases)
    {
        CFailingBackend backend;
        backend.*c.pFail = true;
        EXPECT_NE(createAndDestroy(backend).find(c.message), std::string::npos);
        EXPECT_EQ(backend.GetMessageBoxLog(),
                  std::vector<CString>{CString("Plotvane: ") + c.message});
    }
}

TEST_F(GLWndTest, ChooseBestPixelFormatFiltersAndScores)
{
    CSyntheticFormats backend;
    plotvane::BackendScope scope(backend);
    CGLWnd wnd;
    PIXELFORMATDESCRIPTOR want = Format(kWindowFlags, 32, 16, 1);

    // Hard filter: a wanted bit missing, or a forbidden bit present.
    backend.formats = {Format(kWindowFlags & ~PFD_DOUBLEBUFFER, 32, 16, 1),
                       Format(kWindowFlags | PFD_GENERIC_ACCELERATED, 32, 16, 1),
                       Format(kWindowFlags, 16, 16, 1)};
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, PFD_GENERIC_ACCELERATED), 3);
    want.dwFlags |= PFD_DOUBLEBUFFER_DONTCARE;
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, PFD_GENERIC_ACCELERATED), 1);
    want.dwFlags = kWindowFlags;

    // Score: a stencil short of the request costs more than extra stencil,
    // and 32 depth bits count as a perfect match for 16 (limit minus value).
    backend.formats = {Format(kWindowFlags, 32, 16, 0), Format(kWindowFlags, 24, 16, 1),
                       Format(kWindowFlags, 32, 24, 8), Format(kWindowFlags, 32, 32, 8)};
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, 0), 4);
    backend.formats.pop_back();
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, 0), 3);

    // A different pixel type outweighs every bit count.
    PIXELFORMATDESCRIPTOR indexed = Format(kWindowFlags, 32, 16, 1);
    indexed.iPixelType = PFD_TYPE_COLORINDEX;
    backend.formats = {indexed, Format(kWindowFlags, 8, 0, 0)};
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, 0), 2);

    // Generic penalties, and the earlier format on a tie.
    const PIXELFORMATDESCRIPTOR icd = Format(kWindowFlags, 32, 16, 1);
    const PIXELFORMATDESCRIPTOR generic = Format(kWindowFlags | PFD_GENERIC_FORMAT, 32, 16, 1);
    const PIXELFORMATDESCRIPTOR mcd =
        Format(kWindowFlags | PFD_GENERIC_FORMAT | PFD_GENERIC_ACCELERATED, 32, 16, 1);
    backend.formats = {generic, icd};
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, 0), 2);
    backend.formats = {generic, mcd};
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, 0), 2);
    want.dwFlags |= PFD_GENERIC_FORMAT;
    backend.formats = {icd, generic, mcd};
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, PFD_GENERIC_ACCELERATED), 2);
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, 0), 3);
    backend.formats = {generic, generic};
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, 0), 1);
    EXPECT_EQ(backend.chooseCalls, 0);

    // Nothing passes, or nothing to describe: the platform's own choice.
    backend.formats = {mcd};
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, PFD_GENERIC_ACCELERATED), 42);
    backend.formats.clear();
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, 0), 42);
    EXPECT_EQ(backend.chooseCalls, 2);

    // A bad descriptor answers 0 and clears the last error.
    SetLastError(5);
    want.nSize = 41;
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, 0), 0);
    EXPECT_EQ(GetLastError(), 0u);
    want.nSize = 40;
    want.nVersion = 2;
    EXPECT_EQ(wnd.ChooseBestPixelFormat(kAnyDC, &want, 0), 0);
    EXPECT_EQ(backend.chooseCalls, 2);
}

// The shared descriptor is set up once per process: these run in a fresh one.
TEST_F(GLWndTest, SharedDescriptorTakesFirstDepthAndKeepsTheGenericFlag)
{
    PLOTVANE_REQUIRE_GL();
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::string dir = m_data.Path();
    const std::string marker = dir + "/HARDWARE_ACC_OFF";
    auto run = [&dir, &marker]()
    {
        CRecordingBackend backend;
        plotvane::BackendScope scope(backend);
        backend.SetDisplayColorDepth(16);
        auto createOne = []
        {
            CTestGLWnd wnd;
            return wnd.CreateOffscreen(8, 8);
        };
        bool ok = createOne(); // hardware, no marker
        ok = ok && backend.chooseCalls == 1 && backend.given.size() == 1 &&
             !(backend.given[0].dwFlags & PFD_GENERIC_FORMAT) &&
             backend.given[0].dwFlags == kWindowFlags && backend.given[0].cColorBits == 16 &&
             backend.given[0].cDepthBits == 8 && backend.given[0].cStencilBits == 1 &&
             backend.given[0].nSize == 40;
        std::fclose(std::fopen(marker.c_str(), "w"));
        backend.SetDisplayColorDepth(32);
        ok = ok && createOne() && backend.chooseCalls == 1 &&
             (backend.given[1].dwFlags & PFD_GENERIC_FORMAT);
        std::remove(marker.c_str());
        ok = ok && createOne() && backend.chooseCalls == 2 &&
             (backend.given[2].dwFlags & PFD_GENERIC_FORMAT) && backend.given[2].cColorBits == 16;
        rmdir(dir.c_str());
        std::fprintf(stderr, ok ? "descriptor ok\n" : "descriptor wrong\n");
        std::exit(ok ? 0 : 1);
    };
    EXPECT_EXIT(run(), testing::ExitedWithCode(0), "descriptor ok");
}

TEST_F(GLWndTest, CoordinateConversionsAndTheirAsymmetry)
{
    PLOTVANE_REQUIRE_GL();
    CTestGLWnd wnd;
    ASSERT_TRUE(wnd.CreateOffscreen(200, 100));
    wnd.m_rcViewArea.SetData(0.0f, 0.0f, 20.0f, 10.0f);
    wnd.RedrawWindow();

    EXPECT_EQ(wnd.ClientPointToView(CPoint(0, 0)), CPointF(0.0f, 10.0f));
    EXPECT_EQ(wnd.ClientPointToView(CPoint(100, 50)), CPointF(10.0f, 5.0f));
    for (CPoint p : {CPoint(0, 0), CPoint(37, 81), CPoint(199, 1), CPoint(100, 50)})
    {
        const CPoint d = wnd.ViewPointToClient(wnd.ClientPointToView(p)) - p;
        EXPECT_LE(std::max(std::abs(d.x), std::abs(d.y)), 1) << p.x << ", " << p.y;
    }
    EXPECT_EQ(wnd.GetViewRectLP(), CRectF(CRectD(0.0, 0.0, 20.0, 10.0)));
    EXPECT_EQ(wnd.ViewRectToClient(wnd.m_rcViewArea), CRect(0, 0, 200, 100));

    // With a border the window rectangle is taller than the client's, and
    // only ViewPointToClient sees it.
    const CPoint plain = wnd.ViewPointToClient(CPointF(10.0f, 5.0f));
    class CBorderBackend : public HeadlessBackend
    {
    public:
        CRect GetWindowRect(HWND hwnd) override
        {
            CRect rc = HeadlessBackend::GetWindowRect(hwnd);
            rc.InflateRect(3, 3);
            return rc;
        }
    };
    CBorderBackend border;
    plotvane::BackendScope scope(border);
    CTestGLWnd framed;
    ASSERT_TRUE(framed.CreateOffscreen(200, 100));
    framed.m_rcViewArea.SetData(0.0f, 0.0f, 20.0f, 10.0f);
    framed.RedrawWindow();
    EXPECT_FLOAT_EQ(framed.ClientPointToView(CPoint(100, 50)).y, 5.0f);
    EXPECT_EQ(framed.ViewPointToClient(CPointF(10.0f, 5.0f)), plain + CPoint(0, 6));
}

TEST_F(GLWndTest, ProjectionKeepsTheAspectAndZoomWidensTheView)
{
    PLOTVANE_REQUIRE_GL();
    CTestGLWnd wnd;
    ASSERT_TRUE(wnd.CreateOffscreen(200, 100));
    wnd.MakeCurrent();

    // A wide window widens the view about its centre, a tall one heightens
    // it, an equal aspect changes nothing.
    glMatrixMode(GL_PROJECTION);
    const struct
    {
        int cx, cy;
        CRectD view;
    } cases[] = {{200, 100, CRectD(-5.0, 0.0, 15.0, 10.0)},
                 {100, 200, CRectD(0.0, -5.0, 10.0, 15.0)},
                 {100, 100, CRectD(0.0, 0.0, 10.0, 10.0)}};
    for (const auto& c : cases)
    {
        wnd.m_rcViewArea.SetData(0.0f, 0.0f, 10.0f, 10.0f);
        glLoadIdentity();
        wnd.SetViewProjection(c.cx, c.cy);
        EXPECT_EQ(wnd.m_rcViewArea, CRectF(c.view)) << c.cx << " x " << c.cy;
    }
    GLdouble projection[16];
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    EXPECT_NEAR(projection[0], 2.0 / 10.0, 1e-7);
    EXPECT_NEAR(projection[10], -2.0 / 1000.0, 1e-7); // near -500, far 500
    glMatrixMode(GL_MODELVIEW);

    // Zoom exponent -1 shows 1.2 times the view area, about its centre.
    wnd.m_rcViewArea.SetData(0.0f, 0.0f, 20.0f, 10.0f);
    wnd.m_nZoomExponent = -1;
    wnd.RedrawWindow();
    CRectF visible = wnd.GetViewRectLP();
    EXPECT_NEAR(visible.width, 24.0f, 1e-4);
    EXPECT_NEAR(visible.height, 12.0f, 1e-4);
    EXPECT_NEAR(visible.CenterPoint().x, 10.0f, 1e-4);
    EXPECT_EQ(wnd.m_rcViewArea.width, 20.0f); // the view area itself stays
    wnd.m_nZoomExponent = 2;
    wnd.RedrawWindow();
    visible = wnd.GetViewRectLP();
    EXPECT_NEAR(visible.width, 20.0f / 1.44f, 1e-4);

    // The view lines span the visible area.
    wnd.m_nZoomExponent = 0;
    wnd.scene = [&wnd]
    {
        wnd.DrawHorizontalViewLine(5.0, RGB(0, 255, 0));
        wnd.DrawVerticalViewLine(5.0, RGB(255, 0, 0));
    };
    wnd.RedrawWindow();
    const plotvane::Image& front = wnd.Front();
    EXPECT_GE(front.CountColor(RGB(0, 255, 0), 0, 48, 200, 52), 190);
    EXPECT_GE(front.CountColor(RGB(255, 0, 0), 48, 0, 52, 100), 90);
}

TEST_F(GLWndTest, WheelStepsTheZoomExponent)
{
    CGLWnd wnd;
    ASSERT_TRUE(wnd.Create(nullptr, "", 0, CRect(0, 0, 20, 20), nullptr, 0));
    HeadlessBackend& backend = HeadlessBackend::Default();
    const int invalidations = backend.GetInvalidateCount(wnd.GetSafeHwnd());
    wnd.OnMouseWheel(0, 120, CPoint());
    EXPECT_EQ(wnd.m_nZoomExponent, -1);
    wnd.OnMouseWheel(0, -240, CPoint());
    EXPECT_EQ(wnd.m_nZoomExponent, 0);
    wnd.OnMouseWheel(0, 0, CPoint());
    EXPECT_EQ(backend.GetInvalidateCount(wnd.GetSafeHwnd()), invalidations + 2);
    wnd.m_bReverseWheel = 1;
    wnd.OnMouseWheel(0, 120, CPoint());
    EXPECT_EQ(wnd.m_nZoomExponent, 1);
}

TEST_F(GLWndTest, RightDragPansBehindAXoredRubberLineAndAClickDoesNot)
{
    PLOTVANE_REQUIRE_GL();
    CTestGLWnd wnd;
    ASSERT_TRUE(wnd.CreateOffscreen(200, 100));
    wnd.m_rcViewArea.SetData(0.0f, 0.0f, 20.0f, 10.0f);
    wnd.RedrawWindow();
    HeadlessBackend& backend = HeadlessBackend::Default();
    const plotvane::Image& front = wnd.Front();
    ASSERT_EQ(WhitePixels(front, 0, 0, 200, 100), 0);

    // Without the flag the right button does nothing.
    wnd.OnRButtonDown(0, CPoint(10, 10));
    EXPECT_EQ(CWnd::GetCapture(), nullptr);

    // A click without movement: the stored end decides, not the release point.
    wnd.m_bMouseDrag = 1;
    const CRectF before = wnd.m_rcViewArea;
    wnd.OnRButtonDown(0, CPoint(50, 50));
    EXPECT_EQ(CWnd::GetCapture(), &wnd);
    wnd.OnRButtonUp(0, CPoint(60, 60));
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    EXPECT_EQ(wnd.m_rcViewArea, before);
    EXPECT_EQ(wnd.m_ptDragStart, CPoint(50, 50));
    EXPECT_EQ(wnd.m_ptDragEnd, CPoint(50, 50));

    // While dragging, the line from the start is drawn with XOR on the front.
    const int invalidations = backend.GetInvalidateCount(wnd.GetSafeHwnd());
    wnd.OnRButtonDown(0, CPoint(20, 50));
    wnd.OnMouseMove(0, CPoint(180, 50));
    EXPECT_GE(WhitePixels(front, 20, 48, 180, 53), 150); // a horizontal line
    wnd.OnMouseMove(0, CPoint(180, 90));
    EXPECT_EQ(WhitePixels(front, 90, 45, 110, 55), 0); // the old one erased
    EXPECT_GT(WhitePixels(front, 95, 66, 105, 75), 0); // the new one through (100, 70)
    EXPECT_EQ(WhitePixels(front, 0, 0, 200, 30), 0);

    // Released 100 pixels right of the start and 20 down: the scene follows
    // the hand, and the pan's paint leaves no line.
    wnd.OnRButtonUp(0, CPoint(120, 70));
    EXPECT_EQ(wnd.m_rcViewArea, CRectF(CRectD(-10.0, 2.0, 10.0, 12.0)));
    EXPECT_EQ(wnd.m_ptDragEnd, CPoint(120, 70));
    EXPECT_GT(backend.GetInvalidateCount(wnd.GetSafeHwnd()), invalidations);
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    wnd.UpdateWindow();
    EXPECT_EQ(WhitePixels(front, 0, 0, 200, 100), 0);

    // With the view following the mouse, the rectangle moves with the hand.
    wnd.m_bDragFollowsMouse = 1;
    wnd.OnRButtonDown(0, CPoint(100, 50));
    wnd.OnMouseMove(0, CPoint(120, 50));
    wnd.OnRButtonUp(0, CPoint(120, 50));
    EXPECT_FLOAT_EQ(wnd.m_rcViewArea.Left(), -8.0f);
}

TEST_F(GLWndTest, ReadSelectionBufferDecodesRecords)
{
    CGLWnd wnd;
    CDWordArrayArray out;
    out.Add(new CDWordArray);
    const DWORD buffer[] = {2, 100, 200, 5, 6, 0, 1, 2, 1, 300, 400, 9};
    wnd.ReadSelectionBuffer(buffer, 3, out);
    std::vector<std::vector<DWORD>> names;
    for (const CDWordArray* a : out)
        names.emplace_back(a->begin(), a->end());
    EXPECT_EQ(names, (std::vector<std::vector<DWORD>>{{5, 6}, {}, {9}}));
}
