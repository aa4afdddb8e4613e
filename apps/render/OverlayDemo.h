// The overlay demos of plotvane-render --demo NAME. Each builds its data
// from a small physical model, puts it into a chart as a host would,
// measures it with the plain measurement API, hands the results to the
// overlay, and reports the API's numbers next to what the overlay shows
// (read back from what the chart stores or from the texts it drew).
#pragma once

#include "render/Options.h"
#include <plotvane/view/ChartText.h>

#include <string>
#include <vector>

class CPlotvane_Manager;

namespace plotvane
{

class JsonWriter;

struct OverlayDemo
{
    // --demo NAME, and a line for --help.
    const char* name;
    const char* summary;
    // Fills the empty chart: data sets, axis names and units, the overlay's
    // members. The frame is drawn after it returns (SetChartDrawFit and
    // RedrawGLChartView are the runner's).
    void (*build)(CPlotvane_Manager& mgr, const RenderOptions& options);
    // Writes the demo's own members of the report object, after the frame:
    // the API's numbers, and the overlay's as stored or as drawn (texts holds
    // every text of the frame, in drawing order).
    void (*report)(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts, JsonWriter& json);
};

// Every overlay demo, in the order --help lists them.
const std::vector<OverlayDemo>& OverlayDemos();
// Null when there is none of that name.
const OverlayDemo* FindOverlayDemo(const std::string& name);
// "eye-mask, bathtub, ...": the names, for messages.
std::string OverlayDemoNames();

// The chart, one frame (without a legend), the PNG, the chart archive
// beside it, and the JSON report on standard output (and in --report FILE).
int RunOverlayDemo(const OverlayDemo& demo, const RenderOptions& options);

// The texts of a layer, in drawing order; those that start with prefix
// when one is given.
std::vector<ChartText> TextsOf(const std::vector<ChartText>& texts, ChartTextLayer layer,
                               const char* prefix = nullptr);

} // namespace plotvane
