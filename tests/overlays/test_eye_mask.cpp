// Eye masks and the bathtub measure on real frames: masks placed through
// the mouse position a click would leave, checked by the mask colour at
// their corners and by the stored rectangle; bathtub widths by the texts
// the hook reports and the arrows on the log axis.
#include "level_overlay_fixture.h"

#include <cmath>

namespace
{
constexpr COLORREF kMask = 0x0000FF;
// Curves of one rate are walked in the order of their colours.
constexpr COLORREF kCurveA = 0x40C0FF;
constexpr COLORREF kCurveB = 0xFF8000;
constexpr double ns = 1e-9;

class EyeMask : public LevelOverlayTest
{
protected:
    void SetUpChart() override
    {
        LevelOverlayTest::SetUpChart();
        CChartPointDArray ramp;
        ramp.Add(new CChartPointD(0.0, 0.0));
        ramp.Add(new CChartPointD(1 * ns, 1.2));
        AddSet(ramp, kGreen);
        m.SetChartDrawFit();
        Paint();
        // Inner half width 0.1 ns, tips 0.3 ns out, 0.2 V above and below:
        // the width field counts the percentages in hundredths of a half.
        m.m_dEyeMaskTopPercent = 20.0;
        m.m_dEyeMaskBottomPercent = 60.0;
        m.m_dEyeMaskWidth = 200 * ns;
        m.m_dEyeMaskHeight = 0.4;
        m.m_nEyeMaskCenterMode = 2;
        mouse = ToClient(0.5 * ns, 0.6);
        m.m_ptCurrentMouse = CPointN(mouse.x, mouse.y);
    }
    // Mask pixels within 2 pixels of a logical point.
    bool MaskAt(double lx, double ly)
    {
        const CPoint p = Client(lx, ly);
        return ColorNear(kMask, p.x, p.y, 2);
    }
    const CRectD& Stored() { return *m.m_pEyeMaskRectArray->GetAt(0); }
    CPoint mouse;
};

TEST_F(EyeMask, AFollowingHexagonIsFixedByTheClickAndFollowsTheFieldsAfterwards)
{
    const CPointF c = view->ClientPointToView(mouse);
    const double b = 0.3 * ns * Gx(), a = 0.1 * ns * Gx(), hh = 0.2 * Gy();
    m.m_bEyeMaskFollowMouse = 1;
    Paint();
    EXPECT_TRUE(MaskAt(c.x - b, c.y));
    EXPECT_TRUE(MaskAt(c.x + b, c.y));
    EXPECT_TRUE(MaskAt(c.x, c.y + hh));
    EXPECT_TRUE(MaskAt(c.x + a, c.y - hh));
    EXPECT_FALSE(MaskAt(c.x, c.y));

    // The click stores one mask as wide as the tips and ends the following.
    m.MakeEyeMaskArray();
    m.MakeEyeMaskArray();
    ASSERT_EQ(m.m_pEyeMaskRectArray->GetSize(), 1);
    EXPECT_EQ(m.m_bEyeMaskFollowMouse, 0);
    EXPECT_NEAR(Stored().CenterPoint().x, c.x, 1e-9 * b);
    EXPECT_NEAR(Stored().CenterPoint().y, c.y, 1e-9 * hh);
    EXPECT_NEAR(Stored().GetWidth(), 2 * b, 1e-9 * b);
    EXPECT_NEAR(Stored().GetHeight(), 2 * hh, 1e-9 * hh);

    // Shown only once the host makes masks visible.
    Paint();
    EXPECT_FALSE(MaskAt(c.x - b, c.y));
    m.m_bEyeMaskVisible = 1;
    Paint();
    EXPECT_TRUE(MaskAt(c.x - b, c.y));

    // A stored hexagon takes new sizes at once.
    m.m_dEyeMaskBottomPercent = 90.0;
    Paint();
    EXPECT_TRUE(MaskAt(c.x - 1.5 * b, c.y));
    EXPECT_FALSE(MaskAt(c.x - b, c.y));

    // Equal percentages make a rectangle, and a stored one keeps the size it
    // was placed with: its sides stand at the old tips, not at the new a.
    m.m_dEyeMaskBottomPercent = 20.0;
    Paint();
    EXPECT_TRUE(MaskAt(c.x - b, c.y));
    EXPECT_TRUE(MaskAt(c.x + b, c.y));
    EXPECT_FALSE(MaskAt(c.x - a, c.y));
}

TEST_F(EyeMask, TheCentreModeDecidesTheMaskHeightOnTheChart)
{
    const CPointF c = view->ClientPointToView(mouse);
    m.m_dEyeMaskCenterY = 0.3;
    const struct
    {
        int nMode;
        double cy;
    } cases[] = {{0, double(float(Gy() * 0.3))}, {1, 0.0}, {5, c.y}};
    for (const auto& k : cases)
    {
        m.m_nEyeMaskCenterMode = k.nMode;
        m.MakeEyeMaskArray();
        EXPECT_NEAR(Stored().CenterPoint().y, k.cy, 1e-6 * Gy()) << "mode " << k.nMode;
        EXPECT_NEAR(Stored().CenterPoint().x, c.x, 1e-6 * Gx()) << "mode " << k.nMode;
    }
    // Without a width the mask is a vertical line; a stored mask stops any
    // following one.
    m.m_dEyeMaskWidth = 0.0;
    m.MakeEyeMaskArray();
    EXPECT_EQ(Stored().Left(), Stored().Right());
    m.m_bEyeMaskFollowMouse = 1;
    Paint();
    EXPECT_FALSE(MaskAt(c.x, c.y + 0.15 * Gy()));
    m.m_bEyeMaskVisible = 1;
    Paint();
    EXPECT_TRUE(MaskAt(Stored().Left(), Stored().CenterPoint().y + 0.15 * Gy()));
}

// A bathtub on a log BER axis, two curves at 1e-12 and one at 1e-6.
class Bathtub : public LevelOverlayTest
{
protected:
    void SetUpChart() override
    {
        LevelOverlayTest::SetUpChart();
        CChartPointDArray tub;
        for (int i = 0; i <= 100; ++i)
        {
            const double t = i * 0.01 * ns;
            const double d = std::min(t, 1 * ns - t) / ns;
            tub.Add(new CChartPointD(t, 0.5 * std::pow(10.0, -36.0 * d)));
        }
        AddSet(tub, kGreen);
        m.m_nMagnitudeScale = 1;
        m.m_mapBathtub["1e-12"][kCurveA] = CPointD(0.33 * ns, 0.67 * ns);
        m.m_mapBathtub["1e-12"][kCurveB] = CPointD(0.30 * ns, 0.72 * ns);
        m.m_mapBathtub["1e-6"][kCurveA] = CPointD(0.17 * ns, 0.83 * ns);
    }
};

TEST_F(Bathtub, WidthsStackBelowTheirArrowsAndRestartPerErrorRate)
{
    m.m_bBathtub = 1;
    Show();
    const plotvane::ChartFrame f = view->GetChartFrame();
    const double H = f.Height();
    const std::vector<plotvane::ChartText>& t = texts;
    // On a nanosecond axis the widths read in ns.
    ASSERT_EQ(Strings(), (std::vector<std::string>{"0.3400", "0.4200", "0.6600"}));
    const double y12 = double(log10f(1e-12f)), y6 = double(log10f(1e-6f));
    ExpectText(t[0].strText, 0.5 * ns * Gx(), y12 - H / 20, kCurveA);
    ExpectText(t[1].strText, 0.51 * ns * Gx(), y12 - 2 * H / 20, kCurveB);
    ExpectText(t[2].strText, 0.5 * ns * Gx(), y6 - H / 20, kCurveA);

    // The arrows lie on their error rates, between the crossings; arrows of
    // one rate share the row, the later one over the earlier.
    const CPoint l = Client(0.30 * ns * Gx(), y12), r = Client(0.72 * ns * Gx(), y12);
    EXPECT_GT(Image().CountColor(kCurveB, l.x, l.y - 2, r.x, l.y + 3), (r.x - l.x) / 2);
    const CPoint h = Client(0.33 * ns * Gx(), y12);
    EXPECT_GT(Image().CountColor(kCurveA, h.x, h.y - 6, h.x + 12, h.y + 7), 5);
    EXPECT_GT(RowPixels(kCurveA, y6, 2), 100);
}

TEST_F(Bathtub, DrawnOnlyWithTheFlagOnALogMagnitudeAxis)
{
    // {flag, magnitude, log scale} -> texts
    const int cases[][4] = {{0, 1, 1, 0}, {1, 0, 1, 0}, {1, 1, 0, 0}, {1, 1, 1, 3}};
    for (const auto& k : cases)
    {
        m.m_bBathtub = k[0];
        m.m_bUseMagnitude = k[1];
        m.m_nMagnitudeScale = k[2];
        Show();
        EXPECT_EQ(texts.size(), size_t(k[3])) << k[0] << k[1] << k[2];
    }
    m.ClearBathtubMeasureData();
    Show();
    EXPECT_TRUE(texts.empty());
}
} // namespace
