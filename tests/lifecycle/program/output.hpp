/// \file
/// Standard output for a file that does not include <iostream>, and so does not have it initialised.
#pragma once

#include <iosfwd>

namespace program {

std::ostream& standard_output();

} // namespace program
