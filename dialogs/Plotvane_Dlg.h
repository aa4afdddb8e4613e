// The chart dialogs: the windows around the chart view. Each owns its view
// from construction; the view's window is made as a child of the dialog's
// window in OnInitDialog. CPlotvane_Dlg adds a status bar, a context menu and
// forwarders to the view's appearance; CGLPlotvane_Dlg is the view alone.
#pragma once

#include <plotvane/dialogs/Dialog.h>
#include <plotvane/dialogs/StatusBar.h>
#include <plotvane/foundation/MFCString.h>

class CGLChartView;
class CPlotvane_InputData;
class CPlotvane_Attribute;

constexpr UINT IDD_PLOTVANE_DLG = 20502;
constexpr UINT IDR_MENU_POPUP_CHART_VIEW = 20506;
constexpr UINT IDC_STATIC_VIEW = 11008;
constexpr UINT IDC_STATIC_INFO = 11018;
constexpr UINT ID_INDICATOR_COORD = 21001;
constexpr UINT ID_INDICATOR_DISTANCE = 21000;
constexpr UINT ID_MENU_POPUP_CHARTVIEW_ZOOMALL = 21052;
constexpr UINT ID_MENU_POPUP_CHARTVIEW_ZOOMWINDOW = 21053;
constexpr UINT IDC_GLCHARTVIEW = 123456;

class CPlotvane_Dlg : public CExtResizableDialog
{
public:
    explicit CPlotvane_Dlg(CWnd* pParent = nullptr);
    ~CPlotvane_Dlg() override;

    static const int m_nStatusBarHeight = 20;

    CGLChartView* GetGLChartView() const { return m_pGLChartView; }
    void SetCPlotvaneInputData(CPlotvane_InputData* p) { m_pInputData = p; }
    void SetCPlotvaneAttribute(CPlotvane_Attribute* p) { m_pAttribute = p; }
    // Whether the dialog's native window exists.
    bool HasWindow() const { return GetSafeHwnd() != nullptr; }

    void DoDataExchange(CDataExchange* pDX) override;
    // Status bar at the bottom, the view, and on a chart without data sets
    // the empty set "NoData", so that a chart always has one set.
    BOOL OnInitDialog() override;
    // The view's window over the client area, child id 123456.
    void CreateView();
    void RedrawChartView();
    void ResizeChartView(int cx, int cy);
    // The view above the status bar, the bar along the bottom.
    void SetViewWindowSize();

    // Status bar texts; an empty text keeps the pane as it was.
    void DisplayCurrentCoordInfo(const CString& str);
    void DisplayDistanceInfo(const CString& str);

    // Forwarders to the view; without a view the getters answer the view's
    // defaults and the setters do nothing.
    void ChangeLineWidth(double d);
    void ChangeLineDataWidth(double d);
    CString GetXAxisDisplayString();
    CString GetYAxisDisplayString();
    void SetBackgroundColor(DWORD cr);
    DWORD GetBackgroundColor() const;
    DWORD GetAxisColor() const;
    DWORD GetGridColor() const;
    DWORD GetLabelColor() const;
    int GetGridMode() const;
    double GetLineWidth() const;
    double GetHighlightedLineWidth() const;
    void SetAxisColor(DWORD cr);
    void SetGridColor(DWORD cr);
    void SetLabelColor(DWORD cr);
    void SetGridMode(int n);

    // Handlers.
    void OnWindowPosChanged(WINDOWPOS* lpwndpos) override;
    // The menu 20506 for a right click on the view that did not drag it.
    void OnContextMenu(CWnd* pWnd, CPoint point) override;
    BOOL OnMouseWheel(UINT nFlags, short zDelta, CPoint pt) override;
    void OnMenuPopupChartViewZoomWindow();
    void OnMenuPopupChartViewZoomall();
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    CGLChartView* m_pGLChartView;
    CPlotvane_InputData* m_pInputData = nullptr;
    CPlotvane_Attribute* m_pAttribute = nullptr;
    CStatusBar m_wndStatusBar;
    CStatic m_stcInfo; // 11018
    CStatic m_stcView; // 11008
    // The last distance text shown, kept also without a status bar window.
    CString m_strDistanceInfo;
};

// The lean chart dialog: the view alone, resized by its host, zoomed by the
// wheel from here.
class CGLPlotvane_Dlg : public CExtResizableDialog
{
public:
    explicit CGLPlotvane_Dlg(CWnd* pParent = nullptr);
    ~CGLPlotvane_Dlg() override;

    CGLChartView* GetGLChartView() const { return m_pGLChartView; }
    void SetCPlotvaneInputData(CPlotvane_InputData* p) { m_pInputData = p; }
    void SetCPlotvaneAttribute(CPlotvane_Attribute* p) { m_pAttribute = p; }

    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;
    void CreateView();
    void RedrawChartView();
    void ResizeChartView(int cx, int cy);

    BOOL OnMouseWheel(UINT nFlags, short zDelta, CPoint pt) override;
    void OnLButtonDown(UINT nFlags, CPoint point) override;

    CGLChartView* m_pGLChartView;
    CPlotvane_InputData* m_pInputData = nullptr;
    CPlotvane_Attribute* m_pAttribute = nullptr;
    CStatic m_stcInfo;
    CStatic m_stcView;
};
