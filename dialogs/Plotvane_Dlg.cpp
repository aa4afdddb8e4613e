#include "dialogs/Plotvane_Dlg.h"

#include "view/GLChartView.h"

CPlotvane_Dlg::CPlotvane_Dlg() : m_pGLChartView(new CGLChartView) {}

CPlotvane_Dlg::~CPlotvane_Dlg()
{
    delete m_pGLChartView;
}
