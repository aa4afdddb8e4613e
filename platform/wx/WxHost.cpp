#include <plotvane/platform/wx/WxHost.h>

#include <plotvane/dialogs/Dialog.h>

#include <wx/window.h>

namespace plotvane
{

WxBackend& InstallWxBackend()
{
    static WxBackend backend;
    if (&GetBackend() != &backend)
        SetBackend(&backend);
    return backend;
}

bool CreateDialogIn(CDialog& dlg, CWnd& hostWnd, wxWindow* parent)
{
    WxBackend& backend = InstallWxBackend();
    if (parent == nullptr)
        return false;
    if (hostWnd.GetSafeHwnd() == nullptr && !backend.AttachWindow(hostWnd, parent))
        return false;
    if (!dlg.Create(dlg.GetTemplateId(), &hostWnd))
        return false;
    const wxSize s = parent->GetClientSize();
    dlg.MoveWindow(0, 0, s.x, s.y);
    return true;
}

} // namespace plotvane
