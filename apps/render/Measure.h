// DDR eye measurement for plotvane-render: a DQ eye against its strobe
// (DQS, and DQS# when differential) in a chart, measured twice: by the
// timing overlay as it draws the frame (the whole picoseconds it prints)
// and by the waveform's own margin operations.
#pragma once

#include "render/EyeChecks.h"
#include "render/Options.h"
#include "render/SignalInput.h"

#include <limits>
#include <optional>
#include <string>
#include <vector>

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
    // Write cycle, in ps: negative by the depth of a violation; NaN when the
    // operation found no strobe edge or no data crossing on that side.
    double dSetupPS = kNotMeasured;
    double dHoldPS = kNotMeasured;
    double dSetupHeightMV = kNotMeasured;
    double dHoldHeightMV = kNotMeasured;
    double dVrefMV = kNotMeasured;
    double dWindowPS = kNotMeasured;
    double dStrobeSpreadPS = kNotMeasured;
    // Read cycle, from CheckReadCycleTimeMargin, in ps; NaN when the data
    // has no eye crossing at the reference.
    double dTQHPS = kNotMeasured;
    double dTDQSQPS = kNotMeasured;
    // What the overlay printed in the frame: setup and hold margins, or tQH
    // and tDQSQ for a read cycle, in whole ps; NaN when it printed none.
    double dOverlaySetupPS = kNotMeasured;
    double dOverlayHoldPS = kNotMeasured;

    // Write cycle: false when a side is violated, true when both sides were
    // measured and met; no verdict otherwise, and none for a read cycle.
    std::optional<bool> Pass() const;
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
// reference from the levels, no offset, level mode), keeping the depth of a
// violated side.
EyeMeasurement MeasureEyeSets(CChartPointDArray& dq, CChartPointDArray& dqs,
                              CChartPointDArray* pDQSBar, bool bRead);

// Names of the eye's sets, for the reports.
struct EyeNames
{
    std::string dq;
    std::string dqs;
    std::string dqsBar; // empty for a single-ended strobe
};

// The curves of one eye and the names of their sets. The overlay pairs a
// DQ with the strobes whose names share the text before the first '_'.
struct EyeSignals
{
    Signal dq;
    Signal dqs;
    std::optional<Signal> dqsBar;
    EyeNames names;
    EyeNames sources; // as the user named them, for messages
};

// Checks the curves against the options (EyeChecks.h), folds them with
// --fold, adds them to the chart and sets their roles: data type, pin
// role, period, the strobes' levels from their swing. Throws
// ChartInputError for curves that cannot make an eye.
EyeChartSets AddEyeSignals(CPlotvane_Manager& mgr, const RenderOptions& options,
                           const EyeSignals& eye, const WarnFn& warn);

// Reads the eyes of --measure (FILE or FILE:SIGNAL each), checks them
// with AddEyeSignals, named with the prefix "EYE".
EyeChartSets AddMeasuredEyes(CPlotvane_Manager& mgr, const RenderOptions& options,
                             const WarnFn& warn);

// The whole run over a chart whose window exists and that holds the sets:
// axes in ns and V, the frame with the overlay, the PNG, the measurement,
// the chart archive. Answers the measurement; outputs receives the paths.
EyeMeasurement DrawAndMeasureEye(CPlotvane_Manager& mgr, const EyeChartSets& sets,
                                 const RenderOptions& options, EyeOutputs& outputs);

// The levels at which the timing overlay draws the reference line of each
// drawn DQ eye that has a strobe, in volts: what a grid line must not hide.
std::vector<double> EyeReferenceLevels(CPlotvane_Manager& mgr);

// The chart archive beside the PNG: its name with ".pvc" for ".png".
std::string ChartPathBeside(const std::string& png);

// Writes the keys common to demo and measure reports into an open object.
void WriteEyeMeasurement(JsonWriter& json, const EyeMeasurement& m, const RenderOptions& options);

// Adds the eye's row to a CSV file for spreadsheets: a header line first
// when the file is new or empty, then one row; an empty cell for what was
// not measured. A file that starts with another header is refused, so that
// rows of different layouts never mix. Throws std::runtime_error.
void AppendEyeCsvRow(const std::string& path, const EyeNames& names, const EyeMeasurement& m,
                     const RenderOptions& options);

} // namespace plotvane
