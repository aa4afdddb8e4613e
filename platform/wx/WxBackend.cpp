#include <plotvane/platform/wx/WxBackend.h>

#include <plotvane/platform/wx/WxBackendImpl.h>
#include <plotvane/platform/wx/WxControls.h>
#include <plotvane/view/GLWnd.h>

#include <wx/app.h>
#include <wx/button.h>
#include <wx/dialog.h>
#include <wx/frame.h>
#include <wx/stattext.h>
#include <wx/statusbr.h>
#include <wx/textctrl.h>

#include <algorithm>

wxDEFINE_EVENT(plotvane::EVT_PLOTVANE_MESSAGE, plotvane::WxMessageEvent);

namespace plotvane
{

WxBackend::WxBackend() : m_impl(std::make_unique<Impl>()) {}

WxBackend::~WxBackend() = default;

bool WxBackend::AttachWindow(CWnd& wnd, wxWindow* window)
{
    if (wnd.m_hWnd != nullptr || window == nullptr || m_impl->byWindow.count(window) != 0)
        return false;
    WindowRecord* r = m_impl->Add(&wnd, window, nullptr, false);
    wnd.m_hWnd = HandleOf(r);
    return true;
}

void WxBackend::DetachWindow(CWnd& wnd)
{
    if (WindowRecord* r = m_impl->Find(wnd.m_hWnd))
        m_impl->Forget(r);
    wnd.m_hWnd = nullptr;
}

wxWindow* WxBackend::GetWxWindow(HWND hwnd) const
{
    WindowRecord* r = m_impl->Find(hwnd);
    return r != nullptr ? r->window : nullptr;
}

void WxBackend::SetMessageCallback(MessageCallback callback)
{
    m_impl->callback = std::move(callback);
}

// ---------------------------------------------------------------------------
// Windows

HWND WxBackend::CreateNativeWindow(CWnd* owner, const WindowParams& params)
{
    WindowRecord* parent = m_impl->Find(params.parent);
    if (params.parent != nullptr && parent == nullptr)
        return nullptr;
    const wxPoint pos(params.rect.left, params.rect.top);
    const wxSize size(std::max(1, int(params.rect.Width())), std::max(1, int(params.rect.Height())));
    // wx ids stop below 32767; a larger child id (the view's 123456, the
    // status bar's 59393) lives on in the CWnd only.
    const wxWindowID id = params.id != 0 && params.id < 32767 ? wxWindowID(params.id) : wxID_ANY;
    const wxString text = wxString::FromUTF8(params.text.GetString());
    const std::string cls = params.className.GetString();

    wxWindow* window = nullptr;
    wxGLCanvas* canvas = nullptr;
    if (parent == nullptr && cls == "#32770")
    {
        // A dialog of its own (a modal one, say): a wx dialog, so that it
        // can run modally and take Enter and Esc as OK and Cancel.
        auto* dialog = new wxDialog(wxTheApp != nullptr ? wxTheApp->GetTopWindow() : nullptr, id,
                                    text, pos, wxDefaultSize, wxDEFAULT_DIALOG_STYLE);
        dialog->SetAffirmativeId(IDOK);
        dialog->SetEscapeId(IDCANCEL);
        dialog->SetClientSize(size);
        window = dialog;
    }
    else if (parent == nullptr)
    {
        auto* frame = new wxFrame(nullptr, id, text, pos, wxDefaultSize);
        frame->SetClientSize(size);
        window = frame;
    }
    else if (dynamic_cast<CGLWnd*>(owner) != nullptr)
    {
        canvas = wx::MakeGLCanvas(parent->window, id, pos, size);
        window = canvas;
    }
    else if (wxWindow* control = wx::MakeCoreControl(owner, parent->window, id, params))
        window = control; // radio buttons, group boxes, combos, lists: WxControls.h
    else if (cls == "STATIC")
        window = new wxStaticText(parent->window, id, text, pos, size);
    else if (cls == "BUTTON")
    {
        auto* button = new wxButton(parent->window, id, text, pos, size);
        // A press is a command to the dialog, with the button's id.
        const UINT commandId = params.id;
        button->Bind(wxEVT_BUTTON, [this, button, commandId](wxCommandEvent&) {
            CWnd* pDialog = nullptr;
            for (wxWindow* p = button->GetParent(); p != nullptr && pDialog == nullptr;
                 p = p->GetParent())
            {
                auto it = m_impl->byWindow.find(p);
                if (it != m_impl->byWindow.end())
                    pDialog = it->second->owner;
            }
            if (pDialog != nullptr)
                pDialog->SendMessage(WM_COMMAND, WPARAM(commandId & 0xFFFF), 0);
        });
        if (params.id == UINT(IDOK))
            button->SetDefault();
        window = button;
    }
    else if (cls == "EDIT")
    {
        // Enter in a one-line field presses the dialog's OK, as on Windows.
        auto* edit = new wxTextCtrl(parent->window, id, text, pos, size, wxTE_PROCESS_ENTER);
        edit->Bind(wxEVT_TEXT_ENTER, [this, edit](wxCommandEvent&) {
            for (wxWindow* p = edit->GetParent(); p != nullptr; p = p->GetParent())
            {
                auto it = m_impl->byWindow.find(p);
                if (it != m_impl->byWindow.end() && it->second->owner != nullptr)
                {
                    it->second->owner->SendMessage(WM_COMMAND, WPARAM(IDOK), 0);
                    return;
                }
            }
        });
        window = edit;
    }
    else if (cls == "msctls_statusbar32")
    {
        auto* bar = new wxStatusBar(parent->window, id, 0);
        bar->SetSize(pos.x, pos.y, size.x, size.y);
        window = bar;
    }
    else
        window = new wxPanel(parent->window, id, pos, size, wxTAB_TRAVERSAL);

    if (parent != nullptr && (params.style & WS_BORDER) && canvas == nullptr)
        window->SetWindowStyleFlag(window->GetWindowStyleFlag() | wxBORDER_SIMPLE);
    if ((params.style & WS_DISABLED) != 0)
        window->Disable();
    WindowRecord* r = m_impl->Add(owner, window, canvas, true);
    wx::BindWindowEvents(*r);
    window->Show((params.style & WS_VISIBLE) != 0);
    return HandleOf(r);
}

void WxBackend::DestroyNativeWindow(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr)
        return;
    wxWindow* window = r->window;
    const bool owns = r->ownsWindow;
    m_impl->Forget(r);
    if (owns)
    {
        // wx deletes a top-level window later, at idle time; hidden now, it
        // gets no paint in between that would reach the forgotten record.
        if (window->IsTopLevel())
            window->Hide();
        window->Destroy();
    }
}

CWnd* WxBackend::GetOwner(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    return r != nullptr ? r->owner : nullptr;
}

HWND WxBackend::GetParentWindow(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr)
        return nullptr;
    for (wxWindow* p = r->window->GetParent(); p != nullptr; p = p->GetParent())
    {
        auto it = m_impl->byWindow.find(p);
        if (it != m_impl->byWindow.end())
            return HandleOf(it->second);
    }
    return nullptr;
}

std::vector<HWND> WxBackend::GetChildWindows(HWND hwnd)
{
    std::vector<HWND> out;
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr)
        return out;
    for (wxWindow* child : r->window->GetChildren())
    {
        auto it = m_impl->byWindow.find(child);
        if (it != m_impl->byWindow.end())
            out.push_back(HandleOf(it->second));
    }
    return out;
}

CRect WxBackend::GetClientRect(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr)
        return CRect();
    const wxSize s = r->window->GetClientSize();
    return CRect(0, 0, s.x, s.y);
}

CRect WxBackend::GetWindowRect(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr)
        return CRect();
    const wxRect rc = r->window->GetScreenRect();
    return CRect(rc.x, rc.y, rc.x + rc.width, rc.y + rc.height);
}

CPoint WxBackend::ClientToScreen(HWND hwnd, CPoint pt)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr)
        return pt;
    const wxPoint s = r->window->ClientToScreen(wxPoint(pt.x, pt.y));
    return CPoint(s.x, s.y);
}

void WxBackend::MoveNativeWindow(HWND hwnd, const CRect& rc)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr)
        return;
    // The core tells the window object of the move itself.
    r->moving = true;
    if (r->topLevel)
    {
        r->window->Move(rc.left, rc.top);
        r->window->SetClientSize(rc.Width(), rc.Height());
    }
    else
    {
        r->window->SetSize(rc.left, rc.top, rc.Width(), rc.Height());
    }
    r->moving = false;
}

void WxBackend::ShowNativeWindow(HWND hwnd, bool show)
{
    if (WindowRecord* r = m_impl->Find(hwnd))
        r->window->Show(show);
}

bool WxBackend::IsWindowVisible(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    return r != nullptr && r->window->IsShown();
}

void WxBackend::EnableNativeWindow(HWND hwnd, bool enable)
{
    if (WindowRecord* r = m_impl->Find(hwnd))
        r->window->Enable(enable);
}

bool WxBackend::IsWindowEnabled(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    return r != nullptr && r->window->IsEnabled();
}

void WxBackend::SetWindowText(HWND hwnd, const CString& text)
{
    if (WindowRecord* r = m_impl->Find(hwnd))
    {
        if (auto* edit = dynamic_cast<wxTextCtrl*>(r->window))
            edit->ChangeValue(wxString::FromUTF8(text.GetString()));
        else
            r->window->SetLabel(wxString::FromUTF8(text.GetString()));
    }
}

CString WxBackend::GetWindowText(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr)
        return CString();
    if (auto* edit = dynamic_cast<wxTextCtrl*>(r->window))
        return CString(edit->GetValue().utf8_string());
    return CString(r->window->GetLabel().utf8_string());
}

// ---------------------------------------------------------------------------
// Painting, capture, focus

void WxBackend::InvalidateRect(HWND hwnd, const RECT* /*rc*/, bool erase)
{
    if (WindowRecord* r = m_impl->Find(hwnd))
    {
        r->paintDue = true;
        r->eraseDue = r->eraseDue || erase;
        r->window->Refresh(erase);
    }
}

void WxBackend::ValidateRect(HWND hwnd, const RECT* /*rc*/)
{
    if (WindowRecord* r = m_impl->Find(hwnd))
    {
        r->paintDue = false;
        r->eraseDue = false;
    }
}

bool WxBackend::GetUpdateState(HWND hwnd, bool* erase)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr)
        return false;
    if (erase != nullptr)
        *erase = r->eraseDue;
    return r->paintDue && wx::HasArea(*r);
}

void WxBackend::SetCapture(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    if (r == nullptr || m_impl->capture == r)
        return;
    ReleaseCapture();
    r->window->CaptureMouse();
    m_impl->capture = r;
}

void WxBackend::ReleaseCapture()
{
    WindowRecord* r = m_impl->capture;
    m_impl->capture = nullptr;
    if (r != nullptr && r->window->HasCapture())
        r->window->ReleaseMouse();
}

HWND WxBackend::GetCapture()
{
    WindowRecord* r = m_impl->capture;
    if (r != nullptr && !r->window->HasCapture())
        m_impl->capture = r = nullptr; // the window system took it away
    return r != nullptr ? HandleOf(r) : nullptr;
}

void WxBackend::SetFocus(HWND hwnd)
{
    if (WindowRecord* r = m_impl->Find(hwnd))
        r->window->SetFocus();
}

HWND WxBackend::GetFocus()
{
    for (wxWindow* w = wxWindow::FindFocus(); w != nullptr; w = w->GetParent())
    {
        auto it = m_impl->byWindow.find(w);
        if (it != m_impl->byWindow.end())
            return HandleOf(it->second);
    }
    return nullptr;
}

LRESULT WxBackend::DefWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    WindowRecord* r = m_impl->Find(hwnd);
    LRESULT result = 0;
    if (r != nullptr && message >= WM_USER)
    {
        WxMessageEvent e(EVT_PLOTVANE_MESSAGE, r->window->GetId());
        e.SetEventObject(r->window);
        e.hwnd = hwnd;
        e.message = message;
        e.wParam = wParam;
        e.lParam = lParam;
        r->window->GetEventHandler()->ProcessEvent(e);
        result = e.result;
    }
    if (m_impl->callback && message >= WM_USER)
        result = m_impl->callback(hwnd, message, wParam, lParam);
    return result;
}

} // namespace plotvane
