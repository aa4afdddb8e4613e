// The wx backend's device contexts, pixel formats, GL contexts and frames:
// a GL window's record is its device context.
#include <plotvane/platform/wx/WxBackend.h>

#include <plotvane/platform/PixelFormats.h>
#include <plotvane/platform/wx/WxBackendImpl.h>

#include <GL/gl.h>

// GTK's realisation of a widget, declared here so that building needs no GTK
// development files: wx links GTK 3 already.
extern "C" {
int gtk_widget_get_realized(GtkWidget* widget);
void gtk_widget_realize(GtkWidget* widget);
}

namespace plotvane
{

// ---------------------------------------------------------------------------
// Device and rendering contexts: a GL window's record is its device context.

HDC WxBackend::GetDC(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    return r != nullptr && r->canvas != nullptr ? reinterpret_cast<HDC>(r) : nullptr;
}

void WxBackend::ReleaseDC(HWND /*hwnd*/, HDC /*hdc*/) {}

int WxBackend::DescribePixelFormat(HDC hdc, int format, UINT size, PIXELFORMATDESCRIPTOR* pfd)
{
    if (m_impl->Find(reinterpret_cast<HWND>(hdc)) == nullptr)
        return 0;
    const auto& formats = wx::GlxFormats::Instance().Descriptors();
    const int count = int(formats.size());
    if (format < 1 || format > count)
        return 0;
    if (pfd != nullptr && size >= sizeof(PIXELFORMATDESCRIPTOR))
        *pfd = formats[size_t(format - 1)];
    return count;
}

int WxBackend::ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* pfd)
{
    if (pfd == nullptr || m_impl->Find(reinterpret_cast<HWND>(hdc)) == nullptr)
        return 0;
    return ChooseNearestPixelFormat(wx::GlxFormats::Instance().Descriptors(), *pfd);
}

bool WxBackend::SetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR* /*pfd*/)
{
    WindowRecord* r = m_impl->Find(reinterpret_cast<HWND>(hdc));
    const int count = int(wx::GlxFormats::Instance().Descriptors().size());
    // As on Windows, a window's format is set once.
    if (r == nullptr || format < 1 || format > count || r->pixelFormat != 0)
        return false;
    r->pixelFormat = format;
    return true;
}

int WxBackend::GetPixelFormat(HDC hdc)
{
    WindowRecord* r = m_impl->Find(reinterpret_cast<HWND>(hdc));
    return r != nullptr ? r->pixelFormat : 0;
}

HGLRC WxBackend::CreateContext(HDC hdc)
{
    WindowRecord* r = m_impl->Find(reinterpret_cast<HWND>(hdc));
    if (r == nullptr || r->canvas == nullptr || r->pixelFormat == 0)
        return nullptr;
    auto* ctx = new wxGLContext(r->canvas);
    if (!ctx->IsOK())
    {
        delete ctx;
        return nullptr;
    }
    return reinterpret_cast<HGLRC>(ctx);
}

bool WxBackend::MakeCurrent(HDC hdc, HGLRC hrc)
{
    if (hdc == nullptr || hrc == nullptr)
    {
        wx::ReleaseCurrentContext();
        m_impl->currentDC = nullptr;
        m_impl->currentRC = nullptr;
        return true;
    }
    WindowRecord* r = m_impl->Find(reinterpret_cast<HWND>(hdc));
    if (r == nullptr || r->canvas == nullptr)
        return false;
    // GLX needs the X window, which GTK makes when the widget is realised;
    // a window not yet shown is realised here (unmapped) so that the
    // context can be made current at creation, as on Windows.
    GtkWidget* widget = r->canvas->m_wxwindow != nullptr
                            ? r->canvas->m_wxwindow
                            : static_cast<GtkWidget*>(r->canvas->GetHandle());
    if (widget != nullptr && !gtk_widget_get_realized(widget))
        gtk_widget_realize(widget);
    if (r->canvas->GetXWindow() == 0)
        return false;
    if (!r->canvas->SetCurrent(*reinterpret_cast<wxGLContext*>(hrc)))
        return false;
    m_impl->currentDC = hdc;
    m_impl->currentRC = hrc;
    return true;
}

bool WxBackend::DeleteContext(HGLRC hrc)
{
    if (hrc == nullptr)
        return false;
    if (m_impl->currentRC == hrc)
        MakeCurrent(nullptr, nullptr);
    delete reinterpret_cast<wxGLContext*>(hrc);
    return true;
}

HGLRC WxBackend::GetCurrentContext()
{
    return m_impl->currentRC;
}

HDC WxBackend::GetCurrentDC()
{
    return m_impl->currentDC;
}

bool WxBackend::SwapBuffers(HDC hdc)
{
    WindowRecord* r = m_impl->Find(reinterpret_cast<HWND>(hdc));
    if (r == nullptr || r->canvas == nullptr)
        return false;
    // The frame as drawn, before the swap leaves the back buffer undefined.
    if (m_impl->currentDC == hdc)
    {
        const wxSize s = r->canvas->GetClientSize();
        wx::ReadFrame(GL_BACK, s.x, s.y, r->front);
    }
    return r->canvas->SwapBuffers();
}

void WxBackend::FrontBufferFlushed(HDC hdc)
{
    WindowRecord* r = m_impl->Find(reinterpret_cast<HWND>(hdc));
    if (r == nullptr || r->canvas == nullptr || m_impl->currentDC != hdc)
        return;
    const wxSize s = r->canvas->GetClientSize();
    wx::ReadFrame(GL_FRONT, s.x, s.y, r->front);
}

const Image* WxBackend::GetFrontImage(HWND hwnd)
{
    WindowRecord* r = m_impl->Find(hwnd);
    return r != nullptr && r->canvas != nullptr && !r->front.IsEmpty() ? &r->front : nullptr;
}

} // namespace plotvane
