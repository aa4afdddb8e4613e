#include "render/Measure.h"

#include "render/Axes.h"
#include "render/ChartInput.h"
#include "render/Fold.h"
#include "render/JsonReport.h"
#include "render/Render.h"
#include "render/SignalInput.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/measure/SetupHoldMargins.h>
#include <plotvane/view/GLChartView.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace plotvane
{
namespace
{

constexpr double kPsPerSecond = 1e12;

// A margin of the setup/hold check in ps, 3 decimals; its -1.0 (nothing to
// measure on that side) and an untouched seed become NaN.
double MarginPS(double dSeconds)
{
    if (dSeconds == -1.0 || !std::isfinite(dSeconds))
        return kNotMeasured;
    return RoundTo(dSeconds * kPsPerSecond, 3);
}

// A read-cycle distance in ps. Without eye crossings the operation answers
// differences of its huge seeds, and nothing it measures can exceed the
// period.
double ReadDistancePS(double dSeconds, double dPeriod)
{
    if (!std::isfinite(dSeconds) || dSeconds < 0.0 || dSeconds > dPeriod)
        return kNotMeasured;
    return RoundTo(dSeconds * kPsPerSecond, 3);
}

bool CrossesLevel(const CChartPointDArray& d, double dLevel)
{
    double lo = 0.0, hi = 0.0;
    return d.GetCrossMinMaxXValue(dLevel, d.GetMinX(), d.GetMaxX(), 1e9, 100.0, lo, hi) != 0;
}

// The set's name: the signal's, or the file's stem for a whole file. The
// overlay pairs a DQ with the strobes whose names share the text before the
// first '_'.
std::string EyeSetName(const std::string& arg)
{
    const SignalRef ref = ParseSignalRef(arg);
    return "EYE_" + (ref.signal.empty() ? FileStem(ref.path) : ref.signal);
}

int AddEyeSet(CPlotvane_Manager& mgr, const std::string& name, const Signal& s,
              const RenderOptions& options, EyeRole role)
{
    const COLORREF color = EyeCurveColor(role, options.bLight);
    if (!options.bFold)
        return AddSeriesToChart(mgr, name, s.xs.data(), s.ys.data(), s.xs.size(), color);
    CPlotvane_InputData& data = mgr.m_InputData;
    const int index = data.AddNewDataSet();
    CChartPointDArray& set = *data.GetChartPointDArray(index);
    FoldIntoEye(s.xs, s.ys, options.dPeriod, options.dSkip, set);
    set.m_strName = CString(name);
    set.m_Color = CColor(color);
    data.AddDrawDataSetIndex(index);
    return index;
}

// The strobes must be in the data's time: a strobe in ns beside data in
// seconds would never be found.
void CheckStrobeTime(const Signal& dq, const Signal& strobe, const std::string& name)
{
    const auto span = [](const Signal& s)
    {
        const auto [lo, hi] = std::minmax_element(s.xs.begin(), s.xs.end());
        return *hi - *lo;
    };
    const double r = span(strobe) / span(dq);
    if (r > 100.0 || r < 0.01)
        throw ChartInputError("'" + name + "': the strobe's time spans " +
                              std::to_string(span(strobe)) + ", the data's " +
                              std::to_string(span(dq)) +
                              ": both must be in seconds, over the same time");
}

// The number after prefix in the overlay's texts, as it printed it; NaN
// when it printed none.
double OverlayNumber(const std::vector<ChartText>& texts, const char* prefix)
{
    for (const ChartText& t : texts)
    {
        if (t.layer == ChartTextLayer::Overlay && t.strText.Find(prefix) == 0)
            return std::atof(t.strText.str().c_str() + std::strlen(prefix));
    }
    return kNotMeasured;
}

std::string CsvNumber(double v)
{
    if (!std::isfinite(v))
        return std::string();
    char buf[64];
    const auto [end, ec] = std::to_chars(buf, buf + sizeof buf, v);
    return std::string(buf, ec == std::errc() ? end : buf);
}

std::string CsvText(const std::string& s)
{
    if (s.find_first_of(",\"\r\n") == std::string::npos)
        return s;
    std::string q = "\"";
    for (char c : s)
        q += c == '"' ? std::string("\"\"") : std::string(1, c);
    return q + "\"";
}

const char* const kCsvHeader =
    "dq,dqs,dqs_bar,cycle,period_ps,vref_mv,setup_time_ps,hold_time_ps,setup_level_v,"
    "hold_level_v,setup_margin_ps,hold_margin_ps,window_ps,strobe_spread_ps,tqh_ps,tdqsq_ps,"
    "overlay_setup_ps,overlay_hold_ps,pass";

} // namespace

std::optional<bool> EyeMeasurement::Pass() const
{
    if (bRead)
        return std::nullopt;
    if (dSetupPS < 0.0 || dHoldPS < 0.0)
        return false;
    if (std::isnan(dSetupPS) || std::isnan(dHoldPS))
        return std::nullopt;
    return true;
}

void ApplyEyeOptions(const RenderOptions& options, CChartPointDArray& dq, CChartPointDArray& dqs,
                     CChartPointDArray* pDQSBar)
{
    // -1.0 is the set's word for "from the strobe's swing"; a reference of
    // exactly -1 V moves by the least step there is to stay a reference.
    double dVref = -1.0;
    if (options.vref)
        dVref = *options.vref == -1.0 ? std::nextafter(-1.0, 0.0) : *options.vref;
    dq.SetEyeInformation(dVref, options.dSetupPs, options.dHoldPs, options.dHoldLevel,
                         options.dSetupLevel, 0);
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
    // The reference of both measurements: the middle of the strobe's
    // levels, or of the data's range without them; a write takes the given
    // one first.
    double dVref = (dqs.m_dLevelLow + dqs.m_dLevelHigh) * 0.5;
    if (dqs.m_dLevelLow == 0.0 && dVref == 0.0)
        dVref = (dq.GetMaxY() + dq.GetMinY()) * 0.5;
    if (!bRead && dq.m_dEyeVref != -1.0)
        dVref = dq.m_dEyeVref;
    m.dVrefMV = RoundTo(dVref * 1000.0, 3);
    // Data that never cross the reference have no eye: a line stuck inside
    // the band would read as a violation of the whole window.
    if (!CrossesLevel(dq, dVref))
        return m;
    if (bRead)
    {
        double dTQH = 0.0, dTDQSQ = 0.0;
        dq.CheckReadCycleTimeMargin(&dqs, pDQSBar, dTQH, dTDQSQ, 0.0, 0);
        m.dTQHPS = ReadDistancePS(dTQH, m.dPeriod);
        m.dTDQSQPS = ReadDistancePS(dTDQSQ, m.dPeriod);
        return m;
    }
    // Seeds that no path writes: an untouched output reads as not measured.
    double dSetup = kNotMeasured, dHold = kNotMeasured;
    SetupHoldMarginKeepingViolations(dq, &dqs, pDQSBar, dSetup, dHold, m.dSetupHeightMV,
                                     m.dHoldHeightMV, m.dVrefMV, m.dWindowPS, m.dStrobeSpreadPS,
                                     0.0, 0, 0);
    m.dSetupPS = MarginPS(dSetup);
    m.dHoldPS = MarginPS(dHold);
    m.dVrefMV = RoundTo(m.dVrefMV, 3);
    m.dWindowPS = RoundTo(m.dWindowPS, 3);
    m.dStrobeSpreadPS = RoundTo(m.dStrobeSpreadPS, 3);
    return m;
}

EyeChartSets AddMeasuredEyes(CPlotvane_Manager& mgr, const RenderOptions& options,
                             const WarnFn& warn)
{
    SignalReader reader;
    EyeSignals eye{reader.ReadOne(options.dqFile, "data eye"),
                   reader.ReadOne(options.dqsFile, "strobe eye"),
                   std::nullopt,
                   {EyeSetName(options.dqFile), EyeSetName(options.dqsFile), ""},
                   {options.dqFile, options.dqsFile, options.dqsBarFile}};
    if (!options.dqsBarFile.empty())
    {
        eye.dqsBar = reader.ReadOne(options.dqsBarFile, "strobe complement");
        eye.names.dqsBar = EyeSetName(options.dqsBarFile);
    }
    return AddEyeSignals(mgr, options, eye, warn);
}

EyeChartSets AddEyeSignals(CPlotvane_Manager& mgr, const RenderOptions& options,
                           const EyeSignals& eye, const WarnFn& warn)
{
    CheckEyeTiming(eye.dq.xs, options, warn);
    CheckStrobeTime(eye.dq, eye.dqs, eye.sources.dqs);
    if (eye.dqsBar)
        CheckStrobeTime(eye.dq, *eye.dqsBar, eye.sources.dqsBar);

    // Without --skip the folding starts where the data do, for all three.
    RenderOptions folding = options;
    folding.dSkip = std::max(options.dSkip, eye.dq.xs.front());
    EyeChartSets sets;
    sets.nDQ = AddEyeSet(mgr, eye.names.dq, eye.dq, folding, EyeRole::Data);
    sets.nDQS = AddEyeSet(mgr, eye.names.dqs, eye.dqs, folding, EyeRole::Strobe);
    if (eye.dqsBar)
        sets.nDQSBar =
            AddEyeSet(mgr, eye.names.dqsBar, *eye.dqsBar, folding, EyeRole::StrobeComplement);

    CPlotvane_InputData& data = mgr.m_InputData;
    const CChartPointDArray& dq = *data.GetChartPointDArray(sets.nDQ);
    CheckEyeLevels(dq.GetMinY(), dq.GetMaxY(), options, warn);
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

std::vector<double> EyeReferenceLevels(CPlotvane_Manager& mgr)
{
    std::vector<double> levels;
    CGLChartView* view = mgr.m_ChartDlg.GetGLChartView();
    if (view == nullptr)
        return levels;
    // Finding a strobe moves the view's strobe pointers, which the next
    // frame reads before it finds them again: they are put back.
    CChartPointDArray* const pKept1 = view->m_pDQSArray1;
    CChartPointDArray* const pKept2 = view->m_pDQSArray2;
    CPlotvane_InputData& data = mgr.m_InputData;
    for (int i : data.m_DrawSet)
    {
        const CChartPointDArray* dq = data.GetChartPointDArray(i);
        if (dq == nullptr || dq->m_nDataType <= 1 || dq->m_nPinRole != 2)
            continue;
        view->SetDQSChartPointArray(dq->m_strName);
        const CChartPointDArray* s1 = view->m_pDQSArray1;
        if (s1 == nullptr)
            continue;
        const double mid = (dq->GetMaxY() + dq->GetMinY()) * 0.5;
        double v = (s1->m_dLevelLow + s1->m_dLevelHigh) * 0.5;
        if (mgr.m_nJitterOption != 0 || (s1->m_dLevelLow == 0.0 && v == 0.0))
            v = mid;
        else if (dq->m_dEyeVref != -1.0)
            v = dq->m_dEyeVref;
        levels.push_back(v);
    }
    view->m_pDQSArray1 = pKept1;
    view->m_pDQSArray2 = pKept2;
    return levels;
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
    // The overlay prints whole ps only with the time axis in nanoseconds;
    // the eyes are in seconds and volts whatever the names say.
    AxisSource x{"Time", "s"}, y{"Voltage", "V"};
    if (options.xName)
        x.name = AxisSourceOf(*options.xName).name;
    if (options.yName)
        y.name = AxisSourceOf(*options.yName).name;
    ApplyAxes(mgr, x, y, -9);

    // The margin summary stands a fifteenth of the height below the top of
    // the view; the wide fit keeps it above the eye's upper rail.
    mgr.m_InputData.m_bFitMarginTight = 0;

    // The overlay measures as it draws; what it printed is what the chart
    // shows.
    std::vector<ChartText> texts;
    CGLChartView& view = *mgr.m_ChartDlg.GetGLChartView();
    view.SetTextHook([&texts](const ChartText& t) { texts.push_back(t); });
    DrawChartToPng(mgr, options);
    view.SetTextHook({});
    outputs.png = options.output;

    CPlotvane_InputData& data = mgr.m_InputData;
    CChartPointDArray& dq = *data.GetChartPointDArray(sets.nDQ);
    CChartPointDArray& dqs = *data.GetChartPointDArray(sets.nDQS);
    CChartPointDArray* pBar = sets.nDQSBar >= 0 ? data.GetChartPointDArray(sets.nDQSBar) : nullptr;
    EyeMeasurement m = MeasureEyeSets(dq, dqs, pBar, dq.m_nReadCycle == 1);
    // The overlay prints numbers for an eye without edges too; they stand
    // for nothing there.
    if (!std::isnan(m.dSetupPS) || !std::isnan(m.dHoldPS) || !std::isnan(m.dTQHPS))
    {
        m.dOverlaySetupPS = OverlayNumber(texts, m.bRead ? "tQH : " : "Setup Margin: ");
        m.dOverlayHoldPS = OverlayNumber(texts, m.bRead ? "tDQSQ : " : "Hold Margin: ");
    }

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

    // What the chart shows: whole ps as the overlay printed them, null when
    // it printed nothing.
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
        if (const std::optional<bool> pass = m.Pass())
            json.Bool(*pass);
        else
            json.Null();
    }
    json.EndObject();
}

void AppendEyeCsvRow(const std::string& path, const EyeNames& names, const EyeMeasurement& m,
                     const RenderOptions& options)
{
    std::error_code ec;
    const bool bNew = !std::filesystem::exists(path, ec) || std::filesystem::file_size(path, ec) == 0;
    if (!bNew)
    {
        std::ifstream in(path);
        std::string first;
        std::getline(in, first);
        if (!first.empty() && first.back() == '\r')
            first.pop_back();
        if (first != kCsvHeader)
            throw std::runtime_error("cannot add to '" + path +
                                     "': its first line is not plotvane-render's eye header");
    }
    const std::optional<bool> pass = m.Pass();
    const std::string cells[] = {
        CsvText(names.dq),
        CsvText(names.dqs),
        CsvText(names.dqsBar),
        m.bRead ? "read" : "write",
        CsvNumber(RoundTo(m.dPeriod * kPsPerSecond, 3)),
        CsvNumber(m.dVrefMV),
        CsvNumber(options.dSetupPs),
        CsvNumber(options.dHoldPs),
        CsvNumber(options.dSetupLevel),
        CsvNumber(options.dHoldLevel),
        CsvNumber(m.dSetupPS),
        CsvNumber(m.dHoldPS),
        CsvNumber(m.dWindowPS),
        CsvNumber(m.dStrobeSpreadPS),
        CsvNumber(m.dTQHPS),
        CsvNumber(m.dTDQSQPS),
        CsvNumber(m.dOverlaySetupPS),
        CsvNumber(m.dOverlayHoldPS),
        pass ? (*pass ? "true" : "false") : "",
    };
    std::ostringstream row;
    if (bNew)
        row << kCsvHeader << '\n';
    for (std::size_t i = 0; i < std::size(cells); ++i)
        row << (i ? "," : "") << cells[i];
    row << '\n';
    std::ofstream out(path, std::ios::binary | std::ios::app);
    out << row.str();
    if (!out.flush())
        throw std::runtime_error("cannot write report '" + path + "'");
}

} // namespace plotvane
