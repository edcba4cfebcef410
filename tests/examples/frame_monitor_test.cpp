#include "examples/files.hpp"

namespace {

using namespace hueline::test;

std::string const capture = examples / "frame_monitor.capture";

// Text that is as long as the literal, null bytes included.
template <std::size_t size>
std::string bytes(char const (&literal)[size])
{
    return {literal, size - 1};
}

Outcome monitor(std::string const& input) { return run_program(on_pipes, {EXAMPLE}, {.input = input}); }

TEST(FrameMonitor, ShowsTheSampleCapture)
{
    Outcome const run = run_program(on_pipes, {EXAMPLE, capture});
    EXPECT_EQ(run.out, contents_of("frame_monitor.expected"));
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 1); // frames in it are damaged
}

TEST(FrameMonitor, ShowsTheSampleCaptureInColor)
{
    Launch const launch = {.environment = sixteen_colors};
    Outcome const run = run_program(on_terminals, {EXAMPLE, capture}, launch);
    EXPECT_EQ(readable_lines(run.out), contents_of("frame_monitor.terminal.expected"));
}

TEST(FrameMonitor, ReadsStandardInput)
{
    Outcome const run = monitor(contents_of("frame_monitor.capture"));
    EXPECT_EQ(run.out, contents_of("frame_monitor.expected"));
    EXPECT_EQ(run.status, 1);
}

// 0xc1f3 is what Python's binascii.crc_hqx gives for the five bytes before it, starting with 0xffff.
TEST(FrameMonitor, ExitsWithZeroIfAllFramesAreSound)
{
    Outcome const run = monitor("\x10\x07ID?\xc1\xf3");
    EXPECT_EQ(run.out, "request   10 07 49 44 3f c1 f3 \n");
    EXPECT_EQ(run.status, 0);
}

TEST(FrameMonitor, TakesAnEmptyCaptureAsSound)
{
    Outcome const run = monitor("");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 0);
}

TEST(FrameMonitor, FindsAnyDamagedBit)
{
    std::string const frame = "\x10\x07ID?\xc1\xf3";
    for (std::size_t bit = 0; bit < 8 * frame.size(); ++bit) {
        SCOPED_TRACE(bit);
        std::string damaged = frame;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << bit % 8));
        Outcome const run = monitor(damaged + frame);
        EXPECT_EQ(run.out.rfind("damaged   ", 0), 0U);
        EXPECT_EQ(run.out.substr(run.out.find('\n') + 1), "request   10 07 49 44 3f c1 f3 \n");
        EXPECT_EQ(run.status, 1);
    }
}

TEST(FrameMonitor, FindsTheFrameBehindOneStrayByte)
{
    EXPECT_EQ(monitor("\x55\x10\x07ID?\xc1\xf3").out, "damaged   55 \nrequest   10 07 49 44 3f c1 f3 \n");
}

TEST(FrameMonitor, ReadsNoFrameFromACountThatIsTooSmallOrTooLarge)
{
    EXPECT_EQ(monitor(bytes("\x10\x00\xff\xff")).out, "damaged   10 00 ff ff \n"); // 0xffff: of no bytes
    EXPECT_EQ(monitor(bytes("\x10\x02\x00\x00")).out, "damaged   10 02 00 00 \n");
    EXPECT_EQ(monitor(bytes("\x10\x08ID?\xc1\xf3")).out, "damaged   10 08 49 44 3f c1 f3 \n");
    EXPECT_EQ(monitor(bytes("\x10")).out, "damaged   10 \n");
    EXPECT_EQ(monitor(bytes("\x00\xff\x39\xe3")).out, "damaged   00 ff 39 e3 \n"); // 0x39e3: of all there is
}

TEST(FrameMonitor, SaysWhatItCannotDo)
{
    expect_refusal({"/nonexistent"}, "frame_monitor: cannot open /nonexistent: No such file or directory\n", 2);
    expect_refusal({"/\x1b[2J"}, "frame_monitor: cannot open /\\x1b[2J: No such file or directory\n", 2);
    expect_refusal({"/"}, "frame_monitor: cannot read /: Is a directory\n", 2);
    expect_refusal({capture}, "frame_monitor: cannot write to standard output: No space left on device\n", 2,
                   Sink::full);
    expect_refusal({capture, capture}, "frame_monitor: usage: frame_monitor [CAPTURE]\n", 2);
    expect_refusal_of_input("</", "frame_monitor: cannot read standard input: Is a directory\n", 2);
    expect_refusal_of_input("<&-", "frame_monitor: cannot read standard input: Bad file descriptor\n", 2);
}

TEST(FrameMonitor, SaysThatMemoryRanOut)
{
    std::string const limit = "--data=" + std::to_string(8 * 1024 * 1024);
    if (run_program(on_pipes, {"prlimit", limit, EXAMPLE}, {.input = ""}).status != 0) {
        GTEST_SKIP() << "this build needs more memory to start";
    }
    Outcome const run = run_program(on_pipes, {"prlimit", limit, EXAMPLE, "/dev/zero"}); // has no end
    EXPECT_EQ(run.err, "frame_monitor: out of memory\n");
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 2);
}

} // namespace
