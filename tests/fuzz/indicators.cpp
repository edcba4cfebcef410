// Frames of spinners, status lines and progress meters with any numbers and texts, on a stream in any
// format.

#include "kestry/hueline_stream.hpp"

#include "fuzzer.hpp"

#include <cmath>

using namespace hueline::fuzz;
using kestry::Hueline::progress_meter;
using kestry::Hueline::spinner;
using kestry::Hueline::status_line;

namespace {

// Every spinner frame that the process has drawn.
std::uint32_t frames_drawn = 0;

// The character that is due. None of no frames.
std::string next_frame(std::string const& frames)
{
    ++frames_drawn;
    return frames.empty() ? "" : std::string(1, frames[frames_drawn % static_cast<std::uint32_t>(frames.size())]);
}

std::string repeated(std::string const& text, std::int64_t times)
{
    std::string all;
    for (; times > 0 && !text.empty(); --times) {
        all += text;
    }
    return all;
}

std::string bar_of(status_line const& s)
{
    std::int64_t const position = s.position;
    std::string bar = s.prefix + repeated(s.done, position - s.start);
    if (position <= s.start) {
        bar += repeated(s.todo, s.end - position);
    } else if (position < s.end) {
        bar += s.spin_label + next_frame(s.frames) + repeated(s.todo, s.end - position - 1);
    }
    return bar + s.suffix;
}

int percentage_of(progress_meter const& m)
{
    auto const steps = static_cast<std::int64_t>(m.end) - m.start;
    auto const as_int = static_cast<std::int32_t>(static_cast<std::uint32_t>(steps));
    float const ratio = static_cast<float>(m.position) / static_cast<float>(as_int);
    double const percent = ratio * 100.0F; // exact: each float is a double
    return std::isnan(percent) ? 0 : static_cast<int>(std::clamp<double>(percent, INT_MIN, INT_MAX));
}

void set_format(std::ostream& os, Input& input)
{
    static constexpr std::ios_base::fmtflags bases[] = {std::ios_base::dec, std::ios_base::oct, std::ios_base::hex, {}};
    static constexpr std::ios_base::fmtflags sides[] = {
        std::ios_base::left, std::ios_base::right, std::ios_base::internal, {}};
    unsigned const flags = input.byte();
    os.setf(bases[flags % 4], std::ios_base::basefield);
    os.setf(sides[flags / 4 % 4], std::ios_base::adjustfield);
    os << (flags & 16 ? std::showbase : std::noshowbase) << (flags & 32 ? std::showpos : std::noshowpos)
       << (flags & 64 ? std::uppercase : std::nouppercase) << (flags & 128 ? std::unitbuf : std::nounitbuf);
    os.fill(static_cast<char>(input.byte()));
    os.width(input.byte());
}

std::string format_of(std::ostream const& os)
{
    return std::to_string(static_cast<unsigned>(os.flags())) + ' ' + std::to_string(os.width()) + ' ' + os.fill();
}

// Unformatted: a width stays pending.
void write(std::ostream& os, std::string const& text) { os.write(text.data(), std::ssize(text)); }

// One frame of each kind: os gets it from the library, expected from the formula.
void draw_spinner(Input& input, std::ostream& expected, std::ostream& os)
{
    std::string const frames = input.text();
    spinner const frame = {frames, input.text()};
    write(expected, frame.label + next_frame(frames));
    os << frame;
}

void draw_status_line(Input& input, std::ostream& expected, std::ostream& os)
{
    // Few cells, wherever they are among the ints; of cells without a text, any number.
    std::string const done = input.text();
    std::string const todo = input.text();
    bool const is_long = done.empty() && todo.empty();
    int const position = input.number();
    int const start = is_long ? input.number() : input.near(position);
    int const end = is_long ? input.number() : input.near(position);
    status_line const frame = {position,     start,        end,          done,        todo,
                               input.text(), input.text(), input.text(), input.text()};
    write(expected, bar_of(frame));
    os << frame;
}

void draw_progress_meter(Input& input, std::ostream& expected, std::ostream& os)
{
    std::string const label = input.text();
    progress_meter const frame = {input.number(), input.number(), input.number(), label,
                                  input.text(),   input.text(),   input.text()};
    write(expected, frame.lead + label + " " + frame.before);
    expected << std::dec << percentage_of(frame);
    write(expected, "%" + frame.after);
    os << frame;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    static constexpr void (*draw[])(Input&, std::ostream&, std::ostream&) = {draw_spinner, draw_status_line,
                                                                             draw_progress_meter};
    Input input(data, size);
    while (!input.is_empty()) {
        std::ostringstream expected;
        set_format(expected, input);
        std::ostringstream os;
        os.copyfmt(expected);
        draw[input.byte() % 3](input, expected, os);
        expect_equal("frame", expected.str(), os.str());
        expect_equal("format afterwards", format_of(expected), format_of(os));
    }
    return 0;
}
