/// \file
/// One character of a text that should be UTF-8.
#pragma once

#include <cstddef>
#include <string_view>

namespace kestry::kit::detail {

/// What stands at one place of a text: a character, or a byte that is none.
struct character {
    enum class state : unsigned char {
        whole,   ///< Valid UTF-8 (RFC 3629): no surrogate, no overlong form, at most U+10FFFF.
        bad,     ///< A byte that begins no character.
        cut_off, ///< As bad; but together with what follows the text it might be a character.
    };

    char32_t code;      ///< The code point; the value of the byte if it is none.
    unsigned char size; ///< Bytes: 1 to 4.
    state is;
};

/// Decodes what stands at the head of a text that is not empty.
constexpr character decode(std::string_view text) noexcept
{
    auto const byte = [text](std::size_t at) { return static_cast<unsigned char>(text[at]); };
    unsigned const lead = byte(0);
    if (lead < 0x80) {
        return {lead, 1, character::state::whole};
    }
    if (lead < 0xc2 || lead > 0xf4) {
        return {lead, 1, character::state::bad};
    }
    std::size_t const size = lead < 0xe0 ? 2 : lead < 0xf0 ? 3 : 4;
    // The second byte of some has less room: no overlong form, no surrogate, nothing past U+10FFFF.
    unsigned const lowest = lead == 0xe0 ? 0xa0 : lead == 0xf0 ? 0x90 : 0x80;
    unsigned const highest = lead == 0xed ? 0x9f : lead == 0xf4 ? 0x8f : 0xbf;
    char32_t code = lead & (0x7fU >> size);
    for (std::size_t at = 1; at < size; ++at) {
        if (at == text.size()) {
            return {lead, 1, character::state::cut_off};
        }
        unsigned const next = byte(at);
        if (next < (at == 1 ? lowest : 0x80) || next > (at == 1 ? highest : 0xbf)) {
            return {lead, 1, character::state::bad};
        }
        code = (code << 6) | (next & 0x3f);
    }
    return {code, static_cast<unsigned char>(size), character::state::whole};
}

} // namespace kestry::kit::detail
