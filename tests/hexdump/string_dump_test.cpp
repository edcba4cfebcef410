#include "kestry/hueline_classic.hpp"

#include "support/formula.hpp"
#include "support/made_up_locale.hpp"
#include "support/modes.hpp"

using kestry::HexDump;

template <class Body>
static void in_every_look(Body body)
{
    using namespace hueline::test;
    for (Mode const m : every_mode) {
        InMode const mode(m);
        body(m == Mode::on ? Colors{"\x1b[32m", "\x1b[33m", "\x1b[36m", "\x1b[0m"} : Colors{});
    }
}

#include "hexdump/either_dump.hpp"

namespace {

using kestry::Hueline;

static_assert(std::is_base_of_v<Hueline, HexDump>);
static_assert(sizeof(HexDump) == sizeof(Hueline));

std::string read(HexDump const& dump) { return readable(text_of(dump)); }

TEST(StringDump, HasAColorBeforeEachByteAndOneReset)
{
    InMode const mode(Mode::on);
    EXPECT_EQ(read(HexDump(Bytes{})), "");
    EXPECT_EQ(read(HexDump(Bytes{0x01, 0xff})), R"(\e[32m01 \e[32mff \e[0m)");
    EXPECT_EQ(read(HexDump(Bytes{0x01, 0x02}, "\x1b[1m\0|"s)), R"(\e[32m01\e[1m\x00|\e[32m02\e[1m\x00|\e[0m)");
    EXPECT_EQ(read(HexDump(Bytes(300, 0xaa), "")),
              R"(\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa)"
              R"(\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa\e[32maa)"
              R"( ... \e[33m(\e[36m300 bytes\e[33m) \e[0m)");
}

TEST(StringDump, RawDataOfBytesHasNoWhiteSpaceAtItsEndAndKeepsItsReset)
{
    in_every_look([](Colors const& colors) {
        for (bool const whole : {false, true}) {
            LongDumps const in_full(whole);
            EXPECT_EQ(HexDump::raw_data(Bytes{}), "nil");
            std::string expected = dump_of(counted(20), " ", colors, whole);
            if (colors.end.empty()) {
                expected.pop_back();
            }
            EXPECT_EQ(HexDump::raw_data(counted(20)), expected);
        }
    });
    EXPECT_EQ(HexDump::raw_data(Bytes{0x20, 0x20}), "20 20");
}

TEST(StringDump, KeepsTheColorsItWasConstructedWith)
{
    HexDump const plain(Bytes{0x01});
    InMode const mode(Mode::on);
    HexDump const colored(Bytes{0x01});
    EXPECT_EQ(read(plain), "01 ");
    Hueline::setNoFrillsMode(true);
    EXPECT_EQ(read(colored), R"(\e[32m01 \e[0m)");
}

// The switch as each constructor finds it, whatever temporaries it needs.
TEST(StringDump, RemembersTheColorSwitchInEveryConstructor)
{
    InMode const mode(Mode::off);
    Hueline keeper;
    auto const remembers = [&](auto const&... made_of) {
        for (bool const color : {false, true}) {
            keeper.useColor(color);
            auto dump = std::make_unique<HexDump>(made_of...);
            EXPECT_EQ(Hueline::isUsingColor(), color);
            keeper.useColor(!color);
            dump.reset();
            EXPECT_EQ(Hueline::isUsingColor(), color);
        }
    };
    remembers('A');
    remembers(static_cast<unsigned char>(1));
    remembers(Short{1});
    remembers(1ul);
    remembers(Words{1});
    remembers(Bytes{1});
    remembers(Bytes{1}, ":"s);
    remembers("A"s);
}

TEST(Rtrim, CutsSixBytesAtTheEndInTheDefaultLocale)
{
    std::string cut;
    for (int value = 0; value < 256; ++value) {
        std::string const ending(1, static_cast<char>(value));
        std::string const trimmed = rtrim(" a" + ending);
        if (trimmed == " a") {
            cut += ending;
        } else {
            EXPECT_EQ(trimmed, " a" + ending);
        }
    }
    EXPECT_EQ(readable(cut), R"(\t\n\x0b\x0c\r )");
    EXPECT_EQ(rtrim(""), "");
    EXPECT_EQ(rtrim("  \0 a b\t \n"s), "  \0 a b"s);
    EXPECT_EQ(rtrim(std::string(100, ' ')), "");
}

TEST(Rtrim, FollowsTheLocaleOfTheProcess)
{
    EXPECT_EQ(rtrim("a \xa0"), "a \xa0");
    MadeUpLocale const locale({.space = "<U00A0>;<U00FF>"});
    EXPECT_EQ(rtrim("a \xa0\xff"), "a");
    EXPECT_EQ(rtrim("a \xa1 "), "a \xa1");
    EXPECT_EQ(rtrim("\xff"), "");
}

} // namespace
