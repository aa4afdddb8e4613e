// The numbers along plotvane-render's axes and in the eye overlay read true
// at every span: each value text, scaled by the unit its axis name shows,
// equals the data value at the place where it stands.
#include "common/headless_chart_fixture.h"
#include "render/Axes.h"
#include "render/Demo.h"
#include "render/Measure.h"
#include "render/OverlayDemo.h"
#include "render/Render.h"
#include "render/Units.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <unistd.h>
#include <vector>

namespace
{
using plotvane::ChartText;
using plotvane::ChartTextLayer;

// A value text as the grid prints it: "%g", or up to two decimals with K,
// M, G or T.
double ReadNumber(const std::string& text)
{
    char* end = nullptr;
    const double v = std::strtod(text.c_str(), &end);
    static const char kPrefixes[] = "KMGT";
    const char* p = *end != '\0' ? std::strchr(kPrefixes, *end) : nullptr;
    return p != nullptr ? v * std::pow(1e3, double(p - kPrefixes + 1)) : v;
}

// What one stored unit of an axis is shown as: "Time (ns)" shows 1e-9 s
// as 1.
double LabelScale(const std::string& label)
{
    std::string name, unit;
    plotvane::SplitNameAndUnit(label, name, unit);
    if (unit.empty())
    {
        // "Time(ns)": a unit word set beside a name without a blank.
        const std::size_t open = label.rfind('(');
        if (open != std::string::npos && label.back() == ')')
            unit = label.substr(open + 1, label.size() - open - 2);
    }
    return unit.empty() ? 1.0 : plotvane::SplitUnit(unit).dScale;
}

struct Frame
{
    std::vector<ChartText> texts;
    plotvane::ChartFrame f;
};

std::vector<ChartText> Layer(const std::vector<ChartText>& texts, ChartTextLayer layer)
{
    std::vector<ChartText> r;
    for (const ChartText& t : texts)
        if (t.layer == layer)
            r.push_back(t);
    return r;
}

// Every visible value text against its place: linear texts stand a little
// left of their grid line (W/150 on X) and below it (H/100 on Y); log X
// texts W/60 left. Answers how many texts were checked on X and on Y.
std::pair<int, int> ExpectValueTextsTrue(const Frame& fr, double dRelTol)
{
    const plotvane::ChartFrame& f = fr.f;
    const std::vector<ChartText> names = Layer(fr.texts, ChartTextLayer::AxisName);
    EXPECT_EQ(names.size(), 2u);
    if (names.size() != 2)
        return {0, 0};
    const double sx = LabelScale(names[0].strText.str());
    const double sy = LabelScale(names[1].strText.str());
    const double W = f.Width(), H = f.Height();
    int nX = 0, nY = 0;
    for (const ChartText& t : Layer(fr.texts, ChartTextLayer::GridValue))
    {
        const double shown = ReadNumber(t.strText.str());
        if (std::fabs(t.ptLogical.y - (f.Bottom() + H / 20)) < H * 1e-6)
        {
            if (t.ptLogical.x > f.Right())
                continue; // drawn past the edge, where nothing shows
            const double x = f.IsLogX() ? t.ptLogical.x + W / 60.0 : t.ptLogical.x - (W * 0.01 - W / 60.0);
            const double data = f.IsLogX() ? std::pow(10.0, x) : x / f.ViewScaleX();
            const double tol = f.IsLogX() ? std::fabs(data) * dRelTol : W / f.ViewScaleX() * dRelTol;
            EXPECT_NEAR(shown * sx, data, tol) << "X text '" << t.strText.str() << "' under "
                                               << names[0].strText.str();
            ++nX;
            continue;
        }
        const double y = t.ptLogical.y + H * 0.01;
        const double data = f.IsLogY() ? std::pow(10.0, y) : y / f.ViewScaleY();
        const double tol = f.IsLogY() ? std::fabs(data) * dRelTol : H / f.ViewScaleY() * dRelTol;
        EXPECT_NEAR(shown * sy, data, tol) << "Y text '" << t.strText.str() << "' beside "
                                           << names[1].strText.str();
        ++nY;
    }
    return {nX, nY};
}

std::string Label(const Frame& fr, int axis)
{
    const std::vector<ChartText> names = Layer(fr.texts, ChartTextLayer::AxisName);
    return int(names.size()) > axis ? names[axis].strText.str() : std::string();
}

// One frame that draw paints, with every text it printed.
Frame Capture(CPlotvane_Manager& mgr, const std::function<void()>& draw)
{
    Frame fr;
    CGLChartView& view = *mgr.m_ChartDlg.GetGLChartView();
    view.SetTextHook([&fr](const ChartText& t) { fr.texts.push_back(t); });
    draw();
    view.SetTextHook({});
    fr.f = view.GetChartFrame();
    return fr;
}

class AxesTest : public HeadlessChartTest<800, 500>
{
protected:
    void SetUp() override
    {
        HeadlessChartTest::SetUp();
        m_dir = "/tmp/plotvane_axes_test_" + std::to_string(getpid());
        ASSERT_EQ(std::system(("mkdir -p " + m_dir).c_str()), 0);
        options.output = m_dir + "/chart.png";
        options.nWidth = kWidth;
        options.nHeight = kHeight;
        options.bLegend = false;
    }
    void TearDown() override { std::system(("rm -rf " + m_dir).c_str()); }

    // One frame as plotvane-render draws it.
    Frame Draw()
    {
        return Capture(m, [this] { plotvane::DrawChartToPng(m, options); });
    }

    void AddCurve(const std::vector<double>& xs, const std::vector<double>& ys)
    {
        CPlotvane_InputData& d = m.m_InputData;
        const int i = d.AddNewDataSet();
        d.SetCurrentEditSet(i);
        for (std::size_t k = 0; k < xs.size(); ++k)
            d.AddData(xs[k], ys[k]);
        d.SetGraphColor(CColor(0x0000FF));
        d.AddDrawDataSetIndex(i);
    }

    // No label-coloured pixel in the rightmost columns below the X axis,
    // where a value text cut by the window's edge would show.
    int LabelPixelsAtRightEdge(const Frame& fr)
    {
        const int row = int(fr.f.LogicalToPixel(fr.f.OriginX(), fr.f.OriginY()).y) + 4;
        return Image().CountColor(view->GetLabelColor(), kWidth - 2, row, kWidth, kHeight);
    }

    plotvane::RenderOptions options;
    std::string m_dir;
};

} // namespace

TEST_F(AxesTest, LinearTimeReadsTrueFromPicosecondsToSeconds)
{
    std::vector<double> spans = {625e-12, 10e-9, 30e-9};
    for (double s = 1e-12; s <= 1.01; s *= std::sqrt(10.0))
        spans.push_back(s);
    for (const double span : spans)
    {
        SCOPED_TRACE("span " + std::to_string(span));
        m.RemoveAllData();
        std::vector<double> xs, ys;
        for (int i = 0; i <= 100; ++i)
        {
            xs.push_back(span * i / 100.0);
            ys.push_back(1.2 * (i % 2));
        }
        AddCurve(xs, ys);
        plotvane::ApplyAxes(m, {"Time", "s"}, {"Voltage", "V"});
        const Frame fr = Draw();
        EXPECT_EQ(Label(fr, 0), plotvane::AxisLabel("Time", "s", plotvane::EngineeringPower(span)));
        EXPECT_EQ(Label(fr, 1), "Voltage (V)");
        const auto [nX, nY] = ExpectValueTextsTrue(fr, 1e-5);
        EXPECT_GE(nX, 3);
        EXPECT_GE(nY, 2);
        // The rightmost number shows whole, inside the window.
        EXPECT_EQ(LabelPixelsAtRightEdge(fr), 0);
    }
}

TEST_F(AxesTest, LogFrequencyAndImpedanceReadTrue)
{
    struct Range
    {
        double f0, f1, z0, z1;
    };
    // 1 Hz to 100 GHz and 1 uOhm to 1 kOhm, whole and in parts; a PDN
    // sweep from 1 kHz to 1 GHz once read "100G ... 100000T".
    const Range ranges[] = {{1, 1e11, 1e-6, 1e3},
                            {1e3, 1e9, 1e-4, 10},
                            {1, 1e3, 1e-6, 1e-3},
                            {1e6, 1e11, 1, 1e3}};
    for (const Range& r : ranges)
    {
        SCOPED_TRACE("from " + std::to_string(r.f0) + " Hz");
        m.RemoveAllData();
        m.m_nFrequencyScale = 1;
        m.m_bUseMagnitude = 1;
        m.m_nMagnitudeScale = 1;
        std::vector<double> xs, ys;
        for (int i = 0; i <= 200; ++i)
        {
            xs.push_back(r.f0 * std::pow(r.f1 / r.f0, i / 200.0));
            ys.push_back(r.z0 * std::pow(r.z1 / r.z0, i / 200.0));
        }
        AddCurve(xs, ys);
        plotvane::ApplyAxes(m, {"Frequency", "Hz"}, {"|Z|", "Ohm"});
        const Frame fr = Draw();
        EXPECT_EQ(Label(fr, 0), "Frequency (Hz)");
        EXPECT_EQ(Label(fr, 1), "|Z| (Ohm)");
        const auto [nX, nY] = ExpectValueTextsTrue(fr, 1e-4);
        EXPECT_GE(nX, 2);
        EXPECT_GE(nY, 2);
    }
}

TEST_F(AxesTest, EyeOverlayPrintsPicosecondsAtEverySpan)
{
    // One bit of 625 ps up to slow eyes of 30 ns, the time axis in ns.
    for (const double period : {625e-12, 1.25e-9, 10e-9, 30e-9})
    {
        SCOPED_TRACE("period " + std::to_string(period));
        m.RemoveAllData();
        plotvane::DdrEyeParams p;
        p.dPeriod = period;
        p.dRiseTime = period * 0.12;
        p.nPeriods = 16;
        const plotvane::DdrEye eye = plotvane::GenerateDdrEye(p);
        const plotvane::EyeChartSets sets = plotvane::AddDemoEyes(m, eye, false);
        CPlotvane_InputData& d = m.m_InputData;
        plotvane::ApplyEyeOptions(options, *d.GetChartPointDArray(sets.nDQ),
                                  *d.GetChartPointDArray(sets.nDQS),
                                  d.GetChartPointDArray(sets.nDQSBar));
        plotvane::EyeOutputs out;
        const plotvane::EyeMeasurement em = plotvane::DrawAndMeasureEye(m, sets, options, out);
        ASSERT_FALSE(std::isnan(em.dSetupPS));
        ASSERT_FALSE(std::isnan(em.dHoldPS));
        // The overlay truncates the same construction to whole ps.
        EXPECT_NEAR(em.dOverlaySetupPS, std::trunc(em.dSetupPS), 1.0);
        EXPECT_NEAR(em.dOverlayHoldPS, std::trunc(em.dHoldPS), 1.0);
        EXPECT_EQ(em.Pass(), std::optional<bool>(true));

        const Frame fr = Capture(m, [this] { m.RedrawGLChartView(); });
        EXPECT_EQ(Label(fr, 0), "Time (ns)");
        ExpectValueTextsTrue(fr, 1e-5);
        std::string summary;
        for (const ChartText& t : Layer(fr.texts, ChartTextLayer::Overlay))
            summary += t.strText.str() + "|";
        EXPECT_NE(summary.find("Setup Margin: " + std::to_string(int(em.dOverlaySetupPS)) + " ps"),
                  std::string::npos)
            << summary;
    }
}

// The demos set their own axes; their numbers must read true as well.
TEST_F(AxesTest, OverlayDemosValueTextsReadTrue)
{
    for (const plotvane::OverlayDemo& demo : plotvane::OverlayDemos())
    {
        SCOPED_TRACE(demo.name);
        CPlotvane_Manager mgr;
        plotvane::RenderOptions o;
        o.nWidth = 900;
        o.nHeight = 560;
        o.bLegend = false;
        o.output = m_dir + "/" + demo.name + ".png";
        ASSERT_TRUE(plotvane::CreateHeadlessChart(mgr, o.nWidth, o.nHeight));
        mgr.RemoveAllData();
        demo.build(mgr, o);
        ExpectValueTextsTrue(Capture(mgr, [&] { plotvane::DrawChartToPng(mgr, o); }), 1e-4);
    }
}

// The legend takes a corner that the curves leave free, or makes room
// above them when there is none.
TEST_F(AxesTest, LegendStandsWhereNoCurveRuns)
{
    options.bLegend = true;
    std::vector<double> xs, ys;
    for (int i = 0; i <= 200; ++i)
    {
        xs.push_back(i * 1e-11);
        ys.push_back(std::fabs(i - 100) * 0.01); // a V: the bottom corners are free
    }
    AddCurve(xs, ys);
    m.m_InputData.GetChartPointDArray(0)->m_strName = "v shape";
    plotvane::ApplyAxes(m, {"Time", "s"}, {"Voltage", "V"});
    Frame fr = Draw();
    std::vector<ChartText> legend = Layer(fr.texts, ChartTextLayer::Annotation);
    ASSERT_EQ(legend.size(), 1u);
    EXPECT_EQ(legend[0].strText.str(), "v shape");
    EXPECT_EQ(legend[0].crColor, 0x0000FFu);
    // The same frame without the legend has no curve where it stood: from
    // its line, 30 pixels before the name, to the name's end.
    const CPointD at = fr.f.LogicalToPixel(legend[0].ptLogical.x, legend[0].ptLogical.y);
    const int nFont = options.nFontSize;
    const CRect box(int(at.x) - 30, int(at.y) - nFont, int(at.x) + nFont * 7 * 8 / 10,
                    int(at.y) + nFont / 2);
    view->ClearTextDB();
    view->ClearLineDB();
    options.bLegend = false;
    Draw();
    EXPECT_EQ(CountColor(0x0000FF, box), 0);
    EXPECT_GT(CountColor(0x0000FF, CRect(0, 0, kWidth, kHeight)), 100);
    options.bLegend = true;

    // Noise over the whole plot: the legend goes above the highest sample.
    view->ClearTextDB();
    view->ClearLineDB();
    m.RemoveAllData();
    for (int i = 0; i <= 2000; ++i)
        ys[i % 201] = (i * 7919 % 101) / 100.0;
    AddCurve(xs, ys);
    AddCurve(xs, std::vector<double>(ys.rbegin(), ys.rend()));
    m.m_InputData.GetChartPointDArray(0)->m_strName = "a";
    m.m_InputData.GetChartPointDArray(1)->m_strName = "b";
    plotvane::ApplyAxes(m, {"Time", "s"}, {"Voltage", "V"});
    fr = Draw();
    legend = Layer(fr.texts, ChartTextLayer::Annotation);
    ASSERT_EQ(legend.size(), 2u);
    for (const ChartText& t : legend)
        EXPECT_GT(t.ptLogical.y, 1.0 * fr.f.ViewScaleY()) << t.strText.str();
}

// A range that the grid's own interval gives two lines gets a finer step
// in the picture, one that misses an eye's reference where it can, and a
// grid that would hide the reference a coarser one; the chart keeps its
// own interval, and an interval a person set stays.
TEST_F(AxesTest, YGridIsRefinedWhereSparseAndAroundLevelsThatMustShow)
{
    AddCurve({0.0, 1e-9}, {0.0, 1.2});
    plotvane::ApplyAxes(m, {"Time", "s"}, {"Voltage", "V"});
    const Frame fr = Draw();
    EXPECT_GE(ExpectValueTextsTrue(fr, 1e-6).second, 6);
    const CAxisAttribute& axis = m.m_Attribute.m_YAxis;
    EXPECT_EQ(axis.GetUserSettingInterval(), 0);

    const double own = m.GetYGridInterval();
    const double fifth = plotvane::RefineYGrid(m);
    EXPECT_NEAR(fifth, own / 5, own * 1e-12);
    EXPECT_EQ(m.GetYGridInterval(), fifth);
    plotvane::UndoRefinedYGrid(m, fifth);
    EXPECT_EQ(axis.GetUserSettingInterval(), 0);
    EXPECT_EQ(m.GetYGridInterval(), own);

    // 0.6 V lies on a line every fifth of a volt, not every quarter.
    const double quarter = plotvane::RefineYGrid(m, {0.6});
    EXPECT_NEAR(quarter, own / 4, own * 1e-12);
    plotvane::UndoRefinedYGrid(m, quarter);

    m.SetYGridInterval(own / 10);
    EXPECT_EQ(plotvane::RefineYGrid(m), 0.0);
    plotvane::UndoRefinedYGrid(m, own / 5);
    EXPECT_EQ(axis.GetUserSettingInterval(), 1);
    EXPECT_EQ(m.GetYGridInterval(), own / 10);

    // Enough lines, one of them on the level: a coarser step uncovers it.
    m.m_Attribute.m_YAxis.m_bUserSettingInterval = 0;
    m.RemoveAllData();
    AddCurve({0.0, 1e-9}, {0.0, 9.0});
    m.SetChartDrawFit();
    view->FitCurViewAreaWithWindow();
    const double step = m.GetYGridInterval();
    const double level = step / CPlotvane_InputData::m_dViewScaleY;
    ASSERT_GE(std::trunc(double(view->GetViewRectLP().height) / step), 8.0);
    EXPECT_EQ(plotvane::RefineYGrid(m, {level * 1.5}), 0.0) << "a level between lines";
    EXPECT_NEAR(plotvane::RefineYGrid(m, {level}), 2 * step, step * 1e-12);
}
