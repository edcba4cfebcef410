// What a person sees of the demonstrations, on wide and on narrow screens.

#include "stream_bytes.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

Screen screen_of(std::ostream& (*demonstration)(std::ostream&), int rows = 24, int cols = 80)
{
    return screen_after([=](std::ostream& os) { os << demonstration; }, rows, cols);
}

std::string const colors[] = {"black", "red", "green", "yellow", "blue", "magenta", "cyan", "white"};

// The look of a code in the grid.
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
    Screen const screen = screen_of(test_pattern_supported_m_codes);
    EXPECT_EQ(rows_of(screen, 2), (Rows{"reset colorize {bold}dark {}thin", " first 108 m codes:"}));
    for (SeenCode const& seen : codes) {
        int const row = 2 + seen.code / 10;
        int const last_digit = seen.code % 10 * 4 + 3;
        EXPECT_EQ(look_of(screen.cell(row, last_digit)), seen.look) << seen.code;
        EXPECT_EQ(screen.cell(row, last_digit).character, std::to_string(seen.code % 10)) << seen.code;
    }
}

TEST(NormalResetSeen, InFull)
{
    Screen const screen = screen_of(test_pattern_normal_reset);
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
    std::string const bytes = bytes_of([](std::ostream& os) { os << test_pattern_matrix; });
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
                EXPECT_EQ(cell(14 + 11 * f + 1).character, colors[f].substr(0, 1)) << b;
                EXPECT_EQ(look_of(cell(14 + 11 * f + 10)), colors[f] + " on " + colors[b] + " bold");
            }
        }
    }
}

TEST(PaletteSeen, InItsColors)
{
    Screen const screen = screen_of(test_pattern_256bit, 24, 100);
    for (int b = 0; b < 16; ++b) {
        int const row = b < 8 ? 2 + b : 4 + b; // below a heading of two lines each
        EXPECT_EQ(screen.text(row), "color     color     color     color     color     color     color     color") << b;
        for (int f = 0; f < 8; ++f) {
            std::string const bright = b < 8 ? "" : "bright ";
            EXPECT_EQ(look_of(screen.cell(row, 10 * f)), bright + colors[f] + " on " + bright + colors[b % 8]) << b;
        }
    }
    EXPECT_EQ(screen.cursor(), (Position{21, 0}));
}

// One of the two passes of the greys: the first is bold.
void expect_greys(Screen const& screen, int first_row, bool bold)
{
    for (int b = 0; b < 8; ++b) {
        for (int grey = 0; grey < 24; ++grey) {
            int const row = first_row + 2 * b + grey / 12;
            std::string text;
            for (int col = grey % 12 * 4; col < grey % 12 * 4 + 4; ++col) {
                Cell const cell = screen.cell(row, col);
                text += cell.character;
                EXPECT_EQ(look_of(cell), std::to_string(232 + grey) + " on " + colors[b] + (bold ? " bold" : ""))
                    << row << " " << col;
            }
            char const digit = "89abcdef0123456789abcdef"[grey];
            EXPECT_EQ(text, std::string(grey < 8 ? " e" : " f") + digit + " ") << row;
        }
    }
}

TEST(GreyscaleSeen, InItsColors)
{
    Screen const screen = screen_of(test_pattern_greyscale, 40, 80);
    EXPECT_EQ(row_of(screen, 0), "reset colorize  232-255:  grayscale from black to white in 24 steps");
    expect_greys(screen, 1, true);
    EXPECT_EQ(row_of(screen, 17), "reset colorize {bold}dark {}thin");
    EXPECT_EQ(row_of(screen, 18), " 232-255:  grayscale from black to white in 24 steps");
    expect_greys(screen, 19, false);
    EXPECT_EQ(screen.cursor(), (Position{35, 0}));
}

TEST(CubeSeen, InItsColors)
{
    Screen const screen = screen_of(test_pattern_rgb, 110, 90);
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

// After the frame of a number.
std::string frame_of(std::ostream& (*animation)(std::ostream&), std::size_t number, int row = 0, int cols = 80)
{
    std::string const bytes = bytes_of([=](std::ostream& os) { os << animation; });
    std::vector<std::string_view> const frames = frame_ends(bytes);
    EXPECT_EQ(frames.size(), 150U);
    return row_of(Screen(frames.at(number), 24, cols), row, cols);
}

TEST(StatusLinePatternSeen, FillingItsBar)
{
    std::string const opening = "{green on black}[";
    std::string const closing = "{green on black}]";
    EXPECT_EQ(frame_of(test_pattern_status_line, 0), opening + "{white on black}" + std::string(49, '.') + closing);
    EXPECT_EQ(frame_of(test_pattern_status_line, 60), opening + "{cyan on black}" + std::string(20, '#') +
                                                          "{bright yellow on black}-{white on black}" +
                                                          std::string(28, '.') + closing);
    EXPECT_EQ(frame_of(test_pattern_status_line, 149), opening + "{cyan on black}" + std::string(49, '#') + closing);
}

// A bar of 51 cells ends in the second row, where the carriage return leads to its start.
TEST(StatusLinePatternSeen, GoesDownAScreenThatIsNarrower)
{
    std::string const full_row = "{green on black}[{cyan on black}" + std::string(39, '#');
    EXPECT_EQ(frame_of(test_pattern_status_line, 149, 22, 40), full_row);
    EXPECT_EQ(frame_of(test_pattern_status_line, 149, 21, 40), full_row);
}

TEST(ProgressLinePatternSeen, InPlaceOnANarrowScreen)
{
    std::string const start = "{green on black}({cyan on black}completed {white on black}";
    EXPECT_EQ(frame_of(test_pattern_progress_line, 0, 0, 20), start + "0%{green on black})");
    EXPECT_EQ(frame_of(test_pattern_progress_line, 74, 0, 20), start + "48%{green on black})");
    EXPECT_EQ(frame_of(test_pattern_progress_line, 149, 0, 20), start + "100%{green on black})");
}

TEST(TemplateSeen, InTheColorsThatItSetsOrLeaves)
{
    auto const rows_after = [](std::ostream& (*text)(std::ostream&)) {
        return rows_of(screen_after([=](std::ostream& os) { os << thin << red << text << "x"; }), 3);
    };
    EXPECT_EQ(rows_after(crossplatform_template).front(), "{red}this is a cross platform template");
    EXPECT_EQ(rows_after(platformspecific_template).front(), "this is a platform specific template");
    EXPECT_EQ(rows_after(colorized_crossplatform_template),
              (Rows{"{white on green} will only display in color if colorize has been called ",
                    "{white on green} and this works on both Windows and Linux ", "{white on green}x"}));
    EXPECT_EQ(rows_after(colorized_platformspecific_template),
              (Rows{"{white on green} will display (in Linux) color if colorize ",
                    "{white on green} has been called and this works on Linux ", "{white on green}x"}));
}

TEST(BannerSeen, InItsColors)
{
    Screen const screen = screen_of(build_version, 500, 120);
    EXPECT_EQ(
        rows_of(screen, 8, 120),
        (Rows{"{green bold}Kestry Hueline Library (Hueline)",
              "{green}hueline version 0.2.2-r0 <hueline@kestry.example>",
              "{green}Copyright (C) 2026 Kestry. All rights reserved.", "{green}Hueline ver. {white}0.2.2-r0", "",
              "reset colorize {bold}dark {}thin", " first 108 m codes:",
              "   0{bold}   1{}   2{italic}   3{underline}   4{blink}   5{}   6{reverse}   7{}   8{strike}   9"}));
    char const* const styles[] = {"bold", "bold", "", "", "italic", "italic underline", "italic underline blink",
                                  "bold"};
    int row = 19; // the animations have left nothing
    for (std::string const style : styles) {
        EXPECT_EQ(screen.text(row), " no frills mode is off");
        EXPECT_EQ(look_of(screen.cell(row + 3, 15)), "black on red" + (style.empty() ? "" : " " + style)) << row;
        row += 11;
    }
    EXPECT_EQ(screen.text(row), "reset colorize  232-255:  grayscale from black to white in 24 steps");
    EXPECT_EQ(screen.text(row + 35), "reset colorize dark thin");
    EXPECT_EQ(screen.text(row + 37), "0, 0, 0   0, 0, 1   0, 0, 2   0, 0, 3   0, 0, 4");
    EXPECT_EQ(screen.text(row + 135), " 0-  7:  standard colors (as in ESC [ 30–37 m)");
}

} // namespace
