/// \file
/// What every fuzzer starts with: arguments from the bytes that are made up, findings, and the standard library.
#pragma once

#include "support/readable.hpp"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace hueline::fuzz {

/// Each byte counts wherever it stands, and a short input is a valid one: what is missing is 0.
class Input {
public:
    Input(std::uint8_t const* data, std::size_t size) : next(data), end(data + size) {}

    bool is_empty() const { return next == end; }

    std::uint8_t byte() { return is_empty() ? std::uint8_t{0} : *next++; }

    bool flag() { return byte() % 2 != 0; }

    /// One of first to last, both included.
    int between(int first, int last) { return first + byte() % (last - first + 1); }

    /// Any int: small ones and the edges are one byte, others five.
    int number()
    {
        static constexpr std::array edges = {-1,          -2,           -10,         -99,     -100,  -255,
                                             -256,        INT_MIN,      INT_MIN + 1, INT_MAX, 255,   256,
                                             INT_MAX - 1, INT_MAX - 60, 999,         1000,    65535, 65536};
        std::uint8_t const kind = byte();
        if (kind < 200) {
            return kind;
        }
        if (kind < 200 + edges.size()) {
            return edges[kind - 200U];
        }
        return static_cast<int>(four_bytes());
    }

    /// An int at most 255 from base.
    int near(int base) { return base > 0 ? base - byte() : base + byte(); }

    unsigned four_bytes()
    {
        unsigned number = 0;
        for (int i = 0; i < 4; ++i) {
            number = number << 8 | byte();
        }
        return number;
    }

    /// Any bytes: one of a few texts, or a size below 64 and so many bytes.
    std::string text()
    {
        static std::array<std::string, 10> const texts = {"",
                                                          "x",
                                                          "|/-\\",
                                                          "nine char",
                                                          "ten chars.",
                                                          "18 bytes ......END",
                                                          "19 bytes .......END",
                                                          "20 bytes ........END",
                                                          "\x1b[31m\n\t ",
                                                          std::string(300, 'z')};
        std::uint8_t const kind = byte();
        return kind < 64 ? bytes(kind) : texts[kind % texts.size()];
    }

    /// At most so many bytes.
    std::string bytes(std::size_t most)
    {
        std::size_t const size = std::min(most, static_cast<std::size_t>(end - next));
        std::string const taken(next, next + size);
        next += size;
        return taken;
    }

    /// All that is left.
    std::string rest() { return bytes(SIZE_MAX); }

private:
    std::uint8_t const* next;
    std::uint8_t const* end;
};

inline std::vector<unsigned char> to_bytes(std::string const& text) { return {text.begin(), text.end()}; }

/// A finding, if they differ: the program ends at once, and the fuzzer keeps the input.
inline void expect_equal(std::string const& what, std::string const& expected, std::string const& got)
{
    if (expected != got) {
        std::string const story = what + "\n    expected \"" + test::readable(expected) + "\"\n    got      \"" +
                                  test::readable(got) + "\"\n";
        std::fputs(story.c_str(), stderr);
        std::abort();
    }
}

} // namespace hueline::fuzz
