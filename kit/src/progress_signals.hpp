/// \file
/// What a signal handler may know of the rows on the screen.
#ifndef KESTRY_KIT_PROGRESS_SIGNALS_HPP
#define KESTRY_KIT_PROGRESS_SIGNALS_HPP

#include <atomic>

namespace kestry::kit::detail {

/// The descriptor of the terminal that has rows on it, or -1. A handler that wipes them leaves -1.
extern std::atomic<int> rows_on;

/// A handler is at work: nothing is drawn.
extern std::atomic<bool> drawing_halted;

} // namespace kestry::kit::detail

#endif
