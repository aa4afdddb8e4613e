#include "render/CsvReader.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cmath>
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

bool IsBlank(char c)
{
    return c == ' ' || c == '\t' || c == '\r';
}

std::string_view Trim(std::string_view s)
{
    std::size_t b = 0, e = s.size();
    while (b < e && IsBlank(s[b]))
        ++b;
    while (e > b && IsBlank(s[e - 1]))
        --e;
    return s.substr(b, e - b);
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
        std::size_t i = 0;
        while (i < line.size())
        {
            while (i < line.size() && IsBlank(line[i]))
                ++i;
            std::size_t b = i;
            while (i < line.size() && !IsBlank(line[i]))
                ++i;
            if (i > b)
                out.push_back(line.substr(b, i - b));
        }
        return;
    }
    std::size_t b = 0;
    for (;;)
    {
        std::size_t e = line.find(sep, b);
        if (e == std::string_view::npos)
        {
            out.push_back(Trim(line.substr(b)));
            break;
        }
        out.push_back(Trim(line.substr(b, e - b)));
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
        field = Trim(field.substr(1, field.size() - 2));
    if (field.empty())
        return "column " + std::to_string(column + 1);
    return std::string(field);
}

// Walks the lines of one input and fills the table.
class Parser
{
public:
    Parser(std::string_view text, const std::string& source, const CsvReadOptions& options)
        : m_text(text), m_source(source), m_options(options)
    {
    }

    CsvTable Run();

private:
    [[noreturn]] void Fail(std::size_t lineNo, const std::string& what) const
    {
        throw CsvError(m_source + ":" + std::to_string(lineNo) + ": " + what);
    }
    void StartTable(std::string_view line, std::string_view trimmed, std::size_t lineNo);
    void AddLine(std::size_t lineNo);
    double FieldValue(std::size_t lineNo, std::size_t column) const;
    void ReportProgress(std::size_t pos);

    std::string_view m_text;
    const std::string& m_source;
    const CsvReadOptions& m_options;
    CsvTable m_table;
    std::vector<std::string_view> m_fields;
    std::size_t m_nColumns = 0;
    char m_sep = 0;
    bool m_bProgress = false;
    std::size_t m_nNextProgress = 0;
};

void Parser::StartTable(std::string_view line, std::string_view trimmed, std::size_t lineNo)
{
    m_sep = DetectSeparator(trimmed);
    SplitFields(line, m_sep, m_fields);
    m_nColumns = m_fields.size();
    if (!m_options.bColumnPairs && m_nColumns != 2)
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
    std::size_t nPairs = m_nColumns / 2;
    std::string stem = FileStem(m_source);
    m_table.series.resize(nPairs);
    for (std::size_t k = 0; k < nPairs; ++k)
    {
        CsvSeries& s = m_table.series[k];
        if (m_table.bHeader)
            s.name = HeaderName(m_fields[2 * k + 1], 2 * k + 1);
        else
            s.name = nPairs == 1 ? stem : stem + " " + std::to_string(k + 1);
        s.x.reserve(guess);
        s.y.reserve(guess);
    }
    if (m_table.bHeader)
        m_table.xName = HeaderName(m_fields[0], 0);
    else
        AddLine(lineNo);
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

void Parser::ReportProgress(std::size_t pos)
{
    if (!m_bProgress || pos < m_nNextProgress)
        return;
    m_options.progress(double(pos) / double(m_text.size()));
    m_nNextProgress = pos + m_text.size() / 20;
}

CsvTable Parser::Run()
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
        std::string_view trimmed = Trim(line);
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
        SplitFields(line, m_sep, m_fields);
        AddLine(lineNo);
        ReportProgress(pos);
    }
    if (!bStarted)
        throw CsvError(m_source + ": no data points");
    for (std::size_t k = 0; k < m_table.series.size(); ++k)
    {
        if (!m_table.series[k].x.empty())
            continue;
        if (m_table.series.size() == 1)
            throw CsvError(m_source + ": no data points");
        throw CsvError(m_source + ": no data points in column pair " + std::to_string(k + 1) +
                       " ('" + m_table.series[k].name + "')");
    }
    if (m_bProgress)
        m_options.progress(1.0);
    return std::move(m_table);
}

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
    std::string m_buffer;
};

} // namespace

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

CsvTable ParseCsv(std::string_view text, const std::string& sourceName,
                  const CsvReadOptions& options)
{
    return Parser(text, sourceName, options).Run();
}

CsvTable ReadCsvFile(const std::string& path, const CsvReadOptions& options)
{
    FileText file(path);
    return ParseCsv(file.Text(), path, options);
}

} // namespace plotvane
