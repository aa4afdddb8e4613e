// Differential levels of a pair such as a clock or a strobe: VIX, where the
// two legs cross relative to the reference, and VID, the differential swing.
// Both are compiled into the display list. The crossing levels are measured
// here unless the host gives them; the margin is always the host's.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/view/ChartViewUtil.h>
#include <plotvane/view/GLTextBmp.h>

#include <algorithm>
#include <cmath>

using plotvane::SetGLColor;

namespace
{
constexpr DWORD kGreen = 0x00FF00;
constexpr DWORD kRed = 0x0000FF;
constexpr DWORD kBlue = 0xFF0000;
constexpr DWORD kSwingArrow = 0xED92A2;

// "A/B" split at the first separator; without one the first part is empty
// and the second is the whole text.
void SplitAt(const CString& str, char sep, CString& first, CString& second)
{
    const int n = str.Find(sep);
    first = n < 0 ? CString() : str.Left(n);
    second = str.Mid(n + 1);
}

// The pair's two legs: net names "NET1/NET2" and node names "NODE1,NODE2",
// both compared with the upper-cased names of every set.
bool FindPair(CPlotvane_Manager& m, CChartPointDArray*& p1, CChartPointDArray*& p2)
{
    CString net1, net2, node1, node2;
    SplitAt(m.m_strMeasureNet2, '/', net1, net2);
    SplitAt(m.m_strMeasureNet, ',', node1, node2);
    p1 = nullptr;
    p2 = nullptr;
    for (CChartPointDArray* p : m.m_InputData.m_arrChartData)
    {
        if (p == nullptr)
            continue;
        CString net = p->m_strNetName;
        CString node = p->m_strName;
        net.MakeUpper();
        node.MakeUpper();
        if (net == net1 && node == node1)
            p1 = p;
        else if (net == net2 && node == node2)
            p2 = p;
        if (p1 && p2)
            return true;
    }
    return false;
}
} // namespace

void CGLChartView::DrawVIX()
{
    CPlotvane_Manager& m = *m_pManager;
    CChartPointDArray* p1 = nullptr;
    CChartPointDArray* p2 = nullptr;
    if (!FindPair(m, p1, p2))
        return;
    const plotvane::ChartFrame f = GetChartFrame();
    const double gx = f.ViewScaleX();
    const double gy = f.ViewScaleY();
    const double W = f.Width();
    const double H = f.Height();
    const double w = p1->m_dLineWidth;
    const double x1 = p1->GetMinX() * gx;
    const double x2 = p1->GetMaxX() * gx;
    auto line = [&](double y, DWORD color) { DrawLineData(x1, y * gy, x2, y * gy, w, color); };
    auto say = [&](const CString& str, double x, double y, DWORD color)
    {
        SetGLColor(color);
        m_pFontMeasure->PrintText(str, CPointD(x, y), nullptr);
    };

    // The leg with the smaller maximum bounds the band in which the legs'
    // crossings are looked for: its middle 40 %.
    const CChartPointDArray* pBand = p1->GetMaxY() > p2->GetMaxY() ? p2 : p1;
    const double hi = pBand->GetMaxY();
    const double lo = pBand->GetMinY();
    const double t = (hi - lo) * 0.3;
    const double dSum = lo + hi;

    double yA = 0.0;
    double yB = 0.0;
    if (m.m_dVIXMeasuredX == 0.0 && m.m_dVIXMeasuredY == 0.0)
    {
        // Without a crossing in the band both stay 0.0 and are drawn so.
        p1->GetDataCrossMinMaxYValueByPointArray(p2, lo + t, hi - t, 1e9, 1000.0, yA, yB);
    }
    else
    {
        yA = m.m_dVIXMeasuredX;
        yB = m.m_dVIXMeasuredY;
    }
    const double R = m.m_nMeasureType == 4 ? dSum * 0.5 : m.m_dVIXLevel * 0.5;
    const double dA = std::fabs(R - yA);
    const double dB = std::fabs(R - yB);
    const double dMeasuredMV = std::max(dA, dB) * 1000.0;
    const double dLimit = (dMeasuredMV + m.m_dMeasureMargin) / 1000.0;

    line(R, kGreen);
    say("Vref", W * 4 / 5, R * gy - H / 20, kGreen);

    // On a tie the upper crossing of the search is the extreme.
    const bool bExtremeIsA = dA > dB;
    const double E = bExtremeIsA ? yA : yB;
    line(E, kRed);
    const double xMeasuredArrow = W / 6 - W / 20;
    if (bExtremeIsA)
        DrawVerticalArrowLine(xMeasuredArrow, E * gy, xMeasuredArrow, R * gy, kRed, 1, 1);
    else
        DrawVerticalArrowLine(xMeasuredArrow, R * gy, xMeasuredArrow, E * gy, kRed, 1, 1);
    CString str;
    str.Format("Measured VIX: %g mV", dMeasuredMV);
    say(str, W / 6, E * gy - H / 20, kRed);

    // The near limit lies on the extreme's side of the reference.
    const bool bBelow = R > E;
    const double N = bBelow ? R - dLimit : R + dLimit;
    const double F = bBelow ? R + dLimit : R - dLimit;
    line(N, kBlue);

    // Which end comes first differs by case and is kept so: the lower end in
    // two cases, the extreme or the near limit in the others. The arrow only
    // points up, so an upper first end makes it climb from there past the
    // other end.
    const double xMargin = f.Right() - W / 3 - W / 20;
    const double yE = E * gy;
    const double yN = N * gy;
    double yFirst = std::min(yE, yN);
    double ySecond = std::max(yE, yN);
    if (bExtremeIsA && !bBelow)
    {
        yFirst = yE;
        ySecond = yN;
    }
    else if (!bExtremeIsA && bBelow)
    {
        yFirst = yN;
        ySecond = yE;
    }
    DrawVerticalArrowLine(xMargin, yFirst, xMargin, ySecond, m_crLabel, 1, 1);

    line(F, kBlue);
    say("VIX Max", W * 3 / 5, F * gy - H / 20, kBlue);
    str.Format("VIX Margin: %g mV", m.m_dMeasureMargin);
    say(str, f.Right() - W / 3, E * gy - H / 20, m_crLabel);
}

// The larger of the two differential swings, first high against second low
// or second high against first low, between red lines.
void CGLChartView::DrawVID()
{
    CPlotvane_Manager& m = *m_pManager;
    CChartPointDArray* p1 = nullptr;
    CChartPointDArray* p2 = nullptr;
    if (!FindPair(m, p1, p2))
        return;
    const plotvane::ChartFrame f = GetChartFrame();
    const double gx = f.ViewScaleX();
    const double gy = f.ViewScaleY();
    const double W = f.Width();
    const double H = f.Height();
    const double a = p1->GetMaxY();
    const double b = p1->GetMinY();
    const double c = p2->GetMaxY();
    const double d = p2->GetMinY();
    const double s1 = std::fabs(a - d) * 1000.0;
    const double s2 = std::fabs(c - b) * 1000.0;
    const double x1 = p1->GetMinX() * gx;
    const double x2 = p1->GetMaxX() * gx;
    const double w = p1->m_dLineWidth;
    double yUpper = 0.0;
    double yLower = 0.0;
    if (s1 > s2)
    {
        yUpper = a * gy;
        yLower = d * gy;
        DrawLineData(x1, yUpper, x2, yUpper, w, kRed);
        DrawLineData(x1, yLower, x2, yLower, w, kRed);
    }
    else
    {
        // The lower line is blue in this case only, on purpose.
        yUpper = c * gy;
        yLower = b * gy;
        DrawLineData(x1, yUpper, x2, yUpper, w, kRed);
        DrawLineData(x1, yLower, x2, yLower, w, kBlue);
    }
    const double xArrow = W * 0.25 - W / 20;
    DrawVerticalArrowLine(xArrow, yLower, xArrow, yUpper, kSwingArrow, 1, 1);
    CString str;
    str.Format("VID Margin: %g mV", m.m_dMeasureMargin);
    SetGLColor(m_crLabel);
    m_pFontMeasure->PrintText(str, CPointD(f.Right() - W / 3, f.Bottom() + 2 * H / 15), nullptr);
}
