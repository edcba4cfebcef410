#include "hexview_rows.hpp"

#if defined(__x86_64__)
#include <cstring>

#include <immintrin.h>
#endif

namespace kestry::kit::detail {

#if defined(__x86_64__)

namespace {

std::size_t constexpr lanes = 32;

[[gnu::target("avx2")]] inline __m256i load(unsigned char const* aligned)
{
    return _mm256_load_si256(reinterpret_cast<__m256i const*>(aligned));
}

[[gnu::target("avx2")]] inline __m128i load16(void const* bytes)
{
    return _mm_loadu_si128(static_cast<__m128i const*>(bytes));
}

// The digits of 16 bytes: those of the first eight in low, of the others in high.
struct digits {
    __m128i low;
    __m128i high;
};

[[gnu::target("avx2")]] inline digits digits_of(__m128i bytes, __m128i table)
{
    __m128i const nibble = _mm_set1_epi8(0x0f);
    __m128i const first = _mm_shuffle_epi8(table, _mm_and_si128(_mm_srli_epi16(bytes, 4), nibble));
    __m128i const second = _mm_shuffle_epi8(table, _mm_and_si128(bytes, nibble));
    return {_mm_unpacklo_epi8(first, second), _mm_unpackhi_epi8(first, second)};
}

// Offsets of up to eight hexadecimal digits, all of one length.
[[gnu::target("avx2")]] inline char* put_short_offset(char* out, std::uint32_t offset, int length)
{
    __m128i const bytes = _mm_cvtsi32_si128(static_cast<int>(__builtin_bswap32(offset)));
    __m128i const all = digits_of(bytes, load16("0123456789abcdef")).low;
    auto const eight = static_cast<std::uint64_t>(_mm_cvtsi128_si64(all)) >> (64 - 8 * length);
    std::memcpy(out, &eight, sizeof eight);
    return out + length;
}

// Each row is chunks times 32 columns.
template <std::size_t chunks>
[[gnu::target("avx2")]] char* put_rows(char* out, row_shape const& shape, vector_row const& vectors,
                                       std::uint64_t offset, std::byte const* bytes, std::size_t rows)
{
    __m128i const table = load16(shape.uppercase ? "0123456789ABCDEF" : "0123456789abcdef");
    std::size_t const width = shape.width;
    std::size_t const columns = vectors.columns;
    int const length = shape.offset_digits;
    bool const short_offsets = shape.offsets == hex_offsets::hexadecimal && offset >> (4 * length) == 0 &&
                               (offset + rows * width) >> (4 * length) == 0;
    for (; rows != 0; --rows, bytes += width, offset += width) {
        out = short_offsets ? put_short_offset(out, static_cast<std::uint32_t>(offset), length)
                            : put_offset(out, shape, offset);

        __m128i const row = load16(bytes);
        digits const digit = digits_of(row, table);
        // As signed numbers the bytes from 0x80 on are less than a blank.
        __m128i const is_text =
            _mm_andnot_si128(_mm_cmpeq_epi8(row, _mm_set1_epi8(0x7f)), _mm_cmpgt_epi8(row, _mm_set1_epi8(0x1f)));
        __m256i const low = _mm256_broadcastsi128_si256(digit.low);
        __m256i const high = _mm256_broadcastsi128_si256(digit.high);
        __m256i const text = _mm256_broadcastsi128_si256(_mm_blendv_epi8(_mm_set1_epi8('.'), row, is_text));

        for (std::size_t at = 0; at != chunks * lanes; at += lanes) {
            __m256i const digits_there = _mm256_or_si256(_mm256_shuffle_epi8(low, load(vectors.low_digit + at)),
                                                         _mm256_shuffle_epi8(high, load(vectors.high_digit + at)));
            __m256i const rest =
                _mm256_or_si256(_mm256_shuffle_epi8(text, load(vectors.text + at)), load(vectors.fixed + at));
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + at), _mm256_or_si256(digits_there, rest));
        }
        out += columns;
    }
    return out;
}

} // namespace

bool has_vectors(row_shape const& shape)
{
    return shape.width <= 16 && shape.digits == 2 && shape.columns(shape.width) <= vector_row::most_columns &&
           static_cast<bool>(__builtin_cpu_supports("avx2"));
}

char* put_vector_rows(char* out, row_shape const& shape, vector_row const& vectors, std::uint64_t offset,
                      std::byte const* bytes, std::size_t rows)
{
    switch ((vectors.columns + lanes - 1) / lanes) {
    case 1:
        return put_rows<1>(out, shape, vectors, offset, bytes, rows);
    case 2:
        return put_rows<2>(out, shape, vectors, offset, bytes, rows);
    case 3:
        return put_rows<3>(out, shape, vectors, offset, bytes, rows);
    default:
        return put_rows<4>(out, shape, vectors, offset, bytes, rows);
    }
}

#else

bool has_vectors(row_shape const&) { return false; }

char* put_vector_rows(char* out, row_shape const&, vector_row const&, std::uint64_t, std::byte const*, std::size_t)
{
    return out;
}

#endif

} // namespace kestry::kit::detail
