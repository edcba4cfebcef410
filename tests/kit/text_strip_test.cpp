// Bytes are hexadecimal, and octal where a letter or digit follows.

#include "kestry/kit/text.hpp"

#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using kestry::kit::escape_stripper;
using kestry::kit::strip_escapes;
using namespace std::string_literals;

std::string in_pieces(std::string_view text, std::size_t size)
{
    escape_stripper stripper;
    std::string result;
    for (std::size_t at = 0; at < text.size(); at += size) {
        result += stripper.strip(text.substr(at, size));
    }
    return result + stripper.finish();
}

// Each text: whole, in pieces of each small size, and in two pieces cut anywhere.
void expect_stripped(std::string const& stripped, std::vector<std::string> const& texts)
{
    std::string const expected = readable(stripped);
    for (std::string const& text : texts) {
        SCOPED_TRACE(readable(text));
        EXPECT_EQ(readable(strip_escapes(text)), expected);
        for (std::size_t size = 1; size <= 5; ++size) {
            EXPECT_EQ(readable(in_pieces(text, size)), expected) << "in pieces of " << size;
        }
        for (std::size_t first = 0; first <= std::min<std::size_t>(text.size(), 20); ++first) {
            escape_stripper stripper;
            std::string result = stripper.strip(text.substr(0, first));
            result += stripper.strip(text.substr(first));
            result += stripper.finish();
            EXPECT_EQ(readable(result), expected) << "cut at " << first;
        }
    }
}

void expect_unchanged(std::vector<std::string> const& texts)
{
    for (std::string const& text : texts) {
        expect_stripped(text, {text});
    }
}

void expect_nothing_left(std::vector<std::string> const& sequences)
{
    for (std::string const& sequence : sequences) {
        expect_stripped("ab", {"a" + sequence + "b"});
    }
}

TEST(StripEscapes, LeavesPlainText)
{
    std::string ascii;
    for (char c = 0; c < 0x7f; ++c) {
        ascii += c == '\x1b' ? ' ' : c;
    }
    expect_unchanged(
        {"", ascii + '\x7f', "naïve 日本 👩‍👩‍👧 \u00a0\u0300", "\xa0\xff\xc3(\xe6\xa0 \xf0\xa0\xa0"});
}

TEST(StripEscapes, TakesOutControlSequences)
{
    expect_nothing_left({"\x1b[m",   "\x1b[0m", "\x1b[1;31m", "\x1b[38:2::1:2:3m", "\x1b[4:3m",
                         "\x1b[H",   "\x1b[2J", "\x1b[?25l",  "\x1b[>4;2m",        "\x1b[<0;1;2M",
                         "\x1b[=1c", "\x1b[!p", "\x1b[0 q",   "\x1b[?1$p",         "\x1b[1 2m",
                         "\x1b[1?m", "\x1b[@",  "\x1b[~",     "\x1b[/@",           "\x1b[;;;;;;m"});
    expect_nothing_left({"\x1b[" + std::string(10000, ';') + "m"});
}

TEST(StripEscapes, TakesOutSequencesOfEsc)
{
    expect_nothing_left({"\0337", "\0338", "\x1b=", "\x1b>", "\033c", "\x1bM", "\x1bN", "\x1bO", "\x1b\\", "\0330",
                         "\x1b~", "\x1b(B", "\x1b)0", "\x1b#8", "\x1b%G", "\x1b $~", "\x1b F", "\x1b/0", "\x1b(\"4"});
}

TEST(StripEscapes, TakesOutStrings)
{
    for (std::string const end : {"\x1b\\", "\x9c", "\u009c"}) {
        expect_nothing_left({"\x1b]0;title" + end, "\x1b]8;;https://kestry.example" + end, "\x1b]" + end,
                             "\x1bPq#0;2;0;0;0#0~~" + end, "\x1bP\a\b\t\r\x7f" + end, "\x1bXsos" + end,
                             "\x1b^pm\a" + end, "\x1b_apc\a" + end, "\x1b_" + end});
    }
    expect_nothing_left({"\x1b]0;title\a", "\x1b]\a", "\x1b]52;c;aGk=\a"});
}

TEST(StripEscapes, EndsNoStringInTheMiddleOfACharacter)
{
    expect_nothing_left({"\x1b]0;\xc3\234ber 本 \xe6\x9c\xac\a", "\x1bP\xc3\x9c\x1b\\", "\x1b_\xf0\x9f\x9c\x9c\x9c"});
}

TEST(StripEscapes, EndsOtherStringsAtNoBell)
{
    expect_stripped("c", {"\x1bPa\ab\x1b\\c", "\x1bXa\ab\x1b\\c", "\x1b^a\ab\x1b\\c", "\x1b_a\ab\x1b\\c"});
}

TEST(StripEscapes, KnowsTheIntroducersOfOneControl)
{
    for (int form = 0; form < 2; ++form) {
        auto const c1 = [form](char byte) { return form == 0 ? std::string{byte} : std::string{'\xc2', byte}; };
        for (int byte = 0x80; byte <= 0x9f; ++byte) {
            std::string const control = c1(static_cast<char>(byte));
            bool const is_string = byte == 0x90 || byte == 0x98 || byte == 0x9d || byte == 0x9e || byte == 0x9f;
            expect_stripped(byte == 0x9b ? "abc" : is_string ? "ac" : "a31mbc", {"a" + control + "31mb\x1b\\c"});
        }
        expect_nothing_left({c1('\x9d') + "0;title\a"});
    }
    expect_unchanged({"\xc2\xa0\xc3\x9b\xe2\x9b\x94", "\xc3\2331m"}); // parts of characters
    expect_stripped("\xc1", {"\xc1\2331m"});                          // C1 begins no character
    expect_stripped("\xe2", {"\xe2\2331m"});                          // nor does E2 with one byte
    expect_stripped("\xed\xa0", {"\xed\xa0\2331m"});                  // a surrogate
}

TEST(StripEscapes, CarriesOutControlsInsideASequence)
{
    expect_stripped("a\nb", {"a\x1b[3\n1mb", "a\x1b\n[31mb"});
    expect_stripped("a\tb", {"a\x1b(\tBb"});
    expect_stripped("a\0b"s, {"a\x1b[\0001mb"s});
    expect_stripped("a\037b", {"a\x1b[1\x1fmb"});
    expect_stripped("ab", {"a\x1b[1\x7fmb", "a\x1b\x7f[1mb", "a\x1b(\177Bb"}); // DEL is ignored
}

TEST(StripEscapes, GivesUpAtCancelAndSubstitute)
{
    for (std::string const control : {"\x18", "\x1a"}) {
        for (std::string const begun : {"\x1b", "\x1b[", "\x1b[31", "\x1b(", "\x1b]0;title", "\x1bP1", "\23331"}) {
            expect_stripped("a" + control + "mb", {"a" + begun + control + "mb"});
        }
    }
}

TEST(StripEscapes, BeginsAgainAtEscape)
{
    expect_stripped("x", {"\x1b\x1b[31mx", "\x1b[31\x1b[32mx", "\x1b(\x1b[32mx", "\x1b]0;title\x1b[32mx",
                          "\x1b]0;title\x1bMx", "\x1bP1\x1b]0;title\ax", "\x1b[31\23332mx", "\x1b]0;title\23332mx",
                          "\x1b]0;title\u009b32mx", "\x1b]0;title\x85x"});
    expect_stripped("1mx", {"\x1b[3\2041mx"});
}

TEST(StripEscapes, GivesUpAtACharacterThatContinuesNothing)
{
    expect_stripped("äx", {"\x1bäx"});
    expect_stripped("äm", {"\x1b[31äm"});
    expect_stripped("äB", {"\x1b(äB"});
    expect_stripped("\xffx", {"\x1b\xffx"});
    expect_stripped("\xa0m", {"\x1b[1\xa0m"});
    expect_stripped("\u00a0m", {"\x1b[1\u00a0m"});
}

TEST(StripEscapes, HidesNoLineAfterAStringWithoutAnEnd)
{
    for (std::string const begin : {"\x1b]", "\x1bP", "\x1bX", "\x1b^", "\x1b_", "\x9d", "\u0090"}) {
        expect_stripped("title\nx", {begin + "title\nx"});
        expect_stripped("\n", {begin + "\n"});
        expect_stripped("ti\ttle\rü\nxz", {begin + "ti\ttle\rü\n\x1b[1mx\x1b]0;y\az"});
    }
    expect_stripped("a\ab\nc\a", {"\x1bPa\ab\nc\a"});
}

TEST(StripEscapes, HidesNoMoreThan4096Bytes)
{
    std::string const most(4096, 'x');
    for (std::string const begin : {"\x1b]", "\x1bP", "\x9f"}) {
        expect_stripped(
            "y", {begin + most + "\x1b\\y", begin + most.substr(2) + "ü\x9cy", begin + most + "\x1b]" + most + "\ay"});
        expect_stripped(most + "xy", {begin + most + "x\x1b\\y"});
        expect_stripped(most + "üy", {begin + most + "ü\x1b\\y"});
        expect_stripped(most.substr(1) + "üy", {begin + most.substr(1) + "ü\x9cy"});
        expect_stripped("", {begin + most});
        expect_stripped(most + "x", {begin + most + "x"});
    }
}

TEST(StripEscapes, DropsWhatTheEndCutsOff)
{
    expect_stripped("a", {"a\x1b", "a\x1b[", "a\x1b[1;31", "a\x1b[1 ", "a\x1b(", "a\x1b]0;title", "a\x1b]0;title\x1b",
                          "a\x1bP1", "a\x9b", "a\23331", "a\u009b", "a\x1b[1\x7f", "a\x1b]0;\xc3"});
}

TEST(StripEscapes, KeepsACharacterThatTheEndCutsOff)
{
    expect_unchanged({"a\xc3", "a\xe6\xa0", "a\xf0\xa0\xa0", "a\xc2"});
    expect_stripped("a\xe6", {"a\xe6\x97"}); // but a C1 control in it is none of it
    expect_stripped("\xc3", {"\x1b[1\xc3"});
}

TEST(EscapeStripper, ReturnsWhatIsCertain)
{
    escape_stripper stripper;
    EXPECT_EQ(stripper.strip("ab\x1b[3"), "ab");
    EXPECT_EQ(stripper.strip("1mcd"), "cd");
    EXPECT_EQ(stripper.strip("e\xe6\x9c"), "e");
    EXPECT_EQ(stripper.strip("\254f"), "本f");
    EXPECT_EQ(stripper.strip("\x1b]0;ti"), "");
    EXPECT_EQ(stripper.strip("tle\ng"), "0;title\ng");
    EXPECT_EQ(stripper.strip(""), "");
    EXPECT_EQ(stripper.strip("h\xe6"), "h");
    EXPECT_EQ(stripper.finish(), "\xe6");
}

TEST(EscapeStripper, IsReadyForAnotherText)
{
    for (std::string const begun : {"\x1b", "\x1b[1", "\x1b(", "\x1b]0;title", "\x1bP1", "\xc2"}) {
        escape_stripper stripper;
        stripper.strip(begun);
        stripper.finish();
        EXPECT_EQ(readable(stripper.strip("m\x1b[1mB\2331m")), "mB") << readable(begun);
        EXPECT_EQ(stripper.finish(), "");
    }
}

TEST(EscapeStripper, ForgetsAStringThatHasEnded)
{
    escape_stripper stripper;
    EXPECT_EQ(stripper.strip("\x1b]abc"), "");
    EXPECT_EQ(stripper.strip("\x1b\\\x1b]def"), "");
    EXPECT_EQ(stripper.strip("\n"), "def\n");
    EXPECT_EQ(stripper.strip("\x1b]" + std::string(4096, 'x')), "");
    EXPECT_EQ(stripper.strip("\a\x1b]" + std::string(4096, 'x')), "");
    EXPECT_EQ(stripper.strip("\x18y"), "\x18y");
    EXPECT_EQ(stripper.finish(), "");
}

} // namespace
