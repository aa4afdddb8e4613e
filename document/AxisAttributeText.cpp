// The current point text needs the store's view scale and the attribute
// dialog, so it lives apart from the plain axis records.
#include <plotvane/document/AxisAttribute.h>

#include <plotvane/dialogs/Plotvane_Attribute_Dlg.h>
#include <plotvane/document/Plotvane_InputData.h>

#include <cmath>

// The axis unit is taken as an exponent here, unlike everywhere else; the
// text has always been computed this way.
void CPlotvane_Attribute::SetCurrentPointText(CPoint p)
{
    const double x = p.x / CPlotvane_InputData::m_dViewScaleX / std::pow(10.0, m_XAxis.GetUnit());
    const double y = p.y / CPlotvane_InputData::m_dViewScaleY / std::pow(10.0, m_YAxis.GetUnit());
    m_strCurrentPoint.Format("X:%.3f Y:%.3f", x, y);
    if (m_pAttributeDlg != nullptr)
        m_pAttributeDlg->SetCurrentPointText();
}
