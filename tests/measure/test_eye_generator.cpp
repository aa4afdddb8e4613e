#include <plotvane/measure/EyeGenerator.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <vector>

using plotvane::DdrEye;
using plotvane::DdrEyeParams;
using plotvane::GenerateDdrEye;

namespace
{
constexpr double ps = 1e-12;

struct Crossing
{
    double x;
    bool bRising;
};

// Crossings of a level inside each folded run, by linear interpolation.
std::vector<Crossing> Crossings(const CChartPointDArray& w, double dLevel)
{
    std::vector<Crossing> out;
    for (INT_PTR i = 0; i + 1 < w.GetSize(); ++i)
    {
        const CChartPointD& a = *w.GetData()[i];
        const CChartPointD& b = *w.GetData()[i + 1];
        if (a.X > b.X)
            continue;
        if ((a.Y < dLevel) != (b.Y < dLevel))
            out.push_back({a.X + (b.X - a.X) * (dLevel - a.Y) / (b.Y - a.Y), b.Y > a.Y});
    }
    return out;
}

// Distance from x to the nearer of the two slot positions.
double SlotDistance(double x, const double* pSlots)
{
    return std::min(std::fabs(x - pSlots[0]), std::fabs(x - pSlots[1]));
}
} // namespace

TEST(EyeGenerator, FoldsRunsAndSetsAttributes)
{
    DdrEyeParams p;
    p.nPeriods = 8;
    const DdrEye eye = GenerateDdrEye(p);
    ASSERT_TRUE(eye.pDQ && eye.pDQS && eye.pDQSBar);
    EXPECT_EQ(eye.pDQ->GetSize(), 8 * 128);
    EXPECT_EQ(eye.pDQ->GetPointX(0), 0.0);
    EXPECT_EQ(eye.pDQ->GetPointX(127), 1.25e-9);
    EXPECT_EQ(eye.pDQ->GetPointX(128), 0.0);
    // The run end and the next run's start are the same instant.
    EXPECT_EQ(eye.pDQ->GetPointY(127), eye.pDQ->GetPointY(128));
    for (INT_PTR i = 0; i < eye.pDQS->GetSize(); ++i)
        ASSERT_DOUBLE_EQ(eye.pDQS->GetPointY(i) + eye.pDQSBar->GetPointY(i), 1.2);

    // The collection's role queries tell data from strobe by these.
    EXPECT_EQ(eye.pDQ->m_nDataType, 2);
    EXPECT_EQ(eye.pDQS->m_nDataType, 0);
    EXPECT_EQ(eye.pDQSBar->m_nPinRole, 2);

    p.bDifferential = 0;
    EXPECT_FALSE(GenerateDdrEye(p).pDQSBar);
}

TEST(EyeGenerator, EdgesStandWhereTheLayoutSays)
{
    DdrEyeParams p;
    const DdrEye write = GenerateDdrEye(p);
    EXPECT_NEAR(write.dDataEdge[0], 0.125 * 1.25e-9, 1e-20);
    EXPECT_NEAR(write.dStrobeEdge[0], write.dDataEdge[0] + 312.5 * ps, 1e-20);
    EXPECT_NEAR(write.dStrobeEdge[1], write.dDataEdge[1] + 312.5 * ps, 1e-20);

    const std::vector<Crossing> mid = Crossings(*write.pDQ, write.dMid);
    ASSERT_GT(mid.size(), 30u);
    for (const Crossing& c : mid)
        EXPECT_LT(SlotDistance(c.x, write.dDataEdge), 0.5 * ps);
    // Rising edges pass the upper band level after their centre, falling
    // ones before it.
    const double dUpper = 0.9;
    const double dOff = write.RisingEdgeOffset(dUpper);
    EXPECT_GT(dOff, 0.0);
    for (const Crossing& c : Crossings(*write.pDQ, dUpper))
    {
        const double dCentre = c.x - (c.bRising ? dOff : -dOff);
        EXPECT_LT(SlotDistance(dCentre, write.dDataEdge), 1.0 * ps);
    }
    for (const Crossing& c : Crossings(*write.pDQS, write.dMid))
        EXPECT_LT(SlotDistance(c.x, write.dStrobeEdge), 0.5 * ps);

    p.nReadCycle = 1;
    p.dStrobeSkew = 20 * ps;
    const DdrEye read = GenerateDdrEye(p);
    EXPECT_NEAR(read.dStrobeEdge[0], read.dDataEdge[0] + 20 * ps, 1e-20);
    EXPECT_EQ(read.pDQS->m_nReadCycle, 1);
    for (const Crossing& c : Crossings(*read.pDQS, read.dMid))
        EXPECT_LT(SlotDistance(c.x, read.dStrobeEdge), 0.5 * ps);
}

TEST(EyeGenerator, JitterAndIsiAreSeededAndBounded)
{
    DdrEyeParams p;
    p.dDataJitterRms = 10 * ps;
    p.dStrobeJitterRms = 5 * ps;
    const DdrEye a = GenerateDdrEye(p);
    const DdrEye b = GenerateDdrEye(p);
    EXPECT_TRUE(*a.pDQ == *b.pDQ);
    EXPECT_TRUE(*a.pDQSBar == *b.pDQSBar);
    p.nSeed = 2;
    EXPECT_FALSE(*a.pDQ == *GenerateDdrEye(p).pDQ);

    EXPECT_LT(a.dDataEdgeMin[0], a.dDataEdge[0] - 5 * ps);
    EXPECT_GT(a.dDataEdgeMax[0], a.dDataEdge[0] + 5 * ps);
    EXPECT_LT(a.dStrobeEdgeMin[1], a.dStrobeEdgeMax[1]);
    for (const Crossing& c : Crossings(*a.pDQ, a.dMid))
    {
        const int s = std::fabs(c.x - a.dDataEdge[0]) < std::fabs(c.x - a.dDataEdge[1]) ? 0 : 1;
        EXPECT_GT(c.x, a.dDataEdgeMin[s] - 0.5 * ps);
        EXPECT_LT(c.x, a.dDataEdgeMax[s] + 0.5 * ps);
    }

    // ISI alone: short bits fall short of the rails, so the mid-level
    // crossings spread with the pattern.
    DdrEyeParams q;
    q.dIsi = 0.2;
    const DdrEye isi = GenerateDdrEye(q);
    double dLo = 1.0, dHi = 0.0;
    for (const Crossing& c : Crossings(*isi.pDQ, isi.dMid))
        if (std::fabs(c.x - isi.dDataEdge[0]) < 100 * ps)
        {
            dLo = std::min(dLo, c.x);
            dHi = std::max(dHi, c.x);
        }
    EXPECT_GT(dHi - dLo, 5 * ps);
    EXPECT_GT(isi.pDQ->GetMaxY(), 1.19);
}

TEST(EyeGenerator, DrawsNothingFromRand)
{
    // Only the three arrays' constructors may draw, so colours of later
    // arrays are the same as if the arrays had been made empty.
    std::srand(77);
    {
        const DdrEye eye = GenerateDdrEye();
    }
    const int nAfterEye = std::rand();
    std::srand(77);
    {
        CChartPointDArray a, b, c;
    }
    EXPECT_EQ(nAfterEye, std::rand());
}
