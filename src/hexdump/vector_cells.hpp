/// \file
/// The cells of a long byte dump, many at once.
#pragma once

#include <span>
#include <string_view>

namespace kestry::detail {

/// Writes the two common cells, "41 " and "\x1b[32m41 ": no text or one of five characters, two digits,
/// one character. Returns whether it could: not other cells, not fewer bytes than a vector has, and not on
/// a processor without vectors for it.
bool put_vector_cells(char* out, std::span<unsigned char const> bytes, std::string_view before, std::string_view after);

} // namespace kestry::detail
