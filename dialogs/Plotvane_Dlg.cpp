#include <plotvane/dialogs/Plotvane_Dlg.h>

#include <plotvane/dialogs/DialogResources.h>
#include <plotvane/dialogs/Menu.h>
#include <plotvane/document/Plotvane_InputData.h>
#include <plotvane/view/GLChartView.h>

namespace
{

// Child, visible, bordered.
constexpr DWORD kViewStyle = 0x50800000;
constexpr DWORD kStatusBarStyle = 0x50008200;
constexpr UINT kIndicators[] = {0, ID_INDICATOR_COORD, ID_INDICATOR_DISTANCE};

// The view of either dialog, made over the dialog's client area.
void MakeViewWindow(CWnd& dlg, CGLChartView& view)
{
    CRect rc;
    dlg.GetClientRect(&rc);
    view.Create(nullptr, "", kViewStyle, rc, &dlg, IDC_GLCHARTVIEW);
    view.m_bMouseDrag = 1;
    view.ShowWindow(SW_SHOW);
}

// A chart always has one set: an empty input gets the set "NoData".
void AddNoDataSet(CPlotvane_InputData* pInputData)
{
    if (pInputData == nullptr || pInputData->GetDataSetSize() != 0)
        return;
    const int n = pInputData->AddNewDataSet();
    pInputData->SetCurrentEditSet(n);
    pInputData->SetCurrentEditSetName("NoData");
    pInputData->AddDrawDataSetIndex(0);
}

bool HasViewWindow(const CGLChartView* pView)
{
    return pView != nullptr && pView->GetSafeHwnd() != nullptr;
}

void RedrawView(CGLChartView* pView)
{
    if (HasViewWindow(pView))
        pView->RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
}

void ResizeView(CGLChartView* pView, int cx, int cy)
{
    if (HasViewWindow(pView))
        pView->SetWindowPos(nullptr, 0, 0, cx, cy, SWP_NOZORDER);
}

} // namespace

// ---------------------------------------------------------------------------
// CPlotvane_Dlg

CPlotvane_Dlg::CPlotvane_Dlg(CWnd* pParent)
    : CExtResizableDialog(IDD_PLOTVANE_DLG, pParent), m_pGLChartView(new CGLChartView)
{
}

CPlotvane_Dlg::~CPlotvane_Dlg()
{
    // The windows go before the view object that owns one of them.
    if (m_hWnd != nullptr)
        DestroyWindow();
    delete m_pGLChartView;
}

void CPlotvane_Dlg::DoDataExchange(CDataExchange* pDX)
{
    CExtResizableDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_STATIC_INFO, m_stcInfo);
    DDX_Control(pDX, IDC_STATIC_VIEW, m_stcView);
}

BOOL CPlotvane_Dlg::OnInitDialog()
{
    CExtResizableDialog::OnInitDialog();

    m_wndStatusBar.Create(this, kStatusBarStyle, AFX_IDW_STATUS_BAR);
    m_wndStatusBar.SetIndicators(kIndicators, 3);
    CRect rc;
    GetClientRect(&rc);
    const int width = rc.Width();
    m_wndStatusBar.SetPaneInfo(0, kIndicators[0], SBPS_NORMAL, int(width * 0.001));
    m_wndStatusBar.SetPaneInfo(1, kIndicators[1], SBPS_NORMAL, int(width * 0.55));
    m_wndStatusBar.SetPaneInfo(2, kIndicators[2], SBPS_STRETCH, int(width * 0.44));
    m_wndStatusBar.MoveWindow(rc.left, rc.bottom - m_nStatusBarHeight, width, m_nStatusBarHeight);

    CreateView();
    ShowSizeGrip(FALSE);
    AddNoDataSet(m_pInputData);
    return TRUE;
}

void CPlotvane_Dlg::CreateView()
{
    MakeViewWindow(*this, *m_pGLChartView);
    m_pGLChartView->SetParent(this);
}

void CPlotvane_Dlg::RedrawChartView()
{
    RedrawView(m_pGLChartView);
}

void CPlotvane_Dlg::ResizeChartView(int cx, int cy)
{
    ResizeView(m_pGLChartView, cx, cy);
}

void CPlotvane_Dlg::OnWindowPosChanged(WINDOWPOS* lpwndpos)
{
    CExtResizableDialog::OnWindowPosChanged(lpwndpos);
    SetViewWindowSize();
}

void CPlotvane_Dlg::SetViewWindowSize()
{
    if (!HasViewWindow(m_pGLChartView))
        return;
    CRect rc;
    GetClientRect(&rc);
    m_pGLChartView->SetWindowPos(nullptr, rc.left, rc.top, rc.Width(),
                                 rc.Height() - m_nStatusBarHeight, SWP_NOZORDER);
    m_pGLChartView->ShowWindow(SW_SHOW);
    // Only the bar moves; its pane widths stay those of OnInitDialog.
    if (m_wndStatusBar.GetSafeHwnd() != nullptr)
        m_wndStatusBar.MoveWindow(rc.left, rc.bottom - m_nStatusBarHeight, rc.Width(),
                                  m_nStatusBarHeight, TRUE);
}

void CPlotvane_Dlg::DisplayCurrentCoordInfo(const CString& str)
{
    if (!str.IsEmpty())
        m_wndStatusBar.SetPaneText(1, str);
}

void CPlotvane_Dlg::DisplayDistanceInfo(const CString& str)
{
    if (str.IsEmpty())
        return;
    m_strDistanceInfo = str;
    m_wndStatusBar.SetPaneText(2, str);
}

void CPlotvane_Dlg::ChangeLineWidth(double d)
{
    m_pGLChartView->AllChangeLineWidth(d);
}

void CPlotvane_Dlg::ChangeLineDataWidth(double d)
{
    m_pGLChartView->AllChangeLineDataWidth(d);
}

CString CPlotvane_Dlg::GetXAxisDisplayString()
{
    return m_pGLChartView->GetXAxisDisplayString();
}

CString CPlotvane_Dlg::GetYAxisDisplayString()
{
    return m_pGLChartView->GetYAxisDisplayString();
}

void CPlotvane_Dlg::SetBackgroundColor(DWORD cr)
{
    if (m_pGLChartView != nullptr)
        m_pGLChartView->SetBackgroundColor(cr);
}

DWORD CPlotvane_Dlg::GetBackgroundColor() const
{
    return m_pGLChartView != nullptr ? m_pGLChartView->GetBackgroundColor() : 0;
}

DWORD CPlotvane_Dlg::GetAxisColor() const
{
    return m_pGLChartView != nullptr ? m_pGLChartView->GetAxisColor() : 0xC8C8C8;
}

DWORD CPlotvane_Dlg::GetGridColor() const
{
    return m_pGLChartView != nullptr ? m_pGLChartView->GetGridColor() : 0xC8C8C8;
}

DWORD CPlotvane_Dlg::GetLabelColor() const
{
    return m_pGLChartView != nullptr ? m_pGLChartView->GetLabelColor() : 0x6464DC;
}

int CPlotvane_Dlg::GetGridMode() const
{
    return m_pGLChartView != nullptr ? m_pGLChartView->GetGridMode() : 0;
}

double CPlotvane_Dlg::GetLineWidth() const
{
    return m_pGLChartView != nullptr ? m_pGLChartView->GetLineWidth() : 1.0;
}

double CPlotvane_Dlg::GetHighlightedLineWidth() const
{
    return m_pGLChartView != nullptr ? m_pGLChartView->GetLineWidth_Highlighted() : 1.0;
}

void CPlotvane_Dlg::SetAxisColor(DWORD cr)
{
    if (m_pGLChartView != nullptr)
        m_pGLChartView->SetAxisColor(cr);
}

void CPlotvane_Dlg::SetGridColor(DWORD cr)
{
    if (m_pGLChartView != nullptr)
        m_pGLChartView->SetGridColor(cr);
}

void CPlotvane_Dlg::SetLabelColor(DWORD cr)
{
    if (m_pGLChartView != nullptr)
        m_pGLChartView->SetLabelColor(cr);
}

void CPlotvane_Dlg::SetGridMode(int n)
{
    if (m_pGLChartView != nullptr)
        m_pGLChartView->SetGridMode(n);
}

void CPlotvane_Dlg::OnContextMenu(CWnd* pWnd, CPoint point)
{
    // A right-button drag pans the view; only a click without movement asks
    // for the menu.
    if (pWnd == nullptr || !HasViewWindow(m_pGLChartView) ||
        pWnd->GetSafeHwnd() != m_pGLChartView->GetSafeHwnd())
        return;
    const CPoint start = m_pGLChartView->m_ptDragStart;
    const CPoint end = m_pGLChartView->m_ptDragEnd;
    if (start.x != end.x || start.y != end.y)
        return;
    CMenu menu;
    if (!menu.LoadMenu(IDR_MENU_POPUP_CHART_VIEW))
        return;
    if (CMenu* pPopup = menu.GetSubMenu(0))
        pPopup->TrackPopupMenu(0, point.x, point.y, this);
    menu.DestroyMenu();
}

BOOL CPlotvane_Dlg::OnMouseWheel(UINT nFlags, short zDelta, CPoint pt)
{
    // The view zooms by itself.
    return CExtResizableDialog::OnMouseWheel(nFlags, zDelta, pt);
}

void CPlotvane_Dlg::OnMenuPopupChartViewZoomWindow()
{
    m_pGLChartView->SetClickZoomAvailable(1);
}

void CPlotvane_Dlg::OnMenuPopupChartViewZoomall()
{
    m_pGLChartView->ViewZoomfit();
}

LRESULT CPlotvane_Dlg::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_COMMAND)
    {
        switch (LOWORD(wParam))
        {
        case ID_MENU_POPUP_CHARTVIEW_ZOOMWINDOW:
            OnMenuPopupChartViewZoomWindow();
            return 0;
        case ID_MENU_POPUP_CHARTVIEW_ZOOMALL:
            OnMenuPopupChartViewZoomall();
            return 0;
        default:
            break;
        }
    }
    return CExtResizableDialog::WindowProc(message, wParam, lParam);
}

// ---------------------------------------------------------------------------
// CGLPlotvane_Dlg

CGLPlotvane_Dlg::CGLPlotvane_Dlg(CWnd* pParent)
    : CExtResizableDialog(IDD_PLOTVANE_DLG, pParent), m_pGLChartView(new CGLChartView)
{
}

CGLPlotvane_Dlg::~CGLPlotvane_Dlg()
{
    if (m_hWnd != nullptr)
        DestroyWindow();
    delete m_pGLChartView;
}

void CGLPlotvane_Dlg::DoDataExchange(CDataExchange* pDX)
{
    CExtResizableDialog::DoDataExchange(pDX);
    DDX_Control(pDX, IDC_STATIC_INFO, m_stcInfo);
    DDX_Control(pDX, IDC_STATIC_VIEW, m_stcView);
}

BOOL CGLPlotvane_Dlg::OnInitDialog()
{
    CExtResizableDialog::OnInitDialog();
    CreateView();
    AddNoDataSet(m_pInputData);
    return TRUE;
}

void CGLPlotvane_Dlg::CreateView()
{
    // No SetParent: this view has no host dialog to report coordinates to.
    MakeViewWindow(*this, *m_pGLChartView);
}

void CGLPlotvane_Dlg::RedrawChartView()
{
    RedrawView(m_pGLChartView);
}

void CGLPlotvane_Dlg::ResizeChartView(int cx, int cy)
{
    ResizeView(m_pGLChartView, cx, cy);
}

BOOL CGLPlotvane_Dlg::OnMouseWheel(UINT nFlags, short zDelta, CPoint pt)
{
    if (zDelta >= 1)
        m_pGLChartView->ZoomOut();
    else if (zDelta < 0)
        m_pGLChartView->ZoomIn();
    return CExtResizableDialog::OnMouseWheel(nFlags, zDelta, pt);
}

void CGLPlotvane_Dlg::OnLButtonDown(UINT nFlags, CPoint point)
{
    SetFocus();
    CExtResizableDialog::OnLButtonDown(nFlags, point);
}

namespace plotvane
{

// The chart host dialog: a child holding the "View" placeholder, which the
// chart view covers, and a small static in its corner.
DialogResource ChartDialogResource()
{
    DialogResource r;
    r.id = 20502;
    r.style = 0x50000040;
    r.cx = 338;
    r.cy = 304;
    r.fontName = "Tahoma";
    r.fontPoints = 9;
    r.controls.push_back({11008, "STATIC", "View", CRect(0, 0, 338, 304), WS_CHILD | WS_VISIBLE});
    r.controls.push_back({11018, "STATIC", "", CRect(0, 0, 97, 25), WS_CHILD | WS_VISIBLE});
    return r;
}

} // namespace plotvane
