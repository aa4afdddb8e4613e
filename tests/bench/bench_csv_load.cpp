// Loading cost of plotvane-render's CSV input, without GL: parsing text
// already in memory into numbers, and the whole load of a file into a
// chart's data sets (read, parse, samples into the pool), for 10^5 to 10^7
// lines of the "x,y" form that scopes and simulators write.
#include "render/ChartInput.h"
#include <plotvane/io/CsvReader.h>

#include <plotvane/document/Plotvane_Manager.h>

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <memory>
#include <string>
#include <unistd.h>

namespace
{

std::string CsvText(std::int64_t n)
{
    std::string text = "Time (s),DQ0\n";
    char line[64];
    for (std::int64_t i = 0; i < n; ++i)
    {
        const int len = std::snprintf(line, sizeof line, "%.6e,%.6f\n", double(i) * 1e-12,
                                      0.6 + 0.5 * std::sin(double(i) * 0.01));
        text.append(line, std::size_t(len));
    }
    return text;
}

// Counts the points and keeps nothing, so that only the parse is timed.
class CountingSink : public plotvane::CsvSink
{
public:
    void Begin(const plotvane::CsvTable&, std::size_t) override {}
    void Points(std::vector<plotvane::CsvSeries>& block) override
    {
        for (const plotvane::CsvSeries& s : block)
            nPoints += s.x.size();
    }
    std::size_t nPoints = 0;
};

void BM_ParseCsv(benchmark::State& state)
{
    const std::string text = CsvText(state.range(0));
    for (auto _ : state)
    {
        CountingSink sink;
        plotvane::ParseCsv(text, "bench.csv", sink);
        benchmark::DoNotOptimize(sink.nPoints);
    }
    state.SetBytesProcessed(state.iterations() * std::int64_t(text.size()));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(BM_ParseCsv)
    ->RangeMultiplier(10)
    ->Range(100'000, 10'000'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The file is written once per size and removed at the end.
void BM_LoadCsvIntoChart(benchmark::State& state)
{
    const std::string path = "/tmp/plotvane_bench_csv_" + std::to_string(getpid()) + "_" +
                             std::to_string(state.range(0)) + ".csv";
    {
        const std::string text = CsvText(state.range(0));
        std::FILE* f = std::fopen(path.c_str(), "w");
        if (!f || std::fwrite(text.data(), 1, text.size(), f) != text.size() ||
            std::fclose(f) != 0)
        {
            state.SkipWithError("cannot write the CSV");
            return;
        }
    }
    plotvane::RenderOptions options;
    options.dataFiles.push_back(path);
    for (auto _ : state)
    {
        auto mgr = std::make_unique<CPlotvane_Manager>();
        std::string headerX, headerY;
        plotvane::AddCsvFiles(*mgr, options, headerX, headerY);
        benchmark::DoNotOptimize(mgr->m_InputData.GetDataSize(0));
        state.PauseTiming();
        mgr.reset();
        state.ResumeTiming();
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
    std::remove(path.c_str());
}
BENCHMARK(BM_LoadCsvIntoChart)
    ->RangeMultiplier(10)
    ->Range(100'000, 10'000'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace

BENCHMARK_MAIN();
