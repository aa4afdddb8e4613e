// plotvane-render --measure on eyes with unit mistakes, violated and
// unmeasurable eyes, CSV reports, and eyes folded from an ngspice transient;
// impedance charts from Touchstone and AC raw files.
#include "apps/program_run.h"
#include "render/ChartInput.h"
#include <plotvane/document/Plotvane_Manager.h>
#include <plotvane/document/TargetImp.h>
#include <plotvane/measure/ChartPointDArray.h>
#include <plotvane/measure/EyeGenerator.h>
#include <plotvane/measure/SetupHoldMargins.h>

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

namespace
{
using plotvane_test::JsonNumber;
using plotvane_test::JsonString;
using plotvane_test::Result;
using plotvane_test::Slurp;

class MeasureProgram : public plotvane_test::RenderProgramTest
{
protected:
    void SetUp() override
    {
        RenderProgramTest::SetUp();
        plotvane::DdrEyeParams p;
        p.nPeriods = 16;
        m_eye = plotvane::GenerateDdrEye(p);
        WriteEye("dq.csv", *m_eye.pDQ);
        WriteEye("dqs.csv", *m_eye.pDQS);
        WriteEye("dqsb.csv", *m_eye.pDQSBar);
    }
    // An eye as time,volts, its times scaled by dx and its levels by dy
    // less dShift; with dUnfold, each run after a seam laid that much later
    // than the one before, as a waveform in time.
    void WriteEye(const std::string& name, const CChartPointDArray& a, double dx = 1.0,
                  double dy = 1.0, double dShift = 0.0, double dUnfold = 0.0)
    {
        std::vector<double> x, y;
        int k = 0;
        for (INT_PTR i = 0; i < a.GetSize(); ++i)
        {
            k += i > 0 && a.GetPointX(i) < a.GetPointX(i - 1);
            x.push_back(a.GetPointX(i) * dx + k * dUnfold);
            y.push_back(a.GetPointY(i) * dy - dShift);
        }
        WriteCsv(name, x, y);
    }
    // ngspice in batch mode answers 1 when a deck has no .print, which
    // these write their results without: the file tells.
    void RunNgspice(const std::string& deck, const std::string& raw)
    {
        std::system(("cd '" + m_dir + "' && ngspice -b " + deck + " > ngspice.log 2>&1").c_str());
        ASSERT_FALSE(Slurp(Path(raw)).empty()) << Slurp(Path("ngspice.log"));
    }
    Result Measure(const std::string& args, const char* dq = "dq.csv")
    {
        return Run(std::string("--measure --dq ") + dq +
                   " --dqs dqs.csv --dqs-bar dqsb.csv --period 1.25n " + args);
    }
    plotvane::DdrEye m_eye;
};

double At(const plotvane::CsvSeries& w, double t)
{
    std::size_t i = 1;
    while (i + 1 < w.x.size() && w.x[i] < t)
        ++i;
    const double f = (t - w.x[i - 1]) / (w.x[i] - w.x[i - 1]);
    return w.y[i - 1] + (w.y[i] - w.y[i - 1]) * f;
}

// Folding by hand: the whole periods from skip on, the first and the last
// left out; each run from 0 to the period, its ends interpolated.
void HandFold(const plotvane::CsvSeries& w, double P, double skip, std::vector<double>& x,
              std::vector<double>& y)
{
    const int n = int(std::floor((w.x.back() - skip) / P));
    for (int k = 1; k + 1 < n; ++k)
    {
        const double t0 = skip + k * P;
        x.push_back(0.0);
        y.push_back(At(w, t0));
        double last = 0.0;
        for (std::size_t i = 0; i < w.x.size(); ++i)
        {
            const double dt = w.x[i] - t0;
            if (dt > last && dt < P)
            {
                x.push_back(dt);
                y.push_back(w.y[i]);
                last = dt;
            }
        }
        x.push_back(P);
        y.push_back(At(w, t0 + P));
    }
}

// A DDR write: a PRBS-7 data bit stream of 625 ps bits through an RC, and
// a differential strobe whose edges stand in the middle of the bits.
std::string DdrNetlist()
{
    const double ui = 625e-12, tr = 100e-12;
    std::ostringstream pwl;
    unsigned lfsr = 0x5A;
    int prev = 0;
    pwl << "0 0";
    for (int k = 1; k < 48; ++k)
    {
        const int bit = int(((lfsr >> 6) ^ (lfsr >> 5)) & 1);
        lfsr = ((lfsr << 1) | unsigned(bit)) & 0x7F;
        if (bit != prev)
        {
            const double t = (k - 0.25) * ui;
            pwl << " " << t - tr / 2 << " " << 1.2 * prev << " " << t + tr / 2 << " " << 1.2 * bit;
        }
        prev = bit;
    }
    std::ostringstream n;
    n << "* ddr write\n"
      << "Vdq dq_src 0 PWL(" << pwl.str() << ")\n"
      << "Rdq dq_src dq_rx 50\nCdq dq_rx 0 0.5p\n"
      << "Vs s_src 0 PULSE(0 1.2 7.3125e-10 1e-10 1e-10 5.25e-10 1.25e-09)\n"
      << "Vsn sn_src 0 PULSE(1.2 0 7.3125e-10 1e-10 1e-10 5.25e-10 1.25e-09)\n"
      << "Rs s_src dqs_rx 50\nCs dqs_rx 0 0.5p\nRsn sn_src dqsn_rx 50\nCsn dqsn_rx 0 0.5p\n"
      << ".tran 1p 30n\n.control\nrun\n"
      << "write sim.raw v(dq_rx) v(dqs_rx) v(dqsn_rx)\n"
      << "wrdata sim.txt v(dq_rx) v(dqs_rx) v(dqsn_rx)\n"
      << ".endc\n.end\n";
    return n.str();
}

} // namespace

TEST_F(MeasureProgram, UnitMistakesStopWithTheirMessage)
{
    WriteEye("dq_ns.csv", *m_eye.pDQ, 1e9);
    WriteEye("dq_mv.csv", *m_eye.pDQ, 1.0, 1000.0);
    WriteEye("dq_time.csv", *m_eye.pDQ, 1.0, 1.0, 0.0, 1.25e-9);
    struct Case
    {
        std::string args;
        const char* dq;
        const char* message;
    };
    const Case cases[] = {
        {"", "dq_ns.csv", "the time looks like it is in ns; eye times must be in seconds"},
        {"--period 1.25", "dq.csv", "--period 1.25 reads as 1.25 s, far longer than the data's "
                                    "1.25 ns: for nanoseconds write 1.25n or 1.25ns"},
        {"", "dq_mv.csv", "the data look like millivolts; eye levels must be in volts"},
        {"--setup-level 100", "dq.csv", "given in mV? write 100m or 100mV"},
        {"--vref 600", "dq.csv", "--vref 600 reads as 600 V, outside the data eye's"},
        {"", "dq_time.csv", "the data eye is a waveform in time: it spans 20 ns, 16 periods of "
                            "1.25 ns; give --fold (and --skip TIME for the start-up)"},
        {"--fold", "dq.csv", "leave out --fold for a folded eye"},
        {"--setup-ps 800 --hold-ps 800", "dq.csv",
         "--setup-ps and --hold-ps ask for 1.6 ns, more than the period of 1.25 ns"},
        {"", "none.csv", "none.csv"},
    };
    for (const Case& c : cases)
    {
        // --period given twice: the last one counts.
        const Result r = Measure(c.args, c.dq);
        EXPECT_EQ(r.status, 1) << c.args << " " << c.dq;
        EXPECT_NE(r.err.find(c.message), std::string::npos) << r.err;
        EXPECT_TRUE(r.out.empty());
    }
}

TEST_F(MeasureProgram, MarginsAreTheApisOnTheSameEye)
{
    const Result r = Measure("--vref 0.6 --setup-ps 120 --hold-ps 80");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_TRUE(Written("plotvane-eye.png"));
    EXPECT_EQ(JsonString(r.out, "mode"), "measure");
    m_eye.pDQ->SetEyeInformation(0.6, 120, 80, 0.1, 0.1, 0);
    double dSetup = 0, dHold = 0, dSH = 0, dHH = 0, dVref = 0, dWindow = 0, dSpread = 0;
    m_eye.pDQ->CheckSetupHoldMargin(m_eye.pDQS.get(), m_eye.pDQSBar.get(), dSetup, dHold, dSH,
                                    dHH, dVref, dWindow, dSpread, 0.0, 0, 0);
    EXPECT_NEAR(JsonNumber(r.out, "setup_margin_ps"), dSetup * 1e12, 1e-3);
    EXPECT_NEAR(JsonNumber(r.out, "hold_margin_ps"), dHold * 1e12, 1e-3);
    EXPECT_NEAR(JsonNumber(r.out, "overlay_hold_margin_ps"), dHold * 1e12, 1.0);
}

TEST_F(MeasureProgram, VerdictsAreTrueAndUnmeasuredIsNull)
{
    // 320 ps either side of the strobe does not fit a 625 ps bit.
    Result r = Measure("--setup-ps 320 --hold-ps 320 --report-csv rows.csv");
    ASSERT_EQ(r.status, 0) << r.err;
    const double dSetup = JsonNumber(r.out, "setup_margin_ps");
    const double dHold = JsonNumber(r.out, "hold_margin_ps");
    EXPECT_LT(dSetup, 0.0);
    EXPECT_LT(dHold, 0.0);
    EXPECT_EQ(JsonString(r.out, "pass"), "false");
    // The chart shows the same violation, truncated to whole ps.
    EXPECT_NEAR(JsonNumber(r.out, "overlay_setup_margin_ps"), std::trunc(dSetup), 1.0);
    EXPECT_NEAR(JsonNumber(r.out, "overlay_hold_margin_ps"), std::trunc(dHold), 1.0);

    // A flat data line and a reference above the signal measure nothing:
    // null, with a warning, never 0.
    WriteCsv("flat.csv", {0.0, 0.5e-9, 1.25e-9}, {0.6, 0.6, 0.6});
    for (const auto& [args, dq, warning] :
         {std::tuple<std::string, const char*, const char*>{"--report-csv rows.csv", "flat.csv",
                                                            "it has no edge to measure"},
          {"--vref 1.5 --report-csv rows.csv", "dq.csv", "nothing crosses it"}})
    {
        r = Measure(args, dq);
        ASSERT_EQ(r.status, 0) << r.err;
        EXPECT_NE(r.err.find(warning), std::string::npos) << r.err;
        for (const char* key : {"setup_margin_ps", "hold_margin_ps", "window_ps", "pass",
                                "overlay_setup_margin_ps", "overlay_hold_margin_ps"})
            EXPECT_EQ(JsonString(r.out, key), "null") << key << " with " << args;
    }

    // Signals centred on 0 V take a negative reference.
    WriteEye("dq0.csv", *m_eye.pDQ, 1.0, 1.0, 0.6);
    WriteEye("dqs.csv", *m_eye.pDQS, 1.0, 1.0, 0.6);
    WriteEye("dqsb.csv", *m_eye.pDQSBar, 1.0, 1.0, 0.6);
    r = Measure("--vref=-50mV --report-csv rows.csv", "dq0.csv");
    ASSERT_EQ(r.status, 0) << r.err;
    EXPECT_DOUBLE_EQ(JsonNumber(r.out, "vref_mv"), -50.0);
    EXPECT_EQ(JsonString(r.out, "pass"), "true");

    // One row per measured eye under one header; empty cells for null.
    std::vector<std::string> lines;
    std::istringstream csv(Slurp(Path("rows.csv")));
    for (std::string line; std::getline(csv, line);)
        lines.push_back(line);
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[0].rfind("dq,dqs,dqs_bar,cycle,period_ps,", 0), 0u);
    EXPECT_EQ(lines[1].rfind("EYE_dq,EYE_dqs,EYE_dqsb,write,1250,600,320,320,0.1,0.1,-", 0), 0u)
        << lines[1];
    EXPECT_EQ(lines[1].substr(lines[1].size() - 6), ",false");
    EXPECT_EQ(lines[2].substr(lines[2].size() - 5), ",,,,,");
    EXPECT_EQ(lines[4].substr(lines[4].size() - 5), ",true");
    // A file of another layout is left alone.
    std::ofstream(Path("other.csv")) << "a,b\n1,2\n";
    r = Measure("--report-csv other.csv");
    EXPECT_EQ(r.status, 1);
    EXPECT_EQ(Slurp(Path("other.csv")), "a,b\n1,2\n");
}

// A violated side keeps its depth: the same number that the check reports
// when the reference comes from the data, where the two references agree.
TEST(SetupHoldMargins, ViolationKeepsItsDepth)
{
    plotvane::DdrEyeParams p;
    p.nPeriods = 8;
    const plotvane::DdrEye eye = plotvane::GenerateDdrEye(p);
    eye.pDQ->SetEyeInformation(0.6, 320, 320, 0.1, 0.1, 0);
    double a[7] = {}, b[7] = {}, c[7] = {};
    eye.pDQ->CheckSetupHoldMargin(eye.pDQS.get(), eye.pDQSBar.get(), a[0], a[1], a[2], a[3], a[4],
                                  a[5], a[6], 0.0, 0, 0);
    eye.pDQ->CheckSetupHoldMargin(eye.pDQS.get(), eye.pDQSBar.get(), b[0], b[1], b[2], b[3], b[4],
                                  b[5], b[6], 0.0, 1, 0);
    plotvane::SetupHoldMarginKeepingViolations(*eye.pDQ, eye.pDQS.get(), eye.pDQSBar.get(), c[0],
                                               c[1], c[2], c[3], c[4], c[5], c[6], 0.0, 0, 0);
    EXPECT_EQ(a[0], -1.0);
    EXPECT_EQ(a[1], -1.0);
    EXPECT_LT(b[0], 0.0);
    EXPECT_LT(b[1], 0.0);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(c[i], b[i]) << i;
}

// A DDR write eye from an ngspice transient, folded by the program, agrees
// with the same eye folded by hand.
TEST_F(MeasureProgram, NgspiceTransientFoldsAsByHand)
{
    std::ofstream(Path("ddr.cir")) << DdrNetlist();
    RunNgspice("ddr.cir", "sim.raw");

    const Result folded = Run("--measure --fold --skip 2.5n --period 1.25n "
                              "--dq 'sim.raw:v(dq_rx)' --dqs 'sim.raw:v(dqs_rx)' "
                              "--dqs-bar 'sim.raw:v(dqsn_rx)' -o raw-eye.png");
    ASSERT_EQ(folded.status, 0) << folded.err;
    EXPECT_EQ(JsonString(folded.out, "dq"), "EYE_v(dq_rx)");

    // wrdata's text: time and value of each signal in turn.
    plotvane::CsvReadOptions pairs;
    pairs.bColumnPairs = true;
    const plotvane::CsvTable text = plotvane::ReadCsvFile(Path("sim.txt"), pairs);
    ASSERT_EQ(text.series.size(), 3u);
    ASSERT_GT(text.series[0].x.size(), 1000u);
    const char* names[3] = {"hand_dq.csv", "hand_dqs.csv", "hand_dqsn.csv"};
    for (std::size_t c = 0; c < 3; ++c)
    {
        std::vector<double> x, y;
        HandFold(text.series[c], 1.25e-9, 2.5e-9, x, y);
        WriteCsv(names[c], x, y);
    }
    const Result hand = Run("--measure --period 1.25n --dq hand_dq.csv --dqs hand_dqs.csv "
                            "--dqs-bar hand_dqsn.csv -o hand-eye.png");
    ASSERT_EQ(hand.status, 0) << hand.err;
    for (const char* key : {"setup_margin_ps", "hold_margin_ps", "window_ps"})
    {
        const double a = JsonNumber(folded.out, key);
        ASSERT_FALSE(std::isnan(a)) << key << "\n" << folded.out;
        EXPECT_NEAR(a, JsonNumber(hand.out, key), 0.01) << key;
    }
    // The bits are 625 ps with 100 ps edges and an RC of 25 ps: about 200 ps
    // on each side beyond the 100 ps required.
    EXPECT_NEAR(JsonNumber(folded.out, "setup_margin_ps"), 200.0, 15.0);
    EXPECT_NEAR(JsonNumber(folded.out, "hold_margin_ps"), 200.0, 15.0);
    EXPECT_EQ(JsonString(folded.out, "pass"), "true");

    // A signal the file lacks is named with those it has.
    const Result unknown = Run("--measure --fold --period 1.25n --dq 'sim.raw:v(dq)' "
                               "--dqs 'sim.raw:v(dqs_rx)'");
    EXPECT_NE(unknown.err.find("has no signal 'v(dq)'; it has: v(dq_rx), v(dqs_rx), v(dqsn_rx)"),
              std::string::npos)
        << unknown.err;
}

// Touchstone and AC raw files become |Z| over Hz on log axes, with the
// limits of --target-z.
TEST_F(MeasureProgram, ImpedanceChartsFromTouchstoneAndAcRaw)
{
    // A one-port: 5 mOhm in series with 1 nH, as S11 against 50 Ohm.
    std::ofstream s1p(Path("board.s1p"));
    s1p << "! a shorted plane pair\n# MHz S RI R 50\n";
    std::vector<double> zs;
    for (int k = 0; k <= 40; ++k)
    {
        const double f = std::pow(10.0, k / 10.0); // 1 MHz to 10 GHz, in MHz
        const std::complex<double> z(5e-3, 2 * M_PI * f * 1e6 * 1e-9);
        const std::complex<double> s = (z - 50.0) / (z + 50.0);
        char line[96];
        std::snprintf(line, sizeof line, "%.10g %.17g %.17g\n", f, s.real(), s.imag());
        s1p << line;
        zs.push_back(std::abs(z));
    }
    s1p.close();
    std::ofstream(Path("target.csv")) << "hz,ohm\n1e6,0.05\n1e8,0.05\n1e10,5\n";
    Result r = Run("-o z.png --save-chart z.pvc --target-z target.csv board.s1p");
    ASSERT_EQ(r.status, 0) << r.err;

    CPlotvane_Manager mgr;
    plotvane::LoadChartFile(mgr, Path("z.pvc"));
    EXPECT_EQ(mgr.m_nFrequencyScale, 1);
    EXPECT_EQ(mgr.GetAxisXName(), CString("Frequency (Hz)"));
    EXPECT_EQ(mgr.GetAxisYName(), CString("|Z| (Ohm)"));
    const CChartPointDArray& set = *mgr.m_InputData.GetChartPointDArray(0);
    ASSERT_EQ(set.GetSize(), INT_PTR(zs.size()));
    EXPECT_DOUBLE_EQ(set.GetPointX(0), 1e6);
    for (std::size_t i = 0; i < zs.size(); ++i)
        EXPECT_NEAR(set.GetPointY(INT_PTR(i)), zs[i], zs[i] * 1e-6);

    // A PDN's AC sweep with a 1 A source: |V(vdd)| is its |Z|.
    std::ofstream(Path("ac.cir")) << "* pdn\nI1 0 vdd AC 1\nR1 vdd n1 5m\nL1 n1 0 1n\n"
                                     ".ac dec 10 1meg 10g\n.control\nrun\nwrite ac.raw v(vdd)\n"
                                     ".endc\n.end\n";
    RunNgspice("ac.cir", "ac.raw");
    r = Run("-o ac.png --save-chart ac.pvc 'ac.raw:v(vdd)'");
    ASSERT_EQ(r.status, 0) << r.err;
    CPlotvane_Manager ac;
    plotvane::LoadChartFile(ac, Path("ac.pvc"));
    EXPECT_EQ(ac.m_nFrequencyScale, 1);
    EXPECT_EQ(ac.GetAxisYName(), CString("|Z| (Ohm)"));
    const CChartPointDArray& v = *ac.m_InputData.GetChartPointDArray(0);
    ASSERT_EQ(v.GetSize(), 41);
    EXPECT_NEAR(v.GetPointY(0), zs[0], zs[0] * 1e-3);
    EXPECT_NEAR(v.GetPointY(40), zs[40], zs[40] * 1e-3);
}
