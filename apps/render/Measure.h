// DDR eye measurement for plotvane-render: a DQ eye against its strobe
// (DQS, and DQS# when differential) in a chart, measured twice: by the
// timing overlay as it draws the frame (the whole picoseconds it stores in
// the DQ set) and by the waveform's own margin operations.
#pragma once

#include "render/Options.h"

#include <limits>
#include <string>

class CChartPointDArray;
class CPlotvane_Manager;

namespace plotvane
{

class JsonWriter;

// The data sets of one eye in the chart, by index; nDQSBar -1 for a
// single-ended strobe.
struct EyeChartSets
{
    int nDQ = -1;
    int nDQS = -1;
    int nDQSBar = -1;
};

constexpr double kNotMeasured = std::numeric_limits<double>::quiet_NaN();

struct EyeMeasurement
{
    bool bRead = false;
    double dPeriod = 0.0; // seconds
    // Write cycle, from CheckSetupHoldMargin, in ps; NaN when the operation
    // found no strobe edge or no data crossing on that side.
    double dSetupPS = kNotMeasured;
    double dHoldPS = kNotMeasured;
    double dSetupHeightMV = kNotMeasured;
    double dHoldHeightMV = kNotMeasured;
    double dVrefMV = kNotMeasured;
    double dWindowPS = kNotMeasured;
    double dStrobeSpreadPS = kNotMeasured;
    // Read cycle, from CheckReadCycleTimeMargin, in ps.
    double dTQHPS = kNotMeasured;
    double dTDQSQPS = kNotMeasured;
    // What the overlay stored in the DQ set after the frame: setup and hold
    // margins, or tQH and tDQSQ for a read cycle, in whole ps.
    double dOverlaySetupPS = 0.0;
    double dOverlayHoldPS = 0.0;
};

// Files that a run wrote.
struct EyeOutputs
{
    std::string png;
    std::string chart;
    std::string report;
};

// The eye parameters of the options on the DQ set: reference (-1.0 leaves
// it to the strobe's swing), setup and hold times and bands; for a read
// cycle the read mark on the DQ and the strobes.
void ApplyEyeOptions(const RenderOptions& options, CChartPointDArray& dq, CChartPointDArray& dqs,
                     CChartPointDArray* pDQSBar);

// Measures the eye with the waveform operations, as the overlay would (the
// reference from the levels, no offset, level mode).
EyeMeasurement MeasureEyeSets(CChartPointDArray& dq, CChartPointDArray& dqs,
                              CChartPointDArray* pDQSBar, bool bRead);

// Reads the CSV eyes of --measure into the chart and sets their roles:
// names sharing the prefix "EYE" so that the overlay pairs them, data
// type, pin role, period, the strobes' levels from their swing.
EyeChartSets AddCsvEyes(CPlotvane_Manager& mgr, const RenderOptions& options);

// The whole run over a chart whose window exists and that holds the sets:
// axis text, the frame with the overlay, the PNG, the measurement, the
// chart archive. Answers the measurement; outputs receives the paths.
EyeMeasurement DrawAndMeasureEye(CPlotvane_Manager& mgr, const EyeChartSets& sets,
                                 const RenderOptions& options, EyeOutputs& outputs);

// The chart archive beside the PNG: its name with ".pvc" for ".png".
std::string ChartPathBeside(const std::string& png);

// Writes the keys common to demo and measure reports into an open object.
void WriteEyeMeasurement(JsonWriter& json, const EyeMeasurement& m, const RenderOptions& options);

} // namespace plotvane
