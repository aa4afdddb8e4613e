// The eye jitter overlay on real frames: synthetic DDR eyes loaded the way a
// host loads them, drawn offscreen at 800 x 600, checked by the colours of
// its boxes and lines where they belong, by the margins it stores and by
// the margin texts it prints.
#include "level_overlay_fixture.h"

#include <plotvane/measure/EyeGenerator.h>

#include <cmath>

using plotvane::DdrEye;
using plotvane::DdrEyeParams;
using plotvane::GenerateDdrEye;

namespace
{
constexpr double ps = 1e-12;
constexpr COLORREF kStrobeBox = 0xED92A2;
constexpr COLORREF kRequiredBox = 0xEBD294;
constexpr COLORREF kRed = 0x0000FF;
constexpr COLORREF kBlue = 0xFF0000;

// A write eye whose strobe edges spread by jitter, so that the strobe box
// has a width.
DdrEye WriteEye(double dSetupPS, double dHoldPS, int nBit = 0)
{
    DdrEyeParams p;
    p.nPeriods = 16;
    p.dStrobeJitterRms = 8 * ps;
    p.nBit = nBit;
    DdrEye eye = GenerateDdrEye(p);
    eye.pDQ->SetEyeInformation(-1.0, dSetupPS, dHoldPS, 0.1, 0.1, 0);
    return eye;
}

// A read eye whose strobe lags the data edges by dSkew. Enough periods that
// every pair of single-edge lines occurs in both slots.
DdrEye ReadEye(double dSkew)
{
    DdrEyeParams p;
    p.nReadCycle = 1;
    p.dStrobeSkew = dSkew;
    return GenerateDdrEye(p);
}

struct Margins
{
    double dSetup = -1.0, dHold = -1.0;
};

// The measurement's margins of the same eye, in seconds.
Margins Measured(const DdrEye& eye, int bVrefFromData)
{
    Margins r;
    double h1 = 0, h2 = 0, v = 0, w = 0, s = 0;
    eye.pDQ->CheckSetupHoldMargin(eye.pDQS.get(), eye.pDQSBar.get(), r.dSetup, r.dHold, h1, h2, v,
                                  w, s, 0.0, bVrefFromData, 0);
    return r;
}
} // namespace

class EyeJitter : public LevelOverlayTest
{
protected:
    // DQ, DQS and DQS# as a host adds them; answers the DQ's index.
    int Load(const DdrEye& eye)
    {
        const int i = AddSet(*eye.pDQ, kGreen);
        AddSet(*eye.pDQS, kWhite);
        AddSet(*eye.pDQSBar, kGrey);
        return i;
    }
    // Text in the label colour where the margin summary stands.
    int SummaryPixels() { return CountColor(kLabel, SummaryRect()); }
    CRect SummaryRect()
    {
        const CRectF rc = view->GetViewRectLP();
        const CPoint a = view->ViewPointToClient(
            CPointF(rc.Right() - rc.width * 0.25f, rc.Top() - rc.height / 15.0f));
        return CRect(a.x, a.y - 40, kWidth, a.y + 4);
    }
};

TEST_F(EyeJitter, WriteEyeBoxesLevelAndMarginsAgreeWithTheMeasurement)
{
    const DdrEye eye = WriteEye(100, 100);
    const int dq = Load(eye);
    Show();

    // Strobe box between the earliest and latest strobe edge, required boxes
    // of 100 ps on either side, all 0.1 V around the 0.6 V level.
    const double e1 = eye.dStrobeEdgeMin[0];
    const double e2 = eye.dStrobeEdgeMax[0];
    ASSERT_GT(e2 - e1, 10 * ps);
    EXPECT_GT(CountColor(kStrobeBox, DataRect(e1, 0.52, e2, 0.68)), 10);
    EXPECT_GT(CountColor(kRequiredBox, DataRect(e2, 0.52, e2 + 100 * ps, 0.68)), 30);
    EXPECT_GT(CountColor(kRequiredBox, DataRect(e1 - 100 * ps, 0.52, e1, 0.68)), 30);
    EXPECT_EQ(CountColor(kRequiredBox, DataRect(e2 + 130 * ps, 0.52, e2 + 200 * ps, 0.68)), 0);
    EXPECT_EQ(CountColor(kStrobeBox, DataRect(e1, 0.8, e2, 1.0)), 0);
    // The red level line across the eye.
    const CPoint lv = ToClient(eye.dPeriod * 0.5, 0.6);
    EXPECT_GT(Image().CountColor(kRed, 100, lv.y - 1, kWidth, lv.y + 2), 300);

    // Margins in whole ps, as the measurement finds them; texts shown.
    const Margins ref = Measured(eye, 0);
    ASSERT_GT(ref.dHold, 0.0);
    EXPECT_GT(Set(dq).m_dHoldMargin, 0.0);
    EXPECT_NEAR(Set(dq).m_dHoldMargin, std::trunc(ref.dHold / ps), 1.0);
    EXPECT_NEAR(Set(dq).m_dSetupMargin, std::trunc(ref.dSetup / ps), 1.0);
    EXPECT_EQ(Set(dq).m_dHoldMargin, std::trunc(Set(dq).m_dHoldMargin));
    EXPECT_GT(SummaryPixels(), 20);
    EXPECT_EQ(Number("Setup Margin: "), Set(dq).m_dSetupMargin);
    EXPECT_EQ(Number("Hold Margin: "), Set(dq).m_dHoldMargin);
}

TEST_F(EyeJitter, DataInsideTheHoldBoxGivesANegativeMargin)
{
    // A required hold time that reaches past the next data edge.
    const DdrEye eye = WriteEye(100, 350);
    const int dq = Load(eye);
    Show();
    const Margins ref = Measured(eye, 1);
    ASSERT_LT(ref.dHold, 0.0);
    EXPECT_LT(Set(dq).m_dHoldMargin, 0.0);
    EXPECT_NEAR(Set(dq).m_dHoldMargin, std::trunc(ref.dHold / ps), 1.0);
    EXPECT_GT(Set(dq).m_dSetupMargin, 0.0);
    // The blue line where the data enters, over the whole height.
    const double entry = eye.dStrobeEdgeMax[0] + 350 * ps + ref.dHold;
    const CPoint a = ToClient(entry, 0.0);
    EXPECT_GT(Image().CountColor(kBlue, a.x - 2, 0, a.x + 3, kHeight), kHeight / 2);
}

TEST_F(EyeJitter, MaskModeMarginsNeverTurnNegative)
{
    // A 200 mV mask half a period wide around the strobe edge.
    DdrEye eye = WriteEye(0, 0);
    eye.pDQ->m_nTimingMode = 6;
    eye.pDQ->SetEyeInformation(-1.0, 200, 0.5, 0.1, 0.1, 0);
    const int dq = Load(eye);
    Show();
    const Margins ref = Measured(eye, 0);
    ASSERT_GT(ref.dHold, 20 * ps);
    ASSERT_GT(ref.dSetup, 20 * ps);
    EXPECT_NEAR(Set(dq).m_dHoldMargin, std::trunc(ref.dHold / ps), 1.0);
    EXPECT_NEAR(Set(dq).m_dSetupMargin, std::trunc(ref.dSetup / ps), 1.0);
    EXPECT_EQ(Image().CountColor(kRequiredBox), 0);
    const double c = (eye.dStrobeEdgeMin[0] + eye.dStrobeEdgeMax[0]) * 0.5;
    EXPECT_GT(CountColor(kStrobeBox, DataRect(c - 50 * ps, 0.52, c + 50 * ps, 0.68)), 50);

    // A mask wider than the eye: the data crosses inside it, and the
    // margins are still distances, not violations.
    Set(dq).m_dEyeHoldTime = 1.6;
    m.RedrawGLChartView();
    EXPECT_GT(Set(dq).m_dHoldMargin, 0.0);
    EXPECT_GT(Set(dq).m_dSetupMargin, 0.0);
}

TEST_F(EyeJitter, ReadCycleDrawsTqhAndTdqsq)
{
    const DdrEye eye = ReadEye(20 * ps);
    const int dq = Load(eye);
    Show();
    // No setup/hold boxes; the strobe box (here an outline) over the eye's
    // full height at the strobe edge.
    EXPECT_EQ(Image().CountColor(kRequiredBox), 0);
    const CPoint s = ToClient(eye.dStrobeEdge[0], 0.6);
    EXPECT_GT(Image().CountColor(kStrobeBox, s.x - 2, 0, s.x + 3, kHeight), 100);
    // Here tQH is the long way, from the strobe edge to the next data edge,
    // and tDQSQ the 20 ps back to the data edge the strobe follows.
    const double dNext = eye.dDataEdge[1] - eye.dStrobeEdge[0];
    EXPECT_NEAR(Set(dq).m_dSetupMargin, std::trunc(dNext / ps), 1.0);
    EXPECT_NEAR(Set(dq).m_dHoldMargin, 20.0, 1.0);
    // The tQH arrow a quarter swing above the middle spans that distance.
    const CPoint up = ToClient(0.0, 0.6 + 0.3);
    const CPoint from = ToClient(eye.dStrobeEdge[0], 0.0);
    const CPoint to = ToClient(eye.dDataEdge[1], 0.0);
    EXPECT_GT(Image().CountColor(kRed, from.x + 5, up.y - 1, to.x - 5, up.y + 2), to.x - from.x);
    // The summary lines are red here, not in the label colour.
    EXPECT_EQ(SummaryPixels(), 0);
    const CRect rc = SummaryRect();
    EXPECT_GT(Image().CountColor(kRed, rc.left, 0, rc.right, rc.bottom), 20);
}

TEST_F(EyeJitter, TwoEyesStoreNothingAndMeasureTypeTenRemovesTheOverlay)
{
    const DdrEye eye = WriteEye(100, 100);
    const DdrEye second = WriteEye(100, 100, 1);
    const int dq = Load(eye);
    const int dq2 = AddSet(*second.pDQ, kGreen);
    Set(dq).m_dHoldMargin = Set(dq2).m_dHoldMargin = -777.0;
    Show();
    // Boxes for both, no summary and no stored margin.
    EXPECT_GT(Image().CountColor(kRequiredBox), 60);
    EXPECT_EQ(Set(dq).m_dHoldMargin, -777.0);
    EXPECT_EQ(Set(dq2).m_dHoldMargin, -777.0);
    EXPECT_EQ(SummaryPixels(), 0);

    m.m_InputData.RemoveDrawDataSetByValue(dq2);
    m.m_nMeasureType = 10;
    Show();
    EXPECT_EQ(Image().CountColor(kRequiredBox), 0);
    EXPECT_EQ(Image().CountColor(kStrobeBox), 0);
    EXPECT_EQ(Set(dq).m_dHoldMargin, -777.0);

    // The list is made again only on a redraw request, never by a paint.
    view->m_nDisplayList = 0xFFFFFFFFu;
    Paint();
    EXPECT_EQ(view->m_nDisplayList, 0xFFFFFFFFu);
    m.m_nMeasureType = -1;
    m.RedrawGLChartView();
    EXPECT_NE(view->m_nDisplayList, 0xFFFFFFFFu);
    EXPECT_GT(Set(dq).m_dHoldMargin, 0.0);
}

TEST_F(EyeJitter, StrobesPairByTheFirstNameToken)
{
    auto strobe = [this](const char* name)
    {
        const int i = m.m_InputData.AddNewDataSet();
        Set(i).m_strName = name;
        Set(i).m_nDataType = 0;
        Set(i).m_nPinRole = 2;
        return &Set(i);
    };
    CChartPointDArray* a = strobe("BL0_DQS_RX");
    strobe("BL1_DQS_RX");
    strobe("BL0_DQS#_RX");
    CChartPointDArray* c = strobe("BL0_X");
    view->SetDQSChartPointArray("BL0_DQ3_RX");
    EXPECT_EQ(view->m_pDQSArray1, a);
    EXPECT_EQ(view->m_pDQSArray2, c);
    view->SetDQSChartPointArray("DQ3");
    EXPECT_EQ(view->m_pDQSArray1, nullptr);
    EXPECT_EQ(view->m_pDQSArray2, nullptr);
}
