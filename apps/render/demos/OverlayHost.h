// The host's side of the measurement overlays, for data already in a chart:
// each function measures with the waveform API and writes the numbers and
// switches that its overlay reads into the manager. The overlay demos of
// plotvane-render and the Measure menu of plotvane-viewer both use them.
// None of them redraws; the caller ends with RedrawGLChartView.
#pragma once

#include <string>
#include <vector>

class CChartPointDArray;
class CPlotvane_Manager;

namespace plotvane
{

// Turns every overlay below off, the display-list one included, so that a
// host can switch from one to another.
void ClearOverlays(CPlotvane_Manager& mgr);

// ---- eye mask: a hexagon around (dCentreT, dCentreV) in data units whose
// tips stand dTipHalfWidth either side of the centre and whose flat top and
// bottom are dFlatPercent of the tips' width, dHalfHeight above and below.
struct EyeMaskShape
{
    double dCentreT, dCentreV, dTipHalfWidth, dFlatPercent, dHalfHeight;
};
void PlaceEyeMask(CPlotvane_Manager& mgr, const EyeMaskShape& shape);

// ---- bathtub: the crossings of each drawn curve at each bit error rate
// (as text, "1e-12"), into the measure map; answers how many were found.
int MeasureBathtubs(CPlotvane_Manager& mgr, const std::vector<std::string>& rates);

// ---- overshoot (nType 0) and undershoot (2) of set beyond dLevel (V),
// against dLimitMV; the area check (type 1) against dAllowedVns.
void SetShootCheck(CPlotvane_Manager& mgr, const CChartPointDArray& set, int nType, double dLevel,
                   double dLimitMV);
double AreaAbove(const CChartPointDArray& set, double dLevel); // V-ns
void SetOvershootAreaCheck(CPlotvane_Manager& mgr, const CChartPointDArray& set, double dLevel,
                           double dAllowedVns);

// ---- differential levels of a true leg t and its complement c.
struct DiffPair
{
    const CChartPointDArray* t;
    const CChartPointDArray* c;
};
// The crossing levels of the legs in the middle 40 % of the lower leg's
// swing: the search the VIX overlay runs. Answers 0 when they don't cross.
int DiffCrossings(const DiffPair& p, double& yA, double& yB);
double VixMV(const DiffPair& p, double dVref);
double VidMV(const DiffPair& p);
// The pair's nets and nodes as the overlays look them up, in capitals.
void NameDiffPair(CPlotvane_Manager& mgr, const DiffPair& p);
// VIX against dLimitMV, the reference at dVdd / 2; VID against dMinMV.
void SetVixCheck(CPlotvane_Manager& mgr, const DiffPair& p, double dVdd, double dLimitMV);
void SetVidCheck(CPlotvane_Manager& mgr, const DiffPair& p, double dMinMV);

// ---- target impedance: a limit for data set nIndex, either steps (from
// Hz, to Hz, Ohm) or, when line is not empty, a polyline of (Hz, Ohm).
struct TargetStep
{
    double dFrom, dTo, dOhm;
};
struct TargetPoint
{
    double dHz, dOhm;
};
struct TargetLimit
{
    std::string strRefName;
    int nIndex;
    std::vector<TargetStep> steps;
    std::vector<TargetPoint> line;
};
// Stores the limits in place of any the chart held and turns the overlay on.
void SetTargetLimits(CPlotvane_Manager& mgr, const std::vector<TargetLimit>& limits);

// ---- flight time: the first rising crossing of each level; false, with
// the overlay's members left alone, when either set never rises through it.
double FirstRise(const CChartPointDArray& set, double dLevel);
bool SetFlightTime(CPlotvane_Manager& mgr, const CChartPointDArray& driver,
                   const CChartPointDArray& receiver, double dDriverLevel, double dReceiverLevel);

// ---- crosstalk: the index of the set's highest (or, bNegative, lowest)
// sample, as the peak search finds it; -1 when there is none.
int PeakIndex(const CChartPointDArray& set, bool bNegative);

// ---- TDR: the reference impedance where the curve passes dRefT (looked
// for in [dLow, dHigh]), the peak as the second level and the marked
// point. False when the curve does not pass dRefT.
bool SetTdrMarks(CPlotvane_Manager& mgr, const CChartPointDArray& set, double dRefT, double dLow,
                 double dHigh);

// ---- DFE: the loss at dNyquist (looked for in [dLow, dHigh] dB) against
// dBudgetDb. False when the curve does not reach dNyquist.
bool SetDfeMark(CPlotvane_Manager& mgr, const CChartPointDArray& set, double dNyquist,
                double dBudgetDb, double dLow, double dHigh);

} // namespace plotvane
