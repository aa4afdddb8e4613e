// The view tests' chart: 400 x 300 pixels, a view area that maps one logical
// unit to one pixel unless a test sets another, and both view scales at 1 so
// that data values are logical values.
#pragma once

#include "common/headless_chart_fixture.h"

#include <initializer_list>
#include <utility>

class ChartFixture : public HeadlessChartTest<400, 300>
{
protected:
    static constexpr COLORREF kRed = 0x0000FF;
    static constexpr COLORREF kGreen = 0x00FF00;

    void SetUp() override
    {
        HeadlessChartTest::SetUp();
        if (HasFatalFailure() || IsSkipped())
            return;
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
        CChartPointDArray src;
        for (auto [x, y] : pts)
            src.Add(new CChartPointD(x, y));
        return *m.m_InputData.GetChartPointDArray(AddSet(src, color));
    }

    // Client pixel of a logical point on the current 1:1 frame.
    static int Col(double x) { return int(x); }
    static int Row(double y) { return kHeight - 1 - int(y); }
};
