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
using plotvane_test::JsonNumber;
using plotvane_test::Result;

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
    EXPECT_DOUBLE_EQ(JsonNumber(out, "limit_type"), 0.0);
    EXPECT_DOUBLE_EQ(JsonNumber(out, "ohm"), 1.8e-3);
    EXPECT_DOUBLE_EQ(JsonNumber(out, "limit_type", io), 1.0);
    for (std::size_t from : {std::size_t(0), io})
    {
        // Worst point: within the limit's range, and the margin is its ratio.
        const double z = JsonNumber(out, "worst_ohm", from), lim = JsonNumber(out, "worst_limit_ohm", from);
        ASSERT_GT(z, 0.0);
        EXPECT_NEAR(JsonNumber(out, "margin_db", from), -20 * std::log10(z / lim), 0.006);
        EXPECT_GE(JsonNumber(out, "peak_ohm", from), z);
    }
}

TEST_F(MarkDemos, FlightTimeTextMatchesCrossings)
{
    const std::string out = RunDemo("flight-time");
    const double d = JsonNumber(out, "flight_time_ps");
    EXPECT_NEAR(JsonNumber(out, "receiver_crossing_ps") - JsonNumber(out, "driver_crossing_ps"), d, 1e-3);
    EXPECT_NEAR(JsonNumber(out, "overlay_flight_time_ps"), d, 0.05 + 1e-9);
    // Line delay plus a receiver RC of 150 ps: more than the line, not by
    // more than a few time constants.
    EXPECT_GT(d, JsonNumber(out, "line_delay_ps"));
    EXPECT_LT(d, JsonNumber(out, "line_delay_ps") + 400.0);
}

TEST_F(MarkDemos, CrosstalkMarksTheFarEndPeak)
{
    const std::string out = RunDemo("crosstalk");
    EXPECT_GE(JsonNumber(out, "fext_index"), 0.0);
    EXPECT_NEAR(JsonNumber(out, "overlay_fext_mv"), JsonNumber(out, "fext_peak_mv"), 0.05 + 1e-9);
    EXPECT_NEAR(JsonNumber(out, "fext_peak_mv"), JsonNumber(out, "fext_expected_mv"), 0.5);
    EXPECT_NEAR(JsonNumber(out, "next_peak_mv"), JsonNumber(out, "next_expected_mv"), 0.01);
}

TEST_F(MarkDemos, TdrLevelsAreTheLineAndTheSection)
{
    const std::string out = RunDemo("tdr");
    EXPECT_NEAR(JsonNumber(out, "reference_ohm"), 50.0, 1e-6);
    EXPECT_NEAR(JsonNumber(out, "section_ohm"), JsonNumber(out, "section_model_ohm"), 0.01);
    EXPECT_EQ(JsonNumber(out, "marked_point_ohm"), JsonNumber(out, "section_ohm"));
}

TEST_F(MarkDemos, DfeTextsRoundTheLossAtNyquist)
{
    const std::string out = RunDemo("dfe");
    EXPECT_EQ(JsonNumber(out, "overlay_nyquist_mhz"), std::round(JsonNumber(out, "nyquist_hz") * 1e-6));
    EXPECT_NEAR(JsonNumber(out, "overlay_loss_db"), JsonNumber(out, "loss_at_nyquist_db"), 5e-6);
    EXPECT_NEAR(JsonNumber(out, "loss_at_nyquist_db"), JsonNumber(out, "model_loss_db"), 0.01);
}
