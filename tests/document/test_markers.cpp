#include "document/record_bytes.h"

#include <plotvane/document/ChartMarkers.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/document/TargetImp.h>
#include <plotvane/foundation/Exceptions.h>

#include <gtest/gtest.h>

#include <vector>

namespace
{
using plotvane_test::Bytes;
using plotvane_test::DefaultText;
using plotvane_test::Loader;
using plotvane_test::Store;

// Drops the texts a copy shares with its source, so that only the source
// deletes them.
void ReleaseShared(CChartClippingLine& l)
{
    l.m_pValueText = nullptr;
    l.m_pClippingTextArray = nullptr;
    l.m_pDistanceText = nullptr;
}
} // namespace

TEST(ChartTextData, RecordBytesAndVersionOneRead)
{
    CChartTextData t;
    t.m_dX = 1.5;
    t.m_dY = -2.0;
    t.m_strText = "Hi";
    t.m_color = 0x0000FF;
    t.m_dHeight = 3.0;
    t.m_dWidth = 0.5;
    const Bytes expected =
        Bytes().I32(2).F64(1.5).F64(-2.0).Str("Hi").I32(1).I32(0xFF).I32(12).F64(3.0).F64(0.5);
    EXPECT_EQ(Store(t), expected);

    CChartTextData back;
    {
        Loader in(expected);
        back.Serialize(in.ar);
    }
    EXPECT_TRUE(back == t);

    // Version 1 has no size: what the text holds stays, and the read ends
    // right after the font size.
    Bytes v1 = Bytes().I32(1).F64(4).F64(5).Str("a").I32(0).I32(7).I32(9).I32(0xABCD);
    Loader in(v1);
    back.Serialize(in.ar);
    int next = 0;
    in.ar >> next;
    EXPECT_EQ(next, 0xABCD);
    EXPECT_EQ(back.m_dX, 4.0);
    EXPECT_EQ(back.m_nFontSize, 9);
    EXPECT_EQ(back.m_dHeight, 3.0);
    EXPECT_EQ(back.m_dWidth, 0.5);
}

TEST(ChartClippingLine, RecordBytesAndTheVersionThreeOverRead)
{
    CChartClippingLine line;
    line.m_strName = "L";
    line.m_bVertical = 0;
    line.m_dPosition = 2.5;
    line.m_bDistanceEnd = 1;
    line.m_arrClippingValue.Add(0.5);
    line.m_pClippingTextArray->Add(new CChartTextData);
    line.m_ptDistanceStart = CPointD(1, 2);
    line.m_ptDistanceEnd = CPointD(3, 4);

    Bytes stream = Bytes().I32(3).Str("L").I32(0).I32(1).F64(2.5).I32(0xFAC864).I32(1);
    stream.Count(1).F64(0.5).Add(DefaultText());
    stream.ArrayHeader(1, 1).Add(DefaultText());
    stream.F64(1).F64(2).F64(3).F64(4).Add(DefaultText());
    EXPECT_EQ(Store(line), stream);

    // Reading runs on into what it takes as the record's second half: the
    // version 2 shape with no version word.
    stream.Str("M").I32(0).I32(0).F64(9.0).I32(7).Count(0).Add(DefaultText()).ArrayHeader(1, 0);
    stream.F64(5).F64(6).F64(7).F64(8).Add(DefaultText()).I32(0x12345678);
    CChartClippingLine back;
    Loader in(stream);
    back.Serialize(in.ar);
    int next = 0;
    in.ar >> next;
    EXPECT_EQ(next, 0x12345678);
    EXPECT_STREQ(back.m_strName, "M");
    EXPECT_EQ(back.m_dPosition, 9.0);
    EXPECT_EQ(back.m_color, 7u);
    EXPECT_EQ(back.m_bDistanceEnd, 1); // only the first half has it
    EXPECT_EQ(back.m_ptDistanceEnd, CPointD(7, 8));
}

TEST(ChartClippingLine, OlderVersionsAndArrayHeaders)
{
    // Version 1 stops after the values and leaves the texts alone.
    const Bytes v1 = Bytes().I32(1).Str("A").I32(1).I32(0).F64(3.0).I32(5).Count(0).I32(0xFEED);
    CChartClippingLine line;
    line.m_pValueText->m_strText = "kept";
    Loader in(v1);
    line.Serialize(in.ar);
    int next = 0;
    in.ar >> next;
    EXPECT_EQ(next, 0xFEED);
    EXPECT_EQ(line.m_bVisible, 0);
    EXPECT_STREQ(line.m_pValueText->m_strText, "kept");

    // A 4-byte count loads as well; an unknown version empties the array.
    CChartTextDataArray texts;
    Bytes shortCount = Bytes().I32(1).I32(1).Add(DefaultText());
    Loader in2(shortCount);
    texts.Serialize(in2.ar);
    EXPECT_EQ(texts.GetSize(), 1);
    Loader in3(Bytes().ArrayHeader(2, 5));
    texts.Serialize(in3.ar);
    EXPECT_EQ(texts.GetSize(), 0);

    // A count the stream cannot hold fails before anything is allocated.
    Loader in4(Bytes().ArrayHeader(1, 0x7FFFFFFFFFFFFFFFull));
    EXPECT_THROW(texts.Serialize(in4.ar), CArchiveException);
}

TEST(ChartClippingLine, CopyRules)
{
    CChartClippingLine a;
    a.m_strName = "src";
    a.m_bDistanceEnd = 1;
    a.m_pValueText->m_strText = "1.00";
    a.m_pClippingTextArray->Add(new CChartTextData);

    // Assignment copies the texts' contents but keeps its own crossing
    // labels and its distance flag, which equality ignores.
    CChartClippingLine b;
    b = a;
    EXPECT_STREQ(b.m_strName, "src");
    EXPECT_STREQ(b.m_pValueText->m_strText, "1.00");
    EXPECT_NE(b.m_pValueText, a.m_pValueText);
    EXPECT_EQ(b.m_pClippingTextArray->GetSize(), 0);
    EXPECT_EQ(b.m_bDistanceEnd, 0);
    EXPECT_FALSE(b == a);
    b.m_pClippingTextArray->Add(new CChartTextData);
    EXPECT_TRUE(b == a);

    // The copy constructor and the arrays' assignment share the texts.
    CChartClippingLine c(a);
    EXPECT_EQ(c.m_pValueText, a.m_pValueText);
    EXPECT_EQ(c.m_pClippingTextArray, a.m_pClippingTextArray);
    EXPECT_EQ(c.m_bDistanceEnd, 1);
    ReleaseShared(c);

    CChartClippingLineArray src, dst;
    src.Add(new CChartClippingLine(a));
    ReleaseShared(a); // src's line owns the texts now
    dst = src;
    ASSERT_EQ(dst.GetSize(), 1);
    EXPECT_NE(dst[0], src[0]);
    EXPECT_EQ(dst[0]->m_pDistanceText, src[0]->m_pDistanceText);
    EXPECT_TRUE(dst == src);
    ReleaseShared(*dst[0]);
}

// The box's record bytes are pinned by the chart archive's tests.
TEST(ChartClippingBox, VersionOneReadAndEquality)
{
    // Version 1 has no texts.
    Bytes v1 = Bytes().I32(1).Str("").I32(0).I32(1).I32(3);
    v1.F64(1).F64(2).F64(3).F64(4).F64(5).F64(6).I32(42);
    CChartClippingBox back;
    back.m_pWidthText->m_strText = "w";
    Loader in(v1);
    back.Serialize(in.ar);
    int next = 0;
    in.ar >> next;
    EXPECT_EQ(next, 42);
    EXPECT_EQ(back.m_dHeight, 6.0);
    EXPECT_STREQ(back.m_pWidthText->m_strText, "w");

    // Equality looks into both texts.
    CChartClippingBox other;
    other = back;
    EXPECT_TRUE(other == back);
    other.m_pHeightText->m_nFontSize = 8;
    EXPECT_FALSE(other == back);
}

TEST(TargetImp, LookupsAndClones)
{
    CTargetImpWithinFreqRangeArray arr;
    EXPECT_EQ(arr.GetTargetImpByDataIndex(0), nullptr);

    auto* p = new CTargetImpWithinFreqRange;
    p->m_strRefName = "VDD";
    p->AddDataIndex(3);
    p->AddDataIndex(3);
    p->m_pLimitPoints->Add(new CPoint3D(1e3, 1e6, 0.01));
    arr.Add(p);
    EXPECT_EQ(p->m_arrDataIndex.GetSize(), 1);
    EXPECT_EQ(arr.GetTargetImpByDataIndex(3), p);
    EXPECT_EQ(arr.GetTargetImpByDataIndex(4), nullptr);
    EXPECT_EQ(arr.GetTargetImpByRefName("VDD"), p);
    EXPECT_EQ(arr.GetTargetImpByRefName("vdd"), nullptr);

    CTargetImpWithinFreqRangeArray copy;
    copy = arr;
    ASSERT_EQ(copy.GetSize(), 1);
    EXPECT_NE(copy[0], p);
    EXPECT_NE(copy[0]->m_pLimitPoints, p->m_pLimitPoints);
    EXPECT_EQ(*copy[0]->m_pLimitPoints->GetAt(0), CPoint3D(1e3, 1e6, 0.01));
}

TEST(ClippingValues, CrossingsWithTheDrawnCurves)
{
    CPlotvane_InputData::SetViewScaleX(100.0);
    CPlotvane_InputData::SetViewScaleY(100.0);
    CPlotvane_Manager mgr;
    CPlotvane_InputData& data = mgr.m_InputData;
    CPlotvane_InputData::m_pInputData = &data;
    data.AddNewDataSet();
    data.SetCurrentEditSet(0);
    const double pts[][2] = {{0, 0}, {1, 1}, {2, -1}, {3, 1}};
    for (const auto& pt : pts)
        data.AddData(pt[0], pt[1]);
    data.AddDrawDataSetIndex(0);

    // Three crossings of y = 0.5, in view units, appended on each call.
    CChartClippingLine horizontal;
    horizontal.m_bVertical = 0;
    horizontal.m_dPosition = 50.0;
    horizontal.CalcClippingValueArray();
    const CArrayD& found = horizontal.m_arrClippingValue;
    EXPECT_EQ(std::vector<double>(found.begin(), found.end()),
              (std::vector<double>{50.0, 125.0, 275.0}));
    horizontal.CalcClippingValueArray();
    EXPECT_EQ(horizontal.m_arrClippingValue.GetSize(), 6);

    CChartClippingLineArray lines;
    lines.Add(new CChartClippingLine);
    lines[0]->m_dPosition = 1000.0; // right of every curve
    lines.CalcClippingValueArray(0);
    EXPECT_EQ(lines[0]->m_arrClippingValue.GetSize(), 0);
    lines[0]->m_dPosition = 150.0;
    lines.CalcClippingValueArray(0);
    ASSERT_EQ(lines[0]->m_arrClippingValue.GetSize(), 1);
    EXPECT_NEAR(lines[0]->m_arrClippingValue[0], 0.0, 1e-9);

    // Out of range does nothing, except the count itself.
    lines.CalcClippingValueArray(-1);
    lines.CalcClippingValueArray(2);
    EXPECT_THROW(lines.CalcClippingValueArray(1), CInvalidArgException);
}
