/// \file
/// Bytes as text that can be shown and compared without colouring the reader's terminal.
#pragma once

#include <string>
#include <string_view>

namespace hueline::test {

/// Turns ESC into "\e", line feed into "\n", carriage return into "\r", tab into "\t" (two characters
/// each), and every other byte that is neither printable ASCII nor part of a printable UTF-8
/// character into "\xHH". A backslash stays as it is.
std::string readable(std::string_view bytes);

} // namespace hueline::test
