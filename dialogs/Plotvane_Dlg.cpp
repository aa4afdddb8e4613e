#include <plotvane/dialogs/Plotvane_Dlg.h>

#include <plotvane/document/Plotvane_InputData.h>
#include <plotvane/view/GLChartView.h>

namespace
{
constexpr UINT kViewId = 123456;
// Child, visible, bordered.
constexpr DWORD kViewStyle = 0x50800000;
} // namespace

CPlotvane_Dlg::CPlotvane_Dlg(CWnd* /*pParent*/) : m_pGLChartView(new CGLChartView) {}

CPlotvane_Dlg::~CPlotvane_Dlg()
{
    delete m_pGLChartView;
}

BOOL CPlotvane_Dlg::OnInitDialog()
{
    CreateView();
    if (m_pInputData != nullptr && m_pInputData->GetDataSetSize() == 0)
    {
        const int n = m_pInputData->AddNewDataSet();
        m_pInputData->SetCurrentEditSet(n);
        m_pInputData->SetCurrentEditSetName("NoData");
        m_pInputData->AddDrawDataSetIndex(0);
    }
    return TRUE;
}

void CPlotvane_Dlg::CreateView()
{
    CRect rc;
    GetClientRect(&rc);
    m_pGLChartView->Create(nullptr, "", kViewStyle, rc, this, kViewId);
    m_pGLChartView->m_bMouseDrag = 1;
    m_pGLChartView->ShowWindow(SW_SHOW);
    m_pGLChartView->SetParent(this);
}

void CPlotvane_Dlg::RedrawChartView()
{
    if (m_pGLChartView != nullptr && m_pGLChartView->GetSafeHwnd() != nullptr)
        m_pGLChartView->RedrawWindow(nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_UPDATENOW);
}

void CPlotvane_Dlg::DisplayDistanceInfo(CString str)
{
    m_strDistanceInfo = str;
}
