#include "render/Units.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace plotvane
{
namespace
{

struct Prefix
{
    const char* text;
    int nPower;
};

// "meg" before "m", so that the longer spelling wins.
const Prefix kPrefixes[] = {{"meg", 6}, {"Meg", 6}, {"MEG", 6},      {"f", -15}, {"p", -12},
                            {"n", -9},  {"u", -6},  {"\xC2\xB5", -6}, {"m", -3},  {"k", 3},
                            {"K", 3},   {"M", 6},   {"G", 9},         {"T", 12}};

// The spellings of each unit an option can be in.
struct UnitSpelling
{
    const char* unit;
    const char* spellings[5];
};

const UnitSpelling kUnits[] = {
    {"s", {"s", "sec", nullptr}},
    {"V", {"V", "v", nullptr}},
    {"A", {"A", nullptr}},
    {"Hz", {"Hz", "hz", "HZ", nullptr}},
    {"Ohm", {"Ohm", "ohm", "Ohms", "ohms", "\xCE\xA9"}},
};

const UnitSpelling* FindUnit(const std::string& unit)
{
    for (const UnitSpelling& u : kUnits)
    {
        if (unit == u.unit)
            return &u;
    }
    return nullptr;
}

bool EndsWith(const std::string& s, const std::string& end)
{
    return s.size() >= end.size() && s.compare(s.size() - end.size(), end.size(), end) == 0;
}

// The unit written at the end of rest, removed from it; false when rest
// does not end in one of its spellings.
bool StripUnit(std::string& rest, const std::string& unit)
{
    const UnitSpelling* u = FindUnit(unit);
    if (!u)
        return EndsWith(rest, unit) && (rest.resize(rest.size() - unit.size()), true);
    for (const char* s : u->spellings)
    {
        if (s && EndsWith(rest, s))
        {
            rest.resize(rest.size() - std::string(s).size());
            return true;
        }
    }
    return false;
}

bool FindPrefix(const std::string& text, int& nPower)
{
    for (const Prefix& p : kPrefixes)
    {
        if (text == p.text)
        {
            nPower = p.nPower;
            return true;
        }
    }
    return false;
}

std::string Trim(const std::string& s)
{
    const std::size_t a = s.find_first_not_of(" \t");
    if (a == std::string::npos)
        return std::string();
    const std::size_t b = s.find_last_not_of(" \t");
    return s.substr(a, b - a + 1);
}

std::string Lower(std::string s)
{
    std::transform(s.begin(), s.end(), s.begin(),
                   [](unsigned char c) { return char(std::tolower(c)); });
    return s;
}

} // namespace

bool ParseQuantity(const std::string& text, const std::string& unit, double dBareScale,
                   double& value, bool& bSuffix, std::string& why)
{
    const std::string s = Trim(text);
    // from_chars takes no '+' and neither "inf" nor "nan" are numbers here.
    const std::size_t start = !s.empty() && s[0] == '+' ? 1 : 0;
    double v = 0.0;
    const char* first = s.data() + start;
    const char* last = s.data() + s.size();
    const auto [end, ec] = std::from_chars(first, last, v, std::chars_format::general);
    if (s.empty() || ec != std::errc() || !std::isfinite(v) || (start == 1 && *first == '-'))
    {
        why = s.empty() ? "no number" : "not a number";
        return false;
    }
    const std::string suffix = Trim(std::string(end, last));
    std::string rest = suffix;
    bSuffix = !rest.empty();
    if (rest.empty())
    {
        value = v * dBareScale;
        return true;
    }
    StripUnit(rest, unit);
    int nPower = 0;
    if (!rest.empty() && !FindPrefix(rest, nPower))
    {
        why = "'" + suffix + "' is neither an SI prefix nor " +
              (unit.empty() ? "a unit" : "'" + unit + "'");
        return false;
    }
    value = v * std::pow(10.0, nPower);
    return true;
}

std::string FormatQuantity(double value, const std::string& unit)
{
    if (!std::isfinite(value))
        return "not a number";
    const double a = std::fabs(value);
    // Beyond the prefixes the number speaks for itself.
    const int nPower = a >= 1e-12 && a < 1e15 ? int(std::floor(std::log10(a) / 3.0)) * 3 : 0;
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.4g", value / std::pow(10.0, nPower));
    const std::string suffix = std::string(PrefixText(nPower)) + unit;
    return suffix.empty() ? std::string(buf) : std::string(buf) + " " + suffix;
}

int EngineeringPower(double dMaxAbs)
{
    if (!(dMaxAbs > 0.0) || !std::isfinite(dMaxAbs))
        return 0;
    // Up to 500 in a unit before the next prefix takes over: 600 ns reads
    // as 0.6 us.
    const int n = int(std::floor(std::log10(dMaxAbs * 2.0) / 3.0)) * 3;
    return std::clamp(n, -12, 12);
}

const char* PrefixText(int nPower)
{
    switch (nPower)
    {
    case -12:
        return "p";
    case -9:
        return "n";
    case -6:
        return "u";
    case -3:
        return "m";
    case 3:
        return "k";
    case 6:
        return "M";
    case 9:
        return "G";
    case 12:
        return "T";
    default:
        return "";
    }
}

UnitName SplitUnit(const std::string& text)
{
    static const char* const kBases[] = {"s", "Hz", "V", "A", "Ohm", "W", "F", "H"};
    const std::string t = Trim(text);
    for (const char* base : kBases)
    {
        std::string rest = t;
        if (!StripUnit(rest, base))
            continue;
        int nPower = 0;
        if (rest.empty() || FindPrefix(rest, nPower))
            return {base, std::pow(10.0, nPower)};
    }
    return {t, 1.0};
}

void SplitNameAndUnit(const std::string& text, std::string& name, std::string& unit)
{
    const std::string t = Trim(text);
    name = t;
    unit.clear();
    if (t.empty())
        return;
    const char close = t.back();
    const char open = close == ')' ? '(' : close == ']' ? '[' : '\0';
    if (open == '\0')
        return;
    const std::size_t at = t.rfind(open);
    // "v(out)" is a name, not a unit: the bracket must follow a blank.
    if (at == std::string::npos || at == 0 || (t[at - 1] != ' ' && open == '('))
        return;
    unit = Trim(t.substr(at + 1, t.size() - at - 2));
    name = Trim(t.substr(0, at));
}

std::string GuessUnit(const std::string& name, const std::string& kind)
{
    const std::string n = Lower(name);
    const std::string k = Lower(kind);
    if (k == "time" || n == "time" || n == "t")
        return "s";
    if (k == "frequency" || n == "frequency" || n == "freq" || n == "f")
        return "Hz";
    if (k == "voltage" || n.rfind("v(", 0) == 0 || n == "voltage")
        return "V";
    if (k == "current" || n.rfind("i(", 0) == 0 || n == "current")
        return "A";
    if (k == "impedance" || n == "impedance" || n == "|z|")
        return "Ohm";
    return std::string();
}

} // namespace plotvane
