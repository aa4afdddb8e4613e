// The setup/hold check with the depth of a violation kept. In level mode
// CheckSetupHoldMargin reports a side whose data enter the required window
// as -1.0, the same as a side with nothing to measure, unless the reference
// comes from the data; a host that must tell a failed eye from an
// unmeasured one asks this form instead.
#pragma once

#include <plotvane/measure/ChartPointDArray.h>

namespace plotvane
{
// CheckSetupHoldMargin of dq (in TimingMargins.cpp), except that a violated
// side keeps its negative margin. -1.0 then means only that the side found
// no crossing.
void SetupHoldMarginKeepingViolations(const CChartPointDArray& dq, CChartPointDArray* pDQS,
                                      CChartPointDArray* pDQSBar, double& dSetupMargin,
                                      double& dHoldMargin, double& dSetupHeight,
                                      double& dHoldHeight, double& dVrefMV, double& dWindowPS,
                                      double& dStrobeSpreadPS, double dOffset, int bVrefFromData,
                                      int bNoMask);
} // namespace plotvane
