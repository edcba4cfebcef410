/// \file
/// The rows of the tour: code and what it writes, within a number of columns.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

using Lines = std::vector<std::string>;

/// Splits a text at its line ends.
Lines lines_of(std::string_view text);

/// Returns the columns of the widest line.
std::size_t widest(Lines const& lines);

/// Breaks a plain line at the last blank that fits, or rather before an insertion ("<<"). What goes on stands further in
/// than the line by so many columns.
Lines folded(std::string_view line, std::size_t width, std::size_t further);

/// Breaks lines of code, with four columns further in.
Lines folded_code(Lines const& lines, std::size_t width);

/// Returns the body of the function of that name, without its own indentation.
Lines body_of_function(std::string_view source, std::string_view name);

/// Splits what was written, and leaves of a row that was drawn again and again the last state.
Lines last_states(std::string_view text);

/// Sets the result from a column on beside the code. The last rows of both are one row: mostly each statement writes one.
Lines beside(Lines const& code, Lines const& result, std::size_t column);

} // namespace demo
