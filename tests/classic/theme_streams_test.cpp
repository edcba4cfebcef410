#include "kestry/hueline_stream.hpp"

#include "support/grouping.hpp"
#include "support/screen.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace std::string_literals;
using namespace kestry::Hueline::ColorTheme;
using namespace kestry::Hueline::DataTheme;
using kestry::Hueline::adjust;
using kestry::Hueline::colorize;
using kestry::Hueline::HexDump;

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

TEST(ThemeStream, ShowsItsColorOnTheScreen)
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
TEST(ThemeStreamWidth, PadsTheContentWithoutColor)
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

TEST(ThemeStreamWidth, PadsTheFirstSequenceWithColor)
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
