#include "io/io_files.h"

#include <plotvane/io/SignalFile.h>

#include <gtest/gtest.h>

#include <cmath>
#include <complex>

using plotvane::io::InputImpedanceMagnitude;
using plotvane::io::ReadTouchstone;
using plotvane::io::TouchstoneData;
using plotvane_test::IoDataPath;
using plotvane_test::ReadBytes;
using plotvane_test::ReadErrorOf;

namespace
{
TouchstoneData ReadFixture(const std::string& name)
{
    const std::string path = IoDataPath(name);
    return ReadTouchstone(ReadBytes(path), path);
}

void ExpectNear(std::complex<double> got, std::complex<double> want)
{
    EXPECT_NEAR(got.real(), want.real(), 1e-9) << got << " vs " << want;
    EXPECT_NEAR(got.imag(), want.imag(), 1e-9) << got << " vs " << want;
}

std::string ErrorOf(const std::string& text, const std::string& name = "net.s1p")
{
    return ReadErrorOf([&] { ReadTouchstone(text, name); });
}
} // namespace

// Each fixture holds one unit, one parameter and one format; the expected
// impedances are worked out by hand in their comments.
TEST(Touchstone, OptionLineForms)
{
    struct Case
    {
        const char* file;
        char parameter;
        double ohms;
        std::vector<double> hz;
        std::vector<double> z;
        std::complex<double> second; // Y in siemens, Z in ohms
    };
    const Case cases[] = {
        {"defaults.s1p", 'S', 50, {1e9, 2.5e9, 4e9}, {50, 100, 25}, {1.0 / 3, 0}},
        {"hz_s_ri.s1p", 'S', 75, {100, 1e3, 1e4}, {112.5, 75, 50}, {0, 0.6}},
        {"khz_y_ma.s1p", 'Y', 20, {1e3, 2e3, 3e3}, {20, 40, 10}, {0, 0.025}},
        {"mhz_z_db.s1p", 'Z', 10, {1e6, 1e7, 1e8}, {100, 10, 1}, {0, 10}},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.file);
        const TouchstoneData t = ReadFixture(c.file);
        EXPECT_EQ(t.parameter, c.parameter);
        EXPECT_EQ(t.referenceOhms, c.ohms);
        EXPECT_EQ(t.ports, 1);
        EXPECT_EQ(t.frequencyHz, c.hz);
        ExpectNear(t.data[1][0], c.second);
        const std::vector<double> z = InputImpedanceMagnitude(t);
        ASSERT_EQ(z.size(), c.z.size());
        for (std::size_t k = 0; k < z.size(); ++k)
            EXPECT_NEAR(z[k], c.z[k], 1e-9 * c.z[k]) << k;
    }
}

TEST(Touchstone, TwoPortOrderContinuationAndNoise)
{
    const TouchstoneData t = ReadFixture("ghz_s_db.s2p");
    EXPECT_EQ(t.ports, 2);
    ASSERT_EQ(t.frequencyHz, (std::vector<double>{1e9, 2e9}));
    // The file writes S11 S21 S12 S22; the data are row-major.
    const auto& s = t.data[0];
    ASSERT_EQ(s.size(), 4u);
    ExpectNear(s[0], {0.1, 0.0});
    ExpectNear(s[2], {-0.5, 0.0});
    ExpectNear(s[1], {0.0, 0.01});
    ExpectNear(s[3], {0.0, -std::sqrt(0.1)});
    EXPECT_NEAR(InputImpedanceMagnitude(t)[0], 50 * 1.1 / 0.9, 1e-9);

    const plotvane::io::SignalFile file = plotvane::io::ToSignalFile(t);
    ASSERT_EQ(file.plots.size(), 1u);
    const plotvane::io::Plot& plot = file.plots[0];
    EXPECT_EQ(plot.name, "S");
    EXPECT_EQ(plot.title, "50");
    EXPECT_EQ(plotvane_test::VectorNames(plot),
              (std::vector<std::string>{"frequency", "S11", "S21", "S12", "S22"}));
    EXPECT_FALSE(plot.vectors[0].IsComplex());
    ExpectNear(plot.Find("s21")->cvalues[0], {-0.5, 0.0});
}

TEST(Touchstone, ManyPortsAreRowMajorOverContinuationLines)
{
    const TouchstoneData t = ReadFixture("rows.s3p");
    EXPECT_EQ(t.ports, 3);
    ASSERT_EQ(t.data.size(), 2u);
    ExpectNear(t.data[0][1], {0.12, 0.02});
    ExpectNear(t.data[0][3], {0.21, 0.04});
    ExpectNear(t.data[0][8], {0.33, 0.09});
    const auto plot = plotvane::io::ToSignalFile(t).plots[0];
    EXPECT_EQ(plot.vectors[2].name, "S12");
    EXPECT_EQ(plot.vectors[4].name, "S21");
}

TEST(Touchstone, PortCountFromTheFirstLineWithoutExtension)
{
    EXPECT_EQ(ReadTouchstone("# Hz S RI\n1 0 0\n", "net").ports, 1);
    EXPECT_EQ(ReadTouchstone("# Hz S RI\n1 0 0 1 0 1 0 0 0\n", "net.txt").ports, 2);
    EXPECT_EQ(ErrorOf("# Hz S RI\n1 0 0 1 0\n", "net"),
              "net:2: cannot tell the port count from a first line of 5 numbers; name the "
              "file .sNp");
}

TEST(Touchstone, BadInputNamesTheLine)
{
    EXPECT_EQ(ErrorOf("# Hz S RI\n1 0 0\n1 0 0\n"),
              "net.s1p:3: frequency 1 Hz does not increase (the one before is 1 Hz)");
    EXPECT_EQ(ErrorOf("! c\n# GHz S RI\n1 0.5 x\n"), "net.s1p:3: bad number 'x'");
    EXPECT_EQ(ErrorOf("# GHz S RI\n1 0 0 0 0 0 0 0\n2 0 0 0 0 0 0 0 0\n", "net.s2p"),
              "net.s2p:3: the frequency of line 2 has 17 numbers by the end of this line; a "
              "2-port frequency takes 9");
    EXPECT_EQ(ErrorOf("1 0 0\n2 0\n"),
              "net.s1p:2: the file ends inside the frequency of line 2: 2 of 3 numbers");
    EXPECT_EQ(ErrorOf("# GHz S XX\n"), "net.s1p:1: unknown option 'XX'");
    EXPECT_EQ(ErrorOf("# GHz H RI\n"),
              "net.s1p:1: the parameter H is not read; only S, Y and Z are");
    EXPECT_EQ(ErrorOf("# GHz S RI R\n"),
              "net.s1p:1: 'R' wants a positive reference resistance after it");
    EXPECT_EQ(ErrorOf("1 0 0\n# GHz S RI\n"), "net.s1p:2: the option line comes after the data");
    EXPECT_EQ(ErrorOf("[Version] 2.0\n"),
              "net.s1p:1: the keyword [Version] belongs to Touchstone 2.0; only version 1 "
              "files are read");
    EXPECT_EQ(ErrorOf("! nothing\n"), "net.s1p: no network data");
    EXPECT_EQ(ErrorOf("# Hz S DB\n1 1e300 0\n"),
              "net.s1p:2: value 1 of the frequency of line 2 is out of range");
    // A second option line is allowed and ignored.
    EXPECT_EQ(ReadTouchstone("# Hz S RI\n# GHz\n1 0 0\n", "a.s1p").frequencyHz[0], 1.0);
}

TEST(Touchstone, OpenNetworksAreInfinite)
{
    EXPECT_TRUE(std::isinf(InputImpedanceMagnitude(ReadTouchstone("# S RI\n1 1 0\n", "o.s1p"))[0]));
    EXPECT_TRUE(std::isinf(InputImpedanceMagnitude(ReadTouchstone("# Y RI\n1 0 0\n", "o.s1p"))[0]));
}
