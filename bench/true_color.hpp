/// \file
/// A 24-bit foreground colour as a string, as one would write it without the library.
#pragma once

#include "workload.hpp"

#include <fmt/format.h>

#include <charconv>
#include <cstddef>
#include <string>

namespace hueline::bench {

// Variables that any source file might change: the compiler cannot work the sequence out beforehand.
inline int red = 255;
inline int green = 128;
inline int blue = 64;

inline std::string true_color_with_fmt() { return fmt::format("\x1b[38;2;{};{};{}m", red, green, blue); }

inline std::string true_color_with_to_chars()
{
    std::ptrdiff_t const longest_int = 11;
    char text[64] = "\x1b[38;2;";
    char* end = text + 7;
    end = std::to_chars(end, end + longest_int, red).ptr;
    *end++ = ';';
    end = std::to_chars(end, end + longest_int, green).ptr;
    *end++ = ';';
    end = std::to_chars(end, end + longest_int, blue).ptr;
    *end++ = 'm';
    return {text, end};
}

/// The two peers, and how much of their time the library may take.
inline std::vector<Peer> true_color_peers(double of_fmt, double of_to_chars)
{
    return {
        {"`fmt::format`", run<true_color_with_fmt>, of_fmt},
        {"`std::to_chars` by hand", run<true_color_with_to_chars>, of_to_chars},
    };
}

} // namespace hueline::bench
