// GL on the wx backend's X display: the GLX configs as pixel formats, the
// renderer's name, and reading a window's frame back. Internal to the wx
// backend.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/Image.h>
#include <plotvane/platform/WinTypes.h>

#include <vector>

namespace plotvane::wx
{

class GlxFormats
{
public:
    // The configs of the default screen that draw RGBA to a window, in
    // GLX's order, described as PIXELFORMATDESCRIPTOR values. Read once.
    static GlxFormats& Instance();

    const std::vector<PIXELFORMATDESCRIPTOR>& Descriptors() const { return m_descriptors; }
    // Whether the renderer draws in software (llvmpipe, softpipe), and its
    // name; probed once with a throwaway context.
    bool IsSoftware() const { return m_software; }
    const CString& Renderer() const { return m_renderer; }

private:
    GlxFormats();
    std::vector<PIXELFORMATDESCRIPTOR> m_descriptors;
    bool m_software = true;
    CString m_renderer;
};

// The current context's buffer (GL_BACK or GL_FRONT) of width x height
// into image, top row first.
void ReadFrame(unsigned buffer, int width, int height, Image& image);

// Releases the current context of this thread.
void ReleaseCurrentContext();

} // namespace plotvane::wx
