/// \file
/// What the tests of hueline-demo share.
#pragma once

#include "support/testing.hpp"

#include <sys/resource.h>

namespace hueline::test {

using Arguments = std::vector<std::string>;

inline std::string const tool = HUELINE_DEMO; // the path of hueline-demo

inline Sinks const on_terminals = {Sink::terminal, Sink::terminal};
inline Sinks const on_pipes = {Sink::pipe, Sink::pipe};

/// In the environment: the waits of the animations, where they are not what a test is about, take no time.
inline std::string const fast_clock = "LD_PRELOAD=" FAST_CLOCK;

inline int const ending_signals[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

/// A process that dies of SIGQUIT leaves no core behind.
inline void forbid_cores()
{
    rlimit const none = {0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

inline bool has_sequences(std::string_view text) { return text.find('\x1b') != text.npos; }

/// For execv(3), as long as the words live.
inline std::vector<char*> pointers_to(Arguments& words)
{
    std::vector<char*> pointers;
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

} // namespace hueline::test
