/// \file
/// The clocks of a test program: the real ones, or what the test makes up. They take the standard library's place in the
/// whole program, the library under test included.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>

#include <signal.h>
#include <time.h>

namespace hueline::test {

/// What the system clock shows at its nth reading (from 0), in nanoseconds. While it is empty, the clock is
/// right.
inline std::function<std::int64_t(std::int64_t)> made_up_time;

/// How often the system clock has been read.
inline std::int64_t clock_readings = 0;

/// Makes up a system clock that advances at each reading. It has not been read yet.
inline void advance_clock_by(std::chrono::nanoseconds step)
{
    made_up_time = [step](std::int64_t n) { return n * step.count(); };
    clock_readings = 0;
}

/// Each wait of 25 ms ends when the clock is read for the third time.
inline void let_waits_end_at_once() { advance_clock_by(std::chrono::milliseconds(30)); }

/// What the steady clock shows for good, once it stands.
inline std::optional<std::chrono::steady_clock::time_point> standing_time;

/// From here on no steady time passes. Whoever waits for it waits for good.
inline void stop_steady_clock() { standing_time = std::chrono::steady_clock::now(); }

/// Whether this is a handler of SIGALRM: libFuzzer looks at the clock in its own, in the middle of anything.
inline bool is_in_alarm()
{
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    return sigismember(&blocked, SIGALRM) == 1;
}

inline std::int64_t real_time(clockid_t clock = CLOCK_REALTIME)
{
    timespec now = {};
    clock_gettime(clock, &now);
    return std::int64_t{now.tv_sec} * 1'000'000'000 + now.tv_nsec;
}

} // namespace hueline::test

std::chrono::system_clock::time_point std::chrono::system_clock::now() noexcept
{
    using hueline::test::clock_readings;
    using hueline::test::made_up_time;
    std::int64_t const n = hueline::test::is_in_alarm() ? -1 : clock_readings++;
    return time_point(nanoseconds(n >= 0 && made_up_time ? made_up_time(n) : hueline::test::real_time()));
}

std::chrono::steady_clock::time_point std::chrono::steady_clock::now() noexcept
{
    using hueline::test::standing_time;
    return standing_time ? *standing_time : time_point(nanoseconds(hueline::test::real_time(CLOCK_MONOTONIC)));
}
