// What styled text allocates: nothing for text in a stream or a format string.
#include <fmt/format.h>
#include <kestry/kit/style.hpp>

#include "support/allocations.hpp"
#include "support/buffers.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::kit;

std::string const long_text(100'000, 'x');
constexpr auto alert = fg(rgb(255, 140, 0)) | bold;

TEST(Allocation, IsNoneForTextInAStream)
{
    SmallBuffer sink;
    std::ostream os{&sink};
    for (color_depth const depth :
         {color_depth::none, color_depth::ansi16, color_depth::ansi256, color_depth::truecolor}) {
        Allocations const made = allocations_of([&] {
            set_depth(os, depth);
            os << styled("word", alert) << styled("word", fg(red)) << styled(long_text, alert);
            os << styled(bold, "a", styled("b\nc", fg(red)), 'd', styled("日本\x1b[1mx\x1b]0;title\a", italic));
            os << std::setw(20) << styled("word", alert) << std::setw(20) << styled(bold, "a", styled("b", fg(red)));
            set_style(os, fg(red));
            os << styled("word", alert);
            set_style(os, {});
        });
        EXPECT_EQ(made.count, 0U);
    }
}

TEST(Allocation, IsNoneForValuesInAStream)
{
    SmallBuffer sink;
    std::ostream os{&sink};
    os << styled(1, bold);
    EXPECT_EQ(allocations_of([&] { os << styled(bold, 1, ' ', 2.5, styled(3, fg(red))); }).count, 0U);
}

TEST(Allocation, IsNoneForTextInAFormatString)
{
    std::array<char, 200> to{};
    char* end = nullptr;
    Allocations const made = allocations_of([&] {
        end = fmt::format_to_n(to.data(), to.size(), "{}{:>9}{:*^9.2}", styled("word", bold), styled("word", alert),
                               styled(bold, "a", styled("bc", fg(red))))
                  .out;
    });
    EXPECT_EQ(made.count, 0U);
    EXPECT_GT(end, to.data() + 40);
}

TEST(Allocation, IsOneForAString)
{
    std::size_t size = 0;
    EXPECT_EQ(allocations_of([&] { size += to_string(styled("failed", alert)).size(); }).count, 1U);
    EXPECT_EQ(allocations_of([&] { size += to_string(styled("failed", fg(red) | bold)).size(); }).count, 1U);
    EXPECT_EQ(allocations_of([&] { size += to_string(styled("error", fg(red))).size(); }).count, 0U);
    EXPECT_GT(size, 60U);
}

// Words are copied one over the other.
TEST(Allocation, IsNotWrittenBehind)
{
    for (std::size_t length = 0; length < 200; ++length) {
        std::string const text(length, 'x');
        for (style const& look : {bold, fg(red), fg(bright_red) | bold, alert, style{}}) {
            EXPECT_EQ(allocations_of([&] { to_string(styled(text, look)); }).overruns, 0U) << length;
        }
    }
}

TEST(Allocation, ThatFailsLeavesTheFunction)
{
    std::string const text(100, 'x');
    EXPECT_TRUE(runs_out_of_memory([&] { static_cast<void>(to_string(styled(text, bold))); }));
    EXPECT_TRUE(runs_out_of_memory([&] { static_cast<void>(to_string(styled(bold, 1, text))); }));

    SmallBuffer sink;
    std::ostream os{&sink};
    EXPECT_FALSE(runs_out_of_memory([&] { os << styled(bold, text, styled(text, fg(red))); }));
    EXPECT_TRUE(os.good());
}

} // namespace
