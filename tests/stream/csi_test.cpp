#include "kestry/hueline_stream.hpp"

#include "support/clock.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::Hueline;
using namespace std::chrono_literals;

TEST(Csi, GivesClrAndClearOneAddress)
{
    using Manipulator = std::ostream& (*)(std::ostream&);
    Manipulator volatile const clr = csi::clr;
    Manipulator volatile const clear = csi::clear;
    EXPECT_EQ(clr, clear);
}

TEST(Delay, WaitsWhileLessThanItsMillisecondsHavePassed)
{
    struct {
        int ms;
        std::chrono::nanoseconds step; // that the clock advances by at each reading
        char const* readings;
    } const rows[] = {{0, 1ns, "3"},
                      {0, 0ns, "3"},
                      {-1, 0ns, "3"},
                      {-1000, 1ns, "3"},
                      {INT_MIN, 0ns, "3"}, // nothing to wait for
                      {25, 1ms, "26"},     // the last one 25 ms after the first
                      {25, 999'999ns, "27"},
                      {25, 12'500us, "3"},
                      {25, 12'499'999ns, "4"},
                      {1, 100us, "11"},
                      {1, 499'999ns, "4"},
                      {10'000, 1s, "11"},
                      {INT_MAX, std::chrono::nanoseconds(std::chrono::milliseconds(INT_MAX)) / 2, "3"},
                      {INT_MAX, std::chrono::milliseconds(INT_MAX) / 4, "6"}}; // a quarter is cut by 750 us
    for (auto const& row : rows) {
        auto const run = on_terminal([&] {
            advance_clock_by(row.step);
            std::cout << colorize << csi::delay{row.ms};
            report(std::to_string(clock_readings));
        });
        EXPECT_EQ(run.report, row.readings) << row.ms << " ms with a step of " << row.step.count() << " ns";
    }
}

TEST(Delay, WaitsLongerIfTheClockIsSetBack)
{
    auto const run = on_terminal([] {
        std::int64_t const second = 1'000'000'000;
        std::vector<std::int64_t> const times = {5 * second, 5 * second, 2 * second, 5 * second - 1, 5 * second};
        made_up_time = [&](std::int64_t n) { return times.at(static_cast<std::size_t>(n)); };
        clock_readings = 0;
        std::cout << colorize << csi::delay{0};
        report(std::to_string(clock_readings));
    });
    EXPECT_EQ(run.report, "5");
}

TEST(Delay, TakesItsTimeOnATerminal)
{
    auto const run = on_terminal([] {
        std::int64_t const start = real_time();
        std::clog << colorize << csi::delay{20};
        report(std::to_string(real_time() - start));
    });
    EXPECT_GE(std::stoll(run.report), 20'000'000);
}

} // namespace
