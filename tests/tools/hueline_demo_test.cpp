#include "model/told.hpp"
#include "support/folder.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"
#include "support/writes.hpp"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <termios.h>

namespace {

using namespace hueline::test;
using namespace std::chrono_literals;

std::string const tool = HUELINE_DEMO; // the path of hueline-demo

Sinks const on_terminals = {Sink::terminal, Sink::terminal};
Sinks const on_pipes = {Sink::pipe, Sink::pipe};

std::size_t constexpr mebibyte = 1024 * 1024;

using Arguments = std::vector<std::string>;

// Adds what is set before each run: the changes of the launch come after it.
Launch in_known_environment(Launch launch)
{
    launch.environment.insert(launch.environment.begin(), sixteen_colors.begin(), sixteen_colors.end());
    return launch;
}

// Runs the tool.
Outcome demo(Sinks sinks, Arguments const& arguments, Launch const& launch = {})
{
    Arguments argv = {tool};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return run_program(sinks, argv, in_known_environment(launch));
}

// Where the waits of the animations are not what a test is about.
Launch const without_waits{.environment = {"LD_PRELOAD=" FAST_CLOCK}};

// The first wait does not end.
Launch const with_endless_waits{.environment = {"LD_PRELOAD=" FAST_CLOCK, "CLOCK_STANDS_AFTER=0"}};

// An animation goes on for a few steps and then waits for the signal.
Launch interrupted(int signal, std::string const& after)
{
    return {.environment = {"LD_PRELOAD=" FAST_CLOCK, "CLOCK_STANDS_AFTER=60"}, .interrupt = Interrupt{signal, after}};
}

// Runs a command of the shell, where "$0" is the tool and "$1" the first of the arguments.
Outcome shell(Sinks sinks, std::string const& command, Arguments const& arguments = {}, Launch const& launch = {})
{
    Arguments argv = {"/bin/sh", "-c", command, tool};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return run_program(sinks, argv, in_known_environment(launch));
}

// In a child: becomes the tool.
void become_demo(Arguments const& arguments)
{
    std::vector<char*> argv = {const_cast<char*>(tool.c_str())};
    for (std::string const& argument : arguments) {
        argv.push_back(const_cast<char*>(argument.c_str()));
    }
    argv.push_back(nullptr);
    change_environment(sixteen_colors);
    execv(argv[0], argv.data());
    report(std::string("cannot run the tool: ") + std::strerror(errno));
}

std::size_t count(std::string_view text, std::string_view piece)
{
    std::size_t found = 0;
    for (std::size_t at = text.find(piece); at != text.npos; at = text.find(piece, at + piece.size())) {
        ++found;
    }
    return found;
}

bool has_sequences(std::string const& text) { return text.find('\x1b') != text.npos; }

// That a person who goes on writing does so in the terminal's own colours.
void expect_default_rendition_behind(std::string const& bytes)
{
    Screen const screen(bytes + "\rx");
    Cell const next = screen.cell(screen.cursor().row, 0);
    EXPECT_EQ(next.character, "x");
    EXPECT_FALSE(next.bold || next.italic || next.underline || next.blink || next.reverse || next.strike);
    EXPECT_TRUE(next.foreground.is_default);
    EXPECT_TRUE(next.background.is_default);
    EXPECT_TRUE(screen.cursor_visible());
}

void expect_text(Arguments const& arguments, std::string const& text)
{
    for (Sinks const sinks : {on_terminals, on_pipes}) {
        Outcome const run = demo(sinks, arguments);
        EXPECT_EQ(run.out, text);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, 0);
    }
}

std::string const help_text = R"(Usage: hueline-demo [OPTION]... [NAME]...
       hueline-demo [OPTION]... [NAME]... dump [FILE]...
Shows what libhueline writes: in colour on a terminal, as plain text elsewhere.

  -h, --help          show this text
  -V, --version       show the version
  -l, --list          show the names of the demonstrations
  -n, --no-frills     no-frills mode: no progress line, no cursor control, and
                      no colour but what the library writes in that mode too
      --color[=WHEN]  auto, the default, always or never; 16, 256 and 24bit are
                      as always; never is no-frills mode on a terminal
  -C, --canonical     dump as hexdump -C does: offsets, bytes and text

With auto, NO_COLOR, FORCE_COLOR, CLICOLOR_FORCE, CLICOLOR and TERM are asked,
and each of the two streams whether it is a terminal.

Each NAME is a demonstration; they are shown in the order given. Without a NAME
the banner is shown. Start with the tour: where a person is at the keys, any key
goes on, and q ends it.

dump writes each FILE in hexadecimal, sixteen bytes a line. All arguments after
it but options are files, and all after "--". Without a FILE, and for "-", it
reads standard input.

The exit status is 0 if all went well, 1 if something could not be read or
written, and 2 if an option or a NAME is unknown.
)";

TEST(Options, HelpTellsTheUse)
{
    expect_text({"--help"}, help_text);
    expect_text({"-h"}, help_text);
}

TEST(Options, VersionIsTheShortTagWithoutColor)
{
    expect_text({"--version"}, "Hueline ver. 0.2.2-r0\n");
    expect_text({"-V"}, "Hueline ver. 0.2.2-r0\n");
}

TEST(Options, ListNamesTheDemonstrations)
{
    std::string const text = "tour          a part at a time, with the code that wrote it\n"
                             "banner        the version and most of the patterns\n"
                             "templates     plain lines and lines in white on green\n"
                             "codes         the SGR codes 0 to 108, on a terminal only\n"
                             "normal-reset  what normal keeps and reset forgets\n"
                             "matrix        eight colours on eight backgrounds\n"
                             "palette       colours 0 to 15 of the palette on each other\n"
                             "greyscale     the 24 greys of the palette\n"
                             "rgb           the colour cube of the palette\n"
                             "status        a status line that fills, for four seconds\n"
                             "progress      a progress meter that climbs, for four seconds\n"
                             "themes        both forms of the themes, role by role\n"
                             "dump          files in hexadecimal: takes all arguments after it\n";
    expect_text({"--list"}, text);
    expect_text({"-l"}, text);
    expect_text({"--list", "--version"}, text);
}

TEST(Options, AskingForATextOutweighsWhatFollows)
{
    expect_text({"--version", "--help"}, "Hueline ver. 0.2.2-r0\n");
    expect_text({"--help", "--version"}, help_text);
    expect_text({"--version", "--no-such-option"}, "Hueline ver. 0.2.2-r0\n");
    expect_text({"no-such-name", "--version"}, "Hueline ver. 0.2.2-r0\n");
    expect_text({"-nV", "matrix"}, "Hueline ver. 0.2.2-r0\n");
}

void expect_misuse(Arguments const& arguments, std::string const& message)
{
    Outcome const run = demo(on_pipes, arguments);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "hueline-demo: " + message + "\n");
    EXPECT_EQ(run.status, 2);
}

TEST(Misuse, UnknownOptionIsNamedWithThePossibleOnes)
{
    std::string const possible = ": the options are --help, --version, --list, --no-frills, --color and --canonical";
    expect_misuse({"--frills"}, "unknown option '--frills'" + possible);
    expect_misuse({"--frills=3"}, "unknown option '--frills=3'" + possible);
    expect_misuse({"-x"}, "unknown option '-x'" + possible);
    expect_misuse({"-nx"}, "unknown option '-x'" + possible);
    expect_misuse({"--no-frills", "matrix", "--helpful"}, "unknown option '--helpful'" + possible);
}

TEST(Misuse, OptionWithAnArgumentIsNamed)
{
    std::string const rest =
        " takes no argument: the options are --help, --version, --list, --no-frills, --color and --canonical";
    expect_misuse({"--help=x"}, "option '--help'" + rest);
    expect_misuse({"--version=2"}, "option '--version'" + rest);
    expect_misuse({"--list="}, "option '--list'" + rest);
    expect_misuse({"matrix", "--no-frills=off"}, "option '--no-frills'" + rest);
}

TEST(Misuse, UnknownNameIsNamedWithThePossibleOnes)
{
    std::string const possible =
        ": the names are tour, banner, templates, codes, normal-reset, matrix, palette, greyscale, "
        "rgb, status, progress, themes, dump";
    expect_misuse({"matrx"}, "unknown demonstration 'matrx'" + possible);
    expect_misuse({"matrix2"}, "unknown demonstration 'matrix2'" + possible);
    expect_misuse({""}, "unknown demonstration ''" + possible);
    expect_misuse({"-"}, "unknown demonstration '-'" + possible);
    // Nothing is shown of the names before it.
    expect_misuse({"matrix", "rgb", "Matrix"}, "unknown demonstration 'Matrix'" + possible);
}

TEST(Misuse, MessageIsOneLineAndColorsNothing)
{
    Outcome const run = demo(on_pipes, {"a\nb\t\x1b[31mc\x1f \x7f~ä\xff\u009b2J\u202e"});
    EXPECT_EQ(run.err.substr(0, run.err.find(": the")),
              R"(hueline-demo: unknown demonstration 'a\x0ab\x09\x1b[31mc\x1f \x7f~ä\xff\u{9b}2J\u{202e}')");
    EXPECT_EQ(count(run.err, "\n"), 1U);
}

struct Pattern {
    std::string name;
    std::string operation;  // of the library
    std::string first_line; // elsewhere than on a terminal
    std::size_t size;       // bytes, likewise
};

std::string const heading = "reset colorize dark thin \n";
std::string const greys_heading = "reset colorize  232-255:  grayscale from black to white in 24 steps\n";
std::string const product = "Kestry Hueline Library (Hueline)\n";

// clang-format off
Pattern const patterns[] = {
    {"codes",        "test_pattern_supported_m_codes", "",                          0},
    {"normal-reset", "test_pattern_normal_reset",      heading,                     213},
    {"matrix",       "test_pattern_matrix",            " no frills mode is off \n", 908},
    {"palette",      "test_pattern_256bit",            heading,                     1452},
    {"greyscale",    "test_pattern_greyscale",         greys_heading,               1715},
    {"rgb",          "test_pattern_rgb",               heading,                     5011},
};
// clang-format on

std::string const status_line = "test_pattern_status_line";
std::string const progress_line = "test_pattern_progress_line";
std::string const version_banner = "build_version";

std::string told_of(Sinks sinks, std::vector<Step> steps, std::vector<std::string> const& operations)
{
    steps.push_back({"colorize", "cout"});
    for (std::string const& operation : operations) {
        steps.push_back({operation, "cout"});
    }
    return told(sinks, steps);
}

// What the library writes in a program that does this and nothing else.
std::string on_a_pipe(std::vector<std::string> const& operations) { return told_of(on_pipes, {}, operations); }
std::string on_a_terminal(std::vector<std::string> const& operations) { return told_of(on_terminals, {}, operations); }
std::string without_frills(std::vector<std::string> const& operations)
{
    return told_of(on_terminals, {{"_setNoFrillsMode", "", {1}}}, operations);
}

void expect_pattern_on_pipe(Arguments const& arguments, std::string const& expected)
{
    Outcome const run = demo(on_pipes, arguments, with_endless_waits);
    EXPECT_EQ(difference(expected, run.out), "");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
}

TEST(OnAPipe, DemonstrationIsTheLibrarysTextAndNothingElse)
{
    for (Pattern const& pattern : patterns) {
        SCOPED_TRACE(pattern.name);
        expect_pattern_on_pipe({pattern.name}, on_a_pipe({pattern.operation}));

        Outcome const run = demo(on_pipes, {pattern.name});
        EXPECT_EQ(run.out.substr(0, run.out.find('\n') + 1), pattern.first_line);
        EXPECT_EQ(run.out.size(), pattern.size);
        EXPECT_FALSE(has_sequences(run.out));
    }
}

TEST(OnAPipe, IndicatorsKeepTheirOwnColorsAndDoNotWait)
{
    expect_pattern_on_pipe({"status"}, on_a_pipe({status_line}));
    expect_pattern_on_pipe({"progress"}, on_a_pipe({progress_line}));
}

TEST(OnAPipe, BannerIsTheLibrarysTextAndNothingElse)
{
    expect_pattern_on_pipe({}, on_a_pipe({version_banner}));
    expect_pattern_on_pipe({"banner"}, on_a_pipe({version_banner}));
    EXPECT_EQ(demo(on_pipes, {}).out.substr(0, product.size()), product);
}

TEST(OnAPipe, DemonstrationsFollowEachOtherInTheOrderGiven)
{
    expect_pattern_on_pipe({"rgb", "matrix", "rgb"},
                           on_a_pipe({"test_pattern_rgb", "test_pattern_matrix", "test_pattern_rgb"}));
}

TEST(OnATerminal, DemonstrationEndsInTheDefaultRendition)
{
    for (Pattern const& pattern : patterns) {
        SCOPED_TRACE(pattern.name);
        Outcome const run = demo(on_terminals, {pattern.name});
        EXPECT_EQ(difference(on_a_terminal({pattern.operation, "reset"}), run.out), "");
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, 0);
        expect_default_rendition_behind(run.out);
    }
}

TEST(OnATerminal, BannerIsFollowedByAReset)
{
    Outcome const run = demo(on_terminals, {}, without_waits);
    EXPECT_EQ(difference(on_a_terminal({version_banner}) + "\x1b[00m\x1b[25h", run.out), "");
    EXPECT_EQ(run.status, 0);
    expect_default_rendition_behind(run.out);
}

TEST(OnATerminal, IndicatorsKeepTheirLastFrameOnALineOfItsOwn)
{
    Outcome run = demo(on_terminals, {"status"}, without_waits);
    EXPECT_EQ(difference(on_a_terminal({status_line}) + "\x1b[00m\x1b[25h\n", run.out), "");
    expect_default_rendition_behind(run.out);

    run = demo(on_terminals, {"progress"}, without_waits);
    EXPECT_EQ(difference(on_a_terminal({progress_line}) + "\x1b[00m\x1b[25h\n", run.out), "");
}

TEST(OnATerminal, EachDemonstrationStartsFromTheDefaultRecord)
{
    EXPECT_EQ(difference(on_a_terminal({"test_pattern_rgb", "reset", "test_pattern_matrix", "reset"}),
                         demo(on_terminals, {"rgb", "matrix"}).out),
              "");
}

TEST(OnATerminal, ColorIsForStandardOutputWhateverStandardErrorIs)
{
    EXPECT_EQ(
        difference(on_a_terminal({"test_pattern_matrix", "reset"}), demo({Sink::terminal, Sink::pipe}, {"matrix"}).out),
        "");
    for (Sink const out : {Sink::pipe, Sink::file}) {
        EXPECT_EQ(difference(on_a_pipe({"test_pattern_matrix"}), demo({out, Sink::terminal}, {"matrix"}).out), "");
    }
}

TEST(NoFrills, ATerminalReceivesNoSequence)
{
    for (Pattern const& pattern : patterns) {
        SCOPED_TRACE(pattern.name);
        for (Arguments const& arguments : {Arguments{"--no-frills", pattern.name}, Arguments{"-n", pattern.name},
                                           Arguments{pattern.name, "--no-frills"}}) {
            Outcome const run = demo(on_terminals, arguments);
            EXPECT_EQ(difference(without_frills({pattern.operation}), run.out), "");
            EXPECT_FALSE(has_sequences(run.out));
        }
    }
}

TEST(NoFrills, ColorsOfTheIndicatorsAreEndedOnATerminal)
{
    std::string const end = "\x1b[00m\x1b[25h";
    EXPECT_EQ(difference(without_frills({status_line}) + end + "\n", demo(on_terminals, {"-n", "status"}).out), "");
    EXPECT_EQ(difference(without_frills({progress_line}) + end + "\n", demo(on_terminals, {"-n", "progress"}).out), "");
    EXPECT_EQ(difference(without_frills({version_banner}) + end, demo(on_terminals, {"-n"}).out), "");
}

TEST(NoFrills, ModeHoldsForTheDemonstrationsAfterAnIndicator)
{
    Outcome const run = demo(on_terminals, {"-n", "status", "matrix"});
    EXPECT_EQ(readable(run.out.substr(run.out.rfind(" no frills mode is"))),
              readable(without_frills({"test_pattern_matrix"})));
}

// What "matrix" writes to a terminal that has colour, to one that has none, and to a pipe.
struct Matrix {
    std::string colored;
    std::string without_frills;
    std::string piped;
};

Matrix matrix()
{
    std::string const operation = "test_pattern_matrix";
    return {on_a_terminal({operation, "reset"}), without_frills({operation}), on_a_pipe({operation})};
}

TEST(Color, IsTakenFromATerminalByNoFrillsMode)
{
    std::string const expected = matrix().without_frills;
    EXPECT_EQ(difference(expected, demo(on_terminals, {"--color=never", "matrix"}).out), "");
    for (char const* const variable : {"NO_COLOR=1", "FORCE_COLOR=0", "CLICOLOR=0", "TERM=dumb", "TERM"}) {
        SCOPED_TRACE(variable);
        EXPECT_EQ(difference(expected, demo(on_terminals, {"matrix"}, {.environment = {variable}}).out), "");
    }
}

TEST(Color, IsGivenByTheOptionWhateverTheEnvironmentSays)
{
    std::string const expected = matrix().colored;
    Launch const refusing = {.environment = {"NO_COLOR=1", "TERM=dumb"}};
    for (char const* const option : {"--color", "--color=always", "--color=16", "--color=256", "--color=24bit"}) {
        SCOPED_TRACE(option);
        EXPECT_EQ(difference(expected, demo(on_terminals, {option, "matrix"}, refusing).out), "");
        EXPECT_EQ(difference(expected, demo(on_terminals, {"matrix", option}, refusing).out), "");
    }
}

TEST(Color, TheLastOptionCounts)
{
    Matrix const expected = matrix();
    EXPECT_EQ(demo(on_terminals, {"--color=never", "--color=auto", "matrix"}).out, expected.colored);
    EXPECT_EQ(demo(on_terminals, {"--color", "--color=never", "matrix"}).out, expected.without_frills);
    EXPECT_EQ(demo(on_terminals, {"--no-frills", "--color", "matrix"}).out, expected.without_frills);
}

TEST(Color, OfAPipeIsRefusedByTheGate)
{
    Matrix const expected = matrix();
    for (char const* const option : {"--color=always", "--color=never"}) {
        SCOPED_TRACE(option);
        EXPECT_EQ(demo(on_pipes, {option, "matrix"}).out, expected.piped);
        EXPECT_EQ(demo({Sink::pipe, Sink::terminal}, {option, "matrix"}).out, expected.piped);
    }
    EXPECT_EQ(demo(on_pipes, {"matrix"}, {.environment = {"FORCE_COLOR=3"}}).out, expected.piped);
}

TEST(Color, OfTheStringFormsOfThemesGoesIntoAPipe)
{
    std::string const heading_and_first = "role                          string interface    stream interface\n"
                                          "app_title                     \x1b[32mKestry Hueline\x1b[0m      "
                                          "Kestry Hueline\n";
    std::string const out = demo(on_pipes, {"--color=always", "themes"}).out;
    EXPECT_EQ(readable(out.substr(0, heading_and_first.size())), readable(heading_and_first));
    EXPECT_FALSE(has_sequences(demo(on_pipes, {"--color=always", "--no-frills", "themes"}).out));
    EXPECT_FALSE(has_sequences(demo(on_terminals, {"--color=never", "themes"}).out));
}

TEST(Color, OfTheIndicatorsIsEndedWhereColorIsNotWanted)
{
    Outcome const run = demo(on_terminals, {"--color=never", "status"}, without_waits);
    EXPECT_EQ(difference(without_frills({status_line}) + "\x1b[00m\x1b[25h\n", run.out), "");
    expect_default_rendition_behind(run.out);
}

TEST(Color, OfUnknownKindIsMisuse)
{
    std::string const rest = " of option '--color': it is one of auto, always, never, 16, 256, 24bit";
    expect_misuse({"--color=maybe"}, "unknown WHEN 'maybe'" + rest);
    expect_misuse({"matrix", "--color="}, "unknown WHEN ''" + rest);
    expect_misuse({"--color=a\x1b[31m"}, R"(unknown WHEN 'a\x1b[31m')" + rest);
}

std::string const plain_templates = "this is a cross platform template\n"
                                    "there is no need to sudivide this section\n"
                                    "into Linux and Windows areas as this code\n"
                                    "will run on all platfoms without specific needs\n"
                                    "for either platform Windows or Linux\n"
                                    "\x1b[00mthis is a platform specific template\n"
                                    "externally the interface is the same\n"
                                    "internally the implementation is specific\n"
                                    "to either Linux in this case\n"
                                    "or Windows in the below case\n";

TEST(Templates, AreColoredOnATerminalOnly)
{
    EXPECT_EQ(demo(on_pipes, {"templates"}).out, plain_templates);

    // clang-format off
    std::string const colored = "\x1b[00m\x1b[1m\x1b[37m" "\x1b[00m\x1b[1m\x1b[37m\x1b[42m"
                                 " will only display in color if colorize has been called \n"
                                 " and this works on both Windows and Linux \n"
                                 "\x1b[00m\x1b[1m\x1b[37m\x1b[42m" "\x1b[00m\x1b[1m\x1b[37m\x1b[42m"
                                 " will display (in Linux) color if colorize \n"
                                 " has been called and this works on Linux \n"
                                 "\x1b[00m\x1b[25h";
    // clang-format on
    EXPECT_EQ(readable(demo(on_terminals, {"templates"}).out), readable(plain_templates + colored));
}

TEST(Themes, AreATableOfRolesAndTwoForms)
{
    Outcome const run = demo(on_pipes, {"themes"});
    EXPECT_EQ(run.out, "role                          string interface    stream interface\n"
                       "app_title                     Kestry Hueline      Kestry Hueline\n"
                       "alert                         no such device      no such device\n"
                       "info                          3 devices found     3 devices found\n"
                       "default_text                  ordinary text       ordinary text\n"
                       "default_text()                ordinary text       ordinary text\n"
                       "defaultOperatingSystemText()  of the terminal     -\n"
                       "seperator                     --------------      --------------\n"
                       "help                          -v shows more       -v shows more\n"
                       "help()                        -v shows more       -v shows more\n"
                       "prompt                        continue?           continue?\n"
                       "version                       1.4                 1.4\n"
                       "cursor                        >                   >\n"
                       "commandLine                   ls -l               ls -l\n"
                       "commandLine()                 ls -l               ls -l\n"
                       "path                          /dev/ttyS0          /dev/ttyS0\n"
                       "path of a number              42                  42\n"
                       "name                          ttyS0               ttyS0\n"
                       "status()                      connected           connected\n"
                       "immediate_destination         07                  07\n"
                       "total_count                   10                  10\n"
                       "crc of one byte               -                   a5\n"
                       "crc of two bytes              -                   be ef \n"
                       "request_title                 request             72 65 71 75 65 73 74 \n"
                       "response_title                response            72 65 73 70 6f 6e 73 65 \n");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);

    // Without frills a terminal receives the same.
    EXPECT_EQ(demo(on_terminals, {"-n", "themes"}).out, run.out);
}

// A stretch of a theme of the stream interface: bold at load, and reset after it.
std::string in_stream(std::string const& sgr, std::string const& text)
{
    return "\x1b[00m\x1b[1m" + sgr + text + "\x1b[00m\x1b[25h\n";
}

// The same for a theme that is made bold, and dark after the text.
std::string bold_in_stream(std::string const& sgr, std::string const& text)
{
    // clang-format off
    return "\x1b[00m\x1b[1m" + sgr + "\x1b[00m\x1b[1m" + sgr + text +
           "\x1b[00m\x1b[1m\x1b[2m" + sgr + "\x1b[00m\x1b[25h\n";
    // clang-format on
}

TEST(Themes, EachFormHasItsColorsOnATerminal)
{
    Outcome const run = demo(on_terminals, {"themes"});
    // clang-format off
    std::string const expected =
        "\x1b[00m\x1b[25hrole                          string interface    stream interface\n"
        "app_title                     \x1b[32mKestry Hueline\x1b[0m      " + in_stream("\x1b[32m", "Kestry Hueline") +
        "alert                         \x1b[1m\x1b[31mno such device\x1b[2m\x1b[0m      " +
        bold_in_stream("\x1b[31m", "no such device") +
        "info                          \x1b[33m3 devices found\x1b[0m     " + in_stream("\x1b[33m", "3 devices found") +
        "default_text                  \x1b[36mordinary text\x1b[0m       " + in_stream("\x1b[36m", "ordinary text") +
        "default_text()                \x1b[32mordinary text\x1b[0m       " + in_stream("\x1b[32m", "ordinary text") +
        "defaultOperatingSystemText()  \x1b[0mof the terminal\x1b[0m     -\n"
        "seperator                     \x1b[37m--------------\x1b[0m      " + in_stream("\x1b[37m", "--------------") +
        "help                          \x1b[34m-v shows more\x1b[0m       " + in_stream("\x1b[34m", "-v shows more") +
        "help()                        \x1b[33m-v shows more\x1b[0m       " + in_stream("\x1b[33m", "-v shows more") +
        "prompt                        \x1b[35mcontinue?\x1b[0m           " + in_stream("\x1b[35m", "continue?") +
        "version                       \x1b[37m1.4\x1b[0m                 " + in_stream("\x1b[37m", "1.4") +
        "cursor                        \x1b[1m\x1b[36m>\x1b[2m\x1b[0m                   " +
        bold_in_stream("\x1b[36m", ">") +
        // commandLine ends its own decoration, in both forms.
        "commandLine                   \x1b[37mls -l\x1b[0m\x1b[0m               " +
        "\x1b[00m\x1b[1m\x1b[37mls -l\x1b[00m\x1b[25h\x1b[00m\x1b[25h\n"
        "commandLine()                 \x1b[36mls -l\x1b[0m               " + in_stream("\x1b[36m", "ls -l") +
        "path                          \x1b[36m/dev/ttyS0\x1b[0m          " + in_stream("\x1b[36m", "/dev/ttyS0") +
        "path of a number              \x1b[36m42\x1b[0m                  " + in_stream("\x1b[36m", "42") +
        "name                          \x1b[1m\x1b[33mttyS0\x1b[2m\x1b[0m               " +
        bold_in_stream("\x1b[37m", "ttyS0") +
        "status()                      \x1b[35mconnected\x1b[0m           " + in_stream("\x1b[35m", "connected") +
        "immediate_destination         \x1b[36m07\x1b[0m                  " + in_stream("\x1b[36m", "07") +
        "total_count                   \x1b[1m\x1b[34m10\x1b[2m\x1b[0m                  " + in_stream("\x1b[34m", "10") +
        "crc of one byte               -                   " + in_stream("\x1b[32m", "a5") +
        "crc of two bytes              -                   " + in_stream("\x1b[32m", "be ef ") +
        "request_title                 \x1b[1m\x1b[35mrequest\x1b[2m\x1b[0m             "
        "\x1b[00m\x1b[1m\x1b[35m" + in_stream("\x1b[35m", "72 65 71 75 65 73 74 ") +
        "response_title                \x1b[35mresponse\x1b[0m            "
        "\x1b[00m\x1b[1m\x1b[35m\x1b[00m\x1b[1m\x1b[2m\x1b[35m72 65 73 70 6f 6e 73 65 \x1b[00m\x1b[25h\n"
        "\x1b[00m\x1b[25h";
    // clang-format on
    EXPECT_EQ(difference(expected, run.out), "");
    expect_default_rendition_behind(run.out);
}

TEST(Themes, ColumnsAreAlignedOnATerminal)
{
    Screen const screen(demo(on_terminals, {"themes"}).out, 30);
    EXPECT_EQ(screen.text(2), "alert                         no such device      no such device");
    EXPECT_EQ(screen.text(12), "cursor                        >                   >");
    EXPECT_EQ(screen.text(24), "response_title                response            72 65 73 70 6f 6e 73 65");
}

std::string const cannot_write = "hueline-demo: cannot write to standard output: ";

TEST(FailedWrite, EndsInOneLineWithTheReason)
{
    Folder const folder;
    std::string const file = folder.file("data", "some data");
    for (Arguments const& arguments :
         {Arguments{}, Arguments{"--help"}, Arguments{"--version"}, Arguments{"--list"}, Arguments{"banner"},
          Arguments{"templates"}, Arguments{"normal-reset"}, Arguments{"matrix"}, Arguments{"palette"},
          Arguments{"greyscale"}, Arguments{"rgb"}, Arguments{"status"}, Arguments{"progress"}, Arguments{"themes"},
          Arguments{"tour"}, Arguments{"dump", file}, Arguments{"-n", "matrix", "rgb"}}) {
        SCOPED_TRACE(arguments.empty() ? "" : arguments.front());
        for (Sink const err : {Sink::terminal, Sink::pipe}) {
            Outcome const full = demo({Sink::full, err}, arguments);
            EXPECT_EQ(full.err, cannot_write + "No space left on device\n");
            EXPECT_EQ(full.status, 1);

            Outcome const closed = demo({Sink::closed, err}, arguments);
            EXPECT_EQ(closed.err, cannot_write + "Bad file descriptor\n");
            EXPECT_EQ(closed.status, 1);
        }
    }
}

TEST(FailedWrite, EndsTheToolAtOnce)
{
    Folder const folder;
    Outcome const run = demo({Sink::full, Sink::pipe}, {"dump", "/dev/zero"}); // has no end
    EXPECT_EQ(run.err, cannot_write + "No space left on device\n");
    EXPECT_EQ(run.status, 1);
}

TEST(FailedWrite, WithStandardErrorClosedTheStatusTells)
{
    EXPECT_EQ(demo({Sink::full, Sink::closed}, {"matrix"}).status, 1);
    EXPECT_EQ(demo({Sink::pipe, Sink::closed}, {"no-such-name"}).status, 2);
}

TEST(Complaint, IsOneWrite)
{
    Outcome const run = on_pipe([] {
        report(writes_to(STDERR_FILENO, [] {
            if (fork() == 0) {
                become_demo({"dump", "no-such-file"});
            }
            wait(nullptr);
        }));
    });
    EXPECT_EQ(run.report, "[hueline-demo: cannot read 'no-such-file': No such file or directory\n]");
}

// Makes each write(2) of so many bytes fail with ENOSPC, in this process and in what it becomes.
bool refuse_writes_of(unsigned size)
{
    std::array<sock_filter, 6> program = {{
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_write, 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, args[2])), // the lower half: little-endian
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, size, 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | ENOSPC),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
    }};
    sock_fprog const filter = {.len = program.size(), .filter = program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 && prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

TEST(FailedWrite, OfPrintfIsNoticedToo)
{
    // A row of the grid is the one thing of that size, and it goes through printf: ten cells of 11
    // bytes, from "\x1b[0m   0\x1b[m" on, and a line end. All other writes succeed.
    Outcome const run = run_with({Sink::terminal, Sink::pipe}, [] {
        if (refuse_writes_of(10 * 11 + 1)) {
            become_demo({"codes"});
        }
        report("no filter");
    });
    if (run.report == "no filter") {
        GTEST_SKIP() << "system calls cannot be filtered here";
    }
    EXPECT_NE(run.out.find(" first 108 m codes: \n"), run.out.npos);
    EXPECT_EQ(run.err, cannot_write + "No space left on device\n");
    EXPECT_EQ(run.status, 1);
}

TEST(ReaderThatGoesAway, EndsTheToolQuietly)
{
    Outcome const run = shell(on_pipes, R"({ "$0" dump /dev/zero; echo "status $?" >&2; } | head -n 1)");
    EXPECT_EQ(run.out, "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n");
    EXPECT_EQ(run.err, "status " + std::to_string(128 + SIGPIPE) + "\n");

    Outcome const banner = shell(on_pipes, R"("$0" | head -n 1)");
    EXPECT_EQ(banner.out, product);
    EXPECT_EQ(banner.err, "");
}

TEST(ReaderThatGoesAway, EndsTheToolQuietlyWhereTheSignalWasIgnored)
{
    Outcome const run = shell(on_pipes, R"(trap "" PIPE; { "$0" dump /dev/zero; echo "status $?" >&2; } | head -n 1)");
    EXPECT_EQ(run.err, "status " + std::to_string(128 + SIGPIPE) + "\n");
}

int const ending_signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};
std::string const tidy_end = "\x1b[0m\x1b[?25h\n";

// A process that dies of SIGQUIT leaves no core behind.
void forbid_cores()
{
    rlimit const none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

bool ends_with(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

TEST(Signal, InAnAnimationLeavesTheTerminalTidy)
{
    forbid_cores();
    for (int const signal : ending_signals) {
        SCOPED_TRACE(signal);
        for (std::string const name : {"status", "progress"}) {
            std::string const third_step = name == "status" ? "#\x1b[40m\x1b[36m#\x1b[40m\x1b[93m" : "4%";
            Outcome const run = demo({Sink::terminal, Sink::pipe}, {name}, interrupted(signal, third_step));
            EXPECT_EQ(run.signal, signal);
            EXPECT_TRUE(ends_with(run.out, tidy_end)) << readable(run.out);
            EXPECT_EQ(count(run.out, tidy_end), 1U);
            EXPECT_EQ(run.err, "");
            expect_default_rendition_behind(run.out);
        }
    }
}

TEST(Signal, InTheBannerLeavesTheTerminalTidy)
{
    Outcome const run = demo(on_terminals, {}, interrupted(SIGINT, "\x1b[93m"));
    EXPECT_EQ(run.signal, SIGINT);
    EXPECT_TRUE(ends_with(run.out, tidy_end)) << readable(run.out);
    EXPECT_EQ(run.err, "");
}

TEST(Signal, WritesNothingElsewhereThanToATerminal)
{
    forbid_cores();
    Folder const folder;
    std::string const file = folder.sparse_file("data", 64 * mebibyte, mebibyte);
    for (int const signal : ending_signals) {
        Outcome const run = demo(on_pipes, {"dump", file}, {.interrupt = Interrupt{signal, "ff"}});
        EXPECT_EQ(run.signal, signal);
        EXPECT_FALSE(has_sequences(run.out));
        EXPECT_EQ(run.err, "");
    }
}

TEST(Signal, ThatWasIgnoredAtStartStaysIgnored)
{
    for (auto const& [signal, name] : {std::pair(SIGINT, "INT"), std::pair(SIGHUP, "HUP")}) {
        std::string const command = std::string("trap '' ") + name + R"(; exec "$0" status)";
        Outcome const run =
            shell({Sink::terminal, Sink::pipe}, command, {}, {.interrupt = Interrupt{signal, "\x1b[93m"}});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(difference(on_a_terminal({status_line, "reset"}) + "\n", run.out), "");
    }
}

TEST(Signal, ThatWasIgnoredAtStartLeavesTheOthersAlone)
{
    std::string const command = R"(trap '' HUP; exec env LD_PRELOAD="$1" CLOCK_STANDS_AFTER=60 "$0" status)";
    Outcome const run =
        shell({Sink::terminal, Sink::pipe}, command, {FAST_CLOCK}, {.interrupt = Interrupt{SIGTERM, "\x1b[93m"}});
    EXPECT_EQ(run.signal, SIGTERM);
    EXPECT_TRUE(ends_with(run.out, tidy_end)) << readable(run.out);
}

TEST(Signal, SecondOneEndsTheToolOnAStoppedTerminal)
{
    Outcome const run = run_with({Sink::terminal, Sink::pipe}, [] {
        tcflow(STDOUT_FILENO, TCOOFF); // as Ctrl-S does: each write waits from now on
        pid_t const pid = getpid();
        if (fork() == 0) {
            for (int i = 0; i < 2; ++i) {
                std::this_thread::sleep_for(300ms);
                kill(pid, SIGTERM);
            }
            _exit(0);
        }
        become_demo({"matrix"});
    });
    EXPECT_EQ(run.signal, SIGTERM);
}

// What the dump of the bytes should be.
std::string hex_lines(std::string_view bytes)
{
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        char cell[4];
        std::snprintf(cell, sizeof cell, "%02x", static_cast<unsigned>(static_cast<unsigned char>(bytes[i])));
        text += cell;
        text += i % 16 == 15 || i + 1 == bytes.size() ? '\n' : ' ';
    }
    return text;
}

// Bytes without a pattern, the same each time.
std::string some_bytes(std::size_t size)
{
    std::string bytes;
    bytes.reserve(size);
    for (unsigned n = 1; bytes.size() < size;) {
        n = n * 1664525U + 1013904223U;
        bytes += static_cast<char>(n >> 24);
    }
    return bytes;
}

// For the shell: makes a pipe "$1/input" that holds sixteen bytes and two, and comes to no end.
std::string const open_input = R"(mkfifo "$1/input"; exec 3<> "$1/input"; printf 0123456789abcdefgh >&3; )";

TEST(Dump, HasSixteenBytesALine)
{
    Folder const folder;
    EXPECT_EQ(demo(on_pipes, {"dump", folder.file("none", "")}).out, "");
    EXPECT_EQ(demo(on_pipes, {"dump", folder.file("one", "A")}).out, "41\n");
    EXPECT_EQ(demo(on_pipes, {"dump", folder.file("sixteen", "0123456789abcdef")}).out,
              "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66\n");
    EXPECT_EQ(demo(on_pipes, {"dump", folder.file("seventeen", "0123456789abcdefg")}).out,
              "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66\n67\n");
    EXPECT_EQ(demo(on_pipes, {"dump", folder.file("binary", std::string_view("\x00\xff\n\x1b[\x7f\x80", 7))}).out,
              "00 ff 0a 1b 5b 7f 80\n");
}

TEST(Dump, OfAnySizeIsWhole)
{
    Folder const folder;
    for (std::size_t const size : {15U, 19U, 20U, 31U, 32U, 255U, 4095U, 4096U, 4097U, 65535U, 65536U, 65537U, 65552U,
                                   131071U, 131072U, 131073U, 1048575U}) {
        SCOPED_TRACE(size);
        std::string const bytes = some_bytes(size);
        Outcome const run = demo(on_pipes, {"dump", folder.file("data", bytes)});
        EXPECT_EQ(difference(hex_lines(bytes), run.out), "");
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, 0);
    }
}

TEST(Dump, ShowsEachOfThe256Values)
{
    std::string bytes;
    for (int value = 0; value < 256; ++value) {
        bytes += static_cast<char>(value);
    }
    Folder const folder;
    Outcome const run = demo(on_pipes, {"dump", folder.file("data", bytes)});
    EXPECT_EQ(difference(hex_lines(bytes), run.out), "");
    EXPECT_EQ(run.out.substr(0, 48), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f\n");
    EXPECT_EQ(run.out.substr(15 * 48), "f0 f1 f2 f3 f4 f5 f6 f7 f8 f9 fa fb fc fd fe ff\n");
}

TEST(Dump, IsPlainOnATerminalToo)
{
    Folder const folder;
    EXPECT_EQ(demo(on_terminals, {"dump", folder.file("data", "abc")}).out, "61 62 63\n");
}

TEST(Dump, ReadsStandardInput)
{
    for (Arguments const& arguments : {Arguments{"dump"}, Arguments{"dump", "-"}, Arguments{"-n", "dump"}}) {
        Outcome const run = demo(on_pipes, arguments, {.input = "typed\n"});
        EXPECT_EQ(run.out, "74 79 70 65 64 0a\n");
        EXPECT_EQ(run.status, 0);
    }
    EXPECT_EQ(demo(on_pipes, {"dump"}, {.input = ""}).out, "");
}

TEST(Dump, TakesAllArgumentsBehindItAsFiles)
{
    Folder const folder;
    std::string const first = folder.file("first", "0123456789abcdefg");
    std::string const second = folder.file("second", "h");
    Outcome const run = demo(on_pipes, {"dump", first, "-", folder.file("empty", ""), second}, {.input = "in"});
    EXPECT_EQ(run.out, "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66\n67\n69 6e\n68\n");
    EXPECT_EQ(run.status, 0);

    Outcome const name = demo(on_pipes, {"dump", "matrix"});
    EXPECT_EQ(name.out, "");
    EXPECT_EQ(name.err, "hueline-demo: cannot read 'matrix': No such file or directory\n");
}

TEST(Dump, FollowsOtherDemonstrations)
{
    Folder const folder;
    Outcome const run = demo(on_pipes, {"templates", "dump", folder.file("data", "z")});
    EXPECT_EQ(run.out, plain_templates + "7a\n");
}

TEST(Dump, OfAFileWithADashInItsName)
{
    Folder const folder;
    folder.file("-n", "dash");
    EXPECT_EQ(shell(on_pipes, R"(cd "$1" && "$0" dump -- -n)", {folder.path.string()}).out, "64 61 73 68\n");
}

bool is_closed_on_exec(pid_t pid, std::string const& descriptor)
{
    std::ifstream info("/proc/" + std::to_string(pid) + "/fdinfo/" + descriptor);
    std::string name;
    for (unsigned flags = 0; info >> name;) {
        if (name == "flags:" && info >> std::oct >> flags) {
            return (flags & O_CLOEXEC) != 0;
        }
    }
    return false;
}

// The tool leads a session that has no terminal yet. One that became its own would end it by hanging up.
TEST(Dump, OfATerminalDoesNotMakeItItsOwn)
{
    Outcome const run = run_with(on_pipes, [] {
        int const master = posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC);
        if (master < 0 || grantpt(master) != 0 || unlockpt(master) != 0) {
            report("no terminal");
            return;
        }
        std::string const name = ptsname(master);
        pid_t const pid = getpid();
        if (fork() == 0) {
            write(master, "0123456789abcde\n", 16);
            await_output(STDOUT_FILENO, "0a\n");
            for (auto const& open : std::filesystem::directory_iterator("/proc/" + std::to_string(pid) + "/fd")) {
                if (std::filesystem::read_symlink(open) == name) {
                    report(is_closed_on_exec(pid, open.path().filename()) ? "closed on exec" : "left open on exec");
                }
            }
            _exit(0); // the last one who has the other end
        }
        become_demo({"dump", name});
    });
    EXPECT_EQ(run.report, "closed on exec");
    EXPECT_EQ(run.out, "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 0a\n");
    EXPECT_EQ(run.signal, 0);
}

TEST(Dump, OfWhatComesInPiecesIsTheSame)
{
    std::string const pieces = "{ printf aaaaaaaaaa; sleep 0.2; printf bbbbbbbbbb; sleep 0.2; printf cccccccccccc; }";
    Outcome const run = shell(on_pipes, pieces + R"( | "$0" dump)");
    EXPECT_EQ(run.out, "61 61 61 61 61 61 61 61 61 61 62 62 62 62 62 62\n"
                       "62 62 62 62 63 63 63 63 63 63 63 63 63 63 63 63\n");

    Folder const folder;
    std::string const bytes = some_bytes(900'001);
    Outcome const piped = shell(on_pipes, R"(cat "$1" | "$0" dump)", {folder.file("data", bytes)});
    EXPECT_EQ(difference(hex_lines(bytes), piped.out), "");
}

TEST(Dump, WritesALineAsSoonAsItIsFull)
{
    Folder const folder;
    Outcome const run = shell(on_pipes, open_input + R"(exec "$0" dump < "$1/input")", {folder.path.string()},
                              {.interrupt = Interrupt{SIGTERM, "65 66\n"}});
    EXPECT_EQ(run.out, "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66\n");
    EXPECT_EQ(run.signal, SIGTERM);
}

TEST(Dump, OfWhatCannotBeReadNamesTheReason)
{
    Folder const folder;
    std::string const missing = (folder.path / "missing").string();
    std::string const data = folder.file("data", "abc");
    std::string const locked = folder.file("locked", "abc");
    std::filesystem::permissions(locked, std::filesystem::perms::none);
    std::filesystem::create_symlink("loop", folder.path / "loop");
    std::string const loop = (folder.path / "loop").string();

    std::vector<std::pair<std::string, std::string>> cases = {
        // clang-format off
        {missing, "No such file or directory"},
        {folder.path.string(), "Is a directory"},
        {data + "/x", "Not a directory"},
        {loop, "Too many levels of symbolic links"},
        // clang-format on
        {"", "No such file or directory"},
    };
    if (geteuid() != 0) { // who may read everything
        cases.emplace_back(locked, "Permission denied");
    }
    for (auto const& [name, reason] : cases) {
        SCOPED_TRACE(name);
        Outcome const run = demo(on_pipes, {"dump", name});
        EXPECT_EQ(run.out, "");
        EXPECT_EQ(run.err, "hueline-demo: cannot read '" + name + "': " + reason + "\n");
        EXPECT_EQ(run.status, 1);
    }
}

TEST(Dump, GoesOnBehindAFileThatCannotBeRead)
{
    Folder const folder;
    Outcome const run = demo(on_pipes, {"dump", folder.file("a", "a"), "/no/such\n\u009b2Jfile", folder.path.string(),
                                        folder.file("b", "b")});
    EXPECT_EQ(run.out, "61\n62\n");
    // clang-format off
    EXPECT_EQ(run.err, "hueline-demo: cannot read '/no/such\\x0a\\u{9b}2Jfile': No such file or directory\n"
                       "hueline-demo: cannot read '" + folder.path.string() + "': Is a directory\n");
    // clang-format on
    EXPECT_EQ(run.status, 1);
}

TEST(Dump, KeepsNoFileOpenBehindItsEnd)
{
    Folder const folder;
    Arguments const files(40, folder.file("data", "z"));
    Outcome const run = shell(on_pipes, R"(ulimit -n 20; exec "$0" dump "$@")", files);
    EXPECT_EQ(count(run.out, "7a\n"), 40U);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
}

TEST(Dump, OfClosedStandardInputNamesTheReason)
{
    Outcome const run = shell(on_pipes, R"("$0" dump <&-)");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "hueline-demo: cannot read standard input: Bad file descriptor\n");
    EXPECT_EQ(run.status, 1);
}

TEST(Dump, ShowsWhatCouldBeReadBeforeAnError)
{
    // A terminal whose other end is gone: what it has left, and then EIO.
    Outcome const run = run_with(on_pipes, [] {
        int master = -1;
        int slave = -1;
        termios raw = {};
        if (openpty(&master, &slave, nullptr, nullptr, nullptr) != 0 || tcgetattr(slave, &raw) != 0) {
            return;
        }
        cfmakeraw(&raw);
        tcsetattr(slave, TCSANOW, &raw);
        if (write(slave, "0123456789abcdefgh", 18) == 18) {
            close(slave);
            dup2(master, STDIN_FILENO);
            become_demo({"dump"});
        }
    });
    EXPECT_EQ(run.out, "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66\n67 68\n");
    EXPECT_EQ(run.err, "hueline-demo: cannot read standard input: Input/output error\n");
    EXPECT_EQ(run.status, 1);
}

TEST(CanonicalDump, IsThatOfHexdump)
{
    Folder const folder;
    std::string const file = folder.file("data", "0123456789abcdef0123456789abcdef0123456789abcdefg\n");
    std::string const rows = "00000000  30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66  |0123456789abcdef|\n"
                             "*\n"
                             "00000030  67 0a                                             |g.|\n"
                             "00000032\n";
    for (Arguments const& arguments : {Arguments{"dump", "--canonical", file}, Arguments{"-C", "dump", file}}) {
        Outcome const run = demo(on_pipes, arguments);
        EXPECT_EQ(run.out, rows);
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, 0);
    }
    EXPECT_EQ(demo(on_pipes, {"dump", "-C", folder.file("none", "")}).out, "");
}

TEST(CanonicalDump, BeginsAnewWithEachFile)
{
    Folder const folder;
    Outcome const run = demo(on_pipes, {"-C", "dump", folder.file("a", "x"), "-"}, {.input = "x"});
    std::string const rows = "00000000  78                                                |x|\n"
                             "00000001\n";
    EXPECT_EQ(run.out, rows + rows);
}

TEST(CanonicalDump, IsColoredAsThePolicySays)
{
    Folder const folder;
    std::string const file = folder.file("data", "x");
    std::string const blanks(48, ' ');
    std::string const plain = "00000000  78" + blanks + "|x|\\n00000001\\n";
    std::string const colored = R"(00000000  \e[36m78)" + blanks + R"(|x\e[39m|\n00000001\n)";
    EXPECT_EQ(readable(demo(on_pipes, {"-C", "dump", file}).out), plain);
    EXPECT_EQ(readable(demo(on_pipes, {"-C", "--color", "dump", file}).out), colored);
    EXPECT_EQ(readable(demo(on_pipes, {"-C", "--color", "--no-frills", "dump", file}).out), plain);
    EXPECT_EQ(readable(demo(on_terminals, {"-C", "--color=never", "dump", file}).out), plain);
}

TEST(CanonicalDump, WritesALineAsSoonAsItIsFull)
{
    Folder const folder;
    Outcome const run = shell(on_pipes, open_input + R"(exec "$0" -C dump < "$1/input")", {folder.path.string()},
                              {.interrupt = Interrupt{SIGTERM, "def|\n"}});
    EXPECT_EQ(run.out, "00000000  30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66  |0123456789abcdef|\n");
    EXPECT_EQ(run.signal, SIGTERM);
}

TEST(CanonicalDump, SaysWhatItCouldNotReadOrWrite)
{
    Folder const folder;
    Outcome const run = demo(on_pipes, {"-C", "dump", "/no/such/file", folder.file("data", "x")});
    EXPECT_EQ(run.err, "hueline-demo: cannot read '/no/such/file': No such file or directory\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_NE(run.out, "");
    Outcome const full =
        demo({Sink::full, Sink::pipe}, {"-C", "dump", "/dev/zero"}); // zeros without end are three lines
    EXPECT_NE(full.status, 0);
    EXPECT_EQ(full.err, "hueline-demo: cannot write to standard output: No space left on device\n");
}

TEST(CanonicalDump, ShowsHowFarItIs)
{
    Folder const folder;
    Outcome const run =
        demo({Sink::pipe, Sink::terminal}, {"-C", "dump", folder.file("data", some_bytes(4 * mebibyte))},
             {.environment = {"TERM=xterm"}});
    EXPECT_NE(readable(run.err).find("dumped 50% of 4 MiB"), std::string::npos) << readable(run.err);
    EXPECT_EQ(run.out.size(), 4 * mebibyte / 16 * 79 + 9);
}

std::string const wiped = "\r\x1b[0K";
Sinks const pipe_and_terminal = {Sink::pipe, Sink::terminal};

TEST(Progress, OfALargeFileIsABarThatIsWipedAtTheEnd)
{
    Folder const folder;
    std::string const bytes = some_bytes(4 * mebibyte);
    Outcome const run = demo(pipe_and_terminal, {"dump", folder.file("data", bytes)});
    EXPECT_EQ(readable(run.err), R"(\r[..............................] dumped 1% of 4 MiB)"
                                 R"(\r[#######/......................] dumped 25% of 4 MiB)"
                                 R"(\r[###############-..............] dumped 50% of 4 MiB)"
                                 R"(\r[######################\.......] dumped 75% of 4 MiB)"
                                 R"(\r[##############################] dumped 100% of 4 MiB)"
                                 R"(\r\e[0K)");
    EXPECT_EQ(difference(hex_lines(bytes), run.out), "");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(Screen(run.err).text(0), "");
}

TEST(Progress, IsShownForMoreThanAMebibyte)
{
    Folder const folder;
    std::string const small = folder.file("small", std::string(mebibyte, 'x'));
    std::string const large = folder.file("large", std::string(mebibyte + 1, 'x'));
    EXPECT_EQ(demo(pipe_and_terminal, {"dump", small}).err, "");
    EXPECT_TRUE(ends_with(demo(pipe_and_terminal, {"dump", large}).err, wiped));
}

TEST(Progress, OfALargePipeIsASpinner)
{
    Folder const folder;
    std::string const bytes = some_bytes(3 * mebibyte + 5);
    Outcome const run = shell(pipe_and_terminal, R"(cat "$1" | "$0" dump)", {folder.file("data", bytes)});
    EXPECT_EQ(readable(run.err), R"(\rdumped 1 MiB /\rdumped 2 MiB -\rdumped 3 MiB \\r\e[0K)");
    EXPECT_EQ(difference(hex_lines(bytes), run.out), "");

    std::string const small = folder.file("small", std::string(mebibyte, 'x'));
    EXPECT_EQ(shell(pipe_and_terminal, R"(cat "$1" | "$0" dump)", {small}).err, "");
}

TEST(Progress, CountsWhatIsLeftOfStandardInput)
{
    Folder const folder;
    Arguments const file = {folder.file("data", std::string(5 * mebibyte, 'x'))};
    Outcome const two =
        shell(pipe_and_terminal, R"({ dd bs=1M count=3 of=/dev/null 2>&1; exec "$0" dump; } < "$1" | tail -n 1)", file);
    EXPECT_NE(two.err.find("] dumped 100% of 2 MiB\r"), two.err.npos) << readable(two.err);

    Outcome const one =
        shell(pipe_and_terminal, R"({ dd bs=1M count=4 of=/dev/null 2>&1; exec "$0" dump; } < "$1" | tail -n 1)", file);
    EXPECT_EQ(one.err, "");
}

TEST(Progress, IsShownOnATerminalOnly)
{
    Folder const folder;
    std::string const file = folder.file("data", std::string(2 * mebibyte, 'x'));
    for (Sink const err : {Sink::pipe, Sink::file}) {
        EXPECT_EQ(demo({Sink::pipe, err}, {"dump", file}).err, "");
        EXPECT_EQ(demo({Sink::terminal, err}, {"dump", file}).err, "");
    }
}

TEST(Progress, IsAFrill)
{
    Folder const folder;
    std::string const file = folder.file("data", std::string(2 * mebibyte, 'x'));
    EXPECT_EQ(demo(pipe_and_terminal, {"--no-frills", "dump", file}).err, "");
}

TEST(Progress, IsForATerminalThatHasColor)
{
    Folder const folder;
    std::string const file = folder.file("data", std::string(2 * mebibyte, 'x'));
    EXPECT_EQ(demo(pipe_and_terminal, {"--color=never", "dump", file}).err, "");
    for (char const* const variable : {"NO_COLOR=1", "CLICOLOR=0", "TERM=dumb"}) {
        SCOPED_TRACE(variable);
        EXPECT_EQ(demo(pipe_and_terminal, {"dump", file}, {.environment = {variable}}).err, "");
    }
    EXPECT_TRUE(
        ends_with(demo(pipe_and_terminal, {"--color", "dump", file}, {.environment = {"TERM=dumb"}}).err, wiped));
    EXPECT_EQ(demo(on_pipes, {"--color=always", "dump", file}).err, "");
}

TEST(Progress, StandsBelowTheDumpOnOneTerminal)
{
    // Both are terminals here, so the line has to go before each piece of the dump.
    Folder const folder;
    std::string const file = folder.file("data", std::string(2 * mebibyte, 'x'));
    std::string const err = demo(on_terminals, {"dump", file}).err;
    EXPECT_EQ(count(err, "\r["), 32U); // pieces of 64 KiB
    EXPECT_EQ(count(err, " of 2 MiB" + wiped), 32U);
    EXPECT_TRUE(ends_with(err, wiped));
}

TEST(Progress, OfEachFileIsItsOwn)
{
    Folder const folder;
    std::string const file = folder.file("data", std::string(2 * mebibyte, 'x'));
    std::string const err = demo(pipe_and_terminal, {"dump", file, "/no/such/file", file}).err;
    EXPECT_EQ(count(err, " dumped 100% of 2 MiB" + wiped), 2U);
    EXPECT_EQ(count(err, wiped + "hueline-demo: cannot read '/no/such/file': No such file or directory\n\r["), 1U);
}

TEST(Progress, IsWipedBeforeAMessage)
{
    Folder const folder;
    std::string const file = folder.file("data", std::string(2 * mebibyte, 'x'));
    // The dump may write 2 MiB and no more; the signal that would tell is ignored.
    std::string const command = R"(trap '' XFSZ; ulimit -f 4096; exec "$0" dump "$1" > "$1.dump")";
    Outcome const run = shell(pipe_and_terminal, command, {file});
    EXPECT_TRUE(ends_with(run.err, " of 2 MiB" + wiped + cannot_write + "File too large\n")) << readable(run.err);
    EXPECT_EQ(run.status, 1);
}

TEST(Progress, OfAFileThatGrowsStopsAtTheEndOfTheBar)
{
    Folder const folder;
    std::string const file = folder.file("data", std::string(2 * mebibyte, 'x'));
    // The dump goes to the end of the file that is dumped, until it has 16 MiB.
    std::string const command = R"(trap '' XFSZ; ulimit -f 32768; exec "$0" dump "$1" >> "$1")";
    Outcome const run = shell(pipe_and_terminal, command, {file});
    EXPECT_GT(count(run.err, "\r[##############################] dumped 100% of 2 MiB"), 1U) << readable(run.err);
    EXPECT_EQ(count(run.err, std::string(31, '#')), 0U);
}

TEST(Progress, IsWipedBySignals)
{
    forbid_cores();
    Folder const folder;
    std::string const file = folder.sparse_file("data", 64 * mebibyte, 2 * mebibyte);
    for (int const signal : ending_signals) {
        SCOPED_TRACE(signal);
        Outcome const run = demo(pipe_and_terminal, {"dump", file}, {.interrupt = Interrupt{signal, "ff"}});
        EXPECT_EQ(run.signal, signal);
        EXPECT_TRUE(ends_with(run.err, " of 64 MiB\r\x1b[K")) << readable(run.err);
        EXPECT_FALSE(has_sequences(run.out));
        EXPECT_EQ(Screen(run.err).text(0), "");
    }
}

TEST(Progress, IsNotWipedBySignalsOnceItIsGone)
{
    Folder const folder;
    folder.file("data", std::string(2 * mebibyte, 'x'));
    Outcome const run = shell(pipe_and_terminal, open_input + R"(exec "$0" dump "$1/data" - < "$1/input")",
                              {folder.path.string()}, {.interrupt = Interrupt{SIGTERM, "65 66\n"}});
    EXPECT_EQ(run.signal, SIGTERM);
    EXPECT_TRUE(ends_with(run.err, wiped)) << readable(run.err);
}

// Runs the tool with so many bytes of memory for data.
Outcome demo_with_memory(std::size_t bytes, Arguments const& arguments)
{
    std::vector<std::string> command = {"prlimit", "--data=" + std::to_string(bytes), tool};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return run_program(on_pipes, command);
}

TEST(Memory, ThatADumpTakesDoesNotGrowWithTheFile)
{
    if (demo_with_memory(8 * mebibyte, {"--version"}).status != 0) {
        GTEST_SKIP() << "this build needs more memory to start";
    }
    Folder const folder;
    Outcome const run = demo_with_memory(8 * mebibyte, {"dump", folder.file("data", std::string(16 * mebibyte, 'x'))});
    EXPECT_EQ(run.out.size(), 48 * mebibyte);
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
}

TEST(Memory, RunningOutEndsInOneLine)
{
    std::size_t const enough_to_start = 2 * mebibyte;
    if (demo_with_memory(enough_to_start, {"--version"}).status != 0) {
        GTEST_SKIP() << "this build needs more memory to start";
    }
    Arguments arguments(100'000, "/dev/null"); // too many to be noted down
    arguments.front() = "dump";
    Outcome const run = demo_with_memory(enough_to_start, arguments);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, "hueline-demo: out of memory\n");
    EXPECT_EQ(run.status, 1);
}

} // namespace
