// The axes of plotvane-render's charts, chosen by the program as the host:
// the unit each axis shows its numbers in and the names that say so.
//
// The chart prints a grid value as its data value times the axis unit
// (SetXUnitBase, with m_bApplyUnit set), and an axis name as the host gave
// it when the unit word is "0". The program therefore picks the power of
// ten from the data's range and writes the prefix into the name itself, so
// that "Time (ns)" stands over numbers in nanoseconds at every span. The
// eye overlay's margins are whole "ps" only while the X axis is in
// nanoseconds, so eye charts always show time in ns.
#pragma once

#include "render/Options.h"

#include <optional>
#include <string>
#include <vector>

class CAxisAttribute;
class CPlotvane_Manager;

namespace plotvane
{

// What the values along an axis are: a name ("Time", "v(dq_rx)", maybe
// empty) and the unit they are stored in ("s"; "ns" for values in
// nanoseconds; empty when unknown).
struct AxisSource
{
    std::string name;
    std::string unit;
};

// "Time (s)" is the name Time in seconds.
AxisSource AxisSourceOf(const std::string& text);
// An axis of a loaded chart. A chart that plotvane-render saved holds the
// shown label with the unit word "0"; its data are in the label's base
// unit, whatever prefix the label shows.
AxisSource AxisSourceOf(const CAxisAttribute& axis);

// The label of an axis whose numbers are shown in 10^nPower of the base
// unit: "Time (ns)", "|Z| (Ohm)", "x (m)" for an unknown unit, "x" when
// there is neither unit nor prefix.
std::string AxisLabel(const std::string& name, const std::string& baseUnit, int nPower);

// Sets both axes of the chart from its drawn data: names, unit words and
// unit bases. On a logarithmic axis the numbers carry their own prefix
// letters, so the unit there is the base unit itself. nXPower forces the
// X power (-9 for an eye in ns). Needs the data in place.
void ApplyAxes(CPlotvane_Manager& mgr, const AxisSource& x, const AxisSource& y,
               std::optional<int> nXPower = std::nullopt);

// The command line's axis options over the sources the data suggest:
// --x-name and --x-unit (the unit of the values as stored) replace the
// data's, and likewise for Y.
AxisSource WithOptions(AxisSource source, const std::optional<std::string>& name,
                       const std::optional<std::string>& unit);

// The grid's value texts on a linear X axis start a little left of their
// line and have no limit at the right, so a line close to the right edge
// shows only the start of its number ("1.5" as "1"). With the fitted view
// area in place, this widens the area at the right until the last text that
// starts inside the view ends inside it too. nFontSize is the value texts'
// pixel size.
void KeepLastXValueWhole(CPlotvane_Manager& mgr, int nFontSize);

// The grid's own Y interval is a power of ten, which leaves a range such
// as 0 to 1.2 V with two lines; the view warns its host of that with
// message 2525. A host that draws for people refines it to the largest
// half, fifth, quarter or tenth of that interval that gives four lines or
// more. A grid line also hides an overlay line drawn later at its height,
// so steps that put a line on one of keepVisible (Y levels in data units,
// such as an eye's reference) come last, and a grid that would hide one
// takes twice, two and a half or five times its step where four lines
// remain. Answers the interval set, in view units, or 0 when the grid was
// left alone: a log Y axis, an interval a person set, nothing to mend.
// Needs the chart's window and the view fitted.
double RefineYGrid(CPlotvane_Manager& mgr, const std::vector<double>& keepVisible = {});
// Gives the grid its own interval back when dInterval is what
// RefineYGrid set and it is still in force; a chart saved after this
// holds no interval of the host's.
void UndoRefinedYGrid(CPlotvane_Manager& mgr, double dInterval);

} // namespace plotvane
