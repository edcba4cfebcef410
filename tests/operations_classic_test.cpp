// What each operation of the string interface returns, in every mode: row by row as the table has it.

#include "kestry/hueline_classic.hpp"

#include "operations_classic.hpp"

#include "support/modes.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using kestry::Hueline;

TEST(TableOfTheStringInterface, GivesEachANumberAndANameOfItsOwn)
{
    std::set<int> numbers;
    std::set<std::string> names;
    for (ClassicOperation const& each : classic_operations()) {
        EXPECT_TRUE(numbers.insert(each.number).second && names.insert(each.name).second) << each.name;
        EXPECT_LT(each.number, 200) << each.name << ": the standard library's operations are from there on";
    }
}

TEST(OperationsOfTheStringInterface, ReturnWhatTheirRowsSay)
{
    for (ClassicOperation const& each : classic_operations()) {
        if (each.symbols.empty() || each.example.told_by_the_model) {
            continue;
        }
        for (Mode const m : every_mode) {
            InMode const mode(m);
            EXPECT_EQ(readable(result_of_example(each)), m == Mode::on ? each.example.colored : each.example.plain)
                << each.name;
            EXPECT_EQ(Hueline::isUsingColor(), m == Mode::on) << each.name;
            EXPECT_EQ(Hueline::getNoFrillsMode(), m == Mode::no_frills) << each.name;
        }
    }
}

} // namespace
