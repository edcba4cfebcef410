// A hex view as a process: its whole run is timed beside xxd and hexdump.
//     hueline-bench-hexview xxd|hexdump FILE     writes the view of the file to standard output
//     hueline-bench-hexview memory               says what a byte in memory costs, plain and coloured, in nanoseconds
#include <kestry/kit/hexview.hpp>

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <iostream>
#include <random>
#include <span>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>

namespace {

using namespace kestry::kit;

// Takes any text, and does nothing with it.
class Nowhere : public std::streambuf {
    std::streamsize xsputn(char const*, std::streamsize size) override { return size; }
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
};

// The fastest of some runs over eight mebibytes without a pattern.
double nanoseconds_a_byte(hex_options const& options)
{
    std::minstd_rand random;
    std::vector<unsigned char> bytes(8 << 20);
    std::generate(bytes.begin(), bytes.end(), [&random] { return static_cast<unsigned char>(random() >> 8); });
    Nowhere nowhere;
    std::ostream os(&nowhere);
    double best = 1e9;
    for (int run = 0; run != 20; ++run) {
        auto const start = std::chrono::steady_clock::now();
        os << hexdump(std::as_bytes(std::span(bytes)), options);
        std::chrono::duration<double, std::nano> const taken = std::chrono::steady_clock::now() - start;
        best = std::min(best, taken.count());
    }
    return best / static_cast<double>(bytes.size());
}

} // namespace

int main(int argc, char* argv[])
{
    std::string_view const what = argc > 1 ? argv[1] : "";
    if (what == "memory") {
        std::cout << nanoseconds_a_byte({}) << ' ' << nanoseconds_a_byte({.colored = true}) << '\n';
        return 0;
    }
    int const file = argc > 2 ? open(argv[2], O_RDONLY) : -1;
    std::ios_base::sync_with_stdio(false);
    hexdump_file(std::cout, file, {.layout = what == "xxd" ? hex_layout::xxd : hex_layout::hexdump_c});
}
