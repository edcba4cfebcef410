#include "kestry/kit/style.hpp"

#include "workload.hpp"

#include <fmt/color.h>

#include <iterator>
#include <sstream>
#include <string_view>

#include "kestry/kit/style.hpp" // once more, now that fmt is known

namespace hueline::bench {

namespace kit = kestry::kit;
using namespace std::string_view_literals;

namespace {

std::string const word = "failed";
std::string const sentence = "no answer from the device, trying again in a minute";

constexpr auto alert = kit::fg(kit::red) | kit::bold;
auto const fmt_alert = fmt::fg(fmt::terminal_color::red) | fmt::emphasis::bold;
constexpr auto orange = kit::fg(kit::rgb(255, 140, 0));
auto const fmt_orange = fmt::fg(fmt::rgb(255, 140, 0));

void nothing() {}

// ---------------------------------------------------------------------------------------------
// As a string
// ---------------------------------------------------------------------------------------------

template <std::string const& text, auto const& style>
std::string as_string()
{
    return to_string(kit::styled(text, style));
}

template <std::string const& text, auto const& style>
std::string with_fmt()
{
    return fmt::format(style, "{}", text);
}

std::string formatted() { return fmt::format("{:>12}", kit::styled(word, alert)); }
std::string formatted_with_fmt() { return fmt::format("{:>12}", fmt::styled(word, fmt_alert)); }

// ---------------------------------------------------------------------------------------------
// Into a string stream
// ---------------------------------------------------------------------------------------------

// A string buffer that can be written from the start again: otherwise memory would be measured.
class StringBuffer : public std::stringbuf {
public:
    StringBuffer() : std::stringbuf(std::string(1024, ' '), std::ios_base::out) {}
    void rewind() { setp(pbase(), epptr()); }
};

StringBuffer buffer;
std::ostream stream{&buffer};

template <std::string const& text>
void into_stream()
{
    buffer.rewind();
    stream << kit::styled(text, alert);
}

template <std::string const& text>
void into_stream_bare()
{
    buffer.rewind();
    stream << "\x1b[1;31m"sv << text << "\x1b[22;39m"sv;
}

void nested()
{
    buffer.rewind();
    stream << kit::styled(kit::bold, "error: "sv, kit::styled(word, kit::fg(kit::red)), " to start\n"sv);
}

void nested_bare()
{
    buffer.rewind();
    stream << "\x1b[1m"sv
           << "error: "sv
           << "\x1b[31m"sv << word << "\x1b[39m"sv
           << " to start"sv
           << "\x1b[22m"sv
           << "\n"sv;
}

void number()
{
    buffer.rewind();
    stream << kit::styled(1234567, alert);
}

void number_bare()
{
    buffer.rewind();
    stream << "\x1b[1;31m"sv << 1234567 << "\x1b[22;39m"sv;
}

// ---------------------------------------------------------------------------------------------
// Colours of 24 bits on a terminal of 256
// ---------------------------------------------------------------------------------------------

kit::color some_color{kit::color_kind::rgb, 255, 140, 0};

kit::color nearest()
{
    some_color.r = static_cast<std::uint8_t>(some_color.r + 1);
    return kit::reduced(some_color, kit::color_depth::ansi256);
}

} // namespace

// clang-format off
Workloads kit_style()
{
    return {
        {"styled word as a string", nothing, run<as_string<word, alert>>, {
            {"`fmt::format` with a style", run<with_fmt<word, fmt_alert>>, 0.35}}},
        {"styled sentence as a string", nothing, run<as_string<sentence, alert>>, {
            {"`fmt::format` with a style", run<with_fmt<sentence, fmt_alert>>, 0.35}}},
        {"styled word in 24 bits as a string", nothing, run<as_string<word, orange>>, {
            {"`fmt::format` with a style", run<with_fmt<word, fmt_orange>>, 0.35}}},
        {"styled word in twelve columns", nothing, run<formatted>, {
            {"`fmt::styled`", run<formatted_with_fmt>}}},
        {"styled word into a string stream", nothing, run<into_stream<word>>, {
            {"the bare insertions", run<into_stream_bare<word>>, 1.3}}},
        {"styled sentence into a string stream", nothing, run<into_stream<sentence>>, {
            {"the bare insertions", run<into_stream_bare<sentence>>, 1.3}}},
        {"nested styles into a string stream", nothing, run<nested>, {
            {"the bare insertions", run<nested_bare>, 1.3}}},
        {"styled number into a string stream", nothing, run<number>, {
            {"the bare insertions", run<number_bare>}}},
        {"colour of 24 bits reduced to 256", nothing, run<nearest>, {}},
    };
}
// clang-format on

} // namespace hueline::bench
