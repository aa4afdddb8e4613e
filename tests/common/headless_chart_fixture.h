// A chart drawn offscreen, W x H pixels, for the tests of everything that
// draws into the view: grid, curves, overlays. A test without a GL context
// fails (see gl_required.h).
#pragma once

#include "common/gl_required.h"

#include <plotvane/plotvane.h>

#include <gtest/gtest.h>

#include <algorithm>

template <int W, int H> class HeadlessChartTest : public testing::Test
{
protected:
    static constexpr int kWidth = W;
    static constexpr int kHeight = H;

    void SetUp() override
    {
        PLOTVANE_REQUIRE_GL();
        ASSERT_TRUE(plotvane::CreateHeadlessChart(m, kWidth, kHeight));
        view = m.m_ChartDlg.GetGLChartView();
        m.RemoveAllData();
    }

    // A drawn copy of src in this colour; answers its index.
    int AddSet(const CChartPointDArray& src, COLORREF color)
    {
        CPlotvane_InputData& d = m.m_InputData;
        const int i = d.AddNewDataSet();
        CChartPointDArray& set = *d.GetChartPointDArray(i);
        set = src;
        set.m_Color = CColor(color);
        d.AddDrawDataSetIndex(i);
        return i;
    }

    void Paint() { view->SendMessage(WM_PAINT); }
    const plotvane::Image& Image() const { return *plotvane::GetChartImage(m); }

    // Client pixel of a data point, through the view's own mapping.
    CPoint ToClient(double x, double y)
    {
        return view->ViewPointToClient(CPointF(float(x * CPlotvane_InputData::m_dViewScaleX),
                                               float(y * CPlotvane_InputData::m_dViewScaleY)));
    }
    // Client rectangle of a data rectangle, one pixel inside its edges.
    CRect DataRect(double x1, double y1, double x2, double y2)
    {
        const CPoint a = ToClient(x1, y1);
        const CPoint b = ToClient(x2, y2);
        return CRect(std::min(a.x, b.x) + 1, std::min(a.y, b.y) + 1, std::max(a.x, b.x) - 1,
                     std::max(a.y, b.y) - 1);
    }
    int CountColor(COLORREF color, const CRect& rc) const
    {
        return Image().CountColor(color, rc.left, rc.top, rc.right, rc.bottom);
    }
    // Whether the colour lies within r pixels of (col, row).
    bool ColorNear(COLORREF color, int col, int row, int r = 1) const
    {
        return Image().CountColor(color, col - r, row - r, col + r + 1, row + r + 1) > 0;
    }

    CPlotvane_Manager m;
    CGLChartView* view = nullptr;
};
