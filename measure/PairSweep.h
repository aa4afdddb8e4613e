// The meeting points of the segments of one waveform with those of another,
// found without putting every pair to the intersection primitive, yet with
// the answer that walk would give, bit for bit. Internal to the measure layer.
#pragma once

#include <plotvane/foundation/Types.h>
#include <plotvane/measure/ChartPointD.h>

#include <vector>

namespace plotvane
{
// The extent of hits that arrive in any order, kept as HitExtent keeps them
// in the order of the pairwise walk (outer over the first array, inner over
// the second): on a tie the hit the walk meets first stays. Ties matter
// because equal values may differ in their bits, as 0.0 and -0.0 do.
class OrderedHitExtent
{
public:
    // i, j: the start indices of the pair's segments in their arrays.
    void Add(double v, INT_PTR i, INT_PTR j);
    // Both ends, 0.0 when nothing was found; answers 1 or 0.
    int Result(double& dMin, double& dMax) const;

private:
    struct Hit
    {
        double v;
        INT_PTR i, j;
        bool Before(const Hit& o) const { return i < o.i || (i == o.i && j < o.j); }
    };
    Hit m_min{0.0, 0, 0};
    Hit m_max{0.0, 0, 0};
    bool m_bFound = false;
};

// For segments (p[i], p[i + 1]), i in keptP, against (q[j], q[j + 1]), j in
// keptQ (no seams among them): the Y of every meeting point MeetAt(first,
// second, pOut, 1) reports on the scaled pair, divided by dScaleY, that lies
// in [dYMin, dYMax], into ext. Answers false, having added nothing, where the
// inputs leave the ranges its rounding argument covers (an X scale that is
// not positive; a scaled coordinate that is neither 0 nor of a magnitude in
// [2^-300, 2^300]): the caller then walks every pair.
bool SweepPairMeetY(const CChartPointD* const* p, const std::vector<INT_PTR>& keptP,
                    const CChartPointD* const* q, const std::vector<INT_PTR>& keptQ, double dScaleX,
                    double dScaleY, double dYMin, double dYMax, OrderedHitExtent& ext);
} // namespace plotvane
