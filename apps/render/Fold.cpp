#include "render/Fold.h"

#include <plotvane/measure/ChartPointDArrayArray.h>

#include <algorithm>
#include <cmath>

namespace plotvane
{
namespace
{

// The period edges: dSkip + k * dPeriod, computed from k so that no error
// builds up over many periods.
double Edge(double dSkip, double dPeriod, std::size_t k)
{
    return dSkip + double(k) * dPeriod;
}

// The waveform at t by linear interpolation; t within the samples.
double ValueAt(const std::vector<double>& xs, const std::vector<double>& ys, double t)
{
    const std::size_t i = std::size_t(std::lower_bound(xs.begin(), xs.end(), t) - xs.begin());
    if (i == 0)
        return ys.front();
    if (i >= xs.size())
        return ys.back();
    if (xs[i] == t || xs[i] == xs[i - 1])
        return ys[i];
    const double f = (t - xs[i - 1]) / (xs[i] - xs[i - 1]);
    return ys[i - 1] + (ys[i] - ys[i - 1]) * f;
}

// One period as a run of new points.
CChartPointDArray* PeriodRun(const std::vector<double>& xs, const std::vector<double>& ys,
                             double dStart, double dPeriod)
{
    auto* run = new CChartPointDArray;
    run->Add(new CChartPointD(0.0, ValueAt(xs, ys, dStart)));
    double dLast = 0.0;
    for (auto it = std::upper_bound(xs.begin(), xs.end(), dStart); it != xs.end(); ++it)
    {
        const double x = *it - dStart;
        if (!(x < dPeriod))
            break;
        // Repeated instants would end an eye line early.
        if (!(x > dLast))
            continue;
        run->Add(new CChartPointD(x, ys[std::size_t(it - xs.begin())]));
        dLast = x;
    }
    run->Add(new CChartPointD(dPeriod, ValueAt(xs, ys, dStart + dPeriod)));
    return run;
}

} // namespace

std::size_t WholePeriods(const std::vector<double>& xs, double dPeriod, double dSkip)
{
    if (xs.size() < 2 || !(dPeriod > 0.0) || dSkip < xs.front())
        return 0;
    const double n = std::floor((xs.back() - dSkip) / dPeriod);
    if (!(n >= 1.0))
        return 0;
    // Round-off at the last edge must not drop a period that is there, nor
    // add one that is not.
    std::size_t k = std::size_t(n);
    while (k > 0 && Edge(dSkip, dPeriod, k) > xs.back())
        --k;
    return k;
}

std::size_t FoldIntoEye(const std::vector<double>& xs, const std::vector<double>& ys,
                        double dPeriod, double dSkip, CChartPointDArray& eye)
{
    const std::size_t nPeriods = WholePeriods(xs, dPeriod, dSkip);
    CChartPointDArrayArray periods;
    for (std::size_t k = 0; k < nPeriods; ++k)
        periods.Add(PeriodRun(xs, ys, Edge(dSkip, dPeriod, k), dPeriod));
    eye.SerializeWaveDataFromEachPeriod(&periods, dPeriod);
    // The periods gave their points to the eye and are empty now. While
    // more than two are left the serialisation drops one at each end.
    if (nPeriods <= 2)
        return nPeriods;
    return nPeriods == 3 ? 2 : nPeriods - 2;
}

} // namespace plotvane
