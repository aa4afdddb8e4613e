// The text hook: every text of a paint reaches the host with its layer and
// colour, and what the eye overlay prints is what it stores.
#include "overlay_fixture.h"

#include <plotvane/measure/EyeGenerator.h>

#include <cstdio>
#include <vector>

using plotvane::ChartText;
using plotvane::ChartTextLayer;

namespace
{

class TextHook : public OverlayFixture
{
protected:
    void SetUp() override
    {
        OverlayFixture::SetUp();
        if (HasFatalFailure() || IsSkipped())
            return;
        view->SetTextHook([this](const ChartText& t) { texts.push_back(t); });
    }
    std::vector<ChartText> Of(ChartTextLayer layer) const
    {
        std::vector<ChartText> r;
        for (const ChartText& t : texts)
            if (t.layer == layer)
                r.push_back(t);
        return r;
    }
    const ChartText* Find(const char* prefix) const
    {
        for (const ChartText& t : texts)
            if (t.strText.Find(prefix) == 0)
                return &t;
        return nullptr;
    }
    std::vector<ChartText> texts;
};

TEST_F(TextHook, AxisNamesAndGridValuesComeTaggedInTheirColours)
{
    CChartPointDArray ramp;
    for (int i = 0; i <= 100; ++i)
        ramp.Add(new CChartPointD(i * 1e-10, i * 0.01));
    AddSet(ramp, kGreen);
    m.SetAxisXName("Time (s)");
    m.SetAxisYName("Voltage (V)");
    m.SetChartDrawFit();
    Paint();

    const std::vector<ChartText> names = Of(ChartTextLayer::AxisName);
    ASSERT_EQ(names.size(), 2u);
    EXPECT_STREQ(names[0].strText.GetString(), "Time (ns)");
    EXPECT_STREQ(names[1].strText.GetString(), "Voltage (V)");
    for (const ChartText& t : names)
        EXPECT_EQ(t.crColor, DWORD(kLabel));

    // Value texts lie in the margin left of or below the plot frame.
    const std::vector<ChartText> values = Of(ChartTextLayer::GridValue);
    ASSERT_GE(values.size(), 6u);
    const CPointD origin = view->GetOriginPoint();
    for (const ChartText& t : values)
        EXPECT_TRUE(t.ptLogical.x < origin.x || t.ptLogical.y < origin.y)
            << t.strText.GetString() << " at " << t.ptLogical.x << ", " << t.ptLogical.y;
    EXPECT_TRUE(Of(ChartTextLayer::Overlay).empty());

    // Each paint reports once; an empty hook reports nothing.
    const size_t perPaint = texts.size();
    Paint();
    EXPECT_EQ(texts.size(), 2 * perPaint);
    view->SetTextHook({});
    Paint();
    EXPECT_EQ(texts.size(), 2 * perPaint);
}

TEST_F(TextHook, EyeMarginTextsAreTheStoredMargins)
{
    plotvane::DdrEyeParams p;
    p.nPeriods = 16;
    plotvane::DdrEye eye = plotvane::GenerateDdrEye(p);
    eye.pDQ->SetEyeInformation(-1.0, 100, 100, 0.1, 0.1, 0);
    const int dq = AddSet(*eye.pDQ, kGreen);
    AddSet(*eye.pDQS, kWhite);
    AddSet(*eye.pDQSBar, kGrey);
    m.SetChartDrawFit();
    m.RedrawGLChartView();

    const CChartPointDArray& set = *m.m_InputData.GetChartPointDArray(dq);
    const ChartText* setup = Find("Setup Margin: ");
    const ChartText* hold = Find("Hold Margin: ");
    ASSERT_NE(setup, nullptr);
    ASSERT_NE(hold, nullptr);
    EXPECT_EQ(setup->layer, ChartTextLayer::Overlay);
    char expected[64];
    std::snprintf(expected, sizeof expected, "Setup Margin: %d ps", int(set.m_dSetupMargin));
    EXPECT_STREQ(setup->strText.GetString(), expected);
    std::snprintf(expected, sizeof expected, "Hold Margin: %d ps", int(set.m_dHoldMargin));
    EXPECT_STREQ(hold->strText.GetString(), expected);
}

} // namespace
