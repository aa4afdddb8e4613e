#include <plotvane/platform/WinApi.h>

#include <plotvane/platform/Backend.h>
#include <plotvane/platform/Wnd.h>

namespace
{

thread_local DWORD t_lastError = 0;

} // namespace

int ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* ppfd)
{
    return ppfd != nullptr ? plotvane::GetBackend().ChoosePixelFormat(hdc, ppfd) : 0;
}

BOOL SetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR* ppfd)
{
    return plotvane::GetBackend().SetPixelFormat(hdc, format, ppfd) ? TRUE : FALSE;
}

int DescribePixelFormat(HDC hdc, int iPixelFormat, UINT nBytes, LPPIXELFORMATDESCRIPTOR ppfd)
{
    return plotvane::GetBackend().DescribePixelFormat(hdc, iPixelFormat, nBytes, ppfd);
}

int GetPixelFormat(HDC hdc)
{
    return plotvane::GetBackend().GetPixelFormat(hdc);
}

BOOL SwapBuffers(HDC hdc)
{
    return plotvane::GetBackend().SwapBuffers(hdc) ? TRUE : FALSE;
}

HGLRC wglCreateContext(HDC hdc)
{
    return plotvane::GetBackend().CreateContext(hdc);
}

BOOL wglMakeCurrent(HDC hdc, HGLRC hglrc)
{
    return plotvane::GetBackend().MakeCurrent(hdc, hglrc) ? TRUE : FALSE;
}

BOOL wglDeleteContext(HGLRC hglrc)
{
    return plotvane::GetBackend().DeleteContext(hglrc) ? TRUE : FALSE;
}

HGLRC wglGetCurrentContext()
{
    return plotvane::GetBackend().GetCurrentContext();
}

HDC wglGetCurrentDC()
{
    return plotvane::GetBackend().GetCurrentDC();
}

SHORT GetAsyncKeyState(int vKey)
{
    return plotvane::GetBackend().GetAsyncKeyState(vKey);
}

void SetLastError(DWORD code)
{
    t_lastError = code;
}

DWORD GetLastError()
{
    return t_lastError;
}

int AfxMessageBox(LPCTSTR lpszText, UINT nType)
{
    return plotvane::GetBackend().MessageBox(nullptr, lpszText, plotvane::GetAppName(), nType);
}

BOOL IsEnableOpenGL(CString& strInfo, CWnd* pParent)
{
    HWND parent = pParent != nullptr ? pParent->GetSafeHwnd() : nullptr;
    return plotvane::GetBackend().IsHardwareAccelerated(parent, strInfo) ? TRUE : FALSE;
}
