#include "kestry/kit/progress.hpp"

#include "workload.hpp"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <numeric>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace hueline::bench {

namespace {

namespace progress = kestry::kit::progress;
using namespace std::chrono_literals;

// Takes everything, and counts it; time passes as it is told to.
class Sink final : public progress::draw_target {
public:
    std::chrono::steady_clock::time_point now() override { return time; }
    extent size() override { return {80, 60}; }
    bool takes_a_frame() override { return true; }
    bool in_foreground() override { return true; }
    bool write(std::string_view bytes) override
    {
        written += bytes.size();
        return true;
    }

    std::chrono::steady_clock::time_point time = {};
    std::size_t written = 0;
};

struct Bars {
    explicit Bars(progress::options const& how, int count) : group(how)
    {
        for (int i = 0; i < count; ++i) {
            bars.push_back(group.add("file " + std::to_string(i), 1'000'000, progress::unit::bytes));
        }
    }

    progress::multi_progress group;
    std::vector<progress::bar> bars;
};

std::shared_ptr<Sink> sink;
std::unique_ptr<Bars> shown;
std::atomic<std::uint64_t> bare = 0;

void show(int count, progress::mode mode)
{
    shown.reset();
    sink = std::make_shared<Sink>();
    progress::options const how = {.shown = mode, .drawn_by = progress::drawing::caller, .target = sink};
    shown = std::make_unique<Bars>(how, count);
    sink->time += 1s;
    shown->group.tick();
}

void one_bar() { show(1, progress::mode::live); }
void no_bar() { show(1, progress::mode::off); }
void ten_bars() { show(10, progress::mode::live); }

void advance() { shown->bars.front().inc(); }
void add_bare() { bare.fetch_add(1, std::memory_order_relaxed); }

// The time of a thread's start is in both.
template <auto step>
void from_two_threads()
{
    auto const steps = [] {
        for (int i = 0; i < 1'000'000; ++i) {
            step();
        }
    };
    std::thread other(steps);
    steps();
    other.join();
}

// Each bar has moved, and a twelfth of a second has passed.
void frame()
{
    for (progress::bar const& bar : shown->bars) {
        bar.inc(997);
    }
    sink->time += 100ms;
    shown->group.tick();
}

std::vector<std::uint64_t> steps(100'000);

// A step takes some tens of nanoseconds.
std::uint64_t work(std::uint64_t seed)
{
    for (int i = 0; i < 30; ++i) {
        seed = seed * 6364136223846793005U + 1442695040888963407U;
    }
    return seed;
}

void loop_with_bar()
{
    for (std::uint64_t& step :
         progress::track(steps, "steps", {.drawn_by = progress::drawing::caller, .target = sink})) {
        step = work(step);
    }
}

void loop_without_bar()
{
    for (std::uint64_t& step : steps) {
        step = work(step);
    }
}

} // namespace

Workloads kit_progress()
{
    return {
        {"bar advanced", one_bar, run<advance>, {{"a relaxed addition", run<add_bare>, 1.2}}},
        {"bar advanced from two threads",
         one_bar,
         run<from_two_threads<advance>>,
         {{"a relaxed addition", run<from_two_threads<add_bare>>, 1.2}}},
        {"bar advanced that does not show", no_bar, run<advance>, {{"a relaxed addition", run<add_bare>, 1}}},
        {"frame of ten bars", ten_bars, run<frame>, {}},
        {"loop of 100,000 steps with a bar", one_bar, run<loop_with_bar>, {{"the loop", run<loop_without_bar>, 1.02}}},
    };
}

} // namespace hueline::bench
