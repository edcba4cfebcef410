#include "support/screen.hpp"
#include "support/testing.hpp"

#include <sys/ioctl.h>
#include <termios.h>

namespace hueline::test {

void PrintTo(Color const& c, std::ostream* os)
{
    *os << (c.is_default ? "default" : "set") << " index " << c.index << " rgb " << c.r << ' ' << c.g << ' ' << c.b;
}

void PrintTo(Position const& p, std::ostream* os) { *os << p.row << ", " << p.col; }

} // namespace hueline::test

namespace {

using namespace hueline::test;
using namespace std::chrono_literals;

Sink const every_sink[] = {Sink::terminal, Sink::pipe, Sink::file, Sink::full, Sink::closed};

bool keeps(Sink sink) { return sink != Sink::full && sink != Sink::closed; }

void write_text(int descriptor, std::string const& text)
{
    for (std::size_t done = 0; done < text.size();) {
        ssize_t const n = write(descriptor, text.data() + done, text.size() - done);
        if (n < 0) {
            report(std::strerror(errno));
            return;
        }
        done += static_cast<std::size_t>(n);
    }
}

TEST(RunWith, KeepsTheTwoOutputsApart)
{
    for (Sink const out : every_sink) {
        for (Sink const err : every_sink) {
            SCOPED_TRACE(testing::Message() << static_cast<int>(out) << ' ' << static_cast<int>(err));
            auto const run = run_with({out, err}, [] {
                std::cout << "to out";
                std::cerr << "to err";
            });
            EXPECT_EQ(run.out, keeps(out) ? "to out" : "");
            EXPECT_EQ(run.err, keeps(err) ? "to err" : "");
            EXPECT_EQ(run.status, 0);
            EXPECT_EQ(run.signal, 0);
        }
    }
}

TEST(RunWith, HasATerminalOnlyWhereAskedFor)
{
    for (Sink const out : every_sink) {
        for (Sink const err : every_sink) {
            auto const run = run_with({out, err}, [] {
                report(isatty(0) != 0 ? "in " : "");
                report(isatty(1) != 0 ? "out " : "");
                report(isatty(2) != 0 ? "err" : "");
            });
            std::string const expected =
                std::string(out == Sink::terminal ? "out " : "") + (err == Sink::terminal ? "err" : "");
            EXPECT_EQ(run.report, expected) << static_cast<int>(out) << ' ' << static_cast<int>(err);
        }
    }
}

TEST(RunWith, HasTheKindOfFileAskedFor)
{
    auto const kind_of_output = [] {
        struct stat status = {};
        if (fstat(1, &status) != 0) {
            report(std::strerror(errno));
        } else {
            report(S_ISFIFO(status.st_mode) ? "pipe" : "");
            report(S_ISREG(status.st_mode) ? "file" : "");
            report(S_ISCHR(status.st_mode) ? "device" : "");
        }
    };
    EXPECT_EQ(run_with({.out = Sink::terminal}, kind_of_output).report, "device");
    EXPECT_EQ(run_with({.out = Sink::pipe}, kind_of_output).report, "pipe");
    EXPECT_EQ(run_with({.out = Sink::file}, kind_of_output).report, "file");
    EXPECT_EQ(run_with({.out = Sink::full}, kind_of_output).report, "device");
    EXPECT_EQ(run_with({.out = Sink::closed}, kind_of_output).report, "Bad file descriptor");
}

TEST(RunWith, RefusesWritesToFullAndClosedOutputs)
{
    EXPECT_EQ(run_with({.out = Sink::full}, [] { write_text(1, "x"); }).report, "No space left on device");
    EXPECT_EQ(run_with({.out = Sink::closed}, [] { write_text(1, "x"); }).report, "Bad file descriptor");
    EXPECT_EQ(run_with({.err = Sink::full}, [] { write_text(2, "x"); }).report, "No space left on device");
    EXPECT_EQ(run_with({.err = Sink::closed}, [] { write_text(2, "x"); }).report, "Bad file descriptor");
}

int open_descriptors()
{
    int count = 0;
    for (int descriptor = 0; descriptor < 1024; ++descriptor) {
        count += fcntl(descriptor, F_GETFD) != -1 ? 1 : 0;
    }
    return count;
}

TEST(RunWith, OpensNoOtherDescriptorsThanThoseOfReportAndAwaitOutput)
{
    int const before = open_descriptors();
    auto const run = on_terminal([] { report(std::to_string(open_descriptors())); });
    EXPECT_EQ(run.report, std::to_string(before + 2));
    EXPECT_EQ(open_descriptors(), before);
}

TEST(RunWith, HasTerminalsOf24RowsAnd80Columns)
{
    auto const run = on_terminal([] {
        for (int const descriptor : {1, 2}) {
            winsize size = {};
            ioctl(descriptor, TIOCGWINSZ, &size);
            report(std::to_string(size.ws_row) + "x" + std::to_string(size.ws_col) + " ");
        }
    });
    EXPECT_EQ(run.report, "24x80 24x80 ");
}

TEST(RunWith, HasRawTerminals)
{
    std::string every_byte;
    for (int value = 0; value < 256; ++value) {
        every_byte += static_cast<char>(value);
    }
    auto const run = on_terminal([&] {
        write_text(1, every_byte);
        write_text(2, every_byte);
        for (int const descriptor : {1, 2}) {
            termios settings = {};
            tcgetattr(descriptor, &settings);
            report((settings.c_oflag & OPOST) != 0 ? "cooked output " : "raw output ");
            report((settings.c_lflag & (ECHO | ICANON | ISIG)) != 0 ? "cooked input " : "raw input ");
        }
    });
    EXPECT_EQ(run.out, every_byte);
    EXPECT_EQ(run.err, every_byte);
    EXPECT_EQ(run.report, "raw output raw input raw output raw input ");
}

TEST(RunWith, HasTheOutputTerminalAsControllingTerminal)
{
    auto const group_at_terminal = [](int descriptor) {
        return [descriptor] { report(tcgetpgrp(descriptor) == getpid() ? "controlling" : std::strerror(errno)); };
    };
    EXPECT_EQ(on_terminal(group_at_terminal(1)).report, "controlling");
    EXPECT_EQ(on_terminal(group_at_terminal(2)).report, "Inappropriate ioctl for device");
    EXPECT_EQ(run_with({.out = Sink::pipe}, group_at_terminal(2)).report, "controlling");
}

TEST(RunWith, HasNothingOnStandardInput)
{
    auto const run = on_terminal([] {
        char byte = 0;
        report(std::to_string(read(0, &byte, 1)));
    });
    EXPECT_EQ(run.report, "0");
}

TEST(RunWith, RunsEachBodyInAFreshProcess)
{
    static int count = 0;
    auto const body = [] { report(std::to_string(++count)); };
    EXPECT_EQ(on_terminal(body).report, "1");
    EXPECT_EQ(on_pipe(body).report, "1");
    EXPECT_EQ(count, 0);
}

TEST(RunWith, FlushesStreamsThatAreNotSynchronised)
{
    auto const run = on_pipe([] {
        std::ios_base::sync_with_stdio(false);
        std::cout << "cout";
        std::clog << "clog";
    });
    EXPECT_EQ(run.out, "cout");
    EXPECT_EQ(run.err, "clog");
}

TEST(RunWith, FlushesStdio)
{
    EXPECT_EQ(on_pipe([] { std::printf("%d", 42); }).out, "42");
}

TEST(RunWith, DoesNotRepeatWhatTheParentHasNotFlushed)
{
    auto const run = on_pipe([] {
        std::printf("pending");
        run_with({.out = Sink::pipe}, [] {});
    });
    EXPECT_EQ(run.out, "pending");
}

TEST(RunWith, TakesLargeOutputsAtOnce)
{
    std::string const megabyte(1 << 20, 'm');
    for (Sink const sink : {Sink::terminal, Sink::pipe, Sink::file}) {
        auto const run = run_with({sink, sink}, [&] {
            write_text(1, megabyte);
            write_text(2, megabyte);
            report(megabyte);
            write_text(1, "end");
        });
        EXPECT_TRUE(run.out == megabyte + "end") << run.out.size() << " bytes";
        EXPECT_TRUE(run.err == megabyte) << run.err.size() << " bytes";
        EXPECT_TRUE(run.report == megabyte) << run.report.size() << " bytes";
        EXPECT_EQ(run.status, 0);
    }
}

TEST(RunWith, TellsTheExitStatus)
{
    auto const run = on_terminal([] { _exit(7); });
    EXPECT_EQ(run.status, 7);
    EXPECT_EQ(run.signal, 0);
}

TEST(RunWith, TellsTheSignal)
{
    auto const run = on_terminal([] { raise(SIGKILL); });
    EXPECT_EQ(run.status, -1);
    EXPECT_EQ(run.signal, SIGKILL);
}

TEST(RunWith, HasDefaultSignalHandlingInTheChild)
{
    std::signal(SIGPIPE, SIG_IGN);
    auto const run = on_terminal([] { raise(SIGPIPE); });
    std::signal(SIGPIPE, SIG_DFL);
    EXPECT_EQ(run.signal, SIGPIPE);
}

TEST(RunWith, TellsAnExceptionThatLeavesTheBody)
{
    auto const standard = on_terminal([] { throw std::runtime_error("went wrong"); });
    EXPECT_EQ(standard.status, 99);
    EXPECT_EQ(standard.report, "went wrong");

    auto const text = on_terminal([] { throw "plain text"; });
    EXPECT_EQ(text.status, 99);
    EXPECT_EQ(text.report, "plain text");

    auto const number = on_terminal([] { throw 42; });
    EXPECT_EQ(number.status, 99);
    EXPECT_EQ(number.report, "an exception of unknown type");
}

TEST(AwaitOutput, ReturnsOnceTheBytesHaveArrivedOnceMore)
{
    for (int const descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
        for (Sink const sink : {Sink::terminal, Sink::pipe}) {
            auto const run = run_with({sink, sink}, [descriptor] {
                std::atomic<int> written = 0;
                std::thread writer([&] {
                    for (int i = 0; i < 3; ++i) {
                        std::this_thread::sleep_for(10ms);
                        ++written;
                        write_text(descriptor, "text");
                    }
                });
                for (int i = 1; i <= 3; ++i) {
                    await_output(descriptor, "text");
                    report(written >= i ? "late enough " : "too early ");
                }
                writer.join();
            });
            EXPECT_EQ(run.report, "late enough late enough late enough ");
        }
    }
}

TEST(RunProgram, PassesArgumentsAndInput)
{
    std::vector<std::string> const argv = {"sh", "-c", "echo \"$1\"; cat; echo warning >&2; exit 3", "", "two  words"};
    auto const run = run_program({Sink::pipe, Sink::pipe}, argv, {.input = "given\n"});
    EXPECT_EQ(run.out, "two  words\ngiven\n");
    EXPECT_EQ(run.err, "warning\n");
    EXPECT_EQ(run.status, 3);
}

TEST(RunProgram, HasTheSinks)
{
    std::vector<std::string> const argv = {"sh", "-c", "test -t 1 && echo out >&2; test -t 2 && echo err >&2; exit 0"};
    EXPECT_EQ(run_program({Sink::terminal, Sink::terminal}, argv).err, "out\nerr\n");
    EXPECT_EQ(run_program({Sink::pipe, Sink::terminal}, argv).err, "err\n");
    EXPECT_EQ(run_program({Sink::terminal, Sink::pipe}, argv).err, "out\n");
    EXPECT_EQ(run_program({Sink::closed, Sink::file}, argv).err, "");
}

TEST(RunProgram, ChangesTheEnvironment)
{
    setenv("HUELINE_TEST_GONE", "1", 1);
    setenv("HUELINE_TEST_KEPT", "2", 1);
    auto const run = run_program({}, {"sh", "-c", "echo $HUELINE_TEST_GONE,$HUELINE_TEST_KEPT,$HUELINE_TEST_NEW"},
                                 {.environment = {"HUELINE_TEST_GONE", "HUELINE_TEST_NEW=3"}});
    EXPECT_EQ(run.out, ",2,3\n");
    EXPECT_STREQ(std::getenv("HUELINE_TEST_GONE"), "1");
}

TEST(RunProgram, TellsThatThereIsNoSuchProgram)
{
    auto const run = run_program({}, {"/no/such/program"});
    EXPECT_EQ(run.status, 127);
    EXPECT_EQ(run.report, "cannot run /no/such/program: No such file or directory");
}

TEST(RunProgram, SendsTheSignalOnceTheTextHasAppeared)
{
    std::vector<std::string> const argv = {"sh", "-c",
                                           "trap 'echo caught; exit 5' INT; echo ready; while :; do sleep 0.01; done"};
    for (Sink const out : {Sink::terminal, Sink::pipe}) {
        auto const run = run_program({.out = out}, argv, {.interrupt = Interrupt{SIGINT, "ready"}});
        EXPECT_EQ(run.out, "ready\ncaught\n");
        EXPECT_EQ(run.status, 5);
    }
}

TEST(RunProgram, TellsTheSignalThatWasSent)
{
    std::vector<std::string> const argv = {"sh", "-c", "echo ready; exec sleep 20"};
    auto const run = run_program({}, argv, {.interrupt = Interrupt{SIGTERM, "ready\n"}});
    EXPECT_EQ(run.signal, SIGTERM);
    EXPECT_EQ(run.status, -1);
}

TEST(RunProgram, KillsAProgramThatDoesNotEnd)
{
    std::string const start = "the child did not end; standard output: ";
    pid_t pid = 0;
    for (auto allowed = 200ms; pid == 0; allowed *= 2) { // until the program has come to its first word
        try {
            run_program({}, {"sh", "-c", "echo $$; while :; do sleep 0.01; done"}, {.time_allowed = allowed});
            FAIL();
        } catch (std::runtime_error const& e) {
            std::string const told = e.what();
            ASSERT_EQ(told.substr(0, start.size()), start);
            pid = std::atoi(told.c_str() + start.size());
        }
    }
    EXPECT_EQ(kill(pid, 0), -1);
    EXPECT_EQ(errno, ESRCH);
}

TEST(Readable, NamesControls)
{
    EXPECT_EQ(readable("\x1b[31mred\r\n\tx"), R"(\e[31mred\r\n\tx)");
    EXPECT_EQ(readable(std::string("a\0b\x01\x1f\x7f", 6)), R"(a\x00b\x01\x1f\x7f)");
    EXPECT_EQ(readable(" ~"), " ~");
}

TEST(Readable, LeavesABackslash) { EXPECT_EQ(readable("\\x1b"), "\\x1b"); }

TEST(Readable, LeavesPrintableUtf8)
{
    for (char const* text :
         {"\u00a0", "\u00e9", "\u07ff", "\u0800", "\u20ac", "\ud7ff", "\uffff", "\U00010000", "\U0010ffff"}) {
        EXPECT_EQ(readable(text), text);
    }
}

TEST(Readable, NumbersBytesThatAreNoPrintableUtf8)
{
    EXPECT_EQ(readable("\x80"), R"(\x80)"); // a tail without a head
    EXPECT_EQ(readable("\xc3"), R"(\xc3)"); // a head without a tail
    EXPECT_EQ(readable("\xc3x"), R"(\xc3x)");
    EXPECT_EQ(readable("\xe2\x82"), R"(\xe2\x82)");
    EXPECT_EQ(readable("\xc1\xbf"), R"(\xc1\xbf)"); // longer than need be
    EXPECT_EQ(readable("\xe0\x9f\xbf"), R"(\xe0\x9f\xbf)");
    EXPECT_EQ(readable("\xf0\x8f\xbf\xbf"), R"(\xf0\x8f\xbf\xbf)");
    EXPECT_EQ(readable("\xed\xa0\x80"), R"(\xed\xa0\x80)");         // half of a UTF-16 pair
    EXPECT_EQ(readable("\xf4\x90\x80\x80"), R"(\xf4\x90\x80\x80)"); // past U+10FFFF
    EXPECT_EQ(readable("\xf5\x80\x80\x80"), R"(\xf5\x80\x80\x80)");
    EXPECT_EQ(readable("\xc2\x9b"), R"(\xc2\x9b)"); // CSI as one C1 control
    EXPECT_EQ(readable("\xff"), R"(\xff)");
}

TEST(Screen, ShowsText)
{
    Screen const screen("one  \ntwo\r\nthr\u00e9e");
    EXPECT_EQ(screen.text(0), "one");
    EXPECT_EQ(screen.text(1), "two");
    EXPECT_EQ(screen.text(2), "thr\u00e9e");
    EXPECT_EQ(screen.text(3), "");
    EXPECT_EQ(screen.cell(0, 2).character, "e");
    EXPECT_EQ(screen.cell(2, 3).character, "\u00e9");
    EXPECT_EQ(screen.cell(0, 6).character, "");
}

TEST(Screen, ShowsEachAttributeAlone)
{
    Screen const screen("n\x1b[1mb\x1b[0;3mi\x1b[0;4mu\x1b[0;5mk\x1b[0;7mr\x1b[0;9ms\x1b[0;2mf\x1b[0;8mc\x1b[0mn");
    for (int col = 0; col < 10; ++col) {
        Cell const cell = screen.cell(0, col);
        EXPECT_EQ(cell.bold, col == 1) << col;
        EXPECT_EQ(cell.italic, col == 2) << col;
        EXPECT_EQ(cell.underline, col == 3) << col;
        EXPECT_EQ(cell.blink, col == 4) << col;
        EXPECT_EQ(cell.reverse, col == 5) << col;
        EXPECT_EQ(cell.strike, col == 6) << col;
        EXPECT_EQ(cell.faint, col == 7) << col;
        EXPECT_EQ(cell.concealed, col == 8) << col;
    }
}

std::string faint_columns(Screen const& screen)
{
    std::string columns;
    for (int col = 0; col < 6; ++col) {
        columns += screen.cell(0, col).faint ? 'f' : '-';
    }
    return columns;
}

TEST(Screen, KeepsFaintUntilItIsEnded)
{
    EXPECT_EQ(faint_columns(Screen("\x1b[2ma\x1b[31mb\x1b[22mc\x1b[2;1md\x1b[me\x1b[38;5;2mf")), "ff-f--");
    EXPECT_EQ(faint_columns(Screen("\x1b[38;2;2;2;2ma\x1b[48;5;2mb\x1b[48;5;1;2mc")), "--f---");
    EXPECT_EQ(faint_columns(Screen("\x1b[2m\x1b[s\x1b[0mab\x1b[uc\x1b[0md")), "f-----");
    EXPECT_EQ(faint_columns(Screen("\x1b[2m\0337\x1b[0mab\0338c\x1b[0md")), "f-----");
}

TEST(Screen, TakesASequenceInPieces)
{
    Screen screen("\x1b");
    for (char const* piece : {"[", "2", "m", "a"}) {
        screen.write(piece);
    }
    EXPECT_EQ(screen.text(0), "a");
    EXPECT_TRUE(screen.cell(0, 0).faint);
}

TEST(Screen, HasAWideCharacterInTwoCells)
{
    Screen const screen("\u65e5x");
    EXPECT_EQ(screen.text(0), "\u65e5x");
    EXPECT_EQ(screen.cell(0, 0).character, "\u65e5");
    EXPECT_TRUE(screen.cell(0, 1).is_second);
    EXPECT_FALSE(screen.cell(0, 0).is_second || screen.cell(0, 2).is_second);
}

TEST(Screen, ShowsColors)
{
    Screen const screen("\x1b[31mf\x1b[0;42mb\x1b[0;38;5;200mp\x1b[0;48;2;1;2;3mt\x1b[0mn");
    EXPECT_EQ(screen.cell(0, 0).foreground.index, 1);
    EXPECT_FALSE(screen.cell(0, 0).foreground.is_default);
    EXPECT_TRUE(screen.cell(0, 0).background.is_default);
    EXPECT_EQ(screen.cell(0, 1).background.index, 2);
    EXPECT_TRUE(screen.cell(0, 1).foreground.is_default);
    EXPECT_EQ(screen.cell(0, 2).foreground.index, 200);
    EXPECT_EQ(screen.cell(0, 3).background, (Color{.is_default = false, .index = -1, .r = 1, .g = 2, .b = 3}));
    EXPECT_TRUE(screen.cell(0, 4).foreground.is_default);
    EXPECT_TRUE(screen.cell(0, 4).background.is_default);
    EXPECT_EQ(screen.cell(0, 4).foreground.index, -1);
}

TEST(Screen, ShowsTheCursor)
{
    EXPECT_EQ(Screen("").cursor(), (Position{0, 0}));
    EXPECT_EQ(Screen("ab\ncde").cursor(), (Position{1, 3}));
    EXPECT_EQ(Screen("\x1b[5;7H").cursor(), (Position{4, 6}));
    EXPECT_TRUE(Screen("").cursor_visible());
    EXPECT_FALSE(Screen("\x1b[?25l").cursor_visible());
    EXPECT_TRUE(Screen("\x1b[?25l\x1b[?25h").cursor_visible());
}

TEST(Screen, HasTheSizeAskedFor)
{
    Screen const small("abcdef", 2, 4);
    EXPECT_EQ(small.text(0), "abcd");
    EXPECT_EQ(small.text(1), "ef");
    EXPECT_THROW(small.cell(2, 0), std::out_of_range);
    EXPECT_THROW(small.cell(0, 4), std::out_of_range);
    EXPECT_NO_THROW(Screen("").cell(23, 79));
    EXPECT_THROW(Screen("").cell(24, 0), std::out_of_range);
}

} // namespace
