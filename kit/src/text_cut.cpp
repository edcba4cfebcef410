#include "kestry/kit/text.hpp"

#include "columns.hpp"
#include "sgr.hpp"

#include <algorithm>
#include <stdexcept>

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

// Keeps stray bytes from becoming a character with what they follow now: ST alone does nothing.
void keep_apart(std::string& text, std::string_view next)
{
    bool const is_continuation = !next.empty() && (static_cast<unsigned char>(next[0]) & 0xc0) == 0x80;
    if (is_continuation && !text.empty()) {
        text += "\x1b\\";
    }
}

// Appends the head of a text but for the sequences in it that are not complete; controls inside of them are carried out.
void append_complete(std::string& to, std::string_view text, std::size_t size)
{
    std::size_t done = 0;
    auto const on_character = [size](character, std::size_t at) { return at < size; };
    auto const on_sequence = [&](escape_sequence const& sequence, std::size_t at) {
        if (at < size && !sequence.is_complete) {
            to += text.substr(done, at - done);
            to += strip_escapes(text.substr(at, sequence.size));
            done = at + sequence.size;
            keep_apart(to, text.substr(done));
        }
        return at < size;
    };
    detail::walk(text, on_character, on_sequence);
    to += text.substr(done, size - done);
}

// What a text is on a terminal.
struct outline {
    std::size_t columns = 0;
    std::size_t size = 0; // bytes, but for sequences at the end that are not complete
    detail::open_styles open;
};

outline measure(std::string_view text)
{
    outline found;
    detail::column_counter counter;
    auto const on_character = [&](character next, std::size_t at) {
        counter.add(next);
        found.size = at + next.size;
        return true;
    };
    auto const on_sequence = [&](escape_sequence const& sequence, std::size_t at) {
        counter.add(sequence);
        found.open.apply(sequence);
        found.size = sequence.is_complete ? at + sequence.size : found.size;
        return true;
    };
    detail::walk(text, on_character, on_sequence);
    found.columns = counter.columns();
    return found;
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
    keep_apart(result, tail);
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
    outline const of = measure(text);
    if (of.columns >= columns) {
        return std::string(text);
    }
    std::size_t const missing = columns - of.columns;
    std::string result;
    if (missing > result.max_size() - text.size()) {
        throw std::length_error("kestry::kit::pad: more columns than a string can hold");
    }

    // A mark at the head of the text joins the blank before it, and a character at its end may join the blank after it:
    // together they may take a column less.
    std::size_t const before = where == alignment::left ? 0 : where == alignment::right ? missing : missing / 2;
    detail::column_counter counter;
    counter.add(std::string_view(" ").substr(0, before));
    counter.add(text);
    std::size_t const lost_before = of.columns + std::min<std::size_t>(before, 1) - counter.columns();
    std::size_t const columns_before_blank = counter.columns();
    counter.add(std::string_view(" "));
    std::size_t const lost_after = 1 - (counter.columns() - columns_before_blank);

    bool const ends_plain = where == alignment::right;
    result.append(before + (ends_plain ? lost_before : 0), ' ');
    result += text.substr(0, of.size);
    result += strip_escapes(text.substr(of.size)); // controls
    if (!ends_plain) {
        of.open.close(result);
        result.append(missing - before + lost_before + lost_after, ' ');
    }
    return result;
}

} // namespace kestry::kit
