#include <kestry/hueline_stream.hpp>

#include <kestry/kit/policy.hpp>

#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::kit;

void show_streams()
{
    for (std::ostream* const os : {&std::cout, &std::cerr, &std::clog}) {
        *os << kestry::Hueline::red << to_string(depth_of(*os)) << '\n';
    }
}

// Standard output has 256 colours, standard error none.
void use_different_answers()
{
    use_in_streams(color_policy({}, {.term = "xterm-256color", .out_is_terminal = true, .err_is_terminal = false}));
    show_streams();
}

TEST(UseInStreams, ColorizesEachByItsDescriptor)
{
    auto const run = on_terminal(use_different_answers);
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m256 colours\n)");
    EXPECT_EQ(readable(run.err), R"(none\nnone\n)");

    auto const other = on_terminal([] {
        use_in_streams(color_policy({}, {.term = "xterm", .out_is_terminal = false, .err_is_terminal = true}));
        show_streams();
    });
    EXPECT_EQ(readable(other.out), R"(none\n)");
    EXPECT_EQ(readable(other.err), R"(\e[00m\e[1m\e[31m16 colours\n\e[00m\e[1m\e[31m16 colours\n)");
}

TEST(UseInStreams, TakesColorAway)
{
    auto const run = on_terminal([] {
        use_in_streams(color_policy({color_when::always, color_depth::truecolor}));
        use_in_streams(color_policy({color_when::never}));
        show_streams();
    });
    EXPECT_EQ(readable(run.out), R"(none\n)");
    EXPECT_EQ(readable(run.err), R"(none\nnone\n)");
}

// The gate of the stream interface asks for a terminal besides.
TEST(UseInStreams, ForcesTheStylesAloneIntoAPipe)
{
    auto const run = on_pipe([] {
        use_in_streams(color_policy({color_when::always, color_depth::truecolor}));
        show_streams();
    });
    EXPECT_EQ(readable(run.out), R"(24 bit\n)");
    EXPECT_EQ(readable(run.err), R"(24 bit\n24 bit\n)");
}

TEST(UseInStreams, WritesNothingByItself)
{
    auto const run = on_terminal([] { use_in_streams(color_policy({color_when::always})); });
    EXPECT_EQ(run.out + run.err, "");
}

} // namespace
