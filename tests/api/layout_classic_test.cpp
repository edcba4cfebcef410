#include "kestry/hueline_classic.hpp"

#include "api/layout.hpp"

#include "support/testing.hpp"

#include <dlfcn.h>

namespace {

using namespace kestry;
using hueline::test::offset;
using hueline::test::value_at;

template <class Code>
constexpr bool are_numbered_from(int first, std::initializer_list<Code> codes)
{
    return std::all_of(codes.begin(), codes.end(), [&first](Code code) { return static_cast<int>(code) == first++; });
}

template <class Code>
constexpr bool is_a_class_of_ints =
    std::is_same_v<std::underlying_type_t<Code>, int> && !std::is_convertible_v<Code, int>;

static_assert(is_a_class_of_ints<HexColor> && is_a_class_of_ints<HexColor_VGA>);
static_assert(are_numbered_from(0, {HexColor::reset, HexColor::bright, HexColor::dim}));
static_assert(are_numbered_from(31, {HexColor::red, HexColor::green, HexColor::yellow, HexColor::blue,
                                     HexColor::magenta, HexColor::cyan, HexColor::white}));
static_assert(are_numbered_from(0,
                                {HexColor_VGA::black, HexColor_VGA::maroon, HexColor_VGA::green, HexColor_VGA::olive,
                                 HexColor_VGA::navy, HexColor_VGA::purple, HexColor_VGA::teal, HexColor_VGA::silver,
                                 HexColor_VGA::gray, HexColor_VGA::red, HexColor_VGA::lime, HexColor_VGA::yellow,
                                 HexColor_VGA::blue, HexColor_VGA::fuchsia, HexColor_VGA::aqua, HexColor_VGA::white}));

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

TEST(Slots, AreInOrder)
{
    struct {
        char const* table;
        std::vector<char const*> functions;
    } const classes[] = {{"_ZTVN6kestry7HuelineE",
                          {"_ZN6kestry7Hueline9flipColorEv",    // flipColor()
                           "_ZN6kestry7Hueline11unflipColorEv", // unflipColor()
                           "_ZN6kestry7HuelineD1Ev",            // ~Hueline(), complete object
                           "_ZN6kestry7HuelineD0Ev"}},          // ~Hueline(), deleting
                         {"_ZTVN6kestry7HexDumpE",
                          {"_ZN6kestry7Hueline9flipColorEv",    // inherited
                           "_ZN6kestry7Hueline11unflipColorEv", // inherited
                           "_ZN6kestry7HexDumpD1Ev", "_ZN6kestry7HexDumpD0Ev"}},
                         {"_ZTVN6kestry20UnknownCodeExceptionE",
                          {"_ZN6kestry20UnknownCodeExceptionD1Ev", "_ZN6kestry20UnknownCodeExceptionD0Ev",
                           "_ZNK6kestry20UnknownCodeException4whatEv"}}};
    for (auto const& each : classes) {
        EXPECT_EQ(slots(each.table, each.functions.size()), functions(each.functions)) << each.table;
    }
}

// g++ leaves the slots of an abstract class's destructor empty, since no object shows that table once it is complete.
TEST(Slots, OfHuelineExceptionInterface)
{
    auto const table = slots("_ZTVN6kestry25HuelineExceptionInterfaceE", 3);
    ASSERT_EQ(table.size(), 3u);
    EXPECT_EQ(table[2], functions({"__cxa_pure_virtual"})[0]); // what()
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

template <class... From>
constexpr bool is_dumped = (std::is_convertible_v<From, HexDump> && ...);
static_assert(is_dumped<char, unsigned char, unsigned short, unsigned long, std::vector<unsigned int>,
                        std::vector<unsigned char>, std::string>);

TEST(Constructors, TakeWhatADumpShows)
{
    auto const text_of = [](HexDump const& dump) {
        std::ostringstream os;
        os << dump;
        return os.str();
    };
    std::vector<unsigned char> const bytes{0x01, 0xff};
    EXPECT_EQ(text_of(bytes), "01 ff ");
    EXPECT_EQ(text_of('A'), "41");
    EXPECT_EQ(text_of({"AB"}), "41 42 ");
    EXPECT_EQ(text_of({bytes, ":"}), "01:ff:");
}

} // namespace
