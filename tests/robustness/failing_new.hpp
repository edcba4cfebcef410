/// \file
/// Memory that runs out when a test says so, in the whole program, the library under test included:
/// takes the place of the standard library's operator new. Also tells how many blocks are in use.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <new>

namespace hueline::test {

/// What becomes of the allocations that follow.
struct Shortage {
    static constexpr int never = -1;

    int after = never;    ///< How many succeed before one fails.
    bool lasting = false; ///< Whether all fail from then on.
};

inline Shortage shortage;
inline bool ran_short = false; // an allocation has failed
inline long blocks_in_use = 0;

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

inline void* allocate(std::size_t size) noexcept
{
    if (shortage.after == 0) {
        ran_short = true;
        if (!shortage.lasting) {
            shortage.after = Shortage::never;
        }
        return nullptr;
    }
    if (shortage.after > 0) {
        --shortage.after;
    }
    void* const memory = std::malloc(size == 0 ? 1 : size);
    blocks_in_use += memory != nullptr ? 1 : 0;
    return memory;
}

inline void* allocate_or_throw(std::size_t size)
{
    void* const memory = allocate(size);
    if (memory == nullptr) {
        throw std::bad_alloc{};
    }
    return memory;
}

inline void release(void* memory) noexcept
{
    blocks_in_use -= memory != nullptr ? 1 : 0;
    std::free(memory);
}

} // namespace hueline::test

// clang-format off
void* operator new  (std::size_t size)                                 { return hueline::test::allocate_or_throw(size); }
void* operator new[](std::size_t size)                                 { return hueline::test::allocate_or_throw(size); }
void* operator new  (std::size_t size, std::nothrow_t const&) noexcept { return hueline::test::allocate(size); }
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept { return hueline::test::allocate(size); }
void operator delete  (void* memory) noexcept                          { hueline::test::release(memory); }
void operator delete[](void* memory) noexcept                          { hueline::test::release(memory); }
void operator delete  (void* memory, std::size_t) noexcept             { hueline::test::release(memory); }
void operator delete[](void* memory, std::size_t) noexcept             { hueline::test::release(memory); }
void operator delete  (void* memory, std::nothrow_t const&) noexcept   { hueline::test::release(memory); }
void operator delete[](void* memory, std::nothrow_t const&) noexcept   { hueline::test::release(memory); }
// clang-format on
