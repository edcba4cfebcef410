#include <kestry/kit/policy.hpp>

#include <gtest/gtest.h>

namespace {

using namespace kestry::kit;

TEST(ColorDepth, SaysItsNameInWords)
{
    EXPECT_STREQ(to_string(color_depth::none), "none");
    EXPECT_STREQ(to_string(color_depth::ansi16), "16 colours");
    EXPECT_STREQ(to_string(color_depth::ansi256), "256 colours");
    EXPECT_STREQ(to_string(color_depth::truecolor), "24 bit");
}

} // namespace
