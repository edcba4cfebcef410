#include "progress_estimate.hpp"

#include "support/testing.hpp"

#include <cmath>

namespace {

using kestry::kit::detail::moving_average;
using kestry::kit::detail::progress_estimate;

double constexpr frame = 1.0 / 12; // seconds

// Looks at a position, which is a function of time, at each frame.
void watch(progress_estimate& estimate, double from, double to, std::function<double(double)> const& position)
{
    for (int i = 1; from + i * frame <= to + 1e-9; ++i) {
        double const now = from + i * frame;
        estimate.sample(now, static_cast<std::uint64_t>(position(now)));
    }
}

TEST(MovingAverage, IsRightFromTheFirstValueOn)
{
    moving_average mean;
    EXPECT_EQ(mean.value(), 0);
    mean.add(7, 0.1, 10);
    EXPECT_DOUBLE_EQ(mean.value(), 7);
    mean.add(7, 100, 10);
    EXPECT_DOUBLE_EQ(mean.value(), 7);
}

TEST(MovingAverage, WeighsAValueByItsDuration)
{
    moving_average halves;
    halves.add(1, 1, 10);
    halves.add(3, 0.5, 10);
    halves.add(3, 0.5, 10);
    moving_average longer;
    longer.add(1, 1, 10);
    longer.add(3, 10, 10);
    EXPECT_LT(halves.value(), 2);
    EXPECT_GT(longer.value(), 2);
}

TEST(MovingAverage, ForgetsInItsHorizon)
{
    moving_average mean;
    mean.add(1, 100, 10);
    mean.add(0, 10, 10);
    // Once smoothed, 1/e is left; twice, half of the way less: e^-1 + (1 - e^-1) e^-1.
    EXPECT_NEAR(mean.value(), std::exp(-1) + (1 - std::exp(-1)) * std::exp(-1), 1e-4);
}

TEST(Estimate, KnowsNothingBeforeTheFirstStep)
{
    progress_estimate estimate(100, 5);
    estimate.sample(101, 5);
    EXPECT_EQ(estimate.rate(101), std::nullopt);
    EXPECT_EQ(estimate.left(101, 5, 10), std::nullopt);
    EXPECT_EQ(estimate.elapsed(101), 1);
}

TEST(Estimate, IsWithin2PercentOfAConstantRateAfter3Seconds)
{
    for (double const rate : {200.0, 1e6, 1e15}) {
        progress_estimate estimate(0, 0);
        auto const length = static_cast<std::uint64_t>(rate * 100);
        double position = 0;
        for (int i = 1; i * frame < 50; ++i) {
            double const now = i * frame;
            position = rate * now;
            estimate.sample(now, static_cast<std::uint64_t>(position));
            if (now >= 3) {
                ASSERT_NEAR(*estimate.rate(now), rate, rate * 0.02) << now;
                double const left = 100 - now;
                ASSERT_NEAR(*estimate.left(now, static_cast<std::uint64_t>(position), length), left, left * 0.02);
            }
        }
    }
}

// One second at ten times the speed of the next; and all the work of ten seconds in one.
TEST(Estimate, MovesTheTimeLeftByLessThanAFifthThroughBursts)
{
    double constexpr second = 1000;
    auto const alternating = [](double now) {
        double const pairs = std::floor(now / 2);
        double const rest = now - 2 * pairs;
        return second * (11 * pairs + (rest < 1 ? 10 * rest : 10 + (rest - 1)));
    };
    auto const seldom = [](double now) {
        double const whole = std::floor(now / 10);
        return second * 10 * (whole + std::min(now - 10 * whole, 1.0));
    };
    struct Trace {
        std::function<double(double)> position;
        double mean;
        double from; // seconds
    };
    for (Trace const& trace : {Trace{alternating, 5.5 * second, 6}, Trace{seldom, second, 30}}) {
        progress_estimate estimate(0, 0);
        auto const length = static_cast<std::uint64_t>(trace.mean * 600);
        for (int i = 1; i * frame < 300; ++i) {
            double const now = i * frame;
            auto const position = static_cast<std::uint64_t>(trace.position(now));
            estimate.sample(now, position);
            if (now >= trace.from) {
                double const left = 600 - now;
                std::optional<double> const said = estimate.left(now, position, length);
                ASSERT_TRUE(said.has_value()) << now;
                ASSERT_NEAR(*said, left, left / 5) << now;
            }
        }
    }
}

TEST(Estimate, FollowsARateThatChanged)
{
    progress_estimate estimate(0, 0);
    watch(estimate, 0, 60, [](double now) { return 1000 * now; });
    watch(estimate, 60, 100, [](double now) { return 60000 + 100 * (now - 60); });
    EXPECT_NEAR(*estimate.rate(100), 100, 20);
}

TEST(Estimate, SaysNothingInAStallAndGoesOnAfterIt)
{
    progress_estimate estimate(0, 0);
    watch(estimate, 0, 20, [](double now) { return 100 * now; });
    EXPECT_NE(estimate.left(24.9, 2000, 10000), std::nullopt);
    EXPECT_EQ(estimate.left(25.1, 2000, 10000), std::nullopt);
    EXPECT_EQ(estimate.rate(25.1), 0);
    estimate.sample(30, 2010);
    EXPECT_NE(estimate.left(30, 2010, 10000), std::nullopt);
    EXPECT_GT(*estimate.rate(30), 0);
}

TEST(Estimate, TakesLongStepsForNoStallOnceItHasSeenOne)
{
    progress_estimate estimate(0, 0);
    for (int step = 1; step <= 5; ++step) {
        estimate.sample(30 * step, static_cast<std::uint64_t>(step));
    }
    EXPECT_NEAR(*estimate.left(150, 5, 10), 150, 1);
    EXPECT_NEAR(*estimate.left(170, 5, 10), 130, 1); // it counts down while a step lasts
    EXPECT_NEAR(*estimate.left(209, 5, 10), 91, 1);
    EXPECT_EQ(estimate.left(211, 5, 10), std::nullopt);
}

TEST(Estimate, LeavesTheStartOutOfTheRate)
{
    progress_estimate estimate(0, 1'000'000);
    watch(estimate, 0, 10, [](double now) { return 1'000'000 + 100 * now; });
    EXPECT_NEAR(*estimate.rate(10), 100, 2);
    EXPECT_NEAR(*estimate.left(10, 1'001'000, 1'002'000), 10, 0.2);
}

TEST(Estimate, TakesAPositionThatWentBackForANewStart)
{
    progress_estimate estimate(0, 0);
    watch(estimate, 0, 10, [](double now) { return 100 * now; });
    estimate.sample(10.1, 50);
    EXPECT_NEAR(*estimate.rate(10.1), 100, 2);
    estimate.sample(10.2, 60);
    EXPECT_NEAR(*estimate.rate(10.2), 100, 5);
}

TEST(Estimate, OverflowsNowhere)
{
    std::uint64_t constexpr most = std::numeric_limits<std::uint64_t>::max();
    progress_estimate estimate(0, 0);
    estimate.sample(1, most - 1);
    EXPECT_NEAR(*estimate.rate(1), 18446744073709551615.0, 1e6);
    EXPECT_EQ(estimate.left(1, most, 5), 0); // past its end
    progress_estimate slow(0, 0);
    slow.sample(4, 1);
    EXPECT_NEAR(*slow.left(4, 1, most), 4 * 18446744073709551615.0, 1e7);
    slow.sample(4, 2); // no time has gone
    EXPECT_NEAR(*slow.rate(4), 0.25, 1e-9);
}

} // namespace
