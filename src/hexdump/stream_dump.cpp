#include "kestry/hueline_stream.hpp"

#include "hexdump/dump.hpp"

#include <ostream>

namespace kestry::Hueline {

using namespace detail;

namespace {

Length length() { return HexDump::_longDumps ? Length::whole : Length::cut; }

} // namespace

bool HexDump::_longDumps = false;

// clang-format off
HexDump::HexDump(char b)                                 : HexDump(static_cast<unsigned char>(b)) {}
HexDump::HexDump(unsigned char b)                        : _text(raw_data_byte(b)) {}
HexDump::HexDump(unsigned short u)                       : _text(raw_data(u)) {}
HexDump::HexDump(unsigned long w)                        : _text(dump_word(w)) {}
HexDump::HexDump(std::vector<unsigned int> const& v)     : _text(dump_words(v)) {}
HexDump::HexDump(std::vector<unsigned char> const& v)    : _text(dump_bytes(v, " ", plain, length())) {}
HexDump::HexDump(std::string const& s)                   : _text(dump_bytes(bytes_of(s), " ", plain, length())) {}
HexDump::HexDump(std::vector<unsigned char> const& v, std::string const& separator)
                                                         : _text(dump_bytes(v, separator, plain, length())) {}
// clang-format on

std::string HexDump::raw_data_byte(unsigned char b) { return dump_byte(b); }

std::string HexDump::raw_data(unsigned short u) { return dump_short(u); }

std::string HexDump::raw_data(std::vector<unsigned char> const& v)
{
    return v.empty() ? "nil" : dump_bytes(v, " ", plain, length());
}

std::ostream& operator<<(std::ostream& os, HexDump const& d) { return os << d._text; }

} // namespace kestry::Hueline

std::ostream& operator<<(std::ostream& os, myfillandw const& m)
{
    os.fill(m.fill);
    os.width(m.width);
    return os;
}
