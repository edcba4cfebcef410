/// \file
/// What the stream interface remembers for the whole process, and the one question it asks before it
/// writes an escape sequence.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

// None of this is exported. Said here, it lets every access go straight to its place and not through the
// table of addresses.
#pragma GCC visibility push(hidden)

namespace kestry::detail {

/// The rendition that adjust writes. `lite` is the absence of faint.
struct AttributeState {
    bool bold = true;
    bool lite = true;
    bool italic = false;
    bool underline = false;
    bool blink = false;
    bool reverse = false;
    std::string foreground; // a whole sequence, or empty
    std::string background; // a whole sequence, or empty
};

/// The record's two slots for a colour.
inline constexpr auto foreground = &AttributeState::foreground;
inline constexpr auto background = &AttributeState::background;

extern AttributeState _currentAttributes;
extern AttributeState _savedAttributes;

/// The standard streams. They are told apart by address: another stream that shares std::cout's buffer
/// is none of them.
extern std::ostream* const standard_out;
extern std::ostream* const standard_err;
extern std::ostream* const standard_log;

/// Whether the gate found a terminal last, or what a colour guard said since.
extern bool _colorActive;

/// Whether os is none of the standard streams: then the gate has refused, and this records that no
/// terminal was found. Inline for such streams: the string stream of a log line costs no call.
inline bool is_shut_out(std::ostream& os)
{
    if (&os == standard_out || &os == standard_err || &os == standard_log) {
        return false;
    }
    _colorActive = false;
    return true;
}

/// The rest of the gate, for a standard stream.
bool allow_color_on_standard(std::ostream& os);

/// The gate: whether an escape sequence may be written to os now.
///
/// Records whether a terminal was found, whatever the answer. Leaves errno as it was: a refused
/// isatty would otherwise change what `cerr << red << strerror(errno)` says.
inline bool allowColor(std::ostream& os) { return !is_shut_out(os) && allow_color_on_standard(os); }

/// Writes the record to a stream that has just passed the gate.
std::ostream& compose(std::ostream& os);

/// Puts a sequence into one of the record's slots, then the same.
std::ostream& recompose(std::ostream& os, std::string AttributeState::*slot, std::string_view sequence);

/// Either of them, if the gate lets it, for a standard stream. After a system call the processor has
/// forgotten where calls return to, and each return costs much of an insertion: these have one less.
std::ostream& compose_on_standard(std::ostream& os);
std::ostream& recompose_on_standard(std::ostream& os, std::string AttributeState::*slot, std::string_view sequence);

/// Writes what csi::show writes to a stream that has just passed the gate.
std::ostream& show_cursor(std::ostream& os);

} // namespace kestry::detail

#pragma GCC visibility pop
