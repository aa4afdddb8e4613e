// Crossings between the rising and the falling lines of an eye, the hot spot
// of the read-cycle check: every line of pulse type 1 against every later
// line of type 2 and the other way round, each pair searched with the
// eight-double GetDataCrossMinMaxXValueByPointArray of the earlier line
// against the later one. Internal to the measure layer.
#pragma once

#include <plotvane/measure/ChartPointDArrayArray.h>

#include <vector>

namespace plotvane
{
// Running extent of the crossings found in one window, seeded by the caller.
// A pair that finds something moves dMin (dMax) when its minimum (maximum)
// lies strictly below (above) it, and sets bFound.
struct EyeCrossExtent
{
    double dMin;
    double dMax;
    bool bFound;
};

// How the pairs are walked; both give identical extents.
// Filtered: each line's segments are filtered once per window; line pairs
// and segment pairs whose boxes are apart are passed over, and so are those
// whose crossings could only lie strictly within the extent found so far,
// where they would move nothing. The rest keep the plain walking order.
// EveryPair: the search itself on every pair, for reference.
enum class EyeLineWalk
{
    Filtered,
    EveryPair
};

// Pulse type of each line: GetPulseDataType(dMax, dMin), or with bSecondHalf
// GetPulseDataType2.
std::vector<int> EyeLinePulseTypes(const CChartPointDArrayArray& lines, double dMax, double dMin,
                                   bool bSecondHalf);

// For every pair i < j whose types are 1 and 2 in either order, in the order
// of i and then of j, merges the crossings of line i with line j at level dY,
// band dTol, in the window [dXMin, dXMax] into ext.
void AccumulateEyeLineCrossings(const CChartPointDArrayArray& lines, const std::vector<int>& types,
                                double dY, double dTol, double dXMin, double dXMax, double dScaleX,
                                double dScaleY, EyeCrossExtent& ext,
                                EyeLineWalk walk = EyeLineWalk::Filtered);

// CheckReadCycleTimeMargin of dq with a choice of walk (in TimingMargins.cpp).
void ReadCycleTimeMargin(const CChartPointDArray& dq, const CChartPointDArray* pDQS,
                         const CChartPointDArray* pDQSBar, double& dTQH, double& dTDQSQ,
                         double dOffset, int bVrefFromData, EyeLineWalk walk);
} // namespace plotvane
