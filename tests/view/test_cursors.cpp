// Cursors: clipping lines with their labels, crossing texts and distances,
// two-click boxes with W= and H=, and the cross that follows the mouse.
// Lines and boxes are placed as a left press places them; texts are read
// through the text hook, pixels only where a colour is the point.
#include "chart_fixture.h"

#include <plotvane/document/ChartMarkers.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

using plotvane::ChartText;
using plotvane::ChartTextLayer;

namespace
{

constexpr COLORREF kLabel = RGB(50, 100, 250);
constexpr COLORREF kCrossing = RGB(150, 150, 250);
constexpr COLORREF kDistanceText = RGB(250, 100, 50);
constexpr COLORREF kDistanceLine = RGB(150, 100, 50);
constexpr COLORREF kCross = 0x785050;
constexpr COLORREF kMark = 0xFAC864;

// The placing helpers are the press's own; a derived class may name them.
struct Placing : CGLChartView
{
    static void Line(CGLChartView& v, int bVertical, const CPointF& p)
    {
        const auto pm = &Placing::AddClickedClippingLine;
        (v.*pm)(bVertical, p);
    }
    static void Box(CGLChartView& v, int bVertical, const CPointF& p)
    {
        const auto pm = &Placing::ClickClippingBox;
        (v.*pm)(bVertical, p);
    }
};

template <class Base> class CursorTest : public Base
{
protected:
    void SetUp() override
    {
        Base::SetUp();
        if (this->HasFatalFailure() || this->IsSkipped())
            return;
        // Units of 1: logical values read as they are.
        this->m.m_Attribute.m_XAxis.SetUnit(1);
        this->m.m_Attribute.m_YAxis.SetUnit(1);
        this->view->SetTextHook([this](const ChartText& t) { texts.push_back(t); });
    }
    void Line(int bVertical, double x, double y)
    {
        Placing::Line(*this->view, bVertical, CPointF(float(x), float(y)));
    }
    void Box(int bVertical, double x, double y)
    {
        Placing::Box(*this->view, bVertical, CPointF(float(x), float(y)));
    }
    void Mouse(int col, int row) { this->m.m_ptCurrentMouse = CPointN(col, row); }
    // The cursor texts of a fresh paint.
    std::vector<ChartText> Paint()
    {
        texts.clear();
        Base::Paint();
        std::vector<ChartText> r;
        for (const ChartText& t : texts)
            if (t.layer == ChartTextLayer::Cursor)
                r.push_back(t);
        return r;
    }
    std::vector<ChartText> texts;
};

using Cursors = CursorTest<ChartFixture>;

const ChartText* Find(const std::vector<ChartText>& v, const char* text)
{
    for (const ChartText& t : v)
        if (t.strText == text)
            return &t;
    return nullptr;
}

// The text is there, at (x, y) in this colour.
void ExpectText(const std::vector<ChartText>& v, const char* text, double x, double y,
                COLORREF color)
{
    const ChartText* t = Find(v, text);
    ASSERT_NE(t, nullptr) << text;
    EXPECT_NEAR(t->ptLogical.x, x, 1e-3) << text;
    EXPECT_NEAR(t->ptLogical.y, y, 1e-3) << text;
    EXPECT_EQ(t->crColor, DWORD(color)) << text;
}

TEST_F(Cursors, VerticalLineGetsItsCrossingsAndLabelRowsByIndex)
{
    AddCurve({{0, 50}, {400, 250}});
    AddCurve({{0, 250}, {400, 50}}, kGreen);
    Paint();
    m.m_bClippingVerticalValue = 1;
    Line(1, 100, 0);
    std::vector<ChartText> v = Paint();
    ASSERT_EQ(v.size(), 3u);
    ExpectText(v, "100.00", 100, 100, kCrossing);
    ExpectText(v, "200.00", 100, 200, kCrossing);
    // The label comes last, in the top row of four: top - H/30 - 3h.
    EXPECT_EQ(v[2].crColor, DWORD(kLabel));
    EXPECT_NEAR(v[2].ptLogical.y, 300 - 10 - 3 * 12, 0.01);
    EXPECT_TRUE(ColorNear(kMark, Col(100), Row(20)));

    // Without the value switch only labels show; rows go by index mod 4.
    m.m_bClippingVerticalValue = 0;
    for (int x : {150, 200, 250, 300})
        Line(1, x, 0);
    v = Paint();
    ASSERT_EQ(v.size(), 5u);
    const double rows[] = {254, 266, 278, 290, 254};
    for (int i = 0; i < 5; ++i)
        EXPECT_NEAR(v[i].ptLogical.y, rows[i], 0.01) << i;

    // Horizontal labels alternate between two columns at the right, by
    // their place in the one array of both directions: 5 and 6 here.
    Line(0, 0, 40);
    Line(0, 0, 80);
    v = Paint();
    ExpectText(v, "40.00", 350, 40, kLabel);
    ExpectText(v, "80.00", 375, 80, kLabel);
}

TEST_F(Cursors, PairsGetDistanceTextsAndLinesUnlessTheyReadZero)
{
    m.m_bClippingVerticalDistance = 1;
    Paint();
    Mouse(200, Row(150));
    Line(1, 100, 0);
    Line(1, 160, 0);
    EXPECT_EQ(m.m_nVerticalDistancePending, 0);
    std::vector<ChartText> v = Paint();
    // A fifth of the way in from the smaller line, under the mouse.
    const CChartClippingLine& second = *m.m_pClippingLineArray->GetAt(1);
    const double y = second.m_ptDistanceStart.y;
    EXPECT_NEAR(y, 150 - 10, 1.0);
    ExpectText(v, "60.00", 124, y, kDistanceText);
    EXPECT_TRUE(ColorNear(kDistanceLine, Col(130), Row(y)));

    // After a removal the next line has nothing to measure from. 0.003 at
    // this scale reads "0.00": no text, but the line is drawn.
    view->RemoveClippingLineArray();
    EXPECT_EQ(view->m_pLastXClippingLine, nullptr);
    CPlotvane_InputData::SetViewScaleX(1000.0);
    Line(1, 100, 0);
    EXPECT_TRUE(m.m_pClippingLineArray->GetAt(0)->m_pDistanceText->m_strText.IsEmpty());
    Line(1, 110, 0);
    EXPECT_EQ(m.m_pClippingLineArray->GetAt(1)->m_pDistanceText->m_strText, "0.01");
    Line(1, 200, 0);
    Line(1, 203, 0);
    v = Paint();
    EXPECT_EQ(m.m_pClippingLineArray->GetAt(3)->m_pDistanceText->m_strText, "0.00");
    EXPECT_EQ(Find(v, "0.00"), nullptr);
    EXPECT_NE(Find(v, "0.01"), nullptr);
    EXPECT_TRUE(ColorNear(kDistanceLine, Col(201), Row(y)));
}

TEST_F(Cursors, BoxesGetWidthAndHeightTexts)
{
    m.m_dEyeMaskHeight = 40;
    m.m_dEyeMaskCenterY = 150;
    Paint();
    Box(1, 100, 80);
    EXPECT_EQ(view->m_nBoxClickCount, 1);
    EXPECT_TRUE(Paint().empty()); // invisible until the second corner
    Box(1, 180, 10);
    EXPECT_EQ(view->m_nBoxClickCount, 0);
    std::vector<ChartText> v = Paint();
    // Width 80 around mid 140 on the mask centre; height from the mask.
    ExpectText(v, "W=80.00", 140, 150, kMark);
    ExpectText(v, "H=40.00", 140, 142, kMark);
    EXPECT_TRUE(ColorNear(kMark, Col(140), Row(130))); // bottom edge, y1 - h/2

    // Horizontal: the width is a share of the mask's width.
    m.m_dEyeMaskWidth = 40000;
    m.m_dEyeMaskTopPercent = 50;
    Box(0, 200, 60);
    Box(0, 250, 200);
    v = Paint();
    ExpectText(v, "W=100.00", 200, 130, kMark);
    ExpectText(v, "H=140.00", 200, 116, kMark);

    // Without a mask centre the first corner's X takes the click's Y.
    m.m_dEyeMaskCenterY = 0;
    Box(1, 100, 80);
    Box(1, 180, 10);
    const CChartClippingBox& odd = *m.m_pClippingBoxArray->GetAt(2);
    EXPECT_EQ(odd.m_dX1, 80);
    EXPECT_EQ(odd.m_dY1, 0);
    EXPECT_EQ(odd.m_pWidthText->m_strText, "W=100.00");

    // A second click whose box went with the array only resets the count.
    Box(1, 100, 80);
    view->RemoveClippingBoxArray();
    Box(1, 180, 10);
    EXPECT_EQ(view->m_nBoxClickCount, 0);
    EXPECT_EQ(m.m_pClippingBoxArray->GetSize(), 0);
    Paint();
}

TEST_F(Cursors, LogarithmicAxisLeavesTheEngineeringFormat)
{
    Paint();
    EXPECT_EQ(m.m_nFormatType, 1);
    Line(0, 0, 120); // linear: the format stays
    EXPECT_EQ(m.m_nFormatType, 1);
    m.m_nMagnitudeScale = 1;
    Paint();
    Line(0, 0, 2);
    EXPECT_EQ(m.m_nFormatType, 2);
    const CString expected = m.GetDisplayNumberByFormatType(100.0);
    EXPECT_EQ(m.m_pClippingLineArray->GetAt(1)->m_pValueText->m_strText, expected);
    m.m_nMagnitudeScale = 0;
    Paint();
    EXPECT_EQ(m.m_nFormatType, 2);
}

TEST_F(Cursors, CrossLinesShowTheMousePosition)
{
    m.m_bClippingVertical = 1;
    m.m_bClippingHorizontal = 1;
    Mouse(100, Row(200));
    std::vector<ChartText> v = Paint();
    ASSERT_EQ(v.size(), 2u);
    // Row 99 of 300 is logical 201.
    ExpectText(v, "201.00", 375, 201, kCross);
    ExpectText(v, "100.00", 100, 285, kCross);
    EXPECT_TRUE(ColorNear(kCross, Col(100), Row(50)));

    // On a logarithmic X axis the vertical text is the frequency.
    m.SetFrequencyScale(1);
    SetFrame(0, 0, 4, 300);
    v = Paint();
    ASSERT_EQ(v.size(), 2u);
    ExpectText(v, "10.00", 1, 285, kCross);
}

// ---- the picture

class CursorPicture : public CursorTest<HeadlessChartTest<800, 500>>
{
protected:
    CPointF At(int col, int row) { return view->ClientPointToView(CPoint(col, row)); }
    // PLOTVANE_ARTIFACT_DIR, or test-artifacts beside the tests' folder.
    static std::filesystem::path ArtifactDir()
    {
        if (const char* dir = std::getenv("PLOTVANE_ARTIFACT_DIR"))
            return dir;
        return std::filesystem::read_symlink("/proc/self/exe").parent_path().parent_path() /
               "test-artifacts";
    }
};

TEST_F(CursorPicture, TwoLinesALevelAndABox)
{
    CChartPointDArray rise, fall;
    for (int i = 0; i <= 200; ++i)
    {
        const double t = i * 0.05e-9;
        const double v = 1.2 / (1 + std::exp(-(t - 5e-9) / 0.6e-9));
        rise.Add(new CChartPointD(t, v));
        fall.Add(new CChartPointD(t, 1.2 - v));
    }
    AddSet(rise, 0x00FF00);
    AddSet(fall, 0xFFFF00);
    // The units the data call for, as a host has them.
    m.m_Attribute.m_XAxis.m_bUserSettingUnit = 0;
    m.m_Attribute.m_YAxis.m_bUserSettingUnit = 0;
    m.SetChartDrawFit();
    m.m_bClippingVerticalValue = m.m_bClippingHorizontalValue = 1;
    m.m_bClippingVerticalDistance = 1;
    m.m_dEyeMaskHeight = 0.3;
    m.m_dEyeMaskCenterY = 0.6;
    Paint();

    Mouse(400, 120);
    Line(1, At(350, 0).x, 0);
    Line(1, At(520, 0).x, 0);
    Line(0, 0, At(0, 180).y);
    Box(1, At(560, 0).x, 0);
    Box(1, At(680, 0).x, 0);
    std::vector<ChartText> v = Paint();
    // Two labels, four crossings, one distance, a level with two crossings,
    // and the box's two texts.
    EXPECT_EQ(v.size(), 2u + 4u + 1u + 3u + 2u);

    const std::filesystem::path dir = ArtifactDir();
    std::filesystem::create_directories(dir);
    const std::string path = (dir / "cursors.png").string();
    EXPECT_TRUE(plotvane::SaveChartImage(m, path.c_str())) << path;
}

} // namespace

