// target-z: the impedance seen from the die side of two board power rails,
// each a parallel RLC model of the regulator, bulk capacitors, MLCC banks
// and the plane pair, against its target: a stepped limit for the core rail
// and a polyline (flat, then rising 20 dB/decade) for the I/O rail, on log
// axes. The demo is the host: it measures the curves with the waveform API
// and reports that next to the limits as the chart holds them.
#include "render/ChartInput.h"
#include "render/JsonReport.h"
#include "render/OverlayDemo.h"
#include "render/demos/OverlayHost.h"
#include "render/demos/MarkDemos.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/document/TargetImp.h>
#include <plotvane/measure/ChartPointDArray.h>

#include <cmath>
#include <complex>
#include <vector>

namespace plotvane
{
namespace
{

using Complex = std::complex<double>;
constexpr double kPi = 3.14159265358979323846;

// One series R-L-C branch; C = 0 means no capacitor (the regulator).
struct Branch
{
    double R, L, C;
    Complex Z(double f) const
    {
        const double w = 2 * kPi * f;
        Complex z(R, w * L);
        if (C > 0)
            z += Complex(0.0, -1.0 / (w * C));
        return z;
    }
};

struct Rail
{
    const char* name;
    std::vector<Branch> branches;
};

// n identical parts in parallel.
Branch Bank(int n, double R, double L, double C)
{
    return Branch{R / n, L / n, C * n};
}

const std::vector<Rail>& Rails()
{
    static const std::vector<Rail> rails = {
        {"VDD_CORE |Z|",
         {{0.4e-3, 8e-9, 0.0},             // regulator loop
          Bank(2, 5e-3, 1.5e-9, 330e-6),   // polymer bulk
          Bank(24, 3e-3, 0.9e-9, 10e-6),   // 10 uF 0402 with vias
          Bank(40, 25e-3, 0.7e-9, 100e-9), // 100 nF 0201
          {0.1e-3, 4e-12, 12e-9}}},        // plane pair
        {"VDD_IO |Z|",
         {{2e-3, 20e-9, 0.0},
          Bank(1, 12e-3, 2e-9, 100e-6),
          Bank(8, 10e-3, 0.8e-9, 1e-6),
          {0.3e-3, 8e-12, 4e-9}}},
    };
    return rails;
}

double RailZ(const Rail& rail, double f)
{
    Complex y(0.0, 0.0);
    for (const Branch& b : rail.branches)
        y += 1.0 / b.Z(f);
    return std::abs(1.0 / y);
}

// 1 kHz to 1 GHz, 40 points a decade.
std::vector<double> Frequencies()
{
    std::vector<double> f;
    for (int k = 0; k <= 6 * 40; ++k)
        f.push_back(1e3 * std::pow(10.0, k / 40.0));
    return f;
}

// Core: 0.85 V, 3 % ripple, 14 A steps: 1.8 mOhm to 25 MHz, then the
// package takes over and the board may rise to 6.5 mOhm up to 250 MHz.
// Corners at 25 and 250 MHz and 6.5 mOhm keep the limit off the log grid's
// lines, which are drawn first and would hide it.
// I/O: 1.8 V, 5 %, 2 A gives 45 mOhm flat to 1 MHz, then inductive.
void AddLimits(CPlotvane_Manager& mgr, int nCore, int nIO)
{
    SetTargetLimits(mgr, {{"VDD_CORE", nCore, {{1e3, 25e6, 1.8e-3}, {25e6, 250e6, 6.5e-3}}, {}},
                          {"VDD_IO", nIO, {}, {{1e3, 45e-3}, {1e6, 45e-3}, {1e8, 4.5}}}});
}

} // namespace

void BuildTargetZDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    // Log axes before the data: a log Y axis drops zeros as they arrive.
    mgr.m_nFrequencyScale = 1;
    mgr.m_bUseMagnitude = 1;
    mgr.m_nMagnitudeScale = 1;
    const std::vector<double> f = Frequencies();
    // Curve colours other than the limits' cyan and the marked point's
    // yellow.
    const int colours[2] = {0, 4};
    int n = 0;
    std::vector<int> sets;
    for (const Rail& rail : Rails())
    {
        CsvSeries s;
        s.name = rail.name;
        s.x = f;
        for (double v : f)
            s.y.push_back(RailZ(rail, v));
        sets.push_back(AddSeriesToChart(mgr, s, CurveColor(colours[n++ % 2], options.bLight)));
    }
    AddLimits(mgr, sets[0], sets[1]);
    mgr.SetAxisXName("Frequency");
    mgr.SetAxisYName("|Z|");
    mgr.SetUnitNameX("Hz");
    mgr.SetUnitNameY("Ohm");
    // The log axes' value texts are the logical value times the axis unit;
    // a unit of 1 makes them read in Hz and Ohm instead of in units of the
    // view scale.
    mgr.m_Attribute.m_XAxis.SetUnit(1);
    mgr.m_Attribute.m_YAxis.SetUnit(1);
    ApplyAxisText(mgr, options, "", "");
}

namespace
{
// The limit in force at f: the step that holds f, or the polyline
// interpolated in log-log; NaN outside the limit.
double LimitAt(const CTargetImpWithinFreqRange& lim, double f)
{
    if (lim.m_nLimitType == 1 || lim.m_nLimitType == 2)
    {
        const CArrayPointD& l = lim.m_nLimitType == 1 ? *lim.m_pLimitLine1 : *lim.m_pLimitLine2;
        for (INT_PTR i = 0; i + 1 < l.GetSize(); ++i)
        {
            const CPointD a = l.GetData()[i], b = l.GetData()[i + 1];
            if (f >= a.x && f <= b.x)
            {
                const double t = std::log(f / a.x) / std::log(b.x / a.x);
                return a.y * std::pow(b.y / a.y, t);
            }
        }
        return NAN;
    }
    for (INT_PTR i = 0; i < lim.m_pLimitPoints->GetSize(); ++i)
    {
        const CPoint3D& s = *lim.m_pLimitPoints->GetData()[i];
        if (f >= s.x && f <= s.y)
            return s.z;
    }
    return NAN;
}

} // namespace

void ReportTargetZDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>&, JsonWriter& json)
{
    const CPlotvane_InputData& data = mgr.m_InputData;
    json.Key("rails");
    json.BeginArray();
    for (INT_PTR k = 0; k < data.m_DrawSet.GetSize(); ++k)
    {
        const int index = data.m_DrawSet.GetData()[k];
        const CChartPointDArray& z = *data.GetChartPointDArray(index);
        const CTargetImpWithinFreqRange* lim =
            data.m_pTargetImpArray->GetTargetImpByDataIndex(index);
        if (lim == nullptr)
            continue;
        json.BeginObject();
        json.Key("name");
        json.String(z.m_strName.str());
        // The limit as the chart holds it and the overlay draws it.
        json.Key("limit_type");
        json.Number(lim->m_nLimitType);
        json.Key("limit");
        json.BeginArray();
        if (lim->m_nLimitType == 1 || lim->m_nLimitType == 2)
        {
            const CArrayPointD& l =
                lim->m_nLimitType == 1 ? *lim->m_pLimitLine1 : *lim->m_pLimitLine2;
            for (INT_PTR i = 0; i < l.GetSize(); ++i)
            {
                json.BeginObject();
                json.Key("hz");
                json.Number(l.GetData()[i].x);
                json.Key("ohm");
                json.Number(l.GetData()[i].y);
                json.EndObject();
            }
        }
        else
        {
            for (INT_PTR i = 0; i < lim->m_pLimitPoints->GetSize(); ++i)
            {
                const CPoint3D& s = *lim->m_pLimitPoints->GetData()[i];
                json.BeginObject();
                json.Key("from_hz");
                json.Number(s.x);
                json.Key("to_hz");
                json.Number(s.y);
                json.Key("ohm");
                json.Number(s.z);
                json.EndObject();
            }
        }
        json.EndArray();

        // The API's peak of the curve, and the point that comes closest to
        // (or goes furthest over) the limit inside the limit's range.
        double dWorstRatio = 0.0, dWorstHz = 0.0, dWorstOhm = 0.0;
        for (INT_PTR i = 0; i < z.GetSize(); ++i)
        {
            const double lz = LimitAt(*lim, z.GetPointX(i));
            if (std::isnan(lz) || lz <= 0.0)
                continue;
            if (z.GetPointY(i) / lz > dWorstRatio)
            {
                dWorstRatio = z.GetPointY(i) / lz;
                dWorstHz = z.GetPointX(i);
                dWorstOhm = z.GetPointY(i);
            }
        }
        int nPeak = -1;
        double dPeak = 0.0;
        z.GetMaxpoint(nPeak, dPeak);
        json.Key("peak_hz");
        json.Number(nPeak >= 0 ? z.GetPointX(nPeak) : NAN);
        json.Key("peak_ohm");
        json.Number(dPeak);
        json.Key("worst_hz");
        json.Number(dWorstHz);
        json.Key("worst_ohm");
        json.Number(dWorstOhm);
        json.Key("worst_limit_ohm");
        json.Number(LimitAt(*lim, dWorstHz));
        json.Key("margin_db");
        json.Number(RoundTo(-20.0 * std::log10(dWorstRatio), 2));
        json.Key("pass");
        json.Bool(dWorstRatio <= 1.0);
        json.EndObject();
    }
    json.EndArray();
}

} // namespace plotvane
