// The gate where neither the table of operations nor the model can take it, and what else the state is to the outside.

#include "kestry/hueline_stream.hpp"

#include "operations_stream.hpp"

#include "support/isatty_calls.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

constexpr auto red_at_load = R"(\e[00m\e[1m\e[31m)";

std::ostream* const standard_streams[] = {&std::cout, &std::cerr, &std::clog};
Sink const every_sink[] = {Sink::terminal, Sink::pipe, Sink::file, Sink::full, Sink::closed};

void report_color() { report(_isUsingColor() ? "color " : "plain "); }

long& colorize_word(std::ostream& os) { return os.iword(find_colorize_word()); }

TEST(Gate, PassesOnTerminalsOnlyAndTellsSo)
{
    for (std::ostream* const os : standard_streams) {
        for (Sink const out : every_sink) {
            for (Sink const err : every_sink) {
                SCOPED_TRACE(testing::Message() << "sinks " << static_cast<int>(out) << ", " << static_cast<int>(err));
                auto const run = run_with({out, err}, [&] {
                    *os << colorize << red;
                    report_color();
                });
                bool const is_out = os == &std::cout;
                bool const passes = (is_out ? out : err) == Sink::terminal;
                EXPECT_EQ(readable(is_out ? run.out : run.err), passes ? red_at_load : "");
                EXPECT_EQ(is_out ? run.err : run.out, "");
                EXPECT_EQ(run.report, passes ? "color " : "plain ");
            }
        }
    }
}

TEST(Gate, RefusesAFileStreamOnTheTerminal)
{
    auto const run = on_terminal([] {
        std::ofstream terminal("/dev/tty");
        terminal << colorize << red << "x";
        report_color();
    });
    EXPECT_EQ(run.out, "x");
    EXPECT_EQ(run.report, "plain ");
}

TEST(Gate, GoesByTheStreamWhateverItsBuffer)
{
    auto const run = run_with({.out = Sink::terminal, .err = Sink::pipe}, [] {
        std::streambuf* const err = std::cerr.rdbuf(std::cout.rdbuf());
        std::cerr << colorize << red;
        std::cerr.rdbuf(err);
        report_color();
    });
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.report, "plain ");
}

TEST(Gate, AsksAgainEachTime)
{
    auto const run = on_terminal([] {
        std::cout << colorize << red << std::flush;
        int const terminal = dup(1);
        dup2(open("/dev/null", O_WRONLY), 1);
        std::cout << green << std::flush;
        report_color();
        dup2(terminal, 1);
        std::cout << on_blue;
        report_color();
    });
    EXPECT_EQ(readable(run.out), std::string(red_at_load) + R"(\e[00m\e[1m\e[31m\e[44m)");
    EXPECT_EQ(run.report, "plain color ");
}

TEST(Gate, FollowsStdoutAndStderrAndTheirDescriptors)
{
    auto const stderr_is_stdout = run_with({.out = Sink::terminal, .err = Sink::pipe}, [] {
        stderr = stdout;
        std::cerr << colorize << red;
    });
    EXPECT_EQ(readable(stderr_is_stdout.err), red_at_load);

    auto const stdout_is_stderr = run_with({.out = Sink::pipe, .err = Sink::terminal}, [] {
        stdout = stderr;
        std::cout << colorize << red;
    });
    EXPECT_EQ(readable(stdout_is_stderr.out), red_at_load);

    auto const stdout_is_opened = run_with({.out = Sink::pipe, .err = Sink::terminal}, [] {
        stdout = fdopen(dup(2), "w");
        std::cout << colorize << red;
    });
    EXPECT_EQ(readable(stdout_is_opened.out), red_at_load);
}

TEST(Gate, LeavesErrnoWhereStdoutAndStderrAreInMemory)
{
    auto const run = on_terminal([] {
        char* text = nullptr;
        std::size_t size = 0;
        std::FILE* const memory = open_memstream(&text, &size); // has no descriptor, as fileno says with EBADF
        auto const ask = [&](std::FILE*& file, std::ostream& os) {
            std::FILE* const before = std::exchange(file, memory);
            errno = ENOENT;
            push(os); // the gate and nothing that writes
            report(errno == ENOENT ? "kept " : "changed ");
            file = before;
        };
        ask(stdout, std::cout);
        ask(stderr, std::cerr);
    });
    EXPECT_EQ(run.report, "kept kept ");
}

// What several manipulators ask together is left open; where the first refuses, the others do not ask.
TEST(Gate, IsAskedOnceByATemplateThatItRefuses)
{
    for (auto const write : {colorized_crossplatform_template, colorized_platformspecific_template}) {
        auto const run = run_with({.out = Sink::terminal, .err = Sink::pipe}, [&] {
            isatty_calls = 0;
            std::cout << write;
            std::cerr << colorize << write;
            std::ostringstream() << write;
            report(std::to_string(isatty_calls));
        });
        EXPECT_EQ(run.report, "2");
    }
}

TEST(ColorizeWord, WantsColorUnlessZero)
{
    for (long const word : {1L, 2L, -1L, 256L, LONG_MAX, LONG_MIN}) {
        auto const run = on_terminal([word] {
            colorize_word(std::cout) = word;
            std::cout << red;
            report(std::to_string(colorize_word(std::cout))); // the gate leaves it
        });
        EXPECT_EQ(readable(run.out), red_at_load);
        EXPECT_EQ(run.report, std::to_string(word));
    }
}

TEST(ColorizeWord, HasAnIndexOfItsOwn)
{
    std::ostringstream os;
    int const end = std::ios_base::xalloc();
    for (int i = 0; i < end; ++i) {
        os.iword(i) = 5;
    }
    os << colorize << nocolorize << adjust;
    std::string words;
    for (int i = 0; i < end; ++i) {
        words += std::to_string(os.iword(i));
    }
    std::string expected(words.size(), '5');
    expected.at(static_cast<std::size_t>(find_colorize_word())) = '0';
    EXPECT_EQ(words, expected);
}

TEST(ColorizeWord, GoesWithTheFormatOfTheStream)
{
    auto const run = on_terminal([] {
        std::ostringstream os;
        os << colorize;
        std::cout.copyfmt(os);
        std::cout << red;
    });
    EXPECT_EQ(readable(run.out), red_at_load);
}

} // namespace
