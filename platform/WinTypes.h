// The Win32 vocabulary that window code is written in: handles, rectangles,
// sizes, messages, key codes, styles and the pixel format descriptor. The
// numbers are Win32's own, so that code, messages and archives keep the
// values they have always had. Handles are opaque: a backend maps them to its
// own objects and refuses a handle it no longer knows.
#pragma once

#include <plotvane/foundation/Types.h>
#include <plotvane/foundation/ValueTypes.h>

#include <cstdint>

using SHORT = std::int16_t;
using WPARAM = std::uintptr_t;
using LPARAM = std::intptr_t;
using LRESULT = std::intptr_t;
using LPCTSTR = const char*;

using HWND = struct HWND__*;
using HDC = struct HDC__*;
using HGLRC = struct HGLRC__*;

#ifndef LOWORD
#define LOWORD(l) ((WORD)(((std::uintptr_t)(l)) & 0xffff))
#define HIWORD(l) ((WORD)((((std::uintptr_t)(l)) >> 16) & 0xffff))
#endif
#define MAKELONG(a, b) ((LONG)(((WORD)((a)&0xffff)) | ((DWORD)((WORD)((b)&0xffff))) << 16))
#define MAKELPARAM(l, h) ((LPARAM)(DWORD)MAKELONG(l, h))
#define MAKEWPARAM(l, h) ((WPARAM)(DWORD)MAKELONG(l, h))
#define GET_X_LPARAM(lp) ((int)(short)LOWORD(lp))
#define GET_Y_LPARAM(lp) ((int)(short)HIWORD(lp))
#define GET_WHEEL_DELTA_WPARAM(wp) ((short)HIWORD(wp))
#define WHEEL_DELTA 120

struct tagSIZE
{
    LONG cx = 0;
    LONG cy = 0;
};
using SIZE = tagSIZE;
using LPRECT = RECT*;
using LPCRECT = const RECT*;
using LPPOINT = POINT*;

class CSize : public tagSIZE
{
public:
    CSize() = default;
    CSize(int x, int y)
    {
        cx = x;
        cy = y;
    }
    bool operator==(const CSize& o) const { return cx == o.cx && cy == o.cy; }
    bool operator!=(const CSize& o) const { return !(*this == o); }
};

// An integer rectangle with the MFC shape: right and bottom lie outside.
class CRect : public tagRECT
{
public:
    CRect() = default;
    CRect(int l, int t, int r, int b) { SetRect(l, t, r, b); }
    CRect(const RECT& rc) : tagRECT(rc) {}
    CRect(const POINT& pt, const SIZE& sz) { SetRect(pt.x, pt.y, pt.x + sz.cx, pt.y + sz.cy); }
    CRect(const POINT& topLeft, const POINT& bottomRight)
    {
        SetRect(topLeft.x, topLeft.y, bottomRight.x, bottomRight.y);
    }

    int Width() const { return right - left; }
    int Height() const { return bottom - top; }
    CSize Size() const { return CSize(Width(), Height()); }
    CPoint TopLeft() const { return CPoint(left, top); }
    CPoint BottomRight() const { return CPoint(right, bottom); }
    CPoint CenterPoint() const { return CPoint((left + right) / 2, (top + bottom) / 2); }
    bool IsRectEmpty() const { return Width() <= 0 || Height() <= 0; }
    bool IsRectNull() const { return left == 0 && top == 0 && right == 0 && bottom == 0; }
    bool PtInRect(const POINT& pt) const
    {
        return pt.x >= left && pt.x < right && pt.y >= top && pt.y < bottom;
    }
    void SetRect(int l, int t, int r, int b)
    {
        left = l;
        top = t;
        right = r;
        bottom = b;
    }
    void SetRectEmpty() { SetRect(0, 0, 0, 0); }
    void OffsetRect(int dx, int dy)
    {
        left += dx;
        right += dx;
        top += dy;
        bottom += dy;
    }
    void InflateRect(int dx, int dy)
    {
        left -= dx;
        right += dx;
        top -= dy;
        bottom += dy;
    }
    void DeflateRect(int dx, int dy) { InflateRect(-dx, -dy); }
    void NormalizeRect();
    bool operator==(const RECT& o) const
    {
        return left == o.left && top == o.top && right == o.right && bottom == o.bottom;
    }
    bool operator!=(const RECT& o) const { return !(*this == o); }
};

inline void CRect::NormalizeRect()
{
    if (left > right)
    {
        LONG t = left;
        left = right;
        right = t;
    }
    if (top > bottom)
    {
        LONG t = top;
        top = bottom;
        bottom = t;
    }
}

// A queued window message as a message loop hands it to PreTranslateMessage.
struct MSG
{
    HWND hwnd = nullptr;
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
    DWORD time = 0;
    POINT pt;
};

class CWnd;

struct CREATESTRUCT
{
    void* lpCreateParams = nullptr;
    HWND hwndParent = nullptr;
    UINT hMenu = 0; // the child id
    int cy = 0;
    int cx = 0;
    int y = 0;
    int x = 0;
    LONG style = 0;
    LPCTSTR lpszName = nullptr;
    LPCTSTR lpszClass = nullptr;
    DWORD dwExStyle = 0;
};
using LPCREATESTRUCT = CREATESTRUCT*;

struct WINDOWPOS
{
    HWND hwnd = nullptr;
    HWND hwndInsertAfter = nullptr;
    int x = 0;
    int y = 0;
    int cx = 0;
    int cy = 0;
    UINT flags = 0;
};

struct PAINTSTRUCT
{
    HDC hdc = nullptr;
    BOOL fErase = FALSE;
    RECT rcPaint;
};

// Messages.
constexpr UINT WM_NULL = 0x0000;
constexpr UINT WM_CREATE = 0x0001;
constexpr UINT WM_DESTROY = 0x0002;
constexpr UINT WM_MOVE = 0x0003;
constexpr UINT WM_SIZE = 0x0005;
constexpr UINT WM_SETFOCUS = 0x0007;
constexpr UINT WM_KILLFOCUS = 0x0008;
constexpr UINT WM_PAINT = 0x000F;
constexpr UINT WM_CLOSE = 0x0010;
constexpr UINT WM_ERASEBKGND = 0x0014;
constexpr UINT WM_WINDOWPOSCHANGED = 0x0047;
constexpr UINT WM_CONTEXTMENU = 0x007B;
constexpr UINT WM_KEYDOWN = 0x0100;
constexpr UINT WM_KEYUP = 0x0101;
constexpr UINT WM_CHAR = 0x0102;
constexpr UINT WM_SYSKEYDOWN = 0x0104;
constexpr UINT WM_SYSKEYUP = 0x0105;
constexpr UINT WM_COMMAND = 0x0111;
constexpr UINT WM_MOUSEMOVE = 0x0200;
constexpr UINT WM_LBUTTONDOWN = 0x0201;
constexpr UINT WM_LBUTTONUP = 0x0202;
constexpr UINT WM_LBUTTONDBLCLK = 0x0203;
constexpr UINT WM_RBUTTONDOWN = 0x0204;
constexpr UINT WM_RBUTTONUP = 0x0205;
constexpr UINT WM_MOUSEWHEEL = 0x020A;
constexpr UINT WM_USER = 0x0400;

// Size types of WM_SIZE.
constexpr UINT SIZE_RESTORED = 0;

// Mouse key flags.
constexpr UINT MK_LBUTTON = 0x0001;
constexpr UINT MK_RBUTTON = 0x0002;
constexpr UINT MK_SHIFT = 0x0004;
constexpr UINT MK_CONTROL = 0x0008;
constexpr UINT MK_MBUTTON = 0x0010;

// Virtual key codes; letters and digits are their upper-case ASCII codes.
constexpr int VK_LBUTTON = 0x01;
constexpr int VK_RBUTTON = 0x02;
constexpr int VK_MBUTTON = 0x04;
constexpr int VK_BACK = 0x08;
constexpr int VK_TAB = 0x09;
constexpr int VK_RETURN = 0x0D;
constexpr int VK_SHIFT = 0x10;
constexpr int VK_CONTROL = 0x11;
constexpr int VK_MENU = 0x12;
constexpr int VK_ESCAPE = 0x1B;
constexpr int VK_SPACE = 0x20;
constexpr int VK_PRIOR = 0x21;
constexpr int VK_NEXT = 0x22;
constexpr int VK_END = 0x23;
constexpr int VK_HOME = 0x24;
constexpr int VK_LEFT = 0x25;
constexpr int VK_UP = 0x26;
constexpr int VK_RIGHT = 0x27;
constexpr int VK_DOWN = 0x28;
constexpr int VK_INSERT = 0x2D;
constexpr int VK_DELETE = 0x2E;
constexpr int VK_F1 = 0x70;

// Message boxes.
constexpr UINT MB_OK = 0x00000000;
constexpr UINT MB_OKCANCEL = 0x00000001;
constexpr UINT MB_YESNOCANCEL = 0x00000003;
constexpr UINT MB_YESNO = 0x00000004;
constexpr UINT MB_ICONERROR = 0x00000010;
constexpr UINT MB_ICONQUESTION = 0x00000020;
constexpr UINT MB_ICONWARNING = 0x00000030;
constexpr UINT MB_ICONINFORMATION = 0x00000040;
constexpr UINT MB_TYPEMASK = 0x0000000F;
constexpr int IDOK = 1;
constexpr int IDCANCEL = 2;
constexpr int IDYES = 6;
constexpr int IDNO = 7;

// RedrawWindow flags.
constexpr UINT RDW_INVALIDATE = 0x0001;
constexpr UINT RDW_INTERNALPAINT = 0x0002;
constexpr UINT RDW_ERASE = 0x0004;
constexpr UINT RDW_VALIDATE = 0x0008;
constexpr UINT RDW_NOINTERNALPAINT = 0x0010;
constexpr UINT RDW_NOERASE = 0x0020;
constexpr UINT RDW_NOCHILDREN = 0x0040;
constexpr UINT RDW_ALLCHILDREN = 0x0080;
constexpr UINT RDW_UPDATENOW = 0x0100;
constexpr UINT RDW_ERASENOW = 0x0200;
constexpr UINT RDW_FRAME = 0x0400;
constexpr UINT RDW_NOFRAME = 0x0800;

// Window styles.
constexpr DWORD WS_OVERLAPPED = 0x00000000;
constexpr DWORD WS_POPUP = 0x80000000;
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_VISIBLE = 0x10000000;
constexpr DWORD WS_DISABLED = 0x08000000;
constexpr DWORD WS_CLIPSIBLINGS = 0x04000000;
constexpr DWORD WS_CLIPCHILDREN = 0x02000000;
constexpr DWORD WS_CAPTION = 0x00C00000;
constexpr DWORD WS_SYSMENU = 0x00080000;
constexpr DWORD DS_MODALFRAME = 0x00000080;
constexpr DWORD WS_BORDER = 0x00800000;
constexpr DWORD WS_VSCROLL = 0x00200000;
constexpr DWORD WS_HSCROLL = 0x00100000;
constexpr DWORD WS_GROUP = 0x00020000;
constexpr DWORD WS_TABSTOP = 0x00010000;

// ShowWindow commands.
constexpr int SW_HIDE = 0;
constexpr int SW_SHOWNORMAL = 1;
constexpr int SW_SHOW = 5;

// SetWindowPos flags.
constexpr UINT SWP_NOSIZE = 0x0001;
constexpr UINT SWP_NOMOVE = 0x0002;
constexpr UINT SWP_NOZORDER = 0x0004;
constexpr UINT SWP_NOREDRAW = 0x0008;
constexpr UINT SWP_NOACTIVATE = 0x0010;
constexpr UINT SWP_SHOWWINDOW = 0x0040;
constexpr UINT SWP_HIDEWINDOW = 0x0080;

// The pixel format descriptor, field for field as Win32 lays it out.
struct PIXELFORMATDESCRIPTOR
{
    WORD nSize;
    WORD nVersion;
    DWORD dwFlags;
    BYTE iPixelType;
    BYTE cColorBits;
    BYTE cRedBits;
    BYTE cRedShift;
    BYTE cGreenBits;
    BYTE cGreenShift;
    BYTE cBlueBits;
    BYTE cBlueShift;
    BYTE cAlphaBits;
    BYTE cAlphaShift;
    BYTE cAccumBits;
    BYTE cAccumRedBits;
    BYTE cAccumGreenBits;
    BYTE cAccumBlueBits;
    BYTE cAccumAlphaBits;
    BYTE cDepthBits;
    BYTE cStencilBits;
    BYTE cAuxBuffers;
    BYTE iLayerType;
    BYTE bReserved;
    DWORD dwLayerMask;
    DWORD dwVisibleMask;
    DWORD dwDamageMask;
};
using LPPIXELFORMATDESCRIPTOR = PIXELFORMATDESCRIPTOR*;
static_assert(sizeof(PIXELFORMATDESCRIPTOR) == 40,
              "the descriptor size is part of the format search");

constexpr DWORD PFD_DOUBLEBUFFER = 0x00000001;
constexpr DWORD PFD_STEREO = 0x00000002;
constexpr DWORD PFD_DRAW_TO_WINDOW = 0x00000004;
constexpr DWORD PFD_DRAW_TO_BITMAP = 0x00000008;
constexpr DWORD PFD_SUPPORT_GDI = 0x00000010;
constexpr DWORD PFD_SUPPORT_OPENGL = 0x00000020;
constexpr DWORD PFD_GENERIC_FORMAT = 0x00000040;
constexpr DWORD PFD_NEED_PALETTE = 0x00000080;
constexpr DWORD PFD_NEED_SYSTEM_PALETTE = 0x00000100;
constexpr DWORD PFD_SWAP_EXCHANGE = 0x00000200;
constexpr DWORD PFD_SWAP_COPY = 0x00000400;
constexpr DWORD PFD_SWAP_LAYER_BUFFERS = 0x00000800;
constexpr DWORD PFD_GENERIC_ACCELERATED = 0x00001000;
constexpr DWORD PFD_SUPPORT_DIRECTDRAW = 0x00002000;
constexpr DWORD PFD_DIRECT3D_ACCELERATED = 0x00004000;
constexpr DWORD PFD_SUPPORT_COMPOSITION = 0x00008000;
constexpr DWORD PFD_DEPTH_DONTCARE = 0x20000000;
constexpr DWORD PFD_DOUBLEBUFFER_DONTCARE = 0x40000000;
constexpr DWORD PFD_STEREO_DONTCARE = 0x80000000;

constexpr BYTE PFD_TYPE_RGBA = 0;
constexpr BYTE PFD_TYPE_COLORINDEX = 1;
constexpr BYTE PFD_MAIN_PLANE = 0;
constexpr BYTE PFD_OVERLAY_PLANE = 1;
constexpr BYTE PFD_UNDERLAY_PLANE = 0xFF;
