/// \file
/// The same from many threads.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

/// Calls body(0), body(1)... in so many threads, and waits for all of them.
inline void in_threads(int count, std::function<void(int)> const& body)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < count; ++i) {
        threads.emplace_back(body, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

} // namespace hueline::test
