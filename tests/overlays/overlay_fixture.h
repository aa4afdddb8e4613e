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
    }
};
