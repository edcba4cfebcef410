/// \file
/// Counts how often the program asks whether a descriptor is a terminal. Takes the place of the
/// system library's isatty, for the library under test too.
#pragma once

#include <termios.h>

namespace hueline::test {

inline int isatty_calls = 0;

} // namespace hueline::test

extern "C" int isatty(int descriptor) noexcept
{
    ++hueline::test::isatty_calls;
    termios settings = {};
    return tcgetattr(descriptor, &settings) == 0;
}
