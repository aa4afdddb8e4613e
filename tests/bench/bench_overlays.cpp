// Cost of a frame with each measurement overlay, on waveforms of about a
// million samples: every overlay demo of plotvane-render builds its chart
// as a host would, each of its data sets is then resampled to 10^6 points
// along the same shape (no points inserted across a fold's seam), and one
// RedrawGLChartView (the overlay's searches, its display list and a paint)
// plus glFinish is timed. "paint" times a paint that reuses the list, so
// the difference is the overlay's own cost.
#include "render/OverlayDemo.h"
#include <plotvane/plotvane.h>

#include <benchmark/benchmark.h>

#include <GL/gl.h>

#include <cmath>
#include <memory>

namespace
{
constexpr int kWidth = 1600;
constexpr int kHeight = 1000;
constexpr double kSamples = 1e6;

// The same shape with about kSamples points: each rising-X pair gets the
// points in between on the straight line; a seam keeps its jump.
void Resample(CChartPointDArray& set)
{
    const INT_PTR n = set.GetSize();
    if (n < 2)
        return;
    const int k = std::max(1, int(std::ceil(kSamples / double(n))));
    CChartPointDArray out;
    for (INT_PTR i = 0; i + 1 < n; ++i)
    {
        const CChartPointD* a = set.GetAt(i);
        const CChartPointD* b = set.GetAt(i + 1);
        const int steps = b->X > a->X ? k : 1;
        for (int s = 0; s < steps; ++s)
        {
            const double f = double(s) / steps;
            out.Add(new CChartPointD(a->X + f * (b->X - a->X),
                                     a->Y + f * (b->Y - a->Y)));
        }
    }
    const CChartPointD* last = set.GetAt(n - 1);
    out.Add(new CChartPointD(last->X, last->Y));
    set.DeleteAll();
    for (INT_PTR i = 0; i < out.GetSize(); ++i)
        set.Add(out.GetAt(i));
    out.SetSize(0);
}

struct Chart
{
    std::unique_ptr<CPlotvane_Manager> mgr = std::make_unique<CPlotvane_Manager>();
    bool bReady = false;
};

Chart MakeChart(const plotvane::OverlayDemo& demo)
{
    Chart c;
    if (!plotvane::CreateHeadlessChart(*c.mgr, kWidth, kHeight))
        return c;
    c.mgr->RemoveAllData();
    plotvane::RenderOptions options;
    demo.build(*c.mgr, options);
    CPlotvane_InputData& data = c.mgr->m_InputData;
    for (unsigned long long i = 0; i < data.GetDataSetSize(); ++i)
        Resample(*data.GetChartPointDArray(int(i)));
    c.mgr->SetChartDrawFit();
    c.mgr->RedrawGLChartView();
    c.bReady = true;
    return c;
}

void Frame(benchmark::State& state, const plotvane::OverlayDemo* demo, bool bRebuild)
{
    Chart c = MakeChart(*demo);
    if (!c.bReady)
    {
        state.SkipWithError("no GL context");
        return;
    }
    CGLChartView* view = c.mgr->m_ChartDlg.GetGLChartView();
    std::int64_t samples = 0;
    CPlotvane_InputData& data = c.mgr->m_InputData;
    for (unsigned long long i = 0; i < data.GetDataSetSize(); ++i)
        samples += data.GetChartPointDArray(int(i))->GetSize();
    for (auto _ : state)
    {
        if (bRebuild)
            c.mgr->RedrawGLChartView();
        else
            view->SendMessage(WM_PAINT);
        view->MakeCurrent();
        glFinish();
    }
    state.counters["samples"] = double(samples);
}

const int kRegistered = []
{
    for (const plotvane::OverlayDemo& d : plotvane::OverlayDemos())
    {
        benchmark::RegisterBenchmark((std::string("Overlay/") + d.name + "/redraw").c_str(), Frame,
                                     &d, true)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark((std::string("Overlay/") + d.name + "/paint").c_str(), Frame,
                                     &d, false)
            ->Unit(benchmark::kMillisecond);
    }
    return 0;
}();

} // namespace

BENCHMARK_MAIN();
