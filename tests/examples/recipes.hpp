/// \file
/// The snippets of docs/recipes.md, as recipes.awk finds them.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

struct Recipe {
    std::string name; ///< The heading that the snippet stands under, and its number there.
    void (*run)();

    // What the page says that it writes, in the notation of readable().
    std::string out_on_terminal;
    std::string out_in_pipe;
    std::string err_on_terminal;
    std::string err_in_pipe;
};

std::vector<Recipe> stream_recipes();
std::vector<Recipe> classic_recipes();
std::vector<Recipe> kit_recipes();

} // namespace hueline::test
