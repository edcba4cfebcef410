#include "kestry/hueline_stream.hpp"

#include "failing.hpp"
#include "isatty_calls.hpp"
#include "recorder.hpp"
#include "refused.hpp"

#include "support/process.hpp"
#include "support/readable.hpp"
#include "support/screen.hpp"

#include <climits>
#include <iomanip>
#include <ios>
#include <iostream>
#include <locale>
#include <sstream>
#include <string>
#include <type_traits>

#include <gtest/gtest.h>

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Manipulator = std::ostream& (*)(std::ostream&);

// A text with a form feed for each flush, as Recorder has it.
struct Template {
    char const* name;
    Manipulator write;
    char const* text;
};

Template const plain[] = {
    {"crossplatform_template", crossplatform_template,
     "this is a cross platform template\n\f"
     "there is no need to sudivide this section\n\f"
     "into Linux and Windows areas as this code\n\f"
     "will run on all platfoms without specific needs\n\f"
     "for either platform Windows or Linux\n\f"},
    {"platformspecific_template", platformspecific_template,
     "\x1b[00m"
     "this is a platform specific template\n\f"
     "externally the interface is the same\n\f"
     "internally the implementation is specific\n\f"
     "to either Linux in this case\n\f"
     "or Windows in the below case\n\f"},
};

Template const colorized[] = {
    {"colorized_crossplatform_template", colorized_crossplatform_template,
     "\x1b[00m\x1b[1m\x1b[37m"
     "\x1b[00m\x1b[1m\x1b[37m\x1b[42m"
     " will only display in color if colorize has been called \n\f"
     " and this works on both Windows and Linux \n\f"},
    {"colorized_platformspecific_template", colorized_platformspecific_template,
     "\x1b[00m\x1b[1m\x1b[37m"
     "\x1b[00m\x1b[1m\x1b[37m\x1b[42m"
     " will display (in Linux) color if colorize \n\f"
     " has been called and this works on Linux \n\f"},
};

std::string without_flushes(std::string text)
{
    std::erase(text, flush_mark);
    return text;
}

// ---------------------------------------------------------------------------------------------
// The plain templates
// ---------------------------------------------------------------------------------------------

TEST(PlainTemplate, IsTheSameOnEachKindOfOutput)
{
    for (Template const& it : plain) {
        for (Sink const sink : {Sink::terminal, Sink::pipe, Sink::file}) {
            for (Manipulator const mode : {colorize, nocolorize}) {
                auto const run = run_with({sink, sink}, [&] {
                    std::cout << mode << it.write;
                    _setNoFrillsMode(true);
                    std::cerr << mode << it.write;
                    std::ostringstream os;
                    os << mode << it.write;
                    report(os.str());
                });
                EXPECT_EQ(readable(run.out), readable(without_flushes(it.text))) << it.name;
                EXPECT_EQ(readable(run.err), readable(without_flushes(it.text))) << it.name;
                EXPECT_EQ(readable(run.report), readable(without_flushes(it.text))) << it.name;
            }
        }
    }
}

TEST(PlainTemplate, FlushesEachLine)
{
    for (Template const& it : plain) {
        auto const run = on_pipe([&] {
            Recorder const recorder(std::cout);
            std::cout << it.write;
            report(recorder.text());
        });
        EXPECT_EQ(run.report, it.text) << it.name;
    }
}

TEST(PlainTemplate, DoesNotRunTheGate)
{
    for (Template const& it : plain) {
        auto const run = on_terminal([&] {
            std::cout << colorize;
            isatty_calls = 0;
            std::cout << it.write;
            report(std::to_string(isatty_calls));
            report(_isUsingColor() ? " color" : " plain");
            std::cout << adjust;
            std::ostringstream() << it.write;
            report(_isUsingColor() ? " color" : " plain");
        });
        EXPECT_EQ(run.report, "0 plain color") << it.name;
    }
}

TEST(PlainTemplate, LeavesTheRendition)
{
    for (Template const& it : plain) {
        auto const run =
            on_terminal([&] { std::cerr << colorize << dark << red << on_blue << it.write << '|' << adjust; });
        EXPECT_EQ(readable(run.err.substr(run.err.find('|'))), R"(|\e[00m\e[1m\e[2m\e[31m\e[44m)") << it.name;
    }
}

TEST(PlainTemplate, SpendsAPendingWidthOnItsFirstText)
{
    auto const run = on_pipe([] {
        std::cout << std::setfill('.') << std::setw(36) << crossplatform_template;
        std::cerr << std::setfill('.') << std::setw(8) << platformspecific_template;
    });
    EXPECT_EQ(run.out.substr(0, run.out.find('s')), "...thi");
    EXPECT_EQ(readable(run.err.substr(0, run.err.find('t'))), R"(...\e[00m)");
}

// ---------------------------------------------------------------------------------------------
// The colorized templates
// ---------------------------------------------------------------------------------------------

TEST(ColorizedTemplate, IsWhiteOnGreen)
{
    for (Template const& it : colorized) {
        for (std::ostream* os : {&std::cout, &std::cerr, &std::clog}) {
            auto const run = on_terminal([&] { *os << colorize << it.write; });
            EXPECT_EQ(readable(os == &std::cout ? run.out : run.err), readable(without_flushes(it.text))) << it.name;
            EXPECT_EQ(os == &std::cout ? run.err : run.out, "") << it.name;
        }
    }
}

TEST(ColorizedTemplate, FlushesEachLine)
{
    for (Template const& it : colorized) {
        auto const run = on_terminal([&] {
            Recorder const recorder(std::cout);
            std::cout << colorize << it.write;
            report(recorder.text());
        });
        EXPECT_EQ(readable(run.report), readable(it.text)) << it.name;
    }
}

TEST(ColorizedTemplate, KeepsTheOtherAttributes)
{
    auto const run = on_terminal([] {
        std::cerr << colorize << thin << underline << red << on_blue;
        std::cout << colorize << colorized_crossplatform_template;
    });
    EXPECT_EQ(readable(run.out.substr(0, run.out.find(' '))), R"(\e[00m\e[4m\e[37m\e[44m\e[00m\e[4m\e[37m\e[42m)");
}

TEST(ColorizedTemplate, LeavesWhiteOnGreen)
{
    for (Template const& it : colorized) {
        auto const run = on_terminal([&] {
            std::cerr << colorize << red << on_blue << it.write;
            std::cout << colorize << adjust;
        });
        EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[37m\e[42m)") << it.name;
    }
}

TEST(ColorizedTemplate, WritesAndChangesNothingWhereTheGateRefuses)
{
    for (Template const& it : colorized) {
        for (auto const& result : refused([](std::ostream& os) { os << red << on_blue; }, it.write)) {
            EXPECT_EQ(result.written, "") << it.name << ", " << result.why;
            EXPECT_EQ(readable(result.rendition), R"(\e[00m\e[1m\e[31m\e[44m)") << it.name << ", " << result.why;
            EXPECT_EQ(result.found, result.at_terminal ? "terminal" : "none") << it.name << ", " << result.why;
        }
    }
}

TEST(ColorizedTemplate, RefusedRunsTheGateOnce)
{
    for (Template const& it : colorized) {
        auto const run = run_with({.out = Sink::terminal, .err = Sink::pipe}, [&] {
            isatty_calls = 0;
            std::cout << it.write;
            report(std::to_string(isatty_calls));
            std::cerr << colorize << it.write;
            report(std::to_string(isatty_calls));
            std::ostringstream() << it.write;
            report(std::to_string(isatty_calls));
        });
        EXPECT_EQ(run.report, "122") << it.name;
    }
}

TEST(ColorizedTemplate, HasTheChangeThatCameBeforeTheWriteThatThrew)
{
    for (Template const& it : colorized) {
        auto const run = on_terminal([&] {
            std::cerr << colorize << red << on_blue;
            {
                Failing const failing(std::cerr, std::ios_base::badbit);
                try {
                    std::cerr << it.write;
                } catch (std::ios_base::failure const&) {
                    report("thrown");
                }
            }
            std::cout << colorize << adjust;
        });
        EXPECT_EQ(run.report, "thrown") << it.name;
        EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[37m\e[44m)") << it.name; // white, not yet on green
    }
}

TEST(ColorizedTemplate, ShowsWhiteOnGreen)
{
    auto const run = on_terminal([] {
        std::cout << colorize << colorized_crossplatform_template << colorized_platformspecific_template;
        std::cout << normal << "end";
    });
    Screen const screen(run.out);
    EXPECT_EQ(screen.text(0), " will only display in color if colorize has been called");
    EXPECT_EQ(screen.text(1), " and this works on both Windows and Linux");
    EXPECT_EQ(screen.text(2), " will display (in Linux) color if colorize");
    EXPECT_EQ(screen.text(3), " has been called and this works on Linux");
    for (int row = 0; row < 4; ++row) {
        EXPECT_EQ(screen.cell(row, 1).foreground.index, 7) << row;
        EXPECT_EQ(screen.cell(row, 1).background.index, 2) << row;
        EXPECT_EQ(screen.cell(row, 0).background.index, 2) << row;
    }
    EXPECT_TRUE(screen.cell(4, 0).foreground.is_default);
    EXPECT_TRUE(screen.cell(4, 0).background.is_default);
}

TEST(Templates, ReturnTheirStream)
{
    for (auto const& it : {plain[0], plain[1], colorized[0], colorized[1]}) {
        auto const run = on_terminal([&] {
            std::ostringstream os;
            report(&it.write(os) == &os ? "same " : "other ");
            report(&it.write(std::cout << colorize) == &std::cout ? "same" : "other");
        });
        EXPECT_EQ(run.report, "same same") << it.name;
    }
}

// ---------------------------------------------------------------------------------------------
// parameters_template
// ---------------------------------------------------------------------------------------------

TEST(ParametersTemplate, WritesItsCodeInOneSequence)
{
    struct {
        int code;
        char const* expected;
    } const rows[] = {
        {4, R"(\e[4m)"},
        {0, R"(\e[0m)"},
        {-1, R"(\e[-1m)"},
        {31, R"(\e[31m)"},
        {108, R"(\e[108m)"},
        {255, R"(\e[255m)"},
        {256, R"(\e[256m)"},
        {INT_MAX, R"(\e[2147483647m)"},
        {INT_MIN, R"(\e[-2147483648m)"},
    };
    for (auto const& row : rows) {
        for (std::ostream* os : {&std::cout, &std::cerr, &std::clog}) {
            auto const run = on_terminal([&] { *os << colorize << parameters_template{row.code}; });
            EXPECT_EQ(readable(os == &std::cout ? run.out : run.err), row.expected);
            EXPECT_EQ(os == &std::cout ? run.err : run.out, "");
        }
    }
}

TEST(ParametersTemplate, WritesAndChangesNothingWhereTheGateRefuses)
{
    auto const before = [](std::ostream& os) { os << red; };
    for (auto const& it : refused(before, [](std::ostream& os) { os << parameters_template{4}; })) {
        EXPECT_EQ(it.written, "") << it.why;
        EXPECT_EQ(readable(it.rendition), R"(\e[00m\e[1m\e[31m)") << it.why;
    }
}

TEST(ParametersTemplate, IsPastTheRecord)
{
    auto const run = on_terminal([] { std::cout << colorize << parameters_template{4} << "x" << red << "y"; });
    EXPECT_EQ(readable(run.out), R"(\e[4mx\e[00m\e[1m\e[31my)");
    Screen const screen(run.out);
    EXPECT_TRUE(screen.cell(0, 0).underline);
    EXPECT_FALSE(screen.cell(0, 1).underline);
}

TEST(ParametersTemplate, HasTheNumberFormatOfTheStream)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::cout << std::hex << parameters_template{31} << parameters_template{-1};
        std::cout << std::showbase << std::uppercase << parameters_template{31};
        std::cout << std::oct << parameters_template{8} << std::noshowbase;
        std::cout << std::dec << std::showpos << parameters_template{4};
    });
    EXPECT_EQ(readable(run.out), R"(\e[1fm\e[ffffffffm\e[0X1Fm\e[010m\e[+4m)");
}

TEST(ParametersTemplate, HasTheGroupingOfTheStreamAlone)
{
    class Grouping : public std::numpunct<char> {
        char do_thousands_sep() const override { return ','; }
        std::string do_grouping() const override { return "\3"; }
    };
    auto const run = on_terminal([] {
        std::locale const grouping(std::locale::classic(), new Grouping);
        std::locale::global(grouping);
        std::cout << colorize << parameters_template{1234567};
        std::cout.imbue(grouping);
        std::cout << parameters_template{1234567};
    });
    EXPECT_EQ(readable(run.out), R"(\e[1234567m\e[1,234,567m)");
}

TEST(ParametersTemplate, SpendsAPendingWidthOnItsIntroducer)
{
    auto const run = on_terminal([] {
        std::cout << colorize << std::setfill('.') << std::setw(5) << parameters_template{4} << 1;
        std::cout << std::left << std::setw(5) << parameters_template{4} << 2;
    });
    EXPECT_EQ(readable(run.out), R"(...\e[4m1\e[...4m2)");

    auto const refused = on_pipe([] { std::cout << std::setw(5) << parameters_template{4} << 1; });
    EXPECT_EQ(refused.out, "    1");
}

TEST(ParametersTemplate, RunsTheGateOnceAndReturnsItsStream)
{
    auto const body = [] {
        auto const insert = [](std::ostream& os) {
            isatty_calls = 0;
            std::ostream& returned = os << parameters_template{4};
            report(std::to_string(isatty_calls));
            report(&returned == &os ? " same" : " other");
            report(_isUsingColor() ? " color " : " plain ");
        };
        insert(std::cout);
        std::ostringstream text;
        insert(text << colorize);
        insert(std::cout << colorize);
        insert(std::cerr << colorize);
    };
    EXPECT_EQ(on_terminal(body).report, "1 same color 0 same plain 1 same color 1 same color ");
    EXPECT_EQ(on_pipe(body).report, "1 same plain 0 same plain 1 same plain 1 same plain ");
}

TEST(ParametersTemplate, DoesNotFlush)
{
    auto const run = on_terminal([] {
        Recorder const recorder(std::cout);
        std::cout << colorize << parameters_template{4};
        report(recorder.text());
    });
    EXPECT_EQ(readable(run.report), R"(\e[4m)");
}

TEST(ParametersTemplate, IsAnAggregateOfOneInt)
{
    EXPECT_TRUE(std::is_aggregate_v<parameters_template>);
    EXPECT_EQ(sizeof(parameters_template), sizeof(int));
    EXPECT_EQ(parameters_template{7}.code, 7);
}

} // namespace
