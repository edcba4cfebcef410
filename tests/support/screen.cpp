#include "support/screen.hpp"

#include "support/utf8.hpp"

#include <stdexcept>

#include <vterm.h>

namespace hueline::test {

namespace {

int note_cursor(VTermProp property, VTermValue* value, void* visible)
{
    if (property == VTERM_PROP_CURSORVISIBLE) {
        *static_cast<bool*>(visible) = value->boolean != 0;
    }
    return 1;
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

Screen::Screen(std::string_view bytes, int rows, int columns) : terminal(vterm_new(rows, columns)), cols(columns)
{
    vterm_set_utf8(terminal.get(), 1);
    VTermScreen* const screen = vterm_obtain_screen(terminal.get());
    VTermScreenCallbacks callbacks = {};
    callbacks.settermprop = note_cursor;
    vterm_screen_set_callbacks(screen, &callbacks, &shows_cursor);
    vterm_screen_reset(screen, 1);

    std::string shown;
    for (char const byte : bytes) {
        if (byte == '\n') {
            shown += '\r';
        }
        shown += byte;
    }
    vterm_input_write(terminal.get(), shown.data(), shown.size());
    vterm_screen_set_callbacks(screen, nullptr, nullptr);
}

Cell Screen::cell(int row, int col) const
{
    VTermScreenCell found = {};
    if (vterm_screen_get_cell(vterm_obtain_screen(terminal.get()), {row, col}, &found) == 0) {
        throw std::out_of_range("no such cell");
    }
    VTermState const* const state = vterm_obtain_state(terminal.get());
    Cell cell;
    for (int i = 0; i < VTERM_MAX_CHARS_PER_CELL && found.chars[i] != 0; ++i) {
        cell.character += utf8(found.chars[i]);
    }
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
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

Position Screen::cursor() const
{
    VTermPos position = {};
    vterm_state_get_cursorpos(vterm_obtain_state(terminal.get()), &position);
    return {position.row, position.col};
}

bool Screen::cursor_visible() const { return shows_cursor; }

} // namespace hueline::test
