// The Win32, WGL and common-library functions that window code calls, with
// their Win32 names and signatures; each forwards to the installed backend.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/WinTypes.h>

class CWnd;

int ChoosePixelFormat(HDC hdc, const PIXELFORMATDESCRIPTOR* ppfd);
BOOL SetPixelFormat(HDC hdc, int format, const PIXELFORMATDESCRIPTOR* ppfd);
int DescribePixelFormat(HDC hdc, int iPixelFormat, UINT nBytes, LPPIXELFORMATDESCRIPTOR ppfd);
int GetPixelFormat(HDC hdc);
BOOL SwapBuffers(HDC hdc);

HGLRC wglCreateContext(HDC hdc);
BOOL wglMakeCurrent(HDC hdc, HGLRC hglrc);
BOOL wglDeleteContext(HGLRC hglrc);
HGLRC wglGetCurrentContext();
HDC wglGetCurrentDC();

// The high bit (0x8000) is set while the key is down.
SHORT GetAsyncKeyState(int vKey);

// The calling thread's last-error code.
void SetLastError(DWORD code);
DWORD GetLastError();

// A message box with no owner window; the caption is the application name.
int AfxMessageBox(LPCTSTR lpszText, UINT nType = MB_OK);

// Nonzero when hardware-accelerated OpenGL is usable for windows under
// pParent; strInfo receives a description of the renderer.
BOOL IsEnableOpenGL(CString& strInfo, CWnd* pParent);
