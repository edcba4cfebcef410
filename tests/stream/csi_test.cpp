#include "kestry/hueline_stream.hpp"

#include "isatty_calls.hpp"
#include "recorder.hpp"
#include "refused.hpp"
#include "standard_streams.hpp"
#include "system_clock.hpp"

#include "support/grouping.hpp"
#include "support/process.hpp"
#include "support/readable.hpp"
#include "support/screen.hpp"

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iomanip>
#include <iostream>
#include <limits>
#include <locale>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Insert = std::ostream& (*)(std::ostream&);

struct Control {
    char const* name;
    Insert insert;
    char const* bytes; // as readable() shows them
};

template <class Sequence, int... numbers>
std::ostream& insert(std::ostream& os)
{
    return os << Sequence{numbers...};
}

Control const gated[] = {
    {"show", csi::show, R"(\e[25h)"},
    {"hide", csi::hide, R"(\e[25i)"},
    {"cls", csi::cls, R"(\e[2J)"},
    {"clr", csi::clr, R"(\e[2J)"},
    {"clear", csi::clear, R"(\e[2J)"},
    {"dsr", csi::dsr, R"(\e[6n)"},
    {"scp", csi::scp, R"(\e[s)"},
    {"rcp", csi::rcp, R"(\e[u)"},
    {"ed", insert<csi::ed, 0>, R"(\e[0J)"},
    {"el", insert<csi::el, 1>, R"(\e[1K)"},
    {"cuu", insert<csi::cuu, 2>, R"(\e[2A)"},
    {"cud", insert<csi::cud, 3>, R"(\e[3B)"},
    {"cuf", insert<csi::cuf, 4>, R"(\e[4C)"},
    {"cub", insert<csi::cub, 5>, R"(\e[5D)"},
    {"cnl", insert<csi::cnl, 6>, R"(\e[6E)"},
    {"cpl", insert<csi::cpl, 7>, R"(\e[7F)"},
    {"cha", insert<csi::cha, 8>, R"(\e[8G)"},
    {"su", insert<csi::su, 9>, R"(\e[9S)"},
    {"sd", insert<csi::sd, 10>, R"(\e[10T)"},
    {"sgr", insert<csi::sgr, 91>, R"(\e[91m)"},
    {"cup", insert<csi::cup, 3, 7>, R"(\e[3;7H)"},
    {"hvp", insert<csi::hvp, 3, 7>, R"(\e[3;7f)"},
    {"delay", insert<csi::delay, 1>, ""},
};

Control const ungated[] = {
    {"cr", csi::cr, R"(\r)"},
    {"lf", csi::lf, R"(\n)"},
};

// The controls with one number, and the byte that ends each of them.
struct Numbered {
    char const* name;
    std::ostream& (*insert)(std::ostream&, int);
    char const* final_byte;
};

template <class Sequence>
std::ostream& insert_number(std::ostream& os, int n)
{
    return os << Sequence{n};
}

Numbered const numbered[] = {
    {"ed", insert_number<csi::ed>, "J"},   {"el", insert_number<csi::el>, "K"},   {"cuu", insert_number<csi::cuu>, "A"},
    {"cud", insert_number<csi::cud>, "B"}, {"cuf", insert_number<csi::cuf>, "C"}, {"cub", insert_number<csi::cub>, "D"},
    {"cnl", insert_number<csi::cnl>, "E"}, {"cpl", insert_number<csi::cpl>, "F"}, {"cha", insert_number<csi::cha>, "G"},
    {"su", insert_number<csi::su>, "S"},   {"sd", insert_number<csi::sd>, "T"},   {"sgr", insert_number<csi::sgr>, "m"},
};

// What a colorized std::cout on a terminal receives.
std::string shown(std::function<void(std::ostream&)> const& body)
{
    auto const run = on_terminal([&] {
        colorize(std::cout);
        body(std::cout);
    });
    EXPECT_EQ(run.status, 0) << run.report;
    return readable(run.out);
}

std::string yes_or_no(bool answer) { return answer ? "yes " : "no "; }

TEST(Csi, WritesTheBytesOfEachControl)
{
    for (StandardStream const& to : standard_streams) {
        for (Control const& control : gated) {
            auto const run = on_terminal([&] { control.insert(colorize(to.os)); });
            EXPECT_EQ(readable(run.*to.bytes), control.bytes) << control.name << " on " << to.name;
            EXPECT_EQ(run.out.size() + run.err.size(), (run.*to.bytes).size()) << control.name << " on " << to.name;
        }
    }
}

TEST(Csi, ReturnsItsStream)
{
    auto const run = on_terminal([] {
        for (std::ostream* os : {&std::cout, &std::cerr}) {
            colorize(std::cout); // std::cerr refuses
            for (Control const& control : gated) {
                report(&control.insert(*os) == os ? "" : control.name);
            }
            for (Control const& control : ungated) {
                report(&control.insert(*os) == os ? "" : control.name);
            }
        }
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.report, "");
}

TEST(Csi, WritesNothingWhereTheGateRefuses)
{
    auto const insert_each = [](std::ostream& os) {
        for (Control const& control : gated) {
            control.insert(os);
        }
    };
    for (Refused const& run : refused(nothing, insert_each)) {
        EXPECT_EQ(readable(run.written), "") << run.why;
    }
    for (Sink const sink : {Sink::pipe, Sink::file}) {
        auto const run = run_with({Sink::terminal, sink}, [&] {
            insert_each(colorize(std::cerr));
            insert_each(colorize(std::clog));
        });
        EXPECT_EQ(readable(run.err), "");
    }
}

TEST(Csi, ReturnsTheCarriageAndFeedsALineEverywhere)
{
    auto const insert_both = [](std::ostream& os) { os << csi::cr << csi::lf; };
    for (Refused const& run : refused(nothing, insert_both)) {
        bool const is_lost = run.why == "standard output is /dev/full" || run.why == "standard output is closed";
        EXPECT_EQ(readable(run.written), is_lost ? "" : R"(\r\n)") << run.why;
    }
    EXPECT_EQ(shown(insert_both), R"(\r\n)");
}

TEST(Csi, GivesClrAndClearOneAddress)
{
    Insert volatile const clr = csi::clr;
    Insert volatile const clear = csi::clear;
    EXPECT_EQ(clr, clear);
}

TEST(Csi, WritesAnyNumberAsItIs)
{
    for (Numbered const& control : numbered) {
        std::string const bytes = shown([&](std::ostream& os) {
            for (int const n : {INT_MIN, -1, 0, 1, 255, INT_MAX}) {
                control.insert(os, n);
            }
        });
        std::string const end = control.final_byte;
        EXPECT_EQ(bytes, R"(\e[-2147483648)" + end + R"(\e[-1)" + end + R"(\e[0)" + end + R"(\e[1)" + end +
                             R"(\e[255)" + end + R"(\e[2147483647)" + end)
            << control.name;
    }
}

TEST(Csi, WritesAnyPositionAsItIs)
{
    EXPECT_EQ(shown([](std::ostream& os) {
                  os << csi::cup{INT_MIN, INT_MAX} << csi::cup{-1, 0} << csi::cup{0, -1};
              }),
              R"(\e[-2147483648;2147483647H\e[-1;0H\e[0;-1H)");
    EXPECT_EQ(shown([](std::ostream& os) {
                  os << csi::hvp{INT_MAX, INT_MIN} << csi::hvp{0, -1} << csi::hvp{-1, 0};
              }),
              R"(\e[2147483647;-2147483648f\e[0;-1f\e[-1;0f)");
}

TEST(Csi, LeavesAWidthPendingPastTheFixedSequences)
{
    for (Insert const fixed : {csi::show, csi::hide, csi::dsr, csi::scp, csi::rcp, csi::cr, csi::lf}) {
        std::string const alone = shown([&](std::ostream& os) { fixed(os); });
        std::string const padded = shown([&](std::ostream& os) {
            os << std::setfill('*') << std::setw(12);
            fixed(os);
            os << "x";
        });
        EXPECT_EQ(padded, alone + "***********x");
    }
}

TEST(Csi, LeavesAWidthPendingWhereTheGateRefuses)
{
    auto const run = on_pipe([] {
        colorize(std::cout);
        for (Control const& control : gated) {
            std::cout << std::setw(7);
            control.insert(std::cout);
            report(std::cout.width() == 7 ? "" : control.name);
        }
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.report, "");
}

TEST(Csi, PadsTheNumberAndNotTheIntroducer)
{
    for (Numbered const& control : numbered) {
        std::string const end = control.final_byte;
        EXPECT_EQ(shown([&](std::ostream& os) {
                      os << std::setfill('*') << std::setw(6);
                      control.insert(os, 42);
                      os << "x" << std::left << std::setw(6);
                      control.insert(os, 42);
                      os << std::internal << std::setw(6);
                      control.insert(os, -42);
                  }),
                  R"(\e[****42)" + end + "x" + R"(\e[42****)" + end + R"(\e[-***42)" + end)
            << control.name;
    }
}

TEST(Csi, PadsTheRowAndNotTheColumn)
{
    EXPECT_EQ(shown([](std::ostream& os) {
                  os << std::setfill('*') << std::setw(4) << csi::cup{3, 7} << "x";
              }),
              R"(\e[***3;7Hx)");
    EXPECT_EQ(shown([](std::ostream& os) {
                  os << std::setfill('*') << std::setw(4) << csi::hvp{3, 7} << "x";
              }),
              R"(\e[***3;7fx)");
}

TEST(Csi, ErasesTheDisplayInTheNumberFormatOfTheStream)
{
    for (Insert const erase : {csi::cls, csi::clr, csi::clear}) {
        EXPECT_EQ(shown([&](std::ostream& os) {
                      os << std::setfill('*') << std::setw(3);
                      erase(os);
                      os << std::hex << std::showbase;
                      erase(os);
                      os << std::dec << std::showpos;
                      erase(os);
                  }),
                  R"(\e[**2J\e[0x2J\e[+2J)");
    }
}

TEST(Csi, ShowsTheBaseOfTheStreamInNumbers)
{
    for (Numbered const& control : numbered) {
        std::string const end = control.final_byte;
        EXPECT_EQ(shown([&](std::ostream& os) {
                      control.insert(os << std::hex, 255);
                      control.insert(os << std::showbase, 255);
                      control.insert(os << std::uppercase, 255);
                      control.insert(os << std::oct, 255);
                      control.insert(os << std::noshowbase, -1);
                      control.insert(os << std::dec << std::showpos, 255);
                  }),
                  R"(\e[ff)" + end + R"(\e[0xff)" + end + R"(\e[0XFF)" + end + R"(\e[0377)" + end +
                      R"(\e[37777777777)" + end + R"(\e[+255)" + end)
            << control.name;
    }
}

TEST(Csi, ShowsTheBaseOfTheStreamInBothNumbersOfAPosition)
{
    EXPECT_EQ(shown([](std::ostream& os) {
                  os << std::hex << csi::cup{10, 26} << csi::hvp{27, 11};
              }),
              R"(\e[a;1aH\e[1b;bf)");
    EXPECT_EQ(shown([](std::ostream& os) {
                  os << std::showpos << csi::cup{10, 26} << csi::hvp{27, -11};
              }),
              R"(\e[+10;+26H\e[+27;-11f)");
}

TEST(Csi, LeavesTheFormatOfTheStreamAlone)
{
    auto const run = on_terminal([] {
        std::cout << colorize << std::hex << std::showbase << std::uppercase << std::left << std::setfill('*');
        auto const flags = std::cout.flags();
        for (Control const& control : gated) {
            control.insert(std::cout);
            report(std::cout.flags() == flags && std::cout.fill() == '*' ? "" : control.name);
        }
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.report, "");
}

TEST(Csi, GroupsDigitsAsTheLocaleOfTheStreamDoes)
{
    EXPECT_EQ(shown([](std::ostream& os) {
                  os.imbue(grouping_locale());
                  os << csi::cuf{1234567} << csi::cup{10, 20};
              }),
              R"(\e[1.2.3.4.5.6.7C\e[1.0;2.0H)");
}

TEST(Csi, DoesNotGroupDigitsForTheGlobalLocale)
{
    EXPECT_EQ(shown([](std::ostream& os) {
                  std::locale::global(grouping_locale());
                  os << csi::cuf{1234567} << csi::cup{10, 20};
              }),
              R"(\e[1234567C\e[10;20H)");
}

TEST(Csi, NeverFlushes)
{
    auto const run = on_terminal([] {
        colorize(std::cout);
        Recorder const recorder(std::cout);
        for (Control const& control : gated) {
            control.insert(std::cout);
        }
        for (Control const& control : ungated) {
            control.insert(std::cout);
        }
        report(recorder.text());
    });
    EXPECT_EQ(readable(run.report),
              R"(\e[25h\e[25i\e[2J\e[2J\e[2J\e[6n\e[s\e[u\e[0J\e[1K\e[2A\e[3B\e[4C\e[5D\e[6E\e[7F\e[8G\e[9S\e[10T)"
              R"(\e[91m\e[3;7H\e[3;7f\r\n)");
}

TEST(Csi, RecordsWhetherATerminalWasFound)
{
    for (Control const& control : gated) {
        auto const run = on_terminal([&] {
            std::ostringstream no_terminal;
            report(yes_or_no(_isUsingColor()));
            control.insert(std::cout); // a terminal, but not colorized
            report(yes_or_no(_isUsingColor()));
            control.insert(no_terminal);
            report(yes_or_no(_isUsingColor()));
            control.insert(colorize(std::cerr));
            report(yes_or_no(_isUsingColor()));
            control.insert(colorize(no_terminal));
            report(yes_or_no(_isUsingColor()));
            _setNoFrillsMode(true);
            control.insert(std::cout);
            _setNoFrillsMode(false);
            report(yes_or_no(_isUsingColor()));
        });
        EXPECT_EQ(run.report, "no yes no yes no yes ") << control.name;

        auto const redirected = run_with({Sink::pipe, Sink::terminal}, [&] {
            control.insert(std::cerr);
            report(yes_or_no(_isUsingColor()));
            control.insert(colorize(std::cout));
            report(yes_or_no(_isUsingColor()));
        });
        EXPECT_EQ(redirected.report, "yes no ") << control.name;
    }
}

TEST(Csi, RecordsNothingWhereItDoesNotAsk)
{
    for (Control const& control : ungated) {
        auto const run = on_terminal([&] {
            control.insert(std::cout);
            report(yes_or_no(_isUsingColor()));
            csi::show(std::cout);
            std::ostringstream no_terminal;
            control.insert(no_terminal);
            report(yes_or_no(_isUsingColor()));
        });
        EXPECT_EQ(run.report, "no yes ") << control.name;
    }
}

TEST(Csi, AsksOnceWhetherAStandardStreamIsATerminal)
{
    for (Control const& control : gated) {
        for (StandardStream const& to : standard_streams) {
            auto const ask = [&] {
                isatty_calls = 0;
                control.insert(to.os);
                report(std::to_string(isatty_calls) + " ");
                isatty_calls = 0;
                control.insert(colorize(to.os));
                report(std::to_string(isatty_calls));
            };
            EXPECT_EQ(on_terminal(ask).report, "1 1") << control.name << " on " << to.name;
            EXPECT_EQ(on_pipe(ask).report, "1 1") << control.name << " on " << to.name;
        }
    }
}

TEST(Csi, AsksOfNoOtherStreamWhetherItIsATerminal)
{
    auto const run = on_terminal([] {
        std::ostringstream string_stream;
        std::ostream same_buffer(std::cout.rdbuf());
        isatty_calls = 0;
        for (Control const& control : gated) {
            control.insert(colorize(string_stream));
            control.insert(colorize(same_buffer));
        }
        for (Control const& control : ungated) {
            control.insert(std::cout);
        }
        report(std::to_string(isatty_calls));
    });
    EXPECT_EQ(run.report, "0");
}

// A clock that advances by step at each reading: how often a wait reads it on a terminal.
std::string readings(int ms, std::chrono::nanoseconds step)
{
    auto const run = on_terminal([&] {
        advance_clock_by(step);
        std::cout << colorize << csi::delay{ms};
        report(std::to_string(clock_readings));
    });
    EXPECT_EQ(run.status, 0) << run.report;
    EXPECT_EQ(run.out, "");
    return run.report;
}

TEST(Delay, ReadsTheClockThreeTimesIfThereIsNothingToWaitFor)
{
    for (int const ms : {0, -1, -1000, INT_MIN}) {
        EXPECT_EQ(readings(ms, std::chrono::nanoseconds(1)), "3") << ms;
        EXPECT_EQ(readings(ms, std::chrono::nanoseconds(0)), "3") << ms;
    }
}

TEST(Delay, WaitsWhileLessThanItsMillisecondsHavePassed)
{
    using namespace std::chrono_literals;
    EXPECT_EQ(readings(25, 1ms), "26"); // the last one 25 ms after the first
    EXPECT_EQ(readings(25, 999'999ns), "27");
    EXPECT_EQ(readings(25, 12'500us), "3");
    EXPECT_EQ(readings(25, 12'499'999ns), "4");
    EXPECT_EQ(readings(1, 100us), "11");
    EXPECT_EQ(readings(1, 499'999ns), "4");
    EXPECT_EQ(readings(10'000, 1s), "11");
    EXPECT_EQ(readings(INT_MAX, std::chrono::milliseconds(INT_MAX)), "3");
    EXPECT_EQ(readings(INT_MAX, std::chrono::milliseconds(INT_MAX) / 4), "6"); // a quarter is cut by 750 us
}

TEST(Delay, WaitsLongerIfTheClockIsSetBack)
{
    auto const run = on_terminal([] {
        std::int64_t const second = 1'000'000'000;
        std::vector<std::int64_t> const times = {5 * second, 5 * second, 2 * second, 5 * second - 1, 5 * second};
        made_up_time = [&](std::int64_t n) { return times.at(static_cast<std::size_t>(n)); };
        clock_readings = 0;
        std::cout << colorize << csi::delay{0};
        report(std::to_string(clock_readings));
    });
    EXPECT_EQ(run.report, "5");
}

TEST(Delay, TakesItsTimeOnATerminal)
{
    for (StandardStream const& to : standard_streams) {
        auto const run = on_terminal([&] {
            colorize(to.os);
            std::int64_t shortest = std::numeric_limits<std::int64_t>::max();
            for (int i = 0; i < 5; ++i) { // the processor may be taken away from one of them
                std::int64_t const start = real_time();
                to.os << csi::delay{20};
                shortest = std::min(shortest, real_time() - start);
            }
            report(std::to_string(shortest));
        });
        EXPECT_GE(std::stoll(run.report), 20'000'000) << to.name;
        EXPECT_LT(std::stoll(run.report), 60'000'000) << to.name;
    }
}

TEST(Delay, ReturnsAtOnceWhereTheGateRefuses)
{
    auto const count_readings = [](std::ostream& os) {
        advance_clock_by(std::chrono::seconds(1));
        os << csi::delay{10'000};
        report(std::to_string(clock_readings) + " readings, ");
    };
    for (Refused const& run : refused(nothing, count_readings)) {
        EXPECT_EQ(run.found.substr(0, run.found.find(',')), "0 readings") << run.why;
    }
    auto const run = run_with({Sink::terminal, Sink::pipe}, [&] {
        count_readings(colorize(std::cerr));
        count_readings(colorize(std::clog));
    });
    EXPECT_EQ(run.report, "0 readings, 0 readings, ");
}

TEST(Delay, WaitsOnAStreamThatHasFailed)
{
    auto const run = on_terminal([] {
        advance_clock_by(std::chrono::milliseconds(1));
        std::cout.setstate(std::ios_base::badbit);
        std::cout << colorize << csi::delay{25};
        report(std::to_string(clock_readings));
    });
    EXPECT_EQ(run.report, "26");
}

TEST(Delay, LeavesAWidthPending)
{
    EXPECT_EQ(shown([](std::ostream& os) { os << std::setw(3) << csi::delay{1} << 7; }), "  7");
}

Screen screen_after(std::function<void(std::ostream&)> const& body)
{
    auto const run = on_terminal([&] { body(colorize(std::cout)); });
    EXPECT_EQ(run.status, 0) << run.report;
    return Screen{run.out};
}

TEST(Csi, MovesTheCursor)
{
    auto const position = [](auto const&... moves) {
        return screen_after([&](std::ostream& os) { ((os << csi::cup{10, 20}) << ... << moves); }).cursor();
    };
    EXPECT_EQ(position(), (Position{9, 19}));
    EXPECT_EQ(position(csi::hvp{3, 7}), (Position{2, 6}));
    EXPECT_EQ(position(csi::cuu{2}), (Position{7, 19}));
    EXPECT_EQ(position(csi::cud{2}), (Position{11, 19}));
    EXPECT_EQ(position(csi::cuf{2}), (Position{9, 21}));
    EXPECT_EQ(position(csi::cub{2}), (Position{9, 17}));
    EXPECT_EQ(position(csi::cnl{2}), (Position{11, 0}));
    EXPECT_EQ(position(csi::cpl{2}), (Position{7, 0}));
    EXPECT_EQ(position(csi::cha{2}), (Position{9, 1}));
}

TEST(Csi, ErasesText)
{
    auto const row = [](auto const& erase) {
        return screen_after([&](std::ostream& os) { os << "abcdef" << csi::cha{3} << erase; }).text(0);
    };
    EXPECT_EQ(row(csi::el{0}), "ab");
    EXPECT_EQ(row(csi::el{1}), "   def");
    EXPECT_EQ(row(csi::el{2}), "");
    EXPECT_EQ(row(csi::ed{0}), "ab");
    EXPECT_EQ(row(csi::ed{1}), "   def");
    EXPECT_EQ(row(csi::ed{2}), "");
}

TEST(Csi, ScrollsText)
{
    EXPECT_EQ(screen_after([](std::ostream& os) { os << "a\nb\nc" << csi::su{2}; }).text(0), "c");
    EXPECT_EQ(screen_after([](std::ostream& os) { os << "a\nb\nc" << csi::sd{2}; }).text(2), "a");
}

TEST(Csi, SelectsARenditionPastTheRecord)
{
    Screen const screen = screen_after([](std::ostream& os) { os << csi::sgr{31} << "a" << red << thin << "b"; });
    EXPECT_EQ(screen.cell(0, 0).foreground.index, 1);
    EXPECT_FALSE(screen.cell(0, 0).bold);

    EXPECT_EQ(shown([](std::ostream& os) { os << csi::sgr{31} << adjust; }), R"(\e[31m\e[00m\e[1m)");
}

} // namespace
