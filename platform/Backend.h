// The window system behind CWnd and the GL window: a backend supplies native
// windows, their GL surfaces and contexts, message boxes and the key state.
// The core talks to the installed backend only through this interface; the
// default backend (the headless one, offscreen EGL) serves unless a host
// installs another.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/Image.h>
#include <plotvane/platform/WinTypes.h>

#include <vector>

class CWnd;

namespace plotvane
{

// What a backend needs to create the native window of a CWnd.
struct WindowParams
{
    HWND parent = nullptr;
    CRect rect;      // in the parent's client coordinates, or the screen's
    DWORD style = 0; // WS_ bits as given after PreCreateWindow
    UINT id = 0;     // child id
    CString text;    // window text or caption
    // The control class for a dialog's controls ("STATIC", "BUTTON", "EDIT",
    // "msctls_statusbar32"); empty for a plain window. A toolkit backend makes
    // the matching native control; the headless backend keeps a rectangle.
    CString className;
};

// A popup menu as the window system shows it: command ids and their texts
// ("\t" separates an accelerator); an id of 0 is a separator.
struct PopupMenuItem
{
    UINT id = 0;
    CString text;
};
using PopupMenuItems = std::vector<PopupMenuItem>;

class Backend
{
public:
    Backend() = default;
    Backend(const Backend&) = delete;
    Backend& operator=(const Backend&) = delete;
    virtual ~Backend() = default;

    // Native windows. A window belongs to exactly one CWnd, its owner.
    virtual HWND CreateNativeWindow(CWnd* owner, const WindowParams& params) = 0;
    virtual void DestroyNativeWindow(HWND hwnd) = 0;
    virtual CWnd* GetOwner(HWND hwnd) = 0; // null for an unknown handle
    virtual HWND GetParentWindow(HWND hwnd) = 0;
    virtual std::vector<HWND> GetChildWindows(HWND hwnd) = 0;
    virtual CRect GetClientRect(HWND hwnd) = 0; // origin (0, 0)
    virtual CRect GetWindowRect(HWND hwnd) = 0; // screen coordinates
    virtual CPoint ClientToScreen(HWND hwnd, CPoint pt) = 0;
    // Moves and sizes the window; rc is in the parent's client coordinates.
    virtual void MoveNativeWindow(HWND hwnd, const CRect& rc) = 0;
    virtual void ShowNativeWindow(HWND hwnd, bool show) = 0;
    virtual bool IsWindowVisible(HWND hwnd) = 0;
    virtual void EnableNativeWindow(HWND hwnd, bool enable) = 0;
    virtual bool IsWindowEnabled(HWND hwnd) = 0;
    virtual void SetWindowText(HWND hwnd, const CString& text) = 0;
    virtual CString GetWindowText(HWND hwnd) = 0;

    // Painting: the update state of a window. rc null means the whole client.
    virtual void InvalidateRect(HWND hwnd, const RECT* rc, bool erase) = 0;
    virtual void ValidateRect(HWND hwnd, const RECT* rc) = 0;
    // Whether a paint is due, and whether the background wants erasing.
    virtual bool GetUpdateState(HWND hwnd, bool* erase) = 0;

    // Mouse capture and keyboard focus; null when no window of ours has it.
    virtual void SetCapture(HWND hwnd) = 0;
    virtual void ReleaseCapture() = 0;
    virtual HWND GetCapture() = 0;
    virtual void SetFocus(HWND hwnd) = 0;
    virtual HWND GetFocus() = 0;

    // Messages that no window class handled: a host window's messages reach
    // the host here (a callback, a toolkit event).
    virtual LRESULT DefWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) = 0;

    // A modal message box; answers IDOK, IDCANCEL, IDYES or IDNO.
    virtual int MessageBox(HWND owner, const CString& text, const CString& caption, UINT type) = 0;
    // The physical key state: the high bit (0x8000) while the key is down.
    virtual SHORT GetAsyncKeyState(int vk) = 0;
    virtual void BeginWaitCursor() {}
    virtual void EndWaitCursor() {}

    // Display and renderer.
    // Colour depth of the first display in its current mode; 0 if unknown.
    virtual int GetDisplayColorDepth() = 0;
    // Whether hardware-accelerated OpenGL is usable for windows under
    // parent; info receives a description of the renderer.
    virtual bool IsHardwareAccelerated(HWND parent, CString& info) = 0;

    // Device contexts: the GL surface of a window. Null when the window has
    // no surface to give (no display).
    virtual HDC GetDC(HWND hwnd) = 0;
    virtual void ReleaseDC(HWND hwnd, HDC hdc) = 0;

    // Pixel formats are numbered from 1 and described in Win32 terms.
    // DescribePixelFormat answers the highest format number, 0 on failure.
    virtual int DescribePixelFormat(HDC hdc, int format, UINT size, PIXELFORMATDESCRIPTOR* pfd) = 0;
    virtual int ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* pfd) = 0;
    virtual bool SetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR* pfd) = 0;
    virtual int GetPixelFormat(HDC hdc) = 0;

    // Rendering contexts. MakeCurrent(null, null) releases the current one.
    virtual HGLRC CreateContext(HDC hdc) = 0;
    virtual bool MakeCurrent(HDC hdc, HGLRC hrc) = 0;
    virtual bool DeleteContext(HGLRC hrc) = 0;
    virtual HGLRC GetCurrentContext() = 0;
    virtual HDC GetCurrentDC() = 0;
    // Shows the back buffer.
    virtual bool SwapBuffers(HDC hdc) = 0;
    // Called after drawing into GL_FRONT and glFlush, so that a backend
    // whose front buffer is an image of its own can take the drawing over.
    virtual void FrontBufferFlushed(HDC hdc) = 0;

    // What the window's GL surface shows now, top row first: the frame of
    // the last swap with any front-buffer drawing since. Null for a window
    // without a GL surface. The image stays the backend's and holds until the
    // window is drawn again, resized or destroyed: ask again after those.
    virtual const Image* GetFrontImage(HWND hwnd) = 0;

    // Dialogs and controls. The defaults serve a backend without a toolkit.
    // Dialog units to pixels for the font of the dialog window hwnd; the
    // default takes base units of 6 x 13 pixels (Tahoma at 8 to 9 points).
    virtual CRect MapDialogRect(HWND hwnd, const CRect& rc);
    // The state of the window's CWnd object that a native control mirrors
    // (status bar panes, say) has changed.
    virtual void ControlChanged(HWND /*hwnd*/) {}
    // Shows a popup menu at a screen point and waits for the choice; answers
    // the command id chosen, 0 for none (the default: no menu to show).
    virtual UINT TrackPopupMenu(const PopupMenuItems& items, CPoint screen, HWND owner);
    // The colour chooser; false when cancelled (the default: no chooser).
    virtual bool ChooseColor(HWND owner, COLORREF& color);
    // Runs the top-level dialog window hwnd modally until EndModalLoop, and
    // answers the result given there. The default, with nobody to answer,
    // ends at once with IDCANCEL.
    virtual int RunModalLoop(HWND hwnd);
    virtual void EndModalLoop(HWND hwnd, int result);
    // Writes GetFrontImage as PNG (RGB, or RGBA with withAlpha); false when
    // there is no image or the file cannot be written.
    bool SaveFrontImage(HWND hwnd, const CString& path, bool withAlpha = false);
};

// The installed backend. Never null: the default backend serves when none
// is installed.
Backend& GetBackend();
// Installs a backend (null: back to the default) and returns the one
// installed before. The caller keeps ownership.
Backend* SetBackend(Backend* backend);
// The process-wide backend that serves when none is installed. The backend
// built into the library defines it (the headless one), so that this layer
// names no backend.
Backend& GetDefaultBackend();

// Installs a backend for the lifetime of the object.
class BackendScope
{
public:
    explicit BackendScope(Backend& backend) : m_pPrevious(SetBackend(&backend)) {}
    BackendScope(const BackendScope&) = delete;
    BackendScope& operator=(const BackendScope&) = delete;
    ~BackendScope() { SetBackend(m_pPrevious); }

private:
    Backend* m_pPrevious;
};

// See Backend::FrontBufferFlushed; front-buffer drawing calls this after its
// glFlush.
void FrontBufferFlushed(HDC hdc);

// Colour depth of the display, 0 if unknown.
int GetDisplayColorDepth();

// The caption of message boxes that give none; the host may set its name.
const CString& GetAppName();
void SetAppName(const CString& name);

} // namespace plotvane
