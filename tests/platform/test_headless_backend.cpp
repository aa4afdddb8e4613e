// The headless backend: windows, painting, messages, keys, message boxes,
// EGL surfaces and contexts, and PNG images.
#include "common/gl_required.h"

#include <plotvane/platform/Backend.h>
#include <plotvane/platform/Image.h>
#include <plotvane/platform/PixelFormats.h>
#include <plotvane/platform/WinApi.h>
#include <plotvane/platform/Wnd.h>
#include <plotvane/platform/headless/HeadlessBackend.h>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <unistd.h>
#include <vector>

using plotvane::HeadlessBackend;

namespace
{

// Records the handlers that painting and input reach.
class CRecordingWnd : public CWnd
{
public:
    void OnPaint() override
    {
        ++paints;
        CPaintDC dc(this);
    }
    BOOL OnEraseBkgnd(CDC*) override
    {
        ++erases;
        return TRUE;
    }
    void OnSize(UINT, int cx, int cy) override { lastSize = CSize(cx, cy); }
    void OnContextMenu(CWnd* pWnd, CPoint pos) override
    {
        menuFrom = pWnd;
        menuAt = pos;
    }
    BOOL PreTranslateMessage(MSG* pMsg) override
    {
        preTranslated.push_back(pMsg->message);
        return consumeKeys && pMsg->message == WM_KEYDOWN;
    }
    void OnKeyDown(UINT nChar, UINT, UINT) override { keysDown.push_back(nChar); }

    int paints = 0;
    int erases = 0;
    CSize lastSize;
    CWnd* menuFrom = nullptr;
    CPoint menuAt;
    bool consumeKeys = false;
    std::vector<UINT> preTranslated;
    std::vector<UINT> keysDown;
};

HeadlessBackend& Headless()
{
    return HeadlessBackend::Default();
}

// What a GL window asks for: 32 colour bits, 16 depth bits, one stencil bit.
PIXELFORMATDESCRIPTOR WindowFormat(DWORD extraFlags = 0)
{
    PIXELFORMATDESCRIPTOR want{};
    want.nSize = sizeof(want);
    want.nVersion = 1;
    want.dwFlags = PFD_SUPPORT_OPENGL | PFD_DRAW_TO_WINDOW | PFD_DOUBLEBUFFER | extraFlags;
    want.cColorBits = 32;
    want.cDepthBits = 16;
    want.cStencilBits = 1;
    return want;
}

} // namespace

TEST(HeadlessWindows, GeometryIsClientSizedWithoutBorder)
{
    CRecordingWnd host;
    ASSERT_TRUE(host.Create(nullptr, "host", WS_VISIBLE, CRect(10, 20, 310, 220), nullptr, 0));
    CRecordingWnd child;
    ASSERT_TRUE(child.Create(nullptr, "child", WS_CHILD | WS_VISIBLE | WS_BORDER,
                             CRect(5, 7, 105, 57), &host, 123456));

    CRect rc;
    child.GetClientRect(&rc);
    EXPECT_EQ(rc, CRect(0, 0, 100, 50));
    child.GetWindowRect(&rc);
    EXPECT_EQ(rc, CRect(15, 27, 115, 77));
    EXPECT_EQ(child.GetParent(), &host);
    EXPECT_EQ(child.GetDlgCtrlID(), 123456);
    EXPECT_EQ(child.lastSize, CSize(100, 50));

    child.MoveWindow(0, 0, 40, 30);
    child.GetClientRect(&rc);
    EXPECT_EQ(rc, CRect(0, 0, 40, 30));
    EXPECT_EQ(child.lastSize, CSize(40, 30));

    // A parent object without a window cannot take children.
    CWnd orphanParent;
    CWnd orphan;
    EXPECT_FALSE(orphan.Create(nullptr, "", WS_CHILD, CRect(0, 0, 10, 10), &orphanParent, 1));

    host.DestroyWindow();
    EXPECT_EQ(child.GetSafeHwnd(), nullptr);
}

TEST(HeadlessWindows, PaintingIsRecordedAndSynchronous)
{
    CRecordingWnd wnd;
    ASSERT_TRUE(wnd.Create(nullptr, "", WS_VISIBLE, CRect(0, 0, 64, 32), nullptr, 0));
    HWND hwnd = wnd.GetSafeHwnd();
    Headless().PaintPending(); // the first paint of a new window
    EXPECT_EQ(wnd.paints, 1);
    EXPECT_EQ(wnd.erases, 1);

    const int before = Headless().GetInvalidateCount(hwnd);
    wnd.Invalidate(FALSE);
    EXPECT_EQ(Headless().GetInvalidateCount(hwnd), before + 1);
    EXPECT_EQ(wnd.paints, 1); // nothing paints by itself
    wnd.UpdateWindow();
    EXPECT_EQ(wnd.paints, 2);
    EXPECT_EQ(wnd.erases, 1); // no erase was asked for
    wnd.UpdateWindow();
    EXPECT_EQ(wnd.paints, 2); // validated by the paint

    wnd.RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
    EXPECT_EQ(wnd.paints, 3);
    EXPECT_EQ(wnd.erases, 2);
    wnd.SendMessage(WM_PAINT);
    EXPECT_EQ(wnd.paints, 4);

    wnd.ShowWindow(SW_HIDE);
    wnd.Invalidate();
    Headless().PaintPending();
    EXPECT_EQ(wnd.paints, 4); // hidden windows wait
}

TEST(HeadlessWindows, MessagesReachHostsParentsAndPreTranslate)
{
    std::vector<UINT> received; // outlives the host, whose destruction it hears
    CRecordingWnd host;
    ASSERT_TRUE(host.Create(nullptr, "", WS_VISIBLE, CRect(100, 100, 400, 300), nullptr, 0));
    Headless().SetMessageHandler(host.GetSafeHwnd(),
                                 [&](UINT message, WPARAM, LPARAM) -> LRESULT
                                 {
                                     received.push_back(message);
                                     return 7;
                                 });
    EXPECT_EQ(host.SendMessage(2524), 7);
    EXPECT_EQ(host.SendMessage(2527), 7);
    EXPECT_EQ(received, (std::vector<UINT>{2524, 2527}));
    received.clear();

    // An unhandled right button release asks the parent for a context menu.
    CRecordingWnd view;
    ASSERT_TRUE(view.Create(nullptr, "", WS_CHILD | WS_VISIBLE, CRect(10, 10, 110, 60), &host, 1));
    view.SendMessage(WM_RBUTTONUP, 0, MAKELPARAM(5, 6));
    EXPECT_EQ(view.menuFrom, &view);
    EXPECT_EQ(view.menuAt, CPoint(115, 116)); // screen coordinates

    // Queued keys pass PreTranslateMessage from the target up to its parents.
    MSG msg;
    msg.hwnd = view.GetSafeHwnd();
    msg.message = WM_KEYDOWN;
    msg.wParam = VK_LEFT;
    EXPECT_FALSE(plotvane::DispatchWindowMessage(msg));
    EXPECT_EQ(view.keysDown, std::vector<UINT>{VK_LEFT});
    EXPECT_EQ(host.preTranslated, std::vector<UINT>{WM_KEYDOWN});
    host.consumeKeys = true;
    EXPECT_TRUE(plotvane::DispatchWindowMessage(msg));
    EXPECT_EQ(view.keysDown.size(), 1u);
}

TEST(HeadlessWindows, CaptureFocusKeysAndMessageBoxes)
{
    CRecordingWnd a;
    CRecordingWnd b;
    ASSERT_TRUE(a.Create(nullptr, "", 0, CRect(0, 0, 10, 10), nullptr, 0));
    ASSERT_TRUE(b.Create(nullptr, "", 0, CRect(0, 0, 10, 10), nullptr, 0));
    a.SetCapture();
    EXPECT_EQ(CWnd::GetCapture(), &a);
    ReleaseCapture();
    EXPECT_EQ(CWnd::GetCapture(), nullptr);
    b.SetFocus();
    EXPECT_EQ(CWnd::GetFocus(), &b);
    b.DestroyWindow();
    EXPECT_EQ(CWnd::GetFocus(), nullptr);

    Headless().SetKeyState(VK_CONTROL, true);
    EXPECT_NE(GetAsyncKeyState(VK_CONTROL) & 0x8000, 0);
    EXPECT_EQ(GetAsyncKeyState('1'), 0);
    Headless().ReleaseAllKeys();
    EXPECT_EQ(GetAsyncKeyState(VK_CONTROL), 0);

    Headless().ClearMessageBoxLog();
    testing::internal::CaptureStderr();
    EXPECT_EQ(a.MessageBox("Something failed"), IDOK);
    EXPECT_EQ(AfxMessageBox("Sure?", MB_YESNO), IDYES);
    const std::string err = testing::internal::GetCapturedStderr();
    EXPECT_NE(err.find("Plotvane: Something failed\n"), std::string::npos);
    ASSERT_EQ(Headless().GetMessageBoxLog().size(), 2u);
    EXPECT_EQ(Headless().GetMessageBoxLog()[1], CString("Plotvane: Sure?"));
}

TEST(HeadlessImages, PngRoundTrip)
{
    plotvane::Image image;
    image.Reset(3, 2);
    auto set = [&](int x, int y, int r, int g, int b, int a)
    {
        std::uint8_t* p = &image.rgba[size_t(y * 3 + x) * 4];
        p[0] = std::uint8_t(r);
        p[1] = std::uint8_t(g);
        p[2] = std::uint8_t(b);
        p[3] = std::uint8_t(a);
    };
    set(0, 0, 255, 0, 0, 255);
    set(2, 1, 10, 20, 30, 128);
    const std::string path =
        testing::TempDir() + "plotvane_png_" + std::to_string(getpid()) + ".png";

    plotvane::Image back;
    ASSERT_TRUE(plotvane::WritePng(path.c_str(), image, true));
    ASSERT_TRUE(plotvane::ReadPng(path.c_str(), back));
    EXPECT_EQ(back.width, 3);
    EXPECT_EQ(back.height, 2);
    EXPECT_EQ(back.rgba, image.rgba); // top row first, exact bytes

    ASSERT_TRUE(plotvane::WritePng(path.c_str(), image)); // RGB: alpha dropped
    ASSERT_TRUE(plotvane::ReadPng(path.c_str(), back));
    EXPECT_EQ(back.Pixel(2, 1), RGB(10, 20, 30));
    EXPECT_EQ(back.Alpha(2, 1), 255);
    std::remove(path.c_str());

    EXPECT_FALSE(plotvane::ReadPng("/nonexistent/x.png", back));
    EXPECT_TRUE(back.IsEmpty());
}

TEST(HeadlessGL, ConfigsAreDescribedAsPixelFormats)
{
    PLOTVANE_REQUIRE_GL();
    CWnd wnd;
    ASSERT_TRUE(wnd.Create(nullptr, "", 0, CRect(0, 0, 8, 8), nullptr, 0));
    CClientDC dc(&wnd);
    ASSERT_NE(dc.GetSafeHdc(), nullptr);

    PIXELFORMATDESCRIPTOR pfd;
    const int count = DescribePixelFormat(dc, 1, sizeof(pfd), &pfd);
    ASSERT_GT(count, 0);
    CString renderer;
    const bool hardware = IsEnableOpenGL(renderer, nullptr) != FALSE;
    EXPECT_EQ(renderer, Headless().GetRendererName());
    std::vector<PIXELFORMATDESCRIPTOR> described;
    for (int i = 1; i <= count; ++i)
    {
        ASSERT_EQ(DescribePixelFormat(dc, i, sizeof(pfd), &pfd), count);
        described.push_back(pfd);
        EXPECT_EQ(pfd.nSize, 40);
        EXPECT_EQ(pfd.nVersion, 1);
        EXPECT_EQ(pfd.dwFlags & (PFD_SUPPORT_OPENGL | PFD_DRAW_TO_WINDOW | PFD_DOUBLEBUFFER),
                  PFD_SUPPORT_OPENGL | PFD_DRAW_TO_WINDOW | PFD_DOUBLEBUFFER);
        EXPECT_EQ(pfd.iPixelType, PFD_TYPE_RGBA);
        EXPECT_GE(pfd.cColorBits, pfd.cRedBits + pfd.cGreenBits + pfd.cBlueBits);
        if (!hardware) // a software renderer offers generic formats only
        {
            EXPECT_TRUE(pfd.dwFlags & PFD_GENERIC_FORMAT);
        }
    }
    EXPECT_EQ(DescribePixelFormat(dc, count + 1, sizeof(pfd), &pfd), 0);

    // ChoosePixelFormat ranks these very descriptions, numbered as described.
    for (const PIXELFORMATDESCRIPTOR& want : {WindowFormat(), WindowFormat(PFD_GENERIC_FORMAT)})
        EXPECT_EQ(ChoosePixelFormat(dc, &want),
                  plotvane::ChooseNearestPixelFormat(described, want));
}

TEST(HeadlessGL, ClearSwapResizeAndFrontBuffer)
{
    PLOTVANE_REQUIRE_GL();
    CWnd wnd;
    ASSERT_TRUE(wnd.Create(nullptr, "", WS_VISIBLE, CRect(0, 0, 40, 20), nullptr, 0));
    CClientDC dc(&wnd);
    const PIXELFORMATDESCRIPTOR want = WindowFormat();
    const int format = ChoosePixelFormat(dc, &want);
    ASSERT_GT(format, 0);
    ASSERT_TRUE(SetPixelFormat(dc, format, &want));
    EXPECT_EQ(GetPixelFormat(dc), format);
    HGLRC rc = wglCreateContext(dc);
    ASSERT_NE(rc, nullptr);
    ASSERT_TRUE(wglMakeCurrent(dc, rc));
    EXPECT_EQ(wglGetCurrentContext(), rc);
    GLint depthBits = 0;
    glGetIntegerv(GL_DEPTH_BITS, &depthBits);
    EXPECT_GE(depthBits, 16);

    glClearColor(1.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    const plotvane::Image* front = Headless().GetFrontImage(wnd.GetSafeHwnd());
    ASSERT_NE(front, nullptr);
    EXPECT_EQ(front->Pixel(5, 5), RGB(0, 0, 0)); // not shown before the swap
    ASSERT_TRUE(SwapBuffers(dc));
    EXPECT_EQ(front->CountColor(RGB(255, 0, 0)), 40 * 20);

    // Drawing into GL_FRONT shows once flushed, without a swap.
    glDrawBuffer(GL_FRONT);
    glEnable(GL_SCISSOR_TEST);
    glScissor(0, 0, 10, 20); // the left quarter
    glClearColor(0.0f, 0.0f, 1.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    glDisable(GL_SCISSOR_TEST);
    glFlush();
    plotvane::FrontBufferFlushed(dc);
    glDrawBuffer(GL_BACK);
    EXPECT_EQ(front->Pixel(2, 10), RGB(0, 0, 255));
    EXPECT_EQ(front->Pixel(30, 10), RGB(255, 0, 0));

    // A resize keeps the context usable on a surface of the new size.
    wnd.MoveWindow(0, 0, 24, 12);
    front = Headless().GetFrontImage(wnd.GetSafeHwnd());
    ASSERT_TRUE(wglMakeCurrent(dc, rc));
    glViewport(0, 0, 24, 12);
    glClearColor(0.0f, 1.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT);
    ASSERT_TRUE(SwapBuffers(dc));
    EXPECT_EQ(front->width, 24);
    EXPECT_EQ(front->CountColor(RGB(0, 255, 0)), 24 * 12);

    wglMakeCurrent(nullptr, nullptr);
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
    EXPECT_FALSE(SwapBuffers(dc)); // nothing current to read through
    EXPECT_TRUE(wglDeleteContext(rc));
    EXPECT_FALSE(wglDeleteContext(rc)); // a stale handle is refused
}

TEST(HeadlessGL, EnvironmentCanRefuseTheDisplay)
{
    setenv("PLOTVANE_HEADLESS_NO_EGL", "1", 1);
    CWnd wnd;
    const bool created = wnd.Create(nullptr, "", 0, CRect(0, 0, 8, 8), nullptr, 0);
    CClientDC dc(&wnd);
    CString info;
    const BOOL hardware = IsEnableOpenGL(info, nullptr);
    unsetenv("PLOTVANE_HEADLESS_NO_EGL");
    EXPECT_TRUE(created);
    EXPECT_EQ(dc.GetSafeHdc(), nullptr);
    EXPECT_FALSE(hardware);
}
