#include "classic/codes.hpp"

#include "hexdump/digits.hpp"
#include "sgr.hpp"

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

// The two digits of a byte as a text.
std::string_view digits(unsigned char x) { return {hex_pairs[x].data(), hex_pairs[x].size()}; }

// The text behind its colour; a bright one between bright and dim, which is faint and not a reset, and
// in the ordinary colour, not in the bright code. Out of line, so that a text without colour does not
// pay for it.
[[gnu::noinline]] std::string in_color(HexColor code, std::string_view text, bool bright)
{
    auto const number = static_cast<int>(code);
    return make_string((bright ? 8 : 0) + 3 + decimal_size(number) + text.size(), [=](char* out) {
        if (bright) {
            out = put_text(out, "\x1b[1m");
        }
        out = put_text(put_sgr(out, "\x1b[", number), text);
        if (bright) {
            put_text(out, "\x1b[2m");
        }
    });
}

} // namespace

// Here and not with the switches, so that the functions below have it inline.
bool Hueline::isUsingColor() { return _useColor && !_noFrillsMode; }

std::string detail::colored(HexColor code, std::string const& text)
{
    return Hueline::isUsingColor() ? in_color(code, text, false) : text;
}

std::string detail::bright_colored(HexColor code, std::string const& text)
{
    return Hueline::isUsingColor() ? in_color(code, text, true) : text;
}

std::string detail::colored(HexColor code, unsigned char byte)
{
    return Hueline::isUsingColor() ? in_color(code, digits(byte), false) : std::string{digits(byte)};
}

std::string detail::bright_colored(HexColor code, unsigned char byte)
{
    return Hueline::isUsingColor() ? in_color(code, digits(byte), true) : std::string{digits(byte)};
}

std::string Hueline::color(HexColor const& code)
{
    return isUsingColor() ? sgr_string(static_cast<int>(code)) : std::string{};
}

std::string Hueline::bright_color(HexColor const& code)
{
    // 64 bits: the sum is a number for every code.
    return isUsingColor() ? sgr_string(static_cast<std::int64_t>(code) + 60) : std::string{};
}

std::string Hueline::color(int a, int r, int g, int b)
{
    if (!isUsingColor()) {
        return {};
    }
    char sequence[2 + 5 * (longest_decimal + 1)];
    return {sequence, put_sgr(sequence, "\x1b[", a, 2, r, g, b)};
}

std::string Hueline::color(int r, int g, int b)
{
    return isUsingColor() ? true_color_string("\x1b[38;2;", r, g, b) : std::string{};
}

std::string Hueline::color_bg(int r, int g, int b)
{
    return isUsingColor() ? true_color_string("\x1b[48;2;", r, g, b) : std::string{};
}

std::string Hueline::color(HexColor_VGA const& v)
{
    // Before the colour switch is asked: a wrong code is wrong also while colour is not in use.
    auto const index = static_cast<unsigned>(v);
    if (index >= std::size(vga)) {
        throw UnknownCodeException{};
    }
    return color_bg(vga[index].r, vga[index].g, vga[index].b);
}

// clang-format off
std::string Hueline::color       (HexColor const& code, unsigned char x)      { return colored(code, x); }
std::string Hueline::color       (HexColor const& code, std::string const& s) { return colored(code, s); }
std::string Hueline::bright_color(HexColor const& code, unsigned char x)      { return bright_colored(code, x); }
std::string Hueline::bright_color(HexColor const& code, std::string const& s) { return bright_colored(code, s); }
// clang-format on

} // namespace kestry
