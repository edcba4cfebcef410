#include "text/digits.hpp"
#include "text/make_string.hpp"
#include "text/sgr.hpp"

#include "support/formula.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::detail;

std::string decimal(std::int64_t value)
{
    char text[longest_decimal];
    return {text, put_decimal(text, value)};
}

template <class Unsigned>
std::string hex(Unsigned value)
{
    char text[2 * sizeof value];
    return {text, put_hex(text, value)};
}

TEST(MakeString, HasTheSizeAndWhatWasWritten)
{
    for (std::size_t const size : {0u, 1u, 15u, 16u, 17u, 1000u}) {
        int calls = 0;
        std::string const text = make_string(size, [&](char* out) {
            ++calls;
            std::memset(out, 'x', size);
        });
        EXPECT_EQ(text, std::string(size, 'x'));
        EXPECT_EQ(text.c_str()[size], '\0');
        EXPECT_EQ(calls, 1);
    }
}

TEST(PutText, WritesTheTextAndReturnsThePlaceAfterIt)
{
    using namespace std::string_view_literals;
    char room[8] = {'.', '.', '.', '.', '.', '.', '.', '.'};
    EXPECT_EQ(put_text(room, "a\0c"sv), room + 3);
    EXPECT_EQ(put_text(room + 3, ""), room + 3);
    EXPECT_EQ(put_text(room + 3, std::string_view{}), room + 3);
    EXPECT_EQ(std::string_view(room, sizeof room), "a\0c....."sv);
}

TEST(Decimal, IsPlainDigits)
{
    EXPECT_EQ(decimal(0), "0");
    EXPECT_EQ(decimal(1), "1");
    EXPECT_EQ(decimal(-1), "-1");
    EXPECT_EQ(decimal(9), "9");
    EXPECT_EQ(decimal(10), "10");
    EXPECT_EQ(decimal(-10), "-10");
    EXPECT_EQ(decimal(99), "99");
    EXPECT_EQ(decimal(100), "100");
    EXPECT_EQ(decimal(INT_MAX), "2147483647");
    EXPECT_EQ(decimal(INT_MIN), "-2147483648");
    EXPECT_EQ(decimal(UINT_MAX), "4294967295");
    EXPECT_EQ(decimal(INT64_MAX), "9223372036854775807");
    EXPECT_EQ(decimal(INT64_MIN), "-9223372036854775808");
    static_assert(longest_decimal == 20); // of the last one
}

TEST(Hex, HasTwoDigitsForEachByteValue)
{
    for (unsigned value = 0; value < 256; ++value) {
        auto const b = static_cast<unsigned char>(value);
        char room[3] = {'.', '.', '.'};
        EXPECT_EQ(put_byte(room, b), room + 2);
        EXPECT_EQ(std::string(room, 3), two_digits(b) + ".");
        EXPECT_EQ(hex_digits(b), two_digits(b));
    }
}

TEST(Hex, HasTwoDigitsForEachByteOfANumber)
{
    EXPECT_EQ(hex(std::uint8_t{0x0f}), "0f");
    EXPECT_EQ(hex(std::uint16_t{0x1234}), "1234");
    EXPECT_EQ(hex(std::uint16_t{0xfedc}), "fedc");
    EXPECT_EQ(hex(std::uint32_t{0x12345678}), "12345678");
    EXPECT_EQ(hex(std::uint32_t{0x1}), "00000001");
    EXPECT_EQ(hex(std::uint64_t{0x123456789abcdef0}), "123456789abcdef0");
    EXPECT_EQ(hex(std::uint64_t{0xffffffffffffffff}), "ffffffffffffffff");
    EXPECT_EQ(hex(std::uint64_t{0}), "0000000000000000");
}

TEST(Concatenate, PutsPieceAfterPiece)
{
    using namespace std::string_view_literals;
    EXPECT_EQ(concatenate({}), "");
    EXPECT_EQ(concatenate({""}), "");
    EXPECT_EQ(concatenate({"a", "", "b\0c"sv, "a text that no short string holds"}),
              "ab\0ca text that no short string holds"sv);
}

TEST(SgrSequence, HasItsNumbersBetweenSemicolons)
{
    EXPECT_EQ(SgrSequence("\x1b[", 0).str(), "\x1b[0m");
    EXPECT_EQ(SgrSequence("\x1b[38;5;", 300).str(), "\x1b[38;5;300m");
    EXPECT_EQ(SgrSequence("\x1b[", 38, 2, 1, 20, 255).str(), "\x1b[38;2;1;20;255m");
    EXPECT_EQ(std::string_view(SgrSequence("\x1b[48;2;", 0, -1, 5)), "\x1b[48;2;0;-1;5m");
}

TEST(SgrSequence, HasRoomForTheLongest)
{
    std::int64_t const least = INT64_MIN;
    EXPECT_EQ(SgrSequence("\x1b[38;2;", least, least, least, least, least).str(),
              "\x1b[38;2;-9223372036854775808;-9223372036854775808;-9223372036854775808;-9223372036854775808;"
              "-9223372036854775808m");
}

} // namespace
