#include "viewer/DdrEye.h"

#include "viewer/MeasureDialogs.h"
#include "viewer/ViewerFrame.h"

#include "render/Axes.h"
#include "render/Legend.h"
#include "render/Measure.h"
#include "render/demos/OverlayHost.h"

#include <wx/msgdlg.h>

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <vector>

namespace plotvane::viewer
{

namespace
{

const char* const kTitle = "DDR Eye from Sets";

bool HasStrobeName(const wxString& name)
{
    return name.Upper().Contains("DQS");
}

// DQS#, DQS_N, DQSB, DQS0_BAR, DDR5's DQS_c: what follows "DQS" (past a
// lane number and a separator) marks the complement.
bool HasComplementName(const wxString& name)
{
    const wxString upper = name.Upper();
    const int at = upper.Find("DQS");
    if (at == wxNOT_FOUND)
        return false;
    std::size_t k = std::size_t(at) + 3;
    while (k < upper.size() && (wxIsdigit(upper[k]) || upper[k] == '_' || upper[k] == '-'))
        ++k;
    const wxString rest = upper.Mid(k);
    return rest.StartsWith("#") || rest.StartsWith("B") || rest.StartsWith("N") ||
           rest.StartsWith("C");
}

// The first name that fits, else fallback.
template <class Fits> int FirstName(const wxArrayString& names, Fits fits, int fallback)
{
    for (std::size_t i = 0; i < names.size(); ++i)
        if (fits(names[i]))
            return int(i);
    return fallback;
}

Signal SignalOf(const CChartPointDArray& set)
{
    Signal s;
    s.name = set.m_strName.str();
    s.xs.reserve(std::size_t(set.GetSize()));
    s.ys.reserve(std::size_t(set.GetSize()));
    for (INT_PTR i = 0; i < set.GetSize(); ++i)
    {
        s.xs.push_back(set.GetPointX(i));
        s.ys.push_back(set.GetPointY(i));
    }
    return s;
}

// "EYE<n>": a prefix that no set of the chart starts with yet, so that the
// overlay, which looks for strobes among all sets, pairs the new eye with
// its own strobes and never with those of an eye made before.
std::string FreshEyePrefix(CPlotvane_InputData& data)
{
    for (int n = 1;; ++n)
    {
        const std::string prefix = "EYE" + std::to_string(n) + "_";
        bool bTaken = false;
        for (int i = 0; i < int(data.GetDataSetSize()) && !bTaken; ++i)
            bTaken = data.GetChartPointDArray(i)->m_strName.str().rfind(prefix, 0) == 0;
        if (!bTaken)
            return prefix;
    }
}

// The eye checks speak of plotvane-render's options; here they are fields.
std::string InDialogWords(std::string text)
{
    static const std::pair<const char*, const char*> kWords[] = {
        {"--setup-level", "Setup level"}, {"--hold-level", "Hold level"},
        {"--setup-ps", "Setup time"},     {"--hold-ps", "Hold time"},
        {"--period", "Period"},           {"--fold", "\"fold them\""},
        {"--skip", "Skip"},               {"--vref", "Reference"}};
    for (const auto& [flag, field] : kWords)
    {
        for (std::size_t at = text.find(flag); at != std::string::npos;
             at = text.find(flag, at + std::string(field).size()))
            text.replace(at, std::string(flag).size(), field);
    }
    return text;
}

wxString Ps(double v)
{
    return std::isnan(v) ? wxString("not measured") : wxString::Format("%.3f ps", v);
}

wxString Result(const EyeMeasurement& m, const EyeNames& names)
{
    wxString text = wxString::FromUTF8(names.dq + " against " + names.dqs +
                                       (names.dqsBar.empty() ? "" : "/" + names.dqsBar)) +
                    wxString::Format(", period %.3f ps, reference %.1f mV:\n", m.dPeriod * 1e12,
                                     m.dVrefMV);
    if (m.bRead)
        return text + "tQH " + Ps(m.dTQHPS) + ", tDQSQ " + Ps(m.dTDQSQPS) + ".";
    text += "setup margin " + Ps(m.dSetupPS) + ", hold margin " + Ps(m.dHoldPS) + ": ";
    const std::optional<bool> pass = m.Pass();
    return text + (!pass ? "no verdict" : *pass ? "PASS" : "FAIL") + ".";
}

// The dialog's answers.
struct EyeAnswers
{
    int nDQ, nDQS, nDQSBar; // choices; nDQSBar 0 for none
    RenderOptions options;
};

// The eye sets in the chart in place of the drawn ones, which stay in the
// chart, undrawn, and are saved with it.
EyeChartSets ShowEye(ViewerFrame& frame, const EyeSignals& eye, const RenderOptions& options)
{
    const auto quiet = [](const std::string&) {};
    {
        // Checked whole first, so that a refusal leaves the chart as it was.
        CPlotvane_Manager probe;
        AddEyeSignals(probe, options, eye, quiet);
    }
    CPlotvane_Manager& mgr = frame.Manager();
    ClearOverlays(mgr);
    mgr.m_nFrequencyScale = 0;
    mgr.m_bUseMagnitude = 0;
    mgr.m_nMagnitudeScale = 0;
    CPlotvane_InputData& data = mgr.m_InputData;
    data.RemoveAllDrawDataSetIndex();
    const EyeChartSets sets = AddEyeSignals(mgr, options, eye,
                                            [&frame](const std::string& text)
                                            {
                                                frame.Tell(wxString(kTitle) + ": " +
                                                           wxString::FromUTF8(InDialogWords(text)));
                                            });
    ApplyEyeOptions(options, *data.GetChartPointDArray(sets.nDQ),
                    *data.GetChartPointDArray(sets.nDQS),
                    sets.nDQSBar >= 0 ? data.GetChartPointDArray(sets.nDQSBar) : nullptr);
    // The overlay prints whole ps only with the time axis in nanoseconds,
    // and its summary needs the wide fit to stay above the upper rail.
    ApplyAxes(mgr, {"Time", "s"}, {"Voltage", "V"}, -9);
    data.m_bFitMarginTight = 0;
    frame.ClearMarks();
    mgr.SetChartDrawFit();
    KeepLastXValueWhole(mgr, mgr.GetDefaultFontSize());
    AddLegend(mgr, mgr.GetDefaultFontSize(), true);
    return sets;
}

void MeasureAndTell(ViewerFrame& frame, const EyeChartSets& sets, const EyeNames& names)
{
    CPlotvane_InputData& data = frame.Manager().m_InputData;
    CChartPointDArray& dq = *data.GetChartPointDArray(sets.nDQ);
    CChartPointDArray* pBar = sets.nDQSBar >= 0 ? data.GetChartPointDArray(sets.nDQSBar) : nullptr;
    const EyeMeasurement m =
        MeasureEyeSets(dq, *data.GetChartPointDArray(sets.nDQS), pBar, dq.m_nReadCycle == 1);
    const wxString text = Result(m, names);
    if (frame.IsBatch())
        frame.Tell(wxString(kTitle) + ": " + text);
    else
        wxMessageBox(text, kTitle, wxOK | wxICON_INFORMATION, &frame);
}

} // namespace

bool IsFoldedEye(const CChartPointDArray& set)
{
    for (INT_PTR i = 1; i < set.GetSize(); ++i)
        if (set.GetPointX(i) < set.GetPointX(i - 1))
            return true;
    return false;
}

double StrobePeriod(const CChartPointDArray& strobe)
{
    const double mid = (strobe.GetMinY() + strobe.GetMaxY()) / 2;
    std::vector<double> rises;
    for (INT_PTR i = 1; i < strobe.GetSize(); ++i)
    {
        const double y0 = strobe.GetPointY(i - 1), y1 = strobe.GetPointY(i);
        if (y0 < mid && y1 >= mid)
        {
            const double x0 = strobe.GetPointX(i - 1), x1 = strobe.GetPointX(i);
            rises.push_back(x0 + (x1 - x0) * (mid - y0) / (y1 - y0));
        }
    }
    if (rises.size() < 2)
        return 0.0;
    std::vector<double> gaps;
    for (std::size_t k = 1; k < rises.size(); ++k)
        gaps.push_back(rises[k] - rises[k - 1]);
    std::nth_element(gaps.begin(), gaps.begin() + std::ptrdiff_t(gaps.size() / 2), gaps.end());
    return gaps[gaps.size() / 2];
}

void AskDdrEye(ViewerFrame& frame)
{
    const DrawnSets sets(frame.Manager());
    if (sets.size() < 2)
        return frame.Tell(wxString(kTitle) +
                          ": the chart should hold a DQ and its strobe (DQS), as waveforms in "
                          "time or as eyes.");
    CPlotvane_InputData& data = frame.Manager().m_InputData;
    const auto set = [&](int choice) -> CChartPointDArray&
    { return *data.GetChartPointDArray(sets.index[std::size_t(choice)]); };

    const int dqGuess = FirstName(
        sets.names, [](const wxString& n) { return n.Upper().Contains("DQ") && !HasStrobeName(n); },
        0);
    const int dqsGuess = FirstName(
        sets.names, [](const wxString& n) { return HasStrobeName(n) && !HasComplementName(n); },
        dqGuess == 0 ? 1 : 0);
    wxArrayString bars = sets.names;
    bars.Insert("(none: single-ended)", 0);
    const int barGuess =
        FirstName(sets.names, [](const wxString& n) { return HasComplementName(n); }, -1) + 1;
    const bool bFolded = IsFoldedEye(set(dqGuess));
    const double periodGuess = bFolded ? set(dqGuess).GetMaxX() - set(dqGuess).GetMinX()
                                       : StrobePeriod(set(dqsGuess));

    ParamDialog d(&frame, kTitle,
                  "A DQ against its strobe, measured as plotvane-render --measure does.\n"
                  "The eye takes the chart's place; the sets stay in it, undrawn.");
    const int dq = d.AddChoice("DQ", sets.names, dqGuess);
    const int dqs = d.AddChoice("DQS", sets.names, dqsGuess);
    const int bar = d.AddChoice("DQS#", bars, barGuess);
    wxArrayString kinds;
    kinds.Add("waveforms in time: fold them");
    kinds.Add("eyes, folded already");
    const int kind = d.AddChoice("The sets are", kinds, bFolded ? 1 : 0);
    const int period = d.AddNumber("Period (s)", periodGuess);
    const int skip = d.AddNumber("Skip (s)", 0.0);
    wxArrayString cycles;
    cycles.Add("write: setup and hold");
    cycles.Add("read: tDQSQ and tQH");
    const int cycle = d.AddChoice("Cycle", cycles, 0);
    const RenderOptions defaults;
    const int setupPs = d.AddNumber("Setup time (ps)", defaults.dSetupPs);
    const int holdPs = d.AddNumber("Hold time (ps)", defaults.dHoldPs);
    const int setupLevel = d.AddNumber("Setup level (V)", defaults.dSetupLevel);
    const int holdLevel = d.AddNumber("Hold level (V)", defaults.dHoldLevel);
    const int vref = d.AddText("Reference (V)", "from the strobe");
    if (!d.Ask())
        return;

    const auto refuse = [&frame](const wxString& text)
    {
        if (frame.IsBatch())
            frame.Tell(wxString(kTitle) + ": " + text);
        else
            wxMessageBox(text, kTitle, wxOK | wxICON_WARNING, &frame);
    };
    const int nDQ = d.Choice(dq), nDQS = d.Choice(dqs), nBar = d.Choice(bar) - 1;
    if (nDQ == nDQS || nBar == nDQ || nBar == nDQS)
        return refuse("DQ, DQS and DQS# are three different sets.");
    RenderOptions options;
    options.bLight = frame.IsLight();
    options.bFold = d.Choice(kind) == 0;
    options.dPeriod = d.Number(period);
    options.dSkip = d.Number(skip);
    options.bRead = d.Choice(cycle) == 1;
    options.dSetupPs = d.Number(setupPs);
    options.dHoldPs = d.Number(holdPs);
    options.dSetupLevel = d.Number(setupLevel);
    options.dHoldLevel = d.Number(holdLevel);
    if (!(options.dPeriod > 0))
        return refuse("The period is a time above 0, in seconds: 1.25e-9 for 1.25 ns.");
    if (options.dSetupPs < 0 || options.dHoldPs < 0 || options.dSetupLevel < 0 ||
        options.dHoldLevel < 0)
        return refuse("Setup and hold times and levels are 0 or more.");
    const wxString vrefText = d.Text(vref).Strip(wxString::both);
    double v = 0.0;
    if (vrefText.ToCDouble(&v) && std::isfinite(v))
        options.vref = v;
    else if (vrefText != "from the strobe" && !vrefText.empty())
        return refuse("The reference is a level in volts, or \"from the strobe\".");

    const std::string prefix = FreshEyePrefix(data);
    EyeSignals eye{SignalOf(set(nDQ)), SignalOf(set(nDQS)), std::nullopt, {}, {}};
    eye.sources = {eye.dq.name, eye.dqs.name, ""};
    eye.names = {prefix + eye.dq.name, prefix + eye.dqs.name, ""};
    if (nBar >= 0)
    {
        eye.dqsBar = SignalOf(set(nBar));
        eye.sources.dqsBar = eye.dqsBar->name;
        eye.names.dqsBar = prefix + eye.dqsBar->name;
    }
    EyeChartSets made;
    try
    {
        made = ShowEye(frame, eye, options);
    }
    catch (const std::exception& e)
    {
        return refuse(wxString::FromUTF8(InDialogWords(e.what())));
    }
    frame.Redraw();
    frame.ChartReplaced();
    MeasureAndTell(frame, made, eye.sources);
}

} // namespace plotvane::viewer
