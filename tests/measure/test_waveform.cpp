#include <plotvane/measure/ChartPointDArray.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <utility>
#include <vector>

namespace
{
constexpr double kDblMax = 1.7976931348623157e308;
constexpr double kDblMinNormal = 2.2250738585072014e-308;

void Fill(CChartPointDArray& w, const std::vector<std::pair<double, double>>& pts)
{
    for (const auto& p : pts)
        w.Add(new CChartPointD(p.first, p.second));
}

std::vector<double> Xs(const CChartPointDArray& w)
{
    std::vector<double> xs;
    for (const CChartPointD* p : w)
        xs.push_back(p->X);
    return xs;
}

std::vector<int> Rows(const CChartPointDArray& w)
{
    return std::vector<int>(w.m_SelectRow.begin(), w.m_SelectRow.end());
}
} // namespace

TEST(Waveform, DefaultColourDrawsGreenBlueRedFromRand)
{
    std::srand(4711);
    int r[7];
    for (int& v : r)
        v = std::rand();
    std::srand(4711);
    CChartPointDArray a;
    EXPECT_EQ(COLORREF(a.m_Color), RGB(r[2] % 200 + 50, r[0] % 200 + 50, r[1] % 200 + 50));
    // The copy draws three more values, then takes the original's colour.
    CChartPointDArray b(a);
    EXPECT_EQ(COLORREF(b.m_Color), COLORREF(a.m_Color));
    EXPECT_EQ(std::rand(), r[6]);
}

TEST(Waveform, ExtremesAndTheirEmptySentinels)
{
    using Ext = std::array<double, 4>;
    auto extremes = [](const CChartPointDArray& w) {
        return Ext{w.GetMinX(), w.GetMaxX(), w.GetMinY(), w.GetMaxY()};
    };
    CChartPointDArray w;
    EXPECT_EQ(extremes(w), (Ext{kDblMinNormal, kDblMax, kDblMinNormal, kDblMax}));
    int n = 5;
    double y = 0.0;
    w.GetMaxpoint(n, y);
    EXPECT_EQ(n, -1);
    EXPECT_EQ(y, kDblMax);

    Fill(w, {{3, -1}, {-2, 4}, {7, 4}, {1, -5}});
    EXPECT_EQ(extremes(w), (Ext{-2, 7, -5, 4}));
    w.GetMaxpoint(n, y);
    EXPECT_EQ(n, 1); // the earliest of equal maxima
    EXPECT_EQ(y, 4.0);
}

TEST(Waveform, PulseTypesReadTwoSamplePairs)
{
    CChartPointDArray w;
    EXPECT_EQ(w.GetPulseDataType(1, 0), -1);
    Fill(w, {{0, 1}, {1, 1}, {2, 1}, {3, 1}, {4, 1}});
    EXPECT_EQ(w.GetPulseDataType(1, 0), -1);
    EXPECT_EQ(w.GetPulseDataType2(1, 0), -1);

    // Six points: pairs (0,1), (3,4), (4,5); threshold 0.5.
    CChartPointDArray fall;
    Fill(fall, {{0, 1}, {1, 1}, {2, 1}, {3, 0}, {4, 0}, {5, 0}});
    EXPECT_EQ(fall.GetPulseDataType(1, 0), 2);
    EXPECT_EQ(fall.GetPulseDataType2(1, 0), 0);

    // Seven points: n/2 = 3; a sample exactly on the threshold counts low.
    CChartPointDArray rise;
    Fill(rise, {{0, 0}, {1, 0.5}, {2, 0}, {3, 1}, {4, 1}, {5, 0.5}, {6, 1}});
    EXPECT_EQ(rise.GetPulseDataType(1, 0), 1);
    EXPECT_EQ(rise.GetPulseDataType2(1, 0), 2);
    EXPECT_EQ(rise.GetPulseDataType2(0.8, 0.0), 3); // threshold 0.4
}

TEST(Waveform, XValueExistenceAnswersTheLastIndexWithinAThousandth)
{
    CChartPointDArray w;
    EXPECT_EQ(w.IsXValueExistence(0.0), -1);
    Fill(w, {{1.0, 0}, {2.0, 0}, {2.0009, 0}, {2.0011, 0}, {5, 0}});
    EXPECT_EQ(w.IsXValueExistence(2.0), 2);
    EXPECT_EQ(w.IsXValueExistence(1.0), 0);
    EXPECT_EQ(w.IsXValueExistence(3.0), -1);

    // In seconds every sample near 0 passes: the last one wins.
    CChartPointDArray s;
    Fill(s, {{0.0, 0}, {1e-9, 0}, {2e-9, 0}});
    EXPECT_EQ(s.IsXValueExistence(0.0), 2);
}

TEST(Waveform, ModifyAndRemoveAtSelectRowRaiseOnBadIndex)
{
    CChartPointDArray w;
    Fill(w, {{1, NAN}, {2, 2}});
    EXPECT_EQ(w.IsExistZeroValueY(), 0); // NaN is not 0
    w.Modify(0, 9, -0.0);
    EXPECT_EQ(w.IsExistZeroValueY(), 1);
    EXPECT_THROW(w.Modify(2, 0, 0), CInvalidArgException);
    EXPECT_THROW(w.Modify(-1, 0, 0), CInvalidArgException);
    EXPECT_EQ(Xs(w), (std::vector<double>{9, 2}));

    w.SetSelectRow(1);
    EXPECT_THROW(w.RemoveAtSelectRow(1), CInvalidArgException);
    w.RemoveAtSelectRow(0); // a position in the set, not the row number 1
    EXPECT_TRUE(Rows(w).empty());
}

TEST(Waveform, RemoveLowerDataKeepsTheLastPointAndInterpolatesAtTheBoundary)
{
    CChartPointDArray w, u, v, left;
    Fill(w, {{0, 0}, {1, 0}});
    w.RemoveLowerDataByValueX(5);
    EXPECT_EQ(Xs(w), (std::vector<double>{1}));
    Fill(u, {{3, 0}, {0, 0}, {4, 0}, {1, 0}, {2, 0}, {0.5, 0}});
    u.RemoveLowerDataByValueX(2);
    EXPECT_EQ(Xs(u), (std::vector<double>{3, 4, 2, 0.5}));

    Fill(v, {{0, 0}, {1, 10}, {3, 30}, {5, 0}});
    v.RemoveLowerDataByValueXAndReplaceWithIntegratedData(2);
    EXPECT_EQ(Xs(v), (std::vector<double>{2, 3, 5}));
    EXPECT_EQ(v.GetPointY(0), 20.0);
    Fill(left, {{0, 0}, {1, 1}, {2, 2}});
    left.RemoveLowerDataByValueXAndReplaceWithIntegratedData(9);
    EXPECT_EQ(Xs(left), (std::vector<double>{2}));
}

TEST(Waveform, SortByXKeepsEarlierContentsInTheSort)
{
    CChartPointDArray w;
    Fill(w, {{3, 30}, {1, 10}, {2, 20}});
    CArrayD xs, ys;
    xs.Add(2.5);
    ys.Add(25);
    w.GetSortByXValueArray(xs, ys);
    w.GetSortByXValueArray(xs, ys);
    const std::vector<double> sortedX(xs.begin(), xs.end());
    const std::vector<double> sortedY(ys.begin(), ys.end());
    EXPECT_EQ(sortedX, (std::vector<double>{1, 1, 2, 2, 2.5, 3, 3}));
    EXPECT_EQ(sortedY, (std::vector<double>{10, 10, 20, 20, 25, 30, 30}));
}

TEST(Waveform, RefNameIsThePartBeforeTheFirstUnderscore)
{
    CChartPointDArray w;
    w.m_strName = "DQS0";
    EXPECT_EQ(w.GetRefNameFromNodeName(), CString(""));
    w.m_strName = "U1_DQ3_P";
    EXPECT_EQ(w.GetRefNameFromNodeName(), CString("U1"));
}

TEST(Waveform, SelectRowsByValue)
{
    CChartPointDArray w;
    Fill(w, {{0, 5}, {1, 6}, {2, 5}, {4, 7}, {4, 8}, {5, 5}, {6, 6}, {4, 9}});
    w.AddSelectRow(8);
    w.AddSelectRow(-1);
    EXPECT_TRUE(Rows(w).empty());

    w.SetSelectRowByValueX(4); // rows 3, 4 and 7: the last stays
    EXPECT_EQ(Rows(w), (std::vector<int>{7}));
    w.SetSelectRowByValueX(99);
    EXPECT_EQ(Rows(w), (std::vector<int>{7}));
    w.SetSelectRowByValue(1, 5);
    EXPECT_EQ(Rows(w), (std::vector<int>{7}));

    w.AddSelectRowByValueY(5);
    w.AddSelectRowByValue(4, 8);
    w.AddSelectRow(0); // already there
    EXPECT_EQ(Rows(w), (std::vector<int>{7, 0, 2, 5, 4}));
    CArrayD xs, ys;
    xs.Add(-1);
    w.GetSelectRowData(&xs, &ys);
    EXPECT_EQ(std::vector<double>(xs.begin(), xs.end()), (std::vector<double>{4, 0, 2, 5, 4}));
    EXPECT_EQ(std::vector<double>(ys.begin(), ys.end()), (std::vector<double>{9, 5, 5, 5, 8}));

    w.SetSelectRow(-1);
    EXPECT_TRUE(Rows(w).empty());
    w.SetSelectRowByValueY(6);
    EXPECT_EQ(Rows(w), (std::vector<int>{6}));
}
