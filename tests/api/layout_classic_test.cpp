#include "kestry/hueline_classic.hpp"

#include "api/layout.hpp"

#include "support/testing.hpp"

#include <dlfcn.h>

namespace {

using namespace kestry;
using hueline::test::offset;
using hueline::test::value_at;

static_assert(std::is_same_v<std::underlying_type_t<HexColor>, int>);
static_assert(!std::is_convertible_v<HexColor, int>);
static_assert(static_cast<int>(HexColor::reset) == 0);
static_assert(static_cast<int>(HexColor::bright) == 1);
static_assert(static_cast<int>(HexColor::dim) == 2);
static_assert(static_cast<int>(HexColor::red) == 31);
static_assert(static_cast<int>(HexColor::green) == 32);
static_assert(static_cast<int>(HexColor::yellow) == 33);
static_assert(static_cast<int>(HexColor::blue) == 34);
static_assert(static_cast<int>(HexColor::magenta) == 35);
static_assert(static_cast<int>(HexColor::cyan) == 36);
static_assert(static_cast<int>(HexColor::white) == 37);

static_assert(std::is_same_v<std::underlying_type_t<HexColor_VGA>, int>);
static_assert(!std::is_convertible_v<HexColor_VGA, int>);
static_assert(static_cast<int>(HexColor_VGA::black) == 0);
static_assert(static_cast<int>(HexColor_VGA::maroon) == 1);
static_assert(static_cast<int>(HexColor_VGA::green) == 2);
static_assert(static_cast<int>(HexColor_VGA::olive) == 3);
static_assert(static_cast<int>(HexColor_VGA::navy) == 4);
static_assert(static_cast<int>(HexColor_VGA::purple) == 5);
static_assert(static_cast<int>(HexColor_VGA::teal) == 6);
static_assert(static_cast<int>(HexColor_VGA::silver) == 7);
static_assert(static_cast<int>(HexColor_VGA::gray) == 8);
static_assert(static_cast<int>(HexColor_VGA::red) == 9);
static_assert(static_cast<int>(HexColor_VGA::lime) == 10);
static_assert(static_cast<int>(HexColor_VGA::yellow) == 11);
static_assert(static_cast<int>(HexColor_VGA::blue) == 12);
static_assert(static_cast<int>(HexColor_VGA::fuchsia) == 13);
static_assert(static_cast<int>(HexColor_VGA::aqua) == 14);
static_assert(static_cast<int>(HexColor_VGA::white) == 15);

// The virtual functions of a class in the order of their slots, read from the shared object. The first two words of a
// table are the offset to the top and the type (Itanium C++ ABI 2.5.2).
std::vector<void*> slots(char const* table, std::size_t count)
{
    auto const words = static_cast<void* const*>(dlsym(RTLD_DEFAULT, table));
    if (words == nullptr) {
        ADD_FAILURE() << table << " is not exported";
        return {};
    }
    return {words + 2, words + 2 + count};
}

std::vector<void*> functions(std::vector<char const*> const& names)
{
    std::vector<void*> found;
    for (char const* const name : names) {
        found.push_back(dlsym(RTLD_DEFAULT, name));
        EXPECT_NE(found.back(), nullptr) << name << " is not exported";
    }
    return found;
}

TEST(Slots, OfHueline)
{
    auto const expected = functions({
        "_ZN6kestry7Hueline9flipColorEv",    // flipColor()
        "_ZN6kestry7Hueline11unflipColorEv", // unflipColor()
        "_ZN6kestry7HuelineD1Ev",            // ~Hueline(), complete object
        "_ZN6kestry7HuelineD0Ev",            // ~Hueline(), deleting
    });
    EXPECT_EQ(slots("_ZTVN6kestry7HuelineE", 4), expected);
}

TEST(Slots, OfHexDump)
{
    auto const expected = functions({
        "_ZN6kestry7Hueline9flipColorEv",    // inherited
        "_ZN6kestry7Hueline11unflipColorEv", // inherited
        "_ZN6kestry7HexDumpD1Ev",            // ~HexDump(), complete object
        "_ZN6kestry7HexDumpD0Ev",            // ~HexDump(), deleting
    });
    EXPECT_EQ(slots("_ZTVN6kestry7HexDumpE", 4), expected);
}

// g++ leaves the slots of an abstract class's destructor empty, since no object shows that table once it is complete.
TEST(Slots, OfHuelineExceptionInterface)
{
    auto const table = slots("_ZTVN6kestry25HuelineExceptionInterfaceE", 3);
    ASSERT_EQ(table.size(), 3u);
    EXPECT_EQ(table[2], functions({"__cxa_pure_virtual"})[0]); // what()
}

TEST(Slots, OfUnknownCodeException)
{
    auto const expected = functions({
        "_ZN6kestry20UnknownCodeExceptionD1Ev",     // destructor, complete object
        "_ZN6kestry20UnknownCodeExceptionD0Ev",     // destructor, deleting
        "_ZNK6kestry20UnknownCodeException4whatEv", // what()
    });
    EXPECT_EQ(slots("_ZTVN6kestry20UnknownCodeExceptionE", 3), expected);
}

static_assert(std::is_abstract_v<HuelineExceptionInterface>);
static_assert(std::is_convertible_v<HuelineExceptionInterface*, std::exception*>);
static_assert(sizeof(HuelineExceptionInterface) == sizeof(std::exception));

static_assert(std::is_convertible_v<UnknownCodeException*, HuelineExceptionInterface*>);
static_assert(sizeof(UnknownCodeException) == sizeof(std::exception));
static_assert(std::is_copy_constructible_v<UnknownCodeException>);

static_assert(std::is_polymorphic_v<Hueline> && std::has_virtual_destructor_v<Hueline>);
constexpr int flags = sizeof(void*); // after the pointer to the table of virtual functions
static_assert(sizeof(Hueline) == 2 * flags + sizeof(std::string));
static_assert(std::is_copy_constructible_v<Hueline> && std::is_copy_assignable_v<Hueline>);

static_assert(std::is_same_v<decltype(&Hueline::useColor), void (Hueline::*)(bool)>, "needs an object");
static_assert(std::is_same_v<decltype(&Hueline::setNoFrillsMode), void (*)(bool)>, "needs none");

struct Derived : Hueline {
    std::ptrdiff_t text_offset() const { return offset(static_cast<Hueline const&>(*this), _text); }
};

TEST(Layout, HuelineHoldsItsFlagsInOrder)
{
    Hueline off;
    EXPECT_FALSE(value_at<bool>(off, flags));     // _flipped
    EXPECT_FALSE(value_at<bool>(off, flags + 2)); // _initialColor
    off.flipColor();
    EXPECT_TRUE(value_at<bool>(off, flags));
    EXPECT_FALSE(value_at<bool>(off, flags + 1)); // _savedColor

    Hueline on;
    EXPECT_FALSE(value_at<bool>(on, flags));
    EXPECT_TRUE(value_at<bool>(on, flags + 2));
    on.flipColor();
    EXPECT_TRUE(value_at<bool>(on, flags + 1));
}

TEST(Layout, HuelineHoldsItsTextLast) { EXPECT_EQ(Derived().text_offset(), 2 * flags); }

TEST(Layout, ACopyOfAHuelineHoldsTheSame)
{
    Hueline original;
    original.flipColor();
    Hueline const copy = original;
    EXPECT_TRUE(value_at<bool>(copy, flags));
    EXPECT_FALSE(value_at<bool>(copy, flags + 1));
    EXPECT_FALSE(value_at<bool>(copy, flags + 2));
}

static_assert(std::is_convertible_v<HexDump*, Hueline*>);
static_assert(sizeof(HexDump) == sizeof(Hueline));
static_assert(std::is_same_v<decltype(HexDump::_longDumps), bool>);

static_assert(std::is_convertible_v<char, HexDump>);
static_assert(std::is_convertible_v<unsigned char, HexDump>);
static_assert(std::is_convertible_v<unsigned short, HexDump>);
static_assert(std::is_convertible_v<unsigned long, HexDump>);
static_assert(std::is_convertible_v<std::vector<unsigned int>, HexDump>);
static_assert(std::is_convertible_v<std::vector<unsigned char>, HexDump>);
static_assert(std::is_convertible_v<std::string, HexDump>);

TEST(Constructors, TakeWhatADumpShows)
{
    auto const text_of = [](HexDump const& dump) {
        std::ostringstream os;
        os << dump;
        return os.str();
    };
    std::vector<unsigned char> const bytes{0x01, 0xff};
    HexDump const dump = bytes;
    EXPECT_EQ(text_of(dump), "01 ff ");
    EXPECT_EQ(text_of('A'), "41");
    EXPECT_EQ(text_of({"AB"}), "41 42 ");
    EXPECT_EQ(text_of({bytes, ":"}), "01:ff:");
}

} // namespace
