// Target impedance limits over |Z| curves, drawn offscreen at 800 x 600 on
// linear and logarithmic axes and found by their cyan pixels; the zoom to
// the limits read back from the view area it sets.
#include "overlay_fixture.h"

#include <cmath>
#include <utility>

namespace
{
constexpr COLORREF kCyan = 0xFFFF00;
constexpr COLORREF kYellow = 0x00FFFF;
constexpr double MHz = 1e6;

void AddCorner(CArrayPointD& line, double f, double z)
{
    CPointD p(f, z);
    line.Add(p);
}
} // namespace

class TargetImpedance : public OverlayFixture
{
protected:
    void SetUpChart() override
    {
        // The fixture's value texts are yellow, the marked point's colour.
        view->SetLabelColor(kGrey);
        m.m_nFreqDomainMode = 2;
        m.m_bUseMagnitude = 1;
        m.m_bTargetImpedance = 1;
    }

    // A limit serving set nIndex; steps of (start, end, impedance).
    CTargetImpWithinFreqRange& AddLimit(int nIndex, std::initializer_list<CPoint3D> steps = {})
    {
        CTargetImpWithinFreqRangeArray arr;
        if (m.m_InputData.m_pTargetImpArray != nullptr)
            arr = *m.m_InputData.m_pTargetImpArray;
        auto* p = new CTargetImpWithinFreqRange;
        p->AddDataIndex(nIndex);
        for (const CPoint3D& s : steps)
            p->m_pLimitPoints->Add(new CPoint3D(s));
        arr.Add(p);
        m.m_InputData.SetTargetImpedanceData(&arr);
        return *m.m_InputData.m_pTargetImpArray->GetAt(arr.GetSize() - 1);
    }

    // A rising |Z| from 0 to 0.1 ohm over 0..100 MHz; the limits below stay
    // clear of it where they are probed, and off the grid lines, which are
    // drawn first and keep their pixels.
    int LoadLinear()
    {
        CChartPointDArray a;
        a.Add(new CChartPointD(0.0, 0.0));
        a.Add(new CChartPointD(100 * MHz, 0.1));
        const int i = AddSet(a, kGreen);
        m.SetChartDrawFit();
        return i;
    }
    bool CyanAt(double x, double y) { return ColorAt(kCyan, x, y); }
    int AllCyan() { return CountColor(kCyan, CRect(0, 0, kWidth, kHeight)); }
};

TEST_F(TargetImpedance, StepsJoinedByRisersAndTheMarkedPoint)
{
    const int i = LoadLinear();
    AddLimit(i, {{0.0, 30 * MHz, 0.075}, {50 * MHz, 100 * MHz, 0.025}});
    m.m_dTargetImpedanceFreq = 20 * MHz;
    m.m_dTargetImpedanceValue = 0.06;
    Paint();
    EXPECT_TRUE(CyanAt(15 * MHz, 0.075));
    EXPECT_TRUE(CyanAt(40 * MHz, 0.05)); // the riser's middle
    EXPECT_TRUE(CyanAt(75 * MHz, 0.025));
    EXPECT_FALSE(CyanAt(75 * MHz, 0.075));
    EXPECT_TRUE(ColorAt(kYellow, 20 * MHz, 0.06, 1));

    // One step is one horizontal segment.
    AddLimit(i); // a later record serving the same set changes nothing
    CArrayPoint3D& steps = *m.m_InputData.m_pTargetImpArray->GetAt(0)->m_pLimitPoints;
    delete steps.GetAt(1);
    steps.RemoveAt(1);
    Paint();
    EXPECT_TRUE(CyanAt(15 * MHz, 0.075));
    EXPECT_FALSE(CyanAt(40 * MHz, 0.05));
    EXPECT_FALSE(CyanAt(75 * MHz, 0.025));
}

TEST_F(TargetImpedance, WhatSwitchesTheLimitsOff)
{
    const int i = LoadLinear();
    CTargetImpWithinFreqRange& lim = AddLimit(i, {{0.0, 100 * MHz, 0.075}});
    Paint();
    ASSERT_GT(AllCyan(), 0);

    // Each alone: the mode-1 frequency chart, no magnitude, the flag off.
    for (auto [p, off] : {std::pair{&m.m_nFreqDomainMode, 1}, {&m.m_bUseMagnitude, 0},
                          {&m.m_bTargetImpedance, 0}})
    {
        const int on = std::exchange(*p, off);
        Paint();
        EXPECT_EQ(AllCyan(), 0) << off;
        *p = on;
    }
    // A limit for another set, and a draw entry past the sets.
    lim.m_arrDataIndex.RemoveAll();
    lim.AddDataIndex(i + 1);
    m.m_InputData.AddDrawDataSetIndex(i + 1);
    Paint();
    EXPECT_EQ(AllCyan(), 0);
}

// Corners with falling X are skipped pair by pair, and a segment that
// starts left of the plot frame is cut where it enters it, so nothing lies
// over the value texts.
TEST_F(TargetImpedance, PolylineCutAtTheFrameAndSkippedWhereXFalls)
{
    const int i = LoadLinear();
    CTargetImpWithinFreqRange& lim = AddLimit(i);
    lim.m_nLimitType = 2;
    AddCorner(*lim.m_pLimitLine2, -50 * MHz, 0.085);
    AddCorner(*lim.m_pLimitLine2, 50 * MHz, 0.085);
    AddCorner(*lim.m_pLimitLine2, 40 * MHz, 0.015);
    AddCorner(*lim.m_pLimitLine2, 90 * MHz, 0.015);
    AddCorner(*lim.m_pLimitLine1, 0.0, 0.055); // not the list in use
    AddCorner(*lim.m_pLimitLine1, 100 * MHz, 0.055);
    Paint();
    EXPECT_TRUE(CyanAt(25 * MHz, 0.085));
    EXPECT_TRUE(CyanAt(65 * MHz, 0.015));
    EXPECT_FALSE(CyanAt(45 * MHz, 0.05));
    EXPECT_FALSE(CyanAt(75 * MHz, 0.055));

    const plotvane::ChartFrame f = view->GetChartFrame();
    const CPoint origin = view->ViewPointToClient(CPointF(float(f.OriginX()), float(f.OriginY())));
    const int row = ToClient(0.0, 0.085).y;
    EXPECT_EQ(CountColor(kCyan, CRect(0, row - 2, origin.x - 1, row + 3)), 0);
    EXPECT_GT(CountColor(kCyan, CRect(origin.x, row - 2, origin.x + 4, row + 3)), 0);
}

// On log axes the limits go through log10; a zero impedance sits at logical
// 0 (that of 1 ohm) instead of at minus infinity.
TEST_F(TargetImpedance, LogAxesTakeLog10AndKeepZeroAtLogicalZero)
{
    m.m_nFrequencyScale = 1;
    m.m_nMagnitudeScale = 1;
    CChartPointDArray z;
    for (int k = 3; k <= 9; ++k)
        z.Add(new CChartPointD(std::pow(10.0, k), 1e3 / std::pow(10.0, k)));
    const int i = AddSet(z, kGreen);
    m.SetChartDrawFit();
    // Off the decade and minor grid lines, which keep their pixels.
    AddLimit(i, {{1.5e4, 1.5e6, 0.35}, {1.5e6, 1.5e8, 0.0}});
    Paint();

    auto cyanNear = [&](double x, double y)
    {
        const CPoint p = view->ViewPointToClient(CPointF(log10f(float(x)), log10f(float(y))));
        return ColorNear(kCyan, p.x, p.y, 2);
    };
    EXPECT_TRUE(cyanNear(1.5e5, 0.35));
    EXPECT_FALSE(cyanNear(1.5e3, 0.35));
    // The riser climbs from 0.35 ohm to logical 0, that of 1 ohm.
    EXPECT_TRUE(cyanNear(1.5e6, 0.65));
    EXPECT_FALSE(cyanNear(1.5e6, 0.25));
}

TEST_F(TargetImpedance, ZoomPDNAreaReachesTheLastStep)
{
    const int i = LoadLinear();
    AddLimit(i, {{0.0, 30 * MHz, 0.07}, {50 * MHz, 80 * MHz, 0.03}});
    m.m_dTargetImpedanceValue = 0.05;
    Paint();
    const CRectF before = view->m_rcViewArea;

    m.m_bTargetImpedance = 0;
    view->ZoomPDNArea();
    EXPECT_EQ(view->m_rcViewArea, before);

    m.m_bTargetImpedance = 1;
    m.m_nBaseZoomLevel = 2;
    view->m_nZoomExponent = 5;
    m.m_bClickZoomAvailable = 1;
    m.m_bClickZoomStarted = 1;
    const double mx = view->GetViewWidth() * 0.001;
    const double my = view->GetViewHeight() * 0.001;
    view->ZoomPDNArea();
    const double gx = CPlotvane_InputData::m_dViewScaleX;
    const double gy = CPlotvane_InputData::m_dViewScaleY;
    const CRectF& rc = view->m_rcViewArea;
    // Only the last step counts: 0.07 of the first stays out of view.
    EXPECT_FLOAT_EQ(float(rc.Right()), float(80 * MHz * gx + mx));
    EXPECT_FLOAT_EQ(float(rc.Top()), float(0.05 * gy + my));
    const double w = 80 * MHz * gx + 2 * mx;
    EXPECT_NEAR(rc.Left(), -mx - w / 9.0, w * 1e-5);
    EXPECT_EQ(view->m_nZoomExponent, 2);
    EXPECT_EQ(m.m_bClickZoomAvailable, 0);
    EXPECT_EQ(m.m_bClickZoomStarted, 0);

    // A polyline record without steps reaches its last corner.
    CTargetImpWithinFreqRange& lim = *m.m_InputData.m_pTargetImpArray->GetAt(0);
    lim.m_pLimitPoints->DeleteAll();
    lim.m_nLimitType = 1;
    AddCorner(*lim.m_pLimitLine1, 10 * MHz, 0.08);
    AddCorner(*lim.m_pLimitLine1, 60 * MHz, 0.04);
    view->ZoomPDNArea();
    EXPECT_NEAR(view->m_rcViewArea.Right(), 60 * MHz * gx, 60 * MHz * gx * 0.01);
}
