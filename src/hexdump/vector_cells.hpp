/// \file
/// The cells of a long byte dump, many at once.
#pragma once

#include <span>
#include <string_view>

namespace kestry::detail {

/// Writes the two common cells, "41 " and "\x1b[32m41 ": nothing or five characters before the digits, and
/// one after them. Returns false, and has written nothing, for other cells, for fewer bytes than a vector
/// has, and on a processor without AVX2 or the vectors of AArch64.
bool put_vector_cells(char* out, std::span<unsigned char const> bytes, std::string_view before, std::string_view after);

} // namespace kestry::detail
