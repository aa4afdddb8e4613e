#include <plotvane/platform/Backend.h>

namespace plotvane
{

namespace
{

Backend* g_pInstalled = nullptr;

CString& AppName()
{
    static CString name("Plotvane");
    return name;
}

} // namespace

bool Backend::SaveFrontImage(HWND hwnd, const CString& path, bool withAlpha)
{
    const Image* image = GetFrontImage(hwnd);
    return image != nullptr && WritePng(path, *image, withAlpha);
}

Backend& GetBackend()
{
    return g_pInstalled != nullptr ? *g_pInstalled : GetDefaultBackend();
}

Backend* SetBackend(Backend* backend)
{
    Backend* previous = g_pInstalled;
    g_pInstalled = backend;
    return previous;
}

void FrontBufferFlushed(HDC hdc)
{
    GetBackend().FrontBufferFlushed(hdc);
}

int GetDisplayColorDepth()
{
    return GetBackend().GetDisplayColorDepth();
}

const CString& GetAppName()
{
    return AppName();
}

void SetAppName(const CString& name)
{
    AppName() = name;
}

} // namespace plotvane
