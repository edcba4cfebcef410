#include "kestry/hueline_stream.hpp"

#include "failing.hpp"
#include "isatty_calls.hpp"
#include "recorder.hpp"
#include "refused.hpp"

#include "support/process.hpp"
#include "support/readable.hpp"
#include "support/screen.hpp"

#include <cstdlib>
#include <functional>
#include <iomanip>
#include <ios>
#include <iostream>
#include <new>
#include <sstream>
#include <streambuf>
#include <string>

#include <gtest/gtest.h>

namespace {

// How many allocations succeed before one fails; none fails while it is negative.
int allocations_left = -1;

} // namespace

void* operator new(std::size_t size)
{
    if (allocations_left == 0) {
        throw std::bad_alloc();
    }
    allocations_left -= allocations_left > 0 ? 1 : 0;
    void* const memory = std::malloc(size != 0 ? size : 1);
    return memory != nullptr ? memory : throw std::bad_alloc();
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Manipulator = std::ostream& (*)(std::ostream&);

struct Named {
    char const* name;
    Manipulator apply;
};

Named const all_five[] = {{"adjust", adjust}, {"push", push}, {"pull", pull}, {"normal", normal}, {"reset", reset}};

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

TEST(Adjust, WritesBoldAtLoad)
{
    for (std::ostream* os : {&std::cout, &std::cerr, &std::clog}) {
        auto const run = on_terminal([os] { *os << colorize << adjust; });
        EXPECT_EQ(readable(os == &std::cout ? run.out : run.err), R"(\e[00m\e[1m)");
    }
}

TEST(Adjust, RepeatsWhatAColourHasWritten)
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

// Keeps each write to a stream apart.
class Pieces : public std::streambuf {
public:
    std::string text;

private:
    std::streamsize xsputn(char const* bytes, std::streamsize count) override
    {
        text.append(bytes, static_cast<std::size_t>(count)) += ',';
        return count;
    }
};

// What std::cout is given, after what was done to the record on std::cerr.
std::string pieces_of_adjust(std::ostream& (*change)(std::ostream&))
{
    auto const run = on_terminal([change] {
        std::cout << colorize;
        std::cerr << colorize << change;
        Pieces pieces;
        std::streambuf* const before = std::cout.rdbuf(&pieces);
        std::cout << adjust;
        std::cout.rdbuf(before);
        report(pieces.text);
    });
    return readable(run.report);
}

TEST(Adjust, InsertsEachPieceByItself)
{
    EXPECT_EQ(pieces_of_adjust([](std::ostream& os) -> std::ostream& { return os << everything_changed << bold; }),
              R"(\e[00m,\e[1m,\e[2m,\e[3m,\e[4m,\e[5m,\e[7m,\e[31m,\e[44m,)");
}

TEST(Adjust, InsertsNoEmptyPiece)
{
    EXPECT_EQ(pieces_of_adjust(thin), R"(\e[00m,)");
    EXPECT_EQ(pieces_of_adjust(bold), R"(\e[00m,\e[1m,)");
}

// ---------------------------------------------------------------------------------------------
// push and pull
// ---------------------------------------------------------------------------------------------

TEST(Push, WritesNothing)
{
    auto const run = on_terminal([] { std::cout << colorize << red << "|" << push << "|"; });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m||)");
}

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

TEST(Pull, WritesNothing)
{
    auto const run = on_terminal([] { std::cout << colorize << red << push << "|" << pull << "|"; });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m||)");
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

// Too long for the room that a std::string has in itself.
std::ostream& long_foreground(std::ostream& os) { return os << rgb{100, 101, 102}; }

void with_little_memory(int allocations, Manipulator apply)
{
    allocations_left = allocations;
    try {
        std::cerr << apply;
        allocations_left = -1;
        report("done");
    } catch (std::bad_alloc const&) {
        allocations_left = -1;
        report("out of memory");
    }
}

TEST(Push, SavesAllOrNothingWhenMemoryIsShort)
{
    for (int allocations = 0; allocations < 4; ++allocations) {
        auto const run = on_terminal([&] {
            std::cerr << colorize << italic << red << push << noitalic << dark << long_foreground;
            with_little_memory(allocations, push);
            std::cerr << pull;
            std::cout << colorize << adjust;
        });
        EXPECT_EQ(readable(run.out), run.report == "done"
                                         ? R"(\e[00m\e[1m\e[2m\e[38;2;100;101;102m\e[38;2;100;101;102m)"
                                         : R"(\e[00m\e[1m\e[3m\e[31m\e[31m)");
        if (allocations == 0) {
            EXPECT_EQ(run.report, "out of memory");
        }
    }
}

TEST(Pull, RestoresAllOrNothingWhenMemoryIsShort)
{
    for (int allocations = 0; allocations < 4; ++allocations) {
        auto const run = on_terminal([&] {
            std::cerr << colorize << dark << long_foreground << push << reset << underline << cyan << on_green;
            with_little_memory(allocations, pull);
            std::cout << colorize << adjust;
        });
        EXPECT_EQ(readable(run.out), run.report == "done"
                                         ? R"(\e[00m\e[1m\e[2m\e[38;2;100;101;102m\e[38;2;100;101;102m)"
                                         : R"(\e[00m\e[1m\e[4m\e[36m\e[42m)");
        if (allocations == 0) {
            EXPECT_EQ(run.report, "out of memory");
        }
    }
}

// ---------------------------------------------------------------------------------------------
// normal and reset
// ---------------------------------------------------------------------------------------------

TEST(Normal, EndsAttributesAndShowsTheCursor)
{
    for (std::ostream* os : {&std::cout, &std::cerr, &std::clog}) {
        auto const run = on_terminal([os] { *os << colorize << normal; });
        EXPECT_EQ(readable(os == &std::cout ? run.out : run.err), R"(\e[00m\e[25h)");
    }
}

TEST(Normal, LeavesTheRendition)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << everything_changed << normal; }), everything_changed_bytes);

    auto const run = on_terminal([] { std::cout << colorize << italic << "|" << normal << red; });
    EXPECT_EQ(readable(run.out.substr(run.out.find('|'))), R"(|\e[00m\e[25h\e[00m\e[1m\e[3m\e[31m)");
}

TEST(Normal, ChangesNothingWhereTheGateRefuses)
{
    for (auto const& it : refused(everything_changed, normal)) {
        EXPECT_EQ(readable(it.written), "") << it.why;
        EXPECT_EQ(readable(it.rendition), everything_changed_bytes) << it.why;
    }
}

TEST(Adjust, ChangesNothingWhereTheGateRefuses)
{
    for (auto const& it : refused(everything_changed, adjust)) {
        EXPECT_EQ(readable(it.written), "") << it.why;
        EXPECT_EQ(readable(it.rendition), everything_changed_bytes) << it.why;
    }
}

TEST(Reset, WritesWhatNormalWrites)
{
    for (std::ostream* os : {&std::cout, &std::cerr, &std::clog}) {
        auto const run = on_terminal([os] { *os << colorize << reset; });
        EXPECT_EQ(readable(os == &std::cout ? run.out : run.err), R"(\e[00m\e[25h)");
    }
}

TEST(Reset, ForgetsTheRendition)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << everything_changed << reset; }), R"(\e[00m\e[1m)");
    for (Manipulator const change : {thin, dark, italic, underline, blink, reverse, red, on_blue}) {
        EXPECT_EQ(rendition_after([&](std::ostream& os) { os << change << reset; }), R"(\e[00m\e[1m)");
    }
}

TEST(Reset, ForgetsTheRenditionWhereTheGateRefuses)
{
    for (auto const& it : refused(everything_changed, reset)) {
        EXPECT_EQ(readable(it.written), "") << it.why;
        EXPECT_EQ(readable(it.rendition), R"(\e[00m\e[1m)") << it.why;
    }
}

TEST(Reset, LeavesWhatWasPushed)
{
    EXPECT_EQ(rendition_after([](std::ostream& os) { os << everything_changed << push << reset << pull; }),
              R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[31m)");
}

TEST(Reset, ForgetsTheRenditionOnAStreamThatHasFailed)
{
    for (auto const state : {std::ios_base::failbit, std::ios_base::badbit}) {
        EXPECT_EQ(rendition_after([state](std::ostream& os) {
                      os << everything_changed;
                      os.setstate(state);
                      os << reset;
                      os.clear();
                  }),
                  R"(\e[00m\e[1m)");
    }
}

TEST(Reset, KeepsTheRenditionWhenTheStreamThrows)
{
    auto const run = on_terminal([] {
        std::cerr << colorize << everything_changed;
        {
            Failing const failing(std::cerr, std::ios_base::badbit);
            try {
                std::cerr << reset;
            } catch (std::ios_base::failure const&) {
                report("thrown"); // before the record's turn had come
            }
        }
        std::cout << colorize << adjust;
    });
    EXPECT_EQ(run.report, "thrown");
    EXPECT_EQ(readable(run.out), everything_changed_bytes);
}

// ---------------------------------------------------------------------------------------------
// All five
// ---------------------------------------------------------------------------------------------

TEST(Composition, RunsTheGateOnce)
{
    for (Named const& it : all_five) {
        auto const count = [&](std::ostream& os) {
            isatty_calls = 0;
            os << it.apply;
            report(std::to_string(isatty_calls));
            report(_isUsingColor() ? " color " : " plain ");
        };
        auto const body = [&] {
            count(std::cout);
            count(std::cout << colorize);
            count(std::cerr << colorize);
            _setNoFrillsMode(true);
            count(std::cout);
            _setNoFrillsMode(false);
            std::ostringstream os;
            count(os << colorize);
        };
        EXPECT_EQ(on_terminal(body).report, "1 color 1 color 1 color 1 plain 0 plain ") << it.name;
        EXPECT_EQ(on_pipe(body).report, "1 plain 1 plain 1 plain 1 plain 0 plain ") << it.name;
    }
}

TEST(Composition, TellsWhatTheGateFound)
{
    for (Named const& it : all_five) {
        for (Manipulator const before : {colorize, adjust}) { // none was found, one was found
            for (auto const& result : refused(before, it.apply)) {
                EXPECT_EQ(result.found, result.at_terminal ? "terminal" : "none") << it.name << ", " << result.why;
            }
        }
    }
}

TEST(Composition, ReturnsItsStream)
{
    for (Named const& it : all_five) {
        auto const run = on_terminal([&] {
            std::ostringstream os;
            report(&it.apply(os) == &os ? "same " : "other ");
            report(&it.apply(std::cout) == &std::cout ? "same " : "other ");
            report(&it.apply(std::cout << colorize) == &std::cout ? "same " : "other ");
            report(&it.apply(std::cerr << colorize) == &std::cerr ? "same" : "other");
        });
        EXPECT_EQ(run.report, "same same same same") << it.name;
    }
}

TEST(Composition, DoesNotFlush)
{
    auto const run = on_terminal([] {
        std::cout << colorize << red;
        Recorder const recorder(std::cout);
        std::cout << adjust << push << pull << normal << reset;
        report(recorder.text());
    });
    EXPECT_EQ(readable(run.report), R"(\e[00m\e[1m\e[31m\e[00m\e[25h\e[00m\e[25h)");
}

TEST(Composition, PadsItsFirstPieceToAPendingWidth)
{
    auto const run = on_terminal([] {
        std::cout << colorize << std::setfill('*');
        std::cout << std::setw(8) << adjust << 1 << '|';
        std::cout << std::left << std::setw(8) << adjust << 2 << '|';
        std::cout << std::internal << std::setw(8) << normal << 3 << '|';
        std::cout << std::left << std::setw(8) << reset << 4 << '|';
        std::cout << std::setw(5) << adjust << 5;
    });
    EXPECT_EQ(readable(run.out), R"(***\e[00m\e[1m1|\e[00m***\e[1m2|***\e[00m\e[25h3|\e[00m***\e[25h4|\e[00m\e[1m5)");
}

TEST(Composition, LeavesAPendingWidthWhereNothingIsWritten)
{
    auto const on_tty = on_terminal([] { std::cout << colorize << std::setw(3) << push << pull << 1; });
    EXPECT_EQ(readable(on_tty.out), "  1");

    auto const refused =
        on_pipe([] { std::cout << colorize << std::setw(3) << adjust << push << pull << normal << reset << 1; });
    EXPECT_EQ(readable(refused.out), "  1");
}

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
