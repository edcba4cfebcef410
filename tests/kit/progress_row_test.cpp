#include "progress_row.hpp"

#include "kestry/kit/text.hpp"

#include "support/testing.hpp"

namespace {

using namespace kestry::kit::detail;
using hueline::test::readable;
using kestry::kit::progress::unit;
using kestry::kit::progress::unknown;

progress_look constexpr in_ascii = {.color = false, .ascii = true};
progress_look constexpr plain = {.color = false};

progress_facts facts_of(std::uint64_t position, std::uint64_t length, std::string_view message = {})
{
    return {.message = message, .message_columns = message.size(), .position = position, .length = length};
}

std::string laid_out(std::string_view layout, progress_facts const& facts, std::size_t columns,
                     progress_look const& look = in_ascii)
{
    return lay_out(progress_template(layout), facts, look, columns).text;
}

std::string refusal(std::string_view layout)
{
    try {
        progress_template const refused(layout);
    } catch (std::invalid_argument const& e) {
        return e.what();
    }
    return "";
}

TEST(ProgressLayout, SaysWhatItDoesNotKnow)
{
    EXPECT_EQ(refusal("{mgs}"), "progress layout: unknown key {mgs} at byte 0");
    EXPECT_EQ(refusal("abc {}"), "progress layout: unknown key {} at byte 4");
    EXPECT_EQ(refusal("{msg:1x}"), "progress layout: no width in columns in {msg:1x} at byte 0");
    EXPECT_EQ(refusal("{msg:-1}"), "progress layout: no width in columns in {msg:-1} at byte 0");
    EXPECT_EQ(refusal("{msg:1001}"), "progress layout: no width in columns in {msg:1001} at byte 0");
    EXPECT_EQ(refusal("{msg:1000}"), "");
    EXPECT_EQ(refusal("{msg:99999999999999999999}"),
              "progress layout: no width in columns in {msg:99999999999999999999} at byte 0");
    EXPECT_EQ(refusal("{msg:.pink}"), "progress layout: unknown colour in {msg:.pink} at byte 0");
    EXPECT_EQ(refusal("{msg:.}"), "progress layout: unknown colour in {msg:.} at byte 0");
    EXPECT_EQ(refusal("ab{msg"), "progress layout: no } for the { at byte 2");
    EXPECT_EQ(refusal("ab}"), "progress layout: no { for the } at byte 2");
    EXPECT_EQ(refusal("a\nb"), "progress layout: control character at byte 1");
    EXPECT_EQ(refusal("a\x7f"), "progress layout: control character at byte 1");
    EXPECT_EQ(refusal("a\u0080"), "progress layout: control character at byte 1");
    EXPECT_EQ(refusal("a\u009f"), "progress layout: control character at byte 1");
    EXPECT_EQ(refusal("a\u00a0é"), "");
    EXPECT_EQ(refusal("{wide_bar} {wide_bar:.red}"), "progress layout: another {wide_bar:.red} at byte 11");
}

TEST(ProgressLayout, ShowsOnlyAsciiWhereThatIsAsked)
{
    EXPECT_EQ(painted(lay_out(progress_template("→ {msg} ✓"), facts_of(1, 2, "m"), in_ascii, 80)), "? m ?");
}

TEST(ProgressLayout, ShowsEachKey)
{
    progress_facts facts = facts_of(25, 100, "name");
    facts.rate = 5;
    facts.left = 15;
    facts.elapsed = 65;
    EXPECT_EQ(laid_out("{msg}|{pos}|{len}|{percent}|{rate}|{eta}|{elapsed}|{spinner}|", facts, 80),
              "name| 25|100| 25%| 5.00/s|00:15|01:05|||");
    EXPECT_EQ(laid_out("{bar}|{bar:7}|", facts, 80), "[####>.............]|[#>...]|");
    EXPECT_EQ(laid_out("{wide_bar}|", facts, 31), "[#######>....................]|");
    EXPECT_EQ(laid_out("{{{msg}}}", facts, 80), "{name}");
    EXPECT_EQ(laid_out("{msg:6}|", facts, 80), "name  |");
    EXPECT_EQ(laid_out("{msg:<6}|", facts, 80), "name  |");
    EXPECT_EQ(laid_out("{msg:>6}|", facts, 80), "  name|");
    EXPECT_EQ(laid_out("{msg:3}|", facts, 80), "...|");
    EXPECT_EQ(laid_out("{msg:6}", facts, 80), "name");
}

TEST(ProgressLayout, CountsBytes)
{
    progress_facts facts = facts_of(1234, 4 << 20);
    facts.counted = unit::bytes;
    facts.rate = 2048;
    EXPECT_EQ(laid_out("{pos}/{len} {rate}", facts, 80), "1.21 KiB/4.00 MiB 2.00 KiB/s");
}

TEST(ProgressLayout, ShowsWhatIsNotKnown)
{
    EXPECT_EQ(laid_out("{pos}/{len} {percent} {rate} {eta}", facts_of(7, unknown), 80), "7/?  --%    --/s --:--");
}

TEST(ProgressLayout, ShowsWhatAFinishedBarTook)
{
    progress_facts facts = facts_of(10, 10);
    facts.elapsed = 65;
    facts.left = 0;
    facts.state = progress_state::finished;
    EXPECT_EQ(laid_out("{spinner} {eta}", facts, 80), "* 01:05");
    facts.state = progress_state::abandoned;
    facts.left = {};
    EXPECT_EQ(laid_out("{spinner} {eta}", facts, 80), "x --:--");
}

TEST(ProgressLayout, HasADefaultForWhatIsKnown)
{
    auto const row = [](std::uint64_t position, std::uint64_t length) {
        return lay_out(usual_template(position, length), facts_of(position, length, "name"), in_ascii, 50).text;
    };
    EXPECT_EQ(row(1, 10), "name [#>................]  10%  1/10    --/s --:--");
    EXPECT_EQ(row(1, unknown), "| name 1    --/s 00:00");
    EXPECT_EQ(row(0, unknown), "| name 00:00");
}

// Bars of a length of 24, at each position.
std::string bars(std::vector<std::uint64_t> const& positions, progress_look const& look)
{
    std::string all;
    for (std::uint64_t const position : positions) {
        all += laid_out("{bar:5}", facts_of(position, 24), 80, look);
    }
    return all;
}

TEST(ProgressBar, FillsByEighthsOfACell)
{
    EXPECT_EQ(bars({0, 1, 7, 8, 12, 23, 24, 25}, plain), "[   ][▏  ][▉  ][█  ][█▌ ][██▉][███][███]");
    EXPECT_EQ(bars({0, 1, 23, 24}, in_ascii), "[...][>..][##>][###]");
}

TEST(ProgressBar, IsFullOnlyAtTheEnd)
{
    std::uint64_t constexpr most = std::numeric_limits<std::uint64_t>::max() - 1;
    EXPECT_EQ(laid_out("{bar:5}", facts_of(most - 1, most), 80, plain), "[██▉]");
    EXPECT_EQ(laid_out("{bar:5}", facts_of(most, most), 80, plain), "[███]");
    EXPECT_EQ(laid_out("{bar:5}", facts_of(0, 0), 80, plain), "[███]");
}

// The row at each turn of what is not known to have an end.
std::string turns(std::string_view layout, unsigned count)
{
    std::string all;
    for (unsigned turn = 0; turn < count; ++turn) {
        progress_facts facts = facts_of(1, unknown);
        facts.turn = turn;
        all += laid_out(layout, facts, 80);
    }
    return all;
}

TEST(ProgressBar, HasAPieceThatGoesToAndFroWithoutALength)
{
    EXPECT_EQ(turns("{bar:7}", 5), "[###  ][ ### ][  ###][ ### ][###  ]");
    EXPECT_EQ(turns("{bar:4}", 1), "[##]");
    progress_facts finished = facts_of(1, unknown);
    finished.state = progress_state::finished;
    EXPECT_EQ(laid_out("{bar:4}", finished, 80), "[>.]");
}

TEST(ProgressBar, NeedsThreeColumns)
{
    EXPECT_EQ(laid_out("a{bar:2}b", facts_of(1, 2), 80), "a  b");
    EXPECT_EQ(laid_out("a{bar:3}b", facts_of(1, 2), 80), "a[>]b");
}

TEST(ProgressSpinner, Turns)
{
    EXPECT_EQ(turns("{spinner}", 5), "|/-\\|");
    EXPECT_EQ(laid_out("{spinner}", facts_of(0, unknown), 80, plain), "⠋");
}

TEST(ProgressRow, GivesWayFromTheBarToTheMessageToTheKeysOnTheRight)
{
    progress_facts facts = facts_of(1, 2, "a long message");
    struct Case {
        std::size_t columns;
        std::string row;
    };
    for (auto const& [columns, row] : {Case{40, "a long message [#######>......]  50% 1/2"},
                                       {31, "a long message [##>..]  50% 1/2"},
                                       {30, "a long message [##>.]  50% 1/2"},
                                       {29, "a long message [#>.]  50% 1/2"},
                                       {28, "a long mes... [#>.]  50% 1/2"},
                                       {24, "a long... [#>.]  50% 1/2"},
                                       {23, "a lon... [#>.]  50% 1/2"},
                                       {22, "a long mes...  50% 1/2"},
                                       {17, "a lon...  50% 1/2"},
                                       {16, "a long m...  50%"},
                                       {13, "a lon...  50%"},
                                       {12, "a long me..."},
                                       {5, "a ..."},
                                       {3, "..."},
                                       {2, "a "},
                                       {1, "a"},
                                       {0, ""}}) {
        std::string const shown = laid_out("{msg} {wide_bar} {percent} {pos}/{len}", facts, columns);
        EXPECT_LE(shown.size(), columns);
        EXPECT_EQ(shown, row) << columns;
    }
}

TEST(ProgressRow, IsNeverWiderThanItsRoom)
{
    std::vector<std::string> const layouts = {"{msg} {wide_bar} {percent} {pos}/{len} {rate} {eta}",
                                              "{spinner} {msg}",
                                              "{wide_bar}",
                                              "text {bar:30} text",
                                              "{percent}{msg:>20}{wide_bar}",
                                              "only text"};
    for (std::string const& layout : layouts) {
        for (std::string_view const message :
             {"", "x", "a message of some length", "日本語のメッセージ", "👩‍👩‍👧 family"}) {
            for (std::size_t columns = 0; columns < 90; ++columns) {
                progress_facts facts = facts_of(1, 2, message);
                facts.message_columns = kestry::kit::display_width(message);
                progress_text const row = lay_out(progress_template(layout), facts, plain, columns);
                ASSERT_LE(row.columns(), columns) << layout << ' ' << message;
                ASSERT_EQ(row.columns(), kestry::kit::display_width(row.text)) << layout << ' ' << message;
            }
        }
    }
}

TEST(ProgressRow, PadsMessagesSoThatBarsStandInLine)
{
    progress_look look = in_ascii;
    look.message_columns = 6;
    EXPECT_EQ(laid_out("{msg} {percent}", facts_of(1, 2, "ab"), 80, look), "ab      50%");
    EXPECT_EQ(laid_out("{msg}", facts_of(1, 2, "ab"), 80, look), "ab"); // no blanks at the end
}

TEST(ProgressRow, CutsWithADotOfUnicodeIfItMay)
{
    EXPECT_EQ(laid_out("{msg}", facts_of(1, 2, "message"), 4, plain), "mes…");
}

std::string in_color(std::string_view layout, progress_facts const& facts, progress_look const& look = {.ascii = true})
{
    return readable(painted(lay_out(progress_template(layout), facts, look, 80)));
}

TEST(ProgressColor, IsAroundItsKeyAlone)
{
    progress_facts const facts = facts_of(1, 2, "m");
    EXPECT_EQ(in_color("{msg:.cyan} {bar:6.green} {percent:.bold}", facts),
              R"(\e[36mm\e[0m [\e[32m##>\e[0m.] \e[1m 50%\e[0m)");
    EXPECT_EQ(in_color("{msg:3.dim}|", facts), R"(\e[2mm\e[0m  |)");
    EXPECT_EQ(in_color("{msg:>3.red}|", facts), R"(  \e[31mm\e[0m|)");
    EXPECT_EQ(in_color("{msg:.yellow}{msg:.blue}{msg:.magenta}", facts), R"(\e[33mm\e[0m\e[34mm\e[0m\e[35mm\e[0m)");
    EXPECT_EQ(in_color("{msg:.cyan} {bar:5.green}", facts, in_ascii), "m [#>.]");
}

TEST(ProgressColor, OfAnAbandonedBarIsYellow)
{
    progress_facts facts = facts_of(1, 2);
    facts.state = progress_state::abandoned;
    EXPECT_EQ(in_color("{bar:6.green}", facts), R"([\e[33m##>\e[0m.])");
    EXPECT_EQ(in_color("{bar:6}", facts), R"([##>.])");
}

std::string change(progress_text const& from, progress_text const& to)
{
    std::string out;
    append_change(out, from, to);
    return readable(out);
}

TEST(ProgressChange, StartsAtTheFirstDifferentCharacter)
{
    auto const row = [](std::uint64_t position) {
        return lay_out(progress_template("{bar:7} {pos}"), facts_of(position, 40), plain, 80);
    };
    EXPECT_EQ(change(row(17), row(18)), R"(\e[3C▎  ] 18)"); // ▏ and ▎ differ in their last byte only
    EXPECT_EQ(change(row(17), row(17)), R"(\e[10C)");
}

TEST(ProgressChange, RewritesAMessageThatIsNotAscii)
{
    auto const row = [](std::string_view message, std::size_t columns, std::string_view after) {
        progress_text made;
        made.add("a ", 2);
        made.add(message, columns, "", false);
        made.add(after, after.size());
        return made;
    };
    EXPECT_EQ(change(row("日本", 4, " z"), row("日木", 4, " z")), R"(\e[2C日木 z)");
    EXPECT_EQ(change(row("日本", 4, " z"), row("日", 2, "")), R"(\e[2C日\e[K)");
}

TEST(ProgressChange, StartsWhereTheColorDiffers)
{
    progress_text from;
    from.add("ab", 2, "32");
    from.add("cd", 2);
    progress_text to;
    to.add("a", 1, "32");
    to.add("bcd", 3);
    EXPECT_EQ(change(from, to), R"(\e[1Cbcd)");
}

} // namespace
