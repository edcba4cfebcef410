#include "kestry/hueline_stream.hpp"

#include "calls.hpp"
#include "output.hpp"
#include "workload.hpp"

#include <rang.hpp>

#include <iostream>
#include <sstream>
#include <string_view>

#include <unistd.h>

namespace hueline::bench {

using namespace kestry::Hueline;
using namespace std::string_view_literals;

namespace {

void on(Output output)
{
    set_output(output);
    std::cout << colorize << reset;
}

void on_terminal() { on(Output::terminal); }
void on_file() { on(Output::file); }

// What the manipulators write: the record is bold, and red from the line before.
void compose()
{
    std::cout << "\x1b[00m"sv
              << "\x1b[1m"sv
              << "\x1b[31m"sv;
}

void ask() { benchmark::DoNotOptimize(isatty(STDOUT_FILENO)); }

// ---------------------------------------------------------------------------------------------
// The whole line
// ---------------------------------------------------------------------------------------------

void line() { std::cout << bold << red << "text" << normal; }

void line_on_terminal_floor()
{
    ask();
    compose();
    ask();
    compose();
    std::cout << "text";
    ask();
    std::cout << "\x1b[00m"sv;
    std::cout.write("\x1b[25h", 5);
}

void line_on_file_floor()
{
    ask();
    ask();
    std::cout << "text";
    ask();
}

// ---------------------------------------------------------------------------------------------
// One colour
// ---------------------------------------------------------------------------------------------

void one_color() { std::cout << red; }

void one_color_floor()
{
    ask();
    compose();
}

void one_true_color() { std::cout << rgb{255, 128, 64}; }

void one_true_color_floor()
{
    ask();
    std::cout << "\x1b[00m"sv
              << "\x1b[1m"sv
              << "\x1b[38;2;255;128;64m"sv;
}

// ---------------------------------------------------------------------------------------------
// Into a string stream
// ---------------------------------------------------------------------------------------------

// A string buffer that can be written from the start again, at no cost worth the name: the lines
// would need ever more memory.
class StringBuffer : public std::stringbuf {
public:
    StringBuffer() : std::stringbuf(std::string(1024, ' '), std::ios_base::out) {}
    void rewind() { setp(pbase(), epptr()); }
};

StringBuffer buffer;
std::ostream string_stream{&buffer};

void into_string_stream()
{
    buffer.rewind();
    string_stream << bold << red << "text" << normal;
}

void into_string_stream_floor()
{
    buffer.rewind();
    string_stream << "text";
}

void into_string_stream_calls()
{
    buffer.rewind();
    string_stream << do_nothing << do_nothing << "text" << do_nothing;
}

void into_string_stream_rang()
{
    buffer.rewind();
    string_stream << rang::style::bold << rang::fg::red << "text" << rang::style::reset;
}

} // namespace

// clang-format off
Workloads styled_line()
{
    return {
        {"`bold red text normal` on a terminal", on_terminal, run<line>, {
            {"3 `isatty` and the insertions", run<line_on_terminal_floor>, 1.08}}},
        {"`red` alone", on_terminal, run<one_color>, {
            {"1 `isatty` and 3 insertions", run<one_color_floor>, 1.12}}},
        {"`rgb{...}` alone", on_terminal, run<one_true_color>, {
            {"1 `isatty` and 3 insertions", run<one_true_color_floor>, 1.20}}},
        {"`bold red text normal` into a string stream", on_terminal, run<into_string_stream>, {
            {"the text alone", run<into_string_stream_floor>, 1.5},
            {"the text and 3 calls of a shared object that do nothing", run<into_string_stream_calls>},
            {"rang", run<into_string_stream_rang>, 1.1}}},
        {"`bold red text normal`, standard output a file", on_file, run<line>, {
            {"3 `isatty` and the text", run<line_on_file_floor>, 1.06}}},
    };
}
// clang-format on

} // namespace hueline::bench
