#include <plotvane/platform/wx/WxWindows.h>

#include <plotvane/platform/Wnd.h>

#include <wx/dcclient.h>
#include <wx/window.h>

namespace plotvane::wx
{

namespace
{

struct KeyPair
{
    int vk;
    int wxKey;
};

constexpr KeyPair kKeys[] = {
    {VK_BACK, WXK_BACK},     {VK_TAB, WXK_TAB},       {VK_RETURN, WXK_RETURN},
    {VK_SHIFT, WXK_SHIFT},   {VK_CONTROL, WXK_CONTROL}, {VK_MENU, WXK_ALT},
    {VK_ESCAPE, WXK_ESCAPE}, {VK_SPACE, WXK_SPACE},   {VK_PRIOR, WXK_PAGEUP},
    {VK_NEXT, WXK_PAGEDOWN}, {VK_END, WXK_END},       {VK_HOME, WXK_HOME},
    {VK_LEFT, WXK_LEFT},     {VK_UP, WXK_UP},         {VK_RIGHT, WXK_RIGHT},
    {VK_DOWN, WXK_DOWN},     {VK_INSERT, WXK_INSERT}, {VK_DELETE, WXK_DELETE},
};

UINT MouseFlags(const wxMouseState& m)
{
    UINT flags = 0;
    if (m.LeftIsDown())
        flags |= MK_LBUTTON;
    if (m.RightIsDown())
        flags |= MK_RBUTTON;
    if (m.MiddleIsDown())
        flags |= MK_MBUTTON;
    if (m.ShiftDown())
        flags |= MK_SHIFT;
    if (m.ControlDown())
        flags |= MK_CONTROL;
    return flags;
}

// Input goes the way a message loop sends it: PreTranslateMessage of the
// window and its parents first.
// Answers whether a PreTranslateMessage consumed the message.
bool Post(WindowRecord& r, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (r.owner == nullptr)
        return false;
    MSG msg;
    msg.hwnd = HandleOf(&r);
    msg.message = message;
    msg.wParam = wParam;
    msg.lParam = lParam;
    return DispatchWindowMessage(msg);
}

LPARAM PointParam(int x, int y)
{
    return LPARAM(DWORD(WORD(x)) | (DWORD(WORD(y)) << 16));
}

void OnMouse(WindowRecord& r, wxMouseEvent& e)
{
    const wxEventType t = e.GetEventType();
    const LPARAM at = PointParam(e.GetX(), e.GetY());
    const UINT flags = MouseFlags(e);
    if (t == wxEVT_LEFT_DOWN || t == wxEVT_RIGHT_DOWN)
    {
        // Clicks give the keyboard to the window, as on Windows.
        if (r.window->AcceptsFocus())
            r.window->SetFocus();
    }
    if (t == wxEVT_MOTION)
        Post(r, WM_MOUSEMOVE, flags, at);
    else if (t == wxEVT_LEFT_DOWN)
        Post(r, WM_LBUTTONDOWN, flags, at);
    else if (t == wxEVT_LEFT_UP)
        Post(r, WM_LBUTTONUP, flags, at);
    else if (t == wxEVT_LEFT_DCLICK)
        Post(r, WM_LBUTTONDBLCLK, flags, at);
    else if (t == wxEVT_RIGHT_DOWN || t == wxEVT_RIGHT_DCLICK)
        Post(r, WM_RBUTTONDOWN, flags, at);
    else if (t == wxEVT_RIGHT_UP)
        Post(r, WM_RBUTTONUP, flags, at);
    else if (t == wxEVT_MOUSEWHEEL)
    {
        // One notch is WHEEL_DELTA; the point is in screen coordinates.
        const int delta = e.GetWheelDelta() > 0
                              ? e.GetWheelRotation() * WHEEL_DELTA / e.GetWheelDelta()
                              : e.GetWheelRotation();
        const wxPoint screen = r.window->ClientToScreen(e.GetPosition());
        const WPARAM wParam = WPARAM(flags & 0xffff) | (WPARAM(WORD(short(delta))) << 16);
        Post(r, WM_MOUSEWHEEL, wParam, PointParam(screen.x, screen.y));
    }
    e.Skip();
}

void OnKey(WindowRecord& r, wxKeyEvent& e, UINT message)
{
    const int vk = VirtualKeyOf(e.GetKeyCode());
    if (vk == 0)
    {
        e.Skip();
        return;
    }
    // A native control (an edit, a list) still takes the key, as a
    // control's default handling does; the GL window handles its own.
    if (!Post(r, message, WPARAM(vk), 1) && r.canvas == nullptr)
        e.Skip();
}

} // namespace

bool HasArea(const WindowRecord& r)
{
    const wxSize s = r.window->GetClientSize();
    return s.x > 0 && s.y > 0;
}

int WxKeyOf(int vk)
{
    for (const KeyPair& k : kKeys)
    {
        if (k.vk == vk)
            return k.wxKey;
    }
    if ((vk >= '0' && vk <= '9') || (vk >= 'A' && vk <= 'Z'))
        return vk;
    if (vk >= VK_F1 && vk < VK_F1 + 12)
        return WXK_F1 + (vk - VK_F1);
    return 0;
}

int VirtualKeyOf(int wxKey)
{
    for (const KeyPair& k : kKeys)
    {
        if (k.wxKey == wxKey)
            return k.vk;
    }
    if ((wxKey >= '0' && wxKey <= '9') || (wxKey >= 'A' && wxKey <= 'Z'))
        return wxKey;
    if (wxKey >= 'a' && wxKey <= 'z')
        return wxKey - 'a' + 'A';
    if (wxKey >= WXK_F1 && wxKey <= WXK_F12)
        return VK_F1 + (wxKey - WXK_F1);
    return 0;
}

void BindWindowEvents(WindowRecord& record)
{
    WindowRecord* r = &record;
    wxWindow* w = record.window;
    w->Bind(wxEVT_PAINT, [r](wxPaintEvent&) {
        // The paint DC must exist during the paint on GTK; the window
        // object draws with GL (or nothing) and validates.
        wxPaintDC dc(r->window);
        r->paintDue = true;
        if (r->owner != nullptr && HasArea(*r))
            CallWindowProc(r->owner, WM_PAINT, 0, 0);
        r->paintDue = false;
    });
    // GL owns the canvas; plain windows erase as wx does.
    if (record.canvas != nullptr)
        w->Bind(wxEVT_ERASE_BACKGROUND, [](wxEraseEvent&) {});
    w->Bind(wxEVT_SIZE, [r](wxSizeEvent& e) {
        e.Skip();
        if (r->owner == nullptr || r->moving)
            return;
        const wxSize s = r->window->GetClientSize();
        if (r->topLevel)
        {
            // The user resized a top-level window: the layout handlers of
            // the window object hear of it as of any move.
            WINDOWPOS wp;
            wp.hwnd = HandleOf(r);
            wp.cx = s.x;
            wp.cy = s.y;
            wp.flags = SWP_NOMOVE | SWP_NOZORDER;
            CallWindowProc(r->owner, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&wp));
        }
        else
        {
            CallWindowProc(r->owner, WM_SIZE, SIZE_RESTORED, PointParam(s.x, s.y));
        }
    });
    const auto mouse = [r](wxMouseEvent& e) { OnMouse(*r, e); };
    for (const wxEventTypeTag<wxMouseEvent>& t :
         {wxEVT_MOTION, wxEVT_LEFT_DOWN, wxEVT_LEFT_UP, wxEVT_LEFT_DCLICK, wxEVT_RIGHT_DOWN,
          wxEVT_RIGHT_UP, wxEVT_RIGHT_DCLICK, wxEVT_MOUSEWHEEL})
        w->Bind(t, mouse);
    w->Bind(wxEVT_KEY_DOWN, [r](wxKeyEvent& e) { OnKey(*r, e, WM_KEYDOWN); });
    w->Bind(wxEVT_KEY_UP, [r](wxKeyEvent& e) { OnKey(*r, e, WM_KEYUP); });
    w->Bind(wxEVT_SET_FOCUS, [r](wxFocusEvent& e) {
        e.Skip();
        if (r->owner != nullptr)
            CallWindowProc(r->owner, WM_SETFOCUS, 0, 0);
    });
    w->Bind(wxEVT_KILL_FOCUS, [r](wxFocusEvent& e) {
        e.Skip();
        if (r->owner != nullptr)
            CallWindowProc(r->owner, WM_KILLFOCUS, 0, 0);
    });
    // A capture taken away by the window system (a popup, another
    // application) ends the drag as a release would.
    w->Bind(wxEVT_MOUSE_CAPTURE_LOST, [](wxMouseCaptureLostEvent&) {});
}

wxGLCanvas* MakeGLCanvas(wxWindow* parent, wxWindowID id, const wxPoint& pos, const wxSize& size)
{
    wxGLAttributes attrs;
    attrs.PlatformDefaults().RGBA().DoubleBuffer().Depth(16).Stencil(1).EndList();
    if (!wxGLCanvas::IsDisplaySupported(attrs))
    {
        attrs.Reset();
        attrs.PlatformDefaults().RGBA().DoubleBuffer().Depth(16).EndList();
    }
    return new wxGLCanvas(parent, attrs, id, pos, size, wxFULL_REPAINT_ON_RESIZE | wxWANTS_CHARS);
}

} // namespace plotvane::wx
