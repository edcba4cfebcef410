/// \file
/// What the stream interface remembers for the whole process, and the one question it asks before it
/// writes an escape sequence.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

// None of this is exported. The compiler's option for that does not reach declarations of variables that
// are defined elsewhere; this does, so that no access goes through the global offset table.
#pragma GCC visibility push(hidden)

namespace kestry::detail {

/// The attributes of the rendition that adjust writes. `lite` is the absence of faint.
///
/// Initialised with constants, so that what a static object sets before the library's own initialisation
/// stays set.
struct AttributeState {
    bool bold = true;
    bool lite = true;
    bool italic = false;
    bool underline = false;
    bool blink = false;
    bool reverse = false;
};

/// The colours of the rendition, each a whole sequence or empty. Built at load.
struct ColorState {
    std::string foreground;
    std::string background;
};

/// The two slots for a colour.
inline constexpr auto foreground = &ColorState::foreground;
inline constexpr auto background = &ColorState::background;

extern AttributeState _currentAttributes;
extern ColorState _currentColors;

extern AttributeState _savedAttributes;
extern ColorState _savedColors;

/// The standard streams. They are told by address: another stream that shares std::cout's buffer is none of
/// them.
extern std::ostream* const standard_out;
extern std::ostream* const standard_err;
extern std::ostream* const standard_log;

/// Whether the gate found a terminal last, or what a colour guard said since.
extern bool _colorActive;

/// The gate, for a standard stream.
bool allowed_on_standard(std::ostream& os);

/// The gate: whether an escape sequence may be written to os now.
///
/// Records whether a terminal was found, whatever the answer. Leaves errno as it was: a refused
/// isatty would otherwise change what `cerr << red << strerror(errno)` says.
///
/// Inline: the call would be a fifth of the time of a styled log line in a string stream.
inline bool allowColor(std::ostream& os)
{
    if (&os == standard_out || &os == standard_err || &os == standard_log) {
        return allowed_on_standard(os);
    }
    _colorActive = false;
    return false;
}

/// Writes the record to a stream that has just passed the gate.
std::ostream& compose(std::ostream& os);

/// Puts a colour into its slot and writes the record, if the gate lets it: a colour changes only where
/// it shows.
std::ostream& paint(std::ostream& os, std::string ColorState::*slot, std::string_view sequence);

/// Writes what csi::show writes to a stream that has just passed the gate.
std::ostream& show_cursor(std::ostream& os);

} // namespace kestry::detail

#pragma GCC visibility pop
