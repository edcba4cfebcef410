/// \file
/// Random arguments, with weight on the edges.
#pragma once

#include "support/process.hpp"

#include <climits>
#include <cstddef>
#include <cstdlib>
#include <string>
#include <vector>

#include <rapidcheck.h>

namespace hueline::test {

using Numbers = rc::Gen<std::vector<int>>;
using Texts = rc::Gen<std::vector<std::string>>;

/// Unless RC_PARAMS says otherwise.
inline void same_programs_in_each_run() { setenv("RC_PARAMS", "seed=1 max_success=150", 0); }

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

inline Numbers no_numbers() { return rc::gen::just(std::vector<int>{}); }
inline Texts no_texts() { return rc::gen::just(std::vector<std::string>{}); }
inline Numbers numbers(std::size_t count, rc::Gen<int> const& number)
{
    return rc::gen::container<std::vector<int>>(count, number);
}
inline Texts some_texts(std::size_t count) { return rc::gen::container<std::vector<std::string>>(count, any_text()); }
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

inline Texts some_bytes() { return rc::gen::container<std::vector<std::string>>(1, any_bytes()); }

/// Bytes and what separates them: a long separator between a few bytes only, since what the C library
/// buffers before a descriptor that fails is not part of the model.
inline Texts some_bytes_and_a_separator()
{
    using namespace std::string_literals;
    return rc::gen::exec([] {
        std::string const bytes = *any_bytes();
        return std::vector<std::string>{
            bytes, *(bytes.size() < 50 ? any_text() : rc::gen::element(""s, ":"s, ", "s, "----"s))};
    });
}

/// White space and what looks like it, and a few other bytes.
inline Texts some_texts_with_space()
{
    return rc::gen::container<std::vector<std::string>>(
        1, rc::gen::resize(12, rc::gen::container<std::string>(rc::gen::element(' ', '\t', '\n', '\v', '\f', '\r', '\0',
                                                                                '\x08', '\x0e', '\xa0', 'a', '.'))));
}

inline Numbers several_numbers() { return rc::gen::resize(8, rc::gen::container<std::vector<int>>(any_int())); }

inline Numbers pair(rc::Gen<int> const& first, rc::Gen<int> const& second)
{
    return rc::gen::exec([=] {
        int const a = *first;
        return std::vector<int>{a, *second};
    });
}

/// Position, start and end of a bar that has few cells: near each other, anywhere among the ints.
inline Numbers steps_of_a_bar()
{
    return rc::gen::exec([] {
        int const base =
            *rc::gen::weightedElement<int>({{6, 0}, {1, -20}, {1, 1000000}, {1, INT_MIN}, {1, INT_MAX - 30}});
        std::vector<int> steps;
        for (int i = 0; i < 3; ++i) {
            steps.push_back(base + *between(0, 30));
        }
        return steps;
    });
}

/// Position, start and end of a percentage: any ints, steps that share an end with real bars, and bars
/// without a width.
inline Numbers steps_of_a_percentage()
{
    return rc::gen::exec([] {
        int const kind = *rc::gen::weightedElement<int>({{3, 0}, {3, 1}, {1, 2}});
        int const position = *(kind == 0 ? any_int() : between(0, 120));
        int const start = *(kind == 0 ? any_int() : rc::gen::element(0, 0, 0, 10, -50));
        int const end = *(kind == 0 ? any_int() : rc::gen::element(49, 100, 100, 50, 1000, 7));
        return kind == 2 ? std::vector<int>{position % 3, start, start} : std::vector<int>{position, start, end};
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
template <class Operations>
rc::Gen<std::size_t> weighted_choice(Operations const& operations)
{
    std::vector<std::size_t> choices;
    for (std::size_t i = 0; i < operations.size(); ++i) {
        choices.insert(choices.end(), static_cast<std::size_t>(operations[i].weight), i);
    }
    return rc::gen::elementOf(choices);
}

inline int weight_of_host_operation(std::string const& name)
{
    if (name == "recover" || name == "text") {
        return 25;
    }
    if (name == "imbue a grouping locale") {
        return 3;
    }
    return name == "std::setw" ? 24 : 5;
}

inline Numbers numbers_of_host_operation(std::string const& name)
{
    if (name == "int") {
        return numbers(1, any_int());
    }
    if (name == "char" || name == "std::setfill") {
        return numbers(1, between(' ', '~'));
    }
    if (name == "std::setw") {
        return numbers(1, between(-1, 30));
    }
    if (name == "exceptions" || name == "setstate") {
        return numbers(1, between(0, 3));
    }
    return no_numbers();
}

inline Texts texts_of_host_operation(std::string const& name) { return name == "text" ? some_texts(1) : no_texts(); }

} // namespace hueline::test
