#include "render/Options.h"

#include "render/CsvReader.h"
#include "render/OverlayDemo.h"

#include <charconv>
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
    {"report", 0, Kind::Value},
};

// A finite number; with bPositive above 0, else at or above 0.
bool ParseReal(const std::string& name, const std::string& text, bool bPositive, double& value,
               std::string& error)
{
    double v = 0.0;
    if (!ParseCsvNumber(text, v) || (bPositive ? !(v > 0.0) : v < 0.0))
    {
        error = "bad value '" + text + "' for --" + name + ": expected a number " +
                (bPositive ? "above 0" : "of 0 or more");
        return false;
    }
    value = v;
    return true;
}

const OptionInfo* FindLong(const std::string& name)
{
    for (const OptionInfo& o : kOptions)
    {
        if (name == o.longName)
            return &o;
    }
    return nullptr;
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
    else if (name == "period")
        return ParseReal(name, value, true, opt.dPeriod, error);
    else if (name == "vref")
    {
        double v = 0.0;
        if (!ParseReal(name, value, false, v, error))
            return false;
        opt.vref = v;
    }
    else if (name == "setup-ps")
        return ParseReal(name, value, false, opt.dSetupPs, error);
    else if (name == "hold-ps")
        return ParseReal(name, value, false, opt.dHoldPs, error);
    else if (name == "setup-level")
        return ParseReal(name, value, false, opt.dSetupLevel, error);
    else if (name == "hold-level")
        return ParseReal(name, value, false, opt.dHoldLevel, error);
    return true;
}

// The eye modes take no CSV list or chart, and fill in their default
// output name; --measure needs its three inputs.
bool CheckEyeOptions(RenderOptions& opt, std::string& error)
{
    if (!opt.demo.empty() && opt.bMeasure)
    {
        error = "give either --demo or --measure, not both";
        return false;
    }
    if (!opt.csvFiles.empty() || !opt.chartFile.empty())
    {
        error = std::string(opt.bMeasure ? "--measure" : "--demo") +
                " takes no data files or --chart" +
                (opt.bMeasure ? ": give the eyes with --dq, --dqs and --dqs-bar" : "");
        return false;
    }
    if (!opt.demo.empty())
    {
        if (!opt.dqFile.empty() || !opt.dqsFile.empty() || !opt.dqsBarFile.empty() ||
            opt.dPeriod != 0.0 || opt.bRead)
        {
            error = "--dq, --dqs, --dqs-bar, --period and --read need --measure";
            return false;
        }
        if (opt.output.empty())
            opt.output = "plotvane-" + opt.demo + ".png";
        return true;
    }
    if (opt.dqFile.empty())
        error = "--measure needs --dq FILE: the folded data eye as x,y CSV";
    else if (opt.dqsFile.empty())
        error = "--measure needs --dqs FILE: the folded strobe eye as x,y CSV";
    else if (opt.dPeriod == 0.0)
        error = "--measure needs --period SECONDS: the fold period of the eyes";
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
            opt.csvFiles.push_back(arg);
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
            info = FindLong(name);
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
    if (!opt.dqFile.empty() || !opt.dqsFile.empty() || !opt.dqsBarFile.empty() ||
        opt.dPeriod != 0.0 || opt.bRead)
    {
        error = "--dq, --dqs, --dqs-bar, --period and --read need --measure";
        return ParseResult::Error;
    }
    if (opt.output.empty())
    {
        error = "no output file: give -o FILE.png";
        return ParseResult::Error;
    }
    if (opt.csvFiles.empty() && opt.chartFile.empty())
    {
        error = "no input: give one or more CSV files, or --chart FILE";
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
    return R"(Usage: plotvane-render [OPTIONS] -o OUT.png [DATA.csv ...]
       plotvane-render --demo ddr-write|ddr-read [OPTIONS]
       plotvane-render --measure --dq FILE --dqs FILE --period SECONDS [OPTIONS]

Draws XY data as a Plotvane chart, offscreen, and writes the frame as a PNG.

Input:
  DATA.csv              a delimited text file of x,y columns, one data set per
                        file. Separators: comma, semicolon, tab or blanks.
                        Lines starting with '#' and blank lines are skipped. A
                        first line that is not all numbers is a header: it
                        names the data set (the y column) and the X axis (the
                        x column); without one the file name is the name.
                        Numbers must be finite: "nan" and "inf" are refused.
  --pairs               read each file as column pairs x1,y1,x2,y2,...: one
                        data set per pair; a pair left empty on a line has no
                        point there.
  --chart FILE          load a chart archive first (data sets, axes, cursors);
                        CSV files given as well are added to it.

Output:
  -o, --output FILE     the PNG to write (required).
  --save-chart FILE     also write the chart archive, for --chart or a host.
  --size WxH            image size in pixels (default 1600x1000).

Axes and look:
  --x-name TEXT         X axis name (default: the first header's x column).
  --y-name TEXT         Y axis name (default: the header's y column when
                        there is one data set).
  --x-unit TEXT         X axis unit, e.g. s or Hz; prefixes follow the range.
  --y-unit TEXT         Y axis unit, e.g. V.
  --log-x               logarithmic X axis (decades); X must be above 0 (a
                        sweep may start at 0 Hz when its next point lies
                        above 1 Hz).
  --log-y               logarithmic Y axis (decades); points at y = 0 are
                        dropped, and Y below 0 is an error.
  --grid 0|1|2          grid: 0 solid lines (default), 1 ticks only, 2 dotted.
  --light               light background colour set (default: dark).
  --font-size N         pixel size of axis names and grid values (default 12).
  -h, --help            show this text and exit.

DDR eyes (a JSON report goes to standard output):
  --demo ddr-write|ddr-read
                        a generated DDR4-style eye (1.25 ns strobe period):
                        DQ against a differential strobe DQS/DQS#, measured
                        for setup/hold (write) or tDQSQ/tQH (read), drawn
                        with the timing overlay. Default output
                        plotvane-ddr-write.png (or -read.png) in the current
                        directory, the chart beside it as .pvc.
  --measure             the same for folded eyes from CSV files (x,y columns
                        of an eye already folded at the period):
  --dq FILE             the data eye (required with --measure).
  --dqs FILE            the strobe eye (required with --measure).
  --dqs-bar FILE        the strobe's complement, for a differential strobe.
  --period SECONDS      the fold period, e.g. 1.25e-9 (required).
  --vref V              the reference level (default: the middle of the
                        strobe's swing).
  --setup-ps N          required setup time in ps (default 100).
  --hold-ps N           required hold time in ps (default 100).
  --setup-level V       setup band either side of the reference (default 0.1).
  --hold-level V        hold band either side of the reference (default 0.1).
  --read                a read cycle: measure tDQSQ and tQH instead.
  --report FILE         also write the JSON report to FILE.
  With --demo or --measure, -o defaults to a name in the current directory
  and the chart archive is saved beside the PNG unless --save-chart says.

Exit status: 0 when the PNG was written; 1 for unreadable or bad input, or
when no OpenGL context could be had; 2 for a bad command line.

Example:
  plotvane-render --x-name Time --x-unit s --y-name Voltage --y-unit V \
      --light --size 1200x800 -o dq.png dq0.csv dq1.csv
  plotvane-render --demo ddr-write
  plotvane-render --measure --dq dq.csv --dqs dqs.csv --dqs-bar dqsb.csv \
      --period 1.25e-9 --setup-ps 100 --hold-ps 100 -o eye.png
)";
}

} // namespace plotvane
