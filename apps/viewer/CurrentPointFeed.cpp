#include "viewer/CurrentPointFeed.h"

#include <plotvane/plotvane_wx.h>

#include <wx/window.h>

namespace plotvane::viewer
{

CurrentPointFeed::CurrentPointFeed(CPlotvane_Manager& mgr) : m_manager(mgr)
{
    wxEvtHandler::AddFilter(this);
}

CurrentPointFeed::~CurrentPointFeed()
{
    wxEvtHandler::RemoveFilter(this);
}

int CurrentPointFeed::FilterEvent(wxEvent& event)
{
    if (event.GetEventType() != wxEVT_MOTION || m_manager.m_AttributeDlg.GetSafeHwnd() == nullptr)
        return Event_Skip;
    CGLChartView* view = m_manager.m_ChartDlg.GetGLChartView();
    if (view == nullptr || view->GetSafeHwnd() == nullptr ||
        event.GetEventObject() !=
            static_cast<wxObject*>(InstallWxBackend().GetWxWindow(view->GetSafeHwnd())))
        return Event_Skip;
    const auto& mouse = static_cast<const wxMouseEvent&>(event);
    const CPointF p = view->ClientPointToView(CPoint(mouse.GetX(), mouse.GetY()));
    m_manager.m_Attribute.SetCurrentPointText(CPoint(int(p.x), int(p.y)));
    return Event_Skip;
}

} // namespace plotvane::viewer
