// Touchstone version 1 files: '!' comments, one option line
// "# <unit> <S|Y|Z> <RI|MA|DB> R <n>" in any order, then a frequency and its
// 2*N*N numbers per record, which may run over several lines. A 2-port file
// may end in noise parameters, which start where the frequency falls back;
// they are read for their form and dropped.
#include <plotvane/io/SignalFile.h>

#include <plotvane/io/CsvReader.h>
#include <plotvane/io/TextLines.h>

#include <charconv>
#include <cmath>
#include <limits>

namespace plotvane::io
{
namespace
{

enum class ValueFormat
{
    RealImaginary,
    MagnitudeAngle,
    DecibelAngle
};

// Enough for any network a field solver writes, and a bound on a record's
// size before any of it is read.
constexpr int kMaxPorts = 1000;

// "sNp" at the end of the source's name gives N; 0 when there is none.
int PortsFromName(const std::string& source)
{
    const std::size_t dot = source.find_last_of('.');
    const std::size_t slash = source.find_last_of('/');
    if (dot == std::string::npos || (slash != std::string::npos && slash > dot))
        return 0;
    const std::string ext = ToLower(std::string_view(source).substr(dot + 1));
    if (ext.size() < 3 || ext.front() != 's' || ext.back() != 'p')
        return 0;
    std::size_t n = 0;
    if (!ParseCount(std::string_view(ext).substr(1, ext.size() - 2), n) || n == 0 ||
        n > std::size_t(kMaxPorts))
        return 0;
    return int(n);
}

std::string NumberText(double v)
{
    char buf[32];
    auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v);
    return ec == std::errc() ? std::string(buf, end) : std::to_string(v);
}

class TouchstoneReader
{
public:
    TouchstoneReader(const std::string& bytes, const std::string& source)
        : m_source(source), m_lines(bytes)
    {
        m_data.ports = PortsFromName(source);
    }
    TouchstoneData Read();

private:
    [[noreturn]] void Fail(const std::string& message) const
    {
        throw ReadError(m_source, m_lines.Line(), message);
    }
    void ReadOptions(std::string_view text);
    void ReadOption(const std::vector<std::string_view>& words, std::size_t& i);
    void ReadNumbers(std::string_view line, std::vector<double>& numbers);
    void ReadDataLine(std::string_view line);
    void StartFrequency(const std::vector<double>& numbers);
    void ReadNoiseLine(const std::vector<double>& numbers);
    void EndFrequency();
    std::complex<double> Value(double a, double b) const;
    std::size_t RecordSize() const { return 1 + 2 * std::size_t(m_data.ports) * m_data.ports; }

    const std::string& m_source;
    LineCursor m_lines;
    TouchstoneData m_data;
    double m_dUnitHz = 1e9;
    ValueFormat m_format = ValueFormat::MagnitudeAngle;
    bool m_bOptions = false;
    // The numbers of the frequency being read, and the line it began on.
    std::vector<double> m_arrPending;
    std::size_t m_nPendingLine = 0;
    bool m_bNoise = false;
    double m_dLastNoiseHz = 0.0;
    std::vector<std::string_view> m_tokens;
};

TouchstoneData TouchstoneReader::Read()
{
    while (!m_lines.AtEnd())
    {
        std::string_view line = m_lines.Next();
        line = TrimBlanks(line.substr(0, line.find('!')));
        if (line.empty())
            continue;
        if (line.front() == '#')
            ReadOptions(line.substr(1));
        else if (line.front() == '[')
            Fail("the keyword " + std::string(line.substr(0, line.find(']') + 1)) +
                 " belongs to Touchstone 2.0; only version 1 files are read");
        else
            ReadDataLine(line);
    }
    if (!m_arrPending.empty())
        Fail("the file ends inside the frequency of line " + std::to_string(m_nPendingLine) +
             ": " + std::to_string(m_arrPending.size()) + " of " +
             std::to_string(RecordSize()) + " numbers");
    if (m_data.frequencyHz.empty())
        throw ReadError(m_source, 0, "no network data");
    return std::move(m_data);
}

// Only the first option line counts; the format lets later ones stand
// and be ignored.
void TouchstoneReader::ReadOptions(std::string_view text)
{
    if (m_bOptions)
        return;
    if (!m_data.frequencyHz.empty() || !m_arrPending.empty())
        Fail("the option line comes after the data");
    m_bOptions = true;
    std::vector<std::string_view> words;
    SplitBlanks(text, words);
    for (std::size_t i = 0; i < words.size(); ++i)
        ReadOption(words, i);
}

void TouchstoneReader::ReadOption(const std::vector<std::string_view>& words, std::size_t& i)
{
    const std::string w = ToLower(words[i]);
    if (w == "hz" || w == "khz" || w == "mhz" || w == "ghz")
        m_dUnitHz = w == "hz" ? 1.0 : w == "khz" ? 1e3 : w == "mhz" ? 1e6 : 1e9;
    else if (w == "s" || w == "y" || w == "z")
        m_data.parameter = char(w[0] - 'a' + 'A');
    else if (w == "h" || w == "g")
        Fail("the parameter " + std::string(words[i]) + " is not read; only S, Y and Z are");
    else if (w == "ri")
        m_format = ValueFormat::RealImaginary;
    else if (w == "ma")
        m_format = ValueFormat::MagnitudeAngle;
    else if (w == "db")
        m_format = ValueFormat::DecibelAngle;
    else if (w == "r")
    {
        double r = 0.0;
        if (i + 1 >= words.size() || !ParseCsvNumber(words[i + 1], r) || r <= 0.0)
            Fail("'R' wants a positive reference resistance after it");
        m_data.referenceOhms = r;
        ++i;
    }
    else
        Fail("unknown option '" + std::string(words[i]) + "'");
}

void TouchstoneReader::ReadNumbers(std::string_view line, std::vector<double>& numbers)
{
    SplitBlanks(line, m_tokens);
    numbers.clear();
    for (std::string_view t : m_tokens)
    {
        double v = 0.0;
        if (!ParseCsvNumber(t, v))
            Fail("bad number '" + std::string(t) + "'");
        numbers.push_back(v);
    }
}

void TouchstoneReader::ReadDataLine(std::string_view line)
{
    std::vector<double> numbers;
    ReadNumbers(line, numbers);
    if (m_data.ports == 0)
    {
        // A v1 line holds 4 pairs at most, so only the one- and two-port
        // forms show their port count in the first line.
        if (numbers.size() != 3 && numbers.size() != 9)
            Fail("cannot tell the port count from a first line of " +
                 std::to_string(numbers.size()) + " numbers; name the file .sNp");
        m_data.ports = numbers.size() == 3 ? 1 : 2;
    }
    if (m_arrPending.empty())
        StartFrequency(numbers);
    if (m_bNoise)
    {
        ReadNoiseLine(numbers);
        return;
    }
    m_arrPending.insert(m_arrPending.end(), numbers.begin(), numbers.end());
    if (m_arrPending.size() > RecordSize())
        Fail("the frequency of line " + std::to_string(m_nPendingLine) + " has " +
             std::to_string(m_arrPending.size()) + " numbers by the end of this line; a " +
             std::to_string(m_data.ports) + "-port frequency takes " +
             std::to_string(RecordSize()));
    if (m_arrPending.size() == RecordSize())
        EndFrequency();
}

void TouchstoneReader::StartFrequency(const std::vector<double>& numbers)
{
    m_nPendingLine = m_lines.Line();
    const double hz = numbers.front() * m_dUnitHz;
    if (!std::isfinite(hz))
        Fail("frequency out of range");
    if (m_bNoise || m_data.frequencyHz.empty())
        return;
    const double last = m_data.frequencyHz.back();
    if (hz > last)
        return;
    if (m_data.ports == 2 && numbers.size() == 5)
    {
        m_bNoise = true;
        return;
    }
    Fail("frequency " + NumberText(hz) + " Hz does not increase (the one before is " +
         NumberText(last) + " Hz)");
}

void TouchstoneReader::ReadNoiseLine(const std::vector<double>& numbers)
{
    if (numbers.size() != 5)
        Fail("a noise parameter line holds 5 numbers, this one " +
             std::to_string(numbers.size()));
    const double hz = numbers.front() * m_dUnitHz;
    if (m_dLastNoiseHz > 0.0 && hz <= m_dLastNoiseHz)
        Fail("noise frequency " + NumberText(hz) + " Hz does not increase");
    m_dLastNoiseHz = hz;
}

std::complex<double> TouchstoneReader::Value(double a, double b) const
{
    constexpr double kDegree = 3.14159265358979323846 / 180.0;
    if (m_format == ValueFormat::RealImaginary)
        return {a, b};
    // Written out rather than std::polar, which leaves a negative magnitude
    // undefined.
    const double magnitude = m_format == ValueFormat::DecibelAngle ? std::pow(10.0, a / 20.0) : a;
    return {magnitude * std::cos(b * kDegree), magnitude * std::sin(b * kDegree)};
}

void TouchstoneReader::EndFrequency()
{
    const std::size_t n = std::size_t(m_data.ports) * m_data.ports;
    std::vector<std::complex<double>> values(n);
    // v1 writes Y and Z normalised to the reference resistance.
    const double scale = m_data.parameter == 'Z'   ? m_data.referenceOhms
                         : m_data.parameter == 'Y' ? 1.0 / m_data.referenceOhms
                                                   : 1.0;
    for (std::size_t k = 0; k < n; ++k)
    {
        values[k] = scale * Value(m_arrPending[1 + 2 * k], m_arrPending[2 + 2 * k]);
        if (!std::isfinite(values[k].real()) || !std::isfinite(values[k].imag()))
            Fail("value " + std::to_string(k + 1) + " of the frequency of line " +
                 std::to_string(m_nPendingLine) + " is out of range");
    }
    // A 2-port record is N11 N21 N12 N22.
    if (m_data.ports == 2)
        std::swap(values[1], values[2]);
    m_data.frequencyHz.push_back(m_arrPending.front() * m_dUnitHz);
    m_data.data.push_back(std::move(values));
    m_arrPending.clear();
}

std::string ParameterName(char parameter, int row, int column)
{
    std::string name(1, parameter);
    name += std::to_string(row);
    if (row > 9 || column > 9)
        name += '_';
    return name + std::to_string(column);
}

} // namespace

TouchstoneData ReadTouchstone(const std::string& bytes, const std::string& source)
{
    return TouchstoneReader(bytes, source).Read();
}

SignalFile ToSignalFile(const TouchstoneData& t)
{
    Plot plot;
    plot.name = std::string(1, t.parameter);
    plot.title = NumberText(t.referenceOhms);
    Vector frequency;
    frequency.name = "frequency";
    frequency.kind = "frequency";
    frequency.values = t.frequencyHz;
    plot.vectors.push_back(std::move(frequency));
    const int n = t.ports;
    for (int k = 0; k < n * n; ++k)
    {
        // The file's order: row-major, but column-major for 2 ports.
        const int row = n == 2 ? k % 2 : k / n;
        const int column = n == 2 ? k / 2 : k % n;
        Vector v;
        v.name = ParameterName(t.parameter, row + 1, column + 1);
        v.cvalues.reserve(t.data.size());
        for (const std::vector<std::complex<double>>& values : t.data)
            v.cvalues.push_back(values[std::size_t(row * n + column)]);
        plot.vectors.push_back(std::move(v));
    }
    SignalFile file;
    file.plots.push_back(std::move(plot));
    return file;
}

std::vector<double> InputImpedanceMagnitude(const TouchstoneData& t)
{
    constexpr double kOpen = std::numeric_limits<double>::infinity();
    std::vector<double> z;
    z.reserve(t.data.size());
    for (const std::vector<std::complex<double>>& values : t.data)
    {
        const std::complex<double> p = values.front();
        if (t.parameter == 'Z')
            z.push_back(std::abs(p));
        else if (t.parameter == 'Y')
            z.push_back(p == 0.0 ? kOpen : 1.0 / std::abs(p));
        else
            z.push_back(p == 1.0 ? kOpen : std::abs(t.referenceOhms * (1.0 + p) / (1.0 - p)));
    }
    return z;
}

} // namespace plotvane::io
