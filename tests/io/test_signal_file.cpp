#include "io/io_files.h"

#include <plotvane/io/SignalFile.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

using plotvane::io::ReadCsv;
using plotvane::io::ReadSignalFile;
using plotvane::io::SignalFile;
using plotvane_test::IoDataPath;
using plotvane_test::ReadBytes;
using plotvane_test::ReadErrorOf;
using plotvane_test::VectorNames;
using plotvane_test::WriteBytes;

namespace
{

// A small raw file as ngspice writes its text form.
const char* const kTinyRaw = "Title: tiny\n"
                             "Date: today\n"
                             "Plotname: Transient Analysis\n"
                             "Flags: real\n"
                             "No. Variables: 2\n"
                             "No. Points: 2\n"
                             "Variables:\n"
                             "\t0\ttime\ttime\n"
                             "\t1\tv(dq_rx)\tvoltage\n"
                             "Values:\n"
                             " 0\t0.0\n\t0.5\n\n"
                             " 1\t1e-9\n\t1.5\n";

class SignalFiles : public ::testing::Test
{
protected:
    void SetUp() override
    {
        m_dir = std::filesystem::temp_directory_path() /
                ("plotvane_io_" + std::to_string(getpid()));
        std::filesystem::create_directories(m_dir);
    }
    void TearDown() override { std::filesystem::remove_all(m_dir); }
    std::string Write(const std::string& name, const std::string& bytes) const
    {
        const std::string path = (m_dir / name).string();
        WriteBytes(path, bytes);
        return path;
    }

    std::filesystem::path m_dir;
};

} // namespace

TEST_F(SignalFiles, ReaderByExtensionOrByContent)
{
    const std::string s1p = ReadBytes(IoDataPath("hz_s_ri.s1p"));
    const std::string csv = "time,v(a),v(b)\n0,1,2\n1e-9,3,4\n";
    struct Case
    {
        std::string name, bytes, plotName;
        std::vector<std::string> vectors;
    };
    const Case cases[] = {
        {"sim.raw", kTinyRaw, "Transient Analysis", {"time", "v(dq_rx)"}},
        {"sim.out", kTinyRaw, "Transient Analysis", {"time", "v(dq_rx)"}},
        {"pdn.S1P", s1p, "S", {"frequency", "S11"}},
        {"pdn", s1p, "S", {"frequency", "S11"}},
        {"scope.csv", csv, "CSV", {"time", "v(a)", "v(b)"}},
        {"scope.dat", "# scope\n" + csv, "CSV", {"time", "v(a)", "v(b)"}},
    };
    for (const Case& c : cases)
    {
        SCOPED_TRACE(c.name);
        const SignalFile f = ReadSignalFile(Write(c.name, c.bytes));
        ASSERT_EQ(f.plots.size(), 1u);
        EXPECT_EQ(f.plots[0].name, c.plotName);
        EXPECT_EQ(VectorNames(f.plots[0]), c.vectors);
    }
}

TEST_F(SignalFiles, FailuresNameTheFile)
{
    const std::string raw = Write("bad.raw", "Title: x\nNo. Points: many\n");
    EXPECT_EQ(ReadErrorOf([&] { ReadSignalFile(raw); }),
              raw + ":2: 'No. Points' is not a count: 'many'");
    EXPECT_EQ(ReadErrorOf([&] { ReadSignalFile(raw, 10); }),
              raw + ": the file holds 26 bytes, more than the 10 a signal file may have");
    const std::string missing = (m_dir / "none.raw").string();
    const std::string why = ReadErrorOf<std::runtime_error>([&] { ReadSignalFile(missing); });
    EXPECT_NE(why.find("'" + missing + "'"), std::string::npos) << why;
    EXPECT_THROW(ReadSignalFile(m_dir.string()), std::runtime_error);
}

TEST(ReadCsv, FirstColumnIsTheScaleOfAllOthers)
{
    const SignalFile f = ReadCsv("time;a;b\n0;1;2\n1;3;4\n2;5;6\n", "scope.csv");
    const auto& plot = f.plots.at(0);
    ASSERT_EQ(plot.vectors.size(), 3u);
    EXPECT_EQ(plot.vectors[0].values, (std::vector<double>{0, 1, 2}));
    EXPECT_EQ(plot.Find("B")->values, (std::vector<double>{2, 4, 6}));
    EXPECT_EQ(plot.Find("c"), nullptr);

    // Without a header: "x" and the names the CSV reader gives.
    EXPECT_EQ(VectorNames(ReadCsv("0 1 2\n1 3 4\n", "dir/eye.txt").plots.at(0)),
              (std::vector<std::string>{"x", "eye 1", "eye 2"}));
    EXPECT_EQ(VectorNames(ReadCsv("0,1\n1,3\n", "eye.csv").plots.at(0)),
              (std::vector<std::string>{"x", "eye"}));

    EXPECT_EQ(ReadErrorOf([] { ReadCsv("t,a,b\n0,1,2\n1,2\n", "in.csv"); }),
              "in.csv:3: expected 3 columns, found 2");
    EXPECT_EQ(ReadErrorOf([] { ReadCsv("t,a\n", "in.csv"); }), "in.csv: no data points");
    EXPECT_EQ(ReadErrorOf([] { ReadCsv("t\n0\n", "in.csv"); }),
              "in.csv:1: expected columns x,y1,y2,..., found 1 column");
}
