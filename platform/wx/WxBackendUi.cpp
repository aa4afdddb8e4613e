// The wx backend's message boxes, key state, cursors, dialog units, status
// bars, menus and colour chooser.
#include <plotvane/platform/wx/WxBackend.h>

#include <plotvane/dialogs/StatusBar.h>
#include <plotvane/platform/wx/WxBackendImpl.h>
#include <plotvane/platform/wx/WxControls.h>

#include <wx/colordlg.h>
#include <wx/dialog.h>
#include <wx/menu.h>
#include <wx/msgdlg.h>
#include <wx/statusbr.h>
#include <wx/textctrl.h>
#include <wx/utils.h>

#include <algorithm>
#include <vector>

namespace plotvane
{

// ---------------------------------------------------------------------------
// Message boxes, keys, cursors, display

int WxBackend::RunModalLoop(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    auto* dialog = r != nullptr ? dynamic_cast<wxDialog*>(r->window) : nullptr;
    if (dialog == nullptr)
        return IDCANCEL;
    dialog->CentreOnParent();
    // Typing goes to the first text field at once, as the user expects.
    for (wxWindow* child : dialog->GetChildren())
    {
        if (dynamic_cast<wxTextCtrl*>(child) != nullptr && child->IsEnabled())
        {
            child->SetFocus();
            break;
        }
    }
    const int result = dialog->ShowModal();
    // Closing the window by its frame is a cancel.
    return result == wxID_CANCEL ? IDCANCEL : result;
}

void WxBackend::EndModalLoop(HWND hwnd, int result)
{
    WindowRecord* r = m_impl->Find(hwnd);
    auto* dialog = r != nullptr ? dynamic_cast<wxDialog*>(r->window) : nullptr;
    if (dialog != nullptr && dialog->IsModal())
        dialog->EndModal(result);
}

int WxBackend::MessageBox(HWND owner, const CString& text, const CString& caption, UINT type)
{
    WindowRecord* r = m_impl->Find(owner);
    long style = wxOK;
    switch (type & MB_TYPEMASK)
    {
    case MB_OKCANCEL:
        style = wxOK | wxCANCEL;
        break;
    case MB_YESNO:
        style = wxYES_NO;
        break;
    case MB_YESNOCANCEL:
        style = wxYES_NO | wxCANCEL;
        break;
    default:
        break;
    }
    switch (type & 0xF0)
    {
    case MB_ICONERROR:
        style |= wxICON_ERROR;
        break;
    case MB_ICONQUESTION:
        style |= wxICON_QUESTION;
        break;
    case MB_ICONWARNING:
        style |= wxICON_WARNING;
        break;
    case MB_ICONINFORMATION:
        style |= wxICON_INFORMATION;
        break;
    default:
        break;
    }
    // A capture held across a modal box would swallow its clicks.
    ReleaseCapture();
    wxMessageDialog box(r != nullptr ? r->window : nullptr, wxString::FromUTF8(text.GetString()),
                        wxString::FromUTF8(caption.GetString()), style);
    switch (box.ShowModal())
    {
    case wxID_YES:
        return IDYES;
    case wxID_NO:
        return IDNO;
    case wxID_CANCEL:
        return IDCANCEL;
    default:
        return IDOK;
    }
}

SHORT WxBackend::GetAsyncKeyState(int vk)
{
    bool down = false;
    if (vk == VK_LBUTTON || vk == VK_RBUTTON || vk == VK_MBUTTON)
    {
        const wxMouseState m = wxGetMouseState();
        down = vk == VK_LBUTTON ? m.LeftIsDown() : vk == VK_RBUTTON ? m.RightIsDown()
                                                                     : m.MiddleIsDown();
    }
    else if (const int key = wx::WxKeyOf(vk))
    {
        down = wxGetKeyState(wxKeyCode(key));
    }
    return down ? SHORT(0x8000) : SHORT(0);
}

void WxBackend::BeginWaitCursor()
{
    wxBeginBusyCursor();
}

void WxBackend::EndWaitCursor()
{
    if (wxIsBusy())
        wxEndBusyCursor();
}

int WxBackend::GetDisplayColorDepth()
{
    return wxDisplayDepth();
}

bool WxBackend::IsHardwareAccelerated(HWND /*parent*/, CString& info)
{
    const wx::GlxFormats& f = wx::GlxFormats::Instance();
    info = f.Renderer();
    return !f.IsSoftware() && !f.Descriptors().empty();
}

// ---------------------------------------------------------------------------
// Dialogs, controls, menus, colours

CRect WxBackend::MapDialogRect(HWND hwnd, const CRect& rc)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr)
        return Backend::MapDialogRect(hwnd, rc);
    const wxPoint lt = r->window->ConvertDialogToPixels(wxPoint(rc.left, rc.top));
    const wxPoint rb = r->window->ConvertDialogToPixels(wxPoint(rc.right, rc.bottom));
    return CRect(lt.x, lt.y, rb.x, rb.y);
}

void WxBackend::ControlChanged(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr || wx::MirrorCoreControl(r->owner, r->window))
        return;
    auto* bar = dynamic_cast<wxStatusBar*>(r->window);
    auto* sb = dynamic_cast<CStatusBar*>(r->owner);
    if (bar == nullptr || sb == nullptr || sb->GetCount() == 0)
        return;
    const auto& panes = sb->GetPanes();
    std::vector<int> widths;
    for (const CStatusBar::Pane& p : panes)
        widths.push_back((p.style & SBPS_STRETCH) ? -1 : std::max(1, p.width));
    if (bar->GetFieldsCount() != int(panes.size()))
        bar->SetFieldsCount(int(panes.size()), widths.data());
    else
        bar->SetStatusWidths(int(widths.size()), widths.data());
    for (size_t i = 0; i < panes.size(); ++i)
    {
        const wxString text = wxString::FromUTF8(panes[i].text.GetString());
        if (bar->GetStatusText(int(i)) != text)
            bar->SetStatusText(text, int(i));
    }
}

UINT WxBackend::TrackPopupMenu(const PopupMenuItems& items, CPoint screen, HWND owner)
{
    WindowRecord* r = m_impl->Find(owner);
    if (r == nullptr || items.empty())
        return 0;
    wxMenu menu;
    for (const PopupMenuItem& item : items)
    {
        if (item.id == 0)
            menu.AppendSeparator();
        else
            menu.Append(int(item.id), wxString::FromUTF8(item.text.GetString()));
    }
    UINT chosen = 0;
    menu.Bind(wxEVT_MENU, [&chosen](wxCommandEvent& e) { chosen = UINT(e.GetId()); });
    ReleaseCapture();
    r->window->PopupMenu(&menu, r->window->ScreenToClient(wxPoint(screen.x, screen.y)));
    return chosen;
}

bool WxBackend::ChooseColor(HWND owner, COLORREF& color)
{
    WindowRecord* r = m_impl->Find(owner);
    wxColourData data;
    data.SetColour(wxColour(GetRValue(color), GetGValue(color), GetBValue(color)));
    wxColourDialog dlg(r != nullptr ? r->window : nullptr, &data);
    if (dlg.ShowModal() != wxID_OK)
        return false;
    const wxColour c = dlg.GetColourData().GetColour();
    color = RGB(c.Red(), c.Green(), c.Blue());
    return true;
}

} // namespace plotvane
