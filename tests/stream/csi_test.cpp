#include "kestry/hueline_stream.hpp"

#include "operations_stream.hpp"

#include "refused.hpp"
#include "standard_streams.hpp"
#include "support/clock.hpp"
#include "support/grouping.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Insert = std::ostream& (*)(std::ostream&);

// The controls with one number, and the byte that ends each of them.
struct Numbered {
    std::string name;
    std::function<void(std::ostream&, int)> insert;
    std::string final_byte;
};

std::vector<Numbered> all_numbered()
{
    std::vector<Numbered> all;
    for (StreamOperation const& each : operations_on_a_stream()) {
        if (each.name.find("csi::") == 0 && each.arguments == std::vector{Argument::number}) {
            auto const insert = [&each](std::ostream& os, int n) {
                StreamProgram program = {.os = &os};
                each.act(program, {each.name, "", {n}});
            };
            all.push_back({each.name, insert, each.example.colored.substr(each.example.colored.size() - 1)});
        }
    }
    return all;
}

std::vector<Numbered> const& numbered()
{
    static std::vector<Numbered> const all = all_numbered();
    return all;
}

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

TEST(Csi, GivesClrAndClearOneAddress)
{
    Insert volatile const clr = csi::clr;
    Insert volatile const clear = csi::clear;
    EXPECT_EQ(clr, clear);
}

TEST(Csi, WritesAnyNumberAsItIs)
{
    for (Numbered const& control : numbered()) {
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

TEST(Csi, PadsTheNumberAndNotTheIntroducer)
{
    for (Numbered const& control : numbered()) {
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
    for (Numbered const& control : numbered()) {
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
            std::int64_t const start = real_time();
            to.os << csi::delay{20};
            report(std::to_string(real_time() - start));
        });
        EXPECT_GE(std::stoll(run.report), 20'000'000) << to.name;
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
