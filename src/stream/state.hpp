/// \file
/// What the stream interface remembers for the whole process, and the one question it asks before it
/// writes an escape sequence.
#pragma once

#include <iosfwd>
#include <string>

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

extern AttributeState _currentAttributes;
extern AttributeState _savedAttributes;

/// The gate: whether an escape sequence may be written to os now.
///
/// Records whether a terminal was found, whatever the answer. Leaves errno as it was: a refused
/// isatty would otherwise change what `cerr << red << strerror(errno)` says.
bool allowColor(std::ostream& os);

/// Writes the record to a stream that has just passed the gate.
std::ostream& compose(std::ostream& os);

/// Writes what csi::show writes to a stream that has just passed the gate.
std::ostream& show_cursor(std::ostream& os);

} // namespace kestry::detail
