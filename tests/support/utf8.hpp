/// \file
/// A character of a terminal as text.
#pragma once

#include <cstdint>
#include <string>

namespace hueline::test {

inline std::string utf8(std::uint32_t character)
{
    auto const tail = [&](unsigned shift) { return static_cast<char>(0x80 | ((character >> shift) & 0x3f)); };
    auto const head = [&](unsigned mark, unsigned shift) { return static_cast<char>(mark | (character >> shift)); };
    if (character < 0x80) {
        return {static_cast<char>(character)};
    }
    if (character < 0x800) {
        return {head(0xc0, 6), tail(0)};
    }
    if (character < 0x10000) {
        return {head(0xe0, 12), tail(6), tail(0)};
    }
    return {head(0xf0, 18), tail(12), tail(6), tail(0)};
}

} // namespace hueline::test
