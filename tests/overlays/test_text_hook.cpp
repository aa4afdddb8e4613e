// The text hook: every text of a paint reaches the host with its layer and
// colour.
#include "overlay_fixture.h"

#include <algorithm>
#include <iterator>
#include <vector>

using plotvane::ChartText;
using plotvane::ChartTextLayer;

namespace
{

using TextHook = OverlayFixture;

TEST_F(TextHook, AxisNamesAndGridValuesComeTaggedInTheirColours)
{
    std::vector<ChartText> texts;
    view->SetTextHook([&texts](const ChartText& t) { texts.push_back(t); });
    auto of = [&texts](ChartTextLayer layer)
    {
        std::vector<ChartText> r;
        std::copy_if(texts.begin(), texts.end(), std::back_inserter(r),
                     [layer](const ChartText& t) { return t.layer == layer; });
        return r;
    };
    CChartPointDArray ramp;
    for (int i = 0; i <= 100; ++i)
        ramp.Add(new CChartPointD(i * 1e-10, i * 0.01));
    AddSet(ramp, kGreen);
    m.SetAxisXName("Time (s)");
    m.SetAxisYName("Voltage (V)");
    m.SetChartDrawFit();
    Paint();

    const std::vector<ChartText> names = of(ChartTextLayer::AxisName);
    ASSERT_EQ(names.size(), 2u);
    EXPECT_STREQ(names[0].strText.GetString(), "Time (ns)");
    EXPECT_STREQ(names[1].strText.GetString(), "Voltage (V)");
    for (const ChartText& t : names)
        EXPECT_EQ(t.crColor, DWORD(kLabel));

    // Value texts lie in the margin left of or below the plot frame.
    const std::vector<ChartText> values = of(ChartTextLayer::GridValue);
    ASSERT_GE(values.size(), 6u);
    const CPointD origin = view->GetOriginPoint();
    for (const ChartText& t : values)
        EXPECT_TRUE(t.ptLogical.x < origin.x || t.ptLogical.y < origin.y)
            << t.strText.GetString() << " at " << t.ptLogical.x << ", " << t.ptLogical.y;
    EXPECT_TRUE(of(ChartTextLayer::Overlay).empty());

    // Each paint reports once; an empty hook reports nothing.
    const size_t perPaint = texts.size();
    Paint();
    EXPECT_EQ(texts.size(), 2 * perPaint);
    view->SetTextHook({});
    Paint();
    EXPECT_EQ(texts.size(), 2 * perPaint);
}

} // namespace
