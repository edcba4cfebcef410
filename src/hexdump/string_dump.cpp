#include "kestry/hueline_classic.hpp"

#include "hexdump/dump.hpp"

#include <algorithm>
#include <cctype>

namespace kestry {

using namespace detail;

namespace {

std::string colored_dump(std::span<unsigned char const> bytes, std::string_view separator)
{
    DumpColors const colored{"\x1b[32m", "\x1b[33m", "\x1b[36m", "\x1b[0m"}; // green, yellow, cyan, reset
    return dump_bytes(bytes, separator, Hueline::isUsingColor() ? colored : plain,
                      HexDump::isLongDumps() ? Length::whole : Length::cut);
}

// How much of text is left without the white space at its end.
std::size_t trimmed_size(std::string_view text)
{
    auto const is_space = [](unsigned char c) { return std::isspace(c) != 0; };
    auto const last = std::find_if_not(text.rbegin(), text.rend(), is_space);
    return static_cast<std::size_t>(text.rend() - last);
}

} // namespace

bool HexDump::_longDumps = false;

bool HexDump::isLongDumps() { return _longDumps; }

// clang-format off
HexDump::HexDump(char b)                              : HexDump(static_cast<unsigned char>(b)) {}
HexDump::HexDump(unsigned char b)                     { _text = raw_data_byte(b); }
HexDump::HexDump(unsigned short u)                    { _text = raw_data(u); }
HexDump::HexDump(unsigned long w)                     { _text = dump_word(w); }
HexDump::HexDump(std::vector<unsigned int> const& v)  { _text = dump_words(v); }
HexDump::HexDump(std::vector<unsigned char> const& v) { _text = colored_dump(v, " "); }
HexDump::HexDump(std::string const& s)                { _text = colored_dump(bytes_of(s), " "); }
HexDump::HexDump(std::vector<unsigned char> const& v, std::string const& separator)
                                                      { _text = colored_dump(v, separator); }
// clang-format on

HexDump::~HexDump() = default;

std::string HexDump::raw_data_byte(unsigned char b) { return color(HexColor::green, b); }

std::string HexDump::raw_data(unsigned short u) { return dump_short(u); }

std::string HexDump::raw_data(std::vector<unsigned char> const& v)
{
    std::string text = colored_dump(v, " ");
    text.resize(trimmed_size(text));
    if (text.empty()) {
        text = "nil";
    }
    return text;
}

} // namespace kestry

std::string rtrim(std::string const& s) { return s.substr(0, kestry::trimmed_size(s)); }
