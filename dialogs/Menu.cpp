#include <plotvane/dialogs/Menu.h>

#include <plotvane/platform/Wnd.h>

namespace
{

plotvane::PopupMenuWatcher& Watcher()
{
    static plotvane::PopupMenuWatcher watcher;
    return watcher;
}

} // namespace

namespace plotvane
{

PopupMenuWatcher SetPopupMenuWatcher(PopupMenuWatcher watcher)
{
    PopupMenuWatcher previous = std::move(Watcher());
    Watcher() = std::move(watcher);
    return previous;
}

} // namespace plotvane

BOOL CMenu::LoadMenu(UINT nIDResource)
{
    DestroyMenu();
    // IDR_MENU_POPUP_CHART_VIEW: the chart view's context menu.
    if (nIDResource != 20506)
        return FALSE;
    m_nResourceId = nIDResource;
    auto popup = std::make_unique<CMenu>();
    popup->m_items = {{21053, "Zoom Window"}, {21052, "Zoom All\tAlt+1"}};
    m_items.push_back({0, "Popup"});
    m_popups.push_back(std::move(popup));
    return TRUE;
}

BOOL CMenu::DestroyMenu()
{
    const bool had = !m_items.empty() || !m_popups.empty();
    m_items.clear();
    m_popups.clear();
    m_nResourceId = 0;
    return had ? TRUE : FALSE;
}

CMenu* CMenu::GetSubMenu(int nPos) const
{
    if (nPos < 0 || nPos >= int(m_popups.size()))
        return nullptr;
    return m_popups[size_t(nPos)].get();
}

UINT CMenu::GetMenuItemID(int nPos) const
{
    if (nPos < 0 || nPos >= GetMenuItemCount())
        return UINT(-1);
    return m_items[size_t(nPos)].id;
}

CString CMenu::GetMenuString(int nPos) const
{
    if (nPos < 0 || nPos >= GetMenuItemCount())
        return CString();
    return m_items[size_t(nPos)].text;
}

BOOL CMenu::TrackPopupMenu(UINT nFlags, int x, int y, CWnd* pWnd, const RECT* /*lpRect*/)
{
    const CPoint at(x, y);
    UINT chosen = 0;
    if (Watcher())
        chosen = Watcher()(*this, at, pWnd);
    else
        chosen = plotvane::GetBackend().TrackPopupMenu(
            m_items, at, pWnd != nullptr ? pWnd->GetSafeHwnd() : nullptr);
    if (nFlags & TPM_RETURNCMD)
        return BOOL(chosen);
    if (chosen != 0 && pWnd != nullptr)
        pWnd->SendMessage(WM_COMMAND, chosen, 0);
    return chosen != 0 ? TRUE : FALSE;
}
