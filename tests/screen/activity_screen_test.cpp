// What a person sees of spinners, status lines and progress meters, frame by frame.

#include "kestry/hueline_stream.hpp"

#include "support/look.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Body = std::function<void(std::ostream&)>;
using Rows = std::vector<std::string>;

std::string const bar_frames = "|/-\\";

std::string bytes_of(Body const& body)
{
    auto const run = on_terminal([&] { body(std::cout); });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.out;
}

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

void draw_meter(std::ostream& os, int position, int end)
{
    std::string const label = "copied";
    os << csi::cr << progress_meter{position, 0, end, label, "(", csi::color(0) + ")", csi::color(36)};
}

TEST(SpinnerSeen, TurningInPlace)
{
    EXPECT_EQ(rows_after_frames([](std::ostream& os) {
                  for (int i = 0; i < 5; ++i) {
                      os << csi::cr << spinner{bar_frames, csi::color(33) + "busy " + csi::color(36)};
                  }
              }),
              (Rows{"{yellow}busy {cyan}/", "{yellow}busy {cyan}-", "{yellow}busy {cyan}\\", "{yellow}busy {cyan}|",
                    "{yellow}busy {cyan}/"}));
}

TEST(SpinnerSeen, InTheColorsThatAreCurrent)
{
    std::string const bytes = bytes_of([](std::ostream& os) {
        os << colorize << thin << red << on_white << spinner{bar_frames, "busy "} << normal << "|";
    });
    Screen const screen(bytes);
    EXPECT_EQ(row_of(screen, 0), "{red on white}busy /{}|");
    EXPECT_EQ(screen.cursor(), (Position{0, 7}));
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
              }),
              (Rows{"[{green}#######{}]", "[{green}#####{}]{green}#{}]", "[{white}......{}]]", "[{white}.....{}]]]"}));
    EXPECT_EQ(rows_after_frames([](std::ostream& os) {
                  os << colorize;
                  draw_bar(os, 7, 5);
                  draw_bar(os, 5, 5);
                  os << csi::el{0};
              }),
              (Rows{"[{green}#######{}]", "[{green}#####{}]"}));
}

TEST(StatusLineSeen, AsWideAsTheScreen)
{
    EXPECT_EQ(rows_after_frames(
                  [](std::ostream& os) {
                      for (int const position : {0, 9, 18}) {
                          draw_bar(os, position, 18);
                      }
                  },
                  20),
              (Rows{"[{white}..................{}]", "[{green}#########{bright yellow}/{white}........{}]",
                    "[{green}##################{}]"}));
}

// The carriage return leads to the start of the row that the bar ends in, so each frame is a row further down.
TEST(StatusLineSeen, GoesDownTheScreenWhereItIsWider)
{
    Screen const screen(bytes_of([](std::ostream& os) {
                            for (int const position : {0, 12, 24}) {
                                draw_bar(os, position, 24);
                            }
                        }),
                        24, 20);
    EXPECT_EQ(rows_of(screen, 4, 20),
              (Rows{"[{white}...................", "[{green}############{bright yellow}/{white}......",
                    "[{green}###################", "{green}#####{}]"}));
    EXPECT_EQ(screen.cursor(), (Position{3, 6}));
}

TEST(ProgressMeterSeen, FromNothingToAll)
{
    EXPECT_EQ(rows_after_frames([](std::ostream& os) {
                  for (int position = 0; position <= 4; ++position) {
                      draw_meter(os, position, 4);
                  }
              }),
              (Rows{"(copied {cyan}0%{})", "(copied {cyan}25%{})", "(copied {cyan}50%{})", "(copied {cyan}75%{})",
                    "(copied {cyan}100%{})"}));
}

TEST(ProgressMeterSeen, LeavesTheEndOfAWiderOneBehind)
{
    EXPECT_EQ(rows_after_frames([](std::ostream& os) {
                  draw_meter(os, 4, 4);
                  draw_meter(os, 1, 4);
                  draw_meter(os, 0, 4);
              }),
              (Rows{"(copied {cyan}100%{})", "(copied {cyan}25%{}))", "(copied {cyan}0%{})))"}));
}

TEST(ProgressMeterSeen, AsWideAsItsWidthHasIt)
{
    EXPECT_EQ(rows_after_frames([](std::ostream& os) {
                  for (int const position : {4, 1, 0}) {
                      os << std::setw(3);
                      draw_meter(os, position, 4);
                  }
              }),
              (Rows{"(copied {cyan}100%{})", "(copied {cyan} 25%{})", "(copied {cyan}  0%{})"}));
}

TEST(IndicatorSeen, TheSameWithoutColorizeAndInNoFrillsMode)
{
    auto const draw = [](std::ostream& os) {
        draw_bar(os, 2, 5);
        os << " ";
        std::string const label = "copied";
        os << progress_meter{1, 0, 4, label, "(", ")", csi::color(36)} << spinner{bar_frames, csi::color(31) + " "};
    };
    std::string const seen = "[{green}##{bright yellow}/{white}..{}] (copied {cyan}25%){red} -";
    EXPECT_EQ(row_of(Screen(bytes_of(draw)), 0), seen);
    EXPECT_EQ(row_of(Screen(bytes_of([&](std::ostream& os) {
                         _setNoFrillsMode(true);
                         draw(os << colorize);
                     })),
                     0),
              seen);
    EXPECT_EQ(row_of(Screen(bytes_of([&](std::ostream& os) { draw(os << colorize); })), 0), seen);
}

} // namespace
