// Cursors: clipping lines with their value labels, crossing texts and
// distance lines, two-click clipping boxes, and the cross lines that follow
// the mouse while a placing mode is on.
//
// The texts of a line or box are made once, when it is placed, in logical
// units: they stay with the line at any zoom, while their measured extents
// (for grabbing them) are those of the zoom at placing time.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/ChartMarkers.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/view/ChartViewUtil.h>
#include <plotvane/view/GLTextBmp.h>

#include <GL/gl.h>

#include <algorithm>
#include <cmath>

using plotvane::ChartFrame;
using plotvane::ChartTextLayer;
using plotvane::SetGLColor;

namespace
{

constexpr DWORD kPicked = RGB(255, 0, 0);
constexpr DWORD kDistanceText = RGB(250, 100, 50);
constexpr DWORD kDistanceLine = RGB(150, 100, 50);
constexpr DWORD kCrossingText = RGB(150, 150, 250);
constexpr DWORD kLabel = RGB(50, 100, 250);
constexpr DWORD kCrossLine = 0x785050;

// A distance of no width reads so; it is not worth a text.
const char* const kZeroDistance = "0.00";

// Makes the texts of cursors: numbers in the manager's format, records
// placed in logical units and measured at the zoom of the moment. Reading a
// logarithmic axis switches the format to engineering for good: nothing
// switches it back, and the axis names follow it from then on.
class CursorTexts
{
public:
    explicit CursorTexts(CGLChartView& v)
        : m_v(v), m_m(*v.m_pManager), m_f(v.GetChartFrame()), m_rc(m_f.VisibleRect())
    {
    }

    const ChartFrame& Frame() const { return m_f; }
    CPlotvane_Manager& Manager() { return m_m; }

    CString Number(double d) { return m_m.GetDisplayNumberByFormatType(d); }
    CString LogNumber(double d)
    {
        m_m.m_nFormatType = 2;
        return Number(d);
    }
    // A logical position as the axis shows it.
    CString AxisX(double x)
    {
        return m_f.IsLogX() ? LogNumber(m_m.GetXUnit() * std::pow(10.0, x))
                            : Number(x * m_m.GetScaleX());
    }
    CString AxisY(double y)
    {
        return m_f.IsLogY() ? LogNumber(m_m.GetYUnit() * std::pow(10.0, y))
                            : Number(y * m_m.GetScaleY());
    }

    void Place(CChartTextData& t, double x, double y, const CString& text)
    {
        t.m_dX = x;
        t.m_dY = y;
        t.m_strText = text;
        t.m_dHeight = TextHeight();
        t.m_dWidth = m_v.GetTextLPWidth(m_rc, int(text.GetLength() * 6.48));
    }
    double TextHeight() { return m_v.GetTextLPHeight(m_rc, 12); }

private:
    CGLChartView& m_v;
    CPlotvane_Manager& m_m;
    ChartFrame m_f;
    CRectF m_rc;
};

void PrintRecord(CGLTextBmp& font, const CChartTextData& t)
{
    font.PrintText(t.m_strText, CPointD(t.m_dX, t.m_dY), nullptr);
}

CPointF MouseLP(CGLChartView& v)
{
    const CPointN& mouse = v.m_pManager->m_ptCurrentMouse;
    return v.ClientPointToView(CPoint(mouse.x, mouse.y));
}

// The cross of a placing mode with its value text, in the cross colour; the
// text takes the colour the line left current. A logarithmic Y value is
// shown only where bLogForm allows.
void HorizontalCross(CGLChartView& v, CursorTexts& texts, const CPointF& p, bool bLogForm)
{
    CPlotvane_Manager& m = texts.Manager();
    const ChartFrame& f = texts.Frame();
    v.DrawHorizontalViewLine(p.y, kCrossLine);
    const CString text = bLogForm ? texts.AxisY(p.y) : texts.Number(p.y * m.GetScaleY());
    v.m_pFontMeasure->PrintText(text, CPointD(f.Right() - f.Width() * 0.0625, p.y), nullptr);
}

void VerticalCross(CGLChartView& v, CursorTexts& texts, const CPointF& p, const CString& text)
{
    const ChartFrame& f = texts.Frame();
    v.DrawVerticalViewLine(p.x, kCrossLine);
    v.m_pFontMeasure->PrintText(text, CPointD(p.x, f.Top() - f.Height() / 20), nullptr);
}

DWORD GuideColor(const CGLChartView& v)
{
    return v.GetGridMode() == 1 ? 0x0000FF : 0x00FFFF;
}

} // namespace

// ---------------------------------------------------------------------------
// Lines

void CGLChartView::DrawXClippingLine()
{
    DrawClippingLines(1);
}

void CGLChartView::DrawYClippingLine()
{
    DrawClippingLines(0);
}

void CGLChartView::DrawClippingLines(int bVertical)
{
    TextLayerScope layer(*this, ChartTextLayer::Cursor);
    const ChartFrame f = GetChartFrame();
    int nCounter = -1;
    for (CChartClippingLine* pLine : *m_pManager->m_pClippingLineArray)
    {
        if (!pLine->m_bVisible || (pLine->m_bVertical != 0) != (bVertical != 0))
            continue;
        ++nCounter;
        SetGLColor(m_pPickedText == pLine->m_pValueText ? kPicked : pLine->m_color);
        const double v = pLine->m_dPosition;
        if (bVertical)
        {
            DrawLine(v, f.Top(), v, f.Bottom());
            DrawXClippingValueText(pLine, nCounter);
        }
        else
        {
            DrawLine(f.Left(), v, f.Right(), v);
            DrawYClippingValueText(pLine, nCounter);
        }
    }
}

void CGLChartView::DrawXClippingValueText(CChartClippingLine* pLine, int& nCounter)
{
    DrawClippingLineTexts(pLine, nCounter, m_pManager->m_bClippingVerticalDistance,
                          m_pManager->m_bClippingVerticalValue);
}

void CGLChartView::DrawYClippingValueText(CChartClippingLine* pLine, int& nCounter)
{
    DrawClippingLineTexts(pLine, nCounter, m_pManager->m_bClippingHorizontalDistance,
                          m_pManager->m_bClippingHorizontalValue);
}

// The first pair's distance text stays hidden while the counter is below 1,
// but its line is drawn.
void CGLChartView::DrawClippingLineTexts(CChartClippingLine* pLine, int nCounter, int bDistance,
                                         int bValue)
{
    if (m_pManager->m_pClippingLineArray->GetSize() >= 2 && bDistance && pLine->m_bDistanceEnd)
    {
        const CChartTextData& d = *pLine->m_pDistanceText;
        SetGLColor(kDistanceText);
        if (d.m_strText != kZeroDistance && nCounter >= 1 && d.m_bVisible)
            PrintRecord(*m_pFontMeasure, d);
        SetGLColor(m_pPickedText == pLine->m_pDistanceText ? kPicked : kDistanceLine);
        DrawLine(pLine->m_ptDistanceStart.x, pLine->m_ptDistanceStart.y, pLine->m_ptDistanceEnd.x,
                 pLine->m_ptDistanceEnd.y);
    }
    if (bValue)
    {
        SetGLColor(kCrossingText);
        for (const CChartTextData* t : *pLine->m_pClippingTextArray)
            if (t->m_bVisible)
                PrintRecord(*m_pFontMeasure, *t);
    }
    if (pLine->m_pValueText->m_bVisible)
    {
        SetGLColor(kLabel);
        PrintRecord(*m_pFontMeasure, *pLine->m_pValueText);
    }
}

// Labels of vertical lines take one of four rows under the top, by index,
// so that the labels of neighbouring lines do not overlap; those of
// horizontal lines alternate between two columns at the right.
void CGLChartView::SetGLChartViewClipingText(CChartClippingLine* pLine, int index)
{
    CursorTexts texts(*this);
    CPlotvane_Manager& m = *m_pManager;
    const ChartFrame& f = texts.Frame();
    const double W = f.Width();
    const double H = f.Height();
    const double h = texts.TextHeight();
    const double v = pLine->m_dPosition;
    const bool bVertical = pLine->m_bVertical != 0;

    if (bVertical)
        texts.Place(*pLine->m_pValueText, v, f.Top() - H / 30 - (3 - index % 4) * h,
                    texts.AxisX(v));
    else
        texts.Place(*pLine->m_pValueText, f.Right() - W * (index % 2 ? 0.125 : 0.0625), v,
                    texts.AxisY(v));

    for (double c : pLine->m_arrClippingValue)
    {
        CChartTextData* t = new CChartTextData;
        if (bVertical && f.IsLogY())
            texts.Place(*t, v, ChartFrame::LogAxisValue(c), texts.LogNumber(m.GetYUnit() * c));
        else if (bVertical)
            texts.Place(*t, v, c, texts.Number(c * m.GetScaleY()));
        else if (f.IsLogX())
            texts.Place(*t, ChartFrame::LogAxisValue(c), v, texts.LogNumber(m.GetXUnit() * c));
        else
            texts.Place(*t, c, v, texts.Number(c * m.GetScaleX()));
        pLine->m_pClippingTextArray->Add(t);
    }

    // The distance runs to the last line of the same direction, at the
    // mouse's height (width) a little inside.
    const CPointF p = MouseLP(*this);
    CChartClippingLine*& pLast = bVertical ? m_pLastXClippingLine : m_pLastYClippingLine;
    if (pLast != nullptr)
    {
        const double w = pLast->m_dPosition;
        const double d = std::fabs(v - w);
        if (bVertical)
        {
            const double y = p.y - H / 30;
            pLine->m_ptDistanceStart = CPointD(v, y);
            pLine->m_ptDistanceEnd = CPointD(w, y);
            texts.Place(*pLine->m_pDistanceText, d / 2.5 + std::min(v, w), y,
                        f.IsLogX() ? texts.LogNumber(m.GetXUnit() * std::pow(10.0, d))
                                   : texts.Number(d * m.GetScaleX()));
        }
        else
        {
            const double x = p.x - W / 30;
            pLine->m_ptDistanceStart = CPointD(x, v);
            pLine->m_ptDistanceEnd = CPointD(x, w);
            texts.Place(*pLine->m_pDistanceText, x, d * 0.5 + std::min(v, w),
                        f.IsLogY() ? texts.LogNumber(m.GetYUnit() * d)
                                   : texts.Number(d * m.GetScaleY()));
        }
    }
    pLast = pLine;
}

void CGLChartView::SetGLChartViewClippingLine(int bVertical, double dValue)
{
    CChartClippingLine* pLine = new CChartClippingLine;
    pLine->m_bVertical = bVertical;
    pLine->m_dPosition = dValue;
    m_pManager->m_pClippingLineArray->Add(pLine);
}

// The last-line pointers go with the lines they name.
void CGLChartView::RemoveClippingLineArray()
{
    for (CChartClippingLine* pLine : *m_pManager->m_pClippingLineArray)
    {
        ForgetPickedText(pLine->m_pValueText);
        ForgetPickedText(pLine->m_pDistanceText);
        if (pLine->m_pClippingTextArray != nullptr)
            ForgetPickedTextIn(*pLine->m_pClippingTextArray);
    }
    m_pManager->m_pClippingLineArray->Init();
    m_pManager->m_arrClippingValueX.SetSize(0);
    m_pManager->m_arrClippingValueY.SetSize(0);
    m_pLastXClippingLine = nullptr;
    m_pLastYClippingLine = nullptr;
}

void CGLChartView::AddClickedClippingLine(int bVertical, const CPointF& p)
{
    CPlotvane_Manager& m = *m_pManager;
    // The crossings are asked of the store that this pointer names.
    CPlotvane_InputData::m_pInputData = &m.m_InputData;
    m_pPendingBox = nullptr;
    m_nBoxClickCount = 0;

    CChartClippingLine* pLine = new CChartClippingLine;
    pLine->m_bVisible = 1;
    pLine->m_bVertical = bVertical ? 1 : 0;
    pLine->m_color = m_crMeasureMark;
    pLine->m_dPosition = bVertical ? p.x : p.y;
    CChartClippingLineArray& lines = *m.m_pClippingLineArray;
    const int index = int(lines.Add(pLine));
    if (bVertical ? m.m_bClippingVerticalValue : m.m_bClippingHorizontalValue)
        lines.CalcClippingValueArray(index);
    SetGLChartViewClipingText(pLine, index);

    // Distances come in pairs: every second line closes one.
    if (bVertical ? m.m_bClippingVerticalDistance : m.m_bClippingHorizontalDistance)
    {
        int& nPending = bVertical ? m.m_nVerticalDistancePending : m.m_nHorizontalDistancePending;
        if (nPending == 1)
        {
            pLine->m_bDistanceEnd = 1;
            nPending = 0;
        }
        else
            nPending = 1;
    }
}

// ---------------------------------------------------------------------------
// Distances for hosts

void CGLChartView::DrawXClippingValueDelta()
{
    DrawClippingValueDelta(1, 0);
}

void CGLChartView::DrawXClippingValueDelta_Log()
{
    DrawClippingValueDelta(1, 1);
}

void CGLChartView::DrawYClippingValueDelta()
{
    DrawClippingValueDelta(0, 0);
}

// Each pair's mark stands where the mouse was when the pair was first drawn:
// until the manager's array holds a place for every pair, a call records the
// mouse and asks for another paint.
void CGLChartView::DrawClippingValueDelta(int bVertical, int bLog)
{
    CPlotvane_Manager& m = *m_pManager;
    CArrayD a;
    for (const CChartClippingLine* pLine : *m.m_pClippingLineArray)
        if ((pLine->m_bVertical != 0) == (bVertical != 0))
            a.Add(pLine->m_dPosition);
    if (a.GetSize() < 2)
        return;
    TextLayerScope layer(*this, ChartTextLayer::Cursor);
    const ChartFrame f = GetChartFrame();
    CArrayD& places = bVertical ? m.m_arrClippingValueX : m.m_arrClippingValueY;
    const double* pa = a.GetData();
    for (INT_PTR i = 0; i + 1 < a.GetSize(); ++i)
    {
        SetGLColor(kDistanceText);
        if (places.GetSize() < a.GetSize() - 1)
        {
            const CPointF p = MouseLP(*this);
            places.Add(bVertical ? p.y : p.x);
            Invalidate();
            continue;
        }
        const double at = places.GetData()[i];
        const double lo = std::min(pa[i], pa[i + 1]);
        const double d = std::fabs(pa[i + 1] - pa[i]);
        CString text;
        if (!bVertical)
            text = m.GetDisplayNumberByFormatType(d * m.GetScaleY());
        else if (bLog)
            text = m.GetDisplayNumberByFormatType(
                m.GetXUnit() * std::fabs(std::pow(10.0, pa[i + 1]) - std::pow(10.0, pa[i])));
        else
            text = m.GetDisplayNumberByFormatType(d * m.GetScaleX());
        if (text != kZeroDistance)
        {
            const CPointD pos = !bVertical ? CPointD(at, d * 0.5 + lo)
                                : bLog     ? CPointD(lo, at)
                                           : CPointD(d / 2.5 + lo, at);
            m_pFontMeasure->PrintText(text, pos, nullptr);
        }
        SetGLColor(kDistanceLine);
        if (bVertical)
            DrawLine(pa[i + 1], at - f.Height() / 30, pa[i], at - f.Height() / 30);
        else
            DrawLine(at - f.Width() / 30, pa[i + 1], at - f.Width() / 30, pa[i]);
    }
}

// ---------------------------------------------------------------------------
// Boxes

// A vertical box spans the eye mask's height around its line; a horizontal
// one spans a share of the mask's width around its line.
void CGLChartView::DrawClippingBox()
{
    TextLayerScope layer(*this, ChartTextLayer::Cursor);
    for (const CChartClippingBox* pBox : *m_pManager->m_pClippingBoxArray)
    {
        if (!pBox->m_bVisible)
            continue;
        const bool bPicked =
            m_pPickedText == pBox->m_pWidthText || m_pPickedText == pBox->m_pHeightText;
        const CChartClippingBox& b = *pBox;
        if (b.m_bVertical)
            DrawBox(b.m_dX1, b.m_dY1 - b.m_dHeight / 2, b.m_dX2, b.m_dY2 + b.m_dHeight / 2,
                    bPicked ? kPicked : b.m_color, CString());
        else
            DrawBox(b.m_dX1 - b.m_dWidth / 2, b.m_dY1, b.m_dX2 + b.m_dWidth / 2, b.m_dY2,
                    bPicked ? kPicked : b.m_color, CString());
        // In the box's colour, which DrawBox left current.
        if (b.m_pWidthText->m_bVisible)
            PrintRecord(*m_pFontMeasure, *b.m_pWidthText);
        if (b.m_pHeightText->m_bVisible)
            PrintRecord(*m_pFontMeasure, *b.m_pHeightText);
    }
}

void CGLChartView::RemoveClippingBoxArray()
{
    for (CChartClippingBox* pBox : *m_pManager->m_pClippingBoxArray)
    {
        ForgetPickedText(pBox->m_pWidthText);
        ForgetPickedText(pBox->m_pHeightText);
    }
    m_pManager->m_pClippingBoxArray->Init();
}

CChartClippingBox* CGLChartView::GetPendingBox() const
{
    if (m_pPendingBox == nullptr || !m_pManager->m_pClippingBoxArray->Exists(m_pPendingBox))
        return nullptr;
    return m_pPendingBox;
}

// The first click makes the box, invisible, with its fixed extent from the
// eye mask; the second sets the other corner and writes W= and H=. The count
// goes back to 0 after the second click whatever it found.
void CGLChartView::ClickClippingBox(int bVertical, const CPointF& p)
{
    CPlotvane_Manager& m = *m_pManager;
    if (m_nBoxClickCount == 0)
    {
        CChartClippingBox* pBox = new CChartClippingBox;
        pBox->m_bVertical = bVertical ? 1 : 0;
        pBox->m_bVisible = 0;
        pBox->m_color = m_crMeasureMark;
        if (bVertical)
        {
            const double u = m.GetYUnit() / m.GetScaleY();
            const double half = u * m.m_dEyeMaskHeight * 0.5;
            const double c = u * m.m_dEyeMaskCenterY;
            // Without a mask centre the first corner's X takes the click's Y,
            // and its Y stays 0: boxes have always been placed so.
            pBox->m_dX1 = p.x;
            if (c != 0.0)
                pBox->m_dY1 = c;
            else
                pBox->m_dX1 = p.y;
            pBox->m_dHeight = half * 2;
        }
        else
        {
            pBox->m_dX1 = p.x;
            pBox->m_dY1 = p.y;
            const double u = m.GetXUnit() / m.GetScaleX();
            const double half =
                u * m.m_dEyeMaskWidth * 0.5 * (m.m_dEyeMaskTopPercent / 100.0) * 0.5 / 100.0;
            pBox->m_dWidth = half * 2;
        }
        m.m_pClippingBoxArray->Add(pBox);
        m_pPendingBox = pBox;
        m_nBoxClickCount = 1;
        return;
    }

    m_nBoxClickCount = 0;
    CChartClippingBox* pBox = GetPendingBox();
    if (pBox == nullptr)
        return;
    CursorTexts texts(*this);
    CChartClippingBox& b = *pBox;
    b.m_bVisible = 1;
    double dMid = 0.0;
    if (bVertical)
    {
        b.m_dX2 = p.x;
        b.m_dY2 = b.m_dY1;
        b.m_dWidth = std::fabs(b.m_dX1 - b.m_dX2);
        dMid = std::max(b.m_dX1, b.m_dX2) - b.m_dWidth * 0.5;
    }
    else
    {
        b.m_dX2 = b.m_dX1;
        b.m_dY2 = p.y;
        b.m_dHeight = std::fabs(b.m_dY1 - b.m_dY2);
        dMid = std::max(b.m_dY1, b.m_dY2) - b.m_dHeight * 0.5;
    }
    const CString strW = "W=" + texts.Number(b.m_dWidth * m.GetScaleX());
    const CString strH = "H=" + texts.Number(b.m_dHeight * m.GetScaleY());
    if (bVertical)
    {
        texts.Place(*b.m_pWidthText, dMid, b.m_dY1, strW);
        texts.Place(*b.m_pHeightText, dMid, b.m_dY2 - b.m_dHeight / 5.0, strH);
    }
    else
    {
        texts.Place(*b.m_pWidthText, b.m_dX1, dMid, strW);
        texts.Place(*b.m_pHeightText, b.m_dX1, dMid - b.m_dHeight / 10.0, strH);
    }
    Invalidate();
}

// ---------------------------------------------------------------------------
// What follows the mouse

// The placing modes live in the manager.
void CGLChartView::ShowVerticalClipping(int n)
{
    m_pManager->m_bClippingVertical = n;
}

void CGLChartView::ShowHorizontalClipping(int n)
{
    m_pManager->m_bClippingHorizontal = n;
}

void CGLChartView::ShowVerticalClippingBox(int n)
{
    m_pManager->m_bClippingVerticalBox = n;
}

void CGLChartView::ShowHorizontalClippingBox(int n)
{
    m_pManager->m_bClippingHorizontalBox = n;
}

void CGLChartView::DrawCrossLine()
{
    CPlotvane_Manager& m = *m_pManager;
    if (!m.m_bClippingHorizontal && !m.m_bClippingVertical && !m.m_bClippingHorizontalBox &&
        !m.m_bClippingVerticalBox)
        return;
    TextLayerScope layer(*this, ChartTextLayer::Cursor);
    CursorTexts texts(*this);
    const CPointF p = MouseLP(*this);
    // Read after the horizontal cross: a logarithmic Y value may switch the
    // format that this text uses.
    auto strX = [&] { return texts.Number(p.x * m.GetScaleX()); };
    if (m.m_bClippingHorizontal)
        HorizontalCross(*this, texts, p, true);
    if (m.m_bClippingVertical)
        VerticalCross(*this, texts, p, strX());

    const DWORD crGuide = GuideColor(*this);
    CChartClippingBox* pPending = GetPendingBox();
    if (m.m_bClippingHorizontalBox)
    {
        HorizontalCross(*this, texts, p, false);
        if (m_nBoxClickCount == 0)
        {
            const double b = (m.GetXUnit() / m.GetScaleX()) * m.m_dEyeMaskWidth * 0.5 *
                             (m.m_dEyeMaskTopPercent / 100.0) * 0.5 / 100.0;
            DrawVerticalViewLine(p.x - b, crGuide);
            DrawVerticalViewLine(p.x + b, crGuide);
        }
        else if (m_nBoxClickCount == 1 && pPending != nullptr)
        {
            DrawHorizontalViewLine(pPending->m_dY1, crGuide);
            DrawVerticalViewLine(pPending->m_dX1 - pPending->m_dWidth / 2, crGuide);
            DrawVerticalViewLine(pPending->m_dX1 + pPending->m_dWidth / 2, crGuide);
        }
    }
    if (m.m_bClippingVerticalBox)
    {
        VerticalCross(*this, texts, p, strX());
        if (m_nBoxClickCount == 0)
        {
            const double u = m.GetYUnit() / m.GetScaleY();
            const double b = u * m.m_dEyeMaskHeight * 0.5;
            const double c = u * m.m_dEyeMaskCenterY;
            const double centre = c == 0.0 ? double(p.y) : c;
            DrawHorizontalViewLine(centre - b, crGuide);
            DrawHorizontalViewLine(centre + b, crGuide);
        }
        else if (m_nBoxClickCount == 1 && pPending != nullptr)
        {
            DrawVerticalViewLine(pPending->m_dX1, crGuide);
            DrawHorizontalViewLine(pPending->m_dY1 - pPending->m_dHeight / 2, crGuide);
            DrawHorizontalViewLine(pPending->m_dY1 + pPending->m_dHeight / 2, crGuide);
        }
    }
}

void CGLChartView::DrawCrossLine_Log()
{
    CPlotvane_Manager& m = *m_pManager;
    if (!m.m_bClippingHorizontal && !m.m_bClippingVertical)
        return;
    TextLayerScope layer(*this, ChartTextLayer::Cursor);
    CursorTexts texts(*this);
    const CPointF p = MouseLP(*this);
    if (m.m_bClippingHorizontal)
        HorizontalCross(*this, texts, p, true);
    if (m.m_bClippingVertical)
        VerticalCross(*this, texts, p,
                      texts.Number(m.GetXUnit() * std::pow(10.0, double(p.x))));
}
