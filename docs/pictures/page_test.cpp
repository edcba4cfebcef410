#include "page.hpp"

#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace hueline::pictures;

Recording const colors = {
    .name = "colours", .title = "Words", .code = "cout << red;\n", .language = "cpp", .pipe = "red\n"};

std::string pipe_part(std::string const& received)
{
    Recording recording = colors;
    recording.pipe = received;
    return page("{{colours pipe}}\n", {recording});
}

TEST(Page, ShowsPictureCodeAndPipe)
{
    EXPECT_EQ(page("before\n{{colours}}\nafter\n", {colors}), "before\n"
                                                              "![Words](images/colours.svg)\n"
                                                              "\n"
                                                              "```cpp\ncout << red;\n```\n"
                                                              "\n"
                                                              "A pipe receives:\n"
                                                              "\n"
                                                              "```text\nred\n```\n"
                                                              "after\n");
}

TEST(Page, ShowsThePartsAlone)
{
    EXPECT_EQ(page("{{colours picture}}\n", {colors}), "![Words](images/colours.svg)\n");
    EXPECT_EQ(page("{{colours code}}\n", {colors}), "```cpp\ncout << red;\n```\n");
}

TEST(Page, RefusesUnknownNames)
{
    EXPECT_THROW(page("{{colors}}\n{{colours}}\n", {colors}), std::runtime_error);
    EXPECT_THROW(page("{{colours sound}}\n", {colors}), std::runtime_error);
}

TEST(Page, RefusesToLeaveAPictureOut) { EXPECT_THROW(page("text\n", {colors}), std::runtime_error); }

TEST(Pipe, MayReceiveNothing) { EXPECT_EQ(pipe_part(""), "A pipe receives nothing.\n"); }

TEST(Pipe, ShowsControlCharacters)
{
    EXPECT_EQ(pipe_part("\x1b[31mred\n"), "A pipe receives:\n\n```text\n\\e[31mred\n```\n");
}

TEST(Pipe, ShowsAFrameALine)
{
    EXPECT_EQ(pipe_part("\r1%\r2%"), "A pipe receives:\n\n```text\n\\r1%\n\\r2%\n```\n");
    EXPECT_EQ(pipe_part("a\n\r1%"), "A pipe receives:\n\n```text\na\n\\r1%\n```\n");
}

TEST(Pipe, ShowsTwelveLines)
{
    std::string const twelve = "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n";
    EXPECT_EQ(pipe_part(twelve), "A pipe receives:\n\n```text\n" + twelve + "```\n");
    EXPECT_EQ(pipe_part(twelve + "13\n"),
              "A pipe receives:\n\n```text\n1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n... and 2 more\n```\n");
}

TEST(Pipe, CutsLongLines)
{
    std::string const longest(110, 'x');
    EXPECT_EQ(pipe_part(longest), "A pipe receives:\n\n```text\n" + longest + "\n```\n");
    EXPECT_EQ(pipe_part(longest + "y"), "A pipe receives:\n\n```text\n" + longest + " ...\n```\n");
}

} // namespace
