#include "support/screen.hpp"
#include "support/utf8.hpp"

#include <stdexcept>
#include <utility>
#include <vector>

#include <vterm.h>

namespace hueline::test {

namespace {

std::string without_trailing_blanks(std::string const& line) { return line.substr(0, line.find_last_not_of(' ') + 1); }

bool is_second(VTermScreenCell const& cell) { return cell.chars[0] == 0xffffffff; }

std::string character_of(VTermScreenCell const& cell)
{
    std::string character;
    for (int i = 0; i < VTERM_MAX_CHARS_PER_CELL && cell.chars[i] != 0 && !is_second(cell); ++i) {
        character += utf8(cell.chars[i]);
    }
    return character;
}

Color color(VTermState const* state, VTermColor given)
{
    Color c;
    c.is_default = VTERM_COLOR_IS_DEFAULT_FG(&given) || VTERM_COLOR_IS_DEFAULT_BG(&given);
    if (!c.is_default && VTERM_COLOR_IS_INDEXED(&given)) {
        c.index = given.indexed.idx;
    }
    vterm_state_convert_color_to_rgb(state, &given);
    c.r = given.rgb.red;
    c.g = given.rgb.green;
    c.b = given.rgb.blue;
    return c;
}

// The sequence that begins with ESC at the head of bytes; nothing if it has not come to its end. Control sequences
// (ECMA-48 5.4) have parameters, others two bytes here: what strings hold is left to libvterm.
std::string_view sequence_at_head(std::string_view bytes)
{
    std::size_t size = 2;
    if (bytes.starts_with("\x1b[")) {
        while (size < bytes.size() && bytes[size] >= 0x20 && bytes[size] < 0x40) {
            ++size;
        }
        ++size;
    }
    return bytes.size() < size ? std::string_view() : bytes.substr(0, size);
}

// An SGR code is a number; one that is missing is 0.
std::vector<int> numbers(std::string_view parameters)
{
    std::vector<int> found = {0};
    for (char const c : parameters) {
        if (c == ';') {
            found.push_back(0);
        } else if (c >= '0' && c <= '9' && found.back() < 10000) {
            found.back() = 10 * found.back() + (c - '0');
        }
    }
    return found;
}

} // namespace

void Screen::Free::operator()(VTerm* freed) const { vterm_free(freed); }

struct Screen::Callbacks {
    static int note_cursor(VTermProp property, VTermValue* value, void* told)
    {
        if (property == VTERM_PROP_CURSORVISIBLE) {
            static_cast<Told*>(told)->shows_cursor = value->boolean != 0;
        }
        return 1;
    }

    static int keep_line(int cols, VTermScreenCell const* cells, void* told)
    {
        std::string line;
        for (int col = 0; col < cols; ++col) {
            std::string const character = character_of(cells[col]);
            line += character.empty() && !is_second(cells[col]) ? " " : character;
        }
        static_cast<Told*>(told)->scrolled.push_back(without_trailing_blanks(line));
        return 1;
    }

    static VTermScreenCallbacks all()
    {
        VTermScreenCallbacks callbacks = {};
        callbacks.settermprop = note_cursor;
        callbacks.sb_pushline = keep_line;
        return callbacks;
    }
};

Screen::Screen(std::string_view bytes, int rows, int columns)
    : told(std::make_unique<Told>()), terminal(vterm_new(rows, columns)), cols(columns)
{
    static VTermScreenCallbacks const callbacks = Callbacks::all();
    vterm_set_utf8(terminal.get(), 1);
    VTermScreen* const screen = vterm_obtain_screen(terminal.get());
    vterm_screen_set_callbacks(screen, &callbacks, told.get());
    vterm_screen_reset(screen, 1);
    write(bytes);
}

void Screen::write(std::string_view bytes)
{
    std::string const whole = std::exchange(begun, "") + std::string(bytes);
    std::string shown;
    for (std::string_view left = whole; !left.empty();) {
        std::string_view const next = left.front() == '\x1b' ? sequence_at_head(left) : left.substr(0, 1);
        if (next.empty()) {
            begun = left;
            break;
        }
        shown += next == "\n" ? "\r\n" : translated(next);
        left.remove_prefix(next.size());
    }
    vterm_input_write(terminal.get(), shown.data(), shown.size());
}

std::string Screen::translated(std::string_view sequence)
{
    if (sequence == "\x1b[s" || sequence == "\0337") {
        saved = pen;
        return "\0337"; // DECSC
    }
    if (sequence == "\x1b[u" || sequence == "\0338") {
        pen = saved;
        return "\0338"; // DECRC
    }
    std::string same(sequence);
    if (!sequence.starts_with("\x1b[") || !sequence.ends_with('m')) {
        return same;
    }
    select(numbers(sequence.substr(2, sequence.size() - 3)));
    int const font = 10 + (pen.faint ? 1 : 0) + (pen.concealed ? 2 : 0);
    return same + "\x1b[" + std::to_string(font) + "m";
}

void Screen::select(std::vector<int> const& codes)
{
    for (std::size_t i = 0; i < codes.size(); ++i) {
        switch (codes[i]) {
        case 0:
            pen = {};
            break;
        case 2:
            pen.faint = true;
            break;
        case 8:
            pen.concealed = true;
            break;
        case 22:
            pen.faint = false;
            break;
        case 28:
            pen.concealed = false;
            break;
        case 38:
        case 48:
            // The numbers of a colour are no codes: "5;n" or "2;r;g;b".
            i += i + 1 < codes.size() && codes[i + 1] == 2 ? 4U : 2U;
            break;
        default:
            break;
        }
    }
}

void Screen::resize(int rows, int columns)
{
    cols = columns;
    vterm_set_size(terminal.get(), rows, columns);
}

Cell Screen::cell(int row, int col) const
{
    VTermScreenCell found = {};
    if (vterm_screen_get_cell(vterm_obtain_screen(terminal.get()), {row, col}, &found) == 0) {
        throw std::out_of_range("no such cell");
    }
    VTermState const* const state = vterm_obtain_state(terminal.get());
    Cell cell;
    cell.character = character_of(found);
    cell.is_second = is_second(found);
    cell.bold = found.attrs.bold != 0;
    cell.faint = (found.attrs.font & 1) != 0;
    cell.concealed = (found.attrs.font & 2) != 0;
    cell.italic = found.attrs.italic != 0;
    cell.underline = found.attrs.underline != 0;
    cell.blink = found.attrs.blink != 0;
    cell.reverse = found.attrs.reverse != 0;
    cell.strike = found.attrs.strike != 0;
    cell.foreground = color(state, found.fg);
    cell.background = color(state, found.bg);
    return cell;
}

std::string Screen::text(int row) const
{
    std::string line;
    for (int col = 0; col < cols; ++col) {
        Cell const found = cell(row, col);
        line += found.character.empty() && !found.is_second ? " " : found.character;
    }
    return without_trailing_blanks(line);
}

Position Screen::cursor() const
{
    VTermPos position = {};
    vterm_state_get_cursorpos(vterm_obtain_state(terminal.get()), &position);
    return {position.row, position.col};
}

bool Screen::cursor_visible() const { return told->shows_cursor; }

std::vector<std::string> Screen::lines_above() const
{
    std::vector<std::string> lines = told->scrolled;
    for (int row = 0; row < cursor().row; ++row) {
        lines.push_back(text(row));
    }
    return lines;
}

} // namespace hueline::test
