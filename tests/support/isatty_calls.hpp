/// \file
/// Counts how often the program asks whether a descriptor is a terminal. Takes the place of the
/// system library's isatty, for the library under test too.
#pragma once

#include <termios.h>

namespace hueline::test {

inline int isatty_calls = 0;

inline bool is_really_a_terminal(int descriptor)
{
    termios settings = {};
    return tcgetattr(descriptor, &settings) == 0;
}

/// What isatty answers: the truth, unless a program makes its terminals up.
inline bool (*is_a_terminal)(int descriptor) = is_really_a_terminal;

} // namespace hueline::test

extern "C" int isatty(int descriptor) noexcept
{
    ++hueline::test::isatty_calls;
    return hueline::test::is_a_terminal(descriptor);
}
