#include "kestry/kit/text.hpp"

#include "support/testing.hpp"
#include "support/utf8.hpp"

namespace {

using namespace hueline::test;
using kestry::kit::display_width;

void expect_columns(std::size_t columns, std::vector<std::string> const& texts)
{
    for (std::string const& text : texts) {
        EXPECT_EQ(display_width(text), columns) << readable(text);
    }
}

TEST(DisplayWidth, CountsPrintableAscii)
{
    for (std::size_t size = 0; size <= 40; ++size) {
        EXPECT_EQ(display_width(std::string(size, 'x')), size);
    }
    expect_columns(1, {" ", "~"});
    expect_columns(33, {" !\"#$%&'()*+,-./:;<=>?@[\\]^_`{|}~"});
}

TEST(DisplayWidth, CountsNoControl)
{
    for (char const control : {'\0', '\1', '\a', '\b', '\t', '\n', '\r', '\x1f', '\x7f'}) {
        for (std::size_t before = 0; before <= 16; ++before) { // at each place of a word
            expect_columns(16, {std::string(before, 'x') + control + std::string(16 - before, 'y')});
        }
    }
}

TEST(DisplayWidth, CountsAColumnForEachByteThatIsNoUtf8)
{
    expect_columns(1, {"\xff", "\xc3"});                         // the second is cut off
    expect_columns(2, {"\xc3("});                                // not continued
    expect_columns(1, {"\xe6\x97"});                             // cut off, and 97 is a C1 control
    expect_columns(2, {"\xe6\xa0"});                             // cut off
    expect_columns(3, {"\xf0\xa0\xa0"});                         // cut off
    expect_columns(2, {"\xf0\xa0\xa0\xa0"});                     // a character
    expect_columns(2, {"\xc0\xaf"});                             // overlong
    expect_columns(1, {"\xe0\xa4\xa0"});                         // three bytes
    expect_columns(3, {"\xed\xa0\xa0"});                         // a surrogate
    expect_columns(4, {"\xf4\xa0\xa0\xa0", "\xf5\xa0\xa0\xa0"}); // past U+10FFFF
    expect_columns(4, {"a\xa0\277b"});                           // nothing to continue
    for (int byte = 0xa0; byte <= 0xff; ++byte) {
        expect_columns(1, {std::string(1, static_cast<char>(byte))});
    }
}

TEST(DisplayWidth, KnowsTheEdgesOfUtf8)
{
    expect_columns(1, {"\xc2\xa0", "\xdf\xbf"});                 // U+00A0, U+07FF
    expect_columns(1, {"\xe0\xa0\x80", "\xed\x9f\xbf"});         // U+0800, U+D7FF: no character yet
    expect_columns(1, {"\xee\x80\x80", "\xef\xbf\xbd"});         // U+E000, U+FFFD
    expect_columns(1, {"\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbf"}); // U+10000, U+10FFFF
}

TEST(DisplayWidth, CountsWideCharactersTwice)
{
    expect_columns(2, {"　", "😀", "𠀀", "⌚"}); // the ideographic space first
    expect_columns(6, {"日本語"});
    expect_columns(4, {"한글", "ﾊﾝｶｸ"});
    expect_columns(8, {"ｆｕｌｌ"});
    expect_columns(1, {"…", "ä"}); // the first is ambiguous
}

TEST(DisplayWidth, CountsNoMarkAndNothingInvisible)
{
    expect_columns(0, {"\u0301", "\u200b", "\u202e", "\u2028", "\ufeff", utf8(0xe0001), utf8(0xe0fff)});
    expect_columns(1, {"e\u0301", "e\u0301\u0302\u0303", "\u00ad"}); // the soft hyphen shows
    expect_columns(2, {"a\u200bb", "a\u200db", "日\u3099"});
}

TEST(DisplayWidth, CountsAColumnForAMarkThatTakesRoom)
{
    expect_columns(1, {"\u093f"});
    expect_columns(2, {"ह\u093f", "ก\u0e33"}); // a vowel sign beside its letter
    expect_columns(2, {"ह\u093f\u0903"});      // no cluster is wider than two
    expect_columns(4, {"नमस्ते"});
}

TEST(DisplayWidth, CountsAClusterOnce)
{
    expect_columns(2, {"👩‍👩‍👧", "👩🏽‍💻", "👍🏿", "🏳️‍🌈", "❤️‍🔥",
                       "👩\u0301‍👩"});
    expect_columns(2, {"👩‍"});              // a joiner, and nothing to join
    expect_columns(3, {"👩‍a", "a‍👩"}); // no emoji to join, none before the joiner
    expect_columns(4, {"👩👩", "👩\n‍👩"});
}

TEST(DisplayWidth, CountsFlagsByPairs)
{
    expect_columns(1, {"🇩"});
    expect_columns(2, {"🇩🇪", "🏴\U000e0067\U000e0062\U000e0077\U000e006c\U000e0073\U000e007f"});
    expect_columns(3, {"🇩🇪🇫", "🇩a🇪", "🇩\n🇪🇫"});
    expect_columns(4, {"🇩🇪🇫🇷"});
    expect_columns(5, {"🇩🇪a🇫🇷"});
}

TEST(DisplayWidth, WidensAnEmojiBeforeItsSelector)
{
    expect_columns(1, {"❤", "❤\ufe0e", "1\u20e3", "a\ufe0f"});
    expect_columns(1, {"★\ufe0f"});       // no sequence of this character is listed
    expect_columns(1, {"❤\u0301\ufe0f"}); // not after a mark
    expect_columns(1, {"\xa9\ufe0f"});    // a byte that is no copyright sign
    expect_columns(
        2, {"❤\ufe0f", "❤\ufe0f\ufe0f", "⌚\ufe0f", "⌚\ufe0e", "1\ufe0f\u20e3", "1\ufe0f", "#\ufe0f", "©\ufe0f"});
    expect_columns(0, {"\ufe0f"});
    expect_columns(4, {"x1\ufe0fx"});
}

TEST(DisplayWidth, CountsSyllablesOfJamo)
{
    expect_columns(0, {"\u1161", "\u11ab"});
    expect_columns(2, {"\u1112", "\u1112\u1161", "\u1112\u1161\u11ab"});           // L, L V, L V T
    expect_columns(2, {"\u1112\u1112\u1161", "하\u11ab", "한\u11ab", "\u1112하"}); // L L V, LV T, LVT T, L LV
    expect_columns(4, {"한\u1112"});
}

TEST(DisplayWidth, CountsNoEscapeSequence)
{
    expect_columns(0, {"\x1b]0;日本\a"});
    expect_columns(1, {"\2331mx", "\u009b1mx", "a\x1b[", "\x1b(Bx"});
    expect_columns(3, {"\x1b[1;31mred\x1b[0m"});
    expect_columns(4, {"\x1b]8;;https://kestry.example\x1b\\link\x1b]8;;\x1b\\"});
}

TEST(DisplayWidth, KeepsClustersTogetherAcrossSequences)
{
    expect_columns(1, {"e\x1b[1m\u0301"});
    expect_columns(2, {"👩\x1b[1m‍\x1b[m👩", "🇩\x1b[m🇪", "❤\x1b[1m\ufe0f"});
    expect_columns(4, {"👩‍\x1b[1\nm👩"}); // a line feed is carried out between the two
}

TEST(UnicodeVersion, HasThreeNumbers)
{
    EXPECT_EQ(std::count(kestry::kit::unicode_version(), kestry::kit::unicode_version() + 6, '.'), 2)
        << kestry::kit::unicode_version();
}

} // namespace
