// CGLPlotvane_Environment_Colorset_Dlg: one colour set, cell by cell. Row 0
// holds the background and the label colour; the curve colours run down
// the first column pair for half of the set and down the second for the
// rest. A click on a colour cell opens the colour chooser; "OK" writes the
// cells back into the set row by row.
#pragma once

#include <plotvane/dialogs/Dialog.h>
#include <plotvane/dialogs/DialogControls.h>
#include <plotvane/dialogs/ExXListCtrl.h>
#include <plotvane/foundation/MFCArray.h>

constexpr UINT IDD_ENVIRONMENT_COLORSET_DLG = 20510;
constexpr UINT IDC_LIST_TLC_COLOR = 21049;

class CGLPlotvane_Environment_Colorset_Dlg : public CDialog
{
public:
    enum
    {
        IDD = IDD_ENVIRONMENT_COLORSET_DLG
    };
    explicit CGLPlotvane_Environment_Colorset_Dlg(CWnd* pParent = nullptr);

    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;
    // The cells back into the set, then the normal end.
    void OnOK() override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;

    // A click on a cell of the list.
    void OnNMClickListTlcColor(NMHDR* pNMHDR, LRESULT* pResult);

    // The set to edit; may be null.
    CDWordArray* m_pColorSet = nullptr;
    // 1: the cells cannot change and "OK" is disabled.
    int m_bReadOnly = 0;
    CExXListCtrl m_ctrlColorList; // 21049
    CButton m_btnOK;              // 1
};
