/// \file
/// The part of the example colour_policy that uses the string interface. It has a source file of its
/// own, because the two public headers are never included together.
#pragma once

#include <string>

/// Returns the text in green, or plain.
std::string in_green(std::string const& text, bool in_colour);
