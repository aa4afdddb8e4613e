// Drawing cost of a chart frame in a 1600x1000 offscreen window: one
// RenderScene plus glFinish, for a single curve and for a folded eye of many
// periods, from ten thousand to ten million samples; and plotvane-render as
// a whole process (read a CSV, fill the chart, draw, write the PNG) for a
// million samples.
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/measure/EyeGenerator.h>
#include <plotvane/platform/headless/HeadlessBackend.h>
#include <plotvane/platform/headless/HeadlessChart.h>
#include <plotvane/view/GLChartView.h>

#include <benchmark/benchmark.h>

#include <GL/gl.h>

#include <cmath>
#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

extern char** environ;

namespace
{
constexpr int kWidth = 1600;
constexpr int kHeight = 1000;
constexpr int kSamplesPerPeriod = 200;

// A chart window of the bench size over the manager's data, fitted and
// painted once, as a host leaves it before the user starts to look.
bool ShowChart(CPlotvane_Manager& mgr)
{
    if (!plotvane::CreateHeadlessChart(mgr, kWidth, kHeight))
        return false;
    mgr.SetChartDrawFit();
    mgr.RedrawGLChartView();
    return true;
}

// A damped sine sampled evenly, added straight to a new set.
void AddCurve(CPlotvane_Manager& mgr, std::int64_t n)
{
    CPlotvane_InputData& data = mgr.m_InputData;
    const int index = data.AddNewDataSet();
    CChartPointDArray* set = data.GetChartPointDArray(index);
    for (std::int64_t i = 0; i < n; ++i)
    {
        const double t = double(i) * 1e-12;
        set->Add(new CChartPointD(t, 0.6 + 0.5 * std::exp(-t * 1e6 / double(n)) *
                                               std::sin(double(i) * 0.01)));
    }
    data.AddDrawDataSetIndex(index);
}

// A DDR data eye of n samples folded at the strobe period, and its strobe.
void AddEye(CPlotvane_Manager& mgr, std::int64_t n)
{
    plotvane::DdrEyeParams params;
    params.nSamplesPerPeriod = kSamplesPerPeriod;
    params.nPeriods = int(n / kSamplesPerPeriod);
    params.dDataJitterRms = 5e-12;
    plotvane::DdrEye eye = plotvane::GenerateDdrEye(params);
    CPlotvane_InputData& data = mgr.m_InputData;
    data.m_arrChartData.Add(eye.pDQ.release());
    data.AddDrawDataSetIndex(int(data.GetDataSetSize()) - 1);
}

void RenderFrames(benchmark::State& state, CPlotvane_Manager& mgr, std::int64_t nSegments)
{
    if (!ShowChart(mgr))
    {
        state.SkipWithError("no OpenGL context");
        return;
    }
    CGLChartView* view = mgr.m_ChartDlg.GetGLChartView();
    for (auto _ : state)
    {
        view->FitCurViewAreaWithWindow();
        view->RenderScene();
        glFinish();
    }
    state.SetItemsProcessed(state.iterations() * nSegments);
    state.counters["segments"] = double(nSegments);
    state.SetLabel(plotvane::HeadlessBackend::Default().GetRendererName().GetString());
}

void BM_RenderCurve(benchmark::State& state)
{
    const std::int64_t n = state.range(0);
    auto mgr = std::make_unique<CPlotvane_Manager>();
    AddCurve(*mgr, n);
    RenderFrames(state, *mgr, n - 1);
}
BENCHMARK(BM_RenderCurve)
    ->RangeMultiplier(10)
    ->Range(10'000, 10'000'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// Every period is one run; the step back at each seam is not a segment.
void BM_RenderEye(benchmark::State& state)
{
    const std::int64_t n = state.range(0);
    auto mgr = std::make_unique<CPlotvane_Manager>();
    AddEye(*mgr, n);
    const std::int64_t nPeriods = n / kSamplesPerPeriod;
    RenderFrames(state, *mgr, nPeriods * (kSamplesPerPeriod - 1));
}
BENCHMARK(BM_RenderEye)
    ->RangeMultiplier(10)
    ->Range(10'000, 10'000'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

// The CSV is written once, the first time the program benchmark runs.
std::string g_csvPath;

const std::string& MillionSampleCsv()
{
    if (!g_csvPath.empty())
        return g_csvPath;
    std::string p = "/tmp/plotvane_bench_render_" + std::to_string(getpid()) + ".csv";
    std::FILE* f = std::fopen(p.c_str(), "w");
    if (!f)
        return g_csvPath;
    std::fputs("time,DQ0\n", f);
    for (int i = 0; i < 1'000'000; ++i)
        std::fprintf(f, "%.9g,%.6g\n", i * 1e-12, 0.6 + 0.5 * std::sin(i * 0.01));
    if (std::fclose(f) == 0)
        g_csvPath = p;
    return g_csvPath;
}

int RunRenderProgram(const std::string& csv, const std::string& png)
{
    const char* argv[] = {PLOTVANE_RENDER_EXE, "-o", png.c_str(), csv.c_str(), nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t pid = 0;
    int rc = posix_spawn(&pid, argv[0], &actions, nullptr, const_cast<char**>(argv), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (rc != 0)
        return -1;
    int status = 0;
    waitpid(pid, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void BM_RenderProgram(benchmark::State& state)
{
    const std::string& csv = MillionSampleCsv();
    if (csv.empty())
    {
        state.SkipWithError("cannot write the CSV");
        return;
    }
    const std::string png = csv + ".png";
    for (auto _ : state)
    {
        if (RunRenderProgram(csv, png) != 0)
        {
            state.SkipWithError("plotvane-render failed");
            break;
        }
    }
    state.SetItemsProcessed(state.iterations() * 1'000'000);
    std::remove(png.c_str());
}
BENCHMARK(BM_RenderProgram)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2.0);

} // namespace

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    if (!g_csvPath.empty())
        std::remove(g_csvPath.c_str());
    return 0;
}
