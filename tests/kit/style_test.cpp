#include <kestry/kit/style.hpp>
#include <kestry/kit/text.hpp>

#include "support/readable.hpp"

#include <gtest/gtest.h>

namespace {

using namespace hueline::test;
using namespace kestry::kit;

constexpr auto err = fg(red) | bold, name = style{underline};

TEST(Styled, EndsWhatItBegan)
{
    EXPECT_EQ(readable(to_string(styled("error: ", err))), R"(\e[1;31merror: \e[22;39m)");
    std::ostringstream os;
    os << styled("error: ", err) << styled(pad("x", 5), name) << std::setw(6) << styled(42, fg(rgb(0, 180, 90)));
    EXPECT_EQ(readable(os.str()), R"(\e[1;31merror: \e[22;39m\e[4mx    \e[24m    \e[38;2;0;180;90m42\e[39m)");
    EXPECT_EQ(readable(to_string(styled(bold, "a", styled("b", fg(red)), "c\nd"))),
              R"(\e[1ma\e[31mb\e[39mc\e[22m\n\e[1md\e[22m)");
    EXPECT_EQ(readable(to_string(styled("a\x1b[0mb\x1b[1mc", fg(red)))), R"(\e[31mab\e[1mc\e[22;39m)");
}

} // namespace
