#include "examples/files.hpp"

#include <regex>

namespace {

using namespace hueline::test;

// Gives every time stamp one and the same time, which the expected files have.
std::string at_one_time(std::string const& text)
{
    std::regex const stamp(R"(\[\d{4}-\d{2}-\d{2}\.\d{2}:\d{2}:\d{2}\])");
    return std::regex_replace(text, stamp, "[2026-01-02.03:04:05]");
}

Outcome log(Sink err, std::string const& input, std::vector<std::string> const& environment = {})
{
    Launch launch = {.input = input, .environment = sixteen_colors};
    launch.environment.push_back("LC_ALL=C");
    launch.environment.insert(launch.environment.end(), environment.begin(), environment.end());
    return run_program({Sink::pipe, err}, {EXAMPLE}, launch);
}

TEST(Logger, WritesPlainLinesIntoAPipe)
{
    Outcome const run = log(Sink::pipe, contents_of("logger.input"));
    EXPECT_EQ(at_one_time(run.err), contents_of("logger.expected"));
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 0);
}

TEST(Logger, ThemesItsLinesOnATerminal)
{
    Outcome const run = log(Sink::terminal, contents_of("logger.input"));
    EXPECT_EQ(at_one_time(readable_lines(run.err)), contents_of("logger.terminal.expected"));
}

TEST(Logger, HonoursNoColor)
{
    Outcome const run = log(Sink::terminal, contents_of("logger.input"), {"NO_COLOR=1"});
    EXPECT_EQ(at_one_time(run.err), contents_of("logger.expected"));
}

TEST(Logger, WritesTheTimeOfTheZone)
{
    std::string const in_utc = log(Sink::pipe, "a\n", {"TZ=UTC0"}).err;
    std::string const in_the_east = log(Sink::pipe, "a\n", {"TZ=EAST-13:37"}).err;
    EXPECT_NE(in_utc, in_the_east);
}

TEST(Logger, MakesControlCharactersHarmless)
{
    std::string const prefix = "[2026-01-02.03:04:05] info    ";
    EXPECT_EQ(at_one_time(log(Sink::pipe, "a\x1b[31mb\x07\x7f\tc\r\n").err),
              prefix + "a\\x1b[31mb\\x07\\x7f\tc\\x0d\n");
    // U+009B is the one-character form of "\x1b[". The letter U+00DB ends in the same byte.
    EXPECT_EQ(at_one_time(log(Sink::pipe, "\u009b31m Û\n").err), prefix + "\\u{9b}31m Û\n");
}

TEST(Logger, SaysThatStandardInputCannotBeRead)
{
    expect_refusal_of_input("</", "logger: cannot read standard input: Is a directory\n", 1);
}

} // namespace
