#include "progress_display.hpp"

#include "kestry/kit/text.hpp"

#include "output.hpp"
#include "progress_numbers.hpp"
#include "progress_signals.hpp"

#include <algorithm>
#include <csignal>
#include <exception>
#include <utility>

#include <unistd.h>

namespace kestry::kit::detail {

namespace {

// Seconds.
double constexpr first_after = 0.2;
double constexpr period = 1.0 / 12;
double constexpr said_again_after = 10;
double constexpr stopped_after = 1; // a thread that wakes so much too late was not running

double constexpr turns_a_second = 10; // of a spinner

std::size_t constexpr most_queued = 64 * 1024; // bytes, beyond which println waits for the terminal
std::size_t constexpr most_queued_rows = 1024; // beyond which the end of a bar does

// A program's handlers run on its own threads.
class all_signals_blocked {
public:
    all_signals_blocked() noexcept
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
    }
    ~all_signals_blocked() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }
    all_signals_blocked(all_signals_blocked const&) = delete;
    all_signals_blocked& operator=(all_signals_blocked const&) = delete;

private:
    sigset_t before = {};
};

std::string harmless(std::string_view message, bool ascii)
{
    std::string text = escape_untrusted(message);
    return ascii ? only_ascii(text) : text;
}

int tenth_of(progress_row const& row)
{
    std::uint64_t const position = row.position.load(std::memory_order_relaxed);
    return row.length == progress::unknown ? 0 : percent(position, row.length) / 10;
}

// What stands for rows that are left out.
std::string more(std::size_t count) { return '+' + std::to_string(count) + " more"; }

} // namespace

progress_display::progress_display(progress_settings how)
    : settings(std::move(how)), process(::getpid()), begun(settings.target->now())
{}

progress_display::~progress_display() { stop_thread(); }

bool progress_display::is_of_this_process() const noexcept { return ::getpid() == process; }

// ---------------------------------------------------------------------------------------------
// Time and room
// ---------------------------------------------------------------------------------------------

// Seconds in which the process ran.
double progress_display::now() const
{
    return std::chrono::duration<double>(settings.target->now() - begun).count() - paused;
}

progress_block::extent progress_display::size() const
{
    auto const [columns, rows_in_all] = settings.target->size();
    return {.columns = columns > 0 ? static_cast<std::size_t>(columns) : 80,
            .rows = rows_in_all > 0 ? static_cast<std::size_t>(rows_in_all) : 24};
}

bool progress_display::is_due(double at) const noexcept
{
    return at >= first_frame && (last_frame < 0 || at - last_frame >= period);
}

// ---------------------------------------------------------------------------------------------
// Bars
// ---------------------------------------------------------------------------------------------

std::size_t progress_display::join_group()
{
    std::lock_guard const locked(mutex);
    groups.push_back(last_group + 1);
    return ++last_group;
}

void progress_display::leave_group(std::size_t group) noexcept
{
    {
        std::lock_guard const locked(mutex);
        for (std::size_t i = rows.size(); i > 0; --i) {
            progress_row& row = *rows[i - 1];
            if (row.group == group) {
                end_or_remove(row, state_at_death(row));
            }
        }
    }
    {
        std::lock_guard const written(output);
        draw(urgency::at_last);
    }
    std::lock_guard const one_at_a_time(thread_mutex);
    bool is_last = false;
    {
        std::lock_guard const locked(mutex);
        groups.erase(std::find(groups.begin(), groups.end(), group));
        is_last = groups.empty();
        if (is_last) {
            queue.clear(); // rows of bars that ended in the background
            queued_bytes = queued_rows = rows_left_out = 0;
        }
    }
    if (is_last) {
        stop_thread();
    }
}

std::shared_ptr<progress_row> progress_display::add(progress::bar_options const& what, std::size_t group,
                                                    progress_row const* before,
                                                    std::shared_ptr<progress_template const> layout)
{
    std::string message = harmless(what.message, settings.ascii);
    std::shared_ptr<progress_row> row;
    {
        std::lock_guard const locked(mutex);
        double const at = now();
        row = std::make_shared<progress_row>(shared_from_this(), at, what.start);
        row->group = group;
        row->layout = std::move(layout);
        row->message_columns = display_width(message);
        row->message = std::move(message);
        row->length = what.length;
        row->counted = what.counted;
        row->when_ended = what.when_ended;
        row->exceptions = std::uncaught_exceptions();
        row->said_at = at;
        row->said_position = what.start;
        row->said_tenth = tenth_of(*row);
        if (closed) {
            return row;
        }
        auto const place =
            std::find_if(rows.begin(), rows.end(), [before](auto const& other) { return other.get() == before; });
        // Bars that follow each other at once are one stretch of work.
        if (rows.empty() && !block.is_drawn() && (last_end < 0 || at - last_end >= first_after)) {
            first_frame = at + first_after;
        }
        rows.insert(place, row);
        if (settings.shown == progress::mode::plain) {
            lines.append(plain_start(facts_of(*row, at))).append("\n");
        }
    }
    if (settings.shown == progress::mode::plain) {
        std::lock_guard const written(output);
        draw(urgency::lines);
    }
    if (settings.drawn_by == progress::drawing::thread) {
        start_thread();
        wake.notify_one();
    }
    return row;
}

void progress_display::set_length(progress_row& row, std::uint64_t length) noexcept
{
    std::lock_guard const locked(mutex);
    row.length = length;
}

void progress_display::set_message(progress_row& row, std::string_view message)
{
    std::string text = harmless(message, settings.ascii);
    std::lock_guard const locked(mutex);
    row.message_columns = display_width(text);
    row.message = std::move(text);
}

progress_state progress_display::state_at_death(progress_row const& row) noexcept
{
    return std::uncaught_exceptions() > row.exceptions ? progress_state::abandoned : progress_state::finished;
}

void progress_display::end_or_remove(progress_row& row, progress_state state) noexcept
{
    auto const found =
        std::find_if(rows.begin(), rows.end(), [&row](auto const& other) { return other.get() == &row; });
    if (found == rows.end()) {
        return;
    }
    row.state = state;
    row.ended = last_end = now();
    row.estimate.sample(row.ended, row.position.load(std::memory_order_relaxed));
    if (state == progress_state::finished && row.length != progress::unknown) {
        row.position.store(row.length, std::memory_order_relaxed); // steps that are no part of the rate
    }
    if (row.when_ended == progress::leaving::a_line) {
        try {
            queue.push_back(
                {.text = row.message, .is_row = true, .facts = facts_of(row, row.ended), .layout = row.layout});
            ++queued_rows;
        } catch (...) { // no memory for its last row: it goes without
        }
    }
    rows.erase(found);
}

// The older half of those that could not be drawn.
void progress_display::leave_out_old_rows() noexcept
{
    std::size_t left = queued_rows / 2;
    auto const is_old = [&left](waiting const& w) { return w.is_row && left != 0 && left-- != 0; };
    std::size_t const gone = std::erase_if(queue, is_old);
    queued_rows -= gone;
    rows_left_out += gone;
}

void progress_display::end(progress_row& row, progress_state state) noexcept
{
    bool full = false;
    {
        std::lock_guard const locked(mutex);
        end_or_remove(row, state);
        full = queued_rows > most_queued_rows;
    }
    if (settings.shown == progress::mode::plain || full) {
        std::lock_guard const written(output);
        draw(urgency::at_last);
    }
    if (full) {
        std::lock_guard const locked(mutex);
        if (queued_rows > most_queued_rows) {
            leave_out_old_rows();
        }
    }
}

void progress_display::reset(std::shared_ptr<progress_row> const& row, std::uint64_t position) noexcept
{
    std::lock_guard const locked(mutex);
    if (closed || std::find(groups.begin(), groups.end(), row->group) == groups.end()) {
        return;
    }
    double const at = now();
    row->position.store(position, std::memory_order_relaxed);
    row->estimate = progress_estimate(at, position);
    row->said_tenth = 0;
    row->said_position = position;
    row->said_at = at;
    if (row->state != progress_state::active) {
        try {
            rows.push_back(row);
            row->state = progress_state::active;
        } catch (...) { // no memory: it stays ended
        }
        wake.notify_one();
    }
}

progress_facts progress_display::facts_of(progress_row const& row, double at)
{
    bool const is_active = row.state == progress_state::active;
    double const then = is_active ? at : row.ended;
    std::uint64_t const position = row.position.load(std::memory_order_relaxed);
    return {.message = row.message,
            .message_columns = row.message_columns,
            .position = position,
            .length = row.length,
            .counted = row.counted,
            .rate = row.estimate.rate(then),
            .left = row.estimate.left(then, position, row.length),
            .elapsed = row.estimate.elapsed(then),
            .turn = static_cast<unsigned>(at * turns_a_second + 1e-6),
            .state = row.state};
}

// The message has moved with what waits.
progress_facts progress_display::facts_of(waiting const& ended)
{
    progress_facts facts = ended.facts;
    facts.message = ended.text;
    return facts;
}

void progress_display::sample(double at) noexcept
{
    for (std::shared_ptr<progress_row> const& row : rows) {
        row->estimate.sample(at, row->position.load(std::memory_order_relaxed));
    }
}

// ---------------------------------------------------------------------------------------------
// Live
// ---------------------------------------------------------------------------------------------

namespace {

progress_text lay_out(std::shared_ptr<progress_template const> const& own, progress_facts const& facts,
                      progress_look const& look, std::size_t columns)
{
    return lay_out(own ? *own : usual_template(facts.position, facts.length), facts, look, columns);
}

// Bars stand in line if their messages are equally wide; very long ones stand out.
std::size_t common_message(std::vector<std::shared_ptr<progress_row>> const& rows, std::size_t columns)
{
    std::size_t widest = 0;
    for (auto const& row : rows) {
        widest = std::max(widest, row->message_columns);
    }
    return std::min(widest, columns / 3);
}

} // namespace

// Moves what waits from the queue into lines. Rows of ended bars stay in it while nothing is drawn.
void progress_display::take_lines(std::size_t columns, bool rows_too)
{
    progress_look const look = {.color = settings.color, .ascii = settings.ascii};
    std::vector<waiting> kept;
    std::string taken;
    if (rows_too && rows_left_out != 0) {
        taken.append(more(rows_left_out)).append("\n");
    }
    for (waiting& next : queue) {
        if (!next.is_row) {
            taken.append(next.text).append("\n");
        } else if (rows_too) {
            taken.append(painted(lay_out(next.layout, facts_of(next), look, columns))).append("\n");
        } else {
            kept.push_back(std::move(next));
        }
    }
    lines += taken;
    queue.swap(kept);
    queued_bytes = 0;
    queued_rows = queue.size();
    rows_left_out = rows_too ? 0 : rows_left_out;
}

// A row of the screen is left to others. If not all bars fit, another one counts those that are left out.
std::vector<progress_text> progress_display::rows_for(progress_block::extent room, double at) const
{
    std::vector<progress_text> texts;
    std::size_t const columns = room.columns - 1;
    std::size_t const most = room.rows - 1;
    std::size_t const bars = rows.size() > most && most > 1 ? most - 1 : std::min(rows.size(), most);
    progress_look const look = {
        .color = settings.color, .ascii = settings.ascii, .message_columns = common_message(rows, columns)};
    for (std::size_t i = 0; i < bars; ++i) {
        texts.push_back(lay_out(rows[i]->layout, facts_of(*rows[i], at), look, columns));
    }
    if (bars < rows.size() && bars < most) {
        std::string const others = truncate(more(rows.size() - bars), columns, "");
        texts.emplace_back().add(others, others.size());
    }
    return texts;
}

bool progress_display::draw_live(urgency how)
{
    if (drawing_halted || (how != urgency::at_last && !settings.target->takes_a_frame())) {
        return true; // what waits goes on waiting
    }
    std::string bytes;
    {
        std::lock_guard const locked(mutex);
        double const at = now();
        bool const due = is_due(at);
        if (how == urgency::when_due && !due) {
            return true;
        }
        bool const in_foreground = settings.target->in_foreground();
        if (!in_foreground || rows_were_wiped()) {
            block.forget();
        }
        sample(at);
        bool const shows = in_foreground && suspensions == 0;
        bool const draws = shows && (block.is_drawn() || at >= first_frame);
        progress_block::extent const room = size();
        // A line between two frames moves the rows, and does not draw them again.
        bool const bars_ended = std::any_of(queue.begin(), queue.end(), [](waiting const& w) { return w.is_row; });
        bool const as_they_are =
            how == urgency::lines && !due && !bars_ended && block.is_drawn() && block.size() == room;
        std::vector<progress_text> const texts = as_they_are ? block.rows()
                                                 : draws     ? rows_for(room, at)
                                                             : std::vector<progress_text>();
        take_lines(room.columns - 1, shows);
        bytes = block.frame(lines, texts, room, at,
                            is_cursor_hidden() ? progress_block::cursor::hidden : progress_block::cursor::shown);
        lines.clear();
        if (draws && !as_they_are && !bytes.empty()) {
            last_frame = at;
        }
    }
    return bytes.empty() || write_rows(bytes);
}

bool progress_display::write_rows(std::string_view frame)
{
    bool const has_rows = [this] {
        std::lock_guard const locked(mutex);
        return block.is_drawn();
    }();
    // Said before they are there: a signal that comes with them wipes them.
    if (settings.descriptor >= 0 && has_rows) {
        rows_on = settings.descriptor;
    }
    bool const written = settings.target->write(frame);
    if (settings.descriptor >= 0 && !has_rows) {
        rows_on = -1;
    }
    return written;
}

bool progress_display::rows_were_wiped() const noexcept
{
    return settings.descriptor >= 0 && block.is_drawn() && rows_on != settings.descriptor;
}

// ---------------------------------------------------------------------------------------------
// Plain
// ---------------------------------------------------------------------------------------------

void progress_display::take_due_lines(double at)
{
    for (std::shared_ptr<progress_row> const& row : rows) {
        std::uint64_t const position = row->position.load(std::memory_order_relaxed);
        int const tenth = tenth_of(*row);
        bool const is_later = at - row->said_at >= said_again_after && position != row->said_position;
        if (tenth > row->said_tenth || is_later) {
            lines.append(plain_line(facts_of(*row, at))).append("\n");
            row->said_tenth = tenth;
            row->said_position = position;
            row->said_at = at;
        }
    }
}

bool progress_display::draw_plain(urgency how)
{
    std::string bytes;
    {
        std::lock_guard const locked(mutex);
        double const at = now();
        if (how == urgency::when_due && !is_due(at)) {
            return true;
        }
        bool const is_of_all = how != urgency::lines; // else what waits alone: a bar that starts asks nothing of others
        if (is_of_all) {
            last_frame = at;
            sample(at);
        }
        if (suspensions == 0) {
            if (is_of_all) {
                take_due_lines(at);
            }
            if (rows_left_out != 0) {
                lines.append(more(rows_left_out)).append("\n");
            }
            for (waiting const& ended : queue) {
                lines.append(plain_line(facts_of(ended))).append("\n");
            }
            queue.clear();
            queued_rows = rows_left_out = 0;
            bytes.swap(lines);
        }
    }
    return bytes.empty() || settings.target->write(bytes);
}

// ---------------------------------------------------------------------------------------------
// When
// ---------------------------------------------------------------------------------------------

bool progress_display::draw(urgency how) noexcept
{
    try {
        return settings.shown == progress::mode::plain ? draw_plain(how) : draw_live(how);
    } catch (...) { // no memory: what waits goes on waiting
        return false;
    }
}

bool progress_display::println(std::string_view text)
{
    if (settings.shown == progress::mode::plain) {
        std::lock_guard const written(output);
        return settings.target->write(std::string(text) + "\n");
    }
    bool full = false;
    {
        std::lock_guard const locked(mutex);
        queue.push_back({.text = std::string(text)});
        queued_bytes += text.size();
        full = queued_bytes > most_queued;
    }
    if (full || !has_thread) {
        output.lock();
    } else if (!output.try_lock()) {
        wake.notify_one();
        return true; // whoever draws now, or has a line, is not waited for
    }
    bool const written = draw(full ? urgency::at_last : urgency::lines);
    output.unlock();
    return written;
}

bool progress_display::take_line(std::string_view text) noexcept
{
    {
        std::lock_guard const locked(mutex);
        if (!block.is_drawn()) {
            return false;
        }
    }
    try {
        return println(text);
    } catch (...) { // no memory for a copy
        return false;
    }
}

void progress_display::suspend() noexcept
{
    std::lock_guard const written(output);
    std::string bytes;
    {
        std::lock_guard const locked(mutex);
        ++suspensions;
        bytes = block.wiped();
    }
    if (!bytes.empty()) {
        write_rows(bytes);
    }
}

void progress_display::resume() noexcept
{
    std::lock_guard const locked(mutex);
    --suspensions;
}

void progress_display::tick() noexcept
{
    if (output.try_lock()) {
        draw(urgency::when_due);
        output.unlock();
    }
}

void progress_display::close() noexcept
{
    {
        std::lock_guard const locked(mutex);
        while (!rows.empty()) {
            end_or_remove(*rows.back(), progress_state::abandoned);
        }
        closed = true;
    }
    if (output.try_lock()) { // else another thread has a line, and may never end it
        draw(urgency::at_last);
        output.unlock();
    }
    std::lock_guard const locked(thread_mutex);
    stop_thread();
}

// ---------------------------------------------------------------------------------------------
// The thread
// ---------------------------------------------------------------------------------------------

void progress_display::start_thread() noexcept
{
    std::lock_guard const locked(thread_mutex);
    if (thread.joinable()) {
        return;
    }
    all_signals_blocked const for_the_thread;
    try {
        thread = std::thread([this] { run(); });
        has_thread = true;
    } catch (...) { // the system has no more: println, tick and the end draw
    }
}

// Under thread_mutex.
void progress_display::stop_thread() noexcept
{
    if (!thread.joinable()) {
        return;
    }
    {
        std::lock_guard const locked(mutex);
        stopping = true;
    }
    wake.notify_one();
    thread.join();
    has_thread = false;
    stopping = false;
}

void progress_display::run()
{
    using clock = std::chrono::steady_clock;
    std::unique_lock locked(mutex);
    while (!stopping) {
        if (rows.empty() && queue.empty() && !block.is_drawn()) {
            wake.wait(locked, [this] { return stopping || !rows.empty() || !queue.empty(); });
            continue;
        }
        clock::time_point const next =
            clock::now() + std::chrono::duration_cast<clock::duration>(std::chrono::duration<double>(period));
        if (wake.wait_until(locked, next, [this] { return stopping; })) {
            break;
        }
        double const late = std::chrono::duration<double>(clock::now() - next).count();
        if (late > stopped_after) { // what is on the screen now is not ours
            paused += late;
            block.forget();
        }
        locked.unlock();
        tick();
        locked.lock();
    }
}

} // namespace kestry::kit::detail
