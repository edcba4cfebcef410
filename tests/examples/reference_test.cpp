#include "examples/reference.hpp"

#include "support/testing.hpp"

#include <regex>

namespace {

using namespace hueline::test;
using namespace std::chrono_literals;

// What a terminal receives from each.
// clang-format off
std::map<std::string, std::string> const written = {
    {"hueline_switches_1", ""},
    {"hueline_switches_2", ""},
    {"hueline_style_1",
     R"(\e[00m\e[1m\e[4mone\e[00m\e[1m\e[4m\e[32mtwo\e[00m\e[25h\n)"
     R"(\e[00m\e[4m\e[32mgreen, underlined, not bold\e[00m\e[25h\n)"},
    {"hueline_color_1",
     R"(\e[00m\e[1m\e[31m\e[00m\e[1m\e[31m\e[47mfailed\e[00m\e[25h\n)"
     R"(\e[00m\e[1m\e[32m\e[47mdevice    \e[00m\e[25hready\n)"
     R"(\e[00m\e[1m\e[30m\e[47m0\e[00m\e[25h\n\e[00m\e[1m\e[31m\e[47m1\e[00m\e[25h\n)"
     R"(\e[00m\e[1m\e[32m\e[47m2\e[00m\e[25h\n\e[00m\e[1m\e[33m\e[47m3\e[00m\e[25h\n)"
     R"(\e[00m\e[1m\e[34m\e[47m4\e[00m\e[25h\n\e[00m\e[1m\e[35m\e[47m5\e[00m\e[25h\n)"
     R"(\e[00m\e[1m\e[36m\e[47m6\e[00m\e[25h\n\e[00m\e[1m\e[37m\e[47m7\e[00m\e[25h\n)"},
    {"hueline_palette_1",
     R"(\e[00m\e[1m\e[38;5;208morange\e[00m\e[25h\n\e[00m\e[1m\e[38;2;255;128;0morange\e[00m\e[25h\n)"
     R"(\e[00m\e[1m\e[38;2;255;128;0m\e[48;2;0;0;64morange on navy\e[00m\e[25h\n)"},
    {"hueline_palette_2", R"(\e[38;2;255;128;0m#\e[0m\n)"},
    {"hueline_cursor_1", R"(\e[2J\e[3;7Hrow 3, column 7\n)"},
    {"hueline_indicators_1",
     R"(\rcopied 0%\rcopied 11%\rcopied 22%\rcopied 33%\rcopied 44%\rcopied 55%\rcopied 66%\rcopied 77%)"
     R"(\rcopied 88%\rcopied 100%\n)"},
    {"hueline_themes_1",
     R"(\e[00m\e[1m\e[31m\e[00m\e[1m\e[31mno such device\e[00m\e[1m\e[2m\e[31m\e[00m\e[25h\n)"
     R"(\e[00m\e[1m\e[36m/dev/ttyS0\e[00m\e[25h not found\n)"},
    {"hueline_dump_1", R"(01 03 00 2a \n0x002a\n)"},
    {"hueline_patterns_1", R"(\e[00m\e[1m\e[37m\e[00m\e[1m\e[37m\e[40m no frills mode is off \n...)"},
    {"hueline_banner_1", R"(Hueline ver. \e[00m\e[1m\e[37m0.2.2-r0\e[00m\e[25h\n)"},
    {"hueline_string_color_1", R"(\e[31mfailed\e[0m\n)"},
    {"hueline_time_1", R"(\e[36m[now]\e[0m started\n)"},
    {"hueline_string_themes_1", R"(\e[1m\e[31mno such device\e[2m\e[0m\n)"},
    {"hueline_string_dump_1", R"(\e[32m01 \e[32m03 \e[32m00 \e[32m2a \e[0m\n)"},
    {"hueline_errors_1", R"(UnknownCodeException passed to Hueline\n)"},
};
// clang-format on

// The time is another one each time, and a pattern is told by its beginning.
std::string comparable(Outcome const& run, std::string const& expected)
{
    static std::regex const stamp(R"(\[\d{4}-[^\]]*\])");
    std::string const text = std::regex_replace(readable(run.out + run.err), stamp, "[now]");
    std::string const rest = "...";
    return expected.ends_with(rest) ? text.substr(0, expected.size() - rest.size()) + rest : text;
}

void expect_written(std::vector<Snippet> const& snippets)
{
    for (Snippet const& snippet : snippets) {
        Outcome const run = run_with({Sink::terminal, Sink::pipe}, snippet.run);
        EXPECT_EQ(run.status, 0) << snippet.name << ": " << run.report;
        auto const known = written.find(snippet.name);
        ASSERT_NE(known, written.end()) << snippet.name << " writes " << readable(run.out);
        EXPECT_EQ(comparable(run, known->second), known->second) << snippet.name;
    }
}

TEST(Reference, SnippetsOfTheStreamInterfaceWriteWhatTheySay)
{
    EXPECT_EQ(stream_snippets().size(), 12U);
    expect_written(stream_snippets());
}

TEST(Reference, SnippetsOfTheStringInterfaceWriteWhatTheySay)
{
    EXPECT_EQ(classic_snippets().size(), 5U);
    expect_written(classic_snippets());
}

TEST(Reference, SnippetOfTheIndicatorsTakesItsTimeOnATerminal)
{
    for (Snippet const& snippet : stream_snippets()) {
        if (snippet.name == "hueline_indicators_1") {
            auto const start = std::chrono::steady_clock::now();
            on_terminal(snippet.run);
            EXPECT_GE(std::chrono::steady_clock::now() - start, 900ms); // ten frames
        }
    }
}

} // namespace
