#include <plotvane/measure/ChartPointDArray.h>

#include <plotvane/measure/PairSweep.h>
#include <plotvane/measure/SearchSkeleton.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

using plotvane::HitExtent;
using plotvane::ScaledSegment;

namespace
{
// Scale factors exist for the numerics of the primitive: coordinates go in
// multiplied by them, and the hits come back divided by them.
struct Scale
{
    double x;
    double y;
    ScaledSegment operator()(const CChartPointD& a, const CChartPointD& b) const
    {
        return plotvane::Scaled(a, b, x, y);
    }
};

// Crossings of horizontal level lines that span the whole array in X, so
// that only the sample pair limits where they meet. Each segment is put to
// the levels in their order. The samples are read once: the pass that finds
// the X extent also picks the segments that can meet a level, and only those
// reach the primitive.
template <std::size_t N>
int LevelSearch(const CChartPointDArray& arr, const double (&dLevels)[N], double dXMin,
                double dXMax, Scale scale, double& dMinX, double& dMaxX)
{
    double scaledLevels[N];
    for (std::size_t k = 0; k < N; ++k)
        scaledLevels[k] = dLevels[k] * scale.y;
    const CChartPointD* const* p = arr.GetData();
    const plotvane::LevelCandidates<N> scan(p, arr.GetSize(), dXMin, dXMax, scale.y, scaledLevels);
    const double x1 = scan.GetMinX() * scale.x;
    const double x2 = scan.GetMaxX() * scale.x;
    std::vector<plotvane::LevelLine> lines;
    for (double dLevel : scaledLevels)
        lines.emplace_back(x1, x2, dLevel);

    HitExtent ext;
    auto visit = [&](INT_PTR, const CChartPointD& a, const CChartPointD& b)
    {
        const ScaledSegment s = scale(a, b);
        for (const plotvane::LevelLine& line : lines)
        {
            double pOut[2];
            if (line.Meet(s, pOut))
                plotvane::AddInRange(ext, pOut[0] / scale.x, dXMin, dXMax);
        }
    };
    if (scan.Trusted(x2 - x1))
    {
        for (const auto& pair : scan.Segments())
            visit(0, pair.a, pair.b);
    }
    else
        plotvane::ForEachSegmentInXWindow(p, arr.GetSize(), dXMin, dXMax, visit);
    return ext.Result(dMinX, dMaxX);
}

// Indices of the segments of p[0..n) that pass keep(a, b), seams excluded, in
// index order: the pairwise searches filter each array once instead of once
// per pair.
template <class Keep>
std::vector<INT_PTR> KeptSegments(const CChartPointD* const* p, INT_PTR n, Keep keep)
{
    std::vector<INT_PTR> kept;
    plotvane::ForEachSegment(p, n,
                             [&](INT_PTR i, const CChartPointD& a, const CChartPointD& b)
                             {
                                 if (keep(a, b))
                                     kept.push_back(i);
                             });
    return kept;
}

// Every kept segment of p against every kept segment of q, outer over p and
// inner over q, in index order: the walking order decides the ties.
template <class Visit>
void ForEachSegmentPair(const CChartPointD* const* p, const std::vector<INT_PTR>& keptP,
                        const CChartPointD* const* q, const std::vector<INT_PTR>& keptQ,
                        Visit visit)
{
    for (INT_PTR i : keptP)
    {
        const CChartPointD& a = *p[i];
        const CChartPointD& b = *p[i + 1];
        for (INT_PTR j : keptQ)
            visit(a, b, *q[j], *q[j + 1]);
    }
}
} // namespace

int CChartPointDArray::GetCrossMinMaxXValue(double dY, double dXMin, double dXMax, double dScaleX,
                                            double dScaleY, double& dMinX, double& dMaxX) const
{
    const double levels[1] = {dY};
    return LevelSearch(*this, levels, dXMin, dXMax, {dScaleX, dScaleY}, dMinX, dMaxX);
}

// The reference level first, then its lower and upper tolerance.
int CChartPointDArray::GetCrossMinMaxXValueByVRefTol(double dVRef, double dTol, double dXMin,
                                                     double dXMax, double dScaleX, double dScaleY,
                                                     double& dMinX, double& dMaxX) const
{
    const double levels[3] = {dVRef, dVRef - dTol, dVRef + dTol};
    return LevelSearch(*this, levels, dXMin, dXMax, {dScaleX, dScaleY}, dMinX, dMaxX);
}

int CChartPointDArray::GetCrossMinMaxYValue(double dX, double dYMin, double dYMax, double dScaleX,
                                            double dScaleY, double& dMinY, double& dMaxY) const
{
    const Scale scale{dScaleX, dScaleY};
    const ScaledSegment vertical{dX * dScaleX, dYMin * dScaleY, dX * dScaleX, dYMax * dScaleY};
    HitExtent ext;
    plotvane::ForEachSegment(GetData(), GetSize(),
                             [&](INT_PTR, const CChartPointD& a, const CChartPointD& b)
                             {
                                 if (plotvane::BothOutside(a.Y, b.Y, dYMin, dYMax))
                                     return;
                                 double pOut[2];
                                 if (plotvane::MeetAt(vertical, scale(a, b), pOut, 1))
                                     plotvane::AddInRange(ext, pOut[1] / dScaleY, dYMin, dYMax);
                             });
    return ext.Result(dMinY, dMaxY);
}

namespace
{
// Segment i of one array against segment i of the other, for two waveforms
// that share their sampling. The window and the seam are judged on the first
// array; the walk ends where the shorter array ends.
template <class OnHit>
int IndexPairCross(const CChartPointDArray& self, const CChartPointDArray& other, double dXMin,
                   double dXMax, Scale scale, double& dMinX, double& dMaxX, OnHit onHit)
{
    const CChartPointD* const* q = other.GetData();
    HitExtent ext;
    plotvane::ForEachSegmentInXWindow(
        self.GetData(), std::min(self.GetSize(), other.GetSize()), dXMin, dXMax,
        [&](INT_PTR i, const CChartPointD& a, const CChartPointD& b)
        {
            double pOut[2];
            if (!plotvane::Meet(scale(a, b), scale(*q[i], *q[i + 1]), pOut))
                return;
            onHit(plotvane::AddInRange(ext, pOut[0] / scale.x, dXMin, dXMax), pOut);
        });
    return ext.Result(dMinX, dMaxX);
}
} // namespace

int CChartPointDArray::GetDataCrossMinMaxXValue(const CChartPointDArray* pOther, double dXMin,
                                                double dXMax, double dScaleX, double dScaleY,
                                                double& dMinX, double& dMaxX) const
{
    return IndexPairCross(*this, *pOther, dXMin, dXMax, {dScaleX, dScaleY}, dMinX, dMaxX,
                          [](int, const double*) {});
}

int CChartPointDArray::GetDataCrossMinMaxXValue(const CChartPointDArray* pOther, double dXMin,
                                                double dXMax, double dScaleX, double dScaleY,
                                                double& dMinX, double& dMaxX, double& dYAtMinX,
                                                double& dYAtMaxX) const
{
    return IndexPairCross(
        *this, *pOther, dXMin, dXMax, {dScaleX, dScaleY}, dMinX, dMaxX,
        [&](int nMoved, const double* pOut)
        { plotvane::RecordAtMovedEnds(nMoved, pOut[1] / dScaleY, dYAtMinX, dYAtMaxX); });
}

namespace
{
// Two lines of one eye, which don't share their sampling: every segment of
// one against every segment of the other, each array filtered once by seam,
// X window and the band [dY - dTol, dY + dTol]. With pYAt set the hit must
// also lie in the band, and its Y is recorded at the ends it moved; with
// bOppositeSlope only pairs of opposite slope count.
int BandPairCross(const CChartPointDArray& self, const CChartPointDArray& other, double dY,
                  double dTol, double dXMin, double dXMax, Scale scale, double& dMinX,
                  double& dMaxX, double* pYAtMin, double* pYAtMax, int bOppositeSlope)
{
    const double dBandLow = dY - dTol;
    const double dBandHigh = dY + dTol;
    auto keep = [&](const CChartPointD& a, const CChartPointD& b)
    {
        return !plotvane::BothOutside(a.X, b.X, dXMin, dXMax) &&
               !plotvane::BothOutside(a.Y, b.Y, dBandLow, dBandHigh);
    };
    const std::vector<INT_PTR> keptSelf = KeptSegments(self.GetData(), self.GetSize(), keep);
    const std::vector<INT_PTR> keptOther = KeptSegments(other.GetData(), other.GetSize(), keep);

    HitExtent ext;
    ForEachSegmentPair(self.GetData(), keptSelf, other.GetData(), keptOther,
                       [&](const CChartPointD& a, const CChartPointD& b, const CChartPointD& c,
                           const CChartPointD& d)
                       {
                           if (bOppositeSlope && !((b.Y - a.Y) * (d.Y - c.Y) < 0.0))
                               return;
                           double pOut[2];
                           if (!plotvane::Meet(scale(a, b), scale(c, d), pOut))
                               return;
                           const double x = pOut[0] / scale.x;
                           if (!pYAtMin)
                           {
                               plotvane::AddInRange(ext, x, dXMin, dXMax);
                               return;
                           }
                           const double y = pOut[1] / scale.y;
                           if (!plotvane::InClosedRange(y, dBandLow, dBandHigh))
                               return;
                           plotvane::RecordAtMovedEnds(plotvane::AddInRange(ext, x, dXMin, dXMax),
                                                       y, *pYAtMin, *pYAtMax);
                       });
    return ext.Result(dMinX, dMaxX);
}
} // namespace

int CChartPointDArray::GetDataCrossMinMaxXValueByPointArray(const CChartPointDArray* pOther,
                                                            double dY, double dTol, double dXMin,
                                                            double dXMax, double dScaleX,
                                                            double dScaleY, double& dMinX,
                                                            double& dMaxX) const
{
    return BandPairCross(*this, *pOther, dY, dTol, dXMin, dXMax, {dScaleX, dScaleY}, dMinX, dMaxX,
                         nullptr, nullptr, 0);
}

int CChartPointDArray::GetDataCrossMinMaxXValueByPointArray(
    const CChartPointDArray* pOther, double dY, double dTol, double dXMin, double dXMax,
    double dScaleX, double dScaleY, double& dMinX, double& dMaxX, double& dYAtMinX,
    double& dYAtMaxX, int bOppositeSlope) const
{
    return BandPairCross(*this, *pOther, dY, dTol, dXMin, dXMax, {dScaleX, dScaleY}, dMinX, dMaxX,
                         &dYAtMinX, &dYAtMaxX, bOppositeSlope);
}

// Looks only at the first half of this array's X span, and passes over
// segments wider than half a period of this array, in both arrays: such a
// segment bridges a gap in the eye rather than following the signal. The
// pairs are found by a sweep (PairSweep.h) in n log n, with the answer of the
// walk over every pair, which remains for inputs the sweep does not cover.
int CChartPointDArray::GetDataCrossMinMaxYValueByPointArray(const CChartPointDArray* pOther,
                                                            double dYMin, double dYMax,
                                                            double dScaleX, double dScaleY,
                                                            double& dMinY, double& dMaxY) const
{
    const Scale scale{dScaleX, dScaleY};
    const double dRight = GetMaxX() * 0.5;
    const double dWidest = m_dPeriod * 0.5;
    auto keep = [&](const CChartPointD& a, const CChartPointD& b)
    {
        return plotvane::InClosedRange(a.X, 0.0, dRight) &&
               plotvane::InClosedRange(b.X, 0.0, dRight) &&
               !plotvane::BothOutside(a.Y, b.Y, dYMin, dYMax) && !(b.X - a.X > dWidest);
    };
    const std::vector<INT_PTR> keptSelf = KeptSegments(GetData(), GetSize(), keep);
    const std::vector<INT_PTR> keptOther = KeptSegments(pOther->GetData(), pOther->GetSize(), keep);

    plotvane::OrderedHitExtent swept;
    if (plotvane::SweepPairMeetY(GetData(), keptSelf, pOther->GetData(), keptOther, dScaleX,
                                 dScaleY, dYMin, dYMax, swept))
        return swept.Result(dMinY, dMaxY);
    HitExtent ext;
    ForEachSegmentPair(GetData(), keptSelf, pOther->GetData(), keptOther,
                       [&](const CChartPointD& a, const CChartPointD& b, const CChartPointD& c,
                           const CChartPointD& d)
                       {
                           double pOut[2];
                           if (plotvane::MeetAt(scale(a, b), scale(c, d), pOut, 1))
                               plotvane::AddInRange(ext, pOut[1] / dScaleY, dYMin, dYMax);
                       });
    return ext.Result(dMinY, dMaxY);
}

// Whether and where the waveform enters a rectangle: the hits on its four
// sides, top, bottom, left, right. A waveform wholly inside touches no side.
int CChartPointDArray::GetRectAreaCrossMinXValue(double dLeft, double dTop, double dRight,
                                                 double dBottom, double dXMin, double dXMax,
                                                 double dScaleX, double dScaleY, double& dMinX,
                                                 double& dMaxX) const
{
    const Scale scale{dScaleX, dScaleY};
    const double l = dLeft * dScaleX, r = dRight * dScaleX;
    const double t = dTop * dScaleY, b = dBottom * dScaleY;
    const ScaledSegment sides[4] = {{l, t, r, t}, {l, b, r, b}, {l, t, l, b}, {r, t, r, b}};
    HitExtent ext;
    plotvane::ForEachSegmentInXWindow(GetData(), GetSize(), dXMin, dXMax,
                                      [&](INT_PTR, const CChartPointD& p, const CChartPointD& q)
                                      {
                                          if (plotvane::BothOutside(p.Y, q.Y, dBottom, dTop))
                                              return;
                                          const ScaledSegment s = scale(p, q);
                                          for (const ScaledSegment& side : sides)
                                          {
                                              double pOut[2];
                                              if (plotvane::Meet(side, s, pOut))
                                                  plotvane::AddInRange(ext, pOut[0] / dScaleX,
                                                                       dXMin, dXMax);
                                          }
                                      });
    return ext.Result(dMinX, dMaxX);
}

namespace
{
// The best value found on the rectangle's border, with its point.
struct BorderBest
{
    double dValue;
    CPointD pt;
    bool bFound = false;

    void Set(double v, double x, double y)
    {
        dValue = v;
        pt = CPointD(x, y);
        bFound = true;
    }
};

// The segment's X where it reaches the level y, and its Y where it reaches
// x. A segment lying along the line gives its start.
double XAtY(const CPointD& a, const CPointD& b, double y)
{
    if (b.y == a.y)
        return a.x;
    return a.x + (y - a.y) * (b.x - a.x) / (b.y - a.y);
}

double YAtX(const CPointD& a, const CPointD& b, double x)
{
    if (b.x == a.x)
        return a.y;
    return a.y + (x - a.x) * (b.y - a.y) / (b.x - a.x);
}

bool Spans(double a, double level, double b)
{
    return (a >= level && level >= b) || (level >= a && b >= level);
}
} // namespace

// Works in scaled units throughout. An interior extreme is where the slope
// turns; where the waveform leaves through the border, the border value
// stands in for an extreme that lies outside.
void CChartPointDArray::GetPosiNegaPeakInCertainArea(double dScaleX, double dScaleY, double dLeft,
                                                     double dTop, double dRight, double dBottom,
                                                     CPointD& ptPositive, CPointD& ptNegative,
                                                     int& bPositive, int& bNegative) const
{
    constexpr double kLowest = 2.2250738585072014e-308;
    constexpr double kHighest = 1.7976931348623157e308;
    double dPeak = kLowest;
    double dValley = kHighest;
    BorderBest high{kLowest, CPointD()};
    BorderBest low{kHighest, CPointD()};
    enum Direction
    {
        kUnknown,
        kFalling,
        kRising
    } direction = kUnknown;

    auto inside = [&](const CPointD& p)
    { return p.x >= dLeft && p.x <= dRight && p.y >= dBottom && p.y <= dTop; };

    plotvane::ForEachSegment(
        GetData(), GetSize(),
        [&](INT_PTR, const CChartPointD& pa, const CChartPointD& pb)
        {
            const CPointD a(pa.X * dScaleX, pa.Y * dScaleY);
            const CPointD b(pb.X * dScaleX, pb.Y * dScaleY);
            if (!inside(a) && !inside(b))
                return;

            if (Spans(a.y, dTop, b.y))
                high.Set(dTop, XAtY(a, b, dTop), dTop);
            else if (Spans(a.y, dBottom, b.y))
                low.Set(dBottom, XAtY(a, b, dBottom), dBottom);
            else if ((a.x <= dLeft && dLeft <= b.x) || (a.x <= dRight && dRight <= b.x))
            {
                const double dSide = a.x <= dLeft && dLeft <= b.x ? dLeft : dRight;
                const double y = YAtX(a, b, dSide);
                // The point keeps the left side's X whichever side was crossed.
                if (y < low.dValue)
                    low.Set(y, dLeft, y);
                if (y > high.dValue)
                    high.Set(y, dLeft, y);
            }

            // A flat segment keeps the direction; the first sloping one sets it.
            const Direction now = b.y < a.y ? kFalling : b.y > a.y ? kRising : direction;
            const Direction before = direction;
            direction = now;
            if (before == kUnknown || now == before)
                return;
            if (now == kRising)
            {
                if (a.y < dValley)
                {
                    dValley = a.y;
                    ptNegative = a;
                    bNegative = 1;
                }
            }
            else if (a.y > dPeak)
            {
                dPeak = a.y;
                ptPositive = a;
                bPositive = 1;
            }
        });

    if (bPositive ? high.bFound && high.dValue > dPeak : high.bFound)
    {
        ptPositive = high.pt;
        bPositive = 1;
    }
    if (bNegative ? low.bFound && low.dValue < dValley : low.bFound)
    {
        ptNegative = low.pt;
        bNegative = 1;
    }
}

namespace
{
// The level's X between a and b, interpolated in scaled units.
double ThresholdX(const CChartPointD& a, const CChartPointD& b, double dY, double dScaleX,
                  double dScaleY)
{
    const double da = std::fabs(dY - a.Y) * dScaleY;
    const double db = std::fabs(dY - b.Y) * dScaleY;
    return ((b.X - a.X) * dScaleX * da / (db + da) + a.X * dScaleX) / dScaleX;
}

// Segments that start inside [dXMin, dXMax]; the end is not tested.
template <class Visit>
void ForEachSegmentStartingIn(const CChartPointDArray& arr, double dXMin, double dXMax, Visit visit)
{
    plotvane::ForEachSegment(arr.GetData(), arr.GetSize(),
                             [&](INT_PTR, const CChartPointD& a, const CChartPointD& b)
                             {
                                 if (plotvane::InClosedRange(a.X, dXMin, dXMax))
                                     visit(a, b);
                             });
}
} // namespace

// A sample exactly on the level crosses it, so both segments beside it may
// report it.
void CChartPointDArray::GetXValArrayMeetYThreshold(double dScaleX, double dScaleY, double dY,
                                                   double dXMin, double dXMax, CArrayD& arrRising,
                                                   CArrayD& arrFalling) const
{
    ForEachSegmentStartingIn(*this, dXMin, dXMax,
                             [&](const CChartPointD& a, const CChartPointD& b)
                             {
                                 if (a.Y == b.Y)
                                     return;
                                 if (a.Y >= dY && dY >= b.Y)
                                     arrFalling.Add(ThresholdX(a, b, dY, dScaleX, dScaleY));
                                 else if (dY >= a.Y && b.Y >= dY)
                                     arrRising.Add(ThresholdX(a, b, dY, dScaleX, dScaleY));
                             });
}

// Strict comparisons: a sample exactly on the level hides the crossing.
void CChartPointDArray::GetXValArrayMeetYThreshold(double dScaleX, double dScaleY, double dY,
                                                   double dXMin, double dXMax, CArrayD& arrX,
                                                   int bFalling) const
{
    ForEachSegmentStartingIn(*this, dXMin, dXMax,
                             [&](const CChartPointD& a, const CChartPointD& b)
                             {
                                 const bool bCrosses =
                                     bFalling ? a.Y > dY && dY > b.Y : a.Y < dY && dY < b.Y;
                                 if (bCrosses)
                                     arrX.Add(ThresholdX(a, b, dY, dScaleX, dScaleY));
                             });
}
