// Synthetic DDR eyes: a PRBS data signal (DQ) and its strobe (DQS, and DQS#
// for a differential strobe), sampled and folded at the strobe period the way
// a simulator's eye export is. Tests derive expected margins from the edge
// positions the result reports; demos and benchmarks use it as realistic data.
//
// The fold period is one strobe cycle. The strobe toggles every bit, so a
// period carries two bits, two data transition slots and two strobe edges.
// Each period is one run of samples with X from 0.0 to the period exactly;
// the sample at X = period repeats the instant of the next run's first one.
#pragma once

#include <plotvane/measure/ChartPointDArray.h>

#include <cstdint>
#include <memory>

namespace plotvane
{
struct DdrEyeParams
{
    // Fold period in seconds: one strobe cycle, two bits.
    double dPeriod = 1.25e-9;
    // Samples in each folded run, both ends included (at least 2).
    int nSamplesPerPeriod = 128;
    int nPeriods = 64;
    double dLow = 0.0;
    double dHigh = 1.2;
    // Duration of one raised-cosine edge, from leaving one level to reaching
    // the other; kept below one bit.
    double dRiseTime = 150e-12;
    // Centre of the first data transition slot as a fraction of the period;
    // the second slot lies one bit later.
    double dDataEdgeFraction = 0.125;
    // 0: write, the strobe edges stand in the middle of the data bits;
    // 1: read, the strobe edges stand on the data transitions.
    int nReadCycle = 0;
    int bDifferential = 1;
    // Delay of the strobe edges from their nominal place, in seconds.
    double dStrobeSkew = 0.0;
    // Random jitter of each edge, Gaussian, rms in seconds. It is clipped so
    // that neighbouring edges never overlap.
    double dDataJitterRms = 0.0;
    double dStrobeJitterRms = 0.0;
    // First-order settling, 0..1: each bit covers only 1 - dIsi of the way
    // from the previous bit's level to its own, so short bits fall short of
    // the rails and the crossings move with the pattern.
    double dIsi = 0.0;
    // PRBS order: 7, 9, 11, 15, 23 or 31.
    int nPrbsOrder = 7;
    std::uint64_t nSeed = 1;
    // First name token, shared by data and strobe so that a chart pairs them.
    CString strGroup = "BL0";
    int nBit = 0;
};

struct DdrEye
{
    std::unique_ptr<CChartPointDArray> pDQ;
    std::unique_ptr<CChartPointDArray> pDQS;
    // Complement of the strobe; null for a single-ended strobe.
    std::unique_ptr<CChartPointDArray> pDQSBar;

    double dPeriod = 0.0;
    double dUnitInterval = 0.0; // one bit, half the period
    double dLow = 0.0;
    double dHigh = 0.0;
    double dMid = 0.0;
    double dRiseTime = 0.0;

    // Nominal centres within the period (seconds from X = 0) of the two data
    // transition slots and of the two strobe edges. A strobe edge's centre is
    // where DQS meets DQS#, and where a single-ended DQS passes dMid.
    double dDataEdge[2] = {0.0, 0.0};
    double dStrobeEdge[2] = {0.0, 0.0};
    // Earliest and latest centre, jitter included, of the data transitions
    // that happen in each slot, and of the strobe edges, within the sampled
    // time. Without jitter they equal the nominal centres.
    double dDataEdgeMin[2] = {0.0, 0.0};
    double dDataEdgeMax[2] = {0.0, 0.0};
    double dStrobeEdgeMin[2] = {0.0, 0.0};
    double dStrobeEdgeMax[2] = {0.0, 0.0};

    // Time from a rising edge's centre to where it passes dLevel (negative
    // below dMid); a full-swing falling edge passes it at minus this offset.
    // Exact for the edge shape; the sampled waveform differs by its linear
    // interpolation, well below a picosecond at the defaults.
    double RisingEdgeOffset(double dLevel) const;
};

// Builds the waveforms and sets the attributes the measures read: names
// "<group>_DQ<bit>_RX", "<group>_DQS_RX", "<group>_DQS#_RX" (net names
// without "_RX"), m_nDataType 2 for data and 0 for strobes, m_nPinRole 2,
// m_dPeriod, m_nReadCycle, the strobes' m_dLevelLow and m_dLevelHigh, and the
// data's m_dEyeVref -1.0 so that the reference follows the strobe's levels.
// Deterministic for given parameters; it draws from its own generator, not
// from rand (the arrays' constructors still draw their colours from rand).
DdrEye GenerateDdrEye(const DdrEyeParams& params = DdrEyeParams());
} // namespace plotvane
