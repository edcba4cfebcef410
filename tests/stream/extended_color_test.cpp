#include "kestry/hueline_stream.hpp"

#include "support/isatty_calls.hpp"
#include "support/grouping.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;

// What a colorized std::cout on a terminal receives.
std::string shown(std::function<void(std::ostream&)> const& body)
{
    auto const run = on_terminal([&] { body(colorize(std::cout)); });
    EXPECT_EQ(run.status, 0) << run.report;
    return readable(run.out);
}

// ---------------------------------------------------------------------------------------------
// Strings
// ---------------------------------------------------------------------------------------------

TEST(SequenceString, IsOneSgrCode)
{
    EXPECT_EQ(readable(csi::color(1)), R"(\e[1m)");
    EXPECT_EQ(readable(csi::color(38)), R"(\e[38m)");
    EXPECT_EQ(readable(csi::color(0)), R"(\e[0m)");
    EXPECT_EQ(readable(csi::color(-1)), R"(\e[-1m)");
    EXPECT_EQ(readable(csi::color(255)), R"(\e[255m)");
    EXPECT_EQ(readable(csi::color(INT_MAX)), R"(\e[2147483647m)");
    EXPECT_EQ(readable(csi::color(INT_MIN)), R"(\e[-2147483648m)");
}

TEST(SequenceString, IsATrueColorForeground)
{
    EXPECT_EQ(readable(csi::rgb(255, 128, 0)), R"(\e[38;2;255;128;0m)");
    EXPECT_EQ(readable(csi::rgb(0, 0, 0)), R"(\e[38;2;0;0;0m)");
    EXPECT_EQ(readable(csi::rgb(-1, 256, 1000)), R"(\e[38;2;-1;256;1000m)");
    EXPECT_EQ(readable(csi::rgb(INT_MIN, INT_MAX, INT_MIN)), R"(\e[38;2;-2147483648;2147483647;-2147483648m)");
}

TEST(SequenceString, IsATrueColorBackground)
{
    EXPECT_EQ(readable(csi::on_rgb(0, 0, 0)), R"(\e[48;2;0;0;0m)");
    EXPECT_EQ(readable(csi::on_rgb(1, 2, 3)), R"(\e[48;2;1;2;3m)");
    EXPECT_EQ(readable(csi::on_rgb(-1, 256, 1000)), R"(\e[48;2;-1;256;1000m)");
    EXPECT_EQ(readable(csi::on_rgb(INT_MAX, INT_MIN, INT_MAX)), R"(\e[48;2;2147483647;-2147483648;2147483647m)");
}

TEST(SequenceString, IsNotGated)
{
    auto const run = on_pipe([] {
        _setNoFrillsMode(true);
        isatty_calls = 0;
        report(csi::color(31) + csi::rgb(1, 2, 3) + csi::on_rgb(4, 5, 6));
        report(" " + std::to_string(isatty_calls));
    });
    EXPECT_EQ(readable(run.report), R"(\e[31m\e[38;2;1;2;3m\e[48;2;4;5;6m 0)");
}

TEST(SequenceString, LeavesTheRecordAlone)
{
    EXPECT_EQ(shown([](std::ostream& os) {
                  csi::color(31);
                  csi::rgb(1, 2, 3);
                  csi::on_rgb(4, 5, 6);
                  os << adjust;
              }),
              R"(\e[00m\e[1m)");
}

TEST(SequenceString, HasNoGroupingUnderAGroupingGlobalLocale)
{
    auto const run = on_pipe([] {
        std::locale::global(grouping_locale());
        report(csi::color(1000000) + csi::rgb(1000, 20000, 300000) + csi::on_rgb(-1000, -20000, -300000));
    });
    EXPECT_EQ(readable(run.report), R"(\e[1000000m\e[38;2;1000;20000;300000m\e[48;2;-1000;-20000;-300000m)");
}

// ---------------------------------------------------------------------------------------------
// Values
// ---------------------------------------------------------------------------------------------

TEST(ExtendedColor, WritesAnyNumberAsItIs)
{
    auto const one = [](auto value) { return shown([&](std::ostream& os) { os << thin << "|" << value; }); };
    EXPECT_EQ(one(color{0}), R"(\e[00m|\e[00m\e[38;5;0m)");
    EXPECT_EQ(one(color{255}), R"(\e[00m|\e[00m\e[38;5;255m)");
    EXPECT_EQ(one(color{300}), R"(\e[00m|\e[00m\e[38;5;300m)");
    EXPECT_EQ(one(color{-1}), R"(\e[00m|\e[00m\e[38;5;-1m)");
    EXPECT_EQ(one(color{INT_MIN}), R"(\e[00m|\e[00m\e[38;5;-2147483648m)");
    EXPECT_EQ(one(color{INT_MAX}), R"(\e[00m|\e[00m\e[38;5;2147483647m)");
    EXPECT_EQ(one(on_color{0}), R"(\e[00m|\e[00m\e[48;5;0m)");
    EXPECT_EQ(one(on_color{256}), R"(\e[00m|\e[00m\e[48;5;256m)");
    EXPECT_EQ(one(on_color{INT_MIN}), R"(\e[00m|\e[00m\e[48;5;-2147483648m)");
    EXPECT_EQ(one(on_color{INT_MAX}), R"(\e[00m|\e[00m\e[48;5;2147483647m)");
    EXPECT_EQ(one(rgb{0, -1, 256}), R"(\e[00m|\e[00m\e[38;2;0;-1;256m)");
    EXPECT_EQ(one(rgb{INT_MIN, INT_MAX, INT_MIN}), R"(\e[00m|\e[00m\e[38;2;-2147483648;2147483647;-2147483648m)");
    EXPECT_EQ(one(on_rgb{0, -1, 256}), R"(\e[00m|\e[00m\e[48;2;0;-1;256m)");
    EXPECT_EQ(one(on_rgb{INT_MIN, INT_MAX, INT_MIN}), R"(\e[00m|\e[00m\e[48;2;-2147483648;2147483647;-2147483648m)");
}

TEST(ExtendedColor, IsReplacedByANamedColor)
{
    EXPECT_EQ(shown([](std::ostream& os) {
                  os << color{200} << on_color{201};
                  os << "|" << red << "|" << on_green;
              }),
              R"(\e[00m\e[1m\e[38;5;200m)"
              R"(\e[00m\e[1m\e[38;5;200m\e[48;5;201m)"
              R"(|\e[00m\e[1m\e[31m\e[48;5;201m)"
              R"(|\e[00m\e[1m\e[31m\e[42m)");
}

TEST(ExtendedColor, IsForgottenByReset)
{
    EXPECT_EQ(shown([](std::ostream& os) {
                  os << rgb{1, 2, 3} << on_rgb{4, 5, 6} << "|" << reset << adjust;
              }),
              R"(\e[00m\e[1m\e[38;2;1;2;3m)"
              R"(\e[00m\e[1m\e[38;2;1;2;3m\e[48;2;4;5;6m)"
              R"(|\e[00m\e[25h\e[00m\e[1m)");
}

TEST(ExtendedColor, LeavesTheSavedRecordAlone)
{
    EXPECT_EQ(shown([](std::ostream& os) {
                  os << green << push << "|" << color{1} << on_color{2} << rgb{3, 3, 3} << on_rgb{4, 4, 4} << pull;
                  os << "|" << adjust;
              }),
              R"(\e[00m\e[1m\e[32m)"
              R"(|\e[00m\e[1m\e[38;5;1m)"
              R"(\e[00m\e[1m\e[38;5;1m\e[48;5;2m)"
              R"(\e[00m\e[1m\e[38;2;3;3;3m\e[48;5;2m)"
              R"(\e[00m\e[1m\e[38;2;3;3;3m\e[48;2;4;4;4m)"
              R"(|\e[00m\e[1m\e[32m\e[32m)");
}

TEST(ExtendedColor, ShowsOnEachStreamThatSharesTheRecord)
{
    auto const run = on_terminal([] {
        std::cout << colorize << color{7};
        std::cerr << colorize << on_color{8};
    });
    EXPECT_EQ(readable(run.err), R"(\e[00m\e[1m\e[38;5;7m\e[48;5;8m)");
}

TEST(ExtendedColor, IsPlainDigitsWhateverTheLocale)
{
    std::string const expected = R"(\e[00m|\e[00m\e[38;5;1000000m)"
                                 R"(\e[00m\e[38;5;1000000m\e[48;5;-1000000m)"
                                 R"(\e[00m\e[38;2;1000;2000;3000m\e[48;5;-1000000m)"
                                 R"(\e[00m\e[38;2;1000;2000;3000m\e[48;2;4000;5000;6000m)";
    auto const colors = [](std::ostream& os) {
        os << thin << "|" << color{1000000} << on_color{-1000000} << rgb{1000, 2000, 3000} << on_rgb{4000, 5000, 6000};
    };
    EXPECT_EQ(shown([&](std::ostream& os) {
                  std::locale::global(grouping_locale());
                  colors(os);
              }),
              expected);
    EXPECT_EQ(shown([&](std::ostream& os) {
                  os.imbue(grouping_locale());
                  colors(os);
              }),
              expected);
}

TEST(ExtendedColor, IsSeen)
{
    auto const run = on_terminal([] {
        std::cout << colorize << color{200} << on_rgb{1, 2, 3} << "a" << rgb{255, 128, 0} << on_color{17} << "b";
        std::cout << csi::rgb(4, 5, 6) << csi::on_rgb(7, 8, 9) << "c" << csi::color(0) << csi::color(32) << "d";
    });
    Screen const screen{run.out};
    ASSERT_EQ(screen.text(0), "abcd");
    auto const components = [](Color const& c) {
        return std::to_string(c.r) + "," + std::to_string(c.g) + "," + std::to_string(c.b);
    };
    EXPECT_EQ(screen.cell(0, 0).foreground.index, 200);
    EXPECT_EQ(screen.cell(0, 0).background.index, -1);
    EXPECT_EQ(components(screen.cell(0, 0).background), "1,2,3");
    EXPECT_TRUE(screen.cell(0, 0).bold);
    EXPECT_EQ(screen.cell(0, 1).foreground.index, -1);
    EXPECT_EQ(components(screen.cell(0, 1).foreground), "255,128,0");
    EXPECT_EQ(screen.cell(0, 1).background.index, 17);
    EXPECT_EQ(components(screen.cell(0, 2).foreground), "4,5,6");
    EXPECT_EQ(components(screen.cell(0, 2).background), "7,8,9");
    EXPECT_EQ(screen.cell(0, 3).foreground.index, 2);
    EXPECT_TRUE(screen.cell(0, 3).background.is_default);
    EXPECT_FALSE(screen.cell(0, 3).bold);
}

} // namespace
