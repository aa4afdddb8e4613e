// The axis dialog's "Current Point": the chart's logical point under the
// mouse, handed to the attribute while the dialog is open. The view takes
// its mouse events whole, so the feed watches them before it, as an
// application-wide filter.
#pragma once

#include <wx/eventfilter.h>

class CPlotvane_Manager;

namespace plotvane::viewer
{

class CurrentPointFeed : public wxEventFilter
{
public:
    explicit CurrentPointFeed(CPlotvane_Manager& mgr);
    ~CurrentPointFeed() override;
    CurrentPointFeed(const CurrentPointFeed&) = delete;
    CurrentPointFeed& operator=(const CurrentPointFeed&) = delete;

    int FilterEvent(wxEvent& event) override;

private:
    CPlotvane_Manager& m_manager;
};

} // namespace plotvane::viewer
