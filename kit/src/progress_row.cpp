#include "progress_row.hpp"

#include "kestry/kit/text.hpp"

#include "progress_numbers.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace kestry::kit::detail {

namespace {

std::size_t constexpr least_message = 8;
std::size_t constexpr least_bar = 5; // with its brackets
std::size_t constexpr usual_bar = 20;

// Eighths of a cell, from one to seven.
std::array<std::string_view, 8> constexpr eighths = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
std::array<std::string_view, 10> constexpr turns = {"⠋", "⠙", "⠹", "⠸", "⠼", "⠴", "⠦", "⠧", "⠇", "⠏"};
std::string_view constexpr ascii_turns = "|/-\\";

std::string_view constexpr yellow = "33"; // of a bar that was abandoned

void append(std::string& text, std::string_view piece, std::size_t times)
{
    for (std::size_t i = 0; i < times; ++i) {
        text += piece;
    }
}

// How much of cells is full.
double share(progress_facts const& facts, std::size_t cells)
{
    if (facts.position >= facts.length) {
        return static_cast<double>(cells);
    }
    return static_cast<double>(facts.position) / static_cast<double>(facts.length) * static_cast<double>(cells);
}

// A piece of a bar without a length that goes to and fro.
void add_wanderer(progress_text& row, progress_facts const& facts, progress_look const& look, std::size_t cells,
                  std::string_view sgr)
{
    std::size_t const piece = std::min<std::size_t>(3, cells);
    std::size_t const way = cells - piece;
    std::size_t const step = way == 0 ? 0 : facts.turn % (2 * way);
    std::size_t const before = step <= way ? step : 2 * way - step;
    std::string full;
    append(full, look.ascii ? "#" : "█", piece);
    row.add(std::string(before, ' '), before);
    row.add(full, piece, sgr);
    row.add(std::string(way - before, ' '), way - before);
}

void add_bar(progress_text& row, progress_facts const& facts, progress_look const& look, std::size_t columns,
             std::string_view sgr)
{
    if (columns < 3) {
        return;
    }
    std::size_t const cells = columns - 2;
    if (facts.state == progress_state::abandoned && !sgr.empty()) {
        sgr = yellow;
    }
    row.add("[", 1);
    if (facts.length == progress::unknown && facts.state == progress_state::active) {
        add_wanderer(row, facts, look, cells, sgr);
    } else {
        double const full = share(facts, cells);
        bool const complete = facts.position >= facts.length;
        std::size_t const whole = complete ? cells : std::min(static_cast<std::size_t>(full), cells - 1);
        auto const part = static_cast<std::size_t>((full - static_cast<double>(whole)) * 8);
        std::string text;
        append(text, look.ascii ? "#" : "█", whole);
        std::size_t used = whole;
        if (!complete && (look.ascii ? facts.position > 0 : part > 0)) {
            text += look.ascii ? ">" : eighths[std::min<std::size_t>(part, 7)];
            ++used;
        }
        row.add(text, used, sgr);
        row.add(std::string(cells - used, look.ascii ? '.' : ' '), cells - used);
    }
    row.add("]", 1);
}

std::string spinner(progress_facts const& facts, progress_look const& look)
{
    switch (facts.state) {
    case progress_state::finished:
        return look.ascii ? "*" : "✓";
    case progress_state::abandoned:
        return look.ascii ? "x" : "✗";
    case progress_state::active:
        break;
    }
    return look.ascii ? std::string(1, ascii_turns[facts.turn % ascii_turns.size()])
                      : std::string(turns[facts.turn % turns.size()]);
}

// What a key of ASCII says, as wide as it usually is.
std::string value(progress_key key, progress_facts const& facts)
{
    bool const known = facts.length != progress::unknown;
    bool const bytes = facts.counted == progress::unit::bytes;
    switch (key) {
    case progress_key::pos:
        return right_aligned(amount(facts.position, facts.counted), bytes   ? 8
                                                                    : known ? std::to_string(facts.length).size()
                                                                            : 0);
    case progress_key::len:
        return known ? amount(facts.length, facts.counted) : "?";
    case progress_key::percent:
        return right_aligned(known ? std::to_string(percent(facts.position, facts.length)) + "%" : "--%", 4);
    case progress_key::rate:
        return right_aligned(speed(facts.rate, facts.counted), bytes ? 10 : 7);
    case progress_key::eta: // of a finished bar: what it took
        return right_aligned(facts.state == progress_state::finished ? time_span(facts.elapsed) : time_left(facts.left),
                             5);
    case progress_key::elapsed:
        return right_aligned(time_span(facts.elapsed), 5);
    default:
        return {};
    }
}

// The columns that the two pieces get that give way.
struct room {
    std::size_t message = 0;
    std::size_t bar = 0;
};

progress_text shown(progress_piece const& piece, progress_facts const& facts, progress_look const& look, room given)
{
    progress_text row;
    switch (piece.key) {
    case progress_key::text:
        row.add(piece.text, display_width(piece.text), piece.sgr, false);
        break;
    case progress_key::msg:
        if (facts.message_columns <= given.message) {
            bool const is_ascii = facts.message.size() == facts.message_columns;
            row.add(facts.message, facts.message_columns, piece.sgr, is_ascii);
        } else {
            std::string const cut = truncate(facts.message, given.message, look.ascii ? "..." : "…");
            row.add(cut, display_width(cut), piece.sgr, false);
        }
        break;
    case progress_key::bar:
        add_bar(row, facts, look, piece.width == 0 ? usual_bar : piece.width, piece.sgr);
        break;
    case progress_key::wide_bar:
        add_bar(row, facts, look, given.bar, piece.sgr);
        break;
    case progress_key::spinner:
        row.add(spinner(facts, look), 1, piece.sgr);
        break;
    default: {
        std::string const text = value(piece.key, facts);
        row.add(text, text.size(), piece.sgr);
        break;
    }
    }
    return row;
}

std::size_t wanted_columns(progress_piece const& piece, room given)
{
    return piece.key == progress_key::msg ? given.message : piece.width;
}

progress_text assembled(std::vector<progress_piece> const& pieces, std::size_t count, progress_facts const& facts,
                        progress_look const& look, room given)
{
    progress_text row;
    for (std::size_t i = 0; i < count; ++i) {
        progress_text const piece = shown(pieces[i], facts, look, given);
        std::size_t const wanted = wanted_columns(pieces[i], given);
        std::size_t const blanks = wanted - std::min(wanted, piece.columns());
        bool const is_last = i + 1 == count;
        if (pieces[i].to_the_right) {
            row.add(std::string(blanks, ' '), blanks);
        }
        std::size_t begin = 0;
        for (progress_span const& span : piece.spans) {
            row.add(std::string_view(piece.text).substr(begin, span.end - begin), span.columns,
                    look.color ? span.sgr : std::string_view(), span.simple);
            begin = span.end;
        }
        if (!pieces[i].to_the_right && !is_last) {
            row.add(std::string(blanks, ' '), blanks);
        }
    }
    return row;
}

bool has(std::vector<progress_piece> const& pieces, std::size_t count, progress_key key)
{
    return std::any_of(pieces.begin(), pieces.begin() + static_cast<std::ptrdiff_t>(count),
                       [key](progress_piece const& piece) { return piece.key == key; });
}

// How many pieces are left when the last key leaves, with the text before it.
std::size_t without_last_key(std::vector<progress_piece> const& pieces, std::size_t count)
{
    while (count > 0 && pieces[count - 1].key == progress_key::text) {
        --count;
    }
    count -= std::min<std::size_t>(count, 1);
    while (count > 0 && pieces[count - 1].key == progress_key::text) {
        --count;
    }
    return count;
}

std::size_t message_width(std::vector<progress_piece> const& pieces)
{
    for (progress_piece const& piece : pieces) {
        if (piece.key == progress_key::msg) {
            return piece.width;
        }
    }
    return 0;
}

} // namespace

void progress_text::add(std::string_view more, std::size_t width, std::string_view sgr, bool simple)
{
    if (!more.empty()) {
        text += more;
        spans.push_back({text.size(), width, sgr, simple});
    }
}

std::size_t progress_text::columns() const noexcept
{
    std::size_t sum = 0;
    for (progress_span const& span : spans) {
        sum += span.columns;
    }
    return sum;
}

progress_text lay_out(progress_template const& layout, progress_facts const& facts, progress_look const& look,
                      std::size_t columns)
{
    std::vector<progress_piece> const& pieces = layout.pieces;
    std::size_t const fixed_message = message_width(pieces);
    std::size_t const message =
        fixed_message != 0 ? fixed_message : std::max(look.message_columns, facts.message_columns);
    for (std::size_t count = pieces.size(); count > 0; count = without_last_key(pieces, count)) {
        room given = {.message = message, .bar = 0};
        bool const has_bar = has(pieces, count, progress_key::wide_bar);
        std::size_t const needed = assembled(pieces, count, facts, look, given).columns() + (has_bar ? least_bar : 0);
        if (needed > columns && has(pieces, count, progress_key::msg)) {
            std::size_t const least = std::min(message, least_message);
            given.message = std::max(least, message - std::min(message, needed - columns));
        }
        progress_text row = assembled(pieces, count, facts, look, given);
        if (row.columns() > columns) {
            if (without_last_key(pieces, count) != 0) {
                continue;
            }
            given.message = std::min(given.message, columns); // the message alone, as much of it as there is room for
            row = assembled(pieces, count, facts, look, given);
            return row.columns() <= columns ? row : progress_text();
        }
        if (has_bar && columns - row.columns() >= least_bar) {
            given.bar = columns - row.columns();
            return assembled(pieces, count, facts, look, given);
        }
        return row;
    }
    return {};
}

} // namespace kestry::kit::detail
