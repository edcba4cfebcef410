#include "examples/coming_from.hpp"
#include "kestry/kit/policy.hpp"

#include "support/testing.hpp"

namespace {

using namespace hueline::test;

// That each name exists is shown by this program, which could not be built otherwise.
TEST(ComingFrom, NamesWriteNothingIntoAPipe)
{
    Outcome const run = on_pipe([] {
        insert_stream_names(std::cout);
        insert_classic_names(std::cout);
        insert_kit_names(std::cout);
    });
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.status, 0);
}

TEST(ComingFrom, StringsEqualTheEscapeStringsBesideThem)
{
    EXPECT_FALSE(classic_names().empty());
    for (Name const& name : classic_names()) {
        std::ostringstream text;
        name.insert(text);
        EXPECT_EQ(readable(text.str()), name.bytes);
    }
}

TEST(ComingFrom, ControlsWriteTheEscapeStringsBesideThem)
{
    EXPECT_FALSE(stream_names().empty());
    for (Name const& name : stream_names()) {
        Outcome const run = on_terminal([&name] { name.insert(std::cout); });
        EXPECT_EQ(readable(run.out), name.bytes);
    }
}

TEST(ComingFrom, KitWritesTheEscapeStringsBesideItFirst)
{
    EXPECT_FALSE(kit_names().empty());
    for (Name const& name : kit_names()) {
        Outcome const run = on_terminal([&name] {
            change_environment(sixteen_colors);
            kestry::kit::set_depth(std::cout, kestry::kit::color_depth::truecolor);
            name.insert(std::cout);
        });
        EXPECT_EQ(readable(run.out).substr(0, name.bytes.size()), name.bytes);
    }
}

} // namespace
