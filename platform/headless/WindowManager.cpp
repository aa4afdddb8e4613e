#include <plotvane/platform/headless/WindowManager.h>

#include <plotvane/platform/Wnd.h>
#include <plotvane/platform/headless/Surface.h>

#include <algorithm>

namespace plotvane::headless
{

WindowManager::WindowManager(HandleCounter& handles) : m_handles(handles) {}

WindowManager::~WindowManager() = default;

Window* WindowManager::Find(HWND hwnd)
{
    auto it = m_windows.find(IdOf(hwnd));
    return it != m_windows.end() ? &it->second : nullptr;
}

const Window* WindowManager::Find(HWND hwnd) const
{
    auto it = m_windows.find(IdOf(hwnd));
    return it != m_windows.end() ? &it->second : nullptr;
}

HWND WindowManager::Create(CWnd* owner, const WindowParams& params)
{
    Window* parent = nullptr;
    if (params.parent != nullptr && (parent = Find(params.parent)) == nullptr)
        return nullptr;
    const HWND hwnd = MakeHandle<HWND>(m_handles.Next());
    Window& w = m_windows[IdOf(hwnd)];
    w.owner = owner;
    w.parent = params.parent;
    w.rect = params.rect;
    w.rect.NormalizeRect();
    w.visible = (params.style & WS_VISIBLE) != 0;
    w.enabled = (params.style & WS_DISABLED) == 0;
    w.text = params.text;
    // A new window has everything to paint.
    w.invalid = true;
    w.erase = true;
    if (parent != nullptr)
        parent->children.push_back(hwnd);
    return hwnd;
}

void WindowManager::Destroy(HWND hwnd)
{
    Window* w = Find(hwnd);
    if (w == nullptr)
        return;
    const std::vector<HWND> children = w->children;
    for (HWND child : children)
        Destroy(child);
    w = Find(hwnd);
    if (Window* parent = Find(w->parent))
        parent->children.erase(std::remove(parent->children.begin(), parent->children.end(), hwnd),
                               parent->children.end());
    if (m_capture == hwnd)
        m_capture = nullptr;
    if (m_focus == hwnd)
        m_focus = nullptr;
    m_windows.erase(IdOf(hwnd));
}

// ---------------------------------------------------------------------------
// Geometry and visibility

CPoint WindowManager::ScreenOrigin(HWND hwnd) const
{
    CPoint origin;
    for (const Window* w = Find(hwnd); w != nullptr; w = Find(w->parent))
        origin.Offset(w->rect.left, w->rect.top);
    return origin;
}

CRect WindowManager::GetClientRect(HWND hwnd) const
{
    const Window* w = Find(hwnd);
    return w != nullptr ? CRect(0, 0, w->rect.Width(), w->rect.Height()) : CRect();
}

CRect WindowManager::GetWindowRect(HWND hwnd) const
{
    const Window* w = Find(hwnd);
    if (w == nullptr)
        return CRect();
    return CRect(ScreenOrigin(hwnd), w->rect.Size());
}

CPoint WindowManager::ClientToScreen(HWND hwnd, CPoint pt) const
{
    return pt + ScreenOrigin(hwnd);
}

void WindowManager::Move(HWND hwnd, const CRect& rc)
{
    Window* w = Find(hwnd);
    if (w == nullptr)
        return;
    const CSize oldSize = w->rect.Size();
    w->rect = rc;
    w->rect.NormalizeRect();
    if (w->surface != nullptr && w->rect.Size() != oldSize)
        w->surface->Resize(w->rect.Width(), w->rect.Height());
}

void WindowManager::Show(HWND hwnd, bool show)
{
    Window* w = Find(hwnd);
    if (w == nullptr)
        return;
    if (show && !w->visible)
        w->invalid = w->erase = true;
    w->visible = show;
}

bool WindowManager::IsShown(HWND hwnd) const
{
    for (const Window* w = Find(hwnd); w != nullptr; w = Find(w->parent))
    {
        if (!w->visible)
            return false;
    }
    return true;
}

// ---------------------------------------------------------------------------
// Painting

void WindowManager::Invalidate(HWND hwnd, bool erase)
{
    Window* w = Find(hwnd);
    if (w == nullptr)
        return;
    w->invalid = true;
    w->erase = w->erase || erase;
    ++w->invalidateCount;
}

void WindowManager::Validate(HWND hwnd)
{
    if (Window* w = Find(hwnd))
        w->invalid = w->erase = false;
}

bool WindowManager::GetUpdateState(HWND hwnd, bool* erase) const
{
    const Window* w = Find(hwnd);
    if (erase != nullptr)
        *erase = w != nullptr && w->erase;
    return w != nullptr && w->invalid;
}

void WindowManager::PaintPending()
{
    std::vector<HWND> due;
    for (const auto& entry : m_windows)
    {
        const HWND hwnd = MakeHandle<HWND>(entry.first);
        if (entry.second.invalid && IsShown(hwnd))
            due.push_back(hwnd);
    }
    // A paint may destroy windows or paint others: look each one up again.
    for (HWND hwnd : due)
    {
        const Window* w = Find(hwnd);
        if (w != nullptr && w->invalid && w->owner != nullptr)
            w->owner->SendMessage(WM_PAINT);
    }
}

// ---------------------------------------------------------------------------
// Capture, focus and messages

void WindowManager::SetCapture(HWND hwnd)
{
    if (Find(hwnd) != nullptr)
        m_capture = hwnd;
}

void WindowManager::SetFocus(HWND hwnd)
{
    if (Find(hwnd) != nullptr)
        m_focus = hwnd;
}

void WindowManager::SetMessageHandler(HWND hwnd, MessageHandler handler)
{
    if (Window* w = Find(hwnd))
        w->handler = std::move(handler);
}

LRESULT WindowManager::DefWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    const Window* w = Find(hwnd);
    if (w != nullptr && w->handler)
    {
        // Copy: the handler may replace itself or destroy the window.
        MessageHandler handler = w->handler;
        return handler(message, wParam, lParam);
    }
    // Nothing to erase without a screen; the background counts as erased.
    return message == WM_ERASEBKGND ? 1 : 0;
}

} // namespace plotvane::headless
