#include "render/EyeChecks.h"

#include "render/ChartInput.h"
#include "render/Fold.h"
#include "render/Units.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace plotvane
{
namespace
{

// Eye times beyond this are not seconds: no eye has a millisecond period.
constexpr double kLongestPeriod = 1e-3;

std::string Number(double v)
{
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.6g", v);
    return buf;
}

std::string Seconds(double v)
{
    return FormatQuantity(v, "s");
}

struct TimeUnit
{
    const char* name;
    double dSeconds;
};

// The unit in which values spanning dSpan would span about dPeriods
// periods of dPeriod seconds.
TimeUnit LikelyTimeUnit(double dSpan, double dPeriod, double dPeriods)
{
    static const TimeUnit kUnits[] = {{"ms", 1e-3}, {"us", 1e-6}, {"ns", 1e-9}, {"ps", 1e-12}};
    const TimeUnit* best = &kUnits[0];
    double dBest = HUGE_VAL;
    for (const TimeUnit& u : kUnits)
    {
        const double d = std::fabs(std::log10(dSpan * u.dSeconds / dPeriod / dPeriods));
        if (d < dBest)
        {
            dBest = d;
            best = &u;
        }
    }
    return *best;
}

[[noreturn]] void Fail(const std::string& message)
{
    throw ChartInputError(message);
}

void CheckTimeUnits(double dSpan, const RenderOptions& o)
{
    const double P = o.dPeriod;
    if (P > kLongestPeriod && dSpan > kLongestPeriod)
        Fail("--period " + Number(P) + " and the data eye's time span of " + Number(dSpan) +
             " are not in seconds: eye times must be seconds (give the period as " + Number(P) +
             "n for nanoseconds, and the time column in seconds)");
    if (P > kLongestPeriod)
        Fail("--period " + Number(P) + " reads as " + Seconds(P) + ", far longer than the data's " +
             Seconds(dSpan) + ": for nanoseconds write " + Number(P) + "n or " + Number(P) + "ns");
    if (dSpan > kLongestPeriod)
    {
        const TimeUnit u = LikelyTimeUnit(dSpan, P, o.bFold ? 100.0 : 1.0);
        Fail("the data eye's time spans " + Number(dSpan) + " while --period is " + Seconds(P) +
             ": the time looks like it is in " + u.name +
             "; eye times must be in seconds (scale the time column by " + Number(u.dSeconds) +
             ")");
    }
}

void CheckFolded(double dSpan, bool bRising, const RenderOptions& o, const WarnFn& warn)
{
    const double r = dSpan / o.dPeriod;
    if (r > 2.5)
    {
        if (bRising)
            Fail("the data eye is a waveform in time: it spans " + Seconds(dSpan) + ", " +
                 Number(std::round(r * 10) / 10) + " periods of " + Seconds(o.dPeriod) +
                 "; give --fold (and --skip TIME for the start-up) to fold it at --period");
        Fail("the data eye spans " + Seconds(dSpan) + ", " + Number(std::round(r * 10) / 10) +
             " periods of " + Seconds(o.dPeriod) +
             ": --period must be the period the eye was folded at");
    }
    if (r < 0.3)
        Fail("--period " + Seconds(o.dPeriod) + " is " + Number(std::round(1 / r)) +
             " times the data eye's span of " + Seconds(dSpan) +
             ": --period must be the period the eye was folded at");
    if (r < 0.8 || r > 1.25)
        warn("the data eye spans " + Seconds(dSpan) + ", not one period of " +
             Seconds(o.dPeriod) + ": the strobe is looked for by the period");
}

void CheckToFold(const std::vector<double>& xs, bool bRising, const RenderOptions& o)
{
    if (!bRising)
        Fail("--fold needs a waveform in time, but the data's time falls back (an eye folded "
             "already?): leave out --fold for a folded eye");
    if (o.dSkip != 0.0 && o.dSkip < xs.front())
        Fail("--skip " + Seconds(o.dSkip) + " lies before the data's first sample at " +
             Seconds(xs.front()));
    const double dStart = std::max(o.dSkip, xs.front());
    const std::size_t n = WholePeriods(xs, o.dPeriod, dStart);
    if (n < 2)
        Fail("from " + Seconds(dStart) + " to its end at " + Seconds(xs.back()) +
             " the waveform holds " + std::to_string(n) + " whole period" +
             (n == 1 ? "" : "s") + " of " + Seconds(o.dPeriod) +
             ": too short to fold (give a shorter --skip or --period)");
}

} // namespace

void CheckEyeTiming(const std::vector<double>& xs, const RenderOptions& options,
                    const WarnFn& warn)
{
    if (xs.size() < 2)
        return;
    const auto [lo, hi] = std::minmax_element(xs.begin(), xs.end());
    const double dSpan = *hi - *lo;
    CheckTimeUnits(dSpan, options);
    // A waveform in time may step back by a rounding, never by more.
    const double dSlack = dSpan * 1e-9;
    const bool bRising = std::adjacent_find(xs.begin(), xs.end(), [dSlack](double a, double b)
                                            { return b < a - dSlack; }) == xs.end();
    if (options.bFold)
        CheckToFold(xs, bRising, options);
    else
        CheckFolded(dSpan, bRising, options, warn);
}

void CheckEyeLevels(double dMinY, double dMaxY, const RenderOptions& o, const WarnFn& warn)
{
    const double dSwing = dMaxY - dMinY;
    const std::string range = FormatQuantity(dMinY, "V") + " .. " + FormatQuantity(dMaxY, "V");
    const double dBand = std::max(o.dSetupLevel, o.dHoldLevel);
    if (!(dSwing > 0.0))
    {
        warn("the data eye is flat at " + FormatQuantity(dMaxY, "V") + ": it has no edge to measure");
        return;
    }
    // Volts written as millivolts: a DDR swing of 1200 V.
    if (dSwing > 20.0 && dBand > 0.0 && dBand < dSwing / 500.0)
        Fail("the data eye swings " + Number(dSwing) + " V (" + range +
             ") against bands of ±" + FormatQuantity(dBand, "V") +
             ": the data look like millivolts; eye levels must be in volts (scale the values "
             "by 0.001)");
    if (dBand >= dSwing)
        Fail("--setup-level/--hold-level of " + FormatQuantity(dBand, "V") +
             " is more than the data eye's whole swing of " + FormatQuantity(dSwing, "V") +
             (dBand >= 10.0 * dSwing ? ": given in mV? write " + Number(dBand) + "m or " +
                                           Number(dBand) + "mV"
                                     : ""));
    if (dBand >= dSwing / 2)
        warn("the bands of ±" + FormatQuantity(dBand, "V") + " cover the data eye's swing of " +
             FormatQuantity(dSwing, "V") + ": no edge can leave them");
    if (o.vref && (*o.vref < dMinY || *o.vref > dMaxY))
    {
        // Millivolts for volts: far off the data, and inside once divided.
        const double v = *o.vref / 1000.0;
        const double dFar = 10.0 * std::max(std::fabs(dMinY), std::fabs(dMaxY));
        if (std::fabs(*o.vref) >= dFar && v >= dMinY && v <= dMaxY)
            Fail("--vref " + Number(*o.vref) + " reads as " + FormatQuantity(*o.vref, "V") +
                 ", outside the data eye's " + range + ": for millivolts write " +
                 Number(*o.vref) + "m or " + Number(*o.vref) + "mV");
        warn("--vref " + FormatQuantity(*o.vref, "V") + " lies outside the data eye's " + range +
             ": nothing crosses it");
    }
    const double dWindowPs = o.dSetupPs + o.dHoldPs;
    if (!o.bRead && dWindowPs * 1e-12 > o.dPeriod)
        Fail("--setup-ps and --hold-ps ask for " + FormatQuantity(dWindowPs * 1e-12, "s") +
             ", more than the period of " + Seconds(o.dPeriod) +
             " (they count in ps: 100 or 100p is 100 ps)");
}

} // namespace plotvane
