// --target-z: impedance limits from a small CSV file, drawn over every curve
// of an impedance chart by the target-impedance overlay.
#pragma once

#include <string>

class CPlotvane_Manager;

namespace plotvane
{

// Reads the limits and gives them to every drawn set. Two columns are a
// polyline of (Hz, Ohm) points, straight in log-log between them; three
// columns are steps of (from Hz, to Hz, Ohm). A header line is allowed.
// The overlay draws limits in cyan and its marked point in yellow, so the
// curves take the preset's colours (dark or light) that are far from both.
// Throws ChartInputError (or the CSV reader's error) with the file named.
void AddTargetImpedance(CPlotvane_Manager& mgr, const std::string& path, bool bLight);

} // namespace plotvane
