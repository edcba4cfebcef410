/// \file
/// What the pictures show. The headers of the two interfaces are never included together, so the scenes of each have a
/// source file; the page quotes the body of each function from there.
#pragma once

#include <string>
#include <vector>

namespace hueline::pictures {

struct Scene {
    std::string name;  ///< Of its function.
    std::string title; ///< For those who do not see the picture.
    void (*draw)() = nullptr;
    int frame_ms = 0; ///< How long each frame of a moving picture is shown: one begins at each "\r".
    int cols = 80;    ///< Of the terminal.
    int rows = 0;     ///< How many of its rows are drawn; 0 for all that are used.
};

/// The scenes of the stream interface, to be drawn while std::cout is colorized.
std::vector<Scene> stream_scenes();

/// The scenes of the string interface, to be drawn through draw_in_color().
std::vector<Scene> string_scenes();

/// The scenes of the kit, to be drawn in an environment that speaks of 24 bits.
std::vector<Scene> kit_scenes();

/// Writes a line for each role of the stream themes, in the rendition at load, while std::cout is colorized. Its text comes
/// first: what has no text of its own shows a byte, and its name after two blanks.
void write_stream_roles();

/// The same for the roles of the string interface, to be drawn through draw_in_color().
void write_string_roles();

/// Colorizes std::cout.
void colorize_output();

/// Calls draw while the colour switch is on if standard output is a terminal.
void draw_in_color(void (*draw)());

} // namespace hueline::pictures
