#include <plotvane/measure/ChartPointDArray.h>

#include <plotvane/foundation/Geometry.h>

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <random>
#include <utility>
#include <vector>

namespace
{
void Fill(CChartPointDArray& w, const std::vector<std::pair<double, double>>& pts)
{
    for (const auto& p : pts)
        w.Add(new CChartPointD(p.first, p.second));
}

std::vector<double> Values(const CArrayD& a)
{
    return std::vector<double>(a.begin(), a.end());
}

// The level search done the plain way: the primitive on every segment, for
// each level in turn.
int CrossMinMaxXByPrimitive(const CChartPointDArray& w, const std::vector<double>& levels,
                            double dXMin, double dXMax, double sx, double sy, double& dMin,
                            double& dMax)
{
    const double x1 = w.GetMinX() * sx, x2 = w.GetMaxX() * sx;
    bool bFound = false;
    dMin = dMax = 0.0;
    for (INT_PTR i = 0; i + 1 < w.GetSize(); ++i)
    {
        const CChartPointD& a = *w.GetData()[i];
        const CChartPointD& b = *w.GetData()[i + 1];
        if (a.X > b.X || (a.X < dXMin && b.X < dXMin) || (a.X > dXMax && b.X > dXMax))
            continue;
        for (double dY : levels)
        {
            double p[2];
            if (CLumigrid_Math::GetIntersectionLineLine(x1, dY * sy, x2, dY * sy, a.X * sx,
                                                        a.Y * sy, b.X * sx, b.Y * sy, p) <= 0 ||
                std::isnan(p[0]))
                continue;
            const double x = p[0] / sx;
            if (x < dXMin || x > dXMax)
                continue;
            dMin = bFound ? std::min(dMin, x) : x;
            dMax = bFound ? std::max(dMax, x) : x;
            bFound = true;
        }
    }
    return bFound ? 1 : 0;
}
// What a search answered: its return value, the extent, and the Y outputs
// where it has them (seeded with kSeed, so that one left alone shows).
constexpr double kSeed = 42.0;
struct Found
{
    int n;
    double lo, hi, yLo = kSeed, yHi = kSeed;
};
bool operator==(const Found& a, const Found& b)
{
    return a.n == b.n && a.lo == b.lo && a.hi == b.hi && a.yLo == b.yLo && a.yHi == b.yHi;
}
std::ostream& operator<<(std::ostream& os, const Found& f)
{
    return os << f.n << " [" << f.lo << ", " << f.hi << "] y " << f.yLo << ", " << f.yHi;
}

using W = CChartPointDArray;
Found CrossX(const W& w, double dY, double x0, double x1)
{
    Found f{0, -1, -1};
    f.n = w.GetCrossMinMaxXValue(dY, x0, x1, 1, 1, f.lo, f.hi);
    return f;
}
Found CrossXTol(const W& w, double dVRef, double dTol, double x0, double x1)
{
    Found f{0, -1, -1};
    f.n = w.GetCrossMinMaxXValueByVRefTol(dVRef, dTol, x0, x1, 1, 1, f.lo, f.hi);
    return f;
}
Found CrossY(const W& w, double dX, double y0, double y1)
{
    Found f{0, -1, -1};
    f.n = w.GetCrossMinMaxYValue(dX, y0, y1, 1, 1, f.lo, f.hi);
    return f;
}
// The form with Y outputs; the plain form must agree on the X extent.
Found DataX(const W& a, const W& b, double x0, double x1)
{
    Found f{0, -1, -1}, g{0, -1, -1};
    f.n = a.GetDataCrossMinMaxXValue(&b, x0, x1, 1, 1, f.lo, f.hi, f.yLo, f.yHi);
    g.n = a.GetDataCrossMinMaxXValue(&b, x0, x1, 1, 1, g.lo, g.hi);
    EXPECT_EQ(Found(g), (Found{f.n, f.lo, f.hi}));
    return f;
}
Found PairsX(const W& a, const W& b, double dY, double dTol, double x0, double x1, int bOpp)
{
    Found f{0, -1, -1};
    f.n = a.GetDataCrossMinMaxXValueByPointArray(&b, dY, dTol, x0, x1, 1, 1, f.lo, f.hi, f.yLo,
                                                 f.yHi, bOpp);
    return f;
}
Found PairsX(const W& a, const W& b, double dY, double dTol, double x0, double x1)
{
    Found f{0, -1, -1};
    f.n = a.GetDataCrossMinMaxXValueByPointArray(&b, dY, dTol, x0, x1, 1, 1, f.lo, f.hi);
    return f;
}
// Rectangle x in [1, 3], y in [1, dTop]; the seed in dMinX is lost.
Found Rect(const W& w, double dTop, double x0, double x1)
{
    Found f{0, 1.7976931348623157e308, -1};
    f.n = w.GetRectAreaCrossMinXValue(1, dTop, 3, 1, x0, x1, 1, 1, f.lo, f.hi);
    return f;
}

// Peak and valley in the rectangle (l, t, r, b), flags and points seeded with
// nSeed and (5, 5) so that what is left alone shows.
struct Peaks
{
    CPointD pos, neg;
    int bPos, bNeg;
};
Peaks PeaksIn(const W& w, double sx, double sy, double l, double t, double r, double b,
              int nSeed = 0)
{
    Peaks k{CPointD(5, 5), CPointD(5, 5), nSeed, nSeed};
    w.GetPosiNegaPeakInCertainArea(sx, sy, l, t, r, b, k.pos, k.neg, k.bPos, k.bNeg);
    return k;
}
} // namespace

TEST(CrossingSearch, LevelCrossingsWindowSeamsAndTouches)
{
    CChartPointDArray w, eye, gap;
    EXPECT_EQ(CrossX(w, 0.5, 0, 9), (Found{0, 0, 0}));
    Fill(w, {{0, 0}, {1, 1}, {2, 0}});
    EXPECT_EQ(CrossX(w, 0.5, 0, 2), (Found{1, 0.5, 1.5}));     // no notion of direction
    EXPECT_EQ(CrossX(w, 0.5, 0.5, 0.5), (Found{1, 0.5, 0.5})); // closed window
    EXPECT_EQ(CrossX(w, 1.0, 0, 2), (Found{1, 1, 1}));         // touch at the peak
    EXPECT_EQ(CrossX(w, 0.5, 0.6, 1.4), (Found{0, 0, 0}));     // 0.0, not a sentinel

    // The seam (2,1) -> (0,0) would cross the level at x = 1.
    Fill(eye, {{0, 0}, {1, 0}, {2, 1}, {0, 0}, {1, 0}, {2, 1}});
    EXPECT_EQ(CrossX(eye, 0.5, 0, 2), (Found{1, 1.5, 1.5}));

    // A NaN sample is a miss; the scale factors cancel.
    Fill(gap, {{0, 0}, {1e-9, NAN}, {2e-9, 0}, {3e-9, 1.0}});
    double lo = 0, hi = 0;
    EXPECT_EQ(gap.GetCrossMinMaxXValue(0.5, 0, 1, 1e9, 100, lo, hi), 1);
    EXPECT_DOUBLE_EQ(lo, 2.5e-9);
    EXPECT_DOUBLE_EQ(hi, 2.5e-9);
}

TEST(CrossingSearch, LevelSearchEqualsThePrimitiveOnEverySegment)
{
    // Samples on, one ulp beside and far from the levels, with large swings:
    // the cheap rejection of one-sided pairs must not change a single hit,
    // rounding at the ends included, also at magnitudes where it gives way to
    // the full walk. Short waveforms, so that every hit counts.
    std::mt19937 gen(7);
    std::uniform_int_distribution<int> kind(0, 5);
    std::uniform_real_distribution<double> swing(-100.0, 100.0);
    int nFound = 0;
    for (int trial = 0; trial < 3000; ++trial)
    {
        const double dMag = trial % 3 == 0 ? 1.0 : trial % 3 == 1 ? 1e-305 : 1e303;
        const double dVRef = 0.5 * dMag, dTol = 0.25 * dMag;
        CChartPointDArray w;
        for (int k = 0; k < 3; ++k)
        {
            double y = swing(gen) * dMag;
            const int nKind = kind(gen);
            const double dNear = nKind == 0 ? dVRef : nKind == 1 ? dVRef - dTol : dVRef + dTol;
            if (nKind < 3)
                y = trial % 2 ? std::nextafter(dNear, y) : dNear;
            w.Add(new CChartPointD(k * 1e-11, y));
        }
        for (double sy : {100.0, 1.0})
        {
            Found f{0, 0, 0}, ref{0, 0, 0};
            f.n = w.GetCrossMinMaxXValue(dVRef, 0, 1, 1e9, sy, f.lo, f.hi);
            ref.n = CrossMinMaxXByPrimitive(w, {dVRef}, 0, 1, 1e9, sy, ref.lo, ref.hi);
            ASSERT_EQ(f, ref);
            nFound += f.n;
            f.n = w.GetCrossMinMaxXValueByVRefTol(dVRef, dTol, 1e-11, 1e-11, 1e9, sy, f.lo, f.hi);
            ref.n = CrossMinMaxXByPrimitive(w, {dVRef, dVRef - dTol, dVRef + dTol}, 1e-11, 1e-11,
                                            1e9, sy, ref.lo, ref.hi);
            ASSERT_EQ(f, ref);
        }
    }
    EXPECT_GT(nFound, 2000);

    // The primitive meets these pairs only through its rounding: a sample one
    // ulp short of the level after a long fall, and subnormal samples whose
    // products underflow. The search must follow it.
    const double t = 4.9406564584124654e-324;
    CChartPointDArray shortFall, tiny;
    Fill(shortFall, {{1.4405255667075112, 5}, {0, 2.1358997498844525}, {1, 0.50000000000000022}});
    Fill(tiny, {{0, 2 * t}, {0.5, 2 * t}, {1, t}, {2, 1}});
    EXPECT_EQ(CrossX(shortFall, 0.5, 0, 2), (Found{1, 1, 1}));
    Found f{0, 0, 0};
    f.n = tiny.GetCrossMinMaxXValue(0, 0, 2, 0.25, 1, f.lo, f.hi);
    EXPECT_EQ(f, (Found{1, 1, 1}));
}

TEST(CrossingSearch, VRefTolAndVerticalLine)
{
    CChartPointDArray ramp, eye;
    Fill(ramp, {{0, 0}, {4, 4}});
    EXPECT_EQ(CrossXTol(ramp, 2, 1, 0, 4), (Found{1, 1, 3}));
    EXPECT_EQ(CrossXTol(ramp, 2, 1, 1.5, 4), (Found{1, 2, 3}));

    // Two periods meet x = 1 at y = 1 and y = 2; the seam would at 2.5.
    Fill(eye, {{0, 0}, {2, 2}, {0, 3}, {2, 1}});
    EXPECT_EQ(CrossY(eye, 1, 0, 3), (Found{1, 1, 2}));
    EXPECT_EQ(CrossY(eye, 1, 1.5, 3), (Found{1, 2, 2}));
    EXPECT_EQ(CrossY(eye, 1, 2.5, 3), (Found{0, 0, 0}));
}

TEST(CrossingSearch, IndexPairCrossingOfADifferentialPair)
{
    CChartPointDArray p, n, shortN, a, b;
    Fill(p, {{0, 0}, {1, 1}, {2, 0}});
    Fill(n, {{0, 1}, {1, 0}, {2, 1}});
    Fill(shortN, {{0, 1}, {1, 0}});
    EXPECT_EQ(DataX(p, n, 0, 2), (Found{1, 0.5, 1.5, 0.5, 0.5}));
    EXPECT_EQ(DataX(p, shortN, 0, 2), (Found{1, 0.5, 0.5, 0.5, 0.5}));

    // Two periods cross at x = 0.5, at y = 0.5 and then 0.75: the first hit
    // keeps both Y outputs. Without a hit the Y outputs are left alone.
    Fill(a, {{0, 0}, {1, 1}, {0, 0.25}, {1, 1.25}});
    Fill(b, {{0, 1}, {1, 0}, {0, 1.25}, {1, 0.25}});
    EXPECT_EQ(DataX(a, b, 0, 1), (Found{1, 0.5, 0.5, 0.5, 0.5}));
    EXPECT_EQ(DataX(a, b, 0.6, 1), (Found{0, 0, 0}));
}

TEST(CrossingSearch, AllPairsCrossingOfTwoEyeLines)
{
    // A1: y = x, A2: y = 1 + x; B1: y = 3 - x, B2: y = 2 - x. Inside
    // [0.9, 1.1] A1 meets B2 at (1, 1) and A2 meets B1 at (1, 2); walking
    // this array's segments outside reaches (1, 1) first.
    CChartPointDArray a, b, up, down, up2;
    Fill(a, {{0, 0}, {2, 2}, {0, 1}, {2, 3}});
    Fill(b, {{0, 3}, {2, 1}, {0, 2}, {2, 0}});
    EXPECT_EQ(PairsX(a, b, 1.5, 1.5, 0.9, 1.1, 1), (Found{1, 1, 1, 1, 1}));
    EXPECT_EQ(PairsX(a, b, 1.5, 1.5, 0, 2), (Found{1, 0.5, 1.5}));

    // The hit (2, 2) lies outside the band [0.5, 1.5]: only the form without
    // Y outputs counts it.
    Fill(up, {{0, 0}, {4, 4}});
    Fill(down, {{0, 4}, {4, 0}});
    EXPECT_EQ(PairsX(up, down, 1, 0.5, 0, 4), (Found{1, 2, 2}));
    EXPECT_EQ(PairsX(up, down, 1, 0.5, 0, 4, 0), (Found{0, 0, 0}));

    // Same slope: found only without the opposite-slope rule.
    Fill(up2, {{0, 1}, {4, 3}});
    EXPECT_EQ(PairsX(up, up2, 2, 1, 0, 4, 1), (Found{0, 0, 0}));
    EXPECT_EQ(PairsX(up, up2, 2, 1, 0, 4, 0), (Found{1, 2, 2, 2, 2}));
}

TEST(CrossingSearch, RectangleSidesAndSeedOverwrite)
{
    CChartPointDArray ramp, flat, inside;
    Fill(ramp, {{0, 0}, {4, 4}});     // bottom and left at x = 1, top at 2
    Fill(flat, {{0, 1.5}, {4, 1.5}}); // left and right sides
    Fill(inside, {{1.5, 1.2}, {2.5, 1.8}});
    EXPECT_EQ(Rect(ramp, 2, 0, 4), (Found{1, 1, 2}));
    EXPECT_EQ(Rect(flat, 2, 0, 4), (Found{1, 1, 3}));
    EXPECT_EQ(Rect(flat, 2, 0, 1), (Found{1, 1, 1}));
    EXPECT_EQ(Rect(inside, 2, 0, 4), (Found{0, 0, 0}));
    EXPECT_EQ(Rect(flat, 1.4, 0, 4), (Found{0, 0, 0})); // wholly above the top
}

TEST(CrossingSearch, PeaksAndValleysInARectangle)
{
    // Scaled (0,0) (2,10) (4,2) (6,9) (8,0): peak (2,10), valley (4,2); the
    // later peak is lower, and the first sample is no valley.
    CChartPointDArray w, ramp, over, side;
    Fill(w, {{0, 0}, {1, 1}, {2, 0.2}, {3, 0.9}, {4, 0}});
    Peaks k = PeaksIn(w, 2, 10, -1, 20, 9, -5);
    EXPECT_EQ(k.bPos + k.bNeg, 2);
    EXPECT_EQ(k.pos, CPointD(2, 10));
    EXPECT_EQ(k.neg, CPointD(4, 2));

    // A ramp through the top: no turning point, so the top's crossing.
    Fill(ramp, {{1.5, 0}, {2.5, 4}});
    k = PeaksIn(ramp, 1, 1, 1, 2, 3, -1);
    EXPECT_EQ(k.bPos, 1);
    EXPECT_EQ(k.pos, CPointD(2, 2));
    EXPECT_EQ(k.bNeg, 0);

    // The top's crossing stands above the interior peak at 1 and wins.
    Fill(over, {{0, 0}, {1, 1}, {2, 0}, {3, 4}});
    k = PeaksIn(over, 1, 1, -1, 2, 5, -1);
    EXPECT_EQ(k.pos, CPointD(2.5, 2));
    EXPECT_EQ(k.neg, CPointD(2, 0));

    // Through the right side at y = -1.5: recorded at the left side's X, and
    // only as a low, since the boundary high starts at the least positive
    // double.
    Fill(side, {{1, -2}, {3, -1}});
    k = PeaksIn(side, 1, 1, 0, 10, 2, -10);
    EXPECT_EQ(k.bPos, 0);
    EXPECT_EQ(k.bNeg, 1);
    EXPECT_EQ(k.neg, CPointD(0, -1.5));

    // Nothing inside: flags and points left as the caller set them.
    k = PeaksIn(side, 1, 1, 10, 20, 12, 15, 7);
    EXPECT_EQ(k.bPos + k.bNeg, 14);
    EXPECT_EQ(k.pos, CPointD(5, 5));
}

TEST(CrossingSearch, ThresholdListsAtASampleOnTheLevel)
{
    CChartPointDArray w;
    Fill(w, {{0, 0}, {1, 1}, {2, 2}, {3, 2}, {4, 0}});
    CArrayD rising, falling, strict;
    falling.Add(-1); // appended to, not emptied
    w.GetXValArrayMeetYThreshold(1, 1, 1, 0, 4, rising, falling);
    EXPECT_EQ(Values(rising), (std::vector<double>{1, 1}));
    EXPECT_EQ(Values(falling), (std::vector<double>{-1, 3.5}));
    w.GetXValArrayMeetYThreshold(1, 1, 1, 0, 4, strict, 0);
    EXPECT_TRUE(Values(strict).empty());
    w.GetXValArrayMeetYThreshold(1, 1, 1, 0, 4, strict, 1);
    EXPECT_EQ(Values(strict), (std::vector<double>{3.5}));

    // Only the segment's start is held to the window, and a flat segment on
    // the level is no crossing.
    CArrayD r2, f2;
    w.GetXValArrayMeetYThreshold(1, 1, 2, 0.5, 3, r2, f2);
    EXPECT_EQ(Values(r2), (std::vector<double>{2}));
    EXPECT_EQ(Values(f2), (std::vector<double>{3}));

    // Scaled interpolation, a NaN sample and a seam.
    CChartPointDArray s;
    Fill(s, {{0, 0}, {1e-9, 4}, {0, 0}, {1e-9, NAN}});
    CArrayD r3, f3;
    s.GetXValArrayMeetYThreshold(1e9, 100, 1, 0, 1, r3, f3);
    ASSERT_EQ(r3.GetSize(), 1);
    EXPECT_DOUBLE_EQ(r3[0], 0.25e-9);
    EXPECT_TRUE(Values(f3).empty());
}
