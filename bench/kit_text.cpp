#include "kestry/kit/text.hpp"

#include "workload.hpp"

#include <cstring>
#include <string>
#include <string_view>
#include <utf8proc.h>

namespace hueline::bench {

using kestry::kit::display_width;
using kestry::kit::escape_untrusted;
using kestry::kit::strip_escapes;

namespace {

std::string text;

// Prepares that many bytes, or a few less, of a text over and over.
auto repeated(std::string_view piece, std::size_t size)
{
    return [piece, size] {
        text.clear();
        while (text.size() + piece.size() <= size) {
            text += piece;
        }
    };
}

std::size_t constexpr KiB = 1024;

std::string_view constexpr ascii = "The quick brown fox jumps over the lazy dog; 1234567890 times (or more). ";
std::string_view constexpr mixed = "Größe naïve façade, 日本語のテキスト and 한국어, Привет мир, हिन्दी, e\u0301, "
                                   "👩‍👩‍👧 🇩🇪 ❤️ done. ";
std::string_view constexpr colored =
    "\x1b[1;32minfo\x1b[0m 12:34:56 \x1b[38;5;244mserver\x1b[39m: request of 1234 bytes "
    "from \x1b]8;;https://kestry.example\x1b\\there\x1b]8;;\x1b\\\n";

// ---------------------------------------------------------------------------------------------
// Columns
// ---------------------------------------------------------------------------------------------

std::size_t columns() { return display_width(text); }

// Finds nothing.
void const* with_memchr() { return std::memchr(text.data(), '\x1b', text.size()); }

// The columns of characters, and where clusters begin; no sequences, no cluster wider than its characters.
std::size_t with_utf8proc()
{
    auto const* at = reinterpret_cast<utf8proc_uint8_t const*>(text.data());
    auto left = static_cast<utf8proc_ssize_t>(text.size());
    utf8proc_int32_t before = 0;
    utf8proc_int32_t state = 0;
    std::size_t columns = 0;
    std::size_t clusters = 0;
    while (left > 0) {
        utf8proc_int32_t code = 0;
        utf8proc_ssize_t const size = utf8proc_iterate(at, left, &code);
        if (size <= 0) {
            break;
        }
        clusters += utf8proc_grapheme_break_stateful(before, code, &state) ? 1U : 0U;
        columns += static_cast<std::size_t>(utf8proc_charwidth(code));
        before = code;
        at += size;
        left -= size;
    }
    return columns + clusters;
}

// ---------------------------------------------------------------------------------------------
// Copies
// ---------------------------------------------------------------------------------------------

std::string stripped() { return strip_escapes(text); }
std::string escaped() { return escape_untrusted(text, {.keep_newline = true}); }
std::string cut() { return kestry::kit::truncate(text, 80); }
std::string padded() { return kestry::kit::pad(text, 80); }
std::string copied() { return text; }
std::string copied_80() { return text.substr(0, 80); }

} // namespace

// clang-format off
Workloads kit_text()
{
    std::string const loop = "`utf8proc_iterate`, `_grapheme_break_stateful` and `_charwidth`";
    std::string const copy = "a copy";
    return {
        {"columns of 64 KiB of ASCII", repeated(ascii, 64 * KiB), run<columns>, {
            {"`memchr`", run<with_memchr>},
            {loop, run<with_utf8proc>, 0.01}}},
        {"columns of 64 KiB in ten scripts", repeated(mixed, 64 * KiB), run<columns>, {
            {loop, run<with_utf8proc>, 0.8}}},
        {"columns of a word of 12 letters", repeated("hue-colored.", 12), run<columns>, {
            {loop, run<with_utf8proc>, 0.2}}},
        {"64 KiB of coloured lines without sequences", repeated(colored, 64 * KiB), run<stripped>, {
            {copy, run<copied>}}},
        {"64 KiB of ASCII without sequences", repeated(ascii, 64 * KiB), run<stripped>, {
            {copy, run<copied>}}},
        {"64 KiB of ASCII made harmless", repeated(ascii, 64 * KiB), run<escaped>, {
            {copy, run<copied>}}},
        {"64 KiB of ASCII cut to 80 columns", repeated(ascii, 64 * KiB), run<cut>, {
            {"80 bytes of it", run<copied_80>}}},
        {"a word padded to 80 columns", repeated("hue-colored.", 12), run<padded>, {
            {copy, run<copied>}}},
    };
}
// clang-format on

} // namespace hueline::bench
