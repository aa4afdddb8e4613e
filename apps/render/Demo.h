// The built-in DDR eyes of plotvane-render --demo: a generated DQ eye with
// its differential strobe, placed in a chart as a host would, and the
// margins that the generator's known edges imply.
#pragma once

#include "render/Measure.h"
#include <plotvane/measure/EyeGenerator.h>

class CPlotvane_Manager;

namespace plotvane
{

class JsonWriter;

// DDR4-1600 style: 1.25 ns strobe period, 1.2 V swing, 150 ps edges, a
// little random jitter and inter-symbol interference; the read eye has its
// strobe edge-aligned, 40 ps late.
DdrEyeParams DemoEyeParams(bool bRead);

// Adds DQ, DQS and DQS# as data sets (through GetChartPointDArray) and to
// the draw set, coloured from the preset.
EyeChartSets AddDemoEyes(CPlotvane_Manager& mgr, const DdrEye& eye, bool bLight);

// Margins derived by hand from the generator's edges, in ps: for a write
// eye, from the latest data edge leaving the setup band before the
// earliest strobe edge less the setup time, and from the latest strobe
// edge plus the hold time to the earliest next data edge entering the
// band; for a read eye, tQH and tDQSQ by the same rule as the measurement,
// taking the edge extremes for the eye crossings.
struct DemoHandMargins
{
    double dSetupPS = 0.0; // tQH for a read eye
    double dHoldPS = 0.0;  // tDQSQ for a read eye
};
DemoHandMargins HandMargins(const DdrEye& eye, const RenderOptions& options, double dVref);

// The generator's section of the report.
void WriteDemoGenerator(JsonWriter& json, const DdrEye& eye, const DemoHandMargins& hand,
                        bool bRead);

} // namespace plotvane
