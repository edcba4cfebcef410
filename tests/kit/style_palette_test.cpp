#include <kestry/kit/style.hpp>

#include "support/testing.hpp"

#include <cmath>

namespace {

using namespace kestry::kit;

color entry(int n)
{
    if (n >= 232) {
        int const grey = 8 + 10 * (n - 232);
        return rgb(grey, grey, grey);
    }
    std::array<int, 6> const levels = {0, 95, 135, 175, 215, 255};
    auto const level = [&levels](int i) { return levels[static_cast<std::size_t>(i)]; };
    return rgb(level((n - 16) / 36), level((n - 16) / 6 % 6), level((n - 16) % 6));
}

struct Lab {
    double l;
    double a;
    double b;
};

// IEC 61966-2-1, white D65; CIE 15.
Lab lab(color const& c)
{
    auto const linear = [](std::uint8_t channel) {
        double const v = channel / 255.0;
        return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
    };
    auto const f = [](double t) { return t > std::pow(6.0 / 29, 3) ? std::cbrt(t) : t / 3 * 29 * 29 / 36 + 4.0 / 29; };
    double const r = linear(c.r);
    double const g = linear(c.g);
    double const b = linear(c.b);
    double const x = f((0.4124564 * r + 0.3575761 * g + 0.1804375 * b) / 0.95047);
    double const y = f(0.2126729 * r + 0.7151522 * g + 0.0721750 * b);
    double const z = f((0.0193339 * r + 0.1191920 * g + 0.9503041 * b) / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double difference(Lab const& one, Lab const& other)
{
    return std::hypot(one.l - other.l, one.a - other.a, one.b - other.b);
}

// Hue in degrees of the colour circle, saturation from 0 to 1 (HSV).
struct Hue {
    double degrees;
    double saturation;
};

Hue hue(color const& c)
{
    double const most = std::max({c.r, c.g, c.b});
    double const least = std::min({c.r, c.g, c.b});
    if (most == least) {
        return {0, 0};
    }
    double const range = most - least;
    double const sixths = most == c.r   ? (c.g - c.b) / range
                          : most == c.g ? 2 + (c.b - c.r) / range
                                        : 4 + (c.r - c.g) / range;
    return {std::fmod(sixths * 60 + 360, 360), range / most};
}

// 29 x 29 x 29 colours, the eight corners among them.
std::vector<color> grid()
{
    std::vector<color> colors;
    auto const step = [](int i) { return i * 255 / 28; };
    for (int i = 0; i < 29 * 29 * 29; ++i) {
        colors.push_back(rgb(step(i / 29 / 29), step(i / 29 % 29), step(i % 29)));
    }
    return colors;
}

std::string text(color const& c) { return std::to_string(c.r) + " " + std::to_string(c.g) + " " + std::to_string(c.b); }

TEST(Reduced, KeepsWhatATerminalOf256Has)
{
    for (int n = 0; n < 256; ++n) {
        EXPECT_EQ(reduced(palette(n), color_depth::ansi256), palette(n));
    }
    for (color const& c : {color{}, default_color, black, red, bright_white}) {
        EXPECT_EQ(reduced(c, color_depth::ansi256), c);
    }
}

TEST(Reduced, FindsTheEntriesThemselves)
{
    for (int n = 16; n < 256; ++n) {
        EXPECT_EQ(reduced(entry(n), color_depth::ansi256), palette(n)) << n;
    }
}

TEST(Reduced, IsTheNearestEntryOf256)
{
    std::vector<Lab> entries;
    for (int n = 16; n < 256; ++n) {
        entries.push_back(lab(entry(n)));
    }
    double sum = 0;
    std::vector<color> const colors = grid();
    for (color const& c : colors) {
        color const found = reduced(c, color_depth::ansi256);
        ASSERT_EQ(found.kind, color_kind::palette);
        ASSERT_GE(found.r, 16) << text(c);
        Lab const wanted = lab(c);
        double least = std::numeric_limits<double>::infinity();
        for (Lab const& of : entries) {
            least = std::min(least, difference(wanted, of));
        }
        double const reached = difference(wanted, lab(entry(found.r)));
        EXPECT_LE(reached, least + 0.001) << text(c);
        sum += reached;
    }
    EXPECT_LE(sum / static_cast<double>(colors.size()), 9.6);
}

TEST(Reduced, TakesTheFirstSixteenOfThePaletteByName)
{
    for (int n = 0; n < 16; ++n) {
        color const named{color_kind::named, static_cast<std::uint8_t>(n)};
        EXPECT_EQ(reduced(palette(n), color_depth::ansi16), named);
        EXPECT_EQ(reduced(named, color_depth::ansi16), named);
    }
    EXPECT_EQ(reduced(default_color, color_depth::ansi16), default_color);
    EXPECT_EQ(reduced(color{}, color_depth::ansi16), color{});
}

TEST(Reduced, IsAColorThatAPersonWouldName)
{
    struct {
        color named;
        std::vector<color> given;
    } const rows[] = {
        {black, {rgb(0, 0, 0), rgb(30, 30, 30), palette(16)}},
        {bright_black, {rgb(105, 105, 105), rgb(128, 128, 128), rgb(130, 125, 120)}},
        {white, {rgb(200, 200, 200), rgb(229, 229, 229), palette(255)}},
        {bright_white, {rgb(255, 255, 255), palette(231)}},
        {red, {rgb(205, 0, 0), rgb(139, 0, 0), rgb(60, 0, 0), palette(52)}},
        {bright_red, {rgb(255, 0, 0), rgb(255, 160, 160), palette(196)}},
        {green, {rgb(0, 180, 90), rgb(0, 128, 0)}},
        {bright_green, {rgb(0, 255, 0)}},
        {yellow, {rgb(255, 140, 0), rgb(205, 205, 0)}},
        {blue, {rgb(0, 0, 128), rgb(0, 0, 255)}},
        {bright_blue, {rgb(100, 149, 237)}},
        {magenta, {rgb(128, 0, 128)}},
        {bright_magenta, {rgb(255, 0, 255)}},
        {cyan, {rgb(0, 139, 139)}},
        {bright_cyan, {rgb(0, 255, 255)}},
    };
    for (auto const& [named, all_given] : rows) {
        for (color const& given : all_given) {
            color const found = reduced(given, color_depth::ansi16);
            EXPECT_EQ(found, named) << text(given) << " became " << int{found.r};
        }
    }
}

TEST(Reduced, KeepsTheHueInSixteenColors)
{
    std::array<double, 16> const hues = {-1, 0, 120, 60, 240, 300, 180, -1, -1, 0, 120, 60, 240, 300, 180, -1};
    for (color const& c : grid()) {
        color const found = reduced(c, color_depth::ansi16);
        ASSERT_EQ(found.kind, color_kind::named);
        ASSERT_LT(found.r, 16);
        Lab const of = lab(c);
        bool const is_grey = std::hypot(of.a, of.b) < 12;
        EXPECT_EQ(hues[found.r] < 0, is_grey) << text(c);
        if (!is_grey) {
            double const apart = std::abs(hue(c).degrees - hues[found.r]);
            EXPECT_LE(std::min(apart, 360 - apart), 30.001) << text(c) << " became " << int{found.r};
        }
    }
}

TEST(Reduced, LeavesNoColorWhereThereIsNoneAndAllAtTwentyFourBits)
{
    for (color const& c : {color{}, default_color, red, palette(99), rgb(1, 2, 3)}) {
        EXPECT_EQ(reduced(c, color_depth::none), color{});
        EXPECT_EQ(reduced(c, color_depth::truecolor), c);
    }
    EXPECT_EQ(reduced(fg(red) | bg(rgb(1, 2, 3)) | bold, color_depth::none), style{});
}

TEST(Reduced, TakesBothColorsOfAStyle)
{
    EXPECT_EQ(reduced(fg(rgb(95, 0, 0)) | bg(rgb(0, 95, 0)) | bold | italic, color_depth::ansi256),
              fg(palette(52)) | bg(palette(22)) | bold | italic);
    EXPECT_EQ(reduced(fg(rgb(205, 0, 0)) | bg(palette(9)) | faint, color_depth::ansi16),
              fg(red) | bg(bright_red) | faint);
}

} // namespace
