// VIX and VID on a differential clock whose complement lags: the levels
// shown against the measurement API's crossing search, lines by colour,
// texts through the hook.
#include "level_overlay_fixture.h"

namespace
{
constexpr COLORREF kRed = 0x0000FF;
constexpr COLORREF kBlue = 0xFF0000;
constexpr COLORREF kRefGreen = 0x00FF00;
constexpr COLORREF kSwing = 0xED92A2;
constexpr double ns = 1e-9;

// One leg of a 2 ns clock between lo and hi, 200 ps raised-cosine edges,
// delayed by dDelay, inverted for the complement.
CChartPointDArray Leg(const char* net, const char* node, bool bInvert, double dDelay, double lo,
                      double hi)
{
    CChartPointDArray a;
    for (int i = 0; i <= 800; ++i)
    {
        const double ph = std::fmod(i * 0.01 * ns - dDelay + 4 * ns, 2 * ns) / ns;
        double s = ph < 0.2 ? 0.0 : ph < 0.4 ? 0.5 - 0.5 * std::cos(M_PI * (ph - 0.2) / 0.2) : 1.0;
        if (ph >= 1.2)
            s = ph < 1.4 ? 0.5 + 0.5 * std::cos(M_PI * (ph - 1.2) / 0.2) : 0.0;
        a.Add(new CChartPointD(i * 0.01 * ns, lo + (hi - lo) * (bInvert ? 1.0 - s : s)));
    }
    a.m_strNetName = net;
    a.m_strName = node;
    a.m_dPeriod = 2 * ns;
    return a;
}

class Differential : public LevelOverlayTest
{
protected:
    // The complement lags 25 ps; set names in lower case are upper-cased.
    void LoadPair(double hiT = 1.25, double hiC = 1.25, double loT = 0.05, double loC = 0.05)
    {
        m.RemoveAllData();
        t = AddSet(Leg("ck_t", "u1.a", false, 0.0, loT, hiT), kGreen);
        c = AddSet(Leg("CK_C", "U1.B", true, 0.025 * ns, loC, hiC), kWhite);
        m.m_strMeasureNet2 = "CK_T/CK_C";
        m.m_strMeasureNet = "U1.A,U1.B";
    }
    void Vix(int nType, double dLevel, double dMargin)
    {
        m.m_nMeasureType = nType;
        m.m_dVIXLevel = dLevel;
        m.m_dMeasureMargin = dMargin;
        Show();
    }
    int t = -1, c = -1;
};

TEST_F(Differential, VixShowsTheCrossingFarthestFromTheReferenceAndItsLimits)
{
    LoadPair();
    Vix(5, 1.2, 40.0);
    // The band is the middle 40 % of the swing; the lag splits the crossings.
    double yA = 0.0, yB = 0.0;
    ASSERT_EQ(Set(t).GetDataCrossMinMaxYValueByPointArray(&Set(c), 0.41, 0.89, 1e9, 1000.0, yA, yB), 1);
    ASSERT_LT(yA, 0.62);
    ASSERT_GT(yB, 0.68);
    const double R = 0.6;
    const double E = std::fabs(R - yA) > std::fabs(R - yB) ? yA : yB;
    const double Mv = std::fabs(R - E) * 1000.0, lim = (Mv + 40.0) / 1000.0;
    const double N = R > E ? R - lim : R + lim, F = R > E ? R + lim : R - lim;
    char measured[64];
    std::snprintf(measured, sizeof measured, "Measured VIX: %g mV", Mv);
    EXPECT_EQ(Strings(), (std::vector<std::string>{"Vref", measured, "VIX Max", "VIX Margin: 40 mV"}));
    const plotvane::ChartFrame f = view->GetChartFrame();
    const double W = f.Width(), H = f.Height(), gy = Gy();
    ExpectText("Vref", W * 4 / 5, R * gy - H / 20, kRefGreen);
    ExpectText("Measured VIX", W / 6, E * gy - H / 20, kRed);
    ExpectText("VIX Max", W * 3 / 5, F * gy - H / 20, kBlue);
    ExpectText("VIX Margin", f.Right() - W / 3, E * gy - H / 20, kLabel);
    EXPECT_GT(RowPixels(kRefGreen, R * gy), 300);
    EXPECT_GT(RowPixels(kRed, E * gy), 300);
    EXPECT_GT(RowPixels(kBlue, N * gy), 300);
    EXPECT_GT(RowPixels(kBlue, F * gy), 300);

    // Type 4: the middle of the lower leg's swing; type 5 at level 0: 0 V.
    LoadPair(1.25, 1.05, 0.05, 0.15);
    Vix(4, 0.0, 10.0);
    ExpectText("Vref", W * 4 / 5, 0.6 * Gy() - H / 20, kRefGreen);
    Vix(5, 0.0, 10.0);
    ExpectText("Vref", W * 4 / 5, -H / 20, kRefGreen);
}

TEST_F(Differential, HostLevelsReplaceTheSearchZeroIncludedAndATieTakesTheSecond)
{
    LoadPair();
    m.m_dVIXMeasuredX = 0.0;
    m.m_dVIXMeasuredY = 0.75;
    Vix(5, 1.2, 20.0);
    EXPECT_DOUBLE_EQ(Number("Measured VIX: "), 600.0);
    const plotvane::ChartFrame f = view->GetChartFrame();
    const double W = f.Width(), H = f.Height(), gy = Gy();
    ExpectText("Measured VIX", W / 6, -H / 20, kRed);

    m.m_dVIXMeasuredX = 0.25;
    Vix(5, 1.0, 100.0);
    EXPECT_DOUBLE_EQ(Number("Measured VIX: "), 250.0);
    ExpectText("Measured VIX", W / 6, 0.75 * gy - H / 20, kRed);
    // Above the reference: the near limit 100 mV higher, the margin arrow
    // between the two.
    EXPECT_GT(RowPixels(kBlue, 0.85 * gy), 300);
    EXPECT_GT(ColumnPixels(kLabel, f.Right() - W / 3 - W / 20, 0.77 * gy, 0.83 * gy), 5);

    // Both legs are needed, by net and node; no separator finds none.
    m.m_strMeasureNet2 = "CK_T";
    Measure();
    EXPECT_TRUE(texts.empty());
    m.m_strMeasureNet2 = "CK_T/CK_C";
    m.m_strMeasureNet = "U1.A,U1.C";
    m.m_nMeasureType = 6;
    Measure();
    EXPECT_TRUE(texts.empty());
}

TEST_F(Differential, VidSpansTheLargerSwingAndColoursItsLowerLineByCase)
{
    // First high over second low is larger: both lines red.
    LoadPair(1.25, 1.15, 0.0, -0.05);
    m.m_nMeasureType = 6;
    m.m_dMeasureMargin = 12.5;
    Show();
    const plotvane::ChartFrame f = view->GetChartFrame();
    EXPECT_EQ(Strings(), (std::vector<std::string>{"VID Margin: 12.5 mV"}));
    ExpectText("VID Margin", f.Right() - f.Width() / 3, f.Bottom() + 2 * f.Height() / 15, kLabel);
    EXPECT_GT(RowPixels(kRed, 1.25 * Gy()), 300);
    EXPECT_GT(RowPixels(kRed, -0.05 * Gy()), 300);
    EXPECT_GT(ColumnPixels(kSwing, f.Width() * 0.2, 1.2 * Gy(), 0.0), 50);
    // The other way round, the lower line is blue.
    LoadPair(1.15, 1.25, -0.05, 0.0);
    Show();
    EXPECT_GT(RowPixels(kRed, 1.25 * Gy()), 300);
    EXPECT_GT(RowPixels(kBlue, -0.05 * Gy()), 300);
    EXPECT_EQ(RowPixels(kRed, -0.05 * Gy()), 0);
}
} // namespace
