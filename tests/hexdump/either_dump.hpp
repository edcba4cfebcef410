/// \file
/// What holds for the dumps of both interfaces. Who includes this has said which of them it is about, and in which colours:
///
///     using kestry::Hueline::HexDump;
///     template <class Body> void in_every_look(Body body); // calls body with the Colors of each state of the switches
#pragma once

#include "support/allocations.hpp"
#include "support/dumps.hpp"
#include "support/formula.hpp"
#include "support/grouping.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace std::string_literals;
using Words = std::vector<unsigned int>;
using Short = unsigned short;
using LongDumps = LongDumpsOf<HexDump>;

TEST(Dump, OfANumberIsItsDigitsAndOnlyThatOfAByteHasAColor)
{
    in_every_look([](Colors const& colors) {
        for (int value = CHAR_MIN; value <= UCHAR_MAX; ++value) {
            auto const b = static_cast<unsigned char>(value);
            EXPECT_EQ(text_of(HexDump(static_cast<char>(value))), colors.byte + two_digits(b));
            EXPECT_EQ(text_of(HexDump(b)), colors.byte + two_digits(b));
            EXPECT_EQ(HexDump::raw_data_byte(b), colors.byte + two_digits(b));
        }
        for (unsigned value = 0; value <= USHRT_MAX; ++value) {
            auto const u = static_cast<Short>(value);
            ASSERT_EQ(HexDump::raw_data(u), digits("0x%04lx", value));
            ASSERT_EQ(text_of(HexDump(u)), digits("0x%04lx", value));
        }
        for (unsigned bit = 0; bit < std::numeric_limits<unsigned long>::digits; ++bit) {
            for (unsigned long const word : {1ul << bit, (1ul << bit) - 1, ULONG_MAX >> bit}) {
                EXPECT_EQ(text_of(HexDump(word)), digits("%08lx", word));
            }
        }
    });
}

TEST(Dump, OfWordsHasABlankAfterEachAndIsNeverCut)
{
    EXPECT_EQ(text_of(HexDump(Words{1, 0xabcdef, UINT_MAX})), "00000001 00abcdef ffffffff ");
    in_every_look([](Colors const&) {
        Words words;
        std::string expected;
        for (std::size_t const size : {0u, 1u, 19u, 20u, 1000u}) {
            while (words.size() < size) {
                words.push_back(static_cast<unsigned int>(words.size() * 0x01020305));
                expected += digits("%08lx ", words.back());
            }
            for (bool const whole : {false, true}) {
                LongDumps const in_full(whole);
                EXPECT_EQ(text_of(HexDump(words)), expected);
            }
        }
    });
}

TEST(Dump, WithoutColorIsThisText)
{
    std::string const nineteen = "00 01 02 03 04 05 06 07 08 09 0a 0b 0c 0d 0e 0f 10 11 12 ";
    EXPECT_EQ(text_of(HexDump(Bytes{})), "");
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0xff})), "01 ff ");
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0xff}, ":")), "01:ff:");
    EXPECT_EQ(text_of(HexDump(Bytes{0x01, 0x02}, "\x1b[1m\0|"s)), "01\x1b[1m\0|02\x1b[1m\0|"s);
    EXPECT_EQ(text_of(HexDump("\0\x80\xff"s)), "00 80 ff ");
    EXPECT_EQ(text_of(HexDump(counted(19))), nineteen);
    EXPECT_EQ(text_of(HexDump(counted(20))), nineteen + " ... (20 bytes) ");
    EXPECT_EQ(text_of(HexDump(Bytes(1234567, 0xaa), "")),
              "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa ... (1234567 bytes) ");
    LongDumps const in_full;
    EXPECT_EQ(text_of(HexDump(counted(20))), nineteen + "13 ");
}

TEST(Dump, IsTheFormulaForEverySeparatorWidthAndSize)
{
    in_every_look([](Colors const& colors) {
        auto const expect_the_formula = [&](std::size_t width, std::vector<std::size_t> const& sizes) {
            for (std::size_t const size : sizes) {
                for (bool const whole : {false, true}) {
                    LongDumps const in_full(whole);
                    EXPECT_TRUE(text_of(HexDump(mixed(size), separator_of(width))) ==
                                dump_of(mixed(size), separator_of(width), colors, whole))
                        << width << " wide, " << size << " bytes, " << whole;
                }
            }
        };
        for (std::size_t width = 0; width <= 18; ++width) {
            expect_the_formula(width, small_sizes());
        }
        for (std::size_t const width :
             {0u, 1u, 2u, 9u, 10u, 14u, 15u}) { // both sides of a block, with a colour and without
            expect_the_formula(width, large_sizes());
        }
    });
    EXPECT_EQ(allocations.overruns, 0u);
}

TEST(Dump, OfAStringIsThatOfItsBytesSeparatedByBlanks)
{
    in_every_look([](Colors const& colors) {
        for (std::size_t const size : {0u, 1u, 19u, 20u, 256u}) {
            Bytes const bytes = counted(size);
            for (bool const whole : {false, true}) {
                LongDumps const in_full(whole);
                std::string const expected = dump_of(bytes, " ", colors, whole);
                EXPECT_EQ(text_of(HexDump(bytes)), expected);
                EXPECT_EQ(text_of(HexDump(std::string(bytes.begin(), bytes.end()))), expected);
            }
        }
    });
}

// One byte between the digits may be any, the letters of digits and those with the highest bit too.
TEST(Dump, HasAnyByteAsSeparator)
{
    LongDumps const in_full;
    in_every_look([](Colors const& colors) {
        for (int value = 0; value < 256; ++value) {
            std::string const separator(1, static_cast<char>(value));
            EXPECT_EQ(text_of(HexDump(mixed(100), separator)), dump_of(mixed(100), separator, colors, true));
        }
    });
}

TEST(Dump, KeepsTheTextItWasConstructedWith)
{
    Bytes bytes = counted(20);
    std::string separator = ".";
    HexDump const cut(bytes, separator);
    HexDump const whole = [&] {
        LongDumps const in_full;
        return HexDump(bytes, separator);
    }();
    HexDump assigned('x');
    assigned = cut;
    bytes.assign(20, 0xee);
    separator = "!";
    EXPECT_EQ(text_of(whole), "00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f.10.11.12.13.");
    LongDumps const in_full;
    for (HexDump const& each : {cut, assigned}) {
        EXPECT_EQ(text_of(each), "00.01.02.03.04.05.06.07.08.09.0a.0b.0c.0d.0e.0f.10.11.12. ... (20 bytes) ");
    }
}

TEST(Dump, IsTheSameWhateverTheLocaleAndTheStreamsFormat)
{
    GroupedDigits const grouped;
    std::ostringstream os;
    os << 1234 << ' ' << std::hex << std::uppercase << std::showbase << std::showpos;
    os << HexDump('\xab') << ' ' << HexDump(Short{0xabcd}) << ' ' << HexDump(0xabcdeful) << ' '
       << HexDump(Words{0xfedcba}) << HexDump(Bytes(1234, 0xcd), "");
    EXPECT_EQ(os.str(), "1.2.3.4 ab 0xabcd 00abcdef 00fedcba cdcdcdcdcdcdcdcdcdcdcdcdcdcdcdcdcdcdcd ... (1234 bytes) ");
}

TEST(Dump, IsPaddedAsATextIs)
{
    std::ostringstream os;
    os << std::setfill('.') << std::setw(8) << HexDump(Short{0x1f}) << '|' << std::left << std::setw(4) << HexDump('A')
       << HexDump('B') << '|' << std::setw(3) << HexDump(Bytes{}) << '|' << std::setw(2) << HexDump(Short{0x1f});
    EXPECT_EQ(os.str(), "..0x001f|41..42|...|0x001f");
    EXPECT_EQ(os.width(), 0);
}

TEST(DumpMemory, IsOneAllocationOfTheTextsSize)
{
    std::size_t const size = 10'000;
    LongDumps const in_full;
    Bytes const bytes = mixed(size);
    std::string const string(bytes.begin(), bytes.end());
    Words const words(size, 0x12345678);
    std::string const wide = separator_of(30);
    std::string text;
    auto const expect_one = [](std::size_t expected, auto construct) {
        Allocations const made = allocations_of(construct);
        EXPECT_EQ(made.count, 1u);
        EXPECT_EQ(made.bytes, expected + 1);
    };
    in_every_look([&](Colors const& colors) {
        std::size_t const around = colors.byte.size() + 2;
        std::size_t const end = colors.end.size();
        expect_one((around + 1) * size + end, [&] { HexDump const dump(bytes); });
        expect_one((around + 30) * size + end, [&] { HexDump const dump(bytes, wide); });
        expect_one((around + 1) * size + end, [&] { HexDump const dump(string); });
        expect_one((around + 1) * size + end, [&] { text = HexDump::raw_data(bytes); });
        expect_one(9 * size, [&] { HexDump const dump(words); });
    });
}

TEST(DumpMemory, IsNoneForANumber)
{
    in_every_look([](Colors const&) {
        Allocations const made = allocations_of([] {
            HexDump const byte('A');
            HexDump const small(Short{7});
            HexDump const word(7ul);
        });
        EXPECT_EQ(made.count, 0u);
    });
}

TEST(DumpMemory, HoldsALargeDump)
{
    // Looks at what it receives without keeping it.
    class Comparer : public std::streambuf {
    public:
        Comparer(LargeDump const& with, std::string end_of_it) : dump(with), end(std::move(end_of_it)) {}
        bool right = false;

    private:
        std::streamsize xsputn(char const* text, std::streamsize size) override
        {
            right = dump.is({text, static_cast<std::size_t>(size)}, end);
            return size;
        }
        LargeDump const& dump;
        std::string end;
    };

    LongDumps const in_full;
    in_every_look([](Colors const& colors) {
        for (std::string const& separator : {" "s, ""s}) {
            LargeDump const large(colors.byte.empty() ? 256 : 64, colors.byte, separator); // 16 MiB and a little, or 4
            Comparer comparer(large, colors.end);
            std::ostream(&comparer) << HexDump(large.input(), separator);
            EXPECT_TRUE(comparer.right);
        }
    });
}

} // namespace
