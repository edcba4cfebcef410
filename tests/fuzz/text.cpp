// The kit's functions on texts, with arbitrary bytes: what holds for every text.

#include "kestry/kit/text.hpp"

#include "fuzzer.hpp"

using namespace hueline::fuzz;
using namespace kestry::kit;

namespace {

std::string in_pieces(std::string_view text, std::size_t size)
{
    escape_stripper stripper;
    std::string result;
    for (; !text.empty(); text.remove_prefix(std::min(size, text.size()))) {
        result += stripper.strip(text.substr(0, size));
    }
    return result + stripper.finish();
}

void expect_at_most(std::string const& what, std::size_t most, std::size_t got)
{
    expect_equal(what, "at most " + std::to_string(most), "at most " + std::to_string(std::max(most, got)));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, size);
    std::size_t const columns = input.byte();
    std::size_t const piece = 1 + input.byte() % 8U;
    auto const where = static_cast<alignment>(input.byte() % 3);
    std::string const tail = input.text();
    std::string const text = input.bytes(size);

    std::string const stripped = strip_escapes(text);
    expect_equal("stripped twice", stripped, strip_escapes(stripped));
    expect_equal("stripped in pieces", stripped, in_pieces(text, piece));
    expect_equal("an escape", "no", stripped.find('\x1b') == std::string::npos ? "no" : "yes");

    expect_at_most("columns of a cut", columns, display_width(truncate(text, columns, tail)));
    std::size_t const width = display_width(text);
    expect_equal("columns when padded", std::to_string(std::max(width, columns)),
                 std::to_string(display_width(pad(text, columns, where))));

    std::string const escaped = escape_untrusted(text);
    expect_equal("read back", text, unescape_untrusted(escaped));
    expect_equal("escapes in harmless text", escaped, strip_escapes(escaped));
    unescape_untrusted(text);
    return 0;
}
