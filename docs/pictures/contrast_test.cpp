#include "contrast.hpp"

#include <gtest/gtest.h>

namespace {

using namespace hueline::pictures;

Rgb constexpr black = {0, 0, 0};
Rgb constexpr white = {0xff, 0xff, 0xff};

TEST(Contrast, IsOneOfAColorWithItself) { EXPECT_DOUBLE_EQ(contrast({0x12, 0x34, 0x56}, {0x12, 0x34, 0x56}), 1); }

TEST(Contrast, IsTwentyOneOfBlackAndWhite)
{
    EXPECT_DOUBLE_EQ(contrast(black, white), 21);
    EXPECT_DOUBLE_EQ(contrast(white, black), 21);
}

TEST(Contrast, WeighsThePrimaries)
{
    EXPECT_NEAR(contrast({0xff, 0, 0}, black), 5.252, 0.001);
    EXPECT_NEAR(contrast({0, 0xff, 0}, black), 15.304, 0.001);
    EXPECT_NEAR(contrast({0, 0, 0xff}, black), 2.444, 0.001);
}

TEST(Contrast, IsLinearInTheDarkestGreys) { EXPECT_NEAR(contrast({10, 10, 10}, black), 1.0607, 0.0001); }

TEST(Contrast, KnowsTheGreysAtTheLimitOnWhite)
{
    EXPECT_GE(contrast({0x76, 0x76, 0x76}, white), legible);
    EXPECT_LT(contrast({0x77, 0x77, 0x77}, white), legible);
}

} // namespace
