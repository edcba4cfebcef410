/// \file
/// What a call into a shared object costs, whatever it does: the floor of all that a library does out of line.
#pragma once

#include <iosfwd>
#include <string>

namespace hueline::bench {

std::ostream& do_nothing(std::ostream& os);   ///< A manipulator that does nothing.
std::string copy_of(std::string const& text); ///< A copy of the text.

} // namespace hueline::bench
