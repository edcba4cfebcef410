// download: several downloads at once, each with a bar, and lines above them. All of it is made up: no network.
//
//     download [MICROSECONDS]
//
// The argument is the time that 64 KiB take, 2000 if there is none.
#include <kestry/kit/progress.hpp>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

namespace progress = kestry::kit::progress;

struct file {
    std::string name;
    std::uint64_t size;
    std::uint64_t cut_at; // where the connection is lost once, or 0
};

std::array<file, 5> const files = {{
    {"kernel.img", 9 << 20, 0},
    {"initrd.img", 24 << 20, 14 << 20},
    {"modules.tar.zst", 41 << 20, 0},
    {"firmware.bin", 3 << 20, 0},
    {"release-notes.txt", 40 << 10, 0},
}};
std::uint64_t constexpr block = 65536;

// Receives what is missing from a byte on; done is how far it came when it throws.
void receive(progress::multi_progress& group, file const& wanted, std::uint64_t& done, std::uint64_t cut_at,
             std::chrono::microseconds pause)
{
    auto const bar = group.add({.message = wanted.name,
                                .length = wanted.size,
                                .counted = progress::unit::bytes,
                                .start = done,
                                .when_ended = progress::leaving::nothing});
    while (done < wanted.size) {
        if (cut_at != 0 && done >= cut_at) {
            throw std::runtime_error("connection lost"); // the bar is abandoned
        }
        std::this_thread::sleep_for(pause);
        std::uint64_t const received = std::min(block, wanted.size - done);
        done += received;
        bar.inc(received);
    }
}

void download(progress::multi_progress& group, file const& wanted, std::chrono::microseconds pause)
{
    std::uint64_t done = 0;
    try {
        receive(group, wanted, done, wanted.cut_at, pause);
    } catch (std::runtime_error const& problem) {
        group.println(wanted.name + ": " + problem.what() + ", going on from byte " + std::to_string(done));
        receive(group, wanted, done, 0, pause);
    }
    group.println(wanted.name + ": complete");
}

} // namespace

int main(int argc, char* argv[])
{
    std::chrono::microseconds const pause(argc > 1 ? std::strtol(argv[1], nullptr, 10) : 2000);
    progress::wipe_on_signals();
    progress::multi_progress group;
    auto const all = group.add("files", files.size());
    std::atomic<std::size_t> next = 0;
    std::vector<std::thread> workers;
    workers.reserve(3);
    for (int i = 0; i < 3; ++i) {
        workers.emplace_back([&] {
            for (std::size_t mine = next++; mine < files.size(); mine = next++) {
                download(group, files[mine], pause);
                all.inc();
            }
        });
    }
    for (std::thread& worker : workers) {
        worker.join();
    }
}
