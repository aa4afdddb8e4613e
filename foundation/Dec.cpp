#include <plotvane/foundation/Dec.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace plotvane
{
namespace
{
// printf rounds the binary value correctly to ten significant digits, as
// _ecvt does, so its exponent is the one _ecvt reports, less one.
int DecByFormatting(double a)
{
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.9e", a);
    const char* e = buf;
    while (*e && *e != 'e')
        ++e;
    return std::atoi(e + 1) + 1;
}

constexpr int kTableMin = -300;
constexpr int kTableMax = 300;

const std::array<double, kTableMax - kTableMin + 1>& PowersOfTen()
{
    static const auto table = [] {
        std::array<double, kTableMax - kTableMin + 1> t{};
        for (int e = kTableMin; e <= kTableMax; ++e)
            t[size_t(e - kTableMin)] = std::pow(10.0, e);
        return t;
    }();
    return table;
}
} // namespace

int dec(double value)
{
    if (value == 0.0)
        return 0;
    // _ecvt gives "1#INF"/"1#QNAN" style digits with the point after the first.
    if (!std::isfinite(value))
        return 1;
    const double a = std::fabs(value);
    // Fast path: the mantissa a / 10^e, known to about 1e-15, decides the
    // exponent unless it lies near 1 (log10 may be off by one there) or near
    // 9.9999999995, where rounding to ten digits carries into the next
    // decade. Those few values, and the extremes, take the exact path.
    if (a > 1e-299 && a < 1e299)
    {
        const int e = int(std::floor(std::log10(a)));
        const double m = a / PowersOfTen()[size_t(e - kTableMin)];
        if (m > 1.000000001 && m < 9.9999999)
            return e + 1;
    }
    return DecByFormatting(a);
}
} // namespace plotvane
