#include "foundation/Dec.h"
#include "foundation/TLUtility.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

using plotvane::dec;

TEST(Dec, DecimalExponentOfTenSignificantDigits)
{
    EXPECT_EQ(dec(0.0), 0);
    EXPECT_EQ(dec(1234.0), 4);
    EXPECT_EQ(dec(0.05), -1);
    EXPECT_EQ(dec(-1234.0), 4); // the sign is reported apart
    for (int e = -300; e <= 300; ++e)
    {
        const double p = std::pow(10.0, e);
        // 10^e has e + 1 digits before the point, including the powers whose
        // binary value lies a hair below the decimal one.
        EXPECT_EQ(dec(p), e + 1) << "1e" << e;
    }
    EXPECT_EQ(dec(1.0), 1);
    EXPECT_EQ(dec(9.0), 1);
    EXPECT_EQ(dec(0.1), 0);
    EXPECT_EQ(dec(0.099), -1);
}

TEST(Dec, RoundingToTenDigitsCanCarryIntoTheNextDecade)
{
    EXPECT_EQ(dec(9999999999.4), 10);
    EXPECT_EQ(dec(9999999999.6), 11);
    EXPECT_EQ(dec(0.99999999994), 0);
    EXPECT_EQ(dec(0.99999999996), 1);
    EXPECT_EQ(dec(99.999999996), 3);
    EXPECT_EQ(dec(std::nextafter(1.0, 0.0)), 1);
    EXPECT_EQ(dec(4.9e-324), -323); // the smallest subnormal
}

TEST(TLUtility, DataPathPrecedenceAndMarkers)
{
    TLUtility* u = TLUtility::GetInstance();
    EXPECT_EQ(u, TLUtility::GetInstance());
    EXPECT_EQ(u->TLPathCombine("/a/", "/b"), "/a/b");
    EXPECT_EQ(u->TLPathCombine("", "b"), "b");
    EXPECT_EQ(u->TLPathCombine("/", "b"), "/b");

    const char* oldData = std::getenv("PLOTVANE_DATA_DIR");
    const std::string saved = oldData ? oldData : "";
    setenv("XDG_CONFIG_HOME", "/tmp/xdg", 1);
    unsetenv("PLOTVANE_DATA_DIR");
    EXPECT_EQ(u->GetDataPath(), "/tmp/xdg/plotvane");

    char dir[] = "/tmp/plotvane_data_XXXXXX";
    ASSERT_NE(mkdtemp(dir), nullptr);
    setenv("PLOTVANE_DATA_DIR", dir, 1);
    EXPECT_EQ(u->GetDataPath(), dir);
    EXPECT_FALSE(u->IsExistDebugFile("HARDWARE_ACC_OFF"));
    const std::string marker = std::string(dir) + "/HARDWARE_ACC_OFF";
    std::fclose(std::fopen(marker.c_str(), "w"));
    EXPECT_TRUE(u->IsExistDebugFile("HARDWARE_ACC_OFF"));
    std::remove(marker.c_str());
    std::remove(dir);

    if (oldData)
        setenv("PLOTVANE_DATA_DIR", saved.c_str(), 1);
    else
        unsetenv("PLOTVANE_DATA_DIR");
}
