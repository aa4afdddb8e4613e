#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/foundation/Exceptions.h>
#include <plotvane/view/GLChartView.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <cmath>
#include <cstring>
#include <string>
#include <initializer_list>
#include <utility>
#include <vector>

namespace
{
struct InputDataStore : ::testing::Test
{
    void SetUp() override
    {
        CPlotvane_InputData::SetViewScaleX(100.0);
        CPlotvane_InputData::SetViewScaleY(100.0);
        m.m_nMagnitudeScale = 0;
    }
    // Adds a drawn set with these points and answers its index.
    int AddSet(std::initializer_list<std::pair<double, double>> pts)
    {
        const int i = d.AddNewDataSet();
        d.SetCurrentEditSet(i);
        for (auto [x, y] : pts)
            d.AddData(x, y);
        d.AddDrawDataSetIndex(i);
        return i;
    }
    // Fits a chart of one drawn set with these points.
    void Fit(std::initializer_list<std::pair<double, double>> pts)
    {
        m.RemoveAllData();
        m.m_bViewScaleChanged = 0;
        AddSet(pts);
        d.FindMaxAndMin();
    }
    const CRectF& View() const { return m.m_ChartDlg.GetGLChartView()->m_rcViewArea; }
    // The view rectangle as x, y (top), width, height.
    std::array<float, 4> ViewXYWH() const
    {
        return {View().x, View().y, View().width, View().height};
    }
    // The store's extents as min X, min Y, max X, max Y.
    std::array<double, 4> Extents() const { return {d.m_dMinX, d.m_dMinY, d.m_dMaxX, d.m_dMaxY}; }

    CPlotvane_Manager m;
    CPlotvane_InputData& d = m.m_InputData;
};
} // namespace

TEST_F(InputDataStore, ViewScaleFollowsTheDecadeOfTheRange)
{
    Fit({{0.0, 0.0}, {1e-9, 1e-9}});
    EXPECT_EQ(CPlotvane_InputData::m_dViewScaleX, 1e8); // dec(1e-7) = -6
    EXPECT_DOUBLE_EQ(d.m_dMaxX, 0.1);
    EXPECT_EQ(m.m_bViewScaleChanged, 1);
    Fit({{0.0, 0.0}, {5.0, 5.0}}); // dec(500) = 3: the scale stays
    EXPECT_EQ(CPlotvane_InputData::m_dViewScaleX, 100.0);
    EXPECT_EQ(m.m_bViewScaleChanged, 0);
    Fit({{0.0, 0.0}, {1e7, 5.0}}); // dec(1e9) = 10
    EXPECT_EQ(CPlotvane_InputData::m_dViewScaleX, 1e8);
    EXPECT_EQ(CPlotvane_InputData::m_dViewScaleY, 100.0);
    // A zero range keeps 100 but still counts as a change.
    Fit({{2.0, 30.0}, {2.0, 40.0}});
    EXPECT_EQ(CPlotvane_InputData::m_dViewScaleX, 100.0);
    EXPECT_EQ(m.m_bViewScaleChanged, 1);
}

TEST_F(InputDataStore, LogFormTakesDecadesAndLiftsAZeroFrequency)
{
    AddSet({{0.0, 1.0}, {10.0, 2.0}, {1e7, 3.0}});
    d.FindMaxAndMin_Log();
    // Smallest X 1.0, so the range is 9999999: dec 7 without the factor 100.
    EXPECT_EQ(CPlotvane_InputData::m_dViewScaleX, 1e5);
    EXPECT_EQ(d.m_dMinX, 0.0);
    EXPECT_EQ(d.m_dMaxX, 7.0);
    EXPECT_DOUBLE_EQ(d.m_dMaxY, 300.0);
    // Undrawn sets never count on the log form.
    d.RemoveAllDrawDataSetIndex();
    AddSet({{100.0, 1.0}, {1000.0, 2.0}});
    d.m_bIncludeUndrawnSets = 1;
    d.FindMaxAndMin_Log();
    EXPECT_EQ(d.m_dMinX, 2.0);
    EXPECT_EQ(d.m_dMaxX, 3.0);
}

TEST_F(InputDataStore, FittedRectangleMargins)
{
    AddSet({{0.0, 0.0}, {10.0, 10.0}});
    d.m_bFitMarginTight = 0;
    d.FindMaxAndMin();
    EXPECT_EQ(ViewXYWH(), (std::array<float, 4>{-200, 1200, 1400, 1400}));

    // Tight: 15 % above and below, then a left margin that grows with the
    // left edge itself (x = 0 + 100): width + 100 + 50, moved by -125 and
    // -65.
    d.m_bFitMarginTight = 1;
    d.FindMaxAndMin();
    EXPECT_EQ(ViewXYWH(), (std::array<float, 4>{-125, 1085, 1150, 1300}));

    // A single point opens to 2 by 2: the top is raised by 1, and the left
    // edge too.
    d.m_bFitMarginTight = 0;
    Fit({{2.0, 3.0}});
    EXPECT_FLOAT_EQ(View().x, 200.6f);
    EXPECT_FLOAT_EQ(View().y, 301.4f);
    EXPECT_FLOAT_EQ(View().width, 2.8f);
    EXPECT_FLOAT_EQ(View().height, 2.8f);
}

TEST_F(InputDataStore, RangeModes)
{
    AddSet({{1.0, 2.0}, {3.0, 6.0}});
    CPlotvane_Attribute& a = m.m_Attribute;
    a.m_nRangeMode = 1;
    d.GetMaxAndMin();
    EXPECT_EQ(Extents(), (std::array<double, 4>{0, 0, 300, 600}));
    const CRectF fitted = View();

    a.m_nRangeMode = 2;
    a.m_XAxis.SetStartPoint(5.0);
    a.m_XAxis.SetEndPoint(5.0);
    a.m_YAxis.SetStartPoint(4.0);
    a.m_YAxis.SetEndPoint(-1.0);
    d.GetMaxAndMin();
    EXPECT_EQ(a.m_XAxis.GetEndPoint(), 15.0);
    EXPECT_EQ(a.m_YAxis.GetStartPoint(), -1.0);
    EXPECT_EQ(a.m_YAxis.GetEndPoint(), 4.0);
    EXPECT_EQ(Extents(), (std::array<double, 4>{500, -100, 1500, 400}));
    EXPECT_EQ(View(), fitted);

    a.m_nRangeMode = 3;
    d.GetMaxAndMin();
    EXPECT_EQ(d.m_dMaxX, 1500.0);
}

TEST_F(InputDataStore, InterpolationBetweenAndAtSamples)
{
    const int s = AddSet({{0.0, 0.0}, {1.0, 10.0}, {2.0, 0.0}});
    double y = -1.0;
    EXPECT_EQ(d.GetYInterpolationValue(s, 50.0, y), 1);
    EXPECT_DOUBLE_EQ(y, 500.0);
    EXPECT_EQ(d.GetYInterpolationValue(s, 175.0, y), 1);
    EXPECT_DOUBLE_EQ(y, 250.0);
    // At a sample both neighbours are that sample: 0 / 0.
    EXPECT_EQ(d.GetYInterpolationValue(s, 100.0, y), 1);
    EXPECT_TRUE(std::isnan(y));
    y = -1.0;
    EXPECT_EQ(d.GetYInterpolationValue(s, 201.0, y), 0);
    EXPECT_EQ(d.GetYInterpolationValue(7, 50.0, y), 0);
    EXPECT_EQ(y, -1.0);

    CArrayD xs;
    EXPECT_EQ(d.GetXInterpolationValue(s, 500.0, xs), 1);
    EXPECT_EQ(std::vector<double>(xs.begin(), xs.end()), (std::vector<double>{50.0, 150.0}));
    xs.RemoveAll();
    EXPECT_EQ(d.GetXInterpolationValue(s, 1000.0, xs), 1); // ends on the peak
    EXPECT_EQ(xs.GetSize(), 0);
    EXPECT_EQ(d.GetXInterpolationValue(s, 1001.0, xs), 0);

    double x = 7.0;
    y = 8.0;
    d.GetMaxXValueUnderSetValue(s, -1.0, x, y);
    EXPECT_EQ(x, 7.0);
    EXPECT_EQ(y, 8.0);
    d.GetMinXValueOverSetValue(s, 120.0, x, y);
    EXPECT_EQ(x, 2.0);

    // On a log X axis the position is a decade and X is raw data.
    m.m_nFrequencyScale = 1;
    const int f = AddSet({{10.0, 1.0}, {100.0, 3.0}});
    EXPECT_EQ(d.GetYInterpolationValue(f, std::log10(55.0), y), 1);
    EXPECT_DOUBLE_EQ(y, 200.0);
    xs.RemoveAll();
    EXPECT_EQ(d.GetXInterpolationValue(f, 200.0, xs), 1);
    ASSERT_EQ(xs.GetSize(), 1);
    EXPECT_DOUBLE_EQ(xs[0], 55.0);
}

TEST_F(InputDataStore, IsEnableDrawSkipsTheSetThatMovesUp)
{
    AddSet({{0.0, 0.0}});
    AddSet({{1.0, 1.0}});
    AddSet({{0.0, 0.0}, {1.0, 1.0}, {2.0, 2.0}});
    EXPECT_EQ(d.IsEnableDraw(), 1);
    ASSERT_EQ(d.GetDataSetSize(), 2u);
    EXPECT_EQ(d.GetDataSize(0), 1); // moved into place 0 after it was walked
    CArrayN drawn;
    d.GetDrawlDataSetIndexArray(drawn);
    EXPECT_EQ(std::vector<int>(drawn.begin(), drawn.end()), (std::vector<int>{1, 2}));
    EXPECT_EQ(d.IsEnableDraw(), 1);
    EXPECT_EQ(d.GetDataSetSize(), 1u);

    CPlotvane_Manager empty;
    empty.m_InputData.AddNewDataSet(1);
    EXPECT_EQ(empty.m_InputData.IsEnableDraw(), 0);
}

TEST_F(InputDataStore, AddDataClampsTinyValuesAndDropsZerosOnMagnitudeAxis)
{
    d.SetCurrentEditSet(d.AddNewDataSet());
    d.AddData(1e-20, 5.0);
    d.AddData(3.0, 1e-20);
    ASSERT_EQ(d.GetDataSize(0), 2);
    EXPECT_EQ(d.GetDataX(0), 0.0);
    EXPECT_EQ(d.GetDataY(1), 0.0);
    EXPECT_EQ(m.m_Attribute.m_XAxis.m_nMinExponent, -19);
    EXPECT_EQ(m.m_Attribute.m_YAxis.m_nMinExponent, -19);
    EXPECT_EQ(d.GetDataX(5), 0.0);

    m.m_nMagnitudeScale = 1; // with m_bUseMagnitude, a log Y axis
    d.AddData(1.0, 0.0);
    d.AddData(1.0, 1e-20);
    EXPECT_EQ(d.GetDataSize(0), 2);
    m.m_bUseMagnitude = 0;
    d.AddData(1.0, 0.0);
    EXPECT_EQ(d.GetDataSize(0), 3);

    // Inserting takes any value as it is, and only negative exponents count.
    m.m_Attribute.m_XAxis.m_nMinExponent = 0;
    m.m_Attribute.m_YAxis.m_nMinExponent = 5;
    d.InsertData(0, 1e-20, 0.0);
    d.InsertData(0, 0.5, 5.0);
    EXPECT_EQ(d.GetDataX(1), 1e-20);
    EXPECT_EQ(d.GetDataY(1), 0.0);
    EXPECT_EQ(d.GetDataSize(0), 5);
    EXPECT_EQ(m.m_Attribute.m_XAxis.m_nMinExponent, -19);
    EXPECT_EQ(m.m_Attribute.m_YAxis.m_nMinExponent, 5);
    d.AddData(0.5, 5.0); // dec 1: below 2 and below 5
    EXPECT_EQ(m.m_Attribute.m_YAxis.m_nMinExponent, 1);
}

TEST_F(InputDataStore, ArrayFormsOfAddDataNeedOneValuePerSet)
{
    d.AddNewDataSet(3);
    CArrayD ys;
    ys.Add(1.0);
    ys.Add(2.0);
    EXPECT_EQ(d.AddData(0.5, &ys), 0);
    EXPECT_EQ(d.GetDataSize(0), 0);
    ys.Add(3.0);
    EXPECT_EQ(d.AddData(0.5, &ys), 1);
    EXPECT_EQ(d.GetDataY(0), 3.0); // the edit set is left at the last set
    EXPECT_EQ(d.GetCurrentEditSet(), 2);
    EXPECT_EQ(d.GetDataSize(0), 1);
    EXPECT_EQ(d.AddData(&ys, &ys), 1);
    EXPECT_EQ(d.GetDataSize(1), 2);
}

TEST_F(InputDataStore, DeleteDataSetLeavesTheDrawSetStale)
{
    EXPECT_EQ(d.AddNewDataSet(3), 3u);
    d.DeleteDataSet(0);
    EXPECT_EQ(d.GetDataSetSize(), 2u);
    EXPECT_EQ(d.GetDrawDataSetCount(), 3);
    CArrayN drawn;
    d.GetDrawlDataSetIndexArray(drawn);
    EXPECT_EQ(drawn[2], 2);
    EXPECT_EQ(d.GetChartPointDArray(2), nullptr);
    EXPECT_THROW(d.DeleteDataSet(5), CInvalidArgException);
}

// The block form must leave the same points and axis exponents as one
// AddData per point, on the values where the two could part: the noise
// floor's edge, zeros of both signs, non-finite values, and both axis
// modes with a starting exponent above and below the block's.
TEST_F(InputDataStore, AddDataBlockMatchesAddDataPerPoint)
{
    const std::vector<double> xs = {0.5,    -0.0,  1e-19, 9.99999999995e-20, 9.9e-20, -3e-25,
                                    12345., 0.0,   2e-7,  INFINITY,          1.0,     NAN};
    const std::vector<double> ys = {1e-20, 0.0,   -2.5,  1e-19, 7e3, 0.0,
                                    -0.0,  4e-30, 1e-12, 3.0,   0.0, 1.0};
    // The points as bits (the sign of a zero and NaN must carry), then the
    // two axis exponents.
    auto add = [&](bool bBlock, int nMagnitude, int nStart)
    {
        CPlotvane_Manager p;
        p.m_bUseMagnitude = 1;
        p.m_nMagnitudeScale = nMagnitude;
        p.m_Attribute.m_XAxis.m_nMinExponent = nStart;
        p.m_Attribute.m_YAxis.m_nMinExponent = nStart;
        CPlotvane_InputData& data = p.m_InputData;
        data.SetCurrentEditSet(data.AddNewDataSet());
        if (bBlock)
            data.AddDataBlock(xs.data(), ys.data(), xs.size());
        for (size_t i = 0; !bBlock && i < xs.size(); ++i)
            data.AddData(xs[i], ys[i]);
        std::vector<std::uint64_t> bits;
        for (int i = 0; i < data.GetDataSize(0); ++i)
            for (double v : {data.GetDataX(i), data.GetDataY(i)})
            {
                bits.emplace_back();
                std::memcpy(&bits.back(), &v, sizeof v);
            }
        bits.push_back(std::uint64_t(p.m_Attribute.m_XAxis.m_nMinExponent));
        bits.push_back(std::uint64_t(p.m_Attribute.m_YAxis.m_nMinExponent));
        return bits;
    };
    for (int nMagnitude : {0, 1})
        for (int nStart : {5, -30})
            EXPECT_EQ(add(false, nMagnitude, nStart), add(true, nMagnitude, nStart))
                << "magnitude " << nMagnitude << ", start " << nStart;
}
