#include <plotvane/platform/headless/HeadlessBackend.h>

#include <plotvane/platform/headless/EglDisplays.h>
#include <plotvane/platform/headless/GLContexts.h>
#include <plotvane/platform/headless/Handles.h>
#include <plotvane/platform/headless/Surface.h>
#include <plotvane/platform/headless/WindowManager.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace plotvane
{

using headless::EglDisplays;
using headless::Window;

struct HeadlessBackend::Impl
{
    headless::HandleCounter handles;
    headless::WindowManager windows{handles};
    headless::GLContexts gl{handles};
    bool keys[256] = {};
    int colorDepth = 32;
    int messageBoxAnswer = 0;
    std::vector<CString> messageLog;
    ModalHandler modalHandler;
    // Modal runs in progress, innermost last: the dialog and its result once
    // ended.
    struct ModalRun
    {
        HWND hwnd;
        int result;
        bool ended;
    };
    std::vector<ModalRun> modalRuns;
};

HeadlessBackend::HeadlessBackend() : m_impl(std::make_unique<Impl>()) {}

HeadlessBackend::~HeadlessBackend() = default;

HeadlessBackend& HeadlessBackend::Default()
{
    static HeadlessBackend backend;
    return backend;
}

// The platform layer asks for the default backend by this name; the
// headless backend is the one built into the library.
Backend& GetDefaultBackend()
{
    return HeadlessBackend::Default();
}

// ---------------------------------------------------------------------------
// Controls

void HeadlessBackend::SetKeyState(int vk, bool down)
{
    if (vk >= 0 && vk < 256)
        m_impl->keys[vk] = down;
}

void HeadlessBackend::ReleaseAllKeys()
{
    std::fill(std::begin(m_impl->keys), std::end(m_impl->keys), false);
}

void HeadlessBackend::SetDisplayColorDepth(int bits)
{
    m_impl->colorDepth = bits;
}

void HeadlessBackend::SetMessageBoxAnswer(int answer)
{
    m_impl->messageBoxAnswer = answer;
}

const std::vector<CString>& HeadlessBackend::GetMessageBoxLog() const
{
    return m_impl->messageLog;
}

void HeadlessBackend::ClearMessageBoxLog()
{
    m_impl->messageLog.clear();
}

void HeadlessBackend::SetMessageHandler(HWND hwnd, MessageHandler handler)
{
    m_impl->windows.SetMessageHandler(hwnd, std::move(handler));
}

int HeadlessBackend::GetInvalidateCount(HWND hwnd) const
{
    const Window* w = m_impl->windows.Find(hwnd);
    return w != nullptr ? w->invalidateCount : 0;
}

void HeadlessBackend::PaintPending()
{
    m_impl->windows.PaintPending();
}

bool HeadlessBackend::IsGLAvailable()
{
    return EglDisplays::Instance().Available();
}

CString HeadlessBackend::GetRendererName()
{
    EglDisplays& egl = EglDisplays::Instance();
    return egl.Available() ? CString(egl.Displays().front().renderer) : CString();
}

// ---------------------------------------------------------------------------
// Windows

HWND HeadlessBackend::CreateNativeWindow(CWnd* owner, const WindowParams& params)
{
    return m_impl->windows.Create(owner, params);
}

void HeadlessBackend::DestroyNativeWindow(HWND hwnd)
{
    m_impl->windows.Destroy(hwnd);
}

CWnd* HeadlessBackend::GetOwner(HWND hwnd)
{
    const Window* w = m_impl->windows.Find(hwnd);
    return w != nullptr ? w->owner : nullptr;
}

HWND HeadlessBackend::GetParentWindow(HWND hwnd)
{
    const Window* w = m_impl->windows.Find(hwnd);
    return w != nullptr ? w->parent : nullptr;
}

std::vector<HWND> HeadlessBackend::GetChildWindows(HWND hwnd)
{
    const Window* w = m_impl->windows.Find(hwnd);
    return w != nullptr ? w->children : std::vector<HWND>();
}

CRect HeadlessBackend::GetClientRect(HWND hwnd)
{
    return m_impl->windows.GetClientRect(hwnd);
}

CRect HeadlessBackend::GetWindowRect(HWND hwnd)
{
    return m_impl->windows.GetWindowRect(hwnd);
}

CPoint HeadlessBackend::ClientToScreen(HWND hwnd, CPoint pt)
{
    return m_impl->windows.ClientToScreen(hwnd, pt);
}

void HeadlessBackend::MoveNativeWindow(HWND hwnd, const CRect& rc)
{
    m_impl->windows.Move(hwnd, rc);
}

void HeadlessBackend::ShowNativeWindow(HWND hwnd, bool show)
{
    m_impl->windows.Show(hwnd, show);
}

bool HeadlessBackend::IsWindowVisible(HWND hwnd)
{
    return m_impl->windows.Find(hwnd) != nullptr && m_impl->windows.IsShown(hwnd);
}

void HeadlessBackend::EnableNativeWindow(HWND hwnd, bool enable)
{
    if (Window* w = m_impl->windows.Find(hwnd))
        w->enabled = enable;
}

bool HeadlessBackend::IsWindowEnabled(HWND hwnd)
{
    const Window* w = m_impl->windows.Find(hwnd);
    return w != nullptr && w->enabled;
}

void HeadlessBackend::SetWindowText(HWND hwnd, const CString& text)
{
    if (Window* w = m_impl->windows.Find(hwnd))
        w->text = text;
}

CString HeadlessBackend::GetWindowText(HWND hwnd)
{
    const Window* w = m_impl->windows.Find(hwnd);
    return w != nullptr ? w->text : CString();
}

void HeadlessBackend::InvalidateRect(HWND hwnd, const RECT* /*rc*/, bool erase)
{
    m_impl->windows.Invalidate(hwnd, erase);
}

void HeadlessBackend::ValidateRect(HWND hwnd, const RECT* /*rc*/)
{
    m_impl->windows.Validate(hwnd);
}

bool HeadlessBackend::GetUpdateState(HWND hwnd, bool* erase)
{
    return m_impl->windows.GetUpdateState(hwnd, erase);
}

void HeadlessBackend::SetCapture(HWND hwnd)
{
    m_impl->windows.SetCapture(hwnd);
}

void HeadlessBackend::ReleaseCapture()
{
    m_impl->windows.ReleaseCapture();
}

HWND HeadlessBackend::GetCapture()
{
    return m_impl->windows.GetCapture();
}

void HeadlessBackend::SetFocus(HWND hwnd)
{
    m_impl->windows.SetFocus(hwnd);
}

HWND HeadlessBackend::GetFocus()
{
    return m_impl->windows.GetFocus();
}

LRESULT HeadlessBackend::DefWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    return m_impl->windows.DefWindowProc(hwnd, message, wParam, lParam);
}

// ---------------------------------------------------------------------------
// Message boxes, keys and the display

void HeadlessBackend::SetModalHandler(ModalHandler handler)
{
    m_impl->modalHandler = std::move(handler);
}

int HeadlessBackend::RunModalLoop(HWND hwnd)
{
    m_impl->modalRuns.push_back({hwnd, IDCANCEL, false});
    // A copy: the handler may replace itself, or open a nested dialog.
    ModalHandler handler = m_impl->modalHandler;
    if (handler)
        handler(hwnd);
    const int result = m_impl->modalRuns.back().result;
    m_impl->modalRuns.pop_back();
    return result;
}

void HeadlessBackend::EndModalLoop(HWND hwnd, int result)
{
    for (auto& run : m_impl->modalRuns)
    {
        if (run.hwnd == hwnd && !run.ended)
        {
            run.result = result;
            run.ended = true;
        }
    }
}

int HeadlessBackend::MessageBox(HWND /*owner*/, const CString& text, const CString& caption,
                                UINT type)
{
    const CString line = caption + ": " + text;
    std::fprintf(stderr, "%s\n", line.GetString());
    std::fflush(stderr);
    m_impl->messageLog.push_back(line);
    if (m_impl->messageBoxAnswer != 0)
        return m_impl->messageBoxAnswer;
    const UINT kind = type & MB_TYPEMASK;
    return kind == MB_YESNO || kind == MB_YESNOCANCEL ? IDYES : IDOK;
}

SHORT HeadlessBackend::GetAsyncKeyState(int vk)
{
    return vk >= 0 && vk < 256 && m_impl->keys[vk] ? SHORT(-32768) : SHORT(0);
}

int HeadlessBackend::GetDisplayColorDepth()
{
    return m_impl->colorDepth;
}

bool HeadlessBackend::IsHardwareAccelerated(HWND /*parent*/, CString& info)
{
    EglDisplays& egl = EglDisplays::Instance();
    if (!egl.Available())
    {
        info = "no EGL display";
        return false;
    }
    const headless::EglDisplayInfo& display = egl.Displays().front();
    info = display.renderer;
    return !display.software;
}

// ---------------------------------------------------------------------------
// GL surfaces and contexts

HDC HeadlessBackend::GetDC(HWND hwnd)
{
    Window* w = m_impl->windows.Find(hwnd);
    return w != nullptr ? m_impl->gl.GetDC(w->surface, w->rect.Size()) : nullptr;
}

void HeadlessBackend::ReleaseDC(HWND /*hwnd*/, HDC hdc)
{
    m_impl->gl.ReleaseDC(hdc);
}

int HeadlessBackend::DescribePixelFormat(HDC hdc, int format, UINT size, PIXELFORMATDESCRIPTOR* pfd)
{
    return m_impl->gl.DescribePixelFormat(hdc, format, size, pfd);
}

int HeadlessBackend::ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* pfd)
{
    return m_impl->gl.ChoosePixelFormat(hdc, pfd);
}

bool HeadlessBackend::SetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR* /*pfd*/)
{
    return m_impl->gl.SetPixelFormat(hdc, format);
}

int HeadlessBackend::GetPixelFormat(HDC hdc)
{
    return m_impl->gl.GetPixelFormat(hdc);
}

HGLRC HeadlessBackend::CreateContext(HDC hdc)
{
    return m_impl->gl.CreateContext(hdc);
}

bool HeadlessBackend::MakeCurrent(HDC hdc, HGLRC hrc)
{
    return m_impl->gl.MakeCurrent(hdc, hrc);
}

bool HeadlessBackend::DeleteContext(HGLRC hrc)
{
    return m_impl->gl.DeleteContext(hrc);
}

HGLRC HeadlessBackend::GetCurrentContext()
{
    return m_impl->gl.GetCurrentContext();
}

HDC HeadlessBackend::GetCurrentDC()
{
    return m_impl->gl.GetCurrentDC();
}

bool HeadlessBackend::SwapBuffers(HDC hdc)
{
    return m_impl->gl.SwapBuffers(hdc);
}

void HeadlessBackend::FrontBufferFlushed(HDC hdc)
{
    m_impl->gl.FrontBufferFlushed(hdc);
}

const Image* HeadlessBackend::GetFrontImage(HWND hwnd)
{
    const Window* w = m_impl->windows.Find(hwnd);
    return w != nullptr && w->surface != nullptr ? &w->surface->Front() : nullptr;
}

} // namespace plotvane
