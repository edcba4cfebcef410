/// \file
/// A byte string as a program of one of the interfaces: each operation is a byte, its number, and its arguments.
/// The library and the model of the tests follow it side by side and are compared after each step.
#pragma once

#include "fuzzer.hpp"

#include "model/step.hpp"

#include "operations.hpp"

namespace hueline::fuzz {

using test::Argument;
using test::Facts;
using test::Operation;
using test::Step;

/// Adds what the input has for an argument.
inline void read_argument(Input& input, Argument kind, Step& step)
{
    auto const add_number = [&step](int number) { step.numbers.push_back(number); };
    auto const add_text = [&step](std::string const& text) { step.texts.push_back(text); };
    switch (kind) {
    case Argument::number:
    case Argument::colorize_word:
    case Argument::code:
    case Argument::color_of_eight:
    case Argument::vga_color:
        return add_number(input.number());
    case Argument::numbers:
        for (int i = input.between(0, 7); i > 0; --i) {
            add_number(input.number());
        }
        return;
    case Argument::flag:
    case Argument::mostly_on:
    case Argument::mostly_off:
        return add_number(input.flag() ? 1 : 0);
    case Argument::byte:
    case Argument::fill:
    case Argument::item:
        return add_number(input.byte());
    case Argument::two_bytes:
        return add_number(static_cast<int>(input.four_bytes() % 65536));
    case Argument::width:
        return add_number(input.between(-1, 40));
    case Argument::states:
        return add_number(input.between(0, 3));
    case Argument::milliseconds:
        return add_number(input.flag() ? input.byte() : -input.byte());
    case Argument::seconds:
        return add_number(static_cast<int>(input.four_bytes()) % 2147000000);
    case Argument::minutes:
        return add_number(input.between(-120, 120) * 7);
    case Argument::steps_of_a_bar: { // near each other, anywhere among the ints
        int const base = input.number();
        for (int i = 0; i < 3; ++i) {
            add_number(input.near(base));
        }
        return;
    }
    case Argument::steps_of_percent:
        for (int i = 0; i < 3; ++i) {
            add_number(input.number());
        }
        return;
    case Argument::text:
    case Argument::text_with_space:
    case Argument::bytes:
        return add_text(input.text());
    case Argument::frames: { // 0, 1, 2, 4, ... 64 of them
        std::string const text = input.text();
        std::size_t size = 64;
        while (size > text.size()) {
            size /= 2;
        }
        return add_text(text.substr(0, size));
    }
    case Argument::bytes_and_separator:
        add_text(input.text());
        return add_text(input.text());
    }
}

/// The operation of a number; null if there is none. That such bytes are passed over keeps the meaning of every input
/// when an operation comes.
template <class On>
Operation<On> const* operation_numbered(int number, std::vector<Operation<On>> const& operations)
{
    for (Operation<On> const& each : operations) {
        if (each.number == number) {
            return &each;
        }
    }
    return nullptr;
}

/// A step of an operation, on no stream.
template <class On>
Step read_step(Input& input, Operation<On> const& operation)
{
    Step step = {operation.name};
    for (Argument const kind : operation.arguments) {
        read_argument(input, kind, step);
    }
    return step;
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
