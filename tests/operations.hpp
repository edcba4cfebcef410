/// \file
/// An operation of an interface as a row of a table: its number and name, what it is exported as, how it is applied, an
/// example, and what comes of that. operations_stream.cpp and operations_classic.cpp hold the rows; every other test reads
/// them there, and only the models tell the same once more.
#pragma once

#include "model/step.hpp"

#include <stdexcept>
#include <string>
#include <vector>

namespace hueline::test {

/// The dump of 0x1234567800000abc, as much of it as an unsigned long holds.
inline constexpr auto long_digits = sizeof(long) == 8 ? "1234567800000abc" : "00000abc";

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
    color_of_eight,   ///< What next takes: mostly one that there is.
    vga_color,        ///< The same of the sixteen.
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

/// What an operation needs of its stream's locale: an int insertion needs std::num_put<char>, std::endl needs
/// std::ctype<char>.
enum class Needs { nothing, numbers, line_ends, both };

inline bool needs_numbers(Needs what) { return what == Needs::numbers || what == Needs::both; }
inline bool needs_line_ends(Needs what) { return what == Needs::line_ends || what == Needs::both; }

/// What adjust writes as long as nothing is changed, and after thin, dark, italic, underline, blink, reverse, red and
/// on_blue.
inline std::string const record_at_load = R"(\e[00m\e[1m)";
inline std::string const record_after_changes = R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)";

/// What adjust writes after an operation: at load, and after everything was changed.
struct Records {
    std::string at_load = record_at_load;
    std::string after_changes = record_after_changes;
};

/// Arguments, and what an operation writes and changes with them. Texts are as readable() shows them, a flush as \f.
struct Example {
    std::vector<int> numbers = {};
    std::vector<std::string> texts = {}; ///< Longer than a string that needs no memory of its own.

    std::string plain = {};                 ///< What it writes or returns without colour: where the gate refuses.
    std::string colored = {};               ///< With colour: where the gate passes, the record being as at load, ...
    std::string colored_after_changes = {}; ///< ... and after everything was changed.
    Records record_where_plain = {};
    Records record_where_colored = {};

    Needs needs_where_plain = Needs::nothing;
    Needs needs_where_colored = Needs::nothing;
    bool in_steps = false;          ///< Changes the record after its first byte.
    bool told_by_the_model = false; ///< Too long for a row, or another one each time: no text stands here.
};

template <class On>
struct Operation {
    int number;                       ///< Its own for ever, below 256: what is kept for the fuzzers is made of them.
    std::string name;                 ///< As the model knows it.
    std::vector<std::string> symbols; ///< That it is exported as, in the words of tests/api/exports.txt.
    std::vector<Argument> arguments;
    void (*act)(On& on, Step const& step);
    Example example = {};
    int weight = 4; ///< How often a random program takes it, beside others.

    Step step_of_example() const { return {name, "", example.numbers, example.texts}; }
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

/// Every symbol that the rows of an interface name, and those that no operation is behind.
std::vector<std::string> symbols_of_stream_interface();
std::vector<std::string> symbols_of_string_interface();

template <class On>
std::vector<std::string> symbols_of(std::vector<Operation<On>> const& operations, std::vector<std::string> others)
{
    for (Operation<On> const& each : operations) {
        others.insert(others.end(), each.symbols.begin(), each.symbols.end());
    }
    return others;
}

} // namespace hueline::test
