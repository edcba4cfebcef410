/// \file
/// A recording as a picture.
#pragma once

#include "recording.hpp"

#include <string>

namespace hueline::pictures {

/// Shows what a terminal received to a terminal and draws what that shows, cut to the cells that are used.
std::string picture_of(Recording const& recording);

} // namespace hueline::pictures
