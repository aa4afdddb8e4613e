// Setup/hold and read-cycle margins on an eye of 2,000 periods of 128
// samples with a differential strobe. The read-cycle run also times the
// plain walk over every pair of eye lines once, reports how many times faster
// the filtered walk is, and fails when the two disagree in any bit.
#include <plotvane/measure/ChartPointDArrayArray.h>
#include <plotvane/measure/EyeGenerator.h>
#include <plotvane/measure/EyeLinePairs.h>

#include <benchmark/benchmark.h>

#include <ctime>
#include <cstring>

namespace
{
plotvane::DdrEye MakeEye(int nReadCycle)
{
    plotvane::DdrEyeParams p;
    p.nPeriods = 2000;
    p.nSamplesPerPeriod = 128;
    p.nReadCycle = nReadCycle;
    p.dDataJitterRms = 8e-12;
    p.dStrobeJitterRms = 3e-12;
    p.dIsi = 0.1;
    p.nPrbsOrder = 15;
    plotvane::DdrEye eye = plotvane::GenerateDdrEye(p);
    eye.pDQ->SetEyeInformation(-1.0, 100.0, 100.0, 0.1, 0.1, 0);
    return eye;
}

const plotvane::DdrEye& WriteEye()
{
    static const plotvane::DdrEye eye = MakeEye(0);
    return eye;
}

const plotvane::DdrEye& ReadEye()
{
    static const plotvane::DdrEye eye = MakeEye(1);
    return eye;
}

bool SameBits(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}

// Processor time of this (single-threaded) process.
class CpuClock
{
public:
    CpuClock() : m_start(std::clock()) {}
    double Seconds() const { return double(std::clock() - m_start) / CLOCKS_PER_SEC; }

private:
    std::clock_t m_start;
};

void BM_CheckSetupHoldMargin(benchmark::State& state)
{
    const plotvane::DdrEye& eye = WriteEye();
    double dSetup = 0.0, dHold = 0.0, dSetupHeight = 0.0, dHoldHeight = 0.0;
    double dVrefMV = 0.0, dWindowPS = 0.0, dSpreadPS = 0.0;
    for (auto _ : state)
    {
        eye.pDQ->CheckSetupHoldMargin(eye.pDQS.get(), eye.pDQSBar.get(), dSetup, dHold,
                                      dSetupHeight, dHoldHeight, dVrefMV, dWindowPS, dSpreadPS, 0.0,
                                      0, 0);
        benchmark::DoNotOptimize(dSetup);
        benchmark::DoNotOptimize(dHold);
    }
    state.counters["setup_ps"] = dSetup * 1e12;
    state.counters["hold_ps"] = dHold * 1e12;
}
BENCHMARK(BM_CheckSetupHoldMargin)->Unit(benchmark::kMillisecond);

void BM_CheckReadCycleTimeMargin(benchmark::State& state)
{
    const plotvane::DdrEye& eye = ReadEye();
    double dRefTQH = 0.0, dRefTDQSQ = 0.0;
    const CpuClock ref;
    plotvane::ReadCycleTimeMargin(*eye.pDQ, eye.pDQS.get(), eye.pDQSBar.get(), dRefTQH, dRefTDQSQ,
                                  0.0, 0, plotvane::EyeLineWalk::EveryPair);
    const double dRefSeconds = ref.Seconds();

    double dTQH = 0.0, dTDQSQ = 0.0;
    const CpuClock fast;
    for (auto _ : state)
    {
        eye.pDQ->CheckReadCycleTimeMargin(eye.pDQS.get(), eye.pDQSBar.get(), dTQH, dTDQSQ, 0.0, 0);
        benchmark::DoNotOptimize(dTQH);
        benchmark::DoNotOptimize(dTDQSQ);
    }
    const double dSeconds = fast.Seconds() / double(state.iterations());
    if (!SameBits(dTQH, dRefTQH) || !SameBits(dTDQSQ, dRefTDQSQ))
    {
        state.SkipWithError("filtered walk differs from the walk over every pair");
        return;
    }
    // CPU time on both sides, so that a busy machine does not skew the ratio.
    state.counters["every_pair_cpu_ms"] = dRefSeconds * 1e3;
    state.counters["speedup"] = dRefSeconds / dSeconds;
    state.counters["tQH_ps"] = dTQH * 1e12;
    state.counters["tDQSQ_ps"] = dTDQSQ * 1e12;
}
BENCHMARK(BM_CheckReadCycleTimeMargin)->Unit(benchmark::kMillisecond);

// The pair walk alone, both ways, over the lines of the read eye, in the
// window around the strobe edge.
void BM_EyeLinePairs(benchmark::State& state)
{
    const plotvane::DdrEye& eye = ReadEye();
    const auto walk =
        state.range(0) ? plotvane::EyeLineWalk::EveryPair : plotvane::EyeLineWalk::Filtered;
    CChartPointDArrayArray lines;
    eye.pDQ->ExtractEyeLinePointArray(&lines);
    const std::vector<int> types =
        plotvane::EyeLinePulseTypes(lines, eye.pDQ->GetMaxY(), eye.pDQ->GetMinY(), false);
    const double dLo = 0.0;
    const double dHi = eye.dStrobeEdge[0] + eye.dPeriod * 0.25;
    for (auto _ : state)
    {
        plotvane::EyeCrossExtent ext{1.7976931348623157e308, 2.2250738585072014e-308, false};
        plotvane::AccumulateEyeLineCrossings(lines, types, eye.dMid, 0.12, dLo, dHi, 1e9, 100.0,
                                             ext, walk);
        benchmark::DoNotOptimize(ext);
    }
    lines.DataRemoveAll();
}
BENCHMARK(BM_EyeLinePairs)->Arg(0)->Arg(1)->ArgName("every_pair")->Unit(benchmark::kMillisecond);
} // namespace

BENCHMARK_MAIN();
