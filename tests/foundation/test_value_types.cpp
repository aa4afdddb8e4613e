#include <plotvane/foundation/Geometry.h>
#include <plotvane/foundation/StringEx.h>
#include <plotvane/foundation/ValueTypes.h>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <vector>

namespace
{
// Left, bottom, right, top.
std::array<float, 4> Edges(const CRectF& r)
{
    return {r.Left(), r.Bottom(), r.Right(), r.Top()};
}
using E = std::array<float, 4>;

// What GetIntersectionLineLine answers for the segments (a, b) and (c, d): the
// count, then the point it wrote, -7 where it wrote none.
using M = std::array<double, 3>;
M Meet(double ax, double ay, double bx, double by, double cx, double cy, double dx, double dy)
{
    double out[2] = {-7, -7};
    const int n = CLumigrid_Math::GetIntersectionLineLine(ax, ay, bx, by, cx, cy, dx, dy, out);
    return {double(n), out[0], out[1]};
}
} // namespace

TEST(CRectF, EdgesFollowYUp)
{
    CRectF r;
    r.SetData(1.0f, 2.0f, 5.0f, 10.0f); // left, bottom, right, top
    EXPECT_EQ((E{r.x, r.y, r.width, r.height}), (E{1.0f, 10.0f, 4.0f, 8.0f}));
    EXPECT_EQ(Edges(r), (E{1.0f, 2.0f, 5.0f, 10.0f}));
    EXPECT_EQ(r.CenterPoint(), CPointF(3.0f, 6.0f));
    r.Offset(1.0f, -2.0f);
    EXPECT_EQ(Edges(r), (E{2.0f, 0.0f, 6.0f, 8.0f}));
    EXPECT_EQ(Edges(CRectF(CRectD(-1.0, -2.0, 3.0, 4.0))), (E{-1.0f, -2.0f, 3.0f, 4.0f}));
}

TEST(CRectF, InflateMovesEdgesOrScalesAboutTheCentre)
{
    CRectF r;
    r.SetData(0.0f, 0.0f, 10.0f, 20.0f);
    r.Inflate(1.0f, 2.0f);
    EXPECT_EQ(Edges(r), (E{-1.0f, -2.0f, 11.0f, 22.0f}));

    // A percentage: 140 % of the size about the same centre.
    CRectF s;
    s.SetData(0.0f, 0.0f, 10.0f, 20.0f);
    s.Inflate(140.0f);
    EXPECT_EQ(Edges(s), (E{-2.0f, -4.0f, 12.0f, 24.0f}));
    EXPECT_EQ(s.CenterPoint(), CPointF(5.0f, 10.0f));
    CRectF t;
    t.SetData(-4.0f, -4.0f, 4.0f, 4.0f);
    t.Inflate(125.0f);
    EXPECT_EQ(Edges(t), (E{-5.0f, -5.0f, 5.0f, 5.0f}));
}

TEST(ValueTypes, ExactEquality)
{
    EXPECT_TRUE(CPointF(1.0f, 2.0f) == CPointF(1.0f, 2.0f));
    EXPECT_TRUE(CPointF(1.0f, 2.0f) != CPointF(1.0f, 2.5f));
    EXPECT_FALSE(CPointF(NAN, 0.0f) == CPointF(NAN, 0.0f));
    EXPECT_TRUE(CPointN(1, 2) == CPointN(1, 2));
    // The != of CPointN answers 0 either way.
    EXPECT_FALSE(CPointN(1, 2) != CPointN(3, 4));
    EXPECT_TRUE(CRectD(0, 0, 1, 1) != CRectD(0, 0, 1, 2));
}

TEST(SegmentIntersection, CrossingsEndPointsAndMisses)
{
    EXPECT_EQ(Meet(0, 0, 4, 4, 0, 4, 4, 0), (M{1, 2, 2}));
    // Meeting exactly at an end point of either segment counts.
    EXPECT_EQ(Meet(0, 1, 10, 1, 3, 0, 3, 1), (M{1, 3, 1}));
    EXPECT_EQ(Meet(0, 0, 2, 0, 2, 0, 3, 5), (M{1, 2, 0}));
    // A level touched by the far end of a sample pair reproduces the sample.
    const double y = 0.7, s = 100.0;
    EXPECT_EQ(Meet(0, y * s, 1e9, y * s, 0.3e9, 0.1 * s, 0.7e9, y * s), (M{1, 0.7e9, y * s}));

    // Beyond an end, parallel, collinear, degenerate and NaN: no meeting,
    // and the output is left alone.
    for (const M& miss : {Meet(0, 0, 1, 1, 2, 0, 3, -5), Meet(0, 1, 2, 1, 3, 0, 3, 2),
                          Meet(0, 0, 1, 0, 0, 1, 1, 1), Meet(0, 0, 2, 0, 1, 0, 3, 0),
                          Meet(0, 0, 2, 2, 1, 1, 1, 1), Meet(0, 0, 2, 2, 0, NAN, 2, 0)})
        EXPECT_EQ(miss, (M{0, -7, -7}));
}

TEST(Geometry, LinesMeetWhereTheyCross)
{
    CMLine a(CPointD(0, 0), CPointD(2, 2));
    CMLine b(CPointD(0, 2), CPointD(2, 0));
    CPointD p = a.GetIntersectionPtWith(b);
    EXPECT_DOUBLE_EQ(p.x, 1.0);
    EXPECT_DOUBLE_EQ(p.y, 1.0);
    CMLine c(CPointD(0, 1), CPointD(2, 3));
    EXPECT_TRUE(std::isnan(a.GetIntersectionPtWith(c).x));

    CMPointArray pts;
    pts.Add(new CMPoint(1, 2));
    CMPointArray copy(pts);
    EXPECT_NE(copy.GetAt(0), pts.GetAt(0));
    EXPECT_EQ(*copy.GetAt(0), *pts.GetAt(0));
}

TEST(Strings, TokenizerAndConversions)
{
    CStringArray parts;
    CTokenizer::GetTokenArray(parts, "DQ0__RX_a", "_");
    EXPECT_EQ(std::vector<CString>(parts.begin(), parts.end()),
              (std::vector<CString>{"DQ0", "RX", "a"}));
    CTokenizer::GetTokenArray(parts, "", "_");
    EXPECT_EQ(parts.GetSize(), 0);

    CStringEx v(" 12.5e-3 V");
    EXPECT_EQ(v.ToDouble(), 12.5e-3);
    EXPECT_EQ(CStringEx("42abc").ToInteger(), 42);
    EXPECT_EQ(static_cast<int>(CStringEx("x")), 0);

    CString s;
    s.Format("Setup Margin: %d ps", 37);
    EXPECT_EQ(s, "Setup Margin: 37 ps");
    EXPECT_EQ(s.Mid(6, 6), "Margin");
    EXPECT_EQ(s.Right(5), "37 ps");
    EXPECT_EQ(s.Find("ps"), 17);
    EXPECT_THROW(s.GetAt(100), CInvalidArgException);

    CStringArray cells;
    for (const char* t : {"10", "9", "b", "A"})
        cells.Add(t);
    CStringSorter().Sort(cells);
    EXPECT_EQ(std::vector<CString>(cells.begin(), cells.end()),
              (std::vector<CString>{"9", "10", "A", "b"}));
}
