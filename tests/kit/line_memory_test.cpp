// Lines, and bars in a child process, when memory runs out.

#include <kestry/kit/line.hpp>
#include <kestry/kit/progress.hpp>

#include "support/testing.hpp"
#include "support/writes.hpp"
#include "support/allocations.hpp"

namespace {

using namespace hueline::test;
using kestry::kit::line;

std::string const text = std::string(1024, 'a') + std::string(1024, 'b') + std::string(10, 'c');

// The writes of a line of two pieces.
std::string writes_of(std::string_view first, int second, Shortage const& shortage)
{
    return writes_to(STDERR_FILENO, [&] {
        RunShort const scope(shortage);
        line(std::cerr) << first << second;
    });
}

TEST(LineWithoutMemory, OfUsualLengthNeedsNone)
{
    std::string const usual(1023, 'x');
    EXPECT_EQ(writes_of(usual, 7, {.after = 0, .lasting = true}), '[' + usual + "7]");
    EXPECT_FALSE(ran_short);
}

TEST(LineWithoutMemory, IsWrittenInPieces)
{
    EXPECT_EQ(writes_of(text, 1, {.after = 0, .lasting = true}),
              '[' + text.substr(0, 1024) + "][" + text.substr(1024, 1024) + "][" + text.substr(2048) + "1]");
    EXPECT_TRUE(ran_short);
    EXPECT_TRUE(std::cerr.good());
}

TEST(LineWithoutMemory, KeepsWhatItHasGrownTo)
{
    std::string const four(4096, 'x');
    EXPECT_EQ(writes_of(four, 1, {.after = 1, .lasting = true}), '[' + four + "][1]");
}

TEST(LineWithoutMemory, GrowsAgainWhenThereIsSome)
{
    EXPECT_EQ(writes_of(text, 1, {.after = 0}), '[' + text.substr(0, 1024) + "][" + text.substr(1024) + "1]");
}

TEST(LineWithMemory, ReturnsAllThatItTook)
{
    long in_use = 0;
    EXPECT_EQ(writes_to(STDERR_FILENO,
                        [&] {
                            long const before = blocks_in_use;
                            line(std::cerr) << text << text << text;
                            in_use = blocks_in_use - before;
                        }),
              '[' + text + text + text + ']');
    EXPECT_EQ(in_use, 0);
}

TEST(LineWithoutMemory, MakesTheStreamBadWhereItCannotBeWritten)
{
    auto const run = run_with({Sink::pipe, Sink::full}, [] {
        {
            line named(std::cerr);
            RunShort const none({.after = 0, .lasting = true});
            named << text;
            report(std::cerr.bad() ? "bad " : "good ");
        }
        report(std::cerr.bad() ? "bad" : "good");
    });
    EXPECT_EQ(run.report, "bad bad");
    EXPECT_EQ(run.status, 0);
}

TEST(BarsWithoutMemory, EndInAChildProcess)
{
    using namespace kestry::kit::progress;
    auto const run = on_pipe([] {
        std::optional<multi_progress> group(std::in_place, options{.shown = mode::plain});
        if (fork() == 0) {
            RunShort const none({.after = 0, .lasting = true});
            group.reset();
            _exit(0);
        }
        int status = -1;
        wait(&status);
        report(status == 0 ? "ended" : "failed");
    });
    EXPECT_EQ(run.report, "ended");
}

} // namespace
