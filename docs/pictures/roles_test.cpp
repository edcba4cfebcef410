#include "roles.hpp"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace hueline::pictures;

Rgb constexpr black = {0, 0, 0};
Rgb constexpr white = {0xff, 0xff, 0xff};

// The sixteen colours, all alike but red.
std::string sixteen(std::string const& red)
{
    std::string fields = "\t#000000\t" + red;
    for (int i = 2; i < 16; ++i) {
        fields += "\t#0000ff";
    }
    return fields;
}

std::string const table = "# terminal, ...\n"
                          "paper\tyes\t#111111\t#eeeeee" +
                          sixteen("#ff0000") + "\nslate\tno\t#eeeeee\t#111111" + sixteen("#800000") + "\n";

std::string filled(std::string const& line)
{
    Recording const roles = {.name = "stream", .terminal = line};
    return roles_page("{{roles stream}}\n", {roles}, own_colors(table));
}

TEST(OwnColors, AreReadByField)
{
    std::vector<OwnColors> const found = own_colors(table);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_EQ(found[0].terminal, "paper");
    EXPECT_TRUE(found[0].palette.bold_is_bright);
    EXPECT_EQ(found[0].palette.ink, (Rgb{0x11, 0x11, 0x11}));
    EXPECT_EQ(found[0].palette.ground, (Rgb{0xee, 0xee, 0xee}));
    EXPECT_EQ(found[1].palette.named[1], (Rgb{0x80, 0, 0}));
    EXPECT_EQ(found[1].palette.named[15], (Rgb{0, 0, 0xff}));
    EXPECT_FALSE(found[1].palette.bold_is_bright);
}

TEST(OwnColors, ThatAreCutOffAreRefused)
{
    EXPECT_THROW(own_colors("paper\tyes\t#111111\t#eeeeee\n"), std::runtime_error);
    EXPECT_THROW(own_colors("paper\tyes\t111111\t#eeeeee" + sixteen("#ff0000") + "\n"), std::runtime_error);
}

TEST(Ground, IsTheTerminalsOwnWhereItFits)
{
    std::vector<OwnColors> const found = own_colors(table);
    EXPECT_EQ(on_light(found[0].palette).ground, (Rgb{0xee, 0xee, 0xee}));
    EXPECT_EQ(on_dark(found[0].palette).ground, black);
    EXPECT_EQ(on_dark(found[0].palette).ink, white);
    EXPECT_EQ(on_dark(found[1].palette).ground, (Rgb{0x11, 0x11, 0x11}));
    EXPECT_EQ(on_light(found[1].palette).ground, white);
    EXPECT_EQ(on_light(found[1].palette).ink, black);
}

// #ff0000 is 5.25 on black, 3.44 on #eeeeee; #800000 is 1.73 on #111111 and 10.95 on white.
TEST(RolesPage, HasLeastAndMostOfAllTerminals)
{
    EXPECT_EQ(filled("\x1b[00m\x1b[31malert\x1b[00m\n"),
              "| role | in force | dark, at least | at most | legible in | light, at least | at most | legible in |\n"
              "|---|---|---|---|---|---|---|---|\n"
              "| `alert` | `\\e[00m\\e[31m` | **1.7** (slate) | 5.2 (paper) | 1 of 2 | **3.4** (paper) | 10.9 (slate) "
              "| 1 of 2 |\n");
}

TEST(RolesPage, NamesWhatShowsABytesByTheWordAfterTwoBlanks)
{
    EXPECT_NE(filled("\x1b[31m80\x1b[00m\x1b[25h  crc(byte)\n").find("| `crc(byte)` | `\\e[31m` |"), std::string::npos);
}

TEST(RolesPage, ShowsOnlyWhatIsInForce)
{
    EXPECT_NE(filled("\x1b[00m\x1b[31m\x1b[00m\x1b[1m\x1b[31mx\n").find("| `\\e[00m\\e[1m\\e[31m` |"),
              std::string::npos);
}

TEST(RolesPage, HasARowForEachRoleOfAResult)
{
    std::string const result = "on a terminal: \\e[38;5;231mtitle\\e[39m on dark\\n\n"
                               "               \\e[38;5;16mtitle\\e[39m on light\\n\n";
    EXPECT_EQ(roles_page(result + "{{own}}\n", {}, {}),
              result + "| role | in force | ground | contrast |\n|---|---|---|---|\n"
                       "| `title` | `\\e[38;5;231m` | black | 21.0 |\n"
                       "| `title` | `\\e[38;5;16m` | white | 21.0 |\n");
}

TEST(RolesPage, RefusesARoleOfItsOwnThatIsHardToRead)
{
    EXPECT_THROW(roles_page("on a terminal: \\e[38;5;231mtitle\\e[39m on light\\n\n{{own}}\n", {}, {}),
                 std::runtime_error);
}

TEST(RolesPage, RefusesUnknownRoles)
{
    EXPECT_THROW(roles_page("{{roles stream}}\n", {}, own_colors(table)), std::runtime_error);
}

} // namespace
