// vix-vid and vid: an 800 MHz differential clock at the memory's pins. Each
// leg is an ideal square from its driver through a first-order RC (40 ps)
// at the receiver; the complement leaves 20 ps late and both legs sit 40 mV
// above the nominal common mode, so the two crossings split around VDD / 2.
#include "render/demos/LevelDemos.h"

#include "render/JsonReport.h"
#include "render/demos/OverlayHost.h"
#include <plotvane/view/ChartFrame.h>

#include <cmath>

namespace plotvane
{
namespace
{
constexpr double kVdd = 1.2;
constexpr double kPeriod = 1.25e-9;
constexpr double kSkew = 20e-12;
constexpr double kCommonOffset = 0.04;
constexpr double kSwing = 0.8; // single-ended, low to high
constexpr double kVixLimitMV = 150.0;
constexpr double kVidMinMV = 600.0;

CChartPointDArray Leg(const char* net, const char* node, bool bComplement, double dDelay)
{
    const double tau = 40e-12, dt = 5e-12;
    const double lo = kVdd / 2 + kCommonOffset - kSwing / 2;
    const double hi = lo + kSwing;
    auto drive = [&](double t)
    {
        const double u = t - dDelay - 0.25 * kPeriod;
        const bool bHigh = u >= 0.0 && std::fmod(u, kPeriod) < kPeriod / 2;
        return (bHigh != bComplement) ? hi : lo;
    };
    CChartPointDArray a;
    double v = drive(0.0);
    const double k = 1.0 - std::exp(-dt / tau);
    for (int n = 0; n <= 1000; ++n)
    {
        const double t = n * dt;
        a.Add(new CChartPointD(t, v));
        v += (drive(t) - v) * k;
    }
    a.m_strNetName = net;
    a.m_strName = node;
    a.m_dPeriod = kPeriod;
    return a;
}

DiffPair Load(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    CChartPointDArray t = Leg("CK_T", "U1.K7", false, 0.0);
    CChartPointDArray c = Leg("CK_C", "U1.K8", true, kSkew);
    const int i = demo::AddDrawnSet(mgr, t, options.bLight ? 0x806000 : 0x60E0FF);
    const int j = demo::AddDrawnSet(mgr, c, options.bLight ? 0x800080 : 0xFFC040);
    mgr.SetAxisXName("Time (s)");
    mgr.SetAxisYName("Voltage (V)");
    demo::ShowFittedChart(mgr);
    return {mgr.m_InputData.GetChartPointDArray(i), mgr.m_InputData.GetChartPointDArray(j)};
}
} // namespace

void BuildVixDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    SetVixCheck(mgr, Load(mgr, options), kVdd, kVixLimitMV);
}

void BuildVidDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    SetVidCheck(mgr, Load(mgr, options), kVidMinMV);
}

void ReportDifferentialDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                            JsonWriter& json)
{
    const DiffPair p{mgr.m_InputData.GetChartPointDArray(0),
                     mgr.m_InputData.GetChartPointDArray(1)};
    double yA = 0.0, yB = 0.0;
    DiffCrossings(p, yA, yB);
    const ChartFrame f = mgr.m_ChartDlg.GetGLChartView()->GetChartFrame();

    json.Key("model");
    json.String("800 MHz clock, RC 40 ps, CK_C 20 ps late, common mode +40 mV");
    json.Key("api");
    json.BeginObject();
    json.Key("crossing_low_v");
    json.Number(yA);
    json.Key("crossing_high_v");
    json.Number(yB);
    json.Key("vref_v");
    json.Number(kVdd / 2);
    json.Key("vix_mv");
    json.Number(VixMV(p, kVdd / 2));
    json.Key("vix_limit_mv");
    json.Number(kVixLimitMV);
    json.Key("vid_mv");
    json.Number(VidMV(p));
    json.Key("vid_min_mv");
    json.Number(kVidMinMV);
    json.Key("margin_mv");
    json.Number(mgr.m_dMeasureMargin);
    json.EndObject();

    json.Key("overlay");
    json.BeginObject();
    if (mgr.m_nMeasureType == 6)
    {
        json.Key("margin_mv");
        json.Number(demo::TextNumber(texts, "VID Margin: "));
    }
    else
    {
        // The reference and the extreme crossing, read back from where the
        // overlay put "Vref" and the measured text (H / 20 below each line).
        const ChartText* ref = demo::FindText(texts, "Vref");
        const ChartText* mv = demo::FindText(texts, "Measured VIX: ");
        json.Key("vref_v");
        if (ref)
            json.Number((ref->ptLogical.y + f.Height() / 20) / f.ViewScaleY());
        else
            json.Null();
        json.Key("extreme_crossing_v");
        if (mv)
            json.Number((mv->ptLogical.y + f.Height() / 20) / f.ViewScaleY());
        else
            json.Null();
        json.Key("vix_mv");
        json.Number(demo::TextNumber(texts, "Measured VIX: "));
        json.Key("margin_mv");
        json.Number(demo::TextNumber(texts, "VIX Margin: "));
    }
    json.EndObject();
}

} // namespace plotvane
