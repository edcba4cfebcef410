/// \file
/// Measures every workload against its peers: times with Google Benchmark, or instructions with
///
///     valgrind --tool=callgrind hueline-bench --count-instructions [part of a name]...
#include "output.hpp"
#include "workload.hpp"

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include <malloc.h>

namespace hueline::bench {

namespace {

// Calls visit(name, workload, run, at_most) for the library's side of each workload and each peer's.
template <class Visit>
void for_each_run(std::string const& section, Workloads const& workloads, Visit visit)
{
    for (Workload const& workload : workloads) {
        std::string const prefix = section + "/" + workload.name + "/";
        visit(prefix + "hueline", workload, workload.ours, no_limit);
        for (Peer const& peer : workload.peers) {
            visit(prefix + peer.name, workload, peer.run, peer.at_most);
        }
    }
}

template <class Visit>
void for_each_run(Visit visit)
{
    for (auto const topic : {styled_line, colored_text, true_color_stream, true_color_classic, plain_dump, colored_dump,
                             indicators, kit_line, kit_style, kit_text, kit_progress}) {
        for_each_run("workload", topic(), visit);
    }
    for_each_run("growth", growth(), visit);
}

void register_benchmark(std::string const& name, Workload const& workload, Run const& run, double at_most)
{
    auto const body = [run, at_most, prepare = workload.prepare](benchmark::State& state) {
        prepare();
        run.timed(state);
        if (at_most != no_limit) {
            state.counters["at_most"] = at_most;
        }
    };
    auto* const registered = benchmark::RegisterBenchmark(name.c_str(), body);
    if (workload.repetitions != 0) {
        registered->Repetitions(workload.repetitions)->Iterations(1);
    }
}

// Writes a profile of one call, with the name as its trigger.
void count_instructions(std::string const& name, Workload const& workload, Run const& run)
{
    workload.prepare();
    if (workload.repetitions == 0) {
        run.once(); // what only the first call does is not counted
    }
    CALLGRIND_ZERO_STATS;
    run.once();
    CALLGRIND_DUMP_STATS_AT(name.c_str());
}

void nothing() {}

void count_instructions(std::vector<std::string_view> const& wanted)
{
    // What the counting itself costs, to be taken off the others.
    count_instructions("overhead", {"", nothing, run<nothing>, {}}, run<nothing>);
    for_each_run([&wanted](std::string const& name, Workload const& workload, Run const& run, double) {
        auto const names_it = [&name](std::string_view part) { return name.find(part) != std::string::npos; };
        if (wanted.empty() || std::any_of(wanted.begin(), wanted.end(), names_it)) {
            count_instructions(name, workload, run);
        }
    });
}

// Whether the C library returns freed memory at once, and has to fetch every page of it again, would
// otherwise depend on what happened to run before. Up to 32 MiB it is kept, beyond that always fresh.
void keep_memory()
{
    mallopt(M_MMAP_THRESHOLD, 32 * 1024 * 1024);
    mallopt(M_TRIM_THRESHOLD, 1024 * 1024 * 1024);
}

void measure_times(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    for_each_run(register_benchmark);

    // std::cout drops everything, and a workload gives standard error to another.
    std::ofstream console{"/dev/stderr", std::ios::app};
    benchmark::ConsoleReporter progress{benchmark::ConsoleReporter::OO_Tabular};
    progress.SetOutputStream(&console);
    benchmark::RunSpecifiedBenchmarks(&progress);
}

} // namespace

} // namespace hueline::bench

int main(int argc, char** argv)
{
    using namespace hueline::bench;

    keep_memory();
    discard_cout();
    if (argc > 1 && std::string_view{argv[1]} == "--count-instructions") {
        count_instructions({argv + 2, argv + argc});
    } else {
        measure_times(argc, argv);
    }
}
