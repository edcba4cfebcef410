#include <kestry/kit/policy.hpp>

#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::kit;

// What a terminal gets, and what anything else gets.
struct Answer {
    std::string on_terminal;
    std::string elsewhere;

    bool operator==(Answer const&) const = default;
};

void PrintTo(Answer const& answer, std::ostream* os)
{
    *os << "{\"" << answer.on_terminal << "\", \"" << answer.elsewhere << "\"}";
}

Answer both(std::string const& text) { return {text, text}; }

Answer on_terminals(std::string const& text) { return {text, "none (not a terminal)"}; }

std::string const plain_terminal = "16 colours (a terminal, TERM is not known for more)";
std::string const terminal_of_256 = "256 colours (a terminal, TERM says 256 colours)";
std::string const always_16 = "16 colours (--color=always, TERM is not known for more)";
std::string const always_256 = "256 colours (--color=always, TERM says 256 colours)";

// Each descriptor is once the one and once the other.
Answer decided(std::string const& when, color_environment environment)
{
    color_option const option = when.empty() ? color_option{} : parse_color_option(when).value();
    environment.out_is_terminal = true;
    environment.err_is_terminal = false;
    color_policy const one(option, environment);
    environment.out_is_terminal = false;
    environment.err_is_terminal = true;
    color_policy const other(option, environment);
    EXPECT_EQ(to_string(one.out()), to_string(other.err()));
    EXPECT_EQ(to_string(one.err()), to_string(other.out()));
    return {to_string(one.out()), to_string(one.err())};
}

Answer decided(color_environment const& environment) { return decided("", environment); }

char const* const xterm = "xterm-256color";

TEST(ColorDepth, SaysItsNameInWords)
{
    EXPECT_STREQ(to_string(color_depth::none), "none");
    EXPECT_STREQ(to_string(color_depth::ansi16), "16 colours");
    EXPECT_STREQ(to_string(color_depth::ansi256), "256 colours");
    EXPECT_STREQ(to_string(color_depth::truecolor), "24 bit");
}

TEST(ColorDecision, IsTrueWhereThereIsColor)
{
    EXPECT_FALSE(color_decision{});
    EXPECT_FALSE(color_decision{.depth = color_depth::none});
    EXPECT_TRUE(color_decision{.depth = color_depth::ansi16});
}

TEST(ColorDecision, SaysWhyInOneLine)
{
    EXPECT_EQ(to_string(color_decision{}), "none");
    EXPECT_EQ(to_string(color_decision{color_depth::none, "a", ""}), "none (a)");
    EXPECT_EQ(to_string(color_decision{color_depth::truecolor, "a", "b"}), "24 bit (a, b)");
}

TEST(ColorPolicy, TheOptionBeatsTheEnvironment)
{
    EXPECT_EQ(decided("always", {.no_color = "1", .term = xterm}), both(always_256));
    EXPECT_EQ(decided("always", {.force_color = "0", .term = xterm}), both(always_256));
    EXPECT_EQ(decided("always", {.clicolor = "0", .term = "xterm"}), both(always_16));
    EXPECT_EQ(decided("always", {.term = "dumb"}), both("16 colours (--color=always, TERM is dumb)"));
    EXPECT_EQ(decided("always", {}), both(always_16));
    EXPECT_EQ(decided("never", {.force_color = "3", .clicolor_force = "1", .term = xterm}),
              both("none (--color=never)"));
}

TEST(ColorPolicy, TheOptionMayFixTheDepth)
{
    color_environment const poor = {.no_color = "1", .term = "dumb"};
    color_environment const rich = {.no_color = "1", .term = xterm, .colorterm = "truecolor"};
    for (color_environment const& environment : {poor, rich}) {
        EXPECT_EQ(decided("16", environment), both("16 colours (--color=16)"));
        EXPECT_EQ(decided("256", environment), both("256 colours (--color=256)"));
        EXPECT_EQ(decided("24bit", environment), both("24 bit (--color=24bit)"));
    }
    color_policy const none({color_when::always, color_depth::none}, rich);
    EXPECT_EQ(to_string(none.out()), "none (--color=never)");
}

TEST(ColorPolicy, ADepthCountsWithAlwaysAlone)
{
    color_environment const environment = {.term = xterm, .out_is_terminal = true};
    color_policy const automatic({color_when::automatic, color_depth::ansi16}, environment);
    EXPECT_EQ(to_string(automatic.out()), terminal_of_256);
    EXPECT_EQ(to_string(automatic.err()), "none (not a terminal)");
    color_policy const never({color_when::never, color_depth::ansi16}, environment);
    EXPECT_EQ(to_string(never.out()), "none (--color=never)");
}

TEST(ColorPolicy, AutoGoesOn)
{
    EXPECT_EQ(decided("auto", {.term = xterm}), on_terminals(terminal_of_256));
    EXPECT_EQ(decided("auto", {.no_color = "1", .term = xterm}), both("none (NO_COLOR is set)"));
}

TEST(ColorPolicy, NoColorBeatsTheOtherVariables)
{
    for (char const* const value : {"1", "0", "false", " "}) {
        EXPECT_EQ(decided({.no_color = value, .term = xterm}), both("none (NO_COLOR is set)"));
        EXPECT_EQ(decided({.no_color = value, .force_color = "3", .clicolor_force = "1", .term = xterm}),
                  both("none (NO_COLOR is set)"));
    }
    EXPECT_EQ(decided({.no_color = "", .term = "xterm"}), on_terminals(plain_terminal));
}

TEST(ColorPolicy, ForceColorNamesTheDepth)
{
    struct {
        char const* answer;
        std::vector<char const*> values;
    } const rows[] = {
        {"none (FORCE_COLOR is 0)", {"0", "00"}},
        {"none (FORCE_COLOR is false)", {"false", "False"}},
        {"16 colours (FORCE_COLOR is set)", {"1", "01", "true", "TRUE"}},
        {"256 colours (FORCE_COLOR is set)", {"2"}},
        {"24 bit (FORCE_COLOR is set)", {"3", "4", "10", "4294967296", "99999999999999999999"}},
    };
    for (auto const& [answer, values] : rows) {
        for (char const* const value : values) {
            SCOPED_TRACE(value);
            EXPECT_EQ(decided({.force_color = value, .term = "xterm", .colorterm = "truecolor"}), both(answer));
            EXPECT_EQ(decided({.force_color = value, .clicolor_force = "1", .clicolor = "0", .term = "dumb"}),
                      both(answer));
        }
    }
}

TEST(ColorPolicy, ForceColorInOtherWordsForcesWhatTheTerminalHas)
{
    for (char const* const value : {"yes", "always", "-1", "1a", "2 ", "no"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(decided({.force_color = value, .clicolor = "0", .term = xterm}),
                  both("256 colours (FORCE_COLOR is set, TERM says 256 colours)"));
        EXPECT_EQ(decided({.force_color = value, .term = "dumb"}),
                  both("16 colours (FORCE_COLOR is set, TERM is dumb)"));
    }
}

TEST(ColorPolicy, ClicolorForceForcesUnlessItIsZero)
{
    for (char const* const value : {"1", "yes", "00", "false"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(decided({.clicolor_force = value, .clicolor = "0", .term = xterm}),
                  both("256 colours (CLICOLOR_FORCE is set, TERM says 256 colours)"));
        EXPECT_EQ(decided({.clicolor_force = value}),
                  both("16 colours (CLICOLOR_FORCE is set, TERM is not known for more)"));
    }
    EXPECT_EQ(decided({.clicolor_force = "0", .term = "xterm"}), on_terminals(plain_terminal));
    EXPECT_EQ(decided({.clicolor_force = "", .term = "xterm"}), on_terminals(plain_terminal));
}

TEST(ColorPolicy, ClicolorZeroTakesColor)
{
    EXPECT_EQ(decided({.clicolor = "0", .term = xterm}), both("none (CLICOLOR is 0)"));
    for (char const* const value : {"", "1", "00", "false"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(decided({.clicolor = value, .term = xterm}), on_terminals(terminal_of_256));
    }
}

TEST(ColorPolicy, ATerminalWithoutANameOrADumbOneGetsNone)
{
    EXPECT_EQ(decided({}), on_terminals("none (TERM is not set)"));
    EXPECT_EQ(decided({.colorterm = "truecolor"}), on_terminals("none (TERM is not set)"));
    EXPECT_EQ(decided({.term = "dumb", .colorterm = "truecolor"}), on_terminals("none (TERM is dumb)"));
    EXPECT_EQ(decided({.term = "dumber"}), on_terminals(plain_terminal));
}

TEST(ColorPolicy, FindsTheDepth)
{
    auto const named = [](std::vector<char const*> const& terms) {
        std::vector<color_environment> environments;
        for (char const* const term : terms) {
            environments.push_back({.term = term});
        }
        return environments;
    };
    auto const in = [](char const* term, char const* program, char const* version = "") {
        return color_environment{.term = term, .term_program = program, .term_program_version = version};
    };
    auto const with = [](char const* term, char const* colorterm) {
        return color_environment{.term = term, .colorterm = colorterm};
    };
    struct {
        std::string answer;
        std::vector<color_environment> environments;
    } const rows[] = {
        {always_16,
         named({"xterm", "xterm-test", "barefoot", "indirect", "xterm-2560color", "xterm-256col", "screen"})},
        {always_16, {with("linux", "rxvt"), with("xterm", "truecolors"), in("xterm", "vt", "3")}},
        {"16 colours (--color=always, TERM is dumb)", {with("dumb", "truecolor")}},
        {"24 bit (--color=always, COLORTERM says 24 bit)",
         {with("xterm", "truecolor"), with("xterm", "TrueColor"), with("xterm", "24bit"), with("xterm", "24BIT"),
          with("", "truecolor"), with("tmux-256color", "truecolor"), with("screencast", "truecolor")}},
        {"24 bit (--color=always, COLORTERM says 24 bit)",
         {{.term = "screen", .colorterm = "truecolor", .term_program = "tmux"}}},
        {"24 bit (--color=always, TERM says direct colour)",
         named({"xterm-direct", "xterm-direct2", "xterm-direct16", "xterm-direct256"})},
        {"24 bit (--color=always, TERM is known for 24 bit)",
         named({"alacritty", "contour", "ALACRITTY", "WEZTERM", "foot", "foot-extra", "xterm-ghostty", "xterm-kitty",
                "rio", "wezterm"})},
        {"24 bit (--color=always, TERM_PROGRAM is known for 24 bit)",
         {in(xterm, "ghostty"), in(xterm, "rio"), in(xterm, "WezTerm"), in(xterm, "iTerm.app", "3.4.19"),
          in(xterm, "iTerm.app", "10.0")}},
        {"24 bit (--color=always, WT_SESSION is set)", {{.term = xterm, .wt_session = "1f"}}},
        {"256 colours (--color=always, TERM_PROGRAM is known for 256 colours)",
         {in("xterm", "iTerm.app", "2.9.3"), in("xterm", "iTerm.app"), in("xterm", "Apple_Terminal", "455")}},
        {always_256, named({xterm, "screen-256color-bce", "mlterm-256"})},
        {"256 colours (--color=always, GNU screen passes 256 colours on)",
         {with("screen", "truecolor"),
          with("screen-256color", "truecolor"),
          {.term = "screen.xterm-256color", .wt_session = "1f"}}},
    };
    for (auto const& [answer, environments] : rows) {
        for (color_environment const& environment : environments) {
            SCOPED_TRACE(std::string(environment.term) + " COLORTERM=" + std::string(environment.colorterm) +
                         " TERM_PROGRAM=" + std::string(environment.term_program));
            EXPECT_EQ(to_string(color_policy({color_when::always}, environment).out()), answer);
        }
    }
}

TEST(ParseColorOption, KnowsItsWords)
{
    auto const expect = [](color_when when, std::optional<color_depth> depth, std::vector<char const*> const& words) {
        for (char const* const word : words) {
            SCOPED_TRACE(word);
            std::optional<color_option> const option = parse_color_option(word);
            ASSERT_TRUE(option);
            EXPECT_EQ(option->when, when);
            EXPECT_EQ(option->depth, depth);
        }
    };
    expect(color_when::automatic, std::nullopt, {"auto", "tty", "if-tty"});
    expect(color_when::always, std::nullopt, {"always", "yes", "force"});
    expect(color_when::never, std::nullopt, {"never", "no", "none"});
    expect(color_when::always, color_depth::ansi16, {"16"});
    expect(color_when::always, color_depth::ansi256, {"256"});
    expect(color_when::always, color_depth::truecolor, {"24bit"});
}

TEST(ParseColorOption, RefusesOtherWords)
{
    for (char const* const word :
         {"", "a", "aut", "autoo", "Always", "on", "1", "8", "24", "256 ", "true", "=always"}) {
        SCOPED_TRACE(word);
        EXPECT_FALSE(parse_color_option(word));
    }
}

std::string scanned(std::vector<char const*> const& arguments)
{
    return on_pipe([&] {
               for (char const* const name : {"NO_COLOR", "FORCE_COLOR", "CLICOLOR_FORCE"}) {
                   ::unsetenv(name);
               }
               ::setenv("TERM", "dumb", 1);
               try {
                   color_policy const policy =
                       color_policy::from_args(static_cast<int>(arguments.size()), arguments.data());
                   report(to_string(policy.out()));
               } catch (std::invalid_argument const& failure) {
                   report(failure.what());
               }
           })
        .report;
}

TEST(FromArgs, TheLastColorOptionBeforeTwoHyphensCounts)
{
    auto const expect = [](std::vector<std::vector<char const*>> const& all, char const* answer) {
        for (std::vector<char const*> const& arguments : all) {
            EXPECT_EQ(scanned(arguments), answer) << (arguments.empty() ? "" : arguments.back());
        }
    };
    expect({{"tool"}, {"tool", "file", "-c"}, {"tool", "--color=always", "--color=auto"}}, "none (not a terminal)");
    expect({{"tool", "--color"}, {"tool", "--color=256", "--color"}}, "16 colours (--color=always, TERM is dumb)");
    expect({{"tool", "file", "--color=24bit", "file"}}, "24 bit (--color=24bit)");
    expect({{"tool", "--color=never", "--color=256"}}, "256 colours (--color=256)");
    // Other arguments, that of the program's name among them.
    expect({{}, {"--color=always"}, {"tool", "--", "--color=always"}}, "none (not a terminal)");
    expect({{"tool", "-color=always", "color=always", "--colors", "--colour=always", "--col=always", "-"}},
           "none (not a terminal)");
    expect({{"tool", "--color=16", "--", "--color=maybe"}, {"tool", "---", "--color=16"}}, "16 colours (--color=16)");
}

TEST(FromArgs, NeedsNoArguments)
{
    EXPECT_NO_THROW(color_policy::from_args(0, nullptr));
    char* arguments[] = {nullptr};
    EXPECT_NO_THROW(color_policy::from_args(0, arguments)); // takes the argv of main as it is
}

TEST(FromArgs, RefusesAWordThatIsNotKnown)
{
    std::string const known = ": WHEN is one of auto, always, never, 16, 256, 24bit";
    EXPECT_EQ(scanned({"tool", "--color=maybe"}), "--color=maybe" + known);
    EXPECT_EQ(scanned({"tool", "--color="}), "--color=" + known);
    EXPECT_EQ(scanned({"tool", "--color=maybe", "--color=always"}), "--color=maybe" + known);
    EXPECT_EQ(scanned({"tool", "--color=\x1b[2J ~\x7f\xc3\xbc"}), "--color=?[2J ~???" + known);
}

// Besides these, no variable is set.
void use(std::vector<char const*> const& variables)
{
    ::clearenv();
    for (char const* const variable : variables) {
        ::putenv(const_cast<char*>(variable));
    }
}

// Standard output as a terminal with standard error as a pipe, and the other way round.
Answer observed(std::vector<char const*> const& variables, char const* option = "--")
{
    auto const body = [&] {
        use(variables);
        char const* const arguments[] = {"tool", option};
        color_policy const policy = color_policy::from_args(2, arguments);
        report(to_string(policy.out()) + "|" + to_string(policy.err()));
    };
    auto const split = [](std::string const& report) {
        std::size_t const bar = report.find('|');
        return Answer{report.substr(0, bar), report.substr(bar + 1)};
    };
    Answer const out_on_terminal = split(run_with({Sink::terminal, Sink::pipe}, body).report);
    Answer const err_on_terminal = split(run_with({Sink::pipe, Sink::terminal}, body).report);
    EXPECT_EQ(out_on_terminal.on_terminal, err_on_terminal.elsewhere);
    EXPECT_EQ(out_on_terminal.elsewhere, err_on_terminal.on_terminal);
    return out_on_terminal;
}

TEST(PolicyOfAProcess, ReadsEveryVariable)
{
    struct {
        std::vector<char const*> variables;
        Answer answer;
    } const rows[] = {
        {{"NO_COLOR=0", "TERM=xterm"}, both("none (NO_COLOR is set)")},
        {{"NO_COLOR=", "TERM=xterm"}, on_terminals(plain_terminal)},
        {{"FORCE_COLOR=3", "TERM=xterm-256color"}, both("24 bit (FORCE_COLOR is set)")},
        {{"FORCE_COLOR=1", "COLORTERM=truecolor", "TERM=xterm"}, both("16 colours (FORCE_COLOR is set)")},
        {{"FORCE_COLOR=", "TERM=xterm"}, on_terminals(plain_terminal)},
        {{"CLICOLOR=0", "CLICOLOR_FORCE=1", "TERM=xterm"},
         both("16 colours (CLICOLOR_FORCE is set, TERM is not known for more)")},
        {{"CLICOLOR=0", "TERM=xterm"}, both("none (CLICOLOR is 0)")},
        {{"TERM=screen", "COLORTERM=truecolor"},
         on_terminals("256 colours (a terminal, GNU screen passes 256 colours on)")},
        {{"TERM=screen", "COLORTERM=truecolor", "TERM_PROGRAM=tmux"},
         on_terminals("24 bit (a terminal, COLORTERM says 24 bit)")},
        {{"CI=1", "TERM=xterm-test"}, on_terminals(plain_terminal)},
        {{"TERM=xterm", "WT_SESSION=1f"}, on_terminals("24 bit (a terminal, WT_SESSION is set)")},
        {{"TERM=xterm", "TERM_PROGRAM=iTerm.app", "TERM_PROGRAM_VERSION=3"},
         on_terminals("24 bit (a terminal, TERM_PROGRAM is known for 24 bit)")},
        {{}, on_terminals("none (TERM is not set)")},
    };
    for (auto const& [variables, answer] : rows) {
        std::string trace;
        for (char const* const variable : variables) {
            trace += variable + std::string(" ");
        }
        EXPECT_EQ(observed(variables), answer) << trace;
    }
    EXPECT_EQ(observed({"NO_COLOR=1", "TERM=xterm"}, "--color=always"), both(always_16));
    EXPECT_EQ(observed({"TERM=dumb"}, "--color=always"), both("16 colours (--color=always, TERM is dumb)"));
}

TEST(PolicyOfAProcess, ReadsTheEnvironmentEachTimeOneIsMade)
{
    auto const run = on_terminal([] {
        use({"TERM=xterm"});
        color_policy const before = color_policy::from_environment();
        ::setenv("NO_COLOR", "1", 1);
        color_policy const after = color_policy::from_environment();
        report(to_string(before.out()) + "\n" + to_string(after.out()));
    });
    EXPECT_EQ(run.report, "16 colours (a terminal, TERM is not known for more)\nnone (NO_COLOR is set)");
}

TEST(PolicyOfAProcess, LooksAtAnyDescriptorWhenAsked)
{
    auto const run = run_with({Sink::terminal, Sink::pipe}, [] {
        use({"TERM=xterm"});
        color_policy const policy = color_policy::from_environment();
        int const other = ::dup(STDOUT_FILENO);
        report(std::to_string(static_cast<bool>(policy.of(other))));
        ::dup2(STDERR_FILENO, other);
        report(std::to_string(static_cast<bool>(policy.of(other))));
        ::close(other);
        errno = 42;
        report(std::to_string(static_cast<bool>(policy.of(other))) + std::to_string(errno));
    });
    EXPECT_EQ(run.report, "10042");
}

TEST(PolicyOfAProcess, LeavesErrnoAlone)
{
    auto const run = on_pipe([] {
        errno = 42;
        color_environment::of_process();
        report(std::to_string(errno));
    });
    EXPECT_EQ(run.report, "42");
}

TEST(PolicyOfAProcess, DoesWithoutOpenDescriptors)
{
    auto const run = run_with({Sink::closed, Sink::closed}, [] {
        use({"TERM=xterm"});
        report(to_string(color_policy::from_environment().out()) + "\n" +
               to_string(color_policy::from_environment().err()));
    });
    EXPECT_EQ(run.report, "none (not a terminal)\nnone (not a terminal)");
}

} // namespace
