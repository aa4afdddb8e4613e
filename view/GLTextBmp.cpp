#include <plotvane/view/GLTextBmp.h>

#include <plotvane/platform/WinApi.h>

#include <GL/gl.h>
#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H

#include <cstdint>
#include <cstdlib>
#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

namespace
{

// A glyph as glBitmap takes it: rows bottom first, each padded to a byte.
struct Glyph
{
    int width = 0;
    int rows = 0;
    int left = 0;    // pen to the left edge of the bitmap
    int top = 0;     // baseline to the top row
    int advance = 0; // pen movement in pixels
    std::vector<GLubyte> bits;
};

// Faces and rasterised glyphs, kept for the process: a font is rebuilt
// whenever a size changes, and rasterising again would gain nothing.
class GlyphCache
{
public:
    static GlyphCache& Instance()
    {
        static GlyphCache cache;
        return cache;
    }

    GlyphCache(const GlyphCache&) = delete;
    GlyphCache& operator=(const GlyphCache&) = delete;

    ~GlyphCache()
    {
        m_glyphs.clear();
        for (auto& entry : m_faces)
        {
            if (entry.second != nullptr)
                FT_Done_Face(entry.second);
        }
        if (m_library != nullptr)
            FT_Done_FreeType(m_library);
        if (m_config != nullptr)
            FcConfigDestroy(m_config);
    }

    const Glyph& Get(const CString& faceName, int pixels, std::uint32_t code)
    {
        const GlyphKey key{faceName.str(), pixels, code};
        auto it = m_glyphs.find(key);
        if (it == m_glyphs.end())
            it = m_glyphs.emplace(key, Rasterise(faceName.str(), pixels, code)).first;
        return it->second;
    }

private:
    using GlyphKey = std::tuple<std::string, int, std::uint32_t>;
    using FaceKey = std::pair<std::string, int>; // file and index

    GlyphCache() = default;

    // The font file fontconfig gives for a family, and for one character
    // when code is nonzero: "Tahoma" becomes the best sans face installed.
    // A configuration of our own, so that the process's default one is left
    // to whoever else uses fontconfig.
    FaceKey Resolve(const std::string& family, std::uint32_t code)
    {
        FaceKey result;
        if (m_config == nullptr)
            m_config = FcInitLoadConfigAndFonts();
        FcPattern* pattern = m_config != nullptr ? FcPatternCreate() : nullptr;
        if (pattern == nullptr)
            return result;
        if (!family.empty())
            FcPatternAddString(pattern, FC_FAMILY,
                               reinterpret_cast<const FcChar8*>(family.c_str()));
        FcPatternAddBool(pattern, FC_SCALABLE, FcTrue);
        if (code != 0)
        {
            FcCharSet* charset = FcCharSetCreate();
            FcCharSetAddChar(charset, code);
            FcPatternAddCharSet(pattern, FC_CHARSET, charset);
            FcCharSetDestroy(charset);
        }
        FcConfigSubstitute(m_config, pattern, FcMatchPattern);
        FcDefaultSubstitute(pattern);
        FcResult status = FcResultNoMatch;
        FcPattern* match = FcFontMatch(m_config, pattern, &status);
        FcPatternDestroy(pattern);
        if (match == nullptr)
            return result;
        FcChar8* file = nullptr;
        int index = 0;
        if (FcPatternGetString(match, FC_FILE, 0, &file) == FcResultMatch && file != nullptr)
        {
            result.first = reinterpret_cast<const char*>(file);
            if (FcPatternGetInteger(match, FC_INDEX, 0, &index) == FcResultMatch)
                result.second = index;
        }
        FcPatternDestroy(match);
        return result;
    }

    FT_Face Face(const FaceKey& key)
    {
        if (key.first.empty())
            return nullptr;
        auto it = m_faces.find(key);
        if (it != m_faces.end())
            return it->second;
        FT_Face face = nullptr;
        if (m_library == nullptr && FT_Init_FreeType(&m_library) != 0)
            m_library = nullptr;
        if (m_library == nullptr ||
            FT_New_Face(m_library, key.first.c_str(), key.second, &face) != 0)
            face = nullptr;
        m_faces.emplace(key, face);
        return face;
    }

    FT_Face FamilyFace(const std::string& family)
    {
        auto it = m_families.find(family);
        if (it == m_families.end())
            it = m_families.emplace(family, Resolve(family, 0)).first;
        return Face(it->second);
    }

    Glyph Rasterise(const std::string& family, int pixels, std::uint32_t code)
    {
        Glyph glyph;
        FT_Face face = FamilyFace(family);
        if (face == nullptr)
            return glyph;
        FT_UInt index = FT_Get_Char_Index(face, code);
        // Control codes have nothing to show and do not move the pen.
        if (index == 0 && code < 32)
            return glyph;
        if (index == 0)
        {
            // Another face that has the character, else the missing-glyph box.
            FT_Face fallback = Face(Resolve(family, code));
            const FT_UInt fallbackIndex =
                fallback != nullptr ? FT_Get_Char_Index(fallback, code) : 0;
            if (fallbackIndex != 0)
            {
                face = fallback;
                index = fallbackIndex;
            }
        }
        if (FT_Set_Pixel_Sizes(face, 0, FT_UInt(pixels)) != 0 ||
            FT_Load_Glyph(face, index, FT_LOAD_RENDER | FT_LOAD_TARGET_MONO) != 0)
            return glyph;
        const FT_GlyphSlot slot = face->glyph;
        const FT_Bitmap& bitmap = slot->bitmap;
        glyph.advance = int((slot->advance.x + 32) >> 6);
        glyph.left = slot->bitmap_left;
        glyph.top = slot->bitmap_top;
        glyph.width = int(bitmap.width);
        glyph.rows = int(bitmap.rows);
        const int stride = (glyph.width + 7) / 8;
        glyph.bits.assign(size_t(stride) * size_t(glyph.rows), 0);
        for (int row = 0; row < glyph.rows; ++row)
        {
            const unsigned char* src = bitmap.buffer + std::ptrdiff_t(row) * bitmap.pitch;
            GLubyte* dst = &glyph.bits[size_t(glyph.rows - 1 - row) * size_t(stride)];
            for (int x = 0; x < glyph.width; ++x)
            {
                const bool on = bitmap.pixel_mode == FT_PIXEL_MODE_MONO
                                    ? (src[x >> 3] & (0x80 >> (x & 7))) != 0
                                    : src[x] >= 128;
                if (on)
                    dst[x >> 3] |= GLubyte(0x80 >> (x & 7));
            }
        }
        return glyph;
    }

    FcConfig* m_config = nullptr;
    FT_Library m_library = nullptr;
    std::map<std::string, FaceKey> m_families;
    std::map<FaceKey, FT_Face> m_faces;
    std::map<GlyphKey, Glyph> m_glyphs;
};

// What wglUseFontBitmaps puts in a list: the bitmap with its origin at the
// pen, and the pen moved on by the advance.
void EmitGlyph(const Glyph& glyph)
{
    glBitmap(glyph.width, glyph.rows, GLfloat(-glyph.left), GLfloat(glyph.rows - glyph.top),
             GLfloat(glyph.advance), 0.0f, glyph.bits.empty() ? nullptr : glyph.bits.data());
}

// Bitmaps are unpacked byte-aligned whatever the caller has set.
class UnpackBytes
{
public:
    UnpackBytes()
    {
        glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
        glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
        glPixelStorei(GL_UNPACK_ROW_LENGTH, 0);
        glPixelStorei(GL_UNPACK_SKIP_ROWS, 0);
        glPixelStorei(GL_UNPACK_SKIP_PIXELS, 0);
        glPixelStorei(GL_UNPACK_LSB_FIRST, GL_FALSE);
        glPixelStorei(GL_UNPACK_SWAP_BYTES, GL_FALSE);
    }
    UnpackBytes(const UnpackBytes&) = delete;
    UnpackBytes& operator=(const UnpackBytes&) = delete;
    ~UnpackBytes() { glPopClientAttrib(); }
};

// UTF-8 to code points, up to a terminator. A byte that starts no valid
// sequence stands for itself, so that Latin-1 text still shows.
std::vector<std::uint32_t> DecodeUtf8(const CString& text)
{
    std::vector<std::uint32_t> codes;
    const auto* s = reinterpret_cast<const unsigned char*>(text.GetString());
    const size_t n = size_t(text.GetLength());
    for (size_t i = 0; i < n && s[i] != 0;)
    {
        const unsigned char lead = s[i];
        size_t extra = 0;
        std::uint32_t code = lead;
        if (lead >= 0xF0 && lead <= 0xF4)
        {
            extra = 3;
            code = lead & 0x07;
        }
        else if (lead >= 0xE0)
        {
            extra = lead <= 0xEF ? 2 : 0;
            code = lead & 0x0F;
        }
        else if (lead >= 0xC2)
        {
            extra = 1;
            code = lead & 0x1F;
        }
        bool valid = extra > 0 && i + extra < n;
        for (size_t k = 1; valid && k <= extra; ++k)
        {
            valid = (s[i + k] & 0xC0) == 0x80;
            code = (code << 6) | (s[i + k] & 0x3F);
        }
        if (valid)
        {
            codes.push_back(code);
            i += extra + 1;
        }
        else
        {
            codes.push_back(lead);
            ++i;
        }
    }
    return codes;
}

bool HasNonAscii(const CString& text)
{
    for (int i = 0; i < text.GetLength(); ++i)
    {
        if (static_cast<unsigned char>(text.GetString()[i]) >= 0x80)
            return true;
    }
    return false;
}

} // namespace

CGLTextBmp::CGLTextBmp() : m_nListBase(0), m_strFaceName("Tahoma"), m_nFontSize(12) {}

CGLTextBmp::~CGLTextBmp()
{
    DeleteLists();
}

// List names belong to a context: deleting them in another one would delete
// someone else's lists. Lists left behind go with their context.
void CGLTextBmp::DeleteLists()
{
    if (m_nListBase != 0 && m_hListContext != nullptr && wglGetCurrentContext() == m_hListContext)
        glDeleteLists(m_nListBase, 128);
    m_nListBase = 0;
    m_hListContext = nullptr;
}

void CGLTextBmp::BuildFont(HDC /*hdc*/)
{
    DeleteLists();
    const HGLRC context = wglGetCurrentContext();
    if (context == nullptr)
        return;
    const int pixels = std::abs(m_nFontSize);
    const GLuint base = glGenLists(128);
    if (base == 0)
        return;
    GlyphCache& cache = GlyphCache::Instance();
    UnpackBytes unpack;
    for (std::uint32_t code = 0; code < 128; ++code)
    {
        glNewList(base + code, GL_COMPILE);
        EmitGlyph(cache.Get(m_strFaceName, pixels, code));
        glEndList();
    }
    m_nListBase = base;
    m_hListContext = context;
}

void CGLTextBmp::PrintText(const CString& text, const CPointD& position, HDC hdc)
{
    if (m_pTextSink != nullptr)
        m_pTextSink->OnText(text, position);
    if (!HasNonAscii(text) || hdc == nullptr)
    {
        // A font never built has no lists: it draws nothing.
        if (m_nListBase == 0)
            return;
        glRasterPos2d(position.x, position.y);
        glListBase(m_nListBase);
        if (!HasNonAscii(text))
        {
            glCallLists(text.GetLength(), GL_UNSIGNED_BYTE, text.GetString());
            return;
        }
        // Codes from 128 have no lists here; other lists may follow ours.
        std::string lower;
        for (int i = 0; i < text.GetLength(); ++i)
        {
            if (static_cast<unsigned char>(text.GetString()[i]) < 0x80)
                lower += text.GetString()[i];
        }
        glCallLists(GLsizei(lower.size()), GL_UNSIGNED_BYTE, lower.data());
        return;
    }

    GlyphCache& cache = GlyphCache::Instance();
    const int pixels = std::abs(m_nFontSize);
    glRasterPos2d(position.x, position.y);
    UnpackBytes unpack;
    for (std::uint32_t code : DecodeUtf8(text))
    {
        const GLuint list = glGenLists(1);
        if (list == 0)
            break;
        glNewList(list, GL_COMPILE);
        EmitGlyph(cache.Get(m_strFaceName, pixels, code));
        glEndList();
        glCallList(list);
        glDeleteLists(list, 1);
    }
}
