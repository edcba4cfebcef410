#include "progress_numbers.hpp"

#include "support/testing.hpp"

namespace {

using namespace kestry::kit::detail;
using kestry::kit::progress::unit;

std::uint64_t constexpr most = std::numeric_limits<std::uint64_t>::max();

TEST(Amount, CountsItemsPlainly)
{
    EXPECT_EQ(amount(0, unit::items), "0");
    EXPECT_EQ(amount(1234567, unit::items), "1234567");
    EXPECT_EQ(amount(most, unit::items), "18446744073709551615");
}

void expect_bytes(std::vector<std::pair<std::uint64_t, std::string>> const& amounts)
{
    for (auto const& [bytes, text] : amounts) {
        EXPECT_EQ(amount(bytes, unit::bytes), text);
    }
}

TEST(Amount, GivesBytesABinaryPrefix)
{
    expect_bytes({{0, "0 B"}, {1, "1 B"}, {1023, "1023 B"}});
    expect_bytes({{1024, "1.00 KiB"}, {1234, "1.21 KiB"}, {10229, "9.99 KiB"}, {10239, "10.0 KiB"}});
    expect_bytes({{102297, "99.9 KiB"}, {102399, "100 KiB"}, {1048063, "1023 KiB"}});
    expect_bytes({{1048064, "1.00 MiB"}, {1048576, "1.00 MiB"}, {most, "16.0 EiB"}});
}

TEST(Speed, HasThreeDigits)
{
    EXPECT_EQ(speed(std::nullopt, unit::items), "--/s");
    EXPECT_EQ(speed(std::nullopt, unit::bytes), "--/s");
    EXPECT_EQ(speed(0.25, unit::items), "0.25/s");
    EXPECT_EQ(speed(999.4, unit::items), "999/s");
    EXPECT_EQ(speed(999.5, unit::items), "1.00k/s");
    EXPECT_EQ(speed(56700, unit::items), "56.7k/s");
    EXPECT_EQ(speed(4404019.2, unit::bytes), "4.20 MiB/s");
    EXPECT_EQ(speed(-1, unit::items), "0.00/s");
    EXPECT_EQ(speed(1e300, unit::bytes).substr(0, 4), "8673"); // all its digits
}

TEST(TimeSpan, GrowsByUnits)
{
    EXPECT_EQ(time_span(std::nullopt), "--:--");
    EXPECT_EQ(time_span(-1), "00:00");
    EXPECT_EQ(time_span(7.9), "00:07");
    EXPECT_EQ(time_span(3599), "59:59");
    EXPECT_EQ(time_span(3600), "1:00:00");
    EXPECT_EQ(time_span(3723), "1:02:03");
    EXPECT_EQ(time_span(86399), "23:59:59");
    EXPECT_EQ(time_span(86400), "1d 00h");
    EXPECT_EQ(time_span(93784), "1d 02h");
    EXPECT_EQ(time_span(100 * 86400.0 * 365 - 1), "36499d 23h");
    EXPECT_EQ(time_span(100 * 86400.0 * 365), "--:--");
    EXPECT_EQ(time_span(std::numeric_limits<double>::quiet_NaN()), "--:--");
}

TEST(TimeLeft, CountsASecondThatHasBegun)
{
    EXPECT_EQ(time_left(0), "00:00");
    EXPECT_EQ(time_left(0.2), "00:01");
    EXPECT_EQ(time_left(59.5), "01:00");
    EXPECT_EQ(time_left(std::nullopt), "--:--");
}

TEST(Percent, IsHundredOnlyAtTheEnd)
{
    EXPECT_EQ(percent(0, 100), 0);
    EXPECT_EQ(percent(29, 100), 29); // 0.29 * 100 is less
    EXPECT_EQ(percent(199, 200), 99);
    EXPECT_EQ(percent(200, 200), 100);
    EXPECT_EQ(percent(201, 200), 100);
    EXPECT_EQ(percent(0, 0), 100);
    EXPECT_EQ(percent(most - 1, most), 99);
    EXPECT_EQ(percent(most / 2, most), 50);
    EXPECT_EQ(percent(most / 100, most), 0);
    EXPECT_EQ(percent(most / 100 + 1, most), 1);
}

TEST(RightAligned, FillsUpWithBlanks)
{
    EXPECT_EQ(right_aligned("7%", 4), "  7%");
    EXPECT_EQ(right_aligned("100%", 4), "100%");
    EXPECT_EQ(right_aligned("12345", 4), "12345");
}

} // namespace
