// Mouse, keyboard and zoom of the chart view.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/Plotvane_Manager.h>

void CGLChartView::OnLButtonDown(UINT nFlags, CPoint point) { CGLWnd::OnLButtonDown(nFlags, point); }
void CGLChartView::OnLButtonUp(UINT nFlags, CPoint point) { CGLWnd::OnLButtonUp(nFlags, point); }
void CGLChartView::OnMouseMove(UINT nFlags, CPoint point) { CGLWnd::OnMouseMove(nFlags, point); }
BOOL CGLChartView::OnMouseWheel(UINT nFlags, short zDelta, CPoint pt) { return CGLWnd::OnMouseWheel(nFlags, zDelta, pt); }
void CGLChartView::OnRButtonDown(UINT nFlags, CPoint point) { CGLWnd::OnRButtonDown(nFlags, point); }
void CGLChartView::OnRButtonUp(UINT nFlags, CPoint point) { CGLWnd::OnRButtonUp(nFlags, point); }
BOOL CGLChartView::PreTranslateMessage(MSG* pMsg) { return CGLWnd::PreTranslateMessage(pMsg); }
int CGLChartView::ProcessSelection(int, int) { return 0; }
int CGLChartView::ProcessSelection(int, int, CDWordArray&) { return 0; }
bool CGLChartView::PickingText(CChartTextData*, CPointF) { return false; }
void CGLChartView::ClickZoomArea(CPoint) {}
void CGLChartView::Pan_View(UINT) {}
void CGLChartView::ZoomIn() {}
void CGLChartView::ZoomOut() {}
void CGLChartView::ApplyZoomAreaToViewAndAdjustDecimalOfParentDlg(int) {}
void CGLChartView::SetClickZoomAvailable(int) {}
void CGLChartView::SetClickZoomState(int) {}
