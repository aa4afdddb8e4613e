#include "viewer/ViewerMenus.h"

#include "viewer/DdrEye.h"
#include "viewer/MeasureDialogs.h"
#include "viewer/ViewerFrame.h"

#include "render/demos/OverlayHost.h"

#include <wx/menu.h>
#include <wx/msgdlg.h>

#include <algorithm>
#include <cmath>
#include <string>

namespace plotvane::viewer
{

namespace
{

void ShowEyeMargins(ViewerFrame& frame)
{
    // The overlay draws itself whenever the chart holds DQ/DQS sets, and
    // leaves its margins in the DQ set.
    frame.Redraw();
    wxString text;
    bool bRead = false;
    CPlotvane_InputData& data = frame.Manager().m_InputData;
    for (int i : data.m_DrawSet)
    {
        const CChartPointDArray* set = data.GetChartPointDArray(i);
        if (set == nullptr || (set->m_dSetupMargin == 0.0 && set->m_dHoldMargin == 0.0))
            continue;
        // A read cycle's overlay keeps tQH and tDQSQ in the same fields.
        bRead = bRead || set->m_nReadCycle == 1;
        text += wxString::Format(set->m_nReadCycle == 1 ? "%s: tQH %.0f ps, tDQSQ %.0f ps\n"
                                                        : "%s: setup %.0f ps, hold %.0f ps\n",
                                 wxString::FromUTF8(set->m_strName.GetString()),
                                 set->m_dSetupMargin, set->m_dHoldMargin);
    }
    if (bRead)
        text += "(As the overlay prints them: it names the longer strobe-to-crossing distance "
                "tQH and the shorter tDQSQ; DDR Eye from Sets and plotvane-render --measure "
                "report them the other way round.)";
    if (text.empty())
        text = "The chart holds no measured DQ/DQS sets.\nMeasure > DDR Eye from Sets "
               "makes them from a DQ and its strobe, or open a chart written by "
               "plotvane-render --demo ddr-write --save-chart.";
    if (frame.IsBatch())
        frame.Tell("DDR Eye Margins: " + text);
    else
        wxMessageBox(text, "DDR Eye Margins", wxOK | wxICON_INFORMATION, &frame);
}

// What an entry has to tell instead of drawing: in a box, or in batch mode
// among the frame's messages.
void Explain(ViewerFrame& frame, const wxString& title, const wxString& text)
{
    if (frame.IsBatch())
        frame.Tell(title + ": " + text);
    else
        wxMessageBox(text, title, wxOK | wxICON_INFORMATION, &frame);
}

// The entry's window title, its answers and its data: what each family's
// function below works with.
struct Ask
{
    ViewerFrame& frame;
    const wxString title;
    const DrawnSets sets;

    CPlotvane_Manager& Mgr() { return frame.Manager(); }
    CChartPointDArray& Set(int nChoice)
    {
        return *Mgr().m_InputData.GetChartPointDArray(sets.index[std::size_t(nChoice)]);
    }
    // The overlay of one family on its own, then drawn.
    template <class Apply> void Show(Apply apply)
    {
        ClearOverlays(Mgr());
        apply();
        frame.Redraw();
    }
    void Explain(const wxString& text) { viewer::Explain(frame, title, text); }
};

CString ToCString(const wxString& s)
{
    return CString(s.utf8_string());
}

void EyeMask(Ask& a, int)
{
    Extent e = ExtentOf(a.Set(0));
    for (std::size_t k = 1; k < a.sets.size(); ++k)
    {
        const Extent o = ExtentOf(a.Set(int(k)));
        e = {std::fmin(e.x0, o.x0), std::fmax(e.x1, o.x1), std::fmin(e.y0, o.y0),
             std::fmax(e.y1, o.y1)};
    }
    ParamDialog d(&a.frame, a.title, "A hexagon with its tips on the eye's centre line.");
    const int t = d.AddNumber("Centre time (s)", (e.x0 + e.x1) / 2);
    const int v = d.AddNumber("Centre level (V)", (e.y0 + e.y1) / 2);
    const int b = d.AddNumber("Tip half-width (s)", (e.x1 - e.x0) / 8);
    const int flat = d.AddNumber("Flat top (% of the tips' width)", 60.0);
    const int h = d.AddNumber("Half height (V)", (e.y1 - e.y0) / 8);
    if (!d.Ask())
        return;
    const EyeMaskShape shape{d.Number(t), d.Number(v), d.Number(b), d.Number(flat), d.Number(h)};
    if (!(shape.dTipHalfWidth > 0 && shape.dHalfHeight > 0 && shape.dFlatPercent >= 0 &&
          shape.dFlatPercent < 100))
        return a.Explain("The mask needs a width and a height above 0, and a flat top "
                         "narrower than its tips.");
    a.Show([&] { PlaceEyeMask(a.Mgr(), shape); });
}

void Bathtub(Ask& a, int)
{
    if (!a.Mgr().m_bUseMagnitude || !a.Mgr().m_nMagnitudeScale)
        return a.Explain("Bathtub widths are drawn on a logarithmic BER axis. Open a chart "
                         "of bathtub curves on one, such as plotvane-render --demo bathtub "
                         "--save-chart writes.");
    ParamDialog d(&a.frame, a.title, "The width of each curve at each bit error rate.");
    const int r = d.AddText("Bit error rates", "1e-12, 1e-6");
    if (!d.Ask())
        return;
    std::vector<std::string> rates;
    for (const std::vector<double>& g : ParseGroups(d.Text(r)))
        for (double ber : g)
            rates.push_back(ber > 0 && ber < 1 ? wxString::Format("%g", ber).utf8_string() : "");
    if (rates.empty() || std::find(rates.begin(), rates.end(), "") != rates.end())
        return a.Explain("The rates are numbers between 0 and 1, such as 1e-12, 1e-6.");
    int nFound = 0;
    a.Show([&] { nFound = MeasureBathtubs(a.Mgr(), rates); });
    if (nFound == 0)
        a.Explain("No curve of the chart reaches those rates.");
}

// nType: 0 overshoot, 2 undershoot, 1 the area above the level.
void Shoot(Ask& a, int nType)
{
    ParamDialog d(&a.frame, a.title, "The host's check of one waveform against a limit.");
    const int w = d.AddChoice("Waveform", a.sets.names, 0);
    const int l = d.AddNumber("Level (V)", SettledLevel(a.Set(0), nType != 2));
    const int m =
        nType == 1 ? d.AddNumber("Allowed area (V-ns)", 0.1) : d.AddNumber("Limit (mV)", 400.0);
    if (!d.Ask())
        return;
    const CChartPointDArray& set = a.Set(d.Choice(w));
    a.Show(
        [&]
        {
            if (nType == 1)
                SetOvershootAreaCheck(a.Mgr(), set, d.Number(l), d.Number(m));
            else
                SetShootCheck(a.Mgr(), set, nType, d.Number(l), d.Number(m));
        });
}

// nType: 5 VIX, 6 VID.
void Differential(Ask& a, int nType)
{
    ParamDialog d(&a.frame, a.title, "The two legs of a differential pair.");
    const int t = d.AddChoice("True leg", a.sets.names, 0);
    const int c = d.AddChoice("Complement leg", a.sets.names, 1);
    const Extent e = ExtentOf(a.Set(0));
    const int vdd = nType == 5 ? d.AddNumber("VDD (V)", e.y0 + e.y1) : -1;
    const int lim =
        nType == 5 ? d.AddNumber("VIX limit (mV)", 150.0) : d.AddNumber("Minimum VID (mV)", 600.0);
    if (!d.Ask())
        return;
    const DiffPair p{&a.Set(d.Choice(t)), &a.Set(d.Choice(c))};
    auto key = [](const CChartPointDArray* s)
    { return (s->m_strNetName + "/" + s->m_strName).MakeUpper(); };
    if (key(p.t) == key(p.c))
        return a.Explain("The legs are two data sets of different names (net and node): the "
                         "overlay finds them by name.");
    double yA = 0.0, yB = 0.0;
    if (nType == 5 && !DiffCrossings(p, yA, yB))
        return a.Explain("The legs do not cross in the middle 40 % of their swing.");
    a.Show(
        [&]
        {
            if (nType == 5)
                SetVixCheck(a.Mgr(), p, d.Number(vdd), d.Number(lim));
            else
                SetVidCheck(a.Mgr(), p, d.Number(lim));
        });
}

// Steps of (from, to, Ohm) with from below to, or a polyline of at least
// two (Hz, Ohm) points with Hz rising; false for anything else.
bool ReadLimit(const std::vector<std::vector<double>>& groups, bool bLine, TargetLimit& limit)
{
    for (const std::vector<double>& g : groups)
    {
        if (g.size() != (bLine ? 2u : 3u) || g.back() <= 0)
            return false;
        if (bLine && !limit.line.empty() && !(g[0] > limit.line.back().dHz))
            return false;
        if (!bLine && !(g[0] < g[1]))
            return false;
        if (bLine)
            limit.line.push_back({g[0], g[1]});
        else
            limit.steps.push_back({g[0], g[1], g[2]});
    }
    return bLine ? limit.line.size() >= 2 : !limit.steps.empty();
}

void TargetImpedance(Ask& a, int)
{
    ParamDialog d(&a.frame, a.title, "An upper limit for one impedance curve.");
    const int z = d.AddChoice("Curve", a.sets.names, 0);
    wxArrayString forms;
    forms.Add("Steps: from Hz, to Hz, Ohm");
    forms.Add("Polyline: Hz, Ohm");
    const int form = d.AddChoice("Limit form", forms, 0);
    const Extent e = ExtentOf(a.Set(0));
    const int pts =
        d.AddText("Limit (groups split by ;)", wxString::Format("%g %g %g", e.x0, e.x1, e.y1 / 2));
    if (!d.Ask())
        return;
    const CChartPointDArray& set = a.Set(d.Choice(z));
    if (!(set.GetMinX() > 0))
        return a.Explain("The curve is an impedance over frequency: X in Hz, above 0.");
    TargetLimit limit{set.m_strName.str(), a.sets.index[std::size_t(d.Choice(z))], {}, {}};
    if (!ReadLimit(ParseGroups(d.Text(pts)), d.Choice(form) == 1, limit))
        return a.Explain("Steps are \"from to Ohm\" with from below to; a polyline is at "
                         "least two \"Hz Ohm\" points with Hz rising; Ohm above 0.");
    a.Show([&] { SetTargetLimits(a.Mgr(), {limit}); });
}

void FlightTime(Ask& a, int)
{
    ParamDialog d(&a.frame, a.title, "From the driver's crossing to the receiver's.");
    const int drv = d.AddChoice("Driver", a.sets.names, 0);
    const int rcv = d.AddChoice("Receiver", a.sets.names, 1);
    const Extent e0 = ExtentOf(a.Set(0)), e1 = ExtentOf(a.Set(1));
    const int l1 = d.AddNumber("Driver level (V)", (e0.y0 + e0.y1) / 2);
    const int l2 = d.AddNumber("Receiver level (V)", (e1.y0 + e1.y1) / 2);
    if (!d.Ask())
        return;
    const CChartPointDArray& driver = a.Set(d.Choice(drv));
    const CChartPointDArray& receiver = a.Set(d.Choice(rcv));
    if (d.Number(l1) == 0.0)
        return a.Explain("A driver level of 0 V hides the flight time; choose another.");
    if (std::isnan(FirstRise(driver, d.Number(l1))) ||
        std::isnan(FirstRise(receiver, d.Number(l2))))
        return a.Explain("The driver and the receiver each rise through their level.");
    a.Show(
        [&]
        {
            CPlotvane_Manager& m = a.Mgr();
            m.m_strFlightNet1 = ToCString(a.sets.names[std::size_t(d.Choice(drv))]);
            m.m_strFlightNet2 = ToCString(a.sets.names[std::size_t(d.Choice(rcv))]);
            m.m_strMeasureNet =
                driver.m_strNetName.IsEmpty() ? m.m_strFlightNet1 : driver.m_strNetName;
            SetFlightTime(m, driver, receiver, d.Number(l1), d.Number(l2));
        });
}

void Crosstalk(Ask& a, int)
{
    // The overlay finds its victim by net, and tells the near end (pin role
    // 0) from the far end by the reference before "_" in the set's name.
    std::vector<int> victims;
    wxArrayString names;
    for (std::size_t k = 0; k < a.sets.size(); ++k)
        if (!a.Set(int(k)).m_strNetName.IsEmpty())
        {
            victims.push_back(int(k));
            names.Add(a.sets.names[k]);
        }
    if (victims.empty())
        return a.Explain("Crosstalk marks need a victim waveform with a net name and a pin "
                         "role (0 near end, else far end), such as plotvane-render --demo "
                         "crosstalk --save-chart writes; CSV data have no net names.");
    ParamDialog d(&a.frame, a.title, "The victim's largest excursion is marked.");
    const int v = d.AddChoice("Victim", names, 0);
    if (!d.Ask())
        return;
    const CChartPointDArray& set = a.Set(victims[std::size_t(d.Choice(v))]);
    const int nRef = set.m_strName.Find('_');
    if (set.m_nPinRole != 0 && nRef <= 0)
        return a.Explain("A far-end victim's name starts with its reference and \"_\", "
                         "as U2_VIC does.");
    const int hi = PeakIndex(set, false), lo = PeakIndex(set, true);
    const int index =
        hi < 0 || (lo >= 0 && std::fabs(set.GetPointY(lo)) > std::fabs(set.GetPointY(hi))) ? lo
                                                                                           : hi;
    a.Show(
        [&]
        {
            CPlotvane_Manager& m = a.Mgr();
            m.m_strNEXTNet = set.m_strNetName;
            if (set.m_nPinRole != 0)
                m.m_strFEXTNet = set.m_strName.Left(nRef);
            m.m_nCrosstalkPointIndex = index;
        });
}

void Tdr(Ask& a, int)
{
    ParamDialog d(&a.frame, a.title,
                  "Reference impedance where the curve passes a time, "
                  "and its peak.");
    const int z = d.AddChoice("Curve", a.sets.names, 0);
    const Extent e = ExtentOf(a.Set(0));
    const int t = d.AddNumber("Reference time (s)", e.x0 + (e.x1 - e.x0) / 4);
    if (!d.Ask())
        return;
    const CChartPointDArray& set = a.Set(d.Choice(z));
    const Extent s = ExtentOf(set);
    bool bDone = false;
    a.Show([&] { bDone = SetTdrMarks(a.Mgr(), set, d.Number(t), s.y0, s.y1); });
    if (!bDone)
        a.Explain(wxString::Format("The curve does not pass %g s.", d.Number(t)));
}

void Dfe(Ask& a, int)
{
    ParamDialog d(&a.frame, a.title, "The loss at Nyquist against the equaliser's budget.");
    const int z = d.AddChoice("Curve (dB)", a.sets.names, 0);
    const Extent e = ExtentOf(a.Set(0));
    const int f = d.AddNumber("Nyquist frequency (Hz)", (e.x0 + e.x1) / 2);
    const int b = d.AddNumber("DFE budget (dB)", -15.0);
    if (!d.Ask())
        return;
    const CChartPointDArray& set = a.Set(d.Choice(z));
    const Extent s = ExtentOf(set);
    bool bDone = false;
    a.Show([&] { bDone = SetDfeMark(a.Mgr(), set, d.Number(f), d.Number(b), s.y0, s.y1); });
    if (!bDone)
        a.Explain(wxString::Format("The curve does not reach %g Hz.", d.Number(f)));
}

// One menu entry: how many drawn sets it needs, whether its overlay is one
// that draws on a linear X axis only, and what to say when the chart falls
// short.
struct Entry
{
    const char* label;
    const char* help;
    std::size_t nSets;
    bool bLinearX;
    const char* holds;
    void (*run)(Ask&, int);
    int nKind;
};

const char* const kWave = "a waveform over time on a linear axis";
const char* const kPair = "two waveforms over time on a linear axis";
const Entry kEntries[] = {
    {"Eye &Mask...", "A hexagonal mask on the eye", 1, true,
     "an eye or a waveform over time on "
     "a linear axis",
     EyeMask, 0},
    {"&Bathtub...", "Bathtub widths at chosen bit error rates", 1, true,
     "bathtub curves over a linear time axis", Bathtub, 0},
    {"&Overshoot...", "Overshoot above a level against a limit", 1, true, kWave, Shoot, 0},
    {"&Undershoot...", "Undershoot below a level against a limit", 1, true, kWave, Shoot, 2},
    {"Overshoot &Area...", "The largest area above a level, in V-ns", 1, true, kWave, Shoot, 1},
    {"&VIX...", "Crossing level of a differential pair", 2, true, kPair, Differential, 5},
    {"V&ID...", "Differential swing of a pair", 2, true, kPair, Differential, 6},
    {"&Target Impedance...", "A target limit over an impedance curve", 1, false,
     "an impedance curve over frequency", TargetImpedance, 0},
    {"&Flight Time...", "From a driver's crossing to a receiver's", 2, true, kPair, FlightTime, 0},
    {"&Crosstalk...", "The NEXT or FEXT peak of a victim", 1, true, kWave, Crosstalk, 0},
    {"T&DR...", "Reference and peak impedance of a TDR curve", 1, true,
     "a TDR impedance curve over time on a linear axis", Tdr, 0},
    {"D&FE...", "Loss at Nyquist against the DFE budget", 1, true,
     "an insertion-loss curve in dB over frequency on a linear axis", Dfe, 0},
};

void Run(ViewerFrame& frame, const Entry& entry)
{
    wxString title = wxMenuItem::GetLabelText(entry.label);
    title.Replace("...", "");
    Ask a{frame, title, DrawnSets(frame.Manager())};
    CGLChartView* view = frame.Manager().m_ChartDlg.GetGLChartView();
    const bool bLogX = view != nullptr && view->GetChartFrame().IsLogX();
    if (a.sets.size() < entry.nSets || (entry.bLinearX && bLogX))
        return a.Explain(wxString("The chart should hold ") + entry.holds + ".");
    entry.run(a, entry.nKind);
}

} // namespace

void AddMeasureMenu(ViewerFrame& frame, wxMenuBar& bar)
{
    auto* measure = new wxMenu;
    wxMenuItem* eye =
        measure->Append(wxID_ANY, "&DDR Eye Margins", "Setup and hold margins of the DQ/DQS sets");
    frame.Bind(
        wxEVT_MENU, [&frame](wxCommandEvent&) { ShowEyeMargins(frame); }, eye->GetId());
    wxMenuItem* fromSets = measure->Append(wxID_ANY, "DDR Eye from &Sets...",
                                           "An eye of a DQ against its strobe, folded and measured");
    frame.Bind(
        wxEVT_MENU, [&frame](wxCommandEvent&) { AskDdrEye(frame); }, fromSets->GetId());
    measure->AppendSeparator();
    for (const Entry& entry : kEntries)
    {
        wxMenuItem* item = measure->Append(wxID_ANY, entry.label, entry.help);
        frame.Bind(
            wxEVT_MENU, [&frame, &entry](wxCommandEvent&) { Run(frame, entry); }, item->GetId());
    }
    measure->AppendSeparator();
    wxMenuItem* none = measure->Append(wxID_ANY, "&None", "Turn the measurement overlay off");
    frame.Bind(
        wxEVT_MENU,
        [&frame](wxCommandEvent&)
        {
            ClearOverlays(frame.Manager());
            frame.Redraw();
        },
        none->GetId());
    bar.Append(measure, "&Measure");
}

} // namespace plotvane::viewer
