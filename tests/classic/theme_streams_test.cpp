#include "kestry/hueline_stream.hpp"

#include "support/grouping.hpp"
#include "support/process.hpp"
#include "support/readable.hpp"
#include "support/screen.hpp"

#include <cstdint>
#include <functional>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

namespace {

using namespace hueline::test;
using namespace std::string_literals;
using namespace kestry::Hueline::ColorTheme;
using namespace kestry::Hueline::DataTheme;
using kestry::Hueline::adjust;
using kestry::Hueline::colorize;
using kestry::Hueline::HexDump;

// ---------------------------------------------------------------------------------------------
// Every theme
// ---------------------------------------------------------------------------------------------

using Insertion = std::function<std::ostream&(std::ostream&)>;

template <class Theme>
Insertion put(Theme theme)
{
    return [theme](std::ostream& os) -> std::ostream& { return os << theme; };
}

// A theme, what it writes, and what adjust writes after it. "Styled" is a record that has neither
// bold nor dark, but underline and a blue background.
struct Themed {
    char const* role;
    Insertion insert;
    char const* plain;
    char const* at_load;
    char const* record_at_load;
    char const* styled;
    char const* record_styled;
    char const* record_refused; // styled as well, but the theme went to a stream without colour
};

// clang-format off
Themed const every_theme[] = {
    {"app_title", put(app_title("text")), "text",
     R"(\e[00m\e[1m\e[32mtext)", R"(\e[00m\e[1m\e[32m)",
     R"(\e[00m\e[4m\e[32m\e[44mtext)", R"(\e[00m\e[4m\e[32m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"alert", put(alert("text")), "text",
     R"(\e[00m\e[1m\e[31m\e[00m\e[1m\e[31mtext\e[00m\e[1m\e[2m\e[31m)", R"(\e[00m\e[1m\e[2m\e[31m)",
     R"(\e[00m\e[4m\e[31m\e[44m\e[00m\e[1m\e[4m\e[31m\e[44mtext\e[00m\e[1m\e[2m\e[4m\e[31m\e[44m)",
     R"(\e[00m\e[1m\e[2m\e[4m\e[31m\e[44m)",
     R"(\e[00m\e[1m\e[2m\e[4m\e[44m)"},
    {"info", put(info("text")), "text",
     R"(\e[00m\e[1m\e[33mtext)", R"(\e[00m\e[1m\e[33m)",
     R"(\e[00m\e[4m\e[33m\e[44mtext)", R"(\e[00m\e[4m\e[33m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"default_text", put(default_text("text")), "text",
     R"(\e[00m\e[1m\e[36mtext)", R"(\e[00m\e[1m\e[36m)",
     R"(\e[00m\e[4m\e[36m\e[44mtext)", R"(\e[00m\e[4m\e[36m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"seperator", put(seperator("text")), "text",
     R"(\e[00m\e[1m\e[37mtext)", R"(\e[00m\e[1m\e[37m)",
     R"(\e[00m\e[4m\e[37m\e[44mtext)", R"(\e[00m\e[4m\e[37m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"help", put(help("text")), "text",
     R"(\e[00m\e[1m\e[34mtext)", R"(\e[00m\e[1m\e[34m)",
     R"(\e[00m\e[4m\e[34m\e[44mtext)", R"(\e[00m\e[4m\e[34m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"prompt", put(prompt("text")), "text",
     R"(\e[00m\e[1m\e[35mtext)", R"(\e[00m\e[1m\e[35m)",
     R"(\e[00m\e[4m\e[35m\e[44mtext)", R"(\e[00m\e[4m\e[35m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"version", put(version("text")), "text",
     R"(\e[00m\e[1m\e[37mtext)", R"(\e[00m\e[1m\e[37m)",
     R"(\e[00m\e[4m\e[37m\e[44mtext)", R"(\e[00m\e[4m\e[37m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"cursor", put(cursor("text")), "text",
     R"(\e[00m\e[1m\e[36m\e[00m\e[1m\e[36mtext\e[00m\e[1m\e[2m\e[36m)", R"(\e[00m\e[1m\e[2m\e[36m)",
     R"(\e[00m\e[4m\e[36m\e[44m\e[00m\e[1m\e[4m\e[36m\e[44mtext\e[00m\e[1m\e[2m\e[4m\e[36m\e[44m)",
     R"(\e[00m\e[1m\e[2m\e[4m\e[36m\e[44m)",
     R"(\e[00m\e[1m\e[2m\e[4m\e[44m)"},
    {"commandLine", put(commandLine("text")), "text",
     R"(\e[00m\e[1m\e[37mtext\e[00m\e[25h)", R"(\e[00m\e[1m)",
     R"(\e[00m\e[4m\e[37m\e[44mtext\e[00m\e[25h)", R"(\e[00m\e[1m)",
     R"(\e[00m\e[1m)"},
    {"path", put(path("text"s)), "text",
     R"(\e[00m\e[1m\e[36mtext)", R"(\e[00m\e[1m\e[36m)",
     R"(\e[00m\e[4m\e[36m\e[44mtext)", R"(\e[00m\e[4m\e[36m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"path of a number", put(path(std::uint32_t{42})), "42",
     R"(\e[00m\e[1m\e[36m42)", R"(\e[00m\e[1m\e[36m)",
     R"(\e[00m\e[4m\e[36m\e[44m42)", R"(\e[00m\e[4m\e[36m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"name", put(name("text")), "text",
     R"(\e[00m\e[1m\e[37m\e[00m\e[1m\e[37mtext\e[00m\e[1m\e[2m\e[37m)", R"(\e[00m\e[1m\e[2m\e[37m)",
     R"(\e[00m\e[4m\e[37m\e[44m\e[00m\e[1m\e[4m\e[37m\e[44mtext\e[00m\e[1m\e[2m\e[4m\e[37m\e[44m)",
     R"(\e[00m\e[1m\e[2m\e[4m\e[37m\e[44m)",
     R"(\e[00m\e[1m\e[2m\e[4m\e[44m)"},
    {"_default_text", put(_default_text), "",
     R"(\e[00m\e[1m\e[32m)", R"(\e[00m\e[1m\e[32m)",
     R"(\e[00m\e[4m\e[32m\e[44m)", R"(\e[00m\e[4m\e[32m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"_help", put(_help), "",
     R"(\e[00m\e[1m\e[33m)", R"(\e[00m\e[1m\e[33m)",
     R"(\e[00m\e[4m\e[33m\e[44m)", R"(\e[00m\e[4m\e[33m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"_commandLine", put(_commandLine), "",
     R"(\e[00m\e[1m\e[36m)", R"(\e[00m\e[1m\e[36m)",
     R"(\e[00m\e[4m\e[36m\e[44m)", R"(\e[00m\e[4m\e[36m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"_status", put(_status), "",
     R"(\e[00m\e[1m\e[35m)", R"(\e[00m\e[1m\e[35m)",
     R"(\e[00m\e[4m\e[35m\e[44m)", R"(\e[00m\e[4m\e[35m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"immediate_destination", put(immediate_destination(0x0a)), "0a",
     R"(\e[00m\e[1m\e[36m0a)", R"(\e[00m\e[1m\e[36m)",
     R"(\e[00m\e[4m\e[36m\e[44m0a)", R"(\e[00m\e[4m\e[36m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"total_count", put(total_count(0xff)), "ff",
     R"(\e[00m\e[1m\e[34mff)", R"(\e[00m\e[1m\e[34m)",
     R"(\e[00m\e[4m\e[34m\e[44mff)", R"(\e[00m\e[4m\e[34m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"crc of 8 bits", put(crc(std::uint8_t{0xc3})), "c3",
     R"(\e[00m\e[1m\e[32mc3)", R"(\e[00m\e[1m\e[32m)",
     R"(\e[00m\e[4m\e[32m\e[44mc3)", R"(\e[00m\e[4m\e[32m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"crc of 16 bits", put(crc(std::uint16_t{0x12ab})), "12 ab ",
     R"(\e[00m\e[1m\e[32m12 ab )", R"(\e[00m\e[1m\e[32m)",
     R"(\e[00m\e[4m\e[32m\e[44m12 ab )", R"(\e[00m\e[4m\e[32m\e[44m)",
     R"(\e[00m\e[4m\e[44m)"},
    {"request_title", put(request_title("text")), "74 65 78 74 ",
     R"(\e[00m\e[1m\e[35m\e[00m\e[1m\e[35m74 65 78 74 )", R"(\e[00m\e[1m\e[35m)",
     R"(\e[00m\e[4m\e[35m\e[44m\e[00m\e[1m\e[4m\e[35m\e[44m74 65 78 74 )",
     R"(\e[00m\e[1m\e[4m\e[35m\e[44m)",
     R"(\e[00m\e[1m\e[4m\e[44m)"},
    {"response_title", put(response_title("text")), "74 65 78 74 ",
     R"(\e[00m\e[1m\e[35m\e[00m\e[1m\e[2m\e[35m74 65 78 74 )", R"(\e[00m\e[1m\e[2m\e[35m)",
     R"(\e[00m\e[4m\e[35m\e[44m\e[00m\e[2m\e[4m\e[35m\e[44m74 65 78 74 )",
     R"(\e[00m\e[2m\e[4m\e[35m\e[44m)",
     R"(\e[00m\e[2m\e[4m\e[44m)"},
};
// clang-format on

// What stands between the n-th mark and the next one.
std::string part(std::string const& text, int n)
{
    std::istringstream is(text);
    std::string found;
    for (int i = 0; i <= n; ++i) {
        found.clear();
        std::getline(is, found, '|');
    }
    return readable(found);
}

void make_styled(std::ostream& os)
{
    using namespace kestry::Hueline;
    os << colorize << thin << underline << on_blue << "|";
}

TEST(ThemeStream, WritesItsManipulatorsAndTheText)
{
    for (Themed const& t : every_theme) {
        for (std::ostream* const os : {&std::cout, &std::cerr, &std::clog}) {
            auto const run = on_terminal([&] { t.insert(*os << colorize) << "|" << adjust << "|"; });
            std::string const written = run.out + run.err;
            EXPECT_EQ(part(written, 0), t.at_load) << t.role;
            EXPECT_EQ(part(written, 1), t.record_at_load) << t.role;
        }
    }
}

TEST(ThemeStream, KeepsToTheRecordOtherwise)
{
    for (Themed const& t : every_theme) {
        auto const run = on_terminal([&] {
            make_styled(std::cout);
            t.insert(std::cout) << "|" << adjust << "|";
        });
        EXPECT_EQ(part(run.out, 1), t.styled) << t.role;
        EXPECT_EQ(part(run.out, 2), t.record_styled) << t.role;
    }
}

TEST(ThemeStream, WritesTheTextAloneToAPipe)
{
    for (Themed const& t : every_theme) {
        auto const run = run_with({.out = Sink::pipe, .err = Sink::terminal}, [&] {
            make_styled(std::cerr);
            t.insert(std::cout << colorize);
            std::cerr << adjust << "|";
        });
        EXPECT_EQ(readable(run.out), t.plain) << t.role;
        EXPECT_EQ(part(run.err, 1), t.record_refused) << t.role;
    }
}

TEST(ThemeStream, WritesTheTextAloneToAStringStream)
{
    for (Themed const& t : every_theme) {
        auto const run = on_terminal([&] {
            make_styled(std::cout);
            std::ostringstream os;
            os << colorize;
            report(&t.insert(os) == &os ? "" : "another stream");
            report(os.str());
            std::cout << adjust << "|";
        });
        EXPECT_EQ(run.report, t.plain) << t.role;
        EXPECT_EQ(part(run.out, 1), t.record_refused) << t.role;
    }
}

TEST(ThemeStream, WritesTheTextAloneWithoutColorize)
{
    for (Themed const& t : every_theme) {
        EXPECT_EQ(readable(on_terminal([&] { t.insert(std::cout); }).out), t.plain) << t.role;
    }
}

TEST(ThemeStream, WritesTheTextAloneInNoFrillsMode)
{
    for (Themed const& t : every_theme) {
        auto const run = on_terminal([&] {
            kestry::Hueline::_setNoFrillsMode(true);
            t.insert(std::cout << colorize);
        });
        EXPECT_EQ(readable(run.out), t.plain) << t.role;
    }
}

// ---------------------------------------------------------------------------------------------
// Texts
// ---------------------------------------------------------------------------------------------

TEST(ThemeStream, WritesAnyText)
{
    auto const text_of = [](auto const& theme) {
        std::ostringstream os;
        os << theme;
        return os.str();
    };
    for (std::string const& text : {""s, "a\0b"s, "\x1b[0m\n\xff"s, std::string(1000, 'x')}) {
        auto const run = on_pipe([&] {
            report(text_of(app_title(text)) + text_of(alert(text)) + text_of(info(text)) + text_of(default_text(text)) +
                   text_of(seperator(text)) + text_of(help(text)) + text_of(prompt(text)) + text_of(version(text)) +
                   text_of(cursor(text)) + text_of(commandLine(text)) + text_of(path(text)) + text_of(name(text)));
        });
        std::string expected;
        for (int i = 0; i < 12; ++i) {
            expected += text;
        }
        EXPECT_EQ(run.report, expected);
    }
}

TEST(ThemeStream, ShowsItsColourOnTheScreen)
{
    auto const run = on_terminal([] { std::cout << colorize << alert("a") << commandLine("c") << "n"; });
    Screen const screen(run.out);
    EXPECT_EQ(screen.text(0), "acn");
    EXPECT_EQ(screen.cell(0, 0).foreground.index, 1);
    EXPECT_TRUE(screen.cell(0, 0).bold);
    EXPECT_EQ(screen.cell(0, 1).foreground.index, 7);
    EXPECT_TRUE(screen.cell(0, 2).foreground.is_default);
    EXPECT_FALSE(screen.cell(0, 2).bold);
}

// ---------------------------------------------------------------------------------------------
// The caller's stream
// ---------------------------------------------------------------------------------------------

// A pending width belongs to the first insertion that is made: the first sequence, or the content
// where there is none.
TEST(ThemeStreamWidth, PadsTheContentWithoutColour)
{
    auto const run = on_pipe([] {
        auto const padded = [](auto const& theme) {
            std::ostringstream os;
            os << std::setfill('.') << std::setw(6) << theme;
            report(os.str() + (os.width() == 0 ? "|" : " width left|"));
        };
        padded(app_title("t"));
        padded(alert("t"));
        padded(commandLine("t"));
        padded(name(""));
        padded(path("t"s));
        padded(path(std::uint32_t{7}));
        padded(total_count(7));
        padded(crc(std::uint8_t{7}));
        padded(crc(std::uint16_t{7}));
        padded(request_title("t"));
    });
    EXPECT_EQ(run.report, ".....t|.....t|.....t|......|.....t|.....7|....07|....07|....00 07 |...74 |");
}

TEST(ThemeStreamWidth, PadsTheFirstSequenceWithColour)
{
    auto const run = on_terminal([] {
        std::cout << colorize << std::setfill('.');
        std::cout << std::setw(7) << app_title("t") << "|";
        std::cout << std::setw(7) << path(std::uint32_t{7}) << "|";
        std::cout << std::left << std::setw(7) << crc(std::uint16_t{7}) << "|";
    });
    EXPECT_EQ(part(run.out, 0), R"(..\e[00m\e[1m\e[32mt)");
    EXPECT_EQ(part(run.out, 1), R"(..\e[00m\e[1m\e[36m7)");
    EXPECT_EQ(part(run.out, 2), R"(\e[00m..\e[1m\e[32m00 07 )");
}

TEST(ThemeStreamPath, OfANumberIsInDecimalAndLeavesTheStreamSo)
{
    auto const run = on_pipe([] {
        using std::ios_base;
        for (auto const base : {ios_base::hex, ios_base::oct, ios_base::dec, ios_base::fmtflags{}}) {
            std::ostringstream os;
            os.setf(base, ios_base::basefield);
            os << path(std::uint32_t{255}) << " " << 255;
            bool const decimal = (os.flags() & ios_base::basefield) == ios_base::dec;
            report(os.str() + (decimal ? " decimal|" : " other|"));
        }
    });
    EXPECT_EQ(run.report, "255 255 decimal|255 255 decimal|255 255 decimal|255 255 decimal|");
}

TEST(ThemeStreamPath, OfANumberLeavesTheOtherFlags)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        os << std::hex << std::uppercase << std::showbase << std::showpos << std::left << std::boolalpha;
        auto const flags = os.flags();
        os << path(std::uint32_t{255});
        report(os.str());
        report(os.flags() == ((flags & ~std::ios_base::hex) | std::ios_base::dec) ? " kept" : " changed");
    });
    EXPECT_EQ(run.report, "255 kept");
}

TEST(ThemeStreamPath, OfATextLeavesTheBase)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        os << std::hex << path("p"s) << 255 << std::oct << path("q"s) << 8;
        report(os.str());
    });
    EXPECT_EQ(run.report, "pffq10");
}

TEST(ThemeStreamPath, HoldsATextOrANumber)
{
    path const text("a/b"s);
    EXPECT_TRUE(text.is_text);
    EXPECT_EQ(text.text, "a/b");
    EXPECT_EQ(text.number, 0u);
    path const number(std::uint32_t{42});
    EXPECT_FALSE(number.is_text);
    EXPECT_EQ(number.text, "");
    EXPECT_EQ(number.number, 42u);
}

TEST(ThemeStreamPath, IsAnyNumber)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        for (std::uint32_t const number : {0u, 9u, 10u, 2147483647u, 2147483648u, 4294967295u}) {
            os << path(number) << " ";
        }
        report(os.str());
    });
    EXPECT_EQ(run.report, "0 9 10 2147483647 2147483648 4294967295 ");
}

TEST(ThemeStreamPath, HasTheGroupsOfTheStreamsLocaleAndNoOthers)
{
    auto const run = on_pipe([] {
        std::ostringstream plain;
        GroupedDigits const grouped;
        std::ostringstream imbued;
        plain << path(std::uint32_t{1234});
        imbued << path(std::uint32_t{1234});
        report(plain.str() + " " + imbued.str());
    });
    EXPECT_EQ(run.report, "1234 1.2.3.4");
}

TEST(ThemeStreamPath, HoldsItsVariant)
{
    path const text("t"s);
    EXPECT_TRUE(text.is_text);
    EXPECT_EQ(text.text, "t");
    path const number(std::uint32_t{7});
    EXPECT_FALSE(number.is_text);
    EXPECT_EQ(number.text, "");
    EXPECT_EQ(number.number, 7u);
}

TEST(ThemeStream, LeavesTheStreamsFormat)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        os << std::hex << std::uppercase << std::showbase << std::setfill('_') << std::left << std::setprecision(3);
        auto const flags = os.flags();
        for (Themed const& t : every_theme) {
            if (t.role != "path of a number"s) {
                t.insert(os);
            }
        }
        report(os.flags() == flags && os.fill() == '_' && os.width() == 0 && os.precision() == 3 ? "kept" : "changed");
    });
    EXPECT_EQ(run.report, "kept");
}

// ---------------------------------------------------------------------------------------------
// Fields of a frame
// ---------------------------------------------------------------------------------------------

TEST(ThemeStreamField, IsDumpedWhateverTheStreamsFormat)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        os.imbue(grouping_locale());
        os << std::uppercase << std::showbase << std::oct;
        os << immediate_destination(0xab) << " " << total_count(0x00) << " ";
        os << crc(std::uint8_t{0xcd}) << " " << crc(std::uint16_t{0xef01});
        os << request_title("\xfe") << response_title("\0"s);
        report(os.str());
    });
    EXPECT_EQ(run.report, "ab 00 cd ef 01 fe 00 ");
}

TEST(ThemeStreamField, OfACrcHasTheHighByteFirst)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        for (unsigned const value : {0x0000u, 0x00ffu, 0xff00u, 0x0100u, 0xffffu, 0x80c0u}) {
            os << crc(static_cast<std::uint16_t>(value)) << "|";
        }
        for (unsigned const value : {0x00u, 0x0fu, 0x80u, 0xffu}) {
            os << crc(static_cast<std::uint8_t>(value)) << "|";
        }
        report(os.str());
    });
    EXPECT_EQ(run.report, "00 00 |00 ff |ff 00 |01 00 |ff ff |80 c0 |00|0f|80|ff|");
}

TEST(ThemeStreamField, OfATitleIsCutAfter19BytesUnlessLongDumpsIsSet)
{
    auto const run = on_pipe([] {
        std::ostringstream os;
        for (bool const whole : {false, true, false}) {
            HexDump::_longDumps = whole;
            os << request_title("nineteen characters") << "|" << response_title("twenty characters...") << "|"
               << request_title("twenty characters...") << "|" << response_title("") << "|";
        }
        report(os.str());
    });
    std::string const nineteen = "6e 69 6e 65 74 65 65 6e 20 63 68 61 72 61 63 74 65 72 73 |";
    std::string const cut = "74 77 65 6e 74 79 20 63 68 61 72 61 63 74 65 72 73 2e 2e  ... (20 bytes) |";
    std::string const whole = "74 77 65 6e 74 79 20 63 68 61 72 61 63 74 65 72 73 2e 2e 2e |";
    EXPECT_EQ(run.report, nineteen + cut + cut + "|" + nineteen + whole + whole + "|" + nineteen + cut + cut + "|");
}

// Dumped when it is inserted, not when it is made.
TEST(ThemeStreamField, OfATitleReadsLongDumpsAtTheInsertion)
{
    auto const run = on_pipe([] {
        request_title const title("twenty characters...");
        HexDump::_longDumps = true;
        std::ostringstream os;
        os << title;
        report(os.str());
    });
    EXPECT_EQ(run.report, "74 77 65 6e 74 79 20 63 68 61 72 61 63 74 65 72 73 2e 2e 2e ");
}

} // namespace
