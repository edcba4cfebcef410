/// \file
/// The demonstration for those who have read nothing yet: a part at a time, with the code that wrote it.
#pragma once

#include <iosfwd>

namespace demo {

/// Shows everything in a dozen parts, as richly as os may be coloured: on a terminal what moves moves, elsewhere the last
/// state of it is a line.
///
/// Where a person is at the keys, each part waits for one, and "q" ends the tour.
std::ostream& tour(std::ostream& os);

} // namespace demo
