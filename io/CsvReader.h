// Reading XY data from delimited text files: the fast reader behind
// plotvane-render, plotvane-viewer and io::ReadCsv.
//
// The format, decided once per file from its first content line:
// - '#' comment lines and blank lines are skipped anywhere;
// - the separator is the first of ',', ';' or tab that the first content
//   line holds, else runs of spaces and tabs; fields are trimmed;
// - the first content line is a header when any of its fields is not a
//   number, and gives the column names;
// - numbers are plain decimal or exponent forms ("+1.5e-9" too); "nan" and
//   "inf" are refused, since a non-finite sample breaks the chart extents.
// Every data line must hold as many columns as the first content line (one
// trailing empty field, from a trailing separator, does not count). Without
// column pairs there must be exactly two columns, x and y. With column
// pairs the columns are x1,y1,x2,y2,...; a pair left empty on a line has no
// point there, so that columns of different lengths can share a file. With
// a shared x the columns are x,y1,y2,...: one series per y column, all on
// the first column's x.
#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace plotvane
{

// One data set: a name and its samples in file order.
struct CsvSeries
{
    std::string name;
    std::vector<double> x;
    std::vector<double> y;
};

struct CsvReadOptions
{
    // x1,y1,x2,y2,... gives one series per column pair.
    bool bColumnPairs = false;
    // x,y1,y2,... gives one series per y column (ignored with bColumnPairs).
    bool bSharedX = false;
    // Called now and then with the fraction of the input read so far; only
    // for inputs of at least nProgressMinBytes.
    std::function<void(double)> progress;
    std::size_t nProgressMinBytes = std::size_t(50) << 20;
};

struct CsvTable
{
    std::vector<CsvSeries> series;
    // The header's name of the first x column; empty without a header.
    std::string xName;
    bool bHeader = false;
};

// A reading failure; what() names the source, and the line where there is
// one: "data.csv:12: bad number 'x1'".
class CsvError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
    // "<source>:<line>: <detail>", or "<source>: <detail>" for line 0.
    CsvError(const std::string& source, std::size_t line, const std::string& detail);
    // The line named in the message (0 for none) and the message without
    // its source and line (empty for a file that could not be read).
    std::size_t Line() const { return m_nLine; }
    const std::string& Detail() const { return m_strDetail; }

private:
    std::size_t m_nLine = 0;
    std::string m_strDetail;
};

// Takes a table as it is read, block by block, so that a large file never
// has its text and all its numbers in memory at once.
class CsvSink
{
public:
    virtual ~CsvSink() = default;
    // The first content line has been read: layout holds the names, the
    // header flag and one series per column pair, with no points yet.
    // nLinesGuess estimates the data lines, for reserving room.
    virtual void Begin(const CsvTable& layout, std::size_t nLinesGuess) = 0;
    // The next points of each series, in file order; a series may have none
    // in a block. The reader clears the vectors afterwards.
    virtual void Points(std::vector<CsvSeries>& block) = 0;
};

// Parses text that came from sourceName (used in messages, and, without a
// header, for the names: "<stem>" or "<stem> <pair number>").
CsvTable ParseCsv(std::string_view text, const std::string& sourceName,
                  const CsvReadOptions& options = CsvReadOptions());
// The same into a sink. An error is thrown after the blocks before it have
// been handed on.
void ParseCsv(std::string_view text, const std::string& sourceName, CsvSink& sink,
              const CsvReadOptions& options = CsvReadOptions());

// Reads and parses a file. Throws CsvError when the file cannot be read,
// holds a bad line, or holds no points in some series.
CsvTable ReadCsvFile(const std::string& path, const CsvReadOptions& options = CsvReadOptions());
// The same into a sink; the pages of the file already parsed are given
// back to the system as it goes.
void ReadCsvFile(const std::string& path, CsvSink& sink,
                 const CsvReadOptions& options = CsvReadOptions());

// Parses one number field (already trimmed) as the reader does: true with a
// finite value, false for anything else.
bool ParseCsvNumber(std::string_view field, double& value);

// The file name without directories and without its last extension.
std::string FileStem(const std::string& path);

} // namespace plotvane
