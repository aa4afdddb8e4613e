// What the wx backend keeps: its windows by handle and by wx window, the
// capture, the current GL context, the host's message callback. Internal to
// the wx backend, shared by its sources.
#pragma once

#include <plotvane/platform/Wnd.h>
#include <plotvane/platform/wx/WxBackend.h>
#include <plotvane/platform/wx/WxGL.h>
#include <plotvane/platform/wx/WxWindows.h>

#include <map>
#include <memory>

namespace plotvane
{

using wx::HandleOf;
using wx::RecordOf;
using wx::WindowRecord;

struct WxBackend::Impl
{
    std::map<WindowRecord*, std::unique_ptr<WindowRecord>> records;
    std::map<wxWindow*, WindowRecord*> byWindow;
    MessageCallback callback;
    WindowRecord* capture = nullptr;
    HDC currentDC = nullptr;
    HGLRC currentRC = nullptr;

    WindowRecord* Find(HWND h) const
    {
        auto it = records.find(RecordOf(h));
        return it != records.end() ? it->second.get() : nullptr;
    }
    WindowRecord* Add(CWnd* owner, wxWindow* window, wxGLCanvas* canvas, bool owns)
    {
        auto r = std::make_unique<WindowRecord>();
        r->owner = owner;
        r->window = window;
        r->canvas = canvas;
        r->ownsWindow = owns;
        r->topLevel = window->IsTopLevel();
        WindowRecord* raw = r.get();
        records[raw] = std::move(r);
        byWindow[window] = raw;
        // A window that wx destroys by itself (its parent went first) takes
        // its record along, so that no handle points at a dead window.
        window->Bind(wxEVT_DESTROY, [this, raw, window](wxWindowDestroyEvent& e) {
            e.Skip();
            if (e.GetWindow() != window || records.count(raw) == 0)
                return;
            Forget(raw);
        });
        return raw;
    }
    void Forget(WindowRecord* r)
    {
        if (capture == r)
            capture = nullptr;
        if (currentDC == reinterpret_cast<HDC>(r))
        {
            wx::ReleaseCurrentContext();
            currentDC = nullptr;
            currentRC = nullptr;
        }
        if (r->owner != nullptr && r->owner->m_hWnd == HandleOf(r))
            r->owner->m_hWnd = nullptr;
        byWindow.erase(r->window);
        records.erase(r);
    }
};

} // namespace plotvane
