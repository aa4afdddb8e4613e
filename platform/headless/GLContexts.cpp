#include <plotvane/platform/headless/GLContexts.h>

#include <plotvane/platform/PixelFormats.h>
#include <plotvane/platform/headless/EglDisplays.h>
#include <plotvane/platform/headless/Surface.h>

#include <algorithm>
#include <cstring>

namespace plotvane::headless
{

GLContexts::GLContexts(HandleCounter& handles) : m_handles(handles) {}

GLContexts::~GLContexts()
{
    for (auto& entry : m_contexts)
    {
        if (eglGetCurrentContext() == entry.second.context)
            eglMakeCurrent(entry.second.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(entry.second.display, entry.second.context);
    }
}

Surface* GLContexts::FindSurface(HDC hdc)
{
    auto it = m_dcs.find(IdOf(hdc));
    return it != m_dcs.end() ? it->second.get() : nullptr;
}

GLContexts::Context* GLContexts::FindContext(HGLRC hrc)
{
    auto it = m_contexts.find(IdOf(hrc));
    return it != m_contexts.end() ? &it->second : nullptr;
}

// ---------------------------------------------------------------------------
// Device contexts and pixel formats

HDC GLContexts::GetDC(std::shared_ptr<Surface>& surface, CSize size)
{
    if (!EglDisplays::Instance().Available())
        return nullptr;
    if (surface == nullptr)
        surface = std::make_shared<Surface>(size.cx, size.cy);
    const HDC hdc = MakeHandle<HDC>(m_handles.Next());
    m_dcs[IdOf(hdc)] = surface;
    return hdc;
}

void GLContexts::ReleaseDC(HDC hdc)
{
    m_dcs.erase(IdOf(hdc));
}

int GLContexts::DescribePixelFormat(HDC hdc, int format, UINT size, PIXELFORMATDESCRIPTOR* pfd)
{
    EglDisplays& egl = EglDisplays::Instance();
    if (FindSurface(hdc) == nullptr || !egl.Available())
        return 0;
    if (egl.Format(format) == nullptr)
        return 0;
    if (pfd != nullptr)
        std::memcpy(pfd, &egl.Descriptors()[size_t(format) - 1],
                    std::min<size_t>(size, sizeof(PIXELFORMATDESCRIPTOR)));
    return int(egl.Formats().size());
}

int GLContexts::ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* wanted)
{
    EglDisplays& egl = EglDisplays::Instance();
    if (FindSurface(hdc) == nullptr || !egl.Available() || wanted == nullptr)
        return 0;
    return ChooseNearestPixelFormat(egl.Descriptors(), *wanted);
}

bool GLContexts::SetPixelFormat(HDC hdc, int format)
{
    Surface* surface = FindSurface(hdc);
    EglDisplays& egl = EglDisplays::Instance();
    const EglFormat* info = egl.Available() ? egl.Format(format) : nullptr;
    return surface != nullptr && info != nullptr && surface->SetFormat(format);
}

int GLContexts::GetPixelFormat(HDC hdc)
{
    const Surface* surface = FindSurface(hdc);
    return surface != nullptr ? surface->Format() : 0;
}

// ---------------------------------------------------------------------------
// Rendering contexts

HGLRC GLContexts::CreateContext(HDC hdc)
{
    const Surface* surface = FindSurface(hdc);
    const EglFormat* info =
        surface != nullptr ? EglDisplays::Instance().Format(surface->Format()) : nullptr;
    if (info == nullptr || !eglBindAPI(EGL_OPENGL_API))
        return nullptr;
    // No attributes: a compatibility context with the fixed-function pipeline.
    EGLContext context =
        eglCreateContext(surface->Display(), info->config, EGL_NO_CONTEXT, nullptr);
    if (context == EGL_NO_CONTEXT)
        return nullptr;
    const HGLRC hrc = MakeHandle<HGLRC>(m_handles.Next());
    m_contexts[IdOf(hrc)] = Context{surface->Display(), context};
    return hrc;
}

bool GLContexts::MakeCurrent(HDC hdc, HGLRC hrc)
{
    if (hdc == nullptr && hrc == nullptr)
    {
        if (eglGetCurrentContext() != EGL_NO_CONTEXT)
            eglMakeCurrent(eglGetCurrentDisplay(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        m_currentDC = nullptr;
        m_currentRC = nullptr;
        return true;
    }
    const Surface* surface = FindSurface(hdc);
    const Context* context = FindContext(hrc);
    if (surface == nullptr || context == nullptr || surface->Pbuffer() == EGL_NO_SURFACE ||
        surface->Display() != context->display)
        return false;
    // Every drawing operation makes its context current: keep that cheap.
    const bool already = eglGetCurrentContext() == context->context && surface->IsCurrent() &&
                         eglGetCurrentSurface(EGL_READ) == surface->Pbuffer();
    if (!already && !eglMakeCurrent(surface->Display(), surface->Pbuffer(), surface->Pbuffer(),
                                    context->context))
        return false;
    m_currentDC = hdc;
    m_currentRC = hrc;
    return true;
}

bool GLContexts::DeleteContext(HGLRC hrc)
{
    const Context* context = FindContext(hrc);
    if (context == nullptr)
        return false;
    if (eglGetCurrentContext() == context->context)
    {
        eglMakeCurrent(context->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        m_currentDC = nullptr;
        m_currentRC = nullptr;
    }
    const bool ok = eglDestroyContext(context->display, context->context) == EGL_TRUE;
    m_contexts.erase(IdOf(hrc));
    return ok;
}

HGLRC GLContexts::GetCurrentContext()
{
    const Context* context = FindContext(m_currentRC);
    return context != nullptr && eglGetCurrentContext() == context->context ? m_currentRC : nullptr;
}

HDC GLContexts::GetCurrentDC()
{
    return GetCurrentContext() != nullptr ? m_currentDC : nullptr;
}

// ---------------------------------------------------------------------------
// Swaps

bool GLContexts::SwapBuffers(HDC hdc)
{
    Surface* surface = FindSurface(hdc);
    return surface != nullptr && surface->CopyToFront();
}

void GLContexts::FrontBufferFlushed(HDC hdc)
{
    if (Surface* surface = FindSurface(hdc))
        surface->CopyToFront();
}

} // namespace plotvane::headless
