// The walk that every crossing search shares: neighbouring sample pairs in
// index order, seams and pairs outside the window passed over, and a running
// minimum and maximum of the hits. Internal to the measure layer.
#pragma once

#include <plotvane/foundation/Geometry.h>
#include <plotvane/foundation/Types.h>
#include <plotvane/measure/ChartPointD.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace plotvane
{
// Running extent of the hits of one search. The first hit sets both ends; a
// later one moves an end only when it lies strictly beyond it, so that on a
// tie the first hit in walking order stays.
class HitExtent
{
public:
    static constexpr int kMovedMin = 1;
    static constexpr int kMovedMax = 2;

    // Answers which ends v moved, as kMovedMin | kMovedMax bits.
    int Add(double v)
    {
        if (!m_bFound)
        {
            m_bFound = true;
            m_dMin = m_dMax = v;
            return kMovedMin | kMovedMax;
        }
        int nMoved = 0;
        if (v < m_dMin)
        {
            m_dMin = v;
            nMoved |= kMovedMin;
        }
        if (v > m_dMax)
        {
            m_dMax = v;
            nMoved |= kMovedMax;
        }
        return nMoved;
    }

    // Writes both ends, 0.0 when nothing was found, and answers 1 or 0.
    int Result(double& dMin, double& dMax) const
    {
        dMin = m_dMin;
        dMax = m_dMax;
        return m_bFound ? 1 : 0;
    }

private:
    double m_dMin = 0.0;
    double m_dMax = 0.0;
    bool m_bFound = false;
};

// A value that moved an end of the extent is also recorded beside it, as the
// Y of the hits that set the X extent.
inline void RecordAtMovedEnds(int nMoved, double v, double& dAtMin, double& dAtMax)
{
    if (nMoved & HitExtent::kMovedMin)
        dAtMin = v;
    if (nMoved & HitExtent::kMovedMax)
        dAtMax = v;
}

// Both ends strictly on one side of the closed range [lo, hi]; a pair with
// one end inside, or spanning the range, is kept.
inline bool BothOutside(double a, double b, double lo, double hi)
{
    return (a < lo && b < lo) || (a > hi && b > hi);
}

// Closed range; NaN is outside.
inline bool InClosedRange(double v, double lo, double hi)
{
    return v >= lo && v <= hi;
}

// A seam is where a folded eye falls back to the start of its period: it is no
// part of the signal. Equal X is not a seam.
inline bool IsSeam(const CChartPointD& a, const CChartPointD& b)
{
    return a.X > b.X;
}

// Calls visit(i, a, b) for each segment (a, b) = (p[i], p[i + 1]) that is no
// seam, in index order.
template <class Visit>
inline void ForEachSegment(const CChartPointD* const* p, INT_PTR n, Visit&& visit)
{
    if (n < 2)
        return;
    const CChartPointD* a = p[0];
    for (INT_PTR i = 1; i < n; ++i)
    {
        const CChartPointD* b = p[i];
        if (!IsSeam(*a, *b))
            visit(i - 1, *a, *b);
        a = b;
    }
}

// As ForEachSegment, and passes over segments that lie wholly left of dXMin
// or wholly right of dXMax, before anything costly is done with them.
template <class Visit>
inline void ForEachSegmentInXWindow(const CChartPointD* const* p, INT_PTR n, double dXMin,
                                    double dXMax, Visit&& visit)
{
    ForEachSegment(p, n,
                   [&](INT_PTR i, const CChartPointD& a, const CChartPointD& b)
                   {
                       if (!BothOutside(a.X, b.X, dXMin, dXMax))
                           visit(i, a, b);
                   });
}

// A segment in scaled coordinates, as the intersection primitive takes it.
struct ScaledSegment
{
    double x1, y1, x2, y2;
};

inline ScaledSegment Scaled(const CChartPointD& a, const CChartPointD& b, double dScaleX,
                            double dScaleY)
{
    return {a.X * dScaleX, a.Y * dScaleY, b.X * dScaleX, b.Y * dScaleY};
}

// The primitive, with a NaN in the coordinate the caller uses counted as a
// miss. The sample pair goes second: the primitive takes the point along it,
// so a touch at a sample reproduces that sample exactly.
inline bool MeetAt(const ScaledSegment& s, const ScaledSegment& t, double* pOut, int nCoord)
{
    return CLumigrid_Math::GetIntersectionLineLine(s.x1, s.y1, s.x2, s.y2, t.x1, t.y1, t.x2, t.y2,
                                                   pOut) > 0 &&
           !std::isnan(pOut[nCoord]);
}

inline bool Meet(const ScaledSegment& s, const ScaledSegment& t, double* pOut)
{
    return MeetAt(s, t, pOut, 0);
}

// Adds v to the extent when it lies in the closed range [lo, hi]; answers the
// ends it moved.
inline int AddInRange(HitExtent& ext, double v, double lo, double hi)
{
    if (v < lo || v > hi)
        return 0;
    return ext.Add(v);
}

// A horizontal line at the scaled level dLevel from dX1 to dX2 (dX2 > dX1),
// against sample pairs. Most pairs of a waveform lie on one side of the level,
// so a pair is first put to the primitive's own parameter test, in its own
// arithmetic: the meeting point's parameter along the pair is
// (dLevel - y1) / (y2 - y1), taken as -(dy13 * dx12) over dx12 * dy34, and it
// must lie in [0, 1]. A pair that fails it cannot meet, and rounding at the
// ends is judged exactly as the primitive judges it, so skipping the call
// changes no result.
class LevelLine
{
public:
    LevelLine(double dX1, double dX2, double dLevel)
        : m_line{dX1, dLevel, dX2, dLevel}, m_dx12(dX2 - dX1)
    {
    }

    bool Meet(const ScaledSegment& s, double* pOut) const
    {
        if (!MayMeet(s.y1, s.y2))
            return false;
        return plotvane::Meet(m_line, s, pOut);
    }

private:
    bool MayMeet(double y3, double y4) const
    {
        const double p = (y3 - m_line.y1) * m_dx12; // minus the primitive's numerator
        const double q = m_dx12 * (y4 - y3);        // the primitive's determinant
        if (q > 0.0)
            return p <= 0.0 && -p <= q;
        if (q < 0.0)
            return p >= 0.0 && p <= -q;
        return !(q == 0.0); // NaN goes on to the primitive
    }

    ScaledSegment m_line;
    double m_dx12;
};

// One pass over the samples that finds the X extent of the whole array (with
// the comparisons of GetMinX and GetMaxX, and so their answers) and, at the
// same time, the segments (no seam, inside the X window) that may meet one of
// N scaled levels, so that a level search reads the samples once.
//
// A segment is left out only when the primitive is sure to miss it: it is
// flat, or for every level it moves away from the level or stops short of it
// by more than rounding can bridge, a margin of 2^-50 of its rise. That
// argument holds while the primitive's products stay in the normal range; the
// pass keeps the magnitudes it relied on, and Trusted() checks them against
// the level line's length once that is known. When they don't pass, the
// caller walks every segment.
template <std::size_t N> class LevelCandidates
{
public:
    // Copies of the sample pairs picked, in index order: by the time they are
    // visited the samples have long left the cache.
    struct Pair
    {
        CChartPointD a, b;
    };

    LevelCandidates(const CChartPointD* const* p, INT_PTR n, double dXMin, double dXMax,
                    double dScaleY, const double (&levels)[N])
    {
        if (n == 0)
            return;
        State st{p[0]->X, p[0]->X, m_dSmallest, m_dLargest, p[0]->X, p[0]->Y * dScaleY};
        const Window win{dXMin, dXMax, dScaleY};
        INT_PTR picked[kBlock];
        for (INT_PTR nStart = 1; nStart < n; nStart += kBlock)
        {
            const INT_PTR nPicked =
                ScanBlock(p, nStart, std::min(n, nStart + kBlock), win, levels, st, picked);
            for (INT_PTR k = 0; k < nPicked; ++k)
                m_segments.push_back({*p[picked[k]], *p[picked[k] + 1]});
        }
        m_dMinX = st.dMinX;
        m_dMaxX = st.dMaxX;
        m_dSmallest = st.dSmallest;
        m_dLargest = st.dLargest;
    }

    double GetMinX() const { return m_dMinX; }
    double GetMaxX() const { return m_dMaxX; }
    const std::vector<Pair>& Segments() const { return m_segments; }

    // Whether the segments left out are sure misses for a level line of
    // scaled length dx12.
    bool Trusted(double dx12) const
    {
        constexpr double kLow = 0x1p-1000;
        constexpr double kHigh = 0x1p+1000;
        if (!(dx12 > 0.0 && dx12 <= kHigh))
            return false;
        if (m_dSmallest > m_dLargest) // nothing was left out on margins
            return true;
        return m_dSmallest >= kLow && m_dLargest <= kHigh && m_dSmallest * dx12 >= kLow &&
               m_dLargest * dx12 <= kHigh;
    }

private:
    // Running values of the pass, carried from block to block.
    struct State
    {
        double dMinX, dMaxX;
        double dSmallest, dLargest;
        double xa, ya; // the previous sample, Y scaled
    };
    struct Window
    {
        double dXMin, dXMax, dScaleY;
    };
    static constexpr INT_PTR kBlock = 2048;

    // Samples [nStart, nEnd): writes the start index of each pair picked to
    // picked and answers how many. A leaf kept out of line, so that the
    // running values stay in registers; the caller copies the pairs out once
    // per block, while their samples are still in the cache.
    [[gnu::noinline]] static INT_PTR ScanBlock(const CChartPointD* const* p, INT_PTR nStart,
                                               INT_PTR nEnd, const Window& win,
                                               const double (&levels)[N], State& st,
                                               INT_PTR* picked)
    {
        double dMinX = st.dMinX, dMaxX = st.dMaxX;
        double dSmallest = st.dSmallest, dLargest = st.dLargest;
        double xa = st.xa, ya = st.ya;
        const double dXMin = win.dXMin, dXMax = win.dXMax, dScaleY = win.dScaleY;
        INT_PTR nPicked = 0;
        for (INT_PTR i = nStart; i < nEnd; ++i)
        {
            const CChartPointD* b = p[i];
            const double xb = b->X;
            const double yb = b->Y * dScaleY;
            dMinX = xb < dMinX ? xb : dMinX;
            dMaxX = xb > dMaxX ? xb : dMaxX;
            // The primitive's dy34; at 0 its determinant is 0 and it misses.
            const double dRise = yb - ya;
            if (!(xa > xb) && !BothOutside(xa, xb, dXMin, dXMax) && dRise != 0.0 &&
                MayMeetAny(ya, dRise, levels, dSmallest, dLargest))
                picked[nPicked++] = i - 1;
            xa = xb;
            ya = yb;
        }
        st = State{dMinX, dMaxX, dSmallest, dLargest, xa, ya};
        return nPicked;
    }

    // With dToLevel the primitive's dy13 (start minus level), the meeting
    // point's parameter along the pair is -dToLevel / dRise. A pair is sure to
    // miss when that is negative (it moves away) or beyond 1 by more than the
    // margin (it stops short); the magnitudes that argument rests on are
    // recorded. A sample on the level is always a candidate. A NaN anywhere
    // makes the primitive miss, so it needs no record.
    static bool MayMeetAny(double ya, double dRise, const double (&levels)[N], double& dSmallest,
                           double& dLargest)
    {
        const double dReach = std::fabs(dRise);
        for (double dLevel : levels)
        {
            const double dToLevel = ya - dLevel;
            const double dAway = std::fabs(dToLevel);
            const bool bMovesAway = (dToLevel > 0.0) == (dRise > 0.0);
            const bool bSureMiss = dToLevel != 0.0 && (bMovesAway || dAway > dReach * kMargin);
            if (!bSureMiss)
                return true;
            dSmallest = std::min(dSmallest, std::min(dAway, dReach));
            dLargest = std::max(dLargest, std::max(dAway, dReach));
        }
        return false;
    }

    static constexpr double kMargin = 1.0 + 0x1p-50;

    double m_dMinX = 2.2250738585072014e-308; // the empty array's answers
    double m_dMaxX = 1.7976931348623157e308;
    std::vector<Pair> m_segments;
    double m_dSmallest = 1.7976931348623157e308; // magnitudes relied on
    double m_dLargest = 0.0;
};
} // namespace plotvane
