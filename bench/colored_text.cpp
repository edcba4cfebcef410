#include "kestry/hueline_classic.hpp"

#include "calls.hpp"
#include "use_color.hpp"
#include "workload.hpp"

#include <fmt/color.h>

namespace hueline::bench {

using namespace kestry;

namespace {

std::string const word = "failed";
std::string const sentence = "no answer from the device, trying again in a minute";

void with_color() { use_color(true); }
void without_color() { use_color(false); }

// ---------------------------------------------------------------------------------------------
// In one colour
// ---------------------------------------------------------------------------------------------

template <std::string const& text>
std::string title()
{
    return ColorTheme::app_title(text);
}

template <std::string const& text>
std::string title_with_fmt()
{
    return fmt::format(fmt::fg(fmt::terminal_color::green), "{}", text);
}

template <std::string const& text>
std::string title_appended()
{
    std::string result;
    result.reserve(5 + text.size());
    result.append("\x1b[32m").append(text);
    return result;
}

// ---------------------------------------------------------------------------------------------
// Bright
// ---------------------------------------------------------------------------------------------

template <std::string const& text>
std::string alert()
{
    return ColorTheme::alert(text);
}

template <std::string const& text>
std::string alert_with_fmt()
{
    return fmt::format(fmt::emphasis::bold | fmt::fg(fmt::terminal_color::red), "{}", text);
}

template <std::string const& text>
std::string alert_appended()
{
    std::string result;
    result.reserve(4 + 5 + text.size() + 4);
    result.append("\x1b[1m").append("\x1b[31m").append(text).append("\x1b[2m");
    return result;
}

template <std::string const& text>
std::string copy()
{
    return text;
}

template <std::string const& text>
std::string copy_in_a_call()
{
    return copy_of(text);
}

} // namespace

// clang-format off
Workloads colored_text()
{
    return {
        {"coloured word as a string", with_color, run<title<word>>, {
            {"`fmt::format` with a style", run<title_with_fmt<word>>, 0.33},
            {"reserve and append", run<title_appended<word>>, 1.8}}},
        {"coloured sentence as a string", with_color, run<title<sentence>>, {
            {"`fmt::format` with a style", run<title_with_fmt<sentence>>, 0.52},
            {"reserve and append", run<title_appended<sentence>>, 1.4}}},
        {"alert as a string", with_color, run<alert<sentence>>, {
            {"`fmt::format` with a style", run<alert_with_fmt<sentence>>, 0.45},
            {"reserve and append", run<alert_appended<sentence>>, 1.45}}},
        {"word with colour off", without_color, run<title<word>>, {
            {"a copy of the text", run<copy<word>>, 1.2},
            {"a copy of the text by a shared object", run<copy_in_a_call<word>>}}},
        {"sentence with colour off", without_color, run<title<sentence>>, {
            {"a copy of the text", run<copy<sentence>>, 1.2}}},
        {"alert with colour off", without_color, run<alert<sentence>>, {
            {"a copy of the text", run<copy<sentence>>, 1.2}}},
    };
}
// clang-format on

} // namespace hueline::bench
