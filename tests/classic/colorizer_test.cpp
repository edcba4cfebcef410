#include "kestry/hueline_classic.hpp"

#include "support/modes.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using kestry::Hueline;
using kestry::HuelineExceptionInterface;
using kestry::UnknownCodeException;

char const* const never_flipped = "Unflipping when we never flipped in the first place!";

std::string text_thrown_by_unflip(Hueline& h)
{
    try {
        h.unflipColor();
    } catch (std::exception const&) {
        return "an exception";
    } catch (char const* text) {
        return text;
    }
    return "nothing";
}

TEST(Flip, InvertsWhetherColorIsInUseUntilTheUnflipAndTheEndOfTheObject)
{
    struct Row {
        bool color;
        bool no_frills;
        bool flipped; // the switch after a flip,
        bool unflipped;
    } const rows[] = {{false, false, true, false},
                      {true, false, false, true},
                      {false, true, false, false},
                      {true, true, false, false}}; // colour was not in use
    for (Row const& row : rows) {
        SCOPED_TRACE(testing::Message() << "colour " << row.color << ", no frills " << row.no_frills);
        InMode const mode(Mode::off);
        Hueline::_useColor = row.color;
        Hueline::_noFrillsMode = row.no_frills;
        {
            Hueline h;
            EXPECT_EQ(text_thrown_by_unflip(h), never_flipped);
            EXPECT_EQ(Hueline::_useColor, row.color);
            h.flipColor();
            EXPECT_EQ(Hueline::_useColor, row.flipped);
            for (int times = 0; times < 2; ++times) {
                EXPECT_EQ(text_thrown_by_unflip(h), "nothing");
                EXPECT_EQ(Hueline::_useColor, row.unflipped);
                h.useColor(!row.unflipped);
            }
            h.useColor(!row.color);
        }
        EXPECT_EQ(Hueline::_useColor, row.color);
        EXPECT_EQ(Hueline::_noFrillsMode, row.no_frills);
    }
}

TEST(Flip, TwiceIsUndoneToTheSecondOne)
{
    InMode const mode(Mode::off);
    Hueline h;
    h.flipColor();
    h.flipColor();
    EXPECT_FALSE(Hueline::isUsingColor());
    h.unflipColor(); // colour was in use at the second flip
    EXPECT_TRUE(Hueline::isUsingColor());
}

TEST(ColorizerObject, DestroyedOutOfOrderLeavesTheValueOfTheLastOne)
{
    InMode const mode(Mode::off);
    auto first = std::make_unique<Hueline>();
    first->useColor(true);
    auto second = std::make_unique<Hueline>();
    first.reset();
    EXPECT_FALSE(Hueline::isUsingColor());
    second.reset();
    EXPECT_TRUE(Hueline::isUsingColor());
}

TEST(ColorizerObject, TakesWhatAnotherRemembersWhenItIsCopiedOrAssigned)
{
    InMode const mode(Mode::on);
    Hueline flipped;
    flipped.flipColor();
    auto const expect_taken = [](Hueline& taken) {
        EXPECT_FALSE(Hueline::isUsingColor());
        EXPECT_EQ(text_thrown_by_unflip(taken), "nothing");
        EXPECT_TRUE(Hueline::isUsingColor());
        taken.useColor(false);
    };
    {
        Hueline copy(flipped);
        expect_taken(copy);
    }
    EXPECT_TRUE(Hueline::isUsingColor()); // as when the first was constructed
    flipped.useColor(false);
    {
        Hueline assigned; // would leave colour off
        EXPECT_EQ(text_thrown_by_unflip(assigned), never_flipped);
        assigned = flipped;
        expect_taken(assigned);
    }
    EXPECT_TRUE(Hueline::isUsingColor());
}

// What arrives at a handler for Caught.
template <class Caught>
std::string caught_from(void (*throws)())
{
    try {
        throws();
    } catch (Caught const& e) {
        EXPECT_EQ(typeid(e), typeid(UnknownCodeException));
        return e.what();
    } catch (...) {
        return "another type";
    }
    return "nothing";
}

void throw_in_library() { Hueline::color(static_cast<kestry::HexColor_VGA>(16)); }

void throw_here() { throw UnknownCodeException{}; }

void throw_a_kept_copy()
{
    try {
        throw_in_library();
    } catch (UnknownCodeException const& e) {
        UnknownCodeException copy(e);
        copy = e;
        std::rethrow_exception(std::make_exception_ptr(copy));
    }
}

TEST(Exceptions, AreCaughtByEachBaseWhereverTheyAreThrown)
{
    for (auto* const throws : {throw_in_library, throw_here, throw_a_kept_copy}) {
        EXPECT_EQ(caught_from<UnknownCodeException>(throws), "UnknownCodeException passed to Hueline");
        EXPECT_EQ(caught_from<HuelineExceptionInterface>(throws), "UnknownCodeException passed to Hueline");
        EXPECT_EQ(caught_from<std::exception>(throws), "UnknownCodeException passed to Hueline");
        EXPECT_EQ(caught_from<std::runtime_error>(throws), "another type");
    }
}

TEST(Exceptions, AreDestroyedThroughTheirBases)
{
    std::unique_ptr<HuelineExceptionInterface> const unknown = std::make_unique<UnknownCodeException>();
    EXPECT_STREQ(unknown->what(), "UnknownCodeException passed to Hueline");
}

} // namespace
