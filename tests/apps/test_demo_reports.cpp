// The overlay demos of plotvane-render: each report's overlay numbers, read
// back from the texts and the stored marks, agree with the measurement API's
// to the rounding of the overlay's format and with the model's physics; the
// files are written.
#include "apps/program_run.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace
{
using plotvane_test::JsonNumber;

// The object member "name": { ... } of the report, without nesting.
std::string Member(const std::string& json, const std::string& name)
{
    const std::size_t at = json.find("\"" + name + "\": {");
    if (at == std::string::npos)
        return std::string();
    return json.substr(at, json.find('}', at) - at);
}

// Equal to what "%g" prints of api: six significant digits.
void ExpectPrintedG(double overlay, double api, const char* what)
{
    ASSERT_FALSE(std::isnan(overlay)) << what;
    EXPECT_NEAR(overlay, api, 5e-6 * std::fabs(api) + 1e-12) << what;
}

using DemoReports = plotvane_test::RenderProgramTest;

TEST_F(DemoReports, OvershootUndershootAndAreaShowTheApisNumbers)
{
    for (const char* name : {"overshoot", "undershoot"})
    {
        const std::string json = RunDemo(name);
        const std::string api = Member(json, "api"), shown = Member(json, "overlay");
        const char* extreme = std::string(name) == "overshoot" ? "peak_v" : "dip_v";
        ExpectPrintedG(JsonNumber(shown, "measured_mv"), JsonNumber(api, "measured_mv"), name);
        ExpectPrintedG(JsonNumber(shown, "margin"), JsonNumber(api, "margin"), name);
        EXPECT_EQ(JsonNumber(shown, "limit_mv"), JsonNumber(api, "limit_mv")) << name;
        // The red line stands at the waveform's own extreme.
        EXPECT_NEAR(JsonNumber(shown, extreme), JsonNumber(api, extreme), 1e-6) << name;
    }
    const std::string json = RunDemo("overshoot-area");
    const double area = JsonNumber(Member(json, "api"), "area_v_ns");
    EXPECT_GT(area, 0.01);
    EXPECT_LT(area, 0.2);
    ExpectPrintedG(JsonNumber(Member(json, "overlay"), "margin"), 0.1 - area, "area margin");
}

TEST_F(DemoReports, VixAndVidShowTheApisNumbers)
{
    std::string json = RunDemo("vix-vid");
    std::string api = Member(json, "api"), shown = Member(json, "overlay");
    const double lo = JsonNumber(api, "crossing_low_v"), hi = JsonNumber(api, "crossing_high_v");
    // The lag splits the crossings around the common mode, 40 mV up.
    EXPECT_LT(lo, 0.64);
    EXPECT_GT(hi, 0.64);
    const double R = JsonNumber(api, "vref_v");
    const double E = std::fabs(R - lo) > std::fabs(R - hi) ? lo : hi;
    EXPECT_NEAR(JsonNumber(shown, "extreme_crossing_v"), E, 1e-6);
    EXPECT_NEAR(JsonNumber(shown, "vref_v"), R, 1e-6);
    ExpectPrintedG(JsonNumber(shown, "vix_mv"), JsonNumber(api, "vix_mv"), "vix");
    ExpectPrintedG(JsonNumber(shown, "margin_mv"), JsonNumber(api, "margin_mv"), "vix margin");

    json = RunDemo("vid");
    api = Member(json, "api");
    ExpectPrintedG(JsonNumber(Member(json, "overlay"), "margin_mv"),
                   JsonNumber(api, "vid_mv") - JsonNumber(api, "vid_min_mv"), "vid margin");
}

TEST_F(DemoReports, BathtubWidthsMatchTheSearchAndTheJitterModel)
{
    const std::string json = RunDemo("bathtub");
    int n = 0;
    for (std::size_t at = json.find("\"ber\""); at != std::string::npos;
         at = json.find("\"ber\"", at + 1), ++n)
    {
        const std::string entry = json.substr(at, json.find('}', at) - at);
        // "%.4f" of the width in the axis unit, the same as the API's
        // crossings rounded so.
        EXPECT_NEAR(JsonNumber(entry, "overlay_width_axis"), JsonNumber(entry, "api_width_axis"),
                    1e-9)
            << entry;
        // The usual dual-Dirac estimate of the opening (both Gaussian tails at
        // full weight) agrees to within 1 % of the UI.
        EXPECT_NEAR(JsonNumber(entry, "api_width_ps"), JsonNumber(entry, "model_opening_ps"), 10.0)
            << entry;
        EXPECT_LT(JsonNumber(entry, "floor_ber"), 1e-15) << entry;
    }
    EXPECT_EQ(n, 4);
}

TEST_F(DemoReports, EyeMaskStandsOnTheEyeCentreAndClearsTheEye)
{
    const std::string json = RunDemo("eye-mask");
    const std::string api = Member(json, "api"), shown = Member(json, "overlay");
    for (const char* key : {"centre_ps", "centre_v", "tip_half_width_ps", "half_height_mv"})
        EXPECT_EQ(JsonNumber(shown, key), JsonNumber(api, key)) << key;
    EXPECT_NE(api.find("\"eye_enters_mask_core\": false"), std::string::npos);
    EXPECT_NE(shown.find("\"visible\": true"), std::string::npos);
}

TEST_F(DemoReports, TargetZRailsAgainstStoredLimits)
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
        const double z = JsonNumber(out, "worst_ohm", from);
        const double lim = JsonNumber(out, "worst_limit_ohm", from);
        ASSERT_GT(z, 0.0);
        EXPECT_NEAR(JsonNumber(out, "margin_db", from), -20 * std::log10(z / lim), 0.006);
        EXPECT_GE(JsonNumber(out, "peak_ohm", from), z);
    }
}

TEST_F(DemoReports, FlightTimeTextMatchesCrossings)
{
    const std::string out = RunDemo("flight-time");
    const double d = JsonNumber(out, "flight_time_ps");
    EXPECT_NEAR(JsonNumber(out, "receiver_crossing_ps") - JsonNumber(out, "driver_crossing_ps"), d,
                1e-3);
    EXPECT_NEAR(JsonNumber(out, "overlay_flight_time_ps"), d, 0.05 + 1e-9);
    // Line delay plus a receiver RC of 150 ps: more than the line, not by
    // more than a few time constants.
    EXPECT_GT(d, JsonNumber(out, "line_delay_ps"));
    EXPECT_LT(d, JsonNumber(out, "line_delay_ps") + 400.0);
}

TEST_F(DemoReports, CrosstalkMarksTheFarEndPeak)
{
    const std::string out = RunDemo("crosstalk");
    EXPECT_GE(JsonNumber(out, "fext_index"), 0.0);
    EXPECT_NEAR(JsonNumber(out, "overlay_fext_mv"), JsonNumber(out, "fext_peak_mv"), 0.05 + 1e-9);
    EXPECT_NEAR(JsonNumber(out, "fext_peak_mv"), JsonNumber(out, "fext_expected_mv"), 0.5);
    EXPECT_NEAR(JsonNumber(out, "next_peak_mv"), JsonNumber(out, "next_expected_mv"), 0.01);
}

TEST_F(DemoReports, TdrLevelsAreTheLineAndTheSection)
{
    const std::string out = RunDemo("tdr");
    EXPECT_NEAR(JsonNumber(out, "reference_ohm"), 50.0, 1e-6);
    EXPECT_NEAR(JsonNumber(out, "section_ohm"), JsonNumber(out, "section_model_ohm"), 0.01);
    EXPECT_EQ(JsonNumber(out, "marked_point_ohm"), JsonNumber(out, "section_ohm"));
}

TEST_F(DemoReports, DfeTextsRoundTheLossAtNyquist)
{
    const std::string out = RunDemo("dfe");
    EXPECT_EQ(JsonNumber(out, "overlay_nyquist_mhz"),
              std::round(JsonNumber(out, "nyquist_hz") * 1e-6));
    EXPECT_NEAR(JsonNumber(out, "overlay_loss_db"), JsonNumber(out, "loss_at_nyquist_db"), 5e-6);
    EXPECT_NEAR(JsonNumber(out, "loss_at_nyquist_db"), JsonNumber(out, "model_loss_db"), 0.01);
}
} // namespace
