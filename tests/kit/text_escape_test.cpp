#include "kestry/kit/text.hpp"

#include "support/testing.hpp"
#include "support/utf8.hpp"

namespace {

using namespace hueline::test;
using kestry::kit::escape_untrusted;
using kestry::kit::unescape_untrusted;
using namespace std::string_literals;

struct Example {
    std::string text;
    std::string escaped;
};

void expect_escaped(std::vector<Example> const& examples)
{
    for (Example const& example : examples) {
        EXPECT_EQ(escape_untrusted(example.text), example.escaped) << readable(example.text);
        EXPECT_EQ(readable(unescape_untrusted(example.escaped)), readable(example.text));
    }
}

void expect_unchanged(std::vector<std::string> const& texts)
{
    for (std::string const& text : texts) {
        expect_escaped({Example{text, text}});
    }
}

TEST(EscapeUntrusted, LeavesSafeText)
{
    std::string ascii;
    for (char c = ' '; c <= '~'; ++c) {
        ascii += c;
    }
    expect_unchanged(
        {"", ascii, "naïve", "日本語", "שלום", "مرحبا", "हिन्दी", "e\u0301", "한글", "\u00a0", "\ufffd", "…"});
}

TEST(EscapeUntrusted, ShowsControls)
{
    char const* const digits = "0123456789abcdef";
    for (int c = 0; c < 0x20; ++c) {
        expect_escaped({Example{"a"s + static_cast<char>(c) + "b", "a\\x"s + digits[c / 16] + digits[c % 16] + "b"}});
    }
    expect_escaped({
        {"\x7f", R"(\x7f)"},
        {"\x1b[2J", R"(\x1b[2J)"},
        {"a\tb\nc", R"(a\x09b\x0ac)"},
        {"\u0080", R"(\u{80})"},
        {"\u009b2J", R"(\u{9b}2J)"},
        {"\u009f", R"(\u{9f})"},
    });
}

TEST(EscapeUntrusted, KeepsTabAndNewlineWhereAskedTo)
{
    EXPECT_EQ(escape_untrusted("a\tb\nc\r", {.keep_tab = true}), "a\tb\\x0ac\\x0d");
    EXPECT_EQ(escape_untrusted("a\tb\nc\r", {.keep_newline = true}), "a\\x09b\nc\\x0d");
    EXPECT_EQ(escape_untrusted("a\tb\nc\r", {.keep_tab = true, .keep_newline = true}), "a\tb\nc\\x0d");
}

TEST(EscapeUntrusted, ShowsBytesThatAreNoUtf8)
{
    expect_escaped({
        {"\x80", R"(\x80)"},
        {"\x9b", R"(\x9b)"},
        {"\xff", R"(\xff)"},
        {"a\xc3", R"(a\xc3)"},
        {"\xc3(", R"(\xc3()"},
        {"\xe6\x97", R"(\xe6\x97)"},
        {"\xc0\xaf", R"(\xc0\xaf)"},
        {"\xed\xa0\x80", R"(\xed\xa0\x80)"},
        {"\xf4\x90\x80\x80", R"(\xf4\x90\x80\x80)"},
    });
}

TEST(EscapeUntrusted, ShowsWhatTurnsTextAround)
{
    for (char32_t const code :
         {0x061cU, 0x200eU, 0x200fU, 0x202aU, 0x202bU, 0x202cU, 0x202dU, 0x202eU, 0x2066U, 0x2067U, 0x2068U, 0x2069U}) {
        char form[16];
        std::snprintf(form, sizeof form, "\\u{%x}", static_cast<unsigned>(code));
        expect_escaped({Example{"a" + utf8(code) + "b", "a"s + form + "b"}});
        expect_escaped({Example{"א" + utf8(code) + "ב", "א"s + form + "ב"}});
    }
}

TEST(EscapeUntrusted, ShowsWhatIsInvisible)
{
    expect_escaped({
        {"a\u200bb", R"(a\u{200b}b)"},
        {"a\u2060b", R"(a\u{2060}b)"},
        {"a\u2064b", R"(a\u{2064}b)"},
        {"a\u206ab", R"(a\u{206a}b)"},
        {"a\ufeffb", R"(a\u{feff}b)"},
        {"a\u00adb", R"(a\u{ad}b)"},
        {"a\u034fb", R"(a\u{34f}b)"},
        {"a\u180eb", R"(a\u{180e}b)"},
        {"a\u2028b\u2029", R"(a\u{2028}b\u{2029})"},
        {"a\ufff9b\ufffb", R"(a\u{fff9}b\u{fffb})"},
        {"a\ufff0b\ufff8", R"(a\u{fff0}b\u{fff8})"},
        {"a\u2065b", R"(a\u{2065}b)"},
        {"\u115f\u1160\u3164\uffa0", R"(\u{115f}\u{1160}\u{3164}\u{ffa0})"},
        {utf8(0xe0001) + utf8(0xe0041), R"(\u{e0001}\u{e0041})"},
        {utf8(0xe0000) + utf8(0xe0fff), R"(\u{e0000}\u{e0fff})"},
        {"\ufff7\ufffc\ufffd", "\\u{fff7}\ufffc\ufffd"},
    });
    expect_unchanged({"\uffef", utf8(0xe1000), utf8(0xdffff)});
}

TEST(EscapeUntrusted, KeepsJoinersBetweenCharactersThatJoin)
{
    expect_unchanged({"👩‍👩‍👧", "❤️‍🔥", "👩🏽‍💻", "می\u200cخواهم", "क्\u200dष"});
    expect_escaped({
        {"a\u200db", R"(a\u{200d}b)"},
        {"a\u200cb", R"(a\u{200c}b)"},
        {"👩\u200d", "👩\\u{200d}"},
        {"👩\u200da", "👩\\u{200d}a"},
        {"a\u200d👩", "a\\u{200d}👩"},
        {"\u200d👩", "\\u{200d}👩"},
        {"👩\u200d\u200d👩", "👩\\u{200d}\\u{200d}👩"},
        {"👩\u200d\u200b👩", "👩\\u{200d}\\u{200b}👩"},
        {"👩\u200b\u200d👩", "👩\\u{200b}\\u{200d}👩"},
        {"👩\u200d\xff", "👩\\u{200d}\\xff"},
        {"\xff\u200d👩", "\\xff\\u{200d}👩"},
        {"👩\u200d\u0085", "👩\\u{200d}\\u{85}"},
    });
}

TEST(EscapeUntrusted, KeepsASelectorAfterItsCharacter)
{
    expect_unchanged({"❤\ufe0f", "❤\ufe0e", "1\ufe0f\u20e3", "0\ufe0f", "9\ufe0f", "#\ufe0f", "*\ufe0f", "葛\U000e0100",
                      "葛\U000e01ef", "ab1\ufe0f"});
    expect_escaped({
        {"\ufe0f", R"(\u{fe0f})"},
        {"a\ufe0f", R"(a\u{fe0f})"},
        {"/\ufe0f:\ufe0f", R"(/\u{fe0f}:\u{fe0f})"},
        {"❤\ufe0f\ufe0f", "❤\ufe0f\\u{fe0f}"},
        {"❤\ufe0e\U000e0100", "❤\ufe0e\\u{e0100}"},
        {"\xff\ufe0f", R"(\xff\u{fe0f})"},
        {"\n\ufe0f", R"(\x0a\u{fe0f})"},
    });
    EXPECT_EQ(escape_untrusted("\t\ufe0f", {.keep_tab = true}), "\t\\u{fe0f}");
}

TEST(EscapeUntrusted, KeepsTheTagsOfAFlag)
{
    auto const tags = [](std::string_view letters) {
        std::string result;
        for (char const c : letters) {
            result += utf8(0xe0000U + static_cast<unsigned char>(c));
        }
        return result;
    };
    std::string const end = utf8(0xe007f);
    expect_unchanged({
        "🏴" + tags("gbwls") + end + "!",
        "🏴" + tags("us5") + end,
        "🏴" + tags("usca09") + end,
        "🏴" + tags("az0") + end + "\u200d👩",
    });
    expect_escaped({
        {"🏴" + end, "🏴\\u{e007f}"},
        {"🏴" + tags("gb") + end, "🏴\\u{e0067}\\u{e0062}\\u{e007f}"},
        {"🏴" + tags("gbw"), "🏴\\u{e0067}\\u{e0062}\\u{e0077}"},
        {"🏴" + tags("gbwlsxy") + end,
         "🏴\\u{e0067}\\u{e0062}\\u{e0077}\\u{e006c}\\u{e0073}\\u{e0078}\\u{e0079}\\u{e007f}"},
        {"🏴" + tags("g`w") + end, "🏴\\u{e0067}\\u{e0060}\\u{e0077}\\u{e007f}"},
        {"🏴" + tags("g{w") + end, "🏴\\u{e0067}\\u{e007b}\\u{e0077}\\u{e007f}"},
        {"🏴" + tags("g/w") + end, "🏴\\u{e0067}\\u{e002f}\\u{e0077}\\u{e007f}"},
        {"🏴" + tags("g:w") + end, "🏴\\u{e0067}\\u{e003a}\\u{e0077}\\u{e007f}"},
        {"🏳" + tags("gbw") + end, "🏳\\u{e0067}\\u{e0062}\\u{e0077}\\u{e007f}"},
    });
}

TEST(EscapeUntrusted, KeepsABackslashThatReadsAsNoEscape)
{
    expect_unchanged({
        R"(\)",
        R"(\\)",
        R"(C:\temp\new)",
        R"(\\server\share)",
        R"(\x)",
        R"(\x1)",
        R"(\xg0)",
        R"(\x1g)",
        R"(\x41)",
        R"(\x20)",
        R"(\x7e)",
        R"(\x1B)",
        R"(\X1b)",
        R"(\u)",
        R"(\u{)",
        R"(\u{202e)",
        R"(\u202e)",
        R"(\u{}})",
        R"(\u{})",
        R"(\u{7f})",
        R"(\u{0})",
        R"(\u{202E})",
        R"(\u{0202e})",
        R"(\u{d800})",
        R"(\u{110000})",
        R"(\u{dfff})",
        R"(\u{1234567})",
        R"(\u{-80})",
        R"(\u{+80})",
        R"(\x-1)",
        R"(\x+1)",
        R"(\x 1)",
        R"(\u{80 })",
        R"(\n\t\e\033)",
        R"(\u(80))",
        R"(\5c)",
        R"(\u{99999999999999})",
    });
}

TEST(EscapeUntrusted, ShowsABackslashThatWouldReadAsAnEscape)
{
    expect_escaped({
        {R"(\x1b)", R"(\x5cx1b)"},
        {R"(\x00)", R"(\x5cx00)"},
        {R"(\x1f)", R"(\x5cx1f)"},
        {R"(\x7f)", R"(\x5cx7f)"},
        {R"(\x80)", R"(\x5cx80)"},
        {R"(\xff)", R"(\x5cxff)"},
        {R"(\x5c)", R"(\x5cx5c)"},
        {R"(\x5cx1b)", R"(\x5cx5cx1b)"},
        {R"(\\x1b)", R"(\\x5cx1b)"},
        {R"(\x1bz\x)", R"(\x5cx1bz\x)"},
        {R"(\u{80})", R"(\x5cu{80})"},
        {R"(\u{202e})", R"(\x5cu{202e})"},
        {R"(\u{10ffff})", R"(\x5cu{10ffff})"},
        {R"(\u{d7ff})", R"(\x5cu{d7ff})"},
        {R"(\u{e000})", R"(\x5cu{e000})"},
        {"\\\x1b", R"(\\x1b)"},
        {"\\x\x1b", R"(\x\x1b)"},
        {"\\x1\x1b", R"(\x1\x1b)"},
        {"\\u{8\x1b}", R"(\u{8\x1b})"},
        {"\\x1\u200b", R"(\x1\u{200b})"},
    });
}

TEST(UnescapeUntrusted, ReadsEachByteBack)
{
    for (int first = 0; first < 256; ++first) {
        for (int second = 0; second < 256; ++second) {
            std::string const text = {static_cast<char>(first), static_cast<char>(second), 'x', '1', 'b'};
            ASSERT_EQ(unescape_untrusted(escape_untrusted(text)), text) << readable(text);
        }
    }
}

TEST(UnescapeUntrusted, ReadsEachCharacterBack)
{
    for (char32_t code = 0; code <= 0x10ffff; code += code < 0x3000 ? 1 : 37) {
        if (code < 0xd800 || code > 0xdfff) {
            std::string const text = "a" + utf8(code) + "b";
            ASSERT_EQ(unescape_untrusted(escape_untrusted(text)), text) << static_cast<unsigned>(code);
        }
    }
}

} // namespace
