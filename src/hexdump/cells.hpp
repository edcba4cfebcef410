/// \file
/// The cells of a byte dump: the one loop of the library that long inputs go through.
#pragma once

#include <span>
#include <string_view>

namespace kestry::detail {

/// Writes each byte as before, two digits, after, and returns the place after the last. Between there
/// and limit, the end of the buffer, anything may be written.
char* put_cells(char* out, char const* limit, std::span<unsigned char const> bytes, std::string_view before,
                std::string_view after);

} // namespace kestry::detail
