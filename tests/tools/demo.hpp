/// \file
/// What the tests of hueline-demo share.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

using Arguments = std::vector<std::string>;

inline std::string const tool = HUELINE_DEMO; // the path of hueline-demo

/// In the environment: the waits of the animations, where they are not what a test is about, take no time.
inline std::string const fast_clock = "LD_PRELOAD=" FAST_CLOCK;

inline int const ending_signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

inline bool has_sequences(std::string_view text) { return text.find('\x1b') != text.npos; }

} // namespace hueline::test
