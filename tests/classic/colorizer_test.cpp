#include "kestry/hueline_classic.hpp"

#include "support/modes.hpp"
#include "support/allocations.hpp"
#include "support/testing.hpp"

namespace {

using namespace hueline::test;
using namespace std::string_literals;
using kestry::Hueline;
using kestry::HuelineExceptionInterface;
using kestry::UnknownCodeException;

class Text : public Hueline {
public:
    explicit Text(std::string text) { _text = std::move(text); }
};

std::string written(Hueline const& h)
{
    std::ostringstream os;
    os << h;
    return os.str();
}

// The colour switch itself, which no-frills mode hides.
bool color_switch()
{
    bool const no_frills = Hueline::getNoFrillsMode();
    Hueline::setNoFrillsMode(false);
    bool const color = Hueline::isUsingColor();
    Hueline::setNoFrillsMode(no_frills);
    return color;
}

char const* const never_flipped = "Unflipping when we never flipped in the first place!";

std::string text_thrown_by_unflip(Hueline& h)
{
    try {
        h.unflipColor();
    } catch (char const* text) {
        return text;
    }
    return "nothing";
}

// ---------------------------------------------------------------------------------------------
// Switches
// ---------------------------------------------------------------------------------------------

TEST(Switches, AreOffAtLoad)
{
    auto const run = on_terminal([] {
        report(Hueline::isUsingColor() ? "color " : "no color ");
        report(Hueline::getNoFrillsMode() ? "no frills" : "frills");
        report(Hueline::hide_cursor() + Hueline::show_cursor() + Hueline::color(kestry::HexColor::red));
        Hueline::setNoFrillsMode(true);
        Hueline::setNoFrillsMode(false);
        report(Hueline::isUsingColor() ? " color" : " no color");
    });
    EXPECT_EQ(run.report, "no color frills no color");
}

TEST(Switches, UseColorOnlyWithoutNoFrills)
{
    InMode const mode(Mode::off);
    Hueline h;
    for (bool const no_frills : {false, true}) {
        for (bool const color : {false, true}) {
            h.useColor(color);
            Hueline::setNoFrillsMode(no_frills);
            EXPECT_EQ(Hueline::isUsingColor(), color && !no_frills);
            EXPECT_EQ(Hueline::getNoFrillsMode(), no_frills);
        }
    }
}

TEST(Switches, ComeBackWhenNoFrillsModeEnds)
{
    InMode const mode(Mode::off);
    Hueline h;
    h.useColor(true);
    EXPECT_TRUE(Hueline::isUsingColor());
    Hueline::setNoFrillsMode(true);
    EXPECT_FALSE(Hueline::isUsingColor());
    EXPECT_TRUE(Hueline::getNoFrillsMode());
    EXPECT_EQ(Hueline::hide_cursor(), "");
    Hueline::setNoFrillsMode(false);
    EXPECT_TRUE(Hueline::isUsingColor());
    EXPECT_FALSE(Hueline::getNoFrillsMode());
    EXPECT_EQ(readable(Hueline::hide_cursor()), R"(\e[?25l)");
}

TEST(Switches, BelongToTheProcessNotToTheObject)
{
    InMode const mode(Mode::off);
    Hueline one;
    Hueline other;
    one.useColor(true);
    EXPECT_TRUE(Hueline::isUsingColor());
    other.useColor(false);
    EXPECT_FALSE(Hueline::isUsingColor());
    EXPECT_FALSE(one.isUsingColor());
}

TEST(CursorStrings, AreEmptyWithoutColor)
{
    for (Mode const m : plain_modes) {
        InMode const mode(m);
        EXPECT_EQ(Hueline::hide_cursor(), "");
        EXPECT_EQ(Hueline::show_cursor(), "");
    }
}

TEST(CursorStrings, SetAndResetTheModeWithColor)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(readable(Hueline::hide_cursor()), R"(\e[?25l)");
    EXPECT_EQ(readable(Hueline::show_cursor()), R"(\e[?25h)");
}

// ---------------------------------------------------------------------------------------------
// Flips
// ---------------------------------------------------------------------------------------------

TEST(Flip, TurnsColorOnAndUnflipTurnsItOff)
{
    InMode const mode(Mode::off);
    {
        Hueline h;
        h.flipColor();
        EXPECT_TRUE(Hueline::isUsingColor());
        h.unflipColor();
        EXPECT_FALSE(Hueline::isUsingColor());
    }
    EXPECT_FALSE(Hueline::isUsingColor());
}

TEST(Flip, TurnsColorOffAndUnflipTurnsItOn)
{
    InMode const mode(Mode::on);
    {
        Hueline h;
        h.flipColor();
        EXPECT_FALSE(Hueline::isUsingColor());
        h.unflipColor();
        EXPECT_TRUE(Hueline::isUsingColor());
    }
    EXPECT_TRUE(Hueline::isUsingColor());
}

TEST(Flip, InNoFrillsModeLeavesTheSwitchOffUntilTheObjectIsDestroyed)
{
    InMode const mode(Mode::no_frills);
    {
        Hueline h;
        h.flipColor();
        EXPECT_FALSE(color_switch());
        h.unflipColor(); // colour was not in use
        EXPECT_FALSE(color_switch());
    }
    EXPECT_TRUE(color_switch());
    EXPECT_TRUE(Hueline::getNoFrillsMode());
}

TEST(Flip, InNoFrillsModeWithTheSwitchOffLeavesItOff)
{
    InMode const mode(Mode::off);
    Hueline::setNoFrillsMode(true);
    {
        Hueline h;
        h.flipColor();
        EXPECT_FALSE(color_switch());
        h.unflipColor();
        EXPECT_FALSE(color_switch());
    }
    EXPECT_FALSE(color_switch());
    EXPECT_TRUE(Hueline::getNoFrillsMode());
}

TEST(Flip, DoesNotTouchNoFrillsMode)
{
    for (bool const no_frills : {false, true}) {
        InMode const mode(Mode::on);
        Hueline::setNoFrillsMode(no_frills);
        {
            Hueline h;
            h.flipColor();
            EXPECT_EQ(Hueline::getNoFrillsMode(), no_frills);
            h.unflipColor();
            EXPECT_EQ(Hueline::getNoFrillsMode(), no_frills);
        }
        EXPECT_EQ(Hueline::getNoFrillsMode(), no_frills);
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

TEST(Flip, LooksAtNoFrillsModeAtTheFlipOnly)
{
    InMode const mode(Mode::off);
    Hueline h;
    h.flipColor();
    Hueline::setNoFrillsMode(true);
    h.unflipColor();
    EXPECT_FALSE(color_switch());
    h.useColor(true);
    h.flipColor();
    Hueline::setNoFrillsMode(false);
    EXPECT_FALSE(Hueline::isUsingColor());
    h.unflipColor();
    EXPECT_FALSE(Hueline::isUsingColor());
}

TEST(Unflip, TwiceDoesTheSameAgain)
{
    for (Mode const m : {Mode::off, Mode::on}) {
        InMode const mode(m);
        Hueline h;
        h.flipColor();
        h.unflipColor();
        EXPECT_EQ(Hueline::isUsingColor(), m == Mode::on);
        h.useColor(m == Mode::off);
        EXPECT_EQ(text_thrown_by_unflip(h), "nothing");
        EXPECT_EQ(Hueline::isUsingColor(), m == Mode::on);
    }
}

TEST(Unflip, WithoutAFlipThrowsATextAndChangesNothing)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        Hueline h;
        EXPECT_EQ(text_thrown_by_unflip(h), never_flipped);
        EXPECT_EQ(color_switch(), m != Mode::off);
        EXPECT_EQ(Hueline::getNoFrillsMode(), m == Mode::no_frills);
        EXPECT_EQ(text_thrown_by_unflip(h), never_flipped);
    }
}

TEST(Unflip, WithoutAFlipThrowsNoException)
{
    InMode const mode(Mode::off);
    Hueline h;
    try {
        h.unflipColor();
        FAIL();
    } catch (std::exception const&) {
        FAIL();
    } catch (std::string const&) {
        FAIL();
    } catch (...) {
    }
}

TEST(Unflip, IsTheObjectsOwn)
{
    InMode const mode(Mode::off);
    Hueline flipped;
    Hueline other;
    flipped.flipColor();
    EXPECT_EQ(text_thrown_by_unflip(other), never_flipped);
    EXPECT_TRUE(Hueline::isUsingColor());
}

TEST(Flip, IsVirtual)
{
    class Counting : public Hueline {
    public:
        int flips = 0;
        int unflips = 0;

    private:
        void flipColor() override { ++flips; }
        void unflipColor() override { ++unflips; }
    };
    InMode const mode(Mode::off);
    Counting counting;
    Hueline& h = counting;
    h.flipColor();
    h.unflipColor();
    EXPECT_EQ(counting.flips, 1);
    EXPECT_EQ(counting.unflips, 1);
    EXPECT_FALSE(Hueline::isUsingColor());
}

// ---------------------------------------------------------------------------------------------
// Lives of objects
// ---------------------------------------------------------------------------------------------

TEST(ColorizerObject, ChangesNothingWhenItIsConstructed)
{
    for (Mode const m : every_mode) {
        InMode const mode(m);
        Hueline const h;
        EXPECT_EQ(color_switch(), m != Mode::off);
        EXPECT_EQ(Hueline::getNoFrillsMode(), m == Mode::no_frills);
    }
}

TEST(ColorizerObject, PutsTheSwitchBackWhateverWasSet)
{
    for (Mode const m : every_mode) {
        for (bool const color : {false, true}) {
            InMode const mode(m);
            Hueline outer;
            {
                Hueline h;
                h.flipColor();
                outer.useColor(color);
            }
            EXPECT_EQ(color_switch(), m != Mode::off);
        }
    }
}

TEST(ColorizerObject, LeavesNoFrillsModeAsItIs)
{
    for (bool const at_construction : {false, true}) {
        for (bool const later : {false, true}) {
            InMode const mode(Mode::on);
            Hueline::setNoFrillsMode(at_construction);
            {
                Hueline const h;
                Hueline::setNoFrillsMode(later);
            }
            EXPECT_EQ(Hueline::getNoFrillsMode(), later);
        }
    }
}

TEST(ColorizerObject, RemembersTheSwitchNotWhetherColorIsInUse)
{
    InMode const mode(Mode::no_frills);
    {
        Hueline h;
        h.useColor(false);
    }
    EXPECT_TRUE(color_switch());
}

TEST(ColorizerObject, AsATemporaryUndoesItsOwnUseColor)
{
    InMode const mode(Mode::off);
    Hueline().useColor(true);
    EXPECT_FALSE(Hueline::isUsingColor());
}

TEST(ColorizerObject, NestsAsScopesDo)
{
    InMode const mode(Mode::off);
    Hueline outer;
    outer.flipColor();
    {
        Hueline inner;
        inner.flipColor();
        EXPECT_FALSE(Hueline::isUsingColor());
        {
            Hueline innermost;
            innermost.flipColor();
            EXPECT_TRUE(Hueline::isUsingColor());
        }
        EXPECT_FALSE(Hueline::isUsingColor());
    }
    EXPECT_TRUE(Hueline::isUsingColor());
    outer.unflipColor();
    EXPECT_FALSE(Hueline::isUsingColor());
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

TEST(ColorizerObject, PutsTheSwitchBackWhenAnExceptionPasses)
{
    InMode const mode(Mode::off);
    try {
        Hueline h;
        h.flipColor();
        throw std::runtime_error("");
    } catch (std::runtime_error const&) {
        EXPECT_FALSE(Hueline::isUsingColor());
    }
}

TEST(ColorizerObject, IsDestroyedWholeThroughItsBase)
{
    class Telling : public Hueline {
    public:
        explicit Telling(bool& told) : destroyed(told) {}
        Telling(Telling const&) = delete;
        Telling& operator=(Telling const&) = delete;
        ~Telling() override { destroyed = true; }

    private:
        bool& destroyed;
    };
    InMode const mode(Mode::off);
    bool destroyed = false;
    std::unique_ptr<Hueline> h = std::make_unique<Telling>(destroyed);
    h->flipColor();
    h.reset();
    EXPECT_TRUE(destroyed);
    EXPECT_FALSE(Hueline::isUsingColor());
}

TEST(ColorizerCopy, RemembersTheSameSwitch)
{
    InMode const mode(Mode::off);
    Hueline original;
    original.useColor(true);
    {
        Hueline const copy(original);
        EXPECT_TRUE(Hueline::isUsingColor());
    }
    EXPECT_FALSE(Hueline::isUsingColor()); // as when the original was constructed
}

TEST(ColorizerCopy, RemembersTheSameFlip)
{
    InMode const mode(Mode::on);
    Hueline original;
    Hueline before(original);
    original.flipColor();
    Hueline after(original);
    EXPECT_EQ(text_thrown_by_unflip(before), never_flipped);
    EXPECT_EQ(text_thrown_by_unflip(after), "nothing");
    EXPECT_TRUE(Hueline::isUsingColor());
}

TEST(ColorizerCopy, ByAssignmentTakesWhatTheOtherRemembers)
{
    InMode const mode(Mode::off);
    Hueline off;
    off.flipColor();
    {
        Hueline on;
        EXPECT_EQ(text_thrown_by_unflip(on), never_flipped);
        on = off;
        EXPECT_TRUE(Hueline::isUsingColor());
        EXPECT_EQ(text_thrown_by_unflip(on), "nothing");
        EXPECT_FALSE(Hueline::isUsingColor());
        on.useColor(true);
    }
    EXPECT_FALSE(Hueline::isUsingColor());
}

TEST(ColorizerCopy, ByAssignmentTakesNothingIfMemoryRunsOut)
{
    InMode const mode(Mode::off);
    Text flipped(std::string(1000, 'x'));
    flipped.flipColor();
    {
        Text on("text");
        EXPECT_TRUE(runs_out_of_memory([&] { on = flipped; }));
        EXPECT_EQ(text_thrown_by_unflip(on), never_flipped);
        EXPECT_EQ(written(on), "text");
        on.useColor(false);
    }
    EXPECT_TRUE(Hueline::isUsingColor()); // as when it was constructed
}

TEST(ColorizerCopy, HasTheSameText)
{
    Text const original("a\0b"s);
    Text const copy(original);
    Hueline const base = original;
    Text assigned("");
    assigned = original;
    EXPECT_EQ(written(copy), "a\0b"s);
    EXPECT_EQ(written(base), "a\0b"s);
    EXPECT_EQ(written(assigned), "a\0b"s);
    EXPECT_EQ(written(original), "a\0b"s);
}

// ---------------------------------------------------------------------------------------------
// Insertion
// ---------------------------------------------------------------------------------------------

TEST(Insertion, OfAPlainObjectWritesNothing)
{
    auto const run = on_terminal([] {
        Hueline h;
        h.useColor(true);
        std::cout << h;
        h.flipColor();
        std::cout << h;
    });
    EXPECT_EQ(run.out, "");
}

TEST(Insertion, WritesTheTextOfADerivedObjectWhateverTheSwitches)
{
    Text const text("\x1b[31m\0\xff\n"s);
    for (Mode const m : every_mode) {
        InMode const mode(m);
        EXPECT_EQ(readable(written(text)), R"(\e[31m\x00\xff\n)");
        EXPECT_EQ(written(Text("")), "");
    }
}

TEST(Insertion, PadsAsTheStandardOneOfATextDoes)
{
    std::ostringstream os;
    os << std::setfill('.') << std::setw(4) << Text("ab") << Text("cd") << '|';
    os << std::left << std::setw(4) << Text("ef") << '|';
    os << std::setw(3) << Hueline() << '|' << std::setw(1) << Text("gh");
    EXPECT_EQ(os.str(), "..abcd|ef..|...|gh");
    EXPECT_EQ(os.width(), 0);
}

TEST(Insertion, ReturnsTheStream)
{
    std::ostringstream os;
    EXPECT_EQ(&(os << Hueline()), &os);
}

// ---------------------------------------------------------------------------------------------
// Exceptions
// ---------------------------------------------------------------------------------------------

static_assert(std::is_abstract_v<HuelineExceptionInterface>);
static_assert(std::is_base_of_v<std::exception, HuelineExceptionInterface>);
static_assert(std::is_base_of_v<HuelineExceptionInterface, UnknownCodeException>);
static_assert(sizeof(UnknownCodeException) == sizeof(std::exception));

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

TEST(Exceptions, AreCaughtByEachBaseWhereverTheyAreThrown)
{
    for (auto* const throws : {throw_in_library, throw_here}) {
        EXPECT_EQ(caught_from<UnknownCodeException>(throws), "UnknownCodeException passed to Hueline");
        EXPECT_EQ(caught_from<HuelineExceptionInterface>(throws), "UnknownCodeException passed to Hueline");
        EXPECT_EQ(caught_from<std::exception>(throws), "UnknownCodeException passed to Hueline");
        EXPECT_EQ(caught_from<std::runtime_error>(throws), "another type");
    }
}

TEST(Exceptions, AreCopied)
{
    for (auto* const throws : {throw_in_library, throw_here}) {
        try {
            throws();
            FAIL();
        } catch (UnknownCodeException const& e) {
            UnknownCodeException copy(e);
            copy = e;
            EXPECT_STREQ(copy.what(), "UnknownCodeException passed to Hueline");
        }
    }
}

TEST(Exceptions, AreKeptAndThrownAgain)
{
    std::exception_ptr kept;
    try {
        throw_in_library();
    } catch (...) {
        kept = std::current_exception();
    }
    ASSERT_TRUE(kept);
    EXPECT_THROW(std::rethrow_exception(kept), UnknownCodeException);
}

TEST(Exceptions, AreDestroyedThroughTheirBases)
{
    std::unique_ptr<HuelineExceptionInterface> const unknown = std::make_unique<UnknownCodeException>();
    EXPECT_STREQ(unknown->what(), "UnknownCodeException passed to Hueline");

    // A program may have one of its own.
    class Own : public HuelineExceptionInterface {
    public:
        char const* what() const noexcept override { return "own"; }
    };
    try {
        throw Own{};
    } catch (UnknownCodeException const&) {
        FAIL();
    } catch (HuelineExceptionInterface const& e) {
        EXPECT_STREQ(e.what(), "own");
    }
}

} // namespace
