// The list control's state and notifications, as its dialog sees them.
#include "dialogs/dialog_test_support.h"

#include <plotvane/dialogs/ExXListCtrl.h>

#include <utility>

namespace
{

struct Note
{
    UINT code;
    int item;
    int subItem;
    UINT newState;
    CString text;
};

// A window that keeps the notifications of its list.
class Parent : public CWnd
{
public:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message != WM_NOTIFY)
            return CWnd::WindowProc(message, wParam, lParam);
        const auto* hdr = reinterpret_cast<const NMHDR*>(lParam);
        const auto* e = reinterpret_cast<const NMXLISTEDIT*>(lParam);
        const auto* lv = reinterpret_cast<const NMLISTVIEW*>(lParam);
        const Note n = hdr->code == LVN_ENDLABELEDIT
                           ? Note{hdr->code, e->iItem, e->iSubItem, 0, e->strText}
                           : Note{hdr->code, lv->iItem, lv->iSubItem, lv->uNewState, {}};
        notes.push_back(n);
        // A check's notification sees the new state.
        if (hdr->code == NM_CLICK && pList != nullptr)
            checkAtClick = pList->GetCheck(n.item);
        return 0;
    }
    std::vector<Note> Take() { return std::exchange(notes, {}); }
    std::vector<Note> notes;
    CXListCtrl* pList = nullptr;
    BOOL checkAtClick = -1;
};

class ListControl : public ::testing::Test
{
protected:
    void Make(DWORD style)
    {
        ASSERT_TRUE(parent.CreateEx(0, "", "parent", WS_POPUP, CRect(0, 0, 300, 200), nullptr, 0));
        ASSERT_TRUE(list.CreateEx(0, "SysListView32", "", WS_CHILD | LVS_REPORT | style,
                                  CRect(0, 0, 200, 100), &parent, 77));
        parent.pList = &list;
        list.InsertColumn(0, "Name", LVCFMT_LEFT, 100);
        list.InsertColumn(1, "Value", LVCFMT_RIGHT, 60);
        for (const char* name : {"a", "b", "c"})
            list.InsertItem(list.GetItemCount(), name);
        parent.Take();
    }
    Parent parent;
    CExXListCtrl list;
};

} // namespace

TEST_F(ListControl, RowsColumnsAndCells)
{
    Make(0);
    EXPECT_EQ(list.InsertItem(9, "d"), 3);
    list.SetItemText(3, 1, "4");
    EXPECT_FALSE(list.SetItemText(3, 2, "no column"));
    EXPECT_FALSE(list.SetItemText(4, 0, "no row"));
    // A column inserted in front moves the cells right.
    list.InsertColumn(0, "#", LVCFMT_CENTER, 20);
    EXPECT_EQ(list.GetItemText(3, 1), CString("d"));
    EXPECT_EQ(list.GetItemText(3, 2), CString("4"));
    EXPECT_TRUE(list.DeleteColumn(0));
    EXPECT_EQ(list.GetItemText(3, 0), CString("d"));
    EXPECT_EQ(list.GetHeader().GetItemText(1), CString("Value"));
    EXPECT_TRUE(list.DeleteItem(1));
    EXPECT_EQ(list.GetItemText(1, 0), CString("c"));
    EXPECT_TRUE(list.SetItemColor(0, 1, RGB(9, 8, 7)));
    EXPECT_EQ(list.GetItemColor(0, 1), RGB(9, 8, 7));
    EXPECT_EQ(list.GetItemColor(0, 0), CLR_NONE);
    // Deletions are no state changes.
    EXPECT_TRUE(parent.Take().empty());
}

TEST_F(ListControl, SelectionAndFocusNotifyEveryChange)
{
    Make(0);
    list.SetItemState(1, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    std::vector<Note> n = parent.Take();
    ASSERT_EQ(n.size(), 1u);
    EXPECT_EQ(n[0].code, LVN_ITEMCHANGED);
    EXPECT_EQ(n[0].newState, 3u);

    // The user moves to rows 0 and 2: row 1 loses its state first.
    list.UserSelected({0, 2}, 2);
    n = parent.Take();
    ASSERT_EQ(n.size(), 3u);
    EXPECT_EQ(n[0].item, 1);
    EXPECT_EQ(n[0].newState, 0u);
    EXPECT_EQ(n[2].item, 2);
    EXPECT_EQ(n[2].newState, 3u);
    EXPECT_EQ(list.GetSelectedCount(), 2u);
    POSITION pos = list.GetFirstSelectedItemPosition();
    EXPECT_EQ(list.GetNextSelectedItem(pos), 0);
    EXPECT_EQ(list.GetNextSelectedItem(pos), 2);
    EXPECT_EQ(pos, nullptr);

    // Focus is one row's only.
    list.SetItemState(0, LVIS_FOCUSED, LVIS_FOCUSED);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_FOCUSED), 0);
    EXPECT_EQ(list.GetItemState(2, LVIS_FOCUSED), 0u);
    list.SetItemState(-1, 0, LVIS_SELECTED | LVIS_FOCUSED);
    EXPECT_EQ(list.GetSelectedCount(), 0u);
}

TEST_F(ListControl, SingleSelectionKeepsOneRow)
{
    Make(LVS_SINGLESEL);
    list.SetItemState(0, LVIS_SELECTED, LVIS_SELECTED);
    list.SetItemState(2, LVIS_SELECTED, LVIS_SELECTED);
    EXPECT_EQ(list.GetSelectedCount(), 1u);
    EXPECT_EQ(list.GetNextItem(-1, LVNI_SELECTED), 2);
}

TEST_F(ListControl, CheckBoxClickTogglesBeforeItsClickNotification)
{
    Make(0);
    list.UserToggledCheck(0); // no check boxes: nothing
    EXPECT_TRUE(parent.Take().empty());
    list.SetExtendedStyle(LVS_EX_CHECKBOXES | LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES);
    list.UserToggledCheck(1);
    EXPECT_TRUE(list.GetCheck(1));
    EXPECT_TRUE(parent.checkAtClick);
    std::vector<Note> n = parent.Take();
    ASSERT_EQ(n.size(), 2u);
    EXPECT_EQ(n[0].code, LVN_ITEMCHANGED);
    EXPECT_EQ(n[0].newState & LVIS_STATEIMAGEMASK, 0x2000u);
    EXPECT_EQ(n[1].code, NM_CLICK);
    EXPECT_EQ(n[1].item, 1);
    list.UserToggledCheck(1);
    EXPECT_FALSE(parent.checkAtClick);
    EXPECT_EQ(list.GetItemState(1, LVIS_STATEIMAGEMASK), 0x1000u);

    list.UserClickedColumn(1);
    n = parent.Take();
    ASSERT_EQ(n.back().code, LVN_COLUMNCLICK);
    EXPECT_EQ(n.back().subItem, 1);
}

TEST_F(ListControl, InPlaceEditAndComboCells)
{
    Make(0);
    EXPECT_FALSE(list.EditCell(0, 0)); // read-only column
    list.SetColumnEditor(0, XLIST_EDITOR_TEXT);
    list.SetColumnEditor(1, XLIST_EDITOR_COMBO, {"low", "high"});

    ASSERT_TRUE(list.EditCell(2, 0));
    EXPECT_TRUE(list.GetCellEdit().IsActive());
    EXPECT_EQ(list.GetCellEdit().GetText(), CString("c"));
    list.GetCellEdit().SetText("renamed");
    list.GetCellEdit().Cancel();
    EXPECT_EQ(list.GetItemText(2, 0), CString("c"));
    list.EditCell(2, 0);
    list.GetCellEdit().SetText("renamed");
    list.GetCellEdit().Commit();
    EXPECT_FALSE(list.GetCellEdit().IsActive());
    EXPECT_EQ(list.GetItemText(2, 0), CString("renamed"));

    list.SetItemText(1, 1, "high");
    ASSERT_TRUE(list.EditCell(1, 1));
    EXPECT_FALSE(list.GetCellEdit().IsActive());
    EXPECT_EQ(list.GetComboList().GetCurSel(), 1);
    list.GetComboList().Select(0);
    EXPECT_EQ(list.GetItemText(1, 1), CString("low"));

    const std::vector<Note> n = parent.Take();
    ASSERT_EQ(n.size(), 2u);
    EXPECT_EQ(n[0].code, LVN_ENDLABELEDIT);
    EXPECT_EQ(n[0].text, CString("renamed"));
    EXPECT_EQ(n[1].item, 1);
    EXPECT_EQ(n[1].text, CString("low"));
}
