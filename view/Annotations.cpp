// The annotation layer: free texts and lines the user places, the curve
// labels that picking leaves, and the record that hangs on the mouse while
// it is placed or moved. Drawn last in every frame, in logical units, so
// that annotations stay with the data at zoom and pan. The collections live
// in the view and are not archived.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/ChartMarkers.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/view/ChartViewUtil.h>
#include <plotvane/view/GLTextBmp.h>

#include <GL/gl.h>

namespace
{

// The frame around a text being moved: (255, 255, 0).
constexpr DWORD kMovingTextFrame = 0x00FFFF;

} // namespace

void CGLChartView::SetDrawMode(int nMode)
{
    m_nDrawMode = nMode;
    m_nDrawStep = 0;
    // Cancel keeps the last string: a click then places it again.
    if (nMode == 1)
        AskCurrentText();
    Invalidate(TRUE);
}

// The chart's own labels print without a device context; annotations pass
// the window's, for double-byte text.
void CGLChartView::DrawTextData(double x, double y, DWORD color, const CString& text)
{
    if (text.IsEmpty())
        return;
    plotvane::SetGLColor(color);
    m_pFontTextData->PrintText(text, CPointD(x, y), m_pDC != nullptr ? m_pDC->GetSafeHdc() : nullptr);
}

// One font object serves every annotation: a change of size between two
// records rebuilds it, the accepted price of mixed sizes.
void CGLChartView::DrawTextDB()
{
    for (CChartTextData* pText : *m_pTextDB)
    {
        if (pText->m_bVisible != 1)
            continue;
        SetTextDataFontSize(pText->m_nFontSize);
        DrawTextData(pText->m_dX, pText->m_dY, pText->m_color, pText->m_strText);
    }
}

// In whatever size the font was left at by earlier drawing.
void CGLChartView::DrawSelectNodeNames()
{
    for (CChartTextData* pText : *m_pSelectNodeNames)
    {
        if (pText->m_bVisible == 1)
            DrawTextData(pText->m_dX, pText->m_dY, pText->m_color, pText->m_strText);
    }
}

void CGLChartView::DrawLineDB()
{
    for (CChartLineData* pLine : *m_pLineDB)
        DrawLineData(pLine->m_dX1, pLine->m_dY1, pLine->m_dX2, pLine->m_dY2, pLine->m_dWidth,
                     pLine->m_color);
}

void CGLChartView::DrawCurrentTextData()
{
    if (m_nDrawMode != 1 && m_nDrawMode != 3)
        return;
    const CPlotvane_Manager& m = *m_pManager;
    const CPointF p = ClientPointToView(CPoint(m.m_ptCurrentMouse.x, m.m_ptCurrentMouse.y));
    CChartTextData& t = *m_pCurrentText;
    t.m_dX = p.x;
    t.m_dY = p.y;
    int nSize = m_nCurrentFontSize;
    if (m_nDrawMode == 3)
    {
        plotvane::SetGLColor(kMovingTextFrame);
        glBegin(GL_LINE_LOOP);
        glVertex3d(t.m_dX, t.m_dY, 0.0);
        glVertex3d(t.m_dX + t.m_dWidth, t.m_dY, 0.0);
        glVertex3d(t.m_dX + t.m_dWidth, t.m_dY + t.m_dHeight, 0.0);
        glVertex3d(t.m_dX, t.m_dY + t.m_dHeight, 0.0);
        glEnd();
        nSize = t.m_nFontSize;
    }
    SetTextDataFontSize(nSize);
    DrawTextData(t.m_dX, t.m_dY, t.m_color, t.m_strText);
}

// Before the first click the line has no length; after it, it stretches from
// the first point to the mouse.
void CGLChartView::DrawCurrentLineData()
{
    if (m_nDrawMode != 2)
        return;
    const CPlotvane_Manager& m = *m_pManager;
    const CPointF p = ClientPointToView(CPoint(m.m_ptCurrentMouse.x, m.m_ptCurrentMouse.y));
    CChartLineData& l = *m_pCurrentLine;
    if (m_nDrawStep == 0)
    {
        l.m_dX1 = p.x;
        l.m_dY1 = p.y;
    }
    if (m_nDrawStep == 0 || m_nDrawStep == 1)
    {
        l.m_dX2 = p.x;
        l.m_dY2 = p.y;
    }
    DrawLineData(l.m_dX1, l.m_dY1, l.m_dX2, l.m_dY2, l.m_dWidth, l.m_color);
}

// A new text lands on the release of the button (a moved one on the press);
// a line takes two releases.
void CGLChartView::OnLButtonUp(UINT nFlags, CPoint point)
{
    const CPointF p = ClientPointToView(point);
    CRectF rc = GetViewRectLP();
    if (m_nDrawMode == 1 && m_nDrawStep == 0)
    {
        m_pCurrentText->m_dX = p.x;
        m_pCurrentText->m_dY = p.y;
        auto* pText = new CChartTextData;
        pText->m_dX = p.x;
        pText->m_dY = p.y;
        pText->m_strText = m_pCurrentText->m_strText;
        pText->m_color = m_crLabel;
        pText->m_nFontSize = m_nCurrentFontSize;
        const int n = pText->m_strText.GetLength();
        pText->m_dHeight = GetTextLPHeight(rc, m_nCurrentFontSize);
        pText->m_dWidth = GetTextLPWidth(rc, int(m_nCurrentFontSize * 0.54 * n));
        m_pTextDB->Add(pText);
        SetDrawMode(0);
        return;
    }
    if (m_nDrawMode == 2 && m_nDrawStep == 0)
    {
        m_pCurrentLine->m_dX1 = p.x;
        m_pCurrentLine->m_dY1 = p.y;
        m_nDrawStep = 1;
        return;
    }
    if (m_nDrawMode == 2 && m_nDrawStep == 1)
    {
        auto* pLine = new CChartLineData;
        pLine->m_dX1 = m_pCurrentLine->m_dX1;
        pLine->m_dY1 = m_pCurrentLine->m_dY1;
        pLine->m_dX2 = p.x;
        pLine->m_dY2 = p.y;
        pLine->m_dWidth = m_pCurrentLine->m_dWidth;
        pLine->m_color = m_crLabel;
        m_pLineDB->Add(pLine);
        m_nDrawStep = 0;
        SetDrawMode(0);
        return;
    }
    CGLWnd::OnLButtonUp(nFlags, point);
}

void CGLChartView::ForgetPickedText(const CChartTextData* pText)
{
    if (pText == nullptr || pText != m_pPickedText)
        return;
    m_pPickedText = nullptr;
    if (m_nDrawMode == 3)
        m_nDrawMode = 0;
}

void CGLChartView::ForgetPickedTextIn(CChartTextDataArray& texts)
{
    for (CChartTextData* pText : texts)
        ForgetPickedText(pText);
}

void CGLChartView::ClearTextDB()
{
    ForgetPickedTextIn(*m_pTextDB);
    m_pTextDB->DeleteAll();
}

void CGLChartView::ClearLineDB()
{
    m_pLineDB->DeleteAll();
}

void CGLChartView::ClearSelectNodeNames()
{
    ForgetPickedTextIn(*m_pSelectNodeNames);
    m_pSelectNodeNames->DeleteAll();
}

// The next new line too, through m_pCurrentLine.
void CGLChartView::AllChangeLineDataWidth(double d)
{
    m_pCurrentLine->m_dWidth = d;
    for (CChartLineData* pLine : *m_pLineDB)
        pLine->m_dWidth = d;
}
