#include "hexview_rows.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cstring>
#include <string_view>

namespace kestry::kit::detail {

namespace {

// ---------------------------------------------------------------------------------------------
// Characters of a byte
// ---------------------------------------------------------------------------------------------

// The characters of each byte.
template <std::size_t size>
using byte_table = std::array<std::array<char, size>, 256>;

constexpr byte_table<2> hexadecimal(std::string_view digits)
{
    byte_table<2> table{};
    for (std::size_t b = 0; b != table.size(); ++b) {
        table[b] = {digits[b / 16], digits[b % 16]};
    }
    return table;
}

constexpr byte_table<8> binary()
{
    byte_table<8> table{};
    for (std::size_t b = 0; b != table.size(); ++b) {
        for (std::size_t bit = 0; bit != 8; ++bit) {
            table[b][7 - bit] = (b >> bit & 1) != 0 ? '1' : '0';
        }
    }
    return table;
}

constexpr byte_table<2> small_digits = hexadecimal("0123456789abcdef");
constexpr byte_table<2> capital_digits = hexadecimal("0123456789ABCDEF");
constexpr byte_table<8> bits = binary();

template <std::size_t size>
void put_byte(char* out, byte_table<size> const& table, std::uint64_t byte)
{
    std::memcpy(out, table[byte & 0xff].data(), size);
}

// A table: in random bytes a branch would be mispredicted all the time.
constexpr std::array<char, 256> text_of_bytes()
{
    std::array<char, 256> table{};
    for (std::size_t b = 0; b != table.size(); ++b) {
        table[b] = b >= 0x20 && b <= 0x7e ? static_cast<char>(b) : '.';
    }
    return table;
}

constexpr std::array<char, 256> shown = text_of_bytes();

// ---------------------------------------------------------------------------------------------
// Offsets
// ---------------------------------------------------------------------------------------------

char* put_hexadecimal(char* out, std::uint64_t offset, int at_least)
{
    int const needed = (static_cast<int>(std::bit_width(offset)) + 3) / 4;
    int left = std::max(needed, at_least);
    char* const end = out + left;
    for (; left >= 2; left -= 2, offset >>= 8) {
        put_byte(out + left - 2, small_digits, offset);
    }
    if (left == 1) {
        *out = small_digits[offset & 0xf][1];
    }
    return end;
}

// With zeros between a sign and the first digit.
char* put_padded(char* out, std::string_view digits, int at_least)
{
    std::size_t const width = std::max(digits.size(), static_cast<std::size_t>(at_least));
    std::size_t const sign = digits.front() == '-' ? 1 : 0;
    std::fill_n(out, width, '0');
    digits.substr(0, sign).copy(out, sign);
    digits.substr(sign).copy(out + width - (digits.size() - sign), digits.size());
    return out + width;
}

template <class Number>
char* put_number(char* out, Number number, int base, int at_least)
{
    char digits[longest_offset];
    char* const end = std::to_chars(digits, digits + sizeof digits, number, base).ptr;
    return put_padded(out, {digits, static_cast<std::size_t>(end - digits)}, at_least);
}

} // namespace

char* put_offset(char* out, row_shape const& shape, std::uint64_t offset)
{
    switch (shape.offsets) {
    case hex_offsets::hexadecimal:
        return put_hexadecimal(out, offset, shape.offset_digits);
    case hex_offsets::decimal:
        // xxd has a sign for those from 2^63 on.
        return shape.colon != '\0' ? put_number(out, static_cast<std::int64_t>(offset), 10, shape.offset_digits)
                                   : put_number(out, offset, 10, shape.offset_digits);
    case hex_offsets::octal:
        return put_number(out, offset, 8, shape.offset_digits);
    case hex_offsets::none:
        break;
    }
    return out;
}

// ---------------------------------------------------------------------------------------------
// Rows
// ---------------------------------------------------------------------------------------------

namespace {

std::uint8_t value(std::byte b) { return std::to_integer<std::uint8_t>(b); }

template <std::size_t digits>
void put_digits(char* out, row_shape const& shape, byte_table<digits> const& table, std::byte const* bytes,
                std::size_t size)
{
    for (std::size_t i = 0; i != size; ++out) {
        for (std::size_t const end = i + std::min(shape.group, size - i); i != end; ++i, out += shape.cell) {
            put_byte(out, table, value(bytes[i]));
        }
    }
}

// Byte by byte as xxd does it: where digits and text share a column, the later byte has it.
void put_last_first(char* out, row_shape const& shape, byte_table<2> const& table, std::byte const* bytes,
                    std::size_t size)
{
    for (std::size_t i = 0; i != size; ++i) {
        put_byte(out + shape.column(i), table, value(bytes[i]));
        out[shape.text_at + i] = shown[value(bytes[i])];
    }
}

} // namespace

char* put_row(char* out, row_shape const& shape, std::uint64_t offset, std::byte const* bytes, std::size_t size)
{
    out = put_offset(out, shape, offset);
    std::memset(out, ' ', shape.text_at);
    if (shape.colon != '\0') {
        *out = shape.colon;
    }

    byte_table<2> const& digits = shape.uppercase ? capital_digits : small_digits;
    char* const text = out + shape.text_at;
    if (shape.last_first) {
        put_last_first(out, shape, digits, bytes, size);
    } else if (shape.digits == 2) {
        put_digits(out + shape.lead, shape, digits, bytes, size);
    } else {
        put_digits(out + shape.lead, shape, bits, bytes, size);
    }
    for (std::size_t i = 0; i != size && shape.has_text && !shape.last_first; ++i) {
        text[i] = shown[value(bytes[i])];
    }

    char* const end = out + shape.columns(size);
    if (shape.mark_before != '\0') {
        text[-1] = shape.mark_before;
        text[size] = shape.mark_after;
    }
    if (shape.has_line_end) {
        end[-1] = '\n';
    }
    return end;
}

vector_row vectors_for(row_shape const& shape)
{
    vector_row row = {};
    row.columns = shape.columns(shape.width);
    unsigned char constexpr nowhere = 0x80;
    std::memset(row.low_digit, nowhere, sizeof row.low_digit);
    std::memset(row.high_digit, nowhere, sizeof row.high_digit);
    std::memset(row.text, nowhere, sizeof row.text);

    std::byte const none[16] = {};
    char blank[longest_offset + vector_row::most_columns];
    row_shape without_offset = shape;
    without_offset.offsets = hex_offsets::none;
    put_row(blank, without_offset, 0, none, shape.width);
    std::memcpy(row.fixed, blank, row.columns);

    // In the order of put_last_first: the later one has the column, and what is after the row is cut off.
    std::size_t const line_end = row.columns - (shape.has_line_end ? 1 : 0);
    auto const put = [&row, line_end](unsigned char* source, std::size_t column, std::size_t which) {
        if (column < line_end) {
            row.fixed[column] = 0;
            row.low_digit[column] = row.high_digit[column] = row.text[column] = nowhere;
            source[column] = static_cast<unsigned char>(which);
        }
    };
    for (std::size_t i = 0; i != shape.width; ++i) {
        unsigned char* const digits = i < 8 ? row.low_digit : row.high_digit;
        put(digits, shape.column(i), i % 8 * 2);
        put(digits, shape.column(i) + 1, i % 8 * 2 + 1);
        if (shape.has_text) {
            put(row.text, shape.text_at + i, i);
        }
    }
    return row;
}

} // namespace kestry::kit::detail
