/// \file
/// A terminal that says what each of its cells looks like.
#pragma once

#include "support/screen.hpp"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hueline::pictures {

struct Rgb {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;

    auto operator<=>(Rgb const&) const = default;
};

/// The colours of a terminal that has received nothing.
Rgb constexpr default_ink = {0xd8, 0xdb, 0xe0};
Rgb constexpr default_ground = {0x14, 0x16, 0x1b};

/// The colours that a terminal has of its own: those of the pictures, if nothing else is said.
struct Palette {
    Rgb ink = default_ink;
    Rgb ground = default_ground;
    // As legible on a dark ground as terminals of today have them.
    std::array<Rgb, 16> named = {{
        {0x00, 0x00, 0x00},
        {0xcd, 0x31, 0x31},
        {0x0d, 0xbc, 0x79},
        {0xd9, 0xc2, 0x2b},
        {0x3b, 0x78, 0xd8},
        {0xbc, 0x3f, 0xbc},
        {0x11, 0xa8, 0xcd},
        {0xe5, 0xe5, 0xe5},
        {0x6b, 0x70, 0x7a},
        {0xf1, 0x4c, 0x4c},
        {0x23, 0xd1, 0x8b},
        {0xf5, 0xf5, 0x43},
        {0x6a, 0xa9, 0xff},
        {0xd6, 0x70, 0xd6},
        {0x29, 0xb8, 0xdb},
        {0xff, 0xff, 0xff},
    }};
    bool bold_is_bright = false; ///< Whether bold text in one of the colours 0 to 7 has that of 8 to 15.
};

/// A cell as it is to be drawn: faint text has its faint colour, reversed text has changed its colours, concealed text
/// is blank.
struct Cell {
    std::string character = " "; ///< UTF-8; empty in the second cell of a wide character.
    Rgb ink = default_ink;
    Rgb ground = default_ground;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    bool blink = false;

    auto operator<=>(Cell const&) const = default;
};

using Row = std::vector<Cell>;
using Grid = std::vector<Row>;

class Terminal {
public:
    Terminal(int rows, int cols, Palette const& palette = {});

    void feed(std::string_view bytes) { screen.write(bytes); }

    Grid grid() const;

private:
    test::Screen screen;
    int rows;
    int cols;
    Palette palette;
};

} // namespace hueline::pictures
