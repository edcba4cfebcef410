/// \file
/// Both forms of the themes beside each other. The headers of the two forms are never included
/// together, so each form has a source file.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <string_view>

namespace demo {

/// Writes a table of the roles: the name, and how each looks in either interface. The string interface has colour where
/// os has a depth, the stream interface where the gate lets it.
std::ostream& themes(std::ostream& os);

/// A text decorated by the string interface.
struct StringForm {
    std::string text;  ///< Ends its decoration.
    std::size_t width; ///< Characters that show.
};

/// Returns the sample in the role of the string interface, or "-" where that lacks the role.
StringForm string_form(std::string_view role, std::string const& sample, bool in_color);

} // namespace demo
