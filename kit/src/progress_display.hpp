/// \file
/// What the bars of one terminal, or of one log, share: their rows, the lines that wait, the thread.
#ifndef KESTRY_KIT_PROGRESS_DISPLAY_HPP
#define KESTRY_KIT_PROGRESS_DISPLAY_HPP

#include "progress_block.hpp"
#include "progress_estimate.hpp"
#include "progress_row.hpp"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <sys/types.h>

namespace kestry::kit::detail {

/// A bar. All but its position belongs to its display, and is guarded by that one's mutex.
struct progress_row : progress_counter, std::enable_shared_from_this<progress_row> {
    progress_row(std::shared_ptr<progress_display> of, double now, std::uint64_t start)
        : home(std::move(of)), estimate(now, start)
    {
        position.store(start, std::memory_order_relaxed);
    }

    std::shared_ptr<progress_display> const home;
    std::size_t group = 0;
    std::shared_ptr<progress_template const> layout = {}; ///< Null: the usual one.
    std::string message = {};
    std::size_t message_columns = 0;
    std::uint64_t length = progress::unknown;
    progress::unit counted = progress::unit::items;
    progress::leaving when_ended = progress::leaving::a_line;
    progress_estimate estimate;
    progress_state state = progress_state::active;
    double ended = 0;
    int exceptions = 0; ///< That were passing when it was made.

    // What the log knows of it.
    int said_tenth = 0;
    std::uint64_t said_position = 0;
    double said_at = 0;
};

/// How a display shows.
struct progress_settings {
    std::shared_ptr<progress::draw_target> target;
    progress::mode shown = progress::mode::live; ///< Live or plain.
    progress::drawing drawn_by = progress::drawing::thread;
    bool color = false;
    bool ascii = false;
    int descriptor = -1; ///< Of a terminal; -1 of a target that is none.
};

/// Locks: the kit's output lock, under which everything is written, comes before the mutex, under which nothing is.
class progress_display : public std::enable_shared_from_this<progress_display> {
public:
    explicit progress_display(progress_settings how);
    ~progress_display();

    progress::mode shown() const noexcept { return settings.shown; }

    /// False in a process that was forked: locks may be held there for good, and threads are missing.
    bool is_of_this_process() const noexcept;

    /// The descriptor of the terminal, or -1.
    int descriptor() const noexcept { return settings.descriptor; }

    /// Returns the number of a new group.
    std::size_t join_group();
    void leave_group(std::size_t group) noexcept;

    std::shared_ptr<progress_row> add(progress::bar_options const& what, std::size_t group, progress_row const* before,
                                      std::shared_ptr<progress_template const> layout);
    void set_length(progress_row& row, std::uint64_t length) noexcept;
    void set_message(progress_row& row, std::string_view message);
    void end(progress_row& row, progress_state state) noexcept;
    static progress_state state_at_death(progress_row const& row) noexcept;
    void reset(std::shared_ptr<progress_row> const& row, std::uint64_t position) noexcept;

    bool println(std::string_view text);

    /// println, if there are rows on the screen.
    bool take_line(std::string_view text) noexcept;

    void suspend() noexcept;
    void resume() noexcept;
    void tick() noexcept;

    /// The process ends: the bars that are left leave their rows, and nothing is drawn any more.
    void close() noexcept;

private:
    enum class urgency : unsigned char { when_due, lines, at_last };

    // Text that waits to be written, or what a bar was when it ended, which leaves its row.
    struct waiting {
        std::string text = {}; // or the message
        bool is_row = false;
        progress_facts facts = {};
        std::shared_ptr<progress_template const> layout = {};
    };

    double now() const;
    progress_block::extent size() const;
    bool is_due(double at) const noexcept;
    void end_or_remove(progress_row& row, progress_state state) noexcept;
    void leave_out_old_rows() noexcept;
    static progress_facts facts_of(progress_row const& row, double at);
    static progress_facts facts_of(waiting const& ended);
    void sample(double at) noexcept;
    void take_lines(std::size_t columns, bool rows_too);
    void take_due_lines(double at);
    std::vector<progress_text> rows_for(progress_block::extent room, double at) const;

    bool draw(urgency how) noexcept;
    bool draw_live(urgency how);
    bool draw_plain(urgency how);

    bool write_rows(std::string_view frame);
    bool rows_were_wiped() const noexcept;

    void start_thread() noexcept;
    void stop_thread() noexcept;
    void run();

    progress_settings const settings;
    pid_t const process;
    std::chrono::steady_clock::time_point const begun;

    std::mutex mutex;
    std::condition_variable wake;
    std::vector<std::shared_ptr<progress_row>> rows; // active ones, top first
    std::vector<std::size_t> groups;
    std::size_t last_group = 0;
    std::vector<waiting> queue;
    std::size_t queued_bytes = 0; // of text
    std::size_t queued_rows = 0;
    std::size_t rows_left_out = 0; // of the queue, since nobody could see them for a long time
    std::string lines;             // on their way from the queue to the target
    progress_block block;
    double first_frame = 0; // not before
    double last_frame = -1;
    double last_end = -1; // of a bar
    double paused = 0;    // seconds that the process was stopped
    unsigned suspensions = 0;
    bool closed = false;

    bool stopping = false;

    std::mutex thread_mutex; // comes before the other one
    std::thread thread;
    std::atomic<bool> has_thread = false;
};

/// The display of a descriptor, or of the target; null if there can be none. Groups of one terminal get the same one.
std::shared_ptr<progress_display> display_for(progress::options const& how, progress::mode shown);

/// What mode::automatic is for a descriptor.
progress::mode usual_mode(int descriptor);

/// Whether the environment's locale is one of ASCII, or of anything else but UTF-8. The process's own stays as it is.
bool locale_is_not_utf8();

std::shared_ptr<progress::draw_target> terminal_target(int descriptor);

/// One line of a log, without its end.
std::string plain_line(progress_facts const& facts);

/// The line with which a bar starts.
std::string plain_start(progress_facts const& facts);

} // namespace kestry::kit::detail

#endif
