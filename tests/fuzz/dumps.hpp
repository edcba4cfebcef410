/// \file
/// Both hex dumps against the formula of the tests: they have the same forms.
#pragma once

#include "fuzzer.hpp"

#include "support/dumps.hpp"
#include "support/formula.hpp"

namespace hueline::fuzz {

using test::Bytes;
using test::Colors;
using test::digits;
using test::dump_of;
using test::text_of;

template <class HexDump>
void check_bytes(Bytes const& bytes, std::string const& separator, Colors const& colors)
{
    std::string const expected = dump_of(bytes, " ", colors, HexDump::_longDumps);
    expect_equal("bytes", expected, text_of(HexDump(bytes)));
    expect_equal("string", expected, text_of(HexDump(std::string(bytes.begin(), bytes.end()))));
    expect_equal("bytes, separated", dump_of(bytes, separator, colors, HexDump::_longDumps),
                 text_of(HexDump(bytes, separator)));
}

/// Numbers made of the first bytes.
template <class HexDump>
void check_numbers(Bytes const& bytes, Colors const& colors)
{
    std::vector<unsigned> words;
    std::string expected;
    for (std::size_t i = 0; i < std::min<std::size_t>(bytes.size(), 16); ++i) {
        unsigned char const b = bytes[i];
        auto const u = static_cast<unsigned short>(b << 8 | bytes[bytes.size() - 1 - i]);
        words.push_back(b * (u | 1U) * 65537U);
        unsigned long const w = words.back() * (i + 1UL) * 65537UL;
        expected += digits("%08lx ", words.back());
        expect_equal("char", colors.byte + digits("%02lx", b), text_of(HexDump(static_cast<char>(b))));
        expect_equal("unsigned char", colors.byte + digits("%02lx", b), text_of(HexDump(b)));
        expect_equal("raw_data_byte", colors.byte + digits("%02lx", b), HexDump::raw_data_byte(b));
        expect_equal("unsigned short", digits("0x%04lx", u), text_of(HexDump(u)));
        expect_equal("raw_data of a short", digits("0x%04lx", u), HexDump::raw_data(u));
        expect_equal("unsigned long", digits("%08lx", w), text_of(HexDump(w)));
    }
    expect_equal("words", expected, text_of(HexDump(words)));
}

} // namespace hueline::fuzz
