// Overshoot and undershoot: a voltage limit check on one net or on the two
// legs of a differential pair. The host has measured and gives the limit,
// the measured value and the margin; the overlay finds the waveform, draws
// the level, the limit and the measured extreme with arrows between them,
// and labels them. The area form shades the largest excursion beyond the
// level, which it measures itself for that. Both are compiled into the
// display list, so they search the waveforms once per redraw request.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/view/ChartViewUtil.h>
#include <plotvane/view/GLTextBmp.h>

#include <GL/gl.h>

#include <algorithm>

using plotvane::SetGLColor;

namespace
{
constexpr DWORD kBlue = 0xFF0000;
constexpr DWORD kRed = 0x0000FF;
constexpr DWORD kAreaShade = 0xED92A2;
constexpr DWORD kVselArrow = 0xED92A2;
constexpr double kZ = 500.0;

// The sets that "NAME" or "NAME1,NAME2" name, matched against upper-cased
// set names over all sets, drawn or not. The host gives the names in
// capitals.
struct MeasureSets
{
    CChartPointDArray* p1 = nullptr;
    CChartPointDArray* p2 = nullptr;
};

bool FindMeasureSets(CPlotvane_InputData& data, const CString& strNet, MeasureSets& r)
{
    const int nComma = strNet.Find(',');
    if (nComma < 0)
    {
        for (CChartPointDArray* p : data.m_arrChartData)
        {
            if (p == nullptr)
                continue;
            CString str = p->m_strName;
            if (str.MakeUpper() == strNet)
            {
                r.p1 = p;
                return true;
            }
        }
        return false;
    }
    const CString strName1 = strNet.Left(nComma);
    const CString strName2 = strNet.Mid(nComma + 1);
    for (CChartPointDArray* p : data.m_arrChartData)
    {
        if (p == nullptr)
            continue;
        CString str = p->m_strName;
        str.MakeUpper();
        if (str == strName1)
            r.p1 = p;
        else if (str == strName2)
            r.p2 = p;
        if (r.p1 && r.p2)
            return true;
    }
    return false;
}
} // namespace

// Texts stand at shares of the view from the logical origin (limit texts and
// arrows) or from its edges (the margin), never measured against each other.
void CGLChartView::DrawOverUnderShoot()
{
    CPlotvane_Manager& m = *m_pManager;
    MeasureSets sets;
    if (!FindMeasureSets(m.m_InputData, m.m_strMeasureNet, sets))
        return;
    const int nType = m.m_nMeasureType;
    // VSEH and VSEL are levels of a pair's two legs.
    if ((nType == 7 || nType == 8) && sets.p2 == nullptr)
        return;
    const CChartPointDArray& s1 = *sets.p1;
    const plotvane::ChartFrame f = GetChartFrame();
    const double gx = f.ViewScaleX();
    const double gy = f.ViewScaleY();
    const double W = f.Width();
    const double H = f.Height();
    const double w = s1.m_dLineWidth;
    const double x1 = s1.GetMinX() * gx;
    const double x2 = s1.GetMaxX() * gx;
    double minY = s1.GetMinY();
    double maxY = s1.GetMaxY();
    if (sets.p2 != nullptr)
    {
        minY = std::min(minY, sets.p2->GetMinY());
        maxY = std::max(maxY, sets.p2->GetMaxY());
    }
    const double L = m.m_dMeasureLevel;
    const double M = m.m_dMeasureLimit;
    const double dMeasured = m.m_dMeasuredValue;

    auto line = [&](double y, DWORD color) { DrawLineData(x1, y, x2, y, w, color); };
    auto say = [&](const CString& str, double x, double y, DWORD color)
    {
        SetGLColor(color);
        m_pFontMeasure->PrintText(str, CPointD(x, y), nullptr);
    };
    auto number = [](const char* fmt, double v)
    {
        CString str;
        str.Format(fmt, v);
        return str;
    };
    auto arrow = [&](double x, double ya, double yb, DWORD color)
    { DrawVerticalArrowLine(x, ya, x, yb, color, 1, 1); };
    const double xLimitArrow = W / 20;
    const double xMeasuredArrow = W * 0.25 - W / 20;
    // The margin arrow of VSEH and VSEL is slanted on purpose: the W / 20
    // between its points adds to its length.
    auto marginArrow = [&](double ya, double yb, DWORD color)
    {
        const double xFirst = f.Right() - W / 3 - W / 20;
        const double xSecond = f.Right() - W / 3 - W / 10;
        DrawVerticalArrowLine(xFirst, std::min(ya, yb), xSecond, std::max(ya, yb), color, 1, 1);
    };
    const CPointD ptMarginHigh(f.Right() - W / 3, f.Top() - H / 15);
    const CPointD ptMarginLow(f.Right() - W / 3, f.Bottom() + 2 * H / 15);

    switch (nType)
    {
    case 0:
    {
        const double yLevel = L * gy;
        const double yLimit = (L + M / 1000.0) * gy;
        const double yPeak = maxY * gy;
        line(yLevel, kBlue);
        line(yPeak, kRed);
        line(yLimit, kBlue);
        const CString strMargin = number("Overshoot Margin: %g mV", m.m_dMeasureMargin);
        say(number("Max Overshoot: %g mV", M), W / 10, yLevel + H / 10, kBlue);
        arrow(xLimitArrow, yLevel, yLimit, kBlue);
        say(number("Measured Overshoot: %g mV", dMeasured), W * 0.25, yPeak - H / 20, kRed);
        // Arrows only point up: a peak below the level starts at the peak.
        if (dMeasured < 0.0)
            arrow(xMeasuredArrow, yPeak, yLevel, kRed);
        else
            arrow(xMeasuredArrow, yLevel, yPeak, kRed);
        say(strMargin, ptMarginHigh.x, ptMarginHigh.y, m_crLabel);
        break;
    }
    case 2:
    {
        const double yLevel = L * gy;
        const double yLimit = (L - M / 1000.0) * gy;
        const double yDip = minY * gy;
        line(yLevel, kBlue);
        line(yDip, kRed);
        line(yLimit, kBlue);
        const CString strMargin = number("Undershoot Margin: %g mV", m.m_dMeasureMargin);
        say(number("Max Undershoot: %g mV", M), W / 10, yLimit + H / 10, kBlue);
        arrow(xLimitArrow, yLimit, yLevel, kBlue);
        say(number("Measured Undershoot: %g mV", dMeasured), W * 0.25, yDip - H / 20, kRed);
        if (dMeasured < 0.0)
            arrow(xMeasuredArrow, yLevel, yDip, kRed);
        else
            arrow(xMeasuredArrow, yDip, yLevel, kRed);
        say(strMargin, ptMarginLow.x, ptMarginLow.y, m_crLabel);
        break;
    }
    case 7:
    {
        const double yLimit = M / 1000.0 * gy;
        const double yPeak = maxY * gy;
        line(0.0, kBlue);
        line(yPeak, kRed);
        line(yLimit, kBlue);
        const CString strMargin = number("VSEH Margin: %g mV", m.m_dMeasureMargin);
        marginArrow(yLimit, yPeak, m_crLabel);
        say(number("Min VSEH: %g mV", M), W / 10, yLimit - H / 20, kBlue);
        arrow(xLimitArrow, 0.0, yLimit, kBlue);
        say(number("Measured VSEH: %g mV", dMeasured), W * 0.25, yPeak - H / 20, kRed);
        arrow(xMeasuredArrow, 0.0, yPeak, kRed);
        say(strMargin, ptMarginHigh.x, ptMarginHigh.y, m_crLabel);
        break;
    }
    case 8:
    {
        const double yLimit = M / 1000.0 * gy;
        const double yDip = minY * gy;
        line(0.0, kBlue);
        line(yDip, kRed);
        line(yLimit, kBlue);
        const CString strMargin = number("VSEL Margin: %g mV", m.m_dMeasureMargin);
        marginArrow(yLimit, yDip, kVselArrow);
        say(number("Max VSEL: %g mV", M), W / 10, yLimit + H / 20, kBlue);
        arrow(xLimitArrow, 0.0, yLimit, kBlue);
        say(number("Measured VSEL: %g mV", dMeasured), W * 0.25, yDip + H / 20, kRed);
        if (dMeasured < 0.0)
            arrow(xMeasuredArrow, yDip, 0.0, kRed);
        else
            arrow(xMeasuredArrow, 0.0, yDip, kRed);
        say(strMargin, ptMarginLow.x, ptMarginLow.y, m_crLabel);
        break;
    }
    default:
        break;
    }
}

// The shaded shape is the largest excursion beyond the level over the
// waveform's eye lines, in the same search the area check uses (X in ns,
// Y in mV); of a pair the leg with the greater area, the second on a tie.
void CGLChartView::DrawOverUnderShootArea()
{
    CPlotvane_Manager& m = *m_pManager;
    MeasureSets sets;
    if (!FindMeasureSets(m.m_InputData, m.m_strMeasureNet, sets))
        return;
    const CChartPointDArray& s1 = *sets.p1;
    const plotvane::ChartFrame f = GetChartFrame();
    const double gx = f.ViewScaleX();
    const double gy = f.ViewScaleY();
    const double W = f.Width();
    const double H = f.Height();
    const double L = m.m_dMeasureLevel;
    const double dMinX = s1.GetMinX();
    const double dMaxX = s1.GetMaxX();
    const bool bAbove = m.m_nMeasureType == 1;

    DrawLineData(dMinX * gx, L * gy, dMaxX * gx, L * gy, s1.m_dLineWidth, kBlue);

    SetGLColor(kAreaShade);
    glPushAttrib(GL_ENABLE_BIT);
    glEnable(GL_POLYGON_STIPPLE);
    glPolygonStipple(plotvane::OverlayStipple());
    auto measure = [&](const CChartPointDArray& set, CChartPointDArray& pts)
    {
        double dArea = 0.0;
        if (bAbove)
            set.GetMaxAreaAboveYValueAndAllPointsInAreaWithExtractEyeLinePoints(
                1e9, 1000.0, dMinX, dMaxX, L, dArea, &pts);
        else
            set.GetMaxAreaBelowYValueAndAllPointsInAreaWithExtractEyeLinePoints(
                1e9, 1000.0, dMinX, dMaxX, L, dArea, &pts);
        return dArea;
    };
    CChartPointDArray pts1;
    CChartPointDArray pts2;
    const double dArea1 = measure(s1, pts1);
    const CChartPointDArray* pShade = &pts1;
    if (sets.p2 != nullptr && !(dArea1 > measure(*sets.p2, pts2)))
        pShade = &pts2;
    glBegin(GL_POLYGON);
    for (const CChartPointD* p : *pShade)
        glVertex3d(p->X * gx, p->Y * gy, kZ);
    glEnd();
    glPopAttrib();

    CString str;
    CPointD pt;
    if (bAbove)
    {
        str.Format("Overshoot Area Margin: %g V-ns", m.m_dMeasureMargin);
        pt = CPointD(f.Right() - W * 0.4, f.Top() - H / 15);
    }
    else
    {
        str.Format("Undershoot Area Margin: %g V-ns", m.m_dMeasureMargin);
        pt = CPointD(f.Right() - W * 0.4, f.Bottom() + 2 * H / 15);
    }
    SetGLColor(m_crLabel);
    m_pFontMeasure->PrintText(str, pt, nullptr);
}
