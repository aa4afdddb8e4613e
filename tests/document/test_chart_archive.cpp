#include "document/record_bytes.h"

#include <plotvane/document/ChartMarkers.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/foundation/Exceptions.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

namespace
{
using plotvane_test::Axis;
using plotvane_test::Bytes;
using plotvane_test::DefaultText;
using plotvane_test::Store;

// Loads and answers the archive exception's cause, or -1 when none was raised.
// pNext receives the int that follows what the manager read.
int Load(CPlotvane_Manager& m, const Bytes& b, int* pNext = nullptr)
{
    plotvane_test::Loader in(b);
    return plotvane_test::CauseOf(
        [&]
        {
            m.Serialize(in.ar);
            if (pNext)
                in.ar >> *pNext;
        });
}

Bytes Attribute(const Bytes& x, const Bytes& y)
{
    return Bytes().I32(1).Add(x).Add(y).I32(0).Str("").I32(0);
}

struct Pt
{
    double x, y;
};

Bytes Wave(const std::string& name, uint32_t color, std::vector<Pt> pts)
{
    Bytes b;
    b.ArrayHeader(3, pts.size());
    for (Pt p : pts)
        b.I32(1).F64(p.x).F64(p.y);
    b.Str(name).I32(color).I32(1).I32(0).Count(0).F64(1.0).I32(0).I32(-1).I32(-1).I32(0).I32(0);
    b.F64(0).F64(0).F64(0).F64(0).F64(0).I32(0).I32(0xED92A2).I32(0xEBD294).I32(0xFCCBF4);
    b.Str("").I32(-1).F64(0).F64(0).F64(0).I32(-1).F64(0).F64(0).I32(0).F64(0).F64(0).I32(0);
    return b.F64(0).I32(-1);
}

Bytes EmptyStore()
{
    Bytes b;
    b.I32(1).ArrayHeader(1, 0).I32(0).Count(0);
    return b.F64(0).F64(0).F64(0).F64(0).I32(0).I32(0).I32(0).I32(0).F64(100.0).F64(100.0);
}

// A default manager's fields after the cursor lines, up to the click-zoom end.
Bytes DefaultFieldsAfterLines()
{
    Bytes b;
    for (int i = 0; i < 6; ++i)
        b.I32(0);
    b.Count(0).Count(0).I32(0).I32(0);
    return b.I32(0).I32(0).I32(0).I32(0).I32(0).I32(0).F32(0).F32(0).I32(0).I32(0);
}

// A default manager's fields from the unit flag to the click-zoom end.
Bytes DefaultFieldsTo22()
{
    return Bytes().I32(1).I32(0).ArrayHeader(1, 0).Add(DefaultFieldsAfterLines());
}

// Two data sets, drawn, with axis names; the sets' colours are fixed, since a
// new set draws a random one.
void FillData(CPlotvane_Manager& m)
{
    CPlotvane_InputData::SetViewScaleX(100.0);
    CPlotvane_InputData::SetViewScaleY(100.0);
    m.SetAxisXName("Time");
    m.SetUnitNameX("s");
    m.SetAxisYName("Volt");
    CPlotvane_InputData& d = m.m_InputData;
    d.SetCurrentEditSet(d.AddNewDataSet());
    d.SetCurrentEditSetName("DQ0");
    d.SetGraphColor(CColor(0x0000FF));
    d.AddData(1e-9, 0.5);
    d.AddData(2e-9, -0.25);
    d.SetCurrentEditSet(d.AddNewDataSet());
    d.SetCurrentEditSetName("DQS");
    d.SetGraphColor(CColor(0x00FF00));
    d.AddData(0.0, 1.0);
    d.AddDrawDataSetIndex(0);
    d.AddDrawDataSetIndex(1);
}

// A box whose fields all differ, so that its record bytes pin their order.
CChartClippingBox* NewBox()
{
    CChartClippingBox* p = new CChartClippingBox;
    p->m_strName = "B";
    p->m_dX1 = 1.0;
    p->m_dY1 = 2.0;
    p->m_dX2 = 3.0;
    p->m_dY2 = 4.0;
    p->m_bVisible = 0;
    p->m_dWidth = 2.0;
    p->m_dHeight = 5.0;
    return p;
}

Bytes BoxRecord()
{
    Bytes b;
    b.I32(2).Str("B").I32(1).I32(0).I32(0xFAC864).F64(1).F64(2).F64(3).F64(4).F64(2).F64(5);
    return b.Add(DefaultText()).Add(DefaultText());
}

// The store of FillData: the X axis has seen exponent -8 (1e-9).
Bytes DataPrefix()
{
    Bytes b;
    b.I32(4).Add(Attribute(Axis("Time", -8, "s"), Axis("Volt", 0, "")));
    b.I32(1).ArrayHeader(1, 2);
    b.Add(Wave("DQ0", 0x0000FF, {{1e-9, 0.5}, {2e-9, -0.25}}));
    b.Add(Wave("DQS", 0x00FF00, {{0.0, 1.0}}));
    b.I32(1).Count(2).I32(0).I32(1);
    return b.F64(0).F64(0).F64(0).F64(0).I32(0).I32(0).I32(0).I32(0).F64(100.0).F64(100.0);
}
} // namespace

TEST(ChartArchive, EmptyChartBytes)
{
    CPlotvane_InputData::SetViewScaleX(100.0);
    CPlotvane_InputData::SetViewScaleY(100.0);
    CPlotvane_Manager m;
    Bytes want;
    want.I32(4).Add(Attribute(Axis("", 0, ""), Axis("", 0, ""))).Add(EmptyStore());
    want.Add(DefaultFieldsTo22()).I32(0).I32(0).I32(0).ArrayHeader(1, 0).I32(0).I32(1).I32(0);
    EXPECT_EQ(Store(m), want);
}

TEST(ChartArchive, ChartWithSetsLineAndBoxBytesAndOverRead)
{
    CPlotvane_Manager m;
    FillData(m);
    m.m_bViewScaleChanged = 1;
    CChartClippingLine* pLine = new CChartClippingLine;
    pLine->m_strName = "T1";
    pLine->m_dPosition = 2.5;
    pLine->m_arrClippingValue.Add(0.25);
    m.m_pClippingLineArray->Add(pLine);
    m.m_pClippingBoxArray->Add(NewBox());

    Bytes want = DataPrefix();
    want.I32(1).I32(1).ArrayHeader(1, 1);
    want.I32(3).Str("T1").I32(1).I32(1).F64(2.5).I32(0xFAC864).I32(0).Count(1).F64(0.25);
    want.Add(DefaultText()).ArrayHeader(1, 0).F64(0).F64(0).F64(0).F64(0).Add(DefaultText());
    want.Add(DefaultFieldsAfterLines()).I32(0).I32(0).I32(0);
    want.ArrayHeader(1, 1).Add(BoxRecord()).I32(0).I32(1).I32(0);
    const Bytes saved = Store(m);
    ASSERT_EQ(saved, want);

    // Reading the line record runs on into a second record without a version
    // word: 67 bytes of the zero fields after it. The six flags are then read
    // 67 bytes late (the last one takes a byte of the box header: 256), and
    // the first values array gets a count of 0x0180 that the stream can't
    // hold.
    CPlotvane_Manager r;
    r.m_bClippingVertical = 7;
    r.m_arrClippingValueX.Add(9.0);
    EXPECT_EQ(Load(r, saved), CArchiveException::endOfFile);
    EXPECT_EQ(r.m_Attribute, m.m_Attribute);
    EXPECT_EQ(r.m_InputData, m.m_InputData);
    EXPECT_EQ(r.m_InputData.GetChartPointDArray(1)->m_strName, CString("DQS"));
    EXPECT_EQ(r.m_bViewScaleChanged, 1);
    ASSERT_EQ(r.m_pClippingLineArray->GetSize(), 1);
    const CChartClippingLine& read = *r.m_pClippingLineArray->GetAt(0);
    EXPECT_EQ(std::make_tuple(read.m_strName, read.m_bVertical, read.m_bVisible, read.m_dPosition,
                              read.m_color, read.m_arrClippingValue.GetSize()),
              std::make_tuple(CString(""), 0, 0, 0.0, COLORREF(0), INT_PTR(0)));
    EXPECT_EQ(r.m_bClippingVertical, 0);
    EXPECT_EQ(r.m_bClippingHorizontalDistance, 256);
    ASSERT_EQ(r.m_arrClippingValueX.GetSize(), 1);
    EXPECT_EQ(r.m_arrClippingValueX[0], 9.0);
    EXPECT_EQ(r.m_pClippingBoxArray->GetSize(), 0);
}

namespace
{
// A chart without cursor lines, with a distinct value in every field.
void FillDistinct(CPlotvane_Manager& m)
{
    FillData(m);
    m.m_bApplyUnit = 0;
    m.m_bViewScaleChanged = 1;
    m.m_bClippingVertical = 11;
    m.m_bClippingHorizontal = 12;
    m.m_bClippingVerticalValue = 13;
    m.m_bClippingHorizontalValue = 14;
    m.m_bClippingVerticalDistance = 15;
    m.m_bClippingHorizontalDistance = 16;
    m.m_arrClippingValueX.Add(1.5);
    m.m_ptCurrentMouse = CPointN(3, 4);
    m.m_nBaseZoomLevel = 5;
    m.m_bClickZoomAvailable = 6;
    m.m_bClickZoomStarted = 7;
    m.m_nClickZoomState = 8;
    m.m_ptClickZoomStart = CPointN(9, 10);
    m.m_ptClickZoomStartLP = CPointF(1.25f, 2.5f);
    m.m_ptClickZoomEnd = CPointN(11, 12);
    m.m_nFrequencyScale = 1;
    m.m_bClippingVerticalBox = 0;
    m.m_bClippingHorizontalBox = 1;
    m.m_pClippingBoxArray->Add(NewBox());
    m.m_nDisplayOption = 2;
    m.m_bUseMagnitude = 0;
    m.m_nMagnitudeScale = 1;
}
} // namespace

TEST(ChartArchive, Version4LoadRaisesReadOnlyAfterEverythingElse)
{
    CPlotvane_Manager m;
    FillDistinct(m);
    Bytes want = DataPrefix();
    want.I32(0).I32(1).ArrayHeader(1, 0).I32(11).I32(12).I32(13).I32(14).I32(15).I32(16);
    want.Count(1).F64(1.5).Count(0).I32(3).I32(4).I32(5).I32(6).I32(7).I32(8);
    want.I32(9).I32(10).F32(1.25f).F32(2.5f).I32(11).I32(12).I32(1).I32(0).I32(1);
    want.ArrayHeader(1, 1).Add(BoxRecord()).I32(2).I32(0).I32(1);
    const Bytes saved = Store(m);
    ASSERT_EQ(saved, want);

    CPlotvane_Manager r;
    r.m_bClippingHorizontalBox = 5;
    CPlotvane_InputData::SetViewScaleX(1.0);
    EXPECT_EQ(Load(r, saved), CArchiveException::readOnly);
    EXPECT_EQ(CPlotvane_InputData::m_dViewScaleX, 100.0);
    // Both box flags went into the vertical one; the magnitude pair is the
    // loader's own.
    EXPECT_EQ(r.m_bClippingVerticalBox, 1);
    EXPECT_EQ(r.m_bClippingHorizontalBox, 5);
    EXPECT_EQ(r.m_bUseMagnitude, 1);
    EXPECT_EQ(r.m_nMagnitudeScale, 0);
    EXPECT_EQ(r.m_nDisplayOption, 2);
    EXPECT_EQ(r.m_Attribute.m_XAxis.m_nMinExponent, -8);
    r.m_bClippingVerticalBox = 0;
    r.m_bClippingHorizontalBox = 1;
    EXPECT_TRUE(r == m);
}

TEST(ChartArchive, OlderVersionsReadUpToTheirMark)
{
    const Bytes head =
        Bytes().Add(Attribute(Axis("Old", 0, ""), Axis("", 0, ""))).Add(EmptyStore());
    // What a later version would hold, then a marker the test reads back.
    const Bytes tail = Bytes().I32(2).I32(4).I32(1).ArrayHeader(1, 0).I32(3);
    for (int v : {1, 2, 3})
    {
        SCOPED_TRACE(v);
        const Bytes b = Bytes().I32(v).Add(head).Add(DefaultFieldsTo22()).Add(tail);
        CPlotvane_Manager r;
        r.m_nFrequencyScale = 9;
        r.m_bClippingHorizontalBox = 9;
        r.m_nDisplayOption = 9;
        r.m_pClippingBoxArray->Add(NewBox());
        int next = 0;
        EXPECT_EQ(Load(r, b, &next), -1);
        EXPECT_EQ(r.GetAxisXName(), CString("Old"));
        // Version 1 stops after the click-zoom end, 2 after the frequency
        // scale, 3 after the boxes.
        EXPECT_EQ(next, v == 1 ? 2 : v == 2 ? 4 : 3);
        EXPECT_EQ(r.m_nFrequencyScale, v == 1 ? 9 : 2);
        EXPECT_EQ(r.m_bClippingVerticalBox, v == 3 ? 1 : 0);
        EXPECT_EQ(r.m_bClippingHorizontalBox, 9);
        EXPECT_EQ(r.m_pClippingBoxArray->GetSize(), v == 3 ? 0 : 1);
        EXPECT_EQ(r.m_nDisplayOption, 9);
    }
    for (int v : {0, -3})
    {
        CPlotvane_Manager r;
        int next = 0;
        EXPECT_EQ(Load(r, Bytes().I32(v).I32(77), &next), -1);
        EXPECT_EQ(next, 77);
    }
    CPlotvane_Manager r;
    EXPECT_EQ(Load(r, Bytes().I32(9).Add(head).Add(DefaultFieldsTo22()).Add(tail)),
              CArchiveException::readOnly);
    EXPECT_EQ(r.m_nDisplayOption, 3);
}

TEST(ChartArchive, TruncatedArchiveRaisesEndOfFileKeepingWhatCameBefore)
{
    CPlotvane_Manager m;
    FillDistinct(m);
    const Bytes full = Store(m);
    for (size_t n = 0; n < full.size(); ++n)
    {
        CPlotvane_Manager r;
        Bytes cut;
        cut.insert(cut.end(), full.begin(), full.begin() + long(n));
        // The last 8 bytes, the magnitude pair, are never read.
        const int want =
            n < full.size() - 8 ? CArchiveException::endOfFile : CArchiveException::readOnly;
        ASSERT_EQ(Load(r, cut), want) << n;
    }
    // Cut inside the box's last text: the box is there, the fields after it
    // are not.
    CPlotvane_Manager r;
    Bytes cut;
    cut.insert(cut.end(), full.begin(), full.end() - 20);
    EXPECT_EQ(Load(r, cut), CArchiveException::endOfFile);
    EXPECT_EQ(r.m_nFrequencyScale, 1);
    EXPECT_EQ(r.m_bClippingVerticalBox, 1);
    ASSERT_EQ(r.m_pClippingBoxArray->GetSize(), 1);
    EXPECT_EQ(r.m_pClippingBoxArray->GetAt(0)->m_strName, CString("B"));
    EXPECT_EQ(r.m_nDisplayOption, 0);
}
