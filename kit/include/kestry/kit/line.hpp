/// \file
/// A line that is written whole, and a cursor that hides and comes back.
#ifndef KESTRY_KIT_LINE_HPP
#define KESTRY_KIT_LINE_HPP

#include <locale>
#include <ostream>
#include <streambuf>
#include <string_view>

namespace kestry::kit::detail {
struct open_lines; // all lines that have begun and not ended
} // namespace kestry::kit::detail

#pragma GCC visibility push(default)

namespace kestry::kit {

/// Composes a line on a stream by any number of insertions, and writes it at its end in one piece.
///
/// It owns the text until then: 1024 bytes of it in itself, more on the heap. Lines may be written by any thread: each
/// holds the one lock of all lines as long as it lives, and ends on the thread where it began.
///
/// The insertions reach the stream itself, whose buffer is the line's for so long. So manipulators that look at the
/// stream, styles, and operators of one's own write what they always write, and format flags, width, fill, precision,
/// locale and state are as the insertions leave them. The line adds nothing, no line end either.
///
///     line(std::cerr) << red << "error: " << normal << std::hex << 42 << '\n'; // one write(2), at the semicolon
///
/// \name Where it goes
/// std::cout, std::cerr, std::clog: one write(2) to standard output or standard error, after what these streams, stdio
///     and a tied stream still held. It goes on after a signal and a short write, and waits for a descriptor that does
///     not block. If the program gave the stream a buffer of its own, that gets the text in one piece and is flushed.
/// Any other stream: one piece into its buffer, which is flushed if an insertion of the line was to be.
///
/// \name What else holds
/// State    text that cannot be written sets badbit, which end() throws as an insertion would if the stream's mask has
///          it. The destructor sets it and throws nothing. An exception that passes writes the line as far as it came.
///          Text is accepted as long as the stream is good, and what was accepted is written. errno stays.
/// Flushes  inside of the line wait for its end. A tied stream is flushed at the end, once. std::unitbuf is off inside
///          of a line and as before at its end.
/// Memory   without it a long line is written in several pieces, and none is lost.
/// Nesting  a line inside of another, on the same stream too, is written when it ends: before the outer one.
/// Threads  that insert into the same stream use lines as well. What waits for such a thread, stands before the line
///          and not in it. On a pipe the system keeps lines of other processes apart up to PIPE_BUF bytes, on a terminal
///          and in a file that is appended to, at any length.
/// Ends     std::exit inside of a line writes what it holds; a fork inside of it leaves that to the parent; a signal or
///          std::abort loses it.
/// Cost     a lock; one write(2); no allocation up to 1024 bytes.
class line {
public:
    /// Waits for the lock, and begins.
    explicit line(std::ostream& os) noexcept;

    /// Ends the line. Throws nothing: what fails shows in the state of the stream.
    ~line();

    line(line const&) = delete;
    line& operator=(line const&) = delete;

    /// Inserts the value and returns the stream itself, for the insertions that follow.
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

    /// Writes the line and gives the stream and the lock back. Insertions that follow go to the stream at once; a second
    /// call does nothing.
    ///
    /// Throws  as an insertion would that cannot write: std::ios_base::failure, or what the stream's own buffer throws,
    ///         if the mask of the stream has badbit.
    void end();

private:
    // The line's text, where the stream writes it.
    class buffer final : public std::streambuf {
    public:
        explicit buffer(line& of) noexcept;
        ~buffer() override;
        std::string_view text() const noexcept;
        void forget() noexcept;

        bool flush_asked = false;

    protected:
        int_type overflow(int_type c) override;
        int sync() override;
        void imbue(std::locale const& locale) override;

    private:
        bool grow() noexcept;

        line& owner;
        char* longer = nullptr;
        char usual[1024];
    };

    friend struct detail::open_lines;

    void finish() noexcept;
    void give_back() noexcept;
    bool put(std::string_view text);

    std::ostream& os;
    std::streambuf* target = nullptr; // the stream's own buffer
    std::ostream* tied = nullptr;     // to the stream
    line* beneath = nullptr;          // the line on the same stream that this one interrupts
    line* outer = nullptr;            // the line on any stream that was begun before
    int descriptor = -1;              // that target writes to, if it is standard output or standard error
    bool is_standard = false;
    bool unbuffered = false; // std::unitbuf was set
    bool is_open = true;
    buffer held;
};

/// \name The cursor
///
/// Hides it and shows it again: DECTCEM, a private mode of the VT220 that terminals have in common.
///
/// Writes  "\e[?25l" and "\e[?25h" into std::cout, std::cerr and std::clog where they lead to a terminal and TERM is
///         neither unset nor empty nor "dumb"; otherwise nothing. A cursor is no colour: colorize and NO_COLOR are not
///         asked. No flush; a width that is pending stays so.
/// Cost    isatty(3).
/// \{
std::ostream& hide_cursor(std::ostream& os);
std::ostream& show_cursor(std::ostream& os);
/// \}

/// Hides the cursor as long as it lives, and shows it again when it ends, while an exception passes too.
///
/// It writes past the stream's own buffer, after what that still held, and at once: whatever state the stream is in.
/// Any thread may have one, and several on one descriptor hide the cursor until the last ends. std::exit shows the cursor;
/// a signal that ends the process does not, and its handler may write(2) "\e[?25h".
class hidden_cursor {
public:
    /// Does nothing where hide_cursor writes nothing.
    explicit hidden_cursor(std::ostream& os) noexcept;
    ~hidden_cursor();

    hidden_cursor(hidden_cursor const&) = delete;
    hidden_cursor& operator=(hidden_cursor const&) = delete;

private:
    std::ostream& os;
    int descriptor = -1; // stays so where there is nothing to hide
};

} // namespace kestry::kit

#pragma GCC visibility pop

#endif
