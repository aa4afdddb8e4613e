// The frame of a paint: the visible rectangle and plot origin every layer
// draws by, the log flags, and the maps from data to logical units and
// between logical units and client pixels, on a real offscreen chart.
#include "chart_fixture.h"

#include <cmath>

namespace
{

using ChartFrameTest = ChartFixture;

// Where the axes cross on the screen: a tenth in from the left, a tenth up
// from the bottom, whatever the zoom and pan.
TEST_F(ChartFrameTest, OriginIsATenthInAndTheAxesCrossThere)
{
    SetFrame(-50, 100, 350, 400);
    for (int zoom : {0, 3, -2})
    {
        SCOPED_TRACE(zoom);
        view->m_nZoomExponent = zoom;
        Paint();
        const plotvane::ChartFrame f = view->GetChartFrame();
        EXPECT_EQ(f.VisibleRect(), view->GetViewRectLP());
        EXPECT_NEAR(f.OriginX(), f.Left() + f.Width() / 10, 1e-4 * f.Width());
        EXPECT_NEAR(f.OriginY(), f.Bottom() + f.Height() / 10, 1e-4 * f.Height());
        EXPECT_EQ(view->GetOriginPoint(), CPointD(f.OriginX(), f.OriginY()));
        EXPECT_EQ(f.TopRight(), CPointD(f.Right(), f.Top()));

        const CPointD px = f.LogicalToPixel(f.OriginX(), f.OriginY());
        EXPECT_NEAR(px.x, kWidth / 10.0, 0.01);
        EXPECT_NEAR(px.y, kHeight * 0.9, 0.01);
        // The axes were drawn from that very point.
        EXPECT_TRUE(ColorNear(view->GetAxisColor(), int(px.x), int(px.y) - 20));
        EXPECT_TRUE(ColorNear(view->GetAxisColor(), int(px.x) + 20, int(px.y)));
    }
}

// The clipper, axes and grid meet at the origin summed in float; the
// eye-jitter marks start from the same tenth taken in double. Both forms
// are kept apart, bit for bit.
TEST_F(ChartFrameTest, OriginKeepsItsFloatAndDoubleForms)
{
    SetFrame(0.1, 0.2, 3.7, 2.9);
    Paint();
    const plotvane::ChartFrame f = view->GetChartFrame();
    const CRectF& rc = f.VisibleRect();
    EXPECT_EQ(f.OriginX(), double(rc.Left() + rc.width / 10.0f));
    EXPECT_EQ(f.OriginY(), double(rc.Bottom() + rc.height / 10.0f));
    EXPECT_EQ(f.OriginInDouble().x, double(rc.Left()) + double(rc.width) / 10);
    EXPECT_EQ(f.OriginInDouble().y, double(rc.Bottom()) + double(rc.height) / 10);
    // On this frame the two forms differ in the last float bits.
    EXPECT_NE(f.OriginX(), f.OriginInDouble().x);
}

TEST_F(ChartFrameTest, LinearMapsRoundTripThroughPixels)
{
    // Nanoseconds and millivolts: data times the view scales is logical.
    CPlotvane_InputData::SetViewScaleX(1e9);
    CPlotvane_InputData::SetViewScaleY(1e3);
    SetFrame(-2, -100, 18, 500);
    view->m_nZoomExponent = 1;
    Paint();
    const plotvane::ChartFrame f = view->GetChartFrame();
    EXPECT_FALSE(f.IsLogX());
    EXPECT_FALSE(f.IsLogY());

    const CPointD lp = f.DataToLogical(5e-9, 0.25);
    EXPECT_EQ(lp, CPointD(5e-9 * 1e9, 0.25 * 1e3));
    const CPointD px = f.LogicalToPixel(lp.x, lp.y);
    EXPECT_TRUE(px.x > 0.0 && px.x < kWidth && px.y > 0.0 && px.y < kHeight);
    const CPointD back = f.PixelToLogical(px.x, px.y);
    EXPECT_NEAR(back.x, lp.x, 1e-9);
    EXPECT_NEAR(back.y, lp.y, 1e-9);

    // Higher Y is higher up the window.
    EXPECT_LT(f.LogicalToPixel(lp.x, lp.y + 10).y, px.y);
    // The window's own mapping agrees, pixel by pixel.
    for (CPoint pt : {CPoint(0, 0), CPoint(17, 250), CPoint(kWidth, kHeight)})
    {
        const CPointD d = f.PixelToLogical(pt.x, pt.y);
        EXPECT_EQ(CPointF(float(d.x), float(d.y)), view->ClientPointToView(pt));
    }
    EXPECT_NEAR(f.LogicalPerPixelX(), f.Width() / kWidth, 1e-12);
    EXPECT_NEAR(f.LogicalPerPixelY(), f.Height() / kHeight, 1e-12);
}

TEST_F(ChartFrameTest, LogMapsTakeDecadesAndRoundTrip)
{
    m.SetFrequencyScale(1);
    m.m_bUseMagnitude = 1;
    m.m_nMagnitudeScale = 1;
    SetFrame(-1, -4, 9, 2); // 0.1 Hz to 1 GHz, 0.1 mOhm to 100 Ohm
    Paint();
    plotvane::ChartFrame f = view->GetChartFrame();
    ASSERT_TRUE(f.IsLogX());
    ASSERT_TRUE(f.IsLogY());

    // Decades, in single precision, with no view scale.
    const CPointD lp = f.DataToLogical(1e6, 0.01);
    EXPECT_NEAR(lp.x, 6.0, 1e-6);
    EXPECT_NEAR(lp.y, -2.0, 1e-6);
    EXPECT_EQ(lp.x, double(log10f(1e6f)));
    const CPointD px = f.LogicalToPixel(lp.x, lp.y);
    const CPointD back = f.PixelToLogical(px.x, px.y);
    EXPECT_NEAR(back.x, lp.x, 1e-9);
    EXPECT_NEAR(back.y, lp.y, 1e-9);

    // Any nonzero magnitude flag makes Y logarithmic; X needs exactly 1.
    m.m_bUseMagnitude = 2;
    m.SetFrequencyScale(2);
    f = view->GetChartFrame();
    EXPECT_TRUE(f.IsLogY());
    EXPECT_FALSE(f.IsLogX());
    m.m_bUseMagnitude = 0;
    EXPECT_FALSE(view->GetChartFrame().IsLogY());
    EXPECT_EQ(view->GetChartFrame().DataToLogicalY(0.01), 0.01);
}

// A paint pins its frame only while it runs: afterwards the frame follows
// the projection again, as a layer called on its own needs it.
TEST_F(ChartFrameTest, AfterAPaintTheFrameFollowsTheProjection)
{
    Paint();
    const plotvane::ChartFrame painted = view->GetChartFrame();
    SetFrame(1000, 2000, 1400, 2300);
    view->FitCurViewAreaWithWindow();
    const plotvane::ChartFrame now = view->GetChartFrame();
    EXPECT_NE(now.VisibleRect(), painted.VisibleRect());
    EXPECT_EQ(now.VisibleRect(), view->GetViewRectLP());
    EXPECT_NEAR(now.OriginX(), 1040.0, 1e-3);
    EXPECT_NEAR(now.OriginY(), 2030.0, 1e-3);
}

} // namespace
