// Grid spacing, axis units, the scale from logical units to displayed
// numbers, and number text. Everything is computed from the extents and the
// visible rectangle at the moment of the call (within a paint, the paint's
// frame); nothing else is kept.
#include <plotvane/document/Plotvane_Manager.h>

#include <plotvane/foundation/Dec.h>
#include <plotvane/view/ChartViewUtil.h>
#include <plotvane/view/GLChartView.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>

using plotvane::TruncToInt;

namespace
{

// The view's visible logical rectangle: during a paint the one its layers
// draw in, without asking GL again.
CRectF VisibleRect(CPlotvane_Dlg& dlg)
{
    return dlg.GetGLChartView()->GetChartFrame().VisibleRect();
}

// The start of the interval search: a tenth of the decade below w, moved up
// a decade while more than 50, and once more while more than 15 intervals
// would fit.
double DecadeInterval(double w)
{
    double d = std::pow(10.0, plotvane::dec(w) - 1) / 10.0;
    if (w / d > 50.0)
        d *= 10.0;
    if (w / d > 15.0)
        d *= 10.0;
    return d;
}

// Engineering powers of ten, with the small exponents kept as they are.
int UnitBaseOfExponent(int n)
{
    if (n < -9)
        return -12;
    if (n <= -7)
        return -9;
    if (n <= -4)
        return -6;
    if (n == -3)
        return -3;
    if (n <= 3)
        return n;
    if (n <= 5)
        return 3;
    if (n <= 8)
        return 6;
    if (n <= 11)
        return 9;
    return 12;
}

// The engineering form: a suffix letter for thousands and up, two decimals
// at most, and no ".00". Negative values never take a suffix.
CString EngineeringText(double v)
{
    const char* suffix = nullptr;
    double q = v;
    if (v >= 1e12)
    {
        suffix = "T";
        q = v / 1e12;
    }
    else if (v >= 1e9)
    {
        suffix = "G";
        q = v / 1e9;
    }
    else if (v >= 1e6)
    {
        suffix = "M";
        q = v / 1e6;
    }
    else if (v >= 1e3)
    {
        suffix = "K";
        q = v / 1e3;
    }
    CString str;
    if (suffix == nullptr)
    {
        str.Format("%g", v);
        return str;
    }
    CString num;
    num.Format("%.2f", q);
    num.Replace(".00", "");
    if (num.GetLength() > 3)
        num.Format("%g", std::atof(num));
    str.Format("%s%s", num.GetString(), suffix);
    return str;
}

} // namespace

// ---------------------------------------------------------------------------
// Intervals

double CPlotvane_Manager::CalcGridIntervalX()
{
    if (m_InputData.m_dMaxX - m_InputData.m_dMinX == 0.0)
        return 0.5;
    const CRectF rc = VisibleRect(m_ChartDlg);
    const double d = DecadeInterval(double(rc.Right()) - double(rc.Left()));
    const int n = TruncToInt(double(rc.width) / d + 2.0);
    return n < 4 ? d * 0.25 : d;
}

// Unlike X, Y has no quarter step.
double CPlotvane_Manager::CalcGridIntervalY()
{
    if (m_InputData.m_dMaxY - m_InputData.m_dMinY == 0.0)
        return 0.5;
    const CRectF rc = VisibleRect(m_ChartDlg);
    return DecadeInterval(double(rc.Top()) - double(rc.Bottom()));
}

// A user interval counts on a linear X axis only, and not when it would
// draw more than 30 lines.
double CPlotvane_Manager::GetXGridInterval()
{
    CAxisAttribute& axis = m_Attribute.m_XAxis;
    if (!axis.GetUserSettingInterval() || m_nFrequencyScale != 0)
        return CalcGridIntervalX();
    double v = axis.GetGridInterval();
    if (v == 0.0)
        v = CalcGridIntervalX();
    const CRectF rc = VisibleRect(m_ChartDlg);
    if (TruncToInt(double(rc.width) / v) > 30)
        v = CalcGridIntervalX();
    return v;
}

// The Y test counts two lines more than the X test and ignores the
// frequency scale.
double CPlotvane_Manager::GetYGridInterval()
{
    CAxisAttribute& axis = m_Attribute.m_YAxis;
    if (!axis.GetUserSettingInterval())
        return CalcGridIntervalY();
    double v = axis.GetGridInterval();
    if (v == 0.0)
        v = CalcGridIntervalY();
    const CRectF rc = VisibleRect(m_ChartDlg);
    if (double(TruncToInt(double(rc.height) / v)) + 2.0 > 30.0)
        v = CalcGridIntervalY();
    return v;
}

double CPlotvane_Manager::GetXGridIntervalForText()
{
    return GetXGridInterval() * GetScaleX();
}

double CPlotvane_Manager::GetYGridIntervalForText()
{
    return GetYGridInterval() * GetScaleY();
}

double CPlotvane_Manager::GetXGridInitialIntervalForText()
{
    const CRectF rc = VisibleRect(m_ChartDlg);
    double d = DecadeInterval(double(rc.Right()) - double(rc.Left()));
    if (TruncToInt(double(rc.width) / d) < 4)
        d *= 0.25;
    return d * GetScaleX();
}

double CPlotvane_Manager::GetYGridInitialIntervalForText()
{
    const CRectF rc = VisibleRect(m_ChartDlg);
    double d = DecadeInterval(double(rc.Top()) - double(rc.Bottom()));
    if (TruncToInt(double(rc.height) / d) < 4)
        d *= 0.25;
    return d * GetScaleY();
}

int CPlotvane_Manager::GetXAxisTextCount()
{
    const double dInterval = GetXGridInterval();
    const CRectF rc = VisibleRect(m_ChartDlg);
    return TruncToInt(double(rc.width) / dInterval);
}

int CPlotvane_Manager::GetYAxisTextCount()
{
    const double dInterval = GetYGridInterval();
    const CRectF rc = VisibleRect(m_ChartDlg);
    return TruncToInt(double(rc.height) / dInterval);
}

void CPlotvane_Manager::SetXGridInterval(double d)
{
    m_Attribute.m_XAxis.SetGridInterval(d);
}

void CPlotvane_Manager::SetYGridInterval(double d)
{
    m_Attribute.m_YAxis.SetGridInterval(d);
}

void CPlotvane_Manager::SetXGridIntervalByText(double d)
{
    SetXGridInterval(d / GetScaleX());
}

void CPlotvane_Manager::SetYGridIntervalByText(double d)
{
    SetYGridInterval(d / GetScaleY());
}

// ---------------------------------------------------------------------------
// Units and scales

double CPlotvane_Manager::GetXUnit()
{
    CAxisAttribute& axis = m_Attribute.m_XAxis;
    if (!axis.GetUserSettingUnit())
        return axis.CalcUnit(CPlotvane_InputData::m_dViewScaleX);
    return axis.GetUnit();
}

double CPlotvane_Manager::GetYUnit()
{
    CAxisAttribute& axis = m_Attribute.m_YAxis;
    if (!axis.GetUserSettingUnit())
        return axis.CalcUnit(CPlotvane_InputData::m_dViewScaleY);
    return axis.GetUnit();
}

double CPlotvane_Manager::GetScaleX()
{
    if (m_bApplyUnit)
        return GetXUnit() / CPlotvane_InputData::m_dViewScaleX;
    return 1.0 / CPlotvane_InputData::m_dViewScaleX;
}

double CPlotvane_Manager::GetScaleY()
{
    if (m_bApplyUnit)
        return GetYUnit() / CPlotvane_InputData::m_dViewScaleY;
    return 1.0 / CPlotvane_InputData::m_dViewScaleY;
}

// On a logarithmic X axis the top frequency decides, in hertz; on a linear
// one the range in data units.
int CPlotvane_Manager::GetXUnitBase()
{
    double r = m_InputData.m_dMaxX;
    if (m_nFrequencyScale != 1)
    {
        r = m_InputData.m_dMaxX - m_InputData.m_dMinX;
        if (m_nFrequencyScale == 0)
            r /= CPlotvane_InputData::m_dViewScaleX;
    }
    return UnitBaseOfExponent(plotvane::dec(r));
}

// A logarithmic magnitude axis holds decades, which no view scale touched.
int CPlotvane_Manager::GetYUnitBase()
{
    double r = m_InputData.m_dMaxY - m_InputData.m_dMinY;
    if (!(m_bUseMagnitude && m_nMagnitudeScale == 1))
        r /= CPlotvane_InputData::m_dViewScaleY;
    return UnitBaseOfExponent(plotvane::dec(r));
}

void CPlotvane_Manager::SetXUnitBase(int n)
{
    m_Attribute.m_XAxis.SetUnitBase(-n);
}

void CPlotvane_Manager::SetYUnitBase(int n)
{
    m_Attribute.m_YAxis.SetUnitBase(-n);
}

void CPlotvane_Manager::GetViewAreaLPPoint(CPointF& ptLeftBottom, CPointF& ptRightTop)
{
    const CRectF rc = VisibleRect(m_ChartDlg);
    const double sx = GetScaleX();
    const double sy = GetScaleY();
    ptLeftBottom = CPointF(float(rc.Left() * sx), float(rc.Bottom() * sy));
    ptRightTop = CPointF(float(rc.Right() * sx), float(rc.Top() * sy));
}

double CPlotvane_Manager::GetEyeMaskHeightForText()
{
    return GetYUnit() * m_dEyeMaskHeight;
}

// ---------------------------------------------------------------------------
// Number text

CString CPlotvane_Manager::GetDisplayNumberByFormatType(double dValue)
{
    CString str;
    switch (m_nFormatType)
    {
    case 0:
    {
        // The integer form has always printed the double's bit pattern
        // through "%d", which reads the low 32 bits of the value's image.
        std::uint64_t bits = 0;
        std::memcpy(&bits, &dValue, sizeof bits);
        const std::uint32_t low = std::uint32_t(bits & 0xFFFFFFFFu);
        std::int32_t n = 0;
        std::memcpy(&n, &low, sizeof n);
        str.Format("%d", int(n));
        return str;
    }
    case 1:
        if (m_bUseMagnitude && m_nMagnitudeScale == 1)
            str.Format("%.1e", dValue);
        else
            str.Format("%.2f", dValue);
        return str;
    case 2:
        return EngineeringText(dValue);
    default:
        return str;
    }
}
