// Charts without a toolkit: the chart dialog's window made through the
// installed backend, so that tests and headless programs get a drawing view
// in one call, and the frame it shows.
#pragma once

#include <plotvane/foundation/MFCString.h>
#include <plotvane/platform/Image.h>
#include <plotvane/platform/WinTypes.h>

class CPlotvane_Dlg;
class CPlotvane_Manager;

namespace plotvane
{

// Creates the dialog's window with rc as its rectangle, as a child of
// pParent or, when that is null, as a top-level window, and initialises the
// dialog (the view's window over the whole client area). Answers whether
// the view got a GL context.
bool CreateChartWindow(CPlotvane_Dlg& dlg, CWnd* pParent, const CRect& rc);

// A top-level chart of width x height pixels for the manager.
bool CreateHeadlessChart(CPlotvane_Manager& manager, int width, int height);

// The frame that the chart's view shows now, as the installed backend gives
// it; null when the view has no window or no GL surface.
const Image* GetChartImage(const CPlotvane_Manager& manager);
bool SaveChartImage(const CPlotvane_Manager& manager, const CString& path);

} // namespace plotvane
