#include "progress_row.hpp"

#include "kestry/kit/text.hpp"

#include "progress_numbers.hpp"

#include <algorithm>
#include <array>
#include <optional>
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
    case progress_key::text: {
        std::string const text = look.ascii ? only_ascii(piece.text) : piece.text;
        row.add(text, display_width(text), piece.sgr, false);
        break;
    }
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

progress_text assembled(std::vector<progress_piece> const& pieces, progress_facts const& facts,
                        progress_look const& look, room given)
{
    progress_text row;
    for (progress_piece const& piece : pieces) {
        progress_text const part = shown(piece, facts, look, given);
        std::size_t const wanted = wanted_columns(piece, given);
        std::size_t const blanks = wanted - std::min(wanted, part.columns());
        bool const is_last = &piece == &pieces.back();
        if (piece.to_the_right) {
            row.add(std::string(blanks, ' '), blanks);
        }
        std::size_t begin = 0;
        for (progress_span const& span : part.spans) {
            row.add(std::string_view(part.text).substr(begin, span.end - begin), span.columns,
                    look.color ? span.sgr : std::string_view(), span.simple);
            begin = span.end;
        }
        if (!piece.to_the_right && !is_last) {
            row.add(std::string(blanks, ' '), blanks);
        }
    }
    return row;
}

using pieces_iterator = std::vector<progress_piece>::const_iterator;

pieces_iterator find(std::vector<progress_piece> const& pieces, progress_key key)
{
    return std::find_if(pieces.begin(), pieces.end(), [key](progress_piece const& piece) { return piece.key == key; });
}

bool has(std::vector<progress_piece> const& pieces, progress_key key) { return find(pieces, key) != pieces.end(); }

std::size_t wanted_message(std::vector<progress_piece> const& pieces, progress_facts const& facts,
                           progress_look const& look)
{
    auto const found = find(pieces, progress_key::msg);
    std::size_t const fixed = found == pieces.end() ? 0 : found->width;
    return fixed != 0 ? fixed : std::max(look.message_columns, facts.message_columns);
}

// The row, if it fits when the bar and the message give way.
std::optional<progress_text> fitted(std::vector<progress_piece> const& pieces, progress_facts const& facts,
                                    progress_look const& look, std::size_t columns)
{
    bool const has_bar = has(pieces, progress_key::wide_bar);
    std::size_t const message = wanted_message(pieces, facts, look);
    room given = {.message = message, .bar = has_bar ? least_bar : 0};
    progress_text row = assembled(pieces, facts, look, given);
    if (row.columns() > columns) {
        std::size_t const excess = row.columns() - columns;
        given.message = std::max(std::min(message, least_message), message - std::min(message, excess));
        row = assembled(pieces, facts, look, given);
    }
    if (row.columns() > columns) {
        return std::nullopt;
    }
    if (has_bar) {
        given.bar += columns - row.columns();
        row = assembled(pieces, facts, look, given);
    }
    return row;
}

bool is_gap(progress_piece const& piece) { return piece.key == progress_key::text && piece.text.front() == ' '; }

// The bar that gets no room leaves with the blank before it, or after it.
void remove_bar(std::vector<progress_piece>& pieces)
{
    auto bar = find(pieces, progress_key::wide_bar);
    if (bar == pieces.end()) {
        return;
    }
    bool const first = bar == pieces.begin();
    bar = pieces.erase(bar);
    if (!first && is_gap(*(bar - 1))) {
        pieces.erase(bar - 1);
    } else if (bar != pieces.end() && is_gap(*bar)) {
        pieces.erase(bar);
    }
}

// What stands after the last blank leaves: "{pos}/{len}" at once. False if that is all.
bool remove_last(std::vector<progress_piece>& pieces)
{
    auto const gap = std::find_if(pieces.rbegin(), pieces.rend(), is_gap);
    if (gap == pieces.rend()) {
        return false;
    }
    pieces.erase(gap.base() - 1, pieces.end());
    return !pieces.empty();
}

} // namespace

std::string only_ascii(std::string_view text)
{
    std::string out;
    for (char const c : text) {
        auto const byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            out += c;
        } else if ((byte & 0xc0U) != 0x80) {
            out += '?';
        }
    }
    return out;
}

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
    if (std::optional<progress_text> row = fitted(layout.pieces, facts, look, columns)) {
        return *std::move(row);
    }
    std::vector<progress_piece> left = layout.pieces;
    remove_bar(left);
    do {
        if (std::optional<progress_text> row = fitted(left, facts, look, columns)) {
            return *std::move(row);
        }
    } while (remove_last(left));
    progress_text const row = assembled(left, facts, look, {.message = columns, .bar = 0}); // of the message what fits
    return row.columns() <= columns ? row : progress_text();
}

} // namespace kestry::kit::detail
