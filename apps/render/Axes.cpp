#include "render/Axes.h"

#include "render/ChartInput.h"
#include "render/Units.h"
#include <plotvane/document/AxisAttribute.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/view/GLChartView.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace plotvane
{
namespace
{

// The unit word that makes the chart show an axis name as it stands.
const char* const kNameAsGiven = "0";

struct Extent
{
    double dMin = HUGE_VAL;
    double dMax = -HUGE_VAL;
    double MaxAbs() const { return dMax < dMin ? 0.0 : std::max(std::fabs(dMin), std::fabs(dMax)); }
};

void DrawnExtents(const CPlotvane_Manager& mgr, Extent& x, Extent& y)
{
    ForEachDrawnSet(mgr, [&x, &y](const CChartPointDArray& set)
                    {
                        if (set.GetSize() == 0)
                            return;
                        x.dMin = std::min(x.dMin, set.GetMinX());
                        x.dMax = std::max(x.dMax, set.GetMaxX());
                        y.dMin = std::min(y.dMin, set.GetMinY());
                        y.dMax = std::max(y.dMax, set.GetMaxY());
                    });
}

// The shown power for values stored in source's unit, and the axis unit
// that turns a stored value into a shown number: the chart multiplies by
// 10^-base where base is what SetXUnitBase takes.
struct AxisChoice
{
    std::string label;
    int nUnitBase;
};

AxisChoice ChooseLinear(const AxisSource& source, const Extent& e, std::optional<int> nForced)
{
    const UnitName unit = SplitUnit(source.unit);
    const int nStoredPower = int(std::lround(std::log10(unit.dScale)));
    const int nPower = nForced ? *nForced : EngineeringPower(e.MaxAbs() * unit.dScale);
    return {AxisLabel(source.name, unit.base, nPower), nPower - nStoredPower};
}

// Numbers on a logarithmic axis are 10^position times the unit, with K, M,
// G and T for the thousands: the unit is 1 and the name shows the base.
AxisChoice ChooseLog(const AxisSource& source)
{
    const UnitName unit = SplitUnit(source.unit);
    const int nStoredPower = int(std::lround(std::log10(unit.dScale)));
    return {AxisLabel(source.name, unit.base, 0), -nStoredPower};
}

// Pixel advance of a value text in the chart's sans face, by character.
double TextPixels(const CString& text, int nFontSize)
{
    double w = 0.0;
    for (int i = 0; i < text.GetLength(); ++i)
    {
        const char c = text[i];
        w += (c >= '0' && c <= '9') ? 0.64 : c == '.' ? 0.32 : c == '-' ? 0.37 : 0.8;
    }
    return w * nFontSize;
}

} // namespace

AxisSource AxisSourceOf(const std::string& text)
{
    AxisSource s;
    SplitNameAndUnit(text, s.name, s.unit);
    return s;
}

AxisSource AxisSourceOf(const CAxisAttribute& axis)
{
    AxisSource s = AxisSourceOf(axis.GetAxisName().str());
    const std::string word = axis.GetUnitName().str();
    if (word == kNameAsGiven)
        s.unit = SplitUnit(s.unit).base;
    else if (s.unit.empty() && !word.empty())
        s.unit = word;
    return s;
}

std::string AxisLabel(const std::string& name, const std::string& baseUnit, int nPower)
{
    const std::string unit = PrefixText(nPower) + baseUnit;
    if (unit.empty())
        return name;
    return name.empty() ? "(" + unit + ")" : name + " (" + unit + ")";
}

AxisSource WithOptions(AxisSource source, const std::optional<std::string>& name,
                       const std::optional<std::string>& unit)
{
    if (name)
    {
        // A name given with a unit in brackets brings its unit along.
        const AxisSource given = AxisSourceOf(*name);
        source.name = given.name;
        if (!given.unit.empty())
            source.unit = given.unit;
    }
    if (unit)
        source.unit = *unit;
    return source;
}

void ApplyAxes(CPlotvane_Manager& mgr, const AxisSource& x, const AxisSource& y,
               std::optional<int> nXPower)
{
    Extent ex, ey;
    DrawnExtents(mgr, ex, ey);
    const bool bLogX = mgr.m_nFrequencyScale == 1;
    const bool bLogY = mgr.m_bUseMagnitude && mgr.m_nMagnitudeScale == 1;
    const AxisChoice cx = bLogX ? ChooseLog(x) : ChooseLinear(x, ex, nXPower);
    const AxisChoice cy = bLogY ? ChooseLog(y) : ChooseLinear(y, ey, std::nullopt);
    mgr.m_bApplyUnit = 1;
    mgr.SetAxisXName(CString(cx.label));
    mgr.SetAxisYName(CString(cy.label));
    mgr.SetUnitNameX(kNameAsGiven);
    mgr.SetUnitNameY(kNameAsGiven);
    mgr.SetXUnitBase(cx.nUnitBase);
    mgr.SetYUnitBase(cy.nUnitBase);
}

void KeepLastXValueWhole(CPlotvane_Manager& mgr, int nFontSize)
{
    CGLChartView* view = mgr.m_ChartDlg.GetGLChartView();
    if (mgr.m_nFrequencyScale == 1 || view == nullptr || view->GetSafeHwnd() == nullptr)
        return;
    const int nFormat = mgr.m_nFormatType;
    mgr.m_nFormatType = 2; // as the grid prints its numbers
    // Widening may change the grid interval, so look again after each step.
    for (int nStep = 0; nStep < 4; ++nStep)
    {
        view->FitCurViewAreaWithWindow();
        const ChartFrame f = view->GetChartFrame();
        const double dx = mgr.GetXGridInterval();
        if (!(dx > 0.0) || !(f.Width() > 0.0))
            break;
        // A value text starts this far from its line.
        const double dShift = f.Width() * 0.01 - f.Width() / 60.0;
        const double sx = f.Left() - std::fmod(f.Left(), dx);
        const double x = sx + std::floor((f.Right() - dShift - sx) / dx) * dx;
        const double px = x + dShift;
        if (px < f.OriginX())
            break;
        const CString text = mgr.GetDisplayNumberByFormatType(x * mgr.GetScaleX());
        const double dEnd = px + (TextPixels(text, nFontSize) + 4.0) * f.LogicalPerPixelX();
        if (dEnd <= f.Right())
            break;
        view->m_rcViewArea.width += float(dEnd - f.Right());
    }
    mgr.m_nFormatType = nFormat;
}

double RefineYGrid(CPlotvane_Manager& mgr, const std::vector<double>& keepVisible)
{
    CGLChartView* view = mgr.m_ChartDlg.GetGLChartView();
    const CAxisAttribute& axis = mgr.m_Attribute.m_YAxis;
    if ((mgr.m_bUseMagnitude && mgr.m_nMagnitudeScale == 1) || axis.GetUserSettingInterval() ||
        view == nullptr || view->GetSafeHwnd() == nullptr)
        return 0.0;
    // The projection of the area the next frame shows.
    view->FitCurViewAreaWithWindow();
    const double h = double(view->GetViewRectLP().height);
    const double d = mgr.GetYGridInterval();
    const auto enough = [h](double step) { return std::trunc(h / step) >= 4.0; };
    // Within a thousandth of a step: a line there covers the level's pixels.
    const auto hides = [&](double step)
    {
        for (const double level : keepVisible)
        {
            const double k = level * CPlotvane_InputData::m_dViewScaleY / step;
            if (std::fabs(k - std::round(k)) < 1e-3)
                return true;
        }
        return false;
    };
    if (!(d > 0.0) || !(h > 0.0))
        return 0.0;
    const bool bSparse = !enough(d);
    if (!bSparse && !hides(d))
        return 0.0;
    // Finer steps for a sparse grid, coarser ones for a grid that would
    // hide a level; a sparse grid takes the first fine step that gives
    // enough lines even when it hides one.
    const std::vector<double> factors =
        bSparse ? std::vector<double>{0.5, 0.2, 0.25, 0.1} : std::vector<double>{2.0, 2.5, 5.0};
    double chosen = 0.0;
    for (const double factor : factors)
    {
        const double step = d * factor;
        if (!enough(step))
            continue;
        if (!hides(step))
        {
            chosen = step;
            break;
        }
        if (bSparse && chosen == 0.0)
            chosen = step;
    }
    if (chosen > 0.0)
        mgr.SetYGridInterval(chosen);
    return chosen;
}

void UndoRefinedYGrid(CPlotvane_Manager& mgr, double dInterval)
{
    CAxisAttribute& axis = mgr.m_Attribute.m_YAxis;
    if (dInterval == 0.0 || !axis.GetUserSettingInterval() || axis.GetGridInterval() != dInterval)
        return;
    axis.m_bUserSettingInterval = 0;
    axis.m_dGridInterval = CAxisAttribute().m_dGridInterval;
}

} // namespace plotvane
