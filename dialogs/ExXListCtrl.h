// CExXListCtrl: the list of the dialogs, a CXListCtrl with colour cells and
// cells edited in place, by a text editor (CEdit4ExXListCtrl) or a drop list
// of choices (CXComboList), chosen per column. An edit opened by the
// program (EditCell) is shown by the native list, and whatever editor
// finishes it, the committed text lands in the cell and the parent hears
// LVN_ENDLABELEDIT.
#pragma once

#include <plotvane/dialogs/XListCtrl.h>

#include <vector>

class CExXListCtrl;

// The text editor over one cell while an edit is open.
class CEdit4ExXListCtrl
{
public:
    explicit CEdit4ExXListCtrl(CExXListCtrl& list) : m_list(list) {}
    CEdit4ExXListCtrl(const CEdit4ExXListCtrl&) = delete;
    CEdit4ExXListCtrl& operator=(const CEdit4ExXListCtrl&) = delete;

    bool IsActive() const { return m_nItem >= 0; }
    int GetItem() const { return m_nItem; }
    int GetSubItem() const { return m_nSubItem; }
    const CString& GetText() const { return m_strText; }
    // What the user typed so far.
    void SetText(const CString& text) { m_strText = text; }
    // Enter: the text goes into the cell. Escape: the cell stays.
    void Commit();
    void Cancel();

private:
    friend class CExXListCtrl;
    void Begin(int nItem, int nSubItem, const CString& text);
    CExXListCtrl& m_list;
    int m_nItem = -1;
    int m_nSubItem = 0;
    CString m_strText;
};

// The drop list of a combo cell while it is open: the column's choices,
// with the cell's text selected when it is one of them.
class CXComboList
{
public:
    explicit CXComboList(CExXListCtrl& list) : m_list(list) {}
    CXComboList(const CXComboList&) = delete;
    CXComboList& operator=(const CXComboList&) = delete;

    bool IsActive() const { return m_nItem >= 0; }
    int GetItem() const { return m_nItem; }
    int GetSubItem() const { return m_nSubItem; }
    int GetCurSel() const { return m_nCurSel; }
    const std::vector<CString>& GetChoices() const;
    // The user picked choice i: it goes into the cell.
    void Select(int i);
    void Cancel();

private:
    friend class CExXListCtrl;
    void Begin(int nItem, int nSubItem, int nCurSel);
    CExXListCtrl& m_list;
    int m_nItem = -1;
    int m_nSubItem = 0;
    int m_nCurSel = -1;
};

class CExXListCtrl : public CXListCtrl
{
public:
    CExXListCtrl() : m_edit(*this), m_combo(*this) {}

    // A colour cell shows the colour as a swatch and no text.
    BOOL SetItemColor(int nItem, int nSubItem, COLORREF cr);
    COLORREF GetItemColor(int nItem, int nSubItem) const { return GetCellColor(nItem, nSubItem); }

    // XLIST_EDITOR_TEXT or _COMBO (with its choices) makes the cells of the
    // column editable; _NONE leaves them read-only.
    BOOL SetColumnEditor(int nCol, int nEditor, const std::vector<CString>& choices = {});
    int GetColumnEditor(int nCol) const;
    const std::vector<CString>& GetColumnChoices(int nCol) const;

    // Opens the column's editor on the cell; FALSE for a read-only column or
    // a cell that does not exist. An edit already open is cancelled.
    BOOL EditCell(int nItem, int nSubItem);
    void CancelEdit();
    CEdit4ExXListCtrl& GetCellEdit() { return m_edit; }
    CXComboList& GetComboList() { return m_combo; }
    const CEdit4ExXListCtrl& GetCellEdit() const { return m_edit; }
    const CXComboList& GetComboList() const { return m_combo; }
    unsigned GetEditRevision() const { return m_nEditRevision; }

    // An editor, native or ours, committed this text to an editable cell.
    void UserEditedCell(int nItem, int nSubItem, CString text);

private:
    CEdit4ExXListCtrl m_edit;
    CXComboList m_combo;
    unsigned m_nEditRevision = 0;
};
