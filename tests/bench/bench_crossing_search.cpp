// Crossing searches over a folded eye of ten million samples, against the
// floor that the sample storage allows (a loop that only reads every sample),
// and the cost in time and memory of building such a waveform.
#include <plotvane/measure/ChartPointDArray.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <limits>
#include <unistd.h>

namespace
{
constexpr INT_PTR kSamples = 10'000'000;
constexpr int kSamplesPerPeriod = 400;
constexpr double kPeriod = 1e-9;
constexpr double kVref = 0.6;
constexpr double kScaleX = 1e9;
constexpr double kScaleY = 100.0;

// Resident memory of the process in bytes.
double ResidentBytes()
{
    long nPages = 0, nResident = 0;
    std::FILE* f = std::fopen("/proc/self/statm", "r");
    if (!f)
        return 0.0;
    if (std::fscanf(f, "%ld %ld", &nPages, &nResident) != 2)
        nResident = 0;
    std::fclose(f);
    return double(nResident) * double(sysconf(_SC_PAGESIZE));
}

// A raised-cosine step from 0 to 1 over u in [-0.5, 0.5].
double Step(double u)
{
    if (u <= -0.5)
        return 0.0;
    if (u >= 0.5)
        return 1.0;
    return 0.5 - 0.5 * std::cos(M_PI * (u + 0.5));
}

// A data eye folded at every period: within a period X rises from 0, and the
// signal moves from the previous bit to the current one near a quarter period
// and on to the next bit near three quarters, with a little jitter; X falls
// back at every seam. With bComplement the other half of a differential pair.
void FillEye(CChartPointDArray& w, bool bComplement)
{
    std::uint32_t state = 12345;
    auto next = [&state]()
    {
        state = state * 1664525u + 1013904223u;
        return state >> 8;
    };
    auto level = [](std::uint32_t bit) { return bit ? 1.0 : 0.2; };
    auto jitter = [&next]() { return (double(next() % 1000) - 500.0) * 4e-5; };
    std::uint32_t prev = 0, cur = 1, nxt = 0;
    double ja = 0.0, jb = 0.0;
    for (INT_PTR i = 0; i < kSamples; ++i)
    {
        const int k = int(i % kSamplesPerPeriod);
        if (k == 0)
        {
            prev = cur;
            cur = nxt;
            nxt = next() & 1u;
            ja = jitter();
            jb = jitter();
        }
        const double t = double(k) / kSamplesPerPeriod;
        const double y = level(prev) + (level(cur) - level(prev)) * Step((t - 0.25 - ja) / 0.2) +
                         (level(nxt) - level(cur)) * Step((t - 0.75 - jb) / 0.2);
        w.Add(new CChartPointD(t * kPeriod, bComplement ? 2 * kVref - y : y));
    }
}

const CChartPointDArray& Eye()
{
    static CChartPointDArray* eye = []
    {
        auto* w = new CChartPointDArray;
        FillEye(*w, false);
        return w;
    }();
    return *eye;
}

const CChartPointDArray& ComplementEye()
{
    static CChartPointDArray* eye = []
    {
        auto* w = new CChartPointDArray;
        FillEye(*w, true);
        return w;
    }();
    return *eye;
}

// What any search over the samples has to do at least: read X and Y of each.
void ReadEverySample(const CChartPointDArray& w)
{
    const CChartPointD* const* p = w.GetData();
    for (INT_PTR i = 0; i < w.GetSize(); ++i)
    {
        double x = p[i]->X;
        double y = p[i]->Y;
        benchmark::DoNotOptimize(x);
        benchmark::DoNotOptimize(y);
    }
}

void SearchWholeEye(const CChartPointDArray& w, double dXMin, double dXMax)
{
    double lo = 0.0, hi = 0.0;
    benchmark::DoNotOptimize(w.GetCrossMinMaxXValue(kVref, dXMin, dXMax, kScaleX, kScaleY, lo, hi));
    benchmark::DoNotOptimize(lo);
    benchmark::DoNotOptimize(hi);
}

// Building cost alone: plain samples, no signal computed.
void FillPlain(CChartPointDArray& w)
{
    for (INT_PTR i = 0; i < kSamples; ++i)
        w.Add(new CChartPointD(double(i % kSamplesPerPeriod), 0.5));
}

// Runs first and once, before any other waveform exists, so that the resident
// growth is the new array's alone.
void BM_StoredBytesPerSample(benchmark::State& state)
{
    for (auto _ : state)
    {
        const double before = ResidentBytes();
        auto* w = new CChartPointDArray;
        FillPlain(*w);
        const double after = ResidentBytes();
        state.counters["bytes_per_sample"] = (after - before) / double(kSamples);
        delete w;
    }
    state.SetItemsProcessed(state.iterations() * kSamples);
}
BENCHMARK(BM_StoredBytesPerSample)->Iterations(1)->Unit(benchmark::kMillisecond);

void BM_BuildAndDestroy(benchmark::State& state)
{
    for (auto _ : state)
    {
        auto* w = new CChartPointDArray;
        FillPlain(*w);
        delete w;
    }
    state.SetItemsProcessed(state.iterations() * kSamples);
}
BENCHMARK(BM_BuildAndDestroy)->Unit(benchmark::kMillisecond);

void BM_PlainLoop(benchmark::State& state)
{
    const CChartPointDArray& w = Eye();
    for (auto _ : state)
        ReadEverySample(w);
    state.SetItemsProcessed(state.iterations() * kSamples);
}
BENCHMARK(BM_PlainLoop)->Unit(benchmark::kMillisecond);

void BM_GetCrossMinMaxXValue(benchmark::State& state)
{
    const CChartPointDArray& w = Eye();
    const double dXMin = w.GetMinX(), dXMax = w.GetMaxX();
    for (auto _ : state)
        SearchWholeEye(w, dXMin, dXMax);
    state.SetItemsProcessed(state.iterations() * kSamples);
}
BENCHMARK(BM_GetCrossMinMaxXValue)->Unit(benchmark::kMillisecond);

// Seconds of CPU time of the calling thread.
double ThreadSeconds()
{
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) + double(t.tv_nsec) * 1e-9;
}

// Times the plain loop and the search alternately in one run and reports the
// ratio of their fastest runs. Thread CPU time, so that a busy machine that
// deschedules the benchmark does not skew the ratio.
void BM_SearchToPlainLoopRatio(benchmark::State& state)
{
    const CChartPointDArray& w = Eye();
    const double dXMin = w.GetMinX(), dXMax = w.GetMaxX();
    double dLoop = std::numeric_limits<double>::max();
    double dSearch = std::numeric_limits<double>::max();
    for (auto _ : state)
    {
        const double t0 = ThreadSeconds();
        ReadEverySample(w);
        const double t1 = ThreadSeconds();
        SearchWholeEye(w, dXMin, dXMax);
        const double t2 = ThreadSeconds();
        dLoop = std::min(dLoop, t1 - t0);
        dSearch = std::min(dSearch, t2 - t1);
    }
    state.counters["loop_ms"] = dLoop * 1e3;
    state.counters["search_ms"] = dSearch * 1e3;
    state.counters["search_per_loop"] = dSearch / dLoop;
    state.SetItemsProcessed(state.iterations() * kSamples * 2);
}
BENCHMARK(BM_SearchToPlainLoopRatio)->Unit(benchmark::kMillisecond)->MinTime(2.0);

void BM_GetDataCrossMinMaxXValue(benchmark::State& state)
{
    const CChartPointDArray& p = Eye();
    const CChartPointDArray& n = ComplementEye();
    const double dXMin = p.GetMinX(), dXMax = p.GetMaxX();
    for (auto _ : state)
    {
        double lo = 0.0, hi = 0.0, yLo = 0.0, yHi = 0.0;
        benchmark::DoNotOptimize(
            p.GetDataCrossMinMaxXValue(&n, dXMin, dXMax, kScaleX, kScaleY, lo, hi, yLo, yHi));
        benchmark::DoNotOptimize(lo);
        benchmark::DoNotOptimize(yHi);
    }
    state.SetItemsProcessed(state.iterations() * kSamples);
}
BENCHMARK(BM_GetDataCrossMinMaxXValue)->Unit(benchmark::kMillisecond);
} // namespace

BENCHMARK_MAIN();
