// The overlay tests' chart: 800 x 600 pixels, value texts in a colour that
// no curve, grid line or mark has.
#pragma once

#include "common/headless_chart_fixture.h"

class OverlayFixture : public HeadlessChartTest<800, 600>
{
protected:
    static constexpr COLORREF kGreen = 0x00FF00;
    static constexpr COLORREF kWhite = 0xFFFFFF;
    static constexpr COLORREF kGrey = 0x808080;
    static constexpr COLORREF kLabel = 0x00FFFF;

    void SetUp() override
    {
        HeadlessChartTest::SetUp();
        if (HasFatalFailure() || IsSkipped())
            return;
        view->SetLabelColor(kLabel);
        SetUpChart();
    }
    // What a fixture sets on the chart once it stands.
    virtual void SetUpChart() {}
    CChartPointDArray& Set(int i) { return *m.m_InputData.GetChartPointDArray(i); }
    // Whether the colour lies within r pixels of a data point.
    bool ColorAt(COLORREF c, double x, double y, int r = 2)
    {
        const CPoint p = ToClient(x, y);
        return ColorNear(c, p.x, p.y, r);
    }
};
