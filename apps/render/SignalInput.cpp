#include "render/SignalInput.h"

#include "render/Units.h"

#include <cctype>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace plotvane
{
namespace
{

bool IsFile(const std::string& path)
{
    std::error_code ec;
    return std::filesystem::is_regular_file(path, ec);
}

std::string LowerExtension(const std::string& path)
{
    std::string ext = std::filesystem::path(path).extension().string();
    for (char& c : ext)
        c = char(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

bool IsTouchstonePlot(const io::Plot& plot)
{
    return (plot.name == "S" || plot.name == "Y" || plot.name == "Z") && !plot.vectors.empty() &&
           plot.vectors[0].name == "frequency";
}

std::vector<double> RealParts(const io::Vector& v)
{
    if (!v.IsComplex())
        return v.values;
    std::vector<double> r;
    r.reserve(v.cvalues.size());
    for (const auto& c : v.cvalues)
        r.push_back(c.real());
    return r;
}

std::vector<double> Magnitudes(const io::Vector& v)
{
    std::vector<double> r;
    r.reserve(v.cvalues.size());
    for (const auto& c : v.cvalues)
        r.push_back(std::abs(c));
    return r;
}

AxisSource ScaleSource(const io::Vector& scale)
{
    AxisSource s = AxisSourceOf(scale.name);
    // ngspice's "time" and "frequency" are quantities, named as an axis is.
    if (!s.name.empty() && s.name == scale.kind)
        s.name[0] = char(std::toupper(static_cast<unsigned char>(s.name[0])));
    if (s.unit.empty())
        s.unit = GuessUnit(s.name, scale.kind);
    return s;
}

bool IsFrequencyScale(const io::Vector& scale)
{
    return ScaleSource(scale).unit == "Hz";
}

// One vector of a plot over the plot's scale.
Signal SignalOf(const io::Plot& plot, const io::Vector& v)
{
    Signal s;
    s.name = v.name;
    s.x = ScaleSource(plot.vectors[0]);
    s.xs = RealParts(plot.vectors[0]);
    if (v.IsComplex())
    {
        s.ys = Magnitudes(v);
        s.bImpedance = IsFrequencyScale(plot.vectors[0]);
        s.y = s.bImpedance ? AxisSource{"|Z|", "Ohm"} : AxisSource{"|" + v.name + "|", ""};
        return s;
    }
    s.ys = v.values;
    s.y = AxisSourceOf(v.name);
    if (s.y.unit.empty())
        s.y.unit = GuessUnit(s.y.name, v.kind);
    return s;
}

std::string ReadBytes(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream ss;
    ss << in.rdbuf();
    if (!in)
        throw std::runtime_error("cannot read '" + path + "'");
    return ss.str();
}

// The |Z| at port 1 of a Touchstone file.
Signal TouchstoneImpedance(const std::string& path)
{
    const io::TouchstoneData t = io::ReadTouchstone(ReadBytes(path), path);
    Signal s;
    s.name = std::filesystem::path(path).stem().string() + " |Z|";
    s.x = {"Frequency", "Hz"};
    s.y = {"|Z|", "Ohm"};
    s.xs = t.frequencyHz;
    s.ys = io::InputImpedanceMagnitude(t);
    s.bImpedance = true;
    return s;
}

// The plots that a whole file shows: the first with two points or more.
const io::Plot* FirstCurvePlot(const io::SignalFile& file)
{
    for (const io::Plot& p : file.plots)
    {
        if (p.vectors.size() >= 2 && p.vectors[0].size() >= 2)
            return &p;
    }
    return nullptr;
}

std::string VectorNames(const io::SignalFile& file)
{
    std::string names;
    for (const io::Plot& p : file.plots)
    {
        for (std::size_t k = 1; k < p.vectors.size(); ++k)
            names += (names.empty() ? "" : ", ") + p.vectors[k].name;
    }
    return names;
}

} // namespace

SignalRef ParseSignalRef(const std::string& arg)
{
    if (IsFile(arg))
        return {arg, std::string()};
    for (std::size_t at = arg.find(':'); at != std::string::npos; at = arg.find(':', at + 1))
    {
        if (IsFile(arg.substr(0, at)))
            return {arg.substr(0, at), arg.substr(at + 1)};
    }
    return {arg, std::string()};
}

bool IsWholeCsvFile(const SignalRef& ref)
{
    if (!ref.signal.empty())
        return false;
    const std::string ext = LowerExtension(ref.path);
    return ext != ".raw" && !(ext.size() >= 4 && ext[1] == 's' && ext.back() == 'p' &&
                              ext.find_first_not_of("0123456789", 2) == ext.size() - 1);
}

const io::SignalFile& SignalReader::File(const std::string& path)
{
    auto it = m_files.find(path);
    if (it == m_files.end())
        it = m_files.emplace(path, io::ReadSignalFile(path)).first;
    return it->second;
}

std::vector<Signal> SignalReader::Read(const std::string& arg)
{
    const SignalRef ref = ParseSignalRef(arg);
    const io::SignalFile& file = File(ref.path);
    if (!file.plots.empty() && IsTouchstonePlot(file.plots[0]))
    {
        if (!ref.signal.empty())
            throw std::runtime_error("'" + ref.path +
                                     "': a Touchstone file is drawn whole, as |Z| at port 1");
        return {TouchstoneImpedance(ref.path)};
    }
    std::vector<Signal> out;
    if (!ref.signal.empty())
    {
        // A vector of a plot that has a curve wins over one of a single
        // point, such as an operating point.
        for (int nMinPoints : {2, 1})
        {
            for (const io::Plot& p : file.plots)
            {
                const io::Vector* v = p.Find(ref.signal);
                if (v && v != &p.vectors[0] && v->size() >= std::size_t(nMinPoints))
                    return {SignalOf(p, *v)};
            }
        }
        throw std::runtime_error("'" + ref.path + "' has no signal '" + ref.signal +
                                 "'; it has: " + VectorNames(file));
    }
    const io::Plot* plot = FirstCurvePlot(file);
    if (plot == nullptr)
        throw std::runtime_error("'" + ref.path + "' holds no curve of two points or more");
    for (std::size_t k = 1; k < plot->vectors.size(); ++k)
        out.push_back(SignalOf(*plot, plot->vectors[k]));
    return out;
}

Signal SignalReader::ReadOne(const std::string& arg, const std::string& role)
{
    std::vector<Signal> signals = Read(arg);
    if (signals.size() != 1)
        throw std::runtime_error("'" + arg + "' holds " + std::to_string(signals.size()) +
                                 " signals; name the " + role + " as " +
                                 ParseSignalRef(arg).path + ":SIGNAL, one of: " +
                                 VectorNames(File(ParseSignalRef(arg).path)));
    if (signals[0].xs.size() < 2)
        throw std::runtime_error("'" + arg + "': the " + role + " needs at least two points");
    return std::move(signals[0]);
}

} // namespace plotvane
