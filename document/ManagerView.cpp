// The manager's operations that reach the chart view: fitting, redrawing,
// view-area forwarders and font sizes.
#include <plotvane/document/Plotvane_Manager.h>

#include <plotvane/view/GLChartView.h>
#include <plotvane/view/GLTextBmp.h>

void CPlotvane_Manager::SetChartDrawFit()
{
    m_InputData.FindMaxAndMin();
    m_ChartDlg.GetGLChartView()->ViewZoomfit();
}

// The display list holds the measure type's overlay; this is the only place
// that rebuilds it. Without a window there is nothing to draw into.
void CPlotvane_Manager::RedrawGLChartView()
{
    CGLChartView* pView = m_ChartDlg.GetGLChartView();
    if (pView == nullptr || pView->GetSafeHwnd() == nullptr)
        return;
    pView->MakeDisplayList();
    pView->SendMessage(WM_PAINT);
}

void CPlotvane_Manager::MakeEyeMaskArray()
{
    m_ChartDlg.GetGLChartView()->MakeEyeMaskArray();
}

void CPlotvane_Manager::GetCurrentGLChartViewLeftTopPoint(double& x, double& y)
{
    m_ChartDlg.GetGLChartView()->GetCurrentViewLeftTopPoint(x, y);
}

void CPlotvane_Manager::GetCurrentGLChartViewRightBtmPoint(double& x, double& y)
{
    m_ChartDlg.GetGLChartView()->GetCurrentViewRightBtmPoint(x, y);
}

void CPlotvane_Manager::SetViewAreaByPoint(CPointF p1, CPointF p2)
{
    CGLChartView* pView = m_ChartDlg.GetGLChartView();
    pView->SetViewAreaByPoint(p1, p2);
    pView->InvalidateRect(nullptr, TRUE);
}

void CPlotvane_Manager::ViewZoomfit()
{
    m_ChartDlg.GetGLChartView()->ViewZoomfit();
}

void CPlotvane_Manager::DrawGLChartViewXClippingLine(int bVertical, double dValue)
{
    m_ChartDlg.GetGLChartView()->SetGLChartViewClippingLine(bVertical, dValue);
}

void CPlotvane_Manager::RemoveClippingBoxArray()
{
    m_ChartDlg.GetGLChartView()->RemoveClippingBoxArray();
    RedrawGLChartView();
}

void CPlotvane_Manager::RemoveClippingLineArray()
{
    m_ChartDlg.GetGLChartView()->RemoveClippingLineArray();
    RedrawGLChartView();
}

void CPlotvane_Manager::SetClickZoomAvailable(int v)
{
    m_bClickZoomStarted = 0;
    m_ChartDlg.GetGLChartView()->SetClickZoomAvailable(v);
}

void CPlotvane_Manager::SetClickZoomState(int n)
{
    m_ChartDlg.GetGLChartView()->SetClickZoomState(n);
}

void CPlotvane_Manager::ShowGLChartVerticalClipping(int n)
{
    m_ChartDlg.GetGLChartView()->ShowVerticalClipping(n);
}

void CPlotvane_Manager::ShowGLChartHorizontalClipping(int n)
{
    m_ChartDlg.GetGLChartView()->ShowHorizontalClipping(n);
}

void CPlotvane_Manager::ShowGLChartVerticalClippingBox(int n)
{
    m_ChartDlg.GetGLChartView()->ShowVerticalClippingBox(n);
}

void CPlotvane_Manager::ShowGLChartHorizontalClippingBox(int n)
{
    m_ChartDlg.GetGLChartView()->ShowHorizontalClippingBox(n);
}

int CPlotvane_Manager::GetDefaultFontSize()
{
    return m_ChartDlg.GetGLChartView()->m_pFontDefault->m_nFontSize;
}

int CPlotvane_Manager::GetMeasureFontSize()
{
    return m_ChartDlg.GetGLChartView()->m_pFontMeasure->m_nFontSize;
}

int CPlotvane_Manager::GetXYFontSize()
{
    return m_ChartDlg.GetGLChartView()->m_pFontXY->m_nFontSize;
}

void CPlotvane_Manager::SetDefaultFontSize(int n)
{
    m_ChartDlg.GetGLChartView()->SetDefaultFontSize(n);
}

void CPlotvane_Manager::SetMeasureFontSize(int n)
{
    m_ChartDlg.GetGLChartView()->SetMeasureFontSize(n);
}

void CPlotvane_Manager::SetXYFontSize(int n)
{
    m_ChartDlg.GetGLChartView()->SetXYFontSize(n);
}
