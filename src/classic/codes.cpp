#include "kestry/hueline_classic.hpp"

#include "hexdump/digits.hpp"
#include "sgr.hpp"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestry {

using namespace detail;

namespace {

std::string_view constexpr bright = "\x1b[1m"; // before a bright text
std::string_view constexpr dim = "\x1b[2m";    // behind it: faint, not a reset

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

Sgr sgr(HexColor code) { return Sgr{"\x1b[", static_cast<int>(code)}; }

// The two digits of a byte as a text.
std::string_view digits(unsigned char x) { return {hex_pairs[x].data(), hex_pairs[x].size()}; }

// The parts one after the other, in one allocation.
std::string join(std::string_view a, std::string_view b, std::string_view c = {}, std::string_view d = {})
{
    return make_string(a.size() + b.size() + c.size() + d.size(),
                       [=](char* out) { put_text(put_text(put_text(put_text(out, a), b), c), d); });
}

std::string colored(HexColor code, std::string_view text)
{
    return Hueline::isUsingColor() ? join(sgr(code).view(), text) : std::string{text};
}

// Not the bright code: the ordinary colour between bright and dim.
std::string bright_colored(HexColor code, std::string_view text)
{
    return Hueline::isUsingColor() ? join(bright, sgr(code).view(), text, dim) : std::string{text};
}

} // namespace

std::string Hueline::color(HexColor const& code) { return isUsingColor() ? sgr(code).string() : std::string{}; }

std::string Hueline::bright_color(HexColor const& code)
{
    // 64 bits: the sum is a number for every code.
    return isUsingColor() ? Sgr{"\x1b[", static_cast<std::int64_t>(code) + 60}.string() : std::string{};
}

std::string Hueline::color(int a, int r, int g, int b)
{
    return isUsingColor() ? Sgr{"\x1b[", a, 2, r, g, b}.string() : std::string{};
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

// clang-format off
std::string Hueline::color       (HexColor const& code, unsigned char x)      { return colored(code, digits(x)); }
std::string Hueline::color       (HexColor const& code, std::string const& s) { return colored(code, s); }
std::string Hueline::bright_color(HexColor const& code, unsigned char x)      { return bright_colored(code, digits(x)); }
std::string Hueline::bright_color(HexColor const& code, std::string const& s) { return bright_colored(code, s); }
// clang-format on

} // namespace kestry
