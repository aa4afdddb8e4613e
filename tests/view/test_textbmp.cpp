// CGLTextBmp: bitmap text drawn offscreen, read back from the front image.
#include <plotvane/view/GLTextBmp.h>

#include "common/gl_required.h"

#include <plotvane/platform/WinApi.h>
#include <plotvane/platform/headless/HeadlessBackend.h>
#include <plotvane/view/GLWnd.h>

#include <GL/gl.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <functional>

namespace
{

constexpr COLORREF kLabel = RGB(200, 200, 200);

// One logical unit per pixel, origin at the bottom left, text in kLabel.
class CTextWnd : public CGLWnd
{
public:
    void OnPaint() override
    {
        CPaintDC dc(this);
        FitCurViewAreaWithWindow();
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glMatrixMode(GL_MODELVIEW);
        glLoadIdentity();
        glColor3ub(GetRValue(kLabel), GetGValue(kLabel), GetBValue(kLabel));
        if (scene)
            scene();
        glFinish();
        SwapBuffers(m_pDC->GetSafeHdc());
    }
    HDC Hdc() const { return m_pDC->GetSafeHdc(); }
    // Draws and answers the front image.
    const plotvane::Image& Draw(std::function<void()> what)
    {
        scene = std::move(what);
        RedrawWindow();
        return *plotvane::HeadlessBackend::Default().GetFrontImage(m_hWnd);
    }

    std::function<void()> scene;
};

// The bounding box of the label's pixels, and their count.
struct Box
{
    int left = INT_MAX, top = INT_MAX, right = INT_MIN, bottom = INT_MIN, count = 0;
};

Box LabelBox(const plotvane::Image& image)
{
    Box box;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            if (image.Pixel(x, y) == kLabel)
            {
                box = {std::min(box.left, x), std::min(box.top, y), std::max(box.right, x),
                       std::max(box.bottom, y), box.count + 1};
            }
    return box;
}

class TextBmpTest : public testing::Test
{
protected:
    void SetUp() override
    {
        PLOTVANE_REQUIRE_GL();
        ASSERT_TRUE(wnd.Create(nullptr, "", WS_VISIBLE, CRect(0, 0, 200, 100), nullptr, 0));
        ASSERT_NE(wnd.m_hRC, nullptr);
        wnd.m_rcViewArea.SetData(0.0f, 0.0f, 200.0f, 100.0f);
        wnd.MakeCurrent();
    }

    Box Print(CGLTextBmp& font, const CString& text, HDC hdc)
    {
        return LabelBox(wnd.Draw([&] { font.PrintText(text, CPointD(20.0, 40.0), hdc); }));
    }

    CTextWnd wnd;
};

} // namespace

TEST_F(TextBmpTest, AsciiTextLandsRightOfAndAboveItsPosition)
{
    CGLTextBmp font; // Tahoma, 12 points
    font.BuildFont(wnd.Hdc());
    ASSERT_NE(font.m_nListBase, 0u);
    EXPECT_TRUE(glIsList(font.m_nListBase + 'H'));

    const Box hello = Print(font, "Hello", nullptr);
    ASSERT_GT(hello.count, 20);
    // Position (20, 40) is client pixel (20, 60): glyphs start there and rise
    // at most the font size above the baseline.
    EXPECT_GE(hello.left, 20);
    EXPECT_LE(hello.left, 22);
    EXPECT_LT(hello.right, 20 + 5 * 12);
    EXPECT_GE(hello.top, 60 - 12);
    EXPECT_LE(hello.bottom, 60);

    // Each glyph moves the raster position on: "HH" is one advance wider.
    const Box h = Print(font, "H", nullptr);
    const Box hh = Print(font, "HH", nullptr);
    EXPECT_EQ(hh.count, 2 * h.count);
    EXPECT_GT(hh.right - h.right, 4);
    EXPECT_EQ(hh.top, h.top);

    // The size's sign does not matter; a larger size draws more.
    CGLTextBmp negative;
    negative.m_nFontSize = -12;
    negative.BuildFont(wnd.Hdc());
    EXPECT_EQ(Print(negative, "Hello", nullptr).count, hello.count);
    CGLTextBmp large;
    large.m_nFontSize = 24;
    large.BuildFont(nullptr);
    EXPECT_GT(Print(large, "Hello", nullptr).count, 2 * hello.count);

    // An unknown face falls back to an installed one.
    CGLTextBmp unknown;
    unknown.m_strFaceName = "No Such Face 1234";
    unknown.BuildFont(wnd.Hdc());
    EXPECT_GT(Print(unknown, "Hello", nullptr).count, 0);
}

TEST_F(TextBmpTest, NonAsciiTextTakesThePerCharacterPath)
{
    CGLTextBmp font;
    font.BuildFont(wnd.Hdc());
    const Box h = Print(font, "H", nullptr);

    // UTF-8 text with a device context: one list per character.
    const Box mixed = Print(font, "H\xC3\xA9\xCE\xA9", wnd.Hdc()); // "H", e acute, omega
    EXPECT_GT(mixed.count, h.count);
    EXPECT_GT(mixed.right, h.right + 8);
    EXPECT_EQ(mixed.left, h.left);

    // Without a device context the lists draw, and codes from 128 have none.
    EXPECT_EQ(Print(font, "H\xC3\xA9", nullptr).count, h.count);
    EXPECT_EQ(Print(font, "\xC3\xA9", nullptr).count, 0);
    // ASCII with a device context keeps the lists.
    EXPECT_EQ(Print(font, "H", wnd.Hdc()).count, h.count);
}

TEST_F(TextBmpTest, UnbuiltFontDrawsNothingAndListsGoWithTheFont)
{
    CGLTextBmp built;
    built.BuildFont(wnd.Hdc());
    CGLTextBmp unbuilt;
    EXPECT_EQ(unbuilt.m_nListBase, 0u);
    EXPECT_EQ(Print(unbuilt, "Hello", nullptr).count, 0);
    EXPECT_EQ(Print(unbuilt, "Hello", wnd.Hdc()).count, 0);

    // Rebuilding replaces the lists; destruction deletes them.
    const DWORD firstBase = built.m_nListBase;
    built.BuildFont(wnd.Hdc());
    EXPECT_FALSE(glIsList(firstBase) && built.m_nListBase != firstBase);
    auto* temporary = new CGLTextBmp;
    temporary->BuildFont(wnd.Hdc());
    const DWORD base = temporary->m_nListBase;
    ASSERT_TRUE(glIsList(base + 65));
    delete temporary;
    EXPECT_FALSE(glIsList(base + 65));

    // Without a current context nothing is built, and nothing fails.
    wglMakeCurrent(nullptr, nullptr);
    CGLTextBmp orphan;
    orphan.BuildFont(nullptr);
    EXPECT_EQ(orphan.m_nListBase, 0u);
    wnd.MakeCurrent();
}
