// GetDataCrossMinMaxYValueByPointArray sweeps its segment pairs instead of
// walking all of them; its answer must be the walk's, bit for bit.
#include <plotvane/measure/ChartPointDArray.h>

#include <plotvane/foundation/Geometry.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

namespace
{
using W = CChartPointDArray;

struct Answer
{
    int n;
    double lo, hi;
};

std::uint64_t Bits(double v)
{
    std::uint64_t u;
    std::memcpy(&u, &v, sizeof u);
    return u;
}

// The search as it was: every kept segment of self against every kept
// segment of other, in index order, the first hit of a tie staying. Kept:
// running forward, between 0 and half of self's largest X, not wholly above
// or below the band, and no wider than half of self's period.
Answer EveryPair(const W& self, const W& other, double y0, double y1, double sx, double sy)
{
    const double dRight = self.GetMaxX() * 0.5, dWidest = self.m_dPeriod * 0.5;
    auto kept = [&](const W& w, INT_PTR i)
    {
        const CChartPointD &a = *w.GetData()[i], &b = *w.GetData()[i + 1];
        return !(a.X > b.X) && a.X >= 0.0 && a.X <= dRight && b.X >= 0.0 && b.X <= dRight &&
               !((a.Y < y0 && b.Y < y0) || (a.Y > y1 && b.Y > y1)) && !(b.X - a.X > dWidest);
    };
    Answer r{0, 0.0, 0.0};
    for (INT_PTR i = 0; i + 1 < self.GetSize(); ++i)
        for (INT_PTR j = 0; kept(self, i) && j + 1 < other.GetSize(); ++j)
        {
            const CChartPointD &a = *self.GetData()[i], &b = *self.GetData()[i + 1];
            const CChartPointD &c = *other.GetData()[j], &d = *other.GetData()[j + 1];
            double p[2];
            if (!kept(other, j) ||
                CLumigrid_Math::GetIntersectionLineLine(a.X * sx, a.Y * sy, b.X * sx, b.Y * sy,
                                                        c.X * sx, c.Y * sy, d.X * sx, d.Y * sy,
                                                        p) <= 0 ||
                std::isnan(p[1]))
                continue;
            const double y = p[1] / sy;
            if (y < y0 || y > y1)
                continue;
            r.lo = r.n == 0 || y < r.lo ? y : r.lo;
            r.hi = r.n == 0 || y > r.hi ? y : r.hi;
            r.n = 1;
        }
    return r;
}

void ExpectSame(const W& self, const W& other, double y0, double y1, double sx, double sy)
{
    const Answer want = EveryPair(self, other, y0, y1, sx, sy);
    Answer got{-1, 42.0, 42.0};
    got.n = self.GetDataCrossMinMaxYValueByPointArray(&other, y0, y1, sx, sy, got.lo, got.hi);
    ASSERT_EQ(got.n, want.n) << "band " << y0 << ".." << y1;
    EXPECT_EQ(Bits(got.lo), Bits(want.lo)) << got.lo << " vs " << want.lo;
    EXPECT_EQ(Bits(got.hi), Bits(want.hi)) << got.hi << " vs " << want.hi;
}

void Add(W& w, double x, double y)
{
    w.Add(new CChartPointD(x, y));
}

// Random waveforms: steps on a coarse grid (ties, shared samples, collinear
// runs, 0.0 and -0.0, so that which of two equal extremes the walk meets
// first decides the bits) or free; some vertical, some falling back (seams).
void RandomWave(std::mt19937_64& rng, W& w, int n, bool bGrid)
{
    std::uniform_real_distribution<double> u(0.0, 1.0);
    const double grid[] = {-0.0, 0.0, 0.25, -0.25, 0.5, -0.5, 1.0};
    double x = 0.0;
    for (int k = 0; k < n; ++k)
    {
        const double r = u(rng);
        const double step = bGrid ? std::floor(u(rng) * 4.0) * 0.125 : u(rng) * 0.4;
        x = r < 0.05 ? x - step - 0.125 : r < 0.15 ? x : x + step;
        Add(w, x, bGrid ? grid[int(u(rng) * 7.0)] : u(rng) * 2.0 - 1.0);
    }
}

TEST(PairSweep, AgreesWithEveryPairOnRandomWaveforms)
{
    std::mt19937_64 rng(7);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    const double scales[][2] = {{1.0, 1.0}, {1e9, 1000.0}, {3.0, -0.7}, {-2.0, 1.0}};
    for (int trial = 0; trial < 400; ++trial)
    {
        W a, b;
        const bool bGrid = trial % 2 == 0;
        RandomWave(rng, a, 20 + trial % 90, bGrid);
        RandomWave(rng, b, 20 + trial % 70, bGrid);
        a.m_dPeriod = trial % 3 == 0 ? 0.5 : 100.0;
        const double y0 = u(rng) * 1.2 - 0.8, y1 = trial % 17 == 0 ? y0 - 0.1 : y0 + u(rng);
        const double* s = scales[trial % 4];
        ExpectSame(a, b, y0, y1, s[0], s[1]);
        ExpectSame(b, a, -0.5, 0.5, s[0], s[1]);
        ExpectSame(a, a, -1.0, 1.0, s[0], s[1]);
    }
}

// Pieces of one straight line, far apart in X: the primitive can report a
// meeting there through rounding alone, and the sweep must too.
TEST(PairSweep, FindsTheRoundingHitsOfFarCollinearPieces)
{
    std::mt19937_64 rng(3);
    std::uniform_real_distribution<double> u(0.0, 1.0);
    int nHits = 0;
    for (int trial = 0; trial < 3000; ++trial)
    {
        const double m = u(rng) * 3.0 - 1.5, k = u(rng);
        W a, b;
        for (double x0 : {0.0, 0.15, 0.3, 0.45, 0.6, 0.75})
            for (W* w : {&a, &b})
            {
                const double x = x0 + u(rng) * 0.05 + (w == &b ? 0.07 : 0.0);
                Add(*w, x, m * x + k);
                Add(*w, x + 0.01, m * (x + 0.01) + k);
            }
        Add(a, 2.0, 0.0); // sets the half-span the search looks at
        a.m_dPeriod = 10.0;
        nHits += EveryPair(a, b, -10.0, 10.0, 1.0, 1.0).n;
        ExpectSame(a, b, -10.0, 10.0, 1.0, 1.0);
    }
    EXPECT_GT(nHits, 0);
}

// Where the sweep can't vouch for its rounding (a NaN, a huge coordinate)
// the walk over every pair answers.
TEST(PairSweep, AgreesWhereCoordinatesAreExtreme)
{
    std::mt19937_64 rng(11);
    for (double bad : {std::nan(""), 1e305, 1e-305, HUGE_VAL})
    {
        W a, b;
        RandomWave(rng, a, 60, true);
        RandomWave(rng, b, 60, true);
        a.m_dPeriod = 100.0;
        b.GetData()[7]->Y = bad;
        ExpectSame(a, b, -2.0, 2.0, 1.0, 1.0);
        ExpectSame(a, b, -HUGE_VAL, HUGE_VAL, 1.0, 1.0);
    }
}

} // namespace
