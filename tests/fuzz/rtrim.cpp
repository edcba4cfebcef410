// rtrim of arbitrary bytes, in the C locale.

#include "kestry/hueline_classic.hpp"

#include "fuzzer.hpp"

using namespace hueline::fuzz;

namespace {

std::string without_space_at_the_end(std::string text)
{
    while (!text.empty() && std::string(" \t\n\v\f\r").find(text.back()) != std::string::npos) {
        text.pop_back();
    }
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size)
{
    std::string const text = Input(data, size).rest();
    std::string const before = text;
    std::string const trimmed = rtrim(text);
    expect_equal("rtrim", without_space_at_the_end(text), trimmed);
    expect_equal("rtrim of that", trimmed, rtrim(trimmed));
    expect_equal("the text itself", before, text);
    return 0;
}
