#include <plotvane/document/AxisAttribute.h>

#include <plotvane/foundation/Dec.h>

#include <cmath>

CAxisAttribute::CAxisAttribute()
{
    Init();
}

CAxisAttribute::CAxisAttribute(const CAxisAttribute& o)
{
    *this = o;
    m_pChartMgr = o.m_pChartMgr;
}

// The manager pointer stays: an axis belongs to the chart that holds it.
CAxisAttribute& CAxisAttribute::operator=(const CAxisAttribute& o)
{
    m_strAxisName = o.m_strAxisName;
    m_dStartPoint = o.m_dStartPoint;
    m_dEndPoint = o.m_dEndPoint;
    m_nMinExponent = o.m_nMinExponent;
    m_strUnitName = o.m_strUnitName;
    m_bUserSettingUnit = o.m_bUserSettingUnit;
    m_bUserSettingInterval = o.m_bUserSettingInterval;
    m_dGridInterval = o.m_dGridInterval;
    m_dUnit = o.m_dUnit;
    return *this;
}

bool CAxisAttribute::operator==(const CAxisAttribute& o) const
{
    return m_strAxisName.Compare(o.m_strAxisName) == 0 && m_dStartPoint == o.m_dStartPoint &&
           m_dEndPoint == o.m_dEndPoint && m_nMinExponent == o.m_nMinExponent &&
           m_strUnitName.Compare(o.m_strUnitName) == 0 &&
           m_bUserSettingUnit == o.m_bUserSettingUnit &&
           m_bUserSettingInterval == o.m_bUserSettingInterval &&
           m_dGridInterval == o.m_dGridInterval && m_dUnit == o.m_dUnit;
}

void CAxisAttribute::Init()
{
    m_strAxisName.Empty();
    m_dStartPoint = 0.0;
    m_dEndPoint = 100.0;
    m_nMinExponent = 0;
    m_strUnitName.Empty();
    m_bUserSettingUnit = 0;
    m_bUserSettingInterval = 0;
    m_dGridInterval = 1.0;
    m_dUnit = 1.0;
}

void CAxisAttribute::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << int(m_nVersion) << m_strAxisName << m_dStartPoint << m_dEndPoint << m_nMinExponent
           << m_strUnitName << m_dGridInterval << m_bUserSettingInterval << m_dUnit
           << m_bUserSettingUnit;
        return;
    }
    int nVersion = 0;
    ar >> nVersion;
    if (nVersion == 1)
    {
        ar >> m_strAxisName >> m_dStartPoint >> m_dEndPoint >> m_nMinExponent >> m_strUnitName >>
            m_dGridInterval >> m_bUserSettingInterval >> m_dUnit >> m_bUserSettingUnit;
    }
}

void CAxisAttribute::SetGridInterval(double d)
{
    m_dGridInterval = d;
    m_bUserSettingInterval = 1;
}

// A scale whose exponent is 1 to 3 (10 to 999) needs no rescaling, so the
// usual view scale of 100 gives a unit of 1.
double CAxisAttribute::CalcUnit(double scale)
{
    const int nDec = plotvane::dec(scale);
    if (nDec >= 1 && nDec <= 3)
        return 1.0;
    return std::pow(10.0, nDec);
}

void CAxisAttribute::SetUnit(int u)
{
    m_dUnit = double(u);
    m_bUserSettingUnit = 1;
}

// Exponents between engineering powers snap to the one below them in
// magnitude; -1 is the deliberate exception and means no unit at all.
void CAxisAttribute::SetUnitBase(int e)
{
    if (e == -1)
        m_dUnit = 1.0;
    else if (e < -9)
        m_dUnit = 1e-12;
    else if (e == -8 || e == -7)
        m_dUnit = 1e-9;
    else if (e == -5 || e == -4)
        m_dUnit = 1e-6;
    else if (e == 4 || e == 5)
        m_dUnit = 1e3;
    else if (e == 7 || e == 8)
        m_dUnit = 1e6;
    else if (e == 10 || e == 11)
        m_dUnit = 1e9;
    else if (e > 12)
        m_dUnit = 1e12;
    else
        m_dUnit = std::pow(10.0, e);
    m_bUserSettingUnit = 1;
}

CPlotvane_Attribute::CPlotvane_Attribute() = default;

CPlotvane_Attribute::CPlotvane_Attribute(const CPlotvane_Attribute& o)
    : m_XAxis(o.m_XAxis), m_YAxis(o.m_YAxis), m_nRangeMode(o.m_nRangeMode),
      m_strCurrentPoint(o.m_strCurrentPoint), m_nUnitChange(o.m_nUnitChange),
      m_pAttributeDlg(o.m_pAttributeDlg)
{
}

// The dialog pointer stays: it is wired by the manager that holds this.
CPlotvane_Attribute& CPlotvane_Attribute::operator=(const CPlotvane_Attribute& o)
{
    m_XAxis = o.m_XAxis;
    m_YAxis = o.m_YAxis;
    m_nRangeMode = o.m_nRangeMode;
    m_strCurrentPoint = o.m_strCurrentPoint;
    m_nUnitChange = o.m_nUnitChange;
    return *this;
}

bool CPlotvane_Attribute::operator==(const CPlotvane_Attribute& o) const
{
    return m_XAxis == o.m_XAxis && m_YAxis == o.m_YAxis && m_nRangeMode == o.m_nRangeMode &&
           m_strCurrentPoint.Compare(o.m_strCurrentPoint) == 0 && m_nUnitChange == o.m_nUnitChange;
}

void CPlotvane_Attribute::Serialize(CArchive& ar)
{
    if (ar.IsStoring())
    {
        ar << int(m_nVersion);
        m_XAxis.Serialize(ar);
        m_YAxis.Serialize(ar);
        ar << m_nRangeMode << m_strCurrentPoint << m_nUnitChange;
        return;
    }
    int nVersion = 0;
    ar >> nVersion;
    if (nVersion == 1)
    {
        m_XAxis.Serialize(ar);
        m_YAxis.Serialize(ar);
        ar >> m_nRangeMode >> m_strCurrentPoint >> m_nUnitChange;
    }
}

void CPlotvane_Attribute::SetAxisAttribute(int axis, CAxisAttribute& a)
{
    if (axis == 0)
        m_XAxis = a;
    else if (axis == 1)
        m_YAxis = a;
}
