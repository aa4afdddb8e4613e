// Grid intervals, unit bases, scales and number text of the manager. The
// intervals read the view's visible rectangle, so those cases draw into an
// offscreen chart; the others need no window.
#include "common/gl_required.h"

#include <plotvane/plotvane.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace
{

class ManagerGrid : public testing::Test
{
protected:
    void SetUp() override
    {
        CPlotvane_InputData::SetViewScaleX(1.0);
        CPlotvane_InputData::SetViewScaleY(1.0);
        SetExtents(0, 0, 1, 1);
    }
    void SetExtents(double minX, double minY, double maxX, double maxY)
    {
        m.m_InputData.m_dMinX = minX;
        m.m_InputData.m_dMinY = minY;
        m.m_InputData.m_dMaxX = maxX;
        m.m_InputData.m_dMaxY = maxY;
    }
    // A window whose visible rectangle is (0, 0) to (w, h) logical units.
    bool ShowRect(float w, float h)
    {
        CGLChartView* v = m.m_ChartDlg.GetGLChartView();
        if (v->GetSafeHwnd() == nullptr && !plotvane::CreateHeadlessChart(m, 400, 300))
            return false;
        v->m_rcViewArea.SetData(0.0f, 0.0f, w, h);
        v->SendMessage(WM_PAINT);
        return true;
    }
    static double FromBits(std::uint64_t bits)
    {
        double d = 0;
        std::memcpy(&d, &bits, sizeof d);
        return d;
    }

    CPlotvane_Manager m;
};

#define SHOW_RECT(w, h)                                                                            \
    PLOTVANE_REQUIRE_GL();                                                                         \
    ASSERT_TRUE(ShowRect(w, h))

TEST_F(ManagerGrid, ZeroExtentAnswersHalfWithoutAView)
{
    SetExtents(3, 3, 3, 3); // no window: the view must not be asked
    EXPECT_EQ(m.CalcGridIntervalX(), 0.5);
    EXPECT_EQ(m.CalcGridIntervalY(), 0.5);
}

TEST_F(ManagerGrid, ComputedIntervals)
{
    SHOW_RECT(1600, 1600);
    // d = 1000 after the decade steps, n = 3: a quarter.
    EXPECT_EQ(m.CalcGridIntervalX(), 250.0);
    EXPECT_EQ(m.CalcGridIntervalY(), 1000.0); // Y has no quarter step
    EXPECT_EQ(m.GetXGridInitialIntervalForText(), 250.0);
    EXPECT_EQ(m.GetYGridInitialIntervalForText(), 250.0); // but its text form has
    EXPECT_EQ(m.GetXAxisTextCount(), 6);
    EXPECT_EQ(m.GetYAxisTextCount(), 1);

    // A width of 2000 comes back from the GL matrices a little short (float
    // ortho scale), so 2048 stands for "n = 4": the decade itself.
    SHOW_RECT(2048, 30);
    EXPECT_EQ(m.CalcGridIntervalX(), 1000.0);
    EXPECT_EQ(m.CalcGridIntervalY(), 10.0);

    CPointF a, b;
    CPlotvane_InputData::SetViewScaleX(100.0); // unit 1: scale 1/100
    m.GetViewAreaLPPoint(a, b);
    EXPECT_FLOAT_EQ(b.x, 20.48f);
    EXPECT_FLOAT_EQ(b.y, 30.0f);
    EXPECT_NEAR(a.x, 0.0f, 1e-6);
    EXPECT_EQ(m.GetXGridIntervalForText(), 10.0);
}

TEST_F(ManagerGrid, UserIntervalsAndTheirLimits)
{
    SHOW_RECT(2900, 2900);
    // 29 lines: X keeps it; Y counts 2 more and drops it.
    m.SetXGridInterval(100.0);
    m.SetYGridInterval(100.0);
    EXPECT_EQ(m.GetXGridInterval(), 100.0);
    EXPECT_EQ(m.GetYGridInterval(), m.CalcGridIntervalY());
    EXPECT_EQ(m.m_Attribute.m_YAxis.GetGridInterval(), 100.0); // stored value stays

    // More than 30 lines is ignored; 0 means "compute".
    m.SetXGridInterval(50.0);
    EXPECT_EQ(m.GetXGridInterval(), m.CalcGridIntervalX());
    m.SetXGridInterval(0.0);
    EXPECT_EQ(m.GetXGridInterval(), m.CalcGridIntervalX());

    // A logarithmic X axis ignores the user's interval; Y does not care.
    m.SetXGridInterval(500.0);
    m.SetYGridInterval(500.0);
    m.SetFrequencyScale(1);
    EXPECT_EQ(m.GetXGridInterval(), m.CalcGridIntervalX());
    EXPECT_EQ(m.GetYGridInterval(), 500.0);

    // By text: the value is divided by the scale.
    CPlotvane_InputData::SetViewScaleY(100.0);
    m.SetYGridIntervalByText(2.0);
    EXPECT_EQ(m.m_Attribute.m_YAxis.GetGridInterval(), 200.0);
}

TEST_F(ManagerGrid, UnitBasesAndScales)
{
    auto xBase = [&](double range)
    {
        SetExtents(0, 0, range, 1);
        return m.GetXUnitBase();
    };
    EXPECT_EQ(xBase(12345.0), 3);  // dec 5
    EXPECT_EQ(xBase(123456.0), 6); // dec 6
    EXPECT_EQ(xBase(5e-11), -12);
    EXPECT_EQ(xBase(5e-9), -9);
    EXPECT_EQ(xBase(5e-6), -6);
    EXPECT_EQ(xBase(5e-4), -3);
    EXPECT_EQ(xBase(0.05), -1);
    EXPECT_EQ(xBase(123.0), 3);
    EXPECT_EQ(xBase(5e11), 12);

    // The view scale divides the range on a linear axis only; a logarithmic
    // X axis takes the top frequency itself.
    CPlotvane_InputData::SetViewScaleX(1e11);
    SetExtents(0, 0, 5e-9 * 1e11, 1); // 5 ns
    EXPECT_EQ(m.GetXUnitBase(), -9);
    m.SetFrequencyScale(1);
    SetExtents(100, 0, 5e9, 1);
    EXPECT_EQ(m.GetXUnitBase(), 9);

    // Y: the view scale does not apply to a logarithmic magnitude axis.
    CPlotvane_InputData::SetViewScaleY(1e4);
    SetExtents(0, 0, 1, 5e3);
    EXPECT_EQ(m.GetYUnitBase(), 0);
    m.m_nMagnitudeScale = 1;
    EXPECT_EQ(m.GetYUnitBase(), 3);

    // Units: computed from the view scale unless the user fixed one.
    CPlotvane_InputData::SetViewScaleX(1e11);
    EXPECT_EQ(m.GetXUnit(), 1e12);
    EXPECT_EQ(m.GetScaleX(), 10.0);
    m.SetXUnitBase(9);
    EXPECT_EQ(m.m_Attribute.m_XAxis.GetUnit(), 1e-9);
    EXPECT_EQ(m.GetXUnit(), 1e-9);
    m.m_bApplyUnit = 0;
    EXPECT_EQ(m.GetScaleX(), 1e-11);
    EXPECT_EQ(m.GetEyeMaskHeightForText(), m.GetYUnit() * 0.5);
}

TEST_F(ManagerGrid, NumberText)
{
    // 0: "%d" of the double's low 32 bits.
    m.m_nFormatType = 0;
    EXPECT_EQ(m.GetDisplayNumberByFormatType(1.0), "0");
    EXPECT_EQ(m.GetDisplayNumberByFormatType(FromBits(0x40000000FFFFFFFFull)), "-1");
    EXPECT_EQ(m.GetDisplayNumberByFormatType(FromBits(0x3FF0000080000000ull)), "-2147483648");
    EXPECT_EQ(m.GetDisplayNumberByFormatType(FromBits(0x000000000000007Bull)), "123");

    m.m_nFormatType = 1;
    EXPECT_EQ(m.GetDisplayNumberByFormatType(3.14159), "3.14");
    m.m_nMagnitudeScale = 1;
    EXPECT_EQ(m.GetDisplayNumberByFormatType(31415.9), "3.1e+04");

    m.m_nFormatType = 2;
    EXPECT_EQ(m.GetDisplayNumberByFormatType(1500.0), "1.5K");
    EXPECT_EQ(m.GetDisplayNumberByFormatType(1000.0), "1K");
    EXPECT_EQ(m.GetDisplayNumberByFormatType(999.0), "999");
    EXPECT_EQ(m.GetDisplayNumberByFormatType(123456.0), "123.46K");
    EXPECT_EQ(m.GetDisplayNumberByFormatType(-5000.0), "-5000");
    EXPECT_EQ(m.GetDisplayNumberByFormatType(2.5e9), "2.5G");
    EXPECT_EQ(m.GetDisplayNumberByFormatType(1e13), "10T");
    EXPECT_EQ(m.GetDisplayNumberByFormatType(0.25), "0.25");

    m.m_nFormatType = 3;
    EXPECT_EQ(m.GetDisplayNumberByFormatType(1.0), "");
}

} // namespace
