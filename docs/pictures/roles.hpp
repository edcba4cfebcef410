/// \file
/// The page about roles: every theme on dark and on light grounds, and how easy it is to read there.
#pragma once

#include "recording.hpp"
#include "terminal.hpp"

#include <string>
#include <vector>

namespace hueline::pictures {

/// A terminal as it comes, as script/terminals has found it.
struct OwnColors {
    std::string terminal;
    Palette palette = {};
};

/// Reads docs/terminals/palettes.tsv. Throws std::runtime_error if a line is not as it should be.
std::vector<OwnColors> own_colors(std::string const& table);

/// The same colours on a dark ground: its own if that is dark, else white text on black.
Palette on_dark(Palette const& own);

/// The same colours on a light ground: its own if that is light, else black text on white.
Palette on_light(Palette const& own);

/// Fills in a template. A line "{{roles NAME}}" is replaced by a table of the recording of that name, whose lines each begin
/// with a text in a role: what its contrast is in each of the terminals, at least and at most. "{{own}}" is replaced by a table
/// of the roles that the result of the snippet above it shows, "on a terminal: \e[1malert\e[m on dark\n" and so on; throws
/// std::runtime_error if one of them is hard to read.
std::string roles_page(std::string const& text, std::vector<Recording> const& roles,
                       std::vector<OwnColors> const& terminals);

} // namespace hueline::pictures
