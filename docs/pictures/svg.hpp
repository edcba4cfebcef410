/// \file
/// Cells as a picture: SVG, text that a browser draws and a diff compares.
#pragma once

#include "terminal.hpp"

#include <string>
#include <vector>

namespace hueline::pictures {

struct Frame {
    Grid grid;
    int ms = 0; ///< How long it is shown.
};

/// Draws the frames one after the other, and again from the first. One frame is a still picture. All grids have one
/// size.
///
/// Each run of alike cells is a text of its own with a fixed place and length, so that columns line up whatever font
/// the viewer has. A moving picture is a strip of the different frames behind a window that jumps from one to the next;
/// rows that never change are no part of the strip. Where pictures do not move, or should not (prefers-reduced-motion),
/// a frame from past the middle shows. Around the cells, and where they have no other, the ground is the one given.
std::string svg(std::vector<Frame> const& frames, std::string const& title, Rgb ground = default_ground);

} // namespace hueline::pictures
