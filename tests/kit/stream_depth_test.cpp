#include <kestry/kit/policy.hpp>

#include "kit/threads.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::kit;

color_depth depth_before_main()
{
    for (int words = 0; words < 100; ++words) {
        std::ios_base::xalloc(); // more than a stream has room for without an allocation
    }
    std::ostringstream os;
    set_depth(os, color_depth::ansi256);
    return depth_of(os);
}

color_depth const before_main = depth_before_main();

std::string depths()
{
    std::string text;
    for (std::ostream* const os : {&std::cout, &std::cerr, &std::clog}) {
        text += to_string(depth_of(*os));
        text += '\n';
    }
    return text;
}

TEST(StreamDepth, IsWhatWasSet)
{
    std::ostringstream os;
    for (color_depth const depth :
         {color_depth::none, color_depth::ansi16, color_depth::ansi256, color_depth::truecolor, color_depth::none}) {
        set_depth(os, depth);
        EXPECT_EQ(depth_of(os), depth);
    }
}

TEST(StreamDepth, OfAnotherStreamIsTruecolorAtFirst)
{
    std::ostringstream os;
    EXPECT_EQ(depth_of(os), color_depth::truecolor);
    std::ostream shares(std::cout.rdbuf());
    EXPECT_EQ(depth_of(shares), color_depth::truecolor);
}

TEST(StreamDepth, GoesAlongWithCopyfmt)
{
    std::ostringstream from;
    std::ostringstream to;
    set_depth(from, color_depth::none);
    to.copyfmt(from);
    EXPECT_EQ(depth_of(to), color_depth::none);
    set_depth(to, color_depth::ansi16);
    EXPECT_EQ(depth_of(from), color_depth::none);
}

TEST(StreamDepth, MayBeSetBeforeMain) { EXPECT_EQ(before_main, color_depth::ansi256); }

TEST(StreamDepth, OfStandardStreamsComesFromTheEnvironmentAndTheirDescriptor)
{
    auto const body = [] {
        change_environment(sixteen_colors);
        report(depths());
    };
    EXPECT_EQ(on_terminal(body).report, "16 colours\n16 colours\n16 colours\n");
    EXPECT_EQ(run_with({Sink::pipe, Sink::terminal}, body).report, "none\n16 colours\n16 colours\n");
    EXPECT_EQ(run_with({Sink::terminal, Sink::pipe}, body).report, "16 colours\nnone\nnone\n");
}

TEST(StreamDepth, OfStandardStreamsIsKept)
{
    auto const run = on_terminal([] {
        change_environment(sixteen_colors);
        depth_of(std::cout);
        set_depth(std::clog, color_depth::truecolor);
        ::setenv("NO_COLOR", "1", 1);
        report(depths());
    });
    EXPECT_EQ(run.report, "16 colours\nnone\n24 bit\n");
}

// ThreadSanitizer, which writes to standard error, has the last word here.
TEST(StreamDepth, OfStandardStreamsMayBeAskedByManyThreads)
{
    auto const run = on_terminal([] {
        change_environment(sixteen_colors);
        std::vector<std::string> answers(4);
        in_threads(4, [&answers](int i) { answers[static_cast<std::size_t>(i)] = depths(); });
        for (std::string const& answer : answers) {
            report(answer);
        }
    });
    std::string const each = "16 colours\n16 colours\n16 colours\n";
    EXPECT_EQ(run.report, each + each + each + each);
    EXPECT_EQ(run.err, "");
}

TEST(StreamDepth, LeavesErrnoAlone)
{
    auto const run = on_pipe([] {
        errno = 42;
        depth_of(std::cout);
        report(std::to_string(errno));
    });
    EXPECT_EQ(run.report, "42");
}

} // namespace
