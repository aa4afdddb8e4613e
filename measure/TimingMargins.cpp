#include <plotvane/measure/ChartPointDArray.h>

#include <plotvane/measure/ChartPointDArrayArray.h>
#include <plotvane/measure/EyeCrossings.h>
#include <plotvane/measure/EyeLinePairs.h>
#include <plotvane/measure/SetupHoldMargins.h>

#include <algorithm>
#include <cmath>

namespace
{
using plotvane::LevelCross;

// Scale factors of every search here: nanoseconds and centivolts keep the
// intersection primitive's numbers near 1.
constexpr double kScaleX = 1e9;
constexpr double kScaleY = 100.0;
constexpr plotvane::SearchScale kScale{kScaleX, kScaleY};
constexpr double kHuge = 1.7976931348623157e308;
constexpr double kTiny = 2.2250738585072014e-308;

// Extents of the data eye, taken once per call.
struct DataFrame
{
    double dXLow;
    double dMaxX;
    double dMaxY;
    double dMinY;
    double dSpan;
    double dMid;
};

DataFrame FrameOf(const CChartPointDArray& d)
{
    DataFrame f;
    f.dXLow = std::max(0.0, d.GetMinX());
    f.dMaxX = d.GetMaxX();
    f.dMaxY = d.GetMaxY();
    f.dMinY = d.GetMinY();
    f.dSpan = f.dMaxX - f.dXLow;
    f.dMid = (f.dMaxY + f.dMinY) * 0.5;
    return f;
}

struct StrobeFrame
{
    double dMinX;
    double dMaxX;
    double dSpan;
};

StrobeFrame StrobeFrameOf(const CChartPointDArray& s)
{
    StrobeFrame sf;
    sf.dMinX = s.GetMinX();
    sf.dMaxX = s.GetMaxX();
    sf.dSpan = sf.dMaxX - sf.dMinX;
    return sf;
}

// Where the strobe edge is looked for. dExtra pushes the hold side out by a
// quarter of the strobe's span when the narrow window of a read cycle is in
// use.
struct Window
{
    double dLo;
    double dHi;
    double dExtra;
};

// The wide window skips the first fifth and the last quarter of the strobe;
// the narrow one is a quarter of the data span from a twentieth in.
Window InitialWindow(const StrobeFrame& sf, double dSpan, bool bNarrow, bool bWithExtra)
{
    Window w{sf.dSpan / 5.0 + sf.dMinX, sf.dMaxX - sf.dSpan * 0.25, 0.0};
    if (bNarrow)
    {
        if (bWithExtra)
            w.dExtra = sf.dSpan * 0.25;
        w.dLo = sf.dSpan / 20.0 + sf.dMinX;
        w.dHi = dSpan * 0.25 + w.dLo;
    }
    return w;
}

// The eye searches of EyeCrossings.h at this file's scale.
void FollowDataCrossings(const CChartPointDArray& d, const DataFrame& f, const CChartPointDArray& s,
                         const StrobeFrame& sf, double dVref, Window& w)
{
    plotvane::FollowDataCrossings(d, f.dXLow, f.dMaxX, s, sf.dMinX, dVref, kScale, w.dLo, w.dHi);
}

bool FindStrobe(const CChartPointDArray& s, const CChartPointDArray* pBar, double dVref, double dLo,
                double dHi, double& sMin, double& sMax)
{
    return plotvane::FindStrobeEdge(s, pBar, dVref, dLo, dHi, kScale, sMin, sMax);
}

LevelCross CrossOf(const CChartPointDArray& d, double dLevel, double dLo, double dHi)
{
    return plotvane::CrossOf(d, dLevel, dLo, dHi, kScale);
}

// The required times and the half-heights of the bands around the reference.
struct Requirement
{
    double tSetup;
    double tHold;
    double dBandSetup;
    double dBandHold;
};

// In mask mode the eye fields hold the mask: its height in mV in the setup
// time, its width as a fraction of a period in the hold time.
Requirement RequirementOf(const CChartPointDArray& d, const DataFrame& f, bool bMask)
{
    Requirement r;
    if (bMask)
    {
        r.dBandHold = r.dBandSetup = (d.m_dEyeSetupTime / 1000.0) * 0.5;
        r.tSetup = r.tHold = f.dSpan * 1e9 * 0.5 * (d.m_dEyeHoldTime * 0.5) * 1e-9;
        return r;
    }
    r.tSetup = d.m_dEyeSetupTime * 1e-12;
    r.tHold = d.m_dEyeHoldTime * 1e-12;
    r.dBandHold = d.m_dEyeHoldLevel;
    r.dBandSetup = d.m_dEyeSetupLevel;
    if (d.m_nEyeOneLevel == 1)
        r.dBandHold = r.dBandSetup;
    return r;
}

// The strobe's threshold, or the middle of the data when the strobe has no
// levels.
double StrobeThreshold(const CChartPointDArray& s, const DataFrame& f)
{
    const double v = (s.m_dLevelLow + s.m_dLevelHigh) * 0.5;
    return s.m_dLevelLow == 0.0 && v == 0.0 ? f.dMid : v;
}

double SetupHoldVref(const CChartPointDArray& d, const CChartPointDArray& s, const DataFrame& f,
                     bool bMask, int bVrefFromData)
{
    if (bVrefFromData)
        return f.dMid;
    const double v = StrobeThreshold(s, f);
    if (bMask && d.m_dVcent != 0.0)
        return std::isfinite(d.m_dVcent) ? d.m_dVcent : v;
    return d.m_dEyeVref != -1.0 ? d.m_dEyeVref : v;
}

double ReadCycleVref(const CChartPointDArray& d, const CChartPointDArray& s, const DataFrame& f,
                     int bVrefFromData)
{
    if (bVrefFromData)
        return f.dMid;
    const bool bMask = d.m_nTimingMode == 6 || (d.m_nTimingMode == 2 && d.m_nDataType == 0);
    if (bMask && std::isfinite(d.m_dVcent) && d.m_dVcent != 0.0)
        return d.m_dVcent;
    return StrobeThreshold(s, f);
}

// Everything the setup/hold steps share.
struct SetupHold
{
    const CChartPointDArray& d;
    const CChartPointDArray& s;
    const CChartPointDArray* pBar;
    DataFrame f;
    Requirement req;
    double dVref;
    Window w;
    double sMin = 0.0;
    double sMax = 0.0;

    // Whether the data crosses both band levels after the hold time and
    // before the setup time. The upper limit of the hold side is the data's
    // greatest Y, as the overlay has it.
    struct Probe
    {
        bool bHoldHigh, bHoldLow, bSetupHigh, bSetupLow;
        bool All() const { return bHoldHigh && bHoldLow && bSetupHigh && bSetupLow; }
    };

    Probe RunProbe() const
    {
        const double dHoldFrom = req.tHold + sMax + w.dExtra;
        const double dSetupTo = sMin - req.tSetup;
        return {CrossOf(d, dVref + req.dBandHold, dHoldFrom, f.dMaxY).bFound,
                CrossOf(d, dVref - req.dBandHold, dHoldFrom, f.dMaxY).bFound,
                CrossOf(d, dVref + req.dBandSetup, f.dXLow, dSetupTo).bFound,
                CrossOf(d, dVref - req.dBandSetup, f.dXLow, dSetupTo).bFound};
    }

    bool Find(double dLo, double dHi) { return FindStrobe(s, pBar, dVref, dLo, dHi, sMin, sMax); }

    // A differential strobe edge is held against the data. A window that
    // caught two edges is cut to the first; one that left the data no setup
    // room is moved to the later edge; and when the data still does not
    // frame the edge, the window may be tried dOffset later.
    void ValidateEdge(double dOffset)
    {
        const Probe probe = RunProbe();
        const double dShift = probe.All() ? 0.0 : dOffset;
        const double dPeriod = s.m_dPeriod;
        if (probe.bSetupHigh && probe.bSetupLow)
        {
            if (sMax - sMin > dPeriod * 0.25)
            {
                w.dHi = dPeriod * 0.125 + sMin;
                if (Find(w.dLo, w.dHi) && RunProbe().All())
                    return;
            }
        }
        else
        {
            w.dLo = sMax - dPeriod * 0.125;
            if (Find(w.dLo, w.dHi) && RunProbe().All())
                return;
        }
        if (dShift == 0.0)
            return;
        w.dLo += dShift;
        w.dHi += dShift;
        double n0 = 0.0;
        double n1 = 0.0;
        if (FindStrobe(s, pBar, dVref, w.dLo, w.dHi, n0, n1) && n1 + req.tHold < dPeriod)
        {
            sMin = n0;
            sMax = n1;
        }
    }
};

struct SetupHoldOut
{
    double& dSetupMargin;
    double& dHoldMargin;
    double& dSetupHeight;
    double& dHoldHeight;
    double& dWindowPS;
    double& dStrobeSpreadPS;
};

// Level mode: the distance from the end of the required window to where the
// data leaves its band; negative by the depth of a violation, which only
// survives when the reference comes from the data, or when the caller keeps
// violations.
void LevelResults(const SetupHold& c, int bVrefFromData, bool bKeepViolations, SetupHoldOut& out)
{
    const double hiV = c.dVref + c.req.dBandHold;
    const double loV = c.dVref - c.req.dBandHold;
    const double r = c.sMax + c.req.tHold;
    out.dStrobeSpreadPS = (c.sMax - c.sMin) * 1e12;

    const LevelCross e1 = CrossOf(c.d, hiV, r + c.w.dExtra, c.f.dMaxY);
    const LevelCross e2 = CrossOf(c.d, loV, r + c.w.dExtra, c.f.dMaxY);
    bool bHold = e1.bFound || e2.bFound;
    bool bHoldViolated = false;
    double rPS = 0.0;
    double dRectMin = 0.0;
    double dRectMax = 0.0;
    if (c.d.GetRectAreaCrossMinXValue(c.sMax, hiV, r, loV, c.sMax, r, kScaleX, kScaleY, dRectMin,
                                      dRectMax))
    {
        bHold = false;
        out.dHoldMargin = -std::fabs(dRectMin - r);
        bHoldViolated = bKeepViolations;
    }
    else if (bHold)
    {
        out.dHoldMargin = std::fabs(std::min(e1.dLo, e2.dLo) - r);
        out.dHoldHeight = (c.req.dBandHold + c.req.dBandHold) * 1000.0;
        rPS = r * 1e12;
    }
    if (!bVrefFromData && !bHold && !bHoldViolated)
        out.dHoldMargin = -1.0;

    // The rectangle of the setup side takes the hold band: kept as the
    // overlay draws it.
    const double l = c.sMin - c.req.tSetup;
    const LevelCross f1 = CrossOf(c.d, c.dVref + c.req.dBandSetup, c.f.dXLow, l);
    const LevelCross f2 = CrossOf(c.d, c.dVref - c.req.dBandSetup, c.f.dXLow, l);
    bool bSetup = f1.bFound || f2.bFound;
    bool bSetupViolated = false;
    double lPS = 0.0;
    if (c.d.GetRectAreaCrossMinXValue(l, hiV, c.sMin, loV, l, c.sMin, kScaleX, kScaleY, dRectMin,
                                      dRectMax))
    {
        bSetup = false;
        out.dSetupMargin = -std::fabs(l - dRectMax);
        bSetupViolated = bKeepViolations;
    }
    else if (bSetup)
    {
        out.dSetupMargin = std::fabs(l - std::max(f1.dHi, f2.dHi));
        out.dSetupHeight = (c.req.dBandSetup + c.req.dBandSetup) * 1000.0;
        lPS = l * 1e12;
    }
    if (!bVrefFromData && !bSetup && !bSetupViolated)
        out.dSetupMargin = -1.0;

    if (bHold && bSetup)
        out.dWindowPS = rPS - lPS;
}

// Mask mode: the distance from the mask's sides to where the data leaves the
// mask's band; never negative.
void MaskResults(const SetupHold& c, SetupHoldOut& out)
{
    const double hiV = c.dVref + c.req.dBandHold;
    const double loV = c.dVref - c.req.dBandHold;
    const double dCentre = (c.sMax + c.sMin) * 0.5;

    double w = c.d.m_dPeriod * 0.5;
    const LevelCross before = CrossOf(c.d, c.dVref, c.f.dXLow, c.sMin);
    const LevelCross after = CrossOf(c.d, c.dVref, c.sMax, c.w.dHi);
    if (before.bFound && after.bFound)
        w = after.dLo - before.dHi;
    const double dHalfMask = c.d.m_dEyeHoldTime * w * 0.5;
    const double dMaskRight = dCentre + dHalfMask;
    const double dMaskLeft = dCentre - dHalfMask;
    out.dWindowPS = c.d.m_dEyeHoldTime * c.d.m_dPeriod * 0.5 * 1e12;

    const double dHoldFrom = c.sMax + c.req.tHold + c.w.dExtra;
    const LevelCross e1 = CrossOf(c.d, hiV, dHoldFrom, c.f.dMaxY);
    const LevelCross e2 = CrossOf(c.d, loV, dHoldFrom, c.f.dMaxY);
    if (e1.bFound || e2.bFound)
    {
        out.dHoldMargin = std::fabs(std::min(e1.dLo, e2.dLo) - dMaskRight);
        out.dHoldHeight = c.d.m_dEyeSetupTime;
    }

    const double dSetupTo = c.sMin - c.req.tSetup;
    const LevelCross f1 = CrossOf(c.d, hiV, c.f.dXLow, dSetupTo);
    const LevelCross f2 = CrossOf(c.d, loV, c.f.dXLow, dSetupTo);
    if (!f1.bFound && !f2.bFound)
        return;
    out.dSetupMargin = std::fabs(dMaskLeft - std::max(f1.dHi, f2.dHi));
    out.dSetupHeight = c.d.m_dEyeSetupTime;
}

// The differential strobe edge of a read cycle. Unlike setup/hold a strobe
// that is not found leaves 0.0 and 0.0, and the narrow window has a second
// chance over the first half of the strobe.
void FindReadStrobe(const CChartPointDArray& s, const CChartPointDArray* pBar,
                    const StrobeFrame& sf, const Window& w, bool bNarrow, double dOffset,
                    double& sMin, double& sMax)
{
    const double dPeriod = s.m_dPeriod;
    // Cuts a window that caught two edges down to the first.
    auto keepFirstEdge = [&](double dLo)
    {
        if (sMax - sMin > dPeriod * 0.25)
            FindStrobe(s, pBar, 0.0, dLo, dPeriod * 0.125 + sMin, sMin, sMax);
    };
    const bool bFirst = FindStrobe(s, pBar, 0.0, w.dLo, w.dHi, sMin, sMax);
    if (bFirst)
        keepFirstEdge(w.dLo);
    if (bNarrow && (!bFirst || (sMin == 0.0 && sMax == 0.0)))
    {
        const double dLo2 = sf.dSpan / 40.0 + sf.dMinX;
        const double dHi2 = (sf.dMaxX + sf.dMinX) * 0.5 - sf.dSpan / 40.0;
        if (FindStrobe(s, pBar, 0.0, dLo2, dHi2, sMin, sMax))
            keepFirstEdge(dLo2);
    }
    if (!bNarrow && bFirst && dOffset != 0.0)
        FindStrobe(s, pBar, 0.0, w.dLo + dOffset, w.dHi + dOffset, sMin, sMax);
}
} // namespace

namespace
{
void SetupHoldMargin(const CChartPointDArray& d, CChartPointDArray* pDQS,
                     CChartPointDArray* pDQSBar, SetupHoldOut out, double& dVrefMV,
                     double dOffset, int bVrefFromData, int bNoMask, bool bKeepViolations)
{
    const CChartPointDArray& s = *pDQS;
    const DataFrame f = FrameOf(d);
    const bool bMask = d.m_nTimingMode == 6 || (d.m_nTimingMode == 2 && bNoMask == 0);
    const double dVref = SetupHoldVref(d, s, f, bMask, bVrefFromData);
    const StrobeFrame sf = StrobeFrameOf(s);
    const bool bNarrow = s.m_nStrobeWindowMode != 1 && s.m_nReadCycle != 0;

    SetupHold c{d,
                s,
                pDQSBar,
                f,
                RequirementOf(d, f, bMask),
                dVref,
                InitialWindow(sf, f.dSpan, bNarrow, true)};
    FollowDataCrossings(d, f, s, sf, dVref, c.w);
    if (!c.Find(c.w.dLo, c.w.dHi))
        return;
    if (pDQSBar)
        c.ValidateEdge(dOffset);

    dVrefMV = dVref * 1000.0;
    if (bMask)
        MaskResults(c, out);
    else
        LevelResults(c, bVrefFromData, bKeepViolations, out);
}
} // namespace

void CChartPointDArray::CheckSetupHoldMargin(CChartPointDArray* pDQS, CChartPointDArray* pDQSBar,
                                             double& dSetupMargin, double& dHoldMargin,
                                             double& dSetupHeight, double& dHoldHeight,
                                             double& dVrefMV, double& dWindowPS,
                                             double& dStrobeSpreadPS, double dOffset,
                                             int bVrefFromData, int bNoMask) const
{
    SetupHoldMargin(*this, pDQS, pDQSBar,
                    {dSetupMargin, dHoldMargin, dSetupHeight, dHoldHeight, dWindowPS,
                     dStrobeSpreadPS},
                    dVrefMV, dOffset, bVrefFromData, bNoMask, false);
}

void plotvane::SetupHoldMarginKeepingViolations(
    const CChartPointDArray& dq, CChartPointDArray* pDQS, CChartPointDArray* pDQSBar,
    double& dSetupMargin, double& dHoldMargin, double& dSetupHeight, double& dHoldHeight,
    double& dVrefMV, double& dWindowPS, double& dStrobeSpreadPS, double dOffset,
    int bVrefFromData, int bNoMask)
{
    SetupHoldMargin(dq, pDQS, pDQSBar,
                    {dSetupMargin, dHoldMargin, dSetupHeight, dHoldHeight, dWindowPS,
                     dStrobeSpreadPS},
                    dVrefMV, dOffset, bVrefFromData, bNoMask, true);
}

void CChartPointDArray::CheckReadCycleTimeMargin(CChartPointDArray* pDQS,
                                                 CChartPointDArray* pDQSBar, double& dTQH,
                                                 double& dTDQSQ, double dOffset,
                                                 int bVrefFromData) const
{
    plotvane::ReadCycleTimeMargin(*this, pDQS, pDQSBar, dTQH, dTDQSQ, dOffset, bVrefFromData,
                                  plotvane::EyeLineWalk::Filtered);
}

void plotvane::ReadCycleTimeMargin(const CChartPointDArray& d, const CChartPointDArray* pDQS,
                                   const CChartPointDArray* pDQSBar, double& dTQH, double& dTDQSQ,
                                   double dOffset, int bVrefFromData, EyeLineWalk walk)
{
    const CChartPointDArray& s = *pDQS;
    const DataFrame f = FrameOf(d);
    const double dVref = ReadCycleVref(d, s, f, bVrefFromData);
    const StrobeFrame sf = StrobeFrameOf(s);
    const bool bNarrow = s.m_nStrobeWindowMode != 1;
    Window w = InitialWindow(sf, f.dSpan, bNarrow, false);
    FollowDataCrossings(d, f, s, sf, dVref, w);

    double sMin = 0.0;
    double sMax = 0.0;
    if (pDQSBar)
        FindReadStrobe(s, pDQSBar, sf, w, bNarrow, dOffset, sMin, sMax);
    else
        FindStrobe(s, nullptr, dVref, w.dLo, w.dHi, sMin, sMax);

    // Eye crossings around the strobe edge (left) and the next ones (right).
    const double dBand = (f.dMaxY - f.dMinY) / 10.0;
    const double q = f.dSpan * 0.25;
    EyeCrossExtent left{kHuge, kTiny, false};
    EyeCrossExtent right{kHuge, kTiny, false};
    CChartPointDArrayArray lines;
    d.ExtractEyeLinePointArray(&lines);
    const std::vector<int> types = EyeLinePulseTypes(lines, f.dMaxY, f.dMinY, false);
    AccumulateEyeLineCrossings(lines, types, dVref, dBand, std::max(0.0, sMin - q), q + sMax,
                               kScaleX, kScaleY, left, walk);
    AccumulateEyeLineCrossings(lines, types, dVref, dBand, q + sMax, f.dSpan, kScaleX, kScaleY,
                               right, walk);
    // No next crossing: look for it in the last third, among the lines that
    // change in their second half.
    if (!right.bFound || left.dMin == right.dMin)
    {
        const std::vector<int> types2 = EyeLinePulseTypes(lines, f.dMaxY, f.dMinY, true);
        AccumulateEyeLineCrossings(lines, types2, dVref, dBand, f.dSpan / 1.5, f.dSpan, kScaleX,
                                   kScaleY, right, walk);
    }
    lines.DataRemoveAll();

    const double a = std::fabs(left.dMax - sMin);
    const double b = std::fabs(right.dMin - sMax);
    if (b > a)
    {
        dTDQSQ = b;
        dTQH = sMin > left.dMin ? std::fabs(left.dMin - sMax) : a;
    }
    else
    {
        dTDQSQ = a;
        dTQH = sMin > right.dMin ? b : std::fabs(right.dMax - sMin);
    }
}

int CChartPointDArrayArray::IsCheckSetupHoldMarginValue(CChartPointDArray* pDQS,
                                                        CChartPointDArray* pDQSBar,
                                                        int bVrefFromData, int bNoMask) const
{
    for (const CChartPointDArray* p : *this)
    {
        if (!p || p->m_nDataType == 0 || p->m_nPinRole != 2 || !pDQS || !pDQSBar)
            continue;
        double dSetup = 0.0, dHold = 0.0, dSetupHeight = 0.0, dHoldHeight = 0.0;
        double dVrefMV = 0.0, dWindowPS = 0.0, dSpreadPS = 0.0;
        p->CheckSetupHoldMargin(pDQS, pDQSBar, dSetup, dHold, dSetupHeight, dHoldHeight, dVrefMV,
                                dWindowPS, dSpreadPS, 0.0, bVrefFromData, bNoMask);
        if (dSetup == -1.0)
            return 1;
    }
    return 0;
}
