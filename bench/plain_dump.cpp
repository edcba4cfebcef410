#include "kestry/hueline_stream.hpp"

#include "dump_input.hpp"
#include "workload.hpp"

#include <absl/strings/escaping.h>
#include <boost/algorithm/hex.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <openssl/crypto.h>

#include <iterator>
#include <string_view>

namespace hueline::bench {

using kestry::Hueline::HexDump;

namespace {

std::size_t constexpr cell = 3; // "41 "

// Prepares a dump of that many bytes.
auto cut(std::size_t size)
{
    return [size] {
        HexDump::_longDumps = false;
        set_input(size, cell);
    };
}

auto whole(std::size_t size, std::size_t text_cell = cell)
{
    return [size, text_cell] {
        HexDump::_longDumps = true;
        set_input(size, text_cell);
    };
}

// ---------------------------------------------------------------------------------------------
// Short
// ---------------------------------------------------------------------------------------------

HexDump byte() { return HexDump(input[0]); }

std::string byte_with_fmt() { return fmt::format("{:02x}", input[0]); }

std::string cut_with_fmt()
{
    auto const first = input.begin();
    return fmt::format("{:02x}  ... ({} bytes) ", fmt::join(first, first + 19, " "), input.size());
}

// ---------------------------------------------------------------------------------------------
// Long
// ---------------------------------------------------------------------------------------------

HexDump dump() { return HexDump(input); }

std::string with_fmt() { return fmt::format("{:02x} ", fmt::join(input, " ")); }

// Two characters a byte.
std::string with_abseil()
{
    return absl::BytesToHexString({reinterpret_cast<char const*>(input.data()), input.size()});
}

// Two characters a byte.
std::string with_boost()
{
    std::string result;
    result.reserve(2 * input.size());
    boost::algorithm::hex_lower(input.begin(), input.end(), std::back_inserter(result));
    return result;
}

// Three characters a byte, but for the last.
std::string with_openssl()
{
    std::string result(cell * input.size(), '\0');
    std::size_t size = 0;
    OPENSSL_buf2hexstr_ex(result.data(), result.size(), &size, input.data(), input.size(), ' ');
    return result;
}

} // namespace

// clang-format off
Workloads plain_dump()
{
    Peer const boost{"Boost `hex_lower` (two characters a byte)", run<with_boost>};
    Peer const openssl{"OpenSSL `buf2hexstr`", run<with_openssl>};
    std::string const fmt = "`fmt::join` of `{:02x}`";
    std::string const abseil = "absl `BytesToHexString` (two characters a byte)";
    std::string const copy = "a copy of a text of that length";
    std::string const fresh_pages = "its memory alone, one byte of each fresh page";
    return {
        {"dump of one byte", cut(1), run<byte>, {
            {"`fmt::format`", run<byte_with_fmt>, 0.18}}},
        {"dump of 4 KiB cut after 19", cut(4 * KiB), run<dump>, {
            {"`fmt::format`", run<cut_with_fmt>, 0.10}}},
        {"long dump of 16 B", whole(16), run<dump>, {
            {fmt, run<with_fmt>, 0.10}}},
        {"long dump of 4 KiB", whole(4 * KiB), run<dump>, {
            {fmt, run<with_fmt>, 0.007},
            {abseil, run<with_abseil>, 0.25},
            boost,
            openssl}},
        {"long dump of 1 MiB", whole(MiB), run<dump>, {
            {fmt, run<with_fmt>, 0.01},
            {abseil, run<with_abseil>, 0.35},
            boost,
            openssl,
            {copy, run<copy_text_of_that_length>, 0.85}}},
        {"long dump of 64 MiB", whole(64 * MiB), run<dump>, {
            {copy, run<copy_text_of_that_length>, 0.95},
            {fresh_pages, run<touch_pages_of_that_length>}}, 15},
    };
}

// Larger by powers of 32: a copy shows what the caches and the pages of fresh memory cost.
Workloads growth()
{
    Peer const copy{"copy", run<copy_text_of_that_length>};
    return {
        {"1 KiB",  whole(KiB),      run<dump>, {copy}},
        {"32 KiB", whole(32 * KiB), run<dump>, {copy}},
        {"1 MiB",  whole(MiB),      run<dump>, {copy}},
        {"32 MiB", whole(32 * MiB), run<dump>, {copy}, 15},
        {"1 GiB",  whole(GiB, 0),   run<dump>, {},     5}, // no text beside it: 3 GiB more
    };
}
// clang-format on

} // namespace hueline::bench
