// CXListCtrl: a report-style list with a header, check boxes and coloured
// cells, whose rows and cells are state kept here. The backend's native list
// reads that state when told of a change (Backend::ControlChanged) and
// reports what the user does through the User... operations, which notify
// the parent with WM_NOTIFY as a Windows list view does. Every state change
// of a row, by the program or the user, sends LVN_ITEMCHANGED.
#pragma once

#include <plotvane/dialogs/DialogControls.h>
#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/Wnd.h>

#include <vector>

constexpr DWORD LVS_REPORT = 0x0001;
constexpr DWORD LVS_SINGLESEL = 0x0004;
constexpr DWORD LVS_SHOWSELALWAYS = 0x0008;

constexpr DWORD LVS_EX_GRIDLINES = 0x0001;
constexpr DWORD LVS_EX_CHECKBOXES = 0x0004;
constexpr DWORD LVS_EX_FULLROWSELECT = 0x0020;

constexpr UINT LVIS_FOCUSED = 0x0001;
constexpr UINT LVIS_SELECTED = 0x0002;
constexpr UINT LVIS_STATEIMAGEMASK = 0xF000;
constexpr UINT LVIF_TEXT = 0x0001;
constexpr UINT LVIF_STATE = 0x0008;

constexpr int LVCFMT_LEFT = 0;
constexpr int LVCFMT_RIGHT = 1;
constexpr int LVCFMT_CENTER = 2;

constexpr int LVNI_ALL = 0;
constexpr int LVNI_FOCUSED = 1;
constexpr int LVNI_SELECTED = 2;

constexpr UINT NM_CLICK = UINT(-2);
constexpr UINT LVN_ITEMCHANGED = UINT(-101);
constexpr UINT LVN_ENDLABELEDIT = UINT(-106);
constexpr UINT LVN_COLUMNCLICK = UINT(-108);

// How the cells of a column are edited in place.
constexpr int XLIST_EDITOR_NONE = 0;
constexpr int XLIST_EDITOR_TEXT = 1;
constexpr int XLIST_EDITOR_COMBO = 2;

// A cell without a colour of its own.
constexpr COLORREF CLR_NONE = 0xFFFFFFFF;

using POSITION = void*;

// LVN_ITEMCHANGED, LVN_COLUMNCLICK (iSubItem is the column) and NM_CLICK.
struct NMLISTVIEW
{
    NMHDR hdr;
    int iItem = -1;
    int iSubItem = 0;
    UINT uNewState = 0;
    UINT uOldState = 0;
    UINT uChanged = 0;
    POINT ptAction;
    LPARAM lParam = 0;
};
using NMITEMACTIVATE = NMLISTVIEW;

// LVN_ENDLABELEDIT of a cell: the text the user committed, already in the
// cell.
struct NMXLISTEDIT
{
    NMHDR hdr;
    int iItem = -1;
    int iSubItem = 0;
    CString strText;
};

// The columns of a list: heading, width in pixels and alignment.
class CXHeaderCtrl
{
public:
    struct Column
    {
        CString heading;
        int width = 0;
        int format = LVCFMT_LEFT;
        int editor = 0;               // XLIST_EDITOR_... (CExXListCtrl)
        std::vector<CString> choices; // of a combo column
    };

    int GetItemCount() const { return int(m_columns.size()); }
    CString GetItemText(int nCol) const;
    int GetItemWidth(int nCol) const;
    int GetItemFormat(int nCol) const;
    const std::vector<Column>& GetColumns() const { return m_columns; }

private:
    friend class CXListCtrl;
    friend class CExXListCtrl;
    std::vector<Column> m_columns;
};

class CXListCtrl : public CWnd
{
public:
    struct Cell
    {
        CString text;
        COLORREF color = CLR_NONE; // shown as a swatch filling the cell
    };
    struct Row
    {
        std::vector<Cell> cells; // one per column, or fewer
        UINT state = 0;          // LVIS_SELECTED, LVIS_FOCUSED
        BOOL bChecked = FALSE;
    };

    BOOL PreCreateWindow(CREATESTRUCT& cs) override;
    DWORD GetStyle() const { return m_dwStyle; }

    // Columns.
    int InsertColumn(int nCol, LPCTSTR lpszHeading, int nFormat = LVCFMT_LEFT, int nWidth = -1);
    BOOL DeleteColumn(int nCol);
    int GetColumnWidth(int nCol) const { return m_header.GetItemWidth(nCol); }
    BOOL SetColumnWidth(int nCol, int cx);
    CXHeaderCtrl* GetHeaderCtrl() { return &m_header; }
    const CXHeaderCtrl& GetHeader() const { return m_header; }

    DWORD GetExtendedStyle() const { return m_dwExStyle; }
    DWORD SetExtendedStyle(DWORD dwExStyle);
    // States named in the mask are left for the parent to draw: the native
    // list draws no selection or focus over colour cells.
    UINT GetCallbackMask() const { return m_nCallbackMask; }
    BOOL SetCallbackMask(UINT nMask);

    // Rows and cells.
    int GetItemCount() const { return int(m_rows.size()); }
    // Inserts before nItem (at the end when past it); answers the index.
    int InsertItem(int nItem, LPCTSTR lpszItem);
    BOOL DeleteItem(int nItem);
    BOOL DeleteAllItems();
    BOOL SetItemText(int nItem, int nSubItem, LPCTSTR lpszText);
    CString GetItemText(int nItem, int nSubItem) const;
    // The cell's colour, CLR_NONE for a text cell.
    COLORREF GetCellColor(int nItem, int nSubItem) const;
    const Row* GetRow(int nItem) const;

    // Check boxes (LVS_EX_CHECKBOXES).
    BOOL GetCheck(int nItem) const;
    BOOL SetCheck(int nItem, BOOL bCheck = TRUE);

    // Selection and focus. nItem -1 sets the state of every row.
    UINT GetItemState(int nItem, UINT nMask) const;
    BOOL SetItemState(int nItem, UINT nState, UINT nMask);
    UINT GetSelectedCount() const;
    POSITION GetFirstSelectedItemPosition() const;
    int GetNextSelectedItem(POSITION& pos) const;
    // The next row after nItem (-1: from the start) with the LVNI_ flags.
    int GetNextItem(int nItem, int nFlags) const;
    // Asks the native list to scroll row nItem into view.
    BOOL EnsureVisible(int nItem, BOOL bPartialOK);
    int GetEnsureVisibleItem() const { return m_nEnsureVisible; }
    unsigned GetEnsureVisibleRevision() const { return m_nEnsureVisibleRevision; }

    // What changed since the backend last looked: each counter grows when
    // its part of the state changes.
    unsigned GetColumnsRevision() const { return m_nColumnsRevision; }
    unsigned GetRowsRevision() const { return m_nRowsRevision; }
    unsigned GetStateRevision() const { return m_nStateRevision; }

    // What the user did, reported by the native list (or by a test).
    // A click on a cell: NM_CLICK.
    void UserClickedCell(int nItem, int nSubItem);
    // A click on a row's check box: the check toggles (LVN_ITEMCHANGED),
    // then NM_CLICK on column 0, so that the parent reads the new state.
    void UserToggledCheck(int nItem);
    // The selection became exactly these rows, with nFocus focused (-1 for
    // none): LVN_ITEMCHANGED for each row whose state changed, losses first.
    void UserSelected(const std::vector<int>& rows, int nFocus);
    void UserClickedColumn(int nCol);

protected:
    bool IsValidItem(int nItem) const { return nItem >= 0 && nItem < GetItemCount(); }
    Cell* CellAt(int nItem, int nSubItem);
    // Sends a notification to the parent; 0 without one.
    LRESULT Notify(NMHDR& hdr, UINT code);
    void Changed();
    void RowsChanged();

private:
    UINT StateOf(const Row& row) const;
    // Sets the row's selection/focus bits and the check, and tells the
    // parent when the full state changed.
    void ApplyState(int nItem, UINT state, BOOL bChecked);
    void SendItemChanged(int nItem, UINT oldState, UINT newState);

    DWORD m_dwStyle = 0;
    DWORD m_dwExStyle = 0;
    UINT m_nCallbackMask = 0;
    CXHeaderCtrl m_header;
    std::vector<Row> m_rows;
    int m_nEnsureVisible = -1;
    unsigned m_nEnsureVisibleRevision = 0;
    unsigned m_nColumnsRevision = 0;
    unsigned m_nRowsRevision = 0;
    unsigned m_nStateRevision = 0;
};
