// Command line of plotvane-render.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace plotvane
{

struct RenderOptions
{
    // FILE or FILE:SIGNAL: CSV, ngspice raw or Touchstone files, or one
    // vector (a raw file's, a named CSV column) of one.
    std::vector<std::string> dataFiles;
    std::string chartFile; // --chart: a chart archive to load first
    std::string output;    // -o/--output: the PNG to write
    std::string saveChart; // --save-chart: the chart archive to write
    // Given or not: an empty name given on the command line clears the one
    // the data brought.
    std::optional<std::string> xName;
    std::optional<std::string> yName;
    std::optional<std::string> xUnit;
    std::optional<std::string> yUnit;
    bool bLogX = false;
    bool bLogY = false;
    bool bPairs = false;
    bool bLight = false;
    // A legend of the sets' names in their colours.
    bool bLegend = true;
    // --target-z: impedance limits for the curves of an impedance chart.
    std::string targetZFile;
    int nWidth = 1600;
    int nHeight = 1000;
    int nGrid = 0;
    int nFontSize = 12;
    bool bFontSizeGiven = false;
    // Pixel size of the measurement texts; 0 takes the settings' default.
    int nMeasureFontSize = 0;

    // --demo ddr-write|ddr-read: a generated DDR eye, measured and drawn.
    std::string demo;
    // --measure: the same for eyes read from files (FILE or FILE:SIGNAL).
    bool bMeasure = false;
    std::string dqFile;
    std::string dqsFile;
    std::string dqsBarFile;
    double dPeriod = 0.0; // seconds; required with --measure
    // --fold: the inputs are waveforms in time, folded at the period from
    // dSkip seconds on.
    bool bFold = false;
    double dSkip = 0.0;
    std::optional<double> vref; // volts, of any sign; else from the strobe's swing
    double dSetupPs = 100.0;
    double dHoldPs = 100.0;
    double dSetupLevel = 0.1; // volts either side of the reference
    double dHoldLevel = 0.1;
    bool bRead = false;
    std::string reportFile; // --report: the JSON report, besides stdout
    std::string reportCsv;  // --report-csv: a row per measured eye
};

// True when the options ask for an eye measurement (--demo or --measure).
inline bool IsEyeMode(const RenderOptions& o)
{
    return !o.demo.empty() || o.bMeasure;
}

enum class ParseResult
{
    Run,
    Help,
    Error
};

// Parses argv[1..argc). On Error, error holds a one-line message.
ParseResult ParseOptions(int argc, const char* const* argv, RenderOptions& options,
                         std::string& error);

// The text of --help.
std::string UsageText();

// "WxH" with both in the accepted range.
bool ParseSize(const std::string& text, int& width, int& height);

constexpr int kMinImageSide = 16;
constexpr int kMaxImageSide = 16384;
constexpr int kMinFontSize = 4;
constexpr int kMaxFontSize = 200;

} // namespace plotvane
