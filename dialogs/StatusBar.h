// CStatusBar: a bar of text panes. The panes are state kept here (indicator
// id, style, width, text); the backend's native bar mirrors them.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/Wnd.h>

#include <vector>

constexpr UINT SBPS_NORMAL = 0x0000;
constexpr UINT SBPS_NOBORDERS = 0x0100;
constexpr UINT SBPS_POPOUT = 0x0200;
constexpr UINT SBPS_DISABLED = 0x04000000;
constexpr UINT SBPS_STRETCH = 0x08000000;
constexpr UINT AFX_IDW_STATUS_BAR = 0xE801; // 59393
constexpr DWORD CBRS_BOTTOM = 0x8000;

class CStatusBar : public CWnd
{
public:
    struct Pane
    {
        UINT id = 0;
        UINT style = SBPS_NORMAL;
        int width = 0;
        CString text;
    };

    BOOL Create(CWnd* pParentWnd, DWORD dwStyle = WS_CHILD | WS_VISIBLE | CBRS_BOTTOM,
                UINT nID = AFX_IDW_STATUS_BAR);
    BOOL SetIndicators(const UINT* lpIDArray, int nIDCount);
    void SetPaneInfo(int nIndex, UINT nID, UINT nStyle, int cxWidth);
    void GetPaneInfo(int nIndex, UINT& nID, UINT& nStyle, int& cxWidth) const;
    BOOL SetPaneText(int nIndex, LPCTSTR lpszNewText, BOOL bUpdate = TRUE);
    CString GetPaneText(int nIndex) const;
    int GetCount() const { return int(m_panes.size()); }
    const std::vector<Pane>& GetPanes() const { return m_panes; }

private:
    using CWnd::Create;
    void Changed();
    std::vector<Pane> m_panes;
};
