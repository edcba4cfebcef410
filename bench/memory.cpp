/// \file
/// Measures one long dump of 64 MiB in a fresh process: writes the bytes of its input, of its output,
/// of the memory that the process took for both, and how often the dump asked for memory.
#include "kestry/hueline_stream.hpp"

#include <cstddef>
#include <cstdlib>
#include <iostream>
#include <new>

#include <sys/resource.h>

namespace {

long allocations = 0;

// The most memory that the process has had at one time.
long peak_bytes()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss * 1024;
}

} // namespace

// The library's allocations come here too.
void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc{};
}

void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

int main()
{
    using kestry::Hueline::HexDump;

    long const peak_before = peak_bytes();
    std::vector<unsigned char> const input(std::size_t{64} * 1024 * 1024, 'x');
    HexDump::_longDumps = true;

    long const allocations_before = allocations;
    std::string const output = HexDump::raw_data(input);
    long const made = allocations - allocations_before;

    std::cout << input.size() << ' ' << output.size() << ' ' << peak_bytes() - peak_before << ' ' << made << '\n';
}
