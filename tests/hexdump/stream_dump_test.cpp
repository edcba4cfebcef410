#include "kestry/hueline_stream.hpp"

#include "support/allocations.hpp"
#include "support/dumps.hpp"
#include "support/formula.hpp"
#include "support/grouping.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace std::string_literals;
using kestry::Hueline::HexDump;
using Words = std::vector<unsigned int>;
using LongDumps = LongDumpsOf<HexDump>;

std::string long_text_of(Bytes const& bytes, std::string const& separator)
{
    LongDumps const in_full;
    return text_of(HexDump(bytes, separator));
}

// ---------------------------------------------------------------------------------------------
// Numbers
// ---------------------------------------------------------------------------------------------

TEST(StreamDump, OfAByteIsTwoDigits)
{
    EXPECT_EQ(text_of(HexDump('A')), "41");
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned char>(0x05))), "05");
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned char>(0x00))), "00");
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned char>(0xff))), "ff");
    EXPECT_EQ(HexDump::raw_data_byte(0x0a), "0a");
    for (unsigned value = 0; value < 256; ++value) {
        auto const b = static_cast<unsigned char>(value);
        EXPECT_EQ(text_of(HexDump(b)), two_digits(b));
        EXPECT_EQ(HexDump::raw_data_byte(b), two_digits(b));
    }
}

TEST(StreamDump, TakesACharAsUnsigned)
{
    EXPECT_EQ(text_of(HexDump('\x7f')), "7f");
    EXPECT_EQ(text_of(HexDump('\x80')), "80");
    EXPECT_EQ(text_of(HexDump(static_cast<char>(0xff))), "ff");
    for (int value = CHAR_MIN; value <= CHAR_MAX; ++value) {
        EXPECT_EQ(text_of(HexDump(static_cast<char>(value))), two_digits(static_cast<unsigned char>(value)));
    }
}

TEST(StreamDump, OfAShortIsAPrefixAndFourDigits)
{
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0))), "0x0000");
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0x1f))), "0x001f");
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0xbeef))), "0xbeef");
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0xffff))), "0xffff");
    EXPECT_EQ(HexDump::raw_data(static_cast<unsigned short>(0x0a)), "0x000a");
    for (unsigned value = 0; value <= USHRT_MAX; ++value) {
        char expected[8];
        std::snprintf(expected, sizeof expected, "0x%04x", value);
        ASSERT_EQ(HexDump::raw_data(static_cast<unsigned short>(value)), expected);
    }
}

TEST(StreamDump, OfAWordIsEightDigitsAndMoreWhereNeeded)
{
    EXPECT_EQ(text_of(HexDump(0ul)), "00000000");
    EXPECT_EQ(text_of(HexDump(0x1234ul)), "00001234");
    EXPECT_EQ(text_of(HexDump(0xdeadbeeful)), "deadbeef");
    EXPECT_EQ(text_of(HexDump(ULONG_MAX)), ULONG_MAX > 0xffffffff ? "ffffffffffffffff" : "ffffffff");
    for (unsigned bit = 0; bit < std::numeric_limits<unsigned long>::digits; ++bit) {
        for (unsigned long const word : {1ul << bit, (1ul << bit) - 1}) {
            char expected[17];
            std::snprintf(expected, sizeof expected, "%08lx", word);
            EXPECT_EQ(text_of(HexDump(word)), expected);
        }
    }
}

TEST(StreamDump, OfWordsHasABlankAfterEach)
{
    EXPECT_EQ(text_of(HexDump(Words{})), "");
    EXPECT_EQ(text_of(HexDump(Words{0})), "00000000 ");
    EXPECT_EQ(text_of(HexDump(Words{1, 0xabcdef})), "00000001 00abcdef ");
    EXPECT_EQ(text_of(HexDump(Words{0x12345678, UINT_MAX})), "12345678 ffffffff ");
}

TEST(StreamDump, OfWordsIsNeverCut)
{
    for (std::size_t const size : {19u, 20u, 21u, 1000u}) {
        Words words;
        std::string expected;
        for (std::size_t i = 0; i < size; ++i) {
            words.push_back(static_cast<unsigned int>(i * 0x01020305));
            char cell[10];
            std::snprintf(cell, sizeof cell, "%08x ", words.back());
            expected += cell;
        }
        EXPECT_EQ(text_of(HexDump(words)), expected);
        LongDumps const in_full;
        EXPECT_EQ(text_of(HexDump(words)), expected);
    }
}

// ---------------------------------------------------------------------------------------------
// Bytes
// ---------------------------------------------------------------------------------------------

TEST(StreamDump, OfBytesHasTheSeparatorAfterEach)
{
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0x02, 0xff})), "01 02 ff ");
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0x02, 0xff}, ":")), "01:02:ff:");
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0x02, 0xff}, "")), "0102ff");
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0x02}, ", ")), "01, 02, ");
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0x02}, "\x1b[1m\0|"s)), "01\x1b[1m\0|02\x1b[1m\0|"s);
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0x02}, std::string(1000, '-'))),
              "01" + std::string(1000, '-') + "02" + std::string(1000, '-'));
}

TEST(StreamDump, OfNothingIsEmpty)
{
    EXPECT_EQ(text_of(HexDump(Bytes{})), "");
    EXPECT_EQ(text_of(HexDump(Bytes{}, "::")), "");
    EXPECT_EQ(text_of(HexDump(""s)), "");
    LongDumps const in_full;
    EXPECT_EQ(text_of(HexDump(Bytes{})), "");
    EXPECT_EQ(text_of(HexDump(Bytes{}, "::")), "");
    EXPECT_EQ(text_of(HexDump(""s)), "");
}

TEST(StreamDump, IsCutAfter19Bytes)
{
    EXPECT_EQ(text_of(HexDump(counted(1))), "00 ");
    EXPECT_EQ(text_of(HexDump(counted(18))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 ");
    EXPECT_EQ(text_of(HexDump(counted(19))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 ");
    EXPECT_EQ(text_of(HexDump(counted(20))),
              "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12  ... (20 bytes) ");
    EXPECT_EQ(text_of(HexDump(counted(21))),
              "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12  ... (21 bytes) ");
    EXPECT_EQ(text_of(HexDump(Bytes(300, 0xaa), "-")),
              "aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa-aa- ... (300 bytes) ");
    EXPECT_EQ(text_of(HexDump(Bytes(20, 0), "")), "00000000000000000000000000000000000000 ... (20 bytes) ");
    EXPECT_EQ(readable(text_of(HexDump(Bytes(20, 7), "\0\x1b"s))),
              R"(07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e)"
              R"(07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e07\x00\e ... (20 bytes) )");
}

TEST(StreamDump, IsWholeWhileLongDumpsIsSet)
{
    LongDumps const in_full;
    EXPECT_EQ(text_of(HexDump(counted(1))), "00 ");
    EXPECT_EQ(text_of(HexDump(counted(18))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 ");
    EXPECT_EQ(text_of(HexDump(counted(19))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 ");
    EXPECT_EQ(text_of(HexDump(counted(20))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 ");
    EXPECT_EQ(text_of(HexDump(counted(21))), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 14 ");
    EXPECT_EQ(text_of(HexDump(counted(21), "")), "000102030405060708090a0b0c0d0e0f1011121314");
}

TEST(StreamDump, CountsAllBytesInPlainDecimal)
{
    for (std::size_t const size : {20u, 99u, 100u, 999u, 1000u, 9999u, 10000u, 1234567u}) {
        std::string const bytes = std::to_string(size) + " bytes";
        EXPECT_EQ(text_of(HexDump(Bytes(size, 0), ",")),
                  "00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00,00, ... (" + bytes + ") ");
    }
}

TEST(StreamDump, HasEveryByteValue) { EXPECT_EQ(long_text_of(counted(256), " "), cells(counted(256), "", " ")); }

void expect_the_formula(std::size_t width, std::vector<std::size_t> const& sizes)
{
    std::string const separator = separator_of(width);
    for (std::size_t const size : sizes) {
        SCOPED_TRACE(testing::Message() << width << " wide, " << size << " bytes");
        Bytes const bytes = mixed(size);
        EXPECT_TRUE(long_text_of(bytes, separator) == cells(bytes, "", separator));
        std::string const more = size > 19 ? " ... (" + std::to_string(size) + " bytes) " : "";
        EXPECT_EQ(text_of(HexDump(bytes, separator)),
                  cells(bytes, std::min<std::size_t>(size, 19), "", separator) + more);
    }
}

TEST(StreamDump, IsTheFormulaForEverySeparatorWidthAndSize)
{
    for (std::size_t width = 0; width <= 18; ++width) {
        expect_the_formula(width, small_sizes());
    }
    for (std::size_t const width : {0u, 1u, 2u, 6u, 7u, 14u, 15u}) {
        expect_the_formula(width, large_sizes());
    }
    EXPECT_EQ(allocations.overruns, 0u);
}

// One byte between the digits may be any, the letters of digits and those with the highest bit too.
TEST(StreamDump, HasAnyByteAsSeparator)
{
    Bytes const bytes = mixed(100);
    for (int value = 0; value < 256; ++value) {
        std::string const separator(1, static_cast<char>(value));
        EXPECT_EQ(long_text_of(bytes, separator), cells(bytes, "", separator));
    }
}

TEST(StreamDump, ReadsLongDumpsWhenItIsConstructed)
{
    HexDump const cut(counted(20), ".");
    HexDump const whole = [] {
        LongDumps const in_full;
        return HexDump(counted(20), ".");
    }();
    EXPECT_EQ(text_of(whole), "00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f.10.11.12.13.");
    LongDumps const in_full;
    EXPECT_EQ(text_of(cut), "00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f.10.11.12. ... (20 bytes) ");
}

TEST(StreamDump, IsCutAtLoad)
{
    auto const run = on_pipe([] {
        report(HexDump::_longDumps ? "whole " : "cut ");
        report(HexDump::raw_data(Bytes(20, 0x5a)));
    });
    EXPECT_EQ(run.report, "cut 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a 5a  ... (20 bytes) ");
}

TEST(StreamDump, DoesNotFollowTheBytesItWasMadeOf)
{
    Bytes bytes = {0x01, 0x02};
    std::string separator = ":";
    HexDump const dump(bytes, separator);
    HexDump const copy = dump;
    HexDump assigned('x');
    assigned = dump;
    bytes.assign(2, 0xee);
    separator = "!";
    EXPECT_EQ(text_of(dump), "01:02:");
    EXPECT_EQ(text_of(copy), "01:02:");
    EXPECT_EQ(text_of(assigned), "01:02:");
}

TEST(StreamDump, OfAStringIsThatOfItsBytes)
{
    EXPECT_EQ(text_of(HexDump("AB"s)), "41 42 ");
    EXPECT_EQ(text_of(HexDump("\0a\0"s)), "00 61 00 ");
    EXPECT_EQ(text_of(HexDump("\x7f\x80\xff"s)), "7f 80 ff ");
    EXPECT_EQ(text_of(HexDump("nineteen characters"s)), "6e 69 6e 65 74 65 65 6e 20 63 68 61 72 61 63 74 65 72 73 ");
    EXPECT_EQ(text_of(HexDump("twenty characters..."s)),
              "74 77 65 6e 74 79 20 63 68 61 72 61 63 74 65 72 73 2e 2e  ... (20 bytes) ");
    LongDumps const in_full;
    EXPECT_EQ(text_of(HexDump("twenty characters..."s)),
              "74 77 65 6e 74 79 20 63 68 61 72 61 63 74 65 72 73 2e 2e 2e ");
    Bytes const bytes = counted(256);
    EXPECT_EQ(text_of(HexDump(std::string(bytes.begin(), bytes.end()))), cells(bytes, "", " "));
}

TEST(StreamDump, RawDataOfBytesIsTheDumpOrNil)
{
    EXPECT_EQ(HexDump::raw_data(Bytes{}), "nil");
    EXPECT_EQ(HexDump::raw_data(Bytes{0x0a}), "0a ");
    EXPECT_EQ(HexDump::raw_data(Bytes{0x20}), "20 ");
    EXPECT_EQ(HexDump::raw_data(counted(19)), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 ");
    EXPECT_EQ(HexDump::raw_data(counted(20)),
              "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12  ... (20 bytes) ");
    LongDumps const in_full;
    EXPECT_EQ(HexDump::raw_data(Bytes{}), "nil");
    EXPECT_EQ(HexDump::raw_data(counted(20)), "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 13 ");
}

TEST(StreamDump, HasPlainDigitsWhateverTheGlobalLocale)
{
    GroupedDigits const grouped;
    std::ostringstream checked;
    checked << 1234;
    ASSERT_EQ(checked.str(), "1.2.3.4");

    EXPECT_EQ(text_of(HexDump('A')), "41");
    EXPECT_EQ(text_of(HexDump(static_cast<unsigned short>(0x1234))), "0x1234");
    EXPECT_EQ(text_of(HexDump(0x12345678ul)), "12345678");
    EXPECT_EQ(text_of(HexDump(Words{0x12345678})), "12345678 ");
    EXPECT_EQ(text_of(HexDump(Bytes(1234, 0xab), "")), "ababababababababababababababababababab ... (1234 bytes) ");
    EXPECT_EQ(HexDump::raw_data(Bytes(1234, 0)),
              "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00  ... (1234 bytes) ");
}

// ---------------------------------------------------------------------------------------------
// Insertion
// ---------------------------------------------------------------------------------------------

TEST(StreamDumpInsertion, PadsTheTextAndSpendsTheWidth)
{
    HexDump const dump(static_cast<unsigned short>(0x1f));
    std::ostringstream os;
    os << std::setw(8) << dump << '|' << dump << '|';
    os << std::left << std::setfill('.') << std::setw(8) << dump << dump << '|';
    os << std::internal << std::setw(8) << dump << '|';
    os << std::right << std::setw(8) << dump << '|';
    os << std::setw(6) << dump << '|' << std::setw(5) << dump << '|';
    EXPECT_EQ(os.str(), "  0x001f|0x001f|0x001f..0x001f|..0x001f|..0x001f|0x001f|0x001f|");
    EXPECT_EQ(os.width(), 0);
    EXPECT_EQ(os.fill(), '.');
}

TEST(StreamDumpInsertion, PadsAnEmptyDump)
{
    std::ostringstream os;
    os << std::setfill('_') << std::setw(3) << HexDump(Bytes{}) << '|';
    EXPECT_EQ(os.str(), "___|");
}

TEST(StreamDumpInsertion, WritesTheTextWhateverTheStreamsFormat)
{
    std::ostringstream os;
    os.imbue(grouping_locale());
    os << std::hex << std::uppercase << std::showbase << std::showpos;
    auto const flags = os.flags();
    os << HexDump('\xab') << ' ' << HexDump(static_cast<unsigned short>(0xabcd)) << ' ' << HexDump(0xabcdeful) << ' '
       << HexDump(Words{0xfedcba}) << HexDump(Bytes(25, 0xcd), "");
    EXPECT_EQ(os.str(), "ab 0xabcd 00abcdef 00fedcba cdcdcdcdcdcdcdcdcdcdcdcdcdcdcdcdcdcdcd ... (25 bytes) ");
    EXPECT_EQ(os.flags(), flags);
}

TEST(StreamDumpInsertion, ReturnsTheStream)
{
    std::ostringstream os;
    HexDump const dump('A');
    EXPECT_EQ(&(os << dump), &os);
}

TEST(StreamDumpInsertion, WritesNothingToAFailedStream)
{
    std::ostringstream os;
    os.setstate(std::ios_base::failbit);
    os << HexDump('A');
    EXPECT_EQ(os.str(), "");
    EXPECT_EQ(os.rdstate(), std::ios_base::failbit);
}

TEST(StreamDumpInsertion, HasNoSequenceOnAColoredTerminal)
{
    auto const run = on_terminal([] {
        std::cout << kestry::Hueline::colorize << kestry::Hueline::red << HexDump(counted(20), "") << HexDump("A"s)
                  << HexDump('B') << HexDump(Words{1});
    });
    EXPECT_EQ(readable(run.out),
              R"(\e[00m\e[1m\e[31m000102030405060708090a0b0c0d0e0f101112 ... (20 bytes) 41 4200000001 )");
}

TEST(StreamDumpInsertion, DoesNotAskTheGate)
{
    auto const run = on_terminal([] {
        using namespace kestry::Hueline;
        auto const in_use = [] { report(_isUsingColor() ? "yes " : "no "); };
        std::ostringstream os;
        os << HexDump('A') << myfillandw{'.', 3};
        std::cout << HexDump('A') << myfillandw{'.', 3} << "";
        in_use(); // the gate on std::cout would find a terminal
        std::cout << red;
        in_use();
        os << HexDump('A') << myfillandw{'.', 3};
        in_use(); // and on a string stream would find none
    });
    EXPECT_EQ(run.report, "no yes yes ");
}

TEST(FillAndWidth, AreSetOnTheStreamAndNothingIsWritten)
{
    std::ostringstream os;
    EXPECT_EQ(&(os << myfillandw{'*', 6}), &os);
    EXPECT_EQ(os.str(), "");
    EXPECT_EQ(os.fill(), '*');
    EXPECT_EQ(os.width(), 6);
    os << 42;
    EXPECT_EQ(os.str(), "****42");
    EXPECT_EQ(os.fill(), '*');
    EXPECT_EQ(os.width(), 0);
    os << 42 << std::setw(3) << 7;
    EXPECT_EQ(os.str(), "****4242**7");
}

TEST(FillAndWidth, TakeAnyValue)
{
    std::ostringstream os;
    for (int const width : {0, -1, INT_MIN, INT_MAX}) {
        os << myfillandw{'\0', width};
        EXPECT_EQ(os.width(), width);
        EXPECT_EQ(os.fill(), '\0');
    }
}

TEST(FillAndWidth, AlignADump)
{
    std::ostringstream os;
    os << myfillandw{' ', 10} << HexDump(static_cast<unsigned short>(0x1f)) << '|' << HexDump('A');
    EXPECT_EQ(os.str(), "    0x001f|41");
}

// ---------------------------------------------------------------------------------------------
// Memory
// ---------------------------------------------------------------------------------------------

TEST(StreamDumpMemory, IsOneAllocationOfTheTextsSize)
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
    once(30'000, [&] { HexDump const dump(bytes); });
    once(320'000, [&] { HexDump const dump(bytes, wide); });
    once(30'000, [&] { HexDump const dump(string); });
    once(90'000, [&] { HexDump const dump(words); });
    once(30'000, [&] { text = HexDump::raw_data(bytes); });
}

TEST(StreamDumpMemory, IsNoneForANumber)
{
    Allocations const made = allocations_of([] {
        HexDump const byte('A');
        HexDump const small(static_cast<unsigned short>(7));
        HexDump const word(7ul);
    });
    EXPECT_EQ(made.count, 0u);
}

TEST(StreamDumpMemory, RunningOutIsBadAlloc)
{
    Bytes const bytes = mixed(19);
    std::string const string(19, 'x');
    Words const words(19, 1);
    std::string const separator = ", ";
    EXPECT_TRUE(runs_out_of_memory([&] { HexDump const dump(bytes); }));
    EXPECT_TRUE(runs_out_of_memory([&] { HexDump const dump(bytes, separator); }));
    EXPECT_TRUE(runs_out_of_memory([&] { HexDump const dump(string); }));
    EXPECT_TRUE(runs_out_of_memory([&] { HexDump const dump(words); }));
    EXPECT_TRUE(runs_out_of_memory([&] { HexDump::raw_data(bytes); }));
}

TEST(StreamDumpMemory, HoldsALargeDump)
{
    // Looks at what it receives without keeping it.
    class Comparer : public std::streambuf {
    public:
        explicit Comparer(LargeDump const& with) : dump(with) {}
        bool right = false;

    private:
        std::streamsize xsputn(char const* text, std::streamsize size) override
        {
            right = dump.is({text, static_cast<std::size_t>(size)});
            return size;
        }
        LargeDump const& dump;
    };

    LongDumps const in_full;
    for (std::string const& separator : {" "s, ""s}) {
        LargeDump const large(256, "", separator); // 16 MiB and a little
        Comparer comparer(large);
        std::ostream(&comparer) << HexDump(large.input(), separator);
        EXPECT_TRUE(comparer.right);
    }
}

} // namespace
