#include "kestry/hueline_stream.hpp"

#include "support/buffers.hpp"
#include "support/isatty_calls.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Manipulator = std::ostream& (*)(std::ostream&);

Manipulator const colorized[] = {colorized_crossplatform_template, colorized_platformspecific_template};

// ---------------------------------------------------------------------------------------------
// The colorized templates
// ---------------------------------------------------------------------------------------------

TEST(ColorizedTemplate, RefusedRunsTheGateOnce)
{
    for (Manipulator const write : colorized) {
        auto const run = run_with({.out = Sink::terminal, .err = Sink::pipe}, [&] {
            isatty_calls = 0;
            std::cout << write;
            report(std::to_string(isatty_calls));
            std::cerr << colorize << write;
            report(std::to_string(isatty_calls));
            std::ostringstream() << write;
            report(std::to_string(isatty_calls));
        });
        EXPECT_EQ(run.report, "122");
    }
}

TEST(ColorizedTemplate, HasTheChangeThatCameBeforeTheWriteThatThrew)
{
    for (Manipulator const write : colorized) {
        auto const run = on_terminal([&] {
            std::cerr << colorize << red << on_blue;
            {
                SmallBuffer full(0);
                WithBuffer const failing(std::cerr, &full);
                std::cerr.exceptions(std::ios_base::badbit);
                try {
                    std::cerr << write;
                } catch (std::ios_base::failure const&) {
                    report("thrown");
                }
            }
            std::cout << colorize << adjust;
        });
        EXPECT_EQ(run.report, "thrown");
        EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[37m\e[44m)"); // white, not yet on green
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

// ---------------------------------------------------------------------------------------------
// parameters_template
// ---------------------------------------------------------------------------------------------

TEST(ParametersTemplate, IsPastTheRecord)
{
    auto const run = on_terminal([] { std::cout << colorize << parameters_template{4} << "x" << red << "y"; });
    EXPECT_EQ(readable(run.out), R"(\e[4mx\e[00m\e[1m\e[31my)");
    Screen const screen(run.out);
    EXPECT_TRUE(screen.cell(0, 0).underline);
    EXPECT_FALSE(screen.cell(0, 1).underline);
}

} // namespace
