// Four small overlays that place numbers the host has measured: the flight
// time between two crossings, the peak of a near-end or far-end crosstalk
// waveform, a point and two levels on a TDR curve, and a frequency point
// with a level for the DFE (with the zoom that goes with it). They measure
// nothing themselves.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/Plotvane_InputData.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/view/ChartViewUtil.h>
#include <plotvane/view/GLTextBmp.h>

#include <GL/gl.h>

#include <algorithm>
#include <cmath>

using plotvane::SetGLColor;

namespace
{
constexpr DWORD kRed = 0x0000FF;
constexpr DWORD kBlue = 0xFF0000;
constexpr DWORD kOrange = 0x00A5FF;
constexpr DWORD kCrosstalkText = 0xED92A2;
constexpr double kTiny = 2.2250738585072014e-308;

const CChartPointDArray* ExistingSet(const CPlotvane_InputData& data, int i)
{
    if (i < 0 || (unsigned long long)i >= data.GetDataSetSize())
        return nullptr;
    return data.GetChartPointDArray(i);
}

// The node name up to its first "_": the reference name of a far-end
// node. No "_" gives an empty name, which matches no far-end net.
CString RefNameOf(const CString& strName)
{
    const int n = strName.Find('_');
    return n < 0 ? CString() : strName.Left(n);
}
} // namespace

// Labels stand 1/20 of their own coordinate beyond the mark they name.
void CGLChartView::DrawFlightTime()
{
    CPlotvane_Manager& m = *m_pManager;
    const plotvane::ChartFrame f = GetChartFrame();
    const double gx = CPlotvane_InputData::m_dViewScaleX;
    const double gy = CPlotvane_InputData::m_dViewScaleY;
    const double x1 = m.m_dFlightTimeX1;
    const double x2 = m.m_dFlightTimeX2;
    const double L1 = m.m_dFlightTimeLevel1;
    const double L2 = m.m_dFlightTimeLevel2;
    const double d = std::fabs(x1 - x2);

    CString str;
    str.Format("%.3f", d * m.GetXUnit());
    SetGLColor(kOrange);
    m_pFontMeasure->PrintText(str, CPointD((x1 + x2) * 0.5 * 21 / 20 * gx, L1 * 21 / 20 * gy),
                              nullptr);

    glLineWidth(1.0f);
    DrawHorizontalArrowLine(x1 * gx, L1 * gy, x2 * gx, L1 * gy, kOrange, 1, 1);

    const double ox = f.OriginInDouble().x;
    DrawLineData(ox, L1 * gy, f.Right(), L1 * gy, m_dLineWidth, kBlue);
    if (L2 != L1)
        DrawLineData(ox, L2 * gy, f.Right(), L2 * gy, m_dLineWidth, kBlue);

    const double tx = f.Right() - f.Width() * 0.125;
    SetGLColor(kBlue);
    str.Format("%.3f", m.GetYUnit() * L1);
    m_pFontMeasure->PrintText(str, CPointD(tx, L1 * 21 / 20 * gy), nullptr);
    if (L2 != L1)
    {
        str.Format("%.3f", m.GetYUnit() * L2);
        m_pFontMeasure->PrintText(str, CPointD(tx, L2 * 21 / 20 * gy), nullptr);
    }

    str.Format("FlightTime : %.1fps", 1e12 * d);
    SetGLColor(kRed);
    m_pFontMeasure->PrintText(str, CPointD(f.Right() - f.Width() * 0.25, f.Top() - f.Height() / 15),
                              nullptr);
}

// The victim is the first drawn set on the NEXT net that fits the end being
// asked for: pin role 0 with no far-end name for NEXT, a driven pin whose
// reference name is the far-end name for FEXT.
void CGLChartView::DrawNEXTorFEXTPt()
{
    const CPlotvane_Manager& m = *m_pManager;
    const CPlotvane_InputData& data = m.m_InputData;
    const double gx = CPlotvane_InputData::m_dViewScaleX;
    const double gy = CPlotvane_InputData::m_dViewScaleY;
    for (INT_PTR k = 0; k < data.m_DrawSet.GetSize(); ++k)
    {
        const CChartPointDArray* pSet = ExistingSet(data, data.m_DrawSet.GetData()[k]);
        if (pSet == nullptr || pSet->m_strNetName != m.m_strNEXTNet)
            continue;
        const char* word = nullptr;
        if (pSet->m_nPinRole == 0 && m.m_strFEXTNet.IsEmpty())
            word = "NEXT";
        else if (pSet->m_nPinRole != 0 && !m.m_strFEXTNet.IsEmpty() &&
                 RefNameOf(pSet->m_strName) == m.m_strFEXTNet)
            word = "FEXT";
        if (word == nullptr)
            continue;

        // An index past the waveform marks nothing.
        const int i = m.m_nCrosstalkPointIndex;
        if (i < 0 || i >= pSet->GetSize() || pSet->GetData()[i] == nullptr)
            return;
        const double x = pSet->GetPointX(i);
        const double y = pSet->GetPointY(i);
        const double w = pSet->m_dLineWidth;
        DrawLineData(0.0, y * gy, x * gx, y * gy, w, kRed);
        DrawLineData(x * gx, 0.0, x * gx, y * gy, w, kRed);

        CString str;
        str.Format("%s : %.1fmV", word, 1e3 * y);
        SetGLColor(kCrosstalkText);
        m_pFontMeasure->PrintText(str, CPointD((x / 20.0 + x) * gx, (y / 20.0 + y) * gy), nullptr);
        return;
    }
}

// The levels run from the view's left edge itself, across the value texts.
void CGLChartView::DrawTDRImpedance()
{
    const CPlotvane_Manager& m = *m_pManager;
    const plotvane::ChartFrame f = GetChartFrame();
    const double gx = CPlotvane_InputData::m_dViewScaleX;
    const double gy = CPlotvane_InputData::m_dViewScaleY;
    glPushMatrix();
    SetGLColor(m_crMeasureMark);
    if (m.m_dTargetImpedanceFreq != 0.0 && m.m_dTargetImpedanceValue != 0.0)
    {
        glPointSize(float(m_dPointSize));
        glBegin(GL_POINTS);
        glVertex2f(float(m.m_dTargetImpedanceFreq * gx), float(m.m_dTargetImpedanceValue * gy));
        glEnd();
    }
    if (m.m_dTDRLevel1 != 0.0 && m.m_dTDRLevel2 != 0.0)
    {
        DrawLine(f.Left(), m.m_dTDRLevel1 * gy, f.Right(), m.m_dTDRLevel1 * gy);
        DrawLine(f.Left(), m.m_dTDRLevel2 * gy, f.Right(), m.m_dTDRLevel2 * gy);
    }
    glPopMatrix();
}

static bool DFEMarkShown(const CPlotvane_Manager& m)
{
    return m.m_bDFEPFreqDomain != 0 && m.m_nFreqDomainMode == 1;
}

// The level line takes the point size as its width, so that it reads as
// heavily as the point.
void CGLChartView::DrawDFEPFreqDomainPara()
{
    const CPlotvane_Manager& m = *m_pManager;
    if (!DFEMarkShown(m))
        return;
    const plotvane::ChartFrame f = GetChartFrame();
    const double gx = CPlotvane_InputData::m_dViewScaleX;
    const double gy = CPlotvane_InputData::m_dViewScaleY;
    const double level = m.m_dDFEPLevel * gy;
    DrawLineData(f.OriginInDouble().x, level, f.Right(), level, m_dPointSize, m_crMeasureMark);

    SetGLColor(m_crMeasureMark);
    glPointSize(float(m_dPointSize));
    glBegin(GL_POINTS);
    glVertex2d(m.m_ptDFEP.x * gx, m.m_ptDFEP.y * gy);
    glEnd();

    const double tx = f.Right() - f.Width() / 6.0;
    CString str;
    str.Format("%.0fMHz", m.m_ptDFEP.x * 1e-06);
    m_pFontMeasure->PrintText(str, CPointD(tx, f.Top() - f.Height() / 30.0), nullptr);
    str.Format("%.5fdB", m.m_ptDFEP.y);
    m_pFontMeasure->PrintText(str, CPointD(tx, f.Top() - f.Height() / 15.0), nullptr);
}

// From the origin to the end of the drawn curves across, and from just
// above 0 down to the lowest of their values and the level: a loss curve
// in dB lies below 0.
void CGLChartView::ZoomDFEPFreqDomainParaArea()
{
    CPlotvane_Manager& m = *m_pManager;
    if (!DFEMarkShown(m))
        return;
    const CPlotvane_InputData& data = m.m_InputData;
    double maxX = kTiny;
    double minY = 0.0;
    for (INT_PTR k = 0; k < data.m_DrawSet.GetSize(); ++k)
    {
        const CChartPointDArray* pSet = ExistingSet(data, data.m_DrawSet.GetData()[k]);
        if (pSet == nullptr)
            continue;
        maxX = std::max(maxX, pSet->GetMaxX());
        minY = std::min(minY, pSet->GetMinY());
    }
    minY = std::min(minY, m.m_dDFEPLevel);

    const double mx = GetViewWidth() * 0.001;
    const double my = GetViewHeight() * 0.001;
    SetViewAreaByPoint(CPointF(float(0.0 - mx), float(0.0 + my)),
                       CPointF(float(maxX * CPlotvane_InputData::m_dViewScaleX + mx),
                               float(minY * CPlotvane_InputData::m_dViewScaleY - my)));
    m.m_bClickZoomStarted = 0;
    m.m_bClickZoomAvailable = 0;
    Invalidate();
}
