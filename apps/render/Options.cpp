#include "render/Options.h"

#include "render/OverlayDemo.h"
#include "render/Units.h"

#include <charconv>
#include <cstdio>
#include <cstring>

namespace plotvane
{
namespace
{

bool ParseInt(const std::string& text, int lo, int hi, int& value)
{
    int v = 0;
    const char* last = text.data() + text.size();
    auto [ptr, ec] = std::from_chars(text.data(), last, v);
    if (text.empty() || ec != std::errc() || ptr != last || v < lo || v > hi)
        return false;
    value = v;
    return true;
}

enum class Kind
{
    Flag,
    Value
};

struct OptionInfo
{
    const char* longName;
    char shortName;
    Kind kind;
};

const OptionInfo kOptions[] = {
    {"help", 'h', Kind::Flag},      {"output", 'o', Kind::Value}, {"chart", 0, Kind::Value},
    {"save-chart", 0, Kind::Value}, {"pairs", 0, Kind::Flag},     {"x-name", 0, Kind::Value},
    {"y-name", 0, Kind::Value},     {"x-unit", 0, Kind::Value},   {"y-unit", 0, Kind::Value},
    {"log-x", 0, Kind::Flag},       {"log-y", 0, Kind::Flag},     {"size", 0, Kind::Value},
    {"grid", 0, Kind::Value},       {"light", 0, Kind::Flag},     {"font-size", 0, Kind::Value},
    {"demo", 0, Kind::Value},       {"measure", 0, Kind::Flag},   {"dq", 0, Kind::Value},
    {"dqs", 0, Kind::Value},        {"dqs-bar", 0, Kind::Value},  {"period", 0, Kind::Value},
    {"vref", 0, Kind::Value},       {"setup-ps", 0, Kind::Value}, {"hold-ps", 0, Kind::Value},
    {"setup-level", 0, Kind::Value}, {"hold-level", 0, Kind::Value}, {"read", 0, Kind::Flag},
    {"report", 0, Kind::Value},     {"report-csv", 0, Kind::Value}, {"fold", 0, Kind::Flag},
    {"skip", 0, Kind::Value},       {"target-z", 0, Kind::Value}, {"no-legend", 0, Kind::Flag},
};

enum class Sign
{
    Any,
    NotNegative,
    Positive
};

// A quantity option: its unit, what a bare number is worth in it (and the
// unit its field counts in), the signs it takes, an example for messages,
// and its field; null for --vref, which is optional.
struct QuantityOption
{
    const char* longName;
    const char* unit;
    double dBareScale;
    Sign sign;
    const char* example;
    double RenderOptions::*field;
};

const QuantityOption kQuantities[] = {
    {"period", "s", 1.0, Sign::Positive, "1.25n, 1.25ns or 1.25e-9", &RenderOptions::dPeriod},
    {"skip", "s", 1.0, Sign::NotNegative, "5n, 5ns or 5e-9", &RenderOptions::dSkip},
    {"vref", "V", 1.0, Sign::Any, "0.6, 600m or 600mV", nullptr},
    {"setup-ps", "s", 1e-12, Sign::NotNegative, "100 (ps), 100p or 0.1ns",
     &RenderOptions::dSetupPs},
    {"hold-ps", "s", 1e-12, Sign::NotNegative, "100 (ps), 100p or 0.1ns",
     &RenderOptions::dHoldPs},
    {"setup-level", "V", 1.0, Sign::NotNegative, "0.1, 100m or 100mV",
     &RenderOptions::dSetupLevel},
    {"hold-level", "V", 1.0, Sign::NotNegative, "0.1, 100m or 100mV",
     &RenderOptions::dHoldLevel},
};

// The entry of a table of options with that long name, or null.
template <class Option, std::size_t N>
const Option* FindLongName(const Option (&table)[N], const std::string& name)
{
    for (const Option& o : table)
    {
        if (name == o.longName)
            return &o;
    }
    return nullptr;
}

const char* SignText(Sign sign)
{
    return sign == Sign::Positive ? " above 0" : sign == Sign::NotNegative ? " of 0 or more" : "";
}

// A quantity in the option's unit, of the sign it takes. A bare number in
// an option counted in ps that is below a thousandth of a ps was meant in
// seconds.
bool ParseQuantityOption(const QuantityOption& q, const std::string& text, double& value,
                         std::string& error)
{
    double v = 0.0;
    bool bSuffix = false;
    std::string why;
    const std::string bad = "bad value '" + text + "' for --" + q.longName + ": ";
    if (!ParseQuantity(text, q.unit, q.dBareScale, v, bSuffix, why))
    {
        error = bad + why + "; expected a number" + SignText(q.sign) + " such as " + q.example;
        return false;
    }
    if ((q.sign == Sign::Positive && !(v > 0.0)) || (q.sign == Sign::NotNegative && v < 0.0))
    {
        error = bad + "expected a number" + SignText(q.sign) + " such as " + q.example;
        return false;
    }
    if (q.dBareScale != 1.0 && !bSuffix && v > 0.0 && v < q.dBareScale * 1e-3)
    {
        // The number as seconds, in ps: "1e-10" meant 100 ps.
        char meant[32];
        std::snprintf(meant, sizeof meant, "%.6g", v / q.dBareScale / 1e-12);
        error = bad + "a bare number counts in ps here, so this is " + text + " ps; for " +
                meant + " ps write " + meant + " or " + meant + "p";
        return false;
    }
    value = v;
    return true;
}

const OptionInfo* FindShort(char c)
{
    for (const OptionInfo& o : kOptions)
    {
        if (o.shortName != 0 && o.shortName == c)
            return &o;
    }
    return nullptr;
}

bool ApplyQuantity(const QuantityOption& q, const std::string& text, RenderOptions& opt,
                   std::string& error)
{
    double v = 0.0;
    if (!ParseQuantityOption(q, text, v, error))
        return false;
    // The field counts in the unit a bare number is given in.
    const double dStored = v / q.dBareScale;
    if (q.field)
        opt.*q.field = dStored;
    else
        opt.vref = dStored;
    return true;
}

// Stores one option; false with a message for a bad value.
bool Apply(const OptionInfo& o, const std::string& value, RenderOptions& opt, std::string& error)
{
    std::string name = o.longName;
    if (name == "output")
        opt.output = value;
    else if (name == "chart")
        opt.chartFile = value;
    else if (name == "save-chart")
        opt.saveChart = value;
    else if (name == "pairs")
        opt.bPairs = true;
    else if (name == "x-name")
        opt.xName = value;
    else if (name == "y-name")
        opt.yName = value;
    else if (name == "x-unit")
        opt.xUnit = value;
    else if (name == "y-unit")
        opt.yUnit = value;
    else if (name == "log-x")
        opt.bLogX = true;
    else if (name == "log-y")
        opt.bLogY = true;
    else if (name == "light")
        opt.bLight = true;
    else if (name == "size")
    {
        if (!ParseSize(value, opt.nWidth, opt.nHeight))
        {
            error = "bad value '" + value + "' for --size: expected WxH, each from " +
                    std::to_string(kMinImageSide) + " to " + std::to_string(kMaxImageSide);
            return false;
        }
    }
    else if (name == "grid")
    {
        if (!ParseInt(value, 0, 2, opt.nGrid))
        {
            error = "bad value '" + value + "' for --grid: expected 0, 1 or 2";
            return false;
        }
    }
    else if (name == "font-size")
    {
        if (!ParseInt(value, kMinFontSize, kMaxFontSize, opt.nFontSize))
        {
            error = "bad value '" + value + "' for --font-size: expected a whole number from " +
                    std::to_string(kMinFontSize) + " to " + std::to_string(kMaxFontSize);
            return false;
        }
        opt.bFontSizeGiven = true;
    }
    else if (name == "demo")
    {
        if (value != "ddr-write" && value != "ddr-read" && FindOverlayDemo(value) == nullptr)
        {
            error = "bad value '" + value + "' for --demo: expected ddr-write, ddr-read";
            const std::string more = OverlayDemoNames();
            error += more.empty() ? "" : " or one of " + more;
            return false;
        }
        opt.demo = value;
    }
    else if (name == "measure")
        opt.bMeasure = true;
    else if (name == "dq")
        opt.dqFile = value;
    else if (name == "dqs")
        opt.dqsFile = value;
    else if (name == "dqs-bar")
        opt.dqsBarFile = value;
    else if (name == "read")
        opt.bRead = true;
    else if (name == "report")
        opt.reportFile = value;
    else if (name == "report-csv")
        opt.reportCsv = value;
    else if (name == "fold")
        opt.bFold = true;
    else if (name == "target-z")
        opt.targetZFile = value;
    else if (name == "no-legend")
        opt.bLegend = false;
    else if (const QuantityOption* q = FindLongName(kQuantities, name))
        return ApplyQuantity(*q, value, opt, error);
    return true;
}

const char* const kMeasureOnly =
    "--dq, --dqs, --dqs-bar, --period, --read, --fold and --skip need --measure";

bool UsesMeasureOptions(const RenderOptions& opt)
{
    return !opt.dqFile.empty() || !opt.dqsFile.empty() || !opt.dqsBarFile.empty() ||
           opt.dPeriod != 0.0 || opt.bRead || opt.bFold || opt.dSkip != 0.0;
}

// The eye modes take no data files or chart, and fill in their default
// output name; --measure needs its three inputs.
bool CheckEyeOptions(RenderOptions& opt, std::string& error)
{
    if (!opt.demo.empty() && opt.bMeasure)
    {
        error = "give either --demo or --measure, not both";
        return false;
    }
    if (!opt.dataFiles.empty() || !opt.chartFile.empty() || !opt.targetZFile.empty())
    {
        error = std::string(opt.bMeasure ? "--measure" : "--demo") +
                " takes no data files, --chart or --target-z" +
                (opt.bMeasure ? ": give the eyes with --dq, --dqs and --dqs-bar" : "");
        return false;
    }
    if (!opt.demo.empty())
    {
        if (UsesMeasureOptions(opt))
        {
            error = kMeasureOnly;
            return false;
        }
        if (!opt.reportCsv.empty() && opt.demo != "ddr-write" && opt.demo != "ddr-read")
        {
            error = "--report-csv needs --measure or --demo ddr-write|ddr-read";
            return false;
        }
        if (opt.output.empty())
            opt.output = "plotvane-" + opt.demo + ".png";
        return true;
    }
    if (opt.dqFile.empty())
        error = "--measure needs --dq FILE: the data eye (FILE or FILE:SIGNAL)";
    else if (opt.dqsFile.empty())
        error = "--measure needs --dqs FILE: the strobe eye (FILE or FILE:SIGNAL)";
    else if (opt.dPeriod == 0.0)
        error = "--measure needs --period SECONDS: the fold period of the eyes";
    else if (opt.dSkip != 0.0 && !opt.bFold)
        error = "--skip needs --fold";
    if (!error.empty())
        return false;
    if (opt.output.empty())
        opt.output = "plotvane-eye.png";
    return true;
}

} // namespace

bool ParseSize(const std::string& text, int& width, int& height)
{
    std::size_t x = text.find_first_of("xX");
    if (x == std::string::npos)
        return false;
    int w = 0, h = 0;
    if (!ParseInt(text.substr(0, x), kMinImageSide, kMaxImageSide, w) ||
        !ParseInt(text.substr(x + 1), kMinImageSide, kMaxImageSide, h))
        return false;
    width = w;
    height = h;
    return true;
}

ParseResult ParseOptions(int argc, const char* const* argv, RenderOptions& opt, std::string& error)
{
    bool bHelp = false;
    bool bOptionsEnd = false;
    for (int i = 1; i < argc; ++i)
    {
        std::string arg = argv[i];
        if (bOptionsEnd || arg.size() < 2 || arg[0] != '-')
        {
            opt.dataFiles.push_back(arg);
            continue;
        }
        if (arg == "--")
        {
            bOptionsEnd = true;
            continue;
        }
        const OptionInfo* info = nullptr;
        std::string shown = arg;
        std::optional<std::string> value;
        if (arg[1] == '-')
        {
            std::string name = arg.substr(2);
            std::size_t eq = name.find('=');
            if (eq != std::string::npos)
            {
                value = name.substr(eq + 1);
                name.erase(eq);
                shown = "--" + name;
            }
            info = FindLongName(kOptions, name);
        }
        else
        {
            info = arg.size() == 2 ? FindShort(arg[1]) : nullptr;
        }
        if (!info)
        {
            error = "unknown option '" + shown + "'";
            return ParseResult::Error;
        }
        if (info->kind == Kind::Flag && value)
        {
            error = "option '" + shown + "' takes no value";
            return ParseResult::Error;
        }
        if (info->kind == Kind::Value && !value)
        {
            if (i + 1 >= argc)
            {
                error = "option '" + shown + "' needs a value";
                return ParseResult::Error;
            }
            value = argv[++i];
        }
        if (std::strcmp(info->longName, "help") == 0)
            bHelp = true;
        else if (!Apply(*info, value.value_or(std::string()), opt, error))
            return ParseResult::Error;
    }
    if (bHelp)
        return ParseResult::Help;
    if (IsEyeMode(opt))
        return CheckEyeOptions(opt, error) ? ParseResult::Run : ParseResult::Error;
    if (UsesMeasureOptions(opt))
    {
        error = kMeasureOnly;
        return ParseResult::Error;
    }
    if (!opt.reportCsv.empty())
    {
        error = "--report-csv needs --measure or --demo ddr-write|ddr-read";
        return ParseResult::Error;
    }
    if (opt.output.empty())
    {
        error = "no output file: give -o FILE.png";
        return ParseResult::Error;
    }
    if (opt.dataFiles.empty() && opt.chartFile.empty())
    {
        error = "no input: give one or more data files, or --chart FILE";
        return ParseResult::Error;
    }
    return ParseResult::Run;
}

// The fixed part of the help text, below.
static std::string UsageTextBase();

namespace
{

// The overlay demos' lines of the help text, from their table.
std::string OverlayDemoUsage()
{
    if (OverlayDemos().empty())
        return "";
    std::string text = "\nOverlay demos (--demo NAME; PNG, chart and JSON report as above):\n";
    for (const OverlayDemo& d : OverlayDemos())
    {
        std::string line = "  " + std::string(d.name);
        line.resize(24, ' ');
        text += line + d.summary + "\n";
    }
    return text;
}

} // namespace

std::string UsageText()
{
    return UsageTextBase() + OverlayDemoUsage();
}

static std::string UsageTextBase()
{
    return R"usage(Usage: plotvane-render [OPTIONS] -o OUT.png FILE[:SIGNAL] ...
       plotvane-render --demo ddr-write|ddr-read [OPTIONS]
       plotvane-render --measure --dq FILE[:SIGNAL] --dqs FILE[:SIGNAL] --period TIME [OPTIONS]

Draws curves from CSV, ngspice raw and Touchstone files as a Plotvane chart,
offscreen, and writes the frame as a PNG.

Input:
  FILE                  a CSV file (one data set per file, or per column pair
                        with --pairs), an ngspice raw file (binary or ASCII;
                        every vector of its first plot), or a Touchstone file
                        (.s1p, .s2p: |Z| seen at port 1).
  FILE:SIGNAL           one vector of a raw file, e.g. sim.raw:v(dq_rx), or a
                        named column of a CSV file (x,a,b,... shares x).
                        A Touchstone file or an AC sweep makes an impedance
                        chart on log axes: |Z| in Ohm over Hz (an AC sweep's
                        |V| is |Z| with a 1 A AC current source at the node).
  CSV files: separators comma, semicolon, tab or blanks; lines starting with
  '#' and blank lines are skipped; a first line that is not all numbers is a
  header naming the data sets and the X axis ("time (s)" gives the unit);
  "nan" and "inf" are refused.
  --pairs               read each CSV file as column pairs x1,y1,x2,y2,...: one
                        data set per pair; a pair left empty on a line has no
                        point there.
  --chart FILE          load a chart archive first (data sets, axes, cursors);
                        data files given as well are added to it. The
                        archive keeps no log Y axis: give --log-y again.
  --target-z FILE       impedance limits drawn over every curve: a CSV of
                        Hz,Ohm points (a polyline) or from Hz,to Hz,Ohm steps.

Output:
  -o, --output FILE     the PNG to write (required).
  --save-chart FILE     also write the chart archive, for --chart or a host.
  --size WxH            image size in pixels (default 1600x1000).

Axes and look:
  The numbers along each axis are in the unit its name shows ("Time (ns)"),
  with the prefix chosen from the data's range; log axes write the prefix
  into the numbers (1K, 1M, 1G).
  --x-name TEXT         X axis name (default: from the data); a unit in
                        brackets, "Time (s)", is the unit of the values.
  --y-name TEXT         Y axis name (default: the one data set's name, or the
                        quantity all sets share).
  --x-unit TEXT         the unit the X values are in, e.g. s, ns or Hz.
  --y-unit TEXT         the unit the Y values are in, e.g. V or Ohm.
  --log-x               logarithmic X axis (decades); X must be above 0 (a
                        sweep may start at 0 Hz when its next point lies
                        above 1 Hz).
  --log-y               logarithmic Y axis (decades); points at y = 0 are
                        dropped, and Y below 0 is an error.
  --grid 0|1|2          grid: 0 solid lines (default), 1 ticks only, 2 dotted.
  --light               light background colour set (default: dark).
  --font-size N         pixel size of axis names, grid values and the legend
                        (default 12).
  --no-legend           no legend of the data sets' names and colours.
  -h, --help            show this text and exit.

Numbers: times, levels and periods take SI prefixes and units: 1.25n, 1.25ns,
1.25e-9 (seconds); 100m, 100mV, 0.1 (volts); prefixes f p n u m k M G T.

DDR eyes (a JSON report goes to standard output):
  --demo ddr-write|ddr-read
                        a generated DDR4-style eye (1.25 ns strobe period):
                        DQ against a differential strobe DQS/DQS#, measured
                        for setup/hold (write) or tDQSQ/tQH (read), drawn
                        with the timing overlay. Default output
                        plotvane-ddr-write.png (or -read.png) in the current
                        directory, the chart beside it as .pvc.
  --measure             the same for your own eyes: FILE or FILE:SIGNAL each,
                        time in seconds and levels in volts.
  --dq FILE[:SIGNAL]    the data eye (required with --measure).
  --dqs FILE[:SIGNAL]   the strobe eye (required with --measure).
  --dqs-bar FILE[:SIGNAL]
                        the strobe's complement, for a differential strobe.
  --period TIME         the fold period, e.g. 1.25n (required).
  --fold                the inputs are waveforms in time: fold them at
                        --period into eyes (whole periods; with more than two,
                        the first and the last are left out).
  --skip TIME           with --fold: start folding at TIME, past the start-up.
  --vref V              the reference level, of any sign (default: the middle
                        of the strobe's swing).
  --setup-ps T          required setup time (default 100 ps; a bare number is
                        in ps, 0.1ns and 100p are the same).
  --hold-ps T           required hold time (default 100 ps).
  --setup-level V       setup band either side of the reference (default 0.1).
  --hold-level V        hold band either side of the reference (default 0.1).
  --read                a read cycle: measure tDQSQ and tQH instead.
  --report FILE         also write the JSON report to FILE.
  --report-csv FILE     add the eye's row to a CSV file (header first when the
                        file is new), for collecting results.
  The report's "pass" is false when a margin is violated (the margin is then
  negative), and a value that could not be measured is null. The eye's time
  span is checked against --period, and its swing against the levels, so
  that a unit mistake stops with a message instead of a wrong report.
  With --demo or --measure, -o defaults to a name in the current directory
  and the chart archive is saved beside the PNG unless --save-chart says.

Exit status: 0 when the PNG was written; 1 for unreadable or bad input, or
when no OpenGL context could be had; 2 for a bad command line.

Example:
  plotvane-render --x-name "Time (s)" --y-name "Voltage (V)" \
      --light --size 1200x800 -o dq.png dq0.csv dq1.csv
  plotvane-render -o pdn.png --target-z target.csv board.s1p
  plotvane-render --demo ddr-write
  plotvane-render --measure --fold --skip 2.5n --period 1.25n \
      --dq 'sim.raw:v(dq_rx)' --dqs 'sim.raw:v(dqs_rx)' \
      --dqs-bar 'sim.raw:v(dqsn_rx)' --setup-ps 100 --hold-ps 100 -o eye.png
)usage";
}

} // namespace plotvane
