// Runs plotvane-render's DDR eye demos and checks the report against the
// chart it saved and the hand measurement; the report's JSON writer.
#include "apps/program_run.h"
#include "render/ChartInput.h"
#include "render/JsonReport.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace
{
using plotvane_test::JsonNumber;
using plotvane_test::JsonString;
using plotvane_test::Result;
using plotvane_test::Slurp;

// The writer ends its text with a newline only once the outer value has
// closed, and a non-finite number must have become null.
bool IsWholeReport(const std::string& json)
{
    return json.size() > 2 && json.front() == '{' && json.compare(json.size() - 2, 2, "}\n") == 0 &&
           json.find("nan") == std::string::npos && json.find("inf") == std::string::npos;
}

using DemoProgram = plotvane_test::RenderProgramTest;

// The DQ set (data type above 1) of a saved chart.
CChartPointDArray* LoadedDQ(CPlotvane_Manager& mgr, const std::string& path)
{
    plotvane::LoadChartFile(mgr, path);
    for (unsigned long long i = 0; i < mgr.m_InputData.GetDataSetSize(); ++i)
    {
        CChartPointDArray* set = mgr.m_InputData.GetChartPointDArray(int(i));
        if (set->m_nDataType >= 2)
            return set;
    }
    return nullptr;
}

} // namespace

TEST(JsonWriter, EscapesNestsAndDropsNonFinite)
{
    plotvane::JsonWriter json;
    json.BeginObject();
    json.Key("a\"b");
    json.String("x\\y\n\x01");
    json.Key("list");
    json.BeginArray();
    json.Number(0.1);
    json.Number(NAN);
    json.Number(-INFINITY);
    json.Bool(true);
    json.EndArray();
    json.Key("empty");
    json.BeginObject();
    json.EndObject();
    json.EndObject();
    EXPECT_EQ(json.Text(), "{\n  \"a\\\"b\": \"x\\\\y\\n\\u0001\",\n  \"list\": [\n    0.1,\n"
                           "    null,\n    null,\n    true\n  ],\n  \"empty\": {}\n}\n");
    EXPECT_EQ(plotvane::RoundTo(-0.0004, 3), 0.0);
    EXPECT_EQ(plotvane::RoundTo(204.51249, 3), 204.512);
}

TEST_F(DemoProgram, WriteDemoMarginsAgreeEverywhere)
{
    const Result r = Run("--demo ddr-write --report report.json");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(Written("plotvane-ddr-write.png"));
    EXPECT_TRUE(Written("plotvane-ddr-write.pvc"));
    EXPECT_TRUE(IsWholeReport(r.out)) << r.out;
    EXPECT_EQ(Slurp(Path("report.json")), r.out);
    EXPECT_EQ(JsonString(r.out, "png"), Path("plotvane-ddr-write.png"));
    EXPECT_EQ(JsonString(r.out, "cycle"), "write");
    EXPECT_DOUBLE_EQ(JsonNumber(r.out, "vref_mv"), 600.0);
    // The required window spans setup and hold time and the strobe's jitter.
    EXPECT_NEAR(JsonNumber(r.out, "window_ps"), 200.0 + JsonNumber(r.out, "strobe_spread_ps"),
                2e-3);
    EXPECT_NEAR(JsonNumber(r.out, "strobe_spread_ps"), JsonNumber(r.out, "strobe_edge_spread_ps"),
                0.5);

    const double dSetup = JsonNumber(r.out, "setup_margin_ps");
    const double dHold = JsonNumber(r.out, "hold_margin_ps");
    const double dOverlaySetup = JsonNumber(r.out, "overlay_setup_margin_ps");
    const double dOverlayHold = JsonNumber(r.out, "overlay_hold_margin_ps");
    // A healthy write eye: both sides pass by a good part of the bit.
    EXPECT_GT(dSetup, 50.0);
    EXPECT_GT(dHold, 50.0);
    EXPECT_NEAR(dSetup, JsonNumber(r.out, "hand_setup_margin_ps"), 3.0);
    EXPECT_NEAR(dHold, JsonNumber(r.out, "hand_hold_margin_ps"), 3.0);
    // The overlay shows whole ps of the same construction.
    EXPECT_NEAR(dOverlaySetup, dSetup, 1.0);
    EXPECT_NEAR(dOverlayHold, dHold, 1.0);

    // The saved chart holds what the frame displayed.
    CPlotvane_Manager mgr;
    const CChartPointDArray* dq = LoadedDQ(mgr, Path("plotvane-ddr-write.pvc"));
    ASSERT_NE(dq, nullptr);
    EXPECT_EQ(dq->m_dSetupMargin, dOverlaySetup);
    EXPECT_EQ(dq->m_dHoldMargin, dOverlayHold);
    EXPECT_EQ(dq->m_dEyeSetupTime, 100.0);
    EXPECT_EQ(mgr.m_InputData.GetDrawDataSetCount(), 3);
}

TEST_F(DemoProgram, ReadDemoGivesTqhAndTdqsq)
{
    const Result r = Run("--demo ddr-read -o read.png --save-chart read.chart");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(Written("read.png"));
    EXPECT_TRUE(Written("read.chart"));
    EXPECT_TRUE(IsWholeReport(r.out)) << r.out;
    EXPECT_EQ(JsonString(r.out, "cycle"), "read");
    const double dTQH = JsonNumber(r.out, "tqh_ps");
    const double dTDQSQ = JsonNumber(r.out, "tdqsq_ps");
    EXPECT_GT(dTQH, 0.0);
    EXPECT_GT(dTDQSQ, 0.0);
    EXPECT_NEAR(dTQH, JsonNumber(r.out, "hand_tqh_ps"), 10.0);
    EXPECT_NEAR(dTDQSQ, JsonNumber(r.out, "hand_tdqsq_ps"), 10.0);
    // The overlay names the two distances the other way round.
    EXPECT_NEAR(JsonNumber(r.out, "overlay_tqh_ps"), dTDQSQ, 1.0);
    EXPECT_NEAR(JsonNumber(r.out, "overlay_tdqsq_ps"), dTQH, 1.0);
    EXPECT_GT(dTDQSQ, dTQH);
}
