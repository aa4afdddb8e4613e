// Boxes, arrows, the status summary and the automatic marks, drawn straight
// into a frame where one logical unit is one pixel.
#include "overlay_fixture.h"

#include <plotvane/dialogs/Plotvane_Dlg.h>

#include <GL/gl.h>

#include <vector>

namespace
{
constexpr COLORREF kRed = 0x0000FF;
constexpr COLORREF kBoxColour = 0xEBD294;
constexpr COLORREF kBlue = 0xFF0000;
} // namespace

class OverlayPrimitives : public OverlayFixture
{
protected:
    void SetUpChart() override
    {
        CPlotvane_InputData::SetViewScaleX(1.0);
        CPlotvane_InputData::SetViewScaleY(1.0);
        view->m_rcViewArea.SetData(0.0f, 0.0f, float(kWidth), float(kHeight));
        view->m_nZoomExponent = 0;
    }

    // A cleared frame with the view's projection, ready for direct drawing.
    void Begin()
    {
        view->FitCurViewAreaWithWindow();
        glClearColor(0, 0, 0, 0);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    }
    // The back buffer, to count a colour in [x0, x1) x [y0, y1) with Y up.
    int Count(COLORREF color, int x0, int y0, int x1, int y1)
    {
        glFinish();
        std::vector<unsigned char> px(size_t(kWidth) * kHeight * 4);
        glReadPixels(0, 0, kWidth, kHeight, GL_RGBA, GL_UNSIGNED_BYTE, px.data());
        int n = 0;
        for (int y = std::max(0, y0); y < std::min(kHeight, y1); ++y)
            for (int x = std::max(0, x0); x < std::min(kWidth, x1); ++x)
            {
                const unsigned char* p = &px[(size_t(y) * kWidth + x) * 4];
                n += RGB(p[0], p[1], p[2]) == color;
            }
        return n;
    }
};

TEST_F(OverlayPrimitives, BoxesAreStippledAndOnlyLabelledBoxesGetText)
{
    Begin();
    view->DrawBox(100, 100, 300, 200, kBoxColour, "");
    // A sparse raster inside, a closed outline around.
    const int inside = Count(kBoxColour, 110, 110, 290, 190);
    EXPECT_GT(inside, 180 * 80 / 16);
    EXPECT_LT(inside, 180 * 80 / 4);
    EXPECT_GT(Count(kBoxColour, 100, 99, 300, 102), 150);
    EXPECT_EQ(Count(kLabel, 0, 0, kWidth, kHeight), 0);

    Begin();
    view->DrawBox(100, 100, 300, 200, kBoxColour, "W=");
    EXPECT_GT(Count(kLabel, 200, 150, 300, 180), 10);
    EXPECT_EQ(Count(kLabel, 0, 0, 195, kHeight), 0);

    Begin();
    view->DrawBoxSolid(100, 100, 300, 200, kBoxColour, "");
    EXPECT_EQ(Count(kBoxColour, 110, 110, 290, 190), 180 * 80);
}

TEST_F(OverlayPrimitives, ArrowsRunAlongTheLineButTheVerticalOneOnlyUp)
{
    // Right to left: the shaft lies between the points, heads at both ends.
    Begin();
    view->DrawHorizontalArrowLine(600, 300, 200, 300, kRed, 1, 1);
    EXPECT_GT(Count(kRed, 220, 298, 580, 303), 350);
    EXPECT_EQ(Count(kRed, 0, 0, 190, kHeight) + Count(kRed, 611, 0, kWidth, kHeight), 0);
    // Heads spread across the line.
    EXPECT_GT(Count(kRed, 200, 303, 225, 310), 0);

    // The second point lies below the first: the arrow still goes up from
    // the first, over the same length.
    Begin();
    view->DrawVerticalArrowLine(400, 300, 400, 200, kRed, 0, 1);
    EXPECT_GT(Count(kRed, 397, 310, 404, 390), 70);
    EXPECT_EQ(Count(kRed, 0, 0, kWidth, 297), 0);
    EXPECT_EQ(Count(kRed, 0, 403, kWidth, kHeight), 0);
}

TEST_F(OverlayPrimitives, StatusSummaryAndAutomaticMarks)
{
    auto add = [this](std::initializer_list<double> ys)
    {
        CChartPointDArray a;
        double x = 0.0;
        for (double y : ys)
            a.Add(new CChartPointD(x++, y));
        return AddSet(a, kGreen);
    };
    add({0.5, 2.0});
    add({0.25, 1.0});
    m.m_bUseMagnitude = 0;
    Paint();
    EXPECT_EQ(m.m_ChartDlg.m_strDistanceInfo, CString("MinY:0.250, MaxY:2.000, Peak-Peak:1.750"));

    // A bad index at the head of the list leaves 0.0 in the comparison.
    m.m_InputData.m_DrawSet.InsertAt(0, -1);
    Paint();
    EXPECT_EQ(m.m_ChartDlg.m_strDistanceInfo, CString("MinY:0.000, MaxY:2.000, Peak-Peak:2.000"));
    m.m_InputData.m_DrawSet.RemoveAt(0);
    m.m_InputData.m_DrawSet.RemoveAt(0);

    // Marks in data units, as points of the measure-mark colour.
    CPointD pt(150.0, 250.0);
    m.m_arrAutoMeasureMarks.Add(pt);
    m.m_bDisplayAutoMeasureMarks = 1;
    Paint();
    EXPECT_EQ(m.m_ChartDlg.m_strDistanceInfo, CString("MinY:0.250, MaxY:1.000, Peak-Peak:0.750"));
    const COLORREF mark = view->m_crMeasureMark;
    EXPECT_GT(Image().CountColor(mark, 147, kHeight - 254, 154, kHeight - 246), 9);
    EXPECT_EQ(Image().CountColor(mark, 0, 0, 140, kHeight), 0);
}

TEST_F(OverlayPrimitives, WorstSkewAndCrosstalkJitterArrows)
{
    CChartPointDArray a;
    a.Add(new CChartPointD(0.0, 0.0));
    AddSet(a, kGreen);
    // Points (230, 330) and (430, 370) of a 1:1 frame whose plot area
    // starts at (80, 60), off the grid lines.
    m.m_dCrosstalkX1 = 230.0;
    m.m_dCrosstalkX2 = 430.0;
    m.m_dCrosstalkY1 = 330.0;
    m.m_dCrosstalkY2 = 370.0;
    m.m_bShowWorstSkew = 1;
    Paint();
    auto row = [](int y) { return kHeight - 1 - y; };
    // Leaders from both axes to each point, the arrow low in the frame and
    // its text right of the second point.
    EXPECT_GT(Image().CountColor(kBlue, 90, row(331), 225, row(328)), 120);
    EXPECT_GT(Image().CountColor(kBlue, 90, row(371), 425, row(368)), 320);
    EXPECT_GT(Image().CountColor(kBlue, 229, row(320), 232, row(70)), 240);
    EXPECT_EQ(Image().CountColor(kBlue, 0, 0, kWidth, row(375)), 0);
    EXPECT_GT(Image().CountColor(kRed, 245, row(76), 415, row(73)), 160);
    EXPECT_GT(Image().CountColor(kRed, 435, row(100), 600, row(73)), 10);

    // Crosstalk jitter: the Y field in mV, so at 330 logical units here.
    m.m_bShowWorstSkew = 0;
    m.m_strNEXTNet = "N";
    m.m_strFEXTNet = "F";
    m.m_dCrosstalkY1 = 330000.0;
    Paint();
    EXPECT_EQ(Image().CountColor(kRed, 245, row(76), 415, row(73)), 0);
    EXPECT_GT(Image().CountColor(kRed, 245, row(331), 415, row(328)), 160);
    EXPECT_GT(Image().CountColor(RGB(0xA2, 0x92, 0xED), 340, row(380), 460, row(340)), 10);
}
