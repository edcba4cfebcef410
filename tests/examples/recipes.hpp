/// \file
/// The snippets of pages, as recipes.awk finds them.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

struct Recipe {
    std::string name; ///< The heading that the snippet stands under, and its number there.
    void (*run)();

    // Whether the page says what it writes, and what, in the notation of readable().
    bool is_told = false;
    std::string out_on_terminal = {};
    std::string out_in_pipe = {};
    std::string err_on_terminal = {};
    std::string err_in_pipe = {};
};

std::vector<Recipe> stream_recipes();
std::vector<Recipe> classic_recipes();
std::vector<Recipe> kit_recipes();

} // namespace hueline::test
