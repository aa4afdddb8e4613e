// Grid and axes: grid lines on whole multiples of the interval in the three
// looks, minor decade lines of logarithmic axes, the unit text of axis
// names, and the axis names on screen.
#include "chart_fixture.h"

namespace
{

constexpr COLORREF kGrid = 0xD3D3D3;

class GridAxes : public ChartFixture
{
protected:
    // Client row of logical y on a frame whose bottom is `bottom`, at
    // `perUnit` pixels per unit.
    static int RowOf(double y, double bottom, double perUnit = 1.0)
    {
        return kHeight - 1 - int((y - bottom) * perUnit);
    }
};

TEST_F(GridAxes, LinesLieOnWholeMultiplesInEachLook)
{
    // Interval 100 both ways; the frame's left and bottom are no multiples,
    // so a grid counted from the edges would stand 37 and 23 pixels off.
    SetFrame(-37, -23, 363, 277);
    const int col100 = 137; // x = 100
    const int rowY100 = RowOf(100, -23);
    const int rowPlot = RowOf(150, -23);
    const int rowTick = RowOf(5, -23); // between oy - ty = -3 and oy = 7

    view->SetGridMode(0);
    Paint();
    EXPECT_EQ(m.GetXGridInterval(), 100.0);
    EXPECT_TRUE(ColorNear(kGrid, col100, rowPlot));
    EXPECT_FALSE(ColorNear(kGrid, 100, rowPlot));
    EXPECT_TRUE(ColorNear(kGrid, 350, rowY100));
    EXPECT_FALSE(ColorNear(kGrid, 350, RowOf(77, -23)));
    EXPECT_TRUE(ColorNear(kGrid, 37, rowY100)); // on across the tick

    view->SetGridMode(1);
    Paint();
    EXPECT_FALSE(ColorNear(kGrid, col100, rowPlot));
    EXPECT_FALSE(ColorNear(kGrid, 350, rowY100));
    EXPECT_TRUE(ColorNear(kGrid, col100, rowTick));
    EXPECT_TRUE(ColorNear(kGrid, 37, rowY100));

    view->SetGridMode(2);
    Paint();
    const int dotted =
        Image().CountColor(kGrid, col100 - 1, RowOf(270, -23), col100 + 2, RowOf(20, -23));
    EXPECT_GT(dotted, 10);
    EXPECT_LT(dotted, 100); // a solid line would light about 250
    const int dottedRow = Image().CountColor(kGrid, 60, rowY100 - 1, 390, rowY100 + 2);
    EXPECT_GT(dottedRow, 10);
    EXPECT_LT(dottedRow, 120);
    EXPECT_TRUE(ColorNear(kGrid, col100, rowTick));
}

TEST_F(GridAxes, LogarithmicAxesGetMinorDecadeLines)
{
    // Y in decades from -3.5 to 0.5, 75 pixels per decade: the row at
    // Y = -2 fills the decade under it, down to -2.699 for k = 2.
    SetFrame(0, -3.5, 400, 0.5);
    m.m_nMagnitudeScale = 1;
    Paint();
    EXPECT_TRUE(ColorNear(kGrid, 250, RowOf(-2.699, -3.5, 75)));
    EXPECT_FALSE(ColorNear(kGrid, 250, RowOf(-2.85, -3.5, 75)));
    EXPECT_FALSE(ColorNear(kGrid, 250, RowOf(-3.046, -3.5, 75))); // none under the first row
    m.m_nMagnitudeScale = 0;
    Paint();
    EXPECT_FALSE(ColorNear(kGrid, 250, RowOf(-2.699, -3.5, 75)));

    // X in decades from -0.5 to 3.5, 100 pixels per decade: columns from the
    // third on get minor lines, so 1.301 (under 2) has one and 0.301 (under
    // 1) has none.
    m.SetFrequencyScale(1);
    SetFrame(-0.5, 0, 3.5, 300);
    Paint();
    EXPECT_TRUE(ColorNear(kGrid, 180, Row(150)));
    EXPECT_TRUE(ColorNear(kGrid, 280, Row(150)));
    EXPECT_FALSE(ColorNear(kGrid, 80, Row(150)));
    EXPECT_EQ(m.m_nFormatType, 1); // forced to 2 for the value texts only
}

TEST_F(GridAxes, AxisNamesAppearOnceTheirFontHasASize)
{
    m.SetAxisXName("Time (s)");
    m.SetAxisYName("Voltage");
    m.m_Attribute.m_XAxis.SetUnitName("nano");
    view->SetAxisColor(0x808080);
    const COLORREF label = view->GetLabelColor();
    Paint();
    // The Y name stands at the top left, clear of the value texts.
    EXPECT_EQ(Image().CountColor(label, 0, 0, 100, 14), 0);
    const int xBefore = Image().CountColor(label, 190, 270, kWidth, kHeight);

    m.SetXYFontSize(12);
    Paint();
    EXPECT_EQ(m.GetXYFontSize(), 12);
    EXPECT_GT(Image().CountColor(label, 0, 0, 100, 14), 20);
    EXPECT_GT(Image().CountColor(label, 190, 270, kWidth, kHeight), xBefore + 20);
    EXPECT_EQ(view->GetXAxisDisplayString(), "Time (ns)");
}

TEST(AxisText, UnitWordsPrefixesAndNames)
{
    CPlotvane_Manager m;
    CGLChartView& v = *m.m_ChartDlg.GetGLChartView();

    EXPECT_EQ(v.ChangeUnitString("pico"), "p");
    EXPECT_EQ(v.ChangeUnitString("0"), "");
    EXPECT_EQ(v.ChangeUnitString("Kilo"), "K");
    EXPECT_EQ(v.ChangeUnitString("kilo"), "kilo"); // exact, with case

    // Prefixes: X and Y spell 3 and 9 differently, and both take the X
    // axis's unit name.
    m.SetUnitNameX("Hz");
    m.SetUnitNameY("V");
    EXPECT_EQ(v.GetUnitNameX(3), "(KHz)");
    EXPECT_EQ(v.GetUnitNameY(3), "(kHz)");
    EXPECT_EQ(v.GetUnitNameY(9), "(gHz)");
    EXPECT_EQ(v.GetUnitNameX(-6), "(uHz)");
    EXPECT_EQ(v.GetUnitNameX(2), "(Hz)");
    m.SetUnitNameX("");
    EXPECT_EQ(v.GetUnitNameY(-1), "");
    EXPECT_EQ(v.GetUnitNameX(12), "(T)");

    // Names: a bracket takes the unit inside, otherwise it is appended in
    // brackets, and a bracketed unit doubles them.
    EXPECT_EQ(v.GetAxisName("Time (s)", "(n)"), "Time (ns)");
    EXPECT_EQ(v.GetAxisName("Voltage (V)", ""), "Voltage (V)");
    EXPECT_EQ(v.GetAxisName("Voltage", ""), "Voltage");
    EXPECT_EQ(v.GetAxisName("Freq", "(K)"), "Freq((K))");
    EXPECT_EQ(v.GetAxisName_Log("Freq", "Hz"), "FreqHz");

    // Display strings: a unit word wins, else the prefix of the data's
    // unit base (a range of 5 ns here).
    CPlotvane_InputData::SetViewScaleX(1.0);
    m.m_InputData.m_dMinX = 0.0;
    m.m_InputData.m_dMaxX = 5e-9;
    m.SetAxisXName("Time (s)");
    EXPECT_EQ(v.GetXAxisDisplayString(), "Time (ns)");
    m.m_Attribute.m_XAxis.SetUnitName("0");
    EXPECT_EQ(v.GetXAxisDisplayString(), "Time (s)");

    // The engineering format shows names bare: its numbers carry prefixes.
    m.m_nFormatType = 2;
    EXPECT_EQ(v.GetAxisName("Time (s)", "(n)"), "Time (s)");
    m.SetUnitNameX("s");
    EXPECT_EQ(v.GetUnitNameX(-9), "");
    EXPECT_EQ(v.GetUnitNameY(-9), "(ns)");
}

} // namespace
