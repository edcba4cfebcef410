#include "kestry/kit/text.hpp"

#include "columns.hpp"
#include "sgr.hpp"

#include <algorithm>

namespace kestry::kit {

namespace {

using detail::character;
using detail::escape_sequence;

// The head of a text that stays.
struct head {
    bool is_all = true;
    std::size_t size = 0;
    detail::open_styles open;
    bool has_incomplete = false; // sequences among it that are not complete
};

// All of a text that takes no more than those columns; else its longest head, by whole clusters and with the sequences
// after it, that there is room for. What follows is not looked at.
head fit(std::string_view text, std::size_t columns, std::size_t room)
{
    head found;
    head here;
    detail::column_counter counter;
    auto const on_character = [&](character next, std::size_t at) {
        std::size_t const before = counter.columns();
        bool const begins_cluster = counter.add(next);
        if (begins_cluster && before <= room) {
            found = here;
            found.size = at;
        }
        return counter.columns() <= columns;
    };
    auto const on_sequence = [&](escape_sequence const& sequence, std::size_t) {
        counter.add(sequence);
        here.open.apply(sequence);
        here.has_incomplete = here.has_incomplete || !sequence.is_complete;
        return true;
    };
    detail::walk(text, on_character, on_sequence);
    found.is_all = counter.columns() <= columns;
    return found;
}

// The most columns that the tail adds to a text: U+FE0F at its head would widen an emoji before it.
std::size_t columns_of_tail(std::string_view tail)
{
    detail::column_counter after_emoji;
    after_emoji.add({U'\u00a9', 2, character::state::whole});
    after_emoji.add(tail);
    return std::max(display_width(tail), after_emoji.columns() - 1);
}

// Appends the head of a text but for the sequences in it that are not complete.
void append_complete(std::string& to, std::string_view text, std::size_t size)
{
    std::size_t done = 0;
    auto const on_character = [size](character, std::size_t at) { return at < size; };
    auto const on_sequence = [&](escape_sequence const& sequence, std::size_t at) {
        if (at < size && !sequence.is_complete) {
            to += text.substr(done, at - done);
            done = at + sequence.size;
        }
        return at < size;
    };
    detail::walk(text, on_character, on_sequence);
    to += text.substr(done, size - done);
}

} // namespace

std::string truncate(std::string_view text, std::size_t columns, std::string_view tail)
{
    if (text.size() <= columns) { // no character takes more columns than bytes
        return std::string(text);
    }
    std::size_t const tail_columns = columns_of_tail(tail);
    if (tail_columns > columns) {
        tail = {};
    }
    head kept = fit(text, columns, tail.empty() ? columns : columns - tail_columns);
    if (kept.is_all) {
        return std::string(text);
    }
    std::string result;
    result.reserve(kept.size + tail.size() + 32); // and a sequence or two that end styles
    if (kept.has_incomplete) {
        append_complete(result, text, kept.size);
    } else {
        result += text.substr(0, kept.size);
    }
    result += tail;
    auto const on_sequence = [&](escape_sequence const& sequence, std::size_t) {
        kept.open.apply(sequence);
        return true;
    };
    detail::walk(
        tail, [](character, std::size_t) { return true; }, on_sequence);
    kept.open.close(result);
    return result;
}

std::string pad(std::string_view text, std::size_t columns, alignment where)
{
    detail::column_counter counter;
    detail::open_styles open;
    std::size_t size = text.size(); // without a sequence that is broken off
    auto const on_character = [&](character next, std::size_t) {
        counter.add(next);
        return true;
    };
    auto const on_sequence = [&](escape_sequence const& sequence, std::size_t at) {
        counter.add(sequence);
        open.apply(sequence);
        if (!sequence.is_complete && at + sequence.size == text.size()) {
            size = at;
        }
        return true;
    };
    detail::walk(text, on_character, on_sequence);
    if (counter.columns() >= columns) {
        return std::string(text);
    }

    std::size_t const blanks = columns - counter.columns();
    std::size_t const left = where == alignment::left ? 0 : where == alignment::right ? blanks : blanks / 2;
    std::string result(left, ' ');
    result += text.substr(0, size);
    if (left < blanks) {
        open.close(result);
        result.append(blanks - left, ' ');
    }
    return result;
}

} // namespace kestry::kit
