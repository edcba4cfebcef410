#include "renderer.hpp"

#include "ascii.hpp"
#include "sgr.hpp"

#include <algorithm>
#include <cstring>
#include <locale>
#include <string>
#include <typeinfo>
#include <utility>

namespace kestry::kit::detail {

namespace {

void append(void* to, char const* bytes, std::size_t size) { static_cast<std::string*>(to)->append(bytes, size); }
void drop(void* /*to*/, char const* /*bytes*/, std::size_t /*size*/) {}

// LF, VT, FF and CR: a terminal goes to another line, and may fill it with the background in effect.
constexpr bool ends_line(char c) { return c >= '\n' && c <= '\r'; }

// The bytes at the head of a text that are no control of ours and that nothing to come can change.
std::size_t plain_bytes(std::string_view text)
{
    std::size_t at = printable_ascii(text);
    while (at < text.size()) {
        character const next = decode(text.substr(at));
        if (begins_sequence(next.code) || next.is == character::state::cut_off || ends_line(text[at])) {
            break;
        }
        at += next.size;
        at += printable_ascii(text.substr(at));
    }
    return at;
}

// Past a piece and, if it is a group, all that is in it.
piece const* end_of(piece const* p)
{
    for (std::size_t open = 1; open != 0; --open, ++p) {
        open += p->what == piece::kind::group ? p->size : 0;
    }
    return p;
}

// ESC and a letter, a C1 control in UTF-8, or a bare byte.
std::size_t introducer_size(std::string_view sequence)
{
    return sequence.front() == '\x1b' || sequence.front() == '\xc2' ? 2 : 1;
}

} // namespace

layout take_layout(std::ostream& os, char const& fill)
{
    auto const width = static_cast<std::size_t>(std::max<std::streamsize>(os.width(0), 0));
    bool const is_left = (os.flags() & std::ios_base::adjustfield) == std::ios_base::left;
    return {width, no_limit, is_left ? layout::side::left : layout::side::right, {&fill, 1}};
}

void meter::add(std::string_view text) noexcept
{
    if (room == no_limit) {
        counter.add(text);
        return;
    }
    while (!text.empty() && fits()) {
        character const next = decode(text);
        std::size_t const before = counter.columns();
        if (counter.add(next)) {
            kept_characters = seen;
            kept_columns = before;
        }
        ++seen;
        text.remove_prefix(next.size);
    }
}

// ---------------------------------------------------------------------------------------------
// Pieces
// ---------------------------------------------------------------------------------------------

void renderer::render(piece const* p, layout const& where)
{
    if (where.width == 0 && where.limit == no_limit) {
        render(p);
    } else {
        render_in_columns(p, where);
    }
}

// Columns have to be known first. Text is gone through twice; what is inserted once is kept.
void renderer::render_in_columns(piece const* p, layout const& where)
{
    bool const is_kept = std::any_of(p, end_of(p), [](piece const& of) { return of.what == piece::kind::value; });
    std::string kept;
    meter measure(where.limit);
    renderer first(is_kept ? sink{append, &kept} : sink{drop, nullptr}, {chose.depth, now, chose.formats, &measure});
    first.render(p);
    first.finish();
    failed |= first.failed;

    std::size_t const missing = where.width - std::min(where.width, measure.columns());
    std::size_t const before = where.where == layout::side::left    ? 0
                               : where.where == layout::side::right ? missing
                                                                    : missing / 2;
    pad(where.fill, before);
    std::size_t const room_after = std::exchange(room, measure.characters());
    if (!is_kept) {
        render(p);
    } else if (room != no_limit) {
        text(kept);
    } else if (!kept.empty()) {
        change_to(now); // which is what it starts from, and comes back to
        put(kept);
    }
    room = room_after;
    pad(where.fill, missing - before);
}

// Returns where the next piece is.
piece const* renderer::render(piece const* p)
{
    switch (p->what) {
    case piece::kind::group: {
        if (values && values->stream.width() != 0) {
            char const fill = values->stream.fill();
            render_in_columns(p, take_layout(values->stream, fill));
            return end_of(p);
        }
        cut_off();
        rendition const now_after = now;
        rendition const group_after = std::exchange(group, combined(now, p->look, chose.depth));
        now = group;
        std::size_t rest = p->size;
        for (++p; rest != 0; --rest) {
            p = render(p);
        }
        cut_off();
        now = now_after;
        group = group_after;
        return p;
    }
    case piece::kind::text:
        if (failed != std::ios_base::goodbit) {
            return p + 1;
        }
        if (values && values->stream.width() != 0) {
            values->stream << std::string_view{static_cast<char const*>(p->data), p->size};
        } else {
            text({static_cast<char const*>(p->data), p->size});
        }
        return p + 1;
    case piece::kind::value:
        insert(p);
        return p + 1;
    }
    return p + 1; // no enumerator
}

renderer::value_stream::value_stream(renderer& r, options const& chosen) : buffer(r), stream(&buffer)
{
    if (chosen.formats != nullptr) {
        stream.copyfmt(*chosen.formats);
        stream.exceptions(std::ios_base::goodbit);
        stream.tie(nullptr);
        stream.width(0);
    } else {
        stream.imbue(std::locale::classic());
    }
    set_depth(stream, chosen.depth);
    mark_for_values(stream);
}

void renderer::insert(piece const* value)
{
    if (failed != std::ios_base::goodbit) {
        return;
    }
    if (!values) {
        values.emplace(*this, chose);
    }
    set_style(values->stream, style_in(now));
    value->insert(values->stream, value->data);
    failed |= values->stream.rdstate();
}

renderer* renderer::of(std::ostream& os)
{
    std::streambuf* const buffer = os.rdbuf();
    return buffer != nullptr && typeid(*buffer) == typeid(filter) ? &static_cast<filter*>(buffer)->to : nullptr;
}

std::streamsize renderer::filter::xsputn(char const* bytes, std::streamsize length)
{
    to.text({bytes, static_cast<std::size_t>(length)});
    return length;
}

renderer::filter::int_type renderer::filter::overflow(int_type c)
{
    if (!traits_type::eq_int_type(c, traits_type::eof())) {
        char const byte = traits_type::to_char_type(c);
        to.text({&byte, 1});
    }
    return traits_type::not_eof(c);
}

void renderer::pad(std::string_view fill, std::size_t columns)
{
    for (; columns != 0; --columns) {
        show(fill);
    }
}

void renderer::finish()
{
    cut_off();
    change_to(chose.around);
    flush();
}

// ---------------------------------------------------------------------------------------------
// Text, and the sequences in it
// ---------------------------------------------------------------------------------------------

void renderer::text(std::string_view bytes)
{
    while (head_size != 0 && !bytes.empty()) {
        head[head_size++] = bytes.front();
        bytes.remove_prefix(1);
        if (decode({head, head_size}).is != character::state::cut_off) {
            char whole[sizeof head];
            std::memcpy(whole, head, sizeof head);
            walk({whole, std::exchange(head_size, 0)}, false);
        }
    }
    walk(bytes, false);
}

void renderer::walk(std::string_view bytes, bool at_end)
{
    while (!bytes.empty()) {
        if (machine.current() == escape_machine::state::ground) {
            if (std::size_t const plain = plain_bytes(bytes); plain != 0) {
                show(bytes.substr(0, plain));
                bytes.remove_prefix(plain);
                continue;
            }
        }
        character const next = decode(bytes);
        if (next.is == character::state::cut_off && !at_end) {
            head_size = bytes.copy(head, sizeof head);
            return;
        }
        take(next, bytes.substr(0, next.size));
        bytes.remove_prefix(next.size);
    }
}

void renderer::take(character const& next, std::string_view bytes)
{
    using effect = escape_machine::effect;
    using state = escape_machine::state;

    state const before = machine.current();
    bool const was_in_string = machine.is_in_string();
    switch (machine.step(next)) {
    case effect::text:
        held_size = 0;
        [[fallthrough]];
    case effect::execute:
        if (bytes.size() == 1 && ends_line(bytes.front())) {
            end_line(bytes);
        } else {
            show(bytes);
        }
        break;
    case effect::begin:
        is_maybe_end = was_in_string && bytes == "\x1b";
        if (!is_maybe_end) {
            held_size = 0;
            hold(bytes);
        }
        break;
    case effect::whole:
        held_size = 0;
        hold(bytes);
        complete(state::escape, '\0');
        break;
    case effect::part:
    case effect::end: {
        bool const is_string_end = is_maybe_end && bytes == "\\";
        if (std::exchange(is_maybe_end, false)) {
            held_size = is_string_end ? held_size : 0; // the string was broken off
            hold("\x1b");
        }
        hold(bytes);
        if (machine.current() == state::ground) {
            complete(is_string_end ? state::string : before, bytes.front());
        }
        break;
    }
    case effect::give_up:
        give_up_string(bytes);
        break;
    }
}

// What was held is text without a sequence in it.
void renderer::give_up_string(std::string_view bytes)
{
    std::string_view const string{held, std::exchange(held_size, 0)};
    walk(string.substr(introducer_size(string)), true);
    walk(bytes, true);
}

void renderer::complete(escape_machine::state kind, char final_byte)
{
    using state = escape_machine::state;

    std::string_view const sequence{held, std::exchange(held_size, 0)};
    if (chose.depth == color_depth::none || sequence.size() == sizeof held) {
        return;
    }
    if (kind == state::csi) {
        std::size_t const head_bytes = introducer_size(sequence);
        std::string_view const body = sequence.substr(head_bytes, sequence.size() - head_bytes - 1);
        if (is_sgr({kind, true, false, final_byte, sequence.size(), body})) {
            follow(body, now, group, chose.depth);
            return;
        }
        change_to(now); // what it erases is filled with the background
    } else if (kind != state::osc && kind != state::string) {
        change_to({}); // it may go to another line
    }
    put(sequence);
}

// A sequence that is as long as there is room is incomplete.
void renderer::hold(std::string_view bytes) { held_size += bytes.copy(held + held_size, sizeof held - held_size); }

// What a text leaves open ends with it.
void renderer::cut_off()
{
    if (head_size != 0) {
        char rest[sizeof head];
        std::memcpy(rest, head, sizeof head);
        walk({rest, std::exchange(head_size, 0)}, true);
    }
    machine = {};
    is_maybe_end = false;
    held_size = 0;
}

// ---------------------------------------------------------------------------------------------
// Bytes
// ---------------------------------------------------------------------------------------------

void renderer::show(std::string_view text)
{
    text = fitting(text);
    if (!text.empty()) {
        change_to(now);
        put(text);
    }
}

void renderer::end_line(std::string_view control)
{
    control = fitting(control);
    if (!control.empty()) {
        change_to({});
        put(control);
    }
}

// As much of a text as there is room for.
std::string_view renderer::fitting(std::string_view text)
{
    if (chose.measure != nullptr) {
        chose.measure->add(text);
    }
    if (room == no_limit) {
        return text;
    }
    std::size_t end = 0;
    for (; room != 0 && end < text.size(); --room) {
        end += decode(text.substr(end)).size;
    }
    return text.substr(0, end);
}

void renderer::change_to(rendition const& wanted)
{
    if (wanted == shown) {
        return;
    }
    if (sizeof buffer - size < longest_change) {
        flush();
    }
    size = static_cast<std::size_t>(write_change(buffer + size, shown, wanted) - buffer);
    shown = wanted;
}

void renderer::put(std::string_view bytes)
{
    if (bytes.size() > sizeof buffer - size) {
        flush();
        if (bytes.size() > sizeof buffer) {
            out.write(out.to, bytes.data(), bytes.size());
            return;
        }
    }
    size += bytes.copy(buffer + size, bytes.size());
}

void renderer::flush() { out.write(out.to, buffer, std::exchange(size, 0)); }

} // namespace kestry::kit::detail
