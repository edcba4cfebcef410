#include "kestry/kit/text.hpp"

#include <gtest/gtest.h>

namespace {

using kestry::kit::alignment;
using kestry::kit::display_width;
using kestry::kit::pad;
using kestry::kit::strip_escapes;
using kestry::kit::truncate; // hides that of POSIX

TEST(DisplayWidth, Counts)
{
    EXPECT_EQ(display_width("naïve"), 5u);
    EXPECT_EQ(display_width("日本"), 4u);
    EXPECT_EQ(display_width("\x1b[1mx\x1b[m"), 1u);
    EXPECT_EQ(display_width("👩‍👩‍👧"), 2u);
    EXPECT_EQ(display_width("❤️"), 2u);
    EXPECT_EQ(display_width("❤"), 1u);
    EXPECT_EQ(display_width("🇩🇪🇫🇷"), 4u);
    EXPECT_EQ(display_width("\xff\xfe"), 2u);
}

TEST(Truncate, Cuts)
{
    EXPECT_EQ(truncate("Hueline", 4), "Hue…");
    EXPECT_EQ(truncate("Hueline", 7), "Hueline");
    EXPECT_EQ(truncate("Hueline", 5, "..."), "Hu...");
    EXPECT_EQ(truncate("\x1b[31mHueline\x1b[m", 4), "\x1b[31mHue…\x1b[39m");
}

TEST(Pad, Pads)
{
    EXPECT_EQ(pad("né", 4), "né  ");
    EXPECT_EQ(pad("日", 4, alignment::right), "  日");
    EXPECT_EQ(pad("ab", 5, alignment::center), " ab  ");
    EXPECT_EQ(pad("\x1b[31mx", 3), "\x1b[31mx\x1b[39m  ");
}

TEST(StripEscapes, Strips)
{
    EXPECT_EQ(strip_escapes("\x1b[1mx\x1b[0m"), "x");
    EXPECT_EQ(strip_escapes("\x1b]8;;https://kestry.example\x1b\\link\x1b]8;;\a"), "link");
}

} // namespace
