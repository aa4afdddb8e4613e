#include <plotvane/io/CsvReader.h>

#include "io/io_files.h"

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>
#include <unistd.h>

using plotvane::CsvError;
using plotvane::CsvReadOptions;
using plotvane::CsvTable;
using plotvane::ParseCsv;
using plotvane_test::ReadErrorOf;

namespace
{
// The message of the CsvError that parsing text raises.
std::string ErrorOf(const std::string& text, bool bPairs = false)
{
    CsvReadOptions o;
    o.bColumnPairs = bPairs;
    return ReadErrorOf<CsvError>([&] { ParseCsv(text, "in.csv", o); });
}
} // namespace

TEST(CsvReader, SeparatorsCommentsAndHeader)
{
    // Each separator, with comments, blank lines, CRLF and a BOM.
    for (const char* text :
         {"\xEF\xBB\xBF# scope export\ntime,v\r\n\n0,1\r\n1e-9,-2.5\r\n",
          "time;v\n# mid comment\n0;1\n1e-9;-2.5\n", "time\tv\n  0\t1\n1e-9\t-2.5\n",
          "time  v\n0   1\n 1e-9 \t -2.5\n", "\"time\", \"v\"\n+0, +1\n1e-9, -2.5,\n"})
    {
        SCOPED_TRACE(text);
        CsvTable t = ParseCsv(text, "dir/scope.csv");
        ASSERT_EQ(t.series.size(), 1u);
        EXPECT_TRUE(t.bHeader);
        EXPECT_EQ(t.xName, "time");
        EXPECT_EQ(t.series[0].name, "v");
        EXPECT_EQ(t.series[0].x, (std::vector<double>{0.0, 1e-9}));
        EXPECT_EQ(t.series[0].y, (std::vector<double>{1.0, -2.5}));
    }
    // No header: the file stem names the set, and the first line is data.
    CsvTable t = ParseCsv("1,2\n3,4\n", "/tmp/dq0.rx.csv");
    EXPECT_FALSE(t.bHeader);
    EXPECT_EQ(t.series[0].name, "dq0.rx");
    EXPECT_EQ(t.series[0].x.size(), 2u);
    // Only the first content line can be a header.
    EXPECT_EQ(ErrorOf("x,y\n1,2\nx,y\n"), "in.csv:3: bad number 'x' in column 1");
}

TEST(CsvReader, ErrorsNameTheLine)
{
    EXPECT_EQ(ErrorOf("x,y\n1,2\n\n# c\n3,4.5.6\n"), "in.csv:5: bad number '4.5.6' in column 2");
    EXPECT_EQ(ErrorOf("1,2\n,4\n"), "in.csv:2: empty field in column 1");
    EXPECT_EQ(ErrorOf("1,2\n3,4,5\n"), "in.csv:2: expected 2 columns, found 3");
    EXPECT_EQ(ErrorOf("1,2\n3\n"), "in.csv:2: expected 2 columns, found 1");
    EXPECT_NE(ErrorOf("t,a,b\n1,2,3\n").find("in.csv:1: expected 2 columns (x, y), found 3"),
              std::string::npos);
    EXPECT_EQ(ErrorOf("1,2,3\n", true),
              "in.csv:1: expected column pairs x1,y1,x2,y2,..., found 3 columns");
    // Non-finite and out-of-range text is refused, not read as a value.
    EXPECT_EQ(ErrorOf("1,2\n2,nan\n"), "in.csv:2: not a finite number 'nan' in column 2");
    EXPECT_EQ(ErrorOf("1,2\ninf,2\n"), "in.csv:2: not a finite number 'inf' in column 1");
    EXPECT_EQ(ErrorOf("1,2\n1e999,2\n"), "in.csv:2: number out of range '1e999' in column 1");
    // Nothing to read names the file alone, or the empty column pair.
    EXPECT_EQ(ErrorOf(""), "in.csv: no data points");
    EXPECT_EQ(ErrorOf("# only a comment\n\n"), "in.csv: no data points");
    EXPECT_EQ(ErrorOf("time,v\n"), "in.csv: no data points");
    EXPECT_EQ(ErrorOf("t1,a,t2,b\n1,2,,\n", true), "in.csv: no data points in column pair 2 ('b')");
    // A file that cannot be read is named with the reason.
    EXPECT_EQ(ReadErrorOf<CsvError>([] { plotvane::ReadCsvFile("/nonexistent/x.csv"); }),
              "cannot open '/nonexistent/x.csv': No such file or directory");
    EXPECT_THROW(plotvane::ReadCsvFile("/tmp"), CsvError);
}

TEST(CsvReader, ColumnPairs)
{
    CsvReadOptions o;
    o.bColumnPairs = true;
    // Columns of different lengths: the shorter pair ends with empty fields
    // or missing columns.
    CsvTable t = ParseCsv("t,dq,t,dqs\n0,1,0,5\n1,2,,\n2,3\n", "eye.csv", o);
    ASSERT_EQ(t.series.size(), 2u);
    EXPECT_EQ(t.series[0].name, "dq");
    EXPECT_EQ(t.series[1].name, "dqs");
    EXPECT_EQ(t.series[0].y, (std::vector<double>{1, 2, 3}));
    EXPECT_EQ(t.series[1].x, (std::vector<double>{0}));
    EXPECT_EQ(t.series[1].y, (std::vector<double>{5}));

    // An empty leading pair in a tab file keeps its column place.
    CsvTable tabs = ParseCsv("0\t1\t0\t5\n\t\t7\t8\n", "eye.tsv", o);
    EXPECT_EQ(tabs.series[0].name, "eye 1");
    EXPECT_EQ(tabs.series[1].name, "eye 2");
    EXPECT_EQ(tabs.series[0].x.size(), 1u);
    EXPECT_EQ(tabs.series[1].x, (std::vector<double>{0, 7}));
    // Half a pair is an error.
    EXPECT_EQ(ErrorOf("0,1,0,5\n1,,2,3\n", true), "in.csv:2: empty field in column 2");
}

namespace
{
// Keeps what a sink is handed, block by block.
class RecordingSink : public plotvane::CsvSink
{
public:
    void Begin(const CsvTable& layout, std::size_t) override
    {
        ++nBegins;
        table = layout;
    }
    void Points(std::vector<plotvane::CsvSeries>& block) override
    {
        ++nBlocks;
        for (std::size_t k = 0; k < block.size(); ++k)
        {
            auto& s = table.series[k];
            s.x.insert(s.x.end(), block[k].x.begin(), block[k].x.end());
            s.y.insert(s.y.end(), block[k].y.begin(), block[k].y.end());
        }
    }
    int nBegins = 0;
    int nBlocks = 0;
    CsvTable table;
};

// Two column pairs of 100,000 lines, the second pair ending at line 60,000,
// with no newline after the last line.
std::string LongPairText()
{
    std::string text = "t,a,t,b\n";
    for (int i = 0; i < 100000; ++i)
    {
        text += std::to_string(i) + ',' + std::to_string(i % 7) + ',';
        if (i < 60000)
            text += std::to_string(i) + ',' + std::to_string(-i);
        else
            text += ',';
        if (i + 1 < 100000)
            text += '\n';
    }
    return text;
}
} // namespace

TEST(CsvReader, LongInputsArriveInBlocksInFileOrder)
{
    const std::string text = LongPairText();
    CsvReadOptions o;
    o.bColumnPairs = true;
    RecordingSink sink;
    ParseCsv(text, "long.csv", sink, o);
    EXPECT_EQ(sink.nBegins, 1);
    EXPECT_GT(sink.nBlocks, 2);
    ASSERT_EQ(sink.table.series.size(), 2u);
    const auto& a = sink.table.series[0];
    const auto& b = sink.table.series[1];
    ASSERT_EQ(a.x.size(), 100000u);
    ASSERT_EQ(b.x.size(), 60000u);
    for (int i = 0; i < 100000; ++i)
    {
        ASSERT_EQ(a.x[size_t(i)], i);
        ASSERT_EQ(a.y[size_t(i)], i % 7);
    }
    EXPECT_EQ(b.x.back(), 59999);
    EXPECT_EQ(b.y.back(), -59999);

    // The same through a mapped file, whose parsed pages are given back as
    // the reader goes, with progress reported up to the whole.
    char path[] = "/tmp/plotvane_csv_XXXXXX";
    int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    ASSERT_EQ(write(fd, text.data(), text.size()), ssize_t(text.size()));
    close(fd);
    std::vector<double> seen;
    o.nProgressMinBytes = 100;
    o.progress = [&seen](double f) { seen.push_back(f); };
    CsvTable t = plotvane::ReadCsvFile(path, o);
    std::remove(path);
    ASSERT_GE(seen.size(), 10u);
    EXPECT_EQ(seen.back(), 1.0);
    EXPECT_EQ(t.series[0].x, a.x);
    EXPECT_EQ(t.series[0].y, a.y);
    EXPECT_EQ(t.series[1].x, b.x);
    EXPECT_EQ(t.series[1].y, b.y);
    EXPECT_EQ(t.series[1].name, "b");

    // A bad line far in still names its line; the blocks before it have
    // been handed on.
    std::string bad = text;
    const std::size_t at = bad.find("\n70000,");
    ASSERT_NE(at, std::string::npos);
    bad.replace(at + 1, 5, "7x000");
    RecordingSink partial;
    EXPECT_EQ(ReadErrorOf<CsvError>([&] { ParseCsv(bad, "long.csv", partial, o); }),
              "long.csv:70002: bad number '7x000' in column 1");
    EXPECT_GT(partial.table.series[0].x.size(), 0u);
    EXPECT_LT(partial.table.series[0].x.size(), 70000u);
}

// Numbers must read to the very double that std::from_chars gives, on the
// short path for plain decimals as on the general one, and be accepted or
// refused alike: random decimals of 1 to 21 digits with and without a point
// and an exponent, and forms at the edges of the short path.
TEST(CsvReader, NumbersReadAsFromChars)
{
    auto reference = [](const std::string& s, double& v)
    {
        const char* first = s.data();
        const char* last = first + s.size();
        if (first != last && *first == '+' && s.size() > 1 && s[1] != '-' && s[1] != '+')
            ++first;
        auto [ptr, ec] = std::from_chars(first, last, v);
        return first != last && ec == std::errc() && ptr == last && std::isfinite(v);
    };
    std::vector<std::string> cases = {
        "0", "-0", "0.0", "-0.000", "+0", "5.", ".5", "-.5", ".", "-", "+", "1e", "1e+", "1e-",
        "1E5", "1e+05", "9007199254740992", "9007199254740993", "18446744073709551615",
        "1234567890123456789", "12345678901234567890", "0.00000000000000000001234",
        "1e22", "1e23", "1e-22", "1e-23", "123456789e-30", "4.9e-324", "1.7976931348623157e308",
        "1e400", "0x10", "++1", "00012.5000", "1.5e-9x", "1..5", "1e5.5", "--1", "+-1", "nan",
        "inf",
        "-1.234567e-09", "2.5E+3", "1e00000000000000000000001", "0e999999"};
    std::uint64_t state = 15;
    auto next = [&state](std::uint64_t n)
    {
        state = state * 6364136223846793005ULL + 1442695040888963407ULL;
        return (state >> 33) % n;
    };
    for (int i = 0; i < 20000; ++i)
    {
        std::string s = next(3) == 0 ? "-" : "";
        const int nDigits = 1 + int(next(21));
        const int point = int(next(std::uint64_t(nDigits) + 2)) - 1;
        for (int d = 0; d < nDigits; ++d)
        {
            if (d == point)
                s += '.';
            s += char('0' + next(10));
        }
        if (next(2))
            s += "e" + std::to_string(int(next(61)) - 30);
        cases.push_back(s);
    }
    for (const std::string& s : cases)
    {
        double want = 0.0, got = 0.0;
        const bool bWant = reference(s, want);
        ASSERT_EQ(plotvane::ParseCsvNumber(s, got), bWant) << s;
        if (bWant)
        {
            ASSERT_EQ(std::memcmp(&got, &want, sizeof got), 0)
                << s << ": " << got << " vs " << want;
        }
    }
}
