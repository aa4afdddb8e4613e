// What the user or the host has said about the axes of one chart: names,
// manual ranges, grid intervals and units.
#pragma once

#include <plotvane/foundation/MFCArchive.h>
#include <plotvane/foundation/MFCString.h>
#include <plotvane/foundation/ValueTypes.h>

class CPlotvane_Manager;
class CPlotvane_Attribute_Dlg;

class CAxisAttribute
{
public:
    CAxisAttribute();
    // The copy keeps the source's manager; assignment keeps its own.
    CAxisAttribute(const CAxisAttribute& o);
    CAxisAttribute& operator=(const CAxisAttribute& o);
    virtual ~CAxisAttribute() = default;
    virtual bool operator==(const CAxisAttribute& o) const;
    virtual bool operator!=(const CAxisAttribute& o) const { return !(*this == o); }
    virtual void Serialize(CArchive& ar);

    void Init();

    CString GetAxisName() const { return m_strAxisName; }
    void SetAxisName(CString str) { m_strAxisName = str; }
    double GetStartPoint() const { return m_dStartPoint; }
    void SetStartPoint(double d) { m_dStartPoint = d; }
    double GetEndPoint() const { return m_dEndPoint; }
    void SetEndPoint(double d) { m_dEndPoint = d; }
    CString GetUnitName() const { return m_strUnitName; }
    void SetUnitName(CString str) { m_strUnitName = str; }
    int GetUserSettingUnit() const { return m_bUserSettingUnit; }
    int GetUserSettingInterval() const { return m_bUserSettingInterval; }
    double GetGridInterval() const { return m_dGridInterval; }
    void SetGridInterval(double d);
    double GetUnit() const { return m_dUnit; }

    // 1.0 when the scale's decimal exponent is 1 to 3, else 10 to that power.
    double CalcUnit(double scale);
    void SetUnit(int u);
    // Fixes the unit to an engineering power of ten near 10^e.
    void SetUnitBase(int e);
    // Kept for the interface; the working form is on CPlotvane_Attribute.
    void SetAxisAttribute(int /*axis*/, CAxisAttribute& /*a*/) {}
    void SetCPlotvaneMgr(CPlotvane_Manager* p) { m_pChartMgr = p; }

    CString m_strAxisName;
    double m_dStartPoint;
    double m_dEndPoint;
    int m_nMinExponent;
    CString m_strUnitName;
    int m_bUserSettingUnit;
    int m_bUserSettingInterval;
    CPlotvane_Manager* m_pChartMgr = nullptr;
    double m_dGridInterval;
    double m_dUnit;

    static constexpr int m_nVersion = 1;
};

class CPlotvane_Attribute
{
public:
    CPlotvane_Attribute();
    // The copy keeps the source's dialog; assignment keeps its own.
    CPlotvane_Attribute(const CPlotvane_Attribute& o);
    CPlotvane_Attribute& operator=(const CPlotvane_Attribute& o);
    virtual ~CPlotvane_Attribute() = default;
    virtual bool operator==(const CPlotvane_Attribute& o) const;
    virtual bool operator!=(const CPlotvane_Attribute& o) const { return !(*this == o); }
    virtual void Serialize(CArchive& ar);

    // Axis 0 is X, 1 is Y; other values are ignored.
    void SetAxisAttribute(int axis, CAxisAttribute& a);
    void SetCPlotvane_AttributeDlg(CPlotvane_Attribute_Dlg* p) { m_pAttributeDlg = p; }
    // Formats the point (logical units) as "X:%.3f Y:%.3f" and shows it in
    // the attribute dialog when that has a window.
    void SetCurrentPointText(CPoint p);

    CAxisAttribute m_XAxis;
    CAxisAttribute m_YAxis;
    int m_nRangeMode = 0;
    CString m_strCurrentPoint;
    int m_nUnitChange = 0;
    CPlotvane_Attribute_Dlg* m_pAttributeDlg = nullptr;

    static constexpr int m_nVersion = 1;
};
