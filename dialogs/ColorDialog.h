// CColorDialog: the window system's colour chooser, run modally.
#pragma once

#include <plotvane/foundation/Types.h>
#include <plotvane/platform/Wnd.h>

constexpr DWORD CC_RGBINIT = 0x0001;
// The full form, with the custom colour part open.
constexpr DWORD CC_FULLOPEN = 0x0002;

class CColorDialog
{
public:
    explicit CColorDialog(COLORREF clrInit = 0, DWORD dwFlags = 0, CWnd* pParentWnd = nullptr)
        : m_clr(clrInit), m_dwFlags(dwFlags), m_pParentWnd(pParentWnd)
    {
    }
    // IDOK with the chosen colour in GetColor, or IDCANCEL.
    INT_PTR DoModal();
    COLORREF GetColor() const { return m_clr; }

    COLORREF m_clr;
    DWORD m_dwFlags;
    CWnd* m_pParentWnd;
};
