// The native controls of dialog controls whose state the core keeps: radio
// buttons, check boxes and group boxes, drop-down lists, lists, and edits
// whose dialog hears of each change. The native control shows the core
// state (MirrorCoreControl, on Backend::ControlChanged) and reports what the
// user does to the core control. Internal to the wx backend.
#pragma once

#include <plotvane/platform/Backend.h>

#include <wx/window.h>

class CWnd;

namespace plotvane::wx
{

// The native control for owner, or null when the backend makes it itself
// (static texts, push buttons, plain edits, panels).
wxWindow* MakeCoreControl(CWnd* owner, wxWindow* parent, wxWindowID id, const WindowParams& params);

// Brings window up to the state of its core control; false when owner is
// not a core control with a native one.
bool MirrorCoreControl(CWnd* owner, wxWindow* window);

} // namespace plotvane::wx
