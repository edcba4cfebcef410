#include "examples/kit_page.hpp"
#include "support/process.hpp"

namespace {

using namespace hueline::test;

TEST(KitPage, SaysWhatEachExpressionIs)
{
    EXPECT_GT(kit_page::checks().size(), 25U);
    for (kit_page::Check const& check : kit_page::checks()) {
        EXPECT_EQ(check.value(), check.expected) << check.expression;
    }
}

TEST(KitPage, SaysWhatHolds) { kit_page::check_facts(); }

TEST(KitPage, ShowsWhatItsBlocksWrite)
{
    EXPECT_GE(kit_page::runs().size(), 2U);
    for (kit_page::Run const& block : kit_page::runs()) {
        Outcome const run = on_terminal([&block] {
            kestry::kit::set_depth(std::cout, kestry::kit::color_depth::truecolor);
            kestry::kit::set_depth(std::cerr, kestry::kit::color_depth::truecolor);
            block.run();
        });
        std::string const written = run.out + run.err;
        bool const has_escapes = block.expected.find("\\e") != std::string::npos;
        EXPECT_EQ(has_escapes ? readable(written) + '\n' : written, block.expected) << block.name;
        EXPECT_EQ(run.status, 0) << run.report;
    }
}

} // namespace
