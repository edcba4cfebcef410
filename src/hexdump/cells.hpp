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

/// The same without the vectors that not every processor has.
char* put_table_cells(char* out, char const* limit, std::span<unsigned char const> bytes, std::string_view before,
                      std::string_view after);

} // namespace kestry::detail
