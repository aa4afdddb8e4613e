#include <plotvane/platform/headless/Surface.h>

#include <plotvane/platform/headless/EglDisplays.h>

#include <GL/gl.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

namespace plotvane::headless
{

namespace
{

EGLSurface CreatePbuffer(const EglFormat& format, EGLDisplay display, int width, int height)
{
    const EGLint size[] = {EGL_WIDTH, std::max(width, 1), EGL_HEIGHT, std::max(height, 1),
                           EGL_NONE};
    return eglCreatePbufferSurface(display, format.config, size);
}

// Copies the colour buffer of the current draw surface into image, top row
// first, whatever pixel-store and transfer state the caller has set.
void ReadColorBuffer(Image& image)
{
    if (image.IsEmpty())
        return;
    const int w = image.width;
    const int h = image.height;
    std::vector<std::uint8_t> rows(size_t(w) * size_t(h) * 4);
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPushAttrib(GL_PIXEL_MODE_BIT);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glPixelStorei(GL_PACK_ROW_LENGTH, 0);
    glPixelStorei(GL_PACK_SKIP_ROWS, 0);
    glPixelStorei(GL_PACK_SKIP_PIXELS, 0);
    glPixelStorei(GL_PACK_SWAP_BYTES, GL_FALSE);
    glPixelStorei(GL_PACK_LSB_FIRST, GL_FALSE);
    glPixelTransferi(GL_MAP_COLOR, GL_FALSE);
    for (GLenum scale : {GL_RED_SCALE, GL_GREEN_SCALE, GL_BLUE_SCALE, GL_ALPHA_SCALE})
        glPixelTransferf(scale, 1.0f);
    for (GLenum bias : {GL_RED_BIAS, GL_GREEN_BIAS, GL_BLUE_BIAS, GL_ALPHA_BIAS})
        glPixelTransferf(bias, 0.0f);
    glReadPixels(0, 0, w, h, GL_RGBA, GL_UNSIGNED_BYTE, rows.data());
    glPopAttrib();
    glPopClientAttrib();
    const size_t stride = size_t(w) * 4;
    for (int y = 0; y < h; ++y)
        std::memcpy(&image.rgba[size_t(y) * stride], &rows[size_t(h - 1 - y) * stride], stride);
}

} // namespace

Surface::Surface(int width, int height)
{
    m_front.Reset(width, height);
}

Surface::~Surface()
{
    // EGL keeps a surface that is still current until it is released.
    if (m_pbuffer != EGL_NO_SURFACE)
        eglDestroySurface(m_display, m_pbuffer);
}

bool Surface::SetFormat(int format)
{
    const EglDisplays& egl = EglDisplays::Instance();
    const EglFormat* info = egl.Format(format);
    if (info == nullptr)
        return false;
    if (m_format != 0)
        return m_format == format;
    const EGLDisplay display = egl.DisplayOf(*info);
    EGLSurface pbuffer = CreatePbuffer(*info, display, m_front.width, m_front.height);
    if (pbuffer == EGL_NO_SURFACE)
        return false;
    m_format = format;
    m_display = display;
    m_pbuffer = pbuffer;
    return true;
}

bool Surface::IsCurrent() const
{
    return m_pbuffer != EGL_NO_SURFACE && eglGetCurrentSurface(EGL_DRAW) == m_pbuffer;
}

void Surface::Resize(int width, int height)
{
    m_front.Reset(width, height);
    const EglFormat* info = EglDisplays::Instance().Format(m_format);
    if (m_pbuffer == EGL_NO_SURFACE || info == nullptr)
        return;
    EGLSurface resized = CreatePbuffer(*info, m_display, width, height);
    if (resized == EGL_NO_SURFACE)
        return;
    if (IsCurrent())
        eglMakeCurrent(m_display, resized, resized, eglGetCurrentContext());
    eglDestroySurface(m_display, m_pbuffer);
    m_pbuffer = resized;
}

bool Surface::CopyToFront()
{
    if (!IsCurrent())
        return false;
    ReadColorBuffer(m_front);
    return true;
}

} // namespace plotvane::headless
