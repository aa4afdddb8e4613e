// ngspice raw files: one or more plots, each a header of "Name: value"
// lines ending in "Values:" (text) or "Binary:" (little-endian doubles, a
// pair per complex value), with the points in rows of all the variables.
#include <plotvane/io/SignalFile.h>

#include <plotvane/io/CsvReader.h>
#include <plotvane/io/TextLines.h>

#include <cmath>
#include <cstdint>
#include <cstring>

namespace plotvane::io
{
namespace
{

// What a plot's header has told so far.
struct RawHeader
{
    Plot plot;
    bool bComplex = false;
    bool bVariableCount = false;
    std::size_t nVariables = 0;
    bool bPointCount = false;
    std::size_t nPoints = 0;
    bool bVariables = false;
};

// The text of a line as a message quotes it: short, and on one line.
std::string Quote(std::string_view text)
{
    text = TrimBlanks(text);
    std::string out(text.substr(0, 40));
    if (text.size() > 40)
        out += "...";
    return "'" + out + "'";
}

double LoadLittleEndianDouble(const char* p)
{
    std::uint64_t bits = 0;
    for (int b = 7; b >= 0; --b)
        bits = (bits << 8) | std::uint8_t(p[b]);
    double value;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

class RawReader
{
public:
    RawReader(const std::string& bytes, const std::string& source)
        : m_bytes(bytes), m_source(source), m_lines(bytes)
    {
    }
    SignalFile Read();

private:
    [[noreturn]] void Fail(const std::string& message) const;
    [[noreturn]] void FailAtByte(std::size_t offset, const std::string& message) const;
    bool NextContentLine(std::string_view& line);
    std::string_view NextToken(const Plot& plot, std::size_t point);
    Plot ReadPlot(std::string_view line);
    bool ReadHeaderLine(std::string_view line, RawHeader& h);
    void ReadFlags(std::string_view value, RawHeader& h);
    std::size_t ReadCount(std::string_view key, std::string_view value);
    void ReadVariables(RawHeader& h);
    void CheckReadyForValues(const RawHeader& h, std::string_view key);
    void ReadAscii(RawHeader& h);
    void ReadAsciiValue(std::string_view token, Vector& v, bool bComplex, std::size_t point);
    void ReadBinary(RawHeader& h);

    const std::string& m_bytes;
    const std::string& m_source;
    LineCursor m_lines;
    // Text values: the tokens of the current line and the next one to take.
    std::vector<std::string_view> m_tokens;
    std::size_t m_nToken = 0;
    // After binary data an editor's line numbers no longer help, so
    // messages name byte offsets from there on.
    bool m_bPastBinary = false;
    // The point count of a text plot just read, for the message when its
    // values go on past it.
    std::size_t m_nAsciiPointsBefore = 0;
    bool m_bAfterAscii = false;
};

void RawReader::Fail(const std::string& message) const
{
    if (m_bPastBinary)
        FailAtByte(m_lines.LineStart(), message);
    throw ReadError(m_source, m_lines.Line(), message);
}

void RawReader::FailAtByte(std::size_t offset, const std::string& message) const
{
    throw ReadError(m_source, std::to_string(offset), message);
}

bool RawReader::NextContentLine(std::string_view& line)
{
    while (!m_lines.AtEnd())
    {
        line = m_lines.Next();
        if (!TrimBlanks(line).empty())
            return true;
    }
    return false;
}

SignalFile RawReader::Read()
{
    SignalFile file;
    std::string_view line;
    while (NextContentLine(line))
        file.plots.push_back(ReadPlot(line));
    if (file.plots.empty())
        throw ReadError(m_source, 0, "no plot: the file is empty");
    return file;
}

Plot RawReader::ReadPlot(std::string_view line)
{
    RawHeader h;
    for (;;)
    {
        if (ReadHeaderLine(line, h))
            break;
        if (!NextContentLine(line))
            Fail("the header ends without 'Values:' or 'Binary:'");
    }
    // ngspice writes the frequency of a complex plot with a zero imaginary
    // part; as a scale it is real.
    Vector& scale = h.plot.vectors.front();
    bool bRealScale = true;
    for (const std::complex<double>& c : scale.cvalues)
        bRealScale = bRealScale && c.imag() == 0.0;
    if (h.bComplex && bRealScale)
    {
        scale.values.reserve(scale.cvalues.size());
        for (const std::complex<double>& c : scale.cvalues)
            scale.values.push_back(c.real());
        scale.cvalues.clear();
    }
    return std::move(h.plot);
}

// Answers true once the line has begun the values and they have been read.
bool RawReader::ReadHeaderLine(std::string_view line, RawHeader& h)
{
    const std::size_t colon = line.find(':');
    if (colon == std::string_view::npos)
    {
        std::size_t n = 0;
        std::vector<std::string_view> tokens;
        SplitBlanks(line, tokens);
        if (m_bAfterAscii && !h.bVariableCount && ParseCount(tokens.front(), n))
            Fail("values go on past 'No. Points: " + std::to_string(m_nAsciiPointsBefore) + "'");
        Fail("expected a header line 'Name: value', found " + Quote(line));
    }
    m_bAfterAscii = false;
    const std::string_view key = TrimBlanks(line.substr(0, colon));
    const std::string_view value = TrimBlanks(line.substr(colon + 1));
    if (EqualsNoCase(key, "Title"))
        h.plot.title = std::string(value);
    else if (EqualsNoCase(key, "Plotname"))
        h.plot.name = std::string(value);
    else if (EqualsNoCase(key, "Flags"))
        ReadFlags(value, h);
    else if (EqualsNoCase(key, "No. Variables"))
    {
        h.nVariables = ReadCount(key, value);
        h.bVariableCount = true;
        if (h.nVariables == 0)
            Fail("'No. Variables' is 0");
    }
    else if (EqualsNoCase(key, "No. Points"))
    {
        h.nPoints = ReadCount(key, value);
        h.bPointCount = true;
    }
    else if (EqualsNoCase(key, "Variables"))
        ReadVariables(h);
    else if (EqualsNoCase(key, "Values"))
    {
        CheckReadyForValues(h, key);
        ReadAscii(h);
        return true;
    }
    else if (EqualsNoCase(key, "Binary"))
    {
        CheckReadyForValues(h, key);
        ReadBinary(h);
        return true;
    }
    // Date, Command, Option and the like say nothing about the values.
    return false;
}

void RawReader::ReadFlags(std::string_view value, RawHeader& h)
{
    std::vector<std::string_view> words;
    SplitBlanks(value, words);
    for (std::string_view w : words)
    {
        if (EqualsNoCase(w, "complex"))
            h.bComplex = true;
        else if (EqualsNoCase(w, "real"))
            h.bComplex = false;
        // "padded" and "unpadded" change nothing here: ngspice pads every
        // vector to the plot's length.
    }
}

std::size_t RawReader::ReadCount(std::string_view key, std::string_view value)
{
    std::size_t n = 0;
    if (!ParseCount(value, n))
        Fail("'" + std::string(key) + "' is not a count: " + Quote(value));
    return n;
}

void RawReader::ReadVariables(RawHeader& h)
{
    if (!h.bVariableCount)
        Fail("'Variables:' comes before 'No. Variables:'");
    if (h.bVariables)
        Fail("a second 'Variables:' list in one plot");
    std::vector<std::string_view> tokens;
    for (std::size_t i = 0; i < h.nVariables; ++i)
    {
        if (m_lines.AtEnd())
            Fail("the file ends after " + std::to_string(i) + " of " +
                 std::to_string(h.nVariables) + " variables");
        const std::string_view line = m_lines.Next();
        SplitBlanks(line, tokens);
        std::size_t index = 0;
        if (tokens.size() < 2 || !ParseCount(tokens[0], index) || index != i)
            Fail("expected variable " + std::to_string(i) + " as '<index> <name> <type>', found " +
                 Quote(line));
        Vector v;
        v.name = std::string(tokens[1]);
        if (tokens.size() > 2)
            v.kind = std::string(tokens[2]);
        h.plot.vectors.push_back(std::move(v));
    }
    h.bVariables = true;
}

void RawReader::CheckReadyForValues(const RawHeader& h, std::string_view key)
{
    if (!h.bVariables)
        Fail("no 'Variables:' list before '" + std::string(key) + ":'");
    if (!h.bPointCount)
        Fail("no 'No. Points:' line before '" + std::string(key) + ":'");
}

std::string_view RawReader::NextToken(const Plot& plot, std::size_t point)
{
    while (m_nToken >= m_tokens.size())
    {
        if (m_lines.AtEnd())
            Fail("the file ends inside point " + std::to_string(point) + " of '" +
                 plot.vectors.front().name + "'");
        SplitBlanks(m_lines.Next(), m_tokens);
        m_nToken = 0;
    }
    return m_tokens[m_nToken++];
}

void RawReader::ReadAsciiValue(std::string_view token, Vector& v, bool bComplex,
                               std::size_t point)
{
    double re = 0.0, im = 0.0;
    if (!bComplex)
    {
        if (!ParseCsvNumber(token, re))
            Fail("bad value " + Quote(token) + " of '" + v.name + "' at point " +
                 std::to_string(point));
        v.values.push_back(re);
        return;
    }
    const std::size_t comma = token.find(',');
    if (comma == std::string_view::npos || !ParseCsvNumber(token.substr(0, comma), re) ||
        !ParseCsvNumber(token.substr(comma + 1), im))
        Fail("bad complex value " + Quote(token) + " of '" + v.name + "' at point " +
             std::to_string(point) + " (expected 're,im')");
    v.cvalues.emplace_back(re, im);
}

void RawReader::ReadAscii(RawHeader& h)
{
    std::vector<Vector>& vectors = h.plot.vectors;
    const std::size_t offset = std::min(m_lines.Offset(), m_bytes.size());
    const std::size_t remaining = m_bytes.size() - offset;
    // Each value and each point index takes a character and a blank at
    // least: a count the bytes cannot hold is refused before any room is
    // taken for it.
    if (h.nPoints > remaining / ((vectors.size() + 1) * 2))
        Fail("'No. Points: " + std::to_string(h.nPoints) + "' of " +
             std::to_string(vectors.size()) + " variables cannot fit in the " +
             std::to_string(remaining) + " bytes that follow");
    for (Vector& v : vectors)
        h.bComplex ? v.cvalues.reserve(h.nPoints) : v.values.reserve(h.nPoints);
    m_tokens.clear();
    m_nToken = 0;
    for (std::size_t i = 0; i < h.nPoints; ++i)
    {
        const std::string_view index = NextToken(h.plot, i);
        std::size_t n = 0;
        if (!ParseCount(index, n) || n != i)
            Fail("expected point index " + std::to_string(i) + ", found " + Quote(index));
        for (Vector& v : vectors)
            ReadAsciiValue(NextToken(h.plot, i), v, h.bComplex, i);
    }
    if (m_nToken < m_tokens.size())
        Fail("unexpected " + Quote(m_tokens[m_nToken]) + " after the last point");
    m_bAfterAscii = true;
    m_nAsciiPointsBefore = h.nPoints;
}

void RawReader::ReadBinary(RawHeader& h)
{
    std::vector<Vector>& vectors = h.plot.vectors;
    const std::size_t start = std::min(m_lines.Offset(), m_bytes.size());
    const std::size_t remaining = m_bytes.size() - start;
    const std::size_t width = h.bComplex ? 16 : 8;
    const std::size_t rowBytes = vectors.size() * width;
    if (h.nPoints > remaining / rowBytes)
        FailAtByte(start, "'No. Points: " + std::to_string(h.nPoints) + "' needs " +
                              std::to_string(rowBytes) + " bytes a point, and only " +
                              std::to_string(remaining) + " bytes follow");
    for (Vector& v : vectors)
        h.bComplex ? v.cvalues.reserve(h.nPoints) : v.values.reserve(h.nPoints);
    const char* data = m_bytes.data() + start;
    for (std::size_t i = 0; i < h.nPoints; ++i)
    {
        for (std::size_t j = 0; j < vectors.size(); ++j)
        {
            const std::size_t at = i * rowBytes + j * width;
            const double re = LoadLittleEndianDouble(data + at);
            const double im = h.bComplex ? LoadLittleEndianDouble(data + at + 8) : 0.0;
            if (!std::isfinite(re) || !std::isfinite(im))
                FailAtByte(start + at, "not a finite number in '" + vectors[j].name +
                                           "' at point " + std::to_string(i));
            if (h.bComplex)
                vectors[j].cvalues.emplace_back(re, im);
            else
                vectors[j].values.push_back(re);
        }
    }
    m_lines.Seek(start + h.nPoints * rowBytes);
    m_bPastBinary = true;
}

} // namespace

SignalFile ReadNgspiceRaw(const std::string& bytes, const std::string& source)
{
    return RawReader(bytes, source).Read();
}

} // namespace plotvane::io
