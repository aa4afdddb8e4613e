// CWnd, the foundation of every window class, and the device contexts.
//
// As in MFC, a window class is an object with state and handlers, and a
// native window from the installed backend is attached to it when it is
// created (m_hWnd, null before). Handlers are public: backends deliver
// messages through CallWindowProc, and tests may call handlers directly.
// "Default handling" (Default) applies the window system's default to the
// message being dispatched to this window; called outside a dispatch, it
// does nothing.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/WinTypes.h>

#include <memory>
#include <vector>

class CWnd;

// A device context: for a window, the handle of its GL surface.
class CDC
{
public:
    CDC() = default;
    CDC(const CDC&) = delete;
    CDC& operator=(const CDC&) = delete;
    virtual ~CDC() = default;

    HDC GetSafeHdc() const { return m_hDC; }
    operator HDC() const { return m_hDC; }

    HDC m_hDC = nullptr;
};

// The device context of a window's client area, released on destruction.
class CClientDC : public CDC
{
public:
    explicit CClientDC(CWnd* pWnd);
    ~CClientDC() override;

protected:
    HWND m_hWnd = nullptr;
};

// The device context of a paint: BeginPaint (background erase included) on
// construction, EndPaint, which validates the window, on destruction.
class CPaintDC : public CDC
{
public:
    explicit CPaintDC(CWnd* pWnd);
    ~CPaintDC() override;

    PAINTSTRUCT m_ps;

protected:
    CWnd* m_pWnd;
};

class CWnd
{
public:
    CWnd() = default;
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;
    // Destroys the native window if it still exists.
    virtual ~CWnd();

    HWND GetSafeHwnd() const { return m_hWnd; }
    // The window object that owns a native window; null if none does.
    static CWnd* FromHandle(HWND hwnd);

    // Creation. rect is in the parent's client coordinates; nID is the
    // child id. PreCreateWindow may change the creation parameters.
    virtual BOOL Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                        const RECT& rect, CWnd* pParentWnd, UINT nID, void* pContext = nullptr);
    virtual BOOL CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName,
                          DWORD dwStyle, const RECT& rect, CWnd* pParentWnd, UINT nID,
                          void* lpParam = nullptr);
    virtual BOOL PreCreateWindow(CREATESTRUCT& cs);
    // Sends WM_DESTROY, destroys the child windows, then the native window.
    virtual BOOL DestroyWindow();

    // Geometry.
    void GetClientRect(LPRECT lpRect) const;
    void GetWindowRect(LPRECT lpRect) const;
    void ClientToScreen(LPPOINT lpPoint) const;
    void ScreenToClient(LPPOINT lpPoint) const;
    void MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint = TRUE);
    void MoveWindow(LPCRECT lpRect, BOOL bRepaint = TRUE);
    BOOL SetWindowPos(const CWnd* pWndInsertAfter, int x, int y, int cx, int cy, UINT nFlags);
    BOOL ShowWindow(int nCmdShow);
    BOOL IsWindowVisible() const;
    BOOL EnableWindow(BOOL bEnable = TRUE);
    BOOL IsWindowEnabled() const;
    void SetWindowText(LPCTSTR lpszString);
    void GetWindowText(CString& rString) const;
    int GetDlgCtrlID() const { return int(m_nDlgCtrlID); }
    CWnd* GetParent() const;

    // Painting. The update region is the whole client area or nothing.
    void Invalidate(BOOL bErase = TRUE);
    void InvalidateRect(LPCRECT lpRect, BOOL bErase = TRUE);
    void ValidateRect(LPCRECT lpRect);
    // Paints now (WM_PAINT, synchronously) if a paint is due.
    void UpdateWindow();
    BOOL RedrawWindow(LPCRECT lpRectUpdate = nullptr, void* prgnUpdate = nullptr,
                      UINT flags = RDW_INVALIDATE | RDW_UPDATENOW | RDW_ERASE);
    HDC BeginPaint(PAINTSTRUCT* lpPaint);
    void EndPaint(const PAINTSTRUCT* lpPaint);
    // A device context that the window keeps until ReleaseDC or its
    // destruction, so that a caller that never releases it leaks nothing.
    CDC* GetDC();
    int ReleaseDC(CDC* pDC);

    // Mouse capture and keyboard focus.
    CWnd* SetCapture();
    static CWnd* GetCapture();
    CWnd* SetFocus();
    static CWnd* GetFocus();

    // Messages. SendMessage dispatches synchronously to WindowProc.
    LRESULT SendMessage(UINT message, WPARAM wParam = 0, LPARAM lParam = 0);
    virtual LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    virtual LRESULT DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Default();
    virtual BOOL PreTranslateMessage(MSG* pMsg);
    // A caption of null is the application name.
    int MessageBox(LPCTSTR lpszText, LPCTSTR lpszCaption = nullptr, UINT nType = MB_OK);
    void BeginWaitCursor();
    void EndWaitCursor();

    // Handlers.
    virtual int OnCreate(LPCREATESTRUCT lpCreateStruct);
    virtual void OnDestroy();
    virtual void OnSize(UINT nType, int cx, int cy);
    virtual void OnPaint();
    virtual BOOL OnEraseBkgnd(CDC* pDC);
    virtual void OnWindowPosChanged(WINDOWPOS* lpwndpos);
    virtual void OnMouseMove(UINT nFlags, CPoint point);
    virtual void OnLButtonDown(UINT nFlags, CPoint point);
    virtual void OnLButtonUp(UINT nFlags, CPoint point);
    virtual void OnLButtonDblClk(UINT nFlags, CPoint point);
    virtual void OnRButtonDown(UINT nFlags, CPoint point);
    virtual void OnRButtonUp(UINT nFlags, CPoint point);
    virtual BOOL OnMouseWheel(UINT nFlags, short zDelta, CPoint pt);
    virtual void OnContextMenu(CWnd* pWnd, CPoint pos);
    virtual void OnKeyDown(UINT nChar, UINT nRepCnt, UINT nFlags);
    virtual void OnKeyUp(UINT nChar, UINT nRepCnt, UINT nFlags);
    // WM_COMMAND: a control's id in the low word of wParam. TRUE when
    // handled; unhandled commands go to DefWindowProc.
    virtual BOOL OnCommand(WPARAM wParam, LPARAM lParam);

    HWND m_hWnd = nullptr;

private:
    void ReleaseTempDCs();

    UINT m_nDlgCtrlID = 0;
    std::vector<std::unique_ptr<CClientDC>> m_tempDCs;
};

namespace plotvane
{

// Delivers a message to a window object as the window system does: the
// message becomes the one that Default() applies to.
LRESULT CallWindowProc(CWnd* pWnd, UINT message, WPARAM wParam, LPARAM lParam);

// What a message loop does with a queued message: PreTranslateMessage of the
// target window and then of each parent, and unless one of them consumed the
// message, WindowProc of the target. Answers whether it was consumed.
bool DispatchWindowMessage(MSG& msg);

} // namespace plotvane

// The Win32 free functions on windows.
BOOL ReleaseCapture();
