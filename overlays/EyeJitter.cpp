// Eye jitter: for each displayed DQ eye, the edge of its strobe, the setup
// and hold windows around it, whether the data enters them and by how much
// it clears them; for a read-cycle eye the tDQSQ and tQH marks instead. Also
// the worst-skew and crosstalk-jitter arrows, which share the parameter
// fields. Everything is searched anew in each frame, in logical units (the
// view scales serve as the searches' scale factors).
#include <plotvane/view/GLChartView.h>

#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/foundation/StringEx.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/measure/ChartPointDArrayArray.h>
#include <plotvane/measure/EyeCrossings.h>
#include <plotvane/measure/EyeLinePairs.h>
#include <plotvane/view/ChartViewUtil.h>
#include <plotvane/view/GLTextBmp.h>

#include <GL/gl.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

using plotvane::SetGLColor;

namespace
{
constexpr DWORD kRed = 0x0000FF;
constexpr DWORD kBlue = 0xFF0000;
constexpr DWORD kStrobeBox = 0xED92A2;
constexpr DWORD kRequiredBox = 0xEBD294;
constexpr double kHuge = 1.7976931348623157e308;
constexpr double kTiny = 2.2250738585072014e-308;

// Data types compare unsigned: an unclassified set (-1) counts as data.
bool IsDataEye(int nDataType)
{
    return unsigned(nDataType) > 1u;
}

// The first "_" token of a name when there are at least two; otherwise
// prefix keeps what it held.
void TakeNamePrefix(const CString& strName, CString& strPrefix)
{
    CStringArray tokens;
    CTokenizer::GetTokenArray(tokens, strName, "_");
    if (tokens.GetSize() >= 2)
        strPrefix = tokens.GetAt(0);
}

// The eye searches of EyeCrossings.h, with the view scales as their scale
// factors.
plotvane::SearchScale ViewScale()
{
    return {CPlotvane_InputData::m_dViewScaleX, CPlotvane_InputData::m_dViewScaleY};
}

using Cross = plotvane::LevelCross;

Cross CrossOf(const CChartPointDArray& d, double dLevel, double dFrom, double dTo)
{
    return plotvane::CrossOf(d, dLevel, dFrom, dTo, ViewScale());
}

// Extents of the DQ eye, taken once.
struct EyeExtent
{
    double xMin, xMax, span, yMin, yMax, mid;
    explicit EyeExtent(const CChartPointDArray& d)
        : xMin(std::max(0.0, d.GetMinX())), xMax(d.GetMaxX()), span(xMax - xMin), yMin(d.GetMinY()),
          yMax(d.GetMaxY()), mid((yMax + yMin) * 0.5)
    {
    }
};

// Required times and half-heights of the bands around the level. In mask
// mode the eye fields hold the mask: height in mV in the setup time, width
// as a share of the period in the hold time.
struct Requirement
{
    double tSetup, tHold, vSetup, vHold;
};

Requirement RequirementOf(const CChartPointDArray& d, const EyeExtent& x, bool bMask)
{
    if (bMask)
    {
        const double t = x.span * 1e9 * 0.5 * (d.m_dEyeHoldTime * 0.5) * 1e-9;
        const double v = d.m_dEyeSetupTime / 1000.0 * 0.5;
        return {t, t, v, v};
    }
    Requirement r{d.m_dEyeSetupTime * 1e-12, d.m_dEyeHoldTime * 1e-12, d.m_dEyeSetupLevel,
                  d.m_dEyeHoldLevel};
    if (d.m_nEyeOneLevel == 1)
        r.vHold = r.vSetup;
    return r;
}

// The level the eye is read at.
double EyeLevel(const CPlotvane_Manager& m, const CChartPointDArray& d, const CChartPointDArray& s1,
                const EyeExtent& x, bool bMask)
{
    if (m.m_nJitterOption)
        return x.mid;
    double v = (s1.m_dLevelLow + s1.m_dLevelHigh) * 0.5;
    if (s1.m_dLevelLow == 0.0 && v == 0.0)
        v = x.mid;
    if (d.m_dVcent != 0.0 && bMask)
        return std::isfinite(d.m_dVcent) ? d.m_dVcent : v;
    if (d.m_dEyeVref != -1.0)
        v = d.m_dEyeVref;
    return v;
}

// A strobe with a phase follows the data's own first and last crossing.
void FollowDataCrossings(const CChartPointDArray& d, const EyeExtent& x,
                         const CChartPointDArray& s1, double dStrobeMinX, double V, double& w0,
                         double& w1)
{
    plotvane::FollowDataCrossings(d, x.xMin, x.xMax, s1, dStrobeMinX, V, ViewScale(), w0, w1);
}

// Earliest and latest strobe crossing in [w0, w1]: DQS against DQS#, or DQS
// against V when single-ended. The edges move only when found.
bool FindStrobeEdges(const CChartPointDArray& s1, const CChartPointDArray* s2, double V, double w0,
                     double w1, double& e1, double& e2)
{
    return plotvane::FindStrobeEdge(s1, s2, V, w0, w1, ViewScale(), e1, e2);
}

// One DQ eye against its strobe: what the setup/hold marks are built from.
struct EyeJob
{
    const CChartPointDArray& dq;
    const CChartPointDArray& s1;
    const CChartPointDArray* s2;
    EyeExtent x;
    Requirement req;
    double V;
    double w0, w1, P;
    double e1 = 0.0, e2 = 0.0;

    bool Find(double lo, double hi) { return FindStrobeEdges(s1, s2, V, lo, hi, e1, e2); }

    // Whether the data leaves both hold levels after the hold time and both
    // setup levels before the setup time. The hold side runs to the data's
    // greatest Y: kept as the measurement has it.
    struct EdgeTest
    {
        bool a, b, c, d;
        bool All() const { return a && b && c && d; }
    };
    EdgeTest RunEdgeTest() const
    {
        const double dHoldFrom = e2 + req.tHold + P;
        const double dSetupTo = e1 - req.tSetup;
        return {CrossOf(dq, V + req.vHold, dHoldFrom, x.yMax).bFound,
                CrossOf(dq, V - req.vHold, dHoldFrom, x.yMax).bFound,
                CrossOf(dq, V + req.vSetup, x.xMin, dSetupTo).bFound,
                CrossOf(dq, V - req.vSetup, x.xMin, dSetupTo).bFound};
    }

    // A differential edge is held against the data: a window that caught
    // two edges is cut to the first, one that left no setup room moves to
    // the later edge, and failing that the window may be tried dPhase later.
    void HoldEdges(double dPhase)
    {
        const EdgeTest t = RunEdgeTest();
        const double dPending = t.All() ? 0.0 : dPhase;
        const double dPeriod = s1.m_dPeriod;
        double lo = w0;
        double hi = w1;
        if (t.c && t.d)
        {
            if (e2 - e1 > dPeriod * 0.25)
            {
                hi = e1 + dPeriod * 0.125;
                if (Find(lo, hi) && RunEdgeTest().All())
                    return;
            }
        }
        else
        {
            lo = e2 - dPeriod * 0.125;
            if (Find(lo, hi) && RunEdgeTest().All())
                return;
        }
        if (dPending == 0.0)
            return;
        double n1 = 0.0;
        double n2 = 0.0;
        if (FindStrobeEdges(s1, s2, V, lo + dPhase, hi + dPhase, n1, n2) &&
            dPeriod > n2 + req.tHold)
        {
            e1 = n1;
            e2 = n2;
        }
    }
};

// Where the texts and arrows of one eye go, and how a logical distance
// becomes the whole picoseconds it shows.
struct MarkPainter
{
    CGLChartView& view;
    CPlotvane_Manager& m;
    double sx, sy;
    double right, top, bottom, W, H;
    // Where the level lines and strobe marks start: the plot frame's origin
    // with its tenth taken in double.
    CPointD origin;

    MarkPainter(CGLChartView& v, const plotvane::ChartFrame& f)
        : view(v), m(*v.m_pManager), sx(f.ViewScaleX()), sy(f.ViewScaleY()), right(f.Right()),
          top(f.Top()), bottom(f.Bottom()), W(f.Width()), H(f.Height()), origin(f.OriginInDouble())
    {
    }

    // Truncated toward zero after the current number format.
    int Whole(double d) const
    {
        return std::atoi(m.GetDisplayNumberByFormatType(m.GetScaleX() * d * 1000.0));
    }

    void Text(DWORD color, const char* fmt, int n, double x, double y) const
    {
        CString str;
        str.Format(fmt, n);
        SetGLColor(color);
        view.m_pFontMeasure->PrintText(str, CPointD(x, y), nullptr);
    }

    // Summary line: the first at H / 15 below the top, the second at H / 30.
    void Summary(DWORD color, const char* fmt, int n, bool bFirstLine) const
    {
        Text(color, fmt, n, right - W * 0.25, top - (bFirstLine ? H / 15 : H / 30));
    }

    void VerticalMark(double x, double yFrom, double yTo, DWORD color) const
    {
        SetGLColor(color);
        view.DrawLine(x, yFrom, x, yTo);
    }

    void HorizontalMark(double y, DWORD color) const
    {
        SetGLColor(color);
        view.DrawLine(origin.x, y, right, y);
    }
};

// Step F: the level-mode boxes, the box tests and the margins.
void DrawSetupHoldMarks(CGLChartView& view, const MarkPainter& p, const EyeJob& j,
                        CChartPointDArray& dq)
{
    const Requirement& r = j.req;
    const double V = j.V;
    const double Vw = V * p.sy;
    const double yArrow = Vw + p.H / 40;
    const double yText = Vw + p.H / 30;
    const DWORD crLabel = view.m_crLabel;
    const bool bSingle = view.m_bSingleDQ != 0;

    view.DrawBox(j.e1 * p.sx, (V - r.vHold) * p.sy, j.e2 * p.sx, (V + r.vHold) * p.sy, kStrobeBox,
                 "");

    // Hold side.
    const double tH = j.e2 + r.tHold;
    const Cross a = CrossOf(dq, V + r.vHold, tH + j.P, j.x.yMax);
    const Cross b = CrossOf(dq, V - r.vHold, tH + j.P, j.x.yMax);
    view.DrawBox(j.e2 * p.sx, (V - r.vHold) * p.sy, tH * p.sx, (V + r.vHold) * p.sy, kRequiredBox,
                 "");
    double dMin = kHuge;
    double dMax = kTiny;
    if (dq.GetRectAreaCrossMinXValue(j.e2, V + r.vHold, tH, V - r.vHold, j.e2, tH, p.sx, p.sy, dMin,
                                     dMax))
    {
        p.VerticalMark(dMin * p.sx, p.top, p.bottom, kBlue);
        if (bSingle)
        {
            const int n = -p.Whole(std::fabs(dMin * p.sx - tH * p.sx));
            p.Summary(crLabel, "Hold Margin: %d ps", n, true);
            view.DrawHorizontalArrowLine(j.e2 * p.sx, yArrow, tH * p.sx, yArrow, kRed, 1, 1);
            p.Text(crLabel, "%d ps", n, (j.e2 + r.tHold * 0.25) * p.sx, yText);
            dq.m_dHoldMargin = n;
        }
    }
    else if (a.bFound || b.bFound)
    {
        // A level not crossed counts with its 0.0.
        const double t = std::min(a.dLo, b.dLo);
        view.DrawBox(tH * p.sx, (V - r.vHold) * p.sy, t * p.sx, (V + r.vHold) * p.sy, kBlue, "");
        if (bSingle)
        {
            const int n = p.Whole(std::fabs(t * p.sx - tH * p.sx));
            p.Summary(crLabel, "Hold Margin: %d ps", n, true);
            view.DrawHorizontalArrowLine(tH * p.sx, yArrow, t * p.sx, yArrow, kRed, 1, 1);
            p.Text(crLabel, "%d ps", n, (tH + t) * 0.5 * p.sx - std::fabs(tH - t) * 0.25 * p.sx,
                   yText);
            dq.m_dHoldMargin = n;
        }
    }

    // Setup side. Its box test takes the hold levels although the box is
    // drawn with the setup levels.
    const double tS = j.e1 - r.tSetup;
    const Cross c = CrossOf(dq, V + r.vSetup, j.x.xMin, tS);
    const Cross d = CrossOf(dq, V - r.vSetup, j.x.xMin, tS);
    view.DrawBox(tS * p.sx, (V - r.vSetup) * p.sy, j.e1 * p.sx, (V + r.vSetup) * p.sy, kRequiredBox,
                 "");
    dMin = kHuge;
    dMax = kTiny;
    if (dq.GetRectAreaCrossMinXValue(tS, V + r.vHold, j.e1, V - r.vHold, tS, j.e1, p.sx, p.sy, dMin,
                                     dMax))
    {
        p.VerticalMark(dMax * p.sx, p.top, p.bottom, kBlue);
        if (bSingle)
        {
            const int n = -p.Whole(std::fabs(tS * p.sx - dMax * p.sx));
            p.Summary(crLabel, "Setup Margin: %d ps", n, false);
            view.DrawHorizontalArrowLine(tS * p.sx, yArrow, j.e1 * p.sx, yArrow, kRed, 1, 1);
            p.Text(crLabel, "%d ps", n, (j.e1 - r.tSetup * 0.75) * p.sx, yText);
            dq.m_dSetupMargin = n;
        }
    }
    else if (c.bFound || d.bFound)
    {
        const double t = std::max(c.dHi, d.dHi);
        view.DrawBox(t * p.sx, (V - r.vSetup) * p.sy, tS * p.sx, (V + r.vSetup) * p.sy, kBlue, "");
        if (bSingle)
        {
            const double dist = std::fabs(tS * p.sx - t * p.sx);
            const int n = p.Whole(dist);
            p.Summary(crLabel, "Setup Margin: %d ps", n, false);
            view.DrawHorizontalArrowLine(t * p.sx, yArrow, tS * p.sx, yArrow, kRed, 1, 1);
            p.Text(crLabel, "%d ps", n, t * p.sx + dist * 0.25, yText);
            dq.m_dSetupMargin = n;
        }
    }
}

// Step G: the receiver mask around the strobe edge, and the room the data
// leaves on either side of it. No box test, never negative.
void DrawMaskMarks(CGLChartView& view, const MarkPainter& p, const EyeJob& j, CChartPointDArray& dq)
{
    const double V = j.V;
    const double vH = j.req.vHold;
    const double mid = (j.e1 + j.e2) * 0.5;
    const Cross before = CrossOf(dq, V, j.x.xMin, j.e1);
    const Cross after = CrossOf(dq, V, j.e2, j.w1);
    const double width =
        before.bFound && after.bFound ? after.dLo - before.dHi : dq.m_dPeriod * 0.5;
    const double hw = width * dq.m_dEyeHoldTime * 0.5;
    const double L = mid - hw;
    const double R = mid + hw;
    view.DrawBox(L * p.sx, (V - vH) * p.sy, R * p.sx, (V + vH) * p.sy, kStrobeBox, "");

    const double Cw = ((V + vH) + (V - vH)) * 0.5 * p.sy;
    const double yArrow = Cw + p.H / 40;
    const double yText = Cw + p.H / 30;
    const DWORD crLabel = view.m_crLabel;
    const bool bSingle = view.m_bSingleDQ != 0;
    // Text beside the arrow between a mask side and where the data leaves.
    auto textX = [&p](double side, double t)
    { return (side + t) * 0.5 * p.sx - std::fabs(side - t) * 0.25 * p.sx; };

    const double dHoldFrom = j.e2 + j.req.tHold + j.P;
    const Cross a = CrossOf(dq, V + vH, dHoldFrom, j.x.yMax);
    const Cross b = CrossOf(dq, V - vH, dHoldFrom, j.x.yMax);
    if (a.bFound || b.bFound)
    {
        const double t = std::min(a.dLo, b.dLo);
        view.DrawBox(R * p.sx, (V - vH) * p.sy, t * p.sx, (V + vH) * p.sy, kBlue, "");
        if (bSingle)
        {
            const int n = p.Whole(std::fabs(t * p.sx - R * p.sx));
            p.Summary(crLabel, "Hold Margin: %d ps", n, true);
            view.DrawHorizontalArrowLine(R * p.sx, yArrow, t * p.sx, yArrow, kRed, 1, 1);
            p.Text(crLabel, "%d ps", n, textX(R, t), yText);
            dq.m_dHoldMargin = n;
        }
    }

    const double dSetupTo = j.e1 - j.req.tSetup;
    const Cross c = CrossOf(dq, V + vH, j.x.xMin, dSetupTo);
    const Cross d = CrossOf(dq, V - vH, j.x.xMin, dSetupTo);
    if (c.bFound || d.bFound)
    {
        const double t = std::max(c.dHi, d.dHi);
        view.DrawBox(t * p.sx, (V - vH) * p.sy, L * p.sx, (V + vH) * p.sy, kBlue, "");
        if (bSingle)
        {
            const int n = p.Whole(std::fabs(L * p.sx - t * p.sx));
            p.Summary(crLabel, "Setup Margin: %d ps", n, false);
            view.DrawHorizontalArrowLine(t * p.sx, yArrow, L * p.sx, yArrow, kRed, 1, 1);
            p.Text(crLabel, "%d ps", n, textX(L, t), yText);
            dq.m_dSetupMargin = n;
        }
    }
}

// The set at index, or null where none exists. The draw list may hold
// stale indices after a set was deleted; they draw nothing, as for curves.
CChartPointDArray* SetAt(const CPlotvane_InputData& data, int index)
{
    if (index < 0 || (unsigned long long)index >= data.GetDataSetSize())
        return nullptr;
    return data.GetChartPointDArray(index);
}

// Whether p is still one of the sets: the strobe pointers of the last frame
// may name a set that has been deleted since.
bool IsSetOf(const CChartPointDArrayArray& sets, const CChartPointDArray* p)
{
    const CChartPointDArray* const* all = sets.GetData();
    return p != nullptr && std::find(all, all + sets.GetSize(), p) != all + sets.GetSize();
}
} // namespace

// ---------------------------------------------------------------------------
// The walk over the displayed sets

int CGLChartView::IsInDQSNet()
{
    if (m_pManager->m_nMeasureType == 10)
        return 0;
    for (const CChartPointDArray* p : m_pManager->m_InputData.m_arrChartData)
    {
        if (p != nullptr && !IsDataEye(p->m_nDataType))
            return 1;
    }
    return 0;
}

void CGLChartView::SetDQSChartPointArray(CString strName)
{
    m_pDQSArray1 = nullptr;
    m_pDQSArray2 = nullptr;
    CString strPrefix;
    TakeNamePrefix(strName, strPrefix);
    // A strobe name of one token takes the prefix of the strobe before it.
    CString strCandidate;
    for (CChartPointDArray* p : m_pManager->m_InputData.m_arrChartData)
    {
        if (p == nullptr || p->m_nDataType != 0 || p->m_nPinRole != 2)
            continue;
        TakeNamePrefix(p->m_strName, strCandidate);
        if (strCandidate.IsEmpty() || strCandidate != strPrefix)
            continue;
        if (m_pDQSArray1 == nullptr)
            m_pDQSArray1 = p;
        else
            m_pDQSArray2 = p;
    }
}

void CGLChartView::DrawEyeDiagramJitter()
{
    CPlotvane_InputData& data = m_pManager->m_InputData;
    const CNSet& drawn = data.m_DrawSet;
    int nDQ = 0;
    int bStrobeShown = 0;
    for (int i : drawn)
    {
        const CChartPointDArray* p = SetAt(data, i);
        if (p == nullptr)
            continue;
        if (IsDataEye(p->m_nDataType) && p->m_nPinRole == 2)
            ++nDQ;
        if (p->m_nDataType == 0 && p->m_nStrobePhase != -1)
            bStrobeShown = 1;
    }

    // The strobe of the last frame decides whether this frame looks for the
    // strobe half a period later.
    double dPhase = 0.0;
    if (!IsSetOf(data.m_arrChartData, m_pDQSArray1))
        m_pDQSArray1 = nullptr;
    if (!IsSetOf(data.m_arrChartData, m_pDQSArray2))
        m_pDQSArray2 = nullptr;
    if (data.m_arrChartData.IsCheckSetupHoldMarginValue(m_pDQSArray1, m_pDQSArray2,
                                                        m_pManager->m_nJitterOption, 0) == 1)
        dPhase = m_pDQSArray1->m_dPeriod * 0.5;
    m_bSingleDQ = nDQ == 1 ? 1 : 0;

    for (int i : drawn)
    {
        const CChartPointDArray* p = SetAt(data, i);
        if (p == nullptr || !IsDataEye(p->m_nDataType) || p->m_nPinRole != 2)
            continue;
        SetDQSChartPointArray(p->m_strName);
        if (m_pDQSArray1 == nullptr)
            continue;
        if (p->m_nReadCycle == 1)
            DrawEyeDiagramJitterLine_NoDelay(i, dPhase);
        else
            DrawEyeDiagramJitterLine(i, dPhase, bStrobeShown);
    }
}

// ---------------------------------------------------------------------------
// Setup and hold marks of one DQ

void CGLChartView::DrawEyeDiagramJitterLine(int nDataIndex, double dPhase, int bStrobeShown)
{
    CChartPointDArray* pDQ = SetAt(m_pManager->m_InputData, nDataIndex);
    if (pDQ == nullptr || !IsDataEye(pDQ->m_nDataType) || m_pDQSArray1 == nullptr)
        return;
    CChartPointDArray& dq = *pDQ;
    const CChartPointDArray& s1 = *m_pDQSArray1;

    glLineWidth(GLfloat(dq.m_dLineWidth));
    const EyeExtent x(dq);
    const bool bMask = dq.m_nTimingMode == 6 || (dq.m_nTimingMode == 2 && !bStrobeShown);
    const double V = EyeLevel(*m_pManager, dq, s1, x, bMask);

    // The strobe window.
    const double sMinX = s1.GetMinX();
    const double S = s1.GetMaxX() - sMinX;
    double w0 = sMinX + S / 5.0;
    double w1 = s1.GetMaxX() - S * 0.25;
    double P = 0.0;
    if (s1.m_nStrobeWindowMode != 1 && s1.m_nReadCycle != 0)
    {
        w0 = sMinX + S / 20.0;
        w1 = w0 + x.span * 0.25;
        P = S * 0.25;
    }
    FollowDataCrossings(dq, x, s1, sMinX, V, w0, w1);

    EyeJob job{dq, s1, m_pDQSArray2, x, RequirementOf(dq, x, bMask), V, w0, w1, P};
    if (!job.Find(w0, w1))
    {
        glLineWidth(1.0f);
        return;
    }
    if (m_pDQSArray2 != nullptr)
        job.HoldEdges(dPhase);

    const MarkPainter painter(*this, GetChartFrame());
    painter.HorizontalMark(V * painter.sy, kRed);
    if (bMask)
        DrawMaskMarks(*this, painter, job, dq);
    else
        DrawSetupHoldMarks(*this, painter, job, dq);
    glLineWidth(1.0f);
}

// ---------------------------------------------------------------------------
// tDQSQ and tQH marks of one read-cycle DQ

namespace
{
// The differential strobe edge of a read cycle. Not found leaves 0.0 and
// 0.0; the narrow window has a second chance over the first half of the
// strobe, the wide one a try dPhase later.
void FindReadStrobeEdges(const CChartPointDArray& s1, const CChartPointDArray* s2, double w0,
                         double w1, bool bRetry, double dPhase, double& e1, double& e2)
{
    const double dPeriod = s1.m_dPeriod;
    auto keepFirstEdge = [&](double dStart)
    {
        if (e2 - e1 > dPeriod * 0.25)
            FindStrobeEdges(s1, s2, 0.0, dStart, e1 + dPeriod * 0.125, e1, e2);
    };
    const bool bFound = FindStrobeEdges(s1, s2, 0.0, w0, w1, e1, e2);
    if (bFound)
        keepFirstEdge(w0);
    if (bRetry && (!bFound || (e1 == 0.0 && e2 == 0.0)))
    {
        const double sMinX = s1.GetMinX();
        const double sMaxX = s1.GetMaxX();
        const double S = sMaxX - sMinX;
        const double lo = sMinX + S / 40.0;
        if (FindStrobeEdges(s1, s2, 0.0, lo, (sMinX + sMaxX) * 0.5 - S / 40.0, e1, e2))
            keepFirstEdge(lo);
    }
    if (!bRetry && dPhase != 0.0)
        FindStrobeEdges(s1, s2, 0.0, w0 + dPhase, w1 + dPhase, e1, e2);
}
} // namespace

void CGLChartView::DrawEyeDiagramJitterLine_NoDelay(int nDataIndex, double dPhase)
{
    CChartPointDArray* pDQ = SetAt(m_pManager->m_InputData, nDataIndex);
    if (pDQ == nullptr || !IsDataEye(pDQ->m_nDataType) || pDQ->m_nReadCycle == 0 ||
        m_pDQSArray1 == nullptr)
        return;
    CChartPointDArray& dq = *pDQ;
    const CChartPointDArray& s1 = *m_pDQSArray1;
    const CChartPointDArray* s2 = m_pDQSArray2;

    glLineWidth(GLfloat(dq.m_dLineWidth));
    const EyeExtent x(dq);
    const double swing = x.yMax - x.yMin;
    const bool bMask = dq.m_nTimingMode == 6 || (dq.m_nTimingMode == 2 && dq.m_nDataType == 0);
    const double V = EyeLevel(*m_pManager, dq, s1, x, bMask);

    const double sMinX = s1.GetMinX();
    const double S = s1.GetMaxX() - sMinX;
    const double Q = x.span * 0.25;
    double w0 = sMinX + S / 5.0;
    double w1 = s1.GetMaxX() - S * 0.25;
    const bool bRetry = s1.m_nStrobeWindowMode != 1;
    if (bRetry)
    {
        w0 = sMinX + S / 20.0;
        w1 = w0 + Q;
    }
    FollowDataCrossings(dq, x, s1, sMinX, V, w0, w1);

    double e1 = 0.0;
    double e2 = 0.0;
    if (s2 != nullptr)
        FindReadStrobeEdges(s1, s2, w0, w1, bRetry, dPhase, e1, e2);
    else
        FindStrobeEdges(s1, nullptr, V, w0, w1, e1, e2);

    const MarkPainter p(*this, GetChartFrame());
    const double yFrom = p.origin.y;
    p.VerticalMark(e1 * p.sx, yFrom, p.top, kRed);
    p.VerticalMark(e2 * p.sx, yFrom, p.top, kRed);
    DrawBox(e1 * p.sx, x.yMin * p.sy, e2 * p.sx, x.yMax * p.sy, kStrobeBox, "");

    // Crossings of rising against falling eye lines: around the strobe edge
    // (A) and the next ones (B).
    const double T = swing / 10.0;
    CChartPointDArrayArray lines;
    dq.ExtractEyeLinePointArray(&lines);
    plotvane::EyeCrossExtent A{kHuge, kTiny, false};
    plotvane::EyeCrossExtent B{kHuge, kTiny, false};
    const std::vector<int> types = plotvane::EyeLinePulseTypes(lines, x.yMax, x.yMin, false);
    plotvane::AccumulateEyeLineCrossings(lines, types, V, T, std::max(0.0, e1 - Q), e2 + Q, p.sx,
                                         p.sy, A);
    plotvane::AccumulateEyeLineCrossings(lines, types, V, T, e2 + Q, x.span, p.sx, p.sy, B);
    // The lines that change in their second half, over the last third.
    if (!(B.bFound && (std::isnan(A.dMin) || std::isnan(B.dMin))))
    {
        const std::vector<int> types2 = plotvane::EyeLinePulseTypes(lines, x.yMax, x.yMin, true);
        plotvane::AccumulateEyeLineCrossings(lines, types2, V, T, x.span / 1.5, x.span, p.sx, p.sy,
                                             B);
    }
    lines.DataRemoveAll();

    p.HorizontalMark(V * p.sy, kRed);
    p.HorizontalMark((V - T) * p.sy, kRed);
    p.HorizontalMark((V + T) * p.sy, kRed);
    for (double v : {A.dMin, A.dMax, B.dMin, B.dMax})
        p.VerticalMark(v * p.sx, yFrom, p.top, kBlue);

    const double yUp = (x.mid + swing * 0.25) * p.sy;
    const double yDown = (x.mid - swing * 0.25) * p.sy;
    const bool bSingle = m_bSingleDQ != 0;
    // tQH from one strobe edge to the far crossing; tDQSQ from a strobe edge
    // to the crossing on the other side.
    double q1, q2, k1, k2;
    if (std::fabs(B.dMin - e2) > std::fabs(A.dMax - e1))
    {
        q1 = e2;
        q2 = B.dMin;
        k1 = e1 > A.dMin ? e2 : e1;
        k2 = e1 > A.dMin ? A.dMin : A.dMax;
    }
    else
    {
        q1 = e1;
        q2 = A.dMax;
        k1 = e1 > B.dMin ? e2 : e1;
        k2 = e1 > B.dMin ? B.dMin : B.dMax;
    }
    DrawHorizontalArrowLine(q1 * p.sx, yUp, q2 * p.sx, yUp, kRed, 1, 1);
    if (bSingle)
    {
        const int n = p.Whole(std::fabs(q2 * p.sx - q1 * p.sx));
        p.Summary(kRed, "tQH : %d ps", n, true);
        dq.m_dSetupMargin = n;
    }
    DrawHorizontalArrowLine(k1 * p.sx, yDown, k2 * p.sx, yDown, kRed, 1, 1);
    if (bSingle)
    {
        const int n = p.Whole(std::fabs(k2 * p.sx - k1 * p.sx));
        p.Summary(kRed, "tDQSQ : %d ps", n, false);
        dq.m_dHoldMargin = n;
    }
    glLineWidth(1.0f);
}

// ---------------------------------------------------------------------------
// Worst skew and crosstalk jitter

void CGLChartView::DrawWorstSkew()
{
    const CPlotvane_Manager& m = *m_pManager;
    if (m.m_InputData.m_DrawSet.GetSize() == 0)
        return;
    const double sx = CPlotvane_InputData::m_dViewScaleX;
    const double sy = CPlotvane_InputData::m_dViewScaleY;
    const double x1w = m.m_dCrosstalkX1 * sx;
    const double x2w = m.m_dCrosstalkX2 * sx;
    const double y1w = m.m_dCrosstalkY1 * sy;
    const double y2w = m.m_dCrosstalkY2 * sy;
    CString str;
    str.Format("%.1f ps", std::fabs(m.m_dCrosstalkX2 - m.m_dCrosstalkX1) * 1e12);

    // The leaders start on the axes, at the plot frame's origin (a float
    // widened, so the narrowing is exact).
    const plotvane::ChartFrame f = GetChartFrame();
    const float fLimitX = float(f.OriginX());
    const float fLimitY = float(f.OriginY());
    const bool b1 = x1w > fLimitX && y1w > fLimitY;
    const bool b2 = x2w > fLimitX && y2w > fLimitY;
    // Leaders from the axes to each of the two points.
    if (b1)
        DrawLineData(fLimitX, y1w, x1w, y1w, m_dLineWidth, kBlue);
    if (b2)
        DrawLineData(fLimitX, y2w, x2w, y2w, m_dLineWidth, kBlue);
    if (b1)
        DrawLineData(x1w, fLimitY, x1w, y1w, m_dLineWidth, kBlue);
    if (b2)
        DrawLineData(x2w, fLimitY, x2w, y2w, m_dLineWidth, kBlue);

    glLineWidth(1.0f);
    const double y = f.Bottom() + f.Height() * 0.125;
    DrawHorizontalArrowLine(x1w, y, x2w, y, kRed, 1, 1);
    SetGLColor(kRed);
    m_pFontMeasure->PrintText(str, CPointD(x2w + (x2w - x1w) / 20.0, y), nullptr);
}

// Here the first Y field holds millivolts.
void CGLChartView::DrawCrosstalkJitter()
{
    const CPlotvane_Manager& m = *m_pManager;
    const double sx = CPlotvane_InputData::m_dViewScaleX;
    const double sy = CPlotvane_InputData::m_dViewScaleY;
    const double x1 = m.m_dCrosstalkX1;
    const double x2 = m.m_dCrosstalkX2;
    const double y = m.m_dCrosstalkY1 * 1e-3;
    CString str;
    str.Format("%.1f ps", std::fabs(x1 - x2) * 1e12);
    plotvane::SetGLColor(0xED92A2);
    m_pFontMeasure->PrintText(str, CPointD((x1 + x2) * 0.5 * 21 / 20 * sx, y * 21 / 20 * sy),
                              nullptr);
    glLineWidth(1.0f);
    DrawHorizontalArrowLine(x1 * sx, y * sy, x2 * sx, y * sy, kRed, 1, 1);
}
