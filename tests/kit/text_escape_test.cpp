#include "kestry/kit/text.hpp"

#include "support/testing.hpp"
#include "support/utf8.hpp"

namespace {

using namespace hueline::test;
using kestry::kit::escape_untrusted;
using kestry::kit::unescape_untrusted;
using namespace std::string_literals;

void expect_escaped(std::string const& text, std::string const& escaped)
{
    EXPECT_EQ(escape_untrusted(text), escaped) << readable(text);
    EXPECT_EQ(readable(unescape_untrusted(escaped)), readable(text));
}

void expect_unchanged(std::vector<std::string> const& texts)
{
    for (std::string const& text : texts) {
        expect_escaped(text, text);
    }
}

// What a character is shown as.
std::string form(char32_t code)
{
    char text[16];
    std::snprintf(text, sizeof text, "\\u{%x}", static_cast<unsigned>(code));
    return text;
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
        expect_escaped("a"s + static_cast<char>(c) + "b", "a\\x"s + digits[c / 16] + digits[c % 16] + "b");
    }
    expect_escaped("\x7f", R"(\x7f)");
    expect_escaped("\x1b[2J", R"(\x1b[2J)");
    expect_escaped("a\tb\nc", R"(a\x09b\x0ac)");
    expect_escaped("\u0080", R"(\u{80})");
    expect_escaped("\u009b2J", R"(\u{9b}2J)");
    expect_escaped("\u009f", R"(\u{9f})");
}

TEST(EscapeUntrusted, KeepsTabAndNewlineWhereAskedTo)
{
    EXPECT_EQ(escape_untrusted("a\tb\nc\r", {.keep_tab = true}), "a\tb\\x0ac\\x0d");
    EXPECT_EQ(escape_untrusted("a\tb\nc\r", {.keep_newline = true}), "a\\x09b\nc\\x0d");
    EXPECT_EQ(escape_untrusted("a\tb\nc\r", {.keep_tab = true, .keep_newline = true}), "a\tb\nc\\x0d");
}

TEST(EscapeUntrusted, ShowsBytesThatAreNoUtf8)
{
    expect_escaped("\x80", R"(\x80)");
    expect_escaped("\x9b", R"(\x9b)");
    expect_escaped("\xff", R"(\xff)");
    expect_escaped("a\xc3", R"(a\xc3)");
    expect_escaped("\xc3(", R"(\xc3()");
    expect_escaped("\xe6\x97", R"(\xe6\x97)");
    expect_escaped("\xc0\xaf", R"(\xc0\xaf)");
    expect_escaped("\xed\xa0\x80", R"(\xed\xa0\x80)");
    expect_escaped("\xf4\x90\x80\x80", R"(\xf4\x90\x80\x80)");
}

TEST(EscapeUntrusted, ShowsWhatTurnsTextAroundAndWhatIsInvisible)
{
    for (char32_t const code : {0x061cU, 0x200eU, 0x200fU, 0x202aU, 0x202bU, 0x202cU,  0x202dU,  0x202eU,  0x2066U,
                                0x2067U, 0x2068U, 0x2069U, 0x00adU, 0x034fU, 0x115fU,  0x1160U,  0x180eU,  0x200bU,
                                0x2028U, 0x2029U, 0x2060U, 0x2064U, 0x2065U, 0x206aU,  0x3164U,  0xfeffU,  0xffa0U,
                                0xfff0U, 0xfff7U, 0xfff8U, 0xfff9U, 0xfffbU, 0xe0000U, 0xe0001U, 0xe0041U, 0xe0fffU}) {
        expect_escaped("a" + utf8(code) + "b", "a" + form(code) + "b");
        expect_escaped("א" + utf8(code) + utf8(code) + "ב" + utf8(code),
                       "א" + form(code) + form(code) + "ב" + form(code));
    }
    expect_unchanged({"\uffef", "\ufffc\ufffd", utf8(0xe1000), utf8(0xdffff)});
}

TEST(EscapeUntrusted, KeepsJoinersBetweenCharactersThatJoin)
{
    expect_unchanged({"👩‍👩‍👧", "❤️‍🔥", "👩🏽‍💻", "می\u200cخواهم", "क्\u200dष"});
    expect_escaped("a\u200db", R"(a\u{200d}b)");
    expect_escaped("a\u200cb", R"(a\u{200c}b)");
    expect_escaped("👩\u200d", "👩\\u{200d}");
    expect_escaped("👩\u200da", "👩\\u{200d}a");
    expect_escaped("a\u200d👩", "a\\u{200d}👩");
    expect_escaped("\u200d👩", "\\u{200d}👩");
    expect_escaped("👩\u200d\u200d👩", "👩\\u{200d}\\u{200d}👩");
    expect_escaped("👩\u200d\u200b👩", "👩\\u{200d}\\u{200b}👩");
    expect_escaped("👩\u200b\u200d👩", "👩\\u{200b}\\u{200d}👩");
    expect_escaped("👩\u200d\xff", "👩\\u{200d}\\xff");
    expect_escaped("\xff\u200d👩", "\\xff\\u{200d}👩");
    expect_escaped("👩\u200d\u0085", "👩\\u{200d}\\u{85}");
}

TEST(EscapeUntrusted, KeepsASelectorAfterItsCharacter)
{
    expect_unchanged({"❤\ufe0f", "❤\ufe0e", "1\ufe0f\u20e3", "0\ufe0f", "9\ufe0f", "#\ufe0f", "*\ufe0f", "葛\U000e0100",
                      "葛\U000e01ef", "ab1\ufe0f"});
    expect_escaped("\ufe0f", R"(\u{fe0f})");
    expect_escaped("a\ufe0f", R"(a\u{fe0f})");
    expect_escaped("/\ufe0f:\ufe0f", R"(/\u{fe0f}:\u{fe0f})");
    expect_escaped("❤\ufe0f\ufe0f", "❤\ufe0f\\u{fe0f}");
    expect_escaped("❤\ufe0e\U000e0100", "❤\ufe0e\\u{e0100}");
    expect_escaped("\xff\ufe0f", R"(\xff\u{fe0f})");
    expect_escaped("\n\ufe0f", R"(\x0a\u{fe0f})");
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
    expect_unchanged({"🏴" + tags("gbwls") + end + "!", "🏴" + tags("us5") + end, "🏴" + tags("usca09") + end,
                      "🏴" + tags("az0") + end + "\u200d👩"});
    expect_escaped("🏴" + end, "🏴\\u{e007f}");
    expect_escaped("🏴" + tags("gb") + end, "🏴\\u{e0067}\\u{e0062}\\u{e007f}");
    expect_escaped("🏴" + tags("gbw"), "🏴\\u{e0067}\\u{e0062}\\u{e0077}");
    expect_escaped("🏴" + tags("gbwlsxy") + end,
                   "🏴\\u{e0067}\\u{e0062}\\u{e0077}\\u{e006c}\\u{e0073}\\u{e0078}\\u{e0079}\\u{e007f}");
    expect_escaped("🏴" + tags("g`w") + end, "🏴\\u{e0067}\\u{e0060}\\u{e0077}\\u{e007f}");
    expect_escaped("🏴" + tags("g{w") + end, "🏴\\u{e0067}\\u{e007b}\\u{e0077}\\u{e007f}");
    expect_escaped("🏴" + tags("g/w") + end, "🏴\\u{e0067}\\u{e002f}\\u{e0077}\\u{e007f}");
    expect_escaped("🏴" + tags("g:w") + end, "🏴\\u{e0067}\\u{e003a}\\u{e0077}\\u{e007f}");
    expect_escaped("🏳" + tags("gbw") + end, "🏳\\u{e0067}\\u{e0062}\\u{e0077}\\u{e007f}");
}

TEST(EscapeUntrusted, KeepsABackslashThatReadsAsNoEscape)
{
    expect_unchanged({"\\", "\\\\", "C:\\temp\\new", "\\\\server\\share", "\\n\\t\\e\\033"});
    for (std::string const word :
         {"x",      "x1",      "xg0",      "x1g",     "x41",       "x20",     "x7e",        "x1B",
          "X1b",    "u",       "u{",       "u{202e",  "u202e",     "u{}}",    "u{}",        "u{7f}",
          "u{0}",   "u{202E}", "u{0202e}", "u{d800}", "u{110000}", "u{dfff}", "u{1234567}", "u{-80}",
          "u{+80}", "x-1",     "x+1",      "x 1",     "u{80 }",    "u(80)",   "5c",         "u{99999999999999}"}) {
        expect_unchanged({"\\" + word});
    }
}

TEST(EscapeUntrusted, ShowsABackslashThatWouldReadAsAnEscape)
{
    for (std::string const escape :
         {"x1b", "x00", "x1f", "x7f", "x80", "xff", "x5c", "u{80}", "u{202e}", "u{10ffff}", "u{d7ff}", "u{e000}"}) {
        expect_escaped("\\" + escape, "\\x5c" + escape);
    }
    expect_escaped(R"(\x5cx1b)", R"(\x5cx5cx1b)");
    expect_escaped(R"(\\x1b)", R"(\\x5cx1b)");
    expect_escaped(R"(\x1bz\x)", R"(\x5cx1bz\x)");
    expect_escaped("\\\x1b", R"(\\x1b)");
    expect_escaped("\\x\x1b", R"(\x\x1b)");
    expect_escaped("\\x1\x1b", R"(\x1\x1b)");
    expect_escaped("\\u{8\x1b}", R"(\u{8\x1b})");
    expect_escaped("\\x1\u200b", R"(\x1\u{200b})");
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
