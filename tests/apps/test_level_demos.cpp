// The eye mask, bathtub, overshoot and differential-level demos of
// plotvane-render: each report's overlay numbers (read back from the texts
// and the stored mask) agree with the measurement API's to the rounding of
// the overlay's format, and the files are written.
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

// The object member "name": { ... } of the report, without nesting.
std::string Member(const std::string& json, const std::string& name, std::size_t from = 0)
{
    const std::size_t at = json.find("\"" + name + "\": {", from);
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

class LevelDemos : public plotvane_test::RenderProgramTest
{
protected:
    std::string RunDemo(const std::string& name)
    {
        const Result r = Run("--demo " + name + " -o " + name + ".png");
        EXPECT_EQ(r.status, 0) << r.err;
        struct stat st;
        EXPECT_EQ(stat(Path(name + ".png").c_str(), &st), 0);
        EXPECT_EQ(stat(Path(name + ".pvc").c_str(), &st), 0);
        return r.out;
    }
};

TEST_F(LevelDemos, OvershootUndershootAndAreaShowTheApisNumbers)
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

TEST_F(LevelDemos, VixAndVidShowTheApisNumbers)
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

TEST_F(LevelDemos, BathtubWidthsMatchTheSearchAndTheJitterModel)
{
    const std::string json = RunDemo("bathtub");
    int n = 0;
    for (std::size_t at = json.find("\"ber\""); at != std::string::npos;
         at = json.find("\"ber\"", at + 1), ++n)
    {
        const std::string entry = json.substr(at, json.find('}', at) - at);
        // "%.4f" of the width in the axis unit, the same as the API's
        // crossings rounded so.
        EXPECT_NEAR(JsonNumber(entry, "overlay_width_axis"), JsonNumber(entry, "api_width_axis"), 1e-9)
            << entry;
        // The usual dual-Dirac estimate of the opening (both Gaussian tails at
        // full weight) agrees to within 1 % of the UI.
        EXPECT_NEAR(JsonNumber(entry, "api_width_ps"), JsonNumber(entry, "model_opening_ps"), 10.0) << entry;
        EXPECT_LT(JsonNumber(entry, "floor_ber"), 1e-15) << entry;
    }
    EXPECT_EQ(n, 4);
}

TEST_F(LevelDemos, EyeMaskStandsOnTheEyeCentreAndClearsTheEye)
{
    const std::string json = RunDemo("eye-mask");
    const std::string api = Member(json, "api"), shown = Member(json, "overlay");
    for (const char* key : {"centre_ps", "centre_v", "tip_half_width_ps", "half_height_mv"})
        EXPECT_EQ(JsonNumber(shown, key), JsonNumber(api, key)) << key;
    EXPECT_NE(api.find("\"eye_enters_mask_core\": false"), std::string::npos);
    EXPECT_NE(shown.find("\"visible\": true"), std::string::npos);
}
} // namespace
