#include "render/OverlayDemo.h"

#include "render/ChartInput.h"
#include "render/JsonReport.h"
#include "render/Measure.h"
#include "render/Render.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/platform/Backend.h>
#include <plotvane/view/GLChartView.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>

namespace plotvane
{

namespace
{

std::string AbsolutePath(const std::string& path)
{
    std::error_code ec;
    const std::filesystem::path p = std::filesystem::absolute(path, ec);
    return ec ? path : p.lexically_normal().string();
}

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
    static const std::vector<OverlayDemo> demos = {};
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

int RunOverlayDemo(const OverlayDemo& demo, const RenderOptions& options)
{
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
    json.Key("files");
    json.BeginObject();
    json.Key("png");
    json.String(AbsolutePath(options.output));
    json.Key("chart");
    json.String(AbsolutePath(chart));
    json.Key("report");
    if (options.reportFile.empty())
        json.Null();
    else
        json.String(AbsolutePath(options.reportFile));
    json.EndObject();
    json.EndObject();

    if (!options.reportFile.empty())
    {
        std::ofstream file(options.reportFile, std::ios::binary);
        file << json.Text();
        if (!file.flush())
            throw ChartInputError("cannot write report '" + options.reportFile + "'");
    }
    std::fputs(json.Text().c_str(), stdout);
    return 0;
}

} // namespace plotvane
