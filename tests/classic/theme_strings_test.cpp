#include "kestry/hueline_classic.hpp"

#include "support/modes.hpp"
#include "support/formula.hpp"
#include "support/grouping.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace std::string_literals;
namespace ColorTheme = kestry::ColorTheme;
namespace DataTheme = kestry::DataTheme;

TEST(ThemeString, OfAPathsNumberIsInDecimal)
{
    {
        InMode const mode(Mode::on);
        EXPECT_EQ(readable(ColorTheme::path(42u)), R"(\e[36m42)");
        EXPECT_EQ(readable(ColorTheme::path(0u)), R"(\e[36m0)");
        EXPECT_EQ(readable(ColorTheme::path(9u)), R"(\e[36m9)");
        EXPECT_EQ(readable(ColorTheme::path(10u)), R"(\e[36m10)");
        EXPECT_EQ(readable(ColorTheme::path(2147483648u)), R"(\e[36m2147483648)");
        EXPECT_EQ(readable(ColorTheme::path(UINT_MAX)), R"(\e[36m4294967295)");
    }
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        EXPECT_EQ(ColorTheme::path(42u), "42");
        EXPECT_EQ(ColorTheme::path(UINT_MAX), "4294967295");
    }
}

TEST(ThemeString, OfAPathsNumberHasNoGroupsWhateverTheGlobalLocale)
{
    GroupedDigits const grouped;
    EXPECT_EQ(ColorTheme::path(1234567u), "1234567");
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(ColorTheme::path(1234567u)), R"(\e[36m1234567)");
    EXPECT_EQ(readable(ColorTheme::alert("x")), R"(\e[1m\e[31mx\e[2m)");
    EXPECT_EQ(readable(ColorTheme::status()), R"(\e[35m)");
    EXPECT_EQ(readable(DataTheme::total_count(0xab)), R"(\e[1m\e[34mab\e[2m)");
}

TEST(ThemeString, OfAByteIsTwoDigits)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(DataTheme::immediate_destination(0x0a)), R"(\e[36m0a)");
    EXPECT_EQ(readable(DataTheme::total_count(0x7f)), R"(\e[1m\e[34m7f\e[2m)");
    for (unsigned value = 0; value < 256; ++value) {
        auto const b = static_cast<unsigned char>(value);
        EXPECT_EQ(DataTheme::immediate_destination(b), "\x1b[36m" + two_digits(b));
        EXPECT_EQ(DataTheme::total_count(b), "\x1b[1m\x1b[34m" + two_digits(b) + "\x1b[2m");
    }
}

TEST(ThemeString, OfAByteIsTheDigitsAloneWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        EXPECT_EQ(DataTheme::total_count(0x7f), "7f");
        for (unsigned value = 0; value < 256; ++value) {
            auto const b = static_cast<unsigned char>(value);
            EXPECT_EQ(DataTheme::immediate_destination(b), two_digits(b));
            EXPECT_EQ(DataTheme::total_count(b), two_digits(b));
        }
    }
}

} // namespace
