#include "kestry/hueline_stream.hpp"

#include "stream/state.hpp"

#include <ostream>
#include <string_view>

using namespace std::string_view_literals;

namespace kestry::detail {

std::ostream& compose(std::ostream& os)
{
    AttributeState const& now = _currentAttributes;
    ColorState const& colors = _currentColors;
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
    if (!colors.foreground.empty()) {
        os << colors.foreground;
    }
    if (!colors.background.empty()) {
        os << colors.background;
    }
    return os;
}

std::ostream& paint(std::ostream& os, std::string ColorState::*slot, std::string_view sequence)
{
    if (!allowColor(os)) {
        return os;
    }
    _currentColors.*slot = sequence;
    return compose(os);
}

} // namespace kestry::detail

namespace kestry::Hueline {

using namespace detail;

std::ostream& adjust(std::ostream& os) { return allowColor(os) ? compose(os) : os; }

std::ostream& push(std::ostream& os)
{
    if (allowColor(os)) {
        // The foreground in both slots: a pair of push and pull loses the background, and callers
        // rely on it.
        _savedColors = ColorState{_currentColors.foreground, _currentColors.foreground};
        _savedAttributes = _currentAttributes;
    }
    return os;
}

std::ostream& pull(std::ostream& os)
{
    if (allowColor(os)) {
        _currentColors = ColorState{_savedColors}; // copied as a whole first: memory may run out
        _currentAttributes = _savedAttributes;
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
    _currentAttributes = {};
    _currentColors = {};
    return os;
}

} // namespace kestry::Hueline
