#include "render/Demo.h"

#include "render/ChartInput.h"
#include "render/JsonReport.h"
#include <plotvane/document/Plotvane_Manager.h>

#include <algorithm>
#include <cmath>

namespace plotvane
{
namespace
{

constexpr double kPs = 1e-12;

int AddEyeSet(CPlotvane_Manager& mgr, const CChartPointDArray& source, EyeRole role, bool bLight)
{
    CPlotvane_InputData& data = mgr.m_InputData;
    const int index = data.AddNewDataSet();
    CChartPointDArray* set = data.GetChartPointDArray(index);
    *set = source; // points and attributes: names, roles, period, levels
    set->m_Color = CColor(EyeCurveColor(role, bLight));
    data.AddDrawDataSetIndex(index);
    return index;
}

void WriteEdgePair(JsonWriter& json, const char* key, const double dMin[2], const double dMax[2])
{
    json.Key(key);
    json.BeginArray();
    for (int k = 0; k < 2; ++k)
    {
        json.BeginObject();
        json.Key("earliest");
        json.Number(RoundTo(dMin[k] / kPs, 3));
        json.Key("latest");
        json.Number(RoundTo(dMax[k] / kPs, 3));
        json.EndObject();
    }
    json.EndArray();
}

} // namespace

DdrEyeParams DemoEyeParams(bool bRead)
{
    DdrEyeParams p;
    p.dPeriod = 1.25e-9;
    p.nSamplesPerPeriod = 256;
    p.nPeriods = 96;
    p.dLow = 0.0;
    p.dHigh = 1.2;
    p.dRiseTime = 150e-12;
    p.dDataJitterRms = 4e-12;
    p.dStrobeJitterRms = 2e-12;
    p.dIsi = 0.03;
    p.nPrbsOrder = 7;
    p.nSeed = 2024;
    p.bDifferential = 1;
    p.nReadCycle = bRead ? 1 : 0;
    p.dStrobeSkew = bRead ? 40e-12 : 0.0;
    return p;
}

EyeChartSets AddDemoEyes(CPlotvane_Manager& mgr, const DdrEye& eye, bool bLight)
{
    EyeChartSets sets;
    sets.nDQ = AddEyeSet(mgr, *eye.pDQ, EyeRole::Data, bLight);
    sets.nDQS = AddEyeSet(mgr, *eye.pDQS, EyeRole::Strobe, bLight);
    if (eye.pDQSBar)
        sets.nDQSBar = AddEyeSet(mgr, *eye.pDQSBar, EyeRole::StrobeComplement, bLight);
    return sets;
}

DemoHandMargins HandMargins(const DdrEye& eye, const RenderOptions& options, double dVref)
{
    DemoHandMargins hand;
    const double sMin = eye.dStrobeEdgeMin[0];
    const double sMax = eye.dStrobeEdgeMax[0];
    if (options.bRead || options.demo == "ddr-read")
    {
        // The eye crossings around the strobe edge and the next ones.
        const double leftMin = eye.dDataEdgeMin[0], leftMax = eye.dDataEdgeMax[0];
        const double rightMin = eye.dDataEdgeMin[1], rightMax = eye.dDataEdgeMax[1];
        const double a = std::fabs(leftMax - sMin);
        const double b = std::fabs(rightMin - sMax);
        double dTQH = 0.0, dTDQSQ = 0.0;
        if (b > a)
        {
            dTDQSQ = b;
            dTQH = sMin > leftMin ? std::fabs(leftMin - sMax) : a;
        }
        else
        {
            dTDQSQ = a;
            dTQH = sMin > rightMin ? b : std::fabs(rightMax - sMin);
        }
        hand.dSetupPS = RoundTo(dTQH / kPs, 3);
        hand.dHoldPS = RoundTo(dTDQSQ / kPs, 3);
        return hand;
    }
    // A rising edge leaves the band at its top, a falling one at its bottom;
    // the next edges enter it at the other side.
    const double bS = options.dSetupLevel, bH = options.dHoldLevel;
    const double exitOffset =
        std::max(eye.RisingEdgeOffset(dVref + bS), -eye.RisingEdgeOffset(dVref - bS));
    const double entryOffset =
        std::min(eye.RisingEdgeOffset(dVref - bH), -eye.RisingEdgeOffset(dVref + bH));
    const double setupEnd = sMin - options.dSetupPs * kPs;
    const double holdEnd = sMax + options.dHoldPs * kPs;
    hand.dSetupPS = RoundTo((setupEnd - (eye.dDataEdgeMax[0] + exitOffset)) / kPs, 3);
    hand.dHoldPS = RoundTo((eye.dDataEdgeMin[1] + entryOffset - holdEnd) / kPs, 3);
    return hand;
}

void WriteDemoGenerator(JsonWriter& json, const DdrEye& eye, const DemoHandMargins& hand,
                        bool bRead)
{
    json.Key("generator");
    json.BeginObject();
    json.Key("rise_time_ps");
    json.Number(RoundTo(eye.dRiseTime / kPs, 3));
    json.Key("unit_interval_ps");
    json.Number(RoundTo(eye.dUnitInterval / kPs, 3));
    json.Key("low_v");
    json.Number(eye.dLow);
    json.Key("high_v");
    json.Number(eye.dHigh);
    WriteEdgePair(json, "data_edges_ps", eye.dDataEdgeMin, eye.dDataEdgeMax);
    WriteEdgePair(json, "strobe_edges_ps", eye.dStrobeEdgeMin, eye.dStrobeEdgeMax);
    json.Key("strobe_edge_spread_ps");
    json.Number(RoundTo((eye.dStrobeEdgeMax[0] - eye.dStrobeEdgeMin[0]) / kPs, 3));
    json.Key(bRead ? "hand_tqh_ps" : "hand_setup_margin_ps");
    json.Number(hand.dSetupPS);
    json.Key(bRead ? "hand_tdqsq_ps" : "hand_hold_margin_ps");
    json.Number(hand.dHoldPS);
    json.EndObject();
}

} // namespace plotvane
