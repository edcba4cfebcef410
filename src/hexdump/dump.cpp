#include "hexdump/digits.hpp"

#include "hexdump/cells.hpp"

#include <algorithm>
#include <bit>
#include <cerrno>
#include <charconv>
#include <new>

#include <sys/mman.h>

namespace kestry::detail {

namespace {

// How many bytes a dump shows that is cut short.
std::size_t constexpr short_dump = 19;

// The size of a text of that many cells and a rest behind them. Throws where no string is as long.
std::size_t checked_size(std::size_t cells, std::size_t cell, std::size_t rest)
{
    std::size_t size = 0;
    if (__builtin_mul_overflow(cells, cell, &size) || size > std::string{}.max_size() - rest) {
        throw std::bad_alloc{};
    }
    return size + rest;
}

// From this size on the C library maps fresh memory for a string and returns it to the system after it.
std::size_t constexpr fresh_memory = std::size_t{32} << 20;

// Has the kernel hand out such memory at once: a fault for each page would cost more than the dump. No
// harm is done where the kernel cannot, except to errno.
void populate(char* out, std::size_t size)
{
    std::size_t constexpr largest_page = std::size_t{64} << 10; // the largest ordinary one: advice is for whole pages
    std::size_t const skipped = -reinterpret_cast<std::uintptr_t>(out) % largest_page;
    int const before = errno;
    madvise(out + skipped, size - skipped, MADV_POPULATE_WRITE);
    errno = before;
}

// As make_string; a text that gets fresh memory gets it at once.
template <class Fill>
std::string make_dump(std::size_t size, Fill fill)
{
    return make_string(size, [size, fill](char* out) {
        if (size >= fresh_memory) {
            populate(out, size);
        }
        fill(out);
    });
}

} // namespace

char* put_large_decimal(char* out, std::int64_t value) { return std::to_chars(out, out + longest_decimal, value).ptr; }

std::size_t large_decimal_size(std::int64_t value)
{
    char digits[longest_decimal];
    return static_cast<std::size_t>(put_large_decimal(digits, value) - digits);
}

std::string dump_byte(unsigned char b) { return {hex_pairs[b].data(), hex_pairs[b].size()}; }

std::string dump_short(unsigned short u)
{
    char text[2 + 2 * sizeof u];
    return {text, put_hex(put_text(text, "0x"), u)};
}

std::string dump_word(unsigned long w)
{
    char digits[2 * sizeof w];
    char* const end = put_hex(digits, w);
    std::size_t const zeros = static_cast<std::size_t>(std::countl_zero(w)) / 4;
    return {digits + std::min(zeros, sizeof digits - 8), end};
}

std::string dump_words(std::span<unsigned int const> words)
{
    static_assert(sizeof words[0] == 4);
    return make_dump(checked_size(words.size(), 9, 0), [words](char* out) {
        for (unsigned int const w : words) {
            out = put_text(put_hex(out, w), " ");
        }
    });
}

std::string dump_bytes(std::span<unsigned char const> bytes, std::string_view separator, DumpColors const& colors,
                       bool whole)
{
    if (bytes.empty()) {
        return {};
    }
    auto const shown = whole ? bytes : bytes.first(std::min(bytes.size(), short_dump));

    // cppcheck-suppress variableScope // suffix shows it
    char rest[128];
    std::string_view suffix = colors.reset;
    if (shown.size() < bytes.size()) {
        char* end = put_text(rest, " ... ");
        end = put_text(put_text(end, colors.parenthesis), "(");
        end = put_decimal(put_text(end, colors.count), static_cast<std::int64_t>(bytes.size()));
        end = put_text(end, " bytes");
        end = put_text(put_text(end, colors.parenthesis), ") ");
        suffix = {rest, put_text(end, colors.reset)};
    }

    std::size_t const cell = colors.byte.size() + 2 + separator.size();
    std::size_t const size = checked_size(shown.size(), cell, suffix.size());
    return make_dump(size,
                     [&](char* out) { put_text(put_cells(out, out + size, shown, colors.byte, separator), suffix); });
}

} // namespace kestry::detail
