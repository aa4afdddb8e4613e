#include <plotvane/measure/EyeLinePairs.h>

#include <plotvane/measure/SearchSkeleton.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace plotvane
{
namespace
{
void Merge(EyeCrossExtent& ext, const HitExtent& pair)
{
    double dMin = 0.0;
    double dMax = 0.0;
    if (!pair.Result(dMin, dMax))
        return;
    if (dMin < ext.dMin)
        ext.dMin = dMin;
    if (dMax > ext.dMax)
        ext.dMax = dMax;
    ext.bFound = true;
}

// A box in scaled units around segments. Two segments meet inside both their
// boxes; the primitive's point strays from them by rounding only, unless the
// segments are parallel to within rounding (exactly parallel ones it
// refuses). The box is widened by a millionth of its coordinates, far beyond
// rounding, and unbounded when a coordinate is not finite, so that it never
// excludes a meeting the primitive reports.
struct Box
{
    double dXLo;
    double dXHi;
    double dYLo;
    double dYHi;

    static Box Of(const ScaledSegment& s)
    {
        if (!(std::isfinite(s.x1) && std::isfinite(s.x2) && std::isfinite(s.y1) &&
              std::isfinite(s.y2)))
        {
            const double inf = std::numeric_limits<double>::infinity();
            return {-inf, inf, -inf, inf};
        }
        return {std::min(s.x1, s.x2), std::max(s.x1, s.x2), std::min(s.y1, s.y2),
                std::max(s.y1, s.y2)};
    }

    void Add(const Box& o)
    {
        dXLo = std::min(dXLo, o.dXLo);
        dXHi = std::max(dXHi, o.dXHi);
        dYLo = std::min(dYLo, o.dYLo);
        dYHi = std::max(dYHi, o.dYHi);
    }

    bool Overlaps(const Box& o) const
    {
        return !(dXHi < o.dXLo || o.dXHi < dXLo || dYHi < o.dYLo || o.dYHi < dYLo);
    }

    static void Widen(double& dLo, double& dHi)
    {
        if (!std::isfinite(dLo) || !std::isfinite(dHi))
        {
            dLo = -std::numeric_limits<double>::infinity();
            dHi = std::numeric_limits<double>::infinity();
            return;
        }
        const double m = 1e-6 * (std::fabs(dLo) + std::fabs(dHi));
        dLo -= m;
        dHi += m;
    }

    void Widen()
    {
        Widen(dXLo, dXHi);
        Widen(dYLo, dYHi);
    }
};

// Where, in data units and within the window, a meeting on segments of this
// box can lie: a meeting lies in the boxes of both segments, and dividing by
// a positive scale keeps the bound.
struct HitRange
{
    double dLo;
    double dHi;

    static HitRange Of(const Box& b, double dXMin, double dXMax, double dScaleX)
    {
        if (!(dScaleX > 0.0 && std::isfinite(dScaleX)))
            return {dXMin, dXMax};
        return {std::max(b.dXLo / dScaleX, dXMin), std::min(b.dXHi / dScaleX, dXMax)};
    }

    HitRange Common(const HitRange& o) const
    {
        return {std::max(dLo, o.dLo), std::min(dHi, o.dHi)};
    }
    bool IsEmpty() const { return dLo > dHi; }
    // Hits strictly inside a found extent move neither end.
    bool Inside(const EyeCrossExtent& ext) const
    {
        return ext.bFound && dLo > ext.dMin && dHi < ext.dMax;
    }
};

struct KeptSegment
{
    ScaledSegment s;
    Box box;
    HitRange hits;
};

struct KeptLine
{
    size_t nBegin = 0;
    size_t nEnd = 0;
    Box box{};
    HitRange hits{};
    // Both ends of the segments' X boxes never fall along the line, as on
    // an eye line: the segments that can meet a given one are then a run.
    bool bSorted = true;

    bool IsEmpty() const { return nBegin == nEnd; }
};

// Every line filtered once for one window and band, with the same tests, in
// the same order and with the same scaled coordinates as the pair search.
class FilteredLines
{
public:
    FilteredLines(const CChartPointDArrayArray& lines, double dY, double dTol, double dXMin,
                  double dXMax, double dScaleX, double dScaleY)
        : m_lines(size_t(lines.GetSize()))
    {
        const double dBandLow = dY - dTol;
        const double dBandHigh = dY + dTol;
        for (INT_PTR i = 0; i < lines.GetSize(); ++i)
        {
            const CChartPointDArray& line = *lines.GetData()[i];
            KeptLine& kept = m_lines[size_t(i)];
            kept.nBegin = kept.nEnd = m_segments.size();
            ForEachSegment(line.GetData(), line.GetSize(),
                           [&](INT_PTR, const CChartPointD& a, const CChartPointD& b)
                           {
                               if (!BothOutside(a.X, b.X, dXMin, dXMax) &&
                                   !BothOutside(a.Y, b.Y, dBandLow, dBandHigh))
                                   Append(kept, Scaled(a, b, dScaleX, dScaleY), dXMin, dXMax,
                                          dScaleX);
                           });
            kept.box.Widen();
            kept.hits = HitRange::Of(kept.box, dXMin, dXMax, dScaleX);
        }
    }

    const KeptLine& Line(INT_PTR i) const { return m_lines[size_t(i)]; }
    const KeptSegment* Segments() const { return m_segments.data(); }

private:
    void Append(KeptLine& kept, const ScaledSegment& s, double dXMin, double dXMax, double dScaleX)
    {
        Box box = Box::Of(s);
        if (kept.IsEmpty())
            kept.box = box;
        else
            kept.box.Add(box);
        box.Widen();
        if (!kept.IsEmpty())
        {
            const Box& prev = m_segments.back().box;
            kept.bSorted = kept.bSorted && box.dXLo >= prev.dXLo && box.dXHi >= prev.dXHi;
        }
        m_segments.push_back({s, box, HitRange::Of(box, dXMin, dXMax, dScaleX)});
        kept.nEnd = m_segments.size();
    }

    std::vector<KeptLine> m_lines;
    std::vector<KeptSegment> m_segments;
};

// Line i against line j: every kept segment of i against every kept segment
// of j, in that order. Segment pairs whose boxes are apart cannot meet, and
// those whose meetings could only fall strictly inside the extent found so
// far move nothing; both are passed over. On sorted lines the segments of j
// that overlap a segment of i in X form a run that only moves on, so the
// others are not even looked at.
void PairCross(const KeptSegment* segs, const KeptLine& self, const KeptLine& other, double dXMin,
               double dXMax, double dScaleX, EyeCrossExtent& ext)
{
    const bool bSweep = self.bSorted && other.bSorted;
    size_t nFirst = other.nBegin;
    HitExtent pair;
    for (size_t a = self.nBegin; a < self.nEnd; ++a)
    {
        const KeptSegment& sa = segs[a];
        if (bSweep)
            while (nFirst < other.nEnd && segs[nFirst].box.dXHi < sa.box.dXLo)
                ++nFirst;
        for (size_t b = nFirst; b < other.nEnd; ++b)
        {
            const KeptSegment& sb = segs[b];
            if (bSweep && sb.box.dXLo > sa.box.dXHi)
                break;
            if (!sa.box.Overlaps(sb.box))
                continue;
            const HitRange hits = sa.hits.Common(sb.hits);
            if (hits.IsEmpty() || hits.Inside(ext))
                continue;
            double pOut[2];
            if (Meet(sa.s, sb.s, pOut))
                AddInRange(pair, pOut[0] / dScaleX, dXMin, dXMax);
        }
    }
    Merge(ext, pair);
}

// The filtered walk: the pairs are walked in the same order as the plain
// walk, so ties resolve the same way; a pair is passed over as a whole when
// its lines' boxes are apart or all its meetings would fall inside the
// extent.
void FilteredWalk(const CChartPointDArrayArray& lines, const std::vector<int>& types, double dY,
                  double dTol, double dXMin, double dXMax, double dScaleX, double dScaleY,
                  EyeCrossExtent& ext)
{
    const FilteredLines filtered(lines, dY, dTol, dXMin, dXMax, dScaleX, dScaleY);

    // Lines that kept something, by type 1 and 2, in index order.
    std::vector<INT_PTR> byType[2];
    for (INT_PTR i = 0; i < lines.GetSize(); ++i)
    {
        const int t = types[size_t(i)];
        if ((t == 1 || t == 2) && !filtered.Line(i).IsEmpty())
            byType[t - 1].push_back(i);
    }

    for (INT_PTR i = 0; i < lines.GetSize(); ++i)
    {
        const int t = types[size_t(i)];
        if ((t != 1 && t != 2) || filtered.Line(i).IsEmpty())
            continue;
        const KeptLine& self = filtered.Line(i);
        const std::vector<INT_PTR>& partners = byType[2 - t];
        for (auto it = std::upper_bound(partners.begin(), partners.end(), i); it != partners.end();
             ++it)
        {
            const KeptLine& other = filtered.Line(*it);
            if (!self.box.Overlaps(other.box))
                continue;
            const HitRange hits = self.hits.Common(other.hits);
            if (hits.IsEmpty() || hits.Inside(ext))
                continue;
            PairCross(filtered.Segments(), self, other, dXMin, dXMax, dScaleX, ext);
        }
    }
}

void EveryPairWalk(const CChartPointDArrayArray& lines, const std::vector<int>& types, double dY,
                   double dTol, double dXMin, double dXMax, double dScaleX, double dScaleY,
                   EyeCrossExtent& ext)
{
    const INT_PTR n = lines.GetSize();
    for (INT_PTR i = 0; i < n; ++i)
    {
        const int t = types[size_t(i)];
        if (t != 1 && t != 2)
            continue;
        for (INT_PTR j = i + 1; j < n; ++j)
        {
            const int u = types[size_t(j)];
            if ((u != 1 && u != 2) || u == t)
                continue;
            double dMin = 0.0;
            double dMax = 0.0;
            if (!lines.GetData()[i]->GetDataCrossMinMaxXValueByPointArray(
                    lines.GetData()[j], dY, dTol, dXMin, dXMax, dScaleX, dScaleY, dMin, dMax))
                continue;
            if (dMin < ext.dMin)
                ext.dMin = dMin;
            if (dMax > ext.dMax)
                ext.dMax = dMax;
            ext.bFound = true;
        }
    }
}
} // namespace

std::vector<int> EyeLinePulseTypes(const CChartPointDArrayArray& lines, double dMax, double dMin,
                                   bool bSecondHalf)
{
    std::vector<int> types(size_t(lines.GetSize()));
    for (INT_PTR i = 0; i < lines.GetSize(); ++i)
    {
        const CChartPointDArray* p = lines.GetData()[i];
        types[size_t(i)] =
            bSecondHalf ? p->GetPulseDataType2(dMax, dMin) : p->GetPulseDataType(dMax, dMin);
    }
    return types;
}

void AccumulateEyeLineCrossings(const CChartPointDArrayArray& lines, const std::vector<int>& types,
                                double dY, double dTol, double dXMin, double dXMax, double dScaleX,
                                double dScaleY, EyeCrossExtent& ext, EyeLineWalk walk)
{
    if (walk == EyeLineWalk::EveryPair)
        EveryPairWalk(lines, types, dY, dTol, dXMin, dXMax, dScaleX, dScaleY, ext);
    else
        FilteredWalk(lines, types, dY, dTol, dXMin, dXMax, dScaleX, dScaleY, ext);
}
} // namespace plotvane
