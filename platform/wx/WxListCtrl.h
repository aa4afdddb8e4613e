// The native list behind a core CXListCtrl: a wxDataViewCtrl (a GtkTreeView
// on GTK) whose rows the core list holds. The native list reads rows,
// cells, check boxes, colours and selection from the core list when told
// of a change, and hands clicks, check toggles, selection changes, header
// clicks and finished cell edits back to the core list, which notifies
// its dialog. Both directions go through the event loop, never from inside
// a native callback. Internal to the wx backend.
#pragma once

#include <wx/gdicmn.h>
#include <wx/window.h>

class CXListCtrl;

namespace plotvane::wx
{

wxWindow* MakeListCtrl(CXListCtrl& list, wxWindow* parent, wxWindowID id, const wxPoint& pos,
                       const wxSize& size);

// The core list changed: the native one catches up when the event loop
// next runs. False when window is not a native list.
bool ListCtrlChanged(wxWindow* window);

// Where row nItem, column nSubItem of the native list is on the screen,
// for tests that click it; an empty rectangle when it is not shown.
wxRect ListCellScreenRect(wxWindow* window, int nItem, int nSubItem);

} // namespace plotvane::wx
