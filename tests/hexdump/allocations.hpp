/// \file
/// Counts what the program allocates, refuses it on demand, and sees what is written past the end of
/// it. Takes the place of the standard library's operator new, for the library under test too.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <utility>

namespace hueline::test {

struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;    ///< Of all of them together.
    std::size_t overruns = 0; ///< Freed ones of which the 32 bytes behind were written to.
    bool refused = false;     ///< Whether an allocation throws std::bad_alloc.
};

inline Allocations allocations;

/// What function allocates.
template <class Function>
Allocations allocations_of(Function function)
{
    Allocations const before = allocations;
    function();
    Allocations made = allocations;
    made.count -= before.count;
    made.bytes -= before.bytes;
    made.overruns -= before.overruns;
    return made;
}

/// Whether function, in which no allocation succeeds, ends with std::bad_alloc.
template <class Function>
bool runs_out_of_memory(Function function)
{
    allocations.refused = true;
    try {
        function();
    } catch (std::bad_alloc const&) {
        allocations.refused = false;
        return true;
    } catch (...) {
    }
    allocations.refused = false;
    return false;
}

inline constexpr std::size_t size_room = alignof(std::max_align_t); // before the memory: its size
inline constexpr char behind[] = "behind the memory, 32 bytes end"; // after it

} // namespace hueline::test

void* operator new(std::size_t size)
{
    using namespace hueline::test;
    std::size_t const more = size_room + sizeof behind;
    if (allocations.refused || size > static_cast<std::size_t>(-1) / 4) {
        throw std::bad_alloc{};
    }
    char* const all = static_cast<char*>(std::malloc(size + more));
    if (all == nullptr) {
        throw std::bad_alloc{};
    }
    ++allocations.count;
    allocations.bytes += size;
    std::memcpy(all, &size, sizeof size);
    std::memcpy(all + size_room + size, behind, sizeof behind);
    return all + size_room;
}

void operator delete(void* memory) noexcept
{
    using namespace hueline::test;
    if (memory == nullptr) {
        return;
    }
    char* const all = static_cast<char*>(memory) - size_room;
    std::size_t size = 0;
    std::memcpy(&size, all, sizeof size);
    if (std::memcmp(all + size_room + size, behind, sizeof behind) != 0) {
        ++allocations.overruns;
    }
    std::free(all);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
