// CPlotvane_Attribute_Dlg: axis names, ranges, grid intervals and the range
// mode of a chart, edited in place on its attribute object. Every change is
// stored when the user leaves a field, presses "Submit" or picks a range
// mode, and the chart is redrawn. The mouse position over the chart is shown
// under "Current Point".
#pragma once

#include <plotvane/dialogs/Dialog.h>
#include <plotvane/dialogs/DialogControls.h>

class CPlotvane_Attribute;
class CPlotvane_Dlg;

constexpr UINT IDD_ATTRIBUTE_DLG = 20503;
constexpr UINT IDC_RDO_RANGE_BASE = 11020;
constexpr UINT IDC_RDO_RANGE_DEFAULT = 11021;
constexpr UINT IDC_RDO_RANGE_USER = 11030;
constexpr UINT IDC_EDT_X_START = 11031;
constexpr UINT IDC_EDT_X_END = 11032;
constexpr UINT IDC_EDT_Y_START = 11033;
constexpr UINT IDC_EDT_Y_END = 11034;
constexpr UINT IDC_EDT_X_AXIS_NAME = 11035;
constexpr UINT IDC_EDT_Y_AXIS_NAME = 11036;
constexpr UINT IDC_BTN_SUBMIT = 11037;
constexpr UINT IDC_EDT_X_INTERVAL = 21020;
constexpr UINT IDC_EDT_Y_INTERVAL = 21021;
constexpr UINT IDC_STC_CURRENT_POINT = 21022;

class CPlotvane_Attribute_Dlg : public CDialog
{
public:
    enum
    {
        IDD = IDD_ATTRIBUTE_DLG
    };
    explicit CPlotvane_Attribute_Dlg(CWnd* pParent = nullptr);

    void SetCPlotvaneAttribute(CPlotvane_Attribute* p) { m_pAttribute = p; }
    void SetCPlotvaneDlg(CPlotvane_Dlg* p) { m_pChartDlg = p; }
    // Whether the dialog's native window exists.
    bool HasWindow() const { return GetSafeHwnd() != nullptr; }

    // The attribute's values into the fields and the controls; the range
    // edits are enabled in the user range mode only.
    void LoadFromAttribute();
    // The controls into the fields and the attribute. FALSE, with a message
    // and the attribute untouched, for a field that is not a number or a
    // negative grid interval.
    BOOL StoreToAttribute();
    // The attribute's current point text into its field and control.
    void SetCurrentPointText();

    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    void OnDestroy() override;

    // Handlers.
    void OnBtnSubmit();
    void OnKillfocusField();
    void OnRdoRangeDefault();
    void OnRdoRangeBase();
    void OnRdoRangeUser();

    CPlotvane_Attribute* m_pAttribute = nullptr;
    CPlotvane_Dlg* m_pChartDlg = nullptr;
    CString m_strXAxisName;    // 11035
    CString m_strYAxisName;    // 11036
    double m_dXEnd = 0.0;      // 11032
    double m_dXStart = 0.0;    // 11031
    double m_dYEnd = 0.0;      // 11034
    double m_dYStart = 0.0;    // 11033
    double m_dXInterval = 0.0; // 21020
    double m_dYInterval = 0.0; // 21021
    int m_nRangeMode = 0;      // radio group from 11021
    CString m_strCurrentPoint; // 21022

    CEdit m_edtFields[8];
    CButton m_rdoRange[3]; // "Default", "Base", "User"

private:
    void EnableRangeEdits(BOOL bEnable);
    void SetRangeMode(int nMode);
    void StoreAndRedraw();
    // Set while a handler runs or the window goes: a focus change caused by
    // a message box or the teardown stores nothing.
    bool m_bBusy = false;
};
