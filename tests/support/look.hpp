/// \file
/// Rows of a screen in words, so that a test says in one line what a person sees.
#pragma once

#include "support/screen.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace hueline::test {

/// "red", "bright red", "200" of the palette, "255/128/0"; nothing for the default.
inline std::string name_of(Color const& c)
{
    static char const* const names[] = {"black", "red", "green", "yellow", "blue", "magenta", "cyan", "white"};
    if (c.is_default) {
        return "";
    }
    if (c.index < 0) {
        return std::to_string(c.r) + "/" + std::to_string(c.g) + "/" + std::to_string(c.b);
    }
    if (c.index < 16) {
        return (c.index < 8 ? "" : "bright ") + std::string(names[c.index % 8]);
    }
    return std::to_string(c.index);
}

/// Colours and attributes of a cell, in this order: "red on blue bold italic underline blink reverse
/// strike". Nothing for an ordinary cell.
inline std::string look_of(Cell const& cell)
{
    std::string look;
    auto const add = [&look](std::string const& word) { look += (look.empty() || word.empty() ? "" : " ") + word; };
    add(name_of(cell.foreground));
    add(cell.background.is_default ? "" : "on " + name_of(cell.background));
    add(cell.bold ? "bold" : "");
    add(cell.italic ? "italic" : "");
    add(cell.underline ? "underline" : "");
    add(cell.blink ? "blink" : "");
    add(cell.reverse ? "reverse" : "");
    add(cell.strike ? "strike" : "");
    return look;
}

/// A row, with the look of its cells in braces wherever it changes: "plain{red bold}alert{}plain". What
/// is blank and ordinary at its end is left out.
inline std::string row_of(Screen const& screen, int row, int cols = 80)
{
    std::string seen;
    std::string look;
    std::size_t end = 0;
    for (int col = 0; col < cols; ++col) {
        Cell const cell = screen.cell(row, col);
        std::string const next = look_of(cell);
        bool const is_blank = cell.character.empty() || cell.character == " ";
        if (next != look) {
            look = next;
            seen += "{" + look + "}";
        }
        seen += is_blank ? " " : cell.character;
        if (!is_blank || !look.empty()) {
            end = seen.size();
        }
    }
    return seen.substr(0, end);
}

/// The first rows.
inline std::vector<std::string> rows_of(Screen const& screen, int count, int cols = 80)
{
    std::vector<std::string> rows;
    for (int row = 0; row < count; ++row) {
        rows.push_back(row_of(screen, row, cols));
    }
    return rows;
}

/// What has been written by the end of each frame of an animation, whose frames start with a carriage
/// return.
inline std::vector<std::string_view> frame_ends(std::string_view bytes)
{
    std::vector<std::string_view> frames;
    std::size_t at = bytes.find('\r');
    while (at != std::string_view::npos) {
        at = bytes.find('\r', at + 1);
        frames.push_back(bytes.substr(0, at));
    }
    return frames;
}

} // namespace hueline::test
