// Standard output that is closed as a file, or a terminal or a reader that goes away.

#include "kestry/hueline_stream.hpp"

#include "support/buffers.hpp"

#include "operations_stream.hpp"

#include "support/clock.hpp"
#include "support/testing.hpp"

#include <pty.h>
#include <sys/ioctl.h>
#include <termios.h>

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

TEST(ClosedStdout, GetsNoColorAndNoCodeGridAndLeavesStandardErrorAsItIs)
{
    auto const run = on_terminal([] {
        std::cout << colorize;
        std::cerr << colorize;
        std::fclose(stdout);
        apply_all_examples(std::cout);
        report(_isUsingColor() ? "colour " : "plain ");
        std::cerr << reset << "|" << test_pattern_supported_m_codes << red;
        report(std::cerr.good() ? "good" : "bad");
    });
    EXPECT_EQ(run.report, "plain good");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[25h|\e[00m\e[25hreset colorize \e[00m\e[1m\e[2mdark \e[00m\e[2mthin \n)"
                                 R"( first 108 m codes: \n\n\e[00m\e[2m\e[31m)");
    EXPECT_EQ(run.status, 0);
}

// The read end of the pipe is closed already.
void write_to_nobody()
{
    int ends[2] = {-1, -1};
    if (pipe(ends) == 0) {
        dup2(ends[1], STDOUT_FILENO);
        close(ends[1]);
        close(ends[0]);
    }
}

TEST(PipeWithoutReader, EndsTheProcessAsUsual)
{
    auto const run = on_pipe([] {
        write_to_nobody();
        std::cout << colorize << build_version;
    });
    EXPECT_EQ(run.signal, SIGPIPE);
}

TEST(PipeWithoutReader, MakesTheStreamBadIfTheSignalIsIgnored)
{
    auto const run = on_pipe([] {
        std::signal(SIGPIPE, SIG_IGN);
        write_to_nobody();
        std::cout << colorize;
        apply_all_examples(std::cout);
        report(std::cout.bad() ? "bad" : "good");
    });
    EXPECT_EQ(run.report, "bad");
    EXPECT_EQ(run.status, 0);
}

// A terminal as standard output of this process, whose other end is closed, as by a person who closes
// its window, after so many flushes of std::cout.
class HangingUp {
public:
    explicit HangingUp(int flushes_before) : watch(*this, flushes_before), stream_buffer(std::cout, &watch)
    {
        termios raw = {};
        int slave = -1;
        openpty(&master, &slave, nullptr, nullptr, nullptr);
        tcgetattr(slave, &raw);
        cfmakeraw(&raw);
        tcsetattr(slave, TCSANOW, &raw);
        ioctl(slave, TIOCSCTTY, 0);
        dup2(slave, STDOUT_FILENO);
        close(slave);
    }

    int flushes() const { return watch.flushes; }
    std::string seen() const { return arrived; }

private:
    // Passes bytes on to the descriptor at each flush, and reads what arrives at the other end.
    class Watch : public SmallBuffer {
    public:
        Watch(HangingUp& terminal, int flushes_before) : hanging(terminal), last(flushes_before) {}

        int flushes = 0;

    private:
        int sync() override
        {
            std::string const bytes = text();
            empty();
            bool const written = write(STDOUT_FILENO, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size());
            if (hanging.master >= 0) {
                hanging.receive(bytes.size());
            }
            if (++flushes == last) {
                close(std::exchange(hanging.master, -1));
            }
            return written ? 0 : -1;
        }

        HangingUp& hanging;
        int last;
    };

    // What is written takes a moment to the other end.
    void receive(std::size_t more)
    {
        for (std::size_t const all = arrived.size() + more; arrived.size() < all;) {
            char some[4096];
            ssize_t const n = read(master, some, sizeof some);
            if (n <= 0) {
                break;
            }
            arrived.append(some, static_cast<std::size_t>(n));
        }
    }

    int master = -1;
    std::string arrived;
    Watch watch;
    WithBuffer stream_buffer;
};

// Keeps the animation from being too fast for its terminal and too slow for a test.
void let_waits_be_short() { advance_clock_by(std::chrono::milliseconds(5)); }

TEST(HangUp, EndsTheWaitingAndTheColorOfAnAnimation)
{
    auto const run = on_pipe([] {
        std::signal(SIGHUP, SIG_IGN);
        let_waits_be_short();
        HangingUp terminal(9);
        std::cout << colorize << test_pattern_progress_line;
        bool const is_bad = std::cout.bad(); // since the flush after the hang-up
        std::int64_t const readings = clock_readings;
        report(std::to_string(terminal.flushes()) + " flushes, " + std::to_string(readings) + " readings, " +
               (is_bad ? "bad, " : "good, ") + (_isUsingColor() ? "colour" : "plain"));
        report(terminal.seen().find("\x1b[25i\r") == 0 ? ", seen" : ", not seen");
    });
    // Each of the eight waits before it reads the clock at 0, 5, ..., 25 ms.
    EXPECT_EQ(run.report, "10 flushes, 48 readings, bad, plain, seen");
    EXPECT_EQ(run.status, 0);
}

TEST(HangUp, LeavesTheProcessAbleToColorAnotherTerminal)
{
    auto const run = run_with({Sink::pipe, Sink::terminal}, [] {
        std::signal(SIGHUP, SIG_IGN);
        let_waits_be_short();
        {
            HangingUp terminal(3);
            std::cout << colorize << test_pattern_status_line;
        }
        dup2(STDERR_FILENO, STDOUT_FILENO);
        std::cout << red << std::flush;
    });
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m\e[31m)");
    EXPECT_EQ(run.status, 0);
}

// As any process whose terminal goes away.
TEST(HangUp, EndsAProcessThatDoesNotIgnoreIt)
{
    auto const run = on_pipe([] {
        std::signal(SIGHUP, SIG_DFL);
        let_waits_be_short();
        HangingUp terminal(3);
        std::cout << colorize << build_version;
    });
    EXPECT_EQ(run.signal, SIGHUP);
}

} // namespace
