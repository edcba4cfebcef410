#include "kestry/kit/text.hpp"

#include "support/testing.hpp"
#include "support/utf8.hpp"

namespace {

using namespace hueline::test;
using kestry::kit::display_width;
using namespace std::string_literals;

struct Example {
    std::string text;
    std::size_t columns;
};

void expect_columns(std::vector<Example> const& examples)
{
    for (Example const& example : examples) {
        EXPECT_EQ(display_width(example.text), example.columns) << readable(example.text);
    }
}

TEST(DisplayWidth, CountsPrintableAscii)
{
    for (std::size_t size = 0; size <= 40; ++size) {
        EXPECT_EQ(display_width(std::string(size, 'x')), size);
    }
    expect_columns({{" ", 1}, {"~", 1}, {" !\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~", 33}});
}

TEST(DisplayWidth, CountsNoControl)
{
    for (char const control : {'\0', '\1', '\a', '\b', '\t', '\n', '\r', '\x1f', '\x7f'}) {
        for (std::size_t before = 0; before <= 16; ++before) { // at each place of a word
            std::string const text = std::string(before, 'x') + control + std::string(16 - before, 'y');
            EXPECT_EQ(display_width(text), 16U) << readable(text);
        }
    }
}

TEST(DisplayWidth, CountsAColumnForEachByteThatIsNoUtf8)
{
    expect_columns({
        {"\xff", 1},
        {"\xc3", 1},             // cut off
        {"\xc3(", 2},            // not continued
        {"\xe6\x97", 1},         // cut off, and 97 is a C1 control
        {"\xe6\xa0", 2},         // cut off
        {"\xf0\xa0\xa0", 3},     // cut off
        {"\xf0\xa0\xa0\xa0", 2}, // a character
        {"\xc0\xaf", 2},         // overlong
        {"\xe0\xa4\xa0", 1},     // three bytes
        {"\xed\xa0\xa0", 3},     // a surrogate
        {"\xf4\xa0\xa0\xa0", 4}, // past U+10FFFF
        {"\xf5\xa0\xa0\xa0", 4}, //
        {"a\xa0\xbf"
         "b",
         4}, // nothing to continue
    });
    for (int byte = 0xa0; byte <= 0xff; ++byte) {
        EXPECT_EQ(display_width(std::string(1, static_cast<char>(byte))), 1U) << byte;
    }
}

TEST(DisplayWidth, KnowsTheEdgesOfUtf8)
{
    expect_columns({
        {"\xc2\xa0", 1},         // U+00A0
        {"\xdf\xbf", 1},         // U+07FF
        {"\xe0\xa0\x80", 1},     // U+0800
        {"\xed\x9f\xbf", 1},     // U+D7FF: no character yet
        {"\xee\x80\x80", 1},     // U+E000
        {"\xef\xbf\xbd", 1},     // U+FFFD
        {"\xf0\x90\x80\x80", 1}, // U+10000
        {"\xf4\x8f\xbf\xbf", 1}, // U+10FFFF
    });
}

TEST(DisplayWidth, CountsWideCharactersTwice)
{
    expect_columns({
        {"日本語", 6},
        {"한글", 4},
        {"ｆｕｌｌ", 8},
        {"ﾊﾝｶｸ", 4},
        {"　", 2}, // the ideographic space
        {"😀", 2},
        {"𠀀", 2},
        {"⌚", 2},
        {"…", 1}, // ambiguous
        {"ä", 1},
    });
}

TEST(DisplayWidth, CountsNoMarkAndNothingInvisible)
{
    expect_columns({
        {"e\u0301", 1},
        {"e\u0301\u0302\u0303", 1},
        {"\u0301", 0},
        {"\u200b", 0},
        {"a\u200bb", 2},
        {"a\u200db", 2},
        {"\u202e", 0},
        {"\u2028", 0},
        {"\ufeff", 0},
        {utf8(0xe0001), 0},
        {utf8(0xe0fff), 0},
        {"\u00ad", 1}, // the soft hyphen shows
        {"日\u3099", 2},
    });
}

TEST(DisplayWidth, CountsAColumnForAMarkThatTakesRoom)
{
    expect_columns({
        {"ह\u093f", 2},       // a vowel sign beside its letter
        {"ह\u093f\u0903", 2}, // no cluster is wider than two
        {"\u093f", 1},
        {"ก\u0e33", 2},
        {"नमस्ते", 4},
    });
}

TEST(DisplayWidth, CountsAClusterOnce)
{
    expect_columns({
        {"👩‍👩‍👧", 2},
        {"👩🏽‍💻", 2},
        {"👍🏿", 2},
        {"🏳️‍🌈", 2},
        {"❤️‍🔥", 2},
        {"👩👩", 4},
        {"👩‍", 2},  // a joiner, and nothing to join
        {"👩‍a", 3}, // no emoji to join
        {"a‍👩", 3}, // no emoji before the joiner
        {"👩\u0301‍👩", 2},
        {"👩\n‍👩", 4},
    });
}

TEST(DisplayWidth, CountsFlagsByPairs)
{
    expect_columns({
        {"🇩🇪", 2},
        {"🇩", 1},
        {"🇩🇪🇫", 3},
        {"🇩🇪🇫🇷", 4},
        {"🇩a🇪", 3},
        {"🇩\n🇪🇫", 3},
        {"🇩🇪a🇫🇷", 5},
        {"🏴\U000e0067\U000e0062\U000e0077\U000e006c\U000e0073\U000e007f", 2},
    });
}

TEST(DisplayWidth, WidensAnEmojiBeforeItsSelector)
{
    expect_columns({
        {"❤", 1},
        {"❤\ufe0f", 2},
        {"❤\ufe0e", 1},
        {"❤\ufe0f\ufe0f", 2},
        {"⌚\ufe0f", 2},
        {"⌚\ufe0e", 2},
        {"1\ufe0f\u20e3", 2},
        {"1\u20e3", 1},
        {"1\ufe0f", 2},
        {"#\ufe0f", 2},
        {"©\ufe0f", 2},
        {"a\ufe0f", 1},
        {"★\ufe0f", 1},       // no sequence of this character is listed
        {"❤\u0301\ufe0f", 1}, // not after a mark
        {"\ufe0f", 0},
        {"x1\ufe0fx", 4},
        {"\xa9\ufe0f", 1}, // a byte that is no copyright sign
    });
}

TEST(DisplayWidth, CountsSyllablesOfJamo)
{
    expect_columns({
        {"\u1112\u1161\u11ab", 2}, // L V T
        {"\u1112\u1161", 2},
        {"\u1112", 2},
        {"\u1112\u1112\u1161", 2}, // L L V
        {"하\u11ab", 2},           // LV T
        {"한\u11ab", 2},           // LVT T
        {"\u1161", 0},
        {"\u11ab", 0},
        {"한\u1112", 4},
        {"\u1112하", 2},
    });
}

TEST(DisplayWidth, CountsNoEscapeSequence)
{
    expect_columns({
        {"\x1b[1;31mred\x1b[0m", 3},
        {"\x1b]8;;https://kestry.example\x1b\\link\x1b]8;;\x1b\\", 4},
        {"\x1b]0;日本\a", 0},
        {"\x9b"
         "1mx",
         1},
        {"\u009b1mx", 1},
        {"a\x1b[", 1},
        {"\x1b(Bx", 1},
    });
}

TEST(DisplayWidth, KeepsClustersTogetherAcrossSequences)
{
    expect_columns({
        {"e\x1b[1m\u0301", 1},
        {"👩\x1b[1m‍\x1b[m👩", 2},
        {"🇩\x1b[m🇪", 2},
        {"❤\x1b[1m\ufe0f", 2},
        {"👩‍\x1b[1\nm👩", 4}, // a line feed is carried out between the two
    });
}

TEST(UnicodeVersion, HasThreeNumbers)
{
    EXPECT_EQ(std::count(kestry::kit::unicode_version(), kestry::kit::unicode_version() + 6, '.'), 2)
        << kestry::kit::unicode_version();
}

} // namespace
