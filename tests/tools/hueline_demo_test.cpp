#include "model/told.hpp"
#include "support/folder.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"
#include "support/writes.hpp"
#include "demo.hpp"

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <pty.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <termios.h>

namespace {

using namespace hueline::test;
using namespace std::chrono_literals;

std::size_t constexpr mebibyte = 1024 * 1024;

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
Launch const without_waits{.environment = {fast_clock}};

// The first wait does not end.
Launch const with_endless_waits{.environment = {fast_clock, "CLOCK_STANDS_AFTER=0"}};

// An animation goes on for a few steps and then waits for the signal.
Launch interrupted(int signal, std::string const& after)
{
    return {.environment = {fast_clock, "CLOCK_STANDS_AFTER=60"}, .interrupt = Interrupt{signal, after}};
}

// Runs a command of the shell, where "$0" is the tool and "$1" the first of the arguments.
Outcome shell(Sinks sinks, std::string const& command, Arguments const& arguments = {}, Launch const& launch = {})
{
    Arguments argv = {"/bin/sh", "-c", command, tool};
    argv.insert(argv.end(), arguments.begin(), arguments.end());
    return run_program(sinks, argv, in_known_environment(launch));
}

// In a child: becomes the tool.
void become_demo(Arguments arguments)
{
    arguments.insert(arguments.begin(), tool);
    change_environment(sixteen_colors);
    execv(tool.c_str(), pointers_to(arguments).data());
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

// That the tool writes this and nothing else, and ends well.
void expect_output(std::string const& expected, Sinks sinks, Arguments const& arguments, Launch const& launch = {})
{
    SCOPED_TRACE(testing::PrintToString(arguments));
    Outcome const run = demo(sinks, arguments, launch);
    EXPECT_EQ(difference(expected, run.out), "");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
}

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

std::string const list_text = R"(tour          a part at a time, with the code that wrote it
banner        the version and most of the patterns
templates     plain lines and lines in white on green
codes         the SGR codes 0 to 108, on a terminal only
normal-reset  what normal keeps and reset forgets
matrix        eight colours on eight backgrounds
palette       colours 0 to 15 of the palette on each other
greyscale     the 24 greys of the palette
rgb           the colour cube of the palette
status        a status line that fills, for four seconds
progress      a progress meter that climbs, for four seconds
themes        both forms of the themes, role by role
dump          files in hexadecimal: takes all arguments after it
)";

// The first that asks for a text outweighs what follows.
TEST(Options, AskForATextWithoutColor)
{
    std::string const version = "Hueline ver. 0.2.2-r0\n";
    std::pair<Arguments, std::string> const rows[] = {{{"--help"}, help_text},
                                                      {{"-h"}, help_text},
                                                      {{"--version"}, version},
                                                      {{"-V"}, version},
                                                      {{"--list"}, list_text},
                                                      {{"-l"}, list_text},
                                                      {{"--list", "--version"}, list_text},
                                                      {{"--version", "--help"}, version},
                                                      {{"--help", "--version"}, help_text},
                                                      {{"--version", "--no-such-option"}, version},
                                                      {{"no-such-name", "--version"}, version},
                                                      {{"-nV", "matrix"}, version}};
    for (auto const& [arguments, text] : rows) {
        expect_output(text, on_terminals, arguments);
        expect_output(text, on_pipes, arguments);
    }
}

TEST(Misuse, IsNamedWithWhatIsPossible)
{
    std::string const options = ": the options are --help, --version, --list, --no-frills, --color and --canonical";
    std::string const takes_none = " takes no argument" + options;
    std::string const names =
        ": the names are tour, banner, templates, codes, normal-reset, matrix, palette, greyscale, "
        "rgb, status, progress, themes, dump";
    std::string const when = " of option '--color': it is one of auto, always, never, 16, 256, 24bit";
    std::pair<Arguments, std::string> const rows[] = {
        {{"--frills"}, "unknown option '--frills'" + options},
        {{"--frills=3"}, "unknown option '--frills=3'" + options},
        {{"-x"}, "unknown option '-x'" + options},
        {{"-nx"}, "unknown option '-x'" + options},
        {{"--no-frills", "matrix", "--helpful"}, "unknown option '--helpful'" + options},
        {{"--help=x"}, "option '--help'" + takes_none},
        {{"--version=2"}, "option '--version'" + takes_none},
        {{"--list="}, "option '--list'" + takes_none},
        {{"matrix", "--no-frills=off"}, "option '--no-frills'" + takes_none},
        {{"matrx"}, "unknown demonstration 'matrx'" + names},
        {{"matrix2"}, "unknown demonstration 'matrix2'" + names},
        {{""}, "unknown demonstration ''" + names},
        {{"-"}, "unknown demonstration '-'" + names},
        {{"matrix", "rgb", "Matrix"}, "unknown demonstration 'Matrix'" + names}, // nothing is shown of those before it
        {{"--color=maybe"}, "unknown WHEN 'maybe'" + when},
        {{"matrix", "--color="}, "unknown WHEN ''" + when},
        {{"--color=a\x1b[31m"}, R"(unknown WHEN 'a\x1b[31m')" + when}};
    for (auto const& [arguments, message] : rows) {
        Outcome const run = demo(on_pipes, arguments);
        EXPECT_EQ(run.out, "") << message;
        EXPECT_EQ(run.err, "hueline-demo: " + message + "\n");
        EXPECT_EQ(run.status, 2) << message;
    }
}

TEST(Misuse, MessageIsOneLineAndColorsNothing)
{
    Outcome const run = demo(on_pipes, {"a\nb\t\x1b[31mc\x1f \x7f~ä\xff\u009b2J\u202e"});
    EXPECT_EQ(run.err.substr(0, run.err.find(": the")),
              R"(hueline-demo: unknown demonstration 'a\x0ab\x09\x1b[31mc\x1f \x7f~ä\xff\u{9b}2J\u{202e}')");
    EXPECT_EQ(count(run.err, "\n"), 1U);
}

std::string const product = "Kestry Hueline Library (Hueline)\n";

// What the library writes in a program that does this and nothing else.
std::string told_of(Sinks sinks, std::vector<Step> steps, std::vector<std::string> const& operations)
{
    steps.push_back({"colorize", "cout"});
    for (std::string const& operation : operations) {
        steps.push_back({operation, "cout"});
    }
    return told(sinks, steps);
}

// What a demonstration writes to a terminal that has colour, to one that has none, and elsewhere.
struct Texts {
    std::string colored;
    std::string without_frills;
    std::string piped;
};

std::string const reset_bytes = "\x1b[00m\x1b[25h";

struct Demonstration {
    std::string name;
    std::string operation;               // of the library
    std::string end_without_frills = ""; // what has colours of its own is reset all the same
    std::string line_end = "";           // on a terminal

    Texts texts() const
    {
        return {told_of(on_terminals, {}, {operation, "reset"}) + line_end,
                told_of(on_terminals, {{"_setNoFrillsMode", "", {1}}}, {operation}) + end_without_frills + line_end,
                told_of(on_pipes, {}, {operation})};
    }
};

// clang-format off
Demonstration const matrix = {"matrix", "test_pattern_matrix"};
Demonstration const rgb    = {"rgb",    "test_pattern_rgb"};
Demonstration const status = {"status", "test_pattern_status_line",   reset_bytes, "\n"};
Demonstration const banner = {"banner", "build_version",              reset_bytes};
Demonstration const demonstrations[] = {
    matrix, rgb, status, banner,
    {"progress",     "test_pattern_progress_line", reset_bytes, "\n"},
    {"codes",        "test_pattern_supported_m_codes"},
    {"normal-reset", "test_pattern_normal_reset"},
    {"palette",      "test_pattern_256bit"},
    {"greyscale",    "test_pattern_greyscale"},
};
// clang-format on

TEST(Demonstration, IsTheLibrarysTextAndALineThatIsTidy)
{
    for (Demonstration const& each : demonstrations) {
        Texts const texts = each.texts();
        for (Sinks const sinks : {on_pipes, Sinks{Sink::pipe, Sink::terminal}, Sinks{Sink::file, Sink::terminal}}) {
            expect_output(texts.piped, sinks, {each.name}, with_endless_waits);
        }
        expect_output(texts.colored, on_terminals, {each.name}, without_waits);
        expect_output(texts.colored, {Sink::terminal, Sink::pipe}, {each.name}, without_waits);
        for (std::string const option : {"-n", "--no-frills", "--color=never"}) {
            expect_output(texts.without_frills, on_terminals, {option, each.name}, without_waits);
            expect_output(texts.without_frills, on_terminals, {each.name, option}, without_waits);
        }
        expect_default_rendition_behind(texts.colored);
        expect_default_rendition_behind(texts.without_frills);
    }
}

TEST(Demonstration, IsTheBannerUnlessOneIsNamed)
{
    Texts const texts = banner.texts();
    expect_output(texts.colored, on_terminals, {}, without_waits);
    expect_output(texts.without_frills, on_terminals, {"-n"}, without_waits);
    expect_output(texts.piped, on_pipes, {}, with_endless_waits);
    EXPECT_EQ(texts.piped.substr(0, product.size()), product);
}

// Each starts from the default record, in the mode that was asked for.
TEST(Demonstration, FollowsAnotherInTheOrderGiven)
{
    Texts const one = rgb.texts();
    Texts const other = matrix.texts();
    expect_output(one.piped + other.piped + one.piped, on_pipes, {"rgb", "matrix", "rgb"});
    expect_output(told_of(on_terminals, {}, {rgb.operation, "reset", matrix.operation, "reset"}), on_terminals,
                  {"rgb", "matrix"});
    expect_output(status.texts().without_frills + other.without_frills, on_terminals, {"-n", "status", "matrix"},
                  without_waits);
}

TEST(Color, IsAsTheLastOptionSaysAndElseTheEnvironment)
{
    struct {
        std::string Texts::*expected;
        Sinks sinks;
        Arguments arguments;
        std::vector<std::string> variables = {};
    } const rows[] = {{&Texts::without_frills, on_terminals, {"matrix"}, {"NO_COLOR=1"}},
                      {&Texts::without_frills, on_terminals, {"matrix"}, {"FORCE_COLOR=0"}},
                      {&Texts::without_frills, on_terminals, {"matrix"}, {"CLICOLOR=0"}},
                      {&Texts::without_frills, on_terminals, {"matrix"}, {"TERM=dumb"}},
                      {&Texts::without_frills, on_terminals, {"matrix"}, {"TERM"}},
                      {&Texts::colored, on_terminals, {"--color", "matrix"}, {"NO_COLOR=1", "TERM=dumb"}},
                      {&Texts::colored, on_terminals, {"matrix", "--color"}, {"NO_COLOR=1", "TERM=dumb"}},
                      {&Texts::colored, on_terminals, {"--color=always", "matrix"}, {"NO_COLOR=1", "TERM=dumb"}},
                      {&Texts::colored, on_terminals, {"--color=16", "matrix"}, {"NO_COLOR=1", "TERM=dumb"}},
                      {&Texts::colored, on_terminals, {"--color=256", "matrix"}, {"NO_COLOR=1", "TERM=dumb"}},
                      {&Texts::colored, on_terminals, {"--color=24bit", "matrix"}, {"NO_COLOR=1", "TERM=dumb"}},
                      {&Texts::colored, on_terminals, {"--color=never", "--color=auto", "matrix"}},
                      {&Texts::without_frills, on_terminals, {"--color", "--color=never", "matrix"}},
                      {&Texts::without_frills, on_terminals, {"--no-frills", "--color", "matrix"}},
                      // The gate refuses a pipe whatever was said.
                      {&Texts::piped, on_pipes, {"--color=always", "matrix"}},
                      {&Texts::piped, on_pipes, {"--color=never", "matrix"}},
                      {&Texts::piped, {Sink::pipe, Sink::terminal}, {"--color=always", "matrix"}},
                      {&Texts::piped, {Sink::pipe, Sink::terminal}, {"--color=never", "matrix"}},
                      {&Texts::piped, on_pipes, {"matrix"}, {"FORCE_COLOR=3"}}};
    Texts const texts = matrix.texts();
    for (auto const& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.variables));
        expect_output(texts.*row.expected, row.sinks, row.arguments, {.environment = row.variables});
    }
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
    expect_output(plain_templates, on_pipes, {"templates"});
    // clang-format off
    std::string const colored = "\x1b[00m\x1b[1m\x1b[37m" "\x1b[00m\x1b[1m\x1b[37m\x1b[42m"
                                 " will only display in color if colorize has been called \n"
                                 " and this works on both Windows and Linux \n"
                                 "\x1b[00m\x1b[1m\x1b[37m\x1b[42m" "\x1b[00m\x1b[1m\x1b[37m\x1b[42m"
                                 " will display (in Linux) color if colorize \n"
                                 " has been called and this works on Linux \n"
                                 "\x1b[00m\x1b[25h";
    // clang-format on
    expect_output(plain_templates + colored, on_terminals, {"templates"});
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

std::string without_sequences(std::string text)
{
    for (std::size_t at = 0; (at = text.find('\x1b', at)) != text.npos;) {
        text.erase(at, text.find_first_of("mh", at) + 1 - at);
    }
    return text;
}

TEST(Themes, AreATableOfRolesAndTwoFormsInTheirColors)
{
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
    expect_output(expected, on_terminals, {"themes"});
    expect_default_rendition_behind(expected);
    std::string const plain = without_sequences(expected);
    expect_output(plain, on_pipes, {"themes"});
    expect_output(plain, on_terminals, {"-n", "themes"});
    expect_output(plain, on_terminals, {"--color=never", "themes"});
    expect_output(plain, on_pipes, {"--color=always", "--no-frills", "themes"});

    // The string forms do not ask what they are written to.
    std::string const out = readable(demo(on_pipes, {"--color=always", "themes"}).out);
    EXPECT_NE(out.find(R"(\napp_title                     \e[32mKestry Hueline\e[0m      Kestry Hueline\n)"), out.npos);
}

std::string const cannot_write = "hueline-demo: cannot write to standard output: ";

TEST(FailedWrite, EndsTheToolAtOnceInOneLineWithTheReason)
{
    for (Arguments const& arguments :
         {Arguments{}, Arguments{"--help"}, Arguments{"--version"}, Arguments{"--list"}, Arguments{"banner"},
          Arguments{"templates"}, Arguments{"normal-reset"}, Arguments{"matrix"}, Arguments{"palette"},
          Arguments{"greyscale"}, Arguments{"rgb"}, Arguments{"status"}, Arguments{"progress"}, Arguments{"themes"},
          Arguments{"tour"}, Arguments{"-n", "matrix", "rgb"}, Arguments{"dump", "/dev/zero"}, // has no end
          Arguments{"-C", "dump", tool}}) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        for (Sink const err : {Sink::terminal, Sink::pipe}) {
            for (Sink const out : {Sink::full, Sink::closed}) {
                Outcome const run = demo({out, err}, arguments);
                std::string const reason = out == Sink::full ? "No space left on device\n" : "Bad file descriptor\n";
                EXPECT_EQ(run.err, cannot_write + reason);
                EXPECT_EQ(run.status, 1);
            }
        }
    }
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

TEST(ReaderThatGoesAway, EndsTheToolQuietlyAlsoWhereTheSignalWasIgnored)
{
    for (std::string const before : {"", R"(trap "" PIPE; )"}) {
        Outcome const run = shell(on_pipes, before + R"({ "$0" dump /dev/zero; echo "status $?" >&2; } | head -n 1)");
        EXPECT_EQ(run.out, "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00\n");
        EXPECT_EQ(run.err, "status " + std::to_string(128 + SIGPIPE) + "\n");
    }
    Outcome const run = shell(on_pipes, R"("$0" | head -n 1)");
    EXPECT_EQ(run.out, product);
    EXPECT_EQ(run.err, "");
}

std::string const tidy_end = "\x1b[0m\x1b[?25h\n";

TEST(Signal, LeavesTheTerminalTidy)
{
    forbid_cores();
    std::pair<Arguments, std::string> const rows[] = {
        {{"status"}, "#\x1b[40m\x1b[36m#\x1b[40m\x1b[93m"}, {{"progress"}, "4%"}, {{}, "\x1b[93m"}};
    for (auto const& [arguments, third_step] : rows) {
        for (int const signal : ending_signals) {
            SCOPED_TRACE(third_step + " " + std::to_string(signal));
            Outcome const run = demo({Sink::terminal, Sink::pipe}, arguments, interrupted(signal, third_step));
            EXPECT_EQ(run.signal, signal);
            EXPECT_TRUE(run.out.ends_with(tidy_end)) << readable(run.out);
            EXPECT_EQ(count(run.out, tidy_end), 1U);
            EXPECT_EQ(run.err, "");
            expect_default_rendition_behind(run.out);
        }
    }
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

TEST(Signal, ThatWasIgnoredAtStartStaysIgnoredAndLeavesTheOthersAlone)
{
    Sinks const sinks = {Sink::terminal, Sink::pipe};
    for (auto const& [signal, name] : {std::pair(SIGINT, "INT"), std::pair(SIGHUP, "HUP")}) {
        std::string const command = std::string("trap '' ") + name + R"(; exec "$0" status)";
        Outcome const run = shell(sinks, command, {}, {.interrupt = Interrupt{signal, "\x1b[93m"}});
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(difference(status.texts().colored, run.out), "");
    }
    std::string const command = R"(trap '' HUP; exec env LD_PRELOAD="$1" CLOCK_STANDS_AFTER=60 "$0" status)";
    Outcome const run = shell(sinks, command, {FAST_CLOCK}, {.interrupt = Interrupt{SIGTERM, "\x1b[93m"}});
    EXPECT_EQ(run.signal, SIGTERM);
    EXPECT_TRUE(run.out.ends_with(tidy_end)) << readable(run.out);
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
    std::string const first = folder.file("first", "0123456789abcdef");
    std::string const second = folder.file("second", "0123456789abcdefg");
    std::string const third = folder.file("third", std::string_view("\x00\xff\n\x1b[\x7f\x80", 7));
    std::string const empty = folder.file("empty", "");
    std::string const line = "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66\n";
    std::pair<Arguments, std::string> const rows[] = {
        {{"dump", empty}, ""},
        {{"dump", first}, line},
        {{"dump", second}, line + "67\n"},
        {{"dump", third}, "00 ff 0a 1b 5b 7f 80\n"},
        {{"dump"}, "69 6e\n"},
        {{"dump", "-"}, "69 6e\n"},
        {{"-n", "dump"}, "69 6e\n"},
        {{"dump", second, "-", empty, first}, line + "67\n69 6e\n" + line},
        {{"templates", "dump", first}, plain_templates + line}};
    for (auto const& [arguments, dump] : rows) {
        expect_output(dump, on_pipes, arguments, {.input = "in"});
    }
    expect_output(line, on_terminals, {"dump", first}); // plain there too
}

TEST(Dump, OfAnySizeIsWhole)
{
    Folder const folder;
    for (std::size_t const size : {15U, 19U, 20U, 31U, 32U, 255U, 4095U, 4096U, 4097U, 65535U, 65536U, 65537U, 65552U,
                                   131071U, 131072U, 131073U, 1048575U}) {
        std::string const bytes = some_bytes(size);
        expect_output(hex_lines(bytes), on_pipes, {"dump", folder.file("data", bytes)});
    }
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
    std::pair<std::string, std::string> const rows[] = {
        {"", "30 31 32 33 34 35 36 37 38 39 61 62 63 64 65 66\n"},
        {"-C", "00000000  30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66  |0123456789abcdef|\n"}};
    for (auto const& [option, line] : rows) {
        Folder const folder;
        Outcome const run = shell(on_pipes, open_input + R"(exec "$0" )" + option + R"( dump < "$1/input")",
                                  {folder.path.string()}, {.interrupt = Interrupt{SIGTERM, line}});
        EXPECT_EQ(run.out, line);
        EXPECT_EQ(run.signal, SIGTERM);
    }
}

TEST(Dump, NamesWhatCannotBeReadWithTheReasonAndGoesOn)
{
    Folder const folder;
    std::string const data = folder.file("data", "abc");
    std::string const locked = folder.file("locked", "abc");
    std::filesystem::permissions(locked, std::filesystem::perms::none);
    std::filesystem::create_symlink("loop", folder.path / "loop");
    std::string const loop = (folder.path / "loop").string();

    std::vector<std::array<std::string, 3>> rows = {
        {"matrix", "matrix", "No such file or directory"}, // all after dump are files
        {"", "", "No such file or directory"},
        {"/no/such\n\u009b2Jfile", R"(/no/such\x0a\u{9b}2Jfile)", "No such file or directory"},
        {folder.path.string(), folder.path.string(), "Is a directory"},
        {data + "/x", data + "/x", "Not a directory"},
        {loop, loop, "Too many levels of symbolic links"}};
    if (geteuid() != 0) { // who may read everything
        rows.push_back({locked, locked, "Permission denied"});
    }
    Arguments arguments = {"dump"};
    std::string dumps;
    std::string complaints;
    for (auto const& [name, shown, reason] : rows) {
        arguments.insert(arguments.end(), {name, data});
        dumps += "61 62 63\n";
        complaints += "hueline-demo: cannot read '" + shown + "': " + reason + "\n";
    }
    Outcome const run = demo(on_pipes, arguments);
    EXPECT_EQ(run.out, dumps);
    EXPECT_EQ(run.err, complaints);
    EXPECT_EQ(run.status, 1);
    arguments.insert(arguments.begin(), "-C");
    Outcome const canonical = demo(on_pipes, arguments);
    EXPECT_EQ(canonical.err, complaints);
    EXPECT_EQ(canonical.status, 1);
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

TEST(CanonicalDump, IsThatOfHexdumpAnewForEachFile)
{
    Folder const folder;
    std::string const file = folder.file("data", "0123456789abcdef0123456789abcdef0123456789abcdefg\n");
    std::string const rows = "00000000  30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66  |0123456789abcdef|\n"
                             "*\n"
                             "00000030  67 0a                                             |g.|\n"
                             "00000032\n";
    expect_output(rows, on_pipes, {"dump", "--canonical", file});
    expect_output(rows + rows, on_pipes, {"-C", "dump", file, "-", file}, {.input = ""});
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

std::string const wiped = "\r\x1b[0K";
Sinks const pipe_and_terminal = {Sink::pipe, Sink::terminal};

class Progress : public testing::Test {
protected:
    Folder const folder;
    std::string const small = folder.file("small", std::string(mebibyte, 'x'));
    std::string const barely_large = folder.file("barely", std::string(mebibyte + 1, 'x'));
    std::string const large = folder.file("large", std::string(2 * mebibyte, 'x'));
};

TEST_F(Progress, OfALargeFileIsABarThatIsWipedAtTheEnd)
{
    std::string const bytes = some_bytes(4 * mebibyte);
    std::string const data = folder.file("data", bytes);
    Outcome const run = demo(pipe_and_terminal, {"dump", data});
    EXPECT_EQ(readable(run.err), R"(\r[..............................] dumped 1% of 4 MiB)"
                                 R"(\r[#######/......................] dumped 25% of 4 MiB)"
                                 R"(\r[###############-..............] dumped 50% of 4 MiB)"
                                 R"(\r[######################\.......] dumped 75% of 4 MiB)"
                                 R"(\r[##############################] dumped 100% of 4 MiB)"
                                 R"(\r\e[0K)");
    EXPECT_EQ(difference(hex_lines(bytes), run.out), "");
    EXPECT_EQ(run.status, 0);

    Outcome const canonical = demo(pipe_and_terminal, {"-C", "dump", data});
    EXPECT_NE(readable(canonical.err).find("dumped 50% of 4 MiB"), std::string::npos) << readable(canonical.err);
    EXPECT_EQ(canonical.out.size(), 4 * mebibyte / 16 * 79 + 9);
}

TEST_F(Progress, OfALargePipeIsASpinner)
{
    std::string const bytes = some_bytes(3 * mebibyte + 5);
    Outcome const run = shell(pipe_and_terminal, R"(cat "$1" | "$0" dump)", {folder.file("data", bytes)});
    EXPECT_EQ(readable(run.err), R"(\rdumped 1 MiB /\rdumped 2 MiB -\rdumped 3 MiB \\r\e[0K)");
    EXPECT_EQ(difference(hex_lines(bytes), run.out), "");
    EXPECT_EQ(shell(pipe_and_terminal, R"(cat "$1" | "$0" dump)", {small}).err, "");
}

TEST_F(Progress, IsShownForMoreThanAMebibyteOnATerminalThatHasColor)
{
    struct {
        bool is_shown;
        Sinks sinks;
        Arguments arguments;
        std::vector<std::string> variables = {};
    } const rows[] = {{true, pipe_and_terminal, {"dump", barely_large}},
                      {false, pipe_and_terminal, {"dump", small}},
                      {false, on_pipes, {"dump", large}},
                      {false, {Sink::pipe, Sink::file}, {"dump", large}},
                      {false, {Sink::terminal, Sink::pipe}, {"dump", large}},
                      {false, {Sink::terminal, Sink::file}, {"dump", large}},
                      {false, pipe_and_terminal, {"--no-frills", "dump", large}},
                      {false, pipe_and_terminal, {"--color=never", "dump", large}},
                      {false, pipe_and_terminal, {"dump", large}, {"NO_COLOR=1"}},
                      {false, pipe_and_terminal, {"dump", large}, {"CLICOLOR=0"}},
                      {false, pipe_and_terminal, {"dump", large}, {"TERM=dumb"}},
                      {true, pipe_and_terminal, {"--color", "dump", large}, {"TERM=dumb"}},
                      {false, on_pipes, {"--color=always", "dump", large}}};
    for (auto const& row : rows) {
        std::string const err = demo(row.sinks, row.arguments, {.environment = row.variables}).err;
        EXPECT_EQ(err.ends_with(wiped), row.is_shown) << testing::PrintToString(row.arguments);
        EXPECT_EQ(err.empty(), !row.is_shown) << readable(err) << testing::PrintToString(row.variables);
    }
}

TEST_F(Progress, CountsWhatIsLeftOfStandardInput)
{
    auto const after_mebibytes = [&](std::string const& skipped) {
        return shell(pipe_and_terminal,
                     "{ dd bs=1M count=" + skipped + R"( of=/dev/null 2>&1; exec "$0" dump; } < "$1" | tail -n 1)",
                     {folder.file("data", std::string(5 * mebibyte, 'x'))})
            .err;
    };
    EXPECT_EQ(count(after_mebibytes("3"), "] dumped 100% of 2 MiB\r"), 1U);
    EXPECT_EQ(after_mebibytes("4"), "");
}

TEST_F(Progress, StandsBelowTheDumpOnOneTerminal)
{
    // Both are terminals here, so the line has to go before each piece of the dump.
    std::string const err = demo(on_terminals, {"dump", large}).err;
    EXPECT_EQ(count(err, "\r["), 32U); // pieces of 64 KiB
    EXPECT_EQ(count(err, " of 2 MiB" + wiped), 32U);
    EXPECT_TRUE(err.ends_with(wiped));
}

TEST_F(Progress, OfEachFileIsItsOwn)
{
    std::string const err = demo(pipe_and_terminal, {"dump", large, "/no/such/file", large}).err;
    EXPECT_EQ(count(err, " dumped 100% of 2 MiB" + wiped), 2U);
    EXPECT_EQ(count(err, wiped + "hueline-demo: cannot read '/no/such/file': No such file or directory\n\r["), 1U);
}

TEST_F(Progress, IsWipedBeforeAMessage)
{
    // The dump may write 2 MiB and no more; the signal that would tell is ignored.
    std::string const command = R"(trap '' XFSZ; ulimit -f 4096; exec "$0" dump "$1" > "$1.dump")";
    Outcome const run = shell(pipe_and_terminal, command, {large});
    EXPECT_TRUE(run.err.ends_with(" of 2 MiB" + wiped + cannot_write + "File too large\n")) << readable(run.err);
    EXPECT_EQ(run.status, 1);
}

TEST_F(Progress, OfAFileThatGrowsStopsAtTheEndOfTheBar)
{
    // The dump goes to the end of the file that is dumped, until it has 16 MiB.
    std::string const command = R"(trap '' XFSZ; ulimit -f 32768; exec "$0" dump "$1" >> "$1")";
    Outcome const run = shell(pipe_and_terminal, command, {large});
    EXPECT_GT(count(run.err, "\r[##############################] dumped 100% of 2 MiB"), 1U) << readable(run.err);
    EXPECT_EQ(count(run.err, std::string(31, '#')), 0U);
}

TEST_F(Progress, IsWipedBySignals)
{
    forbid_cores();
    std::string const file = folder.sparse_file("data", 64 * mebibyte, 2 * mebibyte);
    for (int const signal : ending_signals) {
        SCOPED_TRACE(signal);
        Outcome const run = demo(pipe_and_terminal, {"dump", file}, {.interrupt = Interrupt{signal, "ff"}});
        EXPECT_EQ(run.signal, signal);
        EXPECT_TRUE(run.err.ends_with(" of 64 MiB\r\x1b[K")) << readable(run.err);
        EXPECT_FALSE(has_sequences(run.out));
        EXPECT_EQ(Screen(run.err).text(0), "");
    }
}

TEST_F(Progress, IsNotWipedBySignalsOnceItIsGone)
{
    Outcome const run = shell(pipe_and_terminal, open_input + R"(exec "$0" dump "$1/large" - < "$1/input")",
                              {folder.path.string()}, {.interrupt = Interrupt{SIGTERM, "65 66\n"}});
    EXPECT_EQ(run.signal, SIGTERM);
    EXPECT_TRUE(run.err.ends_with(wiped)) << readable(run.err);
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
