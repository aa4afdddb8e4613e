// The annotation layer: free texts and lines the user places, the curve
// labels that picking leaves, and the record that hangs on the mouse while
// it is placed or moved. Drawn last in every frame.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/ChartMarkers.h>

void CGLChartView::DrawSelectNodeNames() {}
void CGLChartView::DrawTextDB() {}
void CGLChartView::DrawLineDB() {}
void CGLChartView::DrawCurrentTextData() {}
void CGLChartView::DrawCurrentLineData() {}
void CGLChartView::SetDrawMode(int nMode)
{
    m_nDrawMode = nMode;
    m_nDrawStep = 0;
}
void CGLChartView::DrawTextData(double, double, DWORD, const CString&) {}
void CGLChartView::ClearTextDB() {}
void CGLChartView::ClearLineDB() {}
void CGLChartView::ClearSelectNodeNames() {}
void CGLChartView::AllChangeLineDataWidth(double /*d*/) {}
