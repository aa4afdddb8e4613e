#include <plotvane/dialogs/ColorDialog.h>

#include <plotvane/platform/Backend.h>

INT_PTR CColorDialog::DoModal()
{
    HWND owner = m_pParentWnd != nullptr ? m_pParentWnd->GetSafeHwnd() : nullptr;
    COLORREF color = m_clr;
    if (!plotvane::GetBackend().ChooseColor(owner, color))
        return IDCANCEL;
    m_clr = color;
    return IDOK;
}
