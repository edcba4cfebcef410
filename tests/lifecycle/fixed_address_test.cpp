// Linked at a fixed address, this program has a copy of its own of each variable, vtable and type description of the library
// that it names, and the library has to use that one.
#include "kestry/hueline_classic.hpp"

#include "support/testing.hpp"

namespace {

using kestry::HexDump;
using kestry::Hueline;

std::string dump_of_twenty()
{
    std::ostringstream os;
    os << HexDump(std::vector<unsigned char>(20, 0x0a));
    return os.str();
}

TEST(FixedAddress, WhatTheProgramAssignsIsWhatTheLibraryReads)
{
    std::string const nineteen = "0a 0a 0a 0a 0a 0a 0a 0a 0a 0a 0a 0a 0a 0a 0a 0a 0a 0a 0a ";
    EXPECT_EQ(dump_of_twenty(), nineteen + " ... (20 bytes) ");
    HexDump::_longDumps = true;
    EXPECT_TRUE(HexDump::isLongDumps());
    EXPECT_EQ(dump_of_twenty(), nineteen + "0a ");
    HexDump::_longDumps = false;
    EXPECT_EQ(dump_of_twenty(), nineteen + " ... (20 bytes) ");
}

TEST(FixedAddress, TheSwitchesOfTheProgramAreThoseOfTheLibrary)
{
    Hueline putting_back;
    EXPECT_FALSE(Hueline::_useColor);
    putting_back.useColor(true);
    EXPECT_TRUE(Hueline::_useColor);
    Hueline::_noFrillsMode = true;
    EXPECT_EQ(Hueline::color(kestry::HexColor::red), "");
    Hueline::_noFrillsMode = false;
    EXPECT_EQ(Hueline::color(kestry::HexColor::red), "\x1b[31m");
    Hueline::_useColor = false;
    EXPECT_FALSE(Hueline::isUsingColor());
}

TEST(FixedAddress, ExceptionsAreCaughtByTheirTypes)
{
    auto const wrong_code = [] { return Hueline::color(static_cast<kestry::HexColor_VGA>(99)); };
    EXPECT_THROW(wrong_code(), kestry::UnknownCodeException);
    EXPECT_THROW(wrong_code(), kestry::HuelineExceptionInterface);
    EXPECT_THROW(wrong_code(), std::exception);
}

TEST(FixedAddress, ADumpIsKnownAsOne)
{
    HexDump const dump('a');
    Hueline const plain;
    Hueline const* either = &dump;
    EXPECT_NE(dynamic_cast<HexDump const*>(either), nullptr);
    either = &plain;
    EXPECT_EQ(dynamic_cast<HexDump const*>(either), nullptr);
}

} // namespace
