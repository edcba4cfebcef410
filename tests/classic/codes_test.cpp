#include "kestry/hueline_classic.hpp"

#include "support/modes.hpp"
#include "support/allocations.hpp"
#include "support/formula.hpp"
#include "support/grouping.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace std::string_literals;
using kestry::HexColor;
using kestry::HexColor_VGA;
using kestry::Hueline;
using kestry::UnknownCodeException;

struct Code {
    HexColor code;
    char const* sequence;
    char const* bright;
};

HexColor code_of(int value) { return static_cast<HexColor>(value); }

Code const codes[] = {
    {HexColor::reset, R"(\e[0m)", R"(\e[60m)"},
    {HexColor::bright, R"(\e[1m)", R"(\e[61m)"},
    {HexColor::dim, R"(\e[2m)", R"(\e[62m)"},
    {HexColor::red, R"(\e[31m)", R"(\e[91m)"},
    {HexColor::green, R"(\e[32m)", R"(\e[92m)"},
    {HexColor::yellow, R"(\e[33m)", R"(\e[93m)"},
    {HexColor::blue, R"(\e[34m)", R"(\e[94m)"},
    {HexColor::magenta, R"(\e[35m)", R"(\e[95m)"},
    {HexColor::cyan, R"(\e[36m)", R"(\e[96m)"},
    {HexColor::white, R"(\e[37m)", R"(\e[97m)"},
    // None of the above is as good.
    {code_of(INT_MIN), R"(\e[-2147483648m)", R"(\e[-2147483588m)"},
    {code_of(INT_MIN + 1), R"(\e[-2147483647m)", R"(\e[-2147483587m)"},
    {code_of(-61), R"(\e[-61m)", R"(\e[-1m)"},
    {code_of(-60), R"(\e[-60m)", R"(\e[0m)"},
    {code_of(-1), R"(\e[-1m)", R"(\e[59m)"},
    {code_of(9), R"(\e[9m)", R"(\e[69m)"},
    {code_of(10), R"(\e[10m)", R"(\e[70m)"},
    {code_of(30), R"(\e[30m)", R"(\e[90m)"},
    {code_of(39), R"(\e[39m)", R"(\e[99m)"},
    {code_of(40), R"(\e[40m)", R"(\e[100m)"},
    {code_of(255), R"(\e[255m)", R"(\e[315m)"},
    {code_of(256), R"(\e[256m)", R"(\e[316m)"},
    {code_of(65536), R"(\e[65536m)", R"(\e[65596m)"},
    {code_of(INT_MAX - 60), R"(\e[2147483587m)", R"(\e[2147483647m)"},
    {code_of(INT_MAX - 59), R"(\e[2147483588m)", R"(\e[2147483648m)"},
    {code_of(INT_MAX), R"(\e[2147483647m)", R"(\e[2147483707m)"},
};

std::string const long_text(1000, 'x');
std::string const texts[] = {"", "x", "plain text", "\x1b[31m\0\xff \n"s, long_text};

// ---------------------------------------------------------------------------------------------
// Sequences
// ---------------------------------------------------------------------------------------------

TEST(Codes, AreWrittenInDecimal)
{
    InMode const mode(Mode::on);
    for (Code const& c : codes) {
        EXPECT_EQ(readable(Hueline::color(c.code)), c.sequence);
        EXPECT_EQ(readable(Hueline::bright_color(c.code)), c.bright);
    }
}

TEST(Codes, AreNothingWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        for (Code const& c : codes) {
            EXPECT_EQ(Hueline::color(c.code), "");
            EXPECT_EQ(Hueline::bright_color(c.code), "");
        }
    }
}

TEST(TrueColor, HasItsNumbersInDecimal)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(Hueline::color(10, 20, 30)), R"(\e[38;2;10;20;30m)");
    EXPECT_EQ(readable(Hueline::color_bg(1, 2, 3)), R"(\e[48;2;1;2;3m)");
    EXPECT_EQ(readable(Hueline::color(38, 300, -1, 0)), R"(\e[38;2;300;-1;0m)");
    EXPECT_EQ(readable(Hueline::color(48, 1, 22, 255)), R"(\e[48;2;1;22;255m)");
    EXPECT_EQ(readable(Hueline::color(0, 0, 0, 0)), R"(\e[0;2;0;0;0m)");
    EXPECT_EQ(readable(Hueline::color(58, 1, 2, 3)), R"(\e[58;2;1;2;3m)");
    EXPECT_EQ(readable(Hueline::color(0, 0, 0)), R"(\e[38;2;0;0;0m)");
    EXPECT_EQ(readable(Hueline::color_bg(0, 0, 0)), R"(\e[48;2;0;0;0m)");
    EXPECT_EQ(readable(Hueline::color(INT_MIN, INT_MIN, INT_MIN, INT_MIN)),
              R"(\e[-2147483648;2;-2147483648;-2147483648;-2147483648m)");
    EXPECT_EQ(readable(Hueline::color(INT_MAX, INT_MIN, 0, INT_MAX)), R"(\e[2147483647;2;-2147483648;0;2147483647m)");
    EXPECT_EQ(readable(Hueline::color(INT_MIN, -1, INT_MAX)), R"(\e[38;2;-2147483648;-1;2147483647m)");
    EXPECT_EQ(readable(Hueline::color_bg(INT_MAX, 256, INT_MIN)), R"(\e[48;2;2147483647;256;-2147483648m)");
}

TEST(TrueColor, IsNothingWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        EXPECT_EQ(Hueline::color(10, 20, 30), "");
        EXPECT_EQ(Hueline::color_bg(1, 2, 3), "");
        EXPECT_EQ(Hueline::color(38, 300, -1, 0), "");
    }
}

struct Vga {
    HexColor_VGA color;
    char const* sequence;
};

// clang-format off
Vga const vga_colors[] = {
    {HexColor_VGA::black, R"(\e[48;2;0;0;0m)"},
    {HexColor_VGA::maroon, R"(\e[48;2;128;0;0m)"},
    {HexColor_VGA::green, R"(\e[48;2;0;128;0m)"},
    {HexColor_VGA::olive, R"(\e[48;2;128;128;0m)"},
    {HexColor_VGA::navy, R"(\e[48;2;0;0;128m)"},
    {HexColor_VGA::purple, R"(\e[48;2;128;0;128m)"},
    {HexColor_VGA::teal, R"(\e[48;2;0;128;128m)"},
    {HexColor_VGA::silver, R"(\e[48;2;192;192;192m)"},
    {HexColor_VGA::gray, R"(\e[48;2;128;128;128m)"},
    {HexColor_VGA::red, R"(\e[48;2;255;0;0m)"},
    {HexColor_VGA::lime, R"(\e[48;2;0;255;0m)"},
    {HexColor_VGA::yellow, R"(\e[48;2;255;255;0m)"},
    {HexColor_VGA::blue, R"(\e[48;2;0;0;255m)"},
    {HexColor_VGA::fuchsia, R"(\e[48;2;255;0;255m)"},
    {HexColor_VGA::aqua, R"(\e[48;2;0;255;255m)"},
    {HexColor_VGA::white, R"(\e[48;2;255;255;255m)"},
};
// clang-format on

TEST(VgaColor, IsATrueColorBackground)
{
    InMode const mode(Mode::on);
    int value = 0;
    for (Vga const& vga : vga_colors) {
        EXPECT_EQ(readable(Hueline::color(vga.color)), vga.sequence);
        EXPECT_EQ(static_cast<int>(vga.color), value++);
    }
}

TEST(VgaColor, IsNothingWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        for (Vga const& vga : vga_colors) {
            EXPECT_EQ(Hueline::color(vga.color), "");
        }
    }
}

TEST(VgaColor, OutOfRangeThrowsWithColorAndWithout)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        for (int const value : {INT_MIN, INT_MIN + 15, -1, 16, 17, 31, 255, 256, 65536, INT_MAX}) {
            EXPECT_THROW(Hueline::color(static_cast<HexColor_VGA>(value)), UnknownCodeException) << value;
        }
        EXPECT_EQ(Hueline::isUsingColor(), m == Mode::on);
    }
}

// ---------------------------------------------------------------------------------------------
// Bytes and texts
// ---------------------------------------------------------------------------------------------

TEST(ColoredByte, IsTheSequenceAndTwoDigits)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(Hueline::color(HexColor::cyan, 0x0a)), R"(\e[36m0a)");
    EXPECT_EQ(readable(Hueline::color(HexColor::red, 0x00)), R"(\e[31m00)");
    EXPECT_EQ(readable(Hueline::color(HexColor::reset, 0xAB)), R"(\e[0mab)");
    EXPECT_EQ(readable(Hueline::color(code_of(-7), 0xff)), R"(\e[-7mff)");
    EXPECT_EQ(readable(Hueline::bright_color(HexColor::blue, 0xff)), R"(\e[1m\e[34mff\e[2m)");
    EXPECT_EQ(readable(Hueline::bright_color(HexColor::white, 0x05)), R"(\e[1m\e[37m05\e[2m)");
    for (unsigned value = 0; value < 256; ++value) {
        auto const b = static_cast<unsigned char>(value);
        EXPECT_EQ(Hueline::color(HexColor::green, b), "\x1b[32m" + two_digits(b));
        EXPECT_EQ(Hueline::bright_color(HexColor::green, b), "\x1b[1m\x1b[32m" + two_digits(b) + "\x1b[2m");
    }
}

TEST(ColoredByte, IsTheDigitsAloneWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        EXPECT_EQ(Hueline::color(HexColor::red, 0x0f), "0f");
        EXPECT_EQ(Hueline::bright_color(HexColor::red, 0xf0), "f0");
        for (unsigned value = 0; value < 256; ++value) {
            auto const b = static_cast<unsigned char>(value);
            EXPECT_EQ(Hueline::color(HexColor::green, b), two_digits(b));
            EXPECT_EQ(Hueline::bright_color(HexColor::green, b), two_digits(b));
        }
    }
}

TEST(ColoredText, IsTheSequenceAndTheText)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(Hueline::color(HexColor::red, "x")), R"(\e[31mx)");
    EXPECT_EQ(readable(Hueline::color(HexColor::red, "")), R"(\e[31m)");
    EXPECT_EQ(readable(Hueline::bright_color(HexColor::blue, "x")), R"(\e[1m\e[34mx\e[2m)");
    EXPECT_EQ(readable(Hueline::bright_color(HexColor::blue, "")), R"(\e[1m\e[34m\e[2m)");
    for (std::string const& text : texts) {
        EXPECT_EQ(Hueline::color(HexColor::yellow, text), "\x1b[33m" + text);
        EXPECT_EQ(Hueline::bright_color(HexColor::yellow, text), "\x1b[1m\x1b[33m" + text + "\x1b[2m");
    }
}

TEST(ColoredText, IsTheTextAloneWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        for (std::string const& text : texts) {
            EXPECT_EQ(Hueline::color(HexColor::yellow, text), text);
            EXPECT_EQ(Hueline::bright_color(HexColor::yellow, text), text);
        }
    }
}

TEST(ColoredText, HasAnyCode)
{
    InMode const mode(Mode::on);
    for (Code const& c : codes) {
        EXPECT_EQ(readable(Hueline::color(c.code, "text")), c.sequence + "text"s);
        EXPECT_EQ(readable(Hueline::color(c.code, 0x5a)), c.sequence + "5a"s);
        EXPECT_EQ(readable(Hueline::bright_color(c.code, "text")), R"(\e[1m)" + (c.sequence + R"(text\e[2m)"s));
        EXPECT_EQ(readable(Hueline::bright_color(c.code, 0x5a)), R"(\e[1m)" + (c.sequence + R"(5a\e[2m)"s));
    }
}

// ---------------------------------------------------------------------------------------------
// Surroundings
// ---------------------------------------------------------------------------------------------

TEST(Codes, HaveNoGroupsWhateverTheGlobalLocale)
{
    GroupedDigits const grouped;
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(Hueline::color(code_of(1234567))), R"(\e[1234567m)");
    EXPECT_EQ(readable(Hueline::bright_color(code_of(1234567))), R"(\e[1234627m)");
    EXPECT_EQ(readable(Hueline::color(1000, 2000, 3000, -4000)), R"(\e[1000;2;2000;3000;-4000m)");
    EXPECT_EQ(readable(Hueline::color(255, 128, 1000)), R"(\e[38;2;255;128;1000m)");
    EXPECT_EQ(readable(Hueline::color_bg(255, 128, 1000)), R"(\e[48;2;255;128;1000m)");
    EXPECT_EQ(readable(Hueline::color(HexColor_VGA::silver)), R"(\e[48;2;192;192;192m)");
    EXPECT_EQ(readable(Hueline::color(HexColor::red, 0xab)), R"(\e[31mab)");
    EXPECT_EQ(readable(Hueline::bright_color(HexColor::red, "x")), R"(\e[1m\e[31mx\e[2m)");
}

TEST(CodesMemory, IsOneAllocationForALongText)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        std::string text;
        EXPECT_EQ(allocations_of([&] { text = Hueline::color(HexColor::red, long_text); }).count, 1u);
        EXPECT_EQ(allocations_of([&] { text = Hueline::bright_color(HexColor::red, long_text); }).count, 1u);
    }
    EXPECT_EQ(allocations.overruns, 0u);
}

} // namespace
