#include "kestry/hueline_stream.hpp"

#include "failing.hpp"
#include "isatty_calls.hpp"
#include "recorder.hpp"
#include "refused.hpp"

#include "screen/look.hpp"
#include "support/process.hpp"
#include "support/readable.hpp"
#include "support/screen.hpp"

#include <iomanip>
#include <ios>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Manipulator = std::ostream& (*)(std::ostream&);

// What a manipulator that changes the record writes, as readable() shows it.
struct Style {
    char const* name;
    Manipulator apply;
    char const* at_start;      // first of all
    char const* after_changes; // after everything_changed
};

// clang-format off
Style const remembered_everywhere[] = {
    {"bold",        bold,        R"(\e[00m\e[1m)",       R"(\e[00m\e[1m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"thin",        thin,        R"(\e[00m)",            R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"dark",        dark,        R"(\e[00m\e[1m\e[2m)",  R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"lite",        lite,        R"(\e[00m\e[1m)",       R"(\e[00m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"bright",      bright,      R"(\e[00m\e[1m)",       R"(\e[00m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
};

Style const changed_where_it_shows[] = {
    {"italic",      italic,      R"(\e[00m\e[1m\e[3m)",  R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"noitalic",    noitalic,    R"(\e[00m\e[1m)",       R"(\e[00m\e[2m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"underline",   underline,   R"(\e[00m\e[1m\e[4m)",  R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"nounderline", nounderline, R"(\e[00m\e[1m)",       R"(\e[00m\e[2m\e[3m\e[5m\e[7m\e[31m\e[44m)"},
    {"blink",       blink,       R"(\e[00m\e[1m\e[5m)",  R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"noblink",     noblink,     R"(\e[00m\e[1m)",       R"(\e[00m\e[2m\e[3m\e[4m\e[7m\e[31m\e[44m)"},
    {"reverse",     reverse,     R"(\e[00m\e[1m\e[7m)",  R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"noreverse",   noreverse,   R"(\e[00m\e[1m)",       R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[31m\e[44m)"},

    {"grey",        grey,        R"(\e[00m\e[1m\e[30m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[30m\e[44m)"},
    {"red",         red,         R"(\e[00m\e[1m\e[31m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"green",       green,       R"(\e[00m\e[1m\e[32m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[32m\e[44m)"},
    {"yellow",      yellow,      R"(\e[00m\e[1m\e[33m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[33m\e[44m)"},
    {"blue",        blue,        R"(\e[00m\e[1m\e[34m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[34m\e[44m)"},
    {"magenta",     magenta,     R"(\e[00m\e[1m\e[35m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[35m\e[44m)"},
    {"cyan",        cyan,        R"(\e[00m\e[1m\e[36m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[36m\e[44m)"},
    {"white",       white,       R"(\e[00m\e[1m\e[37m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[37m\e[44m)"},
    {"black",       black,       R"(\e[00m\e[1m\e[30m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[30m\e[44m)"},

    {"on_grey",     on_grey,     R"(\e[00m\e[1m\e[40m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[40m)"},
    {"on_red",      on_red,      R"(\e[00m\e[1m\e[41m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[41m)"},
    {"on_green",    on_green,    R"(\e[00m\e[1m\e[42m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[42m)"},
    {"on_yellow",   on_yellow,   R"(\e[00m\e[1m\e[43m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[43m)"},
    {"on_blue",     on_blue,     R"(\e[00m\e[1m\e[44m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[44m)"},
    {"on_magenta",  on_magenta,  R"(\e[00m\e[1m\e[45m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[45m)"},
    {"on_cyan",     on_cyan,     R"(\e[00m\e[1m\e[46m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[46m)"},
    {"on_white",    on_white,    R"(\e[00m\e[1m\e[47m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[47m)"},
    {"on_black",    on_black,    R"(\e[00m\e[1m\e[40m)", R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[40m)"},
};
// clang-format on

struct {
    char const* name;
    Manipulator apply;
    char const* bytes;
} const past_the_record[] = {
    {"concealed", concealed, R"(\e[8m)"},
    {"crossed", crossed, R"(\e[9m)"},
};

char const* const start_bytes = R"(\e[00m\e[1m)";

template <class Action>
void for_each_style(Action const& action)
{
    for (Style const& style : remembered_everywhere) {
        SCOPED_TRACE(style.name);
        action(style);
    }
    for (Style const& style : changed_where_it_shows) {
        SCOPED_TRACE(style.name);
        action(style);
    }
}

template <class Action>
void for_each_manipulator(Action const& action)
{
    for_each_style([&](Style const& style) { action(style.apply); });
    for (auto const& it : past_the_record) {
        SCOPED_TRACE(it.name);
        action(it.apply);
    }
}

// ---------------------------------------------------------------------------------------------
// Where the gate passes
// ---------------------------------------------------------------------------------------------

TEST(Style, WritesTheRendition)
{
    for_each_style([](Style const& style) {
        auto const run = on_terminal([&] { std::cout << colorize << style.apply; });
        EXPECT_EQ(readable(run.out), style.at_start);
        EXPECT_EQ(run.err, "");
    });
}

TEST(Style, WritesTheRenditionOnStandardErrorToo)
{
    for_each_style([](Style const& style) {
        for (std::ostream* os : {&std::cerr, &std::clog}) {
            auto const run = run_with({Sink::pipe, Sink::terminal}, [&] { *os << colorize << style.apply; });
            EXPECT_EQ(readable(run.err), style.at_start);
            EXPECT_EQ(run.out, "");
        }
    });
}

TEST(Style, ChangesItsOwnPartOfTheRendition)
{
    for_each_style([](Style const& style) {
        auto const run = on_terminal([&] {
            std::cerr << colorize << everything_changed;
            std::cout << colorize << style.apply;
        });
        EXPECT_EQ(readable(run.out), style.after_changes);
    });
}

TEST(Style, IsRemembered)
{
    for_each_style([](Style const& style) {
        auto const at_start = on_terminal([&] {
            std::cerr << colorize << style.apply;
            std::cout << colorize << adjust;
        });
        EXPECT_EQ(readable(at_start.out), style.at_start);

        auto const after_changes = on_terminal([&] {
            std::cerr << colorize << everything_changed << style.apply;
            std::cout << colorize << adjust;
        });
        EXPECT_EQ(readable(after_changes.out), style.after_changes);
    });
}

TEST(Style, HasNoBoldPieceAfterThin)
{
    auto const run = on_terminal([] { std::cout << colorize << thin << red << "x"; });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[00m\e[31mx)");
    EXPECT_FALSE(Screen(run.out).cell(0, 0).bold);
}

TEST(Style, KeepsTheColourOfTheOtherGround)
{
    auto const run =
        on_terminal([] { std::cout << colorize << red << "|" << on_blue << "|" << green << "|" << on_white; });
    EXPECT_EQ(readable(run.out),
              R"(\e[00m\e[1m\e[31m|\e[00m\e[1m\e[31m\e[44m|\e[00m\e[1m\e[32m\e[44m|\e[00m\e[1m\e[32m\e[47m)");
}

TEST(PastTheRecord, WritesItsSequenceAlone)
{
    for (auto const& it : past_the_record) {
        auto const run = on_terminal([&] {
            std::cerr << colorize << everything_changed;
            std::cout << colorize << it.apply;
        });
        EXPECT_EQ(readable(run.out), it.bytes);
    }
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

TEST(PastTheRecord, ChangesNothing)
{
    for (auto const& it : past_the_record) {
        auto const run = on_terminal([&] {
            std::cerr << colorize << it.apply;
            std::cout << colorize << adjust << "|";
            std::cerr << everything_changed << it.apply;
            std::cout << adjust;
        });
        EXPECT_EQ(readable(run.out), std::string(start_bytes) + "|" + everything_changed_bytes);
    }
}

// ---------------------------------------------------------------------------------------------
// Where the gate refuses
// ---------------------------------------------------------------------------------------------

TEST(Refused, WeightIsRememberedAllTheSame)
{
    for (Style const& style : remembered_everywhere) {
        for (auto const& it : refused(nothing, style.apply)) {
            EXPECT_EQ(it.written, "") << style.name << ", " << it.why;
            EXPECT_EQ(readable(it.rendition), style.at_start) << style.name << ", " << it.why;
        }
        for (auto const& it : refused(everything_changed, style.apply)) {
            EXPECT_EQ(it.written, "") << style.name << ", " << it.why;
            EXPECT_EQ(readable(it.rendition), style.after_changes) << style.name << ", " << it.why;
        }
    }
}

TEST(Refused, DecorationAndColourChangeNothing)
{
    for (Style const& style : changed_where_it_shows) {
        for (auto const& it : refused(nothing, style.apply)) {
            EXPECT_EQ(it.written, "") << style.name << ", " << it.why;
            EXPECT_EQ(readable(it.rendition), start_bytes) << style.name << ", " << it.why;
        }
        for (auto const& it : refused(everything_changed, style.apply)) {
            EXPECT_EQ(it.written, "") << style.name << ", " << it.why;
            EXPECT_EQ(readable(it.rendition), everything_changed_bytes) << style.name << ", " << it.why;
        }
    }
}

TEST(Refused, ConcealedAndCrossedWriteNothing)
{
    for (auto const& direct : past_the_record) {
        for (auto const& it : refused(nothing, direct.apply)) {
            EXPECT_EQ(it.written, "") << direct.name << ", " << it.why;
            EXPECT_EQ(readable(it.rendition), start_bytes) << direct.name << ", " << it.why;
        }
    }
}

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

TEST(Refused, AProgramThatNeverColorizesWritesPlainText)
{
    auto const run = on_terminal([] {
        for_each_manipulator([](Manipulator apply) {
            std::cout << apply << '.';
            std::cerr << apply << ':';
        });
    });
    EXPECT_EQ(run.out, ".................................");
    EXPECT_EQ(run.err, ":::::::::::::::::::::::::::::::::");
}

// ---------------------------------------------------------------------------------------------
// All of them
// ---------------------------------------------------------------------------------------------

TEST(EachManipulator, RunsTheGateOnce)
{
    for_each_manipulator([](Manipulator apply) {
        auto const body = [apply] {
            auto const count = [apply](std::ostream& os) {
                isatty_calls = 0;
                os << apply;
                report(std::to_string(isatty_calls) + " ");
            };
            count(std::cout);
            count(std::cout << colorize);
            count(std::cerr << colorize);
            count(std::clog << colorize);
            std::ostringstream os;
            count(os << colorize);
            _setNoFrillsMode(true);
            count(std::cout);
        };
        EXPECT_EQ(on_terminal(body).report, "1 1 1 1 0 1 ");
        EXPECT_EQ(on_pipe(body).report, "1 1 1 1 0 1 ");
    });
}

TEST(EachManipulator, TellsWhatTheGateFound)
{
    for_each_manipulator([](Manipulator apply) {
        auto const run = run_with({.out = Sink::terminal, .err = Sink::pipe}, [apply] {
            auto const tell = [apply](std::ostream& os) {
                os << apply;
                report(_isUsingColor() ? "color " : "plain ");
            };
            std::ostringstream text;
            tell(std::cout);
            tell(text);
            tell(std::cout << colorize);
            tell(std::cerr << colorize);
        });
        EXPECT_EQ(run.report, "color plain color plain ");
    });
}

TEST(EachManipulator, ReturnsItsStream)
{
    for_each_manipulator([](Manipulator apply) {
        auto const run = on_terminal([apply] {
            std::ostringstream os;
            report(&apply(os) == &os ? "same " : "other ");
            report(&apply(std::cout) == &std::cout ? "same " : "other ");
            report(&apply(std::cout << colorize) == &std::cout ? "same" : "other");
        });
        EXPECT_EQ(run.report, "same same same");
    });
}

TEST(EachManipulator, DoesNotFlush)
{
    for_each_manipulator([](Manipulator apply) {
        auto const run = on_terminal([apply] {
            Recorder const recorder(std::cout);
            std::cout << apply << colorize << apply;
            report(recorder.text());
        });
        EXPECT_EQ(run.report.find(flush_mark), std::string::npos) << readable(run.report);
        EXPECT_NE(run.report, "");
    });
}

TEST(EachManipulator, PadsItsFirstPieceToAPendingWidth)
{
    for_each_style([](Style const& style) {
        auto const run = on_terminal([&] {
            std::cout << colorize << std::setfill('.') << std::setw(7) << style.apply;
            report(std::to_string(std::cout.width()));
        });
        EXPECT_EQ(readable(run.out), std::string("..") + style.at_start);
        EXPECT_EQ(run.report, "0");
    });
    for (auto const& it : past_the_record) {
        auto const run = on_terminal([&] {
            std::cout << colorize << std::left << std::setfill('.') << std::setw(7) << it.apply;
            report(std::to_string(std::cout.width()));
        });
        EXPECT_EQ(readable(run.out), std::string(it.bytes) + "...") << it.name;
        EXPECT_EQ(run.report, "0") << it.name;
    }
}

TEST(EachManipulator, LeavesAPendingWidthWhereTheGateRefuses)
{
    for_each_manipulator([](Manipulator apply) {
        auto const run = on_pipe([apply] { std::cout << colorize << std::setw(4) << apply << "x"; });
        EXPECT_EQ(run.out, "   x");
    });
}

TEST(EachManipulator, WritesPlainSequencesWhateverTheNumberFormat)
{
    for_each_style([](Style const& style) {
        auto const run = on_terminal([&] {
            std::cout << colorize << std::hex << std::showbase << std::uppercase << std::showpos << style.apply;
        });
        EXPECT_EQ(readable(run.out), style.at_start);
    });
}

// ---------------------------------------------------------------------------------------------
// Streams that fail
// ---------------------------------------------------------------------------------------------

TEST(FailedStream, IsNotWrittenToButTheRecordChanges)
{
    for_each_style([](Style const& style) {
        for (auto const state : {std::ios_base::failbit, std::ios_base::badbit}) {
            auto const run = on_terminal([&] {
                std::cerr << colorize << everything_changed << '|';
                std::cout << colorize;
                std::cout.setstate(state);
                std::cout << style.apply;
                std::cerr << adjust;
            });
            EXPECT_EQ(run.out, "");
            EXPECT_EQ(readable(run.err.substr(run.err.find('|') + 1)), style.after_changes);
        }
    });
}

TEST(ThrowingStream, HasTheChangeThatCameBeforeTheWrite)
{
    for_each_style([](Style const& style) {
        auto const run = on_terminal([&] {
            std::cerr << colorize << everything_changed << '|';
            {
                Failing const failing(std::cout << colorize, std::ios_base::badbit);
                try {
                    std::cout << style.apply;
                } catch (std::ios_base::failure const&) {
                    report("thrown");
                }
            }
            std::cerr << adjust;
        });
        EXPECT_EQ(run.report, "thrown");
        EXPECT_EQ(readable(run.err.substr(run.err.find('|') + 1)), style.after_changes);
    });
}

TEST(ThrowingStream, DoesNotThrowWhereNothingIsWritten)
{
    for_each_manipulator([](Manipulator apply) {
        auto const run = on_pipe([apply] {
            Failing const failing(std::cout << colorize, std::ios_base::badbit | std::ios_base::failbit);
            std::cout << apply;
            report("not thrown");
        });
        EXPECT_EQ(run.report, "not thrown");
    });
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
std::string seen(std::vector<Manipulator> const& colours)
{
    auto const run = on_terminal([&] {
        std::cout << colorize << thin;
        for (Manipulator const colour : colours) {
            std::cout << colour << 'x';
        }
    });
    return row_of(Screen(run.out), 0);
}

TEST(Seen, EachForegroundColour)
{
    EXPECT_EQ(seen({black, red, green, yellow, blue, magenta, cyan, white}),
              "{black}x{red}x{green}x{yellow}x{blue}x{magenta}x{cyan}x{white}x");
}

TEST(Seen, EachBackgroundColour)
{
    EXPECT_EQ(seen({on_black, on_red, on_green, on_yellow, on_blue, on_magenta, on_cyan, on_white}),
              "{on black}x{on red}x{on green}x{on yellow}x{on blue}x{on magenta}x{on cyan}x{on white}x");
}

} // namespace
