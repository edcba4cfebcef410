// Both interfaces in constructors and destructors of a program's static objects, in exit handlers and in children of a
// process; several threads, each with a stream of its own.

#include "kestry/hueline_stream.hpp"

#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

std::string const constructed = R"(\e[00m\e[1m\e[31mfirst\n)"
                                R"(\e[00m\e[1m\e[3m\e[31m41 42 second\n)"
                                R"(\e[34mthird\n)"
                                R"(\e[32m43 \e[0m\n)";
std::string const in_main = R"(\e[00m\e[1m\e[3m\e[35mmain\n)";
std::string const after_main = R"(\e[00m\e[1m\e[3m\e[4m\e[35mat exit\n)"
                               R"(\e[32m43 \e[0mdump's end\n)"
                               R"(\e[33mthird's end\n)"
                               R"(\e[00m\e[1m\e[4m\e[35m41 42 second's end\n)"
                               R"(first's end, without colour: the guard in second.cpp took it\n)"
                               R"(\e[00m\e[25h\e[00m\e[1m\e[34mthe last words\n)";

// The child, with reverse on, and the parent, which knows nothing of it.
std::string const forked = R"(\e[00m\e[1m\e[3m\e[7m\e[35mchild\n)"
                           R"(\e[00m\e[1m\e[3m\e[4m\e[7m\e[35mat exit\n)"
                           R"(\e[32m43 \e[0mdump's end\n)"
                           R"(\e[33mthird's end\n)"
                           R"(\e[00m\e[1m\e[4m\e[7m\e[35m41 42 second's end\n)"
                           R"(first's end, without colour: the guard in second.cpp took it\n)"
                           R"(\e[00m\e[25h\e[00m\e[1m\e[34mthe last words\n)"
                           R"(\e[9mparent\n)";

// Linked with the shared object, and with a static library.
class StaticObjects : public testing::TestWithParam<char const*> {};

INSTANTIATE_TEST_SUITE_P(Programs, StaticObjects, testing::Values(HUELINE_PROGRAMS),
                         [](auto const& program) { return program.index == 0 ? "Shared" : "Static"; });

TEST_P(StaticObjects, UseBothInterfacesFromTheirConstructorsToTheirDestructorsHoweverTheProgramEnds)
{
    std::pair<std::string, std::string> const endings[] = {
        {"return", after_main},
        {"exit", after_main},
        {"quick_exit", R"(\e[00m\e[1m\e[3m\e[4m\e[35mat quick exit\n)"}, // left undestroyed
        {"fclose", ""},                                                  // outlive standard output
        {"fork", forked + after_main}};
    for (auto const& [ending, written] : endings) {
        auto const run = run_program({}, {GetParam(), ending});
        EXPECT_EQ(readable(run.out), constructed + in_main + written) << ending;
        EXPECT_EQ(run.err, "");
        EXPECT_EQ(run.status, 0);
    }
}

TEST_P(StaticObjects, WriteTheirTextAloneToAPipe)
{
    auto const run = run_program(on_pipes, {GetParam()});
    // What the string interface colours does not depend on the stream.
    EXPECT_EQ(readable(run.out), R"(first\n41 42 second\n\e[34mthird\n\e[32m43 \e[0m\nmain\nat exit\n)"
                                 R"(\e[32m43 \e[0mdump's end\n\e[33mthird's end\n41 42 second's end\n)"
                                 R"(first's end, without colour: the guard in second.cpp took it\nthe last words\n)");
    EXPECT_EQ(run.status, 0);
}

// Runs body in a child, which leaves without a trace of its own.
void in_child(void (*body)())
{
    std::cout << std::flush;
    pid_t const child = fork();
    if (child == 0) {
        body();
        std::cout << std::flush;
        _exit(0);
    }
    int state = -1;
    waitpid(child, &state, 0);
    report(WIFEXITED(state) && WEXITSTATUS(state) == 0 ? "" : "the child failed ");
}

TEST(ForkedChild, HasTheRecordAndTheModesOfItsParent)
{
    auto const run = on_terminal([] {
        std::cout << colorize << thin << italic << on_blue << push << red;
        _setNoFrillsMode(true);
        in_child([] {
            report(_getNoFrillsMode() ? "no frills" : "frills");
            _setNoFrillsMode(false);
            std::cout << adjust << pull << adjust;
        });
    });
    EXPECT_EQ(run.report, "no frills");
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[00m\e[3m\e[00m\e[3m\e[44m\e[00m\e[3m\e[31m\e[44m)" // the parent
                                 R"(\e[00m\e[3m\e[31m\e[44m\e[00m\e[3m)");                      // the child
}

TEST(ForkedChild, LeavesTheRecordAndTheModesOfItsParent)
{
    auto const run = on_terminal([] {
        std::cout << colorize << red;
        in_child([] {
            std::cout << on_green << dark << push << nocolorize;
            _setNoFrillsMode(true);
            std::ostringstream os;
            os << spinner{"|/", ""};
        });
        std::cout << adjust << pull << adjust << spinner{"|/", ""};
        report(_getNoFrillsMode() ? "no frills" : "frills");
    });
    EXPECT_EQ(run.report, "frills");
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m)"                                   // the parent
                                 R"(\e[00m\e[1m\e[31m\e[42m\e[00m\e[1m\e[2m\e[31m\e[42m)" // the child
                                 R"(\e[00m\e[1m\e[31m\e[00m\e[1m/)");                     // the parent
}

int constexpr threads_at_once = 4;
int constexpr times_each = 500;

// What body returns, joined over its runs in several threads; nothing where all of them gave expected.
std::string unlike(std::string const& expected, std::string (*body)())
{
    std::vector<std::string> differing(threads_at_once);
    std::vector<std::thread> threads;
    for (std::string& of_thread : differing) {
        threads.emplace_back([&of_thread, &expected, body] {
            for (int i = 0; i < times_each && of_thread.empty(); ++i) {
                std::string const got = body();
                of_thread = got == expected ? "" : got;
            }
        });
    }
    std::string all;
    for (std::thread& each : threads) {
        each.join();
    }
    for (std::string const& of_thread : differing) {
        all += of_thread;
    }
    return all;
}

TEST(Threads, DumpAtOnce)
{
    auto const dump = [] {
        std::vector<unsigned char> const bytes(20, 0xab);
        std::ostringstream os;
        os << HexDump('A') << HexDump(0x1234UL) << HexDump(std::string("AB")) << HexDump::raw_data_byte(0xff)
           << HexDump(bytes);
        return os.str();
    };
    EXPECT_EQ(
        unlike("410000123441 42 ffab ab ab ab ab ab ab ab ab ab ab ab ab ab ab ab ab ab ab  ... (20 bytes) ", dump),
        "");
}

TEST(Threads, BuildStringsAtOnce)
{
    auto const build = [] { return csi::color(1) + csi::rgb(1, 2, 3) + csi::on_rgb(4, 5, 6) + col("red") + '|'; };
    EXPECT_EQ(unlike("\x1b[1m\x1b[38;2;1;2;3m\x1b[48;2;4;5;6mred       |", build), "");
}

// The library's state is shared without locks. It is written here, and always to the same value.
TEST(Threads, WriteToStreamsOfTheirOwnAtOnce)
{
    auto const run = on_terminal([] {
        auto const write = [] {
            std::ostringstream os;
            os << colorize << bold << red << on_rgb{1, 2, 3} << ColorTheme::info("text") << csi::cup{1, 2} << normal
               << progress_meter{1, 0, 4, col(""), "(", ")", ""} << push << pull << color_mode_state;
            return os.str();
        };
        report(unlike("text(           25%) use color mode is off \n (you should not be seeing color) \n", write));
        std::cout << colorize << red;
    });
    EXPECT_EQ(run.report, "");
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[1m\e[31m)");
    EXPECT_EQ(run.status, 0);
}

} // namespace
