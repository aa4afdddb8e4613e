#include <plotvane/platform/wx/WxGL.h>

#include <wx/utils.h>

#include <GL/gl.h>
#include <GL/glx.h>

#include <cstring>

namespace plotvane::wx
{

namespace
{

int Attrib(Display* dpy, GLXFBConfig config, int name)
{
    int value = 0;
    glXGetFBConfigAttrib(dpy, config, name, &value);
    return value;
}

PIXELFORMATDESCRIPTOR Describe(Display* dpy, GLXFBConfig c, bool software)
{
    PIXELFORMATDESCRIPTOR pfd{};
    pfd.nSize = sizeof(PIXELFORMATDESCRIPTOR);
    pfd.nVersion = 1;
    pfd.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | (software ? PFD_GENERIC_FORMAT : 0);
    if (Attrib(dpy, c, GLX_DOUBLEBUFFER))
        pfd.dwFlags |= PFD_DOUBLEBUFFER;
    if (Attrib(dpy, c, GLX_STEREO))
        pfd.dwFlags |= PFD_STEREO;
    pfd.iPixelType = PFD_TYPE_RGBA;
    const int red = Attrib(dpy, c, GLX_RED_SIZE);
    const int green = Attrib(dpy, c, GLX_GREEN_SIZE);
    const int blue = Attrib(dpy, c, GLX_BLUE_SIZE);
    const int alpha = Attrib(dpy, c, GLX_ALPHA_SIZE);
    const int buffer = Attrib(dpy, c, GLX_BUFFER_SIZE);
    pfd.cColorBits = BYTE(buffer > 255 ? 255 : buffer);
    pfd.cRedBits = BYTE(red);
    pfd.cGreenBits = BYTE(green);
    pfd.cBlueBits = BYTE(blue);
    pfd.cAlphaBits = BYTE(alpha);
    pfd.cGreenShift = BYTE(blue);
    pfd.cRedShift = BYTE(blue + green);
    pfd.cAlphaShift = BYTE(alpha > 0 ? red + green + blue : 0);
    const int accum = Attrib(dpy, c, GLX_ACCUM_RED_SIZE) + Attrib(dpy, c, GLX_ACCUM_GREEN_SIZE) +
                      Attrib(dpy, c, GLX_ACCUM_BLUE_SIZE) + Attrib(dpy, c, GLX_ACCUM_ALPHA_SIZE);
    pfd.cAccumBits = BYTE(accum > 255 ? 255 : accum);
    pfd.cDepthBits = BYTE(Attrib(dpy, c, GLX_DEPTH_SIZE));
    pfd.cStencilBits = BYTE(Attrib(dpy, c, GLX_STENCIL_SIZE));
    pfd.cAuxBuffers = BYTE(Attrib(dpy, c, GLX_AUX_BUFFERS));
    pfd.iLayerType = PFD_MAIN_PLANE;
    return pfd;
}

// The renderer's name, from a context made current on a tiny pbuffer.
CString ProbeRenderer(Display* dpy, int screen)
{
    const int want[] = {GLX_DRAWABLE_TYPE, GLX_PBUFFER_BIT, GLX_RENDER_TYPE, GLX_RGBA_BIT, None};
    int n = 0;
    GLXFBConfig* configs = glXChooseFBConfig(dpy, screen, want, &n);
    if (configs == nullptr || n == 0)
        return CString();
    CString name;
    const int pbAttrs[] = {GLX_PBUFFER_WIDTH, 1, GLX_PBUFFER_HEIGHT, 1, None};
    GLXPbuffer pb = glXCreatePbuffer(dpy, configs[0], pbAttrs);
    GLXContext ctx = glXCreateNewContext(dpy, configs[0], GLX_RGBA_TYPE, nullptr, True);
    GLXContext previous = glXGetCurrentContext();
    GLXDrawable prevDraw = glXGetCurrentDrawable();
    if (ctx != nullptr && pb != 0 && glXMakeContextCurrent(dpy, pb, pb, ctx))
    {
        const char* r = reinterpret_cast<const char*>(glGetString(GL_RENDERER));
        name = r != nullptr ? r : "";
        glXMakeContextCurrent(dpy, prevDraw, prevDraw, previous);
    }
    if (ctx != nullptr)
        glXDestroyContext(dpy, ctx);
    if (pb != 0)
        glXDestroyPbuffer(dpy, pb);
    XFree(configs);
    return name;
}

} // namespace

GlxFormats& GlxFormats::Instance()
{
    static GlxFormats formats;
    return formats;
}

GlxFormats::GlxFormats()
{
    Display* dpy = wxGetX11Display();
    if (dpy == nullptr)
        return;
    const int screen = DefaultScreen(dpy);
    m_renderer = ProbeRenderer(dpy, screen);
    const std::string r = m_renderer.GetString();
    m_software = r.empty() || r.find("llvmpipe") != std::string::npos ||
                 r.find("softpipe") != std::string::npos || r.find("Software") != std::string::npos;
    int n = 0;
    GLXFBConfig* configs = glXGetFBConfigs(dpy, screen, &n);
    for (int i = 0; i < n; ++i)
    {
        if (!(Attrib(dpy, configs[i], GLX_DRAWABLE_TYPE) & GLX_WINDOW_BIT) ||
            !(Attrib(dpy, configs[i], GLX_RENDER_TYPE) & GLX_RGBA_BIT) ||
            Attrib(dpy, configs[i], GLX_VISUAL_ID) == 0)
            continue;
        m_descriptors.push_back(Describe(dpy, configs[i], m_software));
    }
    if (configs != nullptr)
        XFree(configs);
}

void ReadFrame(unsigned buffer, int width, int height, Image& image)
{
    if (width <= 0 || height <= 0)
        return;
    image.Reset(width, height);
    std::vector<std::uint8_t> rows(size_t(width) * size_t(height) * 4);
    GLint previous = 0;
    glGetIntegerv(GL_READ_BUFFER, &previous);
    glReadBuffer(buffer);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rows.data());
    glReadBuffer(GLenum(previous));
    const size_t stride = size_t(width) * 4;
    for (int y = 0; y < height; ++y)
        std::memcpy(&image.rgba[size_t(y) * stride], &rows[size_t(height - 1 - y) * stride], stride);
}

void ReleaseCurrentContext()
{
    Display* dpy = wxGetX11Display();
    if (dpy != nullptr && glXGetCurrentContext() != nullptr)
        glXMakeCurrent(dpy, None, nullptr);
}

} // namespace plotvane::wx
