// Streams that fail, throw, have a small buffer or no facets, and the objects of the string interface that are
// inserted into them. Its functions that return strings use no stream that a caller could spoil.

#include "kestry/hueline_classic.hpp"

#include "support/buffers.hpp"
#include "support/testing.hpp"
#include "failing_facets.hpp"

namespace {

using namespace hueline::test;
using kestry::HexColor;
using kestry::HexDump;
using kestry::Hueline;

std::string const dumped = "AB"; // "41 42 "

TEST(InsertionOfADump, MakesAStreamBadWhoseBufferIsFull)
{
    HexDump const dump(dumped);
    for (std::size_t bytes = 0; bytes <= 7; ++bytes) {
        SmallBuffer buffer(bytes);
        std::ostream os(&buffer);
        os << dump;
        EXPECT_EQ(buffer.text(), std::string("41 42 ").substr(0, bytes));
        EXPECT_EQ(os.bad(), bytes < 6);
        buffer.empty();
        os.width(9);
        os << dump; // nothing, if the stream is bad
        os.clear();
        os << dump;
        EXPECT_EQ(buffer.text(), bytes < 6 ? "   41 42 " : "   41 42 41 42 ");
    }
}

TEST(InsertionOfADump, ThrowsWhatTheStreamOrItsBufferThrows)
{
    HexDump const dump(dumped);
    SmallBuffer buffer(3);
    std::ostream os(&buffer);
    os.exceptions(std::ios_base::badbit);
    EXPECT_THROW(os << dump, std::ios_base::failure);
    EXPECT_EQ(buffer.text(), "41 ");

    SmallBuffer throwing(0, AtEnd::throws);
    std::ostream other(&throwing);
    other << dump;
    EXPECT_TRUE(other.bad());
    other.clear();
    other.exceptions(std::ios_base::badbit);
    EXPECT_THROW(other << dump, BufferFault);
}

// The object is destroyed on the way out.
TEST(InsertionOfADump, PutsTheSwitchBackWhenItThrows)
{
    SmallBuffer buffer(0, AtEnd::throws);
    std::ostream os(&buffer);
    os.exceptions(std::ios_base::badbit);
    auto const insert = [&os] {
        HexDump dump(dumped);
        dump.useColor(true);
        os << dump;
    };
    EXPECT_THROW(insert(), BufferFault);
    EXPECT_FALSE(Hueline::isUsingColor());
}

TEST(InsertionOfADump, NeedsAFacetToPadItAndNoOther)
{
    std::stringbuf buffer;
    WithoutFacets os(&buffer);
    os << HexDump(dumped) << HexDump(0xdeadbeefUL) << Hueline();
    EXPECT_TRUE(os.good());
    os.width(9); // the blank to fill with is widened
    os << HexDump(dumped);
    EXPECT_TRUE(os.bad());
    EXPECT_EQ(buffer.str(), "41 42 deadbeef");
}

TEST(InsertionOfADump, IntoAFullDeviceOrAClosedDescriptorMakesItBad)
{
    for (Sinks const sinks : {Sinks{Sink::full, Sink::closed}, Sinks{Sink::closed, Sink::closed}}) {
        auto const run = run_with(sinks, [] {
            std::cout << HexDump(dumped) << std::flush;
            std::cerr << HexDump(dumped);
            report(std::cout.bad() && std::cerr.bad() ? "bad" : "good");
        });
        EXPECT_EQ(run.report, "bad");
        EXPECT_EQ(run.status, 0);
    }
}

TEST(Strings, AreWholeWhateverFacetsTheGlobalLocaleLacks)
{
    auto const run = on_pipe([] {
        std::locale::global(std::locale(std::locale(std::locale::classic(), new NoNumbers), new NoWidening));
        Hueline color;
        color.useColor(true);
        std::vector<unsigned char> const bytes(20, 0xab);
        report(readable(Hueline::color(HexColor::red) + Hueline::bright_color(HexColor::red) + Hueline::color(1, 2, 3) +
                        Hueline::color(HexColor::blue, 0x0a) + kestry::ColorTheme::path(4000000000U) +
                        HexDump::raw_data(static_cast<unsigned short>(0xbeef)) + '|'));
        report(readable(HexDump::raw_data(std::vector<unsigned char>{0x01}) + '|'));
        std::string const cut = HexDump::raw_data(bytes);
        report(readable(cut.substr(cut.size() - 38)));
    });
    EXPECT_EQ(run.report, R"(\e[31m\e[91m\e[38;2;1;2;3m\e[34m0a\e[36m40000000000xbeef|\e[32m01 \e[0m|)"
                          R"(ab  ... \e[33m(\e[36m20 bytes\e[33m) \e[0m)");
    EXPECT_EQ(run.status, 0);
}

TEST(Strings, AreWholeWhileTheStandardStreamsFail)
{
    auto const run = run_with({Sink::full, Sink::closed}, [] {
        std::fclose(stdout);
        std::cout.setstate(std::ios_base::badbit);
        std::cout.exceptions(std::ios_base::goodbit);
        Hueline color;
        color.useColor(true);
        report(readable(kestry::ColorTheme::alert("alert") + HexDump::raw_data_byte(0xff) + Hueline::show_cursor()));
        report(std::to_string(Hueline::current_time().size()));
    });
    EXPECT_EQ(run.report, R"(\e[1m\e[31malert\e[2m\e[32mff\e[?25h26)"); // a colour and 21 characters of time
    EXPECT_EQ(run.status, 0);
}

} // namespace
