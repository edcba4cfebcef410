// The table of operations and the list of exported symbols name the same.

#include "operations.hpp"

#include "support/testing.hpp"

namespace {

using namespace hueline::test;

// Without what tells the symbols of one constructor or destructor from each other.
std::set<std::string> exported()
{
    std::set<std::string> symbols;
    std::ifstream file(HUELINE_EXPORTS);
    for (std::string line; std::getline(file, line);) {
        if (std::size_t const at = line.find("  "); line.find('#') != 0 && at != std::string::npos) {
            symbols.insert(line.substr(at + 2, line.find(" [") - at - 2));
        }
    }
    return symbols;
}

TEST(TableOfOperations, HasAllThatAreExportedAndNoOthers)
{
    std::set<std::string> tabled;
    for (auto const& interface : {symbols_of_stream_interface(), symbols_of_string_interface()}) {
        tabled.insert(interface.begin(), interface.end());
    }
    std::set<std::string> const listed = exported();
    std::vector<std::string> missing;
    std::vector<std::string> invented;
    std::set_difference(listed.begin(), listed.end(), tabled.begin(), tabled.end(), std::back_inserter(missing));
    std::set_difference(tabled.begin(), tabled.end(), listed.begin(), listed.end(), std::back_inserter(invented));
    EXPECT_EQ(missing, std::vector<std::string>()) << "exported, but in no row";
    EXPECT_EQ(invented, std::vector<std::string>()) << "in a row, but not exported";
}

} // namespace
