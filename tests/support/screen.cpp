#include "support/screen.hpp"

#include "support/utf8.hpp"

#include <stdexcept>

#include <vterm.h>

namespace hueline::test {

namespace {

std::string without_trailing_blanks(std::string const& line) { return line.substr(0, line.find_last_not_of(' ') + 1); }

std::string character_of(VTermScreenCell const& cell)
{
    std::string character;
    for (int i = 0; i < VTERM_MAX_CHARS_PER_CELL && cell.chars[i] != 0; ++i) {
        character += utf8(cell.chars[i]);
    }
    return character;
}

Colour colour(VTermState const* state, VTermColor given)
{
    Colour c;
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
            line += character.empty() ? " " : character;
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
    std::string shown;
    for (char const byte : bytes) {
        if (byte == '\n') {
            shown += '\r';
        }
        shown += byte;
    }
    vterm_input_write(terminal.get(), shown.data(), shown.size());
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
    cell.bold = found.attrs.bold != 0;
    cell.italic = found.attrs.italic != 0;
    cell.underline = found.attrs.underline != 0;
    cell.blink = found.attrs.blink != 0;
    cell.reverse = found.attrs.reverse != 0;
    cell.strike = found.attrs.strike != 0;
    cell.foreground = colour(state, found.fg);
    cell.background = colour(state, found.bg);
    return cell;
}

std::string Screen::text(int row) const
{
    std::string line;
    for (int col = 0; col < cols; ++col) {
        std::string const character = cell(row, col).character;
        line += character.empty() ? " " : character;
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
