#include <plotvane/io/CsvReader.h>

#include <plotvane/io/TextLines.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace plotvane
{
namespace
{

enum class NumberStatus
{
    Ok,
    Bad,
    NonFinite,
    OutOfRange
};

using io::TrimBlanks;

// The decimal forms that instruments write ("-1.234567e-09", "0.5") with at
// most 19 significant digits whose value fits 53 bits, and a power of ten
// that a double holds exactly (up to 1e22): then one multiplication or
// division, rounded once, is the correctly rounded value, the same double
// that from_chars gives. Answers false, having set nothing, for anything
// else, which from_chars then reads.
bool ParseSimpleDecimal(const char* p, const char* last, double& value)
{
    static constexpr double kPow10[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                        1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    const bool bNegative = p != last && *p == '-';
    p += bNegative;
    std::uint64_t mantissa = 0;
    int nDigits = 0;     // significant digits taken, leading zeros aside
    int nAnyDigits = 0;  // digits of any kind before the exponent
    int nFraction = 0;   // digits after the point
    for (; p != last && unsigned(*p - '0') < 10; ++p, ++nAnyDigits)
    {
        if (mantissa == 0 && *p == '0')
            continue;
        if (++nDigits > 19)
            return false;
        mantissa = mantissa * 10 + std::uint64_t(*p - '0');
    }
    if (p != last && *p == '.')
    {
        for (++p; p != last && unsigned(*p - '0') < 10; ++p, ++nAnyDigits, ++nFraction)
        {
            if (mantissa == 0 && *p == '0')
                continue;
            if (++nDigits > 19)
                return false;
            mantissa = mantissa * 10 + std::uint64_t(*p - '0');
        }
    }
    if (nAnyDigits == 0)
        return false;
    int exponent = 0;
    if (p != last && (*p == 'e' || *p == 'E'))
    {
        ++p;
        const bool bNegExp = p != last && *p == '-';
        p += p != last && (*p == '-' || *p == '+');
        if (p == last)
            return false;
        for (; p != last && unsigned(*p - '0') < 10; ++p)
        {
            if (exponent > 10000)
                return false;
            exponent = exponent * 10 + (*p - '0');
        }
        exponent = bNegExp ? -exponent : exponent;
    }
    if (p != last || mantissa > (std::uint64_t(1) << 53))
        return false;
    const int e10 = exponent - nFraction;
    if (e10 < -22 || e10 > 22)
        return false;
    double v = double(mantissa);
    v = e10 < 0 ? v / kPow10[-e10] : v * kPow10[e10];
    value = bNegative ? -v : v;
    return true;
}

NumberStatus ParseNumber(std::string_view field, double& value)
{
    const char* first = field.data();
    const char* last = first + field.size();
    // from_chars takes no leading '+', but people and tools write one.
    if (first != last && *first == '+' && last - first > 1 && first[1] != '-' && first[1] != '+')
        ++first;
    if (first == last)
        return NumberStatus::Bad;
    if (ParseSimpleDecimal(first, last, value))
        return NumberStatus::Ok;
    auto [ptr, ec] = std::from_chars(first, last, value);
    if (ptr != last)
        return NumberStatus::Bad;
    if (ec == std::errc::result_out_of_range)
        return NumberStatus::OutOfRange;
    if (ec != std::errc())
        return NumberStatus::Bad;
    if (!std::isfinite(value))
        return NumberStatus::NonFinite;
    return NumberStatus::Ok;
}

// Separator 0 means runs of blanks.
char DetectSeparator(std::string_view line)
{
    for (char c : {',', ';', '\t'})
    {
        if (line.find(c) != std::string_view::npos)
            return c;
    }
    return 0;
}

void SplitFields(std::string_view line, char sep, std::vector<std::string_view>& out)
{
    out.clear();
    if (sep == 0)
    {
        io::SplitBlanks(line, out);
        return;
    }
    std::size_t b = 0;
    for (;;)
    {
        std::size_t e = line.find(sep, b);
        if (e == std::string_view::npos)
        {
            out.push_back(TrimBlanks(line.substr(b)));
            break;
        }
        out.push_back(TrimBlanks(line.substr(b, e - b)));
        b = e + 1;
    }
    // A trailing separator ("1,2,") adds no column.
    if (out.size() > 1 && out.back().empty())
        out.pop_back();
}

// Room for the points: the line count, guessed from the line lengths at the
// start of the text.
std::size_t EstimateLines(std::string_view text)
{
    std::size_t sample = std::min<std::size_t>(text.size(), 1 << 16);
    std::size_t lines = 1;
    for (std::size_t i = 0; i < sample; ++i)
        lines += text[i] == '\n';
    return std::size_t(double(lines) * double(text.size()) /
                       double(std::max<std::size_t>(sample, 1))) +
           16;
}

std::string HeaderName(std::string_view field, std::size_t column)
{
    if (field.size() >= 2 && field.front() == '"' && field.back() == '"')
        field = TrimBlanks(field.substr(1, field.size() - 2));
    if (field.empty())
        return "column " + std::to_string(column + 1);
    return std::string(field);
}

// Lines per block handed to the sink: large enough that the per-block work
// vanishes, small enough that the block's numbers stay in the cache's reach.
constexpr std::size_t kBlockLines = std::size_t(1) << 15;

// Walks the lines of one input and hands the points to the sink in blocks.
class Parser
{
public:
    // release, when set, is told how far the text has been consumed.
    Parser(std::string_view text, const std::string& source, const CsvReadOptions& options,
           CsvSink& sink, std::function<void(std::size_t)> release = nullptr)
        : m_text(text), m_source(source), m_options(options), m_sink(sink),
          m_release(std::move(release))
    {
    }

    void Run();

private:
    [[noreturn]] void Fail(std::size_t lineNo, const std::string& what) const
    {
        throw CsvError(m_source, lineNo, what);
    }
    void StartTable(std::string_view line, std::string_view trimmed, std::size_t lineNo);
    void AddLine(std::size_t lineNo);
    void AddSharedXLine(std::size_t lineNo);
    bool AddPlainPair(std::string_view line);
    double FieldValue(std::size_t lineNo, std::size_t column) const;
    void ReportProgress(std::size_t pos);
    void Flush(std::size_t pos);

    std::string_view m_text;
    const std::string& m_source;
    const CsvReadOptions& m_options;
    CsvSink& m_sink;
    std::function<void(std::size_t)> m_release;
    // The layout, and the points of the current block.
    CsvTable m_table;
    std::vector<std::size_t> m_counts;
    std::size_t m_nBlockLines = 0;
    std::vector<std::string_view> m_fields;
    std::size_t m_nColumns = 0;
    char m_sep = 0;
    // Two columns and a separator character: the common "x,y" file.
    bool m_bPlainPairs = false;
    bool m_bSharedX = false;
    bool m_bProgress = false;
    std::size_t m_nNextProgress = 0;
};

void Parser::StartTable(std::string_view line, std::string_view trimmed, std::size_t lineNo)
{
    m_sep = DetectSeparator(trimmed);
    SplitFields(line, m_sep, m_fields);
    m_nColumns = m_fields.size();
    m_bSharedX = m_options.bSharedX && !m_options.bColumnPairs;
    m_bPlainPairs = !m_options.bColumnPairs && m_sep != 0 && m_nColumns == 2;
    if (m_bSharedX && m_nColumns < 2)
        Fail(lineNo, "expected columns x,y1,y2,..., found 1 column");
    if (!m_options.bColumnPairs && !m_bSharedX && m_nColumns != 2)
    {
        Fail(lineNo, "expected 2 columns (x, y), found " + std::to_string(m_nColumns) +
                         " (use --pairs for x1,y1,x2,y2,...)");
    }
    if (m_options.bColumnPairs && m_nColumns % 2 != 0)
        Fail(lineNo, "expected column pairs x1,y1,x2,y2,..., found " + std::to_string(m_nColumns) +
                         " columns");

    double v = 0.0;
    for (std::string_view f : m_fields)
        m_table.bHeader = m_table.bHeader || ParseNumber(f, v) == NumberStatus::Bad;

    std::size_t guess = EstimateLines(m_text);
    std::size_t nPairs = m_bSharedX ? m_nColumns - 1 : m_nColumns / 2;
    m_counts.assign(nPairs, 0);
    std::string stem = FileStem(m_source);
    m_table.series.resize(nPairs);
    for (std::size_t k = 0; k < nPairs; ++k)
    {
        CsvSeries& s = m_table.series[k];
        const std::size_t yColumn = m_bSharedX ? k + 1 : 2 * k + 1;
        if (m_table.bHeader)
            s.name = HeaderName(m_fields[yColumn], yColumn);
        else
            s.name = nPairs == 1 ? stem : stem + " " + std::to_string(k + 1);
    }
    if (m_table.bHeader)
        m_table.xName = HeaderName(m_fields[0], 0);
    m_sink.Begin(m_table, guess);
    for (CsvSeries& s : m_table.series)
    {
        s.x.reserve(std::min(guess, kBlockLines));
        s.y.reserve(std::min(guess, kBlockLines));
    }
    if (!m_table.bHeader)
        m_bSharedX ? AddSharedXLine(lineNo) : AddLine(lineNo);
}

void Parser::Flush(std::size_t pos)
{
    m_nBlockLines = 0;
    for (std::size_t k = 0; k < m_table.series.size(); ++k)
        m_counts[k] += m_table.series[k].x.size();
    m_sink.Points(m_table.series);
    for (CsvSeries& s : m_table.series)
    {
        s.x.clear();
        s.y.clear();
    }
    if (m_release)
        m_release(pos);
}

double Parser::FieldValue(std::size_t lineNo, std::size_t column) const
{
    std::string_view f = m_fields[column];
    double v = 0.0;
    switch (ParseNumber(f, v))
    {
    case NumberStatus::Ok:
        return v;
    case NumberStatus::NonFinite:
        Fail(lineNo, "not a finite number '" + std::string(f) + "' in column " +
                         std::to_string(column + 1));
    case NumberStatus::OutOfRange:
        Fail(lineNo, "number out of range '" + std::string(f) + "' in column " +
                         std::to_string(column + 1));
    case NumberStatus::Bad:
        break;
    }
    if (f.empty())
        Fail(lineNo, "empty field in column " + std::to_string(column + 1));
    Fail(lineNo, "bad number '" + std::string(f) + "' in column " + std::to_string(column + 1));
}

void Parser::AddLine(std::size_t lineNo)
{
    std::size_t n = m_fields.size();
    if (n > m_nColumns || (!m_options.bColumnPairs && n != m_nColumns))
        Fail(lineNo,
             "expected " + std::to_string(m_nColumns) + " columns, found " + std::to_string(n));
    for (std::size_t k = 0; 2 * k < m_nColumns; ++k)
    {
        std::size_t cx = 2 * k, cy = cx + 1;
        bool bEmptyX = cx >= n || m_fields[cx].empty();
        bool bEmptyY = cy >= n || m_fields[cy].empty();
        // A shorter column pair ends with empty fields.
        if (m_options.bColumnPairs && bEmptyX && bEmptyY)
            continue;
        if (cy >= n)
            Fail(lineNo, "empty field in column " + std::to_string(cy + 1));
        double x = FieldValue(lineNo, cx);
        double y = FieldValue(lineNo, cy);
        m_table.series[k].x.push_back(x);
        m_table.series[k].y.push_back(y);
    }
}

// x,y1,y2,...: the x is parsed once for all the series.
void Parser::AddSharedXLine(std::size_t lineNo)
{
    if (m_fields.size() != m_nColumns)
        Fail(lineNo, "expected " + std::to_string(m_nColumns) + " columns, found " +
                         std::to_string(m_fields.size()));
    const double x = FieldValue(lineNo, 0);
    for (std::size_t k = 0; k < m_table.series.size(); ++k)
    {
        m_table.series[k].x.push_back(x);
        m_table.series[k].y.push_back(FieldValue(lineNo, k + 1));
    }
}

// The usual line of a two-column file, split and parsed in place. Anything
// else (another separator, an empty or bad field) answers false and takes
// the general path, which also words the error.
bool Parser::AddPlainPair(std::string_view line)
{
    const std::size_t at = line.find(m_sep);
    if (at == std::string_view::npos)
        return false;
    const std::string_view rest = line.substr(at + 1);
    if (rest.find(m_sep) != std::string_view::npos)
        return false;
    double x = 0.0, y = 0.0;
    if (ParseNumber(TrimBlanks(line.substr(0, at)), x) != NumberStatus::Ok ||
        ParseNumber(TrimBlanks(rest), y) != NumberStatus::Ok)
        return false;
    CsvSeries& s = m_table.series[0];
    s.x.push_back(x);
    s.y.push_back(y);
    return true;
}

void Parser::ReportProgress(std::size_t pos)
{
    if (!m_bProgress || pos < m_nNextProgress)
        return;
    m_options.progress(double(pos) / double(m_text.size()));
    m_nNextProgress = pos + m_text.size() / 20;
}

void Parser::Run()
{
    std::string_view text = m_text;
    if (text.substr(0, 3) == "\xEF\xBB\xBF")
        text.remove_prefix(3);
    m_bProgress = m_options.progress && m_text.size() >= m_options.nProgressMinBytes;
    m_nNextProgress = m_text.size() / 20;

    bool bStarted = false;
    std::size_t lineNo = 0;
    std::size_t pos = 0;
    while (pos < text.size())
    {
        const void* nl = std::memchr(text.data() + pos, '\n', text.size() - pos);
        std::size_t end =
            nl ? std::size_t(static_cast<const char*>(nl) - text.data()) : text.size();
        std::string_view line = text.substr(pos, end - pos);
        pos = end + 1;
        ++lineNo;
        // Blank and comment tests look past blanks; the split does not, so
        // that a leading empty tab-separated field keeps its column.
        std::string_view trimmed = TrimBlanks(line);
        if (trimmed.empty() || trimmed.front() == '#')
            continue;
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (!bStarted)
        {
            StartTable(line, trimmed, lineNo);
            bStarted = true;
            continue;
        }
        if (!m_bPlainPairs || !AddPlainPair(line))
        {
            SplitFields(line, m_sep, m_fields);
            m_bSharedX ? AddSharedXLine(lineNo) : AddLine(lineNo);
        }
        if (++m_nBlockLines == kBlockLines)
        {
            // pos may lie one past the end of a text with no final newline.
            Flush(std::min(std::size_t(text.data() - m_text.data()) + pos, m_text.size()));
        }
        ReportProgress(pos);
    }
    if (!bStarted)
        throw CsvError(m_source, 0, "no data points");
    Flush(m_text.size());
    for (std::size_t k = 0; k < m_table.series.size(); ++k)
    {
        if (m_counts[k] != 0)
            continue;
        // Shared-x series all have the points of the x column.
        if (m_table.series.size() == 1 || m_bSharedX)
            throw CsvError(m_source, 0, "no data points");
        throw CsvError(m_source, 0,
                       "no data points in column pair " + std::to_string(k + 1) + " ('" +
                           m_table.series[k].name + "')");
    }
    if (m_bProgress)
        m_options.progress(1.0);
}

// Gathers the blocks into one table.
class TableSink : public CsvSink
{
public:
    void Begin(const CsvTable& layout, std::size_t nLinesGuess) override
    {
        table = layout;
        for (CsvSeries& s : table.series)
        {
            s.x.reserve(nLinesGuess);
            s.y.reserve(nLinesGuess);
        }
    }
    void Points(std::vector<CsvSeries>& block) override
    {
        for (std::size_t k = 0; k < block.size(); ++k)
        {
            CsvSeries& s = table.series[k];
            s.x.insert(s.x.end(), block[k].x.begin(), block[k].x.end());
            s.y.insert(s.y.end(), block[k].y.begin(), block[k].y.end());
        }
    }
    CsvTable table;
};

// A read-only view of a whole file: mapped when it is a regular file, read
// into memory otherwise (pipes, /dev/stdin).
class FileText
{
public:
    explicit FileText(const std::string& path)
    {
        int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd < 0)
            throw CsvError("cannot open '" + path + "': " + std::strerror(errno));
        try
        {
            Load(fd, path);
        }
        catch (...)
        {
            ::close(fd);
            throw;
        }
        ::close(fd);
    }
    ~FileText()
    {
        if (m_pMap)
            ::munmap(m_pMap, m_nMapSize);
    }
    FileText(const FileText&) = delete;
    FileText& operator=(const FileText&) = delete;

    // Gives back the mapped pages that lie wholly before offset: they have
    // been parsed and are not read again.
    void Release(std::size_t offset)
    {
        if (!m_pMap)
            return;
        static const std::size_t page = std::size_t(::sysconf(_SC_PAGESIZE));
        const std::size_t end = offset / page * page;
        if (end > m_nReleased)
        {
            ::madvise(static_cast<char*>(m_pMap) + m_nReleased, end - m_nReleased, MADV_DONTNEED);
            m_nReleased = end;
        }
    }

    std::string_view Text() const
    {
        if (m_pMap)
            return std::string_view(static_cast<const char*>(m_pMap), m_nMapSize);
        return m_buffer;
    }

private:
    void Load(int fd, const std::string& path)
    {
        struct stat st;
        if (::fstat(fd, &st) != 0)
            throw CsvError("cannot read '" + path + "': " + std::strerror(errno));
        if (S_ISDIR(st.st_mode))
            throw CsvError("cannot read '" + path + "': is a directory");
        if (S_ISREG(st.st_mode) && st.st_size > 0)
        {
            void* p = ::mmap(nullptr, std::size_t(st.st_size), PROT_READ, MAP_PRIVATE, fd, 0);
            if (p != MAP_FAILED)
            {
                m_pMap = p;
                m_nMapSize = std::size_t(st.st_size);
                ::madvise(p, m_nMapSize, MADV_SEQUENTIAL);
                return;
            }
        }
        char chunk[1 << 16];
        for (;;)
        {
            ssize_t n = ::read(fd, chunk, sizeof chunk);
            if (n == 0)
                break;
            if (n < 0)
            {
                if (errno == EINTR)
                    continue;
                throw CsvError("cannot read '" + path + "': " + std::strerror(errno));
            }
            m_buffer.append(chunk, std::size_t(n));
        }
    }

    void* m_pMap = nullptr;
    std::size_t m_nMapSize = 0;
    std::size_t m_nReleased = 0;
    std::string m_buffer;
};

} // namespace

CsvError::CsvError(const std::string& source, std::size_t line, const std::string& detail)
    : std::runtime_error(source + (line ? ":" + std::to_string(line) : std::string()) + ": " +
                         detail),
      m_nLine(line), m_strDetail(detail)
{
}

bool ParseCsvNumber(std::string_view field, double& value)
{
    return ParseNumber(field, value) == NumberStatus::Ok;
}

std::string FileStem(const std::string& path)
{
    std::size_t slash = path.find_last_of('/');
    std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
    std::size_t dot = name.find_last_of('.');
    if (dot != std::string::npos && dot > 0)
        name.erase(dot);
    return name;
}

void ParseCsv(std::string_view text, const std::string& sourceName, CsvSink& sink,
              const CsvReadOptions& options)
{
    Parser(text, sourceName, options, sink).Run();
}

CsvTable ParseCsv(std::string_view text, const std::string& sourceName,
                  const CsvReadOptions& options)
{
    TableSink sink;
    ParseCsv(text, sourceName, sink, options);
    return std::move(sink.table);
}

void ReadCsvFile(const std::string& path, CsvSink& sink, const CsvReadOptions& options)
{
    FileText file(path);
    Parser(file.Text(), path, options, sink, [&file](std::size_t pos) { file.Release(pos); })
        .Run();
}

CsvTable ReadCsvFile(const std::string& path, const CsvReadOptions& options)
{
    TableSink sink;
    ReadCsvFile(path, sink, options);
    return std::move(sink.table);
}

} // namespace plotvane
