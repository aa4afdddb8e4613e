// Rotation of stored eyes along the X axis: each waveform is cut into its
// periods, the periods are turned so that a chosen time becomes X = 0, and
// the whole periods are put back together.
#pragma once

#include <plotvane/measure/ChartPointDArrayArray.h>

#include <cmath>

namespace plotvane
{
// How far from 0 or from the period a sample may lie and still count as a
// period's end: a tenth of a picosecond.
inline double PeriodEdgeTolerance()
{
    return std::pow(10.0, -12.0) * 0.1;
}

// Turns every waveform of sets so that dShift of its period becomes X = 0.
// A negative dShift counts from the middle of the period. Waveforms of
// exactly two points are left alone; a waveform in fold mode 3 comes back
// holding its eye twice, the second copy half a period on.
void ShiftEyeSetsToLeft(CChartPointDArrayArray& sets, double dShift, double dPeriod);
} // namespace plotvane
