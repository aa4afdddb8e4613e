// The axis dialog without a toolkit: what it loads, stores and refuses.
#include "dialogs/dialog_test_support.h"

#include <plotvane/dialogs/Plotvane_Attribute_Dlg.h>

#include <utility>

using plotvane_test::IsEnabled;
using plotvane_test::TakeMessages;
using plotvane_test::TextOf;
using plotvane_test::Type;

namespace
{

class AttributeDialog : public ::testing::Test
{
protected:
    void SetUp() override
    {
        TakeMessages();
        CPlotvane_Attribute& a = m.m_Attribute;
        a.m_XAxis.SetAxisName("Time");
        a.m_YAxis.SetAxisName("Voltage");
        a.m_XAxis.SetStartPoint(-1.0);
        a.m_XAxis.SetEndPoint(4.5);
        a.m_nRangeMode = 2;
        ASSERT_TRUE(Dlg().Create(CPlotvane_Attribute_Dlg::IDD));
    }
    CPlotvane_Attribute_Dlg& Dlg() { return m.m_AttributeDlg; }
    CPlotvane_Attribute& Attr() { return m.m_Attribute; }

    CPlotvane_Manager m;
};

} // namespace

TEST_F(AttributeDialog, LoadsTheAttributeAndRadiosSwitchTheRangeMode)
{
    for (const auto& [id, text] : {std::pair{11035, "Time"}, {11036, "Voltage"}, {11031, "-1"},
                                   {11032, "4.5"}, {21020, "1"}})
        EXPECT_EQ(TextOf(Dlg(), id), CString(text)) << id;
    EXPECT_EQ(Dlg().m_rdoRange[2].GetCheck(), BST_CHECKED);
    EXPECT_EQ(Dlg().m_rdoRange[0].GetCheck(), BST_UNCHECKED);
    for (int id : {11031, 11032, 11033, 11034})
        EXPECT_TRUE(IsEnabled(Dlg(), id)) << id;

    Dlg().m_rdoRange[0].UserClicked(); // "Default"
    EXPECT_EQ(Attr().m_nRangeMode, 0);
    EXPECT_EQ(Dlg().m_rdoRange[2].GetCheck(), BST_UNCHECKED);
    for (int id : {11031, 11032, 11033, 11034})
        EXPECT_FALSE(IsEnabled(Dlg(), id)) << id;
    Dlg().m_rdoRange[1].UserClicked(); // "Base"
    EXPECT_EQ(Attr().m_nRangeMode, 1);
    EXPECT_FALSE(IsEnabled(Dlg(), 11033));
    Dlg().m_rdoRange[2].UserClicked(); // "User"
    EXPECT_EQ(Attr().m_nRangeMode, 2);
    EXPECT_TRUE(IsEnabled(Dlg(), 11033));
}

TEST_F(AttributeDialog, LeavingAFieldOrSubmitStoresEverything)
{
    Type(Dlg(), 11035, "Time (ns)");
    Type(Dlg(), 11033, "0.25");
    Type(Dlg(), 11034, "-3"); // start above end is kept; the range repairs it
    Type(Dlg(), 21021, "0");
    Dlg().m_edtFields[0].SendMessage(WM_KILLFOCUS);
    EXPECT_EQ(Attr().m_XAxis.GetAxisName(), CString("Time (ns)"));
    EXPECT_EQ(Attr().m_YAxis.GetStartPoint(), 0.25);
    EXPECT_EQ(Attr().m_YAxis.GetEndPoint(), -3.0);
    EXPECT_EQ(Attr().m_YAxis.GetGridInterval(), 0.0);
    EXPECT_TRUE(Attr().m_YAxis.GetUserSettingInterval());
    EXPECT_TRUE(TakeMessages().empty());

    m.m_InputData.GetMaxAndMin();
    EXPECT_EQ(Attr().m_YAxis.GetStartPoint(), -3.0);
    EXPECT_EQ(Attr().m_YAxis.GetEndPoint(), 0.25);

    Type(Dlg(), 11036, "Current");
    Dlg().SendMessage(WM_COMMAND, MAKEWPARAM(11037, BN_CLICKED));
    EXPECT_EQ(Attr().m_YAxis.GetAxisName(), CString("Current"));
}

TEST_F(AttributeDialog, BadNumbersAndNegativeIntervalsLeaveTheAttribute)
{
    const CPlotvane_Attribute before = Attr();
    Type(Dlg(), 11035, "Renamed");
    Type(Dlg(), 11032, "4.5 ns");
    Dlg().OnBtnSubmit();
    std::vector<CString> shown = TakeMessages();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_NE(shown[0].Find("Please enter a number."), -1);
    EXPECT_TRUE(Attr() == before);
    EXPECT_EQ(CWnd::GetFocus(), Dlg().GetDlgItem(11032));

    Type(Dlg(), 11032, "4.5");
    Type(Dlg(), 21020, "-0.5");
    Dlg().OnBtnSubmit();
    shown = TakeMessages();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_NE(shown[0].Find("grid interval"), -1);
    EXPECT_TRUE(Attr() == before);
    EXPECT_FALSE(Attr().m_XAxis.GetUserSettingInterval());
}

// The mouse position reaches its own control only: a field being typed in
// keeps what the user typed.
TEST_F(AttributeDialog, CurrentPointTextLeavesTypedFieldsAlone)
{
    Type(Dlg(), 11035, "half typed");
    CPlotvane_InputData::SetViewScaleX(100.0);
    CPlotvane_InputData::SetViewScaleY(100.0);
    Attr().SetCurrentPointText(CPoint(1500, -500)); // the unit 1 divides by 10
    EXPECT_EQ(TextOf(Dlg(), 21022), CString("X:1.500 Y:-0.500"));
    EXPECT_EQ(TextOf(Dlg(), 11035), CString("half typed"));
    EXPECT_EQ(Attr().m_XAxis.GetAxisName(), CString("Time"));
}

TEST(DataExchange, NumbersAreWholeFiniteTexts)
{
    double d = 7.0;
    EXPECT_TRUE(plotvane::ParseDouble(" -2.5e-3 ", d));
    EXPECT_EQ(d, -2.5e-3);
    for (const char* bad : {"", " ", "1,5", "2x", "inf", "nan", "1e400"})
        EXPECT_FALSE(plotvane::ParseDouble(bad, d)) << bad;
    int n = 0;
    EXPECT_TRUE(plotvane::ParseInt("42", n));
    EXPECT_EQ(n, 42);
    EXPECT_FALSE(plotvane::ParseInt("4.2", n));
    EXPECT_FALSE(plotvane::ParseInt("99999999999", n));
    EXPECT_EQ(n, 42);
}
