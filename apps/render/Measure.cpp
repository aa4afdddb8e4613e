#include "render/Measure.h"

#include "render/ChartInput.h"
#include "render/CsvReader.h"
#include "render/JsonReport.h"
#include "render/Render.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>

#include <cmath>

namespace plotvane
{
namespace
{

constexpr double kPsPerSecond = 1e12;

// A margin of CheckSetupHoldMargin in ps, 3 decimals; its -1.0 (nothing to
// measure on that side) and an untouched seed become NaN.
double MarginPS(double dSeconds)
{
    if (dSeconds == -1.0 || !std::isfinite(dSeconds))
        return kNotMeasured;
    return RoundTo(dSeconds * kPsPerSecond, 3);
}

int AddCsvEye(CPlotvane_Manager& mgr, const std::string& path, const char* role, EyeRole eyeRole,
              bool bLight)
{
    CsvTable table = ReadCsvFile(path);
    if (table.series.size() != 1)
        throw ChartInputError("'" + path + "': the " + role + " eye must be one x,y series");
    CsvSeries& series = table.series[0];
    if (series.x.size() < 2)
        throw ChartInputError("'" + path + "': the " + role + " eye needs at least two points");
    // The overlay pairs a DQ with the strobes whose names share the text
    // before the first '_'.
    series.name = "EYE_" + FileStem(path);
    return AddSeriesToChart(mgr, series, EyeCurveColor(eyeRole, bLight));
}

} // namespace

void ApplyEyeOptions(const RenderOptions& options, CChartPointDArray& dq, CChartPointDArray& dqs,
                     CChartPointDArray* pDQSBar)
{
    dq.SetEyeInformation(options.vref.value_or(-1.0), options.dSetupPs, options.dHoldPs,
                         options.dHoldLevel, options.dSetupLevel, 0);
    const int nRead = options.bRead || options.demo == "ddr-read" ? 1 : 0;
    dq.SetEyeReadCycleTimeInfo(nRead, 0.0, 0.0);
    dqs.m_nReadCycle = nRead;
    if (pDQSBar)
        pDQSBar->m_nReadCycle = nRead;
}

EyeMeasurement MeasureEyeSets(CChartPointDArray& dq, CChartPointDArray& dqs,
                              CChartPointDArray* pDQSBar, bool bRead)
{
    EyeMeasurement m;
    m.bRead = bRead;
    m.dPeriod = dq.m_dPeriod;
    if (bRead)
    {
        // The read measurement reports no reference; it takes the middle of
        // the strobe's levels, or of the data's range without them.
        double dVref = (dqs.m_dLevelLow + dqs.m_dLevelHigh) * 0.5;
        if (dqs.m_dLevelLow == 0.0 && dVref == 0.0)
            dVref = (dq.GetMaxY() + dq.GetMinY()) * 0.5;
        m.dVrefMV = RoundTo(dVref * 1000.0, 3);
        double dTQH = 0.0, dTDQSQ = 0.0;
        dq.CheckReadCycleTimeMargin(&dqs, pDQSBar, dTQH, dTDQSQ, 0.0, 0);
        m.dTQHPS = RoundTo(dTQH * kPsPerSecond, 3);
        m.dTDQSQPS = RoundTo(dTDQSQ * kPsPerSecond, 3);
        return m;
    }
    // Seeds that no path writes: an untouched output reads as not measured.
    double dSetup = kNotMeasured, dHold = kNotMeasured;
    dq.CheckSetupHoldMargin(&dqs, pDQSBar, dSetup, dHold, m.dSetupHeightMV, m.dHoldHeightMV,
                            m.dVrefMV, m.dWindowPS, m.dStrobeSpreadPS, 0.0, 0, 0);
    m.dSetupPS = MarginPS(dSetup);
    m.dHoldPS = MarginPS(dHold);
    m.dWindowPS = RoundTo(m.dWindowPS, 3);
    m.dStrobeSpreadPS = RoundTo(m.dStrobeSpreadPS, 3);
    return m;
}

EyeChartSets AddCsvEyes(CPlotvane_Manager& mgr, const RenderOptions& options)
{
    EyeChartSets sets;
    sets.nDQ = AddCsvEye(mgr, options.dqFile, "data", EyeRole::Data, options.bLight);
    sets.nDQS = AddCsvEye(mgr, options.dqsFile, "strobe", EyeRole::Strobe, options.bLight);
    if (!options.dqsBarFile.empty())
        sets.nDQSBar = AddCsvEye(mgr, options.dqsBarFile, "strobe complement", EyeRole::StrobeComplement,
                                  options.bLight);

    CPlotvane_InputData& data = mgr.m_InputData;
    const int indices[3] = {sets.nDQ, sets.nDQS, sets.nDQSBar};
    for (const int i : indices)
    {
        if (i < 0)
            continue;
        CChartPointDArray* set = data.GetChartPointDArray(i);
        set->m_strNetName = set->m_strName;
        set->m_nPinRole = 2; // receiver
        set->m_nDataType = i == sets.nDQ ? 2 : 0;
        set->m_dPeriod = options.dPeriod;
        if (i != sets.nDQ)
        {
            set->m_dLevelLow = set->GetMinY();
            set->m_dLevelHigh = set->GetMaxY();
        }
    }
    return sets;
}

std::string ChartPathBeside(const std::string& png)
{
    const std::size_t slash = png.find_last_of('/');
    const std::size_t dot = png.find_last_of('.');
    if (dot != std::string::npos && (slash == std::string::npos || dot > slash + 1))
        return png.substr(0, dot) + ".pvc";
    return png + ".pvc";
}

EyeMeasurement DrawAndMeasureEye(CPlotvane_Manager& mgr, const EyeChartSets& sets,
                                 const RenderOptions& options, EyeOutputs& outputs)
{
    // A unit in brackets takes the prefix of the axis range: "Time (ns)".
    ApplyAxisText(mgr, options, "Time (s)", "Voltage (V)");

    // The margin summary stands a fifteenth of the height below the top of
    // the view; the wide fit keeps it above the eye's upper rail.
    mgr.m_InputData.m_bFitMarginTight = 0;

    // The overlay measures as it draws and leaves its numbers in the DQ set.
    DrawChartToPng(mgr, options);
    outputs.png = options.output;

    CPlotvane_InputData& data = mgr.m_InputData;
    CChartPointDArray& dq = *data.GetChartPointDArray(sets.nDQ);
    CChartPointDArray& dqs = *data.GetChartPointDArray(sets.nDQS);
    CChartPointDArray* pBar = sets.nDQSBar >= 0 ? data.GetChartPointDArray(sets.nDQSBar) : nullptr;
    EyeMeasurement m = MeasureEyeSets(dq, dqs, pBar, dq.m_nReadCycle == 1);
    m.dOverlaySetupPS = dq.m_dSetupMargin;
    m.dOverlayHoldPS = dq.m_dHoldMargin;

    outputs.chart = options.saveChart.empty() ? ChartPathBeside(options.output) : options.saveChart;
    SaveChartFile(mgr, outputs.chart);
    outputs.report = options.reportFile;
    return m;
}

void WriteEyeMeasurement(JsonWriter& json, const EyeMeasurement& m, const RenderOptions& options)
{
    json.Key("cycle");
    json.String(m.bRead ? "read" : "write");
    json.Key("period_s");
    json.Number(m.dPeriod);
    json.Key("period_ps");
    json.Number(RoundTo(m.dPeriod * kPsPerSecond, 3));
    json.Key("eye_parameters");
    json.BeginObject();
    json.Key("vref_v");
    if (options.vref)
        json.Number(*options.vref);
    else
        json.Null(); // from the strobe's swing
    json.Key("setup_time_ps");
    json.Number(options.dSetupPs);
    json.Key("hold_time_ps");
    json.Number(options.dHoldPs);
    json.Key("setup_level_v");
    json.Number(options.dSetupLevel);
    json.Key("hold_level_v");
    json.Number(options.dHoldLevel);
    json.EndObject();

    // What the chart shows: whole ps, as stored in the DQ set.
    json.Key("overlay");
    json.BeginObject();
    json.Key(m.bRead ? "overlay_tqh_ps" : "overlay_setup_margin_ps");
    json.Number(m.dOverlaySetupPS);
    json.Key(m.bRead ? "overlay_tdqsq_ps" : "overlay_hold_margin_ps");
    json.Number(m.dOverlayHoldPS);
    if (m.bRead)
    {
        json.Key("overlay_note");
        json.String("the overlay labels the longer strobe-to-crossing distance tQH and the "
                    "shorter tDQSQ; CheckReadCycleTimeMargin names them the other way round");
    }
    json.EndObject();

    json.Key("measured");
    json.BeginObject();
    json.Key("vref_mv");
    json.Number(m.dVrefMV);
    if (m.bRead)
    {
        json.Key("tqh_ps");
        json.Number(m.dTQHPS);
        json.Key("tdqsq_ps");
        json.Number(m.dTDQSQPS);
    }
    else
    {
        json.Key("window_ps");
        json.Number(m.dWindowPS);
        json.Key("setup_margin_ps");
        json.Number(m.dSetupPS);
        json.Key("hold_margin_ps");
        json.Number(m.dHoldPS);
        json.Key("setup_band_mv");
        json.Number(m.dSetupHeightMV);
        json.Key("hold_band_mv");
        json.Number(m.dHoldHeightMV);
        json.Key("strobe_spread_ps");
        json.Number(m.dStrobeSpreadPS);
        json.Key("pass");
        if (std::isnan(m.dSetupPS) || std::isnan(m.dHoldPS))
            json.Null();
        else
            json.Bool(m.dSetupPS >= 0.0 && m.dHoldPS >= 0.0);
    }
    json.EndObject();
}

} // namespace plotvane
