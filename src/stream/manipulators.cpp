#include "kestry/hueline_stream.hpp"

#include "stream/state.hpp"

#include <ostream>
#include <string_view>

namespace kestry::Hueline {

using namespace detail;

namespace {

bool constexpr on = true;
bool constexpr off = false;

// Remembered even where it cannot be seen: it shows in the next rendition, on any stream.
std::ostream& remember(std::ostream& os, bool AttributeState::*flag, bool value)
{
    _currentAttributes.*flag = value;
    return adjust(os);
}

// Changed only where it shows.
std::ostream& set(std::ostream& os, bool AttributeState::*flag, bool value)
{
    if (!allowColor(os)) {
        return os;
    }
    _currentAttributes.*flag = value;
    return compose(os);
}

// Without the record: the reset that opens the next rendition ends it.
std::ostream& once(std::ostream& os, std::string_view sequence) { return allowColor(os) ? os << sequence : os; }

} // namespace

// clang-format off
std::ostream& bold       (std::ostream& os) { return remember(os, &AttributeState::bold,      on);  }
std::ostream& thin       (std::ostream& os) { return remember(os, &AttributeState::bold,      off); }
std::ostream& dark       (std::ostream& os) { return remember(os, &AttributeState::lite,      off); }
std::ostream& lite       (std::ostream& os) { return remember(os, &AttributeState::lite,      on);  }
std::ostream& bright     (std::ostream& os) { return lite    (os); }

std::ostream& italic     (std::ostream& os) { return set     (os, &AttributeState::italic,    on);  }
std::ostream& noitalic   (std::ostream& os) { return set     (os, &AttributeState::italic,    off); }
std::ostream& underline  (std::ostream& os) { return set     (os, &AttributeState::underline, on);  }
std::ostream& nounderline(std::ostream& os) { return set     (os, &AttributeState::underline, off); }
std::ostream& blink      (std::ostream& os) { return set     (os, &AttributeState::blink,     on);  }
std::ostream& noblink    (std::ostream& os) { return set     (os, &AttributeState::blink,     off); }
std::ostream& reverse    (std::ostream& os) { return set     (os, &AttributeState::reverse,   on);  }
std::ostream& noreverse  (std::ostream& os) { return set     (os, &AttributeState::reverse,   off); }

std::ostream& grey       (std::ostream& os) { return paint   (os, foreground, "\x1b[30m"); }
std::ostream& red        (std::ostream& os) { return paint   (os, foreground, "\x1b[31m"); }
std::ostream& green      (std::ostream& os) { return paint   (os, foreground, "\x1b[32m"); }
std::ostream& yellow     (std::ostream& os) { return paint   (os, foreground, "\x1b[33m"); }
std::ostream& blue       (std::ostream& os) { return paint   (os, foreground, "\x1b[34m"); }
std::ostream& magenta    (std::ostream& os) { return paint   (os, foreground, "\x1b[35m"); }
std::ostream& cyan       (std::ostream& os) { return paint   (os, foreground, "\x1b[36m"); }
std::ostream& white      (std::ostream& os) { return paint   (os, foreground, "\x1b[37m"); }
std::ostream& black      (std::ostream& os) { return grey    (os); }

std::ostream& on_grey    (std::ostream& os) { return paint   (os, background, "\x1b[40m"); }
std::ostream& on_red     (std::ostream& os) { return paint   (os, background, "\x1b[41m"); }
std::ostream& on_green   (std::ostream& os) { return paint   (os, background, "\x1b[42m"); }
std::ostream& on_yellow  (std::ostream& os) { return paint   (os, background, "\x1b[43m"); }
std::ostream& on_blue    (std::ostream& os) { return paint   (os, background, "\x1b[44m"); }
std::ostream& on_magenta (std::ostream& os) { return paint   (os, background, "\x1b[45m"); }
std::ostream& on_cyan    (std::ostream& os) { return paint   (os, background, "\x1b[46m"); }
std::ostream& on_white   (std::ostream& os) { return paint   (os, background, "\x1b[47m"); }
std::ostream& on_black   (std::ostream& os) { return on_grey (os); }

std::ostream& concealed  (std::ostream& os) { return once    (os, "\x1b[8m"); }
std::ostream& crossed    (std::ostream& os) { return once    (os, "\x1b[9m"); }
// clang-format on

} // namespace kestry::Hueline
