/// \file
/// The snippets of the reference's pages, as reference.awk finds them.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

struct Snippet {
    std::string name; ///< The group that the snippet stands in, and its number there.
    void (*run)();
};

std::vector<Snippet> stream_snippets();
std::vector<Snippet> classic_snippets();

} // namespace hueline::test
