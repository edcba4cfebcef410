/// \file
/// The system clock of a test program: the real one, or one that the test makes up. It takes the
/// standard library's place in the whole program, the library under test included.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

#include <time.h>

namespace hueline::test {

/// What the clock shows at its nth reading (from 0), in nanoseconds. While it is empty, the clock is
/// right.
inline std::function<std::int64_t(std::int64_t)> made_up_time;

/// How often the clock has been read.
inline std::int64_t clock_readings = 0;

/// Makes up a clock that advances at each reading. It has not been read yet.
inline void advance_clock_by(std::chrono::nanoseconds step)
{
    made_up_time = [step](std::int64_t n) { return n * step.count(); };
    clock_readings = 0;
}

/// Each wait of 25 ms ends when the clock is read for the third time.
inline void let_waits_end_at_once() { advance_clock_by(std::chrono::milliseconds(30)); }

inline std::int64_t real_time()
{
    timespec now = {};
    clock_gettime(CLOCK_REALTIME, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

} // namespace hueline::test

std::chrono::system_clock::time_point std::chrono::system_clock::now() noexcept
{
    using hueline::test::clock_readings;
    using hueline::test::made_up_time;
    std::int64_t const n = clock_readings++;
    return time_point(nanoseconds(made_up_time ? made_up_time(n) : hueline::test::real_time()));
}
