#include "kestry/hueline_stream.hpp"

#include "support/testing.hpp"

namespace {

using namespace kestry::Hueline::ColorTheme;
using namespace kestry::Hueline::DataTheme;
using kestry::Hueline::HexDump;
using std::ios_base;

TEST(ThemeStreamPath, OfANumberLeavesTheStreamDecimalAndItsOtherFlags)
{
    for (auto const base : {ios_base::hex, ios_base::oct, ios_base::dec, ios_base::fmtflags{}}) {
        std::ostringstream os;
        os << std::uppercase << std::showbase << std::showpos << std::left << std::boolalpha;
        os.setf(base, ios_base::basefield);
        auto const others = os.flags() & ~ios_base::basefield;
        os << path(std::uint32_t{255});
        EXPECT_EQ(os.str(), "255");
        EXPECT_EQ(os.flags(), others | ios_base::dec);
    }
}

// Dumped when it is inserted, not when it is made.
TEST(ThemeStreamField, OfATitleReadsLongDumpsAtTheInsertion)
{
    request_title const request("twenty characters...");
    response_title const response("twenty characters...");
    for (bool const whole : {false, true, false}) {
        HexDump::_longDumps = whole;
        std::ostringstream os;
        os << request << response;
        std::string const dump = "74 77 65 6e 74 79 20 63 68 61 72 61 63 74 65 72 73 2e 2e ";
        std::string const rest = whole ? "2e " : " ... (20 bytes) ";
        EXPECT_EQ(os.str(), dump + rest + dump + rest);
    }
}

} // namespace
