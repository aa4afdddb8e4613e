// The axis property dialog. Its native window and controls come with a window
// backend; until then it holds its fields and back-pointers.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/Types.h>

class CPlotvane_Attribute;
class CPlotvane_Dlg;

class CPlotvane_Attribute_Dlg
{
public:
    CPlotvane_Attribute_Dlg() = default;
    CPlotvane_Attribute_Dlg(const CPlotvane_Attribute_Dlg&) = delete;
    CPlotvane_Attribute_Dlg& operator=(const CPlotvane_Attribute_Dlg&) = delete;
    virtual ~CPlotvane_Attribute_Dlg() = default;

    void SetCPlotvaneAttribute(CPlotvane_Attribute* p) { m_pAttribute = p; }
    void SetCPlotvaneDlg(CPlotvane_Dlg* p) { m_pChartDlg = p; }

    // Whether a native window is attached; none can be yet.
    bool HasWindow() const { return false; }
    // Moves the fields to the controls (FALSE) or back (TRUE). There are no
    // controls without a window backend, so this does nothing yet.
    void UpdateData(BOOL /*bSaveAndValidate*/) {}

    CPlotvane_Attribute* m_pAttribute = nullptr;
    CPlotvane_Dlg* m_pChartDlg = nullptr;
    CString m_strCurrentPoint;
};
