// overshoot, undershoot, overshoot-area: a DDR data line ringing at the
// receiver. The driver's trapezoid pulse goes through the series
// resistance and package inductance into the receiver's capacitance, an
// underdamped RLC; the host measures peak, dip and area with the waveform
// API and hands the numbers to the overlay.
#include "render/demos/LevelDemos.h"

#include "render/JsonReport.h"
#include "render/demos/OverlayHost.h"
#include <plotvane/view/ChartFrame.h>

#include <algorithm>
#include <cmath>

namespace plotvane
{
namespace
{
constexpr double kVdd = 1.2;
constexpr double kNs = 1e-9;
const char* const kNode = "U7.DQ3";

// 33 ohm, 4 nH, 2 pF: about 1.8 GHz ringing with a damping of 0.37. The
// pulse rises at 0.5 ns and falls at 2.5 ns, 100 ps edges; RK4 at 1 ps over
// 5 ns, one sample in 5 kept.
CChartPointDArray RingingPulse()
{
    const double R = 33.0, L = 4e-9, C = 2e-12, dt = 1e-12;
    auto drive = [](double t)
    {
        const double tr = 0.1 * kNs;
        auto ramp = [tr](double u) { return std::clamp(u / tr, 0.0, 1.0); };
        return kVdd * (ramp(t - 0.5 * kNs) - ramp(t - 2.5 * kNs));
    };
    // State: receiver voltage v and inductor current i.
    auto f = [&](double t, double v, double i, double& dv, double& di)
    {
        dv = i / C;
        di = (drive(t) - R * i - v) / L;
    };
    CChartPointDArray a;
    double v = 0.0, i = 0.0;
    for (int n = 0; n <= 5000; ++n)
    {
        const double t = n * dt;
        if (n % 5 == 0)
            a.Add(new CChartPointD(t, v));
        double k1v, k1i, k2v, k2i, k3v, k3i, k4v, k4i;
        f(t, v, i, k1v, k1i);
        f(t + dt / 2, v + dt / 2 * k1v, i + dt / 2 * k1i, k2v, k2i);
        f(t + dt / 2, v + dt / 2 * k2v, i + dt / 2 * k2i, k3v, k3i);
        f(t + dt, v + dt * k3v, i + dt * k3i, k4v, k4i);
        v += dt / 6 * (k1v + 2 * k2v + 2 * k3v + k4v);
        i += dt / 6 * (k1i + 2 * k2i + 2 * k3i + k4i);
    }
    a.m_strName = kNode;
    a.m_strNetName = "DQ3";
    return a;
}

CChartPointDArray& Load(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    CChartPointDArray wave = RingingPulse();
    const int i = demo::AddDrawnSet(mgr, wave, options.bLight ? 0x806000 : 0x60E0FF);
    mgr.SetAxisXName("Time (s)");
    mgr.SetAxisYName("Voltage (V)");
    demo::ShowFittedChart(mgr);
    return *mgr.m_InputData.GetChartPointDArray(i);
}

} // namespace

void BuildOvershootDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    SetShootCheck(mgr, Load(mgr, options), 0, kVdd, 400.0);
}

void BuildUndershootDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    SetShootCheck(mgr, Load(mgr, options), 2, 0.0, 400.0);
}

void BuildOvershootAreaDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    // An allowed area of 0.1 V-ns above VDD.
    SetOvershootAreaCheck(mgr, Load(mgr, options), kVdd, 0.1);
}

void ReportShootDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                     JsonWriter& json)
{
    const CChartPointDArray& w = *mgr.m_InputData.GetChartPointDArray(0);
    const int nType = mgr.m_nMeasureType;
    const ChartFrame f = mgr.m_ChartDlg.GetGLChartView()->GetChartFrame();
    const double gy = f.ViewScaleY();
    json.Key("model");
    json.String("33 ohm, 4 nH, 2 pF; 1.2 V pulse, 100 ps edges");
    json.Key("level_v");
    json.Number(mgr.m_dMeasureLevel);

    json.Key("api");
    json.BeginObject();
    if (nType == 1)
    {
        json.Key("area_v_ns");
        json.Number(AreaAbove(w, mgr.m_dMeasureLevel));
    }
    else
    {
        json.Key(nType == 0 ? "peak_v" : "dip_v");
        json.Number(nType == 0 ? w.GetMaxY() : w.GetMinY());
        json.Key("measured_mv");
        json.Number(mgr.m_dMeasuredValue);
        json.Key("limit_mv");
        json.Number(mgr.m_dMeasureLimit);
    }
    json.Key("margin");
    json.Number(mgr.m_dMeasureMargin);
    json.EndObject();

    // What the overlay printed, and the extreme its red line stands at, read
    // back from where it put the measured text (H / 20 from the line).
    json.Key("overlay");
    json.BeginObject();
    if (nType == 1)
    {
        json.Key("margin");
        json.Number(demo::TextNumber(texts, "Overshoot Area Margin: "));
    }
    else
    {
        const char* measured = nType == 0 ? "Measured Overshoot: " : "Measured Undershoot: ";
        const ChartText* t = demo::FindText(texts, measured);
        json.Key(nType == 0 ? "peak_v" : "dip_v");
        if (t)
            json.Number((t->ptLogical.y + f.Height() / 20) / gy);
        else
            json.Null();
        json.Key("measured_mv");
        json.Number(demo::TextNumber(texts, measured));
        json.Key("limit_mv");
        json.Number(demo::TextNumber(texts, nType == 0 ? "Max Overshoot: " : "Max Undershoot: "));
        json.Key("margin");
        json.Number(
            demo::TextNumber(texts, nType == 0 ? "Overshoot Margin: " : "Undershoot Margin: "));
    }
    json.EndObject();
}

} // namespace plotvane
