// The chart dialog: the window around the chart view. It owns the view from
// construction; the view's window is made as a child of the dialog's window
// when the dialog is initialised.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/Wnd.h>

class CGLChartView;
class CPlotvane_InputData;
class CPlotvane_Attribute;

class CPlotvane_Dlg : public CWnd
{
public:
    explicit CPlotvane_Dlg(CWnd* pParent = nullptr);
    ~CPlotvane_Dlg() override;

    CGLChartView* GetGLChartView() const { return m_pGLChartView; }
    void SetCPlotvaneInputData(CPlotvane_InputData* p) { m_pInputData = p; }
    void SetCPlotvaneAttribute(CPlotvane_Attribute* p) { m_pAttribute = p; }

    // Whether the dialog's native window exists.
    bool HasWindow() const { return GetSafeHwnd() != nullptr; }

    // Makes the view's window and, on a chart without data sets, the empty
    // set "NoData", so that a chart always has one set.
    virtual BOOL OnInitDialog();
    // The view's window over the whole client area, child id 123456.
    void CreateView();
    // Repaints the view now, when it has a window.
    void RedrawChartView();
    // The view's measurement summary; kept as the status text.
    void DisplayDistanceInfo(CString str);

    CGLChartView* m_pGLChartView;
    CPlotvane_InputData* m_pInputData = nullptr;
    CPlotvane_Attribute* m_pAttribute = nullptr;
    CString m_strDistanceInfo;
};
