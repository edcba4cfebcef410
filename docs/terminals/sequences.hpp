/// \file
/// What the probe takes from the string interface, whose header cannot stand beside that of the stream interface.
#pragma once

#include <string>

namespace hueline::terminals {

std::string hide_cursor(); ///< What kestry::Hueline::hide_cursor returns while colour is in use.
std::string show_cursor(); ///< What kestry::Hueline::show_cursor returns while colour is in use.

} // namespace hueline::terminals
