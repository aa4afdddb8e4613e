#include "render/OverlayDemo.h"

#include "render/ChartInput.h"
#include "render/JsonReport.h"
#include "render/Measure.h"
#include "render/Render.h"
#include "render/demos/LevelDemos.h"
#include "render/demos/MarkDemos.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/platform/Backend.h>
#include <plotvane/view/GLChartView.h>

#include <memory>

namespace plotvane
{

namespace
{

void WriteTexts(JsonWriter& json, const std::vector<ChartText>& texts)
{
    json.Key("overlay_texts");
    json.BeginArray();
    for (const ChartText& t : texts)
    {
        if (t.layer == ChartTextLayer::Overlay)
            json.String(t.strText.str());
    }
    json.EndArray();
}

} // namespace

const std::vector<OverlayDemo>& OverlayDemos()
{
    // Each family adds its demos here, in the order of the overlay families.
    static const std::vector<OverlayDemo> demos = {
        {"eye-mask", "a DDR DQ eye with a hexagonal receiver mask on its centre",
         BuildEyeMaskDemo, ReportEyeMaskDemo},
        {"bathtub", "two lanes' bathtubs (RJ plus dual-Dirac DJ), widths at 1e-12 and 1e-6",
         BuildBathtubDemo, ReportBathtubDemo},
        {"overshoot", "a ringing RLC edge against a 400 mV overshoot limit", BuildOvershootDemo,
         ReportShootDemo},
        {"undershoot", "the same line ringing below ground after its falling edge",
         BuildUndershootDemo, ReportShootDemo},
        {"overshoot-area", "the largest excursion above VDD in V-ns, shaded",
         BuildOvershootAreaDemo, ReportShootDemo},
        {"vix-vid", "a differential clock with skew and common-mode offset: VIX",
         BuildVixDemo, ReportDifferentialDemo},
        {"vid", "the same clock: its differential swing VID", BuildVidDemo,
         ReportDifferentialDemo},
        {"target-z", "|Z| of two board power rails (VRM, bulk, MLCC, planes) against a stepped "
                     "and a polyline target, log axes",
         BuildTargetZDemo, ReportTargetZDemo},
        {"flight-time", "a matched driver into 1.1 ns of line and a 3 pF receiver: flight time",
         BuildFlightTimeDemo, ReportFlightTimeDemo},
        {"crosstalk", "a 150 ps edge on a coupled microstrip pair: NEXT and FEXT, FEXT peak marked",
         BuildCrosstalkDemo, ReportCrosstalkDemo},
        {"tdr", "TDR of a 50 Ohm line with a 65 Ohm neck-down section", BuildTdrDemo,
         ReportTdrDemo},
        {"dfe", "insertion loss of a 12 in FR-4 lane against the DFE budget at Nyquist",
         BuildDfeDemo, ReportDfeDemo},
    };
    return demos;
}

const OverlayDemo* FindOverlayDemo(const std::string& name)
{
    for (const OverlayDemo& d : OverlayDemos())
    {
        if (name == d.name)
            return &d;
    }
    return nullptr;
}

std::string OverlayDemoNames()
{
    std::string names;
    for (const OverlayDemo& d : OverlayDemos())
        names += (names.empty() ? "" : ", ") + std::string(d.name);
    return names;
}

std::vector<ChartText> TextsOf(const std::vector<ChartText>& texts, ChartTextLayer layer,
                               const char* prefix)
{
    std::vector<ChartText> r;
    for (const ChartText& t : texts)
    {
        if (t.layer == layer && (prefix == nullptr || t.strText.Find(prefix) == 0))
            r.push_back(t);
    }
    return r;
}

int RunOverlayDemo(const OverlayDemo& demo, const RenderOptions& given)
{
    // The overlays place their own texts about the plot; a legend could
    // land on them.
    RenderOptions options = given;
    options.bLegend = false;
    auto mgr = std::make_unique<CPlotvane_Manager>();
    CreateOffscreenChart(*mgr, options);
    // The new window put a placeholder set in the empty chart.
    mgr->RemoveAllData();
    demo.build(*mgr, options);

    std::vector<ChartText> texts;
    mgr->m_ChartDlg.GetGLChartView()->SetTextHook([&texts](const ChartText& t)
                                                  { texts.push_back(t); });
    DrawChartToPng(*mgr, options);
    mgr->m_ChartDlg.GetGLChartView()->SetTextHook({});
    const std::string chart =
        options.saveChart.empty() ? ChartPathBeside(options.output) : options.saveChart;
    SaveChartFile(*mgr, chart);

    JsonWriter json;
    json.BeginObject();
    json.Key("program");
    json.String(GetAppName().str());
    json.Key("mode");
    json.String("demo");
    json.Key("demo");
    json.String(demo.name);
    demo.report(*mgr, texts, json);
    WriteTexts(json, texts);
    WriteFilesMember(json, options.output, chart, options.reportFile);
    json.EndObject();
    EmitReport(json, options.reportFile);
    return 0;
}

} // namespace plotvane
