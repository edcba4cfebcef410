#include <kestry/kit/style.hpp>

#include "written.hpp"

#include "support/buffers.hpp"
#include "support/grouping.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::kit;
using namespace std::string_literals;
using namespace std::string_view_literals;

constexpr auto err = fg(red) | bold, name = style{underline};

static_assert(sizeof(style) <= 16);
static_assert(std::is_trivially_copyable_v<style> && std::is_trivially_copyable_v<color>);
static_assert(name == underline);
static_assert(style{} == fg(color{}) && style{} == bg(color{}));

// The same on the right wins, and what it has not stays.
static_assert((fg(red) | fg(blue)) == fg(blue));
static_assert((bg(red) | bg(blue)) == bg(blue));
static_assert((fg(red) | bg(blue)) == (bg(blue) | fg(red)));
static_assert((fg(red) | bold) != fg(red) && (fg(red) | bold) != bold);
static_assert((bold | faint) == (faint | bold));
static_assert((fg(red) | fg(default_color)) == fg(default_color));

static_assert(err.has(bold) && err.has(fg(red)) && err.has(err) && err.has({}));
static_assert(!err.has(faint) && !err.has(fg(blue)) && !err.has(bg(red)) && !err.has(bold | italic));

static_assert(rgb(-1, 256, 255) == rgb(0, 255, 255) && rgb(1, 2, 3) != rgb(1, 2, 4) && rgb(1, 2, 3) != rgb(1, 3, 3));
static_assert(palette(-1) == palette(0) && palette(256) == palette(255) && palette(1) != red);
static_assert(color{} != default_color && black != color{} && black != default_color);

TEST(Style, TakesAnotherOneIn)
{
    style look = fg(red);
    look |= bold;
    look |= bg(blue);
    EXPECT_EQ(look, fg(red) | bg(blue) | bold);
}

struct Look {
    style look;
    std::string begin;
    std::string end;
};

std::vector<Look> const looks = [] {
    std::vector<Look> all = {
        {bold, R"(\e[1m)", R"(\e[22m)"},
        {faint, R"(\e[2m)", R"(\e[22m)"},
        {italic, R"(\e[3m)", R"(\e[23m)"},
        {underline, R"(\e[4m)", R"(\e[24m)"},
        {blink, R"(\e[5m)", R"(\e[25m)"},
        {reverse, R"(\e[7m)", R"(\e[27m)"},
        {concealed, R"(\e[8m)", R"(\e[28m)"},
        {crossed_out, R"(\e[9m)", R"(\e[29m)"},
        {fg(palette(0)), R"(\e[38;5;0m)", R"(\e[39m)"},
        {fg(palette(99)), R"(\e[38;5;99m)", R"(\e[39m)"},
        {fg(palette(255)), R"(\e[38;5;255m)", R"(\e[39m)"},
        {bg(palette(100)), R"(\e[48;5;100m)", R"(\e[49m)"},
        {fg(rgb(0, 180, 90)), R"(\e[38;2;0;180;90m)", R"(\e[39m)"},
        {bg(rgb(255, 9, 10)), R"(\e[48;2;255;9;10m)", R"(\e[49m)"},
        {fg(red) | bold, R"(\e[1;31m)", R"(\e[22;39m)"},
        {fg(bright_red) | crossed_out, R"(\e[9;91m)", R"(\e[29;39m)"},
        {bold | faint, R"(\e[1;2m)", R"(\e[22m)"},
        {bold | italic, R"(\e[1;3m)", R"(\e[22;23m)"},
        {fg(red) | bg(blue), R"(\e[31;44m)", R"(\e[39;49m)"},
    };
    style const every = bold | faint | italic | underline | blink | reverse | concealed | crossed_out;
    std::string const end = R"(\e[22;23;24;25;27;28;29;39;49m)";
    all.push_back({fg(palette(1)) | bg(rgb(1, 2, 3)) | every, R"(\e[1;2;3;4;5;7;8;9;38;5;1;48;2;1;2;3m)", end});
    // More than the 16 parameters that terminals take.
    all.push_back({fg(rgb(255, 255, 255)) | bg(rgb(1, 2, 3)) | every,
                   R"(\e[1;2;3;4;5;7;8;9;38;2;255;255;255m\e[48;2;1;2;3m)", end});
    color const named[] = {black, red, green, yellow, blue, magenta, cyan, white};
    color const bright[] = {bright_black, bright_red,     bright_green, bright_yellow,
                            bright_blue,  bright_magenta, bright_cyan,  bright_white};
    for (std::size_t i = 0; i < 8; ++i) {
        std::string const digit = std::to_string(i) + "m";
        all.push_back({fg(named[i]), R"(\e[3)" + digit, R"(\e[39m)"});
        all.push_back({bg(named[i]), R"(\e[4)" + digit, R"(\e[49m)"});
        all.push_back({fg(bright[i]), R"(\e[9)" + digit, R"(\e[39m)"});
        all.push_back({bg(bright[i]), R"(\e[10)" + digit, R"(\e[49m)"});
    }
    return all;
}();

// Every length up to where long texts begin, and such as are looked at character by character.
TEST(Styled, IsBetweenItsSequences)
{
    std::vector<std::string> texts = {
        "x", "xyz", "four", "seven77", "eight888", "nine99999", "sixteen 16161616", "naïve 日本"};
    for (std::size_t const length : {128U, 129U, 511U, 512U, 5000U}) {
        texts.emplace_back(length, 'a');
    }
    for (Look const& of : looks) {
        for (std::string const& text : texts) {
            EXPECT_EQ(written(styled(text, of.look)), of.begin + text + of.end);
        }
    }
}

TEST(Styled, WritesNoSequenceWhereNothingChanges)
{
    EXPECT_EQ(written(styled("text", style{})), "text");
    EXPECT_EQ(written(styled("text", fg(default_color) | bg(default_color))), "text");
    EXPECT_EQ(written(styled(bold, "a", styled("b", bold), "c")), R"(\e[1mabc\e[22m)");
    EXPECT_EQ(written(styled(fg(red), "a", styled("b", fg(red)), "c")), R"(\e[31mabc\e[39m)");
}

TEST(Styled, WritesNoSequenceWhereThereIsNoText)
{
    EXPECT_EQ(written(styled("", err)), "");
    EXPECT_EQ(written(styled(err)), "");
    EXPECT_EQ(written(styled(err, "", ""s, styled("", italic))), "");
    EXPECT_EQ(written(styled(err, styled("", italic), "x")), R"(\e[1;31mx\e[22;39m)");
    EXPECT_EQ(written(styled("\x1b[1m\x1b[m", err)), "");
}

TEST(Styled, KnowsNoTextByANullPointer)
{
    char const* const none = nullptr;
    char* const none_either = nullptr;
    EXPECT_EQ(written(styled(none, bold)), "");
    EXPECT_EQ(written(styled(bold, none, "x", none_either)), R"(\e[1mx\e[22m)");
}

TEST(Styled, KeepsTemporariesItself)
{
    auto const kept = [] { return styled(std::string(40, 'x'), bold); }();
    EXPECT_EQ(written(kept), R"(\e[1m)" + std::string(40, 'x') + R"(\e[22m)");

    auto const nested = [] {
        return styled(bold, std::make_unique<int>(1) != nullptr, styled(std::string(40, 'y'), italic), 7);
    }();
    EXPECT_EQ(written(nested), R"(\e[1m1\e[3m)" + std::string(40, 'y') + R"(\e[23m7\e[22m)");
}

TEST(Styled, RefersToWhatLivesElsewhere)
{
    std::string text = "one";
    auto const later = styled(text, bold);
    text = "two";
    EXPECT_EQ(written(later), R"(\e[1mtwo\e[22m)");
}

TEST(Styled, TakesTextInEveryForm)
{
    char array[] = "array";
    char* const pointer = array;
    std::string const constant = "constant";
    EXPECT_EQ(written(styled(bold, 'c', "literal", array, pointer, "view"sv, constant, "temporary"s)),
              R"(\e[1mcliteralarrayarrayviewconstanttemporary\e[22m)");
    EXPECT_EQ(written(styled("a\0b"sv, bold)), R"(\e[1ma\x00b\e[22m)");
}

TEST(Nesting, GivesBackTheStyleAround)
{
    EXPECT_EQ(written(styled(fg(red), "a", styled("b", fg(blue)), "c")), R"(\e[31ma\e[34mb\e[31mc\e[39m)");
    EXPECT_EQ(written(styled(bg(red), "a", styled("b", bg(rgb(1, 2, 3))), "c")),
              R"(\e[41ma\e[48;2;1;2;3mb\e[41mc\e[49m)");
    EXPECT_EQ(written(styled(italic, "a", styled("b", fg(blue)), "c")), R"(\e[3ma\e[34mb\e[39mc\e[23m)");
    EXPECT_EQ(written(styled(fg(red), "a", styled(bold, "b", styled("c", fg(blue) | underline), "d"), "e")),
              R"(\e[31ma\e[1mb\e[4;34mc\e[24;31md\e[22me\e[39m)");
    EXPECT_EQ(written(styled(fg(red), "a", styled("b", fg(default_color)), "c")), R"(\e[31ma\e[39mb\e[31mc\e[39m)");
}

TEST(Nesting, TakesOffBoldFromFaintAndFaintFromBold)
{
    EXPECT_EQ(written(styled(faint, "a", styled("b", bold), "c")), R"(\e[2ma\e[1mb\e[22;2mc\e[22m)");
    EXPECT_EQ(written(styled(bold, "a", styled("b", faint), "c")), R"(\e[1ma\e[2mb\e[22;1mc\e[22m)");
}

TEST(Nesting, GoesFromOneStyleToTheNextInOneSequence)
{
    EXPECT_EQ(written(styled(style{}, styled("a", bold), styled("b", faint), styled("c", fg(red) | underline))),
              R"(\e[1ma\e[22;2mb\e[22;4;31mc\e[24;39m)");
    EXPECT_EQ(written(styled(bold, styled(fg(red), styled("x", italic)))), R"(\e[1;3;31mx\e[22;23;39m)");
}

TEST(Lines, EndWithoutAStyle)
{
    EXPECT_EQ(written(styled("a\nb", err)), R"(\e[1;31ma\e[22;39m\n\e[1;31mb\e[22;39m)");
    EXPECT_EQ(written(styled("a\r\nb", bold)), R"(\e[1ma\e[22m\r\n\e[1mb\e[22m)");
    EXPECT_EQ(written(styled("a\rb", bold)), R"(\e[1ma\e[22m\r\e[1mb\e[22m)");
    EXPECT_EQ(written(styled("a\vb\fc", bold)), R"(\e[1ma\e[22m\x0b\e[1mb\e[22m\x0c\e[1mc\e[22m)");
    EXPECT_EQ(written(styled("a\tb\b\a\x0e", bold)), R"(\e[1ma\tb\x08\x07\x0e\e[22m)");
}

TEST(Lines, HaveNoSequenceWithoutText)
{
    EXPECT_EQ(written(styled("\n", bold)), R"(\n)");
    EXPECT_EQ(written(styled("a\n", bold)), R"(\e[1ma\e[22m\n)");
    EXPECT_EQ(written(styled("a\n\n\r\nb\n", bold)), R"(\e[1ma\e[22m\n\n\r\n\e[1mb\e[22m\n)");
    EXPECT_EQ(written(styled(bold, "a", styled("\n", fg(red)), "b")), R"(\e[1ma\e[22m\n\e[1mb\e[22m)");
    EXPECT_EQ(written(styled(bold, "a", styled("b\n", fg(red)), "c")), R"(\e[1ma\e[31mb\e[22;39m\n\e[1mc\e[22m)");
}

// U+0085 is a line feed and a carriage return, ESC D, ESC E and ESC M go to another line.
TEST(Lines, EndWithoutAStyleAtControlsOfTheTextToo)
{
    EXPECT_EQ(written(styled("a\u0085b", bold)), R"(\e[1ma\e[22m\xc2\x85\e[1mb\e[22m)");
    EXPECT_EQ(written(styled("a\033Eb", bold)), R"(\e[1ma\e[22m\eE\e[1mb\e[22m)");
}

struct Colored {
    char const* text;
    char const* in_red; // what is written of it
};

Colored const colored[] = {
    // What it selects stays until it ends it.
    {"a\x1b[1mb\x1b[22mc", R"(\e[31ma\e[1mb\e[22mc\e[39m)"},
    {"a\x1b[34mb\x1b[39mc", R"(\e[31ma\e[34mb\e[31mc\e[39m)"},
    {"a\x1b[44mb\x1b[49mc", R"(\e[31ma\e[44mb\e[49mc\e[39m)"},
    {"a\x1b[94mb\x1b[104mc\x1b[mc", R"(\e[31ma\e[94mb\e[104mc\e[31;49mc\e[39m)"},
    {"a\x1b[1;4mb\x1b[0mc", R"(\e[31ma\e[1;4mb\e[22;24mc\e[39m)"},
    {"a\x1b[3mb\x1b[00mc", R"(\e[31ma\e[3mb\e[23mc\e[39m)"},
    {"a\x1b[3mb\x1b[;mc", R"(\e[31ma\e[3mb\e[23mc\e[39m)"},
    {"\x1b[01;32mb\x1b[m", R"(\e[1;32mb\e[22;39m)"},
    {"a\x1b[0;1;34mb", R"(\e[31ma\e[1;34mb\e[22;39m)"},
    {"a\x1b[2;3;5;7;8;9mb\x1b[22;23;25;27;28;29mc", R"(\e[31ma\e[2;3;5;7;8;9mb\e[22;23;25;27;28;29mc\e[39m)"},
    // The first and last of each sixteen, and none beside them.
    {"a\x1b[30mb\x1b[37;40mc\x1b[47md", R"(\e[31ma\e[30mb\e[37;40mc\e[47md\e[39;49m)"},
    {"a\x1b[90mb\x1b[97;100mc\x1b[107md", R"(\e[31ma\e[90mb\e[97;100mc\e[107md\e[39;49m)"},
    {"a\x1b[89;98;99;108mb", R"(\e[31mab\e[39m)"},
    // Colours of more than sixteen.
    {"a\x1b[38;5;208mb", R"(\e[31ma\e[38;5;208mb\e[39m)"},
    {"a\x1b[48;5;208mb", R"(\e[31ma\e[48;5;208mb\e[39;49m)"},
    {"a\x1b[38:5:208mb", R"(\e[31ma\e[38;5;208mb\e[39m)"},
    {"a\x1b[38;2;1;2;3mb", R"(\e[31ma\e[38;2;1;2;3mb\e[39m)"},
    {"a\x1b[38:2:1:2:3mb", R"(\e[31ma\e[38;2;1;2;3mb\e[39m)"},
    {"a\x1b[38:2::1:2:3mb", R"(\e[31ma\e[38;2;1;2;3mb\e[39m)"},
    {"a\x1b[38;2;1;2;3;1mb", R"(\e[31ma\e[1;38;2;1;2;3mb\e[22;39m)"},
    {"a\x1b[38;5;1;1mb", R"(\e[31ma\e[1;38;5;1mb\e[22;39m)"},
    // Not colours: what else the sequence says still holds.
    {"a\x1b[38;5;256;1mb", R"(\e[31ma\e[1mb\e[22;39m)"},
    {"a\x1b[38;5;255mb\x1b[38;2;256;2;3mc\x1b[38;2;1;2;256md", R"(\e[31ma\e[38;5;255mbcd\e[39m)"},
    {"a\x1b[38;2;1;256;3;1mb", R"(\e[31ma\e[1mb\e[22;39m)"},
    {"a\x1b[38;5mb", R"(\e[31mab\e[39m)"},
    {"a\x1b[38mb", R"(\e[31mab\e[39m)"},
    {"a\x1b[38:2:1:2mb", R"(\e[31mab\e[39m)"},
    {"a\x1b[38:3:1:2:3mb", R"(\e[31mab\e[39m)"},
    // Underlines, and what else styles cannot say.
    {"a\x1b[21mb\x1b[24mc", R"(\e[31ma\e[21mb\e[24mc\e[39m)"},
    {"a\x1b[4:3mb\x1b[4:0mc", R"(\e[31ma\e[4:3mb\e[24mc\e[39m)"},
    {"a\x1b[4:1mb\x1b[4:2mc\x1b[4:4md\x1b[4:5me", R"(\e[31ma\e[4mb\e[21mc\e[4:4md\e[4:5me\e[24;39m)"},
    {"a\x1b[6mb\x1b[5mc\x1b[25md", R"(\e[31ma\e[6mb\e[5mc\e[25md\e[39m)"},
    {"a\x1b[53mb\x1b[55mc", R"(\e[31ma\e[53mb\e[55mc\e[39m)"},
    {"a\x1b[58;5;9mb\x1b[59mc", R"(\e[31ma\e[58;5;9mb\e[59mc\e[39m)"},
    {"a\x1b[58:2::1:2:3mb", R"(\e[31ma\e[58;2;1;2;3mb\e[39;59m)"},
    // Left out: fonts and frames, and what is none of these.
    {"a\x1b[11;51;73;99;403;999999mb", R"(\e[31mab\e[39m)"},
    // The end of the text ends all.
    {"\x1b[1;3mb", R"(\e[1;3;31mb\e[22;23;39m)"},
    {"a\x1b[1mb\nc", R"(\e[31ma\e[1mb\e[22;39m\n\e[1;31mc\e[22;39m)"},
    // Other sequences are passed on. What erases does it in the style in effect.
    {"a\x1b[2Kb", R"(\e[31ma\e[2Kb\e[39m)"},
    {"\x1b[K", R"(\e[31m\e[K\e[39m)"},
    {"a\x1b[>4;2mb", R"(\e[31ma\e[>4;2mb\e[39m)"},
    {"a\x1b]8;;http://x\x1b\\b\x1b]8;;\ac", R"(\e[31ma\e]8;;http://x\e\b\e]8;;\x07c\e[39m)"},
    {"\x1b]0;title\a", R"(\e]0;title\x07)"},
    // In the form of C1 controls.
    {"a\u009b1mb\23322mc", R"(\e[31ma\e[1mb\e[22mc\e[39m)"},
    // Controls within a sequence are carried out.
    {"a\x1b[1\n;4mb", R"(\e[31ma\e[39m\n\e[1;4;31mb\e[22;24;39m)"},
    // Not complete, given up or broken off: dropped.
    {"a\x1b[1", R"(\e[31ma\e[39m)"},
    {"a\x1b", R"(\e[31ma\e[39m)"},
    {"a\x1b]0;title", R"(\e[31ma\e[39m)"},
    {"a\x1b[1\x1b[3mb", R"(\e[31ma\e[3mb\e[23;39m)"},
    {"a\x1b]0;title\x1b[3mb", R"(\e[31ma\e[3mb\e[23;39m)"},
    {"a\x1b[1\x18mb", R"(\e[31ma\x18mb\e[39m)"},
    // A string without an end is text.
    {"a\x1b]not a string\nb", R"(\e[31manot a string\e[39m\n\e[31mb\e[39m)"}};

TEST(ColoredText, KeepsItsColors)
{
    for (Colored const& of : colored) {
        EXPECT_EQ(written(styled(of.text, fg(red))), of.in_red) << readable(of.text);
    }
}

TEST(ColoredText, IsTheSameHoweverItIsCut)
{
    for (Colored const& of : colored) {
        std::string_view const text = of.text;
        for (std::size_t at = 1; at < text.size(); ++at) {
            EXPECT_EQ(written(styled(fg(red), text.substr(0, at), text.substr(at))), of.in_red)
                << readable(text) << " cut at " << at;
        }
    }
}

TEST(ColoredText, GoesBackToWhatIsAroundIt)
{
    EXPECT_EQ(written(styled("a\x1b[0mb", bold | underline)), R"(\e[1;4mab\e[22;24m)");
    EXPECT_EQ(written(styled("a\x1b[2mb\x1b[22mc", bold)), R"(\e[1ma\e[2mb\e[22;1mc\e[22m)");
    EXPECT_EQ(written(styled("a\x1b[4:3mb\x1b[24mc", underline)), R"(\e[4ma\e[4:3mb\e[4mc\e[24m)");
    EXPECT_EQ(written(styled(underline, "\x1b[4:3ma", styled("b", underline), "c")), R"(\e[4:3ma\e[4mb\e[4:3mc\e[24m)");
    EXPECT_EQ(written(styled(fg(red), "\x1b[34ma", styled("b\x1b[mc", bold), "d\x1b[me")),
              R"(\e[34ma\e[1mbc\e[22md\e[31me\e[39m)");
}

TEST(ColoredText, MayHaveAStringOf4096Bytes)
{
    std::string const longest = "\x1b]0;" + std::string(4094, 'x');
    EXPECT_EQ(to_string(styled(longest + "\a!", bold)), longest + "\a\x1b[1m!\x1b[22m");
    EXPECT_EQ(to_string(styled(longest + "x\a!", bold)), "\x1b[1m0;" + std::string(4095, 'x') + "\a!\x1b[22m");
}

TEST(ColoredText, DropsASequenceWithoutAnEnd)
{
    EXPECT_EQ(to_string(styled("a\x1b[" + std::string(100'000, '1') + "mb", bold)), "\x1b[1mab\x1b[22m");
}

TEST(ColoredText, KeepsBytesThatAreNoText)
{
    EXPECT_EQ(written(styled("a\xff\xe9z\xe2", bold)), R"(\e[1ma\xff\xe9z\xe2\e[22m)");
    EXPECT_EQ(written(styled(bold, "a\xe2", "\xe2\x82", "\xac")), R"(\e[1ma\xe2€\e[22m)");
    EXPECT_EQ(written(styled(bold, "a\xe2", styled("\x82\xac", italic))),
              R"(\e[1ma\xe2\e[22m\x82\e[1;3m\xac\e[22;23m)");
}

TEST(Depth, ReducesColors)
{
    auto const text =
        styled(fg(rgb(95, 0, 0)) | bg(palette(196)) | bold, "a\x1b[38;2;0;180;90mb", styled("c", fg(blue)));
    EXPECT_EQ(written(text, color_depth::truecolor),
              R"(\e[1;38;2;95;0;0;48;5;196ma\e[38;2;0;180;90mb\e[34mc\e[22;39;49m)");
    EXPECT_EQ(written(text, color_depth::ansi256), R"(\e[1;38;5;52;48;5;196ma\e[38;5;35mb\e[34mc\e[22;39;49m)");
    EXPECT_EQ(written(text, color_depth::ansi16), R"(\e[1;31;101ma\e[32mb\e[34mc\e[22;39;49m)");
    EXPECT_EQ(written(text, color_depth::none), "abc");
}

TEST(Depth, OfNoneTakesOutEverySequence)
{
    for (Look const& of : looks) {
        EXPECT_EQ(written(styled("four", of.look), color_depth::none), "four");
    }
    for (Colored const& of : colored) {
        std::string const bytes = to_string(styled(of.text, fg(red)), color_depth::none);
        EXPECT_EQ(bytes.find_first_of("\x1b\x9b"), std::string::npos) << readable(bytes);
    }
    EXPECT_EQ(written(styled("a\x1b]8;;http://x\x1b\\b\x1b]8;;\ac\x1b[2Kd\0337e\u009b1mf\n", bold), color_depth::none),
              R"(abcdef\n)");
}

TEST(Depth, IsThePoorerOneOfStreamAndText)
{
    auto const text = styled("x", fg(rgb(95, 0, 0)));
    std::ostringstream os;
    os << text.at(color_depth::ansi256);
    set_depth(os, color_depth::ansi256);
    os << text << text.at(color_depth::truecolor) << text.at(color_depth::ansi16) << text.at(color_depth::none);
    EXPECT_EQ(readable(os.str()), R"(\e[38;5;52mx\e[39m\e[38;5;52mx\e[39m\e[38;5;52mx\e[39m\e[31mx\e[39mx)");
    EXPECT_EQ(readable(to_string(text.at(color_depth::ansi16), color_depth::ansi256)), R"(\e[31mx\e[39m)");
}

template <class... Inserted>
std::string inserted(Inserted const&... values)
{
    std::ostringstream os;
    (os << ... << values);
    return readable(os.str());
}

TEST(Stream, PadsTheWholeTextInColumnsOutsideOfTheStyle)
{
    auto const word = styled("done", fg(green));
    EXPECT_EQ(inserted(std::setw(8), word, '|'), R"(    \e[32mdone\e[39m|)");
    EXPECT_EQ(inserted(std::left, std::setfill('*'), std::setw(8), word, '|'), R"(\e[32mdone\e[39m****|)");
    EXPECT_EQ(inserted(std::internal, std::setw(8), word, '|'), R"(    \e[32mdone\e[39m|)");
    EXPECT_EQ(inserted(std::setw(8), styled("日本", bold), '|'), R"(    \e[1m日本\e[22m|)");
    EXPECT_EQ(inserted(std::setw(3), word, '|'), R"(\e[32mdone\e[39m|)");
    EXPECT_EQ(inserted(std::setw(4), word, '|'), R"(\e[32mdone\e[39m|)");
    EXPECT_EQ(inserted(std::setw(5), word, std::setw(2), '|'), R"( \e[32mdone\e[39m |)");
    EXPECT_EQ(inserted(std::setw(3), styled("", bold), '|'), R"(   |)");
    EXPECT_EQ(inserted(std::setw(-3), word, '|'), R"(\e[32mdone\e[39m|)");
    EXPECT_EQ(inserted(std::setw(8), styled(bold, "a", styled("b", fg(red)), 42, '!')),
              R"(   \e[1ma\e[31mb\e[39m42!\e[22m)");
    EXPECT_EQ(inserted(std::setw(6), styled("\x1b[3mab\x1b[m\x1b[K", bold)), R"(    \e[1;3mab\e[23m\e[K\e[22m)");
    EXPECT_EQ(inserted(std::setw(1000), styled("x", bold)), std::string(999, ' ') + R"(\e[1mx\e[22m)");
}

TEST(Stream, FormatsValuesAsItsOwn)
{
    EXPECT_EQ(inserted(std::hex, std::showbase, styled(255, bold)), R"(\e[1m0xff\e[22m)");
    EXPECT_EQ(inserted(std::fixed, std::setprecision(1), styled(bold, 0.25, ' ', 3.14159)), R"(\e[1m0.2 3.1\e[22m)");
    EXPECT_EQ(inserted(std::boolalpha, styled(true, bold)), R"(\e[1mtrue\e[22m)");
    EXPECT_EQ(inserted(std::setfill('*'), styled(bold, std::setw(4), 7)), R"(\e[1m***7\e[22m)");

    std::ostringstream os;
    os.imbue(grouping_locale());
    os << styled(1234, bold);
    EXPECT_EQ(readable(os.str()), R"(\e[1m1.2.3.4\e[22m)");
}

TEST(Stream, FormatsValuesOfStringsInTheClassicLocale)
{
    GroupedDigits const scope;
    EXPECT_EQ(readable(to_string(styled(1234, bold))), R"(\e[1m1234\e[22m)");
}

TEST(Stream, KeepsItsOwnFormatFromThePieces)
{
    EXPECT_EQ(inserted(styled(bold, std::hex, 255, std::setfill('*'), std::setw(4), 15), ' ', 255, std::setw(3), 1),
              R"(\e[1mff***f\e[22m 255  1)");
    EXPECT_EQ(inserted(styled(bold, std::setw(4), "ab", std::setw(3), styled("c", fg(red)), std::setw(2), 'd')),
              R"(\e[1m  ab  \e[31mc\e[39m d\e[22m)");
}

// A type whose insertion writes styled text itself.
struct version {
    int number;

    friend std::ostream& operator<<(std::ostream& os, version const& v)
    {
        return os << "v" << styled(v.number, fg(blue)) << styled("+", fg(default_color)) << std::setw(3)
                  << styled("ok", faint) << '\n'
                  << styled("b", italic);
    }
};

TEST(Stream, NestsWhatAPieceWritesItself)
{
    EXPECT_EQ(inserted(version{3}), R"(v\e[34m3\e[39m+ \e[2mok\e[22m\n\e[3mb\e[23m)");
    EXPECT_EQ(written(styled(version{3}, fg(red))),
              R"(\e[31mv\e[34m3\e[39m+\e[31m \e[2mok\e[22;39m\n\e[3;31mb\e[23;39m)");
    EXPECT_EQ(written(styled(bold | fg(red), "[", version{3}, "]")),
              R"(\e[1;31m[v\e[34m3\e[39m+\e[31m \e[2mok\e[22;39m\n\e[1;3;31mb\e[23m]\e[22;39m)");
    EXPECT_EQ(written(styled(version{3}, fg(red)), color_depth::none), R"(v3+ ok\nb)");
    EXPECT_EQ(inserted(std::setw(12), styled(version{3}, fg(red))),
              R"(     \e[31mv\e[34m3\e[39m+\e[31m \e[2mok\e[22;39m\n\e[3;31mb\e[23;39m)");
}

// Byte by byte, as some write.
struct by_bytes {
    std::string_view text;

    friend std::ostream& operator<<(std::ostream& os, by_bytes const& bytes)
    {
        for (char const c : bytes.text) {
            os.rdbuf()->sputc(c);
        }
        return os;
    }
};

TEST(Stream, PutsCharactersAndSequencesTogether)
{
    EXPECT_EQ(written(styled(by_bytes{"€–\x1b[1mx\x1b[m日"}, fg(red))), R"(\e[31m€–\e[1mx\e[22m日\e[39m)");
    for (Colored const& of : colored) {
        EXPECT_EQ(written(styled(by_bytes{of.text}, fg(red))), of.in_red) << readable(of.text);
    }
}

// Looks at the stream that it is inserted into.
struct observer {
    style* look;
    color_depth* depth;

    friend std::ostream& operator<<(std::ostream& os, observer const& o)
    {
        *o.look = style_of(os);
        *o.depth = depth_of(os);
        return os;
    }
};

TEST(Stream, TellsPiecesItsStyleAndDepth)
{
    style look;
    color_depth depth{};
    std::ostringstream os;
    os << styled(bold, "\x1b[3m", styled(observer{&look, &depth}, fg(rgb(95, 0, 0)))).at(color_depth::ansi256);
    EXPECT_EQ(look, bold | italic | fg(palette(52)));
    EXPECT_EQ(depth, color_depth::ansi256);
    EXPECT_EQ(os.str(), "");
}

TEST(Stream, IsToldTheStyleAround)
{
    std::ostringstream os;
    set_style(os, fg(red) | bold);
    EXPECT_EQ(style_of(os), fg(red) | bold);
    os << styled("a", fg(blue)) << styled("b", fg(red)) << styled("c\nd", faint) << styled("\x1b[me", italic);
    EXPECT_EQ(readable(os.str()), R"(\e[34ma\e[31mb\e[2mc\e[22;39m\n\e[1;2;31md\e[22;1m\e[3me\e[23m)");

    std::ostringstream copy;
    copy.copyfmt(os);
    EXPECT_EQ(style_of(copy), fg(red) | bold);

    set_style(os, bg(rgb(1, 2, 3)) | fg(palette(4)) | crossed_out);
    EXPECT_EQ(style_of(os), bg(rgb(1, 2, 3)) | fg(palette(4)) | crossed_out);
    set_style(os, {});
    EXPECT_EQ(style_of(os), style{});
    os.str("");
    os << styled("x", bold);
    EXPECT_EQ(readable(os.str()), R"(\e[1mx\e[22m)");
}

TEST(Stream, EndsALineWithoutAStyleAndTakesUpTheOneAround)
{
    std::ostringstream os;
    set_style(os, fg(red));
    os << styled("a\n", bold);
    EXPECT_EQ(readable(os.str()), R"(\e[1ma\e[22;39m\n\e[31m)");
}

TEST(Stream, IsBadWhereTextDoesNotFit)
{
    for (std::size_t const room : {0U, 3U, 6U, 8U}) {
        SmallBuffer full{room};
        std::ostream os{&full};
        os << styled("text", bold);
        EXPECT_EQ(os.rdstate(), std::ios_base::badbit) << room;
        EXPECT_EQ(full.text(), "\x1b[1mtext\x1b[22m"s.substr(0, room));

        SmallBuffer as_full{room};
        std::ostream values{&as_full};
        values << styled(bold, "te", 'x', 7);
        EXPECT_EQ(values.rdstate(), std::ios_base::badbit) << room;
    }
}

TEST(Stream, ThrowsAsItIsToldTo)
{
    auto const insert = [](bool throws, std::ios_base::iostate mask, auto const& text) {
        SmallBuffer full{3, throws ? AtEnd::throws : AtEnd::refuses};
        std::ostream os{&full};
        os.exceptions(mask);
        try {
            os << text;
        } catch (std::ios_base::failure const&) {
            return "failure"s;
        } catch (BufferFault const&) {
            return "full"s;
        }
        return os.rdstate() == std::ios_base::badbit ? "bad"s : "?"s;
    };
    auto const check = [insert](auto const& text) {
        EXPECT_EQ(insert(false, std::ios_base::goodbit, text), "bad");
        EXPECT_EQ(insert(true, std::ios_base::goodbit, text), "bad");
        EXPECT_EQ(insert(false, std::ios_base::badbit, text), "failure");
        EXPECT_EQ(insert(true, std::ios_base::badbit, text), "full");
    };
    check(styled("text", bold));
    check(styled(bold, "te", styled("xt", fg(red)), 7));
}

TEST(Stream, StaysAsItIsOnceItHasFailed)
{
    std::ostringstream os;
    os.setstate(std::ios_base::failbit);
    os << std::setw(9) << styled("text", bold) << styled(bold, 1, 2);
    EXPECT_EQ(os.str(), "");
    EXPECT_EQ(os.width(), 9);

    std::ostream nowhere{nullptr};
    nowhere << styled("text", bold) << styled(1, bold);
    EXPECT_TRUE(nowhere.bad());
}

struct failing {
    friend std::ostream& operator<<(std::ostream& os, failing const&)
    {
        os.setstate(std::ios_base::failbit);
        return os;
    }
};

struct throwing {
    friend std::ostream& operator<<(std::ostream&, throwing const&) { throw std::runtime_error("no"); }
};

TEST(Stream, FailsAsAPieceDoes)
{
    std::ostringstream os;
    os << styled(bold, "a", failing{}, "b", 1);
    EXPECT_EQ(os.rdstate(), std::ios_base::failbit);
    EXPECT_EQ(readable(os.str()), R"(\e[1ma\e[22m)");

    std::ostringstream strict;
    strict.exceptions(std::ios_base::failbit);
    EXPECT_THROW(strict << styled(bold, "a", failing{}, "b"), std::ios_base::failure);
    EXPECT_EQ(readable(strict.str()), R"(\e[1ma\e[22m)");
}

TEST(Stream, EndsTheStyleWhereAPieceThrows)
{
    std::ostringstream os;
    EXPECT_THROW(os << styled(bold, "a", throwing{}, "b"), std::runtime_error);
    EXPECT_EQ(readable(os.str()), R"(\e[1ma\e[22m)");
    EXPECT_THROW(static_cast<void>(to_string(styled(throwing{}, bold))), std::runtime_error);
}

TEST(Stream, IsWrittenToAtOnce)
{
    SmallBuffer all;
    std::ostream os{&all};
    os << styled(fg(red), "error: ", styled("word", bold), ' ', 42, '\n');
    EXPECT_EQ(all.writes, 1);
    os << std::setw(20) << styled("word", bold);
    EXPECT_EQ(all.writes, 2);
    os << styled("", bold);
    EXPECT_EQ(all.writes, 3); // an insertion of nothing is one, too: it flushes what is tied
}

TEST(Stream, FlushesWhatIsTied)
{
    struct Counting : std::stringbuf {
        int syncs = 0;
        int sync() override { return ++syncs, 0; }
    } buffer;
    std::ostream first{&buffer};
    std::ostringstream os;
    os.tie(&first);
    os << styled("text", bold);
    EXPECT_EQ(buffer.syncs, 1);
    os << styled(bold, 1, "x");
    EXPECT_EQ(buffer.syncs, 2);
    os << styled("", bold);
    EXPECT_EQ(buffer.syncs, 3);
}

} // namespace
