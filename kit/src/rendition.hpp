/// \file
/// What a terminal shows text in, read from SGR sequences and written as them (ECMA-48 8.3.117).
#pragma once

#include "kestry/kit/style.hpp"

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace kestry::kit::detail {

/// A style and what else text may bring along. Colours are such as a terminal has them: none is its own one.
struct rendition {
    color foreground = {};
    color background = {};
    color line = {};              ///< of the underline
    std::uint16_t attributes = 0; ///< those of a style, and those that only text of others has

    friend constexpr bool operator==(rendition const&, rendition const&) = default;
};

/// \name The attributes of which there is one at a time: the style's own, and such as only text of others has
/// \{
inline constexpr unsigned underlines = 0x0f08;
inline constexpr unsigned blinks = 0x1010;
/// \}

/// Returns the style on top of what is around it, in colours of that depth.
inline rendition combined(rendition const& around, style const& look, color_depth depth) noexcept
{
    if (depth == color_depth::none) {
        return {};
    }
    auto const on_top = [depth](color const& under, color const& over) {
        switch (over.kind) {
        case color_kind::none:
            return under;
        case color_kind::standard:
            return color{};
        default:
            return depth == color_depth::truecolor ? over : reduced(over, depth);
        }
    };
    unsigned const replaced =
        ((look.attributes & underlines) != 0 ? underlines : 0) | ((look.attributes & blinks) != 0 ? blinks : 0);
    return {on_top(around.foreground, look.foreground), on_top(around.background, look.background), around.line,
            static_cast<std::uint16_t>((around.attributes & ~replaced) | look.attributes)};
}

/// Returns what a style can say of a rendition.
style style_in(rendition const& shown) noexcept;

/// Follows an SGR sequence, given its parameters: what it ends goes back to what is around.
void follow(std::string_view parameters, rendition& shown, rendition const& around, color_depth depth) noexcept;

/// The most bytes that write_change() writes.
inline constexpr std::size_t longest_change = 160;

/// Writes the sequence that leads from one rendition to another one, and returns its end. Nothing where they are equal.
char* write_change(char* out, rendition const& from, rendition const& to) noexcept;

/// What begins a style where there is none, and what ends it: the first bytes of a word, and the last ones of one.
struct plain_sequences {
    std::array<char, 8> begin = {};
    std::array<char, 8> end = {};
    std::uint8_t begin_size = 0;
    std::uint8_t end_size = 0;
};

/// By attribute and by named foreground, of each first none.
extern std::array<std::array<plain_sequences, 17>, 9> const sequences_of_one;

/// Returns those of a style of one attribute, one named foreground or both, or nullptr for any other one.
inline plain_sequences const* common_sequences(style const& look, color_depth depth) noexcept
{
    auto const attribute = static_cast<std::size_t>(std::bit_width(unsigned{look.attributes}));
    bool const has_named = look.foreground.kind == color_kind::named;
    if (depth == color_depth::none || look == style{} || (look.attributes & (look.attributes - 1)) != 0 ||
        look.background != color{} || !(has_named || look.foreground == color{})) {
        return nullptr;
    }
    return &sequences_of_one[attribute][has_named ? 1U + look.foreground.r % 16U : 0U];
}

} // namespace kestry::kit::detail
