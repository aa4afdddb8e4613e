#include <plotvane/measure/EyeCrossings.h>
#include <plotvane/measure/EyeGenerator.h>

#include <gtest/gtest.h>

#include <vector>

using plotvane::LevelCross;
using plotvane::SearchScale;

namespace
{
constexpr double ps = 1e-12;
constexpr double kSeed = 12345.0;

// The margin checks' factors, the view scales a chart of a 1.25 ns eye gets,
// and factors far from both.
constexpr SearchScale kScales[] = {{1e9, 100.0}, {1e8, 100.0}, {1e13, 1e5}};

// Default write eye, no jitter: data crossings at 156.25 and 781.25 ps,
// strobe edges at 468.75 and 1093.75 ps, period 1250 ps.
plotvane::DdrEye WriteEye()
{
    plotvane::DdrEyeParams p;
    p.nPeriods = 16;
    return plotvane::GenerateDdrEye(p);
}

// Everything one scale answers, found flags as 0 or 1, for comparing the
// scales.
struct Answers : std::vector<double>
{
    void Add(bool bFound, double a, double b) { insert(end(), {double(bFound), a, b}); }
    void Add(const LevelCross& c) { Add(c.bFound, c.dLo, c.dHi); }
};
} // namespace

// Both callers' searches at their own scales: the same crossings and edges,
// the contract on misses that their retries rely on, and agreement between
// the scales to rounding.
TEST(EyeCrossings, LevelAndStrobeSearchesAtEveryScale)
{
    const plotvane::DdrEye eye = WriteEye();
    const CChartPointDArray& dq = *eye.pDQ;
    const CChartPointDArray& dqs = *eye.pDQS;
    std::vector<Answers> all;
    for (const SearchScale& scale : kScales)
    {
        SCOPED_TRACE(scale.x);
        Answers ans;

        const LevelCross c = plotvane::CrossOf(dq, eye.dMid, 0.0, dq.GetMaxX(), scale);
        EXPECT_TRUE(c.bFound);
        EXPECT_NEAR(c.dLo, 156.25 * ps, 0.5 * ps);
        EXPECT_NEAR(c.dHi, 781.25 * ps, 0.5 * ps);
        ans.Add(c);
        // A Y extent as the right end leaves the window open past the data.
        const LevelCross open = plotvane::CrossOf(dq, eye.dMid, 500 * ps, dq.GetMaxY(), scale);
        EXPECT_TRUE(open.bFound);
        EXPECT_NEAR(open.dLo, 781.25 * ps, 0.5 * ps);
        ans.Add(open);
        const LevelCross none = plotvane::CrossOf(dq, eye.dHigh + 0.1, 0.0, dq.GetMaxX(), scale);
        EXPECT_FALSE(none.bFound);
        EXPECT_EQ(none.dLo, 0.0);
        EXPECT_EQ(none.dHi, 0.0);

        // Differential: DQS against DQS#, whatever the reference says.
        double a = kSeed, b = kSeed;
        EXPECT_TRUE(plotvane::FindStrobeEdge(dqs, eye.pDQSBar.get(), 99.0, 300 * ps, 700 * ps,
                                             scale, a, b));
        EXPECT_NEAR(a, 468.75 * ps, 0.5 * ps);
        EXPECT_NEAR(b, 468.75 * ps, 0.5 * ps);
        ans.Add(true, a, b);
        // Single-ended: DQS against the reference.
        a = b = kSeed;
        EXPECT_TRUE(
            plotvane::FindStrobeEdge(dqs, nullptr, eye.dMid, 900 * ps, 1200 * ps, scale, a, b));
        EXPECT_NEAR(a, 1093.75 * ps, 0.5 * ps);
        ans.Add(true, a, b);

        // Nothing in the window, either kind: the outputs keep what they held.
        a = b = kSeed;
        EXPECT_FALSE(
            plotvane::FindStrobeEdge(dqs, eye.pDQSBar.get(), 0.0, 0.0, 300 * ps, scale, a, b));
        EXPECT_FALSE(plotvane::FindStrobeEdge(dqs, nullptr, eye.dHigh + 0.1, 0.0, dqs.GetMaxX(),
                                              scale, a, b));
        EXPECT_EQ(a, kSeed);
        EXPECT_EQ(b, kSeed);
        all.push_back(ans);
    }
    for (const Answers& ans : all)
    {
        ASSERT_EQ(ans.size(), all[0].size());
        for (std::size_t i = 0; i < ans.size(); ++i)
            EXPECT_NEAR(ans[i], all[0][i], 1e-6 * ps) << i;
    }
}

// Where a strobe with a phase is looked for: from the data's crossings when
// it has them, else from the strobe's period; without a phase the caller's
// window stands. Either phase brackets the write strobe edge.
TEST(EyeCrossings, StrobeWindowFollowsTheData)
{
    plotvane::DdrEye eye = WriteEye();
    const CChartPointDArray& dq = *eye.pDQ;
    CChartPointDArray& dqs = *eye.pDQS;
    const double dXMax = dq.GetMaxX();
    for (const SearchScale& scale : kScales)
    {
        SCOPED_TRACE(scale.x);
        auto window = [&](int nPhase, double dVref, double& lo, double& hi)
        {
            dqs.m_nStrobePhase = nPhase;
            lo = hi = kSeed;
            plotvane::FollowDataCrossings(dq, 0.0, dXMax, dqs, dqs.GetMinX(), dVref, scale, lo, hi);
        };
        double lo = 0.0, hi = 0.0;
        for (int nPhase : {-1, 2})
        {
            window(nPhase, eye.dMid, lo, hi);
            EXPECT_EQ(lo, kSeed);
            EXPECT_EQ(hi, kSeed);
        }

        // Phase 0: a tenth of the eye after the first data crossing, a
        // quarter of the eye wide.
        window(0, eye.dMid, lo, hi);
        EXPECT_NEAR(lo, 281.25 * ps, 0.5 * ps);
        EXPECT_NEAR(hi, 593.75 * ps, 0.5 * ps);
        double a = 0.0, b = 0.0;
        EXPECT_TRUE(plotvane::FindStrobeEdge(dqs, eye.pDQSBar.get(), 0.0, lo, hi, scale, a, b));
        EXPECT_NEAR(a, 468.75 * ps, 0.5 * ps);

        // Phase 1: between the first and last crossing, inset by a tenth of
        // the eye and a quarter of their distance on each side.
        window(1, eye.dMid, lo, hi);
        EXPECT_NEAR(lo, 437.5 * ps, 0.5 * ps);
        EXPECT_NEAR(hi, 500.0 * ps, 0.5 * ps);
        EXPECT_TRUE(plotvane::FindStrobeEdge(dqs, eye.pDQSBar.get(), 0.0, lo, hi, scale, a, b));
        EXPECT_NEAR(a, 468.75 * ps, 0.5 * ps);

        // No data crossing: half a period on from half a period in, or from
        // a whole period in.
        window(0, eye.dHigh + 0.1, lo, hi);
        EXPECT_DOUBLE_EQ(lo, 625 * ps);
        EXPECT_DOUBLE_EQ(hi, 1250 * ps);
        window(1, eye.dHigh + 0.1, lo, hi);
        EXPECT_DOUBLE_EQ(lo, 1250 * ps);
        EXPECT_DOUBLE_EQ(hi, 1875 * ps);
    }
}
