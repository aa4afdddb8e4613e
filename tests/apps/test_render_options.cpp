#include "render/Options.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <vector>

using plotvane::ParseOptions;
using plotvane::ParseResult;
using plotvane::RenderOptions;

namespace
{
struct Parsed
{
    ParseResult result;
    RenderOptions options;
    std::string error;
};

Parsed Parse(std::initializer_list<const char*> args)
{
    std::vector<const char*> argv{"plotvane-render"};
    argv.insert(argv.end(), args.begin(), args.end());
    Parsed p;
    p.result = ParseOptions(int(argv.size()), argv.data(), p.options, p.error);
    return p;
}

struct BadCase
{
    std::initializer_list<const char*> args;
    const char* error;
};

template <std::size_t N> void ExpectErrors(const BadCase (&cases)[N])
{
    for (const BadCase& c : cases)
    {
        const Parsed p = Parse(c.args);
        EXPECT_EQ(p.result, ParseResult::Error);
        EXPECT_EQ(p.error, c.error);
    }
}
} // namespace

TEST(RenderOptions, EveryOption)
{
    Parsed d = Parse({"-o", "a.png", "a.csv"});
    ASSERT_EQ(d.result, ParseResult::Run) << d.error;
    EXPECT_EQ(d.options.nWidth * 10000 + d.options.nHeight, 1600 * 10000 + 1000);
    EXPECT_FALSE(d.options.bLight || d.options.bLogX || d.options.bLogY || d.options.bPairs);
    EXPECT_FALSE(d.options.xName.has_value());

    // clang-format off
    Parsed p = Parse({"--output=out.png", "--chart", "in.pvc", "--save-chart", "s.pvc", "--pairs",
                      "--x-name", "Time", "--y-name=", "--x-unit", "s", "--y-unit", "V",
                      "--log-x", "--log-y", "--size", "640x480", "--grid=2", "--light",
                      "--font-size", "16", "a.csv", "--", "-b.csv"});
    // clang-format on
    ASSERT_EQ(p.result, ParseResult::Run) << p.error;
    const RenderOptions& o = p.options;
    EXPECT_EQ(o.output + o.chartFile + o.saveChart, "out.pngin.pvcs.pvc");
    EXPECT_TRUE(o.bPairs && o.bLogX && o.bLogY && o.bLight);
    EXPECT_EQ(*o.xName + "|" + *o.yName + "|" + *o.xUnit + "|" + *o.yUnit, "Time||s|V");
    EXPECT_EQ(o.nWidth, 640);
    EXPECT_EQ(o.nHeight, 480);
    EXPECT_EQ(o.nGrid, 2);
    EXPECT_EQ(o.nFontSize, 16);
    EXPECT_EQ(o.dataFiles, (std::vector<std::string>{"a.csv", "-b.csv"}));

    // A chart alone is input enough; --help wins unless an error came first.
    EXPECT_EQ(Parse({"--chart", "c", "-o", "x.png"}).result, ParseResult::Run);
    EXPECT_EQ(Parse({"--help"}).result, ParseResult::Help);
    EXPECT_EQ(Parse({"-o", "x.png", "-h"}).result, ParseResult::Help);
    EXPECT_EQ(Parse({"--grid", "7", "-h"}).result, ParseResult::Error);
}

TEST(RenderOptions, BadValues)
{
    ExpectErrors({
        {{"a.csv"}, "no output file: give -o FILE.png"},
        {{"-o", "x.png"}, "no input: give one or more data files, or --chart FILE"},
        {{"-o"}, "option '-o' needs a value"},
        {{"-o", "x", "a", "--bogus"}, "unknown option '--bogus'"},
        {{"-o", "x", "a", "-x"}, "unknown option '-x'"},
        {{"-o", "x", "a", "--light=1"}, "option '--light' takes no value"},
        {{"-o", "x", "a", "--grid", "3"}, "bad value '3' for --grid: expected 0, 1 or 2"},
        {{"-o", "x", "a", "--grid", "1x"}, "bad value '1x' for --grid: expected 0, 1 or 2"},
        {{"-o", "x", "a", "--font-size", "0"},
         "bad value '0' for --font-size: expected a whole number from 4 to 200"},
        {{"-o", "x", "a", "--size", "800"},
         "bad value '800' for --size: expected WxH, each from 16 to 16384"},
    });
    int w = 1, h = 1;
    for (const char* bad : {"x", "800x", "x600", "8x600", "800x99999", "-800x600", "800x600x2",
                            "800.5x600", " 800x600"})
    {
        EXPECT_FALSE(plotvane::ParseSize(bad, w, h)) << bad;
    }
    EXPECT_EQ(w, 1);
    EXPECT_TRUE(plotvane::ParseSize("16X16384", w, h));
    EXPECT_EQ(w, 16);
    EXPECT_EQ(h, 16384);
}

TEST(RenderOptions, EyeQuantitiesTakePrefixesAndUnits)
{
    Parsed p = Parse({"--measure", "--dq", "sim.raw:v(dq)", "--dqs", "d.csv", "--period", "1.25ns",
                      "--fold", "--skip", "5n", "--vref=-0.2V", "--setup-ps", "0.1ns", "--hold-ps",
                      "80", "--setup-level", "100mV", "--hold-level", "0.05", "--report-csv", "r.csv"});
    ASSERT_EQ(p.result, ParseResult::Run) << p.error;
    const RenderOptions& o = p.options;
    EXPECT_DOUBLE_EQ(o.dPeriod, 1.25e-9);
    EXPECT_TRUE(o.bFold);
    EXPECT_DOUBLE_EQ(o.dSkip, 5e-9);
    EXPECT_DOUBLE_EQ(*o.vref, -0.2);
    EXPECT_NEAR(o.dSetupPs, 100.0, 1e-9);
    EXPECT_DOUBLE_EQ(o.dHoldPs, 80.0);
    EXPECT_NEAR(o.dSetupLevel, 0.1, 1e-15);
    EXPECT_EQ(o.dqFile, "sim.raw:v(dq)");
    EXPECT_EQ(o.reportCsv, "r.csv");

    ExpectErrors({
        {{"--measure", "--dqs", "b", "--period", "1n"},
         "--measure needs --dq FILE: the data eye (FILE or FILE:SIGNAL)"},
        {{"--measure", "--dq", "a", "--dqs", "b"},
         "--measure needs --period SECONDS: the fold period of the eyes"},
        {{"--measure", "--dq", "a", "--dqs", "b", "--period", "1.25x"},
         "bad value '1.25x' for --period: 'x' is neither an SI prefix nor 's'; expected a "
         "number above 0 such as 1.25n, 1.25ns or 1.25e-9"},
        {{"--measure", "--dq", "a", "--dqs", "b", "--period", "1n", "--setup-level", "5ns"},
         "bad value '5ns' for --setup-level: 'ns' is neither an SI prefix nor 'V'; expected a "
         "number of 0 or more such as 0.1, 100m or 100mV"},
        // Seconds written into an option counted in ps.
        {{"--measure", "--dq", "a", "--dqs", "b", "--period", "1n", "--setup-ps", "1e-10"},
         "bad value '1e-10' for --setup-ps: a bare number counts in ps here, so this is 1e-10 "
         "ps; for 100 ps write 100 or 100p"},
        {{"--measure", "--dq", "a", "--dqs", "b", "--period", "1n", "--skip", "1n"},
         "--skip needs --fold"},
        {{"-o", "x.png", "a.csv", "--fold"},
         "--dq, --dqs, --dqs-bar, --period, --read, --fold and --skip need --measure"},
        {{"-o", "x.png", "a.csv", "--report-csv", "r.csv"},
         "--report-csv needs --measure or --demo ddr-write|ddr-read"},
        {{"--demo", "tdr", "--report-csv", "r.csv"},
         "--report-csv needs --measure or --demo ddr-write|ddr-read"},
    });
}
