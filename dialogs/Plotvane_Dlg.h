// The chart dialog: owner of the chart view. The native window, status bar,
// layout and forwarding operations come with a window backend; until then the
// dialog is the object that holds the view and the document's back-pointers.
#pragma once

class CGLChartView;
class CPlotvane_InputData;
class CPlotvane_Attribute;

class CPlotvane_Dlg
{
public:
    // The view object exists from construction; its window only after the
    // dialog's window is created.
    CPlotvane_Dlg();
    CPlotvane_Dlg(const CPlotvane_Dlg&) = delete;
    CPlotvane_Dlg& operator=(const CPlotvane_Dlg&) = delete;
    virtual ~CPlotvane_Dlg();

    CGLChartView* GetGLChartView() const { return m_pGLChartView; }
    void SetCPlotvaneInputData(CPlotvane_InputData* p) { m_pInputData = p; }
    void SetCPlotvaneAttribute(CPlotvane_Attribute* p) { m_pAttribute = p; }

    // Whether a native window is attached; none can be yet.
    bool HasWindow() const { return false; }

    CGLChartView* m_pGLChartView;
    CPlotvane_InputData* m_pInputData = nullptr;
    CPlotvane_Attribute* m_pAttribute = nullptr;
};
