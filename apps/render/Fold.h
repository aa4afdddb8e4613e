// Folding a waveform in time into an eye, as a simulator's eye export would
// hold it: one run per period, from X = 0 to X = the period exactly.
#pragma once

#include <cstddef>
#include <vector>

class CChartPointDArray;

namespace plotvane
{

// How many whole periods of dPeriod the samples cover from dSkip on.
std::size_t WholePeriods(const std::vector<double>& xs, double dPeriod, double dSkip);

// Folds the waveform (xs rising) at dPeriod from dSkip on into eye, which
// must be empty. Each whole period becomes a run from 0 to dPeriod: its ends
// are interpolated at the period's edges and the samples inside are shifted
// by the period's start (a sample on an edge is the edge). The runs go
// through the waveform's own period serialisation, which with more than two
// periods leaves out the first and the last. Answers the periods kept.
std::size_t FoldIntoEye(const std::vector<double>& xs, const std::vector<double>& ys,
                        double dPeriod, double dSkip, CChartPointDArray& eye);

} // namespace plotvane
