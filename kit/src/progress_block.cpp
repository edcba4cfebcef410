#include "progress_block.hpp"

#include "kestry/kit/text.hpp"

#include <algorithm>

namespace kestry::kit::detail {

namespace {

// Synchronised output: a terminal that knows it shows the whole frame at once.
std::string_view constexpr begin_frame = "\x1b[?2026h";
std::string_view constexpr end_frame = "\x1b[?2026l";

// For as long as a frame takes: the cursor is hidden, and a row that is too long, since the terminal has just become
// narrower, does not go on in the next line and scroll the screen.
std::string_view constexpr hide_cursor = "\x1b[?25l"; // DECTCEM
std::string_view constexpr show_cursor = "\x1b[?25h";
std::string_view constexpr no_wrap = "\x1b[?7l"; // DECAWM
std::string_view constexpr wrap = "\x1b[?7h";

// A slow terminal takes a longer frame in pieces, and SIGKILL between two of them would leave both modes off.
std::size_t constexpr most_at_once = 1024; // bytes

// Not ECMA-48, but DEC's and everywhere. No line can scroll between the two.
std::string_view constexpr save_cursor = "\x1b"
                                         "7"; // DECSC
std::string_view constexpr restore_cursor = "\x1b"
                                            "8"; // DECRC

std::string_view constexpr erase_line = "\x1b[K";  // EL, ECMA-48 8.3.41
std::string_view constexpr erase_below = "\x1b[J"; // ED, ECMA-48 8.3.39

// A row that others have moved is put right with the next whole frame. Large blocks wait longer, so that whole frames
// stay a small part of what is written.
double whole_frame_after(std::size_t rows) { return std::max(1.0, static_cast<double>(rows) / 10); }

std::string up(std::size_t rows) { return "\x1b[" + std::to_string(rows) + "A"; }   // CUU, ECMA-48 8.3.22
std::string down(std::size_t rows) { return "\x1b[" + std::to_string(rows) + "B"; } // CUD, ECMA-48 8.3.19

// Lines stand where the cursor rests, and go on where rows were. In a full last column the cursor waits, and EL would
// erase the character there.
void append_lines(std::string& out, std::string_view lines, std::size_t columns)
{
    while (!lines.empty()) {
        std::size_t const end = lines.find('\n');
        std::string_view const line = lines.substr(0, end);
        std::size_t const width = display_width(line);
        bool const fills_its_last_row = width != 0 && width % columns == 0;
        out.append(line).append(fills_its_last_row ? "" : erase_line).append("\r\n");
        lines.remove_prefix(std::min(end, lines.size() - 1) + 1);
    }
}

// The room is made before the cursor is saved. VT moves down and scrolls as LF does, but no terminal line turns it into
// CR LF: the column stays.
void append_rows(std::string& out, std::vector<progress_text> const& rows)
{
    out.append(erase_line);
    if (rows.empty()) {
        out += erase_below;
        return;
    }
    out.append(rows.size(), '\v').append(up(rows.size())).append(save_cursor);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        out.append("\r\n").append(painted(rows[i])).append(i + 1 < rows.size() ? erase_line : erase_below);
    }
    out += restore_cursor;
}

// How many rows lines take if each takes one whatever a terminal makes of its characters; else 0.
std::size_t rows_of(std::string_view lines, std::size_t columns)
{
    std::size_t rows = 0;
    while (!lines.empty()) {
        std::size_t const end = lines.find('\n');
        std::string_view const line = lines.substr(0, end);
        bool const is_plain = std::none_of(line.begin(), line.end(), [](char c) {
            return (static_cast<unsigned char>(c) < 0x20 && c != '\x1b') || c == '\x7f';
        });
        if (!is_plain || display_width(line) >= columns) {
            return 0;
        }
        ++rows;
        lines.remove_prefix(std::min(end, lines.size() - 1) + 1);
    }
    return rows;
}

// The terminal moves the rows down, which need not be drawn again. What others left in the line of the cursor moves too.
void insert_lines(std::string& out, std::string_view lines, std::size_t count, std::size_t rows)
{
    out.append(rows + count, '\v').append(up(rows + count)).append(save_cursor);
    out.append("\x1b[").append(std::to_string(count)).append("L\r"); // IL, ECMA-48 8.3.67
    for (char const c : lines.substr(0, lines.size() - 1)) {
        out.append(c == '\n' ? "\r" : "").append(1, c);
    }
    out.append(restore_cursor).append(down(count));
}

} // namespace

std::string progress_block::changes(std::vector<progress_text> const& rows) const
{
    std::string out;
    std::size_t at = 0;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i] != drawn[i]) {
            out.append(down(i + 1 - at)).append("\r");
            append_change(out, drawn[i], rows[i]);
            at = i + 1;
        }
    }
    return out;
}

std::string progress_block::frame(std::string_view lines, std::vector<progress_text> const& rows, extent size,
                                  double now, cursor before)
{
    bool const has_moved = is_drawn() && size != drawn_in;
    if (lines.empty() && rows == drawn && !has_moved) {
        return {};
    }
    if (rows.empty() && !is_drawn()) {
        return std::string(lines);
    }
    std::size_t const inserted = rows_of(lines, size.columns);
    bool const inserts = is_drawn() && inserted != 0 && inserted + std::max(rows.size(), drawn.size()) < size.rows;
    bool const knows_its_rows = !has_moved && rows.size() == drawn.size() && (lines.empty() || inserts) &&
                                now - drawn_whole < whole_frame_after(rows.size());
    std::string above;
    if (!lines.empty()) {
        // A row that was cut in two goes on in the next until it is erased, and lines that replaced it would too.
        above.append(has_moved ? erase_below : "");
        if (inserts) {
            insert_lines(above, lines, inserted, has_moved ? 0 : drawn.size());
        } else {
            append_lines(above, lines, size.columns);
        }
    }
    std::string below;
    if (!knows_its_rows) {
        append_rows(below, rows);
        drawn_whole = now;
    } else if (rows != drawn) {
        below.append(save_cursor).append(changes(rows)).append(restore_cursor);
    }
    drawn = rows;
    drawn_in = size;

    bool const at_once = above.size() + below.size() <= most_at_once;
    bool const hides = at_once && before == cursor::shown;
    bool const cuts = at_once && !rows.empty() && !below.empty();
    std::string out(begin_frame);
    out.append(hides ? hide_cursor : "").append(above);
    out.append(cuts ? no_wrap : "").append(below).append(cuts ? wrap : "");
    out.append(hides ? show_cursor : "").append(end_frame);
    return out;
}

std::string progress_block::wiped()
{
    bool const was_drawn = is_drawn();
    drawn.clear();
    return std::string(was_drawn ? erase_below : "");
}

} // namespace kestry::kit::detail
