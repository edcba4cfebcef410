#include "kestry/kit/line.hpp"
#include "kestry/kit/progress.hpp"

#include "kit/threads.hpp"
#include "support/clock.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

#include <sys/ioctl.h>

namespace {

using namespace hueline::test;
using namespace kestry::kit::progress;
using namespace std::chrono_literals;
using Lines = std::vector<std::string>;

// Bytes of a frame: it is on the terminal, however long that takes.
void await_frame(std::string_view with) { await_output(STDERR_FILENO, with); }

// Those but the calling one: what they do at times is done.
void await_that_other_threads_sleep()
{
    auto const all_sleep = [] {
        for (auto const& task : std::filesystem::directory_iterator("/proc/self/task")) {
            std::string line;
            std::getline(std::ifstream(task.path() / "stat"), line);
            bool const sleeps = line.compare(line.rfind(')') + 2, 1, "S") == 0;
            if (!sleeps && task.path().filename() != std::to_string(::gettid())) {
                return false;
            }
        }
        return true;
    };
    while (!all_sleep()) {
        std::this_thread::sleep_for(1ms);
    }
}

// Runs the body with an environment that says nothing of progress.
Outcome run_on(Sink error, std::function<void()> const& body)
{
    static std::vector<std::string> const changes = {"CI",         "HUELINE_PROGRESS", "LANG",      "LC_CTYPE",
                                                     "TERM=xterm", "LC_ALL=C",         "NO_COLOR=1"};
    return run_with({Sink::pipe, error}, [&] {
        change_environment(changes);
        forbid_cores();
        body();
    });
}

Outcome on_error_terminal(std::function<void()> const& body) { return run_on(Sink::terminal, body); }

bar_options brief(std::string_view message, std::uint64_t length = 10)
{
    return {.message = message, .length = length, .row = layout("{msg} {pos}/{len}")};
}

// What is left on the screen, down to the last row with text.
Lines left_by(Outcome const& run)
{
    Screen const screen{run.err};
    Lines lines;
    for (int row = 0; row < 24; ++row) {
        lines.push_back(screen.text(row));
    }
    while (!lines.empty() && lines.back().empty()) {
        lines.pop_back();
    }
    return lines;
}

std::size_t count(std::string_view text, std::string_view part)
{
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != text.npos; at = text.find(part, at + part.size())) {
        ++found;
    }
    return found;
}

void expect_tidy(Outcome const& run)
{
    EXPECT_TRUE(Screen{run.err}.cursor_visible());
    EXPECT_EQ(count(run.err, "\x1b[?2026h"), count(run.err, "\x1b[?2026l"));
    EXPECT_EQ(count(run.err, "\x1b[?25l"), count(run.err, "\x1b[?25h"));
}

TEST(ProgressTerminal, DrawsByItselfAndLeavesTheLastRow)
{
    Outcome const run = on_error_terminal([] {
        multi_progress group;
        bar const files = group.add(brief("files"));
        files.inc(4);
        await_frame("files  4/10");
        files.inc(6);
    });
    EXPECT_EQ(left_by(run), Lines{"files 10/10"});
    EXPECT_EQ(run.out, "");
    expect_tidy(run);
}

TEST(ProgressTerminal, IsLiveWritesLinesOrIsOffAsThePlaceSays)
{
    std::string const lines = "files: 0%, 0 of 10\nfiles: done, 10 in 00:00\n";
    std::string const last_row = "files [##############################################] 100% 10/10    --/s 00:00\n";
    struct {
        Sink sink;
        char const* name;
        char const* value;
        std::string written;
    } const places[] = {
        {Sink::pipe, "TERM", "xterm", lines},
        {Sink::file, "TERM", "xterm", lines},
        {Sink::terminal, "TERM", "dumb", lines},
        {Sink::terminal, "CI", "true", lines},
        {Sink::terminal, "HUELINE_PROGRESS", "plain", lines},
        {Sink::terminal, "HUELINE_PROGRESS", "off", ""},
        {Sink::terminal, "HUELINE_PROGRESS", "live", last_row},
        {Sink::terminal, "HUELINE_PROGRESS", "maybe", last_row},
        {Sink::terminal, "CI", "false", last_row},
        {Sink::terminal, "CI", "0", last_row},
        {Sink::terminal, "CI", "", last_row},
    };
    for (auto const& [sink, name, value, written] : places) {
        Outcome const run = run_on(sink, [name = name, value = value] {
            ::setenv(name, value, 1);
            stop_steady_clock();
            multi_progress group;
            bar const files = group.add("files", 10);
        });
        EXPECT_EQ(run.err, written) << name << ' ' << value;
    }
}

TEST(ProgressTerminal, UsesUnicodeAndColorAsTheEnvironmentSays)
{
    struct {
        char const* locale;
        char const* no_color;
        std::string row;
    } const choices[] = {{"C", "1", "[##>.]\n"}, {"C.UTF-8", "1", "[██  ]\n"}, {"C", "", "[\x1b[33m##>\x1b[0m.]\n"}};
    for (auto const& choice : choices) {
        Outcome const run = on_error_terminal([&] {
            ::setenv("LC_ALL", choice.locale, 1);
            ::setenv("NO_COLOR", choice.no_color, 1);
            stop_steady_clock();
            multi_progress group;
            bar const half = group.add({.message = "m", .length = 4, .row = layout("{bar:6.green}")});
            half.inc(2);
            half.abandon();
        });
        EXPECT_EQ(run.err, choice.row);
    }
}

TEST(ProgressTerminal, ReadsTheSizeAtEachFrame)
{
    Outcome const run = on_error_terminal([] {
        multi_progress group;
        bar const wide = group.add("wide", 10);
        await_frame("wide [");
        winsize const size = {.ws_row = 24, .ws_col = 20, .ws_xpixel = 0, .ws_ypixel = 0};
        ::ioctl(STDERR_FILENO, TIOCSWINSZ, &size);
        await_frame("\nwide   0%  0/10\x1b[J");
    });
    EXPECT_EQ(run.status, 0);
}

// Of standard error and the terminal that a descriptor leads to.
void expect_shared_rows(int (*open_other)())
{
    Outcome const run = on_error_terminal([open_other] {
        multi_progress errors;
        bar const one = errors.add(brief("one"));
        multi_progress other({.descriptor = open_other()});
        bar const two = other.add(brief("two"));
        await_frame("two  0/10");
        ::raise(SIGKILL);
    });
    EXPECT_EQ(left_by(run), (Lines{"", "one  0/10", "two  0/10"}));
}

TEST(ProgressTerminal, SharesTheRowsOfOneTerminal)
{
    expect_shared_rows([] { return ::dup2(STDERR_FILENO, STDOUT_FILENO); });
}

TEST(ProgressTerminal, SharesTheRowsOfATerminalUnderItsOtherName)
{
    expect_shared_rows([] { return ::open("/dev/tty", O_RDWR | O_CLOEXEC); });
}

TEST(ProgressTerminal, DoesNotWriteToWhatItsDescriptorHasBecome)
{
    Outcome const run = on_error_terminal([] {
        int const terminal = ::dup(STDERR_FILENO);
        {
            multi_progress first({.descriptor = terminal});
            bar const one = first.add(brief("one"));
        }
        ::close(terminal);
        int ends[2];
        if (::pipe(ends) != 0 || ends[0] != terminal) {
            report("the pipe has another number");
        }
        ::dup2(ends[1], ends[0]);
        multi_progress second;
        bar const two = second.add(brief("two"));
        await_frame("two  0/10");
    });
    EXPECT_EQ(run.report, "");
    EXPECT_EQ(left_by(run), (Lines{"one 10/10", "two 10/10"}));
}

TEST(ProgressTerminal, LeavesACursorHiddenThatTheProgramHid)
{
    Outcome const run = on_error_terminal([] {
        kestry::kit::hidden_cursor const none(std::cerr);
        multi_progress group;
        bar const files = group.add(brief("files"));
        await_frame("files  0/10");
        ::raise(SIGKILL);
    });
    EXPECT_FALSE(Screen{run.err}.cursor_visible());
    EXPECT_EQ(count(run.err, "\x1b[?25h"), 0U);
}

TEST(ProgressTerminal, PrintsALineThatWaitedForOneOfTheKit)
{
    Outcome const run = on_error_terminal([] {
        multi_progress group;
        {
            bar const files = group.add({.message = "files", .when_ended = leaving::nothing}); // starts the thread
        }
        {
            kestry::kit::line open(std::cerr);
            open << "open\n";
            std::thread([&group] { report(group.println("printed") ? "printed" : "not written"); }).join();
        }
        await_frame("printed\n");
    });
    EXPECT_EQ(run.report, "printed");
    EXPECT_EQ(left_by(run), (Lines{"open", "printed"}));
}

TEST(ProgressTerminal, PutsLinesOfTheKitAbove)
{
    Outcome const run = on_error_terminal([] {
        multi_progress group;
        bar const files = group.add(brief("files"));
        await_frame("files  0/10");
        kestry::kit::line(std::cerr) << "a "
                                     << "line\n";
        kestry::kit::line(std::cerr) << "half ";
        kestry::kit::line(std::cerr) << "another line\n";
        group.println("printed");
        kestry::kit::line(std::cerr) << "a line\n";
    });
    EXPECT_EQ(left_by(run), (Lines{"a line", "another line", "printed", "a line", "files 10/10", "half"}));
    expect_tidy(run);
}

TEST(ProgressTerminal, PrintsLinesOfManyThreadsWholeOnceAndInOrder)
{
    int constexpr threads = 4;
    int constexpr lines = 250;
    for (Sink const sink : {Sink::terminal, Sink::pipe}) {
        Outcome const run = run_on(sink, [] {
            multi_progress group;
            bar const all = group.add(brief("all", threads * lines));
            in_threads(threads, [&](int t) {
                for (int i = 0; i < lines; ++i) {
                    bar const mine = group.add({.message = "mine", .when_ended = leaving::nothing});
                    group.println("thread " + std::to_string(t) + " line " + std::to_string(i));
                    mine.set_message("still mine");
                    mine.inc();
                    all.inc();
                    if (i % 50 == 0) {
                        std::this_thread::sleep_for(60ms);
                    }
                }
            });
        });
        EXPECT_EQ(run.status, 0);
        std::vector<int> next(threads, 0);
        Lines const seen = Screen(run.err, 24, 80).lines_above();
        int printed = 0;
        for (std::string const& line : seen) {
            if (line.rfind("thread ", 0) == 0) {
                ++printed;
                int const t = line[7] - '0';
                ASSERT_TRUE(t >= 0 && t < threads);
                EXPECT_EQ(line, "thread " + std::to_string(t) + " line " +
                                    std::to_string(next[static_cast<std::size_t>(t)]++));
            }
        }
        EXPECT_EQ(printed, threads * lines);
    }
}

TEST(ProgressTerminal, TakesCallsOfAllKindsFromAllThreads)
{
    Outcome const run = on_error_terminal([] {
        multi_progress group;
        bar const shared = group.add("shared", 1000);
        in_threads(4, [&](int t) {
            std::mt19937 random(static_cast<unsigned>(t));
            bar mine = group.add("mine", 10);
            std::array<std::function<void()>, 12> const calls = {
                [&] { shared.set_message("shared " + std::to_string(random())); },
                [&] { shared.set_length(random() % 2000); },
                [&] { shared.reset(); },
                [&] { shared.finish(); },
                [&] { shared.abandon(); },
                [&] { mine = group.add("mine", 10); },
                [&] { mine = group.insert_before(shared, {.message = "before"}); },
                [&] { mine = shared; },
                [&] { group.println("line"); },
                [&] { group.tick(); },
                [&] { suspension const quiet = group.suspend(); },
                [&] {
                    shared.inc();
                    std::this_thread::sleep_for(1ms);
                },
            };
            for (int i = 0; i < 400; ++i) {
                calls.at(random() % calls.size())();
            }
        });
    });
    EXPECT_EQ(run.status, 0);
    expect_tidy(run);
}

TEST(ProgressEnd, LeavesTheTerminalRightAtEachSignal)
{
    std::mt19937 random(1);
    for (int const signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGABRT, SIGKILL, SIGKILL, SIGKILL}) {
        auto const moment = std::chrono::microseconds(random() % 100000);
        Outcome const run = on_error_terminal([&] {
            multi_progress group;
            bar const files = group.add("files", 1000);
            await_frame("files [");
            auto const end = std::chrono::steady_clock::now() + moment;
            while (std::chrono::steady_clock::now() < end) {
                files.inc();
                std::this_thread::sleep_for(1ms);
            }
            ::raise(signal);
        });
        EXPECT_EQ(run.signal, signal);
        expect_tidy(run);
    }
}

TEST(ProgressEnd, WipesTheRowsBeforeASignalIfItIsAskedTo)
{
    for (int const signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
        Outcome const run = on_error_terminal([signal] {
            wipe_on_signals();
            multi_progress group;
            bar const files = group.add("files", 1000);
            await_frame("files [");
            await_that_other_threads_sleep();
            ::raise(signal);
        });
        EXPECT_EQ(run.signal, signal);
        EXPECT_EQ(left_by(run), Lines{});
        EXPECT_TRUE(Screen{run.err}.cursor_visible());
    }
}

TEST(ProgressEnd, LeavesSignalsAloneThatAreIgnoredOrHandled)
{
    Outcome const run = on_error_terminal([] {
        std::signal(SIGINT, SIG_IGN);
        std::signal(SIGTERM, [](int) { report("handled"); });
        wipe_on_signals();
        multi_progress group;
        bar const files = group.add(brief("files"));
        await_frame("files  0/10");
        ::raise(SIGINT);
        ::raise(SIGTERM);
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.report, "handled");
    EXPECT_EQ(left_by(run), Lines{"files 10/10"});
}

TEST(ProgressEnd, AbandonsBarsAtAnExceptionAndAtExit)
{
    for (bool const throws : {true, false}) {
        Outcome const run = on_error_terminal([throws] {
            multi_progress group;
            bar const files = group.add(brief("files"));
            files.inc(4);
            await_frame("files  4/10");
            if (throws) {
                throw std::runtime_error("it");
            }
            std::exit(3);
        });
        EXPECT_EQ(run.report, throws ? "it" : "");
        EXPECT_EQ(run.status, throws ? 99 : 3);
        EXPECT_EQ(left_by(run), Lines{"files  4/10"});
        expect_tidy(run);
    }
}

TEST(ProgressEnd, DoesNotWaitForALineOfAnotherThread)
{
    Outcome const run = on_error_terminal([] {
        auto& group = *new multi_progress; // a group that ends would wait
        auto& files = *new bar(group.add(brief("files")));
        files.inc();
        await_frame("files  1/10");
        std::atomic<bool> has_a_line = false;
        std::thread([&has_a_line] {
            kestry::kit::line const open(std::cerr);
            has_a_line = true;
            has_a_line.notify_one();
            ::pause();
        }).detach();
        has_a_line.wait(false);
        std::exit(7);
    });
    EXPECT_EQ(run.status, 7);
}

TEST(ProgressEnd, ComesToStaticObjectsInAnyOrder)
{
    for (bool const handle_first : {false, true}) {
        Outcome const run = on_error_terminal([handle_first] {
            static bar files;
            if (handle_first) {
                static multi_progress group;
                files = group.add(brief("files"));
            } else {
                static auto const group = std::make_unique<multi_progress>();
                static bar const later = group->add(brief("files"));
            }
            await_frame("files  0/10");
            std::exit(0);
        });
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(left_by(run), Lines{"files 10/10"});
        expect_tidy(run);
    }
}

// What the threads of the parent held stays where it is in a child: no leak that a sanitizer should tell of.
bool is_forked = false;
extern "C" int __lsan_is_turned_off() { return is_forked ? 1 : 0; }

TEST(ProgressFork, DoesNothingInTheChild)
{
    Outcome const run = on_error_terminal([] {
        auto group = std::make_unique<multi_progress>();
        bar files = group->add(brief("files"));
        await_frame("files  0/10");
        for (int i = 0; i < 20; ++i) { // while the thread draws, or does not
            pid_t const child = ::fork();
            if (child == 0) {
                is_forked = true;
                files.inc();
                files.set_message("child");
                files.set_length(20);
                files.finish();
                files.reset();
                if (group->println("child")) {
                    ::_exit(1);
                }
                {
                    suspension const quiet = group->suspend();
                }
                group->tick();
                bar const more = group->add("child", 10);
                multi_progress another;
                bar const other = another.add("child", 10);
                another.println("child");
                files = {};
                group.reset();
                std::exit(0);
            }
            files.inc(0);
            int status = -1;
            ::waitpid(child, &status, 0);
            if (status != 0) {
                report("child " + std::to_string(status));
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(i));
        }
    });
    EXPECT_EQ(run.report, "");
    EXPECT_EQ(run.err.find("child"), std::string::npos);
    EXPECT_EQ(left_by(run), Lines{"files 10/10"});
}

TEST(ProgressStop, IsSilentInTheBackground)
{
    Outcome const run = on_error_terminal([] {
        pid_t const child = ::fork();
        if (child == 0) {
            ::setpgid(0, 0); // out of the terminal's foreground group
            {
                multi_progress group;
                bar const files = group.add(brief("files"));
                std::this_thread::sleep_for(300ms);
                group.println("a line");
            }
            ::_exit(0);
        }
        ::waitpid(child, nullptr, 0);
    });
    EXPECT_EQ(readable(run.err), R"(a line\n)");
}

TEST(ProgressStop, WipesTheRowsIfItIsAskedToAndDrawsThemAgain)
{
    Outcome const run = on_error_terminal([] {
        wipe_on_signals();
        multi_progress group;
        bar const files = group.add(brief("files"));
        for (int i = 0; i < 2; ++i) {
            await_frame("files  0/10");
            ::raise(SIGTSTP); // in a group without a parent that could let it go on: does not stop
            std::string_view const shell = "stopped\r\n";
            if (::write(STDERR_FILENO, shell.data(), shell.size()) < 0) {
                report("write");
            }
            await_frame(shell);
        }
        await_frame("files  0/10");
        ::raise(SIGKILL);
    });
    EXPECT_EQ(run.report, "");
    EXPECT_EQ(count(run.err, "\x1b[J\x1b[?7h\x1b[?25h\x1b[?2026l"), 2U);
    EXPECT_EQ(left_by(run), (Lines{"stopped", "stopped", "", "files  0/10"}));
}

TEST(ProgressStop, DrawsANewBlockAndLeavesTheStopOutOfTime)
{
    using clock = std::chrono::steady_clock;
    auto const stop = 2s;
    auto const begun = clock::now();
    Outcome const run = on_error_terminal([stop] {
        std::string_view const shell = "stopped\r\n$ fg\r\n";
        pid_t const child = ::fork();
        if (child == 0) {
            multi_progress group;
            bar const files = group.add({.message = "files", .row = layout("{msg} {elapsed}")});
            await_frame("files 00:");
            await_that_other_threads_sleep();
            ::raise(SIGSTOP);
            await_frame(shell);
            await_frame("files 00:");
            ::raise(SIGKILL);
        }
        int status = 0;
        ::waitpid(child, &status, WUNTRACED);
        std::this_thread::sleep_for(stop);
        if (::write(STDERR_FILENO, shell.data(), shell.size()) < 0) {
            report("write");
        }
        ::kill(child, SIGCONT);
        ::waitpid(child, &status, 0);
    });
    auto const ran = clock::now() - begun - stop;
    EXPECT_EQ(run.report, "");
    Lines const left = left_by(run);
    ASSERT_EQ(left.size(), 4U);
    EXPECT_EQ(left[0], "stopped");
    EXPECT_EQ(left[1].substr(0, 9), "$ fgs 00:");
    EXPECT_EQ(left[2], "");
    EXPECT_EQ(left[3].substr(0, 9), "files 00:");
    EXPECT_LE(std::chrono::seconds(std::stoi(left[3].substr(9))), ran + 500ms) << left[3];
}

} // namespace
