/// \file
/// SGR sequences with numbers in them.
#pragma once

#include "text/digits.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace kestry::detail {

/// An SGR sequence (ECMA-48 8.3.117): SgrSequence("\x1b[38;5;", 200) is "\x1b[38;5;200m".
///
/// Built in an array of its own: allocates nothing.
class SgrSequence {
public:
    /// An introducer of at most seven characters, one to five numbers with ";" between them, and "m".
    template <class... Numbers>
    explicit SgrSequence(std::string_view introducer, Numbers... numbers) // NOLINT: as much as is read is written
    {
        static_assert(sizeof...(numbers) >= 1 && sizeof...(numbers) <= most_numbers);
        char* out = put_text(text, introducer);
        ((out = put_decimal(out, numbers), *out++ = ';'), ...);
        out[-1] = 'm';
        size = static_cast<std::size_t>(out - text);
    }

    operator std::string_view() const { return {text, size}; }
    std::string str() const { return {text, size}; }

private:
    static constexpr std::size_t most_numbers = 5;

    char text[7 + most_numbers * (longest_decimal + 1)];
    std::size_t size;
};

} // namespace kestry::detail
