/// \file
/// A recording as a picture.
#pragma once

#include "recording.hpp"
#include "terminal.hpp"

#include <string>

namespace hueline::pictures {

/// Shows what a terminal received to a terminal and draws what that shows, cut to the cells that are used.
std::string picture_of(Recording const& recording, Palette const& palette = {});

} // namespace hueline::pictures
