// The string interface's hex dumps of arbitrary bytes, with and without colour and the cut.

#include "kestry/hueline_classic.hpp"

#include "fuzzer.hpp"
#include "dumps.hpp"

using namespace hueline::fuzz;
using kestry::HexDump;
using kestry::Hueline;

namespace {

// Of a dump of bytes with blanks between them.
std::string without_blanks_at_the_end(std::string text)
{
    while (!text.empty() && text.back() == ' ') {
        text.pop_back();
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, size);
    Hueline switches;
    HexDump::_longDumps = input.flag();
    bool const is_on = input.flag();
    bool const no_frills = input.byte() % 8 == 7;
    std::string const separator = input.text();
    Bytes const bytes = to_bytes(input.rest());
    switches.useColor(is_on);
    Hueline::setNoFrillsMode(no_frills);
    bool const in_color = is_on && !no_frills;
    Colors const colors = in_color ? Colors{"\x1b[32m", "\x1b[33m", "\x1b[36m", "\x1b[0m"} : Colors{};

    check_bytes<HexDump>(bytes, separator, colors);
    check_numbers<HexDump>(bytes, colors);
    std::string const trimmed = without_blanks_at_the_end(dump_of(bytes, " ", colors, HexDump::_longDumps));
    expect_equal("raw_data", bytes.empty() ? "nil" : trimmed, HexDump::raw_data(bytes));
    expect_equal("colour afterwards", in_color ? "on" : "off", Hueline::isUsingColor() ? "on" : "off");
    return 0;
}
