/// \file
/// Texts in colour, for the functions of the class and for the themes.
#pragma once

#include "kestry/hueline_classic.hpp"

#include <string>

namespace kestry::detail {

/// The colour, then the text or the two digits of the byte: those alone while colour is not in use.
std::string colored(HexColor code, std::string const& text);
std::string colored(HexColor code, unsigned char byte);

/// The same with bright before and dim behind it.
std::string bright_colored(HexColor code, std::string const& text);
std::string bright_colored(HexColor code, unsigned char byte);

} // namespace kestry::detail
