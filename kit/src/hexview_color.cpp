#include "hexview_color.hpp"

#include <algorithm>
#include <bit>
#include <cstring>

namespace kestry::kit::detail {

namespace {

style const& look_of(hex_theme const& theme, unsigned byte)
{
    if (byte == 0) {
        return theme.zero;
    }
    if (byte == 0xff) {
        return theme.all_bits;
    }
    if (byte >= 0x80) {
        return theme.high;
    }
    if (byte == ' ' || (byte >= '\t' && byte <= '\r')) {
        return theme.space;
    }
    return byte > 0x20 && byte < 0x7f ? theme.printable : theme.control;
}

} // namespace

hex_inks::hex_inks(hex_theme const& theme, color_depth depth)
{
    rendition looks[most_inks] = {};
    std::size_t count = 1;
    auto const ink_for = [&](style const& look) {
        rendition const wanted = combined({}, look, depth);
        auto const found = static_cast<std::size_t>(std::find(looks, looks + count, wanted) - looks);
        if (found == count) {
            looks[count++] = wanted;
        }
        return static_cast<ink>(found);
    };
    for (unsigned byte = 0; byte != ink_of_byte.size(); ++byte) {
        ink_of_byte[byte] = ink_for(look_of(theme, byte));
    }
    ink_of_offset = ink_for(theme.offset);

    for (std::size_t from = 0; from != count; ++from) {
        for (std::size_t to = 0; to != count; ++to) {
            sequence& change = changes[from][to];
            change.size = static_cast<std::uint8_t>(write_change(change.text, looks[from], looks[to]) - change.text);
            longest = std::max<std::size_t>(longest, change.size);
        }
    }
}

struct hex_inks::pen {
    char* out;
    char const* row; // what is copied next
    hex_inks const& inks;
    ink now;

    // Without a branch that depends on the bytes, as long as pieces and sequences are short.
    void put(char const* text, std::size_t size)
    {
        std::memcpy(out, text, block);
        if (size > block) {
            std::memcpy(out + block, text + block, size - block);
        }
        out += size;
    }

    void copy_until(char const* end)
    {
        put(row, static_cast<std::size_t>(end - row));
        row = end;
    }

    void change_at(char const* place, ink next)
    {
        copy_until(place);
        sequence const& change = inks.changes[now][next];
        put(change.text, change.size);
        now = next;
    }
};

char* hex_inks::color_row(char* out, ink& now, char const* row, std::size_t offset_size, row_shape const& shape,
                          std::byte const* bytes, std::size_t size) const
{
    auto const ink_for = [&](std::size_t i) { return ink_of_byte[std::to_integer<std::uint8_t>(bytes[i])]; };
    pen p{out, row, *this, now};
    if (offset_size != 0) {
        p.change_at(row, ink_of_offset);
    }

    char const* const columns = row + offset_size;
    char const* const end = columns + shape.columns(size);
    char const* const text = columns + shape.text_at;
    char const* const end_of_bytes = shape.has_text ? text + size : end - (shape.has_line_end ? 1 : 0);

    // Little endian has the bytes of a group in another order, in the last one blanks instead of some, and of a group that
    // is not whole digits that are cut off.
    std::size_t const places = shape.last_first ? std::bit_ceil(std::max(size, shape.group)) : size;
    char const* at = columns + shape.lead;
    char const* after_digits = at;
    std::size_t left_in_group = shape.group;
    for (std::size_t place = 0; place != places && at < end_of_bytes; ++place) {
        std::size_t const i = shape.place(place);
        if (i < size) {
            p.change_at(at, ink_for(i));
            after_digits = at + shape.digits;
        }
        at += shape.cell;
        if (--left_in_group == 0) {
            left_in_group = shape.group;
            ++at;
        }
    }
    if (shape.has_text) {
        // Where digits stand over the text, they have the colour.
        auto const covered = static_cast<std::size_t>(std::max<std::ptrdiff_t>(after_digits - text, 0));
        for (std::size_t i = covered; i < size; ++i) {
            p.change_at(text + i, ink_for(i));
        }
    }
    if (shape.has_text || shape.has_line_end) {
        p.change_at(end_of_bytes, 0);
    }
    p.copy_until(end);
    now = p.now;
    return p.out;
}

char* hex_inks::color_offset(char* out, char const* offset, std::size_t size) const
{
    pen p{out, offset, *this, 0};
    p.change_at(offset, ink_of_offset);
    p.change_at(offset + size, 0);
    return p.out;
}

char* hex_inks::end_color(char* out, ink& now) const
{
    sequence const& change = changes[now][0];
    now = 0;
    return std::copy_n(change.text, change.size, out);
}

} // namespace kestry::kit::detail
