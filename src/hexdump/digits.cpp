#include "hexdump/digits.hpp"

#include "hexdump/cells.hpp"

#include <algorithm>
#include <bit>
#include <charconv>
#include <new>

namespace kestry::detail {

namespace {

// How many bytes a dump shows that is cut short.
std::size_t constexpr short_dump = 19;

// A string of that size, or std::bad_alloc also where no string could be as long.
std::size_t checked_size(std::size_t cells, std::size_t cell, std::size_t rest)
{
    if (cells > (std::string{}.max_size() - rest) / cell) {
        throw std::bad_alloc{};
    }
    return cells * cell + rest;
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
    return make_string(checked_size(words.size(), 9, 0), [words](char* out) {
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

    char rest[128];
    char* end = rest;
    if (shown.size() < bytes.size()) {
        end = put_text(end, " ... ");
        end = put_text(put_text(end, colors.parenthesis), "(");
        end = put_decimal(put_text(end, colors.count), static_cast<std::int64_t>(bytes.size()));
        end = put_text(end, " bytes");
        end = put_text(put_text(end, colors.parenthesis), ") ");
    }
    end = put_text(end, colors.reset);
    std::string_view const suffix{rest, end};

    std::size_t const cell = colors.byte.size() + 2 + separator.size();
    std::size_t const size = checked_size(shown.size(), cell, suffix.size());
    return make_string(size,
                       [&](char* out) { put_text(put_cells(out, out + size, shown, colors.byte, separator), suffix); });
}

} // namespace kestry::detail
