// Raw files written by ngspice itself, checked against the text that its
// wrdata command writes in the same run. Without ngspice these tests fail.
#include "io/io_files.h"

#include <plotvane/io/SignalFile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <sstream>
#include <unistd.h>

using plotvane::io::Plot;
using plotvane::io::ReadNgspiceRaw;
using plotvane::io::SignalFile;
using plotvane_test::ReadBytes;
using plotvane_test::ReadErrorOf;

namespace
{

// A DDR-like line: a 1.25 ns pulse through two RC sections, a transient
// and an AC sweep, each written binary and as text.
const char* const kNetlist = R"(* plotvane reader check
V1 in 0 DC 0 AC 1 PULSE(0 1.2 0.2n 50p 50p 0.6n 1.25n)
R1 in out 50
C1 out 0 2p
R2 out rx 10
C2 rx 0 1p
.control
tran 10p 5n
set filetype=binary
write tran_bin.raw v(in) v(out) v(rx)
set filetype=ascii
write tran_ascii.raw v(in) v(out) v(rx)
set wr_singlescale
set wr_vecnames
option numdgt=17
wrdata tran.txt v(in) v(out) v(rx)
ac dec 10 1meg 10g
set filetype=binary
write ac_bin.raw v(out) v(rx)
set filetype=ascii
write ac_ascii.raw v(out) v(rx)
wrdata ac.txt v(out) v(rx)
write two_ascii.raw tran1.v(out) ac1.v(out)
set filetype=binary
write two_bin.raw tran1.v(out) ac1.v(out)
quit 0
.endc
.end
)";

// Rows of wrdata's numbers, its header line left out.
std::vector<std::vector<double>> ReadWrdata(const std::string& path)
{
    std::istringstream in(ReadBytes(path));
    std::string line;
    std::getline(in, line);
    std::vector<std::vector<double>> rows;
    while (std::getline(in, line))
    {
        std::istringstream fields(line);
        std::vector<double> row;
        for (double v; fields >> v;)
            row.push_back(v);
        if (!row.empty())
            rows.push_back(row);
    }
    return rows;
}

// Text raw files carry 16 significant digits, wrdata 18.
void ExpectClose(double got, double want, bool bExact)
{
    if (bExact)
        EXPECT_DOUBLE_EQ(got, want);
    else
        EXPECT_NEAR(got, want, 1e-14 * std::fabs(want) + 1e-300);
}

std::string Replace(std::string text, const std::string& from, const std::string& to)
{
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

#define EXPECT_PREFIX(text, prefix) EXPECT_EQ((text).substr(0, (prefix).size()), prefix)

std::string PointsLine(const std::string& bytes)
{
    const std::string from = bytes.substr(bytes.find("No. Points: "));
    return from.substr(0, from.find('\n'));
}

// The 1-based line on which needle first appears.
std::size_t LineOf(const std::string& text, const std::string& needle)
{
    const std::size_t at = text.find(needle);
    return 1 + std::size_t(std::count(text.begin(), text.begin() + std::ptrdiff_t(at), '\n'));
}

class NgspiceRaw : public ::testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        s_dir = "/tmp/plotvane_ngspice_" + std::to_string(getpid());
        std::system(("mkdir -p " + s_dir).c_str());
        plotvane_test::WriteBytes(s_dir + "/check.cir", kNetlist);
        const std::string run = "cd " + s_dir + " && ngspice -b check.cir > ngspice.log 2>&1";
        s_status = std::system(run.c_str());
    }
    static void TearDownTestSuite() { std::system(("rm -rf " + s_dir).c_str()); }
    void SetUp() override
    {
        ASSERT_EQ(s_status, 0) << "ngspice -b failed or is missing (scripts/install-deps.sh "
                                  "installs it); see "
                               << s_dir << "/ngspice.log";
    }

    static std::string Path(const std::string& name) { return s_dir + "/" + name; }
    static std::string Bytes(const std::string& name) { return ReadBytes(Path(name)); }
    static SignalFile Read(const std::string& name)
    {
        return ReadNgspiceRaw(Bytes(name), Path(name));
    }

    static std::string s_dir;
    static int s_status;
};
std::string NgspiceRaw::s_dir;
int NgspiceRaw::s_status = -1;

void ExpectTransient(const Plot& plot, const std::vector<std::vector<double>>& rows, bool bExact)
{
    EXPECT_EQ(plot.title, "* plotvane reader check");
    EXPECT_EQ(plot.name, "Transient Analysis");
    ASSERT_EQ(plot.vectors.size(), 4u);
    const char* names[] = {"time", "v(in)", "v(out)", "v(rx)"};
    for (std::size_t j = 0; j < 4; ++j)
    {
        SCOPED_TRACE(names[j]);
        const auto& v = plot.vectors[j];
        EXPECT_EQ(v.name, names[j]);
        EXPECT_EQ(v.kind, j == 0 ? "time" : "voltage");
        EXPECT_FALSE(v.IsComplex());
        ASSERT_EQ(v.size(), rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i)
            ExpectClose(v.values[i], rows[i][j], bExact);
    }
}

void ExpectAc(const Plot& plot, const std::vector<std::vector<double>>& rows, bool bExact)
{
    EXPECT_EQ(plot.name, "AC Analysis");
    ASSERT_EQ(plot.vectors.size(), 3u);
    const auto& f = plot.vectors[0];
    EXPECT_EQ(f.kind, "frequency");
    EXPECT_FALSE(f.IsComplex());
    ASSERT_EQ(f.size(), rows.size());
    for (std::size_t j = 1; j < 3; ++j)
    {
        const auto& v = plot.vectors[j];
        ASSERT_TRUE(v.IsComplex());
        ASSERT_EQ(v.size(), rows.size());
        for (std::size_t i = 0; i < rows.size(); ++i)
        {
            ExpectClose(v.cvalues[i].real(), rows[i][2 * j - 1], bExact);
            ExpectClose(v.cvalues[i].imag(), rows[i][2 * j], bExact);
        }
    }
    for (std::size_t i = 0; i < rows.size(); ++i)
        ExpectClose(f.values[i], rows[i][0], bExact);
    // The pole of the line shows: the far end falls well below the source.
    EXPECT_LT(std::abs(plot.vectors[2].cvalues.back()), 0.1);
}

} // namespace

TEST_F(NgspiceRaw, BinaryAndTextMatchWrdata)
{
    using Check = void (*)(const Plot&, const std::vector<std::vector<double>>&, bool);
    struct Case
    {
        const char* file;
        const char* wrdata;
        Check check;
        bool bBinary;
    };
    const Case cases[] = {{"tran_bin.raw", "tran.txt", ExpectTransient, true},
                          {"tran_ascii.raw", "tran.txt", ExpectTransient, false},
                          {"ac_bin.raw", "ac.txt", ExpectAc, true},
                          {"ac_ascii.raw", "ac.txt", ExpectAc, false}};
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.file);
        const auto rows = ReadWrdata(Path(c.wrdata));
        ASSERT_GT(rows.size(), 40u);
        const SignalFile file = Read(c.file);
        ASSERT_EQ(file.plots.size(), 1u);
        c.check(file.plots[0], rows, c.bBinary);
    }
}

TEST_F(NgspiceRaw, SeveralPlotsInOneFile)
{
    const Plot tran = Read("tran_bin.raw").plots[0];
    const Plot ac = Read("ac_bin.raw").plots[0];
    for (const char* name : {"two_bin.raw", "two_ascii.raw"})
    {
        SCOPED_TRACE(name);
        const SignalFile file = Read(name);
        ASSERT_EQ(file.plots.size(), 2u);
        EXPECT_EQ(file.plots[0].name, "Transient Analysis");
        EXPECT_EQ(file.plots[1].name, "AC Analysis");
        ASSERT_EQ(file.plots[0].vectors.size(), 2u);
        ASSERT_EQ(file.plots[1].vectors.size(), 2u);
        const std::vector<double>& v = file.plots[0].vectors[1].values;
        ASSERT_EQ(v.size(), tran.Find("v(out)")->size());
        for (std::size_t i = 0; i < v.size(); ++i)
            ExpectClose(v[i], tran.Find("v(out)")->values[i], false);
        const auto& got = file.plots[1].vectors[1].cvalues;
        const auto& want = ac.Find("V(OUT)")->cvalues;
        ASSERT_EQ(got.size(), want.size());
        for (std::size_t i = 0; i < got.size(); ++i)
            EXPECT_NEAR(std::abs(got[i] - want[i]), 0.0, 1e-14 * std::abs(want[i]));
    }
}

// Windows line ends and blanks after the header values change nothing.
TEST_F(NgspiceRaw, CrlfAndPaddedLines)
{
    std::string text;
    for (char c : Bytes("tran_ascii.raw"))
        text += c == '\n' ? std::string(" \r\n") : std::string(1, c);
    EXPECT_EQ(ReadNgspiceRaw(text, "crlf.raw").plots[0].vectors[2].values,
              Read("tran_ascii.raw").plots[0].vectors[2].values);

    const std::string binary = Bytes("tran_bin.raw");
    const std::size_t data = binary.find("Binary:\n") + 8;
    std::string header;
    for (char c : binary.substr(0, data))
        header += c == '\n' ? std::string("   \r\n") : std::string(1, c);
    EXPECT_EQ(ReadNgspiceRaw(header + binary.substr(data), "crlf.raw").plots[0].vectors[3].values,
              Read("tran_bin.raw").plots[0].vectors[3].values);
}

TEST_F(NgspiceRaw, BadTextNamesTheLine)
{
    const std::string text = Bytes("tran_ascii.raw");
    const std::string pointsLine = PointsLine(text);
    const std::size_t n = std::stoul(pointsLine.substr(12));
    auto errorOf = [](const std::string& bytes) {
        return ReadErrorOf([&] { ReadNgspiceRaw(bytes, "t.raw"); });
    };
    auto at = [](std::size_t line, const std::string& message) {
        return "t.raw:" + std::to_string(line) + ": " + message;
    };

    const std::string more = Replace(text, pointsLine, "No. Points: " + std::to_string(n + 1));
    EXPECT_EQ(errorOf(more), at(std::size_t(std::count(text.begin(), text.end(), '\n')),
                                "the file ends inside point " + std::to_string(n) + " of 'time'"));
    const std::string fewer = Replace(text, pointsLine, "No. Points: " + std::to_string(n - 1));
    const std::string lastPoint = "\n " + std::to_string(n - 1) + "\t";
    EXPECT_EQ(errorOf(fewer), at(LineOf(text, lastPoint) + 1,
                                 "values go on past 'No. Points: " + std::to_string(n - 1) + "'"));
    EXPECT_EQ(errorOf(Replace(text, "No. Variables: 4", "No. Variables: 5")),
              at(LineOf(text, "Values:"),
                 "expected variable 4 as '<index> <name> <type>', found 'Values:'"));
    const std::string bad = Replace(text, "\n 7\t", "\n 7\t1.0x");
    EXPECT_PREFIX(errorOf(bad), at(LineOf(bad, "1.0x"), "bad value '1.0x"));
    EXPECT_EQ(errorOf(Replace(text, pointsLine + "\n", "")),
              at(LineOf(text, "Values:") - 1, "no 'No. Points:' line before 'Values:'"));
    EXPECT_EQ(errorOf(Replace(text, "No. Variables: 4\n", "")),
              at(LineOf(text, "Variables:\n") - 1, "'Variables:' comes before 'No. Variables:'"));
    EXPECT_EQ(errorOf("time,v\n0,1\n"), at(1, "expected a header line 'Name: value', found 'time,v'"));
    EXPECT_EQ(errorOf(text.substr(0, text.find("Values:"))),
              "t.raw:" + std::to_string(LineOf(text, "Values:") - 1) +
                  ": the header ends without 'Values:' or 'Binary:'");
    EXPECT_EQ(errorOf(""), "t.raw: no plot: the file is empty");
}

TEST_F(NgspiceRaw, BadBinaryNamesTheByte)
{
    const std::string bytes = Bytes("tran_bin.raw");
    const std::size_t data = bytes.find("Binary:\n") + 8;
    auto errorOf = [](const std::string& b) { return ReadErrorOf([&] { ReadNgspiceRaw(b, "b.raw"); }); };
    const std::string where = "b.raw: byte " + std::to_string(data) + ": ";

    const std::string truncated = bytes.substr(0, bytes.size() - 5);
    EXPECT_PREFIX(errorOf(truncated), where);
    EXPECT_NE(errorOf(truncated).find("only " + std::to_string(truncated.size() - data) +
                                      " bytes follow"),
              std::string::npos);

    // Claims far beyond the bytes are refused before any room is taken.
    const std::string pointsLine = PointsLine(bytes);
    const auto start = std::chrono::steady_clock::now();
    for (const char* claim : {"No. Points: 4611686018427387904", "No. Points: 100000000000"})
    {
        SCOPED_TRACE(claim);
        const std::string huge = Replace(bytes, pointsLine, claim);
        EXPECT_PREFIX(errorOf(huge), "b.raw: byte " + std::to_string(huge.find("Binary:\n") + 8));
        const std::string ascii = Bytes("tran_ascii.raw");
        const std::string text = Replace(ascii, PointsLine(ascii), claim);
        EXPECT_PREFIX(errorOf(text), "b.raw:" + std::to_string(LineOf(text, "Values:")) + ": '");
    }
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(1));
    EXPECT_EQ(errorOf(Replace(bytes, pointsLine, "No. Points: 99999999999999999999999")),
              "b.raw:6: 'No. Points' is not a count: '99999999999999999999999'");

    // A NaN in the data, and a second plot's header after binary data.
    std::string nan = bytes;
    nan.replace(data + 8, 8, std::string("\0\0\0\0\0\0\xf8\x7f", 8));
    EXPECT_EQ(errorOf(nan), "b.raw: byte " + std::to_string(data + 8) +
                                ": not a finite number in 'v(in)' at point 0");
    EXPECT_EQ(errorOf(bytes + "junk\n"),
              "b.raw: byte " + std::to_string(bytes.size()) +
                  ": expected a header line 'Name: value', found 'junk'");
}
