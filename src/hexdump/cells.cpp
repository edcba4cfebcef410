#include "hexdump/cells.hpp"

#include "hexdump/digits.hpp"

#include <cstddef>
#include <cstring>

#if defined(__x86_64__)
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

[[gnu::target("avx2")]] inline void store(char* out, __m256i value)
{
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(out), value);
}

// Where a cell has no digit: a shuffle leaves zero there.
char constexpr none = static_cast<char>(0x80);

// Whole blocks of 32 bytes as two digits and one character. Returns how many bytes were done.
[[gnu::target("avx2")]] std::size_t put_separated(char* out, Bytes bytes, char separator)
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

    std::size_t done = 0;
    for (; bytes.size() - done >= 32; done += 32, out += 96) {
        Digits const digits = digits_of(_mm256_loadu_si256(reinterpret_cast<__m256i const*>(bytes.data() + done)));
        __m256i const middle = _mm256_alignr_epi8(digits.high, digits.low, 8);
        __m256i const a = _mm256_or_si256(_mm256_shuffle_epi8(digits.low, take[0]), between[0]);
        __m256i const b = _mm256_or_si256(_mm256_shuffle_epi8(middle, take[1]), between[1]);
        __m256i const c = _mm256_or_si256(_mm256_shuffle_epi8(digits.high, take[2]), between[2]);
        store(out, _mm256_permute2x128_si256(a, b, 0x20));
        store(out + 32, _mm256_permute2x128_si256(c, a, 0x30));
        store(out + 64, _mm256_permute2x128_si256(b, c, 0x31));
    }
    return done;
}

// Whole blocks of 16 bytes as cells of eight characters, the digits behind the first five. Returns how
// many bytes were done.
[[gnu::target("avx2")]] std::size_t put_prefixed(char* out, Bytes bytes, char const (&cell)[8])
{
    long long word;
    std::memcpy(&word, cell, sizeof word);
    __m256i const frame = _mm256_set1_epi64x(word);
    // The digits of four cells, two in each lane; eight characters on, those of the next four.
    char const e = none;
    __m256i const first_four = _mm256_setr_epi8(e, e, e, e, e, 0, 1, e, e, e, e, e, e, 2, 3, e, //
                                                e, e, e, e, e, 4, 5, e, e, e, e, e, e, 6, 7, e);
    __m256i const other_four = _mm256_setr_epi8(e, e, e, e, e, 8, 9, e, e, e, e, e, e, 10, 11, e, //
                                                e, e, e, e, e, 12, 13, e, e, e, e, e, e, 14, 15, e);

    std::size_t done = 0;
    for (; bytes.size() - done >= 16; done += 16, out += 128) {
        __m128i const sixteen = _mm_loadu_si128(reinterpret_cast<__m128i const*>(bytes.data() + done));
        Digits const digits = digits_of(_mm256_broadcastsi128_si256(sixteen));
        store(out, _mm256_or_si256(_mm256_shuffle_epi8(digits.low, first_four), frame));
        store(out + 32, _mm256_or_si256(_mm256_shuffle_epi8(digits.low, other_four), frame));
        store(out + 64, _mm256_or_si256(_mm256_shuffle_epi8(digits.high, first_four), frame));
        store(out + 96, _mm256_or_si256(_mm256_shuffle_epi8(digits.high, other_four), frame));
    }
    return done;
}

// The two common cells, "41 " and "\x1b[32m41 ", many at once. Returns how many bytes were done: all
// but a few at the end, or none where the cell or the processor is another.
std::size_t put_common_cells(char* out, Bytes bytes, std::string_view before, std::string_view after)
{
    if (after.size() != 1 || bytes.size() < 32 || __builtin_cpu_supports("avx2") == 0) {
        return 0;
    }
    if (before.empty()) {
        return put_separated(out, bytes, after[0]);
    }
    if (before.size() != 5) {
        return 0;
    }
    char cell[8] = {};
    put_text(put_text(cell, before) + 2, after);
    return put_prefixed(out, bytes, cell);
}

#else

std::size_t put_common_cells(char*, Bytes, std::string_view, std::string_view) { return 0; }

#endif

} // namespace

char* put_cells(char* out, char const* limit, Bytes bytes, std::string_view before, std::string_view after)
{
    std::size_t const width = before.size() + 2 + after.size();
    std::size_t const done = put_common_cells(out, bytes, before, after);
    out += done * width;
    bytes = bytes.subspan(done);
    if (width <= 8) {
        return put_narrow_cells<8>(out, limit, bytes, before, after);
    }
    if (width <= 16) {
        return put_narrow_cells<16>(out, limit, bytes, before, after);
    }
    return put_wide_cells(out, bytes, before, after);
}

} // namespace kestry::detail
