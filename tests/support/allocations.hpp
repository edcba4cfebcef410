/// \file
/// Counts what the program allocates, makes memory run out when a test says so, and sees what is written past the end of it.
/// Takes the place of the standard library's operator new in the whole program, the library under test included.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

namespace hueline::test {

struct Allocations {
    std::size_t count = 0;
    std::size_t bytes = 0;    ///< Of all of them together.
    std::size_t overruns = 0; ///< Freed ones of which the 32 bytes behind were written to.
};

inline Allocations allocations;
inline long blocks_in_use = 0;

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

/// What becomes of the allocations that follow.
struct Shortage {
    static constexpr int never = -1;

    int after = never;    ///< How many succeed before one fails.
    bool lasting = false; ///< Whether all fail from then on.
};

inline Shortage shortage;
inline bool ran_short = false; // an allocation has failed

/// Starts a shortage for a scope.
class RunShort {
public:
    explicit RunShort(Shortage wanted)
    {
        ran_short = false;
        shortage = wanted;
    }
    RunShort(RunShort const&) = delete;
    RunShort& operator=(RunShort const&) = delete;
    ~RunShort() { shortage = {}; }
};

/// Whether function, in which no allocation succeeds, ends with std::bad_alloc.
template <class Function>
bool runs_out_of_memory(Function function)
{
    RunShort const none({.after = 0, .lasting = true});
    try {
        function();
    } catch (std::bad_alloc const&) {
        return true;
    } catch (...) {
    }
    return false;
}

inline bool is_refused()
{
    if (shortage.after > 0) {
        --shortage.after;
        return false;
    }
    if (shortage.after == Shortage::never) {
        return false;
    }
    ran_short = true;
    if (!shortage.lasting) {
        shortage = {};
    }
    return true;
}

inline constexpr std::size_t size_room = alignof(std::max_align_t); // before the memory: its size
inline constexpr char behind[] = "behind the memory, 32 bytes end"; // after it

} // namespace hueline::test

// The forms for arrays, and those that do not throw, are the standard library's: they call these.
void* operator new(std::size_t size)
{
    using namespace hueline::test;
    std::size_t const more = size_room + sizeof behind;
    bool const is_too_much = size > static_cast<std::size_t>(-1) / 4;
    char* const all = is_too_much || is_refused() ? nullptr : static_cast<char*>(std::malloc(size + more));
    if (all == nullptr) {
        throw std::bad_alloc{};
    }
    ++allocations.count;
    allocations.bytes += size;
    ++blocks_in_use;
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
    --blocks_in_use;
    char* const all = static_cast<char*>(memory) - size_room;
    std::size_t size = 0;
    std::memcpy(&size, all, sizeof size);
    if (std::memcmp(all + size_room + size, behind, sizeof behind) != 0) {
        ++allocations.overruns;
    }
    std::free(all);
}

void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }
