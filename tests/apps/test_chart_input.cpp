#include "render/ChartInput.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>
#include <unistd.h>

using plotvane::ChartInputError;
using plotvane::CsvSeries;

namespace
{
std::string TempPath(const char* suffix)
{
    return "/tmp/plotvane_apps_" + std::to_string(getpid()) + suffix;
}

CsvSeries Series(const char* name, std::vector<double> x, std::vector<double> y)
{
    CsvSeries s;
    s.name = name;
    s.x = std::move(x);
    s.y = std::move(y);
    return s;
}

std::string CheckError(CPlotvane_Manager& m, std::vector<std::string>* pWarnings = nullptr)
{
    std::vector<std::string> warnings;
    try
    {
        std::vector<std::string>& out = pWarnings ? *pWarnings : warnings;
        plotvane::CheckChartData(m, [&out](const std::string& w) { out.push_back(w); });
    }
    catch (const ChartInputError& e)
    {
        return e.what();
    }
    return std::string();
}
} // namespace

TEST(ChartInput, SeriesBecomeDrawnSets)
{
    CPlotvane_Manager m;
    EXPECT_EQ(plotvane::AddSeriesToChart(m, Series("dq", {0, 1, 2}, {0, 1, 0}), 0x0000FF), 0);
    EXPECT_EQ(plotvane::AddSeriesToChart(m, Series("dqs", {0, 1}, {1, 0}), 0xCCCC00), 1);
    CChartPointDArray* dq = m.m_InputData.GetChartPointDArray(0);
    EXPECT_EQ(dq->m_strName, CString("dq"));
    EXPECT_EQ(COLORREF(dq->m_Color), 0x0000FFu);
    EXPECT_EQ(dq->GetSize(), 3);
    EXPECT_EQ(m.m_InputData.GetDrawDataSetCount(), 2);

    // Curve colours wrap after the preset's 20 curve entries.
    EXPECT_EQ(plotvane::CurveColor(20, false), plotvane::CurveColor(0, false));
    EXPECT_EQ(plotvane::CurveColor(22, true), plotvane::CurveColor(2, true));

    // A logarithmic Y axis set before the data drops the zeros.
    CPlotvane_Manager logm;
    plotvane::RenderOptions o;
    o.bLogY = true;
    o.bLogX = true;
    plotvane::ApplyScaleOptions(logm, o);
    EXPECT_EQ(logm.m_nFrequencyScale, 1);
    EXPECT_EQ(logm.m_nMagnitudeScale, 1);
    plotvane::AddSeriesToChart(logm, Series("z", {1, 10, 100}, {1, 0, 2}), 0);
    EXPECT_EQ(logm.m_InputData.GetChartPointDArray(0)->GetSize(), 2);
}

TEST(ChartInput, AxisTextAndChecks)
{
    CPlotvane_Manager m;
    plotvane::RenderOptions o;
    plotvane::ApplyAxisText(m, o, "time", "v");
    EXPECT_EQ(m.GetAxisXName(), CString("time"));
    EXPECT_EQ(m.GetAxisYName(), CString("v"));
    o.xName = "Time";
    o.yName = "";
    o.xUnit = "s";
    plotvane::ApplyAxisText(m, o, "time", "v");
    EXPECT_EQ(m.GetAxisXName(), CString("Time"));
    EXPECT_EQ(m.GetAxisYName(), CString(""));
    EXPECT_EQ(m.GetUnitNameX(), CString("s"));

    EXPECT_EQ(CheckError(m), "nothing to draw: no data set with at least two points");
    plotvane::AddSeriesToChart(m, Series("one", {0}, {1}), 0);
    std::vector<std::string> warnings;
    EXPECT_EQ(CheckError(m, &warnings), "nothing to draw: no data set with at least two points");
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0], "data set 'one' has 1 point and is not drawn");
    plotvane::AddSeriesToChart(m, Series("neg", {-1, 1}, {-1, 1}), 0);
    EXPECT_EQ(CheckError(m), "");
    m.m_nFrequencyScale = 1;
    EXPECT_EQ(CheckError(m), "data set 'neg' has X values at or below 0, which a logarithmic X "
                             "axis cannot show");
    m.m_nFrequencyScale = 0;
    m.m_nMagnitudeScale = 1;
    EXPECT_NE(CheckError(m).find("has Y values at or below 0"), std::string::npos);

    // A sweep may start at 0 Hz when its next point lies above 1 Hz; a zero
    // anywhere else is refused.
    CPlotvane_Manager sweep;
    sweep.m_nFrequencyScale = 1;
    plotvane::AddSeriesToChart(sweep, Series("z", {0, 10, 100}, {1, 2, 3}), 0);
    EXPECT_EQ(CheckError(sweep), "");
    plotvane::AddSeriesToChart(sweep, Series("z2", {0, 0.5, 100}, {1, 2, 3}), 0);
    EXPECT_NE(CheckError(sweep).find("'z2' has X values at or below 0"), std::string::npos);
}

TEST(ChartInput, ChartFilesRoundTrip)
{
    const std::string path = TempPath(".pvc");
    CPlotvane_Manager m;
    plotvane::AddSeriesToChart(m, Series("sine", {0, 1, 2, 3}, {0, 1, 0, -1}), 0x33FF33);
    m.SetAxisXName("Time");
    m.m_nFrequencyScale = 1;
    plotvane::SaveChartFile(m, path);
    // The load ends with the archive's read-only exception, which the loader
    // keeps quiet: the chart is all there.
    CPlotvane_Manager loaded;
    plotvane::LoadChartFile(loaded, path);
    EXPECT_TRUE(loaded == m);

    // A cut file is an error, not a half-loaded chart.
    ASSERT_EQ(truncate(path.c_str(), 100), 0);
    CPlotvane_Manager cut;
    EXPECT_THROW(plotvane::LoadChartFile(cut, path), ChartInputError);
    std::remove(path.c_str());
    EXPECT_THROW(plotvane::LoadChartFile(cut, path), ChartInputError);
    EXPECT_THROW(plotvane::SaveChartFile(cut, "/nonexistent/dir/c.pvc"), ChartInputError);
}

// Files go into the chart block by block; the sets come out as the whole
// series added one by one would make them.
TEST(ChartInput, CsvFilesMatchSeriesAddedWhole)
{
    const std::string pairs = TempPath("_pairs.csv");
    const std::string plain = TempPath("_plain.csv");
    {
        std::FILE* f = std::fopen(pairs.c_str(), "w");
        ASSERT_NE(f, nullptr);
        std::fputs("Time (s),dq,t,dqs\n", f);
        for (int i = 0; i < 40000; ++i)
        {
            if (i < 35000)
                std::fprintf(f, "%.6e,%g,%.6e,%g\n", i * 1e-12, (i % 9) * 0.1, i * 2e-12, -1e-20);
            else
                std::fprintf(f, "%.6e,%g,,\n", i * 1e-12, (i % 9) * 0.1);
        }
        std::fclose(f);
    }
    std::ofstream(plain) << "0 1\n1 0\n2 3\n";
    plotvane::RenderOptions o;
    o.bPairs = true;
    o.bLight = true;
    o.dataFiles = {pairs, plain};
    CPlotvane_Manager streamed;
    std::string headerX, headerY;
    EXPECT_EQ(plotvane::AddCsvFiles(streamed, o, headerX, headerY), 3);
    EXPECT_EQ(headerX, "Time (s)");
    EXPECT_EQ(headerY, "");

    CPlotvane_Manager whole;
    plotvane::CsvReadOptions ro;
    ro.bColumnPairs = true;
    for (const std::string& path : o.dataFiles)
    {
        for (const CsvSeries& s : plotvane::ReadCsvFile(path, ro).series)
        {
            const int n = int(whole.m_InputData.GetDataSetSize());
            plotvane::AddSeriesToChart(whole, s, plotvane::CurveColor(n, true));
        }
    }
    std::remove(pairs.c_str());
    std::remove(plain.c_str());
    ASSERT_EQ(streamed.m_InputData.GetDataSetSize(), 3u);
    EXPECT_EQ(streamed.m_InputData.GetChartPointDArray(0)->GetSize(), 40000);
    // Values below 1e-18 are stored as 0, as AddData does for any caller.
    EXPECT_EQ(streamed.m_InputData.GetChartPointDArray(1)->GetAt(34999)->Y, 0.0);
    EXPECT_EQ(streamed.m_InputData.GetChartPointDArray(2)->m_strName,
              CString(plotvane::FileStem(plain)));
    EXPECT_EQ(streamed.m_InputData.GetDrawDataSetCount(), 3);
    EXPECT_TRUE(streamed == whole);

    // A file that turns bad after its first blocks adds nothing.
    const std::string bad = TempPath("_bad.csv");
    {
        std::FILE* f = std::fopen(bad.c_str(), "w");
        ASSERT_NE(f, nullptr);
        for (int i = 0; i < 40000; ++i)
            std::fprintf(f, "%d,%g\n", i, i < 39999 ? 1e-25 : 0.0);
        std::fputs("x,1\n", f);
        std::fclose(f);
    }
    o.bPairs = false;
    o.dataFiles = {bad};
    const int nExponent = streamed.m_Attribute.m_YAxis.m_nMinExponent;
    EXPECT_THROW(plotvane::AddCsvFiles(streamed, o, headerX, headerY), plotvane::CsvError);
    std::remove(bad.c_str());
    EXPECT_EQ(streamed.m_InputData.GetDataSetSize(), 3u);
    EXPECT_EQ(streamed.m_Attribute.m_YAxis.m_nMinExponent, nExponent);
}

// A header "x,y" with no unit: the axis shows the prefix of its numbers
// alone, with no doubled brackets.
TEST(ChartInput, DataFilesNameTheirAxes)
{
    const std::string csv = TempPath("_xy.csv");
    std::ofstream(csv) << "x,y\n0,1\n2e-6,3\n";
    CPlotvane_Manager m;
    plotvane::RenderOptions o;
    o.dataFiles = {csv};
    const plotvane::DataAxes axes = plotvane::AddDataFiles(m, o, [](const std::string&) {});
    std::remove(csv.c_str());
    EXPECT_FALSE(axes.bImpedance);
    EXPECT_EQ(axes.x.name + "|" + axes.x.unit, "x|");
    plotvane::ApplyAxes(m, axes.x, axes.y);
    EXPECT_EQ(m.GetAxisXName(), CString("x (u)"));
    EXPECT_EQ(m.GetAxisYName(), CString("y"));
    // The chart shows the names as given, and the numbers in the unit.
    EXPECT_EQ(m.GetUnitNameX(), CString("0"));
    EXPECT_DOUBLE_EQ(m.GetXUnit(), 1e6);
}
