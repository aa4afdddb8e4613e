#include <plotvane/io/SignalFile.h>

#include <plotvane/io/CsvReader.h>
#include <plotvane/io/TextLines.h>

#include <filesystem>
#include <fstream>

namespace plotvane::io
{

ReadError::ReadError(const std::string& source, std::size_t line, const std::string& message)
    : std::runtime_error(source + (line ? ":" + std::to_string(line) : std::string()) + ": " +
                         message)
{
}

ReadError::ReadError(const std::string& source, const std::string& byteWhere,
                     const std::string& message)
    : std::runtime_error(source + ": byte " + byteWhere + ": " + message)
{
}

const Vector* Plot::Find(const std::string& vectorName) const
{
    for (const Vector& v : vectors)
    {
        if (EqualsNoCase(v.name, vectorName))
            return &v;
    }
    return nullptr;
}

namespace
{

// Gathers the CSV reader's blocks into one plot: the first column once,
// then each y column.
class PlotSink : public CsvSink
{
public:
    explicit PlotSink(Plot& plot) : m_plot(plot) {}

    void Begin(const CsvTable& layout, std::size_t nLinesGuess) override
    {
        m_plot.vectors.resize(layout.series.size() + 1);
        m_plot.vectors[0].name = layout.bHeader ? layout.xName : "x";
        for (std::size_t k = 0; k < layout.series.size(); ++k)
            m_plot.vectors[k + 1].name = layout.series[k].name;
        for (Vector& v : m_plot.vectors)
            v.values.reserve(nLinesGuess);
    }
    void Points(std::vector<CsvSeries>& block) override
    {
        Append(m_plot.vectors[0].values, block[0].x);
        for (std::size_t k = 0; k < block.size(); ++k)
            Append(m_plot.vectors[k + 1].values, block[k].y);
    }

private:
    static void Append(std::vector<double>& to, const std::vector<double>& from)
    {
        to.insert(to.end(), from.begin(), from.end());
    }
    Plot& m_plot;
};

enum class FileKind
{
    NgspiceRaw,
    Touchstone,
    Csv
};

bool IsTouchstoneName(std::string_view ext)
{
    return ext.size() >= 3 && ext.front() == 's' && ext.back() == 'p' &&
           ext.find_first_not_of("0123456789", 1) == ext.size() - 1;
}

// The words an option line may hold.
bool IsOptionLine(std::string_view line)
{
    std::vector<std::string_view> words;
    SplitBlanks(line.substr(1), words);
    for (std::string_view w : words)
    {
        const std::string word = ToLower(w);
        double number = 0.0;
        if (word != "hz" && word != "khz" && word != "mhz" && word != "ghz" && word != "s" &&
            word != "y" && word != "z" && word != "ri" && word != "ma" && word != "db" &&
            word != "r" && !ParseCsvNumber(word, number))
            return false;
    }
    return true;
}

// The first line with content tells: a raw header word, a Touchstone
// comment or option line, or else CSV.
FileKind SniffKind(const std::string& bytes)
{
    LineCursor lines(bytes);
    while (!lines.AtEnd())
    {
        const std::string_view line = TrimBlanks(lines.Next());
        if (line.empty())
            continue;
        const std::string head = ToLower(line.substr(0, line.find(':') + 1));
        if (head == "title:" || head == "plotname:" || head == "date:")
            return FileKind::NgspiceRaw;
        if (line.front() == '!' || (line.front() == '#' && IsOptionLine(line)))
            return FileKind::Touchstone;
        break;
    }
    return FileKind::Csv;
}

FileKind KindOf(const std::string& path, const std::string& bytes)
{
    const std::string name = std::filesystem::path(path).filename().string();
    const std::size_t dot = name.find_last_of('.');
    const std::string ext = dot == std::string::npos ? "" : ToLower(name.substr(dot + 1));
    if (ext == "raw")
        return FileKind::NgspiceRaw;
    if (IsTouchstoneName(ext))
        return FileKind::Touchstone;
    if (ext == "csv" || ext == "txt")
        return FileKind::Csv;
    return SniffKind(bytes);
}

std::string ReadFileBytes(const std::string& path, std::size_t maxBytes)
{
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec))
        throw std::runtime_error("cannot read '" + path + "': it is a directory");
    const std::uintmax_t size = std::filesystem::file_size(path, ec);
    if (ec)
        throw std::runtime_error("cannot open '" + path + "': " + ec.message());
    if (size > maxBytes)
        throw ReadError(path, 0,
                        "the file holds " + std::to_string(size) + " bytes, more than the " +
                            std::to_string(maxBytes) + " a signal file may have");
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot open '" + path + "'");
    std::string bytes(std::size_t(size), '\0');
    in.read(bytes.data(), std::streamsize(size));
    if (std::size_t(in.gcount()) != size)
        throw std::runtime_error("cannot read '" + path + "': it changed while being read");
    return bytes;
}

} // namespace

SignalFile ReadCsv(const std::string& bytes, const std::string& source)
{
    SignalFile file;
    file.plots.emplace_back();
    Plot& plot = file.plots.back();
    plot.name = "CSV";
    CsvReadOptions options;
    options.bSharedX = true;
    PlotSink sink(plot);
    try
    {
        ParseCsv(bytes, source, sink, options);
    }
    catch (const CsvError& e)
    {
        throw ReadError(source, e.Line(), e.Detail());
    }
    return file;
}

SignalFile ReadSignalFile(const std::string& path, std::size_t maxBytes)
{
    const std::string bytes = ReadFileBytes(path, maxBytes);
    switch (KindOf(path, bytes))
    {
    case FileKind::NgspiceRaw:
        return ReadNgspiceRaw(bytes, path);
    case FileKind::Touchstone:
        return ToSignalFile(ReadTouchstone(bytes, path));
    case FileKind::Csv:
        break;
    }
    return ReadCsv(bytes, path);
}

} // namespace plotvane::io
