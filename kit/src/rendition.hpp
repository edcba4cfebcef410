/// \file
/// What a terminal shows text in, read from SGR sequences and written as them (ECMA-48 8.3.117).
#pragma once

#include "kestry/kit/style.hpp"

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

    friend bool operator==(rendition const&, rendition const&) = default;
};

/// Returns the style on top of what is around it, in colours of that depth.
rendition combined(rendition const& around, style const& look, color_depth depth) noexcept;

/// Returns what a style can say of a rendition.
style style_in(rendition const& shown) noexcept;

/// Follows an SGR sequence, given its parameters: what it ends goes back to what is around.
void follow(std::string_view parameters, rendition& shown, rendition const& around, color_depth depth) noexcept;

/// The most bytes that write_change() writes.
inline constexpr std::size_t longest_change = 160;

/// Writes the sequence that leads from one rendition to another one, and returns its end. Nothing where they are equal.
char* write_change(char* out, rendition const& from, rendition const& to) noexcept;

} // namespace kestry::kit::detail
