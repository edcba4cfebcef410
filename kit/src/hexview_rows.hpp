/// \file
/// The rows of a hex view as text.
#pragma once

#include "hexview_layout.hpp"

#include <cstddef>
#include <cstdint>

namespace kestry::kit::detail {

// ---------------------------------------------------------------------------------------------
// One row
// ---------------------------------------------------------------------------------------------

/// A row of little endian may have digits after its end: they are written and then cut off.
inline std::size_t room_for_row(row_shape const& shape) { return longest_offset + 2 * shape.columns(shape.width) + 16; }

/// Writes an offset and returns the place after it: at most longest_offset characters.
char* put_offset(char* out, row_shape const& shape, std::uint64_t offset);

/// Writes a row of 1 to shape.width bytes and returns the place after it. Overwrites up to room_for_row characters.
char* put_row(char* out, row_shape const& shape, std::uint64_t offset, std::byte const* bytes, std::size_t size);

// ---------------------------------------------------------------------------------------------
// Many rows at once
// ---------------------------------------------------------------------------------------------

/// How vectors make a row of at most 16 bytes: for each of its columns after the offset, the character that always
/// stands there, or the digit or the character of the text that comes there.
struct vector_row {
    static constexpr std::size_t most_columns = 128;

    alignas(32) unsigned char fixed[most_columns];
    alignas(32) unsigned char low_digit[most_columns];  ///< Of the first eight bytes, or 0x80.
    alignas(32) unsigned char high_digit[most_columns]; ///< Of the other eight, or 0x80.
    alignas(32) unsigned char text[most_columns];       ///< Of the text, or 0x80.
    std::size_t columns;
};

/// Whether vectors can make such rows on this machine.
bool has_vectors(row_shape const& shape);

vector_row vectors_for(row_shape const& shape);

/// As put_row for so many full rows. At each row 16 bytes can be read, and vector_row::most_columns written after its
/// offset.
char* put_vector_rows(char* out, row_shape const& shape, vector_row const& vectors, std::uint64_t offset,
                      std::byte const* bytes, std::size_t rows);

} // namespace kestry::kit::detail
