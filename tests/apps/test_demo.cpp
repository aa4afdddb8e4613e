// Runs plotvane-render's DDR eye modes and checks the report against the
// chart it saved, the waveform operations and the generator's edges.
#include "apps/program_run.h"
#include "render/ChartInput.h"
#include "render/JsonReport.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/measure/EyeGenerator.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/stat.h>

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

bool FileExists(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 && st.st_size > 0;
}

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

void WriteEyeCsv(const std::string& path, const CChartPointDArray& a)
{
    std::FILE* f = std::fopen(path.c_str(), "w");
    ASSERT_NE(f, nullptr);
    std::fprintf(f, "time,volts\n");
    for (INT_PTR i = 0; i < a.GetSize(); ++i)
        std::fprintf(f, "%.17g,%.17g\n", a.GetData()[i]->X, a.GetData()[i]->Y);
    std::fclose(f);
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
    const std::string png = Path("plotvane-ddr-write.png");
    const std::string chart = Path("plotvane-ddr-write.pvc");
    EXPECT_TRUE(FileExists(png));
    EXPECT_TRUE(FileExists(chart));
    EXPECT_TRUE(IsWholeReport(r.out)) << r.out;
    EXPECT_EQ(Slurp(Path("report.json")), r.out);
    EXPECT_EQ(JsonString(r.out, "png"), png);
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
    const CChartPointDArray* dq = LoadedDQ(mgr, chart);
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
    EXPECT_TRUE(FileExists(Path("read.png")));
    EXPECT_TRUE(FileExists(Path("read.chart")));
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

TEST_F(DemoProgram, MeasureReadsCsvEyesAndNamesWhatIsMissing)
{
    plotvane::DdrEyeParams p;
    p.nPeriods = 16;
    const plotvane::DdrEye eye = plotvane::GenerateDdrEye(p);
    WriteEyeCsv(Path("dq.csv"), *eye.pDQ);
    WriteEyeCsv(Path("dqs.csv"), *eye.pDQS);
    WriteEyeCsv(Path("dqs_bar.csv"), *eye.pDQSBar);
    const Result r = Run("--measure --dq dq.csv --dqs dqs.csv --dqs-bar dqs_bar.csv "
                         "--period 1.25e-9 --vref 0.6 --setup-ps 120 --hold-ps 80");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(FileExists(Path("plotvane-eye.png")));
    EXPECT_EQ(JsonString(r.out, "mode"), "measure");

    eye.pDQ->SetEyeInformation(0.6, 120, 80, 0.1, 0.1, 0);
    double dSetup = 0, dHold = 0, dSH = 0, dHH = 0, dVref = 0, dWindow = 0, dSpread = 0;
    eye.pDQ->CheckSetupHoldMargin(eye.pDQS.get(), eye.pDQSBar.get(), dSetup, dHold, dSH, dHH, dVref,
                                  dWindow, dSpread, 0.0, 0, 0);
    EXPECT_NEAR(JsonNumber(r.out, "setup_margin_ps"), dSetup * 1e12, 1e-3);
    EXPECT_NEAR(JsonNumber(r.out, "hold_margin_ps"), dHold * 1e12, 1e-3);
    EXPECT_NEAR(JsonNumber(r.out, "overlay_hold_margin_ps"), dHold * 1e12, 1.0);

    const Result noDq = Run("--measure --dqs dqs.csv --period 1.25e-9");
    EXPECT_EQ(noDq.status, 2);
    EXPECT_NE(noDq.err.find("--measure needs --dq FILE"), std::string::npos) << noDq.err;
    const Result noPeriod = Run("--measure --dq dq.csv --dqs dqs.csv");
    EXPECT_NE(noPeriod.err.find("--period SECONDS"), std::string::npos) << noPeriod.err;
    const Result missingFile = Run("--measure --dq none.csv --dqs dqs.csv --period 1e-9");
    EXPECT_EQ(missingFile.status, 1);
    EXPECT_NE(missingFile.err.find("none.csv"), std::string::npos) << missingFile.err;
}
