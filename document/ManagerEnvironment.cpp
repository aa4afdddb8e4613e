// The manager's appearance settings: applying a CGLPlotvane_Environment to
// the chart dialog and its view.
#include <plotvane/document/Plotvane_Manager.h>

#include <plotvane/document/GLPlotvane_Environment.h>
#include <plotvane/view/GLChartView.h>

void CPlotvane_Manager::SetChartEnvironment(CGLPlotvane_Environment* pEnv)
{
    if (pEnv == nullptr)
        return;
    SetMeasureFontSize(pEnv->GetFontSizeMeasure());
    SetDefaultFontSize(pEnv->GetFontSizeValue());
    SetXYFontSize(pEnv->GetFontSizeLabel());
    m_ChartDlg.ChangeLineWidth(pEnv->GetLineWidth());
    m_ChartDlg.GetGLChartView()->m_dPointSize = pEnv->GetHighlightedLineWidth();
    m_ChartDlg.SetGridMode(pEnv->GetGridLine());
    m_ChartDlg.SetBackgroundColor(pEnv->GetBackgroundColor());
    // The colour set has one entry for axis, labels and grid.
    const DWORD label = pEnv->GetLabelColor();
    m_ChartDlg.SetAxisColor(label);
    m_ChartDlg.SetLabelColor(label);
    m_ChartDlg.SetGridColor(label);
    m_ChartDlg.RedrawChartView();
    RedrawGLChartView();
}

void CPlotvane_Manager::SetChartEnvironment()
{
    // The defaults of a fresh object stand when the file cannot be read.
    CGLPlotvane_Environment* pEnv = new CGLPlotvane_Environment;
    pEnv->LoadEnvironmentFIle();
    SetChartEnvironment(pEnv);
    delete pEnv;
}
