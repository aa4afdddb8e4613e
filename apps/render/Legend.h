// The legend of plotvane-render's charts: each drawn set's name in its
// colour after a short line of that colour, as free texts and lines of the
// view's annotation layer, in a corner of the plot that the curves leave
// free.
#pragma once

class CPlotvane_Manager;

namespace plotvane
{

// Adds the legend of the drawn sets to the view's annotation collections.
// Needs the window and the fitted view area in place (the corners are
// those of the area the next frame shows). Corners are tried top right,
// top left, bottom right, bottom left; the first that no curve enters wins,
// else the one with the fewest samples in it. bEyeSummary keeps the top
// right clear for the eye overlay's margin texts. nFontSize is in pixels.
void AddLegend(CPlotvane_Manager& mgr, int nFontSize, bool bEyeSummary);

// Whether the timing overlay will print its margin summary: a drawn DQ eye
// at a receiver.
bool HasEyeSummary(const CPlotvane_Manager& mgr);

} // namespace plotvane
