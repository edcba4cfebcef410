/// \file
/// A byte string as a program of one of the interfaces: each operation is a byte and its arguments.
/// The library and the model of the tests follow it side by side and are compared after each step.
#pragma once

#include "check.hpp"
#include "input.hpp"

#include "model/step.hpp"

#include <climits>
#include <cstddef>
#include <string>
#include <vector>

namespace hueline::fuzz {

using test::Facts;
using test::Step;

/// What an operation takes, one letter for each argument.
inline void read_argument(Input& input, char kind, Step& step)
{
    switch (kind) {
    case 'n': // any int
        step.numbers.push_back(input.number());
        break;
    case 'f': // a flag
        step.numbers.push_back(input.flag() ? 1 : 0);
        break;
    case 'b': // a byte
        step.numbers.push_back(input.byte());
        break;
    case 's': // a 16-bit value
        step.numbers.push_back(static_cast<int>(input.four_bytes() % 65536));
        break;
    case 'w': // a field width
        step.numbers.push_back(input.between(-1, 40));
        break;
    case 'e': // error states
        step.numbers.push_back(input.between(0, 3));
        break;
    case 'm': // milliseconds: at most a quarter of a second
        step.numbers.push_back(input.flag() ? input.byte() : -input.byte());
        break;
    case 'p': { // position, start and end of a bar that has few cells: near each other, anywhere among the ints
        int const base = input.number();
        for (int i = 0; i < 3; ++i) {
            step.numbers.push_back(input.near(base));
        }
        break;
    }
    case 'd': // a date from 1901 to 2038 in any time zone: seconds since 1970
        step.numbers.push_back(static_cast<int>(input.four_bytes()) % 2147000000);
        break;
    case 'z': // a time zone, in minutes
        step.numbers.push_back(input.between(-120, 120) * 7);
        break;
    case 'l': // several numbers
        for (int i = input.between(0, 7); i > 0; --i) {
            step.numbers.push_back(input.number());
        }
        break;
    case 't': // a text
        step.texts.push_back(input.text());
        break;
    case 'a': { // frames of a spinner: 0, 1, 2, 4, ... 64 of them
        std::string const text = input.text();
        std::size_t size = 64;
        while (size > text.size()) {
            size /= 2;
        }
        step.texts.push_back(text.substr(0, size));
        break;
    }
    default:
        std::abort();
    }
}

/// A name that the model knows, the arguments, and what it is for the library.
template <class Library>
struct Operation {
    std::string name;
    std::string arguments;
    void (*act)(Library& library, Step const& step);
};

/// An operation of the standard library.
inline std::string arguments_of_host_operation(std::string const& name)
{
    if (name == "text") {
        return "t";
    }
    if (name == "int") {
        return "n";
    }
    if (name == "char" || name == "std::setfill") {
        return "b";
    }
    if (name == "std::setw") {
        return "w";
    }
    return name == "exceptions" || name == "setstate" ? "e" : "";
}

/// Ends the process, with the program so far, if the library shows anything else than the model.
inline void compare(std::vector<Step> const& program, Facts const& expected, Facts const& got)
{
    for (std::size_t i = 0; i < expected.size(); ++i) {
        if (expected[i].value != got.at(i).value && expected[i].value != test::any_value) {
            std::string story = "After\n";
            for (Step const& step : program) {
                story += "    " + test::to_text(step) + '\n';
            }
            expect_equal(story + expected[i].name, expected[i].value, got[i].value);
        }
    }
}

} // namespace hueline::fuzz
