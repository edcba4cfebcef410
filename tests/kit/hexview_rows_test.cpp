#include <kestry/kit/hexview.hpp>

#include "support/allocations.hpp"
#include "support/testing.hpp"
#include "kit/hexview.hpp"

namespace {

using namespace kestry::kit;
using namespace hueline::test;
using enum hex_layout;
using enum hex_offsets;

std::string all_bytes()
{
    std::string all;
    for (int value = 0; value < 256; ++value) {
        all += static_cast<char>(value);
    }
    return all;
}

TEST(Hexview, IsInsertedAsTheHeaderShows)
{
    std::ostringstream os;
    os << hexdump(std::as_bytes(std::span("Hello\n")), {.layout = hexdump_c, .width = 16, .squeeze = true});
    EXPECT_EQ(os.str(), "00000000  48 65 6c 6c 6f 0a 00                              |Hello..|\n00000007\n");
}

TEST(Hexview, WritesEachLayout)
{
    struct {
        hex_layout layout;
        char const* rows;
    } const cases[] = {{xxd, "00000000: 6162 6364 6566 6768 696a 6b6c 6d6e 6f70  abcdefghijklmnop\n"
                             "00000010: 7172 7374 7576 7778 797a                 qrstuvwxyz\n"},
                       {xxd_bits, "00000000: 01100001 01100010 01100011 01100100 01100101 01100110  abcdef\n"
                                  "00000006: 01100111 01101000 01101001 01101010 01101011 01101100  ghijkl\n"
                                  "0000000c: 01101101 01101110 01101111 01110000 01110001 01110010  mnopqr\n"
                                  "00000012: 01110011 01110100 01110101 01110110 01110111 01111000  stuvwx\n"
                                  "00000018: 01111001 01111010                                      yz\n"},
                       {xxd_little_endian, "00000000: 64636261 68676665 6c6b6a69 706f6e6d  abcdefghijklmnop\n"
                                           "00000010: 74737271 78777675     7a79           qrstuvwxyz\n"},
                       {xxd_plain, "6162636465666768696a6b6c6d6e6f707172737475767778797a\n"},
                       {hexdump_c, "00000000  61 62 63 64 65 66 67 68  69 6a 6b 6c 6d 6e 6f 70  |abcdefghijklmnop|\n"
                                   "00000010  71 72 73 74 75 76 77 78  79 7a                    |qrstuvwxyz|\n"
                                   "0000001a\n"},
                       {od, "000000 61 62 63 64 65 66 67 68 69 6a 6b 6c 6d 6e 6f 70  >abcdefghijklmnop<\n"
                            "000010 71 72 73 74 75 76 77 78 79 7a                    >qrstuvwxyz<\n"
                            "00001a\n"}};
    for (auto const& [layout, rows] : cases) {
        EXPECT_EQ(view(alphabet, {.layout = layout}), rows);
    }
}

TEST(Hexview, ShowsNoBytesAsTheToolsDo)
{
    EXPECT_EQ(view("", {.layout = xxd}), "");
    EXPECT_EQ(view("", {.layout = xxd, .squeeze = true}), "");
    EXPECT_EQ(view("", {.layout = xxd_plain}), "");
    EXPECT_EQ(view("", {.layout = xxd_plain, .width = 0}), "\n");
    EXPECT_EQ(view("ab", {.layout = xxd_plain, .width = 0, .skip = 3}), "\n");
    EXPECT_EQ(view("ab", {.layout = xxd_plain, .width = 0, .length = 0}), "\n");
    EXPECT_EQ(view("", {.layout = hexdump_c}), "");
    EXPECT_EQ(view("", {.layout = od}), "000000\n");
    EXPECT_EQ(view("", {.layout = od, .offsets = none}), "");
}

TEST(Hexview, ShowsEveryByteInDigitsAndOnlyPrintableOnesAsText)
{
    EXPECT_EQ(view(all_bytes(), {.layout = hexdump_c}),
              "00000000  00 01 02 03 04 05 06 07  08 09 0a 0b 0c 0d 0e 0f  |................|\n"
              "00000010  10 11 12 13 14 15 16 17  18 19 1a 1b 1c 1d 1e 1f  |................|\n"
              "00000020  20 21 22 23 24 25 26 27  28 29 2a 2b 2c 2d 2e 2f  | !\"#$%&'()*+,-./|\n"
              "00000030  30 31 32 33 34 35 36 37  38 39 3a 3b 3c 3d 3e 3f  |0123456789:;<=>?|\n"
              "00000040  40 41 42 43 44 45 46 47  48 49 4a 4b 4c 4d 4e 4f  |@ABCDEFGHIJKLMNO|\n"
              "00000050  50 51 52 53 54 55 56 57  58 59 5a 5b 5c 5d 5e 5f  |PQRSTUVWXYZ[\\]^_|\n"
              "00000060  60 61 62 63 64 65 66 67  68 69 6a 6b 6c 6d 6e 6f  |`abcdefghijklmno|\n"
              "00000070  70 71 72 73 74 75 76 77  78 79 7a 7b 7c 7d 7e 7f  |pqrstuvwxyz{|}~.|\n"
              "00000080  80 81 82 83 84 85 86 87  88 89 8a 8b 8c 8d 8e 8f  |................|\n"
              "00000090  90 91 92 93 94 95 96 97  98 99 9a 9b 9c 9d 9e 9f  |................|\n"
              "000000a0  a0 a1 a2 a3 a4 a5 a6 a7  a8 a9 aa ab ac ad ae af  |................|\n"
              "000000b0  b0 b1 b2 b3 b4 b5 b6 b7  b8 b9 ba bb bc bd be bf  |................|\n"
              "000000c0  c0 c1 c2 c3 c4 c5 c6 c7  c8 c9 ca cb cc cd ce cf  |................|\n"
              "000000d0  d0 d1 d2 d3 d4 d5 d6 d7  d8 d9 da db dc dd de df  |................|\n"
              "000000e0  e0 e1 e2 e3 e4 e5 e6 e7  e8 e9 ea eb ec ed ee ef  |................|\n"
              "000000f0  f0 f1 f2 f3 f4 f5 f6 f7  f8 f9 fa fb fc fd fe ff  |................|\n"
              "00000100\n");
}

// A long row is written byte by byte, a short one sixteen bytes at once.
TEST(Hexview, ShowsTheSameInRowsOfAnyWidth)
{
    std::string const one_row = view(all_bytes(), {.width = 256, .group = 1});
    std::string const digits = one_row.substr(10, 256 * 3 - 1);
    std::string const text = one_row.substr(10 + 256 * 3 + 1, 256);
    for (std::size_t width : {1U, 2U, 7U, 8U, 9U, 15U, 16U, 17U, 100U}) {
        std::string all_digits;
        std::string all_text;
        std::istringstream rows(view(all_bytes(), {.width = width, .group = 1}));
        for (std::string row; std::getline(rows, row);) {
            std::size_t const bytes = std::min(width, 256 - all_text.size());
            all_digits += (all_digits.empty() ? "" : " ") + row.substr(10, bytes * 3 - 1);
            all_text += row.substr(10 + width * 3 + 1);
        }
        EXPECT_EQ(all_digits, digits) << width;
        EXPECT_EQ(all_text, text) << width;
    }
}

TEST(Hexview, FormsGroups)
{
    EXPECT_EQ(view("abcdefg", {.width = 7, .group = 3}), "00000000: 616263 646566 67  abcdefg\n");
    EXPECT_EQ(view("abcde", {.width = 7, .group = 3}), "00000000: 616263 6465       abcde\n");
    EXPECT_EQ(view("abcd", {.width = 4, .group = 0}), "00000000: 61626364  abcd\n");
    EXPECT_EQ(view("abcd", {.width = 4, .group = 5}), "00000000: 61626364  abcd\n");
    EXPECT_EQ(view("abcd", {.width = 4, .group = SIZE_MAX}), "00000000: 61626364  abcd\n");
    EXPECT_EQ(view("abcd", {.layout = xxd_bits, .width = 4, .group = 2}),
              "00000000: 0110000101100010 0110001101100100  abcd\n");
    EXPECT_EQ(view("abcd", {.layout = hexdump_c, .width = 4, .group = 2}),
              "00000000  61 62  63 64  |abcd|\n00000004\n");
    EXPECT_EQ(view("abcd", {.layout = od, .width = 4, .group = 2}), "000000 6162 6364  >abcd<\n000004\n");
}

// Where a group is not whole, digits stand over the text: so does xxd of 2022.
TEST(Hexview, TurnsTheBytesOfAGroupRound)
{
    EXPECT_EQ(view("abcdef", {.layout = xxd_little_endian, .width = 4, .group = 2}),
              "00000000: 6261 6463  abcd\n00000004: 6665       ef\n");
    EXPECT_EQ(view("abc", {.layout = xxd_little_endian, .width = 4, .group = 2}), "00000000: 6261   63  abc\n");
    EXPECT_EQ(view("abcde", {.layout = xxd_little_endian, .width = 5, .group = 2}), "00000000: 6261 6463   65abcde\n");
    EXPECT_EQ(view("abcdefghij", {.layout = xxd_little_endian, .width = 10}),
              "00000000: 64636261 68676665     6a69cdefghij\n");
}

TEST(Hexview, WritesCapitalsForBytesAlone)
{
    EXPECT_EQ(view("\xab\xcd", {.width = 2, .uppercase = true, .first_offset = 0xabc}), "00000abc: ABCD  ..\n");
    EXPECT_EQ(view("\xab\xcd", {.layout = xxd_plain, .uppercase = true}), "ABCD\n");
    std::string const rows = view(std::string(300, '\xef'), {.uppercase = true, .first_offset = 0xf0});
    EXPECT_EQ(rows.substr(0, 68), "000000f0: EFEF EFEF EFEF EFEF EFEF EFEF EFEF EFEF  ................\n");
}

TEST(Hexview, WritesOffsetsInEachBase)
{
    struct {
        hex_layout layout;
        hex_offsets offsets;
        char const* rows;
    } const cases[] = {{xxd, decimal, "00000100: 61  a\n00000101: 62  b\n"},
                       {xxd, octal, "00000144: 61  a\n00000145: 62  b\n"},
                       {xxd, none, "61  a\n62  b\n"},
                       {hexdump_c, decimal, "00000100  61  |a|\n00000101  62  |b|\n00000102\n"},
                       {hexdump_c, none, "61  |a|\n62  |b|\n"},
                       {od, decimal, "0000100 61  >a<\n0000101 62  >b<\n0000102\n"},
                       {od, octal, "0000144 61  >a<\n0000145 62  >b<\n0000146\n"},
                       {od, none, " 61  >a<\n 62  >b<\n"}};
    for (auto const& [layout, offsets, rows] : cases) {
        EXPECT_EQ(view("ab", {.layout = layout, .width = 1, .offsets = offsets, .first_offset = 100}), rows);
    }
}

TEST(Hexview, MovesTheColumnsWhereOffsetsGetLonger)
{
    EXPECT_EQ(view("ab", {.width = 1, .first_offset = 0xffffffff}), "ffffffff: 61  a\n100000000: 62  b\n");
    EXPECT_EQ(view("ab", {.layout = hexdump_c, .width = 1, .first_offset = 0xffffffff}),
              "ffffffff  61  |a|\n100000000  62  |b|\n100000001\n");
    EXPECT_EQ(view("ab", {.layout = od, .width = 1, .first_offset = 0xffffff}),
              "ffffff 61  >a<\n1000000 62  >b<\n1000001\n");
    EXPECT_EQ(view("ab", {.width = 1, .offsets = decimal, .first_offset = 99999999}),
              "99999999: 61  a\n100000000: 62  b\n");
}

TEST(Hexview, MovesThemAmongManyRowsToo)
{
    std::string const rows = view(std::string(1024, 'a'), {.first_offset = 0xffffff00});
    std::string const row = ": 6161 6161 6161 6161 6161 6161 6161 6161  aaaaaaaaaaaaaaaa\n";
    EXPECT_NE(rows.find("\nfffffff0" + row + "100000000" + row + "100000010" + row), rows.npos);
}

TEST(Hexview, CountsOffsetsModulo64Bits)
{
    std::uint64_t const last = UINT64_MAX;
    EXPECT_EQ(view("ab", {.width = 1, .first_offset = last}), "ffffffffffffffff: 61  a\n00000000: 62  b\n");
    // xxd has signed numbers.
    EXPECT_EQ(view("ab", {.width = 1, .offsets = decimal, .first_offset = last}), "-0000001: 61  a\n00000000: 62  b\n");
    EXPECT_EQ(view("a", {.layout = od, .width = 1, .offsets = decimal, .first_offset = last}),
              "18446744073709551615 61  >a<\n0000000\n");
    EXPECT_EQ(view("a", {.layout = od, .width = 1, .offsets = octal, .first_offset = last}),
              "1777777777777777777777 61  >a<\n0000000\n");
}

TEST(Hexview, SkipsAndStops)
{
    EXPECT_EQ(view(alphabet, {.width = 4, .first_offset = 0x100, .skip = 2, .length = 5}),
              "00000102: 6364 6566  cdef\n00000106: 67         g\n");
    EXPECT_EQ(view(alphabet, {.skip = -2}), "00000018: 797a                                     yz\n");
    EXPECT_EQ(view("ab", {.skip = -2, .length = 1}), "00000000: 61                                       a\n");
    EXPECT_EQ(view("ab", {.layout = hexdump_c, .width = 2, .skip = 1}), "00000001  62     |b|\n00000002\n");
    EXPECT_EQ(view("ab", {.length = UINT64_MAX}), "00000000: 6162                                     ab\n");
}

TEST(Hexview, ShowsNothingOfNoLength)
{
    EXPECT_EQ(view("ab", {.length = 0}), "");
    EXPECT_EQ(view("ab", {.layout = hexdump_c, .skip = 1, .length = 0}), "");
    EXPECT_EQ(view("ab", {.layout = od, .skip = 1, .length = 0}), "000001\n");
}

TEST(Hexview, SkipsToTheEndAndAfterItAsTheToolsDo)
{
    for (hex_layout const layout : {xxd, xxd_bits, xxd_little_endian, xxd_plain}) {
        EXPECT_EQ(view("ab", {.layout = layout, .skip = 2}), "");
        EXPECT_EQ(view("ab", {.layout = layout, .skip = 3}), "");
    }
    EXPECT_EQ(view("ab", {.layout = hexdump_c, .skip = 2}), "00000002\n");
    EXPECT_EQ(view("ab", {.layout = hexdump_c, .skip = 3}), "00000002\n");
    EXPECT_EQ(view("", {.layout = hexdump_c, .skip = 3}), "");
    EXPECT_EQ(view("ab", {.layout = od, .skip = 2}), "000002\n");
    EXPECT_THROW(view("ab", {.layout = od, .skip = 3}), std::invalid_argument);
}

TEST(Hexview, BreaksPlainDigitsAtTheirWidthOrNowhere)
{
    std::string const bytes(61, 'a');
    std::string const row = "616161616161616161616161616161616161616161616161616161616161";
    EXPECT_EQ(view(bytes, {.layout = xxd_plain}), row + "\n" + row + "\n61\n");
    EXPECT_EQ(view("abc", {.layout = xxd_plain, .width = 3}), "616263\n");
    EXPECT_EQ(view("abc", {.layout = xxd_plain, .width = 2, .group = 1, .squeeze = true}), "6162\n63\n");
    EXPECT_EQ(view(bytes, {.layout = xxd_plain, .width = 0}), row + row + "61\n");
    EXPECT_EQ(view(std::string(32, 'a'), {.layout = xxd_plain, .width = 0}), row + "6161\n");
    std::string const many = view(std::string(1000, 'a'), {.layout = xxd_plain, .width = 0});
    EXPECT_EQ(many.size(), 2001U);
    EXPECT_EQ(many.find('\n'), 2000U);
}

std::string zeros(std::size_t rows, std::string const& before, std::string const& after)
{
    return view(before + std::string(4 * rows, '\0') + after, {.width = 4, .offsets = none, .squeeze = true});
}

TEST(Hexview, LeavesOutZerosAsXxdDoes)
{
    std::string const zero = "0000 0000  ....\n";
    std::string const abcd = "6162 6364  abcd\n";
    std::string const short_row = "61         a\n";
    // At the end of the data the last one is shown.
    EXPECT_EQ(zeros(1, "", ""), zero);
    EXPECT_EQ(zeros(2, "", ""), zero + zero);
    EXPECT_EQ(zeros(3, "", ""), zero + zero + zero);
    EXPECT_EQ(zeros(4, "", ""), zero + "*\n" + zero);
    EXPECT_EQ(zeros(9, "abcd", ""), abcd + zero + "*\n" + zero);
    // Before others it is not.
    EXPECT_EQ(zeros(1, "", "abcd"), zero + abcd);
    EXPECT_EQ(zeros(2, "abcd", "abcd"), abcd + zero + zero + abcd);
    EXPECT_EQ(zeros(3, "abcd", "abcd"), abcd + zero + "*\n" + abcd);
    EXPECT_EQ(zeros(3, "", "a"), zero + "*\n" + short_row);
    EXPECT_EQ(zeros(2, "", "a"), zero + zero + short_row);
    // Other rows stay.
    EXPECT_EQ(zeros(0, "abcdabcdabcdabcd", ""), abcd + abcd + abcd + abcd);
    // Offsets count them.
    EXPECT_EQ(view(std::string(64, '\0') + "a", {.squeeze = true}),
              "00000000: 0000 0000 0000 0000 0000 0000 0000 0000  ................\n"
              "*\n"
              "00000040: 61                                       a\n");
}

TEST(Hexview, LeavesOutRowsThatEqualTheOneBefore)
{
    hex_options const twos = {.layout = hexdump_c, .width = 2};
    EXPECT_EQ(view("abab", twos), "00000000  61 62  |ab|\n*\n00000004\n");
    EXPECT_EQ(view("abababcdcdaba", twos), "00000000  61 62  |ab|\n"
                                           "*\n"
                                           "00000006  63 64  |cd|\n"
                                           "*\n"
                                           "0000000a  61 62  |ab|\n"
                                           "0000000c  61     |a|\n"
                                           "0000000d\n");
    EXPECT_EQ(view("aaaaa", {.layout = od, .width = 2}), "000000 61 61  >aa<\n*\n000004 61     >a<\n000005\n");
    // One byte that differs is enough, wherever it is.
    std::string rows(32, 'x');
    for (std::size_t differs = 16; differs != 32; ++differs) {
        rows[differs] = 'y';
        EXPECT_EQ(view(rows, {.layout = od}).find('*'), std::string::npos) << differs;
        rows[differs] = 'x';
    }
    EXPECT_NE(view(rows, {.layout = od}).find('*'), std::string::npos);
}

TEST(Hexview, LeavesOutNothingUnlessAskedOrUsual)
{
    std::string const bytes(64, '\0');
    for (hex_layout const layout : {xxd, hexdump_c, od}) {
        bool const usual = layout != xxd;
        EXPECT_EQ(view(bytes, {.layout = layout}).find('*') != std::string::npos, usual);
        EXPECT_EQ(view(bytes, {.layout = layout, .squeeze = true}).find('*') != std::string::npos, true);
        EXPECT_EQ(view(bytes, {.layout = layout, .squeeze = false}).find('*') != std::string::npos, false);
    }
}

std::string refusal(hex_options const& options, std::string_view bytes = alphabet)
{
    try {
        hexdump(bytes_of(bytes), options);
    } catch (std::invalid_argument const& error) {
        return error.what();
    }
    return "none";
}

TEST(Hexview, RefusesAbsurdOptions)
{
    EXPECT_EQ(refusal({.width = 65537}), "hexdump: a row of 65537 bytes, and the most is 65536");
    EXPECT_EQ(refusal({.width = SIZE_MAX}),
              "hexdump: a row of " + std::to_string(SIZE_MAX) + " bytes, and the most is 65536");
    EXPECT_EQ(refusal({.layout = xxd_little_endian, .group = 3}),
              "hexdump: little endian takes groups of 1, 2, 4, 8... bytes, and not of 3");
    std::string const too_few = "hexdump: more bytes to skip than there are";
    EXPECT_EQ(refusal({.skip = -27}), too_few);
    EXPECT_EQ(refusal({.skip = -26}), "none");
    EXPECT_EQ(refusal({.skip = INT64_MIN}), too_few);
    EXPECT_EQ(refusal({.layout = od, .skip = INT64_MAX}), too_few);
    EXPECT_EQ(refusal({.skip = INT64_MAX}), "none");
    EXPECT_EQ(refusal({.layout = static_cast<hex_layout>(99)}), "hexdump: no such layout");
}

TEST(Hexview, WritesTheWidestRow)
{
    for (hex_layout const layout : {xxd, xxd_bits, xxd_little_endian, xxd_plain, hexdump_c, od}) {
        std::string rows;
        Allocations const made = allocations_of([&] {
            rows =
                to_string(hexdump(bytes_of(std::string(2 * 65536, 'a')),
                                  {.layout = layout, .width = 65536, .group = 8, .squeeze = false, .colored = true}));
        });
        EXPECT_EQ(made.overruns, 0U);
        EXPECT_GE(std::count(rows.begin(), rows.end(), '\n'), 2);
    }
}

} // namespace
