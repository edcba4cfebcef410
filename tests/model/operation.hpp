/// \file
/// An operation of a program as a line of a table: what it is called, what it takes and what it does. The
/// random programs and the fuzzers make steps of it.
#pragma once

#include "model/step.hpp"

#include <stdexcept>
#include <string>
#include <vector>

namespace hueline::test {

/// What an operation takes: a number of a step, or several, ...
enum class Argument {
    number,           ///< Any int.
    numbers,          ///< Several of them.
    flag,             ///< 0 or 1, ...
    mostly_on,        ///< ... more often 1, ...
    mostly_off,       ///< ... more often 0.
    byte,             ///< 8 bits.
    fill,             ///< A byte, printable in programs that are shown to people.
    two_bytes,        ///< 16 bits.
    item,             ///< One of the objects or guards that there are.
    width,            ///< Of a field.
    states,           ///< Bits of a stream's error state.
    colorize_word,    ///< Mostly as the library sets it.
    code,             ///< An SGR number.
    colour_of_eight,  ///< What next takes: mostly one that there is.
    vga_colour,       ///< The same of the sixteen.
    milliseconds,     ///< A quarter of a second at most.
    seconds,          ///< A time from 1901 to 2038.
    minutes,          ///< That a time zone is ahead.
    steps_of_a_bar,   ///< Three numbers: position, start and end of a bar that has few cells.
    steps_of_percent, ///< The same of a percentage.

    // ... or a text of a step.
    text,
    text_with_space,     ///< White space and what looks like it.
    frames,              ///< Of a spinner.
    bytes,               ///< What a dump is made of.
    bytes_and_separator, ///< Two texts.
};

template <class On>
struct Operation {
    std::string name; ///< As the model knows it.
    int weight;       ///< How often a random program takes it, beside others.
    std::vector<Argument> arguments;
    void (*act)(On& on, Step const& step);
};

/// Throws std::out_of_range if there is none of that name.
template <class On>
Operation<On> const& operation_called(std::string const& name, std::vector<Operation<On>> const& operations)
{
    for (Operation<On> const& each : operations) {
        if (each.name == name) {
            return each;
        }
    }
    throw std::out_of_range("no operation " + name);
}

} // namespace hueline::test
