// What a person sees of the demonstrations, on wide and on narrow screens.

#include "kestry/hueline_stream.hpp"

#include "support/look.hpp"
#include "support/clock.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

using Rows = std::vector<std::string>;

std::string bytes_of(std::ostream& (*demonstration)(std::ostream&))
{
    auto const run = on_terminal([&] {
        let_waits_end_at_once();
        std::cout << colorize << demonstration;
    });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.out;
}

// The look of a code in the grid, whose first row is that row of the screen.
struct SeenCode {
    int code;
    char const* look;
};

// clang-format off
SeenCode const codes[] = {
    {0, ""}, {1, "bold"}, {3, "italic"}, {4, "underline"}, {5, "blink"}, {7, "reverse"}, {9, "strike"},
    {10, ""}, {22, ""}, {23, ""}, {24, ""}, {25, ""}, {27, ""}, {29, ""}, {39, ""}, {49, ""},
    {30, "black"}, {31, "red"}, {32, "green"}, {33, "yellow"}, {34, "blue"}, {35, "magenta"}, {36, "cyan"}, {37, "white"},
    {40, "on black"}, {41, "on red"}, {42, "on green"}, {43, "on yellow"}, {44, "on blue"}, {45, "on magenta"},
    {46, "on cyan"}, {47, "on white"},
    {90, "bright black"}, {91, "bright red"}, {92, "bright green"}, {93, "bright yellow"}, {94, "bright blue"},
    {95, "bright magenta"}, {96, "bright cyan"}, {97, "bright white"},
    {100, "on bright black"}, {101, "on bright red"}, {102, "on bright green"}, {103, "on bright yellow"},
    {104, "on bright blue"}, {105, "on bright magenta"}, {106, "on bright cyan"}, {107, "on bright white"},
};
// clang-format on

TEST(SupportedMCodesSeen, InTheirLooks)
{
    Screen const screen(bytes_of(test_pattern_supported_m_codes));
    EXPECT_EQ(rows_of(screen, 2), (Rows{"reset colorize {bold}dark {}thin", " first 108 m codes:"}));
    for (SeenCode const& seen : codes) {
        int const row = 2 + seen.code / 10;
        int const last_digit = seen.code % 10 * 4 + 3;
        EXPECT_EQ(look_of(screen.cell(row, last_digit)), seen.look) << seen.code;
        EXPECT_EQ(screen.cell(row, last_digit).character, std::to_string(seen.code % 10)) << seen.code;
    }
}

TEST(SupportedMCodesSeen, FiveInARowOfANarrowScreen)
{
    Screen const screen(bytes_of(test_pattern_supported_m_codes), 40, 20);
    EXPECT_EQ(rows_of(screen, 2, 20), (Rows{"reset colorize {bold}dark ", "thin"}));
    EXPECT_EQ(screen.text(2), " first 108 m codes:");
    EXPECT_EQ(screen.text(3), "   0   1   2   3   4");
    EXPECT_EQ(screen.text(4), "   5   6   7   8   9");
    EXPECT_EQ(screen.text(24), " 105 106 107 108");
    for (SeenCode const& seen : codes) {
        EXPECT_EQ(look_of(screen.cell(3 + seen.code / 5, seen.code % 5 * 4 + 3)), seen.look) << seen.code;
    }
    EXPECT_EQ(screen.cursor(), (Position{26, 0}));
}

TEST(NormalResetSeen, InFull)
{
    Screen const screen(bytes_of(test_pattern_normal_reset));
    EXPECT_EQ(rows_of(screen, 19), (Rows{
                                       "reset colorize {bold}dark {}thin",
                                       "{white}white {white on red}on_red ",
                                       "{white on red italic}white {white on red italic underline}on_red ",
                                       "{white on red italic underline} before adjust ",
                                       "",
                                       "{white on red italic underline} after adjust ",
                                       "{white on red italic underline} before normal ",
                                       "",
                                       " after normal",
                                       " before adjust",
                                       "",
                                       "{white on red italic underline} after adjust ",
                                       "{white on red italic underline} before reset ",
                                       "",
                                       " after reset",
                                       " before adjust",
                                       "",
                                       "{bold} after adjust ",
                                       "",
                                   }));
    EXPECT_EQ(screen.cursor(), (Position{19, 0}));
}

TEST(MatrixSeen, OnScreensOfAnyWidth)
{
    // Two lines of 23 cells at most, and then lines that start with 14 cells in white on black and have eight names
    // of 11 cells.
    std::string const bytes = bytes_of(test_pattern_matrix);
    for (int const cols : {102, 80, 20}) {
        Screen const screen(bytes, 80, cols);
        int const first_row = cols < 23 ? 4 : 2;
        int const rows_of_a_line = (102 + cols - 1) / cols;
        for (int b = 0; b < 8; ++b) {
            auto const cell = [&](int at) {
                return screen.cell(first_row + b * rows_of_a_line + at / cols, at % cols);
            };
            EXPECT_EQ(look_of(cell(1)), "white on black bold") << b;
            for (int f = 0; f < 8; ++f) {
                EXPECT_EQ(cell(14 + 11 * f + 1).character,
                          std::string("brgybmcw").substr(static_cast<std::size_t>(f), 1));
                EXPECT_EQ(cell(14 + 11 * f + 1).foreground.index, f) << b << " " << f;
                EXPECT_EQ(cell(14 + 11 * f + 10).background.index, b) << b << " " << f;
            }
        }
    }
}

// The two passes of the greys: the first is bold.
void expect_greys(Screen const& screen, int first_row, int cells_in_a_row, bool bold)
{
    int const rows_of_a_line = (12 + cells_in_a_row - 1) / cells_in_a_row;
    for (int b = 0; b < 8; ++b) {
        for (int grey = 0; grey < 24; ++grey) {
            int const line = first_row + (2 * b + grey / 12) * rows_of_a_line;
            int const row = line + grey % 12 / cells_in_a_row;
            int const col = grey % 12 % cells_in_a_row * 4;
            for (int i = 0; i < 4; ++i) {
                Cell const cell = screen.cell(row, col + i);
                EXPECT_EQ(cell.foreground.index, 232 + grey) << row << " " << col;
                EXPECT_EQ(cell.background.index, b) << row << " " << col;
                EXPECT_EQ(cell.bold, bold) << row << " " << col;
            }
            EXPECT_EQ(screen.cell(row, col).character, " ");
            EXPECT_EQ(screen.cell(row, col + 1).character, grey < 8 ? "e" : "f");
            EXPECT_EQ(screen.cell(row, col + 2).character,
                      std::string("89abcdef0123456789abcdef").substr(static_cast<std::size_t>(grey), 1));
        }
    }
}

TEST(GreyscaleSeen, InItsColors)
{
    Screen const screen(bytes_of(test_pattern_greyscale), 40, 80);
    EXPECT_EQ(row_of(screen, 0), "reset colorize  232-255:  grayscale from black to white in 24 steps");
    expect_greys(screen, 1, 12, true);
    EXPECT_EQ(row_of(screen, 17), "reset colorize {bold}dark {}thin");
    EXPECT_EQ(row_of(screen, 18), " 232-255:  grayscale from black to white in 24 steps");
    expect_greys(screen, 19, 12, false);
    EXPECT_EQ(screen.cursor(), (Position{35, 0}));
}

TEST(GreyscaleSeen, OnANarrowScreen)
{
    Screen const screen(bytes_of(test_pattern_greyscale), 120, 20);
    EXPECT_EQ(rows_of(screen, 4, 20),
              (Rows{"reset colorize  232-", "255:  grayscale from", " black to white in 2", "4 steps"}));
    expect_greys(screen, 4, 5, true);
    EXPECT_EQ(row_of(screen, 4 + 48, 20), "reset colorize {bold}dark ");
    EXPECT_EQ(row_of(screen, 4 + 49, 20), "thin");
    expect_greys(screen, 4 + 50 + 3, 5, false);
}

TEST(CubeSeen, InItsColors)
{
    Screen const screen(bytes_of(test_pattern_rgb), 110, 90);
    EXPECT_EQ(row_of(screen, 0, 90), "reset colorize {bold}dark {}thin");
    EXPECT_EQ(row_of(screen, 1, 90), "16-231:  6 × 6 × 6 cube (216 colors): 16 + 36 × r + 6 × g + b (0 ≤ r, g, b ≤ 5)");
    EXPECT_EQ(screen.text(2), "0, 0, 0   0, 0, 1   0, 0, 2   0, 0, 3   0, 0, 4");
    EXPECT_EQ(screen.text(97), "15, 5, 0  15, 5, 1  15, 5, 2  15, 5, 3  15, 5, 4");
    for (int r = 0; r < 16; ++r) {
        for (int g = 0; g < 6; ++g) {
            for (int b = 0; b < 5; ++b) {
                Cell const cell = screen.cell(2 + 6 * r + g, 10 * b + 9); // the last of its ten
                EXPECT_EQ(cell.background.index, r) << r << g << b;
                EXPECT_FALSE(cell.bold) << r << g << b;
                int const code = 16 + 36 * r + 6 * g + b;
                if (code <= 255) {
                    EXPECT_EQ(cell.foreground.index, code) << r << g << b;
                }
            }
        }
    }
    EXPECT_EQ(screen.text(98), "");
    EXPECT_EQ(screen.cursor(), (Position{99, 0}));
}

// A bar of 51 cells ends in the second row, where the carriage return leads to its start. That row has scrolled in, and
// is blank in the colours of the cell that did not fit.
TEST(StatusLinePatternSeen, GoesDownAScreenThatIsNarrower)
{
    Screen const screen(bytes_of(test_pattern_status_line), 24, 40);
    std::string const done = "{green on black}[{cyan on black}#######################################";
    EXPECT_EQ(row_of(screen, 20, 40), done);
    EXPECT_EQ(row_of(screen, 21, 40), done);
    EXPECT_EQ(row_of(screen, 22, 40), done);
    EXPECT_EQ(row_of(screen, 23, 40),
              "{cyan on black}##########{green on black}]{cyan on black}                             ");
    EXPECT_EQ(screen.cursor(), (Position{23, 11}));
}

TEST(ProgressLinePatternSeen, InPlaceOnANarrowScreen)
{
    std::string const bytes = bytes_of(test_pattern_progress_line);
    std::vector<std::string_view> const frames = frame_ends(bytes);
    ASSERT_EQ(frames.size(), 150U);
    auto const row_after = [&](std::size_t frame) { return row_of(Screen(frames[frame], 24, 20), 0, 20); };
    EXPECT_EQ(row_after(0), "{green on black}({cyan on black}completed {white on black}0%{green on black})");
    EXPECT_EQ(row_after(74), "{green on black}({cyan on black}completed {white on black}48%{green on black})");
    EXPECT_EQ(row_after(149), "{green on black}({cyan on black}completed {white on black}100%{green on black})");
}

TEST(TemplateSeen, AsPlainText)
{
    EXPECT_EQ(rows_of(Screen(bytes_of(crossplatform_template)), 6),
              (Rows{"this is a cross platform template", "there is no need to sudivide this section",
                    "into Linux and Windows areas as this code", "will run on all platfoms without specific needs",
                    "for either platform Windows or Linux", ""}));
    EXPECT_EQ(rows_of(Screen(bytes_of(platformspecific_template)), 6),
              (Rows{"this is a platform specific template", "externally the interface is the same",
                    "internally the implementation is specific", "to either Linux in this case",
                    "or Windows in the below case", ""}));
}

TEST(TemplateSeen, InTheColorsBeforeItUnlessItIsPlatformspecific)
{
    auto const first_row = [](std::ostream& (*text)(std::ostream&)) {
        auto const run = on_terminal([&] { std::cout << colorize << thin << red << text; });
        return row_of(Screen(run.out), 0);
    };
    EXPECT_EQ(first_row(crossplatform_template), "{red}this is a cross platform template");
    EXPECT_EQ(first_row(platformspecific_template), "this is a platform specific template");
}

TEST(TemplateSeen, InWhiteOnGreenWhichStays)
{
    auto const rows_after = [](std::ostream& (*text)(std::ostream&)) {
        auto const run = on_terminal([&] { std::cout << colorize << text << "x"; });
        return rows_of(Screen(run.out), 3);
    };
    EXPECT_EQ(rows_after(colorized_crossplatform_template),
              (Rows{"{white on green bold} will only display in color if colorize has been called ",
                    "{white on green bold} and this works on both Windows and Linux ", "{white on green bold}x"}));
    EXPECT_EQ(rows_after(colorized_platformspecific_template),
              (Rows{"{white on green bold} will display (in Linux) color if colorize ",
                    "{white on green bold} has been called and this works on Linux ", "{white on green bold}x"}));
}

TEST(BannerSeen, OnANarrowScreen)
{
    Screen const screen(bytes_of(build_version), 2000, 20);
    EXPECT_EQ(rows_of(screen, 11, 20), (Rows{
                                           "{green bold}Kestry Hueline Libra",
                                           "{green bold}ry (Hueline)",
                                           "{green}hueline version 0.2.",
                                           "{green}2-r0 <hueline@kestry",
                                           "{green}.example>",
                                           "{green}Copyright (C) 2026 K",
                                           "{green}estry. All rights re",
                                           "{green}served.",
                                           "{green}Hueline ver. {white}0.2.2-r",
                                           "{white}0",
                                           "",
                                       }));
    EXPECT_EQ(row_of(screen, 11, 20), "reset colorize {bold}dark ");
}

// What comes after it has the colours from before it.
TEST(BannerSeen, GivesBackTheForeground)
{
    auto const run = on_terminal([] {
        let_waits_end_at_once();
        std::cout << colorize << thin << red << underline << build_version << csi::cls << csi::cup{1, 1};
        std::cout << adjust << "x";
    });
    EXPECT_EQ(look_of(Screen(run.out).cell(0, 0)), "red underline");
}

} // namespace
