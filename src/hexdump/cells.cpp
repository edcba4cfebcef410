#include "hexdump/cells.hpp"

#include "hexdump/digits.hpp"

#include <algorithm>
#include <cstddef>
#include <cstring>

#if defined(__x86_64__)
#include <atomic>

#include <cpuid.h>
#include <immintrin.h>
#endif

namespace kestry::detail {

namespace {

using Bytes = std::span<unsigned char const>;

// The plain form, for cells of any width: what the faster ones must equal.
char* put_wide_cells(char* out, Bytes bytes, std::string_view before, std::string_view after)
{
    for (unsigned char const b : bytes) {
        out = put_text(put_byte(put_text(out, before), b), after);
    }
    return out;
}

// For cells that fit a block: each is stored as a whole block with the digits over it, and the next
// cell, or what follows the dump, overwrites what is too much.
template <std::size_t block>
char* put_narrow_cells(char* out, char const* limit, Bytes bytes, std::string_view before, std::string_view after)
{
    char cell[block] = {};
    put_text(put_text(cell, before) + 2, after);
    std::size_t const width = before.size() + 2 + after.size();

    std::size_t done = 0;
    while (done < bytes.size() && limit - out >= static_cast<std::ptrdiff_t>(block)) {
        std::memcpy(out, cell, block);
        put_byte(out + before.size(), bytes[done]);
        out += width;
        ++done;
    }
    return put_wide_cells(out, bytes.subspan(done), before, after);
}

#if defined(__x86_64__)

// The digits of 16 bytes: those of the first eight in low, of the others in high, in each 128-bit lane.
struct Digits {
    __m256i low;
    __m256i high;
};

template <class... Char>
[[gnu::target("avx2")]] inline __m256i broadcast(Char... sixteen)
{
    return _mm256_broadcastsi128_si256(_mm_setr_epi8(static_cast<char>(sixteen)...));
}

[[gnu::target("avx2")]] inline Digits digits_of(__m256i bytes)
{
    __m256i const table = broadcast('0', '1', '2', '3', '4', '5', '6', '7', '8', '9', 'a', 'b', 'c', 'd', 'e', 'f');
    __m256i const nibble = _mm256_set1_epi8(0x0f);
    __m256i const first = _mm256_shuffle_epi8(table, _mm256_and_si256(_mm256_srli_epi16(bytes, 4), nibble));
    __m256i const second = _mm256_shuffle_epi8(table, _mm256_and_si256(bytes, nibble));
    return {_mm256_unpacklo_epi8(first, second), _mm256_unpackhi_epi8(first, second)};
}

[[gnu::target("avx2")]] inline __m128i load(unsigned char const* sixteen)
{
    return _mm_loadu_si128(reinterpret_cast<__m128i const*>(sixteen));
}

[[gnu::target("avx2")]] inline void store(char* out, __m256i value)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), value);
}

// The upper lane goes to high, the lower to low.
[[gnu::target("avx2")]] inline void store(char* low, char* high, __m256i value)
{
    _mm256_storeu2_m128i(reinterpret_cast<__m128i*>(high), reinterpret_cast<__m128i*>(low), value);
}

// Where a cell has no digit: a shuffle leaves zero there.
char constexpr none = static_cast<char>(0x80);

// The smallest number of bytes that the functions below can dump. Each of them ends with a block that
// starts so much earlier that it is whole: what it writes twice is the same.
std::size_t constexpr smallest_block = 16;

// Each byte as two digits and one character.
[[gnu::target("avx2")]] void put_separated(char* out, Bytes bytes, char separator)
{
    // Each lane turns 16 bytes into 48 characters, three times 16.
    __m256i const take[3] = {
        broadcast(0, 1, none, 2, 3, none, 4, 5, none, 6, 7, none, 8, 9, none, 10),
        broadcast(3, none, 4, 5, none, 6, 7, none, 8, 9, none, 10, 11, none, 12, 13),
        broadcast(none, 6, 7, none, 8, 9, none, 10, 11, none, 12, 13, none, 14, 15, none),
    };
    __m256i between[3];
    for (int i = 0; i < 3; ++i) {
        // A place without a digit is negative: all ones after the comparison.
        between[i] = _mm256_and_si256(_mm256_cmpgt_epi8(_mm256_setzero_si256(), take[i]), _mm256_set1_epi8(separator));
    }

    bool const one_block = bytes.size() < 32;
    std::size_t const last = one_block ? 0 : bytes.size() - 32;
    std::size_t const to_upper = one_block ? bytes.size() - 16 : 16; // from the bytes of the lower lane
    for (std::size_t at = 0;; at = std::min(at + 32, last)) {
        unsigned char const* const in = bytes.data() + at;
        Digits const digits = digits_of(_mm256_set_m128i(load(in + to_upper), load(in)));
        __m256i const middle = _mm256_alignr_epi8(digits.high, digits.low, 8);
        __m256i const a = _mm256_or_si256(_mm256_shuffle_epi8(digits.low, take[0]), between[0]);
        __m256i const b = _mm256_or_si256(_mm256_shuffle_epi8(middle, take[1]), between[1]);
        __m256i const c = _mm256_or_si256(_mm256_shuffle_epi8(digits.high, take[2]), between[2]);
        char* const lower = out + 3 * at;
        if (one_block) {
            char* const upper = lower + 3 * to_upper;
            store(lower, upper, a);
            store(lower + 16, upper + 16, b);
            store(lower + 32, upper + 32, c);
            return;
        }
        store(lower, _mm256_permute2x128_si256(a, b, 0x20));
        store(lower + 32, _mm256_permute2x128_si256(c, a, 0x30));
        store(lower + 64, _mm256_permute2x128_si256(b, c, 0x31));
        if (at == last) {
            return;
        }
    }
}

// Each byte as a cell of eight characters, the digits behind the first five.
[[gnu::target("avx2")]] void put_prefixed(char* out, Bytes bytes, char const (&cell)[8])
{
    long long word = 0;
    std::memcpy(&word, cell, sizeof word);
    __m256i const frame = _mm256_set1_epi64x(word);
    // The digits of four cells, two in each lane; eight characters on, those of the next four.
    char const e = none;
    __m256i const first_four = _mm256_setr_epi8(e, e, e, e, e, 0, 1, e, e, e, e, e, e, 2, 3, e, //
                                                e, e, e, e, e, 4, 5, e, e, e, e, e, e, 6, 7, e);
    __m256i const other_four = _mm256_setr_epi8(e, e, e, e, e, 8, 9, e, e, e, e, e, e, 10, 11, e, //
                                                e, e, e, e, e, 12, 13, e, e, e, e, e, e, 14, 15, e);

    std::size_t const last = bytes.size() - 16;
    for (std::size_t at = 0;; at = std::min(at + 16, last)) {
        Digits const digits = digits_of(_mm256_broadcastsi128_si256(load(bytes.data() + at)));
        char* const to = out + 8 * at;
        store(to, _mm256_or_si256(_mm256_shuffle_epi8(digits.low, first_four), frame));
        store(to + 32, _mm256_or_si256(_mm256_shuffle_epi8(digits.low, other_four), frame));
        store(to + 64, _mm256_or_si256(_mm256_shuffle_epi8(digits.high, first_four), frame));
        store(to + 96, _mm256_or_si256(_mm256_shuffle_epi8(digits.high, other_four), frame));
        if (at == last) {
            return;
        }
    }
}

// Whether the processor has the vectors, and the system keeps them over a change of process. The
// compiler's __builtin_cpu_supports would ask far more, and at the start of every process.
[[gnu::target("xsave")]] bool find_avx2()
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

// Asked once, in the first dump that is long enough: two threads that ask get the same answer.
bool has_avx2()
{
    static std::atomic<char> answer{'?'};
    char known = answer.load(std::memory_order_relaxed);
    if (known == '?') {
        known = find_avx2() ? 'y' : 'n';
        answer.store(known, std::memory_order_relaxed);
    }
    return known == 'y';
}

// What put_vector_cells does. Inline in put_cells: a call would be a tenth of a short dump.
inline bool put_common_cells(char* out, Bytes bytes, std::string_view before, std::string_view after)
{
    if (after.size() != 1 || bytes.size() < smallest_block || !has_avx2()) {
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
    put_text(put_text(cell, before) + 2, after);
    put_prefixed(out, bytes, cell);
    return true;
}

#else

inline bool put_common_cells(char*, Bytes, std::string_view, std::string_view) { return false; }

#endif

} // namespace

bool put_vector_cells(char* out, Bytes bytes, std::string_view before, std::string_view after)
{
    return put_common_cells(out, bytes, before, after);
}

char* put_cells(char* out, char const* limit, Bytes bytes, std::string_view before, std::string_view after)
{
    std::size_t const width = before.size() + 2 + after.size();
    if (put_common_cells(out, bytes, before, after)) {
        return out + bytes.size() * width;
    }
    return put_table_cells(out, limit, bytes, before, after);
}

char* put_table_cells(char* out, char const* limit, Bytes bytes, std::string_view before, std::string_view after)
{
    std::size_t const width = before.size() + 2 + after.size();
    if (width <= 8) {
        return put_narrow_cells<8>(out, limit, bytes, before, after);
    }
    if (width <= 16) {
        return put_narrow_cells<16>(out, limit, bytes, before, after);
    }
    return put_wide_cells(out, bytes, before, after);
}

} // namespace kestry::detail
