#include "kestry/hueline_stream.hpp"

#include "support/look.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Manipulator = std::ostream& (*)(std::ostream&);

// ---------------------------------------------------------------------------------------------
// Where the gate passes
// ---------------------------------------------------------------------------------------------

TEST(Style, HasNoBoldPieceAfterThin)
{
    auto const run = on_terminal([] { std::cout << colorize << thin << red << "x"; });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[00m\e[31mx)");
    EXPECT_FALSE(Screen(run.out).cell(0, 0).bold);
}

TEST(Style, KeepsTheColorOfTheOtherGround)
{
    auto const run =
        on_terminal([] { std::cout << colorize << red << "|" << on_blue << "|" << green << "|" << on_white; });
    EXPECT_EQ(readable(run.out),
              R"(\e[00m\e[1m\e[31m|\e[00m\e[1m\e[31m\e[44m|\e[00m\e[1m\e[32m\e[44m|\e[00m\e[1m\e[32m\e[47m)");
}

TEST(PastTheRecord, EndsWithTheNextRendition)
{
    auto const run =
        on_terminal([] { std::cout << colorize << concealed << "a" << crossed << "b" << green << "c" << adjust; });
    EXPECT_EQ(readable(run.out), R"(\e[8ma\e[9mb\e[00m\e[1m\e[32mc\e[00m\e[1m\e[32m)");
    Screen const screen(run.out);
    EXPECT_FALSE(screen.cell(0, 0).strike);
    EXPECT_TRUE(screen.cell(0, 1).strike);
    EXPECT_FALSE(screen.cell(0, 2).strike);
}

// ---------------------------------------------------------------------------------------------
// Where the gate refuses
// ---------------------------------------------------------------------------------------------

TEST(Refused, WeightShowsInTheNextRenditionOnAnyStream)
{
    auto const run = run_with({.out = Sink::terminal, .err = Sink::pipe}, [] {
        std::cout << colorize << red << "a";
        std::cerr << thin << "b";
        std::ostringstream() << dark << italic << green;
        std::cout << on_blue << "c";
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31ma\e[00m\e[2m\e[31m\e[44mc)");
    EXPECT_EQ(run.err, "b");
}

TEST(Refused, WeightOfNoFrillsModeShowsAfterIt)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        _setNoFrillsMode(true);
        std::cout << dark << underline << "a";
        _setNoFrillsMode(false);
        std::cout << red << "b";
    });
    EXPECT_EQ(readable(run.out), R"(a\e[00m\e[1m\e[2m\e[31mb)");
}

TEST(Refused, TextIsLeftPlain)
{
    auto const body = [] {
        std::cout << colorize << bold << red << "message" << normal << '\n';
        std::cerr << colorize << on_red << crossed << italic << "warning" << reset << '\n';
    };
    auto const run = on_pipe(body);
    EXPECT_EQ(run.out, "message\n");
    EXPECT_EQ(run.err, "warning\n");
}

// ---------------------------------------------------------------------------------------------
// What a person sees
// ---------------------------------------------------------------------------------------------

TEST(Seen, EachAttribute)
{
    auto const run = on_terminal([] {
        std::cout << colorize << thin << "n" << bold << "b" << thin;
        std::cout << italic << "i" << noitalic << underline << "u" << nounderline;
        std::cout << blink << "k" << noblink << reverse << "r" << noreverse << crossed << "s" << thin << "n";
    });
    EXPECT_EQ(row_of(Screen(run.out), 0), "n{bold}b{italic}i{underline}u{blink}k{reverse}r{strike}s{}n");
}

// A cell in each of the colours, beside each other.
std::string seen(std::vector<Manipulator> const& colors)
{
    auto const run = on_terminal([&] {
        std::cout << colorize << thin;
        for (Manipulator const color : colors) {
            std::cout << color << 'x';
        }
    });
    return row_of(Screen(run.out), 0);
}

TEST(Seen, EachForegroundColor)
{
    EXPECT_EQ(seen({black, red, green, yellow, blue, magenta, cyan, white}),
              "{black}x{red}x{green}x{yellow}x{blue}x{magenta}x{cyan}x{white}x");
}

TEST(Seen, EachBackgroundColor)
{
    EXPECT_EQ(seen({on_black, on_red, on_green, on_yellow, on_blue, on_magenta, on_cyan, on_white}),
              "{on black}x{on red}x{on green}x{on yellow}x{on blue}x{on magenta}x{on cyan}x{on white}x");
}

} // namespace
