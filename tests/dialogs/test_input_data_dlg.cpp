// The data dialog without a toolkit: its handlers on a chart's data store,
// and its lists as the user would click them.
#include "dialogs/dialog_test_support.h"

#include <plotvane/dialogs/Plotvane_InputData_Dlg.h>

#include <functional>
#include <set>

using plotvane_test::IsEnabled;
using plotvane_test::TakeMessages;
using plotvane_test::TextOf;
using plotvane_test::Type;

namespace
{

// A chart with sets "A" (three points) and "B" (empty), both drawn, and its
// data dialog open.
class DataDialog : public ::testing::Test
{
protected:
    void SetUp() override
    {
        TakeMessages();
        CPlotvane_InputData& d = Data();
        for (const char* name : {"A", "B"})
        {
            const int set = d.AddNewDataSet();
            d.SetCurrentEditSet(set);
            d.SetCurrentEditSetName(name);
            d.AddDrawDataSetIndex(set);
        }
        d.SetCurrentEditSet(0);
        d.AddData(1.0, 10.0);
        d.AddData(2.0, 20.0);
        d.AddData(3.0, 30.0);
        ASSERT_TRUE(Dlg().Create(CPlotvane_InputData_Dlg::IDD));
    }
    // The store drops deleted points without freeing them, as the dialog
    // has always had it; the test frees those it saw before a deletion.
    void TearDown() override
    {
        ForEachPoint([this](CChartPointD* p) { m_seen.erase(p); });
        for (CChartPointD* p : m_seen)
            delete p;
    }
    void TrackPoints() { ForEachPoint([this](CChartPointD* p) { m_seen.insert(p); }); }
    void ForEachPoint(const std::function<void(CChartPointD*)>& f)
    {
        for (int set = 0; set < int(Data().GetDataSetSize()); ++set)
        {
            const CChartPointDArray& a = *Data().GetChartPointDArray(set);
            for (INT_PTR i = 0; i < a.GetSize(); ++i)
                f(a.GetAt(i));
        }
    }
    CPlotvane_InputData& Data() { return m.m_InputData; }
    CPlotvane_InputData_Dlg& Dlg() { return m.m_InputDataDlg; }
    CExXListCtrl& Sets() { return Dlg().m_ctrlSetList; }
    CExXListCtrl& Points() { return Dlg().m_ctrlPointList; }
    // Selects set row i in the list and presses "Edit Set".
    void EditSet(int i)
    {
        Sets().UserSelected({i}, i);
        Dlg().OnBtnTlcMainEditset();
    }
    std::vector<int> Drawn()
    {
        CArrayN arr;
        Data().GetDrawlDataSetIndexArray(arr);
        return std::vector<int>(arr.GetData(), arr.GetData() + arr.GetSize());
    }
    std::vector<double> Xs(int set)
    {
        std::vector<double> xs;
        for (int i = 0; i < Data().GetDataSize(set); ++i)
            xs.push_back(Data().GetChartPointDArray(set)->GetAt(i)->GetX());
        return xs;
    }

    CPlotvane_Manager m;
    std::set<CChartPointD*> m_seen;
};

} // namespace

TEST(DataDialogInit, AChartWithoutSetsGetsTheSetNoData)
{
    CPlotvane_Manager m;
    ASSERT_TRUE(m.m_InputDataDlg.Create(CPlotvane_InputData_Dlg::IDD));
    ASSERT_EQ(m.m_InputData.GetDataSetSize(), 1u);
    EXPECT_EQ(m.m_InputDataDlg.m_ctrlSetList.GetItemText(0, 0), CString("NoData"));
    EXPECT_TRUE(m.m_InputDataDlg.m_ctrlSetList.GetCheck(0));
}

TEST_F(DataDialog, OpensWithSetsListedAndPointEditingDisabled)
{
    ASSERT_EQ(Sets().GetItemCount(), 2);
    EXPECT_EQ(Sets().GetItemText(1, 0), CString("B"));
    EXPECT_TRUE(Sets().GetCheck(0) && Sets().GetCheck(1));
    EXPECT_EQ(Sets().GetExtendedStyle(), 37u);
    EXPECT_EQ(Points().GetExtendedStyle(), 33u);
    EXPECT_EQ(Points().GetHeader().GetItemText(1), CString("Y"));
    EXPECT_EQ(Sets().GetColumnWidth(0), 160);
    const int editing[] = {11001, 11002, 11003, 11015, 11016, 11029, 21016};
    for (int id : editing)
        EXPECT_FALSE(IsEnabled(Dlg(), id)) << id;
    EditSet(0);
    for (int id : editing)
        EXPECT_TRUE(IsEnabled(Dlg(), id)) << id;
    EXPECT_EQ(TextOf(Dlg(), 21016), CString("A"));
    ASSERT_EQ(Points().GetItemCount(), 3);
    EXPECT_EQ(Points().GetItemText(2, 1), CString("30.00000"));
}

TEST_F(DataDialog, AddRenameAndDeleteSets)
{
    Dlg().OnBtnTlcMainAddset();
    ASSERT_EQ(Data().GetDataSetSize(), 3u);
    EXPECT_EQ(Data().GetCurrentEditSet(), 2);
    EXPECT_EQ(Sets().GetItemText(2, 0), CString("New Set"));
    EXPECT_TRUE(Sets().GetCheck(2));
    EXPECT_EQ(Sets().GetNextItem(-1, LVNI_SELECTED), 2);

    // Renaming follows the typing; an empty field is not a name.
    Type(Dlg(), 21016, "Clock");
    Dlg().m_edtSetName.UserChangedText();
    EXPECT_EQ(Data().GetChartPointDArray(2)->m_strName, CString("Clock"));
    EXPECT_EQ(Sets().GetItemText(2, 0), CString("Clock"));
    Type(Dlg(), 21016, "");
    Dlg().m_edtSetName.UserChangedText();
    EXPECT_EQ(Data().GetChartPointDArray(2)->m_strName, CString("Clock"));
    EXPECT_TRUE(TakeMessages().empty());
    Dlg().m_edtSetName.SendMessage(WM_KILLFOCUS);
    ASSERT_EQ(TakeMessages().size(), 1u);
    EXPECT_EQ(TextOf(Dlg(), 21016), CString("Clock"));

    // Deleting a set: set 0 becomes the edit set and is drawn again; the
    // draw set keeps its old indices, as the store does.
    Data().RemoveDrawDataSetByValue(0);
    Sets().UserSelected({1}, 1);
    Dlg().OnBtnTlcMainDeleteset();
    ASSERT_EQ(Data().GetDataSetSize(), 2u);
    EXPECT_EQ(Data().GetChartPointDArray(1)->m_strName, CString("Clock"));
    EXPECT_EQ(Data().GetCurrentEditSet(), 0);
    EXPECT_EQ(Drawn(), (std::vector<int>{1, 2, 0}));
    EXPECT_EQ(Sets().GetItemCount(), 2);
}

TEST_F(DataDialog, TheLastSetCannotBeDeleted)
{
    Sets().UserSelected({1}, 1);
    Dlg().OnBtnTlcMainDeleteset();
    EXPECT_TRUE(TakeMessages().empty());
    ASSERT_EQ(Data().GetDataSetSize(), 1u);
    Sets().UserSelected({0}, 0);
    Dlg().OnBtnTlcMainDeleteset();
    const std::vector<CString> shown = TakeMessages();
    ASSERT_EQ(shown.size(), 1u);
    EXPECT_NE(shown[0].Find("Can't delete last Item In List"), -1);
    EXPECT_EQ(Data().GetDataSetSize(), 1u);
    EXPECT_EQ(Sets().GetItemCount(), 1);
}

TEST_F(DataDialog, CheckBoxesChooseTheDrawnSets)
{
    Sets().UserToggledCheck(0);
    EXPECT_EQ(Drawn(), (std::vector<int>{1}));
    Sets().UserToggledCheck(1);
    EXPECT_TRUE(Drawn().empty());
    Sets().UserToggledCheck(1);
    Sets().UserToggledCheck(0);
    EXPECT_EQ(Drawn(), (std::vector<int>{0, 1}));
}

TEST_F(DataDialog, InputAppendsOrInsertsAtTheSelectedRow)
{
    EditSet(0);
    Type(Dlg(), 11001, "4");
    Type(Dlg(), 11002, "-4e-3");
    Dlg().OnBtnTlcMainInput();
    EXPECT_EQ(Xs(0), (std::vector<double>{1, 2, 3, 4}));
    EXPECT_EQ(Data().GetDataY(3), -4e-3);
    EXPECT_EQ(TextOf(Dlg(), 11001), CString("0"));
    EXPECT_EQ(Points().GetItemCount(), 4);

    // A selected row takes the new point in its place.
    Points().UserSelected({1}, 1);
    EXPECT_EQ(TextOf(Dlg(), 11001), CString("2"));
    Type(Dlg(), 11001, "1.5");
    Dlg().OnBtnTlcMainInput();
    EXPECT_EQ(Xs(0), (std::vector<double>{1, 1.5, 2, 3, 4}));
    EXPECT_EQ(Data().GetSelectRow(), -1);
}

TEST_F(DataDialog, TextThatIsNoNumberAddsNothing)
{
    EditSet(0);
    for (const char* bad : {"abc", "", "1.5x", "nan", "1e999"})
    {
        Type(Dlg(), 11001, bad);
        Dlg().OnBtnTlcMainInput();
        const std::vector<CString> shown = TakeMessages();
        ASSERT_EQ(shown.size(), 1u) << bad;
        EXPECT_NE(shown[0].Find("Please enter a number."), -1);
        EXPECT_EQ(Data().GetDataSize(0), 3) << bad;
    }
    // The bad field has the focus, to be corrected.
    EXPECT_EQ(CWnd::GetFocus(), Dlg().GetDlgItem(11001));
}

TEST_F(DataDialog, ModifyAndDeleteTheSelectedRows)
{
    EditSet(0);
    Points().UserSelected({2}, 2);
    Type(Dlg(), 11002, "33");
    Dlg().OnBtnTlcMainModify();
    EXPECT_EQ(Data().GetDataY(2), 33.0);
    EXPECT_EQ(Points().GetItemText(2, 1), CString("33.00000"));
    // Nothing selected any more: Modify does nothing.
    Type(Dlg(), 11002, "99");
    Dlg().OnBtnTlcMainModify();
    EXPECT_EQ(Data().GetDataY(2), 33.0);

    TrackPoints();
    Points().UserSelected({0, 2}, 2);
    Dlg().OnBtnTlcMainDelete();
    EXPECT_EQ(Xs(0), (std::vector<double>{2}));
    EXPECT_TRUE(IsEnabled(Dlg(), 11015));
    Points().UserSelected({0}, 0);
    Dlg().OnBtnTlcMainDelete();
    EXPECT_EQ(Data().GetDataSize(0), 0);
    for (int id : {11015, 11016, 11029})
        EXPECT_FALSE(IsEnabled(Dlg(), id)) << id;
}

// The Delete key goes to the handler from any control, with nothing
// selected too: it then only disables the buttons of an empty set.
TEST_F(DataDialog, DeleteKeyFromAnEditRunsDelete)
{
    EditSet(1);
    MSG msg;
    msg.hwnd = Dlg().GetDlgItem(11001)->GetSafeHwnd();
    msg.message = WM_KEYDOWN;
    msg.wParam = VK_DELETE;
    EXPECT_FALSE(plotvane::DispatchWindowMessage(msg));
    EXPECT_FALSE(IsEnabled(Dlg(), 11016));
    EXPECT_EQ(Data().GetDataSize(0), 3);
}

TEST_F(DataDialog, ClearAllAndHeaderClicks)
{
    EditSet(0);
    Data().ModifyData(0, 5.0, 1.0); // select row is -1: nothing happens
    Data().SetSelectRow(0);
    Data().ModifyData(0, 5.0, 1.0);
    Data().SetSelectRow(-1);
    Dlg().InputDataToListCtrl();
    Points().UserClickedColumn(0);
    EXPECT_EQ(Data().GetSortStateX(), 1);
    EXPECT_EQ(Xs(0), (std::vector<double>{2, 3, 5}));
    Points().UserClickedColumn(0);
    EXPECT_EQ(Data().GetSortStateX(), 2);
    EXPECT_EQ(Xs(0), (std::vector<double>{5, 3, 2}));
    EXPECT_EQ(Points().GetItemText(0, 0), CString("5.00000"));
    Points().UserClickedColumn(1);
    EXPECT_EQ(Data().GetSortStateY(), 1);
    EXPECT_EQ(Points().GetItemText(0, 1), CString("1.00000"));

    TrackPoints();
    Dlg().OnBtnTlcMainClearall();
    EXPECT_EQ(Data().GetDataSize(0), 0);
    EXPECT_EQ(Points().GetItemCount(), 0);
}
