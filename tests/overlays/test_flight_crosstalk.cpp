// Flight time, NEXT/FEXT points, TDR marks and the DFE frequency mark on
// real 800 x 600 frames: their texts caught by the text hook, their lines
// found by colour where the numbers put them, and the DFE zoom read back
// from the view area.
#include "level_overlay_fixture.h"

namespace
{
constexpr double ns = 1e-9;
constexpr COLORREF kRed = 0x0000FF;
constexpr COLORREF kBlue = 0xFF0000;
constexpr COLORREF kOrange = 0x00A5FF;
constexpr COLORREF kCrosstalkText = 0xED92A2;

std::string Fmt(const char* fmt, double v)
{
    char buf[64];
    std::snprintf(buf, sizeof buf, fmt, v);
    return buf;
}
} // namespace

class MeasuredMarks : public LevelOverlayTest
{
protected:
    // How many overlay texts start with prefix.
    size_t Count(const std::string& prefix) const
    {
        const std::vector<std::string> all = Strings();
        return size_t(std::count_if(all.begin(), all.end(),
                                    [&](const std::string& t) { return t.rfind(prefix, 0) == 0; }));
    }
    // A ramp of 0..1 V over 10 ns, well away from the marks probed.
    int LoadRamp()
    {
        CChartPointDArray a;
        a.Add(new CChartPointD(0.0, 0.0));
        a.Add(new CChartPointD(10 * ns, 1.0));
        const int i = AddSet(a, kGreen);
        m.SetChartDrawFit();
        return i;
    }
};

TEST_F(MeasuredMarks, FlightTimeTextsArrowAndLevels)
{
    LoadRamp();
    m.m_strFlightNet1 = "DRV";
    m.m_strFlightNet2 = "RCV";
    m.m_strMeasureNet = "RCV";
    m.m_dFlightTimeX1 = 2 * ns;
    m.m_dFlightTimeX2 = 5.5 * ns;
    m.m_dFlightTimeLevel1 = 0.75;
    m.m_dFlightTimeLevel2 = 0.75;
    Measure();
    const plotvane::ChartFrame f = view->GetChartFrame();
    const double gx = Gx(), gy = Gy();
    EXPECT_EQ(Count("FlightTime : "), 1u);
    ExpectText("FlightTime : 3500.0ps", f.Right() - f.Width() * 0.25, f.Top() - f.Height() / 15,
               kRed);
    const std::string delta = Fmt("%.3f", 3.5 * ns * m.GetXUnit());
    EXPECT_EQ(Count(delta), 1u);
    ExpectText(delta.c_str(), 3.75 * ns * 21 / 20 * gx, 0.75 * 21 / 20 * gy, kOrange);

    // Equal levels: one line, one label.
    const std::string level = Fmt("%.3f", m.GetYUnit() * 0.75);
    EXPECT_EQ(Count(level), 1u);
    ExpectText(level.c_str(), f.Right() - f.Width() * 0.125, 0.75 * 21 / 20 * gy, kBlue);
    EXPECT_TRUE(ColorAt(kBlue, 1 * ns, 0.75));
    EXPECT_TRUE(ColorAt(kOrange, 3 * ns, 0.75));
    EXPECT_FALSE(ColorAt(kBlue, 1 * ns, 0.45));

    m.m_dFlightTimeLevel2 = 0.45;
    Measure();
    EXPECT_EQ(Count(level), 1u);
    EXPECT_EQ(Count(Fmt("%.3f", m.GetYUnit() * 0.45)), 1u);
    EXPECT_TRUE(ColorAt(kBlue, 1 * ns, 0.45));

    // Off with level 1 at 0.0 or a net name missing.
    m.m_dFlightTimeLevel1 = 0.0;
    Measure();
    EXPECT_EQ(Count("FlightTime"), 0u);
    m.m_dFlightTimeLevel1 = 0.75;
    m.m_strMeasureNet = "";
    Measure();
    EXPECT_EQ(Count("FlightTime"), 0u);
}

class Crosstalk : public MeasuredMarks
{
protected:
    // A coupled bump peaking at 2.6 ns, off the grid lines; answers the set's index.
    int AddVictim(const char* net, const char* node, int nPinRole, double peak)
    {
        CChartPointDArray a;
        for (double y : {0.0, peak * 0.4, peak, peak * 0.2, 0.0})
            a.Add(new CChartPointD(a.GetSize() * 1.3 * ns, y));
        a.m_strNetName = net;
        a.m_strName = node;
        a.m_nPinRole = nPinRole;
        return AddSet(a, kGreen);
    }
};

TEST_F(Crosstalk, NearEndPeakWithDropLinesAndText)
{
    AddVictim("DQ3", "U2_DQ3", 0, 0.055);
    m.SetChartDrawFit();
    m.m_strNEXTNet = "DQ3";
    m.m_nCrosstalkPointIndex = 2;
    Measure();
    EXPECT_EQ(Strings(), (std::vector<std::string>{"NEXT : 55.0mV"}));
    ExpectText("NEXT : ", (2.6 * ns / 20 + 2.6 * ns) * Gx(), (0.055 / 20 + 0.055) * Gy(),
               kCrosstalkText);
    EXPECT_TRUE(ColorAt(kRed, 2.6 * ns, 0.025)); // dropped to the X axis
    EXPECT_TRUE(ColorAt(kRed, 0.5 * ns, 0.055)); // and across to Y

    // A far-end name turns the near-end set away; an index past the
    // waveform marks nothing; -1 switches the overlay off.
    for (const auto& [fext, index] : {std::pair<const char*, int>{"U2", 2}, {"", 99}, {"", -1}})
    {
        m.m_strFEXTNet = fext;
        m.m_nCrosstalkPointIndex = index;
        Measure();
        EXPECT_TRUE(texts.empty()) << fext << " " << index;
    }
}

TEST_F(Crosstalk, FarEndIsTheFirstDrivenSetOfThatReference)
{
    AddVictim("DQ3", "U7_DQ3", 0, 0.01);  // near-end role: passed over
    AddVictim("DQ3", "U7DQ3", 1, 0.02);   // no "_": no reference name
    AddVictim("DQ4", "U7_DQ4", 1, 0.03);  // other net
    AddVictim("DQ3", "U9_DQ3", 1, 0.04);  // other reference
    AddVictim("DQ3", "U7_DQ3", 1, 0.06);  // taken
    AddVictim("DQ3", "U7_DQ3b", 1, 0.07); // the walk has ended
    m.SetChartDrawFit();
    m.m_strNEXTNet = "DQ3";
    m.m_strFEXTNet = "U7";
    m.m_nCrosstalkPointIndex = 2;
    Measure();
    EXPECT_EQ(Strings(), (std::vector<std::string>{"FEXT : 60.0mV"}));
}

TEST_F(MeasuredMarks, TDRPointAndLevelsFromTheLeftEdge)
{
    LoadRamp();
    m.m_bTDRImpedance = 1;
    m.m_dTargetImpedanceFreq = 7.3 * ns;
    m.m_dTargetImpedanceValue = 0.35;
    m.m_dTDRLevel1 = 0.55;
    m.m_dTDRLevel2 = 0.85;
    Paint();
    const COLORREF mark = view->m_crMeasureMark;
    EXPECT_TRUE(ColorAt(mark, 7.3 * ns, 0.35, 1));
    for (double level : {0.55, 0.85})
    {
        const int row = ToClient(0.0, level).y;
        EXPECT_GT(CountColor(mark, CRect(0, row - 1, 3, row + 2)), 0) << level;
        EXPECT_GT(CountColor(mark, CRect(kWidth - 3, row - 1, kWidth, row + 2)), 0) << level;
    }

    // One level at 0.0 hides both lines, not the point.
    m.m_dTDRLevel2 = 0.0;
    Paint();
    EXPECT_EQ(CountColor(mark, CRect(0, 0, 3, kHeight)), 0);
    EXPECT_TRUE(ColorAt(mark, 7.3 * ns, 0.35, 1));
    m.m_bTDRImpedance = 0;
    Paint();
    EXPECT_FALSE(ColorAt(mark, 7.3 * ns, 0.35, 1));
}

class DFEMark : public MeasuredMarks
{
protected:
    // An insertion loss falling to -30 dB at 10 GHz.
    void Load()
    {
        CChartPointDArray a;
        for (int k = 0; k <= 10; ++k)
            a.Add(new CChartPointD(k * 1e9, -3.0 * k));
        AddSet(a, kGreen);
        m.SetChartDrawFit();
        m.m_bDFEPFreqDomain = 1;
        m.m_nFreqDomainMode = 1;
        m.m_dDFEPLevel = -17.5;
        m.m_ptDFEP = CPointD(2.5e9, -12.3456789);
    }
};

TEST_F(DFEMark, FrequencyAndLossTextsPointAndLevel)
{
    Load();
    Measure();
    const plotvane::ChartFrame f = view->GetChartFrame();
    const COLORREF mark = view->m_crMeasureMark;
    EXPECT_EQ(Strings(), (std::vector<std::string>{"2500MHz", "-12.34568dB"}));
    ExpectText("2500MHz", f.Right() - f.Width() / 6.0, f.Top() - f.Height() / 30.0, mark);
    ExpectText("-12.34568dB", f.Right() - f.Width() / 6.0, f.Top() - f.Height() / 15.0, mark);
    EXPECT_TRUE(ColorAt(mark, 2.5e9, -12.3456789, 1));
    EXPECT_TRUE(ColorAt(mark, 8.5e9, -17.5, 1));

    // The mark belongs to the mode-1 frequency chart only.
    m.m_nFreqDomainMode = 2;
    Measure();
    EXPECT_TRUE(texts.empty());
    EXPECT_FALSE(ColorAt(mark, 8.5e9, -17.5, 1));
}

TEST_F(DFEMark, ZoomReachesTheCurvesEndAndTheLowestLevel)
{
    Load();
    m.m_dDFEPLevel = -40.0;
    Paint();
    const CRectF before = view->m_rcViewArea;
    m.m_nFreqDomainMode = 2;
    view->ZoomDFEPFreqDomainParaArea();
    EXPECT_EQ(view->m_rcViewArea, before);

    m.m_nFreqDomainMode = 1;
    m.m_bClickZoomAvailable = 1;
    m.m_bClickZoomStarted = 1;
    const double mx = view->GetViewWidth() * 0.001;
    const double my = view->GetViewHeight() * 0.001;
    view->ZoomDFEPFreqDomainParaArea();
    const double gx = Gx(), gy = Gy();
    const CRectF& rc = view->m_rcViewArea;
    EXPECT_FLOAT_EQ(float(rc.Right()), float(10e9 * gx + mx));
    EXPECT_FLOAT_EQ(float(rc.Top()), float(my));
    const double lo = -40.0 * gy - my;
    EXPECT_NEAR(rc.Bottom(), lo - (my - lo) / 9.0, std::fabs(lo) * 1e-5);
    EXPECT_EQ(m.m_bClickZoomAvailable, 0);
    EXPECT_EQ(m.m_bClickZoomStarted, 0);
}
