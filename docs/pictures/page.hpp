/// \file
/// The page that shows the pictures.
#pragma once

#include "recording.hpp"

#include <string>
#include <vector>

namespace hueline::pictures {

/// Fills in a template: a line "{{name}}" is replaced by the picture of that name, the code that made it and what a
/// pipe receives; "{{name picture}}", "{{name code}}" and "{{name pipe}}" by one of them. Throws std::runtime_error if
/// a name is unknown, or if a picture is not shown.
std::string page(std::string const& text, std::vector<Recording> const& recordings);

} // namespace hueline::pictures
