/// \file
/// A line that is written whole, and a cursor that hides and comes back.
#ifndef KESTRY_KIT_LINE_HPP
#define KESTRY_KIT_LINE_HPP

#include <cstddef>
#include <ostream>

namespace kestry::kit::detail {
class composition;
} // namespace kestry::kit::detail

#pragma GCC visibility push(default)

namespace kestry::kit {

/// Composes a line on a stream by any number of insertions, and writes it in one piece when it ends.
///
/// It owns the text until then. Lines may be written by any thread: each holds the one lock of all lines as long as it
/// lives, and ends on the thread where it began.
///
///     line(std::cerr) << red << "error: " << normal << std::hex << 42 << '\n'; // one write(2), at the semicolon
///
/// The insertions reach the stream itself, whose buffer is the line's for so long. So manipulators, styles and
/// operators of one's own write what they always write, and format flags, width, fill, precision, locale and state are
/// as the insertions leave them. The line adds nothing, no line end either.
///
/// Writes   std::cout, std::cerr, std::clog: one write(2) to standard output or standard error, after what the stream,
///          stdio and a tied stream still held. It goes on after a signal and a short write, and waits for a descriptor
///          that does not block. If the program gave the stream a buffer, that gets the text in one piece, and a flush.
///          Any other stream: its buffer gets the text in one piece, and a flush if an insertion asked for one.
/// State    Text is accepted as long as the stream is good, and then written even if the stream fails later. Text that
///          cannot be written sets badbit. errno stays.
/// Throws   What the insertions throw; the line is written as far as it came. The destructor throws nothing.
/// Flushes  Those inside of a line wait for its end, and std::unitbuf is off until then. A tied stream is flushed once.
/// Nesting  A line that begins inside of another, on the same stream too, may end and be written before it.
/// Threads  Those that insert into the same stream use lines as well. A line waits for the lines of other threads, as
///          does a fork: what needs another thread to go on stands before a line, not in it.
/// Others   A pipe keeps the lines of several processes apart up to PIPE_BUF bytes (4096 on Linux), a terminal or a
///          file that is appended to at any length.
/// Ends     std::exit in a line writes what the line holds; a child process leaves that to its parent; a signal or
///          std::abort loses it.
/// Cost     A lock and one write(2); no allocation up to 1024 bytes. Without memory a longer line takes several writes.
class line {
public:
    /// Waits for the lock, and begins.
    explicit line(std::ostream& stream) noexcept;

    /// Ends the line. Throws nothing: what fails shows in the state of the stream.
    ~line();

    line(line const&) = delete;
    line& operator=(line const&) = delete;

    /// Inserts the value, and returns the stream itself for the insertions that follow.
    template <typename T>
    requires requires(std::ostream& os, T const& value) { os << value; }
    std::ostream& operator<<(T const& value)
    {
        os << value;
        return os;
    }

    /// Inserts a manipulator, std::endl among them.
    std::ostream& operator<<(std::ostream& (*manipulator)(std::ostream&)) { return manipulator(os); }

    /// The stream, for code that wants one.
    std::ostream& stream() noexcept { return os; }

    /// Ends the line before its destructor does. Insertions that follow reach the stream at once; a second call does
    /// nothing.
    ///
    /// Throws  what an insertion that cannot write throws, if the stream's mask has badbit: std::ios_base::failure, or
    ///         what a buffer of the program's throws.
    void end();

private:
    std::ostream& os;
    detail::composition* composed; // in the place that follows, so that a line needs no memory of its own
    alignas(std::max_align_t) std::byte place[1216];
};

/// \name The cursor
///
/// Hides the cursor, and shows it: DECTCEM, a private mode that terminals have from the VT220.
///
/// Writes   "\e[?25l" and "\e[?25h" into std::cout, std::cerr and std::clog where they lead to a terminal and TERM is
///          not unset, empty or "dumb"; nothing elsewhere. A cursor is no colour: colorize and NO_COLOR do not count.
/// Stream   A pending width stays pending. No flush.
/// Cost     isatty(3).
/// \{
std::ostream& hide_cursor(std::ostream& os);
std::ostream& show_cursor(std::ostream& os);
/// \}

/// Hides the cursor where hide_cursor would, as long as it lives, and shows it again also while an exception passes.
///
/// It writes past the stream, whatever state that is in, at once and after what the stream still held. Any thread may
/// have one; several on one descriptor hide the cursor until the last ends. std::exit shows the cursor, too; a signal
/// that ends the process does not, but its handler may write(2) "\e[?25h".
class hidden_cursor {
public:
    explicit hidden_cursor(std::ostream& stream) noexcept;
    ~hidden_cursor();

    hidden_cursor(hidden_cursor const&) = delete;
    hidden_cursor& operator=(hidden_cursor const&) = delete;

private:
    std::ostream& os;
    int descriptor = -1; // of the terminal, if there is one
};

} // namespace kestry::kit

#pragma GCC visibility pop

#endif
