// The EGL displays of the headless backend and their configs, described as
// pixel formats. Shared by every headless backend in the process: EGL
// displays are process-wide, and probing one costs a context.
//
// A GPU comes first, through the EGL device platform; without one, Mesa's
// surfaceless platform. Beside a GPU, Mesa's software device is listed too,
// so that its configs serve as the generic formats, as a Windows display
// lists its GDI formats. A software renderer (llvmpipe, softpipe, swrast)
// gives PFD_GENERIC_FORMAT. PLOTVANE_HEADLESS_NO_EGL set to anything but ""
// or "0" refuses every display.
#pragma once

#include <plotvane/platform/WinTypes.h>

#include <EGL/egl.h>

#include <cstddef>
#include <string>
#include <vector>

namespace plotvane::headless
{

struct EglDisplayInfo
{
    EGLDisplay display = EGL_NO_DISPLAY;
    bool software = false;
    std::string renderer;
};

// A pixel format: a config of one of the displays.
struct EglFormat
{
    size_t display = 0; // index into EglDisplays::Displays()
    EGLConfig config = nullptr;
};

class EglDisplays
{
public:
    static EglDisplays& Instance();

    EglDisplays(const EglDisplays&) = delete;
    EglDisplays& operator=(const EglDisplays&) = delete;

    // Whether a display is usable; opens the displays at the first call.
    bool Available();
    // The first display is the one windows draw with by default.
    const std::vector<EglDisplayInfo>& Displays() const { return m_displays; }
    // Format n (from 1) is Formats()[n - 1], described by Descriptors()[n - 1].
    const std::vector<EglFormat>& Formats() const { return m_formats; }
    const std::vector<PIXELFORMATDESCRIPTOR>& Descriptors() const { return m_descriptors; }
    // Null for a number out of range.
    const EglFormat* Format(int number) const;
    EGLDisplay DisplayOf(const EglFormat& format) const
    {
        return m_displays[format.display].display;
    }

private:
    EglDisplays() = default;

    bool Initialise();
    void OpenDisplays();
    bool AddDisplay(EGLDisplay display);

    bool m_tried = false;
    std::vector<EglDisplayInfo> m_displays;
    std::vector<EglFormat> m_formats;
    std::vector<PIXELFORMATDESCRIPTOR> m_descriptors;
};

} // namespace plotvane::headless
