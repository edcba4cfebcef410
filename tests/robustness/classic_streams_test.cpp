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

// ---------------------------------------------------------------------------------------------
// Insertion
// ---------------------------------------------------------------------------------------------

TEST(InsertionOfADump, LeavesAFailedStreamAlone)
{
    HexDump const dump(dumped);
    for (auto const state : {std::ios_base::failbit, std::ios_base::badbit, std::ios_base::eofbit}) {
        std::ostringstream os;
        os.setstate(state);
        os.width(9);
        os << dump;
        EXPECT_EQ(os.str(), "");
        EXPECT_EQ(os.width(), 9);
        os.clear();
        os << dump;
        EXPECT_EQ(os.str(), "   41 42 ");
    }
}

TEST(InsertionOfADump, MakesAStreamBadThatHasNoBuffer)
{
    std::ostream os(nullptr);
    os << HexDump(dumped) << Hueline();
    EXPECT_TRUE(os.bad());
}

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
        os.clear();
        os << dump;
        EXPECT_EQ(buffer.text(), "41 42 ");
    }
}

TEST(InsertionOfADump, ThrowsWhatTheStreamThrows)
{
    HexDump const dump(dumped);
    SmallBuffer buffer(3);
    std::ostream os(&buffer);
    os.exceptions(std::ios_base::badbit);
    EXPECT_THROW(os << dump, std::ios_base::failure);
    EXPECT_EQ(buffer.text(), "41 ");
}

TEST(InsertionOfADump, ThrowsWhatTheBufferThrowsIfTheStreamIsToThrow)
{
    HexDump const dump(dumped);
    SmallBuffer buffer(0, AtEnd::throws);
    std::ostream os(&buffer);
    os << dump;
    EXPECT_TRUE(os.bad());
    os.clear();
    os.exceptions(std::ios_base::badbit);
    EXPECT_THROW(os << dump, BufferFault);
}

// The object is destroyed on the way out.
TEST(InsertionOfADump, PutsTheSwitchBackWhenItThrows)
{
    auto const run = on_pipe([] {
        SmallBuffer buffer(0, AtEnd::throws);
        std::ostream os(&buffer);
        os.exceptions(std::ios_base::badbit);
        try {
            HexDump dump(dumped);
            dump.useColor(true);
            os << dump;
        } catch (BufferFault const&) {
            report(Hueline::isUsingColor() ? "colour" : "plain");
        }
    });
    EXPECT_EQ(run.report, "plain");
}

TEST(InsertionOfADump, NeedsNoFacet)
{
    std::stringbuf buffer;
    WithoutFacets os(&buffer);
    os << HexDump(dumped) << HexDump(0xdeadbeefUL) << Hueline();
    EXPECT_EQ(buffer.str(), "41 42 deadbeef");
    EXPECT_TRUE(os.good());
}

TEST(InsertionOfADump, NeedsAFacetToPadIt)
{
    std::stringbuf buffer;
    WithoutFacets os(&buffer);
    os.width(9); // the blank to fill with is widened
    os << HexDump(dumped);
    EXPECT_EQ(buffer.str(), "");
    EXPECT_TRUE(os.bad());
}

// ---------------------------------------------------------------------------------------------
// Standard output
// ---------------------------------------------------------------------------------------------

TEST(InsertionOfADump, IntoAFullDeviceMakesItBad)
{
    auto const run = run_with({Sink::full, Sink::pipe}, [] {
        std::cout << HexDump(dumped) << std::flush;
        report(std::cout.bad() ? "bad" : "good");
    });
    EXPECT_EQ(run.report, "bad");
    EXPECT_EQ(run.status, 0);
}

TEST(InsertionOfADump, IntoAClosedDescriptorMakesItBad)
{
    auto const run = run_with({Sink::closed, Sink::closed}, [] {
        std::cout << HexDump(dumped) << std::flush;
        std::cerr << HexDump(dumped);
        report(std::cout.bad() && std::cerr.bad() ? "bad" : "good");
    });
    EXPECT_EQ(run.report, "bad");
    EXPECT_EQ(run.status, 0);
}

// ---------------------------------------------------------------------------------------------
// Strings
// ---------------------------------------------------------------------------------------------

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
