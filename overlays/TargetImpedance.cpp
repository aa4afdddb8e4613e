// Target impedance: the frequency-dependent upper limits that the host puts
// over the |Z| curves of a power-distribution chart, on a linear or a
// logarithmic frequency axis, and the zoom to the region they span. A limit
// is either a list of steps (start, end, impedance) or a polyline of
// (frequency, impedance) corners; polylines are cut at the plot frame so
// that they never run into the value texts left of and below it.
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/Plotvane_InputData.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/document/TargetImp.h>
#include <plotvane/foundation/Geometry.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/view/ChartViewUtil.h>

#include <GL/gl.h>

#include <algorithm>
#include <cmath>

using plotvane::SetGLColor;

namespace
{
constexpr DWORD kCyan = 0xFFFF00;
constexpr DWORD kYellow = 0x00FFFF;
constexpr double kTiny = 2.2250738585072014e-308;

// A value on a log axis; 0.0 stays 0.0 instead of going to -infinity, so a
// zero limit or corner lands on logical 0.
double LogOrZero(double v)
{
    return v == 0.0 ? 0.0 : double(log10f(float(v)));
}

// The data set at index i when there is one.
const CChartPointDArray* ExistingSet(const CPlotvane_InputData& data, int i)
{
    if (i < 0 || (unsigned long long)i >= data.GetDataSetSize())
        return nullptr;
    return data.GetChartPointDArray(i);
}

// Data to logical units for the limits of one paint.
struct LimitAxes
{
    bool bLogX;
    bool bLogY;
    double gx;
    double gy;
    double X(double x) const { return bLogX ? LogOrZero(x) : x * gx; }
    double Y(double y) const { return bLogY ? LogOrZero(y) : y * gy; }
};
} // namespace

// Both axis kinds share one walk; only the X transform differs.
static void DrawTargetImpedanceLimits(CGLChartView& view, CPlotvane_Manager& m, bool bLogX,
                                      const plotvane::ChartFrame& f,
                                      void (CGLChartView::*drawLine)(double, double, double,
                                                                     double))
{
    const CPlotvane_InputData& data = m.m_InputData;
    const LimitAxes ax{bLogX, m.m_nMagnitudeScale == 1, CPlotvane_InputData::m_dViewScaleX,
                       CPlotvane_InputData::m_dViewScaleY};
    // The plot frame's corner, and the width standing in for its right end
    // in the horizontal cut line (only the line's direction matters there).
    const double lx = f.OriginX();
    const double ly = f.OriginY();
    const CMLine left(CPointD(lx, ly), CPointD(lx, f.Top()));
    const CMLine bottom(CPointD(lx, ly), CPointD(f.Width(), ly));

    SetGLColor(kCyan);
    for (INT_PTR k = 0; k < data.m_DrawSet.GetSize(); ++k)
    {
        const int index = data.m_DrawSet.GetData()[k];
        const CChartPointDArray* pSet = ExistingSet(data, index);
        if (pSet == nullptr)
            continue;
        const CTargetImpWithinFreqRange* pLimit =
            data.m_pTargetImpArray->GetTargetImpByDataIndex(index);
        if (pLimit == nullptr)
            continue;
        glLineWidth(
            float(pSet->m_bHighlight ? view.GetLineWidth_Highlighted() : view.GetLineWidth()));

        if (pLimit->m_nLimitType == 1 || pLimit->m_nLimitType == 2)
        {
            const CArrayPointD* pLine =
                pLimit->m_nLimitType == 1 ? pLimit->m_pLimitLine1 : pLimit->m_pLimitLine2;
            if (pLine == nullptr)
                continue;
            for (INT_PTR i = 0; i + 1 < pLine->GetSize(); ++i)
            {
                const CPointD& p = pLine->GetData()[i];
                const CPointD& q = pLine->GetData()[i + 1];
                double a = ax.X(p.x), b = ax.Y(p.y);
                double c = ax.X(q.x), d = ax.Y(q.y);
                if (a > c)
                    continue;
                if ((lx > a && lx > c) || (ly > b && ly > d))
                    continue;
                const CMLine seg(CPointD(a, b), CPointD(c, d));
                if (lx > a)
                {
                    const CPointD e = seg.GetIntersectionPtWith(left);
                    a = e.x;
                    b = e.y;
                }
                if (ly > b)
                {
                    const CPointD e = seg.GetIntersectionPtWith(bottom);
                    a = e.x;
                    b = e.y;
                }
                if (ly > d)
                {
                    const CPointD e = seg.GetIntersectionPtWith(bottom);
                    c = e.x;
                    d = e.y;
                }
                (view.*drawLine)(a, b, c, d);
            }
            continue;
        }

        // Steps, each joined to the next by its riser. The inner steps are
        // drawn twice; steps are not cut at the frame.
        const CArrayPoint3D* pSteps = pLimit->m_pLimitPoints;
        if (pSteps == nullptr)
            continue;
        const INT_PTR n = pSteps->GetSize();
        auto step = [&](INT_PTR i) -> const CPoint3D* { return pSteps->GetData()[i]; };
        if (n == 1 && step(0) != nullptr)
        {
            const CPoint3D& s = *step(0);
            (view.*drawLine)(ax.X(s.x), ax.Y(s.z), ax.X(s.y), ax.Y(s.z));
        }
        for (INT_PTR i = 0; n > 1 && i + 1 < n; ++i)
        {
            if (step(i) == nullptr || step(i + 1) == nullptr)
                continue;
            const CPoint3D& s = *step(i);
            const CPoint3D& t = *step(i + 1);
            (view.*drawLine)(ax.X(s.x), ax.Y(s.z), ax.X(s.y), ax.Y(s.z));
            (view.*drawLine)(ax.X(s.y), ax.Y(s.z), ax.X(t.x), ax.Y(t.z));
            (view.*drawLine)(ax.X(t.x), ax.Y(t.z), ax.X(t.y), ax.Y(t.z));
        }
    }

    // The marked point goes through the linear scales on either axis kind,
    // so on log axes it does not sit on the curve.
    glLineWidth(float(view.GetLineWidth()));
    SetGLColor(kYellow);
    if (m.m_dTargetImpedanceFreq != 0.0 && m.m_dTargetImpedanceValue != 0.0)
    {
        glPointSize(float(view.GetLineWidth_Highlighted()));
        glBegin(GL_POINTS);
        glVertex2f(float(m.m_dTargetImpedanceFreq * ax.gx),
                   float(m.m_dTargetImpedanceValue * ax.gy));
        glEnd();
    }
}

static bool TargetImpedanceShown(const CPlotvane_Manager& m)
{
    return m.m_InputData.m_pTargetImpArray != nullptr && m.m_nFreqDomainMode == 2 &&
           m.m_bUseMagnitude != 0;
}

void CGLChartView::DrawTargetImpedance()
{
    if (!TargetImpedanceShown(*m_pManager))
        return;
    DrawTargetImpedanceLimits(*this, *m_pManager, false, GetChartFrame(), &CGLChartView::DrawLine);
}

void CGLChartView::DrawTargetImpedance_Log()
{
    if (!TargetImpedanceShown(*m_pManager))
        return;
    DrawTargetImpedanceLimits(*this, *m_pManager, true, GetChartFrame(), &CGLChartView::DrawLine);
}

// The view from the origin to the last step of every shown limit, a
// thousandth of the view wider on each side. A record without steps (a
// polyline limit) reaches to the last corner of the polyline it uses.
void CGLChartView::ZoomPDNArea()
{
    CPlotvane_Manager& m = *m_pManager;
    const CPlotvane_InputData& data = m.m_InputData;
    if (!m.m_bTargetImpedance || data.m_pTargetImpArray == nullptr)
        return;
    m_nZoomExponent = m.m_nBaseZoomLevel;

    double maxX = kTiny;
    double maxY = kTiny;
    for (INT_PTR k = 0; k < data.m_DrawSet.GetSize(); ++k)
    {
        const int index = data.m_DrawSet.GetData()[k];
        if (ExistingSet(data, index) == nullptr)
            continue;
        const CTargetImpWithinFreqRange* pLimit =
            data.m_pTargetImpArray->GetTargetImpByDataIndex(index);
        if (pLimit == nullptr)
            continue;
        double dEnd = 0.0, dZ = 0.0;
        const CArrayPoint3D* pSteps = pLimit->m_pLimitPoints;
        const CArrayPointD* pLine =
            pLimit->m_nLimitType == 2 ? pLimit->m_pLimitLine2 : pLimit->m_pLimitLine1;
        if (pSteps != nullptr && pSteps->GetSize() > 0 && pSteps->GetData()[pSteps->GetSize() - 1])
        {
            const CPoint3D& last = *pSteps->GetData()[pSteps->GetSize() - 1];
            dEnd = last.y;
            dZ = last.z;
        }
        else if (pLine != nullptr && pLine->GetSize() > 0)
        {
            const CPointD& last = pLine->GetData()[pLine->GetSize() - 1];
            dEnd = last.x;
            dZ = last.y;
        }
        else
            continue;
        maxX = std::max(maxX, dEnd);
        maxY = std::max(std::max(maxY, dZ), m.m_dTargetImpedanceValue);
    }

    const double mx = GetViewWidth() * 0.001;
    const double my = GetViewHeight() * 0.001;
    SetViewAreaByPoint(CPointF(float(0.0 - mx), float(0.0 - my)),
                       CPointF(float(maxX * CPlotvane_InputData::m_dViewScaleX + mx),
                               float(maxY * CPlotvane_InputData::m_dViewScaleY + my)));
    m.m_bClickZoomAvailable = 0;
    m.m_bClickZoomStarted = 0;
    Invalidate();
    ApplyZoomAreaToViewAndAdjustDecimalOfParentDlg(1);
}
