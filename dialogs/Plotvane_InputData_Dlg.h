// The data entry dialog. Its native window, lists and handlers come with a
// window backend; until then it holds its back-pointers.
#pragma once

class CPlotvane_InputData;
class CPlotvane_Dlg;

class CPlotvane_InputData_Dlg
{
public:
    CPlotvane_InputData_Dlg() = default;
    CPlotvane_InputData_Dlg(const CPlotvane_InputData_Dlg&) = delete;
    CPlotvane_InputData_Dlg& operator=(const CPlotvane_InputData_Dlg&) = delete;
    virtual ~CPlotvane_InputData_Dlg() = default;

    void SetCPlotvaneInputData(CPlotvane_InputData* p) { m_pInputData = p; }
    void SetCPlotvaneDlg(CPlotvane_Dlg* p) { m_pChartDlg = p; }

    CPlotvane_InputData* m_pInputData = nullptr;
    CPlotvane_Dlg* m_pChartDlg = nullptr;
};
