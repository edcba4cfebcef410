#include "examples/files.hpp"
#include "support/screen.hpp"

namespace {

using namespace hueline::test;

std::string const sample = examples / "frame_monitor.capture";

std::string view(std::string const& input) { return run_program(on_pipes, {EXAMPLE}, {.input = input}).out; }

TEST(Hexview, ShowsTheSample)
{
    Outcome const run = run_program(on_pipes, {EXAMPLE, sample});
    EXPECT_EQ(run.out, contents_of("hexview.expected"));
    EXPECT_EQ(run.err, "");
    EXPECT_EQ(run.status, 0);
}

TEST(Hexview, ShowsTheSampleInColor)
{
    Launch const launch = {.environment = sixteen_colors};
    Outcome const run = run_program(on_terminals, {EXAMPLE, sample}, launch);
    EXPECT_EQ(readable_lines(run.out), contents_of("hexview.terminal.expected"));
    // The columns stand where they do without colour, in the short last line too.
    Screen const screen{run.out};
    EXPECT_EQ(screen.text(0), "00000000  10 07 49 44 3f c1 f3 00  0f 49 44 20 4b 65 73 74  |..ID?....ID Kest|");
    EXPECT_EQ(screen.text(7), "00000070  4f 47                                             |OG|");
}

TEST(Hexview, ReadsStandardInput)
{
    EXPECT_EQ(view(contents_of("frame_monitor.capture")), contents_of("hexview.expected"));
    EXPECT_EQ(view(""), "");
}

TEST(Hexview, ShowsAnyByteAndNoneAsItIs)
{
    std::string all;
    for (int value = 0; value < 256; ++value) {
        all += static_cast<char>(value);
    }
    std::string const shown = view(all);
    EXPECT_EQ(shown.find_first_not_of(" !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\\]^_`"
                                      "abcdefghijklmnopqrstuvwxyz{|}~\n"),
              std::string::npos);
    EXPECT_NE(shown.find("00000070  70 71 72 73 74 75 76 77  78 79 7a 7b 7c 7d 7e 7f  |pqrstuvwxyz{|}~.|\n"),
              std::string::npos);
    EXPECT_NE(shown.find("000000f0  f0 f1 f2 f3 f4 f5 f6 f7  f8 f9 fa fb fc fd fe ff  |................|\n"),
              std::string::npos);
}

TEST(Hexview, FillsAShortLineSoThatTheTextStaysInItsColumn)
{
    EXPECT_EQ(view("A"), "00000000  41                                                |A|\n"
                         "00000001\n");
    EXPECT_EQ(view("0123456789abcdef"),
              "00000000  30 31 32 33 34 35 36 37  38 39 61 62 63 64 65 66  |0123456789abcdef|\n"
              "00000010\n");
}

TEST(Hexview, SaysWhatItCannotDo)
{
    expect_refusal({"/nonexistent"}, "hexview: cannot open /nonexistent: No such file or directory\n", 1);
    expect_refusal({"/\x1b[2J"}, "hexview: cannot open /\\x1b[2J: No such file or directory\n", 1);
    expect_refusal({"/"}, "hexview: cannot read /: Is a directory\n", 1);
    expect_refusal({sample}, "hexview: cannot write to standard output: No space left on device\n", 1, Sink::full);
    expect_refusal({sample, sample}, "usage: hexview [FILE]\n", 2);
    expect_refusal_of_input("</", "hexview: cannot read standard input: Is a directory\n", 1);
    expect_refusal_of_input("<&-", "hexview: cannot read standard input: Bad file descriptor\n", 1);
}

} // namespace
