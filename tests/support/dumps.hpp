/// \file
/// What tests do alike with the dumps of both interfaces.
#pragma once

#include <sstream>
#include <string>

namespace hueline::test {

template <class HexDump>
std::string text_of(HexDump const& dump)
{
    std::ostringstream os;
    os << dump;
    return os.str();
}

/// Dumps of any size are written in full, or not, for a scope of a test.
template <class HexDump>
class LongDumpsOf {
public:
    explicit LongDumpsOf(bool in_full = true) { HexDump::_longDumps = in_full; }
    LongDumpsOf(LongDumpsOf const&) = delete;
    LongDumpsOf& operator=(LongDumpsOf const&) = delete;
    ~LongDumpsOf() { HexDump::_longDumps = before; }

private:
    bool before = HexDump::_longDumps;
};

} // namespace hueline::test
