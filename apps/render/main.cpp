// plotvane-render: draws CSV, ngspice raw and Touchstone data or a saved
// chart offscreen and writes the frame as a PNG; measures DDR eyes. See
// UsageText() in Options.cpp for the command line.
#include "render/Axes.h"
#include "render/ChartInput.h"
#include "render/Demo.h"
#include "render/JsonReport.h"
#include "render/Measure.h"
#include "render/Options.h"
#include "render/OverlayDemo.h"
#include "render/Render.h"
#include "render/TargetZ.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/platform/Backend.h>

#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <string>
#include <unistd.h>

namespace
{

const char* const kProgram = "plotvane-render";

// Progress of one big file on standard error: in place on a terminal, a
// line per quarter otherwise.
class Progress
{
public:
    explicit Progress(const std::string& file) : m_file(file), m_bTty(isatty(2) != 0) {}

    void operator()(double fraction)
    {
        const int percent = int(fraction * 100.0);
        if (m_bTty)
        {
            std::fprintf(stderr, "\r%s: reading %s: %3d%%%s", kProgram, m_file.c_str(), percent,
                         percent >= 100 ? "\n" : "");
            return;
        }
        if (percent >= m_nNext)
        {
            std::fprintf(stderr, "%s: reading %s: %d%%\n", kProgram, m_file.c_str(), percent);
            m_nNext = (percent / 25 + 1) * 25;
        }
    }

private:
    std::string m_file;
    bool m_bTty;
    int m_nNext = 25;
};

void Warn(const std::string& what)
{
    std::fprintf(stderr, "%s: warning: %s\n", kProgram, what.c_str());
}

int Run(const plotvane::RenderOptions& options)
{
    plotvane::SetAppName(kProgram);
    auto mgr = std::make_unique<CPlotvane_Manager>();
    if (!options.chartFile.empty())
        plotvane::LoadChartFile(*mgr, options.chartFile);
    // Before any data arrive: a logarithmic Y axis drops zeros as they come.
    plotvane::ApplyScaleOptions(*mgr, options);

    const plotvane::DataAxes axes = plotvane::AddDataFiles(
        *mgr, options, Warn, [](const std::string& file) { return Progress(file); });
    plotvane::AxisSource x = axes.x;
    plotvane::AxisSource y = axes.y;
    // A loaded chart keeps its own axis names unless the command line says.
    if (!options.chartFile.empty())
    {
        x = plotvane::AxisSourceOf(mgr->m_Attribute.m_XAxis);
        y = plotvane::AxisSourceOf(mgr->m_Attribute.m_YAxis);
    }
    if (!options.targetZFile.empty())
        plotvane::AddTargetImpedance(*mgr, options.targetZFile, options.bLight);

    plotvane::CheckChartData(*mgr, Warn);
    plotvane::ApplyAxes(*mgr, plotvane::WithOptions(x, options.xName, options.xUnit),
                        plotvane::WithOptions(y, options.yName, options.yUnit));

    plotvane::RenderChartToPng(*mgr, options);
    if (!options.saveChart.empty())
        plotvane::SaveChartFile(*mgr, options.saveChart);
    return 0;
}

// Texts and window for a picture that goes into a report: larger type than
// the plain charts unless the command line says.
plotvane::RenderOptions EyeLook(plotvane::RenderOptions options)
{
    if (!options.bFontSizeGiven)
        options.nFontSize = 18;
    options.nMeasureFontSize = options.nFontSize + 2;
    return options;
}

// --demo and --measure: the eyes into a chart as a host puts them there,
// one frame with the timing overlay, the margins, the report.
int RunEye(const plotvane::RenderOptions& given)
{
    const plotvane::RenderOptions options = EyeLook(given);
    const bool bDemo = !options.demo.empty();
    const bool bRead = options.bRead || options.demo == "ddr-read";
    plotvane::SetAppName(kProgram);

    auto mgr = std::make_unique<CPlotvane_Manager>();
    plotvane::CreateOffscreenChart(*mgr, options);
    // The new window put a placeholder set in the empty chart.
    mgr->RemoveAllData();

    plotvane::DdrEye eye;
    plotvane::EyeChartSets sets;
    if (bDemo)
    {
        eye = plotvane::GenerateDdrEye(plotvane::DemoEyeParams(bRead));
        sets = plotvane::AddDemoEyes(*mgr, eye, options.bLight);
    }
    else
    {
        sets = plotvane::AddMeasuredEyes(*mgr, options, Warn);
    }
    CPlotvane_InputData& data = mgr->m_InputData;
    plotvane::ApplyEyeOptions(options, *data.GetChartPointDArray(sets.nDQ),
                              *data.GetChartPointDArray(sets.nDQS),
                              sets.nDQSBar >= 0 ? data.GetChartPointDArray(sets.nDQSBar) : nullptr);

    plotvane::EyeOutputs outputs;
    const plotvane::EyeMeasurement m = plotvane::DrawAndMeasureEye(*mgr, sets, options, outputs);

    plotvane::JsonWriter json;
    json.BeginObject();
    json.Key("program");
    json.String(kProgram);
    json.Key("mode");
    json.String(bDemo ? "demo" : "measure");
    json.Key("demo");
    if (bDemo)
        json.String(options.demo);
    else
        json.Null();
    json.Key("sets");
    json.BeginObject();
    json.Key("dq");
    json.String(data.GetChartPointDArray(sets.nDQ)->m_strName.str());
    json.Key("dqs");
    json.String(data.GetChartPointDArray(sets.nDQS)->m_strName.str());
    json.Key("dqs_bar");
    if (sets.nDQSBar >= 0)
        json.String(data.GetChartPointDArray(sets.nDQSBar)->m_strName.str());
    else
        json.Null();
    json.EndObject();
    plotvane::WriteEyeMeasurement(json, m, options);
    if (bDemo)
    {
        const double dVref = std::isfinite(m.dVrefMV) ? m.dVrefMV / 1000.0 : eye.dMid;
        plotvane::WriteDemoGenerator(json, eye, plotvane::HandMargins(eye, options, dVref), bRead);
    }
    plotvane::WriteFilesMember(json, outputs.png, outputs.chart, outputs.report);
    json.EndObject();
    if (!options.reportCsv.empty())
    {
        plotvane::EyeNames names{data.GetChartPointDArray(sets.nDQ)->m_strName.str(),
                                 data.GetChartPointDArray(sets.nDQS)->m_strName.str(),
                                 sets.nDQSBar >= 0
                                     ? data.GetChartPointDArray(sets.nDQSBar)->m_strName.str()
                                     : std::string()};
        plotvane::AppendEyeCsvRow(options.reportCsv, names, m, options);
    }
    plotvane::EmitReport(json, outputs.report);
    return 0;
}

int Fail(const char* what)
{
    std::fprintf(stderr, "%s: %s\n", kProgram, what);
    return 1;
}

} // namespace

int main(int argc, char** argv)
{
    plotvane::RenderOptions options;
    std::string error;
    switch (plotvane::ParseOptions(argc, argv, options, error))
    {
    case plotvane::ParseResult::Help:
        std::fputs(plotvane::UsageText().c_str(), stdout);
        return 0;
    case plotvane::ParseResult::Error:
        std::fprintf(stderr, "%s: %s\nTry '%s --help'.\n", kProgram, error.c_str(), kProgram);
        return 2;
    case plotvane::ParseResult::Run:
        break;
    }
    try
    {
        if (const plotvane::OverlayDemo* demo = plotvane::FindOverlayDemo(options.demo))
        {
            plotvane::SetAppName(kProgram);
            return plotvane::RunOverlayDemo(*demo, EyeLook(options));
        }
        return plotvane::IsEyeMode(options) ? RunEye(options) : Run(options);
    }
    catch (const std::bad_alloc&)
    {
        return Fail("out of memory");
    }
    catch (const std::exception& e)
    {
        // Reading, loading and drawing failures carry a message for the user.
        return Fail(e.what());
    }
}
