#include <plotvane/document/ChartMarkers.h>

#include <plotvane/foundation/ArrayRecord.h>

namespace
{
// Every record starts with its version word, so that is the least one can take.
constexpr ULONGLONG kMinRecordBytes = 4;
constexpr DWORD kArrayVersion = 1;
constexpr int kBoxVersion = 2;

constexpr COLORREF kDefaultTextColor = 0xFFFFFF;
constexpr COLORREF kDefaultCursorColor = 0xFAC864;

// Two owned texts are equal when both are absent or their contents match.
bool SameText(const CChartTextData* a, const CChartTextData* b)
{
    if (a == b)
        return true;
    if (!a || !b)
        return false;
    return *a == *b;
}

// Copies a text's content into an owned one, creating it if needed.
void AssignText(CChartTextData*& pDest, const CChartTextData* pSrc)
{
    if (pDest == pSrc || !pSrc)
        return;
    if (!pDest)
        pDest = new CChartTextData(*pSrc);
    else
        *pDest = *pSrc;
}

// An owned text written or read in place; a missing one is written as a
// default text and created on reading, so the record keeps its shape.
void SerializeText(CArchive& ar, CChartTextData*& p)
{
    if (!p)
    {
        if (ar.IsStoring())
        {
            CChartTextData().Serialize(ar);
            return;
        }
        p = new CChartTextData;
    }
    p->Serialize(ar);
}

void SerializeTextArray(CArchive& ar, CChartTextDataArray*& p)
{
    if (!p)
    {
        if (ar.IsStoring())
        {
            CChartTextDataArray().Serialize(ar);
            return;
        }
        p = new CChartTextDataArray;
    }
    p->Serialize(ar);
}

// Element by element, through the pointers; a null equals only a null.
template <class ARRAY> bool SameRecords(const ARRAY& a, const ARRAY& b)
{
    if (&a == &b)
        return true;
    if (a.GetSize() != b.GetSize())
        return false;
    for (INT_PTR i = 0; i < a.GetSize(); ++i)
    {
        const auto* pa = a.GetData()[i];
        const auto* pb = b.GetData()[i];
        if (pa == pb)
            continue;
        if (!pa || !pb || *pa != *pb)
            return false;
    }
    return true;
}

// Empties dest and appends a copy-constructed record for each source record.
template <class ARRAY, class RECORD> void CopyRecords(ARRAY& dest, const ARRAY& src)
{
    if (&dest == &src)
        return;
    dest.DeleteAll();
    for (const RECORD* p : src)
        dest.Add(p ? new RECORD(*p) : nullptr);
}
} // namespace

// ---------------------------------------------------------------------------
// CChartTextData

void CChartTextData::Init()
{
    m_dX = 0.0;
    m_dY = 0.0;
    m_strText.Empty();
    m_bVisible = 1;
    m_color = kDefaultTextColor;
    m_nFontSize = 12;
}

bool CChartTextData::operator==(const CChartTextData& o) const
{
    return m_dX == o.m_dX && m_dY == o.m_dY && m_strText.Compare(o.m_strText) == 0 &&
           m_bVisible == o.m_bVisible && m_color == o.m_color && m_nFontSize == o.m_nFontSize &&
           m_dHeight == o.m_dHeight && m_dWidth == o.m_dWidth;
}

void CChartTextData::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << int(m_nVersion) << m_dX << m_dY << m_strText << m_bVisible << m_color << m_nFontSize
           << m_dHeight << m_dWidth;
        return;
    }
    int nVersion = 0;
    ar >> nVersion;
    if (nVersion != 1 && nVersion != 2)
        return;
    ar >> m_dX >> m_dY >> m_strText >> m_bVisible >> m_color >> m_nFontSize;
    // Version 1 had no measured size; what the text holds stays.
    if (nVersion == 2)
        ar >> m_dHeight >> m_dWidth;
}

CChartTextDataArray::CChartTextDataArray(const CChartTextDataArray& o)
    : CExPtrArray<CChartTextData*, CChartTextData*>()
{
    *this = o;
}

CChartTextDataArray& CChartTextDataArray::operator=(const CChartTextDataArray& o)
{
    CopyRecords<CChartTextDataArray, CChartTextData>(*this, o);
    return *this;
}

bool CChartTextDataArray::operator==(const CChartTextDataArray& o) const
{
    return SameRecords(*this, o);
}

void CChartTextDataArray::Serialize(CArchive& ar)
{
    plotvane::SerializeRecordArray<CChartTextData>(ar, *this, kArrayVersion, kMinRecordBytes);
}

// ---------------------------------------------------------------------------
// CChartLineData

void CChartLineData::Init()
{
    m_dX1 = 0.0;
    m_dY1 = 0.0;
    m_dX2 = 0.0;
    m_dY2 = 0.0;
    m_dWidth = 1.0;
    m_nStyle = 1;
    m_color = kDefaultTextColor;
}

bool CChartLineData::operator==(const CChartLineData& o) const
{
    return m_dX1 == o.m_dX1 && m_dY1 == o.m_dY1 && m_dX2 == o.m_dX2 && m_dY2 == o.m_dY2 &&
           m_dWidth == o.m_dWidth && m_nStyle == o.m_nStyle && m_color == o.m_color;
}

void CChartLineData::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << int(m_nVersion) << m_dX1 << m_dY1 << m_dX2 << m_dY2 << m_dWidth << m_nStyle
           << m_color;
        return;
    }
    int nVersion = 0;
    ar >> nVersion;
    if (nVersion == 1)
        ar >> m_dX1 >> m_dY1 >> m_dX2 >> m_dY2 >> m_dWidth >> m_nStyle >> m_color;
}

CChartLineDataArray::CChartLineDataArray(const CChartLineDataArray& o)
    : CExPtrArray<CChartLineData*, CChartLineData*>()
{
    *this = o;
}

CChartLineDataArray& CChartLineDataArray::operator=(const CChartLineDataArray& o)
{
    CopyRecords<CChartLineDataArray, CChartLineData>(*this, o);
    return *this;
}

bool CChartLineDataArray::operator==(const CChartLineDataArray& o) const
{
    return SameRecords(*this, o);
}

void CChartLineDataArray::Serialize(CArchive& ar)
{
    plotvane::SerializeRecordArray<CChartLineData>(ar, *this, kArrayVersion, kMinRecordBytes);
}

// ---------------------------------------------------------------------------
// CChartClippingLine

CChartClippingLine::CChartClippingLine()
{
    Init();
}

CChartClippingLine::CChartClippingLine(const CChartClippingLine& o)
    : m_strName(o.m_strName), m_bVertical(o.m_bVertical), m_bVisible(o.m_bVisible),
      m_dPosition(o.m_dPosition), m_color(o.m_color), m_arrClippingValue(o.m_arrClippingValue),
      m_pValueText(o.m_pValueText), m_pClippingTextArray(o.m_pClippingTextArray),
      m_bDistanceEnd(o.m_bDistanceEnd), m_ptDistanceStart(o.m_ptDistanceStart),
      m_ptDistanceEnd(o.m_ptDistanceEnd), m_pDistanceText(o.m_pDistanceText)
{
}

CChartClippingLine::~CChartClippingLine()
{
    delete m_pValueText;
    delete m_pClippingTextArray;
    delete m_pDistanceText;
}

// The crossing labels belong to this line's own crossings and stay; so does
// its place in a distance pair.
CChartClippingLine& CChartClippingLine::operator=(const CChartClippingLine& o)
{
    if (this == &o)
        return *this;
    m_strName = o.m_strName;
    m_bVertical = o.m_bVertical;
    m_bVisible = o.m_bVisible;
    m_dPosition = o.m_dPosition;
    m_color = o.m_color;
    m_arrClippingValue = o.m_arrClippingValue;
    AssignText(m_pValueText, o.m_pValueText);
    m_ptDistanceStart = o.m_ptDistanceStart;
    m_ptDistanceEnd = o.m_ptDistanceEnd;
    AssignText(m_pDistanceText, o.m_pDistanceText);
    return *this;
}

bool CChartClippingLine::operator==(const CChartClippingLine& o) const
{
    if (m_strName.Compare(o.m_strName) != 0 || m_bVertical != o.m_bVertical ||
        m_bVisible != o.m_bVisible || m_dPosition != o.m_dPosition || m_color != o.m_color)
        return false;
    if (!SameText(m_pValueText, o.m_pValueText))
        return false;
    if (m_pClippingTextArray != o.m_pClippingTextArray &&
        (!m_pClippingTextArray || !o.m_pClippingTextArray ||
         *m_pClippingTextArray != *o.m_pClippingTextArray))
        return false;
    return m_ptDistanceStart == o.m_ptDistanceStart && m_ptDistanceEnd == o.m_ptDistanceEnd &&
           SameText(m_pDistanceText, o.m_pDistanceText) &&
           m_arrClippingValue == o.m_arrClippingValue;
}

void CChartClippingLine::Init()
{
    m_strName.Empty();
    m_bVertical = 1;
    m_bVisible = 1;
    m_dPosition = 0.0;
    m_color = kDefaultCursorColor;
    m_arrClippingValue.RemoveAll();
    m_pValueText = new CChartTextData;
    m_pClippingTextArray = new CChartTextDataArray;
    m_bDistanceEnd = 0;
    m_ptDistanceStart = CPointD(0.0, 0.0);
    m_ptDistanceEnd = CPointD(0.0, 0.0);
    m_pDistanceText = new CChartTextData;
}

// The fields after the values array, as versions 2 and 3 write them.
void CChartClippingLine::SerializeVersion2Fields(CArchive& ar)
{
    SerializeText(ar, m_pValueText);
    SerializeTextArray(ar, m_pClippingTextArray);
    m_ptDistanceStart.Serialize(ar);
    m_ptDistanceEnd.Serialize(ar);
    SerializeText(ar, m_pDistanceText);
}

void CChartClippingLine::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << int(m_nVersion) << m_strName << m_bVertical << m_bVisible << m_dPosition << m_color
           << m_bDistanceEnd;
        m_arrClippingValue.Serialize(ar);
        SerializeVersion2Fields(ar);
        return;
    }
    int nVersion = 0;
    ar >> nVersion;
    switch (nVersion)
    {
    case 1:
        ar >> m_strName >> m_bVertical >> m_bVisible >> m_dPosition >> m_color;
        m_arrClippingValue.Serialize(ar);
        break;
    case 3:
        ar >> m_strName >> m_bVertical >> m_bVisible >> m_dPosition >> m_color >> m_bDistanceEnd;
        m_arrClippingValue.Serialize(ar);
        SerializeVersion2Fields(ar);
        // Files written at this version are read with this fall-through, so
        // a second record of the version 2 shape, without a version word, is
        // read over the first. Readers of existing files depend on it.
        [[fallthrough]];
    case 2:
        ar >> m_strName >> m_bVertical >> m_bVisible >> m_dPosition >> m_color;
        m_arrClippingValue.Serialize(ar);
        SerializeVersion2Fields(ar);
        break;
    default:
        break;
    }
}

CChartClippingLineArray::CChartClippingLineArray(const CChartClippingLineArray& o)
    : CExPtrArray<CChartClippingLine*, CChartClippingLine*>()
{
    *this = o;
}

CChartClippingLineArray& CChartClippingLineArray::operator=(const CChartClippingLineArray& o)
{
    CopyRecords<CChartClippingLineArray, CChartClippingLine>(*this, o);
    return *this;
}

bool CChartClippingLineArray::operator==(const CChartClippingLineArray& o) const
{
    return SameRecords(*this, o);
}

void CChartClippingLineArray::Serialize(CArchive& ar)
{
    plotvane::SerializeRecordArray<CChartClippingLine>(ar, *this, kArrayVersion, kMinRecordBytes);
}

// ---------------------------------------------------------------------------
// CChartClippingBox

CChartClippingBox::CChartClippingBox()
    : m_pWidthText(new CChartTextData), m_pHeightText(new CChartTextData)
{
    Init();
}

CChartClippingBox::CChartClippingBox(const CChartClippingBox& o)
    : m_strName(o.m_strName), m_bVertical(o.m_bVertical), m_bVisible(o.m_bVisible),
      m_color(o.m_color), m_dX1(o.m_dX1), m_dY1(o.m_dY1), m_dX2(o.m_dX2), m_dY2(o.m_dY2),
      m_dWidth(o.m_dWidth), m_dHeight(o.m_dHeight), m_pWidthText(o.m_pWidthText),
      m_pHeightText(o.m_pHeightText)
{
}

CChartClippingBox::~CChartClippingBox()
{
    delete m_pWidthText;
    delete m_pHeightText;
}

CChartClippingBox& CChartClippingBox::operator=(const CChartClippingBox& o)
{
    if (this == &o)
        return *this;
    m_strName = o.m_strName;
    m_bVertical = o.m_bVertical;
    m_bVisible = o.m_bVisible;
    m_color = o.m_color;
    m_dX1 = o.m_dX1;
    m_dY1 = o.m_dY1;
    m_dX2 = o.m_dX2;
    m_dY2 = o.m_dY2;
    m_dWidth = o.m_dWidth;
    m_dHeight = o.m_dHeight;
    AssignText(m_pWidthText, o.m_pWidthText);
    AssignText(m_pHeightText, o.m_pHeightText);
    return *this;
}

bool CChartClippingBox::operator==(const CChartClippingBox& o) const
{
    return m_strName.Compare(o.m_strName) == 0 && m_bVertical == o.m_bVertical &&
           m_bVisible == o.m_bVisible && m_color == o.m_color && m_dX1 == o.m_dX1 &&
           m_dY1 == o.m_dY1 && m_dX2 == o.m_dX2 && m_dY2 == o.m_dY2 && m_dWidth == o.m_dWidth &&
           m_dHeight == o.m_dHeight && SameText(m_pWidthText, o.m_pWidthText) &&
           SameText(m_pHeightText, o.m_pHeightText);
}

void CChartClippingBox::Init()
{
    m_strName.Empty();
    m_bVertical = 1;
    m_bVisible = 1;
    m_color = kDefaultCursorColor;
    m_dX1 = 0.0;
    m_dY1 = 0.0;
    m_dX2 = 0.0;
    m_dY2 = 0.0;
    m_dWidth = 0.0;
    m_dHeight = 0.0;
    if (m_pWidthText)
        m_pWidthText->Init();
    if (m_pHeightText)
        m_pHeightText->Init();
}

void CChartClippingBox::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << kBoxVersion << m_strName << m_bVertical << m_bVisible << m_color << m_dX1 << m_dY1
           << m_dX2 << m_dY2 << m_dWidth << m_dHeight;
        SerializeText(ar, m_pWidthText);
        SerializeText(ar, m_pHeightText);
        return;
    }
    int nVersion = 0;
    ar >> nVersion;
    if (nVersion != 1 && nVersion != 2)
        return;
    ar >> m_strName >> m_bVertical >> m_bVisible >> m_color >> m_dX1 >> m_dY1 >> m_dX2 >> m_dY2 >>
        m_dWidth >> m_dHeight;
    if (nVersion == 2)
    {
        SerializeText(ar, m_pWidthText);
        SerializeText(ar, m_pHeightText);
    }
}

CChartClippingBoxArray::CChartClippingBoxArray(const CChartClippingBoxArray& o)
    : CExPtrArray<CChartClippingBox*, CChartClippingBox*>()
{
    *this = o;
}

CChartClippingBoxArray& CChartClippingBoxArray::operator=(const CChartClippingBoxArray& o)
{
    CopyRecords<CChartClippingBoxArray, CChartClippingBox>(*this, o);
    return *this;
}

bool CChartClippingBoxArray::operator==(const CChartClippingBoxArray& o) const
{
    return SameRecords(*this, o);
}

void CChartClippingBoxArray::Serialize(CArchive& ar)
{
    plotvane::SerializeRecordArray<CChartClippingBox>(ar, *this, kArrayVersion, kMinRecordBytes);
}
