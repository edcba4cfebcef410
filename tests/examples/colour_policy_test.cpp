#include "examples/files.hpp"

namespace {

using namespace hueline::test;

Outcome colour_policy(Sinks sinks, std::vector<std::string> const& arguments,
                      std::vector<std::string> const& environment = {})
{
    std::vector<std::string> argv = {EXAMPLE};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    Launch launch = {.environment = sixteen_colors};
    launch.environment.insert(launch.environment.end(), environment.begin(), environment.end());
    return run_program(sinks, argv, launch);
}

// As the manipulators write it, and without them.
std::string green(std::string const& text) { return R"(\e[00m\e[1m\e[32m)" + text + R"(\e[00m\e[25h\n)"; }
std::string plain(std::string const& text) { return text + R"(\n)"; }

TEST(ColorPolicy, ShowsWhatStandsBesideIt)
{
    Outcome const on_both = colour_policy(on_terminals, {});
    EXPECT_EQ(readable_lines(on_both.out + on_both.err), contents_of("colour_policy.terminal.expected"));
    EXPECT_EQ(on_both.status, 0);
    Outcome const in_files = colour_policy({Sink::file, Sink::file}, {});
    EXPECT_EQ(in_files.out + in_files.err, contents_of("colour_policy.expected"));
    EXPECT_EQ(in_files.status, 0);
}

TEST(ColorPolicy, DecidesForEachStreamApart)
{
    Outcome const out_piped = colour_policy({Sink::pipe, Sink::terminal}, {});
    EXPECT_EQ(readable(out_piped.out), plain("standard output: none (not a terminal)"));
    EXPECT_EQ(readable(out_piped.err), green("standard error: 16 colours (a terminal, TERM is not known for more)"));
    Outcome const err_piped = colour_policy({Sink::terminal, Sink::pipe}, {});
    EXPECT_EQ(readable(err_piped.out), green("standard output: 16 colours (a terminal, TERM is not known for more)"));
    EXPECT_EQ(readable(err_piped.err), plain("standard error: none (not a terminal)"));
}

TEST(ColorPolicy, ReadsTheEnvironmentAndTheOptionBeforeIt)
{
    Outcome const refused = colour_policy(on_terminals, {}, {"NO_COLOR=1"});
    EXPECT_EQ(readable(refused.out), plain("standard output: none (NO_COLOR is set)"));
    EXPECT_EQ(readable(refused.err), plain("standard error: none (NO_COLOR is set)"));
    Outcome const wanted = colour_policy(on_terminals, {"--color=never", "--color=256"}, {"NO_COLOR=1"});
    EXPECT_EQ(readable(wanted.out), green("standard output: 256 colours (--color=256)"));
    EXPECT_EQ(readable(wanted.err), green("standard error: 256 colours (--color=256)"));
}

TEST(ColorPolicy, NeverColorsAPipe)
{
    Outcome const run = colour_policy(on_pipes, {"--color"});
    EXPECT_EQ(readable(run.out), plain("standard output: 16 colours (--color=always, TERM is not known for more)"));
    EXPECT_EQ(readable(run.err), plain("standard error: 16 colours (--color=always, TERM is not known for more)"));
}

TEST(ColorPolicy, RefusesOtherWords)
{
    for (std::string const argument : {"--color=", "--color=maybe"}) {
        expect_refusal({argument},
                       "colour_policy: " + argument + ": WHEN is one of auto, always, never, 16, 256, 24bit\n", 2);
    }
}

} // namespace
