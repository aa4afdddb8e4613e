// Layers of the chart frame that are not written yet: cursors and clipping
// boxes, the measurement overlays and the annotation layer. The frame calls
// each of them in its place; until a layer is written it draws nothing, and
// its body then moves from here to the source of that layer.
#include <plotvane/view/GLChartView.h>

// Cursors and clipping boxes.
void CGLChartView::DrawXClippingLine() {}
void CGLChartView::DrawYClippingLine() {}
void CGLChartView::DrawClippingBox() {}
void CGLChartView::DrawCrossLine() {}
void CGLChartView::DrawCrossLine_Log() {}

// Annotation layer.
void CGLChartView::DrawSelectNodeNames() {}
void CGLChartView::DrawTextDB() {}
void CGLChartView::DrawLineDB() {}
void CGLChartView::DrawCurrentTextData() {}
void CGLChartView::DrawCurrentLineData() {}

// Mouse, keyboard and zoom.
void CGLChartView::SetClickZoomAvailable(int /*bAvailable*/) {}
void CGLChartView::ZoomIn() {}
void CGLChartView::ZoomOut() {}
void CGLChartView::AllChangeLineDataWidth(double /*d*/) {}
