// The GL side of the headless backend: device contexts onto window
// surfaces, pixel formats (the configs of EglDisplays), EGL rendering
// contexts and the thread's current pair, and the swaps that fill the front
// images.
#pragma once

#include <plotvane/platform/WinTypes.h>
#include <plotvane/platform/headless/Handles.h>

#include <EGL/egl.h>

#include <cstdint>
#include <map>
#include <memory>

namespace plotvane::headless
{

class Surface;

class GLContexts
{
public:
    explicit GLContexts(HandleCounter& handles);
    GLContexts(const GLContexts&) = delete;
    GLContexts& operator=(const GLContexts&) = delete;
    // Destroys the rendering contexts still alive, releasing a current one.
    ~GLContexts();

    // A device context onto a window's surface, which is made with a front
    // image of size at the first call. Null when no EGL display is usable.
    HDC GetDC(std::shared_ptr<Surface>& surface, CSize size);
    void ReleaseDC(HDC hdc);

    int DescribePixelFormat(HDC hdc, int format, UINT size, PIXELFORMATDESCRIPTOR* pfd);
    int ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* pfd);
    bool SetPixelFormat(HDC hdc, int format);
    int GetPixelFormat(HDC hdc);

    HGLRC CreateContext(HDC hdc);
    bool MakeCurrent(HDC hdc, HGLRC hrc);
    bool DeleteContext(HGLRC hrc);
    HGLRC GetCurrentContext();
    HDC GetCurrentDC();
    bool SwapBuffers(HDC hdc);
    void FrontBufferFlushed(HDC hdc);

private:
    struct Context
    {
        EGLDisplay display = EGL_NO_DISPLAY;
        EGLContext context = EGL_NO_CONTEXT;
    };

    Surface* FindSurface(HDC hdc);
    Context* FindContext(HGLRC hrc);

    HandleCounter& m_handles;
    std::map<std::uintptr_t, std::shared_ptr<Surface>> m_dcs;
    std::map<std::uintptr_t, Context> m_contexts;
    HDC m_currentDC = nullptr;
    HGLRC m_currentRC = nullptr;
};

} // namespace plotvane::headless
