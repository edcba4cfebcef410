#include "kestry/hueline_classic.hpp"

#include "classic/modes.hpp"
#include "hexdump/allocations.hpp"
#include "hexdump/formula.hpp"
#include "support/grouping.hpp"
#include "support/readable.hpp"

#include <climits>
#include <string>

#include <gtest/gtest.h>

namespace {

using namespace hueline::test;
using namespace std::string_literals;
namespace ColorTheme = kestry::ColorTheme;
namespace DataTheme = kestry::DataTheme;

struct OfText {
    char const* role;
    std::string (*theme)(std::string const&);
    std::string before;
    std::string after;
};

OfText const of_texts[] = {
    {"app_title", ColorTheme::app_title, "\x1b[32m", ""},
    {"alert", ColorTheme::alert, "\x1b[1m\x1b[31m", "\x1b[2m"},
    {"info", ColorTheme::info, "\x1b[33m", ""},
    {"default_text", ColorTheme::default_text, "\x1b[36m", ""},
    {"seperator", ColorTheme::seperator, "\x1b[37m", ""},
    {"help", ColorTheme::help, "\x1b[34m", ""},
    {"prompt", ColorTheme::prompt, "\x1b[35m", ""},
    {"version", ColorTheme::version, "\x1b[37m", ""},
    {"cursor", ColorTheme::cursor, "\x1b[1m\x1b[36m", "\x1b[2m"},
    {"commandLine", ColorTheme::commandLine, "\x1b[37m", "\x1b[0m"},
    {"path", ColorTheme::path, "\x1b[36m", ""},
    {"name", ColorTheme::name, "\x1b[1m\x1b[33m", "\x1b[2m"},
    {"request_title", DataTheme::request_title, "\x1b[1m\x1b[35m", "\x1b[2m"},
    {"response_title", DataTheme::response_title, "\x1b[35m", ""},
};

struct OfNothing {
    char const* role;
    std::string (*theme)();
    char const* sequence;
};

OfNothing const of_nothing[] = {
    {"default_text", ColorTheme::default_text, R"(\e[32m)"},
    {"defaultOperatingSystemText", ColorTheme::defaultOperatingSystemText, R"(\e[0m)"},
    {"help", ColorTheme::help, R"(\e[33m)"},
    {"commandLine", ColorTheme::commandLine, R"(\e[36m)"},
    {"status", ColorTheme::status, R"(\e[35m)"},
};

std::string const texts[] = {"", "x", "two words", "a\0b\0"s, "\x1b[0m\xff\n", std::string(1000, 'x')};

TEST(ThemeString, OfATextHasItsColours)
{
    InMode const mode(Mode::on);
    for (OfText const& t : of_texts) {
        for (std::string const& text : texts) {
            EXPECT_EQ(readable(t.theme(text)), readable(t.before + text + t.after)) << t.role;
        }
    }
}

TEST(ThemeString, OfATextIsTheTextWithoutColour)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        for (OfText const& t : of_texts) {
            for (std::string const& text : texts) {
                EXPECT_EQ(t.theme(text), text) << t.role;
            }
        }
    }
}

TEST(ThemeString, OfNothingIsASequence)
{
    InMode const mode(Mode::on);
    for (OfNothing const& t : of_nothing) {
        EXPECT_EQ(readable(t.theme()), t.sequence) << t.role;
    }
}

TEST(ThemeString, OfNothingIsEmptyWithoutColour)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        for (OfNothing const& t : of_nothing) {
            EXPECT_EQ(t.theme(), "") << t.role;
        }
    }
}

TEST(ThemeString, EndsItsColourForACommandLineOnly)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(ColorTheme::commandLine("ls")), R"(\e[37mls\e[0m)");
    for (OfText const& t : of_texts) {
        bool const ends = t.theme("ls").find("\x1b[0m") != std::string::npos;
        EXPECT_EQ(ends, t.role == "commandLine"s) << t.role;
    }
}

TEST(ThemeString, OfATitleHasTheTextNotADump)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(DataTheme::request_title("AB")), R"(\e[1m\e[35mAB\e[2m)");
    EXPECT_EQ(readable(DataTheme::response_title("AB")), R"(\e[35mAB)");
}

TEST(ThemeString, IsTheSameForSomeRoles)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        for (std::string const& text : texts) {
            EXPECT_EQ(ColorTheme::version(text), ColorTheme::seperator(text));
            EXPECT_EQ(ColorTheme::path(text), ColorTheme::default_text(text));
            EXPECT_EQ(DataTheme::response_title(text), ColorTheme::prompt(text));
        }
    }
}

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

TEST(ThemeString, OfAByteIsTheDigitsAloneWithoutColour)
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

TEST(ThemeString, LeavesTheSwitchesAsTheyAre)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        for (OfText const& t : of_texts) {
            t.theme("x");
        }
        for (OfNothing const& t : of_nothing) {
            t.theme();
        }
        ColorTheme::path(1u);
        DataTheme::total_count(1);
        EXPECT_EQ(kestry::Hueline::isUsingColor(), m == Mode::on);
        EXPECT_EQ(kestry::Hueline::getNoFrillsMode(), m == Mode::no_frills);
    }
}

TEST(ThemeString, OutOfMemoryIsBadAlloc)
{
    std::string const text(1000, 'x');
    for (Mode const m : every_mode) {
        InMode const mode(m);
        for (OfText const& t : of_texts) {
            EXPECT_TRUE(runs_out_of_memory([&] { t.theme(text); })) << t.role;
        }
        EXPECT_EQ(kestry::Hueline::isUsingColor(), m == Mode::on);
    }
}

} // namespace
