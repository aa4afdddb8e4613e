// The wx windows behind CWnd objects and what the backend keeps for each:
// a record per window, whose address is the window's handle (and, for a GL
// window, its device context). Internal to the wx backend.
#pragma once

#include <plotvane/platform/Image.h>
#include <plotvane/platform/WinTypes.h>

#include <wx/glcanvas.h>
#include <wx/panel.h>

class CWnd;
class wxWindow;

namespace plotvane::wx
{

struct WindowRecord
{
    CWnd* owner = nullptr;
    wxWindow* window = nullptr;
    wxGLCanvas* canvas = nullptr; // the same window, for a GL window
    bool ownsWindow = true;       // false for a host's window attached to a CWnd
    bool topLevel = false;
    bool paintDue = false;
    bool eraseDue = false;
    bool moving = false;          // a move asked by the core: no message back
    int pixelFormat = 0;
    Image front;                  // the frame of the last swap
};

inline HWND HandleOf(WindowRecord* r)
{
    return reinterpret_cast<HWND>(r);
}
inline WindowRecord* RecordOf(HWND h)
{
    return reinterpret_cast<WindowRecord*>(h);
}

// Whether the window has pixels to paint. GTK shows a window before it
// gets its size; a GL paint then would fit the view to an empty client
// area, which the view's projection cannot take.
bool HasArea(const WindowRecord& r);

// Routes a wx window's events to its record's window object as messages.
void BindWindowEvents(WindowRecord& record);

// The wx key code of a virtual key, or 0 when wx has none.
int WxKeyOf(int vk);
// The virtual key of a wx key event, or 0.
int VirtualKeyOf(int wxKey);

// A GL window: double-buffered RGBA with depth and stencil.
wxGLCanvas* MakeGLCanvas(wxWindow* parent, wxWindowID id, const wxPoint& pos, const wxSize& size);

} // namespace plotvane::wx
