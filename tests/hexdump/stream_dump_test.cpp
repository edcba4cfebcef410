#include "kestry/hueline_stream.hpp"

#include "support/formula.hpp"

using kestry::Hueline::HexDump;

template <class Body>
static void in_every_look(Body body)
{
    body(hueline::test::Colors{}); // never in colour
}

#include "hexdump/either_dump.hpp"

namespace {

TEST(StreamDump, RawDataOfBytesIsTheDumpOrNil)
{
    for (bool const whole : {false, true}) {
        LongDumps const in_full(whole);
        EXPECT_EQ(HexDump::raw_data(Bytes{}), "nil");
        EXPECT_EQ(HexDump::raw_data(Bytes{0x20}), "20 ");
        EXPECT_EQ(HexDump::raw_data(counted(20)), dump_of(counted(20), " ", {}, whole));
    }
}

TEST(FillAndWidth, TakeAnyValue)
{
    std::ostringstream os;
    for (int const width : {0, -1, INT_MIN, INT_MAX}) {
        os << myfillandw{'\0', width};
        EXPECT_EQ(os.width(), width);
        EXPECT_EQ(os.fill(), '\0');
    }
    os << myfillandw{'*', 6} << 42 << std::setw(3) << 7;
    EXPECT_EQ(os.str(), "****42**7");
}

} // namespace
