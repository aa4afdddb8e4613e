#include <plotvane/dialogs/StatusBar.h>

#include <plotvane/platform/Backend.h>

BOOL CStatusBar::Create(CWnd* pParentWnd, DWORD dwStyle, UINT nID)
{
    CRect rc;
    if (pParentWnd != nullptr)
        pParentWnd->GetClientRect(&rc);
    const CRect bar(rc.left, rc.bottom - 20, rc.right, rc.bottom);
    return CWnd::CreateEx(0, "msctls_statusbar32", "", dwStyle | WS_CHILD, bar, pParentWnd, nID);
}

BOOL CStatusBar::SetIndicators(const UINT* lpIDArray, int nIDCount)
{
    if (nIDCount < 0 || (nIDCount > 0 && lpIDArray == nullptr))
        return FALSE;
    m_panes.assign(size_t(nIDCount), Pane());
    for (int i = 0; i < nIDCount; ++i)
        m_panes[size_t(i)].id = lpIDArray[i];
    Changed();
    return TRUE;
}

void CStatusBar::SetPaneInfo(int nIndex, UINT nID, UINT nStyle, int cxWidth)
{
    if (nIndex < 0 || nIndex >= GetCount())
        return;
    Pane& p = m_panes[size_t(nIndex)];
    p.id = nID;
    p.style = nStyle;
    p.width = cxWidth;
    Changed();
}

void CStatusBar::GetPaneInfo(int nIndex, UINT& nID, UINT& nStyle, int& cxWidth) const
{
    if (nIndex < 0 || nIndex >= GetCount())
        return;
    const Pane& p = m_panes[size_t(nIndex)];
    nID = p.id;
    nStyle = p.style;
    cxWidth = p.width;
}

BOOL CStatusBar::SetPaneText(int nIndex, LPCTSTR lpszNewText, BOOL /*bUpdate*/)
{
    if (nIndex < 0 || nIndex >= GetCount())
        return FALSE;
    m_panes[size_t(nIndex)].text = lpszNewText != nullptr ? lpszNewText : "";
    Changed();
    return TRUE;
}

CString CStatusBar::GetPaneText(int nIndex) const
{
    if (nIndex < 0 || nIndex >= GetCount())
        return CString();
    return m_panes[size_t(nIndex)].text;
}

void CStatusBar::Changed()
{
    if (m_hWnd != nullptr)
        plotvane::GetBackend().ControlChanged(m_hWnd);
}
