#include <plotvane/measure/ChartPointDArray.h>

#include <plotvane/foundation/ArrayRecord.h>
#include <plotvane/foundation/StringEx.h>

#include <cstdlib>
#include <utility>

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

// ---- plain operations

void CChartPointDArray::Shift(double dx, double dy)
{
    for (CChartPointD* p : *this)
        p->Shift(dx, dy);
}

void CChartPointDArray::Multiply(double f)
{
    for (CChartPointD* p : *this)
        p->Multiply(f);
}

// The checked access of the plain array raises on a bad index before anything
// is allocated or freed.
void CChartPointDArray::Modify(INT_PTR i, double x, double y)
{
    CChartPointD*& slot = CArray::ElementAt(i);
    CChartPointD* p = new CChartPointD(x, y);
    delete slot;
    slot = p;
}

void CChartPointDArray::Exchange(INT_PTR i, INT_PTR j)
{
    std::swap(CArray::ElementAt(i), CArray::ElementAt(j));
}

namespace
{
// Extremes of one coordinate, point by point from the first. An empty array
// answers the given sentinel: callers test the size first.
template <class Better>
double Extreme(const CChartPointD* const* p, INT_PTR n, double CChartPointD::*coord,
               double dEmpty, Better better)
{
    if (n == 0)
        return dEmpty;
    double d = p[0]->*coord;
    for (INT_PTR i = 1; i < n; ++i)
        if (better(p[i]->*coord, d))
            d = p[i]->*coord;
    return d;
}

constexpr double kEmptyMax = 1.7976931348623157e308;
constexpr double kEmptyMin = 2.2250738585072014e-308;
bool Less(double a, double b)
{
    return a < b;
}
bool Greater(double a, double b)
{
    return a > b;
}
} // namespace

double CChartPointDArray::GetMinX() const
{
    return Extreme(GetData(), GetSize(), &CChartPointD::X, kEmptyMin, Less);
}

double CChartPointDArray::GetMaxX() const
{
    return Extreme(GetData(), GetSize(), &CChartPointD::X, kEmptyMax, Greater);
}

double CChartPointDArray::GetMinY() const
{
    return Extreme(GetData(), GetSize(), &CChartPointD::Y, kEmptyMin, Less);
}

double CChartPointDArray::GetMaxY() const
{
    return Extreme(GetData(), GetSize(), &CChartPointD::Y, kEmptyMax, Greater);
}

// The earliest of equal maxima wins.
void CChartPointDArray::GetMaxpoint(int& nIndex, double& dY) const
{
    nIndex = -1;
    dY = kEmptyMax;
    const CChartPointD* const* p = GetData();
    for (INT_PTR i = 0; i < GetSize(); ++i)
    {
        if (nIndex < 0 || p[i]->Y > dY)
        {
            nIndex = int(i);
            dY = p[i]->Y;
        }
    }
}

int CChartPointDArray::IsExistZeroValueY() const
{
    for (const CChartPointD* p : *this)
        if (p->Y == 0.0)
            return 1;
    return 0;
}

// An absolute tolerance of 0.001 in X units, and the last passing index:
// hosts rely on both as they stand.
int CChartPointDArray::IsXValueExistence(double x) const
{
    int nFound = -1;
    const CChartPointD* const* p = GetData();
    for (INT_PTR i = 0; i < GetSize(); ++i)
    {
        const double d = p[i]->X - x;
        if (d * d < 1e-6)
            nFound = int(i);
    }
    return nFound;
}

namespace
{
// Two bits of logic levels read off an eye line: the first pair gives the
// high bit, the second the low one. A sample on the threshold counts as low.
int PulseType(const CChartPointD* const* p, INT_PTR nFirst, INT_PTR nSecond, double dMax,
              double dMin)
{
    const double dThreshold = (dMax - dMin) * 0.5 + dMin;
    const bool bFirstHigh = p[nFirst]->Y > dThreshold && p[nFirst + 1]->Y > dThreshold;
    const bool bSecondHigh = p[nSecond]->Y > dThreshold && p[nSecond + 1]->Y > dThreshold;
    return (bFirstHigh ? 2 : 0) + (bSecondHigh ? 1 : 0);
}
} // namespace

int CChartPointDArray::GetPulseDataType(double dMax, double dMin) const
{
    const INT_PTR n = GetSize();
    if (n < 6)
        return -1;
    return PulseType(GetData(), 0, n / 2, dMax, dMin);
}

int CChartPointDArray::GetPulseDataType2(double dMax, double dMin) const
{
    const INT_PTR n = GetSize();
    if (n < 6)
        return -1;
    return PulseType(GetData(), n / 2, n - 2, dMax, dMin);
}

CString CChartPointDArray::GetRefNameFromNodeName() const
{
    CStringArray tokens;
    CTokenizer::GetTokenArray(tokens, m_strName, CString("_"));
    if (tokens.GetSize() >= 2)
        return tokens[0];
    return CString();
}

// The last point is never examined; points need not be sorted.
void CChartPointDArray::RemoveLowerDataByValueX(double x)
{
    INT_PTR i = 0;
    while (i < GetSize() - 1)
    {
        if (GetData()[i]->X < x)
            DeleteAt(int(i));
        else
            ++i;
    }
}

// Drops the samples left of x and moves the one that straddles x onto it,
// linearly interpolated, so that the waveform starts exactly at x.
void CChartPointDArray::RemoveLowerDataByValueXAndReplaceWithIntegratedData(double x)
{
    if (GetSize() < 2)
        return;
    INT_PTR i = 0;
    while (i < GetSize() - 1)
    {
        CChartPointD* a = GetData()[i];
        const CChartPointD* b = GetData()[i + 1];
        if (a->X < x && !(b->X < x))
        {
            a->Set(x, (b->Y - a->Y) * (x - a->X) / (b->X - a->X) + a->Y);
            ++i;
        }
        else if (a->X < x)
            DeleteAt(int(i));
        else
            ++i;
    }
}

// Exchange sort over everything in the outputs, earlier contents included.
void CChartPointDArray::GetSortByXValueArray(CArrayD& xs, CArrayD& ys) const
{
    for (const CChartPointD* p : *this)
    {
        xs.Add(p->X);
        ys.Add(p->Y);
    }
    const INT_PTR n = xs.GetSize();
    for (INT_PTR i = 0; i + 1 < n; ++i)
    {
        for (INT_PTR j = i + 1; j < n; ++j)
        {
            if (xs[i] > xs[j])
            {
                std::swap(xs[i], xs[j]);
                std::swap(ys[i], ys[j]);
            }
        }
    }
}

// ---- select rows

void CChartPointDArray::AddSelectRow(int i)
{
    if (i >= 0 && i < GetSize())
        m_SelectRow.Add(i);
}

void CChartPointDArray::SetSelectRow(int i)
{
    m_SelectRow.RemoveAll();
    AddSelectRow(i);
}

namespace
{
// Calls f(i) for each row whose coordinates pass the exact test.
template <class Match, class Action>
void ForEachMatchingRow(const CChartPointDArray& arr, Match match, Action action)
{
    const CChartPointD* const* p = arr.GetData();
    for (INT_PTR i = 0; i < arr.GetSize(); ++i)
        if (match(*p[i]))
            action(int(i));
}
} // namespace

void CChartPointDArray::AddSelectRowByValue(double x, double y)
{
    ForEachMatchingRow(
        *this, [&](const CChartPointD& p) { return p.X == x && p.Y == y; },
        [this](int i) { AddSelectRow(i); });
}

void CChartPointDArray::AddSelectRowByValueX(double x)
{
    ForEachMatchingRow(
        *this, [&](const CChartPointD& p) { return p.X == x; }, [this](int i) { AddSelectRow(i); });
}

void CChartPointDArray::AddSelectRowByValueY(double y)
{
    ForEachMatchingRow(
        *this, [&](const CChartPointD& p) { return p.Y == y; }, [this](int i) { AddSelectRow(i); });
}

// Each match replaces the selection, so the last one stays; without a match
// the selection is left as it was.
void CChartPointDArray::SetSelectRowByValue(double x, double y)
{
    ForEachMatchingRow(
        *this, [&](const CChartPointD& p) { return p.X == x && p.Y == y; },
        [this](int i) { SetSelectRow(i); });
}

void CChartPointDArray::SetSelectRowByValueX(double x)
{
    ForEachMatchingRow(
        *this, [&](const CChartPointD& p) { return p.X == x; }, [this](int i) { SetSelectRow(i); });
}

void CChartPointDArray::SetSelectRowByValueY(double y)
{
    ForEachMatchingRow(
        *this, [&](const CChartPointD& p) { return p.Y == y; }, [this](int i) { SetSelectRow(i); });
}

void CChartPointDArray::GetSelectRow(CNSet* p) const
{
    p->RemoveAll();
    p->Copy(m_SelectRow);
}

// Rows are not renumbered when points go, so a stale row reaches the checked
// access of the plain array and raises.
void CChartPointDArray::GetSelectRowData(CArrayD* xs, CArrayD* ys) const
{
    xs->RemoveAll();
    ys->RemoveAll();
    for (int row : m_SelectRow)
    {
        const CChartPointD* p = CArray::GetAt(row);
        xs->Add(p->X);
        ys->Add(p->Y);
    }
}

void CChartPointDArray::RemoveSelectRow()
{
    m_SelectRow.RemoveAll();
}

// k is a position in the set, not a row number.
void CChartPointDArray::RemoveAtSelectRow(int k)
{
    m_SelectRow.RemoveAt(k);
}
