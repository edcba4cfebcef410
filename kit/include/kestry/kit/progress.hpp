/// \file
/// Live progress: bars and spinners, one or many, from any thread; lines in a log where there is no terminal.
///
///     namespace progress = kestry::kit::progress;
///     progress::multi_progress group;                                 // standard error; live or plain by itself
///     auto files = group.add("files", names.size());
///     auto bytes = group.add("firmware.bin", size, progress::unit::bytes);
///     bytes.inc(4096);                                                // from any thread: one relaxed addition
///     group.println("firmware.bin: checksum right");                  // stands above the bars
///     for (auto& name : progress::track(names, "hashing")) hash(name); // the one-line form
///
/// \name On a terminal
/// The bars stand below the cursor, which rests in a line of its own above them: what other code writes and what the user
/// types lands there and is kept, as far as it fits in that line. What takes more needs println, line or suspend: its
/// further lines are written over rows. One write(2) a frame, in synchronised output; only what changed in it; at most
/// 12 a second, the first after 200 ms, none while nothing visible changes. The cursor is hidden and lines are not
/// wrapped inside of a frame only, and of a short one, so no end of the program leaves the terminal so. The size is
/// read at each frame; the last column and the topmost row stay free. Bars that do not fit are counted: "+3 more". An
/// ended bar leaves its row above. Nothing is drawn while the process is in the background; the rows of bars that end
/// there come when it is back, of very many the latest. What the process was stopped for is no part of a rate, unless
/// the program draws itself.
///
/// \name Elsewhere: in a pipe or a file, with TERM=dumb, with CI in the environment
/// No control character: a line when a bar starts, at each tenth or every ten seconds, and when it ends.
///
/// \name What holds for all
/// Threads  every function may be called by any thread.
/// Fork     in a child that was forked after the first use every function does nothing.
/// Faults   nobody but println hears of a terminal that fails: what cannot be drawn is left out.
#ifndef KESTRY_KIT_PROGRESS_HPP
#define KESTRY_KIT_PROGRESS_HPP

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#pragma GCC visibility push(default)

namespace kestry::kit::detail {

struct progress_row;
class progress_display;
class progress_template;

// The part of a bar that its handles touch: alone in its cache line.
struct alignas(64) progress_counter {
    std::atomic<std::uint64_t> position = 0;
};

// The ends of a range as a loop finds them: some have functions beside them, as directory_iterator has.
template <typename Range>
auto begin_of(Range& range)
{
    using std::begin;
    return begin(range);
}

template <typename Range>
auto end_of(Range& range)
{
    using std::end;
    return end(range);
}

} // namespace kestry::kit::detail

namespace kestry::kit::progress {

/// What is counted.
enum class unit : unsigned char {
    items, ///< Shown as they are: "1234", "56.7/s".
    bytes, ///< With binary prefixes: "1.21 KiB", "4.20 MiB/s".
};

/// How progress shows.
enum class mode : unsigned char {
    automatic, ///< As the variable HUELINE_PROGRESS says (live, plain, off); else live on a terminal, and else plain.
    live,      ///< Rows that are drawn again and again.
    plain,     ///< Lines without a control character.
    off,       ///< Nothing, but for println. Advancing does not even count.
};

/// Who draws.
enum class drawing : unsigned char {
    thread, ///< One thread for all bars on a terminal, started by the first of them.
    caller, ///< The program's own: multi_progress::tick, println and the end of the group.
};

/// What a bar leaves when it ends.
enum class leaving : unsigned char {
    a_line, ///< Its last row, above the bars that are left.
    nothing,
};

/// A length that is not known: the bar counts, and a spinner turns.
inline constexpr std::uint64_t unknown = std::numeric_limits<std::uint64_t>::max();

/// What the row of a bar looks like: a text with {keys}, parsed once. Copies share the result.
///
/// {msg}  the message       {pos} {len}  position and length, in the bar's unit {percent}  "  7%"
/// {rate} a second's worth  {elapsed}    time gone, "00:07"                    {eta}       time left, "--:--" in a stall
/// {bar}  20 columns        {wide_bar}   the columns that nothing else takes   {spinner}   turns while the bar is active
///
/// A key takes a width in columns and a colour: {msg:20}, {msg:>20} right-aligned, {bar:30.green}, {eta:.dim}. Colours
/// are red, green, yellow, blue, magenta, cyan, and bold and dim beside them. "{{" and "}}" are braces.
/// Where a row does not fit, {wide_bar}, of which there is one at most, shrinks, then {msg}, and then keys leave from
/// the right.
///
/// `layout("{msg} {wide_bar} {percent}")`
class layout {
public:
    /// The library's own: message, bar, percentage, position and length, rate and time left, as far as they are known.
    layout() noexcept = default;

    /// Throws  std::invalid_argument that quotes what it does not know: "progress layout: unknown key {mgs} at byte 4".
    explicit layout(std::string_view text);

private:
    friend class multi_progress;
    std::shared_ptr<detail::progress_template const> parsed;
};

/// What a bar starts as.
struct bar_options {
    std::string_view message = {}; ///< Its control characters are made visible.
    std::uint64_t length = unknown;
    unit counted = unit::items;
    std::uint64_t start = 0; ///< Where it begins, of a resumed download: no part of the rate.
    layout row = {};
    leaving when_ended = leaving::a_line;
};

/// A bar, or a spinner if its length is unknown. Copies are handles of one bar; the last that dies finishes it, or
/// abandons it while an exception passes. One that was made by default, or moved from, does nothing.
class bar {
public:
    bar() noexcept = default;

    /// Advances by n. Cost: one relaxed atomic addition.
    void inc(std::uint64_t n = 1) const noexcept
    {
        if (detail::progress_counter* const c = counter.get()) {
            c->position.fetch_add(n, std::memory_order_relaxed);
        }
    }

    /// Moves to a position, forward or back. Cost: one relaxed atomic store.
    void set_position(std::uint64_t position) const noexcept
    {
        if (detail::progress_counter* const c = counter.get()) {
            c->position.store(position, std::memory_order_relaxed);
        }
    }

    /// Changes the length, or makes it unknown. The rate stays. Cost: a lock, as for all that follows.
    void set_length(std::uint64_t length) const noexcept;

    /// Changes the message. Throws std::bad_alloc.
    void set_message(std::string_view message) const;

    /// Ends the bar at its length.
    void finish() const noexcept;

    /// Ends the bar where it is.
    void abandon() const noexcept;

    /// Starts again, ended or not: from position, with no time gone.
    void reset(std::uint64_t position = 0) const noexcept;

private:
    friend class multi_progress;
    std::shared_ptr<detail::progress_counter> counter;
};

/// A terminal of a program's own: for its tests, where no time passes but what they let pass. Called under a lock.
class draw_target {
public:
    /// Columns and rows; 0 where it is not known, which counts as 80 and 24.
    struct extent {
        int columns = 80;
        int rows = 24;
    };

    virtual ~draw_target();
    virtual std::chrono::steady_clock::time_point now() = 0;
    virtual extent size() = 0;
    virtual bool takes_a_frame() = 0;               ///< If not, the frame is left out.
    virtual bool in_foreground() = 0;               ///< If not, nothing but println writes.
    virtual bool write(std::string_view bytes) = 0; ///< A frame, or lines. Returns whether it was written.
};

/// How a group draws.
struct options {
    int descriptor = 2; ///< Standard error. Its groups, and those of one terminal, share rows and thread.
    mode shown = mode::automatic;
    drawing drawn_by = drawing::thread; ///< The first group of a descriptor decides, also about ascii.
    std::shared_ptr<draw_target> target =
        {};             ///< In place of the descriptor; nothing is shared then. Live unless shown says plain or off.
    bool color = true;  ///< With a target; a descriptor asks color_policy.
    bool ascii = false; ///< Only ASCII, as where the locale's character set is not UTF-8.
};

/// Gives the terminal to a child process or other code as long as it lives: the bars are wiped, and nothing but println
/// writes. When the last one ends, they are drawn anew below what was written.
class [[nodiscard]] suspension {
public:
    suspension(suspension&& other) noexcept = default;
    suspension& operator=(suspension&&) = delete;
    ~suspension();

private:
    friend class multi_progress;
    explicit suspension(std::shared_ptr<detail::progress_display> of) noexcept : display(std::move(of)) {}
    std::shared_ptr<detail::progress_display> display;
};

/// Bars that are drawn together. It owns them: when it dies, those that are left are ended as their handles would end
/// them, the last rows are written, and handles that live on do nothing.
class multi_progress {
public:
    /// Throws std::bad_alloc. Cost: a few system calls; no thread yet.
    explicit multi_progress(options const& how = {});
    ~multi_progress();
    multi_progress(multi_progress const&) = delete;
    multi_progress& operator=(multi_progress const&) = delete;

    /// Adds a bar below the others. Throws std::bad_alloc. Cost: some allocations, a lock; the first starts the thread.
    [[nodiscard]] bar add(std::string_view message, std::uint64_t length = unknown, unit counted = unit::items);
    [[nodiscard]] bar add(bar_options const& what);

    /// Adds a bar above another one; below all if that has ended.
    [[nodiscard]] bar insert_before(bar const& next, bar_options const& what);

    /// Writes a text and a line end above the bars: whole, in order, once, whether bars show or not.
    ///
    /// Returns  whether it was written, or waits for the next frame. Waits for a terminal only if 64 KiB do already.
    /// Throws   std::bad_alloc.
    bool println(std::string_view text);

    /// Wipes the bars and leaves the terminal alone for a while.
    suspension suspend();

    /// Draws, if a frame is due. Cost: a look at the clock.
    void tick() noexcept;

    /// What mode::automatic has become.
    mode shown() const noexcept;

private:
    std::shared_ptr<detail::progress_display> display;
    std::size_t group = 0;
    mode how_shown = mode::off;
};

/// Wipes the rows before SIGHUP, SIGINT, SIGQUIT, SIGTERM or SIGTSTP ends or stops the process: no remains of bars stand
/// below the next prompt. Without it they do, and nothing else is wrong with the terminal.
///
/// State    a handler for each of these signals whose action is the default one. It raises the signal again.
/// Threads  one, before others.
void wipe_on_signals() noexcept;

/// A range whose elements are counted by a bar as a loop passes them. See track.
template <typename Range>
class tracked {
    using inner = decltype(detail::begin_of(std::declval<Range&>()));
    using end_of_inner = decltype(detail::end_of(std::declval<Range&>()));

public:
    struct sentinel {
        end_of_inner at;
    };

    class iterator {
    public:
        iterator(inner first, tracked const& of) : at(std::move(first)), owner(&of) {}
        decltype(auto) operator*() const { return *at; }
        iterator& operator++()
        {
            ++at;
            owner->counts.set_position(++passed); // nobody else counts here
            return *this;
        }
        bool operator!=(sentinel const& end) const
        {
            bool const more = at != end.at;
            if (!more) {
                owner->counts.finish();
            }
            return more;
        }

    private:
        inner at;
        tracked const* owner;
        std::uint64_t passed = 0;
    };

    tracked(Range&& elements, std::string_view message, options const& how)
        : range(std::forward<Range>(elements)), group(how), counts(group.add(message, length_of(range)))
    {}
    ~tracked() { counts.abandon(); } // of a loop that was left
    tracked(tracked const&) = delete;
    tracked& operator=(tracked const&) = delete;

    iterator begin() { return iterator(detail::begin_of(range), *this); }
    sentinel end() { return {detail::end_of(range)}; }

private:
    static std::uint64_t length_of(Range& elements)
    {
        if constexpr (requires { std::size(elements); }) {
            return static_cast<std::uint64_t>(std::size(elements));
        } else {
            return unknown;
        }
    }

    Range range; // a reference to what the caller keeps
    multi_progress group;
    bar counts;
};

/// Counts the elements of a range as a loop passes them: `for (auto& file : track(files, "hashing"))`.
///
/// A loop that is left early abandons the bar. Cost in each step: one relaxed atomic store.
template <typename Range>
[[nodiscard]] tracked<Range> track(Range&& elements, std::string_view message = {}, options const& how = {})
{
    return tracked<Range>(std::forward<Range>(elements), message, how);
}

} // namespace kestry::kit::progress

#pragma GCC visibility pop

#endif
