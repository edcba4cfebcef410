// Cells of arbitrary bytes.

#include "kestry/hueline_stream.hpp"

#include "fuzzer.hpp"

using namespace hueline::fuzz;

namespace {

std::string ten_bytes(std::string text)
{
    text.resize(10, ' ');
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const name = Input(data, size).rest();
    std::string const cell = kestry::Hueline::col(name);
    expect_equal("col", ten_bytes(name), cell);
    expect_equal("col of that", cell, kestry::Hueline::col(cell));
    return 0;
}
