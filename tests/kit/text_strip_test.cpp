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

struct Example {
    std::string text;
    std::string stripped;
};

// Whole, in pieces of each small size, and in two pieces cut anywhere.
void expect_stripped(std::vector<Example> const& examples)
{
    for (Example const& example : examples) {
        EXPECT_EQ(readable(strip_escapes(example.text)), readable(example.stripped)) << readable(example.text);
        for (std::size_t size = 1; size <= 5; ++size) {
            EXPECT_EQ(readable(in_pieces(example.text, size)), readable(example.stripped))
                << readable(example.text) << " in pieces of " << size;
        }
        for (std::size_t first = 0; first <= std::min<std::size_t>(example.text.size(), 20); ++first) {
            escape_stripper stripper;
            std::string result = stripper.strip(example.text.substr(0, first));
            result += stripper.strip(example.text.substr(first));
            result += stripper.finish();
            EXPECT_EQ(readable(result), readable(example.stripped)) << readable(example.text) << " cut at " << first;
        }
    }
}

void expect_nothing_left(std::vector<std::string> const& sequences)
{
    for (std::string const& sequence : sequences) {
        expect_stripped({Example{"a" + sequence + "b", "ab"}});
    }
}

TEST(StripEscapes, LeavesPlainText)
{
    std::string ascii;
    for (char c = 0; c < 0x7f; ++c) {
        ascii += c == '\x1b' ? ' ' : c;
    }
    expect_stripped({
        {"", ""},
        {ascii + '\x7f', ascii + '\x7f'},
        {"naïve 日本 👩‍👩‍👧 \u00a0\u0300", "naïve 日本 👩‍👩‍👧 \u00a0\u0300"},
        {"\xa0\xff\xc3(\xe6\xa0 \xf0\xa0\xa0", "\xa0\xff\xc3(\xe6\xa0 \xf0\xa0\xa0"},
    });
}

TEST(StripEscapes, TakesOutControlSequences)
{
    expect_nothing_left({"\x1b[m"s,
                         "\x1b[0m"s,
                         "\x1b[1;31m"s,
                         "\x1b[38:2::1:2:3m"s,
                         "\x1b[4:3m"s,
                         "\x1b[H"s,
                         "\x1b[2J"s,
                         "\x1b[?25l"s,
                         "\x1b[>4;2m"s,
                         "\x1b[<0;1;2M"s,
                         "\x1b[=1c"s,
                         "\x1b[!p"s,
                         "\x1b[0 q"s,
                         "\x1b[?1$p"s,
                         "\x1b[1 2m"s,
                         "\x1b[1?m"s,
                         "\x1b[@"s,
                         "\x1b[~"s,
                         "\x1b[/@"s,
                         "\x1b[;;;;;;m"s,
                         "\x1b[" + std::string(10000, ';') + "m"});
}

TEST(StripEscapes, TakesOutSequencesOfEsc)
{
    expect_nothing_left({"\x1b"
                         "7"s,
                         "\x1b"
                         "8"s,
                         "\x1b="s, "\x1b>"s,
                         "\x1b"
                         "c"s,
                         "\x1bM"s, "\x1bN"s, "\x1bO"s, "\x1b\\"s,
                         "\x1b"
                         "0"s,
                         "\x1b~"s, "\x1b(B"s, "\x1b)0"s, "\x1b#8"s, "\x1b%G"s, "\x1b $~"s, "\x1b F"s, "\x1b/0"s,
                         "\x1b(\""s + "4"});
}

TEST(StripEscapes, TakesOutStrings)
{
    for (std::string const end : {"\x1b\\", "\x9c", "\u009c"}) {
        expect_nothing_left({"\x1b]0;title" + end, "\x1b]8;;https://kestry.example" + end, "\x1b]" + end,
                             "\x1bPq#0;2;0;0;0#0~~" + end, "\x1bP\a\b\t\r\x7f" + end, "\x1bXsos" + end,
                             "\x1b^pm\a" + end, "\x1b_apc\a" + end, "\x1b_" + end});
    }
    expect_nothing_left({"\x1b]0;title\a"s, "\x1b]\a"s, "\x1b]52;c;aGk=\a"s});
}

TEST(StripEscapes, EndsNoStringInTheMiddleOfACharacter)
{
    expect_nothing_left({"\x1b]0;\xc3\x9c"
                         "ber 本 \xe6\x9c\xac\a"s,
                         "\x1bP\xc3\x9c\x1b\\"s, "\x1b_\xf0\x9f\x9c\x9c\x9c"s});
}

TEST(StripEscapes, EndsOtherStringsAtNoBell)
{
    expect_stripped({
        {"\x1bPa\ab\x1b\\c", "c"},
        {"\x1bXa\ab\x1b\\c", "c"},
        {"\x1b^a\ab\x1b\\c", "c"},
        {"\x1b_a\ab\x1b\\c", "c"},
    });
}

TEST(StripEscapes, KnowsTheIntroducersOfOneControl)
{
    for (int form = 0; form < 2; ++form) {
        auto const c1 = [form](char byte) { return form == 0 ? std::string{byte} : std::string{'\xc2', byte}; };
        for (int byte = 0x80; byte <= 0x9f; ++byte) {
            std::string const control = c1(static_cast<char>(byte));
            bool const is_string = byte == 0x90 || byte == 0x98 || byte == 0x9d || byte == 0x9e || byte == 0x9f;
            expect_stripped({Example{"a" + control + "31mb\x1b\\c", byte == 0x9b ? "abc"
                                                                    : is_string  ? "ac"
                                                                                 : "a31mbc"}});
        }
        expect_nothing_left({c1('\x9d') + "0;title\a"});
    }
    expect_stripped({
        {"\xc2\xa0\xc3\x9b\xe2\x9b\x94", "\xc2\xa0\xc3\x9b\xe2\x9b\x94"}, // parts of characters
        {"\xc3\x9b"
         "1m",
         "\xc3\x9b"
         "1m"},
        {"\xc1\x9b"
         "1m",
         "\xc1"}, // C1 begins no character
        {"\xe2\x9b"
         "1m",
         "\xe2"}, // nor does E2 with one byte
        {"\xed\xa0\x9b"
         "1m",
         "\xed\xa0"}, // a surrogate
    });
}

TEST(StripEscapes, CarriesOutControlsInsideASequence)
{
    expect_stripped({
        {"a\x1b[3\n1mb", "a\nb"},
        {"a\x1b\n[31mb", "a\nb"},
        {"a\x1b(\tBb", "a\tb"},
        {"a\x1b[\0001mb"s, "a\0b"s},
        {"a\x1b[1\x1fmb", "a\x1f"
                          "b"},
        {"a\x1b[1\x7fmb", "ab"}, // DEL is ignored
        {"a\x1b\x7f[1mb", "ab"},
        {"a\x1b(\x7f"
         "Bb",
         "ab"},
    });
}

TEST(StripEscapes, GivesUpAtCancelAndSubstitute)
{
    for (std::string const control : {"\x18", "\x1a"}) {
        for (std::string const begun : {"\x1b", "\x1b[", "\x1b[31", "\x1b(", "\x1b]0;title", "\x1bP1",
                                        "\x9b"
                                        "31"}) {
            expect_stripped({Example{"a" + begun + control + "mb", "a" + control + "mb"}});
        }
    }
}

TEST(StripEscapes, BeginsAgainAtEscape)
{
    expect_stripped({
        {"\x1b\x1b[31mx", "x"},
        {"\x1b[31\x1b[32mx", "x"},
        {"\x1b(\x1b[32mx", "x"},
        {"\x1b]0;title\x1b[32mx", "x"},
        {"\x1b]0;title\x1bMx", "x"},
        {"\x1bP1\x1b]0;title\ax", "x"},
        {"\x1b[31\x9b"
         "32mx",
         "x"},
        {"\x1b]0;title\x9b"
         "32mx",
         "x"},
        {"\x1b]0;title\u009b32mx", "x"},
        {"\x1b]0;title\x85x", "x"},
        {"\x1b[3\x84"
         "1mx",
         "1mx"},
    });
}

TEST(StripEscapes, GivesUpAtACharacterThatContinuesNothing)
{
    expect_stripped({
        {"\x1bäx", "äx"},
        {"\x1b[31äm", "äm"},
        {"\x1b(äB", "äB"},
        {"\x1b\xffx", "\xffx"},
        {"\x1b[1\xa0m", "\xa0m"},
        {"\x1b[1\u00a0m", "\u00a0m"},
    });
}

TEST(StripEscapes, HidesNoLineAfterAStringWithoutAnEnd)
{
    for (std::string const begin : {"\x1b]", "\x1bP", "\x1bX", "\x1b^", "\x1b_", "\x9d", "\u0090"}) {
        expect_stripped({
            {begin + "title\nx", "title\nx"},
            {begin + "\n", "\n"},
            {begin + "ti\ttle\rü\n\x1b[1mx\x1b]0;y\az", "ti\ttle\rü\nxz"},
        });
    }
    expect_stripped({
        {"\x1bPa\ab\nc\a", "a\ab\nc\a"},
    });
}

TEST(StripEscapes, HidesNoMoreThan4096Bytes)
{
    std::string const most(4096, 'x');
    for (std::string const begin : {"\x1b]", "\x1bP", "\x9f"}) {
        expect_stripped({
            {begin + most + "\x1b\\y", "y"},
            {begin + most + "x\x1b\\y", most + "xy"},
            {begin + most + "ü\x1b\\y", most + "üy"},
            {begin + most.substr(2) + "ü\x9cy", "y"},
            {begin + most.substr(1) + "ü\x9cy", most.substr(1) + "üy"},
            {begin + most, ""},
            {begin + most + "x", most + "x"},
            {begin + most + "\x1b]" + most + "\ay", "y"},
        });
    }
}

TEST(StripEscapes, DropsWhatTheEndCutsOff)
{
    for (std::string const begun :
         {"\x1b", "\x1b[", "\x1b[1;31", "\x1b[1 ", "\x1b(", "\x1b]0;title", "\x1b]0;title\x1b", "\x1bP1", "\x9b",
          "\x9b"
          "31",
          "\u009b", "\x1b[1\x7f", "\x1b]0;\xc3"}) {
        expect_stripped({Example{"a" + begun, "a"}});
    }
}

TEST(StripEscapes, KeepsACharacterThatTheEndCutsOff)
{
    expect_stripped({
        {"a\xc3", "a\xc3"},
        {"a\xe6\xa0", "a\xe6\xa0"},
        {"a\xf0\xa0\xa0", "a\xf0\xa0\xa0"},
        {"a\xc2", "a\xc2"},
        {"a\xe6\x97", "a\xe6"}, // but a C1 control in it is none of it
        {"\x1b[1\xc3", "\xc3"},
    });
}

TEST(EscapeStripper, ReturnsWhatIsCertain)
{
    escape_stripper stripper;
    EXPECT_EQ(stripper.strip("ab\x1b[3"), "ab");
    EXPECT_EQ(stripper.strip("1mcd"), "cd");
    EXPECT_EQ(stripper.strip("e\xe6\x9c"), "e");
    EXPECT_EQ(stripper.strip("\xac"
                             "f"),
              "本f");
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
        EXPECT_EQ(readable(stripper.strip("m\x1b[1mB\x9b"
                                          "1m")),
                  "mB")
            << readable(begun);
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
