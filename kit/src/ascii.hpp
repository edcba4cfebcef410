/// \file
/// How far a text is plain ASCII, looked at eight bytes at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace kestry::kit::detail {

inline constexpr std::uint64_t every_byte = 0x0101'0101'0101'0101;
inline constexpr std::uint64_t every_top_bit = 0x80 * every_byte;

// Skips words as long as stops(word) has no top bit set, then bytes as long as is_plain(byte).
template <class Stops, class IsPlain>
inline std::size_t skip(std::string_view text, Stops stops, IsPlain is_plain) noexcept
{
    std::size_t at = 0;
    for (std::uint64_t word = 0; text.size() - at >= sizeof word; at += sizeof word) {
        std::memcpy(&word, text.data() + at, sizeof word);
        if ((stops(word) & every_top_bit) != 0) {
            break;
        }
    }
    while (at < text.size() && is_plain(text[at])) {
        ++at;
    }
    return at;
}

/// The printable ASCII characters, 20 to 7E, at the head of a text: how many.
inline std::size_t printable_ascii(std::string_view text) noexcept
{
    // A byte below 20 borrows, 7F carries, and the rest past ASCII have their top bit. A borrow or a carry from one byte
    // reaches another one only where the first has stopped the word already.
    return skip(
        text, [](std::uint64_t word) { return (word - 0x20 * every_byte) | (word + every_byte) | word; },
        [](char c) { return c >= ' ' && c <= '~'; });
}

/// The ASCII characters other than ESC at the head of a text: how many.
inline std::size_t ascii_text(std::string_view text) noexcept
{
    return skip(
        text, [](std::uint64_t word) { return ((word ^ 0x1b * every_byte) - every_byte) | word; },
        [](char c) { return static_cast<unsigned char>(c) < 0x80 && c != '\x1b'; });
}

} // namespace kestry::kit::detail
