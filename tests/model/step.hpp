/// \file
/// One step of a random program, as data that a model and the library can both follow, and what can
/// be seen after it.
#pragma once

#include <cstdint>
#include <exception>
#include <ios>
#include <new>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace hueline::test {

struct Step {
    std::string operation;               ///< As it is written in a program: "csi::cup".
    std::string on = {};                 ///< The stream: "cout", "cerr", ...
    std::vector<int> numbers = {};       ///< The operation's arguments, ...
    std::vector<std::string> texts = {}; ///< ... as many of them as it takes.
};

/// A step as a reader understands it: cout << csi::cup{3, 7}.
std::string to_text(Step const& step);

std::ostream& operator<<(std::ostream& os, Step const& step);

/// The numbers of a step as 32-bit words.
inline std::vector<unsigned> words_of(Step const& step) { return {step.numbers.begin(), step.numbers.end()}; }

/// Its first two numbers as the halves of 64 bits, of which a long has the lower 32 on some machines.
inline unsigned long long_word_of(Step const& step)
{
    return static_cast<unsigned long>(std::uint64_t{static_cast<unsigned>(step.numbers.at(0))} << 32 |
                                      static_cast<unsigned>(step.numbers.at(1)));
}

/// Its first text as bytes.
inline std::vector<unsigned char> bytes_of(Step const& step)
{
    return {step.texts.at(0).begin(), step.texts.at(0).end()};
}

/// A property of the process and what it is.
struct Fact {
    std::string name;
    std::string value;
};

using Facts = std::vector<Fact>;

/// Stands for a value that may be any.
inline std::string const any_value = "(any)";

/// Adds fill, width, precision, format flags and error state of a stream.
void add_format(Facts& facts, std::string const& name, std::ostream& os);

/// Stands for a flush in what a stream has received: a byte that no text of the tests holds.
inline constexpr char flush_mark = '\f';

/// Ends each piece of what a stream without a buffer has received: there each is a system call.
inline constexpr char piece_mark = '\x1d';

/// What is marked in what a stream has received. Flushes with nothing between them are one.
enum class Marks { nothing, flushes, pieces };

/// What action throws, in words.
template <class Action>
std::string thrown_by(Action const& action)
{
    try {
        action();
    } catch (std::ios_base::failure const&) {
        return "std::ios_base::failure";
    } catch (std::bad_alloc const&) {
        return "std::bad_alloc";
    } catch (std::exception const& e) {
        return e.what();
    } catch (char const* text) {
        return std::string("char const*: ") + text;
    } catch (...) {
        return "something else";
    }
    return "nothing";
}

} // namespace hueline::test
