// The wxWidgets backend: CWnd windows are wx windows, CGLWnd's window is a
// wxGLCanvas, pixel formats are the display's GLX configs, message boxes,
// menus and the colour chooser are wx's.
//
// - A host installs it once wx is initialised (wxApp::OnInit) with
//   SetBackend, and hands its own wx windows to CWnd objects with
//   AttachWindow, so that library windows (CPlotvane_Dlg) become their
//   children.
// - wx events reach the window objects' handlers as window messages: input
//   goes through DispatchWindowMessage, so PreTranslateMessage sees it.
// - Messages that no window class handles (the view's 2524, 2525 and 2527
//   to its host) reach the host twice: as a plotvane::WxMessageEvent sent to
//   the target's wx window, and through the plain callback if one is set.
// - GetFrontImage is the frame of the window's last SwapBuffers, read back
//   with glReadPixels before the swap, so that tests and hosts take
//   screenshots without reading the X server.
#pragma once

#include <plotvane/platform/Backend.h>

#include <wx/event.h>

#include <functional>
#include <memory>

class wxWindow;

namespace plotvane
{

// A window message that no window class handled, as a wx event.
class WxMessageEvent : public wxEvent
{
public:
    WxMessageEvent(wxEventType type = wxEVT_NULL, int winid = 0) : wxEvent(winid, type) {}
    wxEvent* Clone() const override { return new WxMessageEvent(*this); }

    HWND hwnd = nullptr;
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    LRESULT result = 0;
};

wxDECLARE_EXPORTED_EVENT(, EVT_PLOTVANE_MESSAGE, WxMessageEvent);

class WxBackend : public Backend
{
public:
    using MessageCallback = std::function<LRESULT(HWND, UINT, WPARAM, LPARAM)>;

    WxBackend();
    ~WxBackend() override;

    // Makes wnd the window object of an existing wx window (a host's frame
    // or panel); the wx window stays the host's. False if wnd has a window.
    bool AttachWindow(CWnd& wnd, wxWindow* window);
    // Forgets the wx window of wnd without destroying it.
    void DetachWindow(CWnd& wnd);
    // The wx window behind a handle; null for an unknown one.
    wxWindow* GetWxWindow(HWND hwnd) const;
    // The plain callback for unhandled messages (see above).
    void SetMessageCallback(MessageCallback callback);

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
    void BeginWaitCursor() override;
    void EndWaitCursor() override;
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
    const Image* GetFrontImage(HWND hwnd) override;
    CRect MapDialogRect(HWND hwnd, const CRect& rc) override;
    void ControlChanged(HWND hwnd) override;
    UINT TrackPopupMenu(const PopupMenuItems& items, CPoint screen, HWND owner) override;
    bool ChooseColor(HWND owner, COLORREF& color) override;
    int RunModalLoop(HWND hwnd) override;
    void EndModalLoop(HWND hwnd, int result) override;

    struct Impl;

private:
    std::unique_ptr<Impl> m_impl;
};

} // namespace plotvane
