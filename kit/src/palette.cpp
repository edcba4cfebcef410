#include "kestry/kit/style.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kestry::kit {

namespace {

struct channels {
    std::uint8_t r;
    std::uint8_t g;
    std::uint8_t b;
};

// ---------------------------------------------------------------------------------------------
// The colours of terminals
// ---------------------------------------------------------------------------------------------

// The first sixteen as xterm has them; a terminal's theme may have others.
constexpr std::array<channels, 16> named_colors{{
    {0, 0, 0},
    {205, 0, 0},
    {0, 205, 0},
    {205, 205, 0},
    {0, 0, 238},
    {205, 0, 205},
    {0, 205, 205},
    {229, 229, 229},
    {127, 127, 127},
    {255, 0, 0},
    {0, 255, 0},
    {255, 255, 0},
    {92, 92, 255},
    {255, 0, 255},
    {0, 255, 255},
    {255, 255, 255},
}};

// From here on all terminals agree: a cube of 6 x 6 x 6 colours, then 24 greys.
constexpr int first_fixed = 16;
constexpr int first_grey = 232;

constexpr channels fixed_color(int n)
{
    if (n >= first_grey) {
        auto const grey = static_cast<std::uint8_t>(8 + 10 * (n - first_grey));
        return {grey, grey, grey};
    }
    auto const step = [](int i) { return static_cast<std::uint8_t>(i == 0 ? 0 : 55 + 40 * i); };
    int const cell = n - first_fixed;
    return {step(cell / 36), step(cell / 6 % 6), step(cell % 6)};
}

// ---------------------------------------------------------------------------------------------
// How far apart two colours look: CIE 1976, the distance in L*a*b* (white D65)
// ---------------------------------------------------------------------------------------------

struct lab {
    float l;
    float a;
    float b;
};

// The n-th root of x from 0 to 1, by Newton's method: the functions of <cmath> are not for constants.
constexpr double root(int n, double x)
{
    if (x <= 0) {
        return 0;
    }
    double r = 1;
    for (int i = 0; i < 60; ++i) {
        double power = 1;
        for (int k = 1; k < n; ++k) {
            power *= r;
        }
        double const next = r - (r * power - x) / (n * power);
        if (next >= r) {
            break; // it comes from above, and has arrived
        }
        r = next;
    }
    return r;
}

// The light of a channel: the curve of sRGB.
constexpr auto light = [] {
    std::array<float, 256> of{};
    for (std::size_t i = 0; i < of.size(); ++i) {
        double const c = static_cast<double>(i) / 255;
        double const x = (c + 0.055) / 1.055;
        of[i] = static_cast<float>(c <= 0.04045 ? c / 12.92 : x * x * root(5, x * x)); // x to the 2.4
    }
    return of;
}();

template <class CubeRoot>
constexpr lab to_lab(channels const& c, CubeRoot cube_root)
{
    auto const f = [cube_root](float t) {
        return t > 216.F / 24389.F ? cube_root(t) : (24389.F / 27.F * t + 16) / 116;
    };
    float const r = light[c.r];
    float const g = light[c.g];
    float const b = light[c.b];
    float const x = f((0.4124564F * r + 0.3575761F * g + 0.1804375F * b) / 0.95047F);
    float const y = f(0.2126729F * r + 0.7151522F * g + 0.0721750F * b);
    float const z = f((0.0193339F * r + 0.1191920F * g + 0.9503041F * b) / 1.08883F);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

constexpr float constant_cube_root(float x)
{
    return x >= 1 ? 1.F : static_cast<float>(root(3, static_cast<double>(x)));
}

constexpr auto fixed_labs = [] {
    std::array<lab, 256 - first_fixed> labs{};
    for (std::size_t i = 0; i < labs.size(); ++i) {
        labs[i] = to_lab(fixed_color(static_cast<int>(i) + first_fixed), constant_cube_root);
    }
    return labs;
}();

constexpr auto named_labs = [] {
    std::array<lab, named_colors.size()> labs{};
    for (std::size_t i = 0; i < labs.size(); ++i) {
        labs[i] = to_lab(named_colors[i], constant_cube_root);
    }
    return labs;
}();

float squared_distance(lab const& one, lab const& other)
{
    float const l = one.l - other.l;
    float const a = one.a - other.a;
    float const b = one.b - other.b;
    return l * l + a * a + b * b;
}

lab seen(channels const& c)
{
    return to_lab(c, [](float x) { return std::cbrt(x); });
}

// ---------------------------------------------------------------------------------------------
// The nearest
// ---------------------------------------------------------------------------------------------

int nearest_fixed(channels const& c)
{
    lab const wanted = seen(c);
    int nearest = 0;
    float least = std::numeric_limits<float>::infinity();
    for (std::size_t i = 0; i < fixed_labs.size(); ++i) {
        float const distance = squared_distance(wanted, fixed_labs[i]);
        if (distance < least) {
            least = distance;
            nearest = static_cast<int>(i);
        }
    }
    return nearest + first_fixed;
}

// Less colourful than this is grey to most eyes: the distance from grey in L*a*b*.
constexpr float least_chroma = 12;

int nearest_named(channels const& c)
{
    lab const wanted = seen(c);
    auto const nearest_of = [&wanted](auto... candidates) {
        int nearest = -1;
        float least = std::numeric_limits<float>::infinity();
        for (int const n : {candidates...}) {
            float const distance = squared_distance(wanted, named_labs[static_cast<std::size_t>(n)]);
            if (distance < least) {
                least = distance;
                nearest = n;
            }
        }
        return nearest;
    };
    if (wanted.a * wanted.a + wanted.b * wanted.b < least_chroma * least_chroma) {
        return nearest_of(0, 8, 7, 15);
    }
    // The nearest of six hues: a channel is on if it is nearer to the largest one than to the smallest one.
    int const smallest = std::min({c.r, c.g, c.b});
    int const largest = std::max({c.r, c.g, c.b});
    auto const is_on = [=](int channel) { return 2 * channel > smallest + largest ? 1 : 0; };
    int const hue = is_on(c.r) + 2 * is_on(c.g) + 4 * is_on(c.b);
    return nearest_of(hue, hue + 8);
}

color named(int n) { return {color_kind::named, static_cast<std::uint8_t>(n)}; }

} // namespace

color reduced(color const& c, color_depth depth) noexcept
{
    if (depth == color_depth::none) {
        return {};
    }
    if (c.kind == color_kind::rgb && depth == color_depth::ansi256) {
        return palette(nearest_fixed({c.r, c.g, c.b}));
    }
    if (c.kind == color_kind::rgb && depth == color_depth::ansi16) {
        return named(nearest_named({c.r, c.g, c.b}));
    }
    if (c.kind == color_kind::palette && depth == color_depth::ansi16) {
        return named(c.r < first_fixed ? c.r : nearest_named(fixed_color(c.r)));
    }
    return c;
}

style reduced(style const& s, color_depth depth) noexcept
{
    if (depth == color_depth::none) {
        return {};
    }
    return {reduced(s.foreground, depth), reduced(s.background, depth), s.attributes};
}

} // namespace kestry::kit
