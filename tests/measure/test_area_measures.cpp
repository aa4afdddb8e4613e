#include <plotvane/measure/ChartPointDArray.h>

#include <gtest/gtest.h>

#include <utility>
#include <vector>

namespace
{

using Pts = std::vector<std::pair<double, double>>;

void Fill(CChartPointDArray& w, const Pts& pts)
{
    for (const auto& p : pts)
        w.Add(new CChartPointD(p.first, p.second));
}

Pts Outline(const CChartPointDArray& w)
{
    Pts out;
    for (CChartPointD* p : w)
        out.emplace_back(p->X, p->Y);
    return out;
}

constexpr double kLo = -1e9;
constexpr double kHi = 1e9;

// The largest area above (or below) dLevel at scales 1; dArea starts at -99
// so that a result left alone shows.
double Area(const Pts& pts, double dLevel, bool bBelow = false, double dXMin = kLo,
            double dXMax = kHi)
{
    CChartPointDArray w;
    Fill(w, pts);
    double dArea = -99.0;
    if (bBelow)
        w.GetMaxAreaBelowYValue(1.0, 1.0, dXMin, dXMax, dLevel, dArea);
    else
        w.GetMaxAreaAboveYValue(1.0, 1.0, dXMin, dXMax, dLevel, dArea);
    return dArea;
}

// The outline of the largest area above dLevel; the outline array holds a
// stale point beforehand, which must go.
Pts AreaOutline(const Pts& pts, double sx, double sy, double dLevel, double& dArea)
{
    CChartPointDArray w, outline;
    Fill(w, pts);
    outline.Add(new CChartPointD(9, 9));
    w.GetMaxAreaAboveYValueAndAllPointsInArea(sx, sy, kLo, kHi, dLevel, dArea, &outline);
    return Outline(outline);
}

// A triangle 0 -> 4 -> 0 over level 1 crosses at 0.25 and 1.75 with one
// interior sample; the stretch from it to the second crossing is not counted:
// (4 + 1) / 2 * 0.75 - 1.5 = 0.375.
const Pts kTriangle = {{0, 0}, {1, 4}, {2, 0}};

// Three interior samples at 2 over level 1, crossings at 0.5 and 3.5: the
// full integral above the level, 2.5.
const Pts kPlateau = {{0, 0}, {1, 2}, {2, 2}, {3, 2}, {4, 0}};
const Pts kPlateauOutline = {{0.5, 1}, {1, 2}, {2, 2}, {3, 2}, {3.5, 1}};

} // namespace

TEST(AreaMeasures, TrapezoidSumLessRectangle)
{
    double dArea = 0.0;
    EXPECT_EQ(AreaOutline(kPlateau, 2.0, 10.0, 1.0, dArea), kPlateauOutline);
    EXPECT_DOUBLE_EQ(dArea, 2.5 * 20.0);

    EXPECT_DOUBLE_EQ(Area(kTriangle, 1.0), 0.375);

    // Interior samples from two runs are sorted by X before summing.
    EXPECT_DOUBLE_EQ(Area({{0, 0}, {1, 2}, {1.5, 2}, {0.5, 2}, {1.25, 2}, {3, 0}}, 1.0), 1.0625);

    // No interior sample: area = -rect, reported only on a negative level.
    // The falling crossing (2) is found before the rising one (1).
    EXPECT_EQ(Area({{0, 2}, {4, 0}, {0, 0}, {2, 2}}, 1.0), 0.0);
    EXPECT_DOUBLE_EQ(Area({{0, 0}, {4, -2}, {0, -2}, {2, 0}}, -1.0), 1.0);
}

TEST(AreaMeasures, CrossingFilter)
{
    // A sample exactly on the level hides the rising crossing.
    EXPECT_EQ(Area({{0, 0}, {1, 1}, {2, 2}, {3, 0}}, 1.0), 0.0);
    // Starting above: the leading closer is removed.
    EXPECT_DOUBLE_EQ(Area({{-1, 4}, {0, 0}, {1, 4}, {2, 0}}, 1.0), 0.375);
    // Rising, falling, rising: the third crossing is dropped.
    EXPECT_DOUBLE_EQ(Area({{0, 0}, {1, 4}, {2, 0}, {3, 4}}, 1.0), 0.375);

    // Six regular crossings keep R F R R: the second pair runs from 2.25 to
    // 4.25 across a whole low stretch: 1.875 + 2 + 0.125 - 2.
    double dArea = 0.0;
    EXPECT_EQ(AreaOutline({{0, 0}, {1, 4}, {2, 0}, {3, 4}, {4, 0}, {5, 4}, {6, 0}}, 1, 1, 1, dArea),
              (Pts{{2.25, 1}, {3, 4}, {4, 0}, {4.25, 1}}));
    EXPECT_DOUBLE_EQ(dArea, 2.0);

    // Two equal pulses: the first one's outline stays.
    EXPECT_EQ(AreaOutline({{0, 0}, {1, 4}, {2, 0}, {3, 4}, {4, 0}}, 1, 1, 1, dArea),
              (Pts{{0.25, 1}, {1, 4}, {1.75, 1}}));
    EXPECT_DOUBLE_EQ(dArea, 0.375);
}

TEST(AreaMeasures, WindowAndEmptyResults)
{
    // A pair spanning the window is skipped like one beside it.
    EXPECT_EQ(Area(kTriangle, 1.0, false, 0.3, 0.7), 0.0);
    EXPECT_DOUBLE_EQ(Area(kTriangle, 1.0, false, 0.9, 1.1), 0.375);
    EXPECT_EQ(Area(kTriangle, 1.0, false, -1.0, 0.0), 0.0);

    // Empty array: dArea untouched, outline emptied all the same.
    double dArea = 7.0;
    EXPECT_TRUE(AreaOutline({}, 1.0, 1.0, 1.0, dArea).empty());
    EXPECT_EQ(dArea, 7.0);
}

TEST(AreaMeasures, BelowUsesAbsoluteValues)
{
    // Level 0, dip to -1 between crossings at 0.5 and 2.5.
    EXPECT_DOUBLE_EQ(Area({{0, 1}, {1, -1}, {2, -1}, {3, 1}}, 0.0, true), 1.5);
    // A dip that stays positive: |sum| 1.0 less |rect| 5/3 is negative.
    EXPECT_EQ(Area({{0, 2}, {1, 0.5}, {2, 0.5}, {3, 2}}, 1.0, true), 0.0);
    // Below a negative level: |sum| 17/3 less |rect| 7/3.
    EXPECT_NEAR(Area({{0, 0}, {1, -3}, {2, -3}, {3, 0}}, -1.0, true), 10.0 / 3.0, 1e-12);
    // Above keeps signs: (0 - 1) / 2 * 0.5 - (-1).
    EXPECT_DOUBLE_EQ(Area({{0, -2}, {1, 0}, {2, -2}}, -1.0), 0.75);
    // Above a dip: the only pair starts with a closer.
    EXPECT_EQ(Area({{0, 2}, {1, 0.5}, {2, 0.5}, {3, 2}}, 1.0), 0.0);
}

TEST(AreaMeasures, EyeLineForms)
{
    // Three lines; the last one loses its final sample (4, 0), and with it
    // its falling crossing, which would have given the largest area (5.25).
    CChartPointDArray eye;
    Fill(eye, {{0, 0}, {1, 4}, {2, 0}, {3, 0}});         // 0.375
    Fill(eye, kPlateau);                                 // 2.5
    Fill(eye, {{0, 0}, {1, 0}, {2, 4}, {3, 4}, {4, 0}}); // 5.25 if whole
    double dArea = 0.0;
    eye.GetMaxAreaAboveYValueWithExtractEyeLinePoints(2.0, 10.0, kLo, kHi, 1.0, dArea);
    EXPECT_DOUBLE_EQ(dArea, 2.5 * 2.0);

    CChartPointDArray outline;
    eye.GetMaxAreaAboveYValueAndAllPointsInAreaWithExtractEyeLinePoints(2.0, 10.0, kLo, kHi, 1.0,
                                                                        dArea, &outline);
    EXPECT_DOUBLE_EQ(dArea, 2.5 * 2.0);
    EXPECT_EQ(Outline(outline), kPlateauOutline);
    EXPECT_EQ(eye.GetSize(), 14); // the waveform keeps its samples

    CChartPointDArray dip;
    Fill(dip, {{0, 1}, {1, -1}, {2, -1}, {3, 1}, {4, 1}});
    dip.GetMaxAreaBelowYValueAndAllPointsInAreaWithExtractEyeLinePoints(2.0, 10.0, kLo, kHi, 0.0,
                                                                        dArea, &outline);
    EXPECT_DOUBLE_EQ(dArea, 1.5 * 2.0);
    EXPECT_EQ(Outline(outline), (Pts{{0.5, 0}, {1, -1}, {2, -1}, {2.5, 0}}));
}
