#include <plotvane/dialogs/ExXListCtrl.h>

// ---------------------------------------------------------------------------
// CEdit4ExXListCtrl

void CEdit4ExXListCtrl::Begin(int nItem, int nSubItem, const CString& text)
{
    m_nItem = nItem;
    m_nSubItem = nSubItem;
    m_strText = text;
}

void CEdit4ExXListCtrl::Commit()
{
    if (IsActive())
        m_list.UserEditedCell(m_nItem, m_nSubItem, m_strText);
}

void CEdit4ExXListCtrl::Cancel()
{
    m_nItem = -1;
    m_strText.Empty();
}

// ---------------------------------------------------------------------------
// CXComboList

const std::vector<CString>& CXComboList::GetChoices() const
{
    return m_list.GetColumnChoices(m_nSubItem);
}

void CXComboList::Begin(int nItem, int nSubItem, int nCurSel)
{
    m_nItem = nItem;
    m_nSubItem = nSubItem;
    m_nCurSel = nCurSel;
}

void CXComboList::Select(int i)
{
    const std::vector<CString>& choices = GetChoices();
    if (IsActive() && i >= 0 && i < int(choices.size()))
        m_list.UserEditedCell(m_nItem, m_nSubItem, choices[size_t(i)]);
}

void CXComboList::Cancel()
{
    m_nItem = -1;
    m_nCurSel = -1;
}

// ---------------------------------------------------------------------------
// CExXListCtrl

BOOL CExXListCtrl::SetItemColor(int nItem, int nSubItem, COLORREF cr)
{
    Cell* pCell = CellAt(nItem, nSubItem);
    if (pCell == nullptr)
        return FALSE;
    pCell->color = cr;
    RowsChanged();
    return TRUE;
}

BOOL CExXListCtrl::SetColumnEditor(int nCol, int nEditor, const std::vector<CString>& choices)
{
    std::vector<CXHeaderCtrl::Column>& columns = GetHeaderCtrl()->m_columns;
    if (nCol < 0 || nCol >= int(columns.size()))
        return FALSE;
    columns[size_t(nCol)].editor = nEditor;
    columns[size_t(nCol)].choices = choices;
    return TRUE;
}

int CExXListCtrl::GetColumnEditor(int nCol) const
{
    const auto& columns = GetHeader().GetColumns();
    return nCol >= 0 && nCol < int(columns.size()) ? columns[size_t(nCol)].editor
                                                   : XLIST_EDITOR_NONE;
}

const std::vector<CString>& CExXListCtrl::GetColumnChoices(int nCol) const
{
    static const std::vector<CString> none;
    const auto& columns = GetHeader().GetColumns();
    return nCol >= 0 && nCol < int(columns.size()) ? columns[size_t(nCol)].choices : none;
}

BOOL CExXListCtrl::EditCell(int nItem, int nSubItem)
{
    const int editor = GetColumnEditor(nSubItem);
    if (!IsValidItem(nItem) || editor == XLIST_EDITOR_NONE)
        return FALSE;
    CancelEdit();
    const CString text = GetItemText(nItem, nSubItem);
    if (editor == XLIST_EDITOR_TEXT)
        m_edit.Begin(nItem, nSubItem, text);
    else
    {
        const std::vector<CString>& choices = GetColumnChoices(nSubItem);
        int sel = -1;
        for (size_t i = 0; i < choices.size() && sel < 0; ++i)
            sel = choices[i] == text ? int(i) : -1;
        m_combo.Begin(nItem, nSubItem, sel);
    }
    ++m_nEditRevision;
    Changed();
    return TRUE;
}

void CExXListCtrl::CancelEdit()
{
    if (!m_edit.IsActive() && !m_combo.IsActive())
        return;
    m_edit.Cancel();
    m_combo.Cancel();
    ++m_nEditRevision;
    Changed();
}

void CExXListCtrl::UserEditedCell(int nItem, int nSubItem, CString text)
{
    // The text may be the open editor's own, which CancelEdit empties.
    CancelEdit();
    if (GetColumnEditor(nSubItem) == XLIST_EDITOR_NONE || !SetItemText(nItem, nSubItem, text))
        return;
    NMXLISTEDIT nm;
    nm.iItem = nItem;
    nm.iSubItem = nSubItem;
    nm.strText = text;
    Notify(nm.hdr, LVN_ENDLABELEDIT);
}
