// What a person sees of spinners, status lines and progress meters, frame by frame.

#include "stream_bytes.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Body = std::function<void(std::ostream&)>;

std::string const bar_frames = "|/-\\";
std::string const label = "copied";

// The first row after each frame.
Rows rows_after_frames(Body const& body, int cols = 80)
{
    std::string const bytes = bytes_of(body);
    Rows rows;
    for (std::string_view const written : frame_ends(bytes)) {
        Screen const screen(written, 24, cols);
        rows.push_back(row_of(screen, 0, cols));
        EXPECT_EQ(screen.cursor().row, 0);
    }
    return rows;
}

// A bar of 0 to end, green as far as it is done, with a yellow spinner at its head.
void draw_bar(std::ostream& os, int position, int end)
{
    std::string const done = csi::color(32) + "#";
    os << csi::cr
       << status_line{position,      0, end, done, csi::color(37) + ".", "[", csi::color(0) + "]", bar_frames,
                      csi::color(93)};
}

void draw_meter(std::ostream& os, int position)
{
    os << csi::cr << progress_meter{position, 0, 4, label, "(", csi::color(0) + ")", csi::color(36)};
}

TEST(SpinnerSeen, TurningInPlace)
{
    EXPECT_EQ(rows_after_frames([](std::ostream& os) {
                  os << thin << red << on_white;
                  for (int i = 0; i < 4; ++i) {
                      os << csi::cr << spinner{bar_frames, "busy " + csi::color(36)};
                  }
                  os << csi::cr << normal << "|";
              }),
              (Rows{"{red on white}busy {cyan on white}/", "{cyan on white}busy -", "{cyan on white}busy \\",
                    "{cyan on white}busy |", "|{cyan on white}usy |"}));
}

TEST(StatusLineSeen, FromItsStartToItsEnd)
{
    EXPECT_EQ(
        rows_after_frames([](std::ostream& os) {
            for (int position = 0; position <= 5; ++position) {
                draw_bar(os, position, 5);
            }
        }),
        (Rows{"[{white}.....{}]", "[{green}#{bright yellow}/{white}...{}]", "[{green}##{bright yellow}-{white}..{}]",
              "[{green}###{bright yellow}\\{white}.{}]", "[{green}####{bright yellow}|{}]", "[{green}#####{}]"}));
}

// Before its start and past its end a bar is wider; the next one does not cover all of it.
TEST(StatusLineSeen, LeavesTheEndOfAWiderOneBehind)
{
    EXPECT_EQ(rows_after_frames([](std::ostream& os) {
                  for (int const position : {7, 5, -1, 0}) {
                      draw_bar(os, position, 5);
                  }
                  os << csi::el{0};
              }),
              (Rows{"[{green}#######{}]", "[{green}#####{}]{green}#{}]", "[{white}......{}]]", "[{white}.....{}]"}));
}

// The carriage return leads to the start of the row that the bar ends in, so each frame is a row further down.
TEST(StatusLineSeen, GoesDownTheScreenWhereItIsWider)
{
    Screen const screen = screen_after(
        [](std::ostream& os) {
            for (int const position : {0, 12, 24}) {
                draw_bar(os, position, 24);
            }
        },
        24, 20);
    EXPECT_EQ(rows_of(screen, 4, 20),
              (Rows{"[{white}...................", "[{green}############{bright yellow}/{white}......",
                    "[{green}###################", "{green}#####{}]"}));
    EXPECT_EQ(screen.cursor(), (Position{3, 6}));
}

TEST(ProgressMeterSeen, FromNothingToAllAndBack)
{
    EXPECT_EQ(rows_after_frames([](std::ostream& os) {
                  for (int const position : {0, 1, 2, 4, 1}) {
                      draw_meter(os, position);
                  }
              }),
              (Rows{"(copied {cyan}0%{})", "(copied {cyan}25%{})", "(copied {cyan}50%{})", "(copied {cyan}100%{})",
                    "(copied {cyan}25%{}))"})); // the end of a wider one stays behind
}

TEST(ProgressMeterSeen, AsWideAsItsWidthHasIt)
{
    EXPECT_EQ(rows_after_frames([](std::ostream& os) {
                  for (int const position : {4, 1, 0}) {
                      os << std::setw(3);
                      draw_meter(os, position);
                  }
              }),
              (Rows{"(copied {cyan}100%{})", "(copied {cyan} 25%{})", "(copied {cyan}  0%{})"}));
}

TEST(IndicatorSeen, TheSameWithoutColorizeAndInNoFrillsMode)
{
    for (bool const no_frills : {false, true}) {
        EXPECT_EQ(first_row([&](std::ostream& os) {
                      _setNoFrillsMode(no_frills);
                      draw_bar(os << nocolorize, 2, 5);
                      os << " " << progress_meter{1, 0, 4, label, "(", ")", csi::color(36)};
                      os << spinner{bar_frames, csi::color(31) + " "};
                  }),
                  "[{green}##{bright yellow}/{white}..{}] (copied {cyan}25%){red} -");
    }
}

} // namespace
