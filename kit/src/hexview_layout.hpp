/// \file
/// Where everything stands in the rows of a hex view.
#pragma once

#include "kestry/kit/hexview.hpp"

#include <cstddef>
#include <cstdint>

namespace kestry::kit::detail {

/// Which rows are left out.
enum class hex_squeeze : unsigned char {
    none,
    zeros, ///< As xxd -a: of three and more rows of zeros all but the first, and the last at the end of the data.
    equal, ///< As hexdump and od: a row that equals the one before.
};

/// A row: an offset; from there on columns are counted from 0: a colon, the digits of each byte, blanks, text between two
/// marks, and the line end. Plain digits are a row without offset and text.
struct row_shape {
    std::size_t width;     ///< Bytes in a row.
    std::size_t group;     ///< Bytes in a group, 1 to width.
    std::size_t digits;    ///< Characters of a byte: two, or eight bits.
    std::size_t lead;      ///< Columns before the first digit.
    std::size_t cell;      ///< Columns from one byte to the next in its group; one more to the next group.
    std::size_t text_at;   ///< The column of the text.
    char colon;            ///< What follows the offset, or '\0'.
    char mark_before;      ///< What stands before the text, or '\0'.
    char mark_after;       ///< What stands after it, or '\0'.
    bool has_text;         ///< If not, a row ends with its last digit.
    bool has_line_end;     ///< If not, all rows are one line.
    bool last_first;       ///< In each group the last byte comes first.
    bool uppercase;        ///< A to F for bytes.
    hex_offsets offsets;   ///< How the offset is written.
    int offset_digits;     ///< At least so many.
    bool ends_with_offset; ///< The last line is the end offset.
    hex_squeeze squeeze;   ///< Which rows are left out.

    /// The place of a byte among the digits of its row.
    std::size_t place(std::size_t byte) const { return last_first ? byte ^ (group - 1) : byte; }

    /// The column of the first digit of a byte.
    std::size_t column(std::size_t byte) const { return lead + cell * place(byte) + place(byte) / group; }

    /// Columns of a row of so many bytes, with its line end.
    std::size_t columns(std::size_t bytes) const
    {
        return (has_text ? text_at + bytes + (mark_after != '\0' ? 1 : 0) : digits * bytes) + (has_line_end ? 1 : 0);
    }
};

/// The most characters that an offset has: 64 bits in octal.
inline constexpr std::size_t longest_offset = 22;

/// Throws std::invalid_argument for options that no layout can follow.
row_shape shape_of(hex_options const& options);

/// Throws std::invalid_argument: the data have fewer bytes before their end than are to be skipped back to.
[[noreturn]] void refuse_skip();

/// As refuse_skip for a skip after the end of the data, where the tool refuses that.
void check_skip_after_end(hex_layout layout);

/// Whether the end offset is of interest where that many bytes were skipped or shown.
bool shows_end_offset(hex_options const& options, std::uint64_t bytes);

} // namespace kestry::kit::detail
