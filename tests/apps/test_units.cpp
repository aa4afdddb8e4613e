// Numbers with SI prefixes and units, and the units of axis names.
#include "render/Axes.h"
#include "render/Units.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

using plotvane::ParseQuantity;

namespace
{
double Parse(const std::string& text, const std::string& unit, double dBare = 1.0)
{
    double v = NAN;
    bool bSuffix = false;
    std::string why;
    return ParseQuantity(text, unit, dBare, v, bSuffix, why) ? v : NAN;
}

std::string Why(const std::string& text, const std::string& unit)
{
    double v = 0.0;
    bool bSuffix = false;
    std::string why;
    EXPECT_FALSE(ParseQuantity(text, unit, 1.0, v, bSuffix, why)) << text;
    return why;
}
} // namespace

TEST(Units, QuantitiesWithPrefixesAndUnits)
{
    struct Case
    {
        const char* text;
        const char* unit;
        double value;
    };
    const Case cases[] = {
        {"1.25n", "s", 1.25e-9},   {"1.25ns", "s", 1.25e-9}, {"1.25 ns", "s", 1.25e-9},
        {"1.25e-9", "s", 1.25e-9}, {"+2.5e-9s", "s", 2.5e-9}, {"100p", "s", 100e-12},
        {"3.3V", "V", 3.3},        {"10mV", "V", 10e-3},     {"-0.2 V", "V", -0.2},
        {"600m", "V", 0.6},        {"2.5 us", "s", 2.5e-6},  {"2.5\xC2\xB5s", "s", 2.5e-6},
        {"1meg", "Hz", 1e6},       {"1GHz", "Hz", 1e9},      {"5mOhm", "Ohm", 5e-3},
        {"5 ohm", "Ohm", 5.0},     {"1k", "Ohm", 1e3},       {"7", "V", 7.0},
    };
    for (const Case& c : cases)
        EXPECT_NEAR(Parse(c.text, c.unit), c.value, std::fabs(c.value) * 1e-12) << c.text;
    // A bare number counts in the option's own scale; a suffix never does.
    EXPECT_NEAR(Parse("100", "s", 1e-12), 100e-12, 1e-24);
    EXPECT_NEAR(Parse("0.1ns", "s", 1e-12), 100e-12, 1e-24);

    for (const char* junk : {"", "ns", "1.2.3", "1e", "1x", "1 nss", "inf", "nan", "+-1", "1Ms2"})
        EXPECT_TRUE(std::isnan(Parse(junk, "s"))) << junk;
    // The message names the part that is wrong, and a unit of another
    // quantity is refused.
    EXPECT_EQ(Why("100ps", "V"), "'ps' is neither an SI prefix nor 'V'");
    EXPECT_EQ(Why("", "V"), "no number");
}

TEST(Units, PowersAndMessages)
{
    EXPECT_EQ(plotvane::EngineeringPower(625e-12), -9);
    EXPECT_EQ(plotvane::EngineeringPower(30e-9), -9);
    EXPECT_EQ(plotvane::EngineeringPower(600e-9), -6); // 0.6 us, not 600 ns
    EXPECT_EQ(plotvane::EngineeringPower(1.0), 0);
    EXPECT_EQ(plotvane::EngineeringPower(1e-15), -12);
    EXPECT_EQ(plotvane::EngineeringPower(1e20), 12);
    EXPECT_EQ(plotvane::EngineeringPower(0.0), 0);
    EXPECT_EQ(plotvane::FormatQuantity(1.25e-9, "s"), "1.25 ns");
    EXPECT_EQ(plotvane::FormatQuantity(-0.2, "V"), "-200 mV");
    EXPECT_EQ(plotvane::FormatQuantity(5.9e-31, "V"), "5.9e-31 V");
}

TEST(Units, AxisNamesAndTheirUnits)
{
    std::string name, unit;
    plotvane::SplitNameAndUnit("Time (s)", name, unit);
    EXPECT_EQ(name + "|" + unit, "Time|s");
    plotvane::SplitNameAndUnit("V(out) [mV]", name, unit);
    EXPECT_EQ(name + "|" + unit, "V(out)|mV");
    // A vector name's brackets are no unit.
    plotvane::SplitNameAndUnit("v(dq_rx)", name, unit);
    EXPECT_EQ(name + "|" + unit, "v(dq_rx)|");
    plotvane::SplitNameAndUnit("x ()", name, unit);
    EXPECT_EQ(name + "|" + unit, "x|");

    EXPECT_EQ(plotvane::SplitUnit("ns").base, "s");
    EXPECT_DOUBLE_EQ(plotvane::SplitUnit("ns").dScale, 1e-9);
    EXPECT_DOUBLE_EQ(plotvane::SplitUnit("kHz").dScale, 1e3);
    EXPECT_EQ(plotvane::SplitUnit("dB").base, "dB");
    EXPECT_EQ(plotvane::GuessUnit("v(dq_rx)", ""), "V");
    EXPECT_EQ(plotvane::GuessUnit("TIME", ""), "s");
    EXPECT_EQ(plotvane::GuessUnit("dq", "voltage"), "V");
    EXPECT_EQ(plotvane::GuessUnit("x", ""), "");

    // Labels read well: no doubled brackets, a prefix alone for an unknown
    // unit, nothing at all without one.
    EXPECT_EQ(plotvane::AxisLabel("Time", "s", -9), "Time (ns)");
    EXPECT_EQ(plotvane::AxisLabel("x", "", -6), "x (u)");
    EXPECT_EQ(plotvane::AxisLabel("x", "", 0), "x");
    EXPECT_EQ(plotvane::AxisLabel("", "V", -3), "(mV)");

    const plotvane::AxisSource s = plotvane::WithOptions({"time", "s"}, "Delay (ns)", std::nullopt);
    EXPECT_EQ(s.name + "|" + s.unit, "Delay|ns");
    EXPECT_EQ(plotvane::WithOptions({"t", ""}, std::nullopt, std::string("ps")).unit, "ps");
}
