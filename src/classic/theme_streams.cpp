#include "kestry/hueline_stream.hpp"

#include <ostream>

namespace kestry::Hueline {

// clang-format off
namespace ColorTheme {

std::ostream& operator<<(std::ostream& os, app_title const& t)    { return os << green   << t.text; }
std::ostream& operator<<(std::ostream& os, alert const& t)        { return os << red     << bold << t.text << dark; }
std::ostream& operator<<(std::ostream& os, info const& t)         { return os << yellow  << t.text; }
std::ostream& operator<<(std::ostream& os, default_text const& t) { return os << cyan    << t.text; }
std::ostream& operator<<(std::ostream& os, seperator const& t)    { return os << white   << t.text; }
std::ostream& operator<<(std::ostream& os, help const& t)         { return os << blue    << t.text; }
std::ostream& operator<<(std::ostream& os, prompt const& t)       { return os << magenta << t.text; }
std::ostream& operator<<(std::ostream& os, version const& t)      { return os << white   << t.text; }
std::ostream& operator<<(std::ostream& os, cursor const& t)       { return os << cyan    << bold << t.text << dark; }
std::ostream& operator<<(std::ostream& os, commandLine const& t)  { return os << white   << t.text << reset; }
std::ostream& operator<<(std::ostream& os, name const& t)         { return os << white   << bold << t.text << dark; }

std::ostream& operator<<(std::ostream& os, path const& p)
{
    os << cyan;
    if (p.is_text) {
        return os << p.text;
    }
    // The caller's stream stays decimal.
    os.setf(std::ios_base::dec, std::ios_base::basefield);
    return os << p.number;
}

std::ostream& _default_text(std::ostream& os) { return green(os); }
std::ostream& _help        (std::ostream& os) { return yellow(os); }
std::ostream& _commandLine (std::ostream& os) { return cyan(os); }
std::ostream& _status      (std::ostream& os) { return magenta(os); }

} // namespace ColorTheme

namespace DataTheme {

std::ostream& operator<<(std::ostream& os, immediate_destination const& b) { return os << cyan    << HexDump(b.byte); }
std::ostream& operator<<(std::ostream& os, total_count const& b)           { return os << blue    << HexDump(b.byte); }
std::ostream& operator<<(std::ostream& os, request_title const& t)   { return os << magenta << bold << HexDump(t.text); }
std::ostream& operator<<(std::ostream& os, response_title const& t)  { return os << magenta << dark << HexDump(t.text); }

std::ostream& operator<<(std::ostream& os, crc const& c)
{
    os << green;
    if (!c.is_wide) {
        return os << HexDump(c.narrow);
    }
    auto const high = static_cast<std::uint8_t>(c.wide >> 8);
    auto const low = static_cast<std::uint8_t>(c.wide);
    return os << HexDump(high) << " " << HexDump(low) << " ";
}

} // namespace DataTheme
// clang-format on

} // namespace kestry::Hueline
