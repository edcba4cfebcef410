/// \file
/// Digits for sequences and dumps, decimal and hexadecimal: plain ones whatever the global locale. Includes
/// neither public header, since each source file includes one of them.
#pragma once

#include <array>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string_view>

namespace kestry::detail {

/// Writes text and returns the place after it.
inline char* put_text(char* out, std::string_view text) { return out + text.copy(out, text.size()); }

// ---------------------------------------------------------------------------------------------
// Decimal
// ---------------------------------------------------------------------------------------------

inline constexpr std::size_t longest_decimal = std::numeric_limits<std::int64_t>::digits10 + 2;

/// Writes value in decimal, at most longest_decimal characters, and returns the place after it.
inline char* put_decimal(char* out, std::int64_t value) { return std::to_chars(out, out + longest_decimal, value).ptr; }

// ---------------------------------------------------------------------------------------------
// Hexadecimal
// ---------------------------------------------------------------------------------------------

constexpr std::array<std::array<char, 2>, 256> all_hex_pairs()
{
    std::array<std::array<char, 2>, 256> pairs{};
    for (std::size_t b = 0; b != pairs.size(); ++b) {
        pairs[b] = {"0123456789abcdef"[b / 16], "0123456789abcdef"[b % 16]};
    }
    return pairs;
}

/// The two digits of each byte.
inline constexpr auto hex_pairs = all_hex_pairs();

/// The two digits of b as a text.
inline std::string_view hex_digits(unsigned char b) { return {hex_pairs[b].data(), hex_pairs[b].size()}; }

/// Writes the two digits of b and returns the place after them.
inline char* put_byte(char* out, unsigned char b)
{
    std::memcpy(out, hex_pairs[b].data(), 2);
    return out + 2;
}

/// Writes all digits of value, two for each of its bytes, and returns the place after them.
template <class Unsigned>
char* put_hex(char* out, Unsigned value)
{
    for (int shift = std::numeric_limits<Unsigned>::digits - 8; shift >= 0; shift -= 8) {
        out = put_byte(out, static_cast<unsigned char>(value >> shift));
    }
    return out;
}

} // namespace kestry::detail
