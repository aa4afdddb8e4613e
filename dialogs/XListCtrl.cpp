#include <plotvane/dialogs/XListCtrl.h>

#include <plotvane/platform/Backend.h>

#include <algorithm>
#include <cstdint>

namespace
{

// The state image of a check box row: 1 clear, 2 checked, in bits 12..15.
UINT CheckStateImage(BOOL bChecked)
{
    return UINT(bChecked ? 2 : 1) << 12;
}

POSITION PositionOf(int nItem)
{
    return reinterpret_cast<POSITION>(std::intptr_t(nItem) + 1);
}

} // namespace

// ---------------------------------------------------------------------------
// CXHeaderCtrl

CString CXHeaderCtrl::GetItemText(int nCol) const
{
    return nCol >= 0 && nCol < GetItemCount() ? m_columns[size_t(nCol)].heading : CString();
}

int CXHeaderCtrl::GetItemWidth(int nCol) const
{
    return nCol >= 0 && nCol < GetItemCount() ? m_columns[size_t(nCol)].width : 0;
}

int CXHeaderCtrl::GetItemFormat(int nCol) const
{
    return nCol >= 0 && nCol < GetItemCount() ? m_columns[size_t(nCol)].format : LVCFMT_LEFT;
}

// ---------------------------------------------------------------------------
// Columns and styles

BOOL CXListCtrl::PreCreateWindow(CREATESTRUCT& cs)
{
    m_dwStyle = DWORD(cs.style);
    return CWnd::PreCreateWindow(cs);
}

int CXListCtrl::InsertColumn(int nCol, LPCTSTR lpszHeading, int nFormat, int nWidth)
{
    std::vector<CXHeaderCtrl::Column>& columns = m_header.m_columns;
    if (nCol < 0)
        return -1;
    nCol = std::min(nCol, int(columns.size()));
    CXHeaderCtrl::Column c;
    c.heading = lpszHeading;
    c.format = nFormat;
    // Without a width, room for the heading at an average character width.
    c.width = nWidth >= 0 ? nWidth : 6 * c.heading.GetLength() + 12;
    columns.insert(columns.begin() + nCol, c);
    for (Row& row : m_rows)
    {
        if (int(row.cells.size()) > nCol)
            row.cells.insert(row.cells.begin() + nCol, Cell());
    }
    ++m_nColumnsRevision;
    RowsChanged();
    return nCol;
}

BOOL CXListCtrl::DeleteColumn(int nCol)
{
    std::vector<CXHeaderCtrl::Column>& columns = m_header.m_columns;
    if (nCol < 0 || nCol >= int(columns.size()))
        return FALSE;
    columns.erase(columns.begin() + nCol);
    for (Row& row : m_rows)
    {
        if (int(row.cells.size()) > nCol)
            row.cells.erase(row.cells.begin() + nCol);
    }
    ++m_nColumnsRevision;
    RowsChanged();
    return TRUE;
}

BOOL CXListCtrl::SetColumnWidth(int nCol, int cx)
{
    if (nCol < 0 || nCol >= m_header.GetItemCount() || cx < 0)
        return FALSE;
    m_header.m_columns[size_t(nCol)].width = cx;
    ++m_nColumnsRevision;
    Changed();
    return TRUE;
}

DWORD CXListCtrl::SetExtendedStyle(DWORD dwExStyle)
{
    const DWORD old = m_dwExStyle;
    m_dwExStyle = dwExStyle;
    ++m_nColumnsRevision;
    Changed();
    return old;
}

BOOL CXListCtrl::SetCallbackMask(UINT nMask)
{
    m_nCallbackMask = nMask;
    RowsChanged();
    return TRUE;
}

// ---------------------------------------------------------------------------
// Rows and cells

int CXListCtrl::InsertItem(int nItem, LPCTSTR lpszItem)
{
    if (nItem < 0)
        return -1;
    nItem = std::min(nItem, GetItemCount());
    Row row;
    row.cells.resize(1);
    row.cells[0].text = lpszItem;
    m_rows.insert(m_rows.begin() + nItem, row);
    RowsChanged();
    return nItem;
}

BOOL CXListCtrl::DeleteItem(int nItem)
{
    if (!IsValidItem(nItem))
        return FALSE;
    m_rows.erase(m_rows.begin() + nItem);
    ++m_nStateRevision;
    RowsChanged();
    return TRUE;
}

BOOL CXListCtrl::DeleteAllItems()
{
    m_rows.clear();
    ++m_nStateRevision;
    RowsChanged();
    return TRUE;
}

CXListCtrl::Cell* CXListCtrl::CellAt(int nItem, int nSubItem)
{
    if (!IsValidItem(nItem) || nSubItem < 0 || nSubItem >= m_header.GetItemCount())
        return nullptr;
    std::vector<Cell>& cells = m_rows[size_t(nItem)].cells;
    if (int(cells.size()) <= nSubItem)
        cells.resize(size_t(nSubItem) + 1);
    return &cells[size_t(nSubItem)];
}

const CXListCtrl::Row* CXListCtrl::GetRow(int nItem) const
{
    return IsValidItem(nItem) ? &m_rows[size_t(nItem)] : nullptr;
}

BOOL CXListCtrl::SetItemText(int nItem, int nSubItem, LPCTSTR lpszText)
{
    Cell* pCell = CellAt(nItem, nSubItem);
    if (pCell == nullptr)
        return FALSE;
    pCell->text = lpszText;
    RowsChanged();
    return TRUE;
}

CString CXListCtrl::GetItemText(int nItem, int nSubItem) const
{
    const Row* pRow = GetRow(nItem);
    if (pRow == nullptr || nSubItem < 0 || nSubItem >= int(pRow->cells.size()))
        return CString();
    return pRow->cells[size_t(nSubItem)].text;
}

COLORREF CXListCtrl::GetCellColor(int nItem, int nSubItem) const
{
    const Row* pRow = GetRow(nItem);
    if (pRow == nullptr || nSubItem < 0 || nSubItem >= int(pRow->cells.size()))
        return CLR_NONE;
    return pRow->cells[size_t(nSubItem)].color;
}

// ---------------------------------------------------------------------------
// Checks, selection, focus

UINT CXListCtrl::StateOf(const Row& row) const
{
    const UINT image = (m_dwExStyle & LVS_EX_CHECKBOXES) ? CheckStateImage(row.bChecked) : 0;
    return row.state | image;
}

BOOL CXListCtrl::GetCheck(int nItem) const
{
    const Row* pRow = GetRow(nItem);
    return pRow != nullptr && pRow->bChecked;
}

BOOL CXListCtrl::SetCheck(int nItem, BOOL bCheck)
{
    const Row* pRow = GetRow(nItem);
    if (pRow == nullptr)
        return FALSE;
    ApplyState(nItem, pRow->state, bCheck ? TRUE : FALSE);
    return TRUE;
}

UINT CXListCtrl::GetItemState(int nItem, UINT nMask) const
{
    const Row* pRow = GetRow(nItem);
    return pRow != nullptr ? StateOf(*pRow) & nMask : 0;
}

BOOL CXListCtrl::SetItemState(int nItem, UINT nState, UINT nMask)
{
    if (nItem == -1)
    {
        for (int i = 0; i < GetItemCount(); ++i)
            SetItemState(i, nState, nMask);
        return TRUE;
    }
    const Row* pRow = GetRow(nItem);
    if (pRow == nullptr)
        return FALSE;
    const UINT bits = LVIS_SELECTED | LVIS_FOCUSED;
    const UINT state = (pRow->state & ~(nMask & bits)) | (nState & nMask & bits);
    BOOL bChecked = pRow->bChecked;
    if (nMask & LVIS_STATEIMAGEMASK)
        bChecked = ((nState & LVIS_STATEIMAGEMASK) >> 12) == 2;
    // One row has the focus, and a single-selection list one selected row.
    for (int i = 0; i < GetItemCount(); ++i)
    {
        const Row& other = m_rows[size_t(i)];
        UINT lose = 0;
        if (i != nItem && (state & LVIS_FOCUSED))
            lose |= LVIS_FOCUSED;
        if (i != nItem && (state & LVIS_SELECTED) && (m_dwStyle & LVS_SINGLESEL))
            lose |= LVIS_SELECTED;
        if (other.state & lose)
            ApplyState(i, other.state & ~lose, other.bChecked);
    }
    ApplyState(nItem, state, bChecked);
    return TRUE;
}

void CXListCtrl::ApplyState(int nItem, UINT state, BOOL bChecked)
{
    Row& row = m_rows[size_t(nItem)];
    const UINT oldState = StateOf(row);
    const BOOL oldChecked = row.bChecked;
    row.state = state;
    row.bChecked = bChecked;
    const UINT newState = StateOf(row);
    if (oldState == newState && oldChecked == bChecked)
        return;
    ++m_nStateRevision;
    RowsChanged();
    if (oldState != newState)
        SendItemChanged(nItem, oldState, newState);
}

void CXListCtrl::SendItemChanged(int nItem, UINT oldState, UINT newState)
{
    NMLISTVIEW nm;
    nm.iItem = nItem;
    nm.uOldState = oldState;
    nm.uNewState = newState;
    nm.uChanged = LVIF_STATE;
    Notify(nm.hdr, LVN_ITEMCHANGED);
}

UINT CXListCtrl::GetSelectedCount() const
{
    return UINT(std::count_if(m_rows.begin(), m_rows.end(),
                              [](const Row& r) { return (r.state & LVIS_SELECTED) != 0; }));
}

POSITION CXListCtrl::GetFirstSelectedItemPosition() const
{
    const int first = GetNextItem(-1, LVNI_SELECTED);
    return first >= 0 ? PositionOf(first) : nullptr;
}

int CXListCtrl::GetNextSelectedItem(POSITION& pos) const
{
    const int nItem = int(reinterpret_cast<std::intptr_t>(pos)) - 1;
    const int next = GetNextItem(nItem, LVNI_SELECTED);
    pos = next >= 0 ? PositionOf(next) : nullptr;
    return nItem;
}

int CXListCtrl::GetNextItem(int nItem, int nFlags) const
{
    UINT want = 0;
    if (nFlags & LVNI_SELECTED)
        want |= LVIS_SELECTED;
    if (nFlags & LVNI_FOCUSED)
        want |= LVIS_FOCUSED;
    for (int i = std::max(nItem + 1, 0); i < GetItemCount(); ++i)
    {
        if ((m_rows[size_t(i)].state & want) == want)
            return i;
    }
    return -1;
}

BOOL CXListCtrl::EnsureVisible(int nItem, BOOL /*bPartialOK*/)
{
    if (!IsValidItem(nItem))
        return FALSE;
    m_nEnsureVisible = nItem;
    ++m_nEnsureVisibleRevision;
    ++m_nStateRevision;
    Changed();
    return TRUE;
}

// ---------------------------------------------------------------------------
// What the user did

void CXListCtrl::UserClickedCell(int nItem, int nSubItem)
{
    NMITEMACTIVATE nm;
    nm.iItem = nItem;
    nm.iSubItem = nSubItem;
    Notify(nm.hdr, NM_CLICK);
}

void CXListCtrl::UserToggledCheck(int nItem)
{
    if (!IsValidItem(nItem) || !(m_dwExStyle & LVS_EX_CHECKBOXES))
        return;
    SetCheck(nItem, !GetCheck(nItem));
    UserClickedCell(nItem, 0);
}

void CXListCtrl::UserSelected(const std::vector<int>& rows, int nFocus)
{
    std::vector<UINT> wanted(m_rows.size(), 0);
    for (int r : rows)
    {
        if (IsValidItem(r))
            wanted[size_t(r)] |= LVIS_SELECTED;
    }
    if (IsValidItem(nFocus))
        wanted[size_t(nFocus)] |= LVIS_FOCUSED;
    // Losses before gains, as a list view reports a move of the selection.
    for (int pass = 0; pass < 2; ++pass)
    {
        for (int i = 0; i < GetItemCount(); ++i)
        {
            const Row& row = m_rows[size_t(i)];
            const bool gains = (wanted[size_t(i)] & ~row.state) != 0;
            if (row.state != wanted[size_t(i)] && gains == (pass == 1))
                ApplyState(i, wanted[size_t(i)], row.bChecked);
        }
    }
}

void CXListCtrl::UserClickedColumn(int nCol)
{
    NMLISTVIEW nm;
    nm.iSubItem = nCol;
    Notify(nm.hdr, LVN_COLUMNCLICK);
}

// ---------------------------------------------------------------------------
// Notifications and the native list

LRESULT CXListCtrl::Notify(NMHDR& hdr, UINT code)
{
    CWnd* pParent = GetParent();
    if (pParent == nullptr)
        return 0;
    hdr.hwndFrom = m_hWnd;
    hdr.idFrom = UINT(GetDlgCtrlID());
    hdr.code = code;
    return pParent->SendMessage(WM_NOTIFY, WPARAM(hdr.idFrom), reinterpret_cast<LPARAM>(&hdr));
}

void CXListCtrl::RowsChanged()
{
    ++m_nRowsRevision;
    Changed();
}

void CXListCtrl::Changed()
{
    if (m_hWnd != nullptr)
        plotvane::GetBackend().ControlChanged(m_hWnd);
}
