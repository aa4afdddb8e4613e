#include <plotvane/platform/headless/HeadlessBackend.h>

#include <plotvane/platform/Wnd.h>

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <GL/gl.h>

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <string>

namespace plotvane
{

namespace
{

// ---------------------------------------------------------------------------
// EGL displays and their configs, shared by every headless backend in the
// process: EGL displays are process-wide, and probing them costs a context.

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

struct EglDisplayInfo
{
    EGLDisplay display = EGL_NO_DISPLAY;
    bool software = false;
    std::string renderer;
};

struct EglFormat
{
    size_t display = 0;
    EGLConfig config = nullptr;
    PIXELFORMATDESCRIPTOR pfd{};
};

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

class EglSystem
{
public:
    static EglSystem& Instance()
    {
        static EglSystem system;
        return system;
    }

    bool Available() { return !EglRefusedByEnvironment() && Initialise(); }
    const std::vector<EglDisplayInfo>& Displays() const { return m_displays; }
    const std::vector<EglFormat>& Formats() const { return m_formats; }
    const EglFormat* Format(int number) const
    {
        return number >= 1 && size_t(number) <= m_formats.size() ? &m_formats[size_t(number) - 1]
                                                                 : nullptr;
    }

private:
    bool Initialise()
    {
        if (!m_tried)
        {
            m_tried = true;
            OpenDisplays();
        }
        return !m_formats.empty();
    }

    void OpenDisplays()
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
            AddDisplay(
                getPlatformDisplay(EGL_PLATFORM_SURFACELESS_MESA, EGL_DEFAULT_DISPLAY, nullptr));
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

    static std::vector<EGLDeviceEXT> QueryDevices(const char* clientExtensions)
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

    static EGLint Attrib(EGLDisplay display, EGLConfig config, EGLint attribute,
                         EGLint fallback = 0)
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
    static std::vector<EGLConfig> UsableConfigs(EGLDisplay display)
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

    static std::string ProbeRenderer(EGLDisplay display, EGLConfig config)
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

    static PIXELFORMATDESCRIPTOR Describe(EGLDisplay display, EGLConfig config, bool software)
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

    bool AddDisplay(EGLDisplay display)
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
            m_formats.push_back(EglFormat{index, config, Describe(display, config, info.software)});
        return true;
    }

    bool m_tried = false;
    std::vector<EglDisplayInfo> m_displays;
    std::vector<EglFormat> m_formats;
};

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

// The GL surface of a window: the pbuffer (back buffer) once a pixel format
// is set, and the front image. Device contexts share it with the window.
struct Surface
{
    int format = 0;
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLSurface pbuffer = EGL_NO_SURFACE;
    Image front;

    Surface() = default;
    Surface(const Surface&) = delete;
    Surface& operator=(const Surface&) = delete;
    ~Surface()
    {
        // EGL keeps a surface that is still current until it is released.
        if (pbuffer != EGL_NO_SURFACE)
            eglDestroySurface(display, pbuffer);
    }

    bool IsCurrent() const
    {
        return pbuffer != EGL_NO_SURFACE && eglGetCurrentSurface(EGL_DRAW) == pbuffer;
    }

    void Resize(int width, int height)
    {
        front.Reset(width, height);
        const EglFormat* info = EglSystem::Instance().Format(format);
        if (pbuffer == EGL_NO_SURFACE || info == nullptr)
            return;
        EGLSurface resized = CreatePbuffer(*info, display, width, height);
        if (resized == EGL_NO_SURFACE)
            return;
        if (IsCurrent())
            eglMakeCurrent(display, resized, resized, eglGetCurrentContext());
        eglDestroySurface(display, pbuffer);
        pbuffer = resized;
    }
};

struct Window
{
    CWnd* owner = nullptr;
    HWND parent = nullptr;
    std::vector<HWND> children;
    CRect rect; // in the parent's client coordinates
    bool visible = false;
    bool enabled = true;
    CString text;
    bool invalid = false;
    bool erase = false;
    int invalidateCount = 0;
    HeadlessBackend::MessageHandler handler;
    std::shared_ptr<Surface> surface;
};

struct Context
{
    EGLDisplay display = EGL_NO_DISPLAY;
    EGLContext context = EGL_NO_CONTEXT;
};

template <class Handle> Handle MakeHandle(std::uintptr_t id)
{
    return reinterpret_cast<Handle>(id);
}

template <class Handle> std::uintptr_t IdOf(Handle h)
{
    return reinterpret_cast<std::uintptr_t>(h);
}

} // namespace

struct HeadlessBackend::Impl
{
    // One counter for all handles, so that a window handle never passes for
    // a device context or a context.
    std::uintptr_t nextId = 0x100;
    std::map<std::uintptr_t, Window> windows; // creation order: parents first
    std::map<std::uintptr_t, std::shared_ptr<Surface>> dcs;
    std::map<std::uintptr_t, Context> contexts;
    HWND capture = nullptr;
    HWND focus = nullptr;
    HDC currentDC = nullptr;
    HGLRC currentRC = nullptr;
    bool keys[256] = {};
    int colorDepth = 32;
    int messageBoxAnswer = 0;
    std::vector<CString> messageLog;

    std::uintptr_t NewId() { return nextId++; }

    Window* FindWindow(HWND hwnd)
    {
        auto it = windows.find(IdOf(hwnd));
        return it != windows.end() ? &it->second : nullptr;
    }
    const Window* FindWindow(HWND hwnd) const
    {
        auto it = windows.find(IdOf(hwnd));
        return it != windows.end() ? &it->second : nullptr;
    }
    Surface* FindSurface(HDC hdc)
    {
        auto it = dcs.find(IdOf(hdc));
        return it != dcs.end() ? it->second.get() : nullptr;
    }
    Context* FindContext(HGLRC hrc)
    {
        auto it = contexts.find(IdOf(hrc));
        return it != contexts.end() ? &it->second : nullptr;
    }
    CPoint ScreenOrigin(HWND hwnd) const
    {
        CPoint origin;
        for (const Window* w = FindWindow(hwnd); w != nullptr; w = FindWindow(w->parent))
            origin.Offset(w->rect.left, w->rect.top);
        return origin;
    }
    bool IsShown(HWND hwnd) const
    {
        for (const Window* w = FindWindow(hwnd); w != nullptr; w = FindWindow(w->parent))
        {
            if (!w->visible)
                return false;
        }
        return true;
    }
};

HeadlessBackend::HeadlessBackend() : m_impl(std::make_unique<Impl>()) {}

HeadlessBackend::~HeadlessBackend()
{
    for (auto& entry : m_impl->contexts)
    {
        if (eglGetCurrentContext() == entry.second.context)
            eglMakeCurrent(entry.second.display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        eglDestroyContext(entry.second.display, entry.second.context);
    }
}

HeadlessBackend& HeadlessBackend::Default()
{
    static HeadlessBackend backend;
    return backend;
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
    if (Window* w = m_impl->FindWindow(hwnd))
        w->handler = std::move(handler);
}

int HeadlessBackend::GetInvalidateCount(HWND hwnd) const
{
    const Window* w = m_impl->FindWindow(hwnd);
    return w != nullptr ? w->invalidateCount : 0;
}

void HeadlessBackend::PaintPending()
{
    std::vector<HWND> due;
    for (const auto& entry : m_impl->windows)
    {
        const HWND hwnd = MakeHandle<HWND>(entry.first);
        if (entry.second.invalid && m_impl->IsShown(hwnd))
            due.push_back(hwnd);
    }
    // A paint may destroy windows or paint others: look each one up again.
    for (HWND hwnd : due)
    {
        const Window* w = m_impl->FindWindow(hwnd);
        if (w != nullptr && w->invalid && w->owner != nullptr)
            w->owner->SendMessage(WM_PAINT);
    }
}

const Image* HeadlessBackend::GetFrontImage(HWND hwnd) const
{
    const Window* w = m_impl->FindWindow(hwnd);
    return w != nullptr && w->surface != nullptr ? &w->surface->front : nullptr;
}

bool HeadlessBackend::SaveFrontImage(HWND hwnd, const CString& path, bool withAlpha) const
{
    const Image* image = GetFrontImage(hwnd);
    return image != nullptr && WritePng(path, *image, withAlpha);
}

bool HeadlessBackend::IsGLAvailable()
{
    return EglSystem::Instance().Available();
}

CString HeadlessBackend::GetRendererName()
{
    EglSystem& egl = EglSystem::Instance();
    return egl.Available() ? CString(egl.Displays().front().renderer) : CString();
}

// ---------------------------------------------------------------------------
// Windows

HWND HeadlessBackend::CreateNativeWindow(CWnd* owner, const WindowParams& params)
{
    Window* parent = nullptr;
    if (params.parent != nullptr && (parent = m_impl->FindWindow(params.parent)) == nullptr)
        return nullptr;
    const HWND hwnd = MakeHandle<HWND>(m_impl->NewId());
    Window& w = m_impl->windows[IdOf(hwnd)];
    w.owner = owner;
    w.parent = params.parent;
    w.rect = params.rect;
    w.rect.NormalizeRect();
    w.visible = (params.style & WS_VISIBLE) != 0;
    w.enabled = (params.style & WS_DISABLED) == 0;
    w.text = params.text;
    // A new window has everything to paint.
    w.invalid = true;
    w.erase = true;
    if (parent != nullptr)
        parent->children.push_back(hwnd);
    return hwnd;
}

void HeadlessBackend::DestroyNativeWindow(HWND hwnd)
{
    Window* w = m_impl->FindWindow(hwnd);
    if (w == nullptr)
        return;
    const std::vector<HWND> children = w->children;
    for (HWND child : children)
        DestroyNativeWindow(child);
    w = m_impl->FindWindow(hwnd);
    if (Window* parent = m_impl->FindWindow(w->parent))
        parent->children.erase(std::remove(parent->children.begin(), parent->children.end(), hwnd),
                               parent->children.end());
    if (m_impl->capture == hwnd)
        m_impl->capture = nullptr;
    if (m_impl->focus == hwnd)
        m_impl->focus = nullptr;
    m_impl->windows.erase(IdOf(hwnd));
}

CWnd* HeadlessBackend::GetOwner(HWND hwnd)
{
    const Window* w = m_impl->FindWindow(hwnd);
    return w != nullptr ? w->owner : nullptr;
}

HWND HeadlessBackend::GetParentWindow(HWND hwnd)
{
    const Window* w = m_impl->FindWindow(hwnd);
    return w != nullptr ? w->parent : nullptr;
}

std::vector<HWND> HeadlessBackend::GetChildWindows(HWND hwnd)
{
    const Window* w = m_impl->FindWindow(hwnd);
    return w != nullptr ? w->children : std::vector<HWND>();
}

CRect HeadlessBackend::GetClientRect(HWND hwnd)
{
    const Window* w = m_impl->FindWindow(hwnd);
    return w != nullptr ? CRect(0, 0, w->rect.Width(), w->rect.Height()) : CRect();
}

CRect HeadlessBackend::GetWindowRect(HWND hwnd)
{
    const Window* w = m_impl->FindWindow(hwnd);
    if (w == nullptr)
        return CRect();
    return CRect(m_impl->ScreenOrigin(hwnd), w->rect.Size());
}

CPoint HeadlessBackend::ClientToScreen(HWND hwnd, CPoint pt)
{
    return pt + m_impl->ScreenOrigin(hwnd);
}

void HeadlessBackend::MoveNativeWindow(HWND hwnd, const CRect& rc)
{
    Window* w = m_impl->FindWindow(hwnd);
    if (w == nullptr)
        return;
    const CSize oldSize = w->rect.Size();
    w->rect = rc;
    w->rect.NormalizeRect();
    if (w->surface != nullptr && w->rect.Size() != oldSize)
        w->surface->Resize(w->rect.Width(), w->rect.Height());
}

void HeadlessBackend::ShowNativeWindow(HWND hwnd, bool show)
{
    Window* w = m_impl->FindWindow(hwnd);
    if (w == nullptr)
        return;
    if (show && !w->visible)
        w->invalid = w->erase = true;
    w->visible = show;
}

bool HeadlessBackend::IsWindowVisible(HWND hwnd)
{
    return m_impl->FindWindow(hwnd) != nullptr && m_impl->IsShown(hwnd);
}

void HeadlessBackend::EnableNativeWindow(HWND hwnd, bool enable)
{
    if (Window* w = m_impl->FindWindow(hwnd))
        w->enabled = enable;
}

bool HeadlessBackend::IsWindowEnabled(HWND hwnd)
{
    const Window* w = m_impl->FindWindow(hwnd);
    return w != nullptr && w->enabled;
}

void HeadlessBackend::SetWindowText(HWND hwnd, const CString& text)
{
    if (Window* w = m_impl->FindWindow(hwnd))
        w->text = text;
}

CString HeadlessBackend::GetWindowText(HWND hwnd)
{
    const Window* w = m_impl->FindWindow(hwnd);
    return w != nullptr ? w->text : CString();
}

void HeadlessBackend::InvalidateRect(HWND hwnd, const RECT* /*rc*/, bool erase)
{
    Window* w = m_impl->FindWindow(hwnd);
    if (w == nullptr)
        return;
    w->invalid = true;
    w->erase = w->erase || erase;
    ++w->invalidateCount;
}

void HeadlessBackend::ValidateRect(HWND hwnd, const RECT* /*rc*/)
{
    if (Window* w = m_impl->FindWindow(hwnd))
        w->invalid = w->erase = false;
}

bool HeadlessBackend::GetUpdateState(HWND hwnd, bool* erase)
{
    const Window* w = m_impl->FindWindow(hwnd);
    if (erase != nullptr)
        *erase = w != nullptr && w->erase;
    return w != nullptr && w->invalid;
}

void HeadlessBackend::SetCapture(HWND hwnd)
{
    if (m_impl->FindWindow(hwnd) != nullptr)
        m_impl->capture = hwnd;
}

void HeadlessBackend::ReleaseCapture()
{
    m_impl->capture = nullptr;
}

HWND HeadlessBackend::GetCapture()
{
    return m_impl->capture;
}

void HeadlessBackend::SetFocus(HWND hwnd)
{
    if (m_impl->FindWindow(hwnd) != nullptr)
        m_impl->focus = hwnd;
}

HWND HeadlessBackend::GetFocus()
{
    return m_impl->focus;
}

LRESULT HeadlessBackend::DefWindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    const Window* w = m_impl->FindWindow(hwnd);
    if (w != nullptr && w->handler)
    {
        // Copy: the handler may replace itself or destroy the window.
        MessageHandler handler = w->handler;
        return handler(message, wParam, lParam);
    }
    // Nothing to erase without a screen; the background counts as erased.
    return message == WM_ERASEBKGND ? 1 : 0;
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
    EglSystem& egl = EglSystem::Instance();
    if (!egl.Available())
    {
        info = "no EGL display";
        return false;
    }
    const EglDisplayInfo& display = egl.Displays().front();
    info = display.renderer;
    return !display.software;
}

// ---------------------------------------------------------------------------
// GL surfaces and contexts

HDC HeadlessBackend::GetDC(HWND hwnd)
{
    Window* w = m_impl->FindWindow(hwnd);
    if (w == nullptr || !EglSystem::Instance().Available())
        return nullptr;
    if (w->surface == nullptr)
    {
        w->surface = std::make_shared<Surface>();
        w->surface->front.Reset(w->rect.Width(), w->rect.Height());
    }
    const HDC hdc = MakeHandle<HDC>(m_impl->NewId());
    m_impl->dcs[IdOf(hdc)] = w->surface;
    return hdc;
}

void HeadlessBackend::ReleaseDC(HWND /*hwnd*/, HDC hdc)
{
    m_impl->dcs.erase(IdOf(hdc));
}

int HeadlessBackend::DescribePixelFormat(HDC hdc, int format, UINT size, PIXELFORMATDESCRIPTOR* pfd)
{
    EglSystem& egl = EglSystem::Instance();
    if (m_impl->FindSurface(hdc) == nullptr || !egl.Available())
        return 0;
    const EglFormat* info = egl.Format(format);
    if (info == nullptr)
        return 0;
    if (pfd != nullptr)
        std::memcpy(pfd, &info->pfd, std::min<size_t>(size, sizeof(PIXELFORMATDESCRIPTOR)));
    return int(egl.Formats().size());
}

// The nearest format to the request, in this order: the generic flag as
// asked, no fewer colour, depth and stencil bits than asked, then as few
// extra bits as possible, 8-bit channels preferred; the earlier one on a tie.
int HeadlessBackend::ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* wanted)
{
    EglSystem& egl = EglSystem::Instance();
    if (m_impl->FindSurface(hdc) == nullptr || !egl.Available() || wanted == nullptr)
        return 0;
    const DWORD required =
        wanted->dwFlags & (PFD_SUPPORT_OPENGL | PFD_DRAW_TO_WINDOW | PFD_DOUBLEBUFFER);
    const bool wantGeneric = (wanted->dwFlags & PFD_GENERIC_FORMAT) != 0;
    auto shortfall = [](BYTE want, BYTE have) { return std::max(int(want) - int(have), 0); };
    auto excess = [](BYTE want, BYTE have) { return std::abs(int(have) - int(want)); };
    int best = 0;
    std::vector<int> bestKey;
    for (size_t i = 0; i < egl.Formats().size(); ++i)
    {
        const PIXELFORMATDESCRIPTOR& f = egl.Formats()[i].pfd;
        if ((f.dwFlags & required) != required || f.iPixelType != wanted->iPixelType)
            continue;
        const std::vector<int> key = {
            ((f.dwFlags & PFD_GENERIC_FORMAT) != 0) != wantGeneric,
            shortfall(wanted->cColorBits, f.cColorBits),
            shortfall(wanted->cDepthBits, f.cDepthBits),
            shortfall(wanted->cStencilBits, f.cStencilBits),
            excess(wanted->cColorBits, f.cColorBits),
            std::abs(f.cRedBits - 8) + std::abs(f.cGreenBits - 8) + std::abs(f.cBlueBits - 8),
            shortfall(wanted->cAlphaBits, f.cAlphaBits),
            excess(wanted->cDepthBits, f.cDepthBits),
            excess(wanted->cStencilBits, f.cStencilBits),
            excess(wanted->cAlphaBits, f.cAlphaBits),
        };
        if (best == 0 || key < bestKey)
        {
            best = int(i) + 1;
            bestKey = key;
        }
    }
    return best;
}

bool HeadlessBackend::SetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR* /*pfd*/)
{
    Surface* surface = m_impl->FindSurface(hdc);
    EglSystem& egl = EglSystem::Instance();
    const EglFormat* info = egl.Available() ? egl.Format(format) : nullptr;
    if (surface == nullptr || info == nullptr)
        return false;
    // A window's pixel format is set once.
    if (surface->format != 0)
        return surface->format == format;
    const EGLDisplay display = egl.Displays()[info->display].display;
    EGLSurface pbuffer = CreatePbuffer(*info, display, surface->front.width, surface->front.height);
    if (pbuffer == EGL_NO_SURFACE)
        return false;
    surface->format = format;
    surface->display = display;
    surface->pbuffer = pbuffer;
    return true;
}

int HeadlessBackend::GetPixelFormat(HDC hdc)
{
    const Surface* surface = m_impl->FindSurface(hdc);
    return surface != nullptr ? surface->format : 0;
}

HGLRC HeadlessBackend::CreateContext(HDC hdc)
{
    const Surface* surface = m_impl->FindSurface(hdc);
    const EglFormat* info =
        surface != nullptr ? EglSystem::Instance().Format(surface->format) : nullptr;
    if (info == nullptr || !eglBindAPI(EGL_OPENGL_API))
        return nullptr;
    // No attributes: a compatibility context with the fixed-function pipeline.
    EGLContext context = eglCreateContext(surface->display, info->config, EGL_NO_CONTEXT, nullptr);
    if (context == EGL_NO_CONTEXT)
        return nullptr;
    const HGLRC hrc = MakeHandle<HGLRC>(m_impl->NewId());
    m_impl->contexts[IdOf(hrc)] = Context{surface->display, context};
    return hrc;
}

bool HeadlessBackend::MakeCurrent(HDC hdc, HGLRC hrc)
{
    if (hdc == nullptr && hrc == nullptr)
    {
        if (eglGetCurrentContext() != EGL_NO_CONTEXT)
            eglMakeCurrent(eglGetCurrentDisplay(), EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        m_impl->currentDC = nullptr;
        m_impl->currentRC = nullptr;
        return true;
    }
    const Surface* surface = m_impl->FindSurface(hdc);
    const Context* context = m_impl->FindContext(hrc);
    if (surface == nullptr || context == nullptr || surface->pbuffer == EGL_NO_SURFACE ||
        surface->display != context->display)
        return false;
    // Every drawing operation makes its context current: keep that cheap.
    const bool already = eglGetCurrentContext() == context->context && surface->IsCurrent() &&
                         eglGetCurrentSurface(EGL_READ) == surface->pbuffer;
    if (!already &&
        !eglMakeCurrent(surface->display, surface->pbuffer, surface->pbuffer, context->context))
        return false;
    m_impl->currentDC = hdc;
    m_impl->currentRC = hrc;
    return true;
}

bool HeadlessBackend::DeleteContext(HGLRC hrc)
{
    const Context* context = m_impl->FindContext(hrc);
    if (context == nullptr)
        return false;
    if (eglGetCurrentContext() == context->context)
    {
        eglMakeCurrent(context->display, EGL_NO_SURFACE, EGL_NO_SURFACE, EGL_NO_CONTEXT);
        m_impl->currentDC = nullptr;
        m_impl->currentRC = nullptr;
    }
    const bool ok = eglDestroyContext(context->display, context->context) == EGL_TRUE;
    m_impl->contexts.erase(IdOf(hrc));
    return ok;
}

HGLRC HeadlessBackend::GetCurrentContext()
{
    const Context* context = m_impl->FindContext(m_impl->currentRC);
    return context != nullptr && eglGetCurrentContext() == context->context ? m_impl->currentRC
                                                                            : nullptr;
}

HDC HeadlessBackend::GetCurrentDC()
{
    return GetCurrentContext() != nullptr ? m_impl->currentDC : nullptr;
}

bool HeadlessBackend::SwapBuffers(HDC hdc)
{
    Surface* surface = m_impl->FindSurface(hdc);
    // The pixels can only be read through a context current on the surface.
    if (surface == nullptr || !surface->IsCurrent())
        return false;
    ReadColorBuffer(surface->front);
    return true;
}

void HeadlessBackend::FrontBufferFlushed(HDC hdc)
{
    Surface* surface = m_impl->FindSurface(hdc);
    if (surface != nullptr && surface->IsCurrent())
        ReadColorBuffer(surface->front);
}

} // namespace plotvane
