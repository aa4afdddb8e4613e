#include "measure/ChartPointDArray.h"

#include "foundation/ArrayRecord.h"

#include <cstdlib>

namespace
{
// Three draws from the C library's generator, in the order green, blue, red,
// each channel in 50..249. Copies draw too, since later waveforms' colours
// depend on the generator's position.
COLORREF RandomCurveColor()
{
    const int g = std::rand() % 200 + 50;
    const int b = std::rand() % 200 + 50;
    const int r = std::rand() % 200 + 50;
    return RGB(r, g, b);
}
} // namespace

CChartPointDArray::CChartPointDArray() : m_Color(RandomCurveColor()) {}

CChartPointDArray::CChartPointDArray(const CChartPointDArray& other)
    : CExPtrArray<CChartPointD*, CChartPointD*>(), m_Color(RandomCurveColor())
{
    *this = other;
}

CChartPointDArray& CChartPointDArray::operator=(const CChartPointDArray& other)
{
    if (this == &other)
        return *this;
    DeleteAll();
    CopyAttributes(other);
    Storage().reserve(size_t(other.GetSize()));
    for (CChartPointD* p : other)
        Add(new CChartPointD(*p));
    return *this;
}

CChartPointDArray::~CChartPointDArray()
{
    DeleteAll();
}

void CChartPointDArray::CopyAttributes(const CChartPointDArray& o)
{
    m_strName = o.m_strName;
    m_Color = o.m_Color;
    m_bVisible = o.m_bVisible;
    m_nCurve = o.m_nCurve;
    m_SelectRow = o.m_SelectRow;
    m_dLineWidth = o.m_dLineWidth;
    m_bHighlight = o.m_bHighlight;
    m_nDataType = o.m_nDataType;
    m_nStrobeWindowMode = o.m_nStrobeWindowMode;
    m_bClipNegativeX = o.m_bClipNegativeX;
    m_nReserved2 = o.m_nReserved2;
    m_dEyeVref = o.m_dEyeVref;
    m_dEyeSetupTime = o.m_dEyeSetupTime;
    m_dEyeHoldTime = o.m_dEyeHoldTime;
    m_dEyeHoldLevel = o.m_dEyeHoldLevel;
    m_dEyeSetupLevel = o.m_dEyeSetupLevel;
    m_nEyeOneLevel = o.m_nEyeOneLevel;
    m_ColorEye1 = o.m_ColorEye1;
    m_ColorEye2 = o.m_ColorEye2;
    m_ColorEye3 = o.m_ColorEye3;
    m_strNetName = o.m_strNetName;
    m_nPinRole = o.m_nPinRole;
    m_dLevelLow = o.m_dLevelLow;
    m_dLevelHigh = o.m_dLevelHigh;
    m_dPeriod = o.m_dPeriod;
    m_nStrobePhase = o.m_nStrobePhase;
    m_dSetupMargin = o.m_dSetupMargin;
    m_dHoldMargin = o.m_dHoldMargin;
    m_nReadCycle = o.m_nReadCycle;
    m_dReadCycleTime1 = o.m_dReadCycleTime1;
    m_dReadCycleTime2 = o.m_dReadCycleTime2;
    m_nFoldMode = o.m_nFoldMode;
    m_dVcent = o.m_dVcent;
    m_nTimingMode = o.m_nTimingMode;
}

bool CChartPointDArray::operator==(const CChartPointDArray& o) const
{
    if (this == &o)
        return true;
    if (GetSize() != o.GetSize())
        return false;
    for (INT_PTR i = 0; i < GetSize(); ++i)
        if (*GetData()[i] != *o.GetData()[i])
            return false;
    return true;
}

namespace
{
void SerializeColor(CArchive& ar, CColor& c)
{
    if (ar.IsStoring())
        ar << UINT(c.GetColor());
    else
    {
        UINT v = 0;
        ar >> v;
        c.SetColor(v);
    }
}
} // namespace

// Version 1 is the header, the count and the points; version 2 adds the
// attributes; version 3 adds m_nTimingMode.
void CChartPointDArray::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        plotvane::WriteArrayHeader(ar, nVersion, ULONGLONG(GetSize()));
        for (CChartPointD* p : *this)
            p->Serialize(ar);
        ar << m_strName;
        SerializeColor(ar, m_Color);
        ar << m_bVisible << m_nCurve;
        m_SelectRow.Serialize(ar);
        ar << m_dLineWidth << m_bHighlight << m_nDataType << m_nStrobeWindowMode
           << m_bClipNegativeX << m_nReserved2 << m_dEyeVref << m_dEyeSetupTime
           << m_dEyeHoldTime << m_dEyeHoldLevel << m_dEyeSetupLevel << m_nEyeOneLevel;
        SerializeColor(ar, m_ColorEye1);
        SerializeColor(ar, m_ColorEye2);
        SerializeColor(ar, m_ColorEye3);
        ar << m_strNetName << m_nPinRole << m_dLevelLow << m_dLevelHigh << m_dPeriod
           << m_nStrobePhase << m_dSetupMargin << m_dHoldMargin << m_nReadCycle
           << m_dReadCycleTime1 << m_dReadCycleTime2 << m_nFoldMode << m_dVcent
           << m_nTimingMode;
        return;
    }

    DeleteAll();
    const plotvane::ArrayHeader h = plotvane::ReadArrayHeader(ar);
    if (h.nVersion < 1 || h.nVersion > 3)
        return;
    // A point record is a version word and two doubles.
    const ULONGLONG n = plotvane::ReadArrayCount(ar, h, 20);
    Storage().reserve(size_t(n));
    for (ULONGLONG i = 0; i < n; ++i)
    {
        CChartPointD* p = new CChartPointD;
        Add(p);
        p->Serialize(ar);
    }
    if (h.nVersion < 2)
        return;
    ar >> m_strName;
    SerializeColor(ar, m_Color);
    ar >> m_bVisible >> m_nCurve;
    m_SelectRow.Serialize(ar);
    ar >> m_dLineWidth >> m_bHighlight >> m_nDataType >> m_nStrobeWindowMode >> m_bClipNegativeX >>
        m_nReserved2 >> m_dEyeVref >> m_dEyeSetupTime >> m_dEyeHoldTime >> m_dEyeHoldLevel >>
        m_dEyeSetupLevel >> m_nEyeOneLevel;
    SerializeColor(ar, m_ColorEye1);
    SerializeColor(ar, m_ColorEye2);
    SerializeColor(ar, m_ColorEye3);
    ar >> m_strNetName >> m_nPinRole >> m_dLevelLow >> m_dLevelHigh >> m_dPeriod >>
        m_nStrobePhase >> m_dSetupMargin >> m_dHoldMargin >> m_nReadCycle >>
        m_dReadCycleTime1 >> m_dReadCycleTime2 >> m_nFoldMode >> m_dVcent;
    if (h.nVersion >= 3)
        ar >> m_nTimingMode;
}
