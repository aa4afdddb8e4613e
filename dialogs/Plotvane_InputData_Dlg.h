// CPlotvane_InputData_Dlg: the data sets of a chart and the points of the
// edit set, typed by hand. It works directly on the chart's data store and
// asks the chart dialog to redraw after each change.
#pragma once

#include <plotvane/dialogs/Dialog.h>
#include <plotvane/dialogs/DialogControls.h>
#include <plotvane/dialogs/ExXListCtrl.h>

class CPlotvane_InputData;
class CPlotvane_Dlg;

constexpr UINT IDD_INPUTDATA_DLG = 20504;
constexpr UINT IDC_LIST_TLC_MAIN_POINTD = 11000;
constexpr UINT IDC_EDT_TLC_MAIN_X = 11001;
constexpr UINT IDC_EDT_TLC_MAIN_Y = 11002;
constexpr UINT IDC_BTN_TLC_MAIN_INPUT = 11003;
constexpr UINT IDC_BTN_TLC_MAIN_DELETE = 11015;
constexpr UINT IDC_BTN_TLC_MAIN_CLEARALL = 11016;
constexpr UINT IDC_BTN_TLC_MAIN_MODIFY = 11029;
constexpr UINT IDC_BTN_TLC_MAIN_ADDSET = 21002;
constexpr UINT IDC_BTN_TLC_MAIN_DELETESET = 21003;
constexpr UINT IDC_BTN_TLC_MAIN_EDITSET = 21015;
constexpr UINT IDC_EDT_TLC_MAIN_SETNAME = 21016;
constexpr UINT IDC_LIST_TLC_MAIN_SETNAME = 21018;

class CPlotvane_InputData_Dlg : public CDialog
{
public:
    enum
    {
        IDD = IDD_INPUTDATA_DLG
    };
    explicit CPlotvane_InputData_Dlg(CWnd* pParent = nullptr);

    void SetCPlotvaneInputData(CPlotvane_InputData* p) { m_pInputData = p; }
    void SetCPlotvaneDlg(CPlotvane_Dlg* p) { m_pChartDlg = p; }

    // The columns of both lists.
    void InitListCtrl();
    // One row per data set, checked when the set is drawn.
    void InitDataSetListCtrl();
    // The points of the edit set, "%.5f".
    void InputDataToListCtrl();
    void SetCurrentSetListCtrl(int i);
    void SetCurrentPointListCtrl(int i);
    void SetCurrentInputDataSelectOnList(int i) { SetCurrentPointListCtrl(i); }

    void DoDataExchange(CDataExchange* pDX) override;
    BOOL OnInitDialog() override;
    BOOL OnCommand(WPARAM wParam, LPARAM lParam) override;
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override;
    // The Delete key deletes the selected points wherever the focus is.
    BOOL PreTranslateMessage(MSG* pMsg) override;
    void OnDestroy() override;

    // Handlers.
    void OnBtnTlcMainInput();
    void OnBtnTlcMainModify();
    void OnBtnTlcMainDelete();
    void OnBtnTlcMainClearall();
    void OnBtnTlcMainAddset();
    void OnBtnTlcMainDeleteset();
    void OnBtnTlcMainEditset();
    void OnChangeEdtTlcMainSetname();
    // A set keeps a name: leaving the field empty restores the old one.
    void OnKillfocusEdtTlcMainSetname();
    void OnClickListTlcMainSetname(NMHDR* pNMHDR, LRESULT* pResult);
    void OnColumnclickListTlcMainPointd(NMHDR* pNMHDR, LRESULT* pResult);
    void OnItemchangedListTlcMainPointd(NMHDR* pNMHDR, LRESULT* pResult);

    CPlotvane_InputData* m_pInputData = nullptr;
    CPlotvane_Dlg* m_pChartDlg = nullptr;
    CExXListCtrl m_ctrlSetList;   // 21018
    CExXListCtrl m_ctrlPointList; // 11000
    CEdit m_edtSetName;           // 21016
    double m_dX = 0.0;            // 11001
    double m_dY = 0.0;            // 11002
    CString m_strSetName;         // 21016

private:
    // The rows of the set list, with their check boxes.
    void FillDataSetList();
    bool HasEditSet() const;
    int EditSetSize() const;
    void EnableControl(UINT nID, BOOL bEnable);
    void FocusControl(UINT nID);
    void RedrawChart();
    void InvalidateChart();
    // Set while a handler shows a message or the window goes, so that the
    // focus changes they cause run no handler.
    bool m_bBusy = false;
};
