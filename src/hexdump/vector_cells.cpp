#include "hexdump/vector_cells.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

// The compilers' own vectors, as wide as the processor has them.
#if defined(__x86_64__)
#include <cpuid.h>
#include <immintrin.h>
#define IN_VECTORS [[gnu::target("avx2")]]
#elif defined(__aarch64__)
#define IN_VECTORS
#endif

namespace kestry::detail {

using Bytes = std::span<unsigned char const>;

#ifndef IN_VECTORS

bool put_vector_cells(char* /*out*/, Bytes /*bytes*/, std::string_view /*before*/, std::string_view /*after*/)
{
    return false;
}

#else

namespace {

std::size_t constexpr lane = 16;
#ifdef __x86_64__
std::size_t constexpr block = 2 * lane;
#else
std::size_t constexpr block = lane;
#endif

using Vector [[gnu::vector_size(block)]] = signed char; // signed numbers are compared in one instruction
using Unsigned [[gnu::vector_size(block)]] = unsigned char;

// Where each character of a lane comes from: 0 to 15 is a place in the same lane of the first vector, 16 to
// 31 one of the second. Within a lane, a shuffle is one instruction.
struct Places {
    int of[lane];
};

constexpr int place_in_vectors(Places const& places, std::size_t i)
{
    auto const from = static_cast<std::size_t>(places.of[i % lane]);
    std::size_t const first_of_lane = i - i % lane;
    return static_cast<int>(from < lane ? first_of_lane + from : block + first_of_lane + from - lane);
}

template <Places places, std::size_t... i>
IN_VECTORS inline Vector shuffle(Vector const& a, Vector const& b, std::index_sequence<i...> /*of a vector*/)
{
    return __builtin_shufflevector(a, b, place_in_vectors(places, i)...);
}

template <Places places>
IN_VECTORS inline Vector shuffle(Vector const& a, Vector const& b)
{
    return shuffle<places>(a, b, std::make_index_sequence<block>{});
}

// Stores the lanes of a vector so many characters apart.
template <std::size_t distance>
IN_VECTORS inline void store(char* out, Vector const& lanes)
{
    for (std::size_t i = 0; i != block / lane; ++i) {
        std::memcpy(out + i * distance, reinterpret_cast<char const*>(&lanes) + i * lane, lane);
    }
}

// The digits of a block: in each lane, those of its first eight bytes and those of its other eight.
struct Digits {
    Vector low = {};
    Vector high = {};
};

// clang-format off
IN_VECTORS inline void find_digits(Digits& digits, unsigned char const* bytes)
{
    Unsigned in;
    std::memcpy(&in, bytes, block);
    auto first = reinterpret_cast<Vector>(in >> 4);
    auto second = reinterpret_cast<Vector>(in & 15);
    first += '0' + ((first > 9) & ('a' - '9' - 1));
    second += '0' + ((second > 9) & ('a' - '9' - 1));
    digits.low  = shuffle<Places{0, 16,  1, 17,  2, 18,  3, 19,  4, 20,  5, 21,  6, 22,  7, 23}>(first, second);
    digits.high = shuffle<Places{8, 24,  9, 25, 10, 26, 11, 27, 12, 28, 13, 29, 14, 30, 15, 31}>(first, second);
}

// Each byte as two digits and one character. A lane of bytes becomes three of text:
//
//     00.11.22.33.44.5   5.66.77.88.99.aa   .bb.cc.dd.ee.ff.
IN_VECTORS void put_separated(char* out, Bytes bytes, char separator)
{
    Vector const dots = Vector{} + static_cast<signed char>(separator);
    // The last block overlaps the one before it, so that it is whole: there the same is written twice.
    std::size_t const last = bytes.size() - block;
    for (std::size_t at = 0;; at = std::min(at + block, last)) {
        Digits digits;
        find_digits(digits, bytes.data() + at);
        Vector const middle = shuffle<Places{8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23}>(digits.low, digits.high);
        Vector const a = shuffle<Places{ 0, 1, 16, 2, 3, 16, 4, 5, 16, 6, 7, 16, 8, 9, 16, 10}>(digits.low, dots);
        Vector const b = shuffle<Places{ 3, 16, 4, 5, 16, 6, 7, 16, 8, 9, 16, 10, 11, 16, 12, 13}>(middle, dots);
        Vector const c = shuffle<Places{16, 6, 7, 16, 8, 9, 16, 10, 11, 16, 12, 13, 16, 14, 15, 16}>(digits.high, dots);
        char* const to = out + 3 * at;
        store<3 * lane>(to, a);
        store<3 * lane>(to + lane, b);
        store<3 * lane>(to + 2 * lane, c);
        if (at == last) {
            return;
        }
    }
}

// Two cells of each lane, with the digits from place d on.
template <int d>
IN_VECTORS inline Vector two_cells(Vector const& cells, Vector const& digits)
{
    return shuffle<Places{0, 1, 2, 3, 4, 16 + d, 17 + d, 7, 8, 9, 10, 11, 12, 18 + d, 19 + d, 15}>(cells, digits);
}
// clang-format on

// Each byte as a cell of eight characters, the sixth and seventh its digits. A lane of bytes becomes
// eight of text.
IN_VECTORS void put_prefixed(char* out, Bytes bytes, char const (&cell)[8])
{
    Vector cells;
    for (std::size_t i = 0; i != block; i += sizeof cell) {
        std::memcpy(reinterpret_cast<char*>(&cells) + i, cell, sizeof cell);
    }
    std::size_t const last = bytes.size() - block;
    for (std::size_t at = 0;; at = std::min(at + block, last)) {
        Digits digits;
        find_digits(digits, bytes.data() + at);
        char* const to = out + 8 * at;
        store<8 * lane>(to, two_cells<0>(cells, digits.low));
        store<8 * lane>(to + lane, two_cells<4>(cells, digits.low));
        store<8 * lane>(to + 2 * lane, two_cells<8>(cells, digits.low));
        store<8 * lane>(to + 3 * lane, two_cells<12>(cells, digits.low));
        store<8 * lane>(to + 4 * lane, two_cells<0>(cells, digits.high));
        store<8 * lane>(to + 5 * lane, two_cells<4>(cells, digits.high));
        store<8 * lane>(to + 6 * lane, two_cells<8>(cells, digits.high));
        store<8 * lane>(to + 7 * lane, two_cells<12>(cells, digits.high));
        if (at == last) {
            return;
        }
    }
}

#ifdef __x86_64__
// Whether the processor has the vectors, and the system keeps them when it switches between processes. The
// compiler's __builtin_cpu_supports would ask far more, and at the start of every process.
[[gnu::target("xsave")]] bool find_vectors()
{
    unsigned a = 0;
    unsigned b = 0;
    unsigned c = 0;
    unsigned d = 0;
    unsigned const sse_and_avx_state = 6;
    return __get_cpuid(1, &a, &b, &c, &d) != 0 && (c & bit_OSXSAVE) != 0 &&
           (_xgetbv(0) & sse_and_avx_state) == sse_and_avx_state && __get_cpuid_count(7, 0, &a, &b, &c, &d) != 0 &&
           (b & bit_AVX2) != 0;
}
#else
bool find_vectors() { return true; }
#endif

} // namespace

bool put_vector_cells(char* out, Bytes bytes, std::string_view before, std::string_view after)
{
    if (after.size() != 1 || bytes.size() < block) {
        return false;
    }
    static bool const has_vectors = find_vectors(); // asked in the first dump that is long enough
    if (!has_vectors) {
        return false;
    }
    if (before.empty()) {
        put_separated(out, bytes, after[0]);
        return true;
    }
    if (before.size() != 5) {
        return false;
    }
    char cell[8] = {};
    before.copy(cell, before.size());
    cell[7] = after[0];
    put_prefixed(out, bytes, cell);
    return true;
}

#endif

} // namespace kestry::detail
