#include "kestry/hueline_stream.hpp"

#include "support/recorder.hpp"
#include "support/clock.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;
using namespace std::string_view_literals;

struct Pattern {
    char const* name;
    std::ostream& (*run)(std::ostream&);
};

Pattern const patterns[] = {
    {"supported_m_codes", test_pattern_supported_m_codes},
    {"normal_reset", test_pattern_normal_reset},
    {"matrix", test_pattern_matrix},
    {"256bit", test_pattern_256bit},
    {"greyscale", test_pattern_greyscale},
    {"rgb", test_pattern_rgb},
    {"status_line", test_pattern_status_line},
    {"progress_line", test_pattern_progress_line},
};

// ---------------------------------------------------------------------------------------------
// Whole patterns. What each writes on every kind of stream is told by the model.
// ---------------------------------------------------------------------------------------------

TEST(TestPattern, LeavesItsStreamColorizedOrNot)
{
    std::string colorized;
    for (Pattern const& pattern : patterns) {
        auto const run = on_terminal([&] {
            let_waits_end_at_once();
            pattern.run(std::cout);
            std::cout << "|" << red;
        });
        if (run.out.back() == 'm') {
            colorized += pattern.name;
            colorized += " ";
        }
    }
    EXPECT_EQ(colorized, "normal_reset 256bit greyscale rgb ");
}

TEST(TestPattern, ChangesTheWeightInTheRecordFromAPlainStreamToo)
{
    for (Pattern const& pattern : patterns) {
        auto const run = on_terminal([&] {
            let_waits_end_at_once();
            std::ostringstream os;
            std::cerr << colorize << red;
            pattern.run(os);
            std::cout << colorize << adjust;
        });
        bool const has_heading = pattern.name == "normal_reset"sv || pattern.name == "256bit"sv ||
                                 pattern.name == "greyscale"sv || pattern.name == "rgb"sv;
        std::string const after_heading = pattern.name == "normal_reset"sv ? R"(\e[00m\e[1m)" : R"(\e[00m\e[2m)";
        EXPECT_EQ(readable(run.out), has_heading ? after_heading : R"(\e[00m\e[1m\e[31m)") << pattern.name;
    }
}

// ---------------------------------------------------------------------------------------------
// Excerpts, as they stand
// ---------------------------------------------------------------------------------------------

std::string on_colorized_terminal(std::ostream& (*pattern)(std::ostream&))
{
    auto const run = on_terminal([&] {
        let_waits_end_at_once();
        pattern(colorize(std::cout));
    });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.out;
}

std::string in_a_string(std::ostream& (*pattern)(std::ostream&))
{
    auto const run = on_terminal([&] {
        std::ostringstream os;
        pattern(os);
        report(os.str());
    });
    EXPECT_EQ(run.status, 0) << run.report;
    return run.report;
}

std::string first(std::string const& text, std::string_view as_long_as) { return text.substr(0, as_long_as.size()); }

std::string last(std::string const& text, std::string_view as_long_as)
{
    return text.substr(text.size() - std::min(text.size(), as_long_as.size()));
}

TEST(SupportedMCodes, ShowsElevenRowsOfCodes)
{
    std::string const text = readable(on_colorized_terminal(test_pattern_supported_m_codes));
    std::string_view const start =
        R"(\e[00m\e[25hreset colorize \e[00m\e[1m\e[2mdark \e[00m\e[2mthin \n first 108 m codes: \n)"
        R"(\e[0m   0\e[m\e[1m   1\e[m\e[2m   2\e[m\e[3m   3\e[m\e[4m   4\e[m)"
        R"(\e[5m   5\e[m\e[6m   6\e[m\e[7m   7\e[m\e[8m   8\e[m\e[9m   9\e[m\n\e[10m  10\e[m)";
    std::string_view const end = R"(\e[98m  98\e[m\e[99m  99\e[m\n\e[100m 100\e[m\e[101m 101\e[m\e[102m 102\e[m)"
                                 R"(\e[103m 103\e[m\e[104m 104\e[m\e[105m 105\e[m\e[106m 106\e[m\e[107m 107\e[m)"
                                 R"(\e[108m 108\e[m\n\n)";
    EXPECT_EQ(first(text, start), start);
    EXPECT_EQ(last(text, end), end);
}

TEST(SupportedMCodes, WritesNothingAtAllWhereTheGateRefuses)
{
    auto const cout_is_a_pipe =
        run_with({Sink::pipe, Sink::terminal}, [] { test_pattern_supported_m_codes(colorize(std::cout)); });
    EXPECT_EQ(cout_is_a_pipe.out, "");
    EXPECT_EQ(on_terminal([] { test_pattern_supported_m_codes(std::cout); }).out, "");
    EXPECT_EQ(on_terminal([] { test_pattern_supported_m_codes(std::cerr); }).out, "");
    auto const cerr_is_a_pipe =
        run_with({Sink::terminal, Sink::pipe}, [] { test_pattern_supported_m_codes(colorize(std::cerr)); });
    EXPECT_EQ(cerr_is_a_pipe.out + cerr_is_a_pipe.err, "");
}

TEST(SupportedMCodes, LeavesTheRecordAloneWhereTheGateRefuses)
{
    auto const run = run_with({Sink::pipe, Sink::terminal}, [] {
        std::cerr << colorize << red << "|";
        test_pattern_supported_m_codes(colorize(std::cout));
        std::cerr << adjust;
    });
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m\e[31m|\e[00m\e[1m\e[31m)");
}

TEST(SupportedMCodes, ShowsEachCodeInItsOwnRendition)
{
    Screen const screen{on_colorized_terminal(test_pattern_supported_m_codes)};
    EXPECT_EQ(screen.text(0), "reset colorize dark thin");
    EXPECT_EQ(screen.text(1), " first 108 m codes:");
    EXPECT_EQ(screen.text(2), "   0   1   2   3   4   5   6   7   8   9");
    EXPECT_EQ(screen.text(5), "  30  31  32  33  34  35  36  37  38  39");
    EXPECT_EQ(screen.text(12), " 100 101 102 103 104 105 106 107 108");
    EXPECT_EQ(screen.cell(5, 7).foreground.index, 1);  // code 31
    EXPECT_EQ(screen.cell(5, 11).foreground.index, 2); // code 32
    EXPECT_EQ(screen.cell(6, 7).background.index, 1);  // code 41
    EXPECT_TRUE(screen.cell(2, 7).bold);               // code 1
    EXPECT_FALSE(screen.cell(2, 15).bold);             // code 3
    EXPECT_TRUE(screen.cell(2, 15).italic);
    EXPECT_EQ(screen.cursor(), (Position{14, 0}));
}

TEST(NormalReset, ShowsThatNormalKeepsWhatResetForgets)
{
    EXPECT_EQ(readable(on_colorized_terminal(test_pattern_normal_reset)),
              R"(\e[00m\e[25hreset colorize \e[00m\e[1m\e[2mdark \e[00m\e[2mthin \n)"
              R"(\e[00m\e[2m\e[37mwhite \e[00m\e[2m\e[37m\e[41mon_red \n)"
              R"(\e[00m\e[2m\e[3m\e[37m\e[41mwhite \e[00m\e[2m\e[3m\e[4m\e[37m\e[41mon_red \n)"
              R"( before adjust \n\e[00m\e[2m\e[3m\e[4m\e[37m\e[41m\n after adjust \n)"
              R"( before normal \n\e[00m\e[25h\n after normal \n)"
              R"( before adjust \n\e[00m\e[2m\e[3m\e[4m\e[37m\e[41m\n after adjust \n)"
              R"( before reset \n\e[00m\e[25h\n after reset \n)"
              R"( before adjust \n\e[00m\e[1m\n after adjust \n\n)");
}

TEST(NormalReset, IsPlainTextInAString)
{
    EXPECT_EQ(readable(in_a_string(test_pattern_normal_reset)),
              R"(reset colorize dark thin \nwhite on_red \nwhite on_red \n)"
              R"( before adjust \n\n after adjust \n before normal \n\n after normal \n)"
              R"( before adjust \n\n after adjust \n before reset \n\n after reset \n)"
              R"( before adjust \n\n after adjust \n\n)");
}

TEST(Matrix, IsPlainTextInAString)
{
    std::string should = " no frills mode is off \n"
                         " use color mode is off \n"
                         " (you should not be seeing color) \n";
    for (std::string const label : {"black     ", "red       ", "green     ", "yellow    ", "blue      ", "magenta   ",
                                    "cyan      ", "white     "}) {
        should += " on_" + label;
        should += " black      red        green      yellow     blue       magenta    cyan       white     \n";
    }
    should += "\n";
    EXPECT_EQ(in_a_string(test_pattern_matrix), should);
}

TEST(Matrix, SetsTheColorsOfEachCell)
{
    std::string const text = readable(on_colorized_terminal(test_pattern_matrix));
    std::string_view const start =
        R"(\e[00m\e[1m\e[37m\e[00m\e[1m\e[37m\e[40m no frills mode is off \n use color mode is on \n)"
        R"(\e[00m\e[1m\e[37m\e[40m\e[00m\e[1m\e[37m\e[40m on_black     \e[00m\e[1m\e[37m\e[40m)"
        R"(\e[00m\e[1m\e[30m\e[40m black     \e[00m\e[1m\e[31m\e[40m red       )";
    std::string_view const end = R"(\e[00m\e[1m\e[36m\e[47m cyan      \e[00m\e[1m\e[37m\e[47m white     \n)"
                                 R"(\e[00m\e[1m\e[37m\e[47m\e[00m\e[1m\e[37m\e[40m\n)";
    EXPECT_EQ(first(text, start), start);
    EXPECT_EQ(last(text, end), end);
}

TEST(Matrix, IsSeenInItsColors)
{
    Screen const screen{on_colorized_terminal(test_pattern_matrix), 24, 120};
    EXPECT_EQ(screen.text(0), " no frills mode is off");
    EXPECT_EQ(screen.text(1), " use color mode is on");
    EXPECT_EQ(screen.text(2),
              " on_black      black      red        green      yellow     blue       magenta    cyan       white");
    EXPECT_EQ(screen.text(9),
              " on_white      black      red        green      yellow     blue       magenta    cyan       white");
    EXPECT_EQ(screen.text(10), "");
    for (int b = 0; b < 8; ++b) {
        EXPECT_EQ(screen.cell(2 + b, 1).foreground.index, 7) << b;
        EXPECT_EQ(screen.cell(2 + b, 1).background.index, 0) << b;
        for (int f = 0; f < 8; ++f) {
            Cell const cell = screen.cell(2 + b, 15 + 11 * f);
            EXPECT_EQ(cell.foreground.index, f) << b << " " << f;
            EXPECT_EQ(cell.background.index, b) << b << " " << f;
        }
    }
    EXPECT_EQ(screen.cursor(), (Position{11, 0}));
}

TEST(Palette, IsPlainTextInAString)
{
    std::string const row = "color     color     color     color     color     color     color     color     \n";
    std::string const rows = row + row + row + row + row + row + row + row;
    EXPECT_EQ(in_a_string(test_pattern_256bit), "reset colorize dark thin \n"
                                                " 0-  7:  standard colors (as in ESC [ 30–37 m)\n" +
                                                    rows +
                                                    "reset colorize dark thin \n"
                                                    "8- 15:  high intensity colors (as in ESC [ 90–97 m)\n" +
                                                    rows + "\n");
}

TEST(Palette, SetsTheColorsOfEachCell)
{
    std::string const text = readable(on_colorized_terminal(test_pattern_256bit));
    std::string_view const start =
        R"(\e[00m\e[25hreset colorize \e[00m\e[1m\e[2mdark \e[00m\e[2mthin \n)"
        R"( 0-  7:  standard colors (as in ESC [ 30–37 m)\n)"
        R"(\e[00m\e[2m\e[48;5;0m\e[00m\e[2m\e[38;5;0m\e[48;5;0mcolor     \e[00m\e[2m\e[38;5;1m\e[48;5;0mcolor     )";
    std::string_view const middle =
        R"(\e[00m\e[2m\e[38;5;7m\e[48;5;7mcolor     \n\e[00m\e[25hreset colorize \e[00m\e[1m\e[2mdark \e[00m\e[2mthin \n)"
        R"(8- 15:  high intensity colors (as in ESC [ 90–97 m)\n\e[00m\e[2m\e[48;5;8m\e[00m\e[2m\e[38;5;8m\e[48;5;8mcolor)";
    std::string_view const end = R"(\e[00m\e[2m\e[38;5;14m\e[48;5;15mcolor     )"
                                 R"(\e[00m\e[2m\e[38;5;15m\e[48;5;15mcolor     \n\n)";
    EXPECT_EQ(first(text, start), start);
    EXPECT_NE(text.find(middle), std::string::npos);
    EXPECT_EQ(last(text, end), end);
}

TEST(Palette, IsSeenInItsColors)
{
    Screen const screen{on_colorized_terminal(test_pattern_256bit), 24, 100};
    for (int b = 0; b < 16; ++b) {
        for (int f = 0; f < 8; ++f) {
            int const row = b < 8 ? 2 + b : 4 + b; // below a heading of two lines each
            Cell const cell = screen.cell(row, 10 * f);
            EXPECT_EQ(cell.character, "c");
            EXPECT_EQ(cell.foreground.index, b < 8 ? f : 8 + f) << b;
            EXPECT_EQ(cell.background.index, b) << f;
        }
    }
    EXPECT_EQ(screen.text(20), "");
    EXPECT_EQ(screen.cursor(), (Position{21, 0}));
}

TEST(Greyscale, IsPlainTextInAString)
{
    std::string const rows = " e8  e9  ea  eb  ec  ed  ee  ef  f0  f1  f2  f3 \n"
                             " f4  f5  f6  f7  f8  f9  fa  fb  fc  fd  fe  ff \n";
    std::string const block = " 232-255:  grayscale from black to white in 24 steps\n" + rows + rows + rows + rows +
                              rows + rows + rows + rows;
    EXPECT_EQ(in_a_string(test_pattern_greyscale), "reset colorize " + block + "reset colorize dark thin \n" + block);
}

TEST(Greyscale, IsBoldInTheFirstPassAndThinAndDarkInTheSecond)
{
    std::string const text = readable(on_colorized_terminal(test_pattern_greyscale));
    std::string_view const start =
        R"(\e[00m\e[25hreset colorize  232-255:  grayscale from black to white in 24 steps\n)"
        R"(\e[00m\e[1m\e[48;5;0m\e[00m\e[1m\e[38;5;232m\e[48;5;0m e8 \e[00m\e[1m\e[38;5;233m\e[48;5;0m e9 )";
    std::string_view const middle =
        R"(\e[00m\e[1m\e[38;5;255m\e[48;5;7m ff \n\e[00m\e[25hreset colorize \e[00m\e[1m\e[2mdark \e[00m\e[2mthin \n)"
        R"( 232-255:  grayscale from black to white in 24 steps\n\e[00m\e[2m\e[48;5;0m\e[00m\e[2m\e[38;5;232m)";
    std::string_view const end = R"(\e[00m\e[2m\e[38;5;254m\e[48;5;7m fe \e[00m\e[2m\e[38;5;255m\e[48;5;7m ff \n)";
    EXPECT_EQ(first(text, start), start);
    EXPECT_NE(text.find(middle), std::string::npos);
    EXPECT_EQ(last(text, end), end);
}

TEST(Greyscale, LeavesItsStreamInHexadecimalWithoutItsBase)
{
    auto const run = on_pipe([] {
        for (auto const base :
             {std::ios_base::dec, std::ios_base::oct, std::ios_base::hex, std::ios_base::fmtflags{}}) {
            std::ostringstream os;
            os.setf(base, std::ios_base::basefield);
            os << std::showbase << test_pattern_greyscale;
            report(os.str().find(" e8 ") < os.str().find(" e9 ") ? "e8 " : "no e8 ");
            os.str("");
            os << 255 << " ";
            report(os.str());
        }
    });
    EXPECT_EQ(run.report, "e8 ff e8 ff e8 ff e8 ff ");
}

TEST(Greyscale, LeavesTheOtherFlagsOfItsStreamAlone)
{
    auto const run = on_terminal([] {
        std::cout << colorize << std::uppercase << std::showpos << std::left;
        auto const others = ~(std::ios_base::basefield | std::ios_base::showbase);
        auto const before = std::cout.flags() & others;
        test_pattern_greyscale(std::cout);
        report((std::cout.flags() & others) == before ? "same" : "changed");
    });
    std::string_view const first_row = R"(\e[00m\e[1m\e[38;5;232m\e[48;5;0m E8 )";
    EXPECT_NE(readable(run.out).find(first_row), std::string::npos);
    EXPECT_EQ(run.report, "same");
}

TEST(Cube, IsSixteenBlocksOfSixRowsOfFiveCells)
{
    std::string const text = in_a_string(test_pattern_rgb);
    std::string_view const start = "reset colorize dark thin \n"
                                   "16-231:  6 × 6 × 6 cube (216 colors): 16 + 36 × r + 6 × g + b (0 ≤ r, g, b ≤ 5)\n"
                                   "0, 0, 0   0, 0, 1   0, 0, 2   0, 0, 3   0, 0, 4   \n"
                                   "0, 1, 0   0, 1, 1   0, 1, 2   0, 1, 3   0, 1, 4   \n";
    std::string_view const end = "15, 4, 0  15, 4, 1  15, 4, 2  15, 4, 3  15, 4, 4  \n"
                                 "15, 5, 0  15, 5, 1  15, 5, 2  15, 5, 3  15, 5, 4  \n\n";
    EXPECT_EQ(first(text, start), start);
    EXPECT_EQ(last(text, end), end);
    EXPECT_EQ(text.size(), start.size() + std::size_t{16 * 6 - 2} * 51 + 1);
}

TEST(Cube, SetsTheColorsOfEachCell)
{
    std::string const text = readable(on_colorized_terminal(test_pattern_rgb));
    std::string_view const start =
        R"(\e[00m\e[25hreset colorize \e[00m\e[1m\e[2mdark \e[00m\e[2mthin \n)"
        R"(16-231:  6 × 6 × 6 cube (216 colors): 16 + 36 × r + 6 × g + b (0 ≤ r, g, b ≤ 5)\n)"
        R"(\e[00m\e[2m\e[48;5;0m\e[00m\e[2m\e[38;5;16m\e[48;5;0m0, 0, 0   \e[00m\e[2m\e[38;5;17m\e[48;5;0m0, 0, 1   )";
    std::string_view const second_block =
        R"(0, 5, 4   \n\e[00m\e[2m\e[38;5;50m\e[48;5;1m\e[00m\e[2m\e[38;5;52m\e[48;5;1m1, 0, 0   )";
    std::string_view const end = R"(\e[00m\e[2m\e[38;5;589m\e[48;5;15m15, 5, 3  )"
                                 R"(\e[00m\e[2m\e[38;5;590m\e[48;5;15m15, 5, 4  \n\n)";
    EXPECT_EQ(first(text, start), start);
    EXPECT_NE(text.find(second_block), std::string::npos);
    EXPECT_EQ(last(text, end), end);
}

// ---------------------------------------------------------------------------------------------
// Animations
// ---------------------------------------------------------------------------------------------

// One frame of an animation, counted from 0, without its carriage return.
std::string frame(std::string const& text, int number)
{
    std::istringstream frames(text);
    std::string found;
    std::getline(frames, found, '\r');
    for (int i = 0; i <= number; ++i) {
        std::getline(frames, found, '\r');
    }
    return found;
}

TEST(StatusLinePattern, DrawsEachStepThreeTimes)
{
    std::string const text = on_colorized_terminal(test_pattern_status_line);
    std::string const todo = R"(\e[40m\e[37m.)";
    std::string const done = R"(\e[40m\e[36m#)";
    auto const times = [](int count, std::string const& cell) {
        std::string cells;
        for (int i = 0; i < count; ++i) {
            cells += cell;
        }
        return cells;
    };
    std::string const opening = R"(\e[40m\e[32m[)";
    std::string const closing = R"(\e[40m\e[32m])";
    EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), 150);
    EXPECT_EQ(readable(first(text, "\x1b[25i\r")), R"(\e[25i\r)");
    for (int const i : {0, 1, 2}) {
        EXPECT_EQ(readable(frame(text, i)), opening + times(49, todo) + closing);
    }
    EXPECT_EQ(readable(frame(text, 3)), opening + done + R"(\e[40m\e[93m/)" + times(47, todo) + closing);
    EXPECT_EQ(readable(frame(text, 4)), opening + done + R"(\e[40m\e[93m-)" + times(47, todo) + closing);
    EXPECT_EQ(readable(frame(text, 5)), opening + done + R"(\e[40m\e[93m\)" + times(47, todo) + closing);
    EXPECT_EQ(readable(frame(text, 6)), opening + done + done + R"(\e[40m\e[93m|)" + times(46, todo) + closing);
    EXPECT_EQ(readable(frame(text, 146)), opening + times(48, done) + R"(\e[40m\e[93m|)" + closing);
    EXPECT_EQ(readable(frame(text, 147)), opening + times(49, done) + closing);
    EXPECT_EQ(readable(frame(text, 149)), opening + times(49, done) + closing + R"(\e[25h)");
}

TEST(StatusLinePattern, TurnsTheSpinners144Times)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        test_pattern_status_line(os);
        std::ostringstream turned;
        std::string frames; // 150 of them, each once
        for (int i = 0; i < 150; ++i) {
            frames += static_cast<char>(i);
        }
        turned << spinner{frames, ""};
        report(std::to_string(static_cast<unsigned char>(turned.str().at(0))));
    });
    EXPECT_EQ(run.report, "145");
}

TEST(StatusLinePattern, FillsTheBarOnTheScreen)
{
    std::string const text = on_colorized_terminal(test_pattern_status_line);
    EXPECT_EQ(Screen{text}.text(0), "[" + std::string(49, '#') + "]");
    EXPECT_EQ(Screen{text}.cell(0, 1).foreground.index, 6);
    EXPECT_EQ(Screen{text}.cell(0, 1).background.index, 0);
    EXPECT_EQ(Screen{text}.cursor(), (Position{0, 51}));
    Screen const halfway{text.substr(0, text.find(frame(text, 60)) + frame(text, 60).size())};
    EXPECT_EQ(halfway.text(0), "[" + std::string(20, '#') + "-" + std::string(28, '.') + "]");
    EXPECT_EQ(halfway.cell(0, 0).foreground.index, 2);
    EXPECT_EQ(halfway.cell(0, 21).foreground.index, 11);
    EXPECT_EQ(halfway.cell(0, 22).foreground.index, 7);
}

TEST(ProgressLinePattern, DrawsEachStepThreeTimes)
{
    std::string const text = on_colorized_terminal(test_pattern_progress_line);
    auto const meter = [](std::string const& percentage) {
        return R"(\e[40m\e[32m(\e[40m\e[36mcompleted \e[40m\e[37m)" + percentage + R"(%\e[40m\e[32m))";
    };
    EXPECT_EQ(std::count(text.begin(), text.end(), '\r'), 150);
    EXPECT_EQ(readable(first(text, "\x1b[25i\r")), R"(\e[25i\r)");
    EXPECT_EQ(readable(frame(text, 0)), meter("0"));
    EXPECT_EQ(readable(frame(text, 2)), meter("0"));
    EXPECT_EQ(readable(frame(text, 3)), meter("2"));
    EXPECT_EQ(readable(frame(text, 72)), meter("48"));
    EXPECT_EQ(readable(frame(text, 75)), meter("51"));
    EXPECT_EQ(readable(frame(text, 146)), meter("97"));
    EXPECT_EQ(readable(frame(text, 147)), meter("100"));
    EXPECT_EQ(readable(frame(text, 149)), meter("100") + R"(\e[25h)");
}

TEST(ProgressLinePattern, IsSeenInItsColors)
{
    Screen const screen{on_colorized_terminal(test_pattern_progress_line)};
    EXPECT_EQ(screen.text(0), "(completed 100%)");
    EXPECT_EQ(screen.cell(0, 0).foreground.index, 2);
    EXPECT_EQ(screen.cell(0, 1).foreground.index, 6);
    EXPECT_EQ(screen.cell(0, 11).foreground.index, 7);
    EXPECT_EQ(screen.cell(0, 15).foreground.index, 2);
    EXPECT_EQ(screen.cell(0, 11).background.index, 0);
    EXPECT_EQ(screen.cursor(), (Position{0, 16}));
}

TEST(ProgressLinePattern, LeavesItsStreamDecimal)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        os << std::hex << test_pattern_progress_line;
        os.str("");
        os << 255;
        report(os.str());
    });
    EXPECT_EQ(run.report, "255");
}

TEST(Animation, KeepsItsSequencesOffATerminalButNotTheCursorControls)
{
    std::string const bar = in_a_string(test_pattern_status_line);
    EXPECT_EQ(readable(first(bar, "\r\x1b[40m\x1b[32m[")), R"(\r\e[40m\e[32m[)");
    EXPECT_EQ(readable(last(bar, "\x1b[40m\x1b[32m]")), R"(\e[40m\e[32m])");
    std::string const meter = in_a_string(test_pattern_progress_line);
    EXPECT_EQ(readable(first(meter, "\r\x1b[40m\x1b[32m(")), R"(\r\e[40m\e[32m()");
    EXPECT_EQ(readable(last(meter, "100%\x1b[40m\x1b[32m)")), R"(100%\e[40m\e[32m))");
}

TEST(Animation, Waits25MillisecondsAfterEachFrame)
{
    for (auto const pattern : {test_pattern_status_line, test_pattern_progress_line}) {
        auto const run = on_terminal([&] {
            advance_clock_by(std::chrono::milliseconds(1));
            pattern(colorize(std::cout));
            report(std::to_string(clock_readings));
        });
        EXPECT_EQ(run.report, std::to_string(150 * 26)); // a wait of 25 ms reads such a clock 26 times
    }
}

TEST(Animation, FlushesEachFrameBeforeItWaits)
{
    for (auto const pattern : {test_pattern_status_line, test_pattern_progress_line}) {
        auto const run = on_terminal([&] {
            Recorder const recorder(std::cout);
            std::string too_late;
            made_up_time = [&](std::int64_t n) {
                std::string const text = recorder.text();
                too_late += text.empty() || text.back() != flush_mark ? "late " : "";
                return n * 30'000'000;
            };
            clock_readings = 0;
            pattern(colorize(std::cout));
            report(too_late);
        });
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(run.report, "");
    }
}

TEST(Animation, NeverWaitsOffATerminal)
{
    for (auto const pattern : {test_pattern_status_line, test_pattern_progress_line}) {
        auto const readings = [&](std::ostream& os) {
            let_waits_end_at_once();
            pattern(os);
            report(std::to_string(clock_readings) + " ");
        };
        auto const run = run_with({Sink::terminal, Sink::pipe}, [&] {
            std::ostringstream string_stream;
            readings(colorize(string_stream));
            readings(colorize(std::cerr));
            readings(std::cout);
            _setNoFrillsMode(true);
            readings(colorize(std::cout));
        });
        EXPECT_EQ(run.report, "0 0 0 0 ");
    }
}

TEST(Animation, TakesAboutFourSecondsOnATerminal)
{
    auto const run = on_terminal([] {
        advance_clock_by(std::chrono::milliseconds(1));
        test_pattern_progress_line(colorize(std::cout));
        report(std::to_string(clock_readings));
    });
    EXPECT_EQ(run.report, "3900"); // 150 waits of 25 ms, each begun with a reading
}

} // namespace
