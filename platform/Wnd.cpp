#include <plotvane/platform/Wnd.h>

#include <plotvane/platform/Backend.h>

#include <algorithm>

namespace
{

// The message being dispatched on this thread, for Default().
struct CurrentMessage
{
    CWnd* pWnd = nullptr;
    UINT message = 0;
    WPARAM wParam = 0;
    LPARAM lParam = 0;
};
thread_local CurrentMessage t_current;

CPoint PointOf(LPARAM lParam)
{
    return CPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
}

LPARAM LParamOf(const POINT& pt)
{
    return MAKELPARAM(pt.x, pt.y);
}

} // namespace

namespace plotvane
{

LRESULT CallWindowProc(CWnd* pWnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (pWnd == nullptr)
        return 0;
    const CurrentMessage saved = t_current;
    t_current = CurrentMessage{pWnd, message, wParam, lParam};
    const LRESULT result = pWnd->WindowProc(message, wParam, lParam);
    t_current = saved;
    return result;
}

bool DispatchWindowMessage(MSG& msg)
{
    CWnd* pTarget = CWnd::FromHandle(msg.hwnd);
    if (pTarget == nullptr)
        return false;
    for (CWnd* pWnd = pTarget; pWnd != nullptr; pWnd = pWnd->GetParent())
    {
        if (pWnd->PreTranslateMessage(&msg))
            return true;
    }
    CallWindowProc(pTarget, msg.message, msg.wParam, msg.lParam);
    return false;
}

} // namespace plotvane

// ---------------------------------------------------------------------------
// Device contexts

CClientDC::CClientDC(CWnd* pWnd) : m_hWnd(pWnd ? pWnd->GetSafeHwnd() : nullptr)
{
    if (m_hWnd != nullptr)
        m_hDC = plotvane::GetBackend().GetDC(m_hWnd);
}

CClientDC::~CClientDC()
{
    if (m_hDC != nullptr)
        plotvane::GetBackend().ReleaseDC(m_hWnd, m_hDC);
}

CPaintDC::CPaintDC(CWnd* pWnd) : m_pWnd(pWnd)
{
    m_hDC = m_pWnd->BeginPaint(&m_ps);
}

CPaintDC::~CPaintDC()
{
    m_pWnd->EndPaint(&m_ps);
}

// ---------------------------------------------------------------------------
// Creation and destruction

CWnd::~CWnd()
{
    if (m_hWnd != nullptr)
        DestroyWindow();
    ReleaseTempDCs();
}

CWnd* CWnd::FromHandle(HWND hwnd)
{
    return hwnd != nullptr ? plotvane::GetBackend().GetOwner(hwnd) : nullptr;
}

BOOL CWnd::Create(LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle, const RECT& rect,
                  CWnd* pParentWnd, UINT nID, void* pContext)
{
    return CreateEx(0, lpszClassName, lpszWindowName, dwStyle, rect, pParentWnd, nID, pContext);
}

BOOL CWnd::CreateEx(DWORD dwExStyle, LPCTSTR lpszClassName, LPCTSTR lpszWindowName, DWORD dwStyle,
                    const RECT& rect, CWnd* pParentWnd, UINT nID, void* lpParam)
{
    // A parent object without a window is a caller's mistake, not a request
    // for a top-level window.
    if (m_hWnd != nullptr || (pParentWnd != nullptr && pParentWnd->m_hWnd == nullptr))
        return FALSE;

    CREATESTRUCT cs;
    cs.dwExStyle = dwExStyle;
    cs.lpszClass = lpszClassName;
    cs.lpszName = lpszWindowName;
    cs.style = LONG(dwStyle);
    cs.x = rect.left;
    cs.y = rect.top;
    cs.cx = rect.right - rect.left;
    cs.cy = rect.bottom - rect.top;
    cs.hwndParent = pParentWnd != nullptr ? pParentWnd->m_hWnd : nullptr;
    cs.hMenu = nID;
    cs.lpCreateParams = lpParam;
    if (!PreCreateWindow(cs))
        return FALSE;

    plotvane::WindowParams params;
    params.parent = cs.hwndParent;
    params.rect = CRect(cs.x, cs.y, cs.x + cs.cx, cs.y + cs.cy);
    params.style = DWORD(cs.style);
    params.id = cs.hMenu;
    params.text = cs.lpszName;
    params.className = cs.lpszClass;
    HWND hwnd = plotvane::GetBackend().CreateNativeWindow(this, params);
    if (hwnd == nullptr)
        return FALSE;
    m_hWnd = hwnd;
    m_nDlgCtrlID = cs.hMenu;

    if (plotvane::CallWindowProc(this, WM_CREATE, 0, reinterpret_cast<LPARAM>(&cs)) == -1)
    {
        DestroyWindow();
        return FALSE;
    }
    CRect rc;
    GetClientRect(&rc);
    plotvane::CallWindowProc(this, WM_SIZE, SIZE_RESTORED, MAKELPARAM(rc.Width(), rc.Height()));
    return TRUE;
}

BOOL CWnd::PreCreateWindow(CREATESTRUCT& /*cs*/)
{
    return TRUE;
}

BOOL CWnd::DestroyWindow()
{
    if (m_hWnd == nullptr)
        return FALSE;
    plotvane::Backend& backend = plotvane::GetBackend();
    plotvane::CallWindowProc(this, WM_DESTROY, 0, 0);
    if (m_hWnd == nullptr) // a handler destroyed it already
        return TRUE;
    for (HWND child : backend.GetChildWindows(m_hWnd))
    {
        if (CWnd* pChild = FromHandle(child))
            pChild->DestroyWindow();
        else
            backend.DestroyNativeWindow(child);
    }
    ReleaseTempDCs();
    backend.DestroyNativeWindow(m_hWnd);
    m_hWnd = nullptr;
    return TRUE;
}

// ---------------------------------------------------------------------------
// Geometry

void CWnd::GetClientRect(LPRECT lpRect) const
{
    *lpRect = m_hWnd != nullptr ? plotvane::GetBackend().GetClientRect(m_hWnd) : CRect();
}

void CWnd::GetWindowRect(LPRECT lpRect) const
{
    *lpRect = m_hWnd != nullptr ? plotvane::GetBackend().GetWindowRect(m_hWnd) : CRect();
}

void CWnd::ClientToScreen(LPPOINT lpPoint) const
{
    if (m_hWnd != nullptr)
        *lpPoint = plotvane::GetBackend().ClientToScreen(m_hWnd, *lpPoint);
}

void CWnd::ScreenToClient(LPPOINT lpPoint) const
{
    if (m_hWnd == nullptr)
        return;
    const CPoint origin = plotvane::GetBackend().ClientToScreen(m_hWnd, CPoint(0, 0));
    lpPoint->x -= origin.x;
    lpPoint->y -= origin.y;
}

void CWnd::MoveWindow(int x, int y, int nWidth, int nHeight, BOOL bRepaint)
{
    SetWindowPos(nullptr, x, y, nWidth, nHeight,
                 SWP_NOZORDER | SWP_NOACTIVATE | (bRepaint ? 0 : SWP_NOREDRAW));
}

void CWnd::MoveWindow(LPCRECT lpRect, BOOL bRepaint)
{
    MoveWindow(lpRect->left, lpRect->top, lpRect->right - lpRect->left,
               lpRect->bottom - lpRect->top, bRepaint);
}

BOOL CWnd::SetWindowPos(const CWnd* /*pWndInsertAfter*/, int x, int y, int cx, int cy, UINT nFlags)
{
    if (m_hWnd == nullptr)
        return FALSE;
    plotvane::Backend& backend = plotvane::GetBackend();

    // The current place in the parent's client coordinates.
    CRect rc = backend.GetWindowRect(m_hWnd);
    if (CWnd* pParent = GetParent())
    {
        CPoint topLeft = rc.TopLeft();
        pParent->ScreenToClient(&topLeft);
        rc.OffsetRect(topLeft.x - rc.left, topLeft.y - rc.top);
    }
    CRect target = rc;
    if (!(nFlags & SWP_NOMOVE))
        target.OffsetRect(x - rc.left, y - rc.top);
    if (!(nFlags & SWP_NOSIZE))
    {
        target.right = target.left + cx;
        target.bottom = target.top + cy;
    }
    const bool resized = target.Size() != rc.Size();
    if (target != rc)
        backend.MoveNativeWindow(m_hWnd, target);
    if (nFlags & SWP_SHOWWINDOW)
        backend.ShowNativeWindow(m_hWnd, true);
    if (nFlags & SWP_HIDEWINDOW)
        backend.ShowNativeWindow(m_hWnd, false);
    if (resized && !(nFlags & SWP_NOREDRAW))
        backend.InvalidateRect(m_hWnd, nullptr, true);

    WINDOWPOS wp;
    wp.hwnd = m_hWnd;
    wp.x = target.left;
    wp.y = target.top;
    wp.cx = target.Width();
    wp.cy = target.Height();
    wp.flags = nFlags;
    plotvane::CallWindowProc(this, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&wp));
    return TRUE;
}

BOOL CWnd::ShowWindow(int nCmdShow)
{
    if (m_hWnd == nullptr)
        return FALSE;
    plotvane::Backend& backend = plotvane::GetBackend();
    const bool wasVisible = backend.IsWindowVisible(m_hWnd);
    backend.ShowNativeWindow(m_hWnd, nCmdShow != SW_HIDE);
    return wasVisible ? TRUE : FALSE;
}

BOOL CWnd::IsWindowVisible() const
{
    return m_hWnd != nullptr && plotvane::GetBackend().IsWindowVisible(m_hWnd);
}

BOOL CWnd::EnableWindow(BOOL bEnable)
{
    if (m_hWnd == nullptr)
        return FALSE;
    plotvane::Backend& backend = plotvane::GetBackend();
    const bool wasDisabled = !backend.IsWindowEnabled(m_hWnd);
    backend.EnableNativeWindow(m_hWnd, bEnable != FALSE);
    return wasDisabled ? TRUE : FALSE;
}

BOOL CWnd::IsWindowEnabled() const
{
    return m_hWnd != nullptr && plotvane::GetBackend().IsWindowEnabled(m_hWnd);
}

void CWnd::SetWindowText(LPCTSTR lpszString)
{
    if (m_hWnd != nullptr)
        plotvane::GetBackend().SetWindowText(m_hWnd, lpszString);
}

void CWnd::GetWindowText(CString& rString) const
{
    rString = m_hWnd != nullptr ? plotvane::GetBackend().GetWindowText(m_hWnd) : CString();
}

CWnd* CWnd::GetParent() const
{
    return m_hWnd != nullptr ? FromHandle(plotvane::GetBackend().GetParentWindow(m_hWnd)) : nullptr;
}

// ---------------------------------------------------------------------------
// Painting

void CWnd::Invalidate(BOOL bErase)
{
    InvalidateRect(nullptr, bErase);
}

void CWnd::InvalidateRect(LPCRECT lpRect, BOOL bErase)
{
    if (m_hWnd != nullptr)
        plotvane::GetBackend().InvalidateRect(m_hWnd, lpRect, bErase != FALSE);
}

void CWnd::ValidateRect(LPCRECT lpRect)
{
    if (m_hWnd != nullptr)
        plotvane::GetBackend().ValidateRect(m_hWnd, lpRect);
}

void CWnd::UpdateWindow()
{
    bool erase = false;
    if (m_hWnd != nullptr && plotvane::GetBackend().GetUpdateState(m_hWnd, &erase))
        SendMessage(WM_PAINT);
}

BOOL CWnd::RedrawWindow(LPCRECT lpRectUpdate, void* /*prgnUpdate*/, UINT flags)
{
    if (m_hWnd == nullptr)
        return FALSE;
    plotvane::Backend& backend = plotvane::GetBackend();
    if (flags & RDW_INVALIDATE)
        backend.InvalidateRect(m_hWnd, lpRectUpdate, (flags & RDW_ERASE) != 0);
    if (flags & RDW_VALIDATE)
        backend.ValidateRect(m_hWnd, lpRectUpdate);
    if (flags & RDW_ALLCHILDREN)
    {
        for (HWND child : backend.GetChildWindows(m_hWnd))
        {
            if (CWnd* pChild = FromHandle(child))
                pChild->RedrawWindow(nullptr, nullptr, flags);
        }
    }
    if (flags & RDW_UPDATENOW)
        UpdateWindow();
    return TRUE;
}

HDC CWnd::BeginPaint(PAINTSTRUCT* lpPaint)
{
    *lpPaint = PAINTSTRUCT();
    if (m_hWnd == nullptr)
        return nullptr;
    plotvane::Backend& backend = plotvane::GetBackend();
    bool erase = false;
    backend.GetUpdateState(m_hWnd, &erase);
    backend.ValidateRect(m_hWnd, nullptr);
    lpPaint->hdc = backend.GetDC(m_hWnd);
    lpPaint->rcPaint = backend.GetClientRect(m_hWnd);
    if (erase)
        lpPaint->fErase = SendMessage(WM_ERASEBKGND, reinterpret_cast<WPARAM>(lpPaint->hdc)) == 0;
    return lpPaint->hdc;
}

void CWnd::EndPaint(const PAINTSTRUCT* lpPaint)
{
    if (m_hWnd != nullptr && lpPaint->hdc != nullptr)
        plotvane::GetBackend().ReleaseDC(m_hWnd, lpPaint->hdc);
}

CDC* CWnd::GetDC()
{
    m_tempDCs.push_back(std::make_unique<CClientDC>(this));
    return m_tempDCs.back().get();
}

int CWnd::ReleaseDC(CDC* pDC)
{
    auto it = std::find_if(m_tempDCs.begin(), m_tempDCs.end(),
                           [pDC](const std::unique_ptr<CClientDC>& p) { return p.get() == pDC; });
    if (it == m_tempDCs.end())
        return 0;
    m_tempDCs.erase(it);
    return 1;
}

void CWnd::ReleaseTempDCs()
{
    m_tempDCs.clear();
}

// ---------------------------------------------------------------------------
// Capture, focus, messages

CWnd* CWnd::SetCapture()
{
    plotvane::Backend& backend = plotvane::GetBackend();
    CWnd* pPrevious = FromHandle(backend.GetCapture());
    if (m_hWnd != nullptr)
        backend.SetCapture(m_hWnd);
    return pPrevious;
}

CWnd* CWnd::GetCapture()
{
    return FromHandle(plotvane::GetBackend().GetCapture());
}

CWnd* CWnd::SetFocus()
{
    plotvane::Backend& backend = plotvane::GetBackend();
    CWnd* pPrevious = FromHandle(backend.GetFocus());
    if (m_hWnd != nullptr)
        backend.SetFocus(m_hWnd);
    return pPrevious;
}

CWnd* CWnd::GetFocus()
{
    return FromHandle(plotvane::GetBackend().GetFocus());
}

BOOL ReleaseCapture()
{
    plotvane::GetBackend().ReleaseCapture();
    return TRUE;
}

LRESULT CWnd::SendMessage(UINT message, WPARAM wParam, LPARAM lParam)
{
    return m_hWnd != nullptr ? plotvane::CallWindowProc(this, message, wParam, lParam) : 0;
}

LRESULT CWnd::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    switch (message)
    {
    case WM_CREATE:
        return OnCreate(reinterpret_cast<LPCREATESTRUCT>(lParam));
    case WM_DESTROY:
        OnDestroy();
        return 0;
    case WM_SIZE:
        OnSize(UINT(wParam), LOWORD(lParam), HIWORD(lParam));
        return 0;
    case WM_PAINT:
        OnPaint();
        return 0;
    case WM_ERASEBKGND:
    {
        CDC dc;
        dc.m_hDC = reinterpret_cast<HDC>(wParam);
        return OnEraseBkgnd(&dc);
    }
    case WM_WINDOWPOSCHANGED:
        OnWindowPosChanged(reinterpret_cast<WINDOWPOS*>(lParam));
        return 0;
    case WM_MOUSEMOVE:
        OnMouseMove(UINT(wParam), PointOf(lParam));
        return 0;
    case WM_LBUTTONDOWN:
        OnLButtonDown(UINT(wParam), PointOf(lParam));
        return 0;
    case WM_LBUTTONUP:
        OnLButtonUp(UINT(wParam), PointOf(lParam));
        return 0;
    case WM_LBUTTONDBLCLK:
        OnLButtonDblClk(UINT(wParam), PointOf(lParam));
        return 0;
    case WM_RBUTTONDOWN:
        OnRButtonDown(UINT(wParam), PointOf(lParam));
        return 0;
    case WM_RBUTTONUP:
        OnRButtonUp(UINT(wParam), PointOf(lParam));
        return 0;
    case WM_MOUSEWHEEL:
        return OnMouseWheel(LOWORD(wParam), GET_WHEEL_DELTA_WPARAM(wParam), PointOf(lParam));
    case WM_CONTEXTMENU:
        OnContextMenu(FromHandle(reinterpret_cast<HWND>(wParam)), PointOf(lParam));
        return 0;
    case WM_KEYDOWN:
        OnKeyDown(UINT(wParam), LOWORD(lParam), HIWORD(lParam));
        return 0;
    case WM_KEYUP:
        OnKeyUp(UINT(wParam), LOWORD(lParam), HIWORD(lParam));
        return 0;
    case WM_COMMAND:
        if (OnCommand(wParam, lParam))
            return 0;
        return DefWindowProc(message, wParam, lParam);
    default:
        return DefWindowProc(message, wParam, lParam);
    }
}

// The window system's defaults that window classes rely on; everything else
// goes to the backend, which hands a host window's messages to the host.
LRESULT CWnd::DefWindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (m_hWnd == nullptr)
        return 0;
    switch (message)
    {
    case WM_PAINT:
        ValidateRect(nullptr);
        return 0;
    case WM_RBUTTONUP:
    {
        // A right click asks for a context menu, in screen coordinates.
        CPoint pt = PointOf(lParam);
        ClientToScreen(&pt);
        SendMessage(WM_CONTEXTMENU, reinterpret_cast<WPARAM>(m_hWnd), LParamOf(pt));
        return 0;
    }
    case WM_CONTEXTMENU:
    case WM_MOUSEWHEEL:
        // Unhandled, these travel up to the parent.
        if (CWnd* pParent = GetParent())
            return pParent->SendMessage(message, wParam, lParam);
        return 0;
    case WM_WINDOWPOSCHANGED:
    {
        const WINDOWPOS* wp = reinterpret_cast<const WINDOWPOS*>(lParam);
        if (!(wp->flags & SWP_NOMOVE))
            SendMessage(WM_MOVE, 0, MAKELPARAM(wp->x, wp->y));
        if (!(wp->flags & SWP_NOSIZE))
        {
            CRect rc;
            GetClientRect(&rc);
            SendMessage(WM_SIZE, SIZE_RESTORED, MAKELPARAM(rc.Width(), rc.Height()));
        }
        return 0;
    }
    case WM_CLOSE:
        DestroyWindow();
        return 0;
    default:
        return plotvane::GetBackend().DefWindowProc(m_hWnd, message, wParam, lParam);
    }
}

LRESULT CWnd::Default()
{
    if (t_current.pWnd != this)
        return 0;
    return DefWindowProc(t_current.message, t_current.wParam, t_current.lParam);
}

BOOL CWnd::OnCommand(WPARAM /*wParam*/, LPARAM /*lParam*/)
{
    return FALSE;
}

BOOL CWnd::PreTranslateMessage(MSG* /*pMsg*/)
{
    return FALSE;
}

int CWnd::MessageBox(LPCTSTR lpszText, LPCTSTR lpszCaption, UINT nType)
{
    return plotvane::GetBackend().MessageBox(
        m_hWnd, lpszText, lpszCaption != nullptr ? CString(lpszCaption) : plotvane::GetAppName(),
        nType);
}

void CWnd::BeginWaitCursor()
{
    plotvane::GetBackend().BeginWaitCursor();
}

void CWnd::EndWaitCursor()
{
    plotvane::GetBackend().EndWaitCursor();
}

// ---------------------------------------------------------------------------
// Handlers: the default handling of each message.

int CWnd::OnCreate(LPCREATESTRUCT /*lpCreateStruct*/)
{
    return int(Default());
}

void CWnd::OnDestroy()
{
    Default();
}

void CWnd::OnSize(UINT /*nType*/, int /*cx*/, int /*cy*/)
{
    Default();
}

void CWnd::OnPaint()
{
    Default();
}

BOOL CWnd::OnEraseBkgnd(CDC* /*pDC*/)
{
    return BOOL(Default());
}

void CWnd::OnWindowPosChanged(WINDOWPOS* /*lpwndpos*/)
{
    Default();
}

void CWnd::OnMouseMove(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnLButtonDown(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnLButtonUp(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnLButtonDblClk(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnRButtonDown(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

void CWnd::OnRButtonUp(UINT /*nFlags*/, CPoint /*point*/)
{
    Default();
}

BOOL CWnd::OnMouseWheel(UINT /*nFlags*/, short /*zDelta*/, CPoint /*pt*/)
{
    return BOOL(Default());
}

void CWnd::OnContextMenu(CWnd* /*pWnd*/, CPoint /*pos*/)
{
    Default();
}

void CWnd::OnKeyDown(UINT /*nChar*/, UINT /*nRepCnt*/, UINT /*nFlags*/)
{
    Default();
}

void CWnd::OnKeyUp(UINT /*nChar*/, UINT /*nRepCnt*/, UINT /*nFlags*/)
{
    Default();
}
