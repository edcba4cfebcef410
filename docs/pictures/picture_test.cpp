#include "picture.hpp"

#include <string>

#include <gtest/gtest.h>

namespace {

using namespace hueline::pictures;

testing::AssertionResult has(std::string const& picture, std::string const& part)
{
    if (picture.find(part) != std::string::npos) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "no " << part << " in\n" << picture;
}

TEST(Picture, IsCutToTheCellsThatAreUsed)
{
    EXPECT_TRUE(has(picture_of({.terminal = "abc\nde\n"}), R"(width="51" height="60")"));
    EXPECT_TRUE(has(picture_of({.terminal = "a\x1b[41m   \x1b[0m"}), R"(width="60" height="42")"));
}

TEST(Picture, IsCutToTheRowsThatAreWanted)
{
    std::string const picture = picture_of({.terminal = "abc\nde\nf\n", .rows = 2});
    EXPECT_TRUE(has(picture, R"(height="60")"));
    EXPECT_FALSE(has(picture, ">f</text>"));
}

TEST(Picture, ShowsAllOfALongText)
{
    std::string text = "first";
    for (int i = 0; i < 100; ++i) {
        text += '\n';
    }
    std::string const picture = picture_of({.terminal = text + "last"});
    EXPECT_TRUE(has(picture, ">first</text>"));
    EXPECT_TRUE(has(picture, ">last</text>"));
}

TEST(Picture, OfAStillShowsItsEnd) { EXPECT_FALSE(has(picture_of({.terminal = "a\rb"}), ">a</text>")); }

TEST(Picture, HoldsItsLastFrame)
{
    EXPECT_TRUE(has(picture_of({.terminal = "\ra\rb\rc", .frame_ms = 100}), "strip 2200ms"));
}

TEST(Picture, ThatComesRoundDoesNotStop)
{
    EXPECT_TRUE(has(picture_of({.terminal = "\ra\rb\ra\rb", .frame_ms = 100}), "strip 400ms"));
}

TEST(Picture, ShowsAlikeFramesAsOneThatTakesLonger)
{
    EXPECT_TRUE(has(picture_of({.terminal = "\ra\ra\ra\rb", .frame_ms = 100}),
                    "0%{transform:translateY(-0px)}13.04%{transform:translateY(-18px)}}"));
}

TEST(Picture, HasNoFrameOfWhatDoesNotShow)
{
    EXPECT_TRUE(has(picture_of({.terminal = "\x1b[31m\ra\rb", .frame_ms = 100}), "strip 2100ms"));
    EXPECT_TRUE(has(picture_of({.terminal = "x\ra\rb", .frame_ms = 100}), "strip 2200ms"));
}

} // namespace
