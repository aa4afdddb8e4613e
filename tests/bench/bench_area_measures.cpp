// Overshoot area over the lines of a folded eye, as the overshoot overlay
// calls it: 2,000 periods of 128 samples.
#include <plotvane/measure/ChartPointDArray.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <vector>

namespace
{

constexpr double kPeriod = 1.25e-9;
constexpr int kSamplesPerPeriod = 128;
constexpr int kPeriods = 2000;
constexpr double kHigh = 1.2;

// Unit step response of an underdamped second-order edge: about 10 %
// overshoot and a 10-90 % rise time near 150 ps.
double StepResponse(double t)
{
    if (t <= 0.0)
        return 0.0;
    const double zeta = 0.5912;
    const double wn = 1.18e10;
    const double root = std::sqrt(1.0 - zeta * zeta);
    return 1.0 - std::exp(-zeta * wn * t) / root * std::sin(wn * root * t + std::acos(zeta));
}

// PRBS7 bits (x^7 + x^6 + 1), one per period.
std::vector<int> Prbs7(int n)
{
    std::vector<int> bits;
    unsigned state = 0x7f;
    for (int i = 0; i < n; ++i)
    {
        const unsigned bit = ((state >> 6) ^ (state >> 5)) & 1u;
        state = ((state << 1) | bit) & 0x7f;
        bits.push_back(int(bit));
    }
    return bits;
}

// Bit k holds from k * T - T / 2 to k * T + T / 2, so every eye line, folded
// at the period, shows its transition in the middle. The edges of the last
// four bits are summed; older ones have settled.
void BuildFoldedEye(CChartPointDArray& eye)
{
    const std::vector<int> bits = Prbs7(kPeriods + 1);
    for (int p = 0; p < kPeriods; ++p)
    {
        for (int j = 0; j < kSamplesPerPeriod; ++j)
        {
            const double x = j * (kPeriod / kSamplesPerPeriod);
            const double t = p * kPeriod + x;
            const int current = p + (x >= kPeriod * 0.5 ? 1 : 0);
            const int oldest = current >= 4 ? current - 4 : 0;
            double y = bits[size_t(oldest)] * kHigh;
            for (int k = oldest + 1; k <= current; ++k)
            {
                const double edge = (k - 0.5) * kPeriod;
                y += (bits[size_t(k)] - bits[size_t(k - 1)]) * kHigh * StepResponse(t - edge);
            }
            eye.Add(new CChartPointD(x, y));
        }
    }
}

void BM_MaxAreaAboveOverEyeLines(benchmark::State& state)
{
    CChartPointDArray eye;
    BuildFoldedEye(eye);
    double dArea = 0.0;
    for (auto _ : state)
    {
        eye.GetMaxAreaAboveYValueWithExtractEyeLinePoints(1e9, 100.0, 0.0, kPeriod, kHigh, dArea);
        benchmark::DoNotOptimize(dArea);
    }
    state.counters["area_V_ns"] = dArea;
    state.counters["samples"] = double(eye.GetSize());
}
BENCHMARK(BM_MaxAreaAboveOverEyeLines)->Unit(benchmark::kMillisecond);

void BM_MaxAreaAboveWithOutlineOverEyeLines(benchmark::State& state)
{
    CChartPointDArray eye;
    BuildFoldedEye(eye);
    CChartPointDArray outline;
    double dArea = 0.0;
    for (auto _ : state)
    {
        eye.GetMaxAreaAboveYValueAndAllPointsInAreaWithExtractEyeLinePoints(
            1e9, 100.0, 0.0, kPeriod, kHigh, dArea, &outline);
        benchmark::DoNotOptimize(dArea);
    }
    state.counters["area_V_ns"] = dArea;
    state.counters["outline_points"] = double(outline.GetSize());
}
BENCHMARK(BM_MaxAreaAboveWithOutlineOverEyeLines)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
