// Curve drawing: segments where the samples run forward, no retrace at a
// seam, the clipper at the plot frame's left and bottom edges, widths, the
// zero-sample rules of decibel and logarithmic axes, and selection names.
#include "chart_fixture.h"

#include <GL/gl.h>
#include <GL/glu.h>

#include <vector>

namespace
{

class Curves : public ChartFixture
{
protected:
    void SetUp() override
    {
        ChartFixture::SetUp();
        if (IsSkipped())
            return;
        // Ticks only, so that the plot area holds nothing but the curves.
        view->SetGridMode(1);
    }
};

TEST_F(Curves, ForwardSegmentsAreDrawnAndSeamsAreNot)
{
    // A folded eye: two passes over the same X range, and a pair that steps
    // back by only 1e-9.
    AddCurve({{100, 100.5}, {200, 100.5}, {150, 200.5}, {250, 200.5}});
    AddCurve({{100, 250.5}, {200, 250.5}, {200 - 1e-9, 280.5}, {300, 280.5}}, kGreen);
    Paint();

    EXPECT_TRUE(ColorNear(kRed, Col(150), Row(100.5)));
    EXPECT_TRUE(ColorNear(kRed, Col(230), Row(200.5)));
    // Where the retrace from (200, 100.5) back to (150, 200.5) would run.
    EXPECT_EQ(Image().Pixel(Col(175), Row(150.5)), 0u);
    EXPECT_EQ(Image().CountColor(kRed, 160, Row(180), 190, Row(120)), 0);
    // The step back of 1e-9 loses exactly that segment.
    EXPECT_EQ(Image().CountColor(kGreen, 195, Row(275), 205, Row(256)), 0);
    EXPECT_TRUE(ColorNear(kGreen, Col(250), Row(280.5)));
}

TEST_F(Curves, ClipperCutsAtTheLeftAndBottomEdgesOfThePlotFrame)
{
    // The plot frame's origin is (40, 30) on this frame.
    AddCurve({{10, 100.5}, {100, 100.5}});     // crosses L
    AddCurve({{60, 10}, {120, 70}}, kGreen);   // crosses B at x = 80
    AddCurve({{20, 10}, {100, 50}}, 0xFF0000); // cut at L to (40, 20), then at B to (60, 30)
    AddCurve({{5, 5}, {35, 25}}, 0xFF00FF);    // wholly outside: nothing
    Paint();

    EXPECT_EQ(Image().CountColor(kRed, 0, Row(102), 39, Row(99)), 0);
    EXPECT_TRUE(ColorNear(kRed, 42, Row(100.5), 0));
    EXPECT_EQ(Image().CountColor(kGreen, 0, Row(29) + 1, kWidth, kHeight), 0);
    EXPECT_TRUE(ColorNear(kGreen, 90, Row(40)));
    EXPECT_EQ(Image().CountColor(0xFF0000, 0, Row(29) + 1, kWidth, kHeight), 0);
    EXPECT_EQ(Image().CountColor(0xFF0000, 0, 0, 58, kHeight), 0);
    EXPECT_TRUE(ColorNear(0xFF0000, 80, Row(40)));
    EXPECT_EQ(Image().CountColor(0xFF00FF), 0);
}

TEST_F(Curves, HighlightedCurvesTakeThePointSizeAndKeepTheirColour)
{
    CChartPointDArray& thin = AddCurve({{100, 100.5}, {300, 100.5}});
    CChartPointDArray& wide = AddCurve({{100, 200.5}, {300, 200.5}}, kGreen);
    thin.m_dLineWidth = 1.0;
    wide.m_dLineWidth = 1.0;
    wide.m_bHighlight = 1;
    view->SetLineWidth_Highlighted(5.0);
    Paint();

    EXPECT_EQ(Image().CountColor(kRed, 200, 0, 201, kHeight), 1);
    EXPECT_EQ(Image().CountColor(kGreen, 200, 0, 201, kHeight), 5);
}

TEST_F(Curves, ZeroSamplesHideWholeCurvesOnDecibelAndLogarithmicAxes)
{
    AddCurve({{100, 100.5}, {200, 0.0}, {300, 100.5}});
    AddCurve({{100, 200.5}, {300, 200.5}}, kGreen);
    Paint();
    EXPECT_GT(Image().CountColor(kRed), 0); // a linear axis shows it

    m.SetAxisYName("Gain (dB)");
    Paint();
    EXPECT_EQ(view->m_bDecibelAxis, 1);
    EXPECT_EQ(Image().CountColor(kRed), 0);
    EXPECT_GT(Image().CountColor(kGreen), 0);

    // The flag is worked out anew at every frame.
    m.SetAxisYName("Gain");
    m.m_nMagnitudeScale = 1;
    SetFrame(0, -1, kWidth, 3);
    Paint();
    EXPECT_EQ(view->m_bDecibelAxis, 0);
    EXPECT_EQ(Image().CountColor(kRed), 0);
    EXPECT_GT(Image().CountColor(kGreen), 0);
}

TEST_F(Curves, LogarithmicXMovesAZeroFrequencyToOneHertz)
{
    // X decades -0.5 to 3.5 over 400 pixels; the plot frame starts at -0.1.
    m.SetFrequencyScale(1);
    SetFrame(-0.5, 0, 3.5, kHeight);
    view->SetGridMode(1);
    AddCurve({{0, 100}, {100, 200}});
    Paint();

    // From (log10 1, 101) to (log10 100, 200): nothing left of X = 0.
    EXPECT_EQ(Image().CountColor(kRed, 0, 0, 48, kHeight), 0);
    EXPECT_TRUE(ColorNear(kRed, 150, Row(150.5)));
    EXPECT_TRUE(ColorNear(kRed, 52, Row(102)));
}

TEST_F(Curves, EachCurveIsHitUnderItsOwnSelectionName)
{
    AddCurve({{100, 100.5}, {300, 100.5}});
    AddCurve({{100, 200.5}, {300, 200.5}}, kGreen);
    Paint();

    auto pick = [&](int x, int y)
    {
        GLuint buffer[64] = {};
        view->MakeCurrent();
        glSelectBuffer(64, buffer);
        GLint viewport[4];
        glGetIntegerv(GL_VIEWPORT, viewport);
        glMatrixMode(GL_PROJECTION);
        glPushMatrix();
        glRenderMode(GL_SELECT);
        glLoadIdentity();
        gluPickMatrix(x, viewport[3] - y, 3.0, 3.0, viewport);
        glOrtho(0, kWidth, 0, kHeight, -500, 500);
        view->RenderScene();
        const GLint hits = glRenderMode(GL_RENDER);
        glPopMatrix();
        glMatrixMode(GL_MODELVIEW);
        std::vector<GLuint> names;
        for (GLint i = 0; i < hits; ++i)
        {
            if (buffer[3 + 4 * i] > 0)
                names.push_back(buffer[3 + 4 * i]);
        }
        return names;
    };
    EXPECT_EQ(pick(200, kHeight - 200), std::vector<GLuint>{2});
    EXPECT_EQ(pick(150, kHeight - 100), std::vector<GLuint>{1});
    EXPECT_TRUE(pick(150, kHeight - 150).empty());
}

} // namespace
