#include "svg.hpp"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace hueline::pictures;

Rgb constexpr red = {0xff, 0, 0};
Rgb constexpr blue = {0, 0, 0xff};

Row row(std::string const& text, Cell const& style = {})
{
    Row cells;
    for (char const c : text) {
        cells.push_back(style);
        cells.back().character = c;
    }
    return cells;
}

Row operator+(Row left, Row const& right)
{
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

std::string still(Grid const& grid) { return svg({{grid, 0}}, "title"); }

testing::AssertionResult has(std::string const& picture, std::string const& part)
{
    if (picture.find(part) != std::string::npos) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "no " << part << " in\n" << picture;
}

TEST(Svg, HasTheSizeOfItsCellsAndMargins)
{
    EXPECT_TRUE(has(still({row("abc"), row("   ")}), R"(width="51" height="60" viewBox="0 0 51 60")"));
}

TEST(Svg, SaysWhatItShows) { EXPECT_TRUE(has(svg({{{row("a")}, 0}}, "a < b"), "<title>a &lt; b</title>")); }

TEST(Svg, PlacesARunOfAlikeCellsAsOneText)
{
    EXPECT_TRUE(has(still({row("    "), row(" a b")}), R"(<text class="a" x="9" y="32" textLength="27">a b</text>)"));
}

TEST(Svg, LeavesASingleCharacterItsLength)
{
    EXPECT_TRUE(has(still({row("a")}), R"(<text class="a" x="0" y="14">a</text>)"));
}

TEST(Svg, StretchesAWideCharacterToItsTwoCells)
{
    Cell const wide = {.character = "\xe6\x97\xa5"};
    Cell const second = {.character = ""};
    std::string const picture = still({row("ab") + Row{wide, second} + row("cd")});
    EXPECT_TRUE(has(picture, R"(<text class="a" x="0" y="14" textLength="18">ab</text>)"));
    EXPECT_TRUE(has(picture, R"(x="18" y="14" textLength="18" lengthAdjust="spacingAndGlyphs">)"
                             "\xe6\x97\xa5</text>"));
    EXPECT_TRUE(has(picture, R"(<text class="a" x="36" y="14" textLength="18">cd</text>)"));
}

TEST(Svg, EscapesWhatIsMarkup) { EXPECT_TRUE(has(still({row("<&>\"")}), ">&lt;&amp;&gt;&quot;</text>")); }

TEST(Svg, GivesEachStyleARule)
{
    Cell const shouted = {.ink = red, .bold = true};
    Cell const whispered = {.ink = blue, .italic = true};
    std::string const picture = still({row("ab", shouted) + row("cd", whispered) + row("ef", shouted)});
    EXPECT_TRUE(has(picture, ".a{fill:#ff0000;font-weight:bold}\n.b{fill:#0000ff;font-style:italic}\n"));
    EXPECT_TRUE(has(picture, R"(<text class="a" x="0" y="14" textLength="18">ab</text>)"));
    EXPECT_TRUE(has(picture, R"(<text class="b" x="18" y="14" textLength="18">cd</text>)"));
    EXPECT_TRUE(has(picture, R"(<text class="a" x="36" y="14" textLength="18">ef</text>)"));
}

TEST(Svg, CollectsTheGroundsOfAColor)
{
    Cell const on_red = {.ground = red};
    EXPECT_TRUE(has(still({row(" ") + row("  ", on_red), row("   ", on_red)}),
                    R"(<path fill="#ff0000" d="M9 0h18v18h-18zM0 18h27v18h-27z"/>)"));
}

TEST(Svg, UnderlinesAndCrossesBlanksToo)
{
    EXPECT_TRUE(has(still({row("a ", {.underline = true})}), R"(<path class="a" d="M0 16h18v1h-18z"/>)"));
    EXPECT_TRUE(has(still({row("a ", {.strike = true})}), R"(<path class="a" d="M0 9h18v1h-18z"/>)"));
}

TEST(Svg, Blinks)
{
    std::string const picture = still({row("a", {.blink = true})});
    EXPECT_TRUE(has(picture, ";animation:blink 1s step-end infinite}"));
    EXPECT_TRUE(has(picture, "@keyframes blink{50%{fill-opacity:0}}"));
    EXPECT_FALSE(has(still({row("a")}), "animation"));
}

TEST(MovingSvg, JumpsFromFrameToFrame)
{
    std::string const picture = svg({{{row("a")}, 100}, {{row("b")}, 100}, {{row("c")}, 200}}, "");
    EXPECT_TRUE(has(picture, ".strip{animation:strip 400ms step-end infinite}"));
    EXPECT_TRUE(has(picture, "@keyframes strip{0%{transform:translateY(-0px)}25%{transform:translateY(-18px)}"
                             "50%{transform:translateY(-36px)}}"));
    EXPECT_TRUE(has(picture, R"(<text class="a" x="0" y="14">a</text>)"));
    EXPECT_TRUE(has(picture, R"(<text class="a" x="0" y="32">b</text>)"));
    EXPECT_TRUE(has(picture, R"(<text class="a" x="0" y="50">c</text>)"));
}

TEST(MovingSvg, ShowsAFrameFromPastTheMiddleWhereNothingMoves)
{
    std::string const picture = svg({{{row("a")}, 100}, {{row("b")}, 100}, {{row("c")}, 100}, {{row("d")}, 100}}, "");
    EXPECT_TRUE(has(picture, R"x(<g class="strip" transform="translate(0,-36)">)x"));
    EXPECT_TRUE(has(picture, "@media(prefers-reduced-motion:reduce){*{animation:none!important}}"));
}

TEST(MovingSvg, DrawsAFrameThatReturnsOnce)
{
    std::string const picture = svg({{{row("a")}, 100}, {{row("b")}, 100}, {{row("a")}, 100}, {{row("c")}, 100}}, "");
    EXPECT_TRUE(has(picture, "50%{transform:translateY(-0px)}75%{transform:translateY(-36px)}}"));
    EXPECT_EQ(picture.find(">a</text>"), picture.rfind(">a</text>"));
}

TEST(MovingSvg, DrawsRowsThatNeverChangeOnce)
{
    std::string const picture = svg({{{row("s"), row("a")}, 100}, {{row("s"), row("b")}, 100}}, "");
    EXPECT_EQ(picture.find(">s</text>"), picture.rfind(">s</text>"));
    EXPECT_LT(picture.find(">s</text>"), picture.find("<g "));
    EXPECT_TRUE(has(picture, R"(<text class="a" x="0" y="68">b</text>)"));
}

} // namespace
