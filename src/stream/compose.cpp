#include "kestry/hueline_stream.hpp"

#include "stream/state.hpp"

#include <ostream>
#include <string_view>

using namespace std::string_view_literals;

namespace kestry::detail {

std::ostream& compose(std::ostream& os)
{
    AttributeState const& now = _currentAttributes;
    os << "\x1b[00m"sv;
    if (now.bold) {
        os << "\x1b[1m"sv;
    }
    if (!now.lite) {
        os << "\x1b[2m"sv;
    }
    if (now.italic) {
        os << "\x1b[3m"sv;
    }
    if (now.underline) {
        os << "\x1b[4m"sv;
    }
    if (now.blink) {
        os << "\x1b[5m"sv;
    }
    if (now.reverse) {
        os << "\x1b[7m"sv;
    }
    if (!now.foreground.empty()) {
        os << now.foreground;
    }
    if (!now.background.empty()) {
        os << now.background;
    }
    return os;
}

std::ostream& recompose(std::ostream& os, std::string AttributeState::*slot, std::string_view sequence)
{
    _currentAttributes.*slot = sequence;
    return compose(os);
}

} // namespace kestry::detail

namespace kestry::Hueline {

using namespace detail;

namespace {

// Makes room for the strings first: after that nothing can fail, and a record is copied whole or not
// at all.
void assign(AttributeState& to, AttributeState const& from, std::string const& background)
{
    to.foreground.reserve(from.foreground.size());
    to.background.reserve(background.size());
    to.bold = from.bold;
    to.lite = from.lite;
    to.italic = from.italic;
    to.underline = from.underline;
    to.blink = from.blink;
    to.reverse = from.reverse;
    to.foreground = from.foreground;
    to.background = background;
}

} // namespace

std::ostream& adjust(std::ostream& os) { return is_shut_out(os) ? os : compose_on_standard(os); }

std::ostream& push(std::ostream& os)
{
    if (allowColor(os)) {
        // The foreground in both slots: a pair of push and pull loses the background, and callers
        // rely on it.
        assign(_savedAttributes, _currentAttributes, _currentAttributes.foreground);
    }
    return os;
}

std::ostream& pull(std::ostream& os)
{
    if (allowColor(os)) {
        assign(_currentAttributes, _savedAttributes, _savedAttributes.background);
    }
    return os;
}

std::ostream& normal(std::ostream& os)
{
    if (!allowColor(os)) {
        return os;
    }
    os << "\x1b[00m"sv;
    return show_cursor(os);
}

std::ostream& reset(std::ostream& os)
{
    normal(os);
    assign(_currentAttributes, AttributeState{}, std::string{});
    return os;
}

} // namespace kestry::Hueline
