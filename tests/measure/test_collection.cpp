#include <plotvane/measure/ChartPointDArrayArray.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{
CChartPointDArray* AddWave(CChartPointDArrayArray& sets, const std::vector<double>& xs,
                           const std::vector<double>& ys = {})
{
    auto* p = new CChartPointDArray;
    for (size_t i = 0; i < xs.size(); ++i)
        p->Add(new CChartPointD(xs[i], i < ys.size() ? ys[i] : double(i)));
    sets.Add(p);
    return p;
}

std::vector<double> Xs(const CChartPointDArray* w)
{
    std::vector<double> v;
    for (const CChartPointD* p : *w)
        v.push_back(p->X);
    return v;
}

std::string ReadFile(const std::string& path)
{
    std::ifstream f(path, std::ios::binary);
    std::stringstream ss;
    ss << f.rdbuf();
    return ss.str();
}
} // namespace

TEST(Collection, ExtremesComeFromTheLastQualifyingWaveform)
{
    CChartPointDArrayArray sets;
    EXPECT_EQ(sets.GetMaxX(0), 0.0);
    CChartPointDArray* a = AddWave(sets, {0, 10}, {-5, 5});
    CChartPointDArray* b = AddWave(sets, {1, 5}, {0, 1});
    a->m_dPeriod = 3e-9;
    b->m_dPeriod = 1e-9;
    EXPECT_EQ(sets.GetMaxX(0), 5.0);
    EXPECT_EQ(sets.GetMaxPeriod(0), 3e-9);
    b->m_bVisible = 0;
    EXPECT_EQ(sets.GetMinY(1), -5.0);
    a->m_bVisible = 0;
    EXPECT_EQ(sets.GetMaxY(1), 0.0);
    EXPECT_EQ(sets.GetMaxPeriod(1), 0.0);
    // The first period is taken whatever its value, not compared with 0.
    a->m_dPeriod = -2.0;
    b->m_dPeriod = -3.0;
    EXPECT_EQ(sets.GetMaxPeriod(0), -2.0);
}

TEST(Collection, FindAndRoleQueriesLendWaveforms)
{
    CChartPointDArrayArray sets;
    const int types[] = {0, 0, 1, -1, 2};
    const int roles[] = {0, 2, 0, 2, 1};
    for (int i = 0; i < 5; ++i)
    {
        CChartPointDArray* p = AddWave(sets, {});
        p->m_nDataType = types[i];
        p->m_nPinRole = roles[i];
        p->m_strNetName = i < 2 ? "DQS" : "DQ";
    }
    EXPECT_EQ(sets.FindByNetName("DQ"), sets[2]);
    EXPECT_EQ(sets.FindByNetName("dq"), nullptr);

    CChartPointDArrayArray out;
    out.Add(sets[4]);
    sets.GetDQDriverDatas(&out);
    sets.GetDQReceiverDatas(&out); // -1 counts among the data signals
    sets.GetDQSDriverDatas(&out);
    sets.GetDQSReceiverDatas(&out);
    const std::vector<CChartPointDArray*> expected = {sets[4], sets[2], sets[3], sets[0], sets[1]};
    EXPECT_EQ(std::vector<CChartPointDArray*>(out.begin(), out.end()), expected);
    out.SetSize(0);
}

TEST(Collection, SelectRowsByIndexAndName)
{
    CChartPointDArrayArray sets;
    CChartPointDArray* a = AddWave(sets, {0, 1, 2, 3, 4, 5, 6});
    AddWave(sets, {0, 1}, {7, 8})->m_strName = "b";
    AddWave(sets, {9}, {9})->m_strName = "b";
    sets.AddSelectRowByIndex(0, 3);
    sets.AddSelectRowByIndex(0, 5); // replaces, despite the name
    CArrayD xs, ys;
    sets.GetSelectRowDataByIndex(0, &xs, &ys);
    ASSERT_EQ(xs.GetSize(), 1);
    EXPECT_EQ(xs[0], 5.0);

    sets.AddSelectRowByValue("b", 0);
    sets.GetSelectRowDataByValue("b", &xs, &ys);
    ASSERT_EQ(ys.GetSize(), 1); // the last waveform named "b" stands
    EXPECT_EQ(ys[0], 9.0);

    sets.SetSelectRowByIndex(1, 1);
    CNSet rows;
    a->GetSelectRow(&rows);
    EXPECT_EQ(rows.GetSize(), 0);
}

TEST(Collection, SaveToASCIIFileWritesPlainBlocks)
{
    const std::string path = ::testing::TempDir() + "ascii" + std::to_string(::getpid());
    std::FILE* f = std::fopen(path.c_str(), "w");
    std::fputs("old contents", f);
    std::fclose(f);
    CChartPointDArrayArray sets;
    sets.SaveToASCIIFile(path.c_str());
    EXPECT_EQ(ReadFile(path), "");

    AddWave(sets, {1.5, 0.001}, {-2.0, 3e-9});
    AddWave(sets, {});
    sets.SaveToASCIIFile(path.c_str());
    EXPECT_EQ(ReadFile(path), "1.500000e+00 -2.000000e+00 \n1.000000e-03 3.000000e-09 \n<1> \n"
                              "<2> \n");
    std::remove(path.c_str());
    sets.SaveToASCIIFile("/nonexistent-dir/plotvane/out.txt");
}

TEST(Collection, ShiftPeriodsJoinsPiecesAtThePeriodEnds)
{
    const double T = std::ldexp(1.0, -30); // about 1 ns, exact in quarters
    const std::vector<double> quarters = {0, 0.25 * T, 0.5 * T, 0.75 * T, T};
    CChartPointDArrayArray one;
    AddWave(one, quarters);
    one.ShiftChartDataOnXAxisToLeftSide(0.4 * T, T);
    ASSERT_EQ(one.GetSize(), 2);
    // New first period: the left piece moved to the end, closed at T with
    // the value joining Y 1 and 2; the old one starts at 0 with it.
    ASSERT_EQ(one[0]->GetSize(), 3);
    EXPECT_EQ(one[0]->GetPointX(2), T);
    EXPECT_NEAR(one[0]->GetPointY(2), 1.6, 1e-9);
    ASSERT_EQ(one[1]->GetSize(), 4);
    EXPECT_EQ(one[1]->GetPointX(0), 0.0);
    EXPECT_NEAR(one[1]->GetPointY(0), 1.6, 1e-9);

    // A sample exactly at the cut becomes X = 0 with no interpolated sample.
    CChartPointDArrayArray two;
    AddWave(two, quarters);
    AddWave(two, quarters);
    two.ShiftChartDataOnXAxisToLeftSide(0.5 * T, T);
    ASSERT_EQ(two.GetSize(), 3);
    EXPECT_EQ(Xs(two[0]), (std::vector<double>{0.5 * T, 0.75 * T, T}));
    EXPECT_EQ(Xs(two[1]), (std::vector<double>{0, 0.25 * T, 0.5 * T, 0.5 * T, 0.75 * T, T}));
    EXPECT_EQ(Xs(two[2]), (std::vector<double>{0, 0.25 * T, 0.5 * T}));
}
