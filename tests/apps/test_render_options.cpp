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
    EXPECT_EQ(o.csvFiles, (std::vector<std::string>{"a.csv", "-b.csv"}));

    // A chart alone is input enough; --help wins unless an error came first.
    EXPECT_EQ(Parse({"--chart", "c", "-o", "x.png"}).result, ParseResult::Run);
    EXPECT_EQ(Parse({"--help"}).result, ParseResult::Help);
    EXPECT_EQ(Parse({"-o", "x.png", "-h"}).result, ParseResult::Help);
    EXPECT_EQ(Parse({"--grid", "7", "-h"}).result, ParseResult::Error);
}

TEST(RenderOptions, BadValues)
{
    struct Case
    {
        std::initializer_list<const char*> args;
        const char* error;
    };
    const Case cases[] = {
        {{"a.csv"}, "no output file: give -o FILE.png"},
        {{"-o", "x.png"}, "no input: give one or more CSV files, or --chart FILE"},
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
    };
    for (const Case& c : cases)
    {
        Parsed p = Parse(c.args);
        EXPECT_EQ(p.result, ParseResult::Error);
        EXPECT_EQ(p.error, c.error);
    }
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
