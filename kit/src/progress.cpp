#include "kestry/kit/progress.hpp"

#include "progress_display.hpp"

#include <cstddef>
#include <memory>
#include <new>
#include <utility>

namespace kestry::kit::progress {

namespace {

// The bar behind a handle, unless there is none or this is a process that was forked.
detail::progress_row* row_of(std::shared_ptr<detail::progress_counter> const& counter) noexcept
{
    auto* const row = static_cast<detail::progress_row*>(counter.get());
    return row != nullptr && row->home->is_of_this_process() ? row : nullptr;
}

// What all handles of a bar share: its end is the bar's.
std::shared_ptr<detail::progress_counter> handle_of(std::shared_ptr<detail::progress_row> row)
{
    detail::progress_row* const its = row.get();
    return {its, [row = std::move(row)](detail::progress_row* ended) {
                if (ended->home->is_of_this_process()) {
                    ended->home->end(*ended, detail::progress_display::state_at_death(*ended));
                }
            }};
}

} // namespace

draw_target::~draw_target() = default;

layout::layout(std::string_view text) : parsed(std::make_shared<detail::progress_template const>(text)) {}

void bar::set_length(std::uint64_t length) const noexcept
{
    if (detail::progress_row* const row = row_of(counter)) {
        row->home->set_length(*row, length);
    }
}

void bar::set_message(std::string_view message) const
{
    if (detail::progress_row* const row = row_of(counter)) {
        row->home->set_message(*row, message);
    }
}

void bar::finish() const noexcept
{
    if (detail::progress_row* const row = row_of(counter)) {
        row->home->end(*row, detail::progress_state::finished);
    }
}

void bar::abandon() const noexcept
{
    if (detail::progress_row* const row = row_of(counter)) {
        row->home->end(*row, detail::progress_state::abandoned);
    }
}

void bar::reset(std::uint64_t position) const noexcept
{
    if (detail::progress_row* const row = row_of(counter)) {
        row->home->reset(row->shared_from_this(), position);
    }
}

suspension::~suspension()
{
    if (display && display->is_of_this_process()) {
        display->resume();
    }
}

multi_progress::multi_progress(options const& how)
    : how_shown(how.shown != mode::automatic ? how.shown
                : how.target                 ? mode::live
                                             : detail::usual_mode(how.descriptor))
{
    display = detail::display_for(how, how_shown == mode::off ? mode::plain : how_shown);
    if (display) {
        group = display->join_group();
    } else {
        how_shown = mode::off; // in a process that was forked
    }
}

multi_progress::~multi_progress()
{
    if (!display) {
        return;
    }
    if (display->is_of_this_process()) {
        display->leave_group(group);
    } else {
        // Its locks may be held for good, and its thread is missing: it must not be destroyed.
        alignas(std::shared_ptr<void>) std::byte place[sizeof display];
        new (place) std::shared_ptr(std::move(display));
    }
}

bar multi_progress::add(std::string_view message, std::uint64_t length, unit counted)
{
    return add({.message = message, .length = length, .counted = counted});
}

bar multi_progress::add(bar_options const& what) { return insert_before({}, what); }

bar multi_progress::insert_before(bar const& next, bar_options const& what)
{
    bar added;
    if (how_shown != mode::off && display->is_of_this_process()) {
        auto const* const before = static_cast<detail::progress_row const*>(next.counter.get());
        added.counter = handle_of(display->add(what, group, before, what.row.parsed));
    }
    return added;
}

bool multi_progress::println(std::string_view text)
{
    return display && display->is_of_this_process() && display->println(text);
}

suspension multi_progress::suspend()
{
    if (!display || !display->is_of_this_process()) {
        return suspension(nullptr);
    }
    display->suspend();
    return suspension(display);
}

void multi_progress::tick() noexcept
{
    if (how_shown != mode::off && display->is_of_this_process()) {
        display->tick();
    }
}

mode multi_progress::shown() const noexcept { return how_shown; }

} // namespace kestry::kit::progress
