#include "progress_row.hpp"

#include <algorithm>

namespace kestry::kit::detail {

namespace {

void append_colored(std::string& out, std::string_view text, std::string_view sgr)
{
    if (sgr.empty()) {
        out += text;
    } else {
        out.append("\x1b[").append(sgr).append("m").append(text).append("\x1b[0m");
    }
}

bool is_continuation(char byte) { return (static_cast<unsigned char>(byte) & 0xc0U) == 0x80; }

// The span that a byte of the row's text is in, and the byte where that begins.
struct place {
    std::size_t span = 0;
    std::size_t begin = 0;
};

place place_of(progress_text const& row, std::size_t byte)
{
    place found;
    while (found.span < row.spans.size() && row.spans[found.span].end <= byte) {
        found.begin = row.spans[found.span].end;
        ++found.span;
    }
    return found;
}

// A byte at which a character begins that can be overwritten by itself.
std::size_t safe(progress_text const& row, std::size_t byte)
{
    place const at = place_of(row, byte);
    if (at.span < row.spans.size() && !row.spans[at.span].simple) {
        return at.begin;
    }
    while (byte > at.begin && byte < row.text.size() && is_continuation(row.text[byte])) {
        --byte;
    }
    return byte;
}

// Bytes up to which both rows show the same.
std::size_t alike(progress_text const& a, progress_text const& b)
{
    std::size_t const shorter = std::min(a.text.size(), b.text.size());
    auto const differing =
        std::mismatch(a.text.begin(), a.text.begin() + static_cast<std::ptrdiff_t>(shorter), b.text.begin());
    auto bytes = static_cast<std::size_t>(differing.first - a.text.begin());
    std::size_t x = 0;
    std::size_t y = 0;
    for (std::size_t at = 0; at < bytes;) { // colours may differ where bytes do not
        if (a.spans[x].sgr != b.spans[y].sgr) {
            bytes = at;
            break;
        }
        at = std::min(a.spans[x].end, b.spans[y].end);
        x += a.spans[x].end == at ? 1U : 0U;
        y += b.spans[y].end == at ? 1U : 0U;
    }
    bytes = safe(b, safe(a, bytes));
    return safe(a, bytes);
}

std::size_t columns_before(progress_text const& row, std::size_t byte)
{
    place const at = place_of(row, byte);
    std::size_t columns = 0;
    for (std::size_t i = 0; i < at.span; ++i) {
        columns += row.spans[i].columns;
    }
    return columns + static_cast<std::size_t>(std::count_if(row.text.begin() + static_cast<std::ptrdiff_t>(at.begin),
                                                            row.text.begin() + static_cast<std::ptrdiff_t>(byte),
                                                            [](char c) { return !is_continuation(c); }));
}

void paint_from(std::string& out, progress_text const& row, std::size_t byte)
{
    std::size_t begin = 0;
    for (progress_span const& span : row.spans) {
        std::size_t const first = std::max(begin, byte);
        if (first < span.end) {
            append_colored(out, std::string_view(row.text).substr(first, span.end - first), span.sgr);
        }
        begin = span.end;
    }
}

} // namespace

std::string painted(progress_text const& row)
{
    std::string out;
    paint_from(out, row, 0);
    return out;
}

void append_change(std::string& out, progress_text const& from, progress_text const& to)
{
    std::size_t const same = alike(from, to);
    std::size_t const columns = columns_before(to, same);
    if (columns > 0) {
        out.append("\x1b[").append(std::to_string(columns)).append("C"); // CUF, ECMA-48 8.3.20
    }
    paint_from(out, to, same);
    if (to.columns() < from.columns()) {
        out += "\x1b[K"; // EL, ECMA-48 8.3.41
    }
}

} // namespace kestry::kit::detail
