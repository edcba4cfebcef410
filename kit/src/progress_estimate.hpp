/// \file
/// How fast something advances, and how long it will take.
#ifndef KESTRY_KIT_PROGRESS_ESTIMATE_HPP
#define KESTRY_KIT_PROGRESS_ESTIMATE_HPP

#include <cstdint>
#include <optional>

namespace kestry::kit::detail {

/// A mean that forgets exponentially, smoothed twice so that no single value moves it. A value counts by its duration.
class moving_average {
public:
    /// Of what is older than horizon, 1/e is left. Seconds.
    void add(double value, double duration, double horizon) noexcept;
    double value() const noexcept;

private:
    // Sums and the weights in them: to divide by these makes the mean right from the first value on.
    double once = 0;
    double once_weight = 0;
    double twice = 0;
    double twice_weight = 0;
};

/// Watches a position. Time is in seconds, never goes back, and leaves out what the process was stopped for.
class progress_estimate {
public:
    progress_estimate(double now, std::uint64_t position) noexcept;

    /// Looks at the position; one that went back counts as the new start.
    void sample(double now, std::uint64_t position) noexcept;

    /// Units a second, or nothing before the first step.
    std::optional<double> rate(double now) const noexcept;

    /// Seconds to go, or nothing before the first step and in a stall.
    std::optional<double> left(double now, std::uint64_t position, std::uint64_t length) const noexcept;

    double elapsed(double now) const noexcept { return now - begun; }

private:
    bool stalls(double now) const noexcept;

    moving_average recent; // what rate shows
    moving_average pace;   // what left goes by: the longer it runs, the further it looks back
    double begun;
    double changed; // when the position was last seen to move
    double longest_wait = 0;
    std::uint64_t last;
    bool moved = false;
};

} // namespace kestry::kit::detail

#endif
