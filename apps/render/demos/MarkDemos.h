// The demos of the target-impedance overlay and of the flight-time,
// crosstalk, TDR and DFE marks. Each builds its data from a small physical
// model and measures it as a host would, then hands the numbers to the
// overlay.
#pragma once

#include "render/OverlayDemo.h"

#include <vector>

namespace plotvane
{

// TargetImpedanceDemos.cpp
void BuildTargetZDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void ReportTargetZDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                       JsonWriter& json);

// FlightCrosstalkDemos.cpp
void BuildFlightTimeDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void ReportFlightTimeDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                          JsonWriter& json);
void BuildCrosstalkDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void ReportCrosstalkDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                         JsonWriter& json);
void BuildTdrDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void ReportTdrDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts, JsonWriter& json);
void BuildDfeDemo(CPlotvane_Manager& mgr, const RenderOptions& options);
void ReportDfeDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts, JsonWriter& json);

} // namespace plotvane
