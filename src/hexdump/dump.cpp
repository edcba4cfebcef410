#include "hexdump/dump.hpp"

#include "hexdump/cells.hpp"
#include "text/digits.hpp"
#include "text/make_string.hpp"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>

namespace kestry::detail {

namespace {

// How many bytes a dump that is cut shows.
std::size_t constexpr shown_of_cut = 19;

// The size of a text of that many cells and what follows them. Throws if no string can be that long.
std::size_t checked_size(std::size_t cells, std::size_t cell, std::size_t rest)
{
    std::size_t size = 0;
    if (__builtin_mul_overflow(cells, cell, &size) || size > std::string{}.max_size() - rest) {
        throw std::bad_alloc{};
    }
    return size + rest;
}

} // namespace

std::string dump_byte(unsigned char b) { return std::string{hex_digits(b)}; }

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
    return make_string(checked_size(words.size(), 9, 0), [words](char* out) {
        for (unsigned int const w : words) {
            out = put_text(put_hex(out, w), " ");
        }
    });
}

std::string dump_bytes(std::span<unsigned char const> bytes, std::string_view separator, DumpColors const& colors,
                       Length length)
{
    if (bytes.empty()) {
        return {};
    }
    auto const shown = length == Length::whole ? bytes : bytes.first(std::min(bytes.size(), shown_of_cut));

    // cppcheck-suppress variableScope // suffix refers to it
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
    return make_string(size,
                       [&](char* out) { put_text(put_cells(out, out + size, shown, colors.byte, separator), suffix); });
}

} // namespace kestry::detail
