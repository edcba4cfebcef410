// Widths and clusters by the files of Unicode, and random texts by another way of reading them.
//
// The random texts are the same in each run; more of them, or others:
//
//     HUELINE_TEXTS=1000000 HUELINE_SEED=7 ctest -R text_unicode --output-on-failure

#include "kestry/kit/text.hpp"

#include "columns.hpp"
#include "kit/text_reference.hpp"
#include "support/testing.hpp"
#include "support/utf8.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::kit::detail;
using kestry::kit::alignment;
using kestry::kit::display_width;
using kestry::kit::escape_stripper;
using kestry::kit::escape_untrusted;
using kestry::kit::pad;
using kestry::kit::strip_escapes;
using kestry::kit::truncate; // hides that of POSIX
using kestry::kit::unescape_untrusted;

// The files and the tables in use are of one version, or there is nothing to compare.
class UnicodeFiles : public testing::Test {
protected:
    void SetUp() override
    {
        if (UnicodeData::get() == nullptr) {
            GTEST_SKIP() << "the files of Unicode are not in /usr/share/unicode: install unicode-data";
        }
        if (data().version != kestry::kit::unicode_version()) {
            GTEST_SKIP() << "the files of Unicode are of version " << data().version << ", utf8proc is of "
                         << kestry::kit::unicode_version();
        }
    }

    static UnicodeData const& data() { return *UnicodeData::get(); }
};

// Surrogates, and the middle of the ideographs, of what no plane has yet, and of private use.
bool is_like_the_one_before(char32_t code)
{
    return (code >= 0xd800 && code <= 0xf800) || (code >= 0x4f00 && code <= 0x9e00) ||
           (code >= 0x20100 && code <= 0x2f700) || (code >= 0x30100 && code <= 0x3ff00) ||
           (code >= 0x40100 && code <= 0xdff00) || (code >= 0xe1100 && code <= 0x10ff00);
}

TEST_F(UnicodeFiles, GiveEachCharacterItsWidth)
{
    for (char32_t code = 0; code <= 0x10ffff; ++code) {
        bool const is_introducer = code == 0x1b || (code >= 0x80 && code <= 0x9f);
        if (is_introducer || is_like_the_one_before(code)) {
            continue;
        }
        ASSERT_EQ(display_width(utf8(code)), data().width(code)) << std::hex << static_cast<unsigned>(code);
    }
}

TEST_F(UnicodeFiles, GiveEachEmojiItsForm)
{
    for (char32_t code = 0x20; code <= 0x1ffff; ++code) {
        if ((code >= 0x7f && code <= 0x9f) || (code >= 0xd800 && code <= 0xdfff)) {
            continue;
        }
        ASSERT_EQ(display_width(utf8(code) + "\ufe0f"), columns_of_text(data(), {{code}, {0xfe0f}}))
            << std::hex << static_cast<unsigned>(code);
    }
}

// Whether a cluster begins with each character, after one of each kind.
TEST_F(UnicodeFiles, BreakBetweenCharacters)
{
    struct Before {
        std::vector<Shown> text;
        std::size_t clusters;
        column_counter counted;
    };
    std::vector<Before> befores;
    for (std::string const before :
         {"a", "\n", "\U0001f1e6", "\u0d4e", "\u1100", "\u1161", "\u11a8", "\uac00", "\uac01", "\U0001f469\u200d"}) {
        std::vector<Shown> const text = characters(before);
        befores.push_back({text, clusters(data(), text).size(), {}});
        for (Shown const& one : text) {
            befores.back().counted.add({one.code, 1, character::state::whole});
        }
    }
    std::map<std::string, std::vector<bool>> breaks; // of each kind, after each of them
    for (char32_t code = 0; code <= 0x10ffff; ++code) {
        if (is_like_the_one_before(code)) {
            continue;
        }
        std::vector<bool>& expected = breaks[data().breaks(code)];
        for (std::size_t i = 0; i < befores.size(); ++i) {
            if (expected.size() == i) {
                std::vector<Shown> together = befores[i].text;
                together.push_back({code});
                expected.push_back(clusters(data(), together).size() > befores[i].clusters);
            }
            column_counter counter = befores[i].counted;
            if (counter.add({code, 1, character::state::whole}) != expected[i]) {
                FAIL() << std::hex << static_cast<unsigned>(code) << " after "
                       << static_cast<unsigned>(befores[i].text[0].code);
            }
        }
    }
}

// "÷ 0020 × 0308 ÷ 0020 ÷	# ..."
TEST_F(UnicodeFiles, BreakAsTheirExamples)
{
    std::ifstream file("/usr/share/unicode/auxiliary/GraphemeBreakTest.txt");
    std::size_t examples = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.find("[9.3]") != std::string::npos) {
            continue; // conjuncts, which Unicode 15.1 has added, are not kept together
        }
        std::istringstream words(line.substr(0, line.find('#')));
        std::string expected;
        std::string found;
        column_counter counter;
        char32_t before = 0;
        std::string mark;
        unsigned code = 0;
        while (words >> mark >> std::hex >> code) {
            bool const begins = counter.add({code, 1, character::state::whole});
            bool const is_crlf = before == '\r' && code == '\n'; // two clusters without a column for one
            found += begins && !is_crlf ? "÷" : "×";
            expected += mark;
            before = code;
        }
        EXPECT_EQ(found, expected) << line;
        examples += expected.empty() ? 0U : 1U;
    }
    EXPECT_GT(examples, 600U);
}

TEST_F(UnicodeFiles, ShowTheirEmojiInTwoColumns)
{
    std::ifstream file("/usr/share/unicode/emoji/emoji-test.txt");
    std::size_t emoji = 0;
    for (std::string line; std::getline(file, line);) {
        std::size_t const end = line.find(';');
        if (line.empty() || line[0] == '#' || end == std::string::npos) {
            continue;
        }
        std::istringstream codes(line.substr(0, end));
        std::string text;
        for (unsigned code = 0; codes >> std::hex >> code;) {
            text += utf8(code);
        }
        bool const is_qualified =
            line.find("; fully-qualified") != std::string::npos || line.find("; component") != std::string::npos;
        std::size_t const columns = display_width(text);
        EXPECT_TRUE(columns == 2 || (columns == 1 && !is_qualified)) << line;
        if (line.find("; component") == std::string::npos) { // which join what is before them
            EXPECT_EQ(truncate(text + text + "x", 2, ""), columns == 2 ? text : text + text) << line;
        }
        ++emoji;
    }
    EXPECT_GT(emoji, 4000U);
}

std::uint64_t from_environment(char const* name, std::uint64_t otherwise)
{
    char const* const value = std::getenv(name);
    return value != nullptr ? std::stoull(value) : otherwise;
}

// Pieces that mean something together: what is shown as it is, sequences, and parts of sequences and characters.
// clang-format off
std::vector<std::string> const whole = {
    "a", "bc", "plain text", "123", "1", "#", "\n", "\r", "\t", " ", "\\", "\\x1b", "\\u{202e}", "[", "m", "ü",
    "é", "\u0301", "\u0308", "\u200d", "\u200c", "\u200b", "\ufe0f", "\ufe0e", "\u20e3", "❤", "©", "★", "👩",
    "🏽", "👍", "🏴", "\U0001f1e9", "\U0001f1ea", "日", "本", "한", "\u1100", "\u1161", "\u11a8", "하", "ह", "\u093f",
    "\u0903", "\u094d", "ก", "\u0e33", "\u0d4e", "\u0600", "\u00ad", "\u202e", "\u2066", "\ufeff", "\u2028",
    "\u3099", "\uff9e", "ｱ", "\u302e", "\u3164", "\U000e0067", "\U000e007f", "\U0001fae9", "\U00020000",
    "\U0010ffff", "\x7f"};
std::vector<std::string> const sequences = {
    "\x1b[m", "\x1b[0m", "\x1b[1m", "\x1b[31m", "\x1b[38;5;1m", "\x1b[38:2::1:2:3m", "\x1b[39m", "\x1b[22m",
    "\x1b[?25l", "\x1b]8;;u:r\x1b\\", "\x1b]8;;\a", "\x1b]0;title\u009c", "\x1bPq\x1b\\", "\x1b_x\x9c",
    "\x1b(B", "\x9bm", "\u009b1m"};
std::vector<std::string> const broken = {
    "\x1b", "\x1b[", "\x1b]", "\a", "\x1b\\", "\x1bP", "\x1b_", "\x1b(", "\x18", "\x1a", "\x80", "\x9b", "\x9c",
    "\x9d", "\u009b", "\u009c", "\u0090", "\u0085", "\xc2", "\xc3", "\xe2", "\xf0", "\xf0\x9f", "\xa0", "\xbf",
    "\xff"};
// clang-format on

class RandomTexts {
public:
    explicit RandomTexts(std::uint64_t seed) : random(seed) {}

    std::string next()
    {
        std::string text;
        for (std::uint64_t pieces = below(12); pieces > 0; --pieces) {
            text += piece();
        }
        return text;
    }

    std::size_t below(std::size_t end) { return static_cast<std::size_t>(random() % end); }
    bool one_in(std::size_t n) { return below(n) == 0; }
    std::string const& one_of(std::vector<std::string> const& pieces) { return pieces[below(pieces.size())]; }

private:
    std::string piece()
    {
        switch (below(16)) {
        case 0:
            return std::string(1, static_cast<char>(below(256)));
        case 1:
            return character_below(0x110000);
        case 2:
            return character_below(0x3000);
        case 3:
            return character_below(0x800);
        case 4:
            return std::string(below(64), static_cast<char>(' ' + below(95)));
        default:
            return one_in(3) ? one_of(broken) : one_in(3) ? one_of(sequences) : one_of(whole);
        }
    }

    std::string character_below(std::size_t end)
    {
        auto const code = static_cast<char32_t>(below(end));
        return code >= 0xd800 && code <= 0xdfff ? "?" : utf8(code);
    }

    std::mt19937_64 random;
};

std::string joined(std::vector<Shown> const& text)
{
    std::string result;
    for (Shown const& c : text) {
        result += c.bytes;
    }
    return result;
}

bool has_escape_or_c1(std::string_view text)
{
    for (std::size_t at = 0; at < text.size();) {
        character const next = decode(text.substr(at));
        if (next.code == 0x1b || (next.code >= 0x80 && next.code <= 0x9f)) {
            return true;
        }
        at += next.size;
    }
    return false;
}

// Calls check(text, texts) for as many as are wanted.
template <class Check>
void for_random_texts(Check check)
{
    RandomTexts texts(from_environment("HUELINE_SEED", 1));
    for (std::uint64_t count = from_environment("HUELINE_TEXTS", 20'000); count > 0; --count) {
        std::string const text = texts.next();
        SCOPED_TRACE(readable(text));
        check(text, texts);
        if (testing::Test::HasFatalFailure()) {
            return;
        }
    }
}

// The head of a text, of the most clusters that there is room for.
std::vector<Shown> head(UnicodeData const& data, std::vector<Shown> const& text, std::size_t room)
{
    std::vector<Shown> result;
    auto at = text.begin();
    for (std::size_t const size : clusters(data, text)) {
        auto const end = at + static_cast<std::ptrdiff_t>(size);
        unsigned const needed = columns(data, {at, end});
        if (needed > room) {
            break;
        }
        room -= needed;
        result.insert(result.end(), at, end);
        at = end;
    }
    return result;
}

TEST_F(UnicodeFiles, AgreeOnRandomTexts)
{
    for_random_texts([](std::string const&, RandomTexts& texts) {
        std::string text;
        std::string plain;
        for (std::size_t pieces = texts.below(12); pieces > 0; --pieces) {
            if (texts.one_in(3)) {
                text += texts.one_of(sequences);
            } else {
                std::string const& piece = texts.one_of(whole);
                text += piece;
                plain += piece;
            }
        }
        SCOPED_TRACE(readable(text));
        ASSERT_EQ(readable(strip_escapes(text)), readable(plain));
        std::vector<Shown> const expected = characters(plain);
        std::size_t const width = display_width(text);
        ASSERT_EQ(width, columns_of_text(data(), expected));
        std::size_t const room = texts.below(width + 3);
        std::string const cut = truncate(text, room, "");
        if (width <= room) {
            ASSERT_EQ(readable(cut), readable(text));
        } else {
            ASSERT_EQ(readable(strip_escapes(cut)), readable(joined(head(data(), expected, room))));
        }
    });
}

TEST(StripEscapes, LeavesNoEscapeOfRandomTexts)
{
    for_random_texts([](std::string const& text, RandomTexts& texts) {
        std::string const stripped = strip_escapes(text);
        ASSERT_FALSE(has_escape_or_c1(stripped));
        ASSERT_EQ(readable(strip_escapes(stripped)), readable(stripped));
        escape_stripper stripper;
        std::string in_pieces;
        for (std::size_t at = 0; at < text.size();) {
            std::size_t const size = 1 + texts.below(6);
            in_pieces += stripper.strip(std::string_view(text).substr(at, size));
            at += size;
        }
        in_pieces += stripper.finish();
        ASSERT_EQ(readable(in_pieces), readable(stripped));
    });
}

TEST(Truncate, IsNeverTooWideForRandomTexts)
{
    for_random_texts([](std::string const& text, RandomTexts& texts) {
        std::size_t const columns = texts.below(display_width(text) + 3);
        std::string const tail = texts.below(2) == 0 ? "…" : texts.next();
        ASSERT_LE(display_width(truncate(text, columns, tail)), columns) << readable(tail);
    });
}

TEST(Pad, FillsRandomTexts)
{
    for_random_texts([](std::string const& text, RandomTexts& texts) {
        for (alignment const where : {alignment::left, alignment::right, alignment::center}) {
            std::size_t const width = display_width(text);
            std::size_t const columns = texts.below(width + 8);
            ASSERT_EQ(display_width(pad(text, columns, where)), std::max(width, columns))
                << static_cast<int>(where) << ' ' << columns;
        }
    });
}

TEST(EscapeUntrusted, MakesRandomTextsHarmless)
{
    for_random_texts([](std::string const& text, RandomTexts&) {
        std::string const escaped = escape_untrusted(text);
        ASSERT_EQ(readable(unescape_untrusted(escaped)), readable(text));
        ASSERT_EQ(readable(strip_escapes(escaped)), escaped); // no byte that is no UTF-8 either
        ASSERT_EQ(escape_untrusted(escaped) == escaped, escaped == text);
        for (char32_t const unwanted :
             {0x061cU, 0x200eU, 0x200fU, 0x202aU, 0x202eU, 0x2066U, 0x2069U, 0x2028U, 0x200bU}) {
            ASSERT_EQ(escaped.find(utf8(unwanted)), std::string::npos);
        }
    });
}

} // namespace
