/// \file
/// What styled text is written as.
#pragma once

#include <fmt/format.h>
#include <kestry/kit/style.hpp>

#include "support/testing.hpp"

namespace hueline::test {

/// The bytes of a styled text as readable() shows them: the same in a stream, as a string and formatted.
template <class Styled>
std::string written(Styled const& text, kestry::kit::color_depth depth = kestry::kit::color_depth::truecolor)
{
    std::ostringstream os;
    set_depth(os, depth);
    os << text;
    std::string const bytes = readable(os.str());
    EXPECT_EQ(readable(to_string(text, depth)), bytes);
    EXPECT_EQ(readable(fmt::format("{}", text.at(depth))), bytes);
#if defined(__cpp_lib_format)
    EXPECT_EQ(readable(std::format("{}", text.at(depth))), bytes);
#endif
    return bytes;
}

} // namespace hueline::test
