#include "progress_estimate.hpp"

#include <algorithm>
#include <cmath>

namespace kestry::kit::detail {

namespace {

// Seconds.
double constexpr rate_horizon = 6.5; // a tenth is left after 15 s
double constexpr shortest_horizon = 3;
double constexpr longest_horizon = 120;
double constexpr shortest_stall = 5;

} // namespace

void moving_average::add(double value, double duration, double horizon) noexcept
{
    double const keep = std::exp(-duration / horizon);
    once = once * keep + value * (1 - keep);
    once_weight = once_weight * keep + (1 - keep);
    if (once_weight > 0) {
        twice = twice * keep + once / once_weight * (1 - keep);
        twice_weight = twice_weight * keep + (1 - keep);
    }
}

double moving_average::value() const noexcept { return twice_weight > 0 ? twice / twice_weight : 0; }

progress_estimate::progress_estimate(double now, std::uint64_t position) noexcept
    : begun(now), changed(now), last(position)
{}

void progress_estimate::sample(double now, std::uint64_t position) noexcept
{
    if (position < last) {
        last = position;
        return;
    }
    double const wait = now - changed;
    if (position == last || wait <= 0) {
        return; // a step that takes long is measured when it is done
    }
    double const speed = static_cast<double>(position - last) / wait;
    recent.add(speed, wait, rate_horizon);
    pace.add(speed, wait, std::clamp((now - begun) / 2, shortest_horizon, longest_horizon));
    longest_wait = std::max(longest_wait, wait);
    changed = now;
    last = position;
    moved = true;
}

// A wait that is much longer than any before.
bool progress_estimate::stalls(double now) const noexcept
{
    return now - changed > std::max(shortest_stall, 2 * longest_wait);
}

std::optional<double> progress_estimate::rate(double now) const noexcept
{
    if (!moved) {
        return std::nullopt;
    }
    return stalls(now) ? 0 : recent.value();
}

std::optional<double> progress_estimate::left(double now, std::uint64_t position, std::uint64_t length) const noexcept
{
    if (!moved || stalls(now) || !(pace.value() > 0)) {
        return std::nullopt;
    }
    double const rest = position < length ? static_cast<double>(length - position) : 0;
    return std::max(rest / pace.value() - (now - changed), 0.0); // it goes on while a step lasts
}

} // namespace kestry::kit::detail
