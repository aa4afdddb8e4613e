// CMenu: menus from the library's menu resources, shown by the backend.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/Backend.h>

#include <functional>
#include <memory>
#include <vector>

constexpr UINT TPM_LEFTALIGN = 0x0000;
constexpr UINT TPM_RETURNCMD = 0x0100;

class CMenu
{
public:
    CMenu() = default;
    CMenu(const CMenu&) = delete;
    CMenu& operator=(const CMenu&) = delete;
    ~CMenu() = default;

    // A menu bar resource: its popups. FALSE for an unknown id.
    BOOL LoadMenu(UINT nIDResource);
    BOOL DestroyMenu();
    // The popup at nPos, or null.
    CMenu* GetSubMenu(int nPos) const;
    int GetMenuItemCount() const { return int(m_items.size()); }
    UINT GetMenuItemID(int nPos) const;
    CString GetMenuString(int nPos) const;

    // Shows the popup and, unless TPM_RETURNCMD is given, sends the chosen
    // command to pWnd as WM_COMMAND. Answers the command (TPM_RETURNCMD) or
    // whether one was chosen.
    BOOL TrackPopupMenu(UINT nFlags, int x, int y, CWnd* pWnd, const RECT* lpRect = nullptr);

    plotvane::PopupMenuItems m_items;
    std::vector<std::unique_ptr<CMenu>> m_popups;
    UINT m_nResourceId = 0;
};

namespace plotvane
{

// What TrackPopupMenu shows, handed to a watcher instead of the backend while
// one is set (tests; hosts that draw their own menus). The watcher answers
// the command chosen, 0 for none. Returns the previous watcher.
using PopupMenuWatcher = std::function<UINT(const CMenu& menu, CPoint screen, CWnd* pOwner)>;
PopupMenuWatcher SetPopupMenuWatcher(PopupMenuWatcher watcher);

} // namespace plotvane
