#include "hexdump/dump.hpp"

#include "support/allocations.hpp"
#include "hexdump/cells.hpp"
#include "support/formula.hpp"
#include "support/testing.hpp"
#include "hexdump/vector_cells.hpp"

#include <sys/mman.h>

namespace {

using namespace hueline::test;
using namespace kestry::detail;

DumpColors const colors{.byte = "<byte>", .parenthesis = "<parenthesis>", .count = "<count>", .reset = "<reset>"};

std::string whole(Bytes const& bytes, std::string_view separator, DumpColors const& c = plain)
{
    return dump_bytes(bytes, separator, c, Length::whole);
}

std::string cut(Bytes const& bytes, std::string_view separator, DumpColors const& c = plain)
{
    return dump_bytes(bytes, separator, c, Length::cut);
}

TEST(DumpByte, HasTwoDigitsForEachByteValue)
{
    for (unsigned value = 0; value < 256; ++value) {
        auto const b = static_cast<unsigned char>(value);
        EXPECT_EQ(dump_byte(b), two_digits(b));
    }
    EXPECT_EQ(dump_byte(0x00), "00");
    EXPECT_EQ(dump_byte(0x0a), "0a");
    EXPECT_EQ(dump_byte(0xa0), "a0");
    EXPECT_EQ(dump_byte(0xff), "ff");
}

TEST(DumpShort, HasAPrefixAndFourDigits)
{
    EXPECT_EQ(dump_short(0), "0x0000");
    EXPECT_EQ(dump_short(0x1f), "0x001f");
    EXPECT_EQ(dump_short(0xabcd), "0xabcd");
    EXPECT_EQ(dump_short(0xffff), "0xffff");
}

TEST(DumpWord, HasEightDigits)
{
    EXPECT_EQ(dump_word(0), "00000000");
    EXPECT_EQ(dump_word(0x1234), "00001234");
    EXPECT_EQ(dump_word(0xffffffff), "ffffffff");
}

#if ULONG_MAX > 0xffffffff
TEST(DumpWord, HasMoreDigitsWhereNeeded)
{
    EXPECT_EQ(dump_word(0x100000000), "100000000");
    EXPECT_EQ(dump_word(0xfffffffff), "fffffffff");
    EXPECT_EQ(dump_word(0x1000000000), "1000000000");
    EXPECT_EQ(dump_word(0x0fffffffffffffff), "fffffffffffffff");
    EXPECT_EQ(dump_word(0xfedcba9876543210), "fedcba9876543210");
}
#endif

TEST(DumpWords, HasEightDigitsAndABlankForEach)
{
    EXPECT_EQ(dump_words({}), "");
    EXPECT_EQ(dump_words(std::vector<unsigned int>{0, 0xabcdef, UINT_MAX}), "00000000 00abcdef ffffffff ");
}

TEST(DumpBytes, OfNoBytesIsEmpty)
{
    EXPECT_EQ(whole({}, "::", colors), "");
    EXPECT_EQ(cut({}, "::", colors), "");
}

TEST(DumpBytes, HasEachColorAtItsPlace)
{
    EXPECT_EQ(whole({0x01, 0xff}, ":", colors), "<byte>01:<byte>ff:<reset>");
    EXPECT_EQ(cut({0x01, 0xff}, ":", colors), "<byte>01:<byte>ff:<reset>");

    std::string const nineteen =
        "<byte>00:<byte>01:<byte>02:<byte>03:<byte>04:<byte>05:<byte>06:<byte>07:<byte>08:<byte>09:"
        "<byte>0a:<byte>0b:<byte>0c:<byte>0d:<byte>0e:<byte>0f:<byte>10:<byte>11:<byte>12:";
    EXPECT_EQ(cut(counted(19), ":", colors), nineteen + "<reset>");
    EXPECT_EQ(cut(counted(20), ":", colors), nineteen + " ... <parenthesis>(<count>20 bytes<parenthesis>) <reset>");
    EXPECT_EQ(whole(counted(20), ":", colors), nineteen + "<byte>13:<reset>");
}

void expect_the_formula(std::size_t before, std::size_t after, std::vector<std::size_t> const& sizes)
{
    std::string const b = std::string("ABCDEFGHIJKLMNOPQRSTUVWXYZ").substr(0, before);
    std::string const a = separator_of(after);
    DumpColors const c{.byte = b, .parenthesis = "", .count = "", .reset = ""};
    for (std::size_t const size : sizes) {
        SCOPED_TRACE(testing::Message() << before << " before, " << after << " after, " << size << " bytes");
        Bytes const bytes = mixed(size);
        std::string const text = whole(bytes, a, c);
        EXPECT_TRUE(text == cells(bytes, b, a));
        EXPECT_EQ(text.c_str()[text.size()], '\0');
        std::string const more = size > 19 ? " ... (" + std::to_string(size) + " bytes) " : "";
        EXPECT_EQ(cut(bytes, a, c), cells(bytes, std::min<std::size_t>(size, 19), b, a) + more);
    }
}

// Cells are stored in steps of a size that suits the machine: every size on both sides of such a
// step, every place of the digits in it, and every number of cells that fills it or does not.
TEST(DumpBytes, IsTheFormulaForEveryCellAndSize)
{
    for (std::size_t before = 0; before <= 18; ++before) {
        for (std::size_t after = 0; before + after <= 18; ++after) {
            expect_the_formula(before, after, small_sizes());
        }
    }
    for (std::size_t const before : {0u, 5u}) { // no colour, and that of a byte
        for (std::size_t const after : {0u, 1u, 2u}) {
            expect_the_formula(before, after, large_sizes());
        }
    }
    EXPECT_EQ(allocations.overruns, 0u);
}

// Room that does not end with the cells shows what is stored past them.
TEST(Cells, EndAtTheLimit)
{
    std::string const beyond(40, '.');
    for (std::string const before : {"", "\x1b[32m", "before, of 17 c."}) {
        for (std::string const after : {"", " ", "::"}) {
            for (std::size_t size = 0; size <= 300; ++size) {
                Bytes const bytes = mixed(size);
                std::string const expected = cells(bytes, before, after);
                std::string text = std::string(expected.size(), '.') + beyond;
                char* const limit = text.data() + expected.size();
                EXPECT_EQ(put_cells(text.data(), limit, bytes, before, after), limit);
                ASSERT_TRUE(text == expected + beyond) << size << " bytes";
            }
        }
    }
}

bool has_vectors()
{
#if defined(__aarch64__)
    return true;
#elif defined(__x86_64__)
    return __builtin_cpu_supports("avx2") != 0;
#else
    return false;
#endif
}

TEST(VectorCells, AreTheTwoCommonOnesOfABlockOrMoreWhereTheProcessorHasVectors)
{
    auto const could = [](std::size_t size, std::string const& before, std::string const& after) {
        std::string text(size * (before.size() + 2 + after.size()), '.');
        bool const done = put_vector_cells(text.data(), mixed(size), before, after);
        EXPECT_EQ(text, done ? cells(mixed(size), before, after) : std::string(text.size(), '.'));
        return done;
    };
    for (std::size_t const size : {32u, 33u, 63u, 64u, 65u, 1000u}) {
        EXPECT_EQ(could(size, "", " "), has_vectors());
        EXPECT_EQ(could(size, "", "\xff"), has_vectors());
        EXPECT_EQ(could(size, "\x1b[32m", " "), has_vectors());
        EXPECT_EQ(could(size, "12345", ":"), has_vectors());
    }
    for (std::string const before : {"", "\x1b[32m"}) {
        EXPECT_FALSE(could(15, before, " "));
        EXPECT_FALSE(could(32, before, ""));
        EXPECT_FALSE(could(32, before, "::"));
    }
    EXPECT_FALSE(could(32, "\x1b[0m", " "));
    EXPECT_FALSE(could(32, "\x1b[132m", " "));
}

TEST(DumpBytes, IsTheFormulaForLongTextsAroundTheDigits)
{
    for (std::size_t const length : {30u, 31u, 32u, 33u, 63u, 64u, 65u, 4096u}) {
        std::string const b(length, 'B');
        std::string const a(length, 'A');
        DumpColors const c{.byte = b, .parenthesis = "", .count = "", .reset = "R"};
        for (std::size_t const size : {1u, 2u, 19u, 20u, 41u}) {
            Bytes const bytes = mixed(size);
            ASSERT_TRUE(whole(bytes, a, c) == cells(bytes, b, a) + "R") << length << " around, " << size << " bytes";
            ASSERT_TRUE(whole(bytes, a) == cells(bytes, "", a)) << length << " after, " << size << " bytes";
        }
    }
    EXPECT_EQ(allocations.overruns, 0u);
}

TEST(DumpBytes, ReadsNothingBeforeOrAfterTheBytes)
{
    DumpColors const green{.byte = "\x1b[32m", .parenthesis = "", .count = "", .reset = ""};
    // Two pages, and no access to what surrounds them.
    std::size_t const page = 4096;
    auto* const all =
        static_cast<unsigned char*>(mmap(nullptr, 4 * page, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    ASSERT_NE(all, MAP_FAILED);
    unsigned char* const first = all + page;
    unsigned char* const end = first + 2 * page;
    ASSERT_EQ(mprotect(first, 2 * page, PROT_READ | PROT_WRITE), 0);
    for (std::size_t size = 1; size <= 70; ++size) {
        EXPECT_EQ(dump_bytes({first, size}, " ", plain, Length::whole).size(), 3 * size);
        EXPECT_EQ(dump_bytes({end - size, size}, " ", plain, Length::whole).size(), 3 * size);
        EXPECT_EQ(dump_bytes({first, size}, " ", green, Length::whole).size(), 8 * size);
        EXPECT_EQ(dump_bytes({end - size, size}, " ", green, Length::whole).size(), 8 * size);
    }
    munmap(all, 4 * page);
}

TEST(DumpBytes, CountsMoreBytesThanAnyIntHolds)
{
    // There is nothing at the addresses but zeros, and only the first 19 are looked at.
    if (sizeof(std::size_t) < 8) {
        GTEST_SKIP() << "a span has no more bytes than an int counts";
    }
    auto const size = static_cast<std::size_t>(5'000'000'000);
    void* const zeros = mmap(nullptr, size, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    ASSERT_NE(zeros, MAP_FAILED);
    std::string const text = dump_bytes({static_cast<unsigned char const*>(zeros), size}, ".", plain, Length::cut);
    EXPECT_EQ(text, "00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00. ... (5000000000 bytes) ");
    munmap(zeros, size);
}

TEST(DumpBytes, HasRoomForTheLongestCount)
{
    std::string const count = sizeof(std::size_t) == 8 ? "9223372036854775807" : "2147483647";
    unsigned char const bytes[19] = {};
    std::span<unsigned char const> const huge{bytes, SIZE_MAX / 2}; // only the first 19 are looked at
    EXPECT_EQ(dump_bytes(huge, "", colors, Length::cut),
              "<byte>00<byte>00<byte>00<byte>00<byte>00<byte>00<byte>00<byte>00<byte>00<byte>00"
              "<byte>00<byte>00<byte>00<byte>00<byte>00<byte>00<byte>00<byte>00<byte>00"
              " ... <parenthesis>(<count>" +
                  count + " bytes<parenthesis>) <reset>");
}

TEST(DumpBytes, OfMoreThanAnyStringHoldsIsOutOfMemory)
{
    unsigned char const byte = 0;
    std::size_t const most = std::string{}.max_size();
    auto const dump = [&](std::size_t size, std::string_view separator, DumpColors const& c) {
        return dump_bytes(std::span<unsigned char const>{&byte, size}, separator, c, Length::whole);
    };
    EXPECT_THROW(dump(SIZE_MAX / 2, "", plain), std::bad_alloc);
    EXPECT_THROW(dump(most / 2 + 1, "", plain), std::bad_alloc);
    EXPECT_THROW(dump(most / 3 + 1, " ", plain), std::bad_alloc);
    EXPECT_THROW(dump(SIZE_MAX / 4 + 1, "::", plain), std::bad_alloc); // the size of the text would wrap to 0
    EXPECT_THROW(dump(most / 2, "", {.byte = "", .parenthesis = "", .count = "", .reset = "\x1b[0m"}), std::bad_alloc);
}

TEST(DumpWords, OfMoreThanAnyStringHoldsIsOutOfMemory)
{
    unsigned int const word = 0;
    std::size_t const most = std::string{}.max_size();
    EXPECT_THROW(dump_words(std::span<unsigned int const>{&word, most / 9 + 1}), std::bad_alloc);
}

TEST(DumpBytes, AllocatesItsTextOnceAndNothingElse)
{
    Bytes const bytes = mixed(100'000);
    for (DumpColors const& c : {plain, colors}) {
        for (std::size_t const width : {0u, 1u, 5u, 40u}) {
            std::string text;
            std::string const separator = separator_of(width);
            Allocations const made = allocations_of([&] { text = whole(bytes, separator, c); });
            EXPECT_EQ(made.count, 1u);
            EXPECT_EQ(made.bytes, text.size() + 1);
        }
    }
}

TEST(BytesOf, AreThoseOfTheText)
{
    std::string const text("\0\x7f\x80\xff", 4);
    auto const bytes = bytes_of(text);
    EXPECT_EQ(Bytes(bytes.begin(), bytes.end()), (Bytes{0x00, 0x7f, 0x80, 0xff}));
    EXPECT_TRUE(bytes_of("").empty());
}

} // namespace
