// CPlotvane_InputText_Dlg: asks for one line of text, for a free text the
// user places on the chart. The view runs it modally and reads m_strText.
#pragma once

#include <plotvane/dialogs/Dialog.h>

// The rich edit control of the text field; an edit control here.
class CRichEditCtrl : public CWnd
{
};

class CPlotvane_InputText_Dlg : public CDialog
{
public:
    enum
    {
        IDD = 20507
    };
    explicit CPlotvane_InputText_Dlg(CWnd* pParent = nullptr);

    void DoDataExchange(CDataExchange* pDX) override;

    CString m_strText;
    CRichEditCtrl m_ctrlText;
};
