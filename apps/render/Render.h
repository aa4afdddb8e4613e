// Drawing a chart offscreen for plotvane-render and writing the frame.
#pragma once

#include "render/Options.h"

#include <stdexcept>

class CPlotvane_Manager;

namespace plotvane
{

class RenderError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// Creates an offscreen chart window of the options' size, applies the look
// (colour set, grid, font size), fits the view to the data
// (SetChartDrawFit), draws one frame and writes it to options.output as PNG.
// Throws RenderError when there is no GL context (the GL window's own
// message has gone to standard error by then) or the PNG cannot be written.
void RenderChartToPng(CPlotvane_Manager& mgr, const RenderOptions& options);

// Creates the offscreen chart window of the options' size; throws
// RenderError without a GL context.
void CreateOffscreenChart(CPlotvane_Manager& mgr, const RenderOptions& options);
// For a chart whose window exists: the look, the fit (widened at the right
// so that the last X value text shows whole), the legend unless the options
// say no, one frame (overlays included), and the PNG.
void DrawChartToPng(CPlotvane_Manager& mgr, const RenderOptions& options);

} // namespace plotvane
