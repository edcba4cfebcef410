#include "terminal.hpp"

#include <utility>

namespace hueline::pictures {

namespace {

// Faint ink: two thirds of the way from the ground to the ink.
Rgb faint(Rgb ink, Rgb ground)
{
    auto const mixed = [](int over, int under) { return static_cast<std::uint8_t>((2 * over + under) / 3); };
    return {mixed(ink.r, ground.r), mixed(ink.g, ground.g), mixed(ink.b, ground.b)};
}

// A colour of the palette from 16 on, as xterm and every terminal of docs/terminals.md have it; libvterm 0.1.4 has another
// cube.
Rgb cube_color(int n)
{
    static std::uint8_t constexpr steps[] = {0, 95, 135, 175, 215, 255};
    if (n >= 232) {
        auto const grey = static_cast<std::uint8_t>(8 + 10 * (n - 232));
        return {grey, grey, grey};
    }
    return {steps[(n - 16) / 36], steps[(n - 16) / 6 % 6], steps[(n - 16) % 6]};
}

Rgb rgb(test::Color const& color, bool bright, Rgb otherwise, Palette const& palette)
{
    if (color.is_default) {
        return otherwise;
    }
    if (color.index >= 16) {
        return cube_color(color.index);
    }
    if (color.index >= 0) {
        return palette.named[static_cast<std::size_t>(bright && color.index < 8 ? color.index + 8 : color.index)];
    }
    auto const part = [](int value) { return static_cast<std::uint8_t>(value); };
    return {part(color.r), part(color.g), part(color.b)};
}

Cell drawn(test::Cell const& seen, Palette const& palette)
{
    Cell cell = {.ink = rgb(seen.foreground, seen.bold && palette.bold_is_bright, palette.ink, palette),
                 .ground = rgb(seen.background, false, palette.ground, palette),
                 .bold = seen.bold,
                 .italic = seen.italic,
                 .underline = seen.underline,
                 .strike = seen.strike,
                 .blink = seen.blink};
    if (seen.reverse) {
        std::swap(cell.ink, cell.ground);
    }
    if (seen.faint) {
        cell.ink = faint(cell.ink, cell.ground);
    }
    if (seen.is_second || (!seen.character.empty() && !seen.concealed)) {
        cell.character = seen.character;
    }
    return cell;
}

} // namespace

Terminal::Terminal(int height, int width, Palette const& its)
    : screen("", height, width), rows(height), cols(width), palette(its)
{}

Grid Terminal::grid() const
{
    Grid grid;
    for (int row = 0; row < rows; ++row) {
        Row& cells = grid.emplace_back();
        for (int col = 0; col < cols; ++col) {
            cells.push_back(drawn(screen.cell(row, col), palette));
        }
    }
    return grid;
}

} // namespace hueline::pictures
