/// \file
/// How a topic describes its workloads: what the library does, what it is measured against, and how
/// much of the other's time it may take.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <limits>
#include <string>
#include <type_traits>
#include <vector>

namespace hueline::bench {

/// Calls function once and keeps the compiler from dropping what it returns.
template <auto function>
void call()
{
    if constexpr (std::is_void_v<decltype(function())>) {
        function();
    } else {
        auto const& result = function();
        benchmark::DoNotOptimize(result);
    }
}

/// One function in a loop and on its own, each with the function inlined: a call through a pointer in
/// the loop would cost as much as the smallest workloads.
struct Run {
    void (*timed)(benchmark::State& state);
    void (*once)();
};

template <auto function>
constexpr Run run{
    [](benchmark::State& state) {
        for ([[maybe_unused]] auto _ : state) {
            call<function>();
        }
    },
    call<function>,
};

inline constexpr double no_limit = std::numeric_limits<double>::infinity();

/// What a workload is measured against: another library, or the floor, which is the system calls,
/// insertions and copies that the result needs and nothing more.
struct Peer {
    std::string name;
    Run run;
    double at_most = no_limit; ///< of the peer's time
};

struct Workload {
    std::string name;
    std::function<void()> prepare; ///< Before each measurement of ours and of every peer, not measured.
    Run ours;
    std::vector<Peer> peers;
    int repetitions = 0; ///< Where one takes long; 0: as many as the command line says.
};

using Workloads = std::vector<Workload>;

// One function a topic, in the source file of its name; growth is the plain dump's.
Workloads styled_line();
Workloads colored_text();
Workloads true_color_stream();
Workloads true_color_classic();
Workloads plain_dump();
Workloads colored_dump();
Workloads indicators();
Workloads kit_line();
Workloads kit_style();
Workloads kit_text();
Workloads kit_progress();
Workloads growth();

} // namespace hueline::bench
