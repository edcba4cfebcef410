/// \file
/// Colours for the rows of a hex view.
#pragma once

#include "hexview_layout.hpp"
#include "rendition.hpp"

#include <array>
#include <cstddef>
#include <cstdint>

namespace kestry::kit::detail {

/// The sequences of a theme, each made once.
class hex_inks {
public:
    using ink = std::uint8_t; ///< How some text looks: 0 is plain.

    hex_inks(hex_theme const& theme, color_depth depth);

    /// The most characters that color_row adds to a row of so many bytes, and overwrites after it.
    std::size_t room(std::size_t bytes) const { return (2 * bytes + 3) * (longest + 1) + 2 * block; }

    /// Copies a row, with an offset of so many characters and so many bytes, and colours it on the way, from the ink that
    /// is there to the one that is left: plain after a line end. Returns the place after it. May read 16 characters more.
    char* color_row(char* out, ink& now, char const* row, std::size_t offset_size, row_shape const& shape,
                    std::byte const* bytes, std::size_t size) const;

    /// Copies the end offset, and colours it on the way.
    char* color_offset(char* out, char const* offset, std::size_t size) const;

    /// Goes back to plain.
    char* end_color(char* out, ink& now) const;

private:
    static constexpr std::size_t most_inks = 8;
    static constexpr std::size_t block = 16; // what is copied at least: most pieces are shorter

    struct sequence {
        std::uint8_t size = 0;
        char text[longest_change];
    };

    // A row on its way: what is copied, and in which ink.
    struct pen;

    std::array<ink, 256> ink_of_byte{};
    ink ink_of_offset = 0;
    std::size_t longest = 0;
    sequence changes[most_inks][most_inks];
};

} // namespace kestry::kit::detail
