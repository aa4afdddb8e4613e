// Fixed-width names of the Windows types the public interface is written in.
#pragma once

#include <cstdint>

using BOOL = int;
using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using COLORREF = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using INT_PTR = std::intptr_t;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

#ifndef RGB
#define RGB(r, g, b)                                                                               \
    ((COLORREF)(((BYTE)(r) | ((WORD)((BYTE)(g)) << 8)) | (((DWORD)(BYTE)(b)) << 16)))
#endif
#define GetRValue(rgb) ((BYTE)(rgb))
#define GetGValue(rgb) ((BYTE)(((WORD)(rgb)) >> 8))
#define GetBValue(rgb) ((BYTE)((rgb) >> 16))

struct tagPOINT
{
    LONG x = 0;
    LONG y = 0;
};
using POINT = tagPOINT;

struct tagRECT
{
    LONG left = 0;
    LONG top = 0;
    LONG right = 0;
    LONG bottom = 0;
};
using RECT = tagRECT;
