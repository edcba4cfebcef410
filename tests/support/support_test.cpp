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

// Returns "all", or why it could not be written.
std::string write_all(int descriptor, std::string const& text)
{
    for (std::size_t done = 0; done < text.size();) {
        ssize_t const n = write(descriptor, text.data() + done, text.size() - done);
        if (n < 0) {
            return std::strerror(errno);
        }
        done += static_cast<std::size_t>(n);
    }
    return "all";
}

std::string kind_of(int descriptor)
{
    struct stat status = {};
    if (isatty(descriptor) != 0 || fstat(descriptor, &status) != 0) {
        return isatty(descriptor) != 0 ? "terminal" : "none";
    }
    return S_ISFIFO(status.st_mode) ? "pipe" : S_ISREG(status.st_mode) ? "file" : "device";
}

TEST(RunWith, KeepsOutputsOfEachKindApart)
{
    struct {
        Sink sink;
        std::string kind;
        std::string comes_to;
    } const kinds[] = {{Sink::terminal, "terminal", "all"},
                       {Sink::pipe, "pipe", "all"},
                       {Sink::file, "file", "all"},
                       {Sink::full, "device", "No space left on device"},
                       {Sink::closed, "none", "Bad file descriptor"}};
    for (auto const& out : kinds) {
        for (auto const& err : kinds) {
            auto const run = run_with({out.sink, err.sink}, [] {
                report(kind_of(0) + ' ' + kind_of(1) + ' ' + kind_of(2) + ", ");
                report(write_all(1, "to out") + ", " + write_all(2, "to err"));
            });
            EXPECT_EQ(run.report, "file " + out.kind + ' ' + err.kind + ", " + out.comes_to + ", " + err.comes_to);
            EXPECT_EQ(run.out, out.comes_to == "all" ? "to out" : "");
            EXPECT_EQ(run.err, err.comes_to == "all" ? "to err" : "");
            EXPECT_EQ(run.status, 0);
            EXPECT_EQ(run.signal, 0);
        }
    }
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
        write_all(1, every_byte);
        write_all(2, every_byte);
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
            write_all(1, megabyte);
            write_all(2, megabyte);
            report(megabyte);
            write_all(1, "end");
        });
        EXPECT_TRUE(run.out == megabyte + "end") << run.out.size() << " bytes";
        EXPECT_TRUE(run.err == megabyte) << run.err.size() << " bytes";
        EXPECT_TRUE(run.report == megabyte) << run.report.size() << " bytes";
        EXPECT_EQ(run.status, 0);
    }
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
    EXPECT_EQ(on_terminal([] { throw std::runtime_error("went wrong"); }).report, "went wrong");
    EXPECT_EQ(on_terminal([] { throw "plain text"; }).report, "plain text");
    auto const number = on_terminal([] { throw 42; });
    EXPECT_EQ(number.report, "an exception of unknown type");
    EXPECT_EQ(number.status, 99);
}

TEST(AwaitOutput, ReturnsOnceTheBytesHaveArrivedOnceMore)
{
    for (int const descriptor : {STDOUT_FILENO, STDERR_FILENO}) {
        for (Sink const sink : {Sink::terminal, Sink::pipe}) {
            auto const run = run_with({sink, sink}, [descriptor] {
                std::atomic<int> count = 0;
                std::thread writer([&] {
                    for (int i = 0; i < 3; ++i) {
                        std::this_thread::sleep_for(10ms);
                        ++count;
                        write_all(descriptor, "text");
                    }
                });
                for (int i = 1; i <= 3; ++i) {
                    await_output(descriptor, "text");
                    report(count >= i ? "late enough " : "too early ");
                }
                writer.join();
            });
            EXPECT_EQ(run.report, "late enough late enough late enough ");
        }
    }
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
