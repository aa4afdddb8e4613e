// The GL surface of a headless window, double buffered by copy: an EGL
// pbuffer of the client size is the back buffer, and the surface keeps a
// front image beside it. A swap copies the pbuffer into the front image and
// leaves the pbuffer as it was. A pbuffer has one colour buffer, which
// GL_FRONT and GL_BACK both name, so that between frames it holds what the
// front image shows: drawing into GL_FRONT there (XOR rubber bands) acts on
// the shown frame, and a front-buffer flush copies the result over too.
#pragma once

#include <plotvane/platform/Image.h>

#include <EGL/egl.h>

namespace plotvane::headless
{

class Surface
{
public:
    // A front image of that size; the pbuffer comes with the pixel format.
    Surface(int width, int height);
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    ~Surface();

    // 0 until a pixel format is set.
    int Format() const { return m_format; }
    EGLDisplay Display() const { return m_display; }
    EGLSurface Pbuffer() const { return m_pbuffer; }
    const Image& Front() const { return m_front; }

    // Creates the pbuffer in the given format of EglDisplays. A surface's
    // format is set once: a later call answers whether it asks for the same.
    bool SetFormat(int format);
    // Whether the pbuffer is the current draw surface of the thread.
    bool IsCurrent() const;
    // A new front image, blank, and a pbuffer of the new size; a current
    // pbuffer is replaced in the current binding.
    void Resize(int width, int height);
    // Copies the pbuffer into the front image. Its pixels can only be read
    // through a context current on it: false, and nothing copied, otherwise.
    bool CopyToFront();

private:
    int m_format = 0;
    EGLDisplay m_display = EGL_NO_DISPLAY;
    EGLSurface m_pbuffer = EGL_NO_SURFACE;
    Image m_front;
};

} // namespace plotvane::headless
