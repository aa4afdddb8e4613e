#include <plotvane/measure/ChartPointDArrayArray.h>
#include <plotvane/measure/EyeRotation.h>

#include <gtest/gtest.h>

#include <cfloat>
#include <vector>

namespace
{
constexpr double ns = 1e-9;

// Y is the sample's index within the call.
void AddPoints(CChartPointDArray& w, const std::vector<double>& xs, double dScale = 1.0)
{
    for (size_t i = 0; i < xs.size(); ++i)
        w.Add(new CChartPointD(xs[i] * dScale, double(i)));
}

void AddRun(CChartPointDArray& w, int nPoints)
{
    for (int i = 0; i < nPoints; ++i)
        w.Add(new CChartPointD(i, i));
}

std::vector<INT_PTR> Sizes(const CChartPointDArrayArray& a)
{
    std::vector<INT_PTR> v;
    for (const CChartPointDArray* p : a)
        v.push_back(p->GetSize());
    return v;
}

// Owned periods of three points, from firstX to 0.5 ns and 1 ns.
void AddPeriods(CChartPointDArrayArray& a, const std::vector<double>& firstX)
{
    for (double x0 : firstX)
    {
        auto* p = new CChartPointDArray;
        AddPoints(*p, {x0, 0.5 * ns, ns});
        a.Add(p);
    }
}

// Three periods of 1 ns sampled every quarter.
CChartPointDArray* AddThreePeriodEye(CChartPointDArrayArray& sets)
{
    auto* p = new CChartPointDArray;
    for (int k = 0; k < 3; ++k)
        AddPoints(*p, {0.0, 0.25, 0.5, 0.75, 1.0}, ns);
    sets.Add(p);
    return p;
}
} // namespace

TEST(EyeFolding, ExtractLinesSplitsWhereXStopsRising)
{
    CChartPointDArray eye;
    for (int nRun : {10, 10, 10, 3, 10})
        AddRun(eye, nRun);
    CChartPointDArrayArray lines;
    eye.ExtractEyeLinePointArray(&lines);
    // The short run is gone, and so is the last sample.
    EXPECT_EQ(Sizes(lines), (std::vector<INT_PTR>{10, 10, 10, 9}));
    EXPECT_EQ(lines[1]->GetAt(0), eye[10]); // borrowed, not copied
    lines.DataRemoveAll();

    // Equal X ends a line; the emptied lines left in pLines are weeded out.
    CChartPointDArray flat;
    AddPoints(flat, {0, 1, 2, 3, 4, 4, 5, 6, 7, 8, 9});
    flat.ExtractEyeLinePointArray(&lines);
    EXPECT_EQ(Sizes(lines), (std::vector<INT_PTR>{5, 5}));
    lines.DataRemoveAll();
    CChartPointDArray().ExtractEyeLinePointArray(&lines);
    EXPECT_EQ(lines.GetSize(), 0);
}

TEST(EyeFolding, PeriodsBreakOnReturnFromTheFarHalf)
{
    CChartPointDArray eye;
    AddPoints(eye, {0.8, 1.0, 0.0, 0.3, 0.9, 0.85, 1.0, 0.0, 0.5});
    CChartPointDArrayArray periods;
    eye.CollectWaveDataPerPeriod(&periods);
    // 0.9 -> 0.85 stays in one period; 0.5 lies as near the end as the start.
    EXPECT_EQ(Sizes(periods), (std::vector<INT_PTR>{2, 5, 2}));
    EXPECT_EQ(periods[1]->GetAt(0), eye[2]);
    periods.DataRemoveAll();
}

TEST(EyeFolding, SerializeKeepsPeriodsByRunningCount)
{
    // Each case: first X of each period, points appended, X of the first.
    struct Case
    {
        std::vector<double> firstX;
        INT_PTR nOut;
        double dFirstOut;
    };
    const Case cases[] = {
        {{0.0, 0.0, 0.0}, 6, 0.0},                               // c = 3: first dropped, then c = 2
        {{0.3 * ns, 0.2 * ns}, 6, 0.3 * ns},                     // two: both, whole or not
        {{0.0, 0.5e-13, 0.0, 0.0, 0.0}, 9, 0.5e-13},             // within tolerance: whole
        {{0.0, 2e-13, 0.0, 0.0, 0.0}, 6, 0.0},                   // beyond it: a fragment
        {{0.1 * ns, 0.0, 0.2 * ns, 0.3 * ns, 0.0}, 6, 0.3 * ns}, // count reaches 2 at a fragment
    };
    for (const Case& c : cases)
    {
        CChartPointDArrayArray periods;
        AddPeriods(periods, c.firstX);
        CChartPointDArray out;
        out.SerializeWaveDataFromEachPeriod(&periods, ns);
        ASSERT_EQ(out.GetSize(), c.nOut);
        EXPECT_EQ(out.GetPointX(0), c.dFirstOut);
        for (INT_PTR n : Sizes(periods))
            EXPECT_EQ(n, 0);
    }

    // A last period of one point goes, and c < 3 then spares the fragment in front.
    CChartPointDArrayArray tail;
    AddPeriods(tail, {0.2 * ns, 0.0, 0.0});
    tail[2]->DeleteAt(0, 2);
    CChartPointDArray out;
    out.SerializeWaveDataFromEachPeriod(&tail, ns);
    EXPECT_EQ(out.GetSize(), 6);
    EXPECT_EQ(tail.GetSize(), 2);
}

TEST(EyeFolding, ShiftEyeDataFoldsOncePastThePeriod)
{
    CChartPointDArray eye;
    eye.m_dPeriod = 1.0;
    AddPoints(eye, {0.2, 1.5, 2.6, -0.3, 1.0});
    eye.ShiftEyeData(0.0);
    EXPECT_DOUBLE_EQ(eye.GetPointX(1), 0.5);
    EXPECT_DOUBLE_EQ(eye.GetPointX(2), 1.6);
    EXPECT_EQ(eye.GetPointX(3), -0.3);
    EXPECT_EQ(eye.GetPointX(4), 1.0);
    eye.ShiftEyeData(0.5);
    EXPECT_DOUBLE_EQ(eye.GetPointX(4), 0.5);
}

TEST(EyeFolding, MinMaxCrossPointPairsRisingWithFalling)
{
    // Lines of 21 samples, 0.1 ns apart. A low-high-low line and its mirror
    // cross between samples at 0.35 ns and 1.35 ns; a late rising line, flat
    // at 0.45 V up to 0.5 ns, meets the mirror at 0.365 ns. The two rising
    // lines also meet (0.335 ns), but lines of one kind are never paired, and
    // the stay-low line joins no pair.
    auto ramp = [](int k)
    {
        if (k <= 2 || k >= 15)
            return 0.0;
        return k <= 5 ? (k - 2) / 3.0 : k <= 12 ? 1.0 : 1.0 - (k - 12) / 3.0;
    };
    CChartPointDArray eye;
    for (int line = 0; line < 4; ++line)
        for (int k = 0; k <= 20; ++k)
        {
            const double y[] = {ramp(k), 1.0 - ramp(k), 0.0, k <= 5 ? 0.45 : 1.0};
            eye.Add(new CChartPointD(k * 0.1 * ns, y[line]));
        }

    double mn1 = DBL_MAX, y1 = -1, mx1 = -DBL_MAX, y2 = -1;
    double mn2 = DBL_MAX, y3 = -1, mx2 = -DBL_MAX, y4 = -1;
    EXPECT_EQ(eye.GetMinMaxCrossPoint(0.5, 0.1, mn1, y1, mx1, y2, mn2, y3, mx2, y4), 1);
    EXPECT_NEAR(mn1, 0.35 * ns, 1e-15);
    EXPECT_NEAR(y1, 0.5, 1e-9);
    EXPECT_NEAR(mx1, 0.365 * ns, 1e-15);
    EXPECT_NEAR(y2, 0.45, 1e-9);
    EXPECT_NEAR(mn2, 1.35 * ns, 1e-15);
    EXPECT_NEAR(mx2, 1.35 * ns, 1e-15);

    // Seeds that already hold a wider extent are kept, and the answer is -1.
    mn1 = mn2 = 0.0;
    mx1 = mx2 = 2 * ns;
    y1 = 7.0;
    EXPECT_EQ(eye.GetMinMaxCrossPoint(0.5, 0.1, mn1, y1, mx1, y2, mn2, y3, mx2, y4), -1);
    EXPECT_EQ(mn1, 0.0);
    EXPECT_EQ(y1, 7.0);
}

TEST(EyeFolding, RotateStoredEyes)
{
    CChartPointDArrayArray sets;
    CChartPointDArray* pEye = AddThreePeriodEye(sets);
    pEye->m_strName = "DQ0";
    auto* pLine = new CChartPointDArray;
    AddPoints(*pLine, {0.3, 0.9}, ns);
    sets.Add(pLine);

    // A negative shift counts from mid-period: -0.1 ns turns by 0.4 ns.
    plotvane::ShiftEyeSetsToLeft(sets, -0.1 * ns, ns);
    // Rotated periods: a fragment in front, then 7, 7 and 4 points; the
    // fragment and the first whole period give way to the running count.
    ASSERT_EQ(pEye->GetSize(), 11);
    EXPECT_EQ(pEye->GetPointX(0), 0.0);
    EXPECT_NEAR(pEye->GetPointY(0), 1.6, 1e-9); // joined between Y 1 and 2
    EXPECT_EQ(pEye->GetPointX(6), ns);
    EXPECT_NEAR(pEye->GetPointX(8), 0.1 * ns, 1e-21);
    EXPECT_EQ(pEye->m_strName, "DQ0");
    EXPECT_EQ(pLine->GetPointX(0), 0.3 * ns); // two points: left alone

    // Fold mode 3 holds the eye twice, the second copy half a period on.
    CChartPointDArrayArray twice;
    CChartPointDArray* pTwice = AddThreePeriodEye(twice);
    pTwice->m_nFoldMode = 3;
    pTwice->m_dPeriod = ns;
    plotvane::ShiftEyeSetsToLeft(twice, -0.1 * ns, ns);
    ASSERT_EQ(pTwice->GetSize(), 22);
    for (INT_PTR i = 0; i < 11; ++i)
        EXPECT_EQ(*pTwice->GetAt(i), *pEye->GetAt(i));
    EXPECT_EQ(pTwice->GetPointX(11), 0.0);
    EXPECT_NEAR(pTwice->GetPointX(15), 0.5 * ns, 1e-21);
    EXPECT_EQ(pTwice->GetPointX(19), ns);
}
