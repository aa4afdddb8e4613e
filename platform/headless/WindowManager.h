// The windows of the headless backend: rectangles with state and no
// display. The client rectangle is the window rectangle (no border); a
// window keeps its visibility, text, an update flag with an erase flag and
// a count of invalidations. Nothing paints by itself: UpdateWindow,
// RedrawWindow(RDW_UPDATENOW), SendMessage(WM_PAINT) or PaintPending()
// paint synchronously. Messages that no window class handles go to a
// window's message handler, the way a host window receives the view's
// notifications.
#pragma once

#include <plotvane/platform/Backend.h>
#include <plotvane/platform/headless/Handles.h>

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <vector>

namespace plotvane::headless
{

class Surface;

using MessageHandler = std::function<LRESULT(UINT message, WPARAM wParam, LPARAM lParam)>;

struct Window
{
    CWnd* owner = nullptr;
    HWND parent = nullptr;
    std::vector<HWND> children;
    CRect rect; // in the parent's client coordinates
    bool visible = false;
    bool enabled = true;
    CString text;
    bool invalid = false;
    bool erase = false;
    int invalidateCount = 0;
    MessageHandler handler;
    // The GL surface, made at the first device context; device contexts
    // share it and keep it past the window.
    std::shared_ptr<Surface> surface;
};

class WindowManager
{
public:
    explicit WindowManager(HandleCounter& handles);
    WindowManager(const WindowManager&) = delete;
    WindowManager& operator=(const WindowManager&) = delete;
    ~WindowManager();

    // Null for an unknown handle.
    Window* Find(HWND hwnd);
    const Window* Find(HWND hwnd) const;

    // Null when the parent is given and unknown.
    HWND Create(CWnd* owner, const WindowParams& params);
    // Destroys the window and its children; capture and focus let go of it.
    void Destroy(HWND hwnd);

    CRect GetClientRect(HWND hwnd) const;
    CRect GetWindowRect(HWND hwnd) const;
    CPoint ClientToScreen(HWND hwnd, CPoint pt) const;
    // Moves and sizes the window; a new size resizes its GL surface.
    void Move(HWND hwnd, const CRect& rc);
    // Showing a hidden window makes its whole area due for painting.
    void Show(HWND hwnd, bool show);
    // Visible with all of its parents.
    bool IsShown(HWND hwnd) const;

    void Invalidate(HWND hwnd, bool erase);
    void Validate(HWND hwnd);
    bool GetUpdateState(HWND hwnd, bool* erase) const;
    // Paints every shown window that has a paint due, parents first.
    void PaintPending();

    void SetCapture(HWND hwnd);
    void ReleaseCapture() { m_capture = nullptr; }
    HWND GetCapture() const { return m_capture; }
    void SetFocus(HWND hwnd);
    HWND GetFocus() const { return m_focus; }

    void SetMessageHandler(HWND hwnd, MessageHandler handler);
    LRESULT DefWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);

private:
    CPoint ScreenOrigin(HWND hwnd) const;

    HandleCounter& m_handles;
    std::map<std::uintptr_t, Window> m_windows; // creation order: parents first
    HWND m_capture = nullptr;
    HWND m_focus = nullptr;
};

} // namespace plotvane::headless
