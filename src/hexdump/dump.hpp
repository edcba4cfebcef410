/// \file
/// The texts of the dumps that both interfaces have. All functions throw std::bad_alloc and nothing
/// else.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace kestry::detail {

/// The sequences of a dump of bytes, each empty in a plain one.
struct DumpColors {
    std::string_view byte;        // before every byte
    std::string_view parenthesis; // before both parentheses of the count
    std::string_view count;       // before the count
    std::string_view reset;       // at the end of the dump
};

inline constexpr DumpColors plain{};

enum class Length {
    whole,
    cut, // after 19 bytes, with the count of all of them
};

std::string dump_byte(unsigned char b);                      ///< Two digits.
std::string dump_short(unsigned short u);                    ///< "0x" and four digits.
std::string dump_word(unsigned long w);                      ///< At least eight digits, more only where w needs them.
std::string dump_words(std::span<unsigned int const> words); ///< Eight digits and a blank for each word.

/// Each byte in its colour, with its separator; " ... ", the count in parentheses and a blank if bytes are
/// left out; the reset. Nothing at all for no bytes.
std::string dump_bytes(std::span<unsigned char const> bytes, std::string_view separator, DumpColors const& colors,
                       Length length);

/// The bytes of text.
inline std::span<unsigned char const> bytes_of(std::string const& text)
{
    return {reinterpret_cast<unsigned char const*>(text.data()), text.size()};
}

} // namespace kestry::detail
