// The target-impedance, flight-time, crosstalk, TDR and DFE demos of
// plotvane-render: each report's overlay numbers agree with the API's to
// the rounding of the overlay's format, and with the physics of the model.
#include "apps/program_run.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <string>
#include <sys/stat.h>

namespace
{
using plotvane_test::Result;

double Num(const std::string& json, const std::string& key, std::size_t from = 0)
{
    const std::size_t at = json.find("\"" + key + "\": ", from);
    if (at == std::string::npos)
        return NAN;
    const char* p = json.c_str() + at + key.size() + 4;
    char* end = nullptr;
    const double v = std::strtod(p, &end);
    return end == p ? NAN : v;
}

bool Written(const std::string& path)
{
    struct stat st;
    return stat(path.c_str(), &st) == 0 && st.st_size > 0;
}

class MarkDemos : public plotvane_test::RenderProgramTest
{
protected:
    std::string RunDemo(const std::string& name)
    {
        const Result r = Run("--demo " + name + " -o " + name + ".png");
        EXPECT_EQ(r.status, 0) << r.err;
        EXPECT_TRUE(Written(Path(name + ".png")));
        EXPECT_TRUE(Written(Path(name + ".pvc")));
        return r.out;
    }
};
} // namespace

TEST_F(MarkDemos, TargetZRailsAgainstStoredLimits)
{
    const std::string out = RunDemo("target-z");
    const std::size_t io = out.find("VDD_IO");
    ASSERT_NE(io, std::string::npos) << out;
    // The core rail's stepped limit and the I/O rail's polyline as stored.
    EXPECT_DOUBLE_EQ(Num(out, "limit_type"), 0.0);
    EXPECT_DOUBLE_EQ(Num(out, "ohm"), 1.8e-3);
    EXPECT_DOUBLE_EQ(Num(out, "limit_type", io), 1.0);
    for (std::size_t from : {std::size_t(0), io})
    {
        // Worst point: within the limit's range, and the margin is its ratio.
        const double z = Num(out, "worst_ohm", from), lim = Num(out, "worst_limit_ohm", from);
        ASSERT_GT(z, 0.0);
        EXPECT_NEAR(Num(out, "margin_db", from), -20 * std::log10(z / lim), 0.006);
        EXPECT_GE(Num(out, "peak_ohm", from), z);
    }
}

TEST_F(MarkDemos, FlightTimeTextMatchesCrossings)
{
    const std::string out = RunDemo("flight-time");
    const double d = Num(out, "flight_time_ps");
    EXPECT_NEAR(Num(out, "receiver_crossing_ps") - Num(out, "driver_crossing_ps"), d, 1e-3);
    EXPECT_NEAR(Num(out, "overlay_flight_time_ps"), d, 0.05 + 1e-9);
    // Line delay plus a receiver RC of 150 ps: more than the line, not by
    // more than a few time constants.
    EXPECT_GT(d, Num(out, "line_delay_ps"));
    EXPECT_LT(d, Num(out, "line_delay_ps") + 400.0);
}

TEST_F(MarkDemos, CrosstalkMarksTheFarEndPeak)
{
    const std::string out = RunDemo("crosstalk");
    EXPECT_GE(Num(out, "fext_index"), 0.0);
    EXPECT_NEAR(Num(out, "overlay_fext_mv"), Num(out, "fext_peak_mv"), 0.05 + 1e-9);
    EXPECT_NEAR(Num(out, "fext_peak_mv"), Num(out, "fext_expected_mv"), 0.5);
    EXPECT_NEAR(Num(out, "next_peak_mv"), Num(out, "next_expected_mv"), 0.01);
}

TEST_F(MarkDemos, TdrLevelsAreTheLineAndTheSection)
{
    const std::string out = RunDemo("tdr");
    EXPECT_NEAR(Num(out, "reference_ohm"), 50.0, 1e-6);
    EXPECT_NEAR(Num(out, "section_ohm"), Num(out, "section_model_ohm"), 0.01);
    EXPECT_EQ(Num(out, "marked_point_ohm"), Num(out, "section_ohm"));
}

TEST_F(MarkDemos, DfeTextsRoundTheLossAtNyquist)
{
    const std::string out = RunDemo("dfe");
    EXPECT_EQ(Num(out, "overlay_nyquist_mhz"), std::round(Num(out, "nyquist_hz") * 1e-6));
    EXPECT_NEAR(Num(out, "overlay_loss_db"), Num(out, "loss_at_nyquist_db"), 5e-6);
    EXPECT_NEAR(Num(out, "loss_at_nyquist_db"), Num(out, "model_loss_db"), 0.01);
}
