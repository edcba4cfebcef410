#include "kestry/hueline_classic.hpp"

#include "dump_input.hpp"
#include "use_color.hpp"
#include "workload.hpp"

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace hueline::bench {

using kestry::HexDump;

namespace {

std::size_t constexpr cell = 8; // "\x1b[32m41 "

// Prepares a dump of that many bytes.
auto whole(std::size_t size)
{
    return [size] {
        use_color(true);
        HexDump::_longDumps = true;
        set_input(size, cell);
    };
}

HexDump dump() { return HexDump(input); }

std::string with_fmt() { return fmt::format("\x1b[32m{:02x} \x1b[0m", fmt::join(input, " \x1b[32m")); }

} // namespace

// clang-format off
Workloads colored_dump()
{
    std::string const fmt = "`fmt::join` of the coloured cells";
    std::string const copy = "a copy of a text of that length";
    std::string const fresh_pages = "its memory alone, one byte of each fresh page";
    return {
        {"coloured long dump of 16 B", whole(16), run<dump>, {
            {fmt, run<with_fmt>, 0.12}}},
        {"coloured long dump of 4 KiB", whole(4 * KiB), run<dump>, {
            {fmt, run<with_fmt>, 0.012}}},
        {"coloured long dump of 1 MiB", whole(MiB), run<dump>, {
            {fmt, run<with_fmt>, 0.02},
            {copy, run<copy_text_of_that_length>, 0.80}}},
        {"coloured long dump of 64 MiB", whole(64 * MiB), run<dump>, {
            {copy, run<copy_text_of_that_length>, 0.95},
            {fresh_pages, run<touch_pages_of_that_length>}}, 9},
    };
}
// clang-format on

} // namespace hueline::bench
