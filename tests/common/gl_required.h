// Tests that draw need a real GL context. Without one they fail, so that a
// machine that lost its EGL display cannot pass by testing nothing. A
// developer on a machine without EGL may set PLOTVANE_TEST_ALLOW_NO_GL=1 to
// skip them instead; CI never sets it.
#pragma once

#include <plotvane/platform/headless/HeadlessBackend.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

namespace plotvane::test
{

inline bool NoGLAllowed()
{
    const char* v = std::getenv("PLOTVANE_TEST_ALLOW_NO_GL");
    return v != nullptr && *v != '\0' && std::strcmp(v, "0") != 0;
}

} // namespace plotvane::test

// Use at the top of a test or SetUp.
#define PLOTVANE_REQUIRE_GL()                                                                      \
    if (plotvane::HeadlessBackend::Default().IsGLAvailable())                                      \
    {                                                                                              \
    }                                                                                              \
    else if (plotvane::test::NoGLAllowed())                                                        \
        GTEST_SKIP() << "no EGL display; skipped because PLOTVANE_TEST_ALLOW_NO_GL is set";        \
    else                                                                                           \
        GTEST_FAIL() << "no EGL display: this test draws and needs one "                          \
                        "(PLOTVANE_TEST_ALLOW_NO_GL=1 skips it on a machine without)"
