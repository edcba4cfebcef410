/// \file
/// A finding: the program ends at once, and the fuzzer keeps the input.
#pragma once

#include "support/readable.hpp"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace hueline::fuzz {

inline void expect_equal(std::string const& what, std::string const& expected, std::string const& got)
{
    if (expected != got) {
        std::string const story = what + "\n    expected \"" + test::readable(expected) + "\"\n    got      \"" +
                                  test::readable(got) + "\"\n";
        std::fputs(story.c_str(), stderr);
        std::abort();
    }
}

} // namespace hueline::fuzz
