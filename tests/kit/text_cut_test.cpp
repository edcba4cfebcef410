#include "kestry/kit/text.hpp"

#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using kestry::kit::alignment;
using kestry::kit::display_width;
using kestry::kit::pad;
using kestry::kit::truncate; // hides that of POSIX

std::string cut(std::string_view text, std::size_t columns, std::string_view tail = "…")
{
    return readable(truncate(text, columns, tail));
}

std::string padded(std::string_view text, std::size_t columns, alignment where = alignment::left)
{
    return readable(pad(text, columns, where));
}

TEST(Truncate, LeavesWhatFits)
{
    for (std::string const text : {"", "abc", "äöü", "日本", "\x1b[31mred", "\x1b[31mred\x1b[0m", "e\u0301e\u0301",
                                   "\xff\xfe", "ab\x1b[", "ab\x1b]0;"}) {
        EXPECT_EQ(readable(truncate(text, display_width(text))), readable(text));
        EXPECT_EQ(readable(truncate(text, SIZE_MAX)), readable(text));
    }
}

TEST(Truncate, PutsATailWhereItCuts)
{
    EXPECT_EQ(cut("Hueline", 6), "Hueli…");
    EXPECT_EQ(cut("Hueline", 4), "Hue…");
    EXPECT_EQ(cut("Hueline", 1), "…");
    EXPECT_EQ(cut("Hueline", 0), "");
}

TEST(Truncate, TakesAnyTail)
{
    EXPECT_EQ(truncate("Hueline", 5, "..."), "Hu...");
    EXPECT_EQ(truncate("Hueline", 3, "..."), "...");
    EXPECT_EQ(truncate("Hueline", 5, ""), "Hueli");
    EXPECT_EQ(truncate("Hueline", 5, "日"), "Hue日");
}

TEST(Truncate, LeavesATailOutThatHasNoRoom)
{
    EXPECT_EQ(truncate("Hueline", 2, "..."), "Hu");
    EXPECT_EQ(truncate("Hueline", 1, "日"), "H");
    EXPECT_EQ(truncate("Hueline", 0, "."), "");
}

TEST(Truncate, LetsNoTailWidenWhatIsBeforeIt)
{
    EXPECT_EQ(display_width(truncate("❤❤❤❤❤", 3, "\ufe0f")), 3U);
    EXPECT_EQ(display_width(truncate("❤❤❤❤❤", 1, "\ufe0f")), 0U);
}

TEST(Truncate, KeepsClustersWhole)
{
    EXPECT_EQ(cut("e\u0301e\u0301e\u0301", 2), "e\u0301…");
    EXPECT_EQ(cut("👩‍👩‍👧👩‍👩‍👧", 3), "👩‍👩‍👧…");
    EXPECT_EQ(cut("👩‍👩‍👧abc", 2), "…");
    EXPECT_EQ(cut("🇩🇪🇫🇷", 3), "🇩🇪…");
    EXPECT_EQ(cut("a❤\ufe0f❤\ufe0f", 3), "a…");
    EXPECT_EQ(cut("a❤❤\ufe0f", 3), "a❤…");
    EXPECT_EQ(truncate("abc\u0301", 2, ""), "ab");
    EXPECT_EQ(truncate("👩\u200d\x1b[\nm👩x", 3, ""), "👩\u200d\x1b[\nm"); // the line feed is between two
}

TEST(Truncate, IsAColumnShortOfAWideCharacterOnTheEdge)
{
    EXPECT_EQ(cut("日本語", 4), "日…");
    EXPECT_EQ(cut("日本語", 5), "日本…");
    EXPECT_EQ(truncate("日本語", 3, ""), "日");
    EXPECT_EQ(truncate("日本語", 1, ""), "");
}

TEST(Truncate, KeepsWhatIsInvisibleBeforeTheCut) { EXPECT_EQ(truncate("ab\u200b\ncd", 2, ""), "ab\u200b\n"); }

TEST(Truncate, CutsBetweenBytesThatAreNoUtf8)
{
    EXPECT_EQ(truncate("\xff\xfe\xfd", 2, "."), "\xff.");
    EXPECT_EQ(truncate("a\xe6\xa0", 2, "."), "a.");
}

TEST(Truncate, PutsTheTailInTheStyleOfWhatItReplaces)
{
    EXPECT_EQ(cut("\x1b[31mHueline\x1b[0m", 4), R"(\e[31mHue…\e[39m)");
    EXPECT_EQ(cut("\x1b[31mHueline\x1b[0m", 1), R"(\e[31m…\e[39m)");
    EXPECT_EQ(cut("\x1b[31mHue\x1b[0mline", 4), R"(\e[31mHue\e[0m…)");
    EXPECT_EQ(cut("Hue\x1b[1mline", 4), R"(Hue\e[1m…\e[22m)");
    EXPECT_EQ(cut("\x1b[1mH\x1b[mue\x1b[32mline\x1b[m", 5), R"(\e[1mH\e[mue\e[32ml…\e[39m)");
}

TEST(Truncate, KeepsNoSequenceAfterTheCut) { EXPECT_EQ(cut("Hueline\x1b[31mred", 4), "Hue…"); }

TEST(Truncate, ClosesWhatIsOpenAtTheCut)
{
    struct {
        char const* ends;
        std::vector<std::string> codes;
    } const rows[] = {
        {"22", {"1", "2", "1;2"}},
        {"23", {"3", "20"}},
        {"24", {"4", "4:3", "21", "4;21"}},
        {"25", {"5", "6"}},
        {"27", {"7"}},
        {"28", {"8"}},
        {"29", {"9"}},
        {"10", {"11", "19"}},
        {"50", {"26"}},
        {"39", {"30", "37", "38;5;1", "38;2;1;2;3", "38:2::1:2:3", "38:5:1", "90", "97", "0;31", ";31"}},
        {"49", {"40", "47", "48;5;1", "48;2;1;2;3", "100", "107"}},
        {"54", {"51", "52"}},
        {"55", {"53"}},
        {"59", {"58;5;1", "58:2::1:2:3"}},
        {"65", {"60", "64"}},
        {"75", {"73", "74"}},
        {"22;39", {"1;31", "01;031"}},
        {"22;24;39;49", {"31;1;44;4"}},
        {"22;39", {"38;5;4;1"}},     // 4 is a colour, not an underline
        {"27;49", {"48;2;1;3;4;7"}}, // and so are 1, 3 and 4
        {"22;39", {"38;9;1"}},       // no such kind of colour: it has no more arguments
        {"22;39", {"38:5;1"}},       // what follows the semicolon is a rendition of its own
    };
    for (auto const& [ends, all_codes] : rows) {
        for (std::string const& codes : all_codes) {
            EXPECT_EQ(cut("\x1b[" + codes + "mabc", 2, ""), "\\e[" + codes + "mab\\e[" + ends + "m");
        }
    }
}

TEST(Truncate, ClosesNothingThatIsClosed)
{
    for (std::string const style :
         {"",      "0",         "1;0",   "1;",    "31;39",  "31;",   "1;22",       "2;22",      "3;23",  "20;23",
          "4;24",  "21;24",     "4:0",   "4;4:0", "5;25",   "7;27",  "8;28",       "9;29",      "11;10", "26;50",
          "30;39", "38;5;1;39", "90;39", "40;49", "100;49", "51;54", "53;55",      "58;5;1;59", "60;65", "73;75",
          "39",    "22",        "10",    "65",    "66",     "1000",  "4294967297", "98",        "108",   "99"}) {
        std::string const begin = "\x1b[" + style + "m";
        EXPECT_EQ(cut(begin + "abc", 2, ""), readable(begin + "ab"));
    }
}

TEST(Truncate, TakesNoOtherSequenceForARendition)
{
    for (std::string const other : {"\x1b[?1m", "\x1b[>4;2m", "\x1b[1 m", "\x1b[1!m", "\x1b[1h", "\x1b[=1m", "\x1b[<1m",
                                    "\x1bm", "\x1b(m", "\x1b]1m\a", "\x1bP1m\x1b\\"}) {
        EXPECT_EQ(cut(other + "abc", 2, ""), readable(other + "ab"));
    }
}

TEST(Truncate, FollowsRenditionsOfEachForm)
{
    EXPECT_EQ(cut("\23331mabc", 2), R"(\x9b31ma…\e[39m)"); // CSI as one byte, in octal
    EXPECT_EQ(truncate("\u009b31mabc", 2), "\u009b31ma…\x1b[39m");
    EXPECT_EQ(cut("\x1b[3\n1mabc", 2), R"(\e[3\n1ma…\e[39m)"); // 31, after a line feed
}

TEST(Truncate, ClosesAHyperlink)
{
    std::string const link = "\x1b]8;id=1;https://kestry.example\x1b\\";
    EXPECT_EQ(cut(link + "Hueline", 4), readable(link) + R"(Hue…\e]8;;\e\)");
    EXPECT_EQ(cut(link + "Hueline\x1b]8;;\x1b\\", 4), readable(link) + R"(Hue…\e]8;;\e\)");
    EXPECT_EQ(cut("\x1b[31m" + link + "Hueline", 4), "\\e[31m" + readable(link) + R"(Hue…\e]8;;\e\\e[39m)");
    EXPECT_EQ(cut("\x1b]8;;https://kestry.example\aHueline", 4), R"(\e]8;;https://kestry.example\x07Hue…\e]8;;\e\)");
    EXPECT_EQ(cut(link + "H\x1b]8;;\x1b\\ueline", 4), readable(link) + R"(H\e]8;;\e\ue…)");
    EXPECT_EQ(cut("\x1b]8;id=2;\aHueline", 4), R"(\e]8;id=2;\x07Hue…)"); // no target
    EXPECT_EQ(cut("\x1b]8;\aHueline", 4), R"(\e]8;\x07Hue…)");
    EXPECT_EQ(cut("\x1b]0;8;;x\aHueline", 4), R"(\e]0;8;;x\x07Hue…)");
    EXPECT_EQ(cut("\x1bP8;;x\x1b\\Hueline", 4), R"(\eP8;;x\e\Hue…)");
}

TEST(Truncate, ClosesWhatTheTailOpens)
{
    EXPECT_EQ(cut("Hueline", 4, "\x1b[2m…"), R"(Hue\e[2m…\e[22m)");
    EXPECT_EQ(cut("\x1b[31mHueline", 4, "\x1b[0m…"), R"(\e[31mHue\e[0m…)");
}

TEST(Truncate, DropsASequenceThatWouldSwallowTheTail)
{
    EXPECT_EQ(cut("ab\x1b[31日本語", 4), "ab…");     // given up by the wide character
    EXPECT_EQ(cut("\x1b]0;abcdef\nghi", 4), "0;a…"); // no string after all
    EXPECT_EQ(cut("\x1b[31ma\x1b(日本語", 3), R"(\e[31ma…\e[39m)");
    EXPECT_EQ(cut("a\x1b\x1b[31mbcdef", 3), R"(a\e[31mb…\e[39m)");
    EXPECT_EQ(cut("ab\x1b[3\n1日本語", 4), "ab\\n…"); // but the line feed is carried out
    EXPECT_EQ(cut("\x1b\t]0;abcdef\nghi", 4), "\\t0;a…");
    EXPECT_EQ(cut("\x1b]0;a\tb\x1b[31mcdef", 2), R"(\e[31mc…\e[39m)"); // in a string it is not
    EXPECT_EQ(cut("\xc3\x1b]\xa9\nab", 3), R"(\xc3\e\\xa9\n…)");       // stray bytes become no character
    EXPECT_EQ(cut("\303abc", 2, "\xa9"), R"(\xc3\e\\xa9)");
    EXPECT_EQ(cut("abc", 1, "\xa9"), R"(\xa9)");
}

TEST(Pad, FillsUpToTheColumns)
{
    EXPECT_EQ(pad("ab", 5), "ab   ");
    EXPECT_EQ(pad("ab", 5, alignment::left), "ab   ");
    EXPECT_EQ(pad("ab", 5, alignment::right), "   ab");
    EXPECT_EQ(pad("ab", 6, alignment::center), "  ab  ");
    EXPECT_EQ(pad("ab", 5, alignment::center), " ab  ");
    EXPECT_EQ(pad("ab", 3, alignment::center), "ab ");
    EXPECT_EQ(pad("", 2), "  ");
}

TEST(Pad, CountsColumns)
{
    EXPECT_EQ(pad("日", 4), "日  ");
    EXPECT_EQ(pad("e\u0301", 3, alignment::right), "  e\u0301");
    EXPECT_EQ(pad("👩‍👩‍👧", 4, alignment::center), " 👩‍👩‍👧 ");
    EXPECT_EQ(pad("\xff", 3), "\xff  ");
}

TEST(Pad, LeavesWhatIsAsWide)
{
    for (std::string const text : {"ab", "abc", "日", "\x1b[31mab", "ab\x1b["}) {
        for (alignment const where : {alignment::left, alignment::right, alignment::center}) {
            EXPECT_EQ(padded(text, 2, where), readable(text));
            EXPECT_EQ(padded(text, 0, where), readable(text));
        }
    }
}

TEST(Pad, ClosesStylesBeforeBlanks)
{
    EXPECT_EQ(padded("\x1b[1;31mx", 3), R"(\e[1;31mx\e[22;39m  )");
    EXPECT_EQ(padded("\x1b[31mx\x1b[0m", 3), R"(\e[31mx\e[0m  )");
    EXPECT_EQ(padded("\x1b[31mx", 4, alignment::center), R"( \e[31mx\e[39m  )");
    EXPECT_EQ(padded("\x1b[31mx", 3, alignment::right), R"(  \e[31mx)");
    EXPECT_EQ(padded("\x1b]8;;a:b\ax", 3), R"(\e]8;;a:b\x07x\e]8;;\e\  )");
}

TEST(Pad, DropsASequenceThatWouldSwallowTheBlanks)
{
    EXPECT_EQ(padded("x\x1b[31", 3), "x  ");
    EXPECT_EQ(padded("x\x1b", 3), "x  ");
    EXPECT_EQ(padded("\x1b[31mx\x1b]0;title", 3), R"(\e[31mx\e[39m  )");
    EXPECT_EQ(padded("x\x1b[31", 3, alignment::right), "  x");
    EXPECT_EQ(padded("x\x1b[31\x1b]0;title", 3), "x  ");
    EXPECT_EQ(padded("x\x1b[3\t1", 3), "x\\t  ");
    EXPECT_EQ(padded("x\x1b[31\xff", 4), R"(x\e[31\xff  )"); // given up before the end
}

TEST(Pad, FillsUpWhatJoinsABlank)
{
    std::string const prepended = "\u0d4e"; // joins what follows it
    EXPECT_EQ(pad(prepended + prepended, 4), prepended + prepended + "   ");
    EXPECT_EQ(pad("\u093f\u0903\u0903", 4, alignment::right), "   \u093f\u0903\u0903");
}

TEST(Pad, RefusesWhatNoStringHolds)
{
    for (alignment const where : {alignment::left, alignment::right, alignment::center}) {
        EXPECT_THROW(pad("x", SIZE_MAX, where), std::length_error);
    }
}

} // namespace
