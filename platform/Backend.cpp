#include <plotvane/platform/Backend.h>

#include <plotvane/platform/headless/HeadlessBackend.h>

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

Backend& GetBackend()
{
    return g_pInstalled != nullptr ? *g_pInstalled : HeadlessBackend::Default();
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
