/// \file
/// SGR sequences with numbers in them, built without a string and without a stream.
#pragma once

#include "hexdump/digits.hpp"

#include <cstddef>
#include <string>
#include <string_view>

namespace kestry::detail {

/// An introducer, numbers with ";" between them, and "m": Sgr{"\x1b[38;5;", 200} is "\x1b[38;5;200m".
class Sgr {
public:
    template <class... Numbers>
    explicit Sgr(std::string_view introducer, Numbers... numbers)
    {
        static_assert(sizeof...(numbers) <= most_numbers);
        char* end = put_text(text, introducer);
        ((end = put_decimal(end, numbers), *end++ = ';'), ...);
        end[-1] = 'm'; // SGR, ECMA-48 8.3.117
        size = static_cast<std::size_t>(end - text);
    }

    std::string_view view() const { return {text, size}; }
    std::string string() const { return {text, size}; }

private:
    static constexpr std::size_t longest_introducer = 7; // "\x1b[38;2;"
    static constexpr std::size_t most_numbers = 5;

    char text[longest_introducer + most_numbers * (longest_decimal + 1)];
    std::size_t size;
};

} // namespace kestry::detail
