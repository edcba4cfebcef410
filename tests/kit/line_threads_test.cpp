// Lines of many threads and of two processes, on one pipe and on one terminal.

#include <kestry/kit/line.hpp>

#include "kestry/hueline_stream.hpp"

#include "kit/threads.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using kestry::kit::line;

int constexpr processes = 2;
int constexpr threads = 8;
#if defined(__SANITIZE_THREAD__) || defined(__SANITIZE_ADDRESS__)
int constexpr lines = 500;
#else
int constexpr lines = 10'000;
#endif

// Lines of 13 to 150 bytes.
std::string tail_of(int number) { return std::string(static_cast<std::size_t>(number % 138), 'x'); }

void write_lines(int process, int thread)
{
    for (int number = 0; number < lines; ++number) {
        std::ostream& os = number % 3 == 0 ? std::cout : number % 3 == 1 ? std::cerr : std::clog;
        line(os) << process << ' ' << thread << ' ' << std::setw(5) << number << std::setw(0) << " 0x" << std::hex
                 << number % 16 << std::dec << ' ' << tail_of(number) << '\n';
    }
}

void write_from_everywhere(bool synced)
{
    std::ios::sync_with_stdio(synced);
    dup2(STDOUT_FILENO, STDERR_FILENO);
    for (int process = 0; process < processes; ++process) {
        if (fork() == 0) {
            in_threads(threads, [process](int thread) { write_lines(process, thread); });
            _exit(0); // nothing is left in a buffer
        }
    }
    while (wait(nullptr) > 0) {
    }
}

// How many lines came whole and, for their thread, in order; the first that did not is the message of a failure.
void expect_whole_lines(std::string const& written)
{
    std::array<std::array<int, threads>, processes> next = {};
    std::istringstream in(written);
    std::string text;
    while (std::getline(in, text)) {
        std::size_t const process = static_cast<std::size_t>(text.at(0) - '0');
        std::size_t const thread = static_cast<std::size_t>(text.size() > 2 ? text[2] - '0' : -1);
        ASSERT_LT(process, std::size_t{processes}) << readable(text);
        ASSERT_LT(thread, std::size_t{threads}) << readable(text);
        int const number = next[process][thread]++;
        std::string digits = std::to_string(number);
        digits.insert(0, 5 - digits.size(), ' ');
        ASSERT_EQ(text,
                  text.substr(0, 3) + ' ' + digits + " 0x" + "0123456789abcdef"[number % 16] + ' ' + tail_of(number));
    }
    EXPECT_TRUE(written.ends_with('\n'));
    for (auto const& of_process : next) {
        for (int const count : of_process) {
            EXPECT_EQ(count, lines);
        }
    }
}

struct Case {
    char const* name;
    Sink sink;
    bool synced;
};

class LinesFromEverywhere : public testing::TestWithParam<Case> {};

TEST_P(LinesFromEverywhere, AreWholeAndInOrder)
{
    auto const run = run_with({GetParam().sink, Sink::closed}, [] { write_from_everywhere(GetParam().synced); });
    EXPECT_EQ(run.status, 0);
    expect_whole_lines(run.out);
}

INSTANTIATE_TEST_SUITE_P(, LinesFromEverywhere,
                         testing::Values(Case{"OnAPipe", Sink::pipe, true}, Case{"OnAPipeUnsynced", Sink::pipe, false},
                                         Case{"OnATerminal", Sink::terminal, true},
                                         Case{"OnATerminalUnsynced", Sink::terminal, false}),
                         [](auto const& tested) { return std::string(tested.param.name); });

// Two locks, one for each stream, would be taken in both orders here.
TEST(LinesInLines, OfTwoThreadsOnBothStreamsDoNotDeadlock)
{
    auto const run = on_pipe([] {
        auto const within = [](std::ostream& inner) {
            line(inner) << "inner\n";
            return "outer\n";
        };
        auto const repeat = [&](std::ostream& outer, std::ostream& inner) {
            for (int i = 0; i < 500; ++i) {
                line(outer) << within(inner);
            }
        };
        std::thread other(repeat, std::ref(std::cerr), std::ref(std::cout));
        repeat(std::cout, std::cerr);
        other.join();
    });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.out.size(), 1000U * 6);
    EXPECT_EQ(run.err.size(), 1000U * 6);
}

// The manipulators share one record: in a line they have it to themselves.
TEST(LinesOfManyThreads, MayUseTheManipulators)
{
    using namespace kestry::Hueline;
    int constexpr each = 200;
    auto const run = on_terminal([] {
        std::cout << colorize;
        in_threads(2, [](int thread) {
            for (int i = 0; i < each; ++i) {
                if (thread == 0) {
                    line(std::cout) << red << 'r' << reset << '\n';
                } else {
                    line(std::cout) << blue << 'b' << reset << '\n';
                }
            }
        });
    });
    std::map<std::string, int> seen;
    std::istringstream in(run.out);
    for (std::string text; std::getline(in, text);) {
        ++seen[readable(text)];
    }
    EXPECT_EQ(seen[R"(\e[00m\e[1m\e[31mr\e[00m\e[25h)"], each);
    EXPECT_EQ(seen[R"(\e[00m\e[1m\e[34mb\e[00m\e[25h)"], each);
}

TEST(LinesOfManyThreads, StayWholeOnAnyStream)
{
    std::ostringstream os;
    in_threads(threads, [&](int) {
        for (int i = 0; i < 500; ++i) {
            line(os) << "a" << 1 << ' ' << "line" << '\n';
        }
    });
    std::string expected;
    for (int i = 0; i < threads * 500; ++i) {
        expected += "a1 line\n";
    }
    EXPECT_TRUE(os.str() == expected);
}

} // namespace
