#include "examples/files.hpp"
#include "support/process.hpp"
#include "support/readable.hpp"
#include "support/screen.hpp"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gtest/gtest.h>

namespace {

using namespace hueline::test;
using Clock = std::chrono::steady_clock;

Sinks const on_pipes = {Sink::pipe, Sink::pipe};
Sinks const on_terminals = {Sink::terminal, Sink::terminal};

std::string const tidy = R"(\r\e[K\e[0m\e[?25h)"; // what the terminal is left with

// Each test has a folder with a source of a mebibyte, which is sixteen buffers of copy.
class Copy : public testing::Test {
protected:
    Copy()
    {
        std::string name = (std::filesystem::temp_directory_path() / "hueline-copy-XXXXXX").string();
        folder = ::mkdtemp(name.data());
        write(source, std::string(1024 * 1024, 'x'));
    }
    ~Copy() override { std::filesystem::remove_all(folder); }

    std::filesystem::path path(std::string const& name) const { return folder / name; }

    void write(std::string const& name, std::string const& contents) const
    {
        std::ofstream(path(name), std::ios_base::binary) << contents;
    }

    std::string read(std::string const& name) const { return contents_of(path(name).string()); }

    Outcome copy(Sinks sinks, std::string const& from, std::string const& to,
                 std::vector<std::string> const& environment = sixteen_colours) const
    {
        return run_program(sinks, {EXAMPLE, path(from), path(to)}, {.environment = environment});
    }

    // Runs a shell command in which "$0" is the program, "$1" the source and "$2" the target.
    Outcome shell(Sinks sinks, std::string const& command, Launch launch = {}) const
    {
        launch.environment = sixteen_colours;
        return run_program(sinks, {"/bin/sh", "-c", command, EXAMPLE, path(source), path(target)}, launch);
    }

    std::string const source = "source";
    std::string const target = "target";

private:
    std::filesystem::path folder;
};

// A target that takes 64 KiB, as pipes do, and then keeps the program waiting.
class FullPipe {
public:
    explicit FullPipe(std::filesystem::path const& name)
    {
        ::mkfifo(name.c_str(), 0600);
        descriptor = ::open(name.c_str(), O_RDWR | O_CLOEXEC);
    }
    ~FullPipe() { ::close(descriptor); }
    FullPipe(FullPipe const&) = delete;
    FullPipe& operator=(FullPipe const&) = delete;

private:
    int descriptor;
};

// Copied for half a second at least, if the shell runs this first: a target whose reader takes a hundred
// times 64 KiB, with pauses, and then the rest.
std::string const eight_mebibytes(8 * 1024 * 1024, 'x');
std::string const slow_reader = "mkfifo \"$2\"; (for i in $(seq 100); do "
                                "dd bs=65536 count=1; sleep 0.005; done; cat) <\"$2\" >/dev/null 2>&1 & ";

std::size_t count(std::string const& text, std::string const& part)
{
    std::size_t found = 0;
    for (std::size_t place = text.find(part); place != text.npos; place = text.find(part, place + part.size())) {
        ++found;
    }
    return found;
}

TEST_F(Copy, CopiesFilesOfAnySize)
{
    struct Size {
        std::size_t bytes;
        std::string progress;
    };
    for (auto const& [size, progress] : {Size{0, ""},
                                         {1, "copied 100%\n"},
                                         {65535, "copied 100%\n"},
                                         {65536, "copied 100%\n"},
                                         {65537, "copied 90%\ncopied 100%\n"}}) {
        SCOPED_TRACE(size);
        std::string contents;
        for (std::size_t i = 0; i < size; ++i) {
            contents += static_cast<char>(i * 31 >> 3);
        }
        write("any", contents);
        Outcome const run = copy(on_pipes, "any", target);
        EXPECT_EQ(read(target), contents);
        EXPECT_EQ(run.err, progress);
        EXPECT_EQ(run.status, 0);
    }
}

TEST_F(Copy, WritesALineForEachTenthIntoAPipeOrAFile)
{
    for (Sink const sink : {Sink::pipe, Sink::file}) {
        Outcome const run = copy({Sink::terminal, sink}, source, target);
        EXPECT_EQ(run.err, contents_of("copy.expected"));
        EXPECT_EQ(run.out, "");
    }
}

TEST_F(Copy, WritesLinesToADumbTerminal)
{
    Outcome const run = copy(on_terminals, source, target, {"TERM=dumb"});
    EXPECT_EQ(run.err, contents_of("copy.expected"));
}

TEST_F(Copy, ShowsAStatusLineOnATerminalAndWipesItInTheEnd)
{
    Outcome const run = copy(on_terminals, source, target);
    std::string const text = readable(run.err);
    // The first frame, after one buffer of sixteen: 6 % and 4 of 72 cells.
    std::string const first = R"(\e[?25l\r\e[32m[####/)" + std::string(67, '.') + R"(]\e[0m 6%\e[0K)";
    EXPECT_EQ(text.substr(0, first.size()), first);
    EXPECT_EQ(text.substr(text.size() - tidy.size()), tidy);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 0);

    Screen const screen{run.err};
    EXPECT_EQ(screen.text(0), "");
    EXPECT_EQ(screen.cursor(), (Position{0, 0}));
    EXPECT_TRUE(screen.cursor_visible());
}

TEST_F(Copy, HasNoColourWithNoColor)
{
    Outcome const run = copy(on_terminals, source, target, {"NO_COLOR=1", "TERM=xterm"});
    std::string const first = R"(\e[?25l\r[####/)" + std::string(67, '.') + R"(] 6%\e[0K)";
    EXPECT_EQ(readable(run.err).substr(0, first.size()), first);
}

TEST_F(Copy, FitsTheWidthOfTheTerminal)
{
    struct Fit {
        int columns;
        std::string line;
    };
    for (Fit const& fit : {Fit{40, "[##/.............................] 6%"}, {9, "[.] 6%"}, {8, " 6%"}, {6, " 6%"}}) {
        SCOPED_TRACE(fit.columns);
        FullPipe const pipe(path(target)); // the program waits with its first frame in sight
        std::string const command = "stty cols " + std::to_string(fit.columns) + " <&1; exec \"$0\" \"$1\" \"$2\" 2>&1";
        Outcome const run = shell(on_terminals, command, {.interrupt = Interrupt{SIGKILL, "%\x1b[0K"}});
        Screen const screen{run.out, 24, fit.columns};
        EXPECT_EQ(screen.text(0), fit.line);
        EXPECT_EQ(screen.text(1), "");
        EXPECT_FALSE(screen.cursor_visible());
        std::filesystem::remove(path(target));
    }
}

TEST_F(Copy, TakesATerminalThatDoesNotKnowItsWidthForOneOf80Columns)
{
    Outcome const run = shell(on_terminals, "stty cols 0 rows 0 <&2; exec \"$0\" \"$1\" \"$2\"");
    EXPECT_NE(run.err.find("[####/" + std::string(67, '.') + "]"), std::string::npos);
}

TEST_F(Copy, DrawsAtMostTwentyFramesASecond)
{
    write(source, eight_mebibytes); // so that there is a reason to draw every few milliseconds
    Clock::time_point const start = Clock::now();
    Outcome const run = shell(on_terminals, slow_reader + "exec \"$0\" \"$1\" \"$2\"");
    auto const milliseconds = std::chrono::ceil<std::chrono::milliseconds>(Clock::now() - start).count();
    std::size_t const frames = count(run.err, "%\x1b[0K");
    EXPECT_LE(frames, static_cast<std::size_t>(milliseconds / 50 + 1));
    EXPECT_GE(frames, 3U); // it moves, even on a machine that is busy
    EXPECT_EQ(run.status, 0);
}

TEST_F(Copy, LeavesTheTerminalTidyWhenASignalEndsIt)
{
    for (int const signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        SCOPED_TRACE(signal);
        FullPipe const pipe(path(target));
        Outcome const run = shell(on_terminals, "ulimit -c 0; exec \"$0\" \"$1\" \"$2\" 2>&1",
                                  {.interrupt = Interrupt{signal, "%\x1b[0K"}});
        EXPECT_EQ(run.signal, signal);
        std::string const text = readable(run.out);
        EXPECT_EQ(text.substr(text.size() - tidy.size()), tidy);
        Screen const screen{run.out};
        EXPECT_EQ(screen.text(0), "");
        EXPECT_TRUE(screen.cursor_visible());
        std::filesystem::remove(path(target));
    }
}

TEST_F(Copy, LeavesTheTerminalTidyWhenItIsStopped)
{
    // A process without job control does not stop, and goes on after the handler.
    write(source, eight_mebibytes);
    Outcome const run = shell(on_terminals, slow_reader + "exec \"$0\" \"$1\" \"$2\" 2>&1",
                              {.interrupt = Interrupt{SIGTSTP, "%\x1b[0K", 2}});
    EXPECT_EQ(run.status, 0);
    std::string const text = readable(run.out);
    EXPECT_EQ(count(text, tidy), 3U); // after both, and at the end
    EXPECT_EQ(count(text, tidy + R"(\e[?25l)"), 2U);
}

TEST_F(Copy, KeepsIgnoringASignalThatWasIgnored)
{
    write(source, eight_mebibytes);
    Outcome const run = shell(on_terminals, slow_reader + "trap '' INT; exec \"$0\" \"$1\" \"$2\" 2>&1",
                              {.interrupt = Interrupt{SIGINT, "%\x1b[0K"}});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.signal, 0);
}

TEST_F(Copy, CopiesASourceWithoutASizeInSilence)
{
    Outcome const run = shell(on_pipes, "cat \"$1\" | \"$0\" /dev/stdin \"$2\"");
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(read(target), read(source));
}

TEST_F(Copy, RefusesToCopyAFileOntoItself)
{
    Outcome const run = copy(on_pipes, source, source);
    EXPECT_EQ(run.err, "copy: source and target are the same file\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(read(source).size(), 1024U * 1024U);
}

TEST_F(Copy, SaysWhatItCannotDo)
{
    EXPECT_EQ(copy(on_pipes, "nothing", target).err, "copy: cannot open the source\n");
    EXPECT_EQ(copy(on_pipes, source, "no/folder").err, "copy: cannot open the target\n");
    EXPECT_EQ(copy(on_pipes, ".", target).err, "copy: cannot read the source\n");
    Outcome const full = run_program(on_pipes, {EXAMPLE, path(source), "/dev/full"});
    EXPECT_EQ(full.err, "copy: cannot write the target\n");
    EXPECT_EQ(full.status, 1);
    Outcome const misused = run_program(on_pipes, {EXAMPLE, path(source)});
    EXPECT_EQ(misused.err, "usage: copy SOURCE TARGET\n");
    EXPECT_EQ(misused.status, 2);
}

} // namespace
