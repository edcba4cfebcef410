/// \file
/// Random arguments, with weight on the edges.
#pragma once

#include "model/step.hpp"

#include "operations.hpp"

#include "support/process.hpp"

#include <climits>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <rapidcheck.h>

namespace hueline::test {

/// Other programs in each run, unless HUELINE_SEED or RC_PARAMS says otherwise.
inline std::uint64_t seed()
{
    static std::uint64_t const chosen = [] {
        char const* const wanted = std::getenv("HUELINE_SEED");
        return wanted != nullptr ? std::stoull(wanted) : std::random_device()();
    }();
    static std::string const parameters = "seed=" + std::to_string(chosen) + " max_success=150";
    setenv("RC_PARAMS", parameters.c_str(), 0);
    return chosen;
}

/// What a failure says.
inline std::string again() { return "again with HUELINE_SEED=" + std::to_string(seed()); }

inline rc::Gen<int> between(int first, int last) { return rc::gen::inRange(first, last + 1); }

inline rc::Gen<int> any_int()
{
    return rc::gen::weightedOneOf<int>({
        {4,
         rc::gen::element(0, 1, 7, 8, 9, 10, 99, 100, 255, 256, -1, -10, INT_MAX, INT_MIN, INT_MAX - 1, INT_MIN + 1)},
        {4, between(0, 300)},
        {1, between(INT_MIN, INT_MAX - 1)},
    });
}

inline rc::Gen<std::string> any_text()
{
    using namespace std::string_literals;
    return rc::gen::weightedOneOf<std::string>({
        {6, rc::gen::element(""s, "x"s, "ok"s, "a\0b"s, "two lines\nof text"s, "tab\tand blank "s, "|/-\\"s, "abc"s,
                             "Grüße"s, "\xff\x80\x7f\x1b[0m"s, "a title"s, " "s, ":"s)},
        {2, rc::gen::element("012345678"s, "0123456789"s, "0123456789a"s, "18 bytes ......END"s, "19 bytes .......END"s,
                             "20 bytes ........END"s, std::string(45, 'z'))},
        {1, rc::gen::resize(30, rc::gen::container<std::string>(rc::gen::inRange(' ', '~')))},
    });
}

/// What a dump is made of: also long texts, and all bytes.
inline rc::Gen<std::string> any_bytes()
{
    std::string all_bytes;
    for (int b = 0; b < 256; ++b) {
        all_bytes += static_cast<char>(b);
    }
    return rc::gen::weightedOneOf<std::string>({
        {3, any_text()},
        {2, rc::gen::map(between(0, 256),
                         [all_bytes](int size) { return all_bytes.substr(static_cast<std::size_t>(256 - size)); })},
        {1, rc::gen::just(all_bytes + all_bytes)},
    });
}

/// What separates the bytes of a dump: long between a few bytes only, since what the C library buffers
/// before a descriptor that fails is not part of the model.
inline rc::Gen<std::string> separator_for(std::string const& bytes)
{
    using namespace std::string_literals;
    return bytes.size() < 50 ? any_text() : rc::gen::element(""s, ":"s, ", "s, "----"s);
}

inline rc::Gen<std::string> any_text_with_space()
{
    return rc::gen::resize(12, rc::gen::container<std::string>(rc::gen::element(' ', '\t', '\n', '\v', '\f', '\r', '\0',
                                                                                '\x08', '\x0e', '\xa0', 'a', '.')));
}

inline rc::Gen<int> any_code()
{
    return rc::gen::weightedOneOf<int>(
        {{2, rc::gen::element(0, 1, 2, 30, 31, 32, 33, 34, 35, 36, 37)}, {3, any_int()}});
}

inline rc::Gen<int> any_time()
{
    return rc::gen::weightedOneOf<int>({
        {3, rc::gen::element(0, -1, 951782399, 951782400, 951868800, 1709164799, 1709251199, 1735689599, INT_MAX,
                             -2147000000)},
        {1, between(-2147000000, INT_MAX - 1)},
    });
}

/// Anywhere among the ints, all near each other.
inline std::vector<int> random_steps_of_a_bar()
{
    int const base = *rc::gen::weightedElement<int>({{6, 0}, {1, -20}, {1, 1000000}, {1, INT_MIN}, {1, INT_MAX - 30}});
    std::vector<int> steps;
    for (int i = 0; i < 3; ++i) {
        steps.push_back(base + *between(0, 30));
    }
    return steps;
}

/// Any ints, steps that share an end with real bars, and bars without a width.
inline std::vector<int> random_steps_of_percent()
{
    int const kind = *rc::gen::weightedElement<int>({{3, 0}, {3, 1}, {1, 2}});
    int const position = *(kind == 0 ? any_int() : between(0, 120));
    int const start = *(kind == 0 ? any_int() : rc::gen::element(0, 0, 0, 10, -50));
    int const end = *(kind == 0 ? any_int() : rc::gen::element(49, 100, 100, 50, 1000, 7));
    return kind == 2 ? std::vector<int>{position % 3, start, start} : std::vector<int>{position, start, end};
}

/// To be called where a generator is at work.
inline void add_random_argument(Argument kind, Step& step)
{
    auto const add_number = [&step](rc::Gen<int> const& number) { step.numbers.push_back(*number); };
    auto const add_numbers = [&step](std::vector<int> const& numbers) {
        step.numbers.insert(step.numbers.end(), numbers.begin(), numbers.end());
    };
    auto const add_text = [&step](rc::Gen<std::string> const& text) { step.texts.push_back(*text); };
    switch (kind) {
    case Argument::number:
        return add_number(any_int());
    case Argument::numbers:
        return add_numbers(*rc::gen::resize(8, rc::gen::container<std::vector<int>>(any_int())));
    case Argument::flag:
        return add_number(between(0, 1));
    case Argument::mostly_on:
        return add_number(rc::gen::element(0, 1, 1, 1));
    case Argument::mostly_off:
        return add_number(rc::gen::element(0, 0, 0, 1));
    case Argument::byte:
        return add_number(between(0, 255));
    case Argument::fill:
        return add_number(between(' ', '~'));
    case Argument::two_bytes:
        return add_number(between(0, 65535));
    case Argument::item:
        return add_number(between(0, 9));
    case Argument::width:
        return add_number(between(-1, 30));
    case Argument::states:
        return add_number(between(0, 3));
    case Argument::colorize_word:
        return add_number(rc::gen::element(0, 1, 2, -1, INT_MIN));
    case Argument::code:
        return add_number(any_code());
    case Argument::color_of_eight:
        return add_number(rc::gen::weightedOneOf<int>({{4, between(-1, 8)}, {1, any_int()}}));
    case Argument::vga_color:
        return add_number(rc::gen::weightedOneOf<int>({{6, between(0, 15)}, {1, between(-1, 17)}, {1, any_int()}}));
    case Argument::milliseconds:
        return add_number(rc::gen::element(0, 1, 4, 5, 6, 10, 11, 25, 255, 256, -1, INT_MIN));
    case Argument::seconds:
        return add_number(any_time());
    case Argument::minutes:
        return add_number(rc::gen::element(0, 1, -1, 345, -570, 840, -720));
    case Argument::steps_of_a_bar:
        return add_numbers(random_steps_of_a_bar());
    case Argument::steps_of_percent:
        return add_numbers(random_steps_of_percent());
    case Argument::text:
    case Argument::frames:
        return add_text(any_text());
    case Argument::text_with_space:
        return add_text(any_text_with_space());
    case Argument::bytes:
        return add_text(any_bytes());
    case Argument::bytes_and_separator:
        add_text(any_bytes());
        return add_text(separator_for(step.texts.back()));
    }
}

/// A step of an operation, on no stream.
template <class On>
rc::Gen<Step> random_step_of(Operation<On> const& operation)
{
    return rc::gen::exec([&operation] {
        Step step = {operation.name};
        for (Argument const kind : operation.arguments) {
            add_random_argument(kind, step);
        }
        return step;
    });
}

inline rc::Gen<Sink> random_sink()
{
    return rc::gen::weightedElement<Sink>(
        {{8, Sink::terminal}, {2, Sink::pipe}, {2, Sink::file}, {1, Sink::closed}, {1, Sink::full}});
}

inline rc::Gen<Sinks> random_sinks()
{
    return rc::gen::exec([] {
        Sink const out = *random_sink();
        return Sinks{out, *random_sink()};
    });
}

/// An index into operations, by their weights.
template <class On>
rc::Gen<std::size_t> weighted_choice(std::vector<Operation<On>> const& operations)
{
    std::vector<std::size_t> choices;
    for (std::size_t i = 0; i < operations.size(); ++i) {
        choices.insert(choices.end(), static_cast<std::size_t>(operations[i].weight), i);
    }
    return rc::gen::elementOf(choices);
}

} // namespace hueline::test
