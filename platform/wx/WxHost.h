// What a wx host calls to put Plotvane's windows into its own.
#pragma once

#include <plotvane/platform/wx/WxBackend.h>

class CDialog;
class CWnd;
class wxWindow;

namespace plotvane
{

// The process-wide wx backend, installed with SetBackend at the first call.
// Call it once wx is initialised (from wxApp::OnInit or later).
WxBackend& InstallWxBackend();

// Makes dlg's window from its resource as a child of the host's wx window
// parent, which hostWnd then stands for (hostWnd must not have a window
// yet), and sizes it to parent's client area. False on failure.
bool CreateDialogIn(CDialog& dlg, CWnd& hostWnd, wxWindow* parent);

} // namespace plotvane
