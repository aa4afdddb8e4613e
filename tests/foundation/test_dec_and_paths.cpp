#include <plotvane/foundation/Dec.h>
#include <plotvane/foundation/TLUtility.h>

#include "common/scoped_data_dir.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using plotvane::dec;

// Digits before the point after rounding to ten digits: what printf's
// exponent says at that precision, plus one. The sign is reported apart.
TEST(Dec, AgreesWithTheFormattedExponentEverywhere)
{
    auto reference = [](double v)
    {
        char buf[40];
        std::snprintf(buf, sizeof buf, "%.9e", std::fabs(v));
        return std::atoi(std::strchr(buf, 'e') + 1) + 1;
    };
    const struct
    {
        double v;
        int n;
    } cases[] = {
        {0.0, 0},           {-1234.0, 4},       {0.05, -1},         {0.1, 0},
        {9999999999.6, 11}, {0.99999999994, 0}, {0.99999999996, 1}, {4.9e-324, -323},
    };
    for (const auto& c : cases)
        EXPECT_EQ(dec(c.v), c.n) << c.v;
    // 10^e has e + 1 digits, including the powers whose binary value lies a
    // hair below the decimal one.
    for (int e = -300; e <= 300; ++e)
        EXPECT_EQ(dec(std::pow(10.0, e)), e + 1) << "1e" << e;

    std::uint64_t s = 0x9E3779B97F4A7C15ull;
    for (int i = 0; i < 50000; ++i)
    {
        s ^= s << 13;
        s ^= s >> 7;
        s ^= s << 17;
        double v;
        std::memcpy(&v, &s, sizeof v);
        if (!std::isfinite(v) || v == 0.0)
            continue;
        ASSERT_EQ(dec(v), reference(v)) << v;
        // Values just around the decade boundaries.
        const double p = std::pow(10.0, int(s % 40) - 20);
        for (double w : {p, std::nextafter(p, 0.0), p * 9.9999999995, p * 9.99999999949,
                         p * 9.99999999951, p * 1.0000000001})
            ASSERT_EQ(dec(w), reference(w)) << w;
    }
}

TEST(TLUtility, DataPathPrecedenceAndMarkers)
{
    TLUtility* u = TLUtility::GetInstance();
    EXPECT_EQ(u, TLUtility::GetInstance());
    EXPECT_EQ(u->TLPathCombine("/a/", "/b"), "/a/b");
    EXPECT_EQ(u->TLPathCombine("", "b"), "b");
    EXPECT_EQ(u->TLPathCombine("/", "b"), "/b");

    ScopedDataDir data;
    EXPECT_EQ(u->GetDataPath(), data.Path());
    EXPECT_FALSE(u->IsExistDebugFile("HARDWARE_ACC_OFF"));
    std::fclose(std::fopen((data.Path() + "/HARDWARE_ACC_OFF").c_str(), "w"));
    EXPECT_TRUE(u->IsExistDebugFile("HARDWARE_ACC_OFF"));

    unsetenv("PLOTVANE_DATA_DIR");
    setenv("XDG_CONFIG_HOME", "/tmp/xdg", 1);
    EXPECT_EQ(u->GetDataPath(), "/tmp/xdg/plotvane");
}
