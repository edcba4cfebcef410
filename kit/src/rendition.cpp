#include "rendition.hpp"

#include "sgr.hpp"

#include <algorithm>
#include <array>
#include <cstring>

namespace kestry::kit::detail {

namespace {

struct attribute {
    std::uint16_t bit = 0;
    unsigned on = 0;
};

struct attribute_group {
    unsigned off;             // ends all of them
    bool is_exclusive = true; // one takes the place of another
    std::array<attribute, 5> members;

    constexpr unsigned mask() const
    {
        unsigned bits = 0;
        for (attribute const& member : members) {
            bits |= member.bit;
        }
        return bits;
    }
};

constexpr unsigned underline_style = 400; // 4:n as a number

// 21 is no end of bold: it is the double underline of ECMA-48, and of most terminals.
// clang-format off
constexpr attribute_group groups[] = {
    {22, false, {{{0x01, 1}, {0x02, 2}}}},   // bold, faint
    {23, true,  {{{0x04, 3}}}},              // italic
    {24, true,  {{{0x08, 4}, {0x0100, 21}, {0x0200, 403}, {0x0400, 404}, {0x0800, 405}}}}, // underlined: once, twice,
                                                                                           // curly, dotted, dashed
    {25, true,  {{{0x10, 5}, {0x1000, 6}}}}, // blinking: slowly, fast
    {27, true,  {{{0x20, 7}}}},              // reverse
    {28, true,  {{{0x40, 8}}}},              // concealed
    {29, true,  {{{0x80, 9}}}},              // crossed out
    {55, true,  {{{0x2000, 53}}}},           // overlined
};
// clang-format on

// ---------------------------------------------------------------------------------------------
// Writing
// ---------------------------------------------------------------------------------------------

char* write(char* out, std::string_view bytes) { return out + bytes.copy(out, bytes.size()); }

char* write_number(char* out, unsigned n)
{
    if (n >= 100) {
        *out++ = static_cast<char>('0' + n / 100);
    }
    if (n >= 10) {
        *out++ = static_cast<char>('0' + n / 10 % 10);
    }
    *out++ = static_cast<char>('0' + n % 10);
    return out;
}

// Where a colour is, and what selects it there.
struct place {
    unsigned base;   // of eight named ones; 0: it has none
    unsigned bright; // of eight bright ones
    std::string_view any;
    std::string_view off;
};

constexpr place foreground_place{30, 90, "38", "39"};
constexpr place background_place{40, 100, "48", "49"};
constexpr place line_place{0, 0, "58", "59"};

char* write_color(char* out, color const& c, place const& where)
{
    switch (c.kind) {
    case color_kind::none:
    case color_kind::standard:
        return write(out, where.off);
    case color_kind::named:
        if (where.base != 0) {
            return write_number(out, c.r < 8U ? where.base + c.r : where.bright + c.r - 8U);
        }
        [[fallthrough]];
    case color_kind::palette:
        return write_number(write(write(out, where.any), ";5;"), c.r);
    case color_kind::rgb:
        out = write_number(write(write(out, where.any), ";2;"), c.r);
        *out++ = ';';
        out = write_number(out, c.g);
        *out++ = ';';
        return write_number(out, c.b);
    }
    return out; // no enumerator
}

char* write_attribute(char* out, unsigned code)
{
    return code < underline_style ? write_number(out, code) : write_number(write(out, "4:"), code - underline_style);
}

char* write_attributes(char* out, unsigned from, unsigned to)
{
    for (attribute_group const& group : groups) {
        unsigned const mask = group.mask();
        unsigned on = to & ~from & mask;
        if ((from & ~to & mask) != 0) {
            if (!group.is_exclusive || on == 0) {
                out = write_number(out, group.off);
                *out++ = ';';
            }
            on = to & mask; // the end was that of others too
        }
        for (attribute const& member : group.members) {
            if ((on & member.bit) != 0) {
                out = write_attribute(out, member.on);
                *out++ = ';';
            }
        }
    }
    return out;
}

// ---------------------------------------------------------------------------------------------
// Reading
// ---------------------------------------------------------------------------------------------

color named(unsigned n) { return {color_kind::named, static_cast<std::uint8_t>(n)}; }

// The numbers of one selection; what is empty is 0.
struct numbers {
    std::array<unsigned, 7> value = {};
    std::size_t count = 0;
};

numbers read_numbers(std::string_view text)
{
    numbers read;
    while (read.count < read.value.size()) {
        read.value[read.count++] = leading_number(text);
        std::size_t const end = text.find_first_of(":;");
        if (end == std::string_view::npos) {
            break;
        }
        text.remove_prefix(end + 1);
    }
    return read;
}

// The colour that follows 38, 48 or 58, or none where it is none that a terminal would show:
// 38;5;n and 38;2;r;g;b, 38:5:n, 38:2:r:g:b and 38:2:colour space:r:g:b (ITU-T T.416, 13.1.8).
color read_color(std::string_view text)
{
    auto const [n, count] = read_numbers(text);
    if (n[1] == 5 && count >= 3) {
        return n[2] < 256 ? palette(static_cast<int>(n[2])) : color{};
    }
    if (n[1] != 2 || count < 5) {
        return {};
    }
    std::size_t const r = count >= 6 && text.find(':') != std::string_view::npos ? 3 : 2;
    bool const is_valid = n[r] < 256 && n[r + 1] < 256 && n[r + 2] < 256;
    return is_valid ? rgb(static_cast<int>(n[r]), static_cast<int>(n[r + 1]), static_cast<int>(n[r + 2])) : color{};
}

void follow_attribute(sgr_parameter const& selected, rendition& shown, rendition const& around)
{
    unsigned code = selected.code;
    if (code == 4 && selected.text.find(':') != std::string_view::npos) {
        unsigned const shape = read_numbers(selected.text).value[1];
        code = shape == 0 ? 24 : shape == 1 ? 4 : shape == 2 ? 21 : underline_style + shape;
    }
    unsigned bits = shown.attributes;
    for (attribute_group const& group : groups) {
        if (code == group.off) {
            bits = (bits & ~group.mask()) | (around.attributes & group.mask());
        }
        for (attribute const& member : group.members) {
            if (member.bit != 0 && code == member.on) {
                bits = (group.is_exclusive ? bits & ~group.mask() : bits) | member.bit;
            }
        }
    }
    shown.attributes = static_cast<std::uint16_t>(bits);
}

} // namespace

rendition combined(rendition const& around, style const& look, color_depth depth) noexcept
{
    if (depth == color_depth::none) {
        return {};
    }
    auto const on_top = [depth](color const& under, color const& over) {
        switch (over.kind) {
        case color_kind::none:
            return under;
        case color_kind::standard:
            return color{};
        default:
            return reduced(over, depth);
        }
    };
    rendition result = around;
    for (attribute_group const& group : groups) {
        if (group.is_exclusive && (look.attributes & group.mask()) != 0) {
            result.attributes &= static_cast<std::uint16_t>(~group.mask());
        }
    }
    result.attributes |= look.attributes;
    result.foreground = on_top(around.foreground, look.foreground);
    result.background = on_top(around.background, look.background);
    return result;
}

style style_in(rendition const& shown) noexcept
{
    return {shown.foreground, shown.background, static_cast<std::uint8_t>(shown.attributes)};
}

void follow(std::string_view parameters, rendition& shown, rendition const& around, color_depth depth) noexcept
{
    for_each_sgr(parameters, [&](sgr_parameter const& selected) {
        unsigned const n = selected.code;
        auto const paint = [&](color& of) {
            color const c = read_color(selected.text);
            of = c.kind == color_kind::none ? of : reduced(c, depth);
        };
        // clang-format off
        if      (n == 0)               shown = around;
        else if (n >= 30 && n <= 37)   shown.foreground = named(n - 30);
        else if (n >= 90 && n <= 97)   shown.foreground = named(n - 90 + 8);
        else if (n >= 40 && n <= 47)   shown.background = named(n - 40);
        else if (n >= 100 && n <= 107) shown.background = named(n - 100 + 8);
        else if (n == 38)              paint(shown.foreground);
        else if (n == 48)              paint(shown.background);
        else if (n == 58)              paint(shown.line);
        else if (n == 39)              shown.foreground = around.foreground;
        else if (n == 49)              shown.background = around.background;
        else if (n == 59)              shown.line = around.line;
        else if (n < underline_style)  follow_attribute(selected, shown, around);
        // clang-format on
    });
}

char* write_change(char* out, rendition const& from, rendition const& to) noexcept
{
    char* const start = out;
    out = write(out, "\x1b[");
    if (from.attributes != to.attributes) {
        out = write_attributes(out, from.attributes, to.attributes);
    }
    auto const change_color = [&out](color const& before, color const& after, place const& where) {
        if (before != after) {
            out = write_color(out, after, where);
            *out++ = ';';
        }
    };
    change_color(from.foreground, to.foreground, foreground_place);
    change_color(from.background, to.background, background_place);
    change_color(from.line, to.line, line_place);
    if (out == start + 2) {
        return start;
    }
    out[-1] = 'm'; // in the place of the last semicolon
    return out;
}

} // namespace kestry::kit::detail
