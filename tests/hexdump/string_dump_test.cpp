#include "kestry/hueline_classic.hpp"

#include "support/made_up_locale.hpp"
#include "support/modes.hpp"
#include "support/allocations.hpp"
#include "support/dumps.hpp"
#include "support/formula.hpp"
#include "support/grouping.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace std::string_literals;
using kestry::HexDump;
using kestry::Hueline;
using Words = std::vector<unsigned int>;
using LongDumps = LongDumpsOf<HexDump>;

static_assert(std::is_base_of_v<Hueline, HexDump>);
static_assert(sizeof(HexDump) == sizeof(Hueline));

// Shows the text itself.
class Opened : public HexDump {
public:
    using HexDump::HexDump;
    std::string const& text() const { return _text; }
};

std::string read(HexDump const& dump) { return readable(text_of(dump)); }

std::string long_text_of(Bytes const& bytes, std::string const& separator)
{
    LongDumps const in_full;
    return text_of(HexDump(bytes, separator));
}

std::string const green = "\x1b[32m";

// ---------------------------------------------------------------------------------------------
// Numbers
// ---------------------------------------------------------------------------------------------

TEST(StringDump, OfAByteIsGreen)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(read(HexDump('A')), R"(\e[32m41)");
    EXPECT_EQ(read(HexDump(static_cast<unsigned char>(0x05))), R"(\e[32m05)");
    EXPECT_EQ(read(HexDump(static_cast<char>(0xff))), R"(\e[32mff)");
    EXPECT_EQ(readable(HexDump::raw_data_byte(0x0a)), R"(\e[32m0a)");
    EXPECT_EQ(readable(HexDump::raw_data_byte(0x00)), R"(\e[32m00)");
    for (int value = CHAR_MIN; value <= CHAR_MAX; ++value) {
        auto const b = static_cast<unsigned char>(value);
        EXPECT_EQ(text_of(HexDump(b)), green + two_digits(b));
        EXPECT_EQ(text_of(HexDump(static_cast<char>(value))), green + two_digits(b));
        EXPECT_EQ(HexDump::raw_data_byte(b), green + two_digits(b));
    }
}

TEST(StringDump, OfAByteIsTheDigitsAloneWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        EXPECT_EQ(text_of(HexDump('A')), "41");
        EXPECT_EQ(text_of(HexDump('\x80')), "80");
        EXPECT_EQ(HexDump::raw_data_byte(0x0a), "0a");
        for (int value = CHAR_MIN; value <= CHAR_MAX; ++value) {
            auto const b = static_cast<unsigned char>(value);
            EXPECT_EQ(text_of(HexDump(b)), two_digits(b));
            EXPECT_EQ(text_of(HexDump(static_cast<char>(value))), two_digits(b));
            EXPECT_EQ(HexDump::raw_data_byte(b), two_digits(b));
        }
    }
}

TEST(StringDump, OfAShortHasNoColor)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0))), "0x0000");
        EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0x1f))), "0x001f");
        EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0xbeef))), "0xbeef");
        EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0xffff))), "0xffff");
        EXPECT_EQ(HexDump::raw_data(static_cast<unsigned short>(0x0a)), "0x000a");
    }
    for (unsigned value = 0; value <= USHRT_MAX; ++value) {
        char expected[8];
        std::snprintf(expected, sizeof expected, "0x%04x", value);
        ASSERT_EQ(HexDump::raw_data(static_cast<unsigned short>(value)), expected);
    }
}

TEST(StringDump, OfAWordHasNoColor)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        EXPECT_EQ(text_of(HexDump(0ul)), "00000000");
        EXPECT_EQ(text_of(HexDump(0x1234ul)), "00001234");
        EXPECT_EQ(text_of(HexDump(0xdeadbeeful)), "deadbeef");
        EXPECT_EQ(text_of(HexDump(ULONG_MAX)), ULONG_MAX > 0xffffffff ? "ffffffffffffffff" : "ffffffff");
    }
    for (unsigned bit = 0; bit < std::numeric_limits<unsigned long>::digits; ++bit) {
        for (unsigned long const word : {1ul << bit, (1ul << bit) - 1}) {
            char expected[17];
            std::snprintf(expected, sizeof expected, "%08lx", word);
            EXPECT_EQ(text_of(HexDump(word)), expected);
        }
    }
}

TEST(StringDump, OfWordsHasNoColorAndIsNeverCut)
{
    Words many;
    std::string expected;
    for (unsigned int i = 0; i < 100; ++i) {
        many.push_back(i * 0x01020305);
        char cell[10];
        std::snprintf(cell, sizeof cell, "%08x ", many.back());
        expected += cell;
    }
    for (Mode const m : every_mode) {
        InMode const mode(m);
        EXPECT_EQ(text_of(HexDump(Words{})), "");
        EXPECT_EQ(text_of(HexDump(Words{0})), "00000000 ");
        EXPECT_EQ(text_of(HexDump(Words{1, 0xabcdef})), "00000001 00abcdef ");
        EXPECT_EQ(text_of(HexDump(Words{UINT_MAX, 0x12345678})), "ffffffff 12345678 ");
        EXPECT_EQ(text_of(HexDump(many)), expected);
    }
}

// ---------------------------------------------------------------------------------------------
// Bytes
// ---------------------------------------------------------------------------------------------

TEST(StringDump, OfBytesHasAColorBeforeEachAndOneReset)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(read(HexDump(Bytes{0x01, 0xff})), R"(\e[32m01 \e[32mff \e[0m)");
    EXPECT_EQ(read(HexDump(Bytes{0x01, 0xff}, ":")), R"(\e[32m01:\e[32mff:\e[0m)");
    EXPECT_EQ(read(HexDump(Bytes{0x01, 0xff}, "")), R"(\e[32m01\e[32mff\e[0m)");
    EXPECT_EQ(read(HexDump(Bytes{0x01}, ", and ")), R"(\e[32m01, and \e[0m)");
    EXPECT_EQ(read(HexDump(Bytes{0x01, 0x02}, "\x1b[1m\0|"s)), R"(\e[32m01\e[1m\x00|\e[32m02\e[1m\x00|\e[0m)");
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0x02}, std::string(1000, '-'))),
              green + "01" + std::string(1000, '-') + green + "02" + std::string(1000, '-') + "\x1b[0m");
}

TEST(StringDump, OfBytesIsPlainWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0xff})), "01 ff ");
        EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0xff}, ":")), "01:ff:");
        EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0xff}, "")), "01ff");
        EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0x02}, "\x1b[1m\0|"s)), "01\x1b[1m\0|02\x1b[1m\0|"s);
    }
}

TEST(StringDump, OfNothingIsEmpty)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        EXPECT_EQ(text_of(HexDump(Bytes{})), "");
        EXPECT_EQ(text_of(HexDump(Bytes{}, "::")), "");
        EXPECT_EQ(text_of(HexDump(""s)), "");
        LongDumps const in_full;
        EXPECT_EQ(text_of(HexDump(Bytes{})), "");
        EXPECT_EQ(text_of(HexDump(Bytes{}, "::")), "");
        EXPECT_EQ(text_of(HexDump(""s)), "");
    }
}

TEST(StringDump, IsCutAfter19Bytes)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(read(HexDump(counted(1))), R"(\e[32m00 \e[0m)");
    EXPECT_EQ(read(HexDump(counted(18))),
              R"(\e[32m00 \e[32m01 \e[32m02 \e[32m03 \e[32m04 \e[32m05 \e[32m06 \e[32m07 \e[32m08 \e[32m09 )"
              R"(\e[32m0a \e[32m0b \e[32m0c \e[32m0d \e[32m0e \e[32m0f \e[32m10 \e[32m11 \e[0m)");
    EXPECT_EQ(read(HexDump(counted(19))),
              R"(\e[32m00 \e[32m01 \e[32m02 \e[32m03 \e[32m04 \e[32m05 \e[32m06 \e[32m07 \e[32m08 \e[32m09 )"
              R"(\e[32m0a \e[32m0b \e[32m0c \e[32m0d \e[32m0e \e[32m0f \e[32m10 \e[32m11 \e[32m12 \e[0m)");
    EXPECT_EQ(read(HexDump(counted(20))),
              R"(\e[32m00 \e[32m01 \e[32m02 \e[32m03 \e[32m04 \e[32m05 \e[32m06 \e[32m07 \e[32m08 \e[32m09 )"
              R"(\e[32m0a \e[32m0b \e[32m0c \e[32m0d \e[32m0e \e[32m0f \e[32m10 \e[32m11 \e[32m12 )"
              R"( ... \e[33m(\e[36m20 bytes\e[33m) \e[0m)");
    EXPECT_EQ(read(HexDump(Bytes(300, 0xaa), "")),
              R"(\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa)"
              R"(\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa)"
              R"( ... \e[33m(\e[36m300 bytes\e[33m) \e[0m)");
}

TEST(StringDump, IsCutAfter19BytesWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        EXPECT_EQ(text_of(HexDump(counted(1))), "00 ");
        EXPECT_EQ(text_of(HexDump(counted(18))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 ");
        EXPECT_EQ(text_of(HexDump(counted(19))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 ");
        EXPECT_EQ(text_of(HexDump(counted(20))),
                  "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12  ... (20 bytes) ");
        EXPECT_EQ(text_of(HexDump(counted(21))),
                  "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12  ... (21 bytes) ");
        EXPECT_EQ(text_of(HexDump(Bytes(300, 0xaa), "-")),
                  "aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa- ... (300 bytes) ");
    }
}

TEST(StringDump, IsWholeWhileLongDumpsIsSet)
{
    LongDumps const in_full;
    EXPECT_TRUE(HexDump::isLongDumps());
    {
        InMode const mode(Mode::on);
        EXPECT_EQ(read(HexDump(counted(20))),
                  R"(\e[32m00 \e[32m01 \e[32m02 \e[32m03 \e[32m04 \e[32m05 \e[32m06 \e[32m07 \e[32m08 \e[32m09 )"
                  R"(\e[32m0a \e[32m0b \e[32m0c \e[32m0d \e[32m0e \e[32m0f \e[32m10 \e[32m11 \e[32m12 \e[32m13 \e[0m)");
        EXPECT_EQ(read(HexDump(Bytes{7})), R"(\e[32m07 \e[0m)");
    }
    EXPECT_EQ(text_of(HexDump(counted(19))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 ");
    EXPECT_EQ(text_of(HexDump(counted(20))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 ");
    EXPECT_EQ(text_of(HexDump(counted(21))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 ");
}

TEST(StringDump, CountsAllBytesInPlainDecimal)
{
    for (std::size_t const size : {20u, 99u, 100u, 999u, 1000u, 9999u, 10000u, 1234567u}) {
        std::string const bytes = std::to_string(size) + " bytes";
        EXPECT_EQ(text_of(HexDump(Bytes(size, 0), ",")),
                  "00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00, ... (" + bytes + ") ");
        InMode const mode(Mode::on);
        std::string const colored = text_of(HexDump(Bytes(size, 0), ","));
        EXPECT_EQ(readable(colored.substr(19 * 8)), R"( ... \e[33m(\e[36m)" + bytes + R"(\e[33m) \e[0m)");
    }
}

TEST(StringDump, HasEveryByteValue)
{
    EXPECT_EQ(long_text_of(counted(256), " "), cells(counted(256), "", " "));
    InMode const mode(Mode::on);
    EXPECT_TRUE(long_text_of(counted(256), " ") == cells(counted(256), green, " ") + "\x1b[0m");
}

void expect_the_formula(bool colored, std::size_t width, std::vector<std::size_t> const& sizes)
{
    std::string const before = colored ? green : "";
    std::string const yellow = colored ? "\x1b[33m" : "";
    std::string const cyan = colored ? "\x1b[36m" : "";
    std::string const separator = separator_of(width);
    for (std::size_t const size : sizes) {
        SCOPED_TRACE(testing::Message() << width << " wide, " << size << " bytes");
        Bytes const bytes = mixed(size);
        std::string const end = colored && size > 0 ? "\x1b[0m" : "";
        std::string const more =
            size > 19 ? " ... " + yellow + "(" + cyan + std::to_string(size) + " bytes" + yellow + ") " : "";
        EXPECT_TRUE(long_text_of(bytes, separator) == cells(bytes, before, separator) + end);
        EXPECT_EQ(read(HexDump(bytes, separator)),
                  readable(cells(bytes, std::min<std::size_t>(size, 19), before, separator) + more + end));
    }
}

TEST(StringDump, IsTheFormulaForEverySeparatorWidthAndSize)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        for (std::size_t width = 0; width <= 18; ++width) {
            expect_the_formula(m == Mode::on, width, small_sizes());
        }
        for (std::size_t const width : {0u, 1u, 2u, 9u, 10u}) {
            expect_the_formula(m == Mode::on, width, large_sizes());
        }
    }
    EXPECT_EQ(allocations.overruns, 0u);
}

TEST(StringDump, HasAnyByteAsSeparator)
{
    Bytes const bytes = mixed(100);
    for (int value = 0; value < 256; ++value) {
        std::string const separator(1, static_cast<char>(value));
        EXPECT_EQ(long_text_of(bytes, separator), cells(bytes, "", separator));
        InMode const mode(Mode::on);
        EXPECT_EQ(long_text_of(bytes, separator), cells(bytes, green, separator) + "\x1b[0m");
    }
}

TEST(StringDump, OfAStringIsThatOfItsBytes)
{
    EXPECT_EQ(text_of(HexDump("AB"s)), "41 42 ");
    EXPECT_EQ(text_of(HexDump("\0\x80\xff"s)), "00 80 ff ");
    EXPECT_EQ(text_of(HexDump("nineteen characters"s)), "6e 69 6e 65 74 65 65 6e 20 63 68 61 72 61 63 74 65 72 73 ");
    EXPECT_EQ(text_of(HexDump("twenty characters..."s)),
              "74 77 65 6e 74 79 20 63 68 61 72 61 63 74 65 72 73 2e 2e  ... (20 bytes) ");
    InMode const mode(Mode::on);
    EXPECT_EQ(read(HexDump("AB"s)), R"(\e[32m41 \e[32m42 \e[0m)");
    EXPECT_EQ(read(HexDump("\0"s)), R"(\e[32m00 \e[0m)");
    LongDumps const in_full;
    Bytes const bytes = counted(256);
    EXPECT_TRUE(text_of(HexDump(std::string(bytes.begin(), bytes.end()))) == cells(bytes, green, " ") + "\x1b[0m");
}

TEST(StringDump, RawDataOfBytesHasNoWhiteSpaceAtItsEndWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        EXPECT_EQ(HexDump::raw_data(Bytes{}), "nil");
        EXPECT_EQ(HexDump::raw_data(Bytes{0x0a}), "0a");
        EXPECT_EQ(HexDump::raw_data(Bytes{0x20, 0x20}), "20 20");
        EXPECT_EQ(HexDump::raw_data(counted(19)), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12");
        EXPECT_EQ(HexDump::raw_data(counted(20)),
                  "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12  ... (20 bytes)");
        LongDumps const in_full;
        EXPECT_EQ(HexDump::raw_data(Bytes{}), "nil");
        EXPECT_EQ(HexDump::raw_data(counted(20)), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13");
    }
}

TEST(StringDump, RawDataOfBytesEndsInTheResetWithColor)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(HexDump::raw_data(Bytes{}), "nil");
    EXPECT_EQ(readable(HexDump::raw_data(Bytes{0x0a})), R"(\e[32m0a \e[0m)");
    std::string const cut = HexDump::raw_data(counted(20));
    EXPECT_EQ(readable(cut.substr(18 * 8)), R"(\e[32m12  ... \e[33m(\e[36m20 bytes\e[33m) \e[0m)");
    LongDumps const in_full;
    std::string const whole = HexDump::raw_data(counted(20));
    EXPECT_EQ(readable(whole.substr(18 * 8)), R"(\e[32m12 \e[32m13 \e[0m)");
}

TEST(StringDump, HasPlainDigitsWhateverTheGlobalLocale)
{
    GroupedDigits const grouped;
    EXPECT_EQ(text_of(HexDump('A')), "41");
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0x1234))), "0x1234");
    EXPECT_EQ(text_of(HexDump(0x12345678ul)), "12345678");
    EXPECT_EQ(text_of(HexDump(Words{0x12345678})), "12345678 ");
    EXPECT_EQ(text_of(HexDump(Bytes(1234, 0xab), "")), "ababababababababababababababababababab ... (1234 bytes) ");
    EXPECT_EQ(HexDump::raw_data(Bytes(1234, 0)),
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  ... (1234 bytes)");
    InMode const mode(Mode::on);
    EXPECT_EQ(read(HexDump(Bytes{0xab}, "")), R"(\e[32mab\e[0m)");
}

// ---------------------------------------------------------------------------------------------
// State
// ---------------------------------------------------------------------------------------------

TEST(StringDump, ReadsLongDumpsWhenItIsConstructed)
{
    HexDump const cut(counted(20), ".");
    HexDump const whole = [] {
        LongDumps const in_full;
        return HexDump(counted(20), ".");
    }();
    EXPECT_FALSE(HexDump::isLongDumps());
    EXPECT_EQ(text_of(whole), "00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f.10.11.12.13.");
    LongDumps const in_full;
    EXPECT_TRUE(HexDump::isLongDumps());
    EXPECT_EQ(text_of(cut), "00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f.10.11.12. ... (20 bytes) ");
}

TEST(StringDump, IsCutAndPlainAtLoad)
{
    auto const run = on_pipe([] {
        report(HexDump::_longDumps || HexDump::isLongDumps() ? "whole " : "cut ");
        report(HexDump::raw_data(Bytes(20, 0x5a)));
    });
    EXPECT_EQ(run.report, "cut 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a  ... (20 bytes)");
}

TEST(StringDump, KeepsTheColorsItWasConstructedWith)
{
    auto plain = std::make_unique<HexDump>(Bytes{0x01});
    InMode const mode(Mode::on);
    auto colored = std::make_unique<HexDump>(Bytes{0x01});
    EXPECT_EQ(read(*plain), "01 ");
    Hueline::setNoFrillsMode(true);
    EXPECT_EQ(read(*colored), R"(\e[32m01 \e[0m)");
}

TEST(StringDump, PutsTheColorSwitchBackWhenItIsDestroyed)
{
    InMode const mode(Mode::off);
    {
        HexDump dump('A');
        dump.useColor(true);
        EXPECT_TRUE(Hueline::isUsingColor());
    }
    EXPECT_FALSE(Hueline::isUsingColor());

    Hueline().useColor(true); // undone at once
    EXPECT_FALSE(Hueline::isUsingColor());

    Hueline keeper;
    keeper.useColor(true);
    std::unique_ptr<Hueline> dump = std::make_unique<HexDump>(Bytes{1});
    keeper.useColor(false);
    dump.reset();
    EXPECT_TRUE(Hueline::isUsingColor());
}

// Each constructor makes one, and some make others within.
TEST(StringDump, LeavesTheSwitchesAsTheyWere)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        text_of(HexDump('A'));
        text_of(HexDump(static_cast<unsigned char>(1)));
        text_of(HexDump(static_cast<unsigned short>(1)));
        text_of(HexDump(1ul));
        text_of(HexDump(Words{1, 2}));
        text_of(HexDump(counted(20)));
        text_of(HexDump(counted(20), ":"));
        text_of(HexDump("text"s));
        HexDump::raw_data_byte(1);
        HexDump::raw_data(static_cast<unsigned short>(1));
        HexDump::raw_data(Bytes{});
        HexDump::raw_data(counted(20));
        EXPECT_EQ(Hueline::isUsingColor(), m == Mode::on);
        EXPECT_EQ(Hueline::getNoFrillsMode(), m == Mode::no_frills);
        Hueline::setNoFrillsMode(false);
        EXPECT_EQ(Hueline::isUsingColor(), m != Mode::off);
    }
}

// The switch as each constructor finds it, whatever temporaries it needs.
TEST(StringDump, RemembersTheColorSwitchInEveryConstructor)
{
    InMode const mode(Mode::off);
    Hueline keeper;
    auto const remembers = [&](auto const&... made_of) {
        for (bool const color : {false, true}) {
            keeper.useColor(color);
            auto dump = std::make_unique<HexDump>(made_of...);
            EXPECT_EQ(Hueline::isUsingColor(), color);
            keeper.useColor(!color);
            dump.reset();
            EXPECT_EQ(Hueline::isUsingColor(), color);
        }
    };
    remembers('A');
    remembers(static_cast<unsigned char>(1));
    remembers(static_cast<unsigned short>(1));
    remembers(1ul);
    remembers(Words{1});
    remembers(Bytes{1});
    remembers(Bytes{1}, ":"s);
    remembers("A"s);
}

TEST(StringDump, IsAColorizerObject)
{
    InMode const mode(Mode::off);
    HexDump dump('A');
    EXPECT_THROW(dump.unflipColor(), char const*);
    dump.flipColor();
    EXPECT_EQ(readable(HexDump::raw_data_byte(1)), R"(\e[32m01)");
    dump.unflipColor();
    EXPECT_EQ(readable(HexDump::raw_data_byte(1)), "01");
}

TEST(StringDump, IsCopiedWithItsText)
{
    HexDump const dump(Bytes{0x01, 0x02}, ":");
    HexDump const copy = dump;
    HexDump assigned('x');
    assigned = dump;
    Hueline const base = dump;
    EXPECT_EQ(text_of(copy), "01:02:");
    EXPECT_EQ(text_of(assigned), "01:02:");
    std::ostringstream os;
    os << base;
    EXPECT_EQ(os.str(), "01:02:");
}

TEST(StringDump, IsPaddedAsATextIs)
{
    std::ostringstream os;
    os << std::setfill('.') << std::setw(8) << HexDump(static_cast<unsigned short>(0x1f)) << '|' << std::left
       << std::setw(4) << HexDump('A') << HexDump('B');
    EXPECT_EQ(os.str(), "..0x001f|41..42");
}

TEST(StringDump, IsTheSameWhateverTheStreamsFormat)
{
    std::ostringstream os;
    os.imbue(grouping_locale());
    os << std::uppercase << std::showbase << HexDump('\xab') << HexDump(0xabcdeful) << HexDump(Bytes(1000, 0xab), "");
    EXPECT_EQ(os.str(), "ab00abcdefababababababababababababababababababab ... (1000 bytes) ");
}

// ---------------------------------------------------------------------------------------------
// Memory
// ---------------------------------------------------------------------------------------------

TEST(StringDumpMemory, IsOneAllocationOfTheTextsSize)
{
    LongDumps const in_full;
    Bytes const bytes = mixed(10'000);
    std::string const string(bytes.begin(), bytes.end());
    Words const words(10'000, 0x12345678);
    std::string const wide = separator_of(30);
    std::string text;

    auto const once = [](std::size_t size, auto construct) {
        Allocations const made = allocations_of(construct);
        EXPECT_EQ(made.count, 1u);
        EXPECT_EQ(made.bytes, size + 1);
    };
    for (Mode const m : every_mode) {
        InMode const mode(m);
        std::size_t const color = m == Mode::on ? 5 : 0;
        std::size_t const reset = m == Mode::on ? 4 : 0;
        once((3 + color) * 10'000 + reset, [&] { HexDump const dump(bytes); });
        once((32 + color) * 10'000 + reset, [&] { HexDump const dump(bytes, wide); });
        once((3 + color) * 10'000 + reset, [&] { HexDump const dump(string); });
        once(90'000, [&] { HexDump const dump(words); });
        once((3 + color) * 10'000 + reset, [&] { text = HexDump::raw_data(bytes); });
    }
}

TEST(StringDumpMemory, IsNoneForANumber)
{
    InMode const mode(Mode::on);
    Allocations const made = allocations_of([] {
        HexDump const byte('A');
        HexDump const small(static_cast<unsigned short>(7));
        HexDump const word(7ul);
    });
    EXPECT_EQ(made.count, 0u);
}

TEST(StringDumpMemory, RunningOutIsBadAllocAndLeavesTheSwitchesAsTheyWere)
{
    Bytes const bytes = mixed(19);
    std::string const string(19, 'x');
    Words const words(19, 1);
    std::string const separator = ", ";
    for (Mode const m : every_mode) {
        InMode const mode(m);
        EXPECT_TRUE(runs_out_of_memory([&] { HexDump const dump(bytes); }));
        EXPECT_TRUE(runs_out_of_memory([&] { HexDump const dump(bytes, separator); }));
        EXPECT_TRUE(runs_out_of_memory([&] { HexDump const dump(string); }));
        EXPECT_TRUE(runs_out_of_memory([&] { HexDump const dump(words); }));
        EXPECT_TRUE(runs_out_of_memory([&] { HexDump::raw_data(bytes); }));
        EXPECT_EQ(Hueline::isUsingColor(), m == Mode::on);
        EXPECT_EQ(Hueline::getNoFrillsMode(), m == Mode::no_frills);
        Hueline::setNoFrillsMode(false);
        EXPECT_EQ(Hueline::isUsingColor(), m != Mode::off);
    }
}

TEST(StringDumpMemory, HoldsALargeDump)
{
    LongDumps const in_full;
    {
        LargeDump const large(256, "", " "); // 16 MiB and a little
        EXPECT_TRUE(large.is(Opened(large.input()).text()));
    }
    InMode const mode(Mode::on);
    LargeDump const large(64, green, " ");
    EXPECT_TRUE(large.is(Opened(large.input()).text(), "\x1b[0m"));
}

// ---------------------------------------------------------------------------------------------
// Trimming
// ---------------------------------------------------------------------------------------------

TEST(Rtrim, CutsWhiteSpaceAtTheEnd)
{
    EXPECT_EQ(rtrim("ab \t\n"), "ab");
    EXPECT_EQ(rtrim("   "), "");
    EXPECT_EQ(rtrim("a b"), "a b");
    EXPECT_EQ(rtrim(""), "");
    EXPECT_EQ(rtrim(" \t a b"), " \t a b");
    EXPECT_EQ(rtrim("a "), "a");
    EXPECT_EQ(rtrim(" a"), " a");
    EXPECT_EQ(rtrim(std::string(100, ' ') + "x" + std::string(100, '\n')), std::string(100, ' ') + "x");
}

TEST(Rtrim, TakesSixBytesAsWhiteSpaceInTheDefaultLocale)
{
    std::string cut;
    for (int value = 0; value < 256; ++value) {
        std::string const ending(1, static_cast<char>(value));
        std::string const trimmed = rtrim("a" + ending);
        if (trimmed == "a") {
            cut += ending;
        } else {
            EXPECT_EQ(trimmed, "a" + ending);
        }
    }
    EXPECT_EQ(readable(cut), R"(\t\n\x0b\x0c\r )");
}

TEST(Rtrim, KeepsNulBytes)
{
    EXPECT_EQ(rtrim("a\0 "s), "a\0"s);
    EXPECT_EQ(rtrim(" \0b\t"s), " \0b"s);
    EXPECT_EQ(rtrim("\0"s), "\0"s);
}

TEST(Rtrim, LeavesItsArgument)
{
    std::string const given = "ab \n";
    EXPECT_EQ(rtrim(given), "ab");
    EXPECT_EQ(given, "ab \n");
}

TEST(Rtrim, FollowsTheLocaleOfTheProcess)
{
    EXPECT_EQ(rtrim("a \xa0"), "a \xa0");
    MadeUpLocale const locale({.space = "<U00A0>;<U00FF>"});
    EXPECT_EQ(rtrim("a \xa0\xff"), "a");
    EXPECT_EQ(rtrim("a \xa1 "), "a \xa1");
    EXPECT_EQ(rtrim("\xff"), "");
}

TEST(Rtrim, RunningOutOfMemoryIsBadAlloc)
{
    std::string const given = std::string(1000, 'x') + ' ';
    EXPECT_TRUE(runs_out_of_memory([&] { rtrim(given); }));
}

} // namespace
