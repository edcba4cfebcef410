// The stream interface's hex dumps of arbitrary bytes, with and without the cut.

#include "kestry/hueline_stream.hpp"

#include "fuzzer.hpp"
#include "dumps.hpp"

using namespace hueline::fuzz;
using kestry::Hueline::HexDump;

namespace {

// A width pads the whole dump, and is spent.
void check_insertion(Bytes const& bytes, bool left, char fill, int width)
{
    std::string const text = dump_of(bytes, " ", {}, HexDump::_longDumps);
    std::ostringstream os;
    os << (left ? std::left : std::right) << myfillandw{fill, width} << HexDump(bytes);
    std::string const padding(std::max(text.size(), static_cast<std::size_t>(width)) - text.size(), fill);
    expect_equal("padded", left ? text + padding : padding + text, os.str());
    expect_equal("width afterwards", "0", std::to_string(os.width()));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    Input input(data, size);
    HexDump::_longDumps = input.flag();
    bool const left = input.flag();
    auto const fill = static_cast<char>(input.byte());
    int const width = input.byte();
    std::string const separator = input.text();
    Bytes const bytes = to_bytes(input.rest());
    check_bytes<HexDump>(bytes, separator, {});
    check_numbers<HexDump>(bytes, {});
    check_insertion(bytes, left, fill, width);
    expect_equal("raw_data", bytes.empty() ? "nil" : text_of(HexDump(bytes)), HexDump::raw_data(bytes));
    return 0;
}
