/// \file
/// SGR sequences with numbers in them, built in place and without a stream.
#pragma once

#include "hexdump/digits.hpp"

#include <cstddef>
#include <cstdint>
#include <string>

namespace kestry::detail {

/// Writes an introducer, numbers with ";" between them, and "m", and returns the place behind them:
/// "\x1b[38;5;" and 200 are "\x1b[38;5;200m".
template <std::size_t size, class... Numbers>
char* put_sgr(char* out, char const (&introducer)[size], Numbers... numbers)
{
    out = put_text(out, {introducer, size - 1});
    ((out = put_decimal(out, numbers), *out++ = ';'), ...);
    out[-1] = 'm'; // SGR, ECMA-48 8.3.117
    return out;
}

/// The sequence of one number, such as a colour's code.
std::string sgr_string(std::int64_t number);

/// A 24-bit colour behind "\x1b[38;2;" for the foreground or "\x1b[48;2;" for the background.
std::string true_color_string(char const (&introducer)[8], int r, int g, int b);

} // namespace kestry::detail
