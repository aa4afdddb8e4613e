// flight-time, crosstalk, tdr and dfe: small transmission-line models
// (a matched driver into a line with a capacitive receiver, a weakly
// coupled pair, a line with a 65 Ohm section, the insertion loss of a
// board trace). Each demo is the host of its overlay: it measures the
// waveforms with the waveform API, writes the numbers into the manager, and
// reports them next to what the overlay printed.
#include "render/ChartInput.h"
#include "render/JsonReport.h"
#include "render/OverlayDemo.h"
#include "render/demos/OverlayHost.h"
#include "render/demos/MarkDemos.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

namespace plotvane
{
namespace
{

constexpr double kPi = 3.14159265358979323846;
constexpr double ns = 1e-9;
constexpr double ps = 1e-12;

// A raised-cosine edge from 0 to 1 that starts at t0 and takes tr.
double Edge(double t, double t0, double tr)
{
    if (t <= t0)
        return 0.0;
    if (t >= t0 + tr)
        return 1.0;
    return 0.5 - 0.5 * std::cos(kPi * (t - t0) / tr);
}
// Its slope.
double EdgeSlope(double t, double t0, double tr)
{
    if (t <= t0 || t >= t0 + tr)
        return 0.0;
    return 0.5 * kPi / tr * std::sin(kPi * (t - t0) / tr);
}

// The time axes show nanoseconds (the view scale's unit) under a unit
// name of "s" with no prefix; naming the unit "ns" makes them read true.

// Curve colours of the preset that none of these marks use (they draw in
// red, blue, orange, lavender and the measure-mark's light blue): green,
// teal, magenta.
int CurveColorIndex(int n)
{
    static const int kIndex[3] = {4, 1, 3};
    return kIndex[n % 3];
}

int AddWave(CPlotvane_Manager& mgr, const char* name, const char* net, int nPinRole,
            const std::vector<double>& t, const std::vector<double>& v, int n, bool bLight)
{
    CsvSeries s;
    s.name = name;
    s.x = t;
    s.y = v;
    const int i = AddSeriesToChart(mgr, s, CurveColor(CurveColorIndex(n), bLight));
    CChartPointDArray& set = *mgr.m_InputData.GetChartPointDArray(i);
    set.m_strNetName = net;
    set.m_nPinRole = nPinRole;
    return i;
}

std::vector<double> TimeAxis(double tEnd, double dt)
{
    std::vector<double> t;
    for (int k = 0; k * dt <= tEnd + dt / 2; ++k)
        t.push_back(k * dt);
    return t;
}

// The number that follows prefix in the first overlay text that starts
// with it; NaN when there is none.
double TextNumber(const std::vector<ChartText>& texts, const char* prefix)
{
    const std::vector<ChartText> found = TextsOf(texts, ChartTextLayer::Overlay, prefix);
    if (found.empty())
        return NAN;
    const std::string s = found[0].strText.str();
    const char* p = s.c_str() + std::string(prefix).size();
    char* end = nullptr;
    const double v = std::strtod(p, &end);
    return end == p ? NAN : v;
}

// The number of the first overlay text that ends with suffix.
double TextNumberEndingWith(const std::vector<ChartText>& texts, const std::string& suffix)
{
    for (const ChartText& t : TextsOf(texts, ChartTextLayer::Overlay))
    {
        const std::string s = t.strText.str();
        if (s.size() > suffix.size() &&
            s.compare(s.size() - suffix.size(), suffix.size(), suffix) == 0)
            return std::strtod(s.c_str(), nullptr);
    }
    return NAN;
}

const CChartPointDArray& Set(CPlotvane_Manager& mgr, int i)
{
    return *mgr.m_InputData.GetChartPointDArray(i);
}

// ---- flight time: a 1.8 V driver with a 50 Ohm source into a 50 Ohm line
// of 1.1 ns, received by 3 pF. The forward wave is half the source; the
// capacitor charges it to the full swing at the far end and sends the
// difference back to the (matched) driver.
constexpr double kSwing = 1.8;
constexpr double kZ0 = 50.0;
constexpr double kTd = 1.1 * ns;
constexpr double kCLoad = 3e-12;
constexpr double kRise = 150 * ps;
constexpr double kLaunch = 0.4 * ns;
constexpr double kDt = 2 * ps;

void BuildFlightTimeModel(std::vector<double>& t, std::vector<double>& vDrv,
                          std::vector<double>& vRcv)
{
    t = TimeAxis(5 * ns, kDt);
    const std::size_t n = t.size();
    const std::size_t nTd = std::size_t(std::lround(kTd / kDt));
    std::vector<double> fwd(n), back(n, 0.0);
    vRcv.assign(n, 0.0);
    vDrv.assign(n, 0.0);
    for (std::size_t k = 0; k < n; ++k)
        fwd[k] = 0.5 * kSwing * Edge(t[k], kLaunch, kRise);
    // C dv/dt = (2 a - v) / Z0, integrated exactly over each step for a
    // piecewise constant incident wave.
    const double decay = std::exp(-kDt / (kZ0 * kCLoad));
    for (std::size_t k = 1; k < n; ++k)
    {
        const double a = k >= nTd ? fwd[k - nTd] : 0.0;
        vRcv[k] = 2 * a + (vRcv[k - 1] - 2 * a) * decay;
        back[k] = vRcv[k] - a;
    }
    for (std::size_t k = 0; k < n; ++k)
        vDrv[k] = fwd[k] + (k >= nTd ? back[k - nTd] : 0.0);
}

// The driver is timed at the middle of the step it launches into the
// line, the receiver at its 50 % input threshold.
constexpr double kDrvLevel = 0.25 * kSwing;
constexpr double kRcvLevel = 0.5 * kSwing;

} // namespace

void BuildFlightTimeDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    std::vector<double> t, vDrv, vRcv;
    BuildFlightTimeModel(t, vDrv, vRcv);
    const int iDrv = AddWave(mgr, "U1_DQ0 (driver)", "DQ0", 1, t, vDrv, 0, options.bLight);
    const int iRcv = AddWave(mgr, "U5_DQ0 (receiver)", "DQ0", 0, t, vRcv, 1, options.bLight);
    mgr.m_strFlightNet1 = "U1_DQ0";
    mgr.m_strFlightNet2 = "U5_DQ0";
    mgr.m_strMeasureNet = "DQ0";
    SetFlightTime(mgr, Set(mgr, iDrv), Set(mgr, iRcv), kDrvLevel, kRcvLevel);
    mgr.SetAxisXName("Time");
    mgr.SetAxisYName("Voltage");
    mgr.SetUnitNameX("ns");
    mgr.SetUnitNameY("V");
    ApplyAxisText(mgr, options, "", "");
}

void ReportFlightTimeDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                          JsonWriter& json)
{
    const double d = std::fabs(mgr.m_dFlightTimeX2 - mgr.m_dFlightTimeX1);
    json.Key("driver_crossing_ps");
    json.Number(RoundTo(mgr.m_dFlightTimeX1 / ps, 3));
    json.Key("receiver_crossing_ps");
    json.Number(RoundTo(mgr.m_dFlightTimeX2 / ps, 3));
    json.Key("driver_level_v");
    json.Number(mgr.m_dFlightTimeLevel1);
    json.Key("receiver_level_v");
    json.Number(mgr.m_dFlightTimeLevel2);
    json.Key("flight_time_ps");
    json.Number(RoundTo(d / ps, 3));
    // The line alone delays by 1.1 ns; the rest is the receiver's RC.
    json.Key("line_delay_ps");
    json.Number(RoundTo(kTd / ps, 3));
    json.Key("overlay_flight_time_ps");
    json.Number(TextNumber(texts, "FlightTime : "));
}

namespace
{
// ---- crosstalk: a 1 V, 150 ps edge on the aggressor of a weakly coupled
// microstrip pair 1 ns long. The near end of the victim sees the backward
// coefficient for a round trip; the far end sees the forward coefficient
// times the line's delay times the edge's slope, negative on microstrip
// where inductive coupling wins.
constexpr double kXtTd = 1.0 * ns;
constexpr double kKb = 0.05;
constexpr double kKf = 0.005; // (Lm/L - Cm/C) / 2
constexpr double kXtLaunch = 0.3 * ns;

} // namespace

void BuildCrosstalkDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    const std::vector<double> t = TimeAxis(3.5 * ns, kDt);
    std::vector<double> agg, next, fext;
    for (double x : t)
    {
        agg.push_back(Edge(x, kXtLaunch, kRise));
        next.push_back(kKb * (Edge(x, kXtLaunch, kRise) - Edge(x, kXtLaunch + 2 * kXtTd, kRise)));
        fext.push_back(-kKf * kXtTd * EdgeSlope(x, kXtLaunch + kXtTd, kRise));
    }
    AddWave(mgr, "U1_AGG (aggressor)", "AGG", 1, t, agg, 0, options.bLight);
    AddWave(mgr, "U1_VIC (near end)", "VIC", 0, t, next, 1, options.bLight);
    const int iFar = AddWave(mgr, "U2_VIC (far end)", "VIC", 1, t, fext, 2, options.bLight);

    // The far-end peak: the valley of the victim's far end.
    mgr.m_strNEXTNet = "VIC";
    mgr.m_strFEXTNet = "U2";
    mgr.m_nCrosstalkPointIndex = PeakIndex(Set(mgr, iFar), true);
    mgr.SetAxisXName("Time");
    mgr.SetAxisYName("Voltage");
    mgr.SetUnitNameX("ns");
    mgr.SetUnitNameY("V");
    ApplyAxisText(mgr, options, "", "");
}

void ReportCrosstalkDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                         JsonWriter& json)
{
    const CPlotvane_InputData& data = mgr.m_InputData;
    const CChartPointDArray& near = *data.GetChartPointDArray(1);
    const CChartPointDArray& far = *data.GetChartPointDArray(2);
    int nNear = -1;
    double dNear = 0.0;
    near.GetMaxpoint(nNear, dNear);
    json.Key("next_peak_mv");
    json.Number(RoundTo(dNear * 1e3, 3));
    json.Key("next_expected_mv");
    json.Number(kKb * 1e3);
    const int i = mgr.m_nCrosstalkPointIndex;
    json.Key("fext_index");
    json.Number(i);
    json.Key("fext_peak_ps");
    json.Number(i >= 0 ? RoundTo(far.GetPointX(i) / ps, 3) : NAN);
    json.Key("fext_peak_mv");
    json.Number(i >= 0 ? RoundTo(far.GetPointY(i) * 1e3, 3) : NAN);
    json.Key("fext_expected_mv");
    json.Number(RoundTo(-kKf * kXtTd * 0.5 * kPi / kRise * 1e3, 3));
    json.Key("overlay_fext_mv");
    json.Number(TextNumber(texts, "FEXT : "));
}

namespace
{
// ---- TDR: a 250 mV, 35 ps step into 50 Ohm cable, 0.6 ns of 50 Ohm
// trace, 0.4 ns at 65 Ohm (a neck-down), then 50 Ohm again into a matched
// load. Each interface reflects r or -r; the wave trapped in the section
// rings down by r^2 per round trip.
constexpr double kTdr1 = 0.6 * ns;
constexpr double kTdr2 = 0.4 * ns;
constexpr double kZSection = 65.0;
constexpr double kTdrRise = 35 * ps;
constexpr double kTdrStart = 0.2 * ns;
} // namespace

void BuildTdrDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    const double r = (kZSection - kZ0) / (kZSection + kZ0);
    const std::vector<double> t = TimeAxis(3 * ns, kDt);
    std::vector<double> z;
    for (double x : t)
    {
        const double t1 = kTdrStart + 2 * kTdr1;
        double rho = r * Edge(x, t1, kTdrRise);
        double term = (1 - r * r) * -r;
        for (int k = 0; k < 4; ++k)
        {
            rho += term * Edge(x, t1 + 2 * (k + 1) * kTdr2, kTdrRise);
            term *= r * r;
        }
        z.push_back(kZ0 * (1 + rho) / (1 - rho));
    }
    const int i = AddWave(mgr, "TDR Z (port 1)", "DQ7", 1, t, z, 0, options.bLight);

    // The reference: the trace before the section, read in its middle; the
    // section: the curve's highest point.
    SetTdrMarks(mgr, Set(mgr, i), kTdrStart + kTdr1, 0.0, 1000.0);
    mgr.SetAxisXName("Time");
    mgr.SetAxisYName("Impedance");
    mgr.SetUnitNameX("ns");
    mgr.SetUnitNameY("Ohm");
    ApplyAxisText(mgr, options, "", "");
}

void ReportTdrDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>&, JsonWriter& json)
{
    // The overlay prints nothing: its numbers are what the chart holds.
    json.Key("reference_ohm");
    json.Number(RoundTo(mgr.m_dTDRLevel1, 3));
    json.Key("section_ohm");
    json.Number(RoundTo(mgr.m_dTDRLevel2, 3));
    json.Key("section_model_ohm");
    json.Number(kZSection);
    json.Key("marked_point_ps");
    json.Number(RoundTo(mgr.m_dTargetImpedanceFreq / ps, 3));
    json.Key("marked_point_ohm");
    json.Number(RoundTo(mgr.m_dTargetImpedanceValue, 3));
    json.Key("section_delay_ps");
    json.Number(RoundTo(kTdr2 / ps, 3));
}

namespace
{
// ---- DFE: insertion loss of 12 in of FR-4 stripline, skin effect in the
// square root of f and dielectric loss in f, with the small ripple of a
// connector pair 0.8 ns apart. 16 Gb/s puts Nyquist at 8 GHz.
constexpr double kNyquist = 8e9;
constexpr double kDfeBudgetDb = -15.0;

double InsertionLossDb(double f)
{
    const double g = f / 1e9;
    const double ripple = 0.15 * g / 10 * std::sin(2 * kPi * f * 2 * 0.8 * ns);
    return -(1.1 * std::sqrt(g) + 0.95 * g) + ripple;
}
} // namespace

void BuildDfeDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    std::vector<double> f, il;
    for (int k = 1; k <= 2000; ++k)
    {
        f.push_back(k * 10e6);
        il.push_back(InsertionLossDb(k * 10e6));
    }
    const int i = AddWave(mgr, "SDD21 lane 0", "TX0", 1, f, il, 0, options.bLight);
    SetDfeMark(mgr, Set(mgr, i), kNyquist, kDfeBudgetDb, -100.0, 10.0);
    mgr.SetAxisXName("Frequency");
    mgr.SetAxisYName("SDD21");
    mgr.SetUnitNameX("Hz");
    mgr.SetUnitNameY("dB");
    mgr.m_Attribute.m_XAxis.SetUnit(1);
    ApplyAxisText(mgr, options, "", "");
}

void ReportDfeDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts, JsonWriter& json)
{
    json.Key("nyquist_hz");
    json.Number(mgr.m_ptDFEP.x);
    json.Key("loss_at_nyquist_db");
    json.Number(RoundTo(mgr.m_ptDFEP.y, 5));
    json.Key("model_loss_db");
    json.Number(RoundTo(InsertionLossDb(kNyquist), 5));
    json.Key("budget_db");
    json.Number(mgr.m_dDFEPLevel);
    json.Key("within_budget");
    json.Bool(mgr.m_ptDFEP.y >= mgr.m_dDFEPLevel);
    json.Key("overlay_nyquist_mhz");
    json.Number(TextNumberEndingWith(texts, "MHz"));
    json.Key("overlay_loss_db");
    json.Number(TextNumberEndingWith(texts, "dB"));
}

} // namespace plotvane
