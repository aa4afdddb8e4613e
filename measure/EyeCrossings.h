// The crossing searches that place a strobe edge in a data eye and measure
// the data around it. The setup/hold and read-cycle margin checks
// (TimingMargins.cpp) and the eye jitter overlay both run them, on the same
// waveforms in seconds and volts, and differ only in the scale factors they
// hand to the intersection primitive:
//   - the margin checks use fixed factors, 1e9 and 100.0, and report seconds;
//   - the overlay uses the chart's view scales (data to logical units) and
//     afterwards turns its distances into whole picoseconds for the screen.
// The factors can move a hit in its last bits, so the two callers agree to
// rounding, not to the bit. The steps around these searches are each
// caller's own. Not part of the host API.
#pragma once

#include <plotvane/measure/ChartPointDArray.h>

namespace plotvane
{
// Scale factors of a search; see GetCrossMinMaxXValue.
struct SearchScale
{
    double x;
    double y;
};

// First and last crossing of a level in an X window; 0.0 and 0.0 when none.
struct LevelCross
{
    bool bFound;
    double dLo;
    double dHi;
};

// GetCrossMinMaxXValue of d at dLevel in [dFrom, dTo]. The window is taken
// as given: callers pass a Y extent as the right end where they mean "to the
// end of the data".
LevelCross CrossOf(const CChartPointDArray& d, double dLevel, double dFrom, double dTo,
                   SearchScale scale);

// Earliest and latest strobe crossing in [dLo, dHi]: s against its
// complement pBar, or s against dVref when pBar is null (single-ended). The
// outputs move only when something was found, so a caller's retries can
// fall back on the last edge that was.
bool FindStrobeEdge(const CChartPointDArray& s, const CChartPointDArray* pBar, double dVref,
                    double dLo, double dHi, SearchScale scale, double& dMin, double& dMax);

// A strobe with a phase (m_nStrobePhase 0 or 1) follows the data: the
// strobe window [dLo, dHi] is placed from the data's own first and last
// crossing of dVref over [dXLow, dXMax], the data eye's X extent, or from
// the strobe's period when the data has none. Any other phase leaves the
// window alone. dStrobeMinX is s's GetMinX, which the caller already holds.
void FollowDataCrossings(const CChartPointDArray& d, double dXLow, double dXMax,
                         const CChartPointDArray& s, double dStrobeMinX, double dVref,
                         SearchScale scale, double& dLo, double& dHi);
} // namespace plotvane
