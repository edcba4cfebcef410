#include "kestry/hueline_stream.hpp"

#include "refused.hpp"

#include "support/buffers.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Manipulator = std::ostream& (*)(std::ostream&);

// What adjust writes on standard output, alone, after prepare has run on standard error.
std::string rendition_after(std::function<void(std::ostream&)> const& prepare)
{
    auto const run = on_terminal([&] {
        std::cout << colorize;
        prepare(std::cerr << colorize);
        std::cout << adjust;
    });
    return readable(run.out);
}

// ---------------------------------------------------------------------------------------------
// adjust
// ---------------------------------------------------------------------------------------------

TEST(Adjust, RepeatsWhatAColorHasWritten)
{
    auto const run = on_terminal([] { std::cout << colorize << red << adjust; });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m\e[00m\e[1m\e[31m)");
}

TEST(Adjust, WritesEachAttributeInItsPlace)
{
    struct {
        Manipulator apply;
        char const* expected;
    } const rows[] = {
        // clang-format off
        {bold, R"(\e[00m\e[1m)"},
        {thin, R"(\e[00m)"},
        {dark, R"(\e[00m\e[1m\e[2m)"},
        {lite, R"(\e[00m\e[1m)"},
        {italic, R"(\e[00m\e[1m\e[3m)"},
        {underline, R"(\e[00m\e[1m\e[4m)"},
        {blink, R"(\e[00m\e[1m\e[5m)"},
        {reverse, R"(\e[00m\e[1m\e[7m)"},
        {green, R"(\e[00m\e[1m\e[32m)"},
        {on_green, R"(\e[00m\e[1m\e[42m)"},
        // clang-format on
    };
    for (auto const& row : rows) {
        EXPECT_EQ(rendition_after([&](std::ostream& os) { os << row.apply; }), row.expected);
    }
}

TEST(Adjust, WritesAttributesInOneOrderWhateverTheOrderOfTheCalls)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) {
                  os << bold << dark << italic << underline << blink << reverse << red << on_blue;
              }),
              R"(\e[00m\e[1m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)");
    EXPECT_EQ(rendition_after([](std::ostream& os) {
                  os << on_blue << red << reverse << blink << underline << italic << dark << bold;
              }),
              R"(\e[00m\e[1m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)");
}

TEST(Adjust, WritesEachCombinationOfAttributes)
{
    struct {
        Manipulator on;
        Manipulator off;
        char const* when_on;
        char const* when_off;
    } const attributes[] = {
        // clang-format off
        {bold, thin, R"(\e[1m)", ""},      {lite, dark, "", R"(\e[2m)"},
        {italic, noitalic, R"(\e[3m)", ""}, {underline, nounderline, R"(\e[4m)", ""},
        {blink, noblink, R"(\e[5m)", ""},   {reverse, noreverse, R"(\e[7m)", ""},
        // clang-format on
    };
    for (unsigned combination = 0; combination < 64; ++combination) {
        std::string expected = R"(\e[00m)";
        for (unsigned i = 0; i < 6; ++i) {
            expected += (combination >> i & 1) != 0 ? attributes[i].when_on : attributes[i].when_off;
        }
        auto const apply = [&](std::ostream& os) {
            for (unsigned i = 6; i-- > 0;) {
                os << ((combination >> i & 1) != 0 ? attributes[i].on : attributes[i].off);
            }
        };
        EXPECT_EQ(rendition_after(apply), expected) << combination;
    }
}

TEST(Adjust, WritesForegroundThenBackground)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << on_cyan << yellow; }), R"(\e[00m\e[1m\e[33m\e[46m)");
    EXPECT_EQ(rendition_after([](std::ostream& os) {
                  os << on_rgb{1, 2, 3} << color{200};
              }),
              R"(\e[00m\e[1m\e[38;5;200m\e[48;2;1;2;3m)");
}

TEST(Adjust, SharesTheRenditionBetweenStreams)
{
    auto const run = on_terminal([] {
        std::cout << colorize << italic << red;
        std::cerr << colorize << adjust;
        std::clog << colorize << on_green;
        std::cout << "|" << adjust;
    });
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m\e[3m\e[31m\e[00m\e[1m\e[3m\e[31m\e[42m)");
    EXPECT_EQ(readable(run.out.substr(run.out.find('|'))), R"(|\e[00m\e[1m\e[3m\e[31m\e[42m)");
}

// What std::cout is given, after what was done to the record on std::cerr.
std::string pieces_of_adjust(std::ostream& (*change)(std::ostream&))
{
    auto const run = on_terminal([change] {
        std::cout << colorize;
        std::cerr << colorize << change;
        Journal pieces;
        {
            WithBuffer const kept(std::cout, &pieces);
            std::cout << adjust;
        }
        report(pieces.text);
    });
    return readable(run.report);
}

TEST(Adjust, InsertsEachPieceByItself)
{
    EXPECT_EQ(pieces_of_adjust([](std::ostream& os) -> std::ostream& { return os << everything_changed << bold; }),
              R"([\e[00m][\e[1m][\e[2m][\e[3m][\e[4m][\e[5m][\e[7m][\e[31m][\e[44m])");
}

TEST(Adjust, InsertsNoEmptyPiece)
{
    EXPECT_EQ(pieces_of_adjust(thin), R"([\e[00m])");
    EXPECT_EQ(pieces_of_adjust(bold), R"([\e[00m][\e[1m])");
}

// ---------------------------------------------------------------------------------------------
// push and pull
// ---------------------------------------------------------------------------------------------

TEST(Push, LeavesTheRendition)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << everything_changed << push; }), everything_changed_bytes);
}

TEST(Push, SavesEachAttribute)
{
    struct {
        Manipulator change;
        Manipulator change_back;
        char const* expected;
    } const rows[] = {
        {thin, bold, R"(\e[00m)"},
        {dark, lite, R"(\e[00m\e[1m\e[2m)"},
        {italic, noitalic, R"(\e[00m\e[1m\e[3m)"},
        {underline, nounderline, R"(\e[00m\e[1m\e[4m)"},
        {blink, noblink, R"(\e[00m\e[1m\e[5m)"},
        {reverse, noreverse, R"(\e[00m\e[1m\e[7m)"},
        {red, green, R"(\e[00m\e[1m\e[31m\e[31m)"},
    };
    for (auto const& row : rows) {
        auto const apply = [&](std::ostream& os) { os << row.change << push << row.change_back << pull; };
        EXPECT_EQ(rendition_after(apply), row.expected);
    }
}

TEST(Push, KeepsForegroundInBothSlots)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << on_blue << red << push << on_green << pull; }),
              R"(\e[00m\e[1m\e[31m\e[31m)");
    EXPECT_EQ(rendition_after([](std::ostream& os) {
                  os << rgb{10, 20, 30} << on_color{7} << push << green << pull;
              }),
              R"(\e[00m\e[1m\e[38;2;10;20;30m\e[38;2;10;20;30m)");
}

TEST(Push, LosesTheBackgroundWithoutAForeground)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << on_blue << push << pull; }), R"(\e[00m\e[1m)");
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << on_blue << push << red << on_green << pull; }),
              R"(\e[00m\e[1m)");
}

TEST(Push, TakesACopy)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << red << push << italic << thin << green << pull; }),
              R"(\e[00m\e[1m\e[31m\e[31m)");
}

TEST(Push, IsNoStack)
{
    EXPECT_EQ(rendition_after(
                  [](std::ostream& os) { os << red << push << green << italic << push << reset << pull << pull; }),
              R"(\e[00m\e[1m\e[3m\e[32m\e[32m)");
}

TEST(Push, SavesNothingWhereTheGateRefuses)
{
    auto const before = [](std::ostream& os) { os << italic << red << push << noitalic << dark << green; };
    for (auto const& it : refused(before, push)) {
        EXPECT_EQ(readable(it.written), "") << it.why;
        EXPECT_EQ(readable(it.rendition), R"(\e[00m\e[1m\e[2m\e[32m)") << it.why;
    }
    for (auto const& it : refused(before, push, pull)) {
        EXPECT_EQ(readable(it.rendition), R"(\e[00m\e[1m\e[3m\e[31m\e[31m)") << it.why;
    }
}

TEST(Pull, ShowsWithTheNextRendition)
{
    auto const run = on_terminal([] { std::cout << colorize << red << push << on_green << "|" << pull << underline; });
    EXPECT_EQ(readable(run.out.substr(run.out.find('|'))), R"(|\e[00m\e[1m\e[4m\e[31m\e[31m)");
}

TEST(Pull, BeforeAnyPushRestoresTheRenditionOfTheStart)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << everything_changed << pull; }), R"(\e[00m\e[1m)");
}

TEST(Pull, RestoresEachAttribute)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << everything_changed << push << reset << pull; }),
              R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[31m)");
    for (Manipulator const change : {thin, dark, italic, underline, blink, reverse, red, on_blue}) {
        EXPECT_EQ(rendition_after([&](std::ostream& os) { os << push << change << pull; }), R"(\e[00m\e[1m)");
    }
}

TEST(Pull, MayBeRepeated)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << red << push << pull << dark << on_green << cyan << pull; }),
              R"(\e[00m\e[1m\e[31m\e[31m)");
}

TEST(Pull, RestoresNothingWhereTheGateRefuses)
{
    for (auto const& it : refused([](std::ostream& os) { os << italic << push << everything_changed; }, pull)) {
        EXPECT_EQ(readable(it.written), "") << it.why;
        EXPECT_EQ(readable(it.rendition), everything_changed_bytes) << it.why;
    }
}

TEST(PushAndPull, WorkOnAStreamThatHasFailed)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::cerr << colorize << red;
        std::cout.setstate(std::ios_base::failbit);
        std::cout << push;
        std::cerr << green;
        std::cout << pull;
        std::cerr << '|' << adjust;
    });
    EXPECT_EQ(readable(run.err.substr(run.err.find('|'))), R"(|\e[00m\e[1m\e[31m\e[31m)");
}

// ---------------------------------------------------------------------------------------------
// normal and reset
// ---------------------------------------------------------------------------------------------

TEST(Normal, LeavesTheRendition)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << everything_changed << normal; }), everything_changed_bytes);

    auto const run = on_terminal([] { std::cout << colorize << italic << "|" << normal << red; });
    EXPECT_EQ(readable(run.out.substr(run.out.find('|'))), R"(|\e[00m\e[25h\e[00m\e[1m\e[3m\e[31m)");
}

TEST(Reset, ForgetsTheRendition)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << everything_changed << reset; }), R"(\e[00m\e[1m)");
    for (Manipulator const change : {thin, dark, italic, underline, blink, reverse, red, on_blue}) {
        EXPECT_EQ(rendition_after([&](std::ostream& os) { os << change << reset; }), R"(\e[00m\e[1m)");
    }
}

TEST(Reset, LeavesWhatWasPushed)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << everything_changed << push << reset << pull; }),
              R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[31m)");
}

// ---------------------------------------------------------------------------------------------
// All five
// ---------------------------------------------------------------------------------------------

TEST(Composition, SaysWhatAPersonSees)
{
    auto const run = on_terminal([] {
        std::cout << colorize << everything_changed << bold << "a" << normal << "b" << adjust << "c";
        std::cout << reset << "d" << adjust << "e";
    });
    Screen const screen(run.out);
    EXPECT_EQ(screen.text(0), "abcde");
    for (int const col : {0, 2}) {
        Cell const cell = screen.cell(0, col);
        EXPECT_TRUE(cell.bold && cell.italic && cell.underline && cell.blink && cell.reverse) << col;
        EXPECT_EQ(cell.foreground.index, 1) << col;
        EXPECT_EQ(cell.background.index, 4) << col;
    }
    for (int const col : {1, 3, 4}) {
        Cell const cell = screen.cell(0, col);
        EXPECT_FALSE(cell.italic || cell.underline || cell.blink || cell.reverse) << col;
        EXPECT_EQ(cell.bold, col == 4) << col;
        EXPECT_TRUE(cell.foreground.is_default) << col;
        EXPECT_TRUE(cell.background.is_default) << col;
    }
    EXPECT_TRUE(screen.cursor_visible());
}

} // namespace
