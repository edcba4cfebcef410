// The order in which a program includes them is not always the right one.
#include <kestry/kit/style.hpp>

#include <fmt/format.h>

#include <kestry/kit/style.hpp>

#include "support/grouping.hpp"
#include "support/testing.hpp"

#include <list>

namespace {

using namespace hueline::test;
using namespace kestry::kit;

template <class... Arguments>
std::string formatted(std::string_view format, Arguments const&... arguments)
{
    std::string const bytes = fmt::format(fmt::runtime(format), arguments...);
#if defined(__cpp_lib_format)
    EXPECT_EQ(std::vformat(format, std::make_format_args(arguments...)), bytes) << format;
#endif
    return readable(bytes);
}

std::string const word = "done";
auto const green_word = styled(word, fg(green));

// Each format of the green word, 6 and 2.
void expect_formatted(std::string const& expected, std::vector<char const*> const& formats)
{
    for (char const* const format : formats) {
        EXPECT_EQ(formatted(format, green_word, 6, 2), expected) << format;
    }
}

TEST(Format, PadsToColumnsOutsideOfTheStyle)
{
    expect_formatted(R"(\e[32mdone\e[39m)", {"{}", "{:}", "{:s}", "{:4}", "{:3}", "{:<}"});
    expect_formatted(R"(\e[32mdone\e[39m   )", {"{:7}", "{:<7}"});
    expect_formatted(R"(   \e[32mdone\e[39m)", {"{:>7}"});
    expect_formatted(R"( \e[32mdone\e[39m  )", {"{:^7}"});
    expect_formatted(R"(**\e[32mdone\e[39m**)", {"{:*^8s}"});
    expect_formatted(R"(éé\e[32mdone\e[39m)", {"{:é>6}"});
    expect_formatted(R"(€€\e[32mdone\e[39m)", {"{:€>6}"});
    expect_formatted(R"(𝄞𝄞\e[32mdone\e[39m)", {"{:𝄞>6}"});
    expect_formatted(R"(>>\e[32mdone\e[39m)", {"{:>>6}"});
    expect_formatted(R"(  \e[32mdone\e[39m)", {"{0:>{1}}", "{:>{}}"});
    expect_formatted(R"(    \e[32mdo\e[39m)", {"{:>{}.{}}", "{0:>{1}.{2}}"});
}

TEST(Format, CutsToColumnsInWholeClusters)
{
    expect_formatted(R"(\e[32mdone\e[39m)", {"{:.5}", "{:.4}"});
    expect_formatted(R"(\e[32mdon\e[39m)", {"{:.3}"});
    expect_formatted(R"(\e[32md\e[39m)", {"{:.1}"});
    expect_formatted("", {"{:.0}"});
    expect_formatted(R"(\e[32mdon\e[39m  |)", {"{:5.3}|"});
    expect_formatted("     |", {"{:>5.0}|"});
    expect_formatted(R"(**\e[32mdo\e[39m**)", {"{:*^6.2s}"});
    EXPECT_EQ(formatted("{:.3}|", styled("日本語", bold)), R"(\e[1m日\e[22m|)");
    EXPECT_EQ(formatted("{:.4}|", styled("日本語", bold)), R"(\e[1m日本\e[22m|)");
    EXPECT_EQ(formatted("{:5.3}|", styled("日本語", bold)), R"(\e[1m日\e[22m   |)");
    EXPECT_EQ(formatted("{:.1}|", styled("e\u0301e\u0301", bold)), "\\e[1me\u0301\\e[22m|");
    EXPECT_EQ(formatted("{:.2}|", styled("🇩🇪🇫🇷", bold)), R"(\e[1m🇩🇪\e[22m|)");
}

TEST(Format, CountsAllPiecesOfAText)
{
    auto const pieces = styled(bold, "日", styled("b", fg(red)), 12, "\x1b[3md\x1b[m", '!');
    EXPECT_EQ(formatted("{:8}|", pieces), R"(\e[1m日\e[31mb\e[39m12\e[3md\e[23m!\e[22m |)");
    EXPECT_EQ(formatted("{:>9.6}|", pieces), R"(   \e[1m日\e[31mb\e[39m12\e[3md\e[22;23m|)");
    EXPECT_EQ(formatted("{:.4}|", pieces), R"(\e[1m日\e[31mb\e[39m1\e[22m|)");
    EXPECT_EQ(formatted("{:.1}|", pieces), R"(|)");

    auto const lines = styled(bold, "a\nb\n", styled("c\n", fg(red)));
    EXPECT_EQ(formatted("{:.2}|", lines), R"(\e[1ma\e[22m\n\e[1mb\e[22m\n|)");
    EXPECT_EQ(formatted("{:>5}|", lines), R"(  \e[1ma\e[22m\n\e[1mb\e[22m\n\e[1;31mc\e[22;39m\n|)");
}

TEST(Format, TakesADepth)
{
    auto const text = styled("x\x1b[3my", fg(rgb(95, 0, 0)));
    EXPECT_EQ(formatted("{:>4}", text.at(color_depth::ansi256)), R"(  \e[38;5;52mx\e[3my\e[23;39m)");
    EXPECT_EQ(formatted("{:>4}", text.at(color_depth::ansi16)), R"(  \e[31mx\e[3my\e[23;39m)");
    EXPECT_EQ(formatted("{:>4}", text.at(color_depth::none)), R"(  xy)");
}

TEST(Format, IsOneOfOthers)
{
    EXPECT_EQ(formatted("[{:>3}] {} {:>4}", 7, styled("a", bold), styled("b", italic)),
              R"([  7] \e[1ma\e[22m    \e[3mb\e[23m)");
    std::string to = "kept ";
    fmt::format_to(std::back_inserter(to), "{:>3}", styled("x", bold));
    EXPECT_EQ(readable(to), R"(kept   \e[1mx\e[22m)");
    std::list<char> list;
    fmt::format_to(std::back_inserter(list), "{}", styled(std::string(1000, 'x'), bold));
    EXPECT_EQ(list.size(), 1009U);
}

TEST(Format, IsCheckedWhenItIsCompiled)
{
    EXPECT_EQ(readable(fmt::format("{:*>{}.2s}", styled("word", bold), 3)), R"(*\e[1mwo\e[22m)");
}

TEST(Format, PrintsNumbersInTheClassicLocale)
{
    GroupedDigits const scope;
    EXPECT_EQ(formatted("{:>5}", styled(1234, bold)), R"( \e[1m1234\e[22m)");
}

template <class... Arguments>
void expect_refused(std::string_view format, Arguments const&... arguments)
{
    EXPECT_THROW(static_cast<void>(fmt::format(fmt::runtime(format), green_word, arguments...)), fmt::format_error)
        << format;
#if defined(__cpp_lib_format)
    EXPECT_THROW(static_cast<void>(std::vformat(format, std::make_format_args(green_word, arguments...))),
                 std::format_error)
        << format;
#endif
}

TEST(Format, RefusesWhatIsNoFormatOfText)
{
    for (char const* const format :
         {"{:d}", "{:05}", "{:+}", "{:#}", "{:.}", "{:.x}", "{:5x}", "{:s5}", "{:99999999999}", "{:.99999999999}",
          "{:{1}{2}}", "{:>{1:}}", "{:>{-1}}", "{:{x}}", "{:**5}", "{:", "{:>{", "{:5", "{:{{<5}"}) {
        expect_refused(format, 1, 2);
    }
}

TEST(Format, RefusesArgumentsThatAreNoNumbersFromZero)
{
    auto const refuses = [](auto const& number) {
        expect_refused("{:{}}", number);
        expect_refused("{:.{}}", number);
    };
    refuses(-1);
    refuses(0x80000000U);
    refuses(1LL << 40);
    refuses(1.5);
    refuses('a');
    refuses(true);
    refuses("1");
    EXPECT_EQ(formatted("{:{}}", green_word, 5U), R"(\e[32mdone\e[39m )");
    EXPECT_EQ(formatted("{:{}}", green_word, 5LL), R"(\e[32mdone\e[39m )");
    EXPECT_EQ(formatted("{:{}.{}}", green_word, 0, 0), "");
}

} // namespace
