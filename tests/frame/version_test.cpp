// The version record, in the build of the library that the environment names.
#include "zelcv.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

TEST(Version, IsTheRecordOfTheBuildThatWasLoaded)
{
    const char* variant = std::getenv("ZELCV_VARIANT");
    ASSERT_NE(variant, nullptr) << "ZELCV_VARIANT must name the build that is expected: mx or v3";
    const bool v3 = std::strcmp(variant, "v3") == 0;
    // Parts of the level that every compiler has a name for; processors have all of it or lack these.
    const bool wide = __builtin_cpu_supports("avx2") && __builtin_cpu_supports("fma") && __builtin_cpu_supports("bmi2");
    if (v3 && !wide)
        GTEST_SKIP() << "this processor lacks x86-64-v3, so that the second build of the library cannot be tried here";

    const ZelLibVersion* const version = zelcvGetLibVersion();
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version, zelcvGetLibVersion());
    EXPECT_EQ(version->major, 7);
    EXPECT_EQ(version->minor, 0);
    EXPECT_EQ(version->majorBuild, 205);
    EXPECT_EQ(version->build, 1040);
    EXPECT_EQ(std::memcmp(version->targetCode, v3 ? "v3\0\0" : "mx\0\0", 4), 0);
    EXPECT_STREQ(version->name, v3 ? "zelcvv3-7.0.dll" : "zelcvmx-7.0.dll");
    EXPECT_STREQ(version->version, "7.0 build 205.58");
    EXPECT_STREQ(version->buildDate, "Apr 18 2011");
}
