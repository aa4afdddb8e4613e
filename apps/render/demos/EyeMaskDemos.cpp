// eye-mask: the DQ eye of the DDR write demo with a hexagonal receiver mask
// on its centre. bathtub: two lanes' bathtubs from Gaussian random jitter
// and dual-Dirac deterministic jitter, on a log BER axis, with their widths
// at 1e-12 and 1e-6 as the host measures them.
#include "render/demos/LevelDemos.h"

#include "render/Demo.h"
#include "render/JsonReport.h"
#include "render/demos/OverlayHost.h"
#include <plotvane/measure/EyeGenerator.h>

#include <cmath>

namespace plotvane
{
namespace
{
// The mask: tips 0.25 UI either side of the eye centre, flat top and
// bottom 0.15 UI either side (60 % of the tips' width), 150 mV above and
// below the reference. PlaceEyeMask puts the tips at 50 % of the width
// field and the flat top at half the 60 %.
constexpr double kFlatPercent = 60.0;
constexpr double kTopPercent = kFlatPercent * 0.5;
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

    // A host may store a mask itself, here on the eye's centre.
    const EyeCentre c = CentreOf(eye);
    PlaceEyeMask(mgr, {c.t, c.v, 0.25 * c.ui, kFlatPercent, kMaskHalfHeight});
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
    MeasureBathtubs(mgr, {kRates[0], kRates[1]});
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
