// CGLTextBmp: one bitmap font held in OpenGL display lists. The character
// codes 0 to 127 of m_strFaceName at |m_nFontSize| pixels become 128 lists
// of glBitmap calls, each advancing the raster position by the glyph's
// advance; text with other characters is drawn one character at a time.
// Faces are resolved by fontconfig and rasterised by FreeType.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/ValueTypes.h>
#include <plotvane/platform/WinTypes.h>
#include <plotvane/view/ChartText.h>

class CGLTextBmp
{
public:
    CGLTextBmp();
    CGLTextBmp(const CGLTextBmp&) = delete;
    CGLTextBmp& operator=(const CGLTextBmp&) = delete;
    // Deletes the 128 lists, when the context that holds them is current.
    virtual ~CGLTextBmp();

    // Builds the 128 lists in the current context. The glyphs do not depend
    // on the device context, which may be null.
    void BuildFont(HDC hdc);
    // Draws text with its first character's origin at position. Text of
    // ASCII only, or any text with a null hdc, takes the lists (codes from
    // 128 have none); other text is decoded as UTF-8 and drawn one list per
    // character, each built, called and deleted.
    void PrintText(const CString& text, const CPointD& position, HDC hdc);

    // Told of every text this font prints; null for none.
    void SetTextSink(plotvane::TextSink* pSink) { m_pTextSink = pSink; }

    // First of the 128 lists; 0 while no font is built.
    DWORD m_nListBase;
    CString m_strFaceName;
    // Character height in pixels; the sign does not matter.
    int m_nFontSize;

private:
    void DeleteLists();

    HGLRC m_hListContext = nullptr;
    plotvane::TextSink* m_pTextSink = nullptr;
};
