#include <kestry/hueline_classic.hpp>

#include <kestry/kit/policy.hpp>

#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace kestry::kit;

color_decision const color = {.depth = color_depth::ansi16};
color_decision const none = {.depth = color_depth::none};

std::string in_use() { return kestry::Hueline::isUsingColor() ? "colour " : "plain "; }

TEST(UseInStrings, SetsTheSwitch)
{
    auto const run = on_pipe([] {
        report(in_use());
        use_in_strings(color);
        report(in_use());
        use_in_strings(none);
        report(in_use());
        use_in_strings(color);
        report(in_use());
    });
    EXPECT_EQ(run.report, "plain colour plain colour ");
}

TEST(UseInStrings, LetsObjectsPutBackWhatItSaid)
{
    auto const run = on_pipe([] {
        use_in_strings(color);
        {
            kestry::Hueline scope;
            scope.useColor(false);
            report(in_use());
        }
        report(in_use());
    });
    EXPECT_EQ(run.report, "plain colour ");
}

TEST(UseInStrings, GivesWayToTheDestructorOfAnOlderObject)
{
    auto const run = on_pipe([] {
        {
            kestry::Hueline older;
            use_in_strings(color);
        }
        report(in_use());
        use_in_strings(color);
        report(in_use());
    });
    EXPECT_EQ(run.report, "plain colour ");
}

// Exit handlers run in the reverse order of their registration, destructors of static objects among them.
TEST(UseInStrings, HoldsToTheEndOfTheProcess)
{
    auto const run = on_pipe([] {
        std::atexit([] { std::cerr << in_use() << std::flush; });
        use_in_strings(color);
        std::exit(0);
    });
    EXPECT_EQ(run.err, "colour ");
}

} // namespace
