#include "rendition.hpp"

#include "sgr.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>

namespace kestry::kit::detail {

namespace {

// The attributes of a rendition by the numbers of their bits, those of a style first, and the codes that select them.
constexpr unsigned underline_style = 400; // 4:n as a number
constexpr std::array<unsigned, 14> codes{
    1,                   // bold
    2,                   // faint
    3,                   // italic
    4,                   // underlined
    5,                   // blinking slowly
    7,                   // reverse
    8,                   // concealed
    9,                   // crossed out
    21,                  // underlined twice: no end of bold, whatever the console of Linux does
    underline_style + 3, // curly
    underline_style + 4, // dotted
    underline_style + 5, // dashed
    6,                   // blinking fast
    53,                  // overlined
};

// Attributes that one code ends.
struct attribute_group {
    unsigned mask = 0;
    unsigned off = 0;
    bool is_exclusive = false; // one takes the place of another
};

constexpr attribute_group groups[] = {
    {0x0003, 22}, {0x0004, 23}, {underlines, 24, true}, {blinks, 25, true},
    {0x0020, 27}, {0x0040, 28}, {0x0080, 29},           {0x2000, 55},
};

// By the number of a bit.
constexpr auto group_of = [] {
    std::array<attribute_group, codes.size()> of{};
    for (attribute_group const& group : groups) {
        for (unsigned bits = group.mask; bits != 0; bits &= bits - 1) {
            of[static_cast<std::size_t>(std::countr_zero(bits))] = group;
        }
    }
    return of;
}();

// ---------------------------------------------------------------------------------------------
// Writing
// ---------------------------------------------------------------------------------------------

constexpr char* write(char* out, std::string_view bytes) { return out + bytes.copy(out, bytes.size()); }

// 0 to 255 in digits.
struct digits {
    std::array<char, 3> text{};
    std::uint8_t size = 0;
};

constexpr auto all_digits = [] {
    std::array<digits, 256> all{};
    for (unsigned n = 0; n < all.size(); ++n) {
        digits& of = all[n];
        for (unsigned power = n >= 100 ? 100 : n >= 10 ? 10 : 1; power != 0; power /= 10) {
            of.text[of.size++] = static_cast<char>('0' + n / power % 10);
        }
    }
    return all;
}();

// Three bytes are written whatever the number is.
constexpr char* write_number(char* out, unsigned n)
{
    digits const& written = all_digits[n];
    std::copy(written.text.begin(), written.text.end(), out);
    return out + written.size;
}

constexpr char* write_parameter(char* out, unsigned n)
{
    out = write_number(out, n);
    *out = ';';
    return out + 1;
}

// Where a colour is, and what selects it there.
struct place {
    unsigned base;   // of eight named ones; 0: it has none
    unsigned bright; // of eight bright ones
    unsigned any;
    unsigned off;
};

constexpr place foreground_place{30, 90, 38, 39};
constexpr place background_place{40, 100, 48, 49};
constexpr place line_place{0, 0, 58, 59};

constexpr char* write_color(char* out, color const& c, place const& where)
{
    switch (c.kind) {
    case color_kind::none:
    case color_kind::standard:
        return write_parameter(out, where.off);
    case color_kind::named:
        if (where.base != 0) {
            return write_parameter(out, (c.r % 16 < 8 ? where.base : where.bright) + c.r % 8);
        }
        [[fallthrough]];
    case color_kind::palette:
        return write_parameter(write(write_parameter(out, where.any), "5;"), c.r);
    case color_kind::rgb:
        out = write(write_parameter(out, where.any), "2;");
        return write_parameter(write_parameter(write_parameter(out, c.r), c.g), c.b);
    }
    return out; // no enumerator
}

// Terminals take 16 or more, and the rest of a longer sequence is lost.
constexpr std::ptrdiff_t most_parameters = 16;

constexpr std::ptrdiff_t parameters_of(color const& c)
{
    return c.kind == color_kind::rgb ? 5 : c.kind == color_kind::palette ? 3 : 1;
}

constexpr char* write_attributes(char* out, unsigned from, unsigned to)
{
    unsigned added = to & ~from;
    for (unsigned removed = from & ~to; removed != 0;) {
        attribute_group const& group = group_of[static_cast<std::size_t>(std::countr_zero(removed))];
        if (!group.is_exclusive || (added & group.mask) == 0) {
            out = write_parameter(out, group.off);
            added |= to & group.mask; // the end was that of others too
        }
        removed &= ~group.mask;
    }
    for (; added != 0; added &= added - 1) {
        unsigned const code = codes[static_cast<std::size_t>(std::countr_zero(added))];
        out = code < underline_style ? write_parameter(out, code)
                                     : write_parameter(write(out, "4:"), code - underline_style);
    }
    return out;
}

constexpr char* write_steps(char* out, rendition const& from, rendition const& to)
{
    if (from == to) {
        return out;
    }
    char* sequence = out;
    out = write(out, "\x1b[");
    if (from.attributes != to.attributes) {
        out = write_attributes(out, from.attributes, to.attributes);
    }
    auto const change_color = [&sequence, &out](color const& before, color const& after, place const& where) {
        if (before == after) {
            return;
        }
        bool const may_be_too_long = out - sequence > 2 * (most_parameters - 5);
        if (may_be_too_long && std::count(sequence, out, ';') + parameters_of(after) > most_parameters) {
            out[-1] = 'm';
            sequence = out;
            out = write(out, "\x1b[");
        }
        out = write_color(out, after, where);
    };
    change_color(from.foreground, to.foreground, foreground_place);
    change_color(from.background, to.background, background_place);
    change_color(from.line, to.line, line_place);
    out[-1] = 'm'; // in the place of the last semicolon
    return out;
}

// ---------------------------------------------------------------------------------------------
// What is written most
// ---------------------------------------------------------------------------------------------

constexpr plain_sequences sequences_of(rendition const& look)
{
    plain_sequences found;
    std::array<char, longest_change> bytes{};
    auto const size_of = [&bytes](char const* end) { return static_cast<std::size_t>(end - bytes.data()); };
    std::size_t const begin = size_of(write_steps(bytes.data(), {}, look));
    std::copy_n(bytes.begin(), begin, found.begin.begin());
    std::size_t const end = size_of(write_steps(bytes.data(), look, {}));
    std::copy_n(bytes.begin(), end, found.end.end() - end);
    found.begin_size = static_cast<std::uint8_t>(begin);
    found.end_size = static_cast<std::uint8_t>(end);
    return found;
}

// ---------------------------------------------------------------------------------------------
// Reading
// ---------------------------------------------------------------------------------------------

constexpr color named(unsigned n) { return {color_kind::named, static_cast<std::uint8_t>(n)}; }

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
    auto const* const found = std::find(codes.begin(), codes.end(), code);
    unsigned const selected_bit = found == codes.end() ? 0 : 1U << (found - codes.begin());
    for (attribute_group const& group : groups) {
        if (code == group.off) {
            bits = (bits & ~group.mask) | (around.attributes & group.mask);
        } else if (group.is_exclusive && (selected_bit & group.mask) != 0) {
            bits &= ~group.mask;
        }
    }
    shown.attributes = static_cast<std::uint16_t>(bits | selected_bit);
}

} // namespace

style style_in(rendition const& shown) noexcept
{
    return {shown.foreground, shown.background, static_cast<std::uint8_t>(shown.attributes)};
}

void follow(std::string_view parameters, rendition& shown, rendition const& around, color_depth depth) noexcept
{
    for_each_sgr(parameters, [&](sgr_parameter const& selected) {
        unsigned const n = selected.code;
        auto const set = [&](color& of) {
            color const c = read_color(selected.text);
            of = c.kind == color_kind::none ? of : reduced(c, depth);
        };
        // clang-format off
        if      (n == 0)               shown = around;
        else if (n >= 30 && n <= 37)   shown.foreground = named(n - 30);
        else if (n >= 90 && n <= 97)   shown.foreground = named(n - 90 + 8);
        else if (n >= 40 && n <= 47)   shown.background = named(n - 40);
        else if (n >= 100 && n <= 107) shown.background = named(n - 100 + 8);
        else if (n == 38)              set(shown.foreground);
        else if (n == 48)              set(shown.background);
        else if (n == 58)              set(shown.line);
        else if (n == 39)              shown.foreground = around.foreground;
        else if (n == 49)              shown.background = around.background;
        else if (n == 59)              shown.line = around.line;
        else if (n < underline_style)  follow_attribute(selected, shown, around);
        // clang-format on
    });
}

char* write_change(char* out, rendition const& from, rendition const& to) noexcept
{
    return write_steps(out, from, to);
}

constinit std::array<std::array<plain_sequences, 17>, 9> const sequences_of_one = [] {
    std::array<std::array<plain_sequences, 17>, 9> all{};
    for (unsigned attribute = 0; attribute < all.size(); ++attribute) {
        for (unsigned foreground = 0; foreground < all[attribute].size(); ++foreground) {
            rendition look;
            look.attributes = static_cast<std::uint16_t>(attribute == 0 ? 0 : 1U << (attribute - 1));
            look.foreground = foreground == 0 ? color{} : named(foreground - 1);
            all[attribute][foreground] = sequences_of(look);
        }
    }
    return all;
}();

} // namespace kestry::kit::detail
