#include "render/CsvReader.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <string>
#include <unistd.h>

using plotvane::CsvError;
using plotvane::CsvReadOptions;
using plotvane::CsvTable;
using plotvane::ParseCsv;

namespace
{
// The message of the CsvError that f raises; empty if none.
std::string WhatOf(const std::function<void()>& f)
{
    try
    {
        f();
    }
    catch (const CsvError& e)
    {
        return e.what();
    }
    return std::string();
}

// The message of the CsvError that parsing text raises.
std::string ErrorOf(const std::string& text, bool bPairs = false)
{
    CsvReadOptions o;
    o.bColumnPairs = bPairs;
    return WhatOf([&] { ParseCsv(text, "in.csv", o); });
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
    EXPECT_EQ(ErrorOf("1,2\n0x10,2\n"), "in.csv:2: bad number '0x10' in column 1");
    EXPECT_EQ(ErrorOf("1,2\n++1,2\n"), "in.csv:2: bad number '++1' in column 1");
    // Nothing to read names the file alone, or the empty column pair.
    EXPECT_EQ(ErrorOf(""), "in.csv: no data points");
    EXPECT_EQ(ErrorOf("# only a comment\n\n"), "in.csv: no data points");
    EXPECT_EQ(ErrorOf("time,v\n"), "in.csv: no data points");
    EXPECT_EQ(ErrorOf("t1,a,t2,b\n1,2,,\n", true), "in.csv: no data points in column pair 2 ('b')");
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

TEST(CsvReader, FilesAndProgress)
{
    char path[] = "/tmp/plotvane_csv_XXXXXX";
    int fd = mkstemp(path);
    ASSERT_GE(fd, 0);
    close(fd);
    {
        std::ofstream f(path);
        for (int i = 0; i < 1000; ++i)
            f << i << ',' << i * 0.5 << '\n';
    }
    std::vector<double> seen;
    CsvReadOptions o;
    o.nProgressMinBytes = 100;
    o.progress = [&seen](double f) { seen.push_back(f); };
    CsvTable t = plotvane::ReadCsvFile(path, o);
    EXPECT_EQ(t.series[0].x.size(), 1000u);
    EXPECT_EQ(t.series[0].y.back(), 499.5);
    ASSERT_GE(seen.size(), 10u);
    EXPECT_EQ(seen.back(), 1.0);
    std::remove(path);

    EXPECT_EQ(WhatOf([] { plotvane::ReadCsvFile("/nonexistent/x.csv"); }),
              "cannot open '/nonexistent/x.csv': No such file or directory");
    EXPECT_THROW(plotvane::ReadCsvFile("/tmp"), CsvError);
}
