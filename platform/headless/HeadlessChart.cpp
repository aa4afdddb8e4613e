#include <plotvane/platform/headless/HeadlessChart.h>

#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/platform/Backend.h>
#include <plotvane/view/GLChartView.h>

namespace plotvane
{

bool CreateChartWindow(CPlotvane_Dlg& dlg, CWnd* pParent, const CRect& rc)
{
    const DWORD style = WS_VISIBLE | (pParent != nullptr ? WS_CHILD : 0);
    if (!dlg.CreateEx(0, nullptr, "", style, rc, pParent, 0))
        return false;
    dlg.OnInitDialog();
    return dlg.GetGLChartView()->GetRenderContext() != nullptr;
}

bool CreateHeadlessChart(CPlotvane_Manager& manager, int width, int height)
{
    return CreateChartWindow(manager.m_ChartDlg, nullptr, CRect(0, 0, width, height));
}

const Image* GetChartImage(const CPlotvane_Manager& manager)
{
    const CGLChartView* pView = manager.m_ChartDlg.GetGLChartView();
    if (pView == nullptr || pView->GetSafeHwnd() == nullptr)
        return nullptr;
    return GetBackend().GetFrontImage(pView->GetSafeHwnd());
}

bool SaveChartImage(const CPlotvane_Manager& manager, const CString& path)
{
    const Image* pImage = GetChartImage(manager);
    return pImage != nullptr && WritePng(path, *pImage);
}

} // namespace plotvane
