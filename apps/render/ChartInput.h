// Filling a chart manager for plotvane-render: data sets from CSV series
// and signal files, charts from and to archive files, and the axis options
// of the command line. Failures throw ChartInputError with a message for
// the user.
#pragma once

#include "render/Axes.h"
#include "render/Options.h"
#include <plotvane/foundation/Types.h>
#include <plotvane/io/CsvReader.h>

#include <functional>
#include <stdexcept>
#include <string>

class CChartPointDArray;
class CPlotvane_Manager;

namespace plotvane
{

class ChartInputError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// The curve colour of the n-th data set: the curve entries (from index 2)
// of the dark or light colour preset, in turn.
COLORREF CurveColor(int n, bool bLight);

// Roles of the sets of an eye chart, in the order they are added.
enum class EyeRole
{
    Data,
    Strobe,
    StrobeComplement
};

// Curve colour of an eye chart's set. The timing overlay draws its levels
// and arrows in red, so the eye curves take other entries of the preset:
// green data, teal and orange strobes.
COLORREF EyeCurveColor(EyeRole role, bool bLight);

// Adds the series as a new data set, in the draw set, as a host does:
// AddNewDataSet, SetCurrentEditSet, AddData, SetCurrentEditSetName,
// AddDrawDataSetIndex. Answers the set's index.
int AddSeriesToChart(CPlotvane_Manager& mgr, const CsvSeries& series, COLORREF color);
// The same from two arrays of n samples each.
int AddSeriesToChart(CPlotvane_Manager& mgr, const std::string& name, const double* xs,
                     const double* ys, std::size_t n, COLORREF color);

// Calls f with each set of the draw set, in its order; indices that name
// no set are passed over.
void ForEachDrawnSet(const CPlotvane_Manager& mgr,
                     const std::function<void(const CChartPointDArray&)>& f);

// Loads a chart archive. A version 4 chart ends its load with the read-only
// archive exception after everything is in place; that one is kept, any
// other fault is an error.
void LoadChartFile(CPlotvane_Manager& mgr, const std::string& path);
void SaveChartFile(CPlotvane_Manager& mgr, const std::string& path);

// Sets the log scale members; must come before data are added, since a
// logarithmic Y axis drops zero values as they arrive.
void ApplyScaleOptions(CPlotvane_Manager& mgr, const RenderOptions& options);
// Axis names and units: those given on the command line, else defaults
// from the CSV header when given (non-empty).
void ApplyAxisText(CPlotvane_Manager& mgr, const RenderOptions& options,
                   const std::string& defaultXName, const std::string& defaultYName);

// Makes the progress report of reading one file; may answer null.
using ProgressFactory = std::function<std::function<void(double)>(const std::string& file)>;

// Reads every data file of the options as CSV and adds its series; answers
// the number of sets added. headerX and headerY receive the axis names the
// first file's header suggests (headerY only for a single data set).
int AddCsvFiles(CPlotvane_Manager& mgr, const RenderOptions& options, std::string& headerX,
                std::string& headerY, const ProgressFactory& progressFor = nullptr);

// What the data files put on the axes, and whether they make an impedance
// chart.
struct DataAxes
{
    AxisSource x;
    AxisSource y;
    bool bImpedance = false;
};

// Adds every input of the options (FILE or FILE:SIGNAL of any reader),
// whole CSV files through the streaming reader. An impedance curve (a
// Touchstone file, an AC sweep) turns both axes logarithmic before any data
// arrive. Non-finite samples are left out, and warn says how many.
DataAxes AddDataFiles(CPlotvane_Manager& mgr, const RenderOptions& options,
                      const std::function<void(const std::string&)>& warn,
                      const ProgressFactory& progressFor = nullptr);

// Makes sure there is something to draw: throws when no drawn set holds
// two points (a line needs two), or when a logarithmic axis meets negative
// values. Drawn sets of fewer than two points, which the view drops, are
// named to warn as they are met.
void CheckChartData(CPlotvane_Manager& mgr, const std::function<void(const std::string&)>& warn);

} // namespace plotvane
