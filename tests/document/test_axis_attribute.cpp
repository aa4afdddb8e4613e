#include "document/record_bytes.h"

#include <plotvane/document/AxisAttribute.h>

#include <plotvane/dialogs/Plotvane_Attribute_Dlg.h>
#include <plotvane/document/Plotvane_InputData.h>

#include <gtest/gtest.h>

#include <cstdint>

namespace
{
CPlotvane_Manager* FakeManager(int n)
{
    return reinterpret_cast<CPlotvane_Manager*>(static_cast<std::uintptr_t>(0x1000 * n));
}
} // namespace

TEST(AxisUnits, CalcUnitFollowsTheDecimalExponent)
{
    CAxisAttribute a;
    EXPECT_EQ(a.CalcUnit(100.0), 1.0);
    EXPECT_EQ(a.CalcUnit(10.0), 1.0);
    EXPECT_EQ(a.CalcUnit(999.0), 1.0);
    EXPECT_EQ(a.CalcUnit(1000.0), 10000.0);
    EXPECT_EQ(a.CalcUnit(0.5), 1.0);
    EXPECT_DOUBLE_EQ(a.CalcUnit(0.05), 0.1);
    EXPECT_DOUBLE_EQ(a.CalcUnit(1e8), 1e9);
}

TEST(AxisUnits, SetUnitBaseSnapsToEngineeringPowers)
{
    const struct
    {
        int e;
        double unit;
    } cases[] = {{-1, 1.0},  {-3, 1e-3},   {-4, 1e-6},   {-5, 1e-6}, {-6, 1e-6}, {-7, 1e-9},
                 {-9, 1e-9}, {-10, 1e-12}, {-40, 1e-12}, {0, 1.0},   {2, 100.0}, {4, 1e3},
                 {6, 1e6},   {8, 1e6},     {11, 1e9},    {12, 1e12}, {15, 1e12}};
    for (const auto& c : cases)
    {
        CAxisAttribute a;
        a.SetUnitBase(c.e);
        EXPECT_DOUBLE_EQ(a.GetUnit(), c.unit) << "e = " << c.e;
        EXPECT_EQ(a.GetUserSettingUnit(), 1);
    }
}

TEST(AxisAttribute, CopyRulesAndEquality)
{
    CAxisAttribute a, b;
    a.SetCPlotvaneMgr(FakeManager(1));
    b.SetCPlotvaneMgr(FakeManager(2));
    a.SetAxisName("Time");
    a.SetEndPoint(5.0);
    b = a;
    EXPECT_EQ(b.m_pChartMgr, FakeManager(2));
    EXPECT_TRUE(b == a);
    CAxisAttribute c(a);
    EXPECT_EQ(c.m_pChartMgr, FakeManager(1));
    c.SetAxisName("time");
    EXPECT_TRUE(c != a);

    CPlotvane_Attribute_Dlg dlg;
    CPlotvane_Attribute p, q;
    p.SetCPlotvane_AttributeDlg(&dlg);
    p.m_nUnitChange = 1;
    q = p;
    EXPECT_EQ(q.m_pAttributeDlg, nullptr);
    EXPECT_TRUE(q == p);
    CPlotvane_Attribute r(p);
    EXPECT_EQ(r.m_pAttributeDlg, &dlg);

    // Only axes 0 and 1 exist.
    q.SetAxisAttribute(1, c);
    q.SetAxisAttribute(2, a);
    EXPECT_STREQ(q.m_YAxis.GetAxisName(), "time");
    EXPECT_TRUE(q.m_XAxis == CAxisAttribute());
}

TEST(AxisAttribute, RecordBytesAndRoundTrip)
{
    CAxisAttribute a;
    a.SetAxisName("V");
    a.SetUnitBase(-3);
    // The unit is stored as set by hand, 1e-3.
    EXPECT_EQ(plotvane_test::Store(a), plotvane_test::Axis("V", 0, "", 1e-3, 1));

    CPlotvane_Attribute p, q;
    p.m_XAxis = a;
    p.m_nRangeMode = 2;
    p.m_strCurrentPoint = "X:1.000 Y:2.000";
    plotvane_test::Loader in(plotvane_test::Store(p));
    q.Serialize(in.ar);
    EXPECT_TRUE(q == p);
}

TEST(AxisAttribute, CurrentPointTextUsesTheUnitAsExponent)
{
    CPlotvane_InputData::SetViewScaleX(100.0);
    CPlotvane_InputData::SetViewScaleY(10.0);
    CPlotvane_Attribute p;
    p.m_YAxis.SetUnit(2); // divides by 10^2, not by 2
    CPlotvane_Attribute_Dlg dlg;
    p.SetCPlotvane_AttributeDlg(&dlg);
    p.SetCurrentPointText(CPoint(250, -500));
    EXPECT_STREQ(p.m_strCurrentPoint, "X:0.250 Y:-0.500");
    // No window: the dialog's field is left as it was.
    EXPECT_TRUE(dlg.m_strCurrentPoint.IsEmpty());
    CPlotvane_InputData::SetViewScaleX(100.0);
    CPlotvane_InputData::SetViewScaleY(100.0);
}
