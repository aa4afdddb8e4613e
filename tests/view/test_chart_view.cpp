// The chart view frame: the dialog's view window, the empty chart, the
// display list and who rebuilds it, zoom and pan, the view-area operations,
// background colour timing, fonts and text measures.
#include "chart_fixture.h"

#include <plotvane/document/ChartMarkers.h>
#include <plotvane/view/GLTextBmp.h>

#include <GL/gl.h>

namespace
{

using ChartView = ChartFixture;

TEST(ChartViewWithoutWindow, RedrawDoesNothingAndFontsWaitForAContext)
{
    CPlotvane_Manager m;
    CGLChartView& v = *m.m_ChartDlg.GetGLChartView();
    m.RedrawGLChartView();
    EXPECT_EQ(v.m_nDisplayList, 0xFFFFFFFFu);
    EXPECT_EQ(v.GetSafeHwnd(), nullptr);
    m.SetDefaultFontSize(15);
    EXPECT_EQ(m.GetDefaultFontSize(), 15);
    EXPECT_EQ(v.m_pFontDefault->m_nListBase, 0u);
}

TEST_F(ChartView, DialogMakesTheViewWindowAndTheNoDataSet)
{
    CPlotvane_Manager fresh;
    ASSERT_TRUE(plotvane::CreateHeadlessChart(fresh, 320, 200));
    CGLChartView& v = *fresh.m_ChartDlg.GetGLChartView();
    EXPECT_EQ(v.GetDlgCtrlID(), 123456);
    EXPECT_EQ(v.GetParent(), &fresh.m_ChartDlg);
    EXPECT_EQ(v.m_pParent, &fresh.m_ChartDlg);
    EXPECT_EQ(v.m_bMouseDrag, 1);
    EXPECT_TRUE(v.IsWindowVisible());
    CRect rc;
    v.GetClientRect(&rc);
    EXPECT_EQ(rc, CRect(0, 0, 320, 200));

    ASSERT_EQ(fresh.m_InputData.GetDataSetSize(), 1u);
    EXPECT_EQ(fresh.m_InputData.GetChartPointDArray(0)->m_strName, "NoData");
    EXPECT_EQ(fresh.m_InputData.GetDrawDataSetCount(), 1);

    // Fonts of the window: all but the axis names are built.
    EXPECT_NE(v.m_pFontDefault->m_nListBase, 0u);
    EXPECT_NE(v.m_pFontMeasure->m_nListBase, 0u);
    EXPECT_NE(v.m_pFontTextData->m_nListBase, 0u);
    EXPECT_EQ(v.m_pFontXY->m_nListBase, 0u);
}

TEST_F(ChartView, EmptyChartDrawsTheFrameOverTheNeutralRange)
{
    CPlotvane_Manager fresh;
    ASSERT_TRUE(plotvane::CreateHeadlessChart(fresh, kWidth, kHeight));
    CGLChartView& v = *fresh.m_ChartDlg.GetGLChartView();
    const CRectF before = v.m_rcViewArea;
    fresh.ViewZoomfit();
    EXPECT_EQ(fresh.m_InputData.GetDataSetSize(), 0u); // "NoData" has no points
    EXPECT_EQ(fresh.m_InputData.m_dMaxX, 2.0);
    EXPECT_EQ(fresh.m_InputData.m_dMinY, -2.0);
    EXPECT_EQ(v.m_rcViewArea, before);

    fresh.RedrawGLChartView();
    const plotvane::Image& img = *plotvane::GetChartImage(fresh);
    EXPECT_GT(img.CountColor(v.GetAxisColor()), 100);

    // A fit over sets without points stores a rectangle of infinities:
    // nothing usable to draw, and nothing fails.
    fresh.SetChartDrawFit();
    fresh.RedrawGLChartView();
    EXPECT_EQ(img.CountColor(v.GetAxisColor()), 0);
}

TEST_F(ChartView, DisplayListIsRebuiltOnlyByRedrawGLChartView)
{
    Paint();
    EXPECT_EQ(view->m_nDisplayList, 0xFFFFFFFFu);
    m.RedrawGLChartView();
    view->MakeCurrent();
    EXPECT_TRUE(glIsList(view->m_nDisplayList));

    // A list with a red square stands for an overlay; paints, pans and
    // zooms replay it.
    const GLuint list = glGenLists(1);
    glNewList(list, GL_COMPILE);
    glColor3ub(255, 0, 0);
    glRectd(150, 100, 250, 200);
    glEndList();
    view->m_nDisplayList = list;
    Paint();
    EXPECT_EQ(Image().Pixel(170, 150), kRed);
    view->OffsetViewArea(40.0f, 0.0f);
    Paint();
    EXPECT_EQ(Image().Pixel(130, 150), kRed);
    EXPECT_EQ(Image().Pixel(230, 150), 0u);
    EXPECT_EQ(view->m_nDisplayList, list);

    m.RedrawGLChartView(); // measure type -1: an empty list
    EXPECT_EQ(Image().CountColor(kRed), 0);
    view->MakeCurrent();
    EXPECT_TRUE(glIsList(view->m_nDisplayList));
}

TEST_F(ChartView, ZoomMagnifiesAboutTheCentre)
{
    view->SetGridMode(1);
    AddCurve({{150, 200.5}, {250, 200.5}});
    Paint();
    EXPECT_TRUE(ColorNear(kRed, 200, Row(200.5), 0));

    // One zoom step magnifies by 1.2 about the centre (200, 150).
    view->m_nZoomExponent = 1;
    Paint();
    EXPECT_FALSE(ColorNear(kRed, 200, Row(200.5), 0));
    EXPECT_TRUE(ColorNear(kRed, 200, Row(150 + 50.5 * 1.2)));
    EXPECT_TRUE(ColorNear(kRed, 200 - 59, Row(150 + 50.5 * 1.2)));
}

TEST_F(ChartView, ViewAreaOperations)
{
    // The smaller corner lands on the plot frame's origin.
    m.SetViewAreaByPoint(CPointF(10, 20), CPointF(100, 200));
    EXPECT_EQ(view->m_rcViewArea, CRectF(CRectD(0, 0, 100, 200)));
    Paint();
    const CPointD origin = view->GetOriginPoint();
    EXPECT_NEAR(origin.x, 10.0, 1e-3);
    EXPECT_NEAR(origin.y, 20.0, 1e-3);
    EXPECT_NEAR(view->GetViewWidth(), 100.0, 1e-3);

    // Independent scales: 4 units per pixel across, 2/3 up.
    SetFrame(0, 0, 1600, 200);
    Paint();
    CRectF rc;
    EXPECT_NEAR(view->GetTextLPWidth(rc, 10), 40.0, 1e-3);
    EXPECT_NEAR(view->GetTextLPHeight(rc, 12), 8.0, 1e-3);
    double x = 0, y = 0;
    m.GetCurrentGLChartViewLeftTopPoint(x, y);
    EXPECT_NEAR(x, 4.0, 1e-3);
    EXPECT_NEAR(y, 200.0 - 2.0 / 3.0, 1e-3);
    m.GetCurrentGLChartViewRightBtmPoint(x, y);
    EXPECT_NEAR(x, 1600.0, 1e-3);
    EXPECT_NEAR(y, 0.0, 1e-3);

    m.SetViewAreaByPoint(CPointF(5, 5), CPointF(5, 5));
    EXPECT_EQ(view->m_rcViewArea.width, 0.0f);
    EXPECT_EQ(view->m_rcViewArea.height, 0.0f);

    // Zoom to fit goes back to the exponent of the last InitViewArea.
    AddCurve({{0, 0}, {1, 1}});
    view->m_nZoomExponent = 2;
    view->InitViewArea();
    view->m_nZoomExponent = 5;
    m.ViewZoomfit();
    EXPECT_EQ(view->m_nZoomExponent, 2);
    EXPECT_EQ(m.m_nBaseZoomLevel, 2);
}

TEST_F(ChartView, BackgroundColourTiming)
{
    view->SetBackgroundColor(0x00FF00);
    Paint();
    EXPECT_EQ(Image().Pixel(kWidth - 2, 2), kGreen);

    // Written into the member, the colour is taken up after the next clear.
    view->m_crBackground = 0xFF0000;
    Paint();
    EXPECT_EQ(Image().Pixel(kWidth - 2, 2), kGreen);
    Paint();
    EXPECT_EQ(Image().Pixel(kWidth - 2, 2), COLORREF(0xFF0000));
}

TEST_F(ChartView, LineWidthsReachEverySetAndFontsAreReplacedWhole)
{
    CChartPointDArray& a = AddCurve({{0, 0}, {1, 1}});
    CChartPointDArray& b = AddCurve({{0, 0}, {1, 1}});
    m.m_ChartDlg.GetGLChartView()->AllChangeLineWidth(2.5);
    EXPECT_EQ(view->GetLineWidth(), 2.5);
    EXPECT_EQ(a.m_dLineWidth, 2.5);
    EXPECT_EQ(b.m_dLineWidth, 2.5);

    m.SetMeasureFontSize(16);
    EXPECT_EQ(m.GetMeasureFontSize(), 16);
    EXPECT_NE(view->m_pFontMeasure->m_nListBase, 0u);
    CGLTextBmp* before = view->m_pFontTextData;
    const DWORD base = before->m_nListBase;
    view->SetTextDataFontSize(12); // same size: kept
    EXPECT_EQ(view->m_pFontTextData, before);
    EXPECT_EQ(view->m_pFontTextData->m_nListBase, base);
    view->SetTextDataFontSize(20);
    EXPECT_EQ(view->m_pFontTextData->m_nFontSize, 20);
    EXPECT_NE(view->m_pFontTextData->m_nListBase, 0u);
}

} // namespace
