#include "hexdump/dump.hpp"

#include "hexdump/cells.hpp"
#include "hexdump/vector_cells.hpp"
#include "support/allocations.hpp"
#include "support/formula.hpp"
#include "support/testing.hpp"

#include <sys/mman.h>

namespace {

using namespace hueline::test;
using namespace kestry::detail;

void expect_the_formula(std::size_t before, std::size_t after, std::vector<std::size_t> const& sizes)
{
    std::string const separator = separator_of(after);
    std::string const color = separator_of(before + after).substr(after); // another text
    Colors const c = {color, "<parenthesis>", "<count>", "<end>"};
    for (std::size_t const size : sizes) {
        SCOPED_TRACE(testing::Message() << before << " before, " << after << " after, " << size << " bytes");
        Bytes const bytes = mixed(size);
        for (Length const length : {Length::cut, Length::whole}) {
            std::string const text = dump_bytes(bytes, separator, {c.byte, c.parenthesis, c.count, c.end}, length);
            EXPECT_TRUE(text == dump_of(bytes, separator, c, length == Length::whole));
            EXPECT_EQ(text.c_str()[text.size()], '\0');
        }
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
    for (std::size_t const around : {30u, 31u, 32u, 33u, 63u, 64u, 65u, 4096u}) {
        expect_the_formula(around, around, {1, 2, 19, 20, 41});
        expect_the_formula(0, around, {1, 2, 19, 20, 41});
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

#ifdef __x86_64__
std::size_t constexpr block = 32;
#else
std::size_t constexpr block = 16;
#endif

TEST(VectorCells, AreTheTwoCommonOnesOfABlockOrMoreWhereTheProcessorHasVectors)
{
    auto const could = [](std::size_t size, std::string const& before, std::string const& after) {
        std::string text(size * (before.size() + 2 + after.size()), '.');
        bool const done = put_vector_cells(text.data(), mixed(size), before, after);
        EXPECT_EQ(text, done ? cells(mixed(size), before, after) : std::string(text.size(), '.'));
        return done;
    };
    for (std::size_t const size : {block, block + 1, 2 * block - 1, 2 * block, 2 * block + 1, std::size_t{1000}}) {
        for (std::string const before : {"", "\x1b[32m", "12345"}) {
            EXPECT_EQ(could(size, before, " "), has_vectors());
            EXPECT_EQ(could(size, before, "\xff"), has_vectors());
        }
    }
    for (std::string const before : {"", "\x1b[32m"}) {
        EXPECT_FALSE(could(block - 1, before, " "));
        EXPECT_FALSE(could(block, before, ""));
        EXPECT_FALSE(could(block, before, "::"));
    }
    EXPECT_FALSE(could(block, "\x1b[0m", " "));
    EXPECT_FALSE(could(block, "\x1b[132m", " "));
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
        for (unsigned char const* const at : {first, end - size}) {
            EXPECT_EQ(dump_bytes({at, size}, " ", plain, Length::whole).size(), 3 * size);
            EXPECT_EQ(dump_bytes({at, size}, " ", green, Length::whole).size(), 8 * size);
        }
    }
    munmap(all, 4 * page);
}

TEST(DumpBytes, HasRoomForTheLongestCount)
{
    std::string const count = sizeof(std::size_t) == 8 ? "9223372036854775807" : "2147483647";
    unsigned char const bytes[19] = {};
    std::span<unsigned char const> const huge{bytes, SIZE_MAX / 2}; // only the first 19 are looked at
    EXPECT_EQ(dump_bytes(huge, "",
                         {.byte = "B", .parenthesis = "<parenthesis>", .count = "<count>", .reset = "<reset>"},
                         Length::cut),
              "B00B00B00B00B00B00B00B00B00B00B00B00B00B00B00B00B00B00B00 ... <parenthesis>(<count>" + count +
                  " bytes<parenthesis>) <reset>");
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
    unsigned int const word = 0;
    EXPECT_THROW(dump_words(std::span<unsigned int const>{&word, most / 9 + 1}), std::bad_alloc);
}

} // namespace
