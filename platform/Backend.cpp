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

CRect Backend::MapDialogRect(HWND /*hwnd*/, const CRect& rc)
{
    // A dialog unit is a quarter of the average character width and an
    // eighth of the character height.
    constexpr int kBaseX = 6;
    constexpr int kBaseY = 13;
    return CRect(rc.left * kBaseX / 4, rc.top * kBaseY / 8, rc.right * kBaseX / 4,
                 rc.bottom * kBaseY / 8);
}

UINT Backend::TrackPopupMenu(const PopupMenuItems& /*items*/, CPoint /*screen*/, HWND /*owner*/)
{
    return 0;
}

int Backend::RunModalLoop(HWND /*hwnd*/)
{
    return IDCANCEL;
}

void Backend::EndModalLoop(HWND /*hwnd*/, int /*result*/) {}

bool Backend::ChooseColor(HWND /*owner*/, COLORREF& /*color*/)
{
    return false;
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
