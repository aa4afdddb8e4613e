#include "foundation/Dec.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>

namespace plotvane
{
int dec(double value)
{
    if (value == 0.0)
        return 0;
    // _ecvt gives "1#INF"/"1#QNAN" style digits with the point after the first.
    if (!std::isfinite(value))
        return 1;
    // printf rounds the binary value correctly to ten significant digits, as
    // _ecvt does, so its exponent is the one _ecvt reports, less one.
    char buf[40];
    std::snprintf(buf, sizeof buf, "%.9e", std::fabs(value));
    const char* e = buf;
    while (*e && *e != 'e')
        ++e;
    return std::atoi(e + 1) + 1;
}
} // namespace plotvane
