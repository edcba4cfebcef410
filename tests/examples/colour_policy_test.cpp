#include "examples/files.hpp"
#include "support/process.hpp"
#include "support/readable.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace hueline::test;

std::string const unset = "(unset)";

struct Setting {
    std::string option = ""; // none
    std::string no_color = unset;
    std::string clicolor_force = unset;
    std::string clicolor = unset;
    std::string term = "xterm-256color";
};

std::string assignment(std::string const& name, std::string const& value)
{
    return value == unset ? name : name + "=" + value;
}

Outcome colour_policy(Sinks sinks, Setting const& s)
{
    std::vector<std::string> argv = {EXAMPLE};
    if (!s.option.empty()) {
        argv.push_back(s.option);
    }
    Launch launch;
    launch.environment = {assignment("NO_COLOR", s.no_color), assignment("CLICOLOR_FORCE", s.clicolor_force),
                          assignment("CLICOLOR", s.clicolor), assignment("TERM", s.term)};
    return run_program(sinks, argv, launch);
}

std::string const terminal_out = R"(\e[00m\e[1m\e[32mstandard output\e[00m\e[25h, stream interface\n)"
                                 R"(\e[32mstandard output\e[0m, string interface\n)";
std::string const terminal_err = R"(\e[00m\e[1m\e[32mstandard error\e[00m\e[25h, stream interface\n)"
                                 R"(\e[32mstandard error\e[0m, string interface\n)";
std::string const plain_out = R"(standard output, stream interface\nstandard output, string interface\n)";
std::string const plain_err = R"(standard error, stream interface\nstandard error, string interface\n)";
// Into a pipe the string interface alone brings colour.
std::string const forced_out = R"(standard output, stream interface\n\e[32mstandard output\e[0m, string interface\n)";
std::string const forced_err = R"(standard error, stream interface\n\e[32mstandard error\e[0m, string interface\n)";

// What is to be seen on a terminal and in a pipe, whichever of the two streams leads there.
enum class Colour { none, on_terminals, everywhere };

void expect(Setting const& setting, Colour colour)
{
    SCOPED_TRACE(setting.option + " NO_COLOR=" + setting.no_color + " CLICOLOR_FORCE=" + setting.clicolor_force +
                 " CLICOLOR=" + setting.clicolor + " TERM=" + setting.term);
    std::string const& out_on_terminal = colour == Colour::none ? plain_out : terminal_out;
    std::string const& err_on_terminal = colour == Colour::none ? plain_err : terminal_err;
    std::string const& out_in_pipe = colour == Colour::everywhere ? forced_out : plain_out;
    std::string const& err_in_pipe = colour == Colour::everywhere ? forced_err : plain_err;

    Outcome const out_piped = colour_policy({Sink::pipe, Sink::terminal}, setting);
    EXPECT_EQ(readable(out_piped.out), out_in_pipe);
    EXPECT_EQ(readable(out_piped.err), err_on_terminal);
    Outcome const err_piped = colour_policy({Sink::terminal, Sink::pipe}, setting);
    EXPECT_EQ(readable(err_piped.out), out_on_terminal);
    EXPECT_EQ(readable(err_piped.err), err_in_pipe);
    EXPECT_EQ(out_piped.status, 0);
    EXPECT_EQ(err_piped.status, 0);
}

struct Rule {
    std::vector<std::string> option;
    std::vector<std::string> no_color;
    std::vector<std::string> clicolor_force;
    std::vector<std::string> clicolor;
    std::vector<std::string> term;
    Colour colour;
};

// Every setting that a rule is for.
void expect(Rule const& rule)
{
    for (std::string const& option : rule.option) {
        for (std::string const& no_color : rule.no_color) {
            for (std::string const& clicolor_force : rule.clicolor_force) {
                for (std::string const& clicolor : rule.clicolor) {
                    for (std::string const& term : rule.term) {
                        expect({option, no_color, clicolor_force, clicolor, term}, rule.colour);
                    }
                }
            }
        }
    }
}

using Values = std::vector<std::string>;

Values const automatic = {"", "--color=auto"};
Values const any = {unset, "0", "1"};
Values const any_terminal = {unset, "dumb", "xterm-256color"};
Values const capable = {unset, "xterm-256color"};
Values const no_color_off = {unset, ""};
Values const no_color_on = {"0", "1"}; // any value will do
Values const force_off = {unset, "", "0"};
Values const force_on = {"1", "yes"};
Values const clicolor_on = {unset, "", "1"};

TEST(ColourPolicy, AlwaysBeatsTheEnvironment)
{
    expect(Rule{{"--color=always"}, any, any, any, any_terminal, Colour::everywhere});
    expect(Rule{{"--color"}, {"1"}, {"0"}, {"0"}, {"dumb"}, Colour::everywhere});
}

TEST(ColourPolicy, NeverBeatsTheEnvironment)
{
    expect(Rule{{"--color=never"}, any, any, any, any_terminal, Colour::none});
}

TEST(ColourPolicy, NoColorBeatsTheOtherVariables)
{
    expect(Rule{automatic, no_color_on, any, any, any_terminal, Colour::none});
}

TEST(ColourPolicy, ForceBeatsTheTerminalAndWhatIsSaidOfIt)
{
    expect(Rule{automatic, no_color_off, force_on, any, any_terminal, Colour::everywhere});
}

TEST(ColourPolicy, ClicolorZeroAndADumbTerminalTakeColour)
{
    expect(Rule{automatic, no_color_off, force_off, {"0"}, any_terminal, Colour::none});
    expect(Rule{automatic, no_color_off, force_off, clicolor_on, {"dumb"}, Colour::none});
}

TEST(ColourPolicy, OtherwiseATerminalGetsColour)
{
    expect(Rule{automatic, no_color_off, force_off, clicolor_on, capable, Colour::on_terminals});
}

TEST(ColourPolicy, TheLastOptionCounts)
{
    Sinks const on_pipes = {Sink::pipe, Sink::pipe};
    Outcome const run = run_program(on_pipes, {EXAMPLE, "--color=never", "--color=always"});
    EXPECT_EQ(readable(run.out), forced_out);
    EXPECT_EQ(readable(run.err), forced_err);
}

TEST(ColourPolicy, ShowsWhatStandsBesideIt)
{
    Outcome const on_terminals = colour_policy({Sink::terminal, Sink::terminal}, {});
    EXPECT_EQ(readable_lines(on_terminals.out + on_terminals.err), contents_of("colour_policy.terminal.expected"));
    Outcome const in_files = colour_policy({Sink::file, Sink::file}, {});
    EXPECT_EQ(in_files.out + in_files.err, contents_of("colour_policy.expected"));
}

TEST(ColourPolicy, RefusesOtherWords)
{
    for (std::string const argument : {"--color=", "--color=yes", "--colour=always", "always"}) {
        SCOPED_TRACE(argument);
        Outcome const run = run_program({Sink::pipe, Sink::pipe}, {EXAMPLE, argument});
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "usage: colour_policy [--color[=auto|always|never]]\n");
        EXPECT_EQ(run.status, 2);
    }
}

} // namespace
