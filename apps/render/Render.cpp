#include "render/Render.h"

#include "render/Measure.h"

#include "render/Axes.h"
#include "render/ChartInput.h"
#include "render/Legend.h"
#include <plotvane/document/GLPlotvane_Environment.h>
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/platform/headless/HeadlessChart.h>
#include <plotvane/view/GLChartView.h>

namespace plotvane
{
namespace
{

// The appearance a host applies from its settings, taken from the built-in
// defaults and the command line rather than the user's settings file, so
// that the same command draws the same picture everywhere.
void ApplyLook(CGLChartView& view, const RenderOptions& options)
{
    CGLPlotvane_Environment env;
    env.SetCurColorIndex(options.bLight ? 1 : 0);
    view.SetMeasureFontSize(options.nMeasureFontSize > 0 ? options.nMeasureFontSize
                                                         : env.GetFontSizeMeasure());
    view.SetDefaultFontSize(options.nFontSize);
    // Axis names are drawn only once this font is built.
    view.SetXYFontSize(options.nFontSize);
    view.SetLineWidth_Highlighted(env.GetHighlightedLineWidth());
    view.SetGridMode(options.nGrid);
    view.SetBackgroundColor(env.GetBackgroundColor());
    // Axes, labels and grid share the colour set's one entry.
    view.SetAxisColor(env.GetLabelColor());
    view.SetLabelColor(env.GetLabelColor());
    view.SetGridColor(env.GetLabelColor());
}

} // namespace

void RenderChartToPng(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    CreateOffscreenChart(mgr, options);
    DrawChartToPng(mgr, options);
}

void CreateOffscreenChart(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    // The GL window reports its own failure through the backend's message
    // box, which goes to standard error.
    if (!CreateHeadlessChart(mgr, options.nWidth, options.nHeight))
        throw RenderError("no OpenGL context to draw with");
}

void DrawChartToPng(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    ApplyLook(*mgr.m_ChartDlg.GetGLChartView(), options);
    mgr.SetChartDrawFit();
    KeepLastXValueWhole(mgr, options.nFontSize);
    if (options.bLegend)
        AddLegend(mgr, options.nFontSize, HasEyeSummary(mgr));
    const double dRefinedY = RefineYGrid(mgr, EyeReferenceLevels(mgr));
    mgr.RedrawGLChartView();
    UndoRefinedYGrid(mgr, dRefinedY);
    if (!SaveChartImage(mgr, CString(options.output)))
        throw RenderError("cannot write image '" + options.output + "'");
}

} // namespace plotvane
