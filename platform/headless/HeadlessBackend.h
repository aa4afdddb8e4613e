// The headless backend: windows without a display, drawn offscreen.
//
// - Windows are rectangles with state, painted synchronously on request
//   (WindowManager.h).
// - The GL surface of a window is an EGL pbuffer of its client size beside a
//   front image that SwapBuffers fills (Surface.h); the pixel formats are
//   the EGL configs of Mesa's surfaceless platform or a GPU's device
//   platform, described as PIXELFORMATDESCRIPTOR values (EglDisplays.h).
// - Message boxes go to standard error as "<caption>: <text>" and a log; the
//   answer is IDOK (IDYES for yes/no boxes) unless a test sets another.
// - GetAsyncKeyState reads a key table that hosts and tests set.
// - Messages that no window class handles go to a window's message handler,
//   the way a host window receives the view's notifications.
// - Setting the environment variable PLOTVANE_HEADLESS_NO_EGL to anything
//   but "0" or "" makes the backend refuse every EGL display, as on a machine
//   without one: windows then have no device context.
//
// This header names no EGL type, so that hosts include it without EGL's.
#pragma once

#include <plotvane/platform/Backend.h>
#include <plotvane/platform/Image.h>

#include <functional>
#include <memory>
#include <vector>

namespace plotvane
{

class HeadlessBackend : public Backend
{
public:
    using MessageHandler = std::function<LRESULT(UINT message, WPARAM wParam, LPARAM lParam)>;
    // Stands in for the user of a modal dialog: called once the dialog's
    // window and controls exist; it may type into the controls and press a
    // button (WM_COMMAND to the dialog). A dialog it leaves open ends with
    // IDCANCEL.
    using ModalHandler = std::function<void(HWND dialog)>;

    HeadlessBackend();
    ~HeadlessBackend() override;

    // The process-wide instance that GetBackend answers by default.
    static HeadlessBackend& Default();

    // Host and test controls.
    void SetKeyState(int vk, bool down);
    void ReleaseAllKeys();
    // The display colour depth reported to pixel format setup; 0: unknown.
    void SetDisplayColorDepth(int bits);
    // The answer of later message boxes; 0 restores the default.
    void SetMessageBoxAnswer(int answer);
    // Every message box shown so far, as "<caption>: <text>".
    const std::vector<CString>& GetMessageBoxLog() const;
    void ClearMessageBoxLog();
    void SetMessageHandler(HWND hwnd, MessageHandler handler);
    // Null: every modal dialog is cancelled, as if nobody were there.
    void SetModalHandler(ModalHandler handler);
    int GetInvalidateCount(HWND hwnd) const;
    // Paints every visible window that has a paint due, parents first.
    void PaintPending();
    // Whether an EGL display is usable, and the renderer of the first one.
    bool IsGLAvailable();
    CString GetRendererName();

    // Backend.
    HWND CreateNativeWindow(CWnd* owner, const WindowParams& params) override;
    void DestroyNativeWindow(HWND hwnd) override;
    CWnd* GetOwner(HWND hwnd) override;
    HWND GetParentWindow(HWND hwnd) override;
    std::vector<HWND> GetChildWindows(HWND hwnd) override;
    CRect GetClientRect(HWND hwnd) override;
    CRect GetWindowRect(HWND hwnd) override;
    CPoint ClientToScreen(HWND hwnd, CPoint pt) override;
    void MoveNativeWindow(HWND hwnd, const CRect& rc) override;
    void ShowNativeWindow(HWND hwnd, bool show) override;
    bool IsWindowVisible(HWND hwnd) override;
    void EnableNativeWindow(HWND hwnd, bool enable) override;
    bool IsWindowEnabled(HWND hwnd) override;
    void SetWindowText(HWND hwnd, const CString& text) override;
    CString GetWindowText(HWND hwnd) override;
    void InvalidateRect(HWND hwnd, const RECT* rc, bool erase) override;
    void ValidateRect(HWND hwnd, const RECT* rc) override;
    bool GetUpdateState(HWND hwnd, bool* erase) override;
    void SetCapture(HWND hwnd) override;
    void ReleaseCapture() override;
    HWND GetCapture() override;
    void SetFocus(HWND hwnd) override;
    HWND GetFocus() override;
    LRESULT DefWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) override;
    int MessageBox(HWND owner, const CString& text, const CString& caption, UINT type) override;
    SHORT GetAsyncKeyState(int vk) override;
    int RunModalLoop(HWND hwnd) override;
    void EndModalLoop(HWND hwnd, int result) override;
    int GetDisplayColorDepth() override;
    bool IsHardwareAccelerated(HWND parent, CString& info) override;
    HDC GetDC(HWND hwnd) override;
    void ReleaseDC(HWND hwnd, HDC hdc) override;
    int DescribePixelFormat(HDC hdc, int format, UINT size, PIXELFORMATDESCRIPTOR* pfd) override;
    int ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* pfd) override;
    bool SetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR* pfd) override;
    int GetPixelFormat(HDC hdc) override;
    HGLRC CreateContext(HDC hdc) override;
    bool MakeCurrent(HDC hdc, HGLRC hrc) override;
    bool DeleteContext(HGLRC hrc) override;
    HGLRC GetCurrentContext() override;
    HDC GetCurrentDC() override;
    bool SwapBuffers(HDC hdc) override;
    void FrontBufferFlushed(HDC hdc) override;
    // What the screen would show: the front image that SwapBuffers fills.
    const Image* GetFrontImage(HWND hwnd) override;

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace plotvane
