/// \file
/// Digits: every decimal and hexadecimal number that the library puts into a text of its own, and the
/// dumps that both interfaces share. Plain digits whatever the global locale. Includes neither public
/// header, since each source file includes one of them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <span>
#include <string>
#include <string_view>

namespace kestry::detail {

/// A string of size characters, all of them written by fill(char*), which must not throw. Unlike a
/// string that is resized and then written, it is not filled with zeros first.
template <class Fill>
std::string make_string(std::size_t size, Fill fill)
{
    std::string text;
    text.resize_and_overwrite(size, [&fill, size](char* out, std::size_t /* libstdc++ 12 hands over the capacity */) {
        fill(out);
        return size;
    });
    return text;
}

/// Writes text and returns the place behind it.
inline char* put_text(char* out, std::string_view text) { return out + text.copy(out, text.size()); }

// ---------------------------------------------------------------------------------------------
// Decimal
// ---------------------------------------------------------------------------------------------

inline constexpr std::size_t longest_decimal = std::numeric_limits<std::int64_t>::digits10 + 2;

/// What every part of a colour and every common code is: a number up to 255.
struct SmallDecimal {
    char digits[3];
    unsigned char size;
};

constexpr std::array<SmallDecimal, 256> all_small_decimals()
{
    std::array<SmallDecimal, 256> all{};
    for (int n = 0; n != 256; ++n) {
        auto& [digits, size] = all[static_cast<std::size_t>(n)];
        for (int const power : {100, 10, 1}) {
            if (n / power != 0 || power == 1) {
                digits[size++] = static_cast<char>('0' + n / power % 10);
            }
        }
    }
    return all;
}

inline constexpr auto small_decimals = all_small_decimals();

char* put_large_decimal(char* out, std::int64_t value);
std::size_t large_decimal_size(std::int64_t value);

inline bool is_small(std::int64_t value) { return static_cast<std::uint64_t>(value) < small_decimals.size(); }

/// Writes value in decimal, at most longest_decimal characters, and returns the place behind it. Three
/// characters may be written where the number has fewer.
inline char* put_decimal(char* out, std::int64_t value)
{
    if (!is_small(value)) {
        return put_large_decimal(out, value);
    }
    SmallDecimal const& small = small_decimals[static_cast<std::size_t>(value)];
    std::memcpy(out, small.digits, sizeof small.digits);
    return out + small.size;
}

/// How many characters value has in decimal.
inline std::size_t decimal_size(std::int64_t value)
{
    return is_small(value) ? small_decimals[static_cast<std::size_t>(value)].size : large_decimal_size(value);
}

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

/// Writes the two digits of b and returns the place behind them.
inline char* put_byte(char* out, unsigned char b)
{
    std::memcpy(out, hex_pairs[b].data(), 2);
    return out + 2;
}

/// Writes all digits of value, two for each of its bytes, and returns the place behind them.
template <class Unsigned>
char* put_hex(char* out, Unsigned value)
{
    for (int shift = std::numeric_limits<Unsigned>::digits - 8; shift >= 0; shift -= 8) {
        out = put_byte(out, static_cast<unsigned char>(value >> shift));
    }
    return out;
}

// ---------------------------------------------------------------------------------------------
// Dumps: all of them throw std::bad_alloc and nothing else
// ---------------------------------------------------------------------------------------------

/// The sequences of a dump of bytes, each empty in a plain one.
struct DumpColors {
    std::string_view byte;        // before every byte
    std::string_view parenthesis; // before both parentheses of the count
    std::string_view count;       // before the count
    std::string_view reset;       // at the end of the dump
};

inline constexpr DumpColors plain{};

std::string dump_byte(unsigned char b);                      ///< Two digits.
std::string dump_short(unsigned short u);                    ///< "0x" and four digits.
std::string dump_word(unsigned long w);                      ///< At least eight digits, more only where w needs them.
std::string dump_words(std::span<unsigned int const> words); ///< Eight digits and a blank for each word.

/// Each byte with its separator; unless whole, cut after 19 bytes and the count of all of them added.
std::string dump_bytes(std::span<unsigned char const> bytes, std::string_view separator, DumpColors const& colors,
                       bool whole);

/// The bytes of text.
inline std::span<unsigned char const> bytes_of(std::string const& text)
{
    return {reinterpret_cast<unsigned char const*>(text.data()), text.size()};
}

} // namespace kestry::detail
