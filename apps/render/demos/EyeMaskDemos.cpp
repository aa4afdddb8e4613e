// eye-mask: the DQ eye of the DDR write demo with a hexagonal receiver mask
// on its centre. bathtub: two lanes' bathtubs from Gaussian random jitter
// and dual-Dirac deterministic jitter, on a log BER axis, with their widths
// at 1e-12 and 1e-6 as the host measures them.
#include "render/demos/LevelDemos.h"

#include "render/Demo.h"
#include "render/JsonReport.h"
#include <plotvane/measure/EyeGenerator.h>

#include <cmath>

namespace plotvane
{
namespace
{
// The mask: tips 0.25 UI either side of the eye centre, flat top and
// bottom 0.15 UI either side, 150 mV above and below the reference. The
// width field counts the percentages in hundredths of half of it, halved
// again, so the host gives 800 times the half width at the tips for 50 %.
constexpr double kTopPercent = 30.0;
constexpr double kBottomPercent = 50.0;
constexpr double kMaskHalfHeight = 0.15;

struct EyeCentre
{
    double t, v, ui;
};

EyeCentre CentreOf(const DdrEye& eye)
{
    return {(eye.dDataEdge[0] + eye.dDataEdge[1]) * 0.5, eye.dMid, eye.dUnitInterval};
}

// The bathtub of one lane: the data edge on either side of the sampling
// point lands at ±DJ/2 with equal weight and spreads with RJ; an error needs
// a transition (density rho) that crosses the sampling point.
double Ber(double t, double ui, double rj, double dj, double rho)
{
    auto q = [](double x) { return 0.5 * std::erfc(x / std::sqrt(2.0)); };
    auto late = [&](double u) { return 0.5 * q((u - dj / 2) / rj) + 0.5 * q((u + dj / 2) / rj); };
    return rho * (late(t) + late(ui - t));
}

struct Lane
{
    const char* name;
    double rj, dj;
    COLORREF dark, light;
};
constexpr double kUi = 1e-9; // 1 Gb/s
constexpr double kRho = 0.5;
constexpr Lane kLanes[2] = {{"LANE0", 12e-12, 150e-12, 0x60E0FF, 0x806000},
                            {"LANE1", 16e-12, 220e-12, 0xFFC040, 0x800080}};
const char* const kRates[2] = {"1e-12", "1e-6"};

// A simulator's bathtub: 2.5 ps steps, with the points below its floor of
// 1e-16 left out, so that the curve has a gap where it was not resolved.
CChartPointDArray Bathtub(const Lane& lane)
{
    CChartPointDArray a;
    for (int n = 0; n <= 400; ++n)
    {
        const double t = n * 2.5e-12;
        const double ber = Ber(t, kUi, lane.rj, lane.dj, kRho);
        if (ber >= 1e-16)
            a.Add(new CChartPointD(t, ber));
    }
    a.m_strName = lane.name;
    return a;
}

// The analytic opening of the dual-Dirac model at a BER: UI less DJ less
// 2 Q^-1(BER / rho) RJ, for a sanity check of the measured widths.
double ModelOpening(const Lane& lane, double ber)
{
    double lo = 0.0, hi = 40.0;
    for (int k = 0; k < 200; ++k)
    {
        const double mid = (lo + hi) / 2;
        (0.5 * std::erfc(mid / std::sqrt(2.0)) > ber / kRho ? lo : hi) = mid;
    }
    return kUi - lane.dj - 2 * lo * lane.rj;
}
} // namespace

void BuildEyeMaskDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    const DdrEye eye = GenerateDdrEye(DemoEyeParams(false));
    CChartPointDArray dq = *eye.pDQ;
    demo::AddDrawnSet(mgr, dq, options.bLight ? 0x806000 : 0x60E0FF);
    mgr.SetAxisXName("Time (s)");
    mgr.SetAxisYName("Voltage (V)");
    demo::ShowFittedChart(mgr);

    const EyeCentre c = CentreOf(eye);
    mgr.m_dEyeMaskTopPercent = kTopPercent;
    mgr.m_dEyeMaskBottomPercent = kBottomPercent;
    mgr.m_dEyeMaskWidth = 0.25 * c.ui * 800.0;
    mgr.m_dEyeMaskHeight = 2 * kMaskHalfHeight;
    // The click that fixes a mask comes from the input layer; a host may
    // also store one itself, here on the eye's centre.
    const double gx = CPlotvane_InputData::m_dViewScaleX;
    const double gy = CPlotvane_InputData::m_dViewScaleY;
    const double b = 0.25 * c.ui * gx, hh = kMaskHalfHeight * gy;
    mgr.m_pEyeMaskRectArray->DeleteAll();
    mgr.m_pEyeMaskRectArray->Add(
        new CRectD(c.t * gx - b, c.v * gy - hh, c.t * gx + b, c.v * gy + hh));
    mgr.m_bEyeMaskVisible = 1;
}

void ReportEyeMaskDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& /*texts*/,
                       JsonWriter& json)
{
    const DdrEye eye = GenerateDdrEye(DemoEyeParams(false));
    const EyeCentre c = CentreOf(eye);
    const CChartPointDArray& dq = *mgr.m_InputData.GetChartPointDArray(0);
    const double gx = CPlotvane_InputData::m_dViewScaleX;
    const double gy = CPlotvane_InputData::m_dViewScaleY;
    const double ps = 1e12;

    // Whether the eye enters the mask's flat-topped core, and where it is
    // open at the centre: the waveform API's searches.
    const double a = kTopPercent / 100 * 0.25 * c.ui * 800 * 0.5 * 0.5 / 100;
    double x1 = 0.0, x2 = 0.0;
    const int bEnters = dq.GetRectAreaCrossMinXValue(c.t - a, c.v + kMaskHalfHeight, c.t + a,
                                                     c.v - kMaskHalfHeight, c.t - a, c.t + a, 1e9,
                                                     100.0, x1, x2);
    json.Key("api");
    json.BeginObject();
    json.Key("centre_ps");
    json.Number(RoundTo(c.t * ps, 3));
    json.Key("centre_v");
    json.Number(RoundTo(c.v, 4));
    json.Key("tip_half_width_ps");
    json.Number(RoundTo(0.25 * c.ui * ps, 3));
    json.Key("flat_half_width_ps");
    json.Number(RoundTo(a * ps, 3));
    json.Key("half_height_mv");
    json.Number(RoundTo(kMaskHalfHeight * 1000, 3));
    json.Key("eye_enters_mask_core");
    json.Bool(bEnters != 0);
    json.EndObject();

    // The stored mask, back in data units.
    json.Key("overlay");
    json.BeginObject();
    const CRectD* rc = mgr.m_pEyeMaskRectArray->GetSize() ? mgr.m_pEyeMaskRectArray->GetAt(0)
                                                          : nullptr;
    if (rc != nullptr)
    {
        json.Key("centre_ps");
        json.Number(RoundTo(rc->CenterPoint().x / gx * ps, 3));
        json.Key("centre_v");
        json.Number(RoundTo(rc->CenterPoint().y / gy, 4));
        json.Key("tip_half_width_ps");
        json.Number(RoundTo(rc->GetWidth() / 2 / gx * ps, 3));
        json.Key("half_height_mv");
        json.Number(RoundTo(rc->GetHeight() / 2 / gy * 1000, 3));
    }
    json.Key("visible");
    json.Bool(mgr.m_bEyeMaskVisible != 0);
    json.EndObject();
}

void BuildBathtubDemo(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    mgr.m_bUseMagnitude = 1;
    mgr.m_nMagnitudeScale = 1;
    for (const Lane& lane : kLanes)
    {
        CChartPointDArray tub = Bathtub(lane);
        demo::AddDrawnSet(mgr, tub, options.bLight ? lane.light : lane.dark);
    }
    mgr.SetAxisXName("Sampling point (s)");
    mgr.SetAxisYName("BER");
    // The host measures each lane at each rate and hands the crossings over.
    for (int k = 0; k < 2; ++k)
    {
        CChartPointDArray* tub = mgr.m_InputData.GetChartPointDArray(k);
        for (const char* rate : kRates)
        {
            double x1 = 0.0, x2 = 0.0;
            if (mgr.GetBathtubMeasuredPoints(tub, std::atof(rate), x1, x2))
                mgr.m_mapBathtub[rate][COLORREF(tub->m_Color)] = CPointD(x1, x2);
        }
    }
    mgr.m_bBathtub = 1;
}

void ReportBathtubDemo(CPlotvane_Manager& mgr, const std::vector<ChartText>& texts,
                       JsonWriter& json)
{
    json.Key("ui_ps");
    json.Number(kUi * 1e12);
    json.Key("x_unit");
    json.Number(mgr.GetXUnit());
    // Texts come rate by rate in key order, lanes by colour within a rate.
    std::vector<ChartText> widths = TextsOf(texts, ChartTextLayer::Overlay);
    size_t next = 0;
    json.Key("rates");
    json.BeginArray();
    for (const auto& rate : mgr.m_mapBathtub)
    {
        for (const auto& curve : rate.second)
        {
            int k = 0;
            while (k < 1 && COLORREF(mgr.m_InputData.GetChartPointDArray(k)->m_Color) != curve.first)
                ++k;
            CChartPointDArray* tub = mgr.m_InputData.GetChartPointDArray(k);
            const double w = curve.second.y - curve.second.x;
            json.BeginObject();
            json.Key("ber");
            json.String(rate.first.str());
            json.Key("lane");
            json.String(tub->m_strName.str());
            json.Key("api_width_ps");
            json.Number(RoundTo(w * 1e12, 3));
            json.Key("api_width_axis");
            json.Number(RoundTo(w * mgr.GetXUnit(), 4));
            json.Key("overlay_width_axis");
            if (next < widths.size())
                json.Number(std::atof(widths[next++].strText));
            else
                json.Null();
            json.Key("model_opening_ps");
            json.Number(RoundTo(ModelOpening(kLanes[k], std::atof(rate.first)) * 1e12, 3));
            json.Key("floor_ber");
            json.Number(mgr.GetBathtubMinValue(tub));
            json.EndObject();
        }
    }
    json.EndArray();
}

} // namespace plotvane
