#include <plotvane/measure/PairSweep.h>

#include <plotvane/measure/SearchSkeleton.h>

#include <algorithm>
#include <cmath>
#include <cstdint>

// Why two passes find every hit of the pairwise walk.
//
// In scaled units, with both segments running left to right (no seams, a
// positive X scale), the primitive computes d, tn and un as differences of
// two rounded products of the rounded differences dx12, dy12, dx13, ... Each
// is within kRound * (the sum of the products' magnitudes) of its exact value
// D, TN, UN over those differences, so with s and t the lengths and P13 the
// vector between the first points: |d - D| <= kRound * s * t, |tn - TN| <=
// kRound * |P13| * t, |un - UN| <= kRound * |P13| * s. The exact values obey
// TN * dx12 - UN * dx34 = dx13 * D.
//
// Near pass: pairs whose X spans overlap or lie within a gap of M of each
// other, found by a sweep over the segments sorted by their left end.
//
// Far pass: a pair with a gap of more than M (so at least M / 2 after the
// rounding of dx13 and dx12) can only be reported when its segments lie on
// one line to within rounding. With the second segment to the right, a hit
// needs tn <= d and un >= 0; put into the identity this gives
// D * gap <= kRound * s * t * (2 |P13| + s), and the hit needs D > -|d - D|,
// so |sin| of the angle between the segments, |D| / (s * t), is at most
// S = kRound * max(1, 2 (6 W + L) / M), with W the largest coordinate
// magnitude (|P13| < 3 W) and L the largest length. The mirror case gives the same
// bound, and un in [0, d] then puts the second segment's first point within
// S * L + kRound * (|P13| + L) of the first segment's line. The far pass so
// looks only at pairs whose directions agree to 2 S (as angles) and whose
// lines' distances from the origin agree to dDistTol, which adds to that the
// effect of the angle on the distance and the rounding of both.
//
// The bounds need every product in the normal range. A scaled coordinate
// is therefore 0 or of a magnitude in [2^-300, 2^300]: a difference of two
// such is 0 or at least 2^-352, and no product of differences underflows or
// overflows. A zero-length segment, whose determinant is 0 with any
// partner, is passed over.
namespace plotvane
{

void OrderedHitExtent::Add(double v, INT_PTR i, INT_PTR j)
{
    const Hit h{v, i, j};
    if (!m_bFound)
    {
        m_bFound = true;
        m_min = m_max = h;
        return;
    }
    if (v < m_min.v || (v == m_min.v && h.Before(m_min)))
        m_min = h;
    if (v > m_max.v || (v == m_max.v && h.Before(m_max)))
        m_max = h;
}

int OrderedHitExtent::Result(double& dMin, double& dMax) const
{
    dMin = m_min.v;
    dMax = m_max.v;
    return m_bFound ? 1 : 0;
}

namespace
{
constexpr double kRound = 0x1p-50; // above 2u + u^2, u the unit roundoff
constexpr double kPi = 3.14159265358979323846;

// A segment in scaled units, x1 <= x2, with its start index.
struct Seg
{
    ScaledSegment s;
    INT_PTR i;
};

// What the tolerances are built from: the largest coordinate magnitude, the
// largest |dx| + |dy|, and the X widths summed.
struct Extents
{
    double dW = 0.0;
    double dL = 0.0;
    double dSumDx = 0.0;
};

bool Moderate(double v)
{
    const double a = std::fabs(v);
    return v == 0.0 || (a >= 0x1p-300 && a <= 0x1p300); // NaN fails both
}

bool Gather(const CChartPointD* const* p, const std::vector<INT_PTR>& kept, double dScaleX,
            double dScaleY, std::vector<Seg>& out, Extents& ext)
{
    out.reserve(kept.size());
    for (INT_PTR i : kept)
    {
        const ScaledSegment s = Scaled(*p[i], *p[i + 1], dScaleX, dScaleY);
        if (!Moderate(s.x1) || !Moderate(s.y1) || !Moderate(s.x2) || !Moderate(s.y2))
            return false;
        const double dx = s.x2 - s.x1;
        const double dy = s.y2 - s.y1;
        if (dx == 0.0 && dy == 0.0)
            continue;
        const double w = std::max(std::max(std::fabs(s.x1), std::fabs(s.y1)),
                                  std::max(std::fabs(s.x2), std::fabs(s.y2)));
        ext.dW = std::max(ext.dW, w);
        ext.dL = std::max(ext.dL, std::fabs(dx) + std::fabs(dy));
        ext.dSumDx += dx;
        out.push_back({s, i});
    }
    return true;
}

// Where a hit goes: its Y, unscaled, when it lies in the range.
struct Collector
{
    double dScaleY, dYMin, dYMax;
    OrderedHitExtent& ext;

    void operator()(const Seg& a, const Seg& b) const
    {
        double pOut[2];
        if (!MeetAt(a.s, b.s, pOut, 1))
            return;
        const double y = pOut[1] / dScaleY;
        if (!(y < dYMin || y > dYMax))
            ext.Add(y, a.i, b.i);
    }
};

// Pairs one new segment with the active ones of the other array, dropping
// those that end more than dGap left of it: they end too early for every
// later segment as well.
template <class Visit>
void MeetActive(const Seg& seg, std::vector<const Seg*>& active, double dGap, Visit visit)
{
    std::size_t nKept = 0;
    for (const Seg* other : active)
    {
        if (other->s.x2 + dGap < seg.s.x1)
            continue;
        active[nKept++] = other;
        visit(*other);
    }
    active.resize(nKept);
}

// Every pair of a and b (each sorted by x1) whose X spans come within dGap.
void NearPass(const std::vector<Seg>& a, const std::vector<Seg>& b, double dGap,
              const Collector& hit)
{
    std::vector<const Seg*> activeA, activeB;
    std::size_t ia = 0, ib = 0;
    while (ia < a.size() || ib < b.size())
    {
        if (ib == b.size() || (ia < a.size() && a[ia].s.x1 <= b[ib].s.x1))
        {
            const Seg& s = a[ia++];
            MeetActive(s, activeB, dGap, [&](const Seg& t) { hit(s, t); });
            activeA.push_back(&s);
        }
        else
        {
            const Seg& t = b[ib++];
            MeetActive(t, activeA, dGap, [&](const Seg& s) { hit(s, t); });
            activeB.push_back(&t);
        }
    }
}

// A segment's line: its direction as an angle in [-pi/2, pi/2] and its
// signed distance from the origin. A line near vertical is also entered with
// the angle a half turn down, so that it meets its near-vertical partners of
// the other sign within one window.
struct Line
{
    std::int64_t nCell;
    double dDist;
    const Seg* seg;
    bool operator<(const Line& o) const
    {
        return nCell < o.nCell || (nCell == o.nCell && dDist < o.dDist);
    }
};

// Level and vertical segments apart from the sloped ones: two level
// segments (or two vertical ones) give the primitive a determinant of
// exactly 0, so they never meet, and quantized waveforms hold many of them
// on one line.
enum Kind
{
    kSloped,
    kLevel,
    kVertical,
    kKinds
};

Kind KindOf(const Seg& g)
{
    return g.s.y2 == g.s.y1 ? kLevel : g.s.x2 == g.s.x1 ? kVertical : kSloped;
}

void AddLines(const Seg& g, double dAngleTol, std::vector<Line>& lines)
{
    const double phi = std::atan2(g.s.y2 - g.s.y1, g.s.x2 - g.s.x1);
    const double dist = -std::sin(phi) * g.s.x1 + std::cos(phi) * g.s.y1;
    lines.push_back({std::int64_t(std::floor(phi / dAngleTol)), dist, &g});
    if (phi > kPi / 2 - dAngleTol)
        lines.push_back({std::int64_t(std::floor((phi - kPi) / dAngleTol)), -dist, &g});
}

// g against the lines of lb whose angles fall in the cells around la's and
// whose distances agree with la's to dDistTol.
void MeetNearLines(const Seg& g, const Line& la, const std::vector<Line>& lb, double dDistTol,
                   const Collector& hit)
{
    for (std::int64_t nCell = la.nCell - 1; nCell <= la.nCell + 1; ++nCell)
    {
        const Line from{nCell, la.dDist - dDistTol, nullptr};
        for (auto it = std::lower_bound(lb.begin(), lb.end(), from);
             it != lb.end() && it->nCell == nCell && it->dDist <= la.dDist + dDistTol; ++it)
            hit(g, *it->seg);
    }
}

// Every far pair that can meet: those of near lines, less the pairs of two
// level or two vertical segments.
void FarPass(const std::vector<Seg>& a, const std::vector<Seg>& b, double dAngleTol,
             double dDistTol, const Collector& hit)
{
    std::vector<Line> linesB[kKinds];
    for (const Seg& g : b)
        AddLines(g, dAngleTol, linesB[KindOf(g)]);
    for (std::vector<Line>& lines : linesB)
        std::sort(lines.begin(), lines.end());
    std::vector<Line> linesA;
    for (const Seg& g : a)
    {
        const Kind kind = KindOf(g);
        linesA.clear();
        AddLines(g, dAngleTol, linesA);
        for (int k = 0; k < kKinds; ++k)
        {
            if (k == kind && kind != kSloped)
                continue;
            for (const Line& la : linesA)
                MeetNearLines(g, la, linesB[k], dDistTol, hit);
        }
    }
}

bool ByLeftEnd(const Seg& a, const Seg& b)
{
    return a.s.x1 < b.s.x1;
}
} // namespace

bool SweepPairMeetY(const CChartPointD* const* p, const std::vector<INT_PTR>& keptP,
                    const CChartPointD* const* q, const std::vector<INT_PTR>& keptQ, double dScaleX,
                    double dScaleY, double dYMin, double dYMax, OrderedHitExtent& ext)
{
    if (!(dScaleX > 0.0))
        return false;
    std::vector<Seg> a, b;
    Extents e;
    if (!Gather(p, keptP, dScaleX, dScaleY, a, e) || !Gather(q, keptQ, dScaleX, dScaleY, b, e))
        return false;
    if (a.empty() || b.empty())
        return true;

    const double dGap = std::max(e.dSumDx / double(a.size() + b.size()), 0x1p-40 * e.dW);
    const double dSin = kRound * std::max(1.0, 2.0 * (6.0 * e.dW + e.dL) / dGap);
    const double dAngleTol = 2.0 * dSin + 0x1p-46;
    const double dDistTol = (dSin + 0x1p-44) * (e.dL + 4.0 * e.dW);
    if (dAngleTol > 0x1p-10)
        return false;

    std::sort(a.begin(), a.end(), ByLeftEnd);
    std::sort(b.begin(), b.end(), ByLeftEnd);
    const Collector hit{dScaleY, dYMin, dYMax, ext};
    NearPass(a, b, dGap, hit);
    FarPass(a, b, dAngleTol, dDistTol, hit);
    return true;
}

} // namespace plotvane
