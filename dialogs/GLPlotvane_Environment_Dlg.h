// CGLPlotvane_Environment_Dlg: the appearance shared by all charts (grid
// line, line widths, font sizes, colour preset), read from "Chart.uis" when
// the dialog opens and written back at once on "OK". Colour sets are added,
// edited and deleted here with CGLPlotvane_Environment_Colorset_Dlg; they
// too reach the file only with "OK".
#pragma once

#include <plotvane/dialogs/Dialog.h>
#include <plotvane/dialogs/DialogControls.h>

class CGLPlotvane_Environment;

constexpr UINT IDD_ENVIRONMENT_DLG = 20509;
constexpr UINT IDC_RDO_TLC_GRID_SOLID = 21028;
constexpr UINT IDC_RDO_TLC_GRID_NONE = 21029;
constexpr UINT IDC_STC_TLC_GRID_LINE = 21030;
constexpr UINT IDC_BTN_TLC_COLOR_ADD = 21031;
constexpr UINT IDC_BTN_TLC_COLOR_MODIFY = 21032;
constexpr UINT IDC_EDT_TLC_LINE_WIDTH = 21033;
constexpr UINT IDC_EDT_TLC_HIGHLIGHTED_LINE_WIDTH = 21034;
constexpr UINT IDC_EDT_TLC_FONT_LABEL = 21035;
constexpr UINT IDC_EDT_TLC_FONT_VALUE = 21036;
constexpr UINT IDC_STC_TLC_COLOR = 21037;
constexpr UINT IDC_STC_TLC_WIDTH = 21038;
constexpr UINT IDC_STC_TLC_FONT_SIZE = 21039;
constexpr UINT IDC_RDO_TLC_GRID_DOT = 21044;
constexpr UINT IDC_EDT_TLC_FONT_MEASURE = 21046;
constexpr UINT IDC_CMB_TLC_COLOR_PRESET = 21047;
constexpr UINT IDC_BTN_TLC_COLOR_DELETE = 21048;

class CGLPlotvane_Environment_Dlg : public CDialog
{
public:
    enum
    {
        IDD = IDD_ENVIRONMENT_DLG
    };
    explicit CGLPlotvane_Environment_Dlg(CWnd* pParent = nullptr);
    ~CGLPlotvane_Environment_Dlg() override;
    CGLPlotvane_Environment_Dlg(const CGLPlotvane_Environment_Dlg&) = delete;
    CGLPlotvane_Environment_Dlg& operator=(const CGLPlotvane_Environment_Dlg&) = delete;

    // Loads "Chart.uis" and shows it.
    void Set_EnvironmentDB_To_DlgVal();
    // The controls into the settings, then "Chart.uis".
    void Set_DlgVal_To_EnvironmentDB();

    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;

    // Handlers.
    void OnBnClickedAdd();
    void OnBnClickedModify();
    void OnBnClickedDelete();
    void OnBnClickedOk();
    void OnCbnSelchangeCmbTlcColorPreset();

    CGLPlotvane_Environment* m_pEnvironment;
    CComboBox m_cmbColorPreset; // 21047
    CButton m_btnAdd;           // 21031
    CButton m_btnModify;        // 21032
    CButton m_btnDelete;        // 21048
    CButton m_rdoGrid[3];       // "Solid", "Dot", "None"
    int m_nGridLine = 0;        // radio group from 21028
    CString m_strLineWidth = "0";
    CString m_strHighlightedLineWidth = "0";
    CString m_strFontSizeLabel = "0";
    CString m_strFontSizeValue = "0";
    CString m_strFontSizeMeasure = "0";
};
