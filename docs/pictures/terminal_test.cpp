#include "terminal.hpp"

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace hueline::pictures;

Rgb constexpr red = {0xcd, 0x31, 0x31};
Rgb constexpr faint_red = {0x8f, 0x28, 0x29};
Rgb constexpr faint_default = {0x96, 0x99, 0x9e};

Grid shown(std::string const& bytes)
{
    Terminal terminal(4, 20);
    terminal.feed(bytes);
    return terminal.grid();
}

std::string text(Row const& row)
{
    std::string all;
    for (Cell const& cell : row) {
        all += cell.character;
    }
    return all.substr(0, all.find_last_not_of(' ') + 1);
}

TEST(Terminal, ShowsPlainTextInDefaultColors)
{
    Grid const grid = shown("a\xe2\x89\xa4");
    EXPECT_EQ(grid[0][0], Cell{.character = "a"});
    EXPECT_EQ(grid[0][1], Cell{.character = "\xe2\x89\xa4"});
    EXPECT_EQ(grid[0][2], Cell{});
    EXPECT_EQ(grid[3][19], Cell{});
}

TEST(Terminal, LeavesTheSecondCellOfAWideCharacterEmpty)
{
    Grid const grid = shown("a\xe6\x97\xa5"
                            "b");
    EXPECT_EQ(grid[0][1].character, "\xe6\x97\xa5");
    EXPECT_EQ(grid[0][2].character, "");
    EXPECT_EQ(grid[0][3].character, "b");
}

TEST(Terminal, ReturnsTheCursorAtALineFeed)
{
    Grid const grid = shown("one\ntwo");
    EXPECT_EQ(text(grid[0]), "one");
    EXPECT_EQ(text(grid[1]), "two");
}

TEST(Terminal, GoesOnWithTheNextBytes)
{
    Terminal terminal(2, 20);
    terminal.feed("\x1b[2;31ma");
    terminal.feed("b");
    EXPECT_EQ(text(terminal.grid()[0]), "ab");
    EXPECT_EQ(terminal.grid()[0][1].ink, faint_red);
}

TEST(Terminal, ShowsAttributes)
{
    Grid const grid = shown("\x1b[1ma\x1b[0;3mb\x1b[0;4mc\x1b[0;5md\x1b[0;9me");
    EXPECT_EQ(grid[0][0], (Cell{.character = "a", .bold = true}));
    EXPECT_EQ(grid[0][1], (Cell{.character = "b", .italic = true}));
    EXPECT_EQ(grid[0][2], (Cell{.character = "c", .underline = true}));
    EXPECT_EQ(grid[0][3], (Cell{.character = "d", .blink = true}));
    EXPECT_EQ(grid[0][4], (Cell{.character = "e", .strike = true}));
}

TEST(Terminal, ShowsNamedPaletteAndTrueColors)
{
    Grid const grid = shown("\x1b[31ma\x1b[38;5;196mb\x1b[38;2;1;2;3mc\x1b[0;44md\x1b[91me");
    EXPECT_EQ(grid[0][0].ink, red);
    EXPECT_EQ(grid[0][1].ink, (Rgb{255, 0, 0}));
    EXPECT_EQ(grid[0][2].ink, (Rgb{1, 2, 3}));
    EXPECT_EQ(grid[0][3].ground, (Rgb{0x3b, 0x78, 0xd8}));
    EXPECT_EQ(grid[0][4].ink, (Rgb{0xf1, 0x4c, 0x4c}));
}

TEST(Terminal, HasThePaletteOfXterm)
{
    Grid const grid =
        shown("\x1b[38;5;16ma\x1b[38;5;17mb\x1b[48;5;110;1mc\x1b[38;5;231md\x1b[38;5;232me\x1b[38;5;255mf");
    EXPECT_EQ(grid[0][0].ink, (Rgb{0, 0, 0}));
    EXPECT_EQ(grid[0][1].ink, (Rgb{0, 0, 95}));
    EXPECT_EQ(grid[0][2].ground, (Rgb{135, 175, 215}));
    EXPECT_TRUE(grid[0][2].bold);
    EXPECT_EQ(grid[0][3].ink, (Rgb{255, 255, 255}));
    EXPECT_EQ(grid[0][4].ink, (Rgb{8, 8, 8}));
    EXPECT_EQ(grid[0][5].ink, (Rgb{238, 238, 238}));
}

TEST(Terminal, ExchangesTheColorsOfReversedText)
{
    Grid const grid = shown("\x1b[7;31ma");
    EXPECT_EQ(grid[0][0].ink, default_ground);
    EXPECT_EQ(grid[0][0].ground, red);
}

TEST(Faint, IsTwoThirdsOfTheWayFromTheGround)
{
    EXPECT_EQ(shown("\x1b[2;31ma")[0][0].ink, faint_red);
    EXPECT_EQ(shown("\x1b[2ma")[0][0].ink, faint_default);
    EXPECT_EQ(shown("\x1b[2;38;2;200;0;0;48;2;50;90;0ma")[0][0].ink, (Rgb{150, 30, 0}));
}

TEST(Faint, StaysUntilItIsEnded)
{
    Grid const grid = shown("\x1b[2ma\x1b[31mb\x1b[22mc\x1b[2md\x1b[0me\x1b[2mf\x1b[mg");
    EXPECT_EQ(grid[0][0].ink, faint_default);
    EXPECT_EQ(grid[0][1].ink, faint_red);
    EXPECT_EQ(grid[0][2].ink, red);
    EXPECT_EQ(grid[0][3].ink, faint_red);
    EXPECT_EQ(grid[0][4].ink, default_ink);
    EXPECT_EQ(grid[0][5].ink, faint_default);
    EXPECT_EQ(grid[0][6].ink, default_ink);
}

TEST(Faint, MayBeBoldToo)
{
    Cell const cell = shown("\x1b[1m\x1b[2m\x1b[31ma")[0][0];
    EXPECT_TRUE(cell.bold);
    EXPECT_EQ(cell.ink, faint_red);
}

TEST(Faint, IsNoNumberOfAColor)
{
    EXPECT_EQ(shown("\x1b[38;5;2ma")[0][0].ink, (Rgb{0x0d, 0xbc, 0x79}));
    EXPECT_EQ(shown("\x1b[38;2;2;2;2ma")[0][0].ink, (Rgb{2, 2, 2}));
    EXPECT_EQ(shown("\x1b[48;5;2ma")[0][0].ink, default_ink);
    EXPECT_EQ(shown("\x1b[48;5;1;2ma")[0][0].ink, (Rgb{212, 162, 165}));
}

TEST(Faint, MovesWithItsCell) { EXPECT_EQ(shown("\n\x1b[2;31ma\x1b[0m\x1b[1S")[0][0].ink, faint_red); }

TEST(Concealed, IsBlank)
{
    Grid const grid = shown("\x1b[8;41ma\x1b[28mb\x1b[8mc\x1b[0md");
    EXPECT_EQ(text(grid[0]), " b d");
    EXPECT_EQ(grid[0][0].ground, red);
    EXPECT_EQ(grid[0][1].ink, default_ink);
}

TEST(Cursor, IsSavedAndRestored)
{
    Grid const grid = shown("ab\x1b[s\ncd\x1b[ue");
    EXPECT_EQ(text(grid[0]), "abe");
    EXPECT_EQ(text(grid[1]), "cd");
}

TEST(Cursor, BringsFaintBack)
{
    Grid const grid = shown("\x1b[2m\x1b[s\x1b[0ma\x1b[ub\x1b[31mc");
    EXPECT_EQ(text(grid[0]), "bc");
    EXPECT_EQ(grid[0][0].ink, faint_default);
    EXPECT_EQ(grid[0][1].ink, faint_red);
}

} // namespace
