#include <plotvane/platform/headless/EglDisplays.h>

#include <EGL/eglext.h>
#include <GL/gl.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>

namespace plotvane::headless
{

namespace
{

bool HasToken(const char* list, const char* token)
{
    if (list == nullptr)
        return false;
    const size_t n = std::strlen(token);
    for (const char* p = std::strstr(list, token); p != nullptr; p = std::strstr(p + n, token))
    {
        const bool startOk = p == list || p[-1] == ' ';
        const bool endOk = p[n] == '\0' || p[n] == ' ';
        if (startOk && endOk)
            return true;
    }
    return false;
}

bool IsSoftwareRenderer(const std::string& renderer)
{
    std::string lower(renderer);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    for (const char* name : {"llvmpipe", "softpipe", "swrast", "software"})
    {
        if (lower.find(name) != std::string::npos)
            return true;
    }
    return false;
}

bool EglRefusedByEnvironment()
{
    const char* value = std::getenv("PLOTVANE_HEADLESS_NO_EGL");
    return value != nullptr && *value != '\0' && std::strcmp(value, "0") != 0;
}

// The current EGL binding of the thread, to be put back after a probe.
struct SavedCurrent
{
    EGLDisplay display = eglGetCurrentDisplay();
    EGLContext context = eglGetCurrentContext();
    EGLSurface draw = eglGetCurrentSurface(EGL_DRAW);
    EGLSurface read = eglGetCurrentSurface(EGL_READ);

    void Restore(EGLDisplay fallback) const
    {
        if (context != EGL_NO_CONTEXT)
            eglMakeCurrent(display, draw, read, context);
        else
            eglMakeCurrent(fallback, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
    }
};

std::vector<EGLDeviceEXT> QueryDevices(const char* clientExtensions)
{
    std::vector<EGLDeviceEXT> devices;
    auto queryDevices =
        reinterpret_cast<PFNEGLQUERYDEVICESEXTPROC>(eglGetProcAddress("eglQueryDevicesEXT"));
    if (queryDevices == nullptr || !(HasToken(clientExtensions, "EGL_EXT_device_enumeration") ||
                                     HasToken(clientExtensions, "EGL_EXT_device_base")))
        return devices;
    EGLint count = 0;
    if (!queryDevices(0, nullptr, &count) || count <= 0)
        return devices;
    devices.resize(size_t(count));
    if (!queryDevices(count, devices.data(), &count))
        count = 0;
    devices.resize(size_t(std::max(count, 0)));
    return devices;
}

EGLint Attrib(EGLDisplay display, EGLConfig config, EGLint attribute, EGLint fallback = 0)
{
    EGLint value = fallback;
    if (!eglGetConfigAttrib(display, config, attribute, &value))
    {
        eglGetError(); // an attribute the display does not know
        value = fallback;
    }
    return value;
}

// Window-like configs: OpenGL into a pbuffer, fixed-point RGB colour.
std::vector<EGLConfig> UsableConfigs(EGLDisplay display)
{
    EGLint count = 0;
    if (!eglGetConfigs(display, nullptr, 0, &count) || count <= 0)
        return {};
    std::vector<EGLConfig> all(static_cast<size_t>(count));
    eglGetConfigs(display, all.data(), count, &count);
    all.resize(size_t(std::max(count, 0)));

    const bool floatFormats =
        HasToken(eglQueryString(display, EGL_EXTENSIONS), "EGL_EXT_pixel_format_float");
    std::vector<std::pair<EGLint, EGLConfig>> usable;
    for (EGLConfig config : all)
    {
        if (!(Attrib(display, config, EGL_SURFACE_TYPE) & EGL_PBUFFER_BIT) ||
            !(Attrib(display, config, EGL_RENDERABLE_TYPE) & EGL_OPENGL_BIT) ||
            Attrib(display, config, EGL_COLOR_BUFFER_TYPE, EGL_RGB_BUFFER) != EGL_RGB_BUFFER ||
            Attrib(display, config, EGL_RED_SIZE) <= 0)
            continue;
        if (floatFormats &&
            Attrib(display, config, EGL_COLOR_COMPONENT_TYPE_EXT,
                   EGL_COLOR_COMPONENT_TYPE_FIXED_EXT) != EGL_COLOR_COMPONENT_TYPE_FIXED_EXT)
            continue;
        usable.emplace_back(Attrib(display, config, EGL_CONFIG_ID), config);
    }
    // Format numbers follow the config ids, so that they stay stable.
    std::stable_sort(usable.begin(), usable.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<EGLConfig> configs;
    for (const auto& entry : usable)
        configs.push_back(entry.second);
    return configs;
}

std::string ProbeRenderer(EGLDisplay display, EGLConfig config)
{
    const SavedCurrent saved;
    const EGLint size[] = {EGL_WIDTH, 1, EGL_HEIGHT, 1, EGL_NONE};
    EGLSurface surface = eglCreatePbufferSurface(display, config, size);
    EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, nullptr);
    std::string renderer;
    if (surface != EGL_NO_SURFACE && context != EGL_NO_CONTEXT &&
        eglMakeCurrent(display, surface, surface, context))
    {
        if (const GLubyte* name = glGetString(GL_RENDERER))
            renderer = reinterpret_cast<const char*>(name);
    }
    saved.Restore(display);
    if (context != EGL_NO_CONTEXT)
        eglDestroyContext(display, context);
    if (surface != EGL_NO_SURFACE)
        eglDestroySurface(display, surface);
    return renderer;
}

PIXELFORMATDESCRIPTOR Describe(EGLDisplay display, EGLConfig config, bool software)
{
    PIXELFORMATDESCRIPTOR pfd{};
    pfd.nSize = sizeof(PIXELFORMATDESCRIPTOR);
    pfd.nVersion = 1;
    // The window keeps a front image beside the pbuffer, and a swap
    // copies: double buffered with PFD_SWAP_COPY.
    pfd.dwFlags = PFD_DRAW_TO_WINDOW | PFD_SUPPORT_OPENGL | PFD_DOUBLEBUFFER | PFD_SWAP_COPY |
                  (software ? PFD_GENERIC_FORMAT : 0);
    pfd.iPixelType = PFD_TYPE_RGBA;
    const EGLint red = Attrib(display, config, EGL_RED_SIZE);
    const EGLint green = Attrib(display, config, EGL_GREEN_SIZE);
    const EGLint blue = Attrib(display, config, EGL_BLUE_SIZE);
    const EGLint alpha = Attrib(display, config, EGL_ALPHA_SIZE);
    const EGLint buffer = Attrib(display, config, EGL_BUFFER_SIZE, red + green + blue + alpha);
    pfd.cColorBits = BYTE(std::min(buffer, 255));
    pfd.cRedBits = BYTE(red);
    pfd.cGreenBits = BYTE(green);
    pfd.cBlueBits = BYTE(blue);
    pfd.cAlphaBits = BYTE(alpha);
    pfd.cBlueShift = 0;
    pfd.cGreenShift = BYTE(blue);
    pfd.cRedShift = BYTE(blue + green);
    pfd.cAlphaShift = BYTE(alpha > 0 ? red + green + blue : 0);
    pfd.cDepthBits = BYTE(Attrib(display, config, EGL_DEPTH_SIZE));
    pfd.cStencilBits = BYTE(Attrib(display, config, EGL_STENCIL_SIZE));
    pfd.iLayerType = PFD_MAIN_PLANE;
    return pfd;
}

} // namespace

EglDisplays& EglDisplays::Instance()
{
    static EglDisplays displays;
    return displays;
}

bool EglDisplays::Available()
{
    return !EglRefusedByEnvironment() && Initialise();
}

const EglFormat* EglDisplays::Format(int number) const
{
    return number >= 1 && size_t(number) <= m_formats.size() ? &m_formats[size_t(number) - 1]
                                                             : nullptr;
}

bool EglDisplays::Initialise()
{
    if (!m_tried)
    {
        m_tried = true;
        OpenDisplays();
    }
    return !m_formats.empty();
}

void EglDisplays::OpenDisplays()
{
    auto getPlatformDisplay = reinterpret_cast<PFNEGLGETPLATFORMDISPLAYEXTPROC>(
        eglGetProcAddress("eglGetPlatformDisplayEXT"));
    const char* clientExtensions = eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS);
    if (getPlatformDisplay == nullptr || clientExtensions == nullptr)
        return;
    const std::vector<EGLDeviceEXT> devices = QueryDevices(clientExtensions);
    auto queryDeviceString = reinterpret_cast<PFNEGLQUERYDEVICESTRINGEXTPROC>(
        eglGetProcAddress("eglQueryDeviceStringEXT"));
    auto isSoftwareDevice = [&](EGLDeviceEXT device)
    {
        return queryDeviceString != nullptr &&
               HasToken(queryDeviceString(device, EGL_EXTENSIONS), "EGL_MESA_device_software");
    };
    const bool devicePlatform = HasToken(clientExtensions, "EGL_EXT_platform_device");

    // A GPU first, through the device platform.
    if (devicePlatform)
    {
        for (EGLDeviceEXT device : devices)
        {
            if (!isSoftwareDevice(device) &&
                AddDisplay(getPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, device, nullptr)))
                break;
        }
    }
    if (m_displays.empty() && HasToken(clientExtensions, "EGL_MESA_platform_surfaceless"))
        AddDisplay(getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
    if (m_displays.empty() || m_displays.front().software || !devicePlatform)
        return;
    // Beside a hardware display, the software renderer's formats are the
    // generic ones, as a Windows display lists its GDI formats.
    for (EGLDeviceEXT device : devices)
    {
        if (isSoftwareDevice(device) &&
            AddDisplay(getPlatformDisplay(EGL_PLATFORM_DEVICE_EXT, device, nullptr)))
            break;
    }
}

bool EglDisplays::AddDisplay(EGLDisplay display)
{
    EGLint major = 0;
    EGLint minor = 0;
    if (display == EGL_NO_DISPLAY || !eglInitialize(display, &major, &minor))
        return false;
    if (!eglBindAPI(EGL_OPENGL_API))
        return false;
    const std::vector<EGLConfig> configs = UsableConfigs(display);
    if (configs.empty())
        return false;
    EglDisplayInfo info;
    info.display = display;
    info.renderer = ProbeRenderer(display, configs.front());
    if (info.renderer.empty())
        return false;
    info.software = IsSoftwareRenderer(info.renderer);
    const size_t index = m_displays.size();
    m_displays.push_back(info);
    for (EGLConfig config : configs)
    {
        m_formats.push_back(EglFormat{index, config});
        m_descriptors.push_back(Describe(display, config, info.software));
    }
    return true;
}

} // namespace plotvane::headless
