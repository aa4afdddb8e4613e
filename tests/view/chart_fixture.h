// A chart drawn offscreen at 400 x 300 pixels, with a view area that maps
// one logical unit to one pixel unless a test sets another, and both view
// scales at 1 so that data values are logical values.
#pragma once

#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/platform/headless/HeadlessBackend.h>
#include <plotvane/view/GLChartView.h>
#include <plotvane/view/HeadlessChart.h>

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

class ChartFixture : public testing::Test
{
protected:
    static constexpr int kWidth = 400;
    static constexpr int kHeight = 300;
    static constexpr COLORREF kRed = 0x0000FF;
    static constexpr COLORREF kGreen = 0x00FF00;

    void SetUp() override
    {
        if (!plotvane::HeadlessBackend::Default().IsGLAvailable())
            GTEST_SKIP() << "no EGL display";
        ASSERT_TRUE(plotvane::CreateHeadlessChart(m, kWidth, kHeight));
        view = m.m_ChartDlg.GetGLChartView();
        m.RemoveAllData();
        CPlotvane_InputData::SetViewScaleX(1.0);
        CPlotvane_InputData::SetViewScaleY(1.0);
        SetFrame(0, 0, kWidth, kHeight);
    }

    // The view area, and extents that span it so that grid intervals are
    // computed from the visible rectangle.
    void SetFrame(double left, double bottom, double right, double top)
    {
        view->m_rcViewArea.SetData(float(left), float(bottom), float(right), float(top));
        m.m_InputData.m_dMinX = left;
        m.m_InputData.m_dMaxX = right;
        m.m_InputData.m_dMinY = bottom;
        m.m_InputData.m_dMaxY = top;
    }

    // A drawn data set with these points, in this colour.
    CChartPointDArray& AddCurve(std::initializer_list<std::pair<double, double>> pts,
                                COLORREF color = kRed)
    {
        CPlotvane_InputData& d = m.m_InputData;
        const int i = d.AddNewDataSet();
        CChartPointDArray& set = *d.GetChartPointDArray(i);
        for (auto [x, y] : pts)
            set.Add(new CChartPointD(x, y));
        set.m_Color = CColor(color);
        d.AddDrawDataSetIndex(i);
        return set;
    }

    void Paint() { view->SendMessage(WM_PAINT); }
    const plotvane::Image& Image() const { return *plotvane::GetChartImage(m); }

    // Client pixel of a logical point on the current 1:1 frame.
    static int Col(double x) { return int(x); }
    static int Row(double y) { return kHeight - 1 - int(y); }

    // Whether the colour lies within r pixels of (col, row).
    bool ColorNear(COLORREF color, int col, int row, int r = 1) const
    {
        return Image().CountColor(color, col - r, row - r, col + r + 1, row + r + 1) > 0;
    }

    CPlotvane_Manager m;
    CGLChartView* view = nullptr;
};
