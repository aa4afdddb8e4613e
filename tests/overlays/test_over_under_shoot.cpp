// Overshoot, undershoot, VSEH/VSEL and the area overlay on a ringing edge:
// texts through the hook, lines and arrows by their colours, the shaded
// shape against the area search of the measurement API.
#include "level_overlay_fixture.h"

namespace
{
constexpr COLORREF kRed = 0x0000FF;
constexpr COLORREF kBlue = 0xFF0000;
constexpr COLORREF kShade = 0xED92A2;
constexpr double ns = 1e-9;

// A 1.2 V step at 1 ns + dShift ringing about the rail (2 ns period); the
// falling form rings about 0 V.
CChartPointDArray Ringing(bool bRising, const char* name, double dShift = 0.0, double dGain = 1.0)
{
    CChartPointDArray a;
    for (int i = 0; i <= 1000; ++i)
    {
        const double t = i * 0.01 * ns, u = t - 1 * ns - dShift;
        const double ring = u > 0.0 ? dGain * std::exp(-u / ns) * std::cos(M_PI * u / ns) : 1.0;
        a.Add(new CChartPointD(t, bRising ? 1.2 * (1.0 - ring) * (u > 0.0) : 1.2 * ring));
    }
    a.m_strName = name;
    return a;
}

class OverUnderShoot : public LevelOverlayTest
{
protected:
    void Check(int nType, const char* net, double L, double M, double dMeasured, double dMargin)
    {
        m.m_nMeasureType = nType;
        m.m_strMeasureNet = net;
        m.m_dMeasureLevel = L;
        m.m_dMeasureLimit = M;
        m.m_dMeasuredValue = dMeasured;
        m.m_dMeasureMargin = dMargin;
        Show();
    }
};

TEST_F(OverUnderShoot, PeakAndDipMarksStandWhereTheyBelong)
{
    const double peak = Set(AddSet(Ringing(true, "U1.DQ0"), kGreen)).GetMaxY();
    Check(0, "U1.DQ0", 1.2, 300.0, (peak - 1.2) * 1000.0, 12.5);
    plotvane::ChartFrame f = view->GetChartFrame();
    double W = f.Width(), H = f.Height(), gy = Gy();
    char measured[64];
    std::snprintf(measured, sizeof measured, "Measured Overshoot: %g mV", (peak - 1.2) * 1000.0);
    ASSERT_EQ(Strings(), (std::vector<std::string>{"Max Overshoot: 300 mV", measured,
                                                   "Overshoot Margin: 12.5 mV"}));
    ExpectText("Max Overshoot", W / 10, 1.2 * gy + H / 10, kBlue);
    ExpectText("Measured Overshoot", W * 0.25, peak * gy - H / 20, kRed);
    ExpectText("Overshoot Margin", f.Right() - W / 3, f.Top() - H / 15, kLabel);
    EXPECT_GT(RowPixels(kBlue, 1.5 * gy), 300);
    EXPECT_GT(RowPixels(kRed, peak * gy), 300);
    EXPECT_GT(ColumnPixels(kBlue, W / 20, 1.25 * gy, 1.45 * gy), 20);
    EXPECT_GT(ColumnPixels(kRed, W * 0.2, 1.25 * gy, peak * gy - 0.05 * gy), 20);

    // A peak below the level: the red arrow still spans peak to level (its
    // ends swapped, since it only points up), nothing above the level.
    const double L = peak + 0.2;
    Check(0, "U1.DQ0", L, 300.0, (peak - L) * 1000.0, 500.0);
    EXPECT_GT(ColumnPixels(kRed, W * 0.2, peak * gy + 0.03 * gy, L * gy - 0.03 * gy), 10);
    EXPECT_EQ(ColumnPixels(kRed, W * 0.2, L * gy + 0.03 * gy, L * gy + 0.2 * gy), 0);

    m.RemoveAllData();
    const double dip = Set(AddSet(Ringing(false, "U1.DQ0"), kGreen)).GetMinY();
    Check(2, "U1.DQ0", 0.0, 250.0, -dip * 1000.0, 0.0);
    f = view->GetChartFrame();
    W = f.Width(), H = f.Height(), gy = Gy();
    EXPECT_NEAR(Number("Measured Undershoot: "), -dip * 1000.0, 1e-3);
    ExpectText("Max Undershoot", W / 10, -0.25 * gy + H / 10, kBlue);
    ExpectText("Measured Undershoot", W * 0.25, dip * gy - H / 20, kRed);
    ExpectText("Undershoot Margin", f.Right() - W / 3, f.Bottom() + 2 * H / 15, kLabel);
    EXPECT_GT(ColumnPixels(kRed, W * 0.2, dip * gy + 0.05 * gy, -0.05 * gy), 20);
}

TEST_F(OverUnderShoot, NamesAreMatchedUpperCasedAndAPairNeedsBoth)
{
    AddSet(Ringing(true, "u1.dq0"), kGreen);
    const struct
    {
        int nType;
        const char* net;
        size_t nTexts;
    } cases[] = {{0, "u1.dq0", 0}, {0, "U1.DQ0", 3}, {0, "U1.DQ0,U1.DQ1", 0},
                 {7, "U1.DQ0", 0}, {8, "U1.DQ0", 0}};
    for (const auto& k : cases)
    {
        Check(k.nType, k.net, 1.2, 300.0, 100.0, 200.0);
        EXPECT_EQ(texts.size(), k.nTexts) << k.nType << " " << k.net;
    }
}

TEST_F(OverUnderShoot, VsehAndVselTakeTheExtremesOfBothLegs)
{
    const int p = AddSet(Ringing(true, "CK_T", 0.0, 0.6), kGreen);
    const int n = AddSet(Ringing(false, "CK_C", 0.0, 0.8), kWhite);
    const double maxY = std::max(Set(p).GetMaxY(), Set(n).GetMaxY());
    const double minY = std::min(Set(p).GetMinY(), Set(n).GetMinY());
    Check(7, "CK_T,CK_C", 0.0, 1000.0, maxY * 1000.0, 0.0);
    const plotvane::ChartFrame f = view->GetChartFrame();
    const double W = f.Width(), H = f.Height(), gy = Gy();
    ExpectText("Min VSEH", W / 10, 1.0 * gy - H / 20, kBlue);
    ExpectText("Measured VSEH", W * 0.25, maxY * gy - H / 20, kRed);
    ExpectText("VSEH Margin", f.Right() - W / 3, f.Top() - H / 15, kLabel);
    // The margin arrow climbs from the lower of limit and extreme.
    EXPECT_GT(ColumnPixels(kLabel, f.Right() - W / 3 - W / 20, 1.02 * gy, maxY * gy - 0.02 * gy), 5);

    Check(8, "CK_T,CK_C", 0.0, 200.0, minY * 1000.0, 0.0);
    ExpectText("Max VSEL", W / 10, 0.2 * gy + H / 20, kBlue);
    ExpectText("Measured VSEL", W * 0.25, minY * gy + H / 20, kRed);
    ExpectText("VSEL Margin", f.Right() - W / 3, f.Bottom() + 2 * H / 15, kLabel);
    EXPECT_GT(ColumnPixels(kShade, f.Right() - W / 3 - W / 20, minY * gy + 0.02 * gy, 0.18 * gy), 5);
    // Negative: the red arrow rises from the dip to 0 V.
    EXPECT_GT(ColumnPixels(kRed, W * 0.2, minY * gy + 0.03 * gy, -0.03 * gy), 10);
}

TEST_F(OverUnderShoot, OnlyARedrawRequestMeasuresAgain)
{
    AddSet(Ringing(true, "U1.DQ0"), kGreen);
    Check(0, "U1.DQ0", 1.2, 300.0, 100.0, 200.0);
    const std::vector<std::string> first = Strings();
    // A paint replays the list, texts once each; new numbers wait for a
    // redraw request.
    m.m_dMeasureMargin = 42.0;
    texts.clear();
    Paint();
    EXPECT_EQ(Strings(), first);
    Measure();
    EXPECT_EQ(Number("Overshoot Margin: "), 42.0);
    m.m_nMeasureType = 9;
    Measure();
    EXPECT_TRUE(texts.empty());
    EXPECT_EQ(RowPixels(kBlue, 1.5 * Gy()), 0);
}

TEST_F(OverUnderShoot, AreaShadesTheLargestExcursionOfTheLegWithTheGreaterArea)
{
    const int i = AddSet(Ringing(true, "U1.DQ0"), kGreen);
    Check(1, "U1.DQ0", 1.2, 0.0, 0.0, 0.125);
    CChartPointDArray pts;
    double dArea = 0.0;
    Set(i).GetMaxAreaAboveYValueAndAllPointsInAreaWithExtractEyeLinePoints(
        1e9, 1000.0, Set(i).GetMinX(), Set(i).GetMaxX(), 1.2, dArea, &pts);
    ASSERT_GT(pts.GetSize(), 3);
    const double x1 = pts.GetPointX(0), x2 = pts.GetPointX(pts.GetSize() - 1);
    const plotvane::ChartFrame f = view->GetChartFrame();
    EXPECT_EQ(Strings(), (std::vector<std::string>{"Overshoot Area Margin: 0.125 V-ns"}));
    ExpectText("Overshoot Area", f.Right() - f.Width() * 0.4, f.Top() - f.Height() / 15, kLabel);
    EXPECT_GT(CountColor(kShade, DataRect(x1, 1.21, x2, 1.3)), 30);
    EXPECT_EQ(CountColor(kShade, DataRect(x2 + 0.2 * ns, 1.21, x2 + 2.0 * ns, 1.3)), 0);

    // A pair: the same edge 3 ns later ringing harder, then softer.
    for (const double dGain : {1.2, 0.8})
    {
        m.RemoveAllData();
        AddSet(Ringing(true, "CK_T"), kGreen);
        AddSet(Ringing(true, "CK_C", 3 * ns, dGain), kWhite);
        Check(1, "CK_T,CK_C", 1.2, 0.0, 0.0, 0.1);
        EXPECT_EQ(CountColor(kShade, DataRect(1.6 * ns, 1.25, 1.9 * ns, 1.3)) > 10, dGain < 1.0);
        EXPECT_EQ(CountColor(kShade, DataRect(4.6 * ns, 1.25, 4.9 * ns, 1.3)) > 10, dGain > 1.0);
    }

    // Below a ground level, text at the bottom.
    m.RemoveAllData();
    AddSet(Ringing(false, "U1.DQ0"), kGreen);
    Check(3, "U1.DQ0", 0.0, 0.0, 0.0, -0.05);
    EXPECT_EQ(Strings(), (std::vector<std::string>{"Undershoot Area Margin: -0.05 V-ns"}));
    EXPECT_GT(CountColor(kShade, DataRect(1.6 * ns, -0.3, 2.4 * ns, -0.02)), 30);
}
} // namespace
