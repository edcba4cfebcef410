#include "kestry/hueline_stream.hpp"

#include "support/clock.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

void write_and_adjust(std::ostream& os)
{
    let_waits_end_at_once();
    os << build_version << "|" << adjust;
}

std::string on_colorized_terminal()
{
    auto const run = on_terminal([] {
        let_waits_end_at_once();
        std::cout << colorize << build_version;
    });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.out;
}

std::string in_a_string()
{
    auto const run = on_terminal([] {
        std::ostringstream os;
        os << build_version;
        report(os.str());
    });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.report;
}

// ---------------------------------------------------------------------------------------------
// The tag
// ---------------------------------------------------------------------------------------------

TEST(VersionTag, HasTheReleaseInWhite)
{
    auto const run = on_terminal([] { std::cout << colorize << build_version_short; });
    EXPECT_EQ(readable(run.out), R"(Hueline ver. \e[00m\e[1m\e[37m0.2.2-r0)");

    Screen const screen{run.out};
    EXPECT_TRUE(screen.cell(0, 0).foreground.is_default);
    EXPECT_TRUE(screen.cell(0, 12).foreground.is_default);
    EXPECT_EQ(screen.cell(0, 13).foreground.index, 7);
    EXPECT_EQ(screen.cursor(), (Position{0, 21}));
}

// ---------------------------------------------------------------------------------------------
// The whole banner. What it writes on every kind of stream is told by the model.
// ---------------------------------------------------------------------------------------------

TEST(Banner, NeverWaitsOffATerminal)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        let_waits_end_at_once();
        os << build_version;
        std::cout << colorize << build_version;
        report(std::to_string(clock_readings));
    });
    EXPECT_EQ(run.report, "0");
}

// ---------------------------------------------------------------------------------------------
// Excerpts, as they stand
// ---------------------------------------------------------------------------------------------

std::string first(std::string const& text, std::string_view as_long_as) { return text.substr(0, as_long_as.size()); }

std::size_t count(std::string const& text, std::string_view part)
{
    std::size_t found = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) {
        ++found;
    }
    return found;
}

TEST(Banner, OpensWithItsFourLines)
{
    std::string_view const start =
        R"(\e[00m\e[25h\e[00m\e[1m\e[32mKestry Hueline Library (Hueline)\n)"
        R"(\e[00m\e[32mhueline version 0.2.2-r0 <hueline@kestry.example>\n)"
        R"(\e[00m\e[2m\e[32mCopyright (C) 2026 Kestry. All rights reserved.\n)"
        R"(\e[00m\e[32m\e[00m\e[32mHueline ver. \e[00m\e[37m0.2.2-r0\n\n)"
        R"(\e[00m\e[25hreset colorize \e[00m\e[1m\e[2mdark \e[00m\e[2mthin \n first 108 m codes: \n\e[0m   0\e[m)";
    EXPECT_EQ(first(readable(on_colorized_terminal()), start), start);
}

TEST(Banner, OpensWithItsFourLinesInPlainText)
{
    std::string_view const start = "Kestry Hueline Library (Hueline)\n"
                                   "hueline version 0.2.2-r0 <hueline@kestry.example>\n"
                                   "Copyright (C) 2026 Kestry. All rights reserved.\n"
                                   "Hueline ver. 0.2.2-r0\n"
                                   "\n"
                                   "\r\x1b[40m\x1b[32m["; // the grid of codes is left out
    EXPECT_EQ(readable(first(in_a_string(), start)), readable(start));
}

TEST(Banner, WipesTheLinesOfTheAnimations)
{
    std::string const text = readable(on_colorized_terminal());
    EXPECT_EQ(count(text, R"(\r)"), std::size_t{150 + 1 + 150 + 1});
    EXPECT_EQ(count(text, R"(#\e[40m\e[32m]\e[25h\r\e[0K\e[25i\r\e[40m\e[32m()"), 1U);
    EXPECT_EQ(count(text, R"(100%\e[40m\e[32m)\e[25h\r\e[0K\e[00m\e[1m\e[2m)"), 1U); // bold follows, still dark
}

TEST(Banner, ShowsTheMatrixInEightStyles)
{
    std::string const text = readable(on_colorized_terminal());
    EXPECT_EQ(count(text, " use color mode is on "), 8U);
    EXPECT_EQ(count(text, R"(\e[00m\e[1m\e[36m\e[46m cyan )"), 2U); // at first and after reset
    EXPECT_EQ(count(text, R"(\e[00m\e[1m\e[2m\e[36m\e[46m cyan )"), 1U);
    EXPECT_EQ(count(text, R"(\e[00m\e[36m\e[46m cyan )"), 1U);
    EXPECT_EQ(count(text, R"(\e[00m\e[2m\e[36m\e[46m cyan )"), 1U);
    EXPECT_EQ(count(text, R"(\e[00m\e[2m\e[3m\e[36m\e[46m cyan )"), 1U);
    EXPECT_EQ(count(text, R"(\e[00m\e[2m\e[3m\e[4m\e[36m\e[46m cyan )"), 1U);
    EXPECT_EQ(count(text, R"(\e[00m\e[2m\e[3m\e[4m\e[5m\e[36m\e[46m cyan )"), 1U);
}

TEST(Banner, EndsWithTheGreysTheCubeAndThePalette)
{
    std::string const text = in_a_string();
    std::size_t const last_matrix = text.rfind(" on_white ");
    std::size_t const greys = text.find("grayscale");
    std::size_t const cube = text.find("cube");
    std::size_t const palette = text.find("standard colors");
    EXPECT_LT(last_matrix, greys);
    EXPECT_LT(greys, cube);
    EXPECT_LT(cube, palette);
    EXPECT_NE(palette, std::string::npos);
    EXPECT_EQ(text.substr(text.size() - 12), "color     \n\n");
}

// ---------------------------------------------------------------------------------------------
// What it leaves behind
// ---------------------------------------------------------------------------------------------

TEST(Banner, RestoresTheRecordOfItsCallerWithTheForegroundInBothSlots)
{
    auto const run = on_terminal([] {
        std::cerr << colorize << thin << dark << italic << underline << blink << reverse << red << on_blue;
        write_and_adjust(colorize(std::cout));
    });
    std::string const text = readable(run.out);
    EXPECT_EQ(text.substr(text.rfind('|')), R"(|\e[00m\e[2m\e[3m\e[4m\e[5m\e[7m\e[31m\e[31m)");
}

TEST(Banner, RestoresARecordWithoutColors)
{
    std::string const text = readable(on_terminal([] { write_and_adjust(colorize(std::cout)); }).out);
    EXPECT_EQ(text.substr(text.rfind('|')), R"(|\e[00m\e[1m)");
}

TEST(Banner, ReplacesWhatPushHasSaved)
{
    auto const run = on_terminal([] {
        let_waits_end_at_once();
        std::cout << colorize << green << push << red << build_version << cyan << pull << "|" << adjust;
    });
    std::string const text = readable(run.out);
    EXPECT_EQ(text.substr(text.rfind('|')), R"(|\e[00m\e[1m\e[31m\e[31m)");
}

TEST(Banner, ForgetsTheRecordOfItsCallerWhereTheGateRefuses)
{
    auto const run = on_terminal([] {
        std::ostringstream os;
        std::cerr << colorize << italic << red << on_blue;
        os << build_version;
        std::cout << colorize << adjust;
    });
    EXPECT_EQ(readable(run.out), R"(\e[00m\e[2m)"); // dark and thin are remembered everywhere
}

TEST(Banner, LeavesItsStreamInHexadecimalAndColorized)
{
    auto const run = on_terminal([] {
        let_waits_end_at_once();
        std::cout << build_version << "|" << 255 << red;
    });
    std::string const text = readable(run.out);
    EXPECT_EQ(text.substr(text.rfind('|')), R"(|ff\e[00m\e[1m\e[31m)");
}

// ---------------------------------------------------------------------------------------------
// What a person sees
// ---------------------------------------------------------------------------------------------

TEST(Banner, IsSeenInItsColors)
{
    Screen const screen{on_colorized_terminal(), 500, 120};
    EXPECT_EQ(screen.text(0), "Kestry Hueline Library (Hueline)");
    EXPECT_EQ(screen.cell(0, 0).foreground.index, 2);
    EXPECT_TRUE(screen.cell(0, 0).bold);
    EXPECT_EQ(screen.text(1), "hueline version 0.2.2-r0 <hueline@kestry.example>");
    EXPECT_EQ(screen.cell(1, 0).foreground.index, 2);
    EXPECT_FALSE(screen.cell(1, 0).bold);
    EXPECT_EQ(screen.text(2), "Copyright (C) 2026 Kestry. All rights reserved.");
    EXPECT_EQ(screen.cell(2, 0).foreground.index, 2);
    EXPECT_EQ(screen.text(3), "Hueline ver. 0.2.2-r0");
    EXPECT_EQ(screen.cell(3, 0).foreground.index, 2);
    EXPECT_EQ(screen.cell(3, 13).foreground.index, 7);
    EXPECT_EQ(screen.text(4), "");
    EXPECT_EQ(screen.text(5), "reset colorize dark thin");
    EXPECT_EQ(screen.text(7), "   0   1   2   3   4   5   6   7   8   9");
    EXPECT_EQ(screen.text(18), "");
    EXPECT_EQ(screen.text(19), " no frills mode is off"); // the animations have left nothing
    EXPECT_EQ(screen.text(20), " use color mode is on");
    EXPECT_EQ(screen.cell(19, 1).foreground.index, 7);

    int const styles = 19; // the row of the first matrix
    int const height = 11; // rows of a matrix
    for (int i = 0; i < 8; ++i) {
        Cell const cell = screen.cell(styles + height * i + 3, 15); // black on red
        EXPECT_EQ(cell.foreground.index, 0) << i;
        EXPECT_EQ(cell.background.index, 1) << i;
        EXPECT_EQ(cell.bold, i == 0 || i == 1 || i == 7) << i;
        EXPECT_EQ(cell.italic, i == 4 || i == 5 || i == 6) << i;
        EXPECT_EQ(cell.underline, i == 5 || i == 6) << i;
        EXPECT_EQ(cell.blink, i == 6) << i;
    }
}

} // namespace
