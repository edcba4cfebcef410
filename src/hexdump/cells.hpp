/// \file
/// The cells of a byte dump: the one loop of the library that long inputs go through.
#pragma once

#include <span>
#include <string_view>

namespace kestry::detail {

/// Writes each byte as before, two digits, after, and returns the place behind the last. What lies
/// between there and limit, the end of the buffer, may be overwritten.
char* put_cells(char* out, char const* limit, std::span<unsigned char const> bytes, std::string_view before,
                std::string_view after);

/// The two common cells, "41 " and "\x1b[32m41 ", many at once. Returns whether it could: not where the
/// processor has no vectors for it, nor other cells, nor fewer than 16 bytes.
bool put_vector_cells(char* out, std::span<unsigned char const> bytes, std::string_view before, std::string_view after);

/// As put_cells, and never by vectors.
char* put_table_cells(char* out, char const* limit, std::span<unsigned char const> bytes, std::string_view before,
                      std::string_view after);

} // namespace kestry::detail
