#include "examples/files.hpp"
#include "support/folder.hpp"
#include "support/screen.hpp"

namespace {

using namespace hueline::test;

// Each test has a folder with a source of a mebibyte, which is sixteen buffers of copy.
class Copy : public testing::Test {
protected:
    Copy() { write(source, std::string(1024 * 1024, 'x')); }

    std::filesystem::path path(std::string const& name) const { return folder.path / name; }

    void write(std::string const& name, std::string const& contents) const { folder.file(name, contents); }

    std::string read(std::string const& name) const { return contents_of(path(name).string()); }

    Outcome copy(Sinks sinks, std::string const& from, std::string const& to,
                 std::vector<std::string> const& environment = ordinary) const
    {
        return run_program(sinks, {EXAMPLE, path(from), path(to)}, {.environment = environment});
    }

    // Runs a shell command in which "$0" is the program, "$1" the source and "$2" the target.
    Outcome shell(Sinks sinks, std::string const& command, Launch launch = {}) const
    {
        launch.environment = ordinary;
        return run_program(sinks, {"/bin/sh", "-c", command, EXAMPLE, path(source), path(target)}, launch);
    }

    std::string const source = "source";
    std::string const target = "target";

private:
    Folder folder;
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

// On a machine that is busy, a copy may take long enough for lines in between.
std::string first_and_last(std::string const& lines)
{
    std::size_t const first = lines.find('\n');
    std::size_t const last = lines.rfind('\n', lines.size() - 2);
    std::string const end = last == lines.npos ? "" : lines.substr(last + 1);
    return lines.substr(0, first + 1) + end.substr(0, end.rfind(' ')) + " 00:00\n"; // whatever it took
}

TEST_F(Copy, CopiesFilesOfAnySize)
{
    for (std::size_t const size : {0u, 1u, 65535u, 65536u, 65537u}) {
        SCOPED_TRACE(size);
        std::string contents;
        for (std::size_t i = 0; i < size; ++i) {
            contents += static_cast<char>(i * 31 >> 3);
        }
        write("any", contents);
        Outcome const run = copy(on_pipes, "any", target);
        EXPECT_EQ(read(target), contents);
        EXPECT_EQ(run.status, 0);
        EXPECT_FALSE(std::filesystem::exists(path("target.part")));
    }
}

TEST_F(Copy, WritesLinesIntoAPipeOrAFileAndToADumbTerminal)
{
    for (Sink const sink : {Sink::pipe, Sink::file}) {
        Outcome const run = copy({Sink::terminal, sink}, source, target);
        EXPECT_EQ(first_and_last(run.err), contents_of("copy.expected"));
        EXPECT_EQ(run.out, "");
    }
    Outcome const dumb = copy(on_terminals, source, target, {"TERM=dumb"});
    EXPECT_EQ(first_and_last(dumb.err), contents_of("copy.expected"));
}

TEST_F(Copy, LeavesALineOnATerminal)
{
    Outcome const run = copy(on_terminals, source, target);
    Screen const screen{run.err};
    EXPECT_EQ(screen.text(0).substr(0, 20), "source [############");
    EXPECT_NE(screen.text(0).find("] 100% 1.00 MiB/1.00 MiB "), std::string::npos);
    EXPECT_EQ(screen.text(1), "");
    EXPECT_EQ(screen.cursor(), (Position{1, 0}));
    EXPECT_TRUE(screen.cursor_visible());
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 0);
}

TEST_F(Copy, ShowsHowFarItIsAndWipesThatWhenASignalEndsIt)
{
    for (int const signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        SCOPED_TRACE(signal);
        FullPipe const pipe(path(target)); // the program waits with its first frame in sight
        Outcome const run = shell(on_terminals, "ulimit -c 0; exec \"$0\" \"$1\" \"$2\" 2>&1",
                                  {.interrupt = Interrupt{signal, "6% 64.0 KiB/1.00 MiB"}}); // what the pipe holds
        EXPECT_EQ(run.signal, signal);
        Screen const screen{run.out};
        EXPECT_EQ(screen.text(0), "");
        EXPECT_EQ(screen.text(1), "");
        EXPECT_TRUE(screen.cursor_visible());
        std::filesystem::remove(path(target));
    }
}

TEST_F(Copy, RemovesWhatASignalLeavesHalfDone)
{
    ::mkfifo(path("slow").c_str(), 0600);
    write(target, "as it was");
    for (int const signal : {SIGHUP, SIGINT, SIGTERM}) {
        Outcome const run =
            run_program(on_terminals,
                        {"/bin/sh", "-c", "(echo begin; exec sleep 20) >\"$1\" 2>&1 & exec \"$0\" \"$1\" \"$2\" 2>&1",
                         EXAMPLE, path("slow"), path(target)},
                        {.environment = ordinary, .interrupt = Interrupt{signal, "\x1b[?2026l"}});
        EXPECT_EQ(run.signal, signal);
        EXPECT_EQ(read(target), "as it was");
        EXPECT_FALSE(std::filesystem::exists(path("target.part")));
    }
}

TEST_F(Copy, KeepsIgnoringASignalThatWasIgnored)
{
    ::mkfifo(path("slow").c_str(), 0600);
    for (int const signal : {SIGHUP, SIGINT, SIGTERM}) {
        Outcome const run = run_with({Sink::pipe, Sink::terminal}, [&] {
            std::signal(signal, SIG_IGN);
            change_environment(ordinary);
            pid_t const copy = ::getpid();
            if (::fork() == 0) {
                std::ofstream slow(path("slow"));
                slow << "before " << std::flush;
                await_output(STDERR_FILENO, "slow 00:");
                ::kill(copy, signal);
                slow << "after";
                slow.close();
                ::_exit(0);
            }
            ::execl(EXAMPLE, EXAMPLE, path("slow").c_str(), path(target).c_str(), nullptr);
        });
        EXPECT_EQ(run.status, 0) << run.err;
        EXPECT_EQ(read(target), "before after");
    }
}

TEST_F(Copy, LeavesTheTargetAloneUntilTheCopyIsComplete)
{
    write(target, "as it was");
    std::filesystem::permissions(path(target), std::filesystem::perms::owner_all);
    EXPECT_EQ(copy(on_pipes, ".", target).status, 1);
    EXPECT_EQ(copy(on_pipes, "nothing", target).status, 1);
    EXPECT_EQ(read(target), "as it was");
    Outcome const full = shell(on_pipes, "ulimit -f 1; exec \"$0\" \"$1\" \"$2\"");
    EXPECT_NE(full.status, 0);
    EXPECT_EQ(read(target), "as it was");
    EXPECT_EQ(copy(on_pipes, source, target).status, 0);
    EXPECT_EQ(read(target), read(source));
}

TEST_F(Copy, KeepsALinkToTheTarget)
{
    write("real", "as it was");
    std::filesystem::create_symlink(path("real"), path(target));
    EXPECT_EQ(copy(on_pipes, source, target).status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(path(target)));
    EXPECT_EQ(read("real"), read(source));
}

TEST_F(Copy, CountsASourceWithoutASize)
{
    Outcome const run = shell(on_pipes, "cat \"$1\" | \"$0\" /dev/stdin \"$2\"");
    EXPECT_EQ(first_and_last(run.err), "stdin: started\nstdin: done, 1.00 MiB in 00:00\n");
    EXPECT_EQ(read(target), read(source));
}

TEST_F(Copy, CopiesAFileOntoItselfWithoutHarm)
{
    std::string const before = read(source);
    Outcome const run = copy(on_pipes, source, source);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(read(source), before);
}

TEST_F(Copy, LeavesAloneWhatHasTheNameOfAHalfDoneCopy)
{
    write("target.part", "somebody else's");
    std::string const refusal =
        "copy: cannot make " + std::filesystem::weakly_canonical(path("target.part")).string() + ": File exists\n";
    EXPECT_EQ(copy(on_pipes, source, target).err, refusal);
    EXPECT_EQ(copy(on_pipes, "target.part", target).err, refusal);
    EXPECT_EQ(read("target.part"), "somebody else's");
    EXPECT_FALSE(std::filesystem::exists(path(target)));
}

TEST_F(Copy, SaysWhatItCannotDo)
{
    std::string const nothing = path("nothing"), no_folder = std::filesystem::weakly_canonical(path("no/folder"));
    expect_refusal({nothing, path(target)}, "copy: cannot read " + nothing + ": No such file or directory\n", 1);
    expect_refusal({path(source), no_folder}, "copy: cannot make " + no_folder + ".part: No such file or directory\n",
                   1);
    expect_refusal({path("."), path(target)}, "copy: cannot read " + path(".").string() + ": Is a directory\n", 1);
    expect_refusal({path(source)}, "usage: copy SOURCE TARGET\n", 2);
    std::string const no_room = "copy: cannot write /dev/full: No space left on device\n";
    Outcome const full = run_program(on_pipes, {EXAMPLE, path(source), "/dev/full"});
    EXPECT_EQ(full.err.substr(full.err.rfind('\n', full.err.size() - 2) + 1), no_room);
    EXPECT_NE(full.err.find("source: stopped at "), std::string::npos);
    EXPECT_EQ(full.status, 1);
    write("small", "less than a buffer"); // which is written at the end
    Outcome const late = run_program(on_pipes, {EXAMPLE, path("small"), "/dev/full"});
    EXPECT_EQ(late.err.substr(late.err.rfind('\n', late.err.size() - 2) + 1), no_room);
    EXPECT_EQ(late.status, 1);
}

} // namespace
