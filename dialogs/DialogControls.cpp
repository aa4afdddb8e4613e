#include <plotvane/dialogs/DialogControls.h>

#include <plotvane/platform/Backend.h>

void NotifyParentCommand(CWnd& ctrl, WORD code)
{
    if (CWnd* pParent = ctrl.GetParent())
        pParent->SendMessage(WM_COMMAND, MAKEWPARAM(ctrl.GetDlgCtrlID(), code),
                             reinterpret_cast<LPARAM>(ctrl.GetSafeHwnd()));
}

// ---------------------------------------------------------------------------
// CButton

BOOL CButton::PreCreateWindow(CREATESTRUCT& cs)
{
    m_dwStyle = DWORD(cs.style);
    return CWnd::PreCreateWindow(cs);
}

bool CButton::IsRadio() const
{
    const DWORD kind = GetButtonStyle();
    return kind == BS_RADIOBUTTON || kind == BS_AUTORADIOBUTTON;
}

void CButton::SetCheck(int nCheck)
{
    if (m_nCheck == nCheck)
        return;
    m_nCheck = nCheck;
    if (m_hWnd != nullptr)
        plotvane::GetBackend().ControlChanged(m_hWnd);
}

std::vector<CButton*> CButton::GetRadioGroup() const
{
    CWnd* pParent = GetParent();
    if (!IsRadio() || pParent == nullptr)
        return {const_cast<CButton*>(this)};
    std::vector<CButton*> run;
    bool found = false;
    for (HWND h : plotvane::GetBackend().GetChildWindows(pParent->GetSafeHwnd()))
    {
        auto* pButton = dynamic_cast<CButton*>(CWnd::FromHandle(h));
        const bool radio = pButton != nullptr && pButton->IsRadio();
        if (!radio || (pButton->GetStyle() & WS_GROUP))
        {
            if (found)
                break;
            run.clear();
        }
        if (radio)
            run.push_back(pButton);
        found = found || pButton == this;
    }
    return found ? run : std::vector<CButton*>{const_cast<CButton*>(this)};
}

void CButton::UserClicked()
{
    switch (GetButtonStyle())
    {
    case BS_AUTORADIOBUTTON:
        for (CButton* pButton : GetRadioGroup())
            pButton->SetCheck(pButton == this ? BST_CHECKED : BST_UNCHECKED);
        break;
    case BS_AUTOCHECKBOX:
        SetCheck(m_nCheck == BST_CHECKED ? BST_UNCHECKED : BST_CHECKED);
        break;
    default:
        break;
    }
    NotifyParentCommand(*this, BN_CLICKED);
}

// ---------------------------------------------------------------------------
// CEdit

LRESULT CEdit::WindowProc(UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == WM_SETFOCUS)
        NotifyParentCommand(*this, EN_SETFOCUS);
    else if (message == WM_KILLFOCUS)
        NotifyParentCommand(*this, EN_KILLFOCUS);
    return CWnd::WindowProc(message, wParam, lParam);
}

void CEdit::UserChangedText()
{
    NotifyParentCommand(*this, EN_CHANGE);
}

// ---------------------------------------------------------------------------
// CComboBox

int CComboBox::AddString(LPCTSTR lpszString)
{
    return InsertString(-1, lpszString);
}

int CComboBox::InsertString(int nIndex, LPCTSTR lpszString)
{
    if (nIndex > GetCount())
        return CB_ERR;
    if (nIndex < 0)
        nIndex = GetCount();
    m_entries.insert(m_entries.begin() + nIndex, CString(lpszString));
    if (m_nCurSel >= nIndex)
        ++m_nCurSel;
    Changed();
    return nIndex;
}

int CComboBox::DeleteString(UINT nIndex)
{
    if (nIndex >= UINT(GetCount()))
        return CB_ERR;
    m_entries.erase(m_entries.begin() + int(nIndex));
    if (m_nCurSel == int(nIndex))
        m_nCurSel = CB_ERR;
    else if (m_nCurSel > int(nIndex))
        --m_nCurSel;
    Changed();
    return GetCount();
}

void CComboBox::ResetContent()
{
    m_entries.clear();
    m_nCurSel = CB_ERR;
    Changed();
}

int CComboBox::SetCurSel(int nSelect)
{
    const bool valid = nSelect >= 0 && nSelect < GetCount();
    m_nCurSel = valid ? nSelect : CB_ERR;
    Changed();
    return valid ? nSelect : CB_ERR;
}

void CComboBox::GetLBText(int nIndex, CString& rString) const
{
    rString = GetLBText(nIndex);
}

CString CComboBox::GetLBText(int nIndex) const
{
    return nIndex >= 0 && nIndex < GetCount() ? m_entries[size_t(nIndex)] : CString();
}

void CComboBox::UserSelected(int nIndex)
{
    if (nIndex < 0 || nIndex >= GetCount())
        return;
    m_nCurSel = nIndex;
    NotifyParentCommand(*this, CBN_SELCHANGE);
}

void CComboBox::Changed()
{
    if (m_hWnd != nullptr)
        plotvane::GetBackend().ControlChanged(m_hWnd);
}
