#include <plotvane/measure/ChartPointDArrayArray.h>
#include <plotvane/measure/EyeGenerator.h>
#include <plotvane/measure/EyeLinePairs.h>

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <vector>

using plotvane::DdrEye;
using plotvane::DdrEyeParams;
using plotvane::GenerateDdrEye;

namespace
{
constexpr double ps = 1e-12;

// The outputs of CheckSetupHoldMargin, seeded with a value no path writes.
struct Margins
{
    static constexpr double kSeed = 12345.0;
    double dSetup = kSeed, dHold = kSeed, dSetupHeight = kSeed, dHoldHeight = kSeed;
    double dVrefMV = kSeed, dWindowPS = kSeed, dSpreadPS = kSeed;
};

Margins Check(const CChartPointDArray& dq, const DdrEye& strobe, double dOffset = 0.0,
              int bVrefFromData = 0, int bNoMask = 0)
{
    Margins m;
    dq.CheckSetupHoldMargin(strobe.pDQS.get(), strobe.pDQSBar.get(), m.dSetup, m.dHold,
                            m.dSetupHeight, m.dHoldHeight, m.dVrefMV, m.dWindowPS, m.dSpreadPS,
                            dOffset, bVrefFromData, bNoMask);
    return m;
}
Margins Check(const DdrEye& eye, double dOffset = 0.0, int bVrefFromData = 0, int bNoMask = 0)
{
    return Check(*eye.pDQ, eye, dOffset, bVrefFromData, bNoMask);
}

// Default write eye: data edges at 156.25 and 781.25 ps, strobe at 468.75 ps.
DdrEye WriteEye(double dSetupPS, double dHoldPS, double dSetupLevel, double dHoldLevel,
                double dSkew = 0.0)
{
    DdrEyeParams p;
    p.nPeriods = 16;
    p.dStrobeSkew = dSkew;
    DdrEye eye = GenerateDdrEye(p);
    eye.pDQ->SetEyeInformation(-1.0, dSetupPS, dHoldPS, dHoldLevel, dSetupLevel, 0);
    return eye;
}

// Where the data passes vref +- band last before / first after its edges.
double SetupExit(const DdrEye& eye, double dBand)
{
    return eye.dDataEdge[0] + eye.RisingEdgeOffset(eye.dMid + dBand);
}
double HoldEntry(const DdrEye& eye, double dBand)
{
    return eye.dDataEdge[1] - eye.RisingEdgeOffset(eye.dMid + dBand);
}

bool SameBits(double a, double b)
{
    return std::memcmp(&a, &b, sizeof a) == 0;
}
} // namespace

TEST(TimingMargins, LevelModeMarginsFromTheEdges)
{
    const DdrEye eye = WriteEye(100, 100, 0.1, 0.1);
    const double s = eye.dStrobeEdge[0];
    Margins m = Check(eye);
    EXPECT_NEAR(m.dHold, HoldEntry(eye, 0.1) - (s + 100 * ps), 0.5 * ps);
    EXPECT_NEAR(m.dSetup, (s - 100 * ps) - SetupExit(eye, 0.1), 0.5 * ps);
    EXPECT_NEAR(m.dSetup, 204.5 * ps, 0.5 * ps);
    EXPECT_NEAR(m.dWindowPS, 200.0, 1e-6);
    EXPECT_NEAR(m.dSpreadPS, 0.0, 1e-6);
    EXPECT_DOUBLE_EQ(m.dSetupHeight, 200.0);
    EXPECT_DOUBLE_EQ(m.dHoldHeight, 200.0);
    EXPECT_DOUBLE_EQ(m.dVrefMV, 600.0);

    // A hold time reaching past the next edge: the data enters the required
    // window. Negative by the depth with the reference from the data, else
    // -1.0; the untouched side keeps its margin.
    const DdrEye late = WriteEye(100, 350, 0.1, 0.1);
    m = Check(late, 0.0, 1);
    EXPECT_NEAR(m.dHold, -((s + 350 * ps) - HoldEntry(late, 0.1)), 0.5 * ps);
    EXPECT_NEAR(m.dSetup, 204.5 * ps, 0.5 * ps);
    EXPECT_EQ(m.dWindowPS, Margins::kSeed);
    EXPECT_EQ(Check(late).dHold, -1.0);

    // The setup side's rectangle takes the hold band: with a wide hold band
    // the edge's tail is caught although it has left the narrow setup band.
    const DdrEye tail = WriteEye(300, 100, 0.05, 0.5);
    m = Check(tail, 0.0, 1);
    EXPECT_NEAR(m.dSetup, -(SetupExit(tail, 0.5) - (s - 300 * ps)), 0.5 * ps);
}

TEST(TimingMargins, HoldBandsAndOneLevel)
{
    // m_nEyeOneLevel makes the setup band serve the hold side.
    DdrEye eye = WriteEye(100, 100, 0.1, 0.3);
    Margins m = Check(eye);
    EXPECT_NEAR(m.dHold, HoldEntry(eye, 0.3) - (eye.dStrobeEdge[0] + 100 * ps), 0.5 * ps);
    EXPECT_DOUBLE_EQ(m.dHoldHeight, 600.0);
    eye.pDQ->m_nEyeOneLevel = 1;
    m = Check(eye);
    EXPECT_NEAR(m.dHold, HoldEntry(eye, 0.1) - (eye.dStrobeEdge[0] + 100 * ps), 0.5 * ps);
    EXPECT_DOUBLE_EQ(m.dHoldHeight, 200.0);

    // Only the lower band level is ever crossed after the strobe (the upper
    // one lies above the data): the missing crossing counts as 0.0, and the
    // margin is the hold window's end itself. Built by hand so that no rail
    // lies inside the band.
    CChartPointDArray dq;
    for (int i = 0; i <= 125; ++i)
    {
        const double x = i * 10 * ps;
        const double y = x <= 100 * ps   ? 0.65
                         : x <= 200 * ps ? 0.65 * (200 * ps - x) / (100 * ps)
                         : x <= 700 * ps ? 0.0
                                         : std::min(0.65, (x - 700 * ps) * 6.5e9);
        dq.Add(new CChartPointD(x, y));
    }
    dq.SetEyeInformation(-1.0, 100, 100, 0.1, 0.1, 0);
    const DdrEye strobe = WriteEye(0, 0, 0, 0);
    const Margins h = Check(dq, strobe);
    const double r = strobe.dStrobeEdge[0] + 100 * ps;
    EXPECT_NEAR(h.dHold, r, 0.1 * ps);
    EXPECT_NEAR(h.dSetup, (r - 200 * ps) - (100 * ps + 100 * ps * 0.15 / 0.65), 0.1 * ps);
}

TEST(TimingMargins, MaskModeAgainstLevelMode)
{
    // Mask 200 mV high and half an eye wide: setup and hold times become a
    // quarter of half the span, the mask spans the middle half of the eye.
    DdrEye eye = WriteEye(200, 0.5, 0.1, 0.1);
    const double s = eye.dStrobeEdge[0];
    const double dHalfMask = 0.5 * (eye.dDataEdge[1] - eye.dDataEdge[0]) * 0.5;
    auto expectMask = [&](const Margins& m)
    {
        EXPECT_NEAR(m.dHold, HoldEntry(eye, 0.1) - (s + dHalfMask), 0.5 * ps);
        EXPECT_NEAR(m.dSetup, (s - dHalfMask) - SetupExit(eye, 0.1), 0.5 * ps);
        EXPECT_NEAR(m.dWindowPS, 312.5, 1e-6);
        EXPECT_EQ(m.dSetupHeight, 200.0);
        EXPECT_EQ(m.dSpreadPS, Margins::kSeed);
    };
    auto expectLevel = [&](const Margins& m)
    {
        EXPECT_NEAR(m.dHold, HoldEntry(eye, 0.1) - (s + 0.5 * ps), 0.5 * ps);
        EXPECT_NEAR(m.dSetup, (s - 200 * ps) - SetupExit(eye, 0.1), 0.5 * ps);
        EXPECT_NEAR(m.dSpreadPS, 0.0, 1e-6);
    };
    eye.pDQ->m_nTimingMode = 6;
    expectMask(Check(eye));
    expectMask(Check(eye, 0.0, 0, 1));
    eye.pDQ->m_nTimingMode = 2;
    expectMask(Check(eye));
    expectLevel(Check(eye, 0.0, 0, 1));
    eye.pDQ->m_nTimingMode = -1;
    expectLevel(Check(eye));
}

TEST(TimingMargins, ReferenceLevelChoice)
{
    DdrEyeParams p;
    p.nPeriods = 8;
    p.dLow = 0.2; // the data's middle, 0.7 V, differs from the strobe's
    DdrEye eye = GenerateDdrEye(p);
    eye.pDQ->SetEyeInformation(-1.0, 100, 100, 0.1, 0.1, 0);
    EXPECT_DOUBLE_EQ(Check(eye).dVrefMV, 700.0); // strobe levels 0.2 and 1.2
    eye.pDQS->m_dLevelHigh = 1.0;
    EXPECT_DOUBLE_EQ(Check(eye).dVrefMV, 600.0);
    eye.pDQS->m_dLevelLow = eye.pDQS->m_dLevelHigh = 0.0;
    EXPECT_DOUBLE_EQ(Check(eye).dVrefMV, 700.0); // no strobe levels: the data's middle
    eye.pDQ->m_dEyeVref = 0.6;
    EXPECT_DOUBLE_EQ(Check(eye).dVrefMV, 600.0);
    EXPECT_DOUBLE_EQ(Check(eye, 0.0, 1).dVrefMV, 700.0);

    // In mask mode m_dVcent wins, and a non-finite one falls back to the
    // strobe, not to m_dEyeVref.
    eye.pDQS->m_dLevelHigh = 1.0;
    eye.pDQ->m_nTimingMode = 6;
    eye.pDQ->m_dVcent = 0.65;
    EXPECT_DOUBLE_EQ(Check(eye).dVrefMV, 650.0);
    eye.pDQ->m_dVcent = INFINITY;
    EXPECT_DOUBLE_EQ(Check(eye).dVrefMV, 500.0);
}

TEST(TimingMargins, StrobeSearchSteps)
{
    // Both strobe edges in the wide window: it is cut down to the first.
    const DdrEye early = WriteEye(100, 100, 0.1, 0.1, -200 * ps);
    Margins m = Check(early);
    EXPECT_NEAR(m.dSpreadPS, 0.0, 1e-6);
    EXPECT_NEAR(m.dHold, HoldEntry(early, 0.1) - (early.dStrobeEdge[0] + 100 * ps), 0.5 * ps);

    // The edge found leaves no hold room: the window is tried dOffset away.
    const DdrEye late = WriteEye(100, 100, 0.1, 0.1, -300 * ps);
    EXPECT_EQ(Check(late).dHold, -1.0);
    m = Check(late, -625 * ps);
    EXPECT_NEAR(m.dHold, HoldEntry(late, 0.1) - (late.dStrobeEdge[0] + 100 * ps), 0.5 * ps);

    // No strobe edge: every output keeps its seed, single-ended or not.
    DdrEye none = WriteEye(100, 100, 0.1, 0.1);
    none.pDQ->m_dEyeVref = 2.0;
    none.pDQSBar.reset();
    m = Check(none);
    EXPECT_EQ(m.dSetup, Margins::kSeed);
    EXPECT_EQ(m.dVrefMV, Margins::kSeed);
    DdrEye apart = WriteEye(100, 100, 0.1, 0.1);
    apart.pDQSBar->Shift(0.0, 5.0);
    m = Check(apart);
    EXPECT_EQ(m.dHold, Margins::kSeed);
    EXPECT_EQ(m.dWindowPS, Margins::kSeed);
}

TEST(TimingMargins, CollectionReportsMissingSetupMargin)
{
    const DdrEye eye = WriteEye(100, 100, 0.1, 0.1);
    // A flat waveform has no setup margin at all.
    auto flat = [](int nType, int nRole)
    {
        auto* p = new CChartPointDArray;
        for (int i = 0; i < 128; ++i)
            p->Add(new CChartPointD(i * 1e-11, 0.0));
        p->m_dEyeVref = -1.0;
        p->m_nDataType = nType;
        p->m_nPinRole = nRole;
        return p;
    };
    CChartPointDArrayArray sets;
    EXPECT_EQ(sets.IsCheckSetupHoldMarginValue(eye.pDQS.get(), eye.pDQSBar.get(), 0, 0), 0);
    sets.Add(new CChartPointDArray(*eye.pDQ));
    sets.Add(flat(0, 2)); // strobe
    sets.Add(flat(2, 0)); // driver
    EXPECT_EQ(sets.IsCheckSetupHoldMarginValue(eye.pDQS.get(), eye.pDQSBar.get(), 0, 0), 0);
    sets.Add(flat(-1, 2)); // unclassified receivers count as data
    EXPECT_EQ(sets.IsCheckSetupHoldMarginValue(eye.pDQS.get(), eye.pDQSBar.get(), 0, 0), 1);
    EXPECT_EQ(sets.IsCheckSetupHoldMarginValue(eye.pDQS.get(), nullptr, 0, 0), 0);
    sets.DeleteAll();
}

TEST(TimingMargins, ReadCycleBranches)
{
    // Strobe after the data edge: the next crossing is farther, so tDQSQ is
    // the distance to it and tQH the distance back to the crossing. Before
    // the crossing, tQH is the distance to the left one. A strobe beyond the
    // narrow window is found by the second, wider one.
    double dTQH = 0.0, dTDQSQ = 0.0;
    for (double dSkew : {20 * ps, -20 * ps, 250 * ps})
    {
        DdrEyeParams p;
        p.nReadCycle = 1;
        p.dStrobeSkew = dSkew;
        const DdrEye eye = GenerateDdrEye(p);
        eye.pDQ->CheckReadCycleTimeMargin(eye.pDQS.get(), eye.pDQSBar.get(), dTQH, dTDQSQ, 0.0, 0);
        EXPECT_NEAR(dTDQSQ, eye.dDataEdge[1] - eye.dStrobeEdge[0], 0.5 * ps) << dSkew;
        EXPECT_NEAR(dTQH, std::fabs(dSkew), 0.5 * ps) << dSkew;
    }

    // Hand-made lines, 10 ps a sample: rising/falling pairs cross at 200 and
    // 800 ps (left of the window edge) and at 850 ps (right of it); a
    // single-ended strobe spreads from 395 to 495 ps. The left distance,
    // 405 ps, exceeds the right one, 355 ps.
    CChartPointDArray dq;
    auto addLine = [&dq](double y0, double dFirst, double dSecond)
    {
        for (int i = 0; i < 128; ++i)
        {
            const double x = i * 10 * ps;
            const double y1 = 1.2 - y0;
            const double y = x < dFirst ? y0 : x < dSecond ? y1 : y0;
            const bool bRamp = std::fabs(x - dFirst) < 5 * ps || std::fabs(x - dSecond) < 5 * ps;
            dq.Add(new CChartPointD(x, bRamp ? 0.6 : y));
        }
    };
    addLine(0.0, 200 * ps, 800 * ps);
    addLine(1.2, 200 * ps, 800 * ps);
    addLine(0.0, 200 * ps, 850 * ps);
    addLine(1.2, 200 * ps, 850 * ps);
    CChartPointDArray dqs;
    for (double dEdge : {395 * ps, 495 * ps})
        for (int i = 0; i < 128; ++i)
            dqs.Add(new CChartPointD(i * 10 * ps, i * 10 * ps < dEdge ? 0.0 : 1.2));
    dqs.m_dLevelHigh = 1.2;
    dqs.m_nStrobeWindowMode = 1;
    dq.CheckReadCycleTimeMargin(&dqs, nullptr, dTQH, dTDQSQ, 0.0, 0);
    EXPECT_NEAR(dTDQSQ, 800 * ps - 395 * ps, 1e-3 * ps);
    EXPECT_NEAR(dTQH, 850 * ps - 395 * ps, 1e-3 * ps);
}

TEST(TimingMargins, FilteredEyeLineWalkEqualsEveryPair)
{
    for (unsigned nSeed = 1; nSeed <= 6; ++nSeed)
    {
        DdrEyeParams p;
        p.nPeriods = 48;
        p.nSeed = nSeed;
        p.nReadCycle = int(nSeed % 2);
        p.dDataJitterRms = (nSeed % 3) * 8 * ps;
        p.dStrobeJitterRms = (nSeed % 2) * 5 * ps;
        p.dIsi = (nSeed % 4) * 0.08;
        p.nSamplesPerPeriod = 64 + 16 * int(nSeed);
        const DdrEye eye = GenerateDdrEye(p);

        CChartPointDArrayArray lines;
        eye.pDQ->ExtractEyeLinePointArray(&lines);
        const std::vector<int> types = plotvane::EyeLinePulseTypes(lines, 1.2, 0.0, nSeed > 3);
        for (int k = 0; k < 4; ++k)
        {
            const double dLo = (0.1 + 0.2 * k) * p.dPeriod * (nSeed % 3) / 2.0;
            const double dHi = dLo + (0.3 + 0.1 * k) * p.dPeriod;
            plotvane::EyeCrossExtent fast{1.7976931348623157e308, 2.2250738585072014e-308, false};
            plotvane::EyeCrossExtent slow = fast;
            plotvane::AccumulateEyeLineCrossings(lines, types, 0.6, 0.12, dLo, dHi, 1e9, 100.0,
                                                 fast);
            plotvane::AccumulateEyeLineCrossings(lines, types, 0.6, 0.12, dLo, dHi, 1e9, 100.0,
                                                 slow, plotvane::EyeLineWalk::EveryPair);
            EXPECT_EQ(fast.bFound, slow.bFound);
            EXPECT_TRUE(SameBits(fast.dMin, slow.dMin)) << nSeed << " " << k;
            EXPECT_TRUE(SameBits(fast.dMax, slow.dMax)) << nSeed << " " << k;
        }
        lines.DataRemoveAll();

        double q1 = 0.0, d1 = 0.0, q2 = 0.0, d2 = 0.0;
        plotvane::ReadCycleTimeMargin(*eye.pDQ, eye.pDQS.get(), eye.pDQSBar.get(), q1, d1, 0.0, 0,
                                      plotvane::EyeLineWalk::Filtered);
        plotvane::ReadCycleTimeMargin(*eye.pDQ, eye.pDQS.get(), eye.pDQSBar.get(), q2, d2, 0.0, 0,
                                      plotvane::EyeLineWalk::EveryPair);
        EXPECT_TRUE(SameBits(q1, q2) && SameBits(d1, d2)) << nSeed;
    }
}
