#include "kestry/hueline_stream.hpp"

#include "support/isatty_calls.hpp"
#include "refused.hpp"

#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

struct Choice {
    int index;
    char const* foreground;
    char const* background;
};

Choice const choices[] = {
    {0, R"(\e[30m)", R"(\e[40m)"},       {1, R"(\e[31m)", R"(\e[41m)"},       {2, R"(\e[32m)", R"(\e[42m)"},
    {3, R"(\e[33m)", R"(\e[43m)"},       {4, R"(\e[34m)", R"(\e[44m)"},       {5, R"(\e[35m)", R"(\e[45m)"},
    {6, R"(\e[36m)", R"(\e[46m)"},       {7, R"(\e[37m)", R"(\e[47m)"},       {8, R"(\e[37m)", R"(\e[47m)"},
    {9, R"(\e[37m)", R"(\e[47m)"},       {-1, R"(\e[37m)", R"(\e[47m)"},      {-7, R"(\e[37m)", R"(\e[47m)"},
    {256, R"(\e[37m)", R"(\e[47m)"},     {65536, R"(\e[37m)", R"(\e[47m)"},   {65537, R"(\e[37m)", R"(\e[47m)"},
    {INT_MAX, R"(\e[37m)", R"(\e[47m)"}, {INT_MIN, R"(\e[37m)", R"(\e[47m)"}, {INT_MIN + 1, R"(\e[37m)", R"(\e[47m)"},
};

TEST(Next, AppliesTheForegroundOfTheIndex)
{
    for (Choice const& choice : choices) {
        auto const run = on_terminal([&] { next(std::cout << colorize << italic << '|', choice.index, false); });
        EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[3m|\e[00m\e[1m\e[3m)" + std::string(choice.foreground))
            << choice.index;
    }
}

TEST(Next, AppliesTheBackgroundOfTheIndex)
{
    for (Choice const& choice : choices) {
        auto const run = on_terminal([&] { next(std::cout << colorize << italic << '|', choice.index, true); });
        EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[3m|\e[00m\e[1m\e[3m)" + std::string(choice.background))
            << choice.index;
    }
}

TEST(Next, LeavesTheOtherGround)
{
    auto const run = on_terminal([] {
        next(std::cerr << colorize, 1, false);
        next(std::cerr, 4, true);
        next(std::cerr, 2, false);
        std::cout << colorize << adjust << '|';
        next(std::cerr, 3, true);
        std::cout << adjust;
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[32m\e[44m|\e[00m\e[1m\e[32m\e[43m)");
}

TEST(Next, ChangesNothingWhereTheGateRefuses)
{
    for (bool const background : {false, true}) {
        for (int const index : {0, 5, 7, -1}) {
            auto const before = [](std::ostream& os) { os << red << on_blue; };
            for (auto const& it : refused(before, [&](std::ostream& os) { next(os, index, background); })) {
                EXPECT_EQ(it.written, "") << it.why;
                EXPECT_EQ(readable(it.rendition), R"(\e[00m\e[1m\e[31m\e[44m)") << it.why;
            }
        }
    }
}

TEST(Next, RunsTheGateOnceAndReturnsItsStream)
{
    for (bool const background : {false, true}) {
        for (Choice const& choice : choices) {
            auto const body = [&] {
                auto const apply = [&](std::ostream& os) {
                    isatty_calls = 0;
                    std::ostream& returned = next(os, choice.index, background);
                    report(std::to_string(isatty_calls));
                    report(&returned == &os ? " same " : " other ");
                };
                apply(std::cout << colorize);
                apply(std::cerr);
                std::ostringstream text;
                apply(text << colorize);
            };
            EXPECT_EQ(on_terminal(body).report, "1 same 1 same 0 same ") << choice.index;
            EXPECT_EQ(on_pipe(body).report, "1 same 1 same 0 same ") << choice.index;
        }
    }
}

TEST(Next, ShowsTheEightColors)
{
    auto const run = on_terminal([] {
        std::cout << colorize << thin;
        for (int index = 0; index < 8; ++index) {
            next(next(std::cout, index, false), 7 - index, true) << 'x';
        }
    });
    Screen const screen(run.out);
    for (int index = 0; index < 8; ++index) {
        EXPECT_EQ(screen.cell(0, index).foreground.index, index);
        EXPECT_EQ(screen.cell(0, index).background.index, 7 - index);
    }
}

TEST(Col, IsTenBytesWide)
{
    EXPECT_EQ(col(""), "          ");
    EXPECT_EQ(col("r"), "r         ");
    EXPECT_EQ(col("red"), "red       ");
    EXPECT_EQ(col("black"), "black     ");
    EXPECT_EQ(col("yellow"), "yellow    ");
    EXPECT_EQ(col("magenta"), "magenta   ");
    EXPECT_EQ(col("12345678"), "12345678  ");
    EXPECT_EQ(col("123456789"), "123456789 ");
    EXPECT_EQ(col("1234567890"), "1234567890");
    EXPECT_EQ(col("12345678901"), "1234567890");
    EXPECT_EQ(col("12345678901234"), "1234567890");
}

TEST(Col, KeepsTheHeadOfAnyLength)
{
    for (std::size_t length = 0; length <= 40; ++length) {
        std::string const cell = col(std::string(length, 'x'));
        std::size_t const kept = length < 10 ? length : 10;
        EXPECT_EQ(cell, std::string(kept, 'x') + std::string(10 - kept, ' ')) << length;
    }
    EXPECT_EQ(col(std::string(1 << 20, 'm')), "mmmmmmmmmm");
}

TEST(Col, CountsBytes)
{
    EXPECT_EQ(readable(col("\u00e9t\u00e9")), "\u00e9t\u00e9     "); // five bytes
    EXPECT_EQ(readable(col("123456789\u00e9")), R"(123456789\xc3)"); // cut inside of a character
    EXPECT_EQ(readable(col(std::string("a\0b", 3))), R"(a\x00b       )");
    EXPECT_EQ(readable(col("a\n\tb")), R"(a\n\tb      )");
    EXPECT_EQ(readable(col("  red")), "  red     ");
    EXPECT_EQ(readable(col("\x1b[31mred\x1b[0m")), R"(\e[31mred\e[)");
}

TEST(Col, LeavesItsNameAndTheColorState)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        isatty_calls = 0;
        std::string const name = "a name of some length";
        std::cout << col(name) << col("red");
        report(std::to_string(isatty_calls) + " ");
        report(_isUsingColor() ? "color " : "plain ");
        report(name);
    });
    EXPECT_EQ(run.out, "a name of red       ");
    EXPECT_EQ(run.report, "0 plain a name of some length");
}

} // namespace
