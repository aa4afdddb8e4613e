// Cursors: clipping lines with their value labels, crossing texts and
// distance lines, two-click clipping boxes, and the cross lines that follow
// the mouse while a placing mode is on.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/ChartMarkers.h>
#include <plotvane/document/Plotvane_Manager.h>

void CGLChartView::DrawXClippingLine() {}
void CGLChartView::DrawYClippingLine() {}
void CGLChartView::DrawXClippingValueText(CChartClippingLine* /*pLine*/, int& /*nCounter*/) {}
void CGLChartView::DrawYClippingValueText(CChartClippingLine* /*pLine*/, int& /*nCounter*/) {}
void CGLChartView::DrawClippingBox() {}
void CGLChartView::DrawCrossLine() {}
void CGLChartView::DrawCrossLine_Log() {}
void CGLChartView::SetGLChartViewClipingText(CChartClippingLine* /*pLine*/, int /*index*/) {}
void CGLChartView::SetGLChartViewClippingLine(int /*bVertical*/, double /*dValue*/) {}
void CGLChartView::RemoveClippingLineArray() {}
void CGLChartView::RemoveClippingBoxArray() {}
void CGLChartView::ShowVerticalClipping(int n) { m_pManager->m_bClippingVertical = n; }
void CGLChartView::ShowHorizontalClipping(int n) { m_pManager->m_bClippingHorizontal = n; }
void CGLChartView::ShowVerticalClippingBox(int n) { m_pManager->m_bClippingVerticalBox = n; }
void CGLChartView::ShowHorizontalClippingBox(int n) { m_pManager->m_bClippingHorizontalBox = n; }
void CGLChartView::DrawXClippingValueDelta() {}
void CGLChartView::DrawXClippingValueDelta_Log() {}
void CGLChartView::DrawYClippingValueDelta() {}
