#include "kestry/hueline_stream.hpp"

#include "output.hpp"
#include "workload.hpp"

#include <fmt/format.h>

#include <iostream>
#include <iterator>

namespace hueline::bench {

using namespace kestry::Hueline;

namespace {

void on_terminal() { set_output(Output::terminal); }

// The frame of a peer is assembled in a buffer and inserted at once, as ours is.
void insert(fmt::memory_buffer const& frame)
{
    std::cout.write(frame.data(), static_cast<std::streamsize>(frame.size()));
}

// ---------------------------------------------------------------------------------------------
// Progress meter
// ---------------------------------------------------------------------------------------------

std::string const label = "\x1b[36mcompleted";
progress_meter const meter{24, 0, 49, label, "\x1b[32m(", "\x1b[32m)", "\x1b[37m"};

int percentage()
{
    float const whole = static_cast<float>(meter.end - meter.start);
    return static_cast<int>(static_cast<float>(meter.position) / whole * 100.0F);
}

void progress() { std::cout << meter; }

void progress_with_fmt()
{
    fmt::memory_buffer frame;
    fmt::format_to(std::back_inserter(frame), "{}{} {}{}%{}", meter.lead, meter.label, meter.before, percentage(),
                   meter.after);
    insert(frame);
}

void progress_piece_by_piece()
{
    std::cout << meter.lead << meter.label << " " << meter.before << percentage() << "%" << meter.after;
}

// ---------------------------------------------------------------------------------------------
// Status line
// ---------------------------------------------------------------------------------------------

// 40 cells, the spinner one of them.
std::string const done = "\x1b[36m#";
status_line const bar{20, 0, 40, done, "\x1b[37m.", "\x1b[32m[", "\x1b[32m]", "|/-\\", ""};

unsigned turn = 0;

char spinner_frame() { return bar.frames[++turn % bar.frames.size()]; }

void status() { std::cout << bar; }

void status_with_fmt()
{
    fmt::memory_buffer frame;
    auto const out = std::back_inserter(frame);
    fmt::format_to(out, "{}", bar.prefix);
    for (int i = bar.start; i < bar.position; ++i) {
        fmt::format_to(out, "{}", bar.done);
    }
    fmt::format_to(out, "{}", spinner_frame());
    for (int i = bar.position + 1; i < bar.end; ++i) {
        fmt::format_to(out, "{}", bar.todo);
    }
    fmt::format_to(out, "{}", bar.suffix);
    insert(frame);
}

void status_cell_by_cell()
{
    std::cout << bar.prefix;
    for (int i = bar.start; i < bar.position; ++i) {
        std::cout << bar.done;
    }
    std::cout << spinner_frame();
    for (int i = bar.position + 1; i < bar.end; ++i) {
        std::cout << bar.todo;
    }
    std::cout << bar.suffix;
}

} // namespace

// clang-format off
Workloads indicators()
{
    return {
        {"one progress meter frame", on_terminal, run<progress>, {
            {"`fmt::format_to` of the same text", run<progress_with_fmt>, 0.65},
            {"the 7 insertions piece by piece", run<progress_piece_by_piece>, 0.85}}},
        {"one status line frame of 40 cells", on_terminal, run<status>, {
            {"`fmt::format_to` cell by cell", run<status_with_fmt>, 0.15},
            {"the 42 insertions cell by cell", run<status_cell_by_cell>, 0.2}}},
    };
}
// clang-format on

} // namespace hueline::bench
