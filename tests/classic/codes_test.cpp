#include "kestry/hueline_classic.hpp"

#include "support/modes.hpp"
#include "support/allocations.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace std::string_literals;
using kestry::HexColor;
using kestry::HexColor_VGA;
using kestry::Hueline;

struct Code {
    int value;
    std::string decimal;
    std::string bright;
};

// clang-format off
Code const codes[] = {
    {INT_MIN, "-2147483648", "-2147483588"}, {INT_MIN + 1, "-2147483647", "-2147483587"},
    {-61, "-61", "-1"}, {-60, "-60", "0"}, {-1, "-1", "59"},
    {0, "0", "60"}, {9, "9", "69"}, {10, "10", "70"}, {39, "39", "99"}, {40, "40", "100"}, {255, "255", "315"},
    {65536, "65536", "65596"}, {INT_MAX - 60, "2147483587", "2147483647"},
    {INT_MAX - 59, "2147483588", "2147483648"}, {INT_MAX, "2147483647", "2147483707"}};
// clang-format on

TEST(Codes, AreAnyNumberInDecimalAloneAndBeforeATextOrAByte)
{
    InMode const mode(Mode::on);
    for (Code const& c : codes) {
        auto const code = static_cast<HexColor>(c.value);
        std::string const sequence = R"(\e[)" + c.decimal + "m";
        EXPECT_EQ(readable(Hueline::color(code)), sequence);
        EXPECT_EQ(readable(Hueline::bright_color(code)), R"(\e[)" + c.bright + "m");
        EXPECT_EQ(readable(Hueline::color(code, "a\0b"s)), sequence + R"(a\x00b)");
        EXPECT_EQ(readable(Hueline::color(code, 0x5a)), sequence + "5a");
        EXPECT_EQ(readable(Hueline::bright_color(code, "")), R"(\e[1m)" + sequence + R"(\e[2m)");
        EXPECT_EQ(readable(Hueline::bright_color(code, 0x0f)), R"(\e[1m)" + sequence + R"(0f\e[2m)");
    }
}

TEST(TrueColor, HasAnyNumbersInDecimal)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(Hueline::color(0, 0, 0, 0)), R"(\e[0;2;0;0;0m)");
    EXPECT_EQ(readable(Hueline::color(INT_MIN, INT_MIN, INT_MIN, INT_MIN)),
              R"(\e[-2147483648;2;-2147483648;-2147483648;-2147483648m)");
    EXPECT_EQ(readable(Hueline::color(INT_MIN, -1, INT_MAX)), R"(\e[38;2;-2147483648;-1;2147483647m)");
    EXPECT_EQ(readable(Hueline::color_bg(INT_MAX, 256, INT_MIN)), R"(\e[48;2;2147483647;256;-2147483648m)");
}

std::string const vga_colors[] = {"0;0;0",     "128;0;0",     "0;128;0",     "128;128;0",  "0;0;128", "128;0;128",
                                  "0;128;128", "192;192;192", "128;128;128", "255;0;0",    "0;255;0", "255;255;0",
                                  "0;0;255",   "255;0;255",   "0;255;255",   "255;255;255"};

TEST(VgaColor, IsATrueColorBackgroundWhileColorIsInUse)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        int value = 0;
        for (std::string const& numbers : vga_colors) {
            EXPECT_EQ(readable(Hueline::color(static_cast<HexColor_VGA>(value++))),
                      m == Mode::on ? R"(\e[48;2;)" + numbers + "m" : "");
        }
    }
}

TEST(VgaColor, OutOfRangeThrowsWithColorAndWithout)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        for (int const value : {INT_MIN, INT_MIN + 15, -1, 16, 17, 31, 255, 256, 65536, INT_MAX}) {
            EXPECT_THROW(Hueline::color(static_cast<HexColor_VGA>(value)), kestry::UnknownCodeException) << value;
        }
    }
}

TEST(CodesMemory, IsOneAllocationForALongText)
{
    std::string const long_text(1000, 'x');
    for (Mode const m : every_mode) {
        InMode const mode(m);
        std::string text;
        EXPECT_EQ(allocations_of([&] { text = Hueline::color(HexColor::red, long_text); }).count, 1u);
        EXPECT_EQ(allocations_of([&] { text = Hueline::bright_color(HexColor::red, long_text); }).count, 1u);
    }
    EXPECT_EQ(allocations.overruns, 0u);
}

} // namespace
