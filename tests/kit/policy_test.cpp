#include <kestry/kit/policy.hpp>

#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::kit;

// What a terminal gets, and what anything else gets.
struct Answer {
    std::string on_terminal;
    std::string elsewhere;
};

bool operator==(Answer const& a, Answer const& b)
{
    return a.on_terminal == b.on_terminal && a.elsewhere == b.elsewhere;
}

void PrintTo(Answer const& answer, std::ostream* os)
{
    *os << "{\"" << answer.on_terminal << "\", \"" << answer.elsewhere << "\"}";
}

Answer both(std::string const& text) { return {text, text}; }

// ---------------------------------------------------------------------------------------------
// Values alone
// ---------------------------------------------------------------------------------------------

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

// The decision where colour is wanted.
std::string depth(color_environment const& environment)
{
    return to_string(color_policy({color_when::always}, environment).out());
}

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
    EXPECT_EQ(decided("always", {.no_color = "1", .term = xterm}),
              both("256 colours (--color=always, TERM says 256 colours)"));
    EXPECT_EQ(decided("always", {.force_color = "0", .term = xterm}),
              both("256 colours (--color=always, TERM says 256 colours)"));
    EXPECT_EQ(decided("always", {.clicolor = "0", .term = "xterm"}),
              both("16 colours (--color=always, TERM is not known for more)"));
    EXPECT_EQ(decided("always", {.term = "dumb"}), both("16 colours (--color=always, TERM is dumb)"));
    EXPECT_EQ(decided("always", {}), both("16 colours (--color=always, TERM is not known for more)"));
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
    EXPECT_EQ(to_string(color_policy({color_when::automatic, color_depth::ansi16}, environment).out()),
              "256 colours (a terminal, TERM says 256 colours)");
    EXPECT_EQ(to_string(color_policy({color_when::automatic, color_depth::ansi16}, environment).err()),
              "none (not a terminal)");
    EXPECT_EQ(to_string(color_policy({color_when::never, color_depth::ansi16}, environment).out()),
              "none (--color=never)");
}

TEST(ColorPolicy, AutoGoesOn)
{
    Answer const terminals = {"256 colours (a terminal, TERM says 256 colours)", "none (not a terminal)"};
    EXPECT_EQ(decided("auto", {.term = xterm}), terminals);
    EXPECT_EQ(decided("auto", {.no_color = "1", .term = xterm}), both("none (NO_COLOR is set)"));
}

TEST(ColorPolicy, NoColorBeatsTheOtherVariables)
{
    for (char const* const value : {"1", "0", "false", " "}) {
        EXPECT_EQ(decided({.no_color = value, .term = xterm}), both("none (NO_COLOR is set)"));
        EXPECT_EQ(decided({.no_color = value, .force_color = "3", .clicolor_force = "1", .term = xterm}),
                  both("none (NO_COLOR is set)"));
    }
    EXPECT_EQ(decided({.no_color = "", .term = "xterm"}),
              (Answer{"16 colours (a terminal, TERM is not known for more)", "none (not a terminal)"}));
}

TEST(ColorPolicy, ForceColorNamesTheDepth)
{
    struct Row {
        char const* value;
        char const* answer;
    };
    Row const rows[] = {
        {"0", "none (FORCE_COLOR is 0)"},
        {"00", "none (FORCE_COLOR is 0)"},
        {"false", "none (FORCE_COLOR is false)"},
        {"False", "none (FORCE_COLOR is false)"},
        {"1", "16 colours (FORCE_COLOR is set)"},
        {"01", "16 colours (FORCE_COLOR is set)"},
        {"true", "16 colours (FORCE_COLOR is set)"},
        {"TRUE", "16 colours (FORCE_COLOR is set)"},
        {"2", "256 colours (FORCE_COLOR is set)"},
        {"3", "24 bit (FORCE_COLOR is set)"},
        {"4", "24 bit (FORCE_COLOR is set)"},
        {"10", "24 bit (FORCE_COLOR is set)"},
        {"4294967296", "24 bit (FORCE_COLOR is set)"},
        {"99999999999999999999", "24 bit (FORCE_COLOR is set)"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(row.value);
        EXPECT_EQ(decided({.force_color = row.value, .term = "xterm", .colorterm = "truecolor"}), both(row.answer));
        EXPECT_EQ(decided({.force_color = row.value, .clicolor_force = "1", .clicolor = "0", .term = "dumb"}),
                  both(row.answer));
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
    Answer const unforced = {"16 colours (a terminal, TERM is not known for more)", "none (not a terminal)"};
    EXPECT_EQ(decided({.clicolor_force = "0", .term = "xterm"}), unforced);
    EXPECT_EQ(decided({.clicolor_force = "", .term = "xterm"}), unforced);
}

TEST(ColorPolicy, ClicolorZeroTakesColor)
{
    EXPECT_EQ(decided({.clicolor = "0", .term = xterm}), both("none (CLICOLOR is 0)"));
    Answer const untouched = {"256 colours (a terminal, TERM says 256 colours)", "none (not a terminal)"};
    for (char const* const value : {"", "1", "00", "false"}) {
        SCOPED_TRACE(value);
        EXPECT_EQ(decided({.clicolor = value, .term = xterm}), untouched);
    }
}

TEST(ColorPolicy, ATerminalWithoutANameOrADumbOneGetsNone)
{
    EXPECT_EQ(decided({}), (Answer{"none (TERM is not set)", "none (not a terminal)"}));
    EXPECT_EQ(decided({.colorterm = "truecolor"}), (Answer{"none (TERM is not set)", "none (not a terminal)"}));
    EXPECT_EQ(decided({.term = "dumb", .colorterm = "truecolor"}),
              (Answer{"none (TERM is dumb)", "none (not a terminal)"}));
    EXPECT_EQ(decided({.term = "dumber"}),
              (Answer{"16 colours (a terminal, TERM is not known for more)", "none (not a terminal)"}));
}

TEST(ColorPolicy, FindsTheDepth)
{
    struct Row {
        color_environment environment;
        char const* answer;
    };
    Row const rows[] = {
        {{.term = "xterm"}, "16 colours (--color=always, TERM is not known for more)"},
        {{.term = "xterm-test"}, "16 colours (--color=always, TERM is not known for more)"},
        {{.term = "linux", .colorterm = "rxvt"}, "16 colours (--color=always, TERM is not known for more)"},
        {{.term = "xterm", .colorterm = "truecolors"}, "16 colours (--color=always, TERM is not known for more)"},
        {{.term = "barefoot"}, "16 colours (--color=always, TERM is not known for more)"},
        {{.term = "indirect"}, "16 colours (--color=always, TERM is not known for more)"},
        {{.term = "xterm-2560color"}, "16 colours (--color=always, TERM is not known for more)"},
        {{.term = "xterm-256col"}, "16 colours (--color=always, TERM is not known for more)"},

        {{.term = "dumb", .colorterm = "truecolor"}, "16 colours (--color=always, TERM is dumb)"},
        {{.term = "xterm", .colorterm = "truecolor"}, "24 bit (--color=always, COLORTERM says 24 bit)"},
        {{.term = "xterm", .colorterm = "TrueColor"}, "24 bit (--color=always, COLORTERM says 24 bit)"},
        {{.term = "xterm", .colorterm = "24bit"}, "24 bit (--color=always, COLORTERM says 24 bit)"},
        {{.term = "xterm", .colorterm = "24BIT"}, "24 bit (--color=always, COLORTERM says 24 bit)"},
        {{.colorterm = "truecolor"}, "24 bit (--color=always, COLORTERM says 24 bit)"},
        {{.term = "tmux-256color", .colorterm = "truecolor"}, "24 bit (--color=always, COLORTERM says 24 bit)"},

        {{.term = "xterm-direct"}, "24 bit (--color=always, TERM says direct colour)"},
        {{.term = "xterm-direct2"}, "24 bit (--color=always, TERM says direct colour)"},
        {{.term = "xterm-direct16"}, "24 bit (--color=always, TERM says direct colour)"},
        {{.term = "xterm-direct256"}, "24 bit (--color=always, TERM says direct colour)"},
        {{.term = "alacritty"}, "24 bit (--color=always, TERM is known for 24 bit)"},
        {{.term = "contour"}, "24 bit (--color=always, TERM is known for 24 bit)"},
        {{.term = "ALACRITTY"}, "24 bit (--color=always, TERM is known for 24 bit)"},
        {{.term = "WEZTERM"}, "24 bit (--color=always, TERM is known for 24 bit)"},
        {{.term = "foot"}, "24 bit (--color=always, TERM is known for 24 bit)"},
        {{.term = "foot-extra"}, "24 bit (--color=always, TERM is known for 24 bit)"},
        {{.term = "xterm-ghostty"}, "24 bit (--color=always, TERM is known for 24 bit)"},
        {{.term = "xterm-kitty"}, "24 bit (--color=always, TERM is known for 24 bit)"},
        {{.term = "rio"}, "24 bit (--color=always, TERM is known for 24 bit)"},
        {{.term = "wezterm"}, "24 bit (--color=always, TERM is known for 24 bit)"},

        {{.term = xterm, .term_program = "ghostty"}, "24 bit (--color=always, TERM_PROGRAM is known for 24 bit)"},
        {{.term = xterm, .term_program = "rio"}, "24 bit (--color=always, TERM_PROGRAM is known for 24 bit)"},
        {{.term = xterm, .term_program = "WezTerm"}, "24 bit (--color=always, TERM_PROGRAM is known for 24 bit)"},
        {{.term = xterm, .term_program = "iTerm.app", .term_program_version = "3.4.19"},
         "24 bit (--color=always, TERM_PROGRAM is known for 24 bit)"},
        {{.term = xterm, .term_program = "iTerm.app", .term_program_version = "10.0"},
         "24 bit (--color=always, TERM_PROGRAM is known for 24 bit)"},
        {{.term = xterm, .wt_session = "1f"}, "24 bit (--color=always, WT_SESSION is set)"},

        {{.term = "xterm", .term_program = "iTerm.app", .term_program_version = "2.9.3"},
         "256 colours (--color=always, TERM_PROGRAM is known for 256 colours)"},
        {{.term = "xterm", .term_program = "iTerm.app"},
         "256 colours (--color=always, TERM_PROGRAM is known for 256 colours)"},
        {{.term = "xterm", .term_program = "Apple_Terminal", .term_program_version = "455"},
         "256 colours (--color=always, TERM_PROGRAM is known for 256 colours)"},
        {{.term = "xterm", .term_program = "vt", .term_program_version = "3"},
         "16 colours (--color=always, TERM is not known for more)"},
        {{.term = xterm}, "256 colours (--color=always, TERM says 256 colours)"},
        {{.term = "screen-256color-bce"}, "256 colours (--color=always, TERM says 256 colours)"},
        {{.term = "mlterm-256"}, "256 colours (--color=always, TERM says 256 colours)"},

        {{.term = "screen"}, "16 colours (--color=always, TERM is not known for more)"},
        {{.term = "screen", .colorterm = "truecolor"},
         "256 colours (--color=always, GNU screen passes 256 colours on)"},
        {{.term = "screen-256color", .colorterm = "truecolor"},
         "256 colours (--color=always, GNU screen passes 256 colours on)"},
        {{.term = "screen.xterm-256color", .wt_session = "1f"},
         "256 colours (--color=always, GNU screen passes 256 colours on)"},
        {{.term = "screen", .colorterm = "truecolor", .term_program = "tmux"},
         "24 bit (--color=always, COLORTERM says 24 bit)"},
        {{.term = "screencast", .colorterm = "truecolor"}, "24 bit (--color=always, COLORTERM says 24 bit)"},
    };
    for (Row const& row : rows) {
        SCOPED_TRACE(std::string(row.environment.term) + " COLORTERM=" + std::string(row.environment.colorterm) +
                     " TERM_PROGRAM=" + std::string(row.environment.term_program));
        EXPECT_EQ(depth(row.environment), row.answer);
    }
}

// ---------------------------------------------------------------------------------------------
// The option
// ---------------------------------------------------------------------------------------------

TEST(ParseColorOption, KnowsItsWords)
{
    struct Row {
        color_when when;
        std::optional<color_depth> depth;
        std::vector<char const*> words;
    };
    Row const rows[] = {
        {color_when::automatic, std::nullopt, {"auto", "tty", "if-tty"}},
        {color_when::always, std::nullopt, {"always", "yes", "force"}},
        {color_when::never, std::nullopt, {"never", "no", "none"}},
        {color_when::always, color_depth::ansi16, {"16"}},
        {color_when::always, color_depth::ansi256, {"256"}},
        {color_when::always, color_depth::truecolor, {"24bit"}},
    };
    for (Row const& row : rows) {
        for (char const* const word : row.words) {
            SCOPED_TRACE(word);
            std::optional<color_option> const option = parse_color_option(word);
            ASSERT_TRUE(option);
            EXPECT_EQ(option->when, row.when);
            EXPECT_EQ(option->depth, row.depth);
        }
    }
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

TEST(FromArgs, TheLastColorOptionCounts)
{
    EXPECT_EQ(scanned({"tool"}), "none (not a terminal)");
    EXPECT_EQ(scanned({"tool", "file", "-c"}), "none (not a terminal)");
    EXPECT_EQ(scanned({"tool", "--color"}), "16 colours (--color=always, TERM is dumb)");
    EXPECT_EQ(scanned({"tool", "file", "--color=24bit", "file"}), "24 bit (--color=24bit)");
    EXPECT_EQ(scanned({"tool", "--color=never", "--color=256"}), "256 colours (--color=256)");
    EXPECT_EQ(scanned({"tool", "--color=256", "--color"}), "16 colours (--color=always, TERM is dumb)");
    EXPECT_EQ(scanned({"tool", "--color=always", "--color=auto"}), "none (not a terminal)");
}

TEST(FromArgs, LooksAtNoOtherArgument)
{
    EXPECT_EQ(scanned({"--color=always"}), "none (not a terminal)");
    EXPECT_EQ(scanned({"tool", "-color=always", "color=always", "--colors", "--colour=always", "--col=always", "-"}),
              "none (not a terminal)");
}

TEST(FromArgs, StopsAtTwoHyphens)
{
    EXPECT_EQ(scanned({"tool", "--", "--color=always"}), "none (not a terminal)");
    EXPECT_EQ(scanned({"tool", "--color=16", "--", "--color=maybe"}), "16 colours (--color=16)");
    EXPECT_EQ(scanned({"tool", "---", "--color=16"}), "16 colours (--color=16)");
}

TEST(FromArgs, NeedsNoArguments)
{
    EXPECT_NO_THROW(color_policy::from_args(0, nullptr));
    EXPECT_EQ(scanned({}), "none (not a terminal)");
    char* arguments[] = {nullptr};
    EXPECT_NO_THROW(color_policy::from_args(0, arguments)); // takes the argv of main as it is
}

TEST(FromArgs, RefusesAWordThatIsNotKnown)
{
    EXPECT_EQ(scanned({"tool", "--color=maybe"}), "--color=maybe: WHEN is one of auto, always, never, 16, 256, 24bit");
    EXPECT_EQ(scanned({"tool", "--color="}), "--color=: WHEN is one of auto, always, never, 16, 256, 24bit");
    EXPECT_EQ(scanned({"tool", "--color=maybe", "--color=always"}),
              "--color=maybe: WHEN is one of auto, always, never, 16, 256, 24bit");
    EXPECT_EQ(scanned({"tool", "--color=\x1b[2J ~\x7f\xc3\xbc"}),
              "--color=?[2J ~???: WHEN is one of auto, always, never, 16, 256, 24bit");
}

// ---------------------------------------------------------------------------------------------
// A process with terminals and pipes
// ---------------------------------------------------------------------------------------------

struct Setting {
    std::vector<char const*> variables; // besides, none is set
    std::vector<char const*> arguments = {};
};

void use(Setting const& setting)
{
    ::clearenv();
    for (char const* const variable : setting.variables) {
        ::putenv(const_cast<char*>(variable));
    }
}

color_policy policy_of(Setting const& setting)
{
    std::vector<char const*> argv = {"tool"};
    argv.insert(argv.end(), setting.arguments.begin(), setting.arguments.end());
    return color_policy::from_args(static_cast<int>(argv.size()), argv.data());
}

// Standard output as a terminal with standard error as a pipe, and the other way round.
Answer observed(Setting const& setting)
{
    auto const body = [&] {
        use(setting);
        color_policy const policy = policy_of(setting);
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
    auto const terminals = [](std::string const& text) { return Answer{text, "none (not a terminal)"}; };
    struct Row {
        Setting setting;
        Answer answer;
    };
    Row const rows[] = {
        {{{"NO_COLOR=0", "TERM=xterm"}}, both("none (NO_COLOR is set)")},
        {{{"NO_COLOR=", "TERM=xterm"}}, terminals("16 colours (a terminal, TERM is not known for more)")},
        {{{"NO_COLOR=1", "FORCE_COLOR=3", "TERM=xterm"}}, both("none (NO_COLOR is set)")},
        {{{"NO_COLOR=1", "TERM=xterm"}, {"--color=always"}},
         both("16 colours (--color=always, TERM is not known for more)")},
        {{{"FORCE_COLOR=0", "TERM=xterm"}}, both("none (FORCE_COLOR is 0)")},
        {{{"FORCE_COLOR=3", "TERM=xterm-256color"}}, both("24 bit (FORCE_COLOR is set)")},
        {{{"FORCE_COLOR=1", "COLORTERM=truecolor", "TERM=xterm"}}, both("16 colours (FORCE_COLOR is set)")},
        {{{"FORCE_COLOR=", "TERM=xterm"}}, terminals("16 colours (a terminal, TERM is not known for more)")},
        {{{"CLICOLOR_FORCE=0", "TERM=xterm"}}, terminals("16 colours (a terminal, TERM is not known for more)")},
        {{{"CLICOLOR=0", "CLICOLOR_FORCE=1", "TERM=xterm"}},
         both("16 colours (CLICOLOR_FORCE is set, TERM is not known for more)")},
        {{{"CLICOLOR=0", "TERM=xterm"}}, both("none (CLICOLOR is 0)")},
        {{{"TERM=dumb"}, {"--color=always"}}, both("16 colours (--color=always, TERM is dumb)")},
        {{{"TERM=screen", "COLORTERM=truecolor"}},
         terminals("256 colours (a terminal, GNU screen passes 256 colours on)")},
        {{{"TERM=screen", "COLORTERM=truecolor", "TERM_PROGRAM=tmux"}},
         terminals("24 bit (a terminal, COLORTERM says 24 bit)")},
        {{{"TERM=tmux-256color", "COLORTERM=truecolor"}}, terminals("24 bit (a terminal, COLORTERM says 24 bit)")},
        {{{"TERM=xterm-test"}}, terminals("16 colours (a terminal, TERM is not known for more)")},
        {{{"CI=1", "TERM=xterm"}}, terminals("16 colours (a terminal, TERM is not known for more)")},
        {{{"TERM=xterm", "WT_SESSION=1f"}}, terminals("24 bit (a terminal, WT_SESSION is set)")},
        {{{"TERM=xterm", "TERM_PROGRAM=iTerm.app", "TERM_PROGRAM_VERSION=3"}},
         terminals("24 bit (a terminal, TERM_PROGRAM is known for 24 bit)")},
        {{{"TERM=dumb"}}, terminals("none (TERM is dumb)")},
        {{{}}, terminals("none (TERM is not set)")},
    };
    for (Row const& row : rows) {
        std::string trace;
        for (char const* const variable : row.setting.variables) {
            trace += variable;
            trace += ' ';
        }
        SCOPED_TRACE(trace);
        EXPECT_EQ(observed(row.setting), row.answer);
    }
}

TEST(PolicyOfAProcess, ReadsTheEnvironmentEachTimeOneIsMade)
{
    auto const run = on_terminal([] {
        use({{"TERM=xterm"}});
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
        use({{"TERM=xterm"}});
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
        use({{"TERM=xterm"}});
        report(to_string(color_policy::from_environment().out()) + "\n" +
               to_string(color_policy::from_environment().err()));
    });
    EXPECT_EQ(run.report, "none (not a terminal)\nnone (not a terminal)");
}

} // namespace
