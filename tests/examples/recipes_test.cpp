#include "examples/recipes.hpp"

#include "support/testing.hpp"

namespace hueline::test {

void PrintTo(Recipe const& recipe, std::ostream* os) { *os << recipe.name; }

namespace {

class Recipes : public testing::TestWithParam<Recipe> {};

TEST_P(Recipes, WritesWhatThePageSays)
{
    Recipe const& recipe = GetParam();
    auto const run = [&recipe] {
        change_environment(sixteen_colors);
        recipe.run();
    };
    Outcome const on_terminals = on_terminal(run);
    EXPECT_EQ(on_terminals.status, 0) << on_terminals.report;
    Outcome const in_pipes = on_pipe(run);
    EXPECT_EQ(in_pipes.status, 0) << in_pipes.report;
    if (recipe.is_told) {
        EXPECT_EQ(readable(on_terminals.out), recipe.out_on_terminal);
        EXPECT_EQ(readable(on_terminals.err), recipe.err_on_terminal);
        EXPECT_EQ(readable(in_pipes.out), recipe.out_in_pipe);
        EXPECT_EQ(readable(in_pipes.err), recipe.err_in_pipe);
    }
}

std::string name_of(testing::TestParamInfo<Recipe> const& info) { return info.param.name; }

INSTANTIATE_TEST_SUITE_P(Stream, Recipes, testing::ValuesIn(stream_recipes()), name_of);
INSTANTIATE_TEST_SUITE_P(Classic, Recipes, testing::ValuesIn(classic_recipes()), name_of);
INSTANTIATE_TEST_SUITE_P(Kit, Recipes, testing::ValuesIn(kit_recipes()), name_of);

} // namespace

} // namespace hueline::test
