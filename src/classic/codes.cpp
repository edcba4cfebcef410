#include "kestry/hueline_classic.hpp"

#include "text/digits.hpp"
#include "text/make_string.hpp"
#include "text/sgr.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestry {

using namespace detail;

namespace {

struct Rgb {
    int r;
    int g;
    int b;
};

Rgb constexpr vga[] = {
    {0, 0, 0},       // black
    {128, 0, 0},     // maroon
    {0, 128, 0},     // green
    {128, 128, 0},   // olive
    {0, 0, 128},     // navy
    {128, 0, 128},   // purple
    {0, 128, 128},   // teal
    {192, 192, 192}, // silver
    {128, 128, 128}, // gray
    {255, 0, 0},     // red
    {0, 255, 0},     // lime
    {255, 255, 0},   // yellow
    {0, 0, 255},     // blue
    {255, 0, 255},   // fuchsia
    {0, 255, 255},   // aqua
    {255, 255, 255}, // white
};

SgrSequence sequence(HexColor code) { return SgrSequence("\x1b[", static_cast<int>(code)); }

std::string colored(HexColor code, std::string_view text) { return concatenate({sequence(code), text}); }

// SGR 1 before and SGR 2 after, which is faint and no reset; the colour between them is the ordinary one,
// not the one 60 above it.
std::string bright_colored(HexColor code, std::string_view text)
{
    return concatenate({"\x1b[1m", sequence(code), text, "\x1b[2m"});
}

} // namespace

std::string Hueline::color(HexColor const& code) { return isUsingColor() ? sequence(code).str() : std::string{}; }

std::string Hueline::bright_color(HexColor const& code)
{
    // 64 bits: an int overflows near INT_MAX.
    return isUsingColor() ? SgrSequence("\x1b[", static_cast<std::int64_t>(code) + 60).str() : std::string{};
}

std::string Hueline::color(int a, int r, int g, int b)
{
    return isUsingColor() ? SgrSequence("\x1b[", a, 2, r, g, b).str() : std::string{};
}

std::string Hueline::color(int r, int g, int b) { return color(38, r, g, b); }

std::string Hueline::color_bg(int r, int g, int b) { return color(48, r, g, b); }

std::string Hueline::color(HexColor_VGA const& v)
{
    // Before the colour switch is asked: a wrong code is wrong also while colour is not in use.
    auto const index = static_cast<unsigned>(v);
    if (index >= std::size(vga)) {
        throw UnknownCodeException{};
    }
    return color_bg(vga[index].r, vga[index].g, vga[index].b);
}

std::string Hueline::color(HexColor const& code, unsigned char x)
{
    return isUsingColor() ? colored(code, hex_digits(x)) : std::string{hex_digits(x)};
}

std::string Hueline::bright_color(HexColor const& code, unsigned char x)
{
    return isUsingColor() ? bright_colored(code, hex_digits(x)) : std::string{hex_digits(x)};
}

std::string Hueline::color(HexColor const& code, std::string const& s) { return isUsingColor() ? colored(code, s) : s; }

std::string Hueline::bright_color(HexColor const& code, std::string const& s)
{
    return isUsingColor() ? bright_colored(code, s) : s;
}

} // namespace kestry
