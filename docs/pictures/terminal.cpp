#include "terminal.hpp"

#include "support/utf8.hpp"

#include <stdexcept>
#include <utility>

#include <vterm.h>

namespace hueline::pictures {

namespace {

// The named colours, as legible on a dark ground as terminals of today have them.
Rgb constexpr named[16] = {
    {0x00, 0x00, 0x00}, {0xcd, 0x31, 0x31}, {0x0d, 0xbc, 0x79}, {0xd9, 0xc2, 0x2b},
    {0x3b, 0x78, 0xd8}, {0xbc, 0x3f, 0xbc}, {0x11, 0xa8, 0xcd}, {0xe5, 0xe5, 0xe5},
    {0x6b, 0x70, 0x7a}, {0xf1, 0x4c, 0x4c}, {0x23, 0xd1, 0x8b}, {0xf5, 0xf5, 0x43},
    {0x6a, 0xa9, 0xff}, {0xd6, 0x70, 0xd6}, {0x29, 0xb8, 0xdb}, {0xff, 0xff, 0xff},
};

VTermColor vterm_color(Rgb color)
{
    VTermColor converted = {};
    vterm_color_rgb(&converted, color.r, color.g, color.b);
    return converted;
}

Rgb rgb(VTermState const* state, VTermColor color)
{
    vterm_state_convert_color_to_rgb(state, &color);
    return {color.rgb.red, color.rgb.green, color.rgb.blue};
}

// Faint ink: two thirds of the way from the ground to the ink.
Rgb faint(Rgb ink, Rgb ground)
{
    auto const mixed = [](int over, int under) { return static_cast<std::uint8_t>((2 * over + under) / 3); };
    return {mixed(ink.r, ground.r), mixed(ink.g, ground.g), mixed(ink.b, ground.b)};
}

// The bytes of the control sequence (ECMA-48 5.4) at the head of bytes, up to its final byte.
std::string_view sequence_at_head(std::string_view bytes)
{
    std::size_t size = 2;
    while (size < bytes.size() && bytes[size] >= 0x20 && bytes[size] < 0x40) {
        ++size;
    }
    return bytes.substr(0, size + 1);
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

void Terminal::Free::operator()(VTerm* freed) const { vterm_free(freed); }

Terminal::Terminal(int height, int width) : terminal(vterm_new(height, width)), rows(height), cols(width)
{
    vterm_set_utf8(terminal.get(), 1);
    VTermState* const state = vterm_obtain_state(terminal.get());
    VTermColor const ink = vterm_color(default_ink);
    VTermColor const ground = vterm_color(default_ground);
    vterm_state_set_default_colors(state, &ink, &ground);
    for (int i = 0; i < 16; ++i) {
        VTermColor const color = vterm_color(named[i]);
        vterm_state_set_palette_color(state, i, &color);
    }
    vterm_screen_reset(vterm_obtain_screen(terminal.get()), 1);
}

void Terminal::feed(std::string_view bytes)
{
    std::string fed;
    while (!bytes.empty()) {
        if (bytes.starts_with("\x1b[")) {
            std::string_view const sequence = sequence_at_head(bytes);
            fed += translated(sequence);
            bytes.remove_prefix(sequence.size());
            continue;
        }
        fed += bytes.front() == '\n' ? "\r\n" : std::string(1, bytes.front());
        bytes.remove_prefix(1);
    }
    vterm_input_write(terminal.get(), fed.data(), fed.size());
}

std::string Terminal::translated(std::string_view sequence)
{
    if (sequence == "\x1b[s") {
        saved = pen;
        return "\0337"; // DECSC, ESC 7
    }
    if (sequence == "\x1b[u") {
        pen = saved;
        return "\0338"; // DECRC, ESC 8
    }
    if (!sequence.ends_with('m')) {
        return std::string(sequence);
    }
    select(sequence.substr(2, sequence.size() - 3));
    int const font = 10 + (pen.faint ? 1 : 0) + (pen.concealed ? 2 : 0);
    return std::string(sequence) + "\x1b[" + std::to_string(font) + "m";
}

void Terminal::select(std::string_view parameters)
{
    std::vector<int> const codes = numbers(parameters);
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

Grid Terminal::grid() const
{
    VTermScreen* const screen = vterm_obtain_screen(terminal.get());
    VTermState const* const state = vterm_obtain_state(terminal.get());
    Grid grid(static_cast<std::size_t>(rows), Row(static_cast<std::size_t>(cols)));
    for (int row = 0; row < rows; ++row) {
        for (int col = 0; col < cols; ++col) {
            VTermScreenCell found = {};
            if (vterm_screen_get_cell(screen, {row, col}, &found) == 0) {
                throw std::logic_error("no such cell");
            }
            Cell& cell = grid[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)];
            cell.ink = rgb(state, found.fg);
            cell.ground = rgb(state, found.bg);
            if (found.attrs.reverse != 0) {
                std::swap(cell.ink, cell.ground);
            }
            bool const is_faint = (found.attrs.font & 1) != 0;
            bool const is_concealed = (found.attrs.font & 2) != 0;
            if (is_faint) {
                cell.ink = faint(cell.ink, cell.ground);
            }
            cell.bold = found.attrs.bold != 0;
            cell.italic = found.attrs.italic != 0;
            cell.underline = found.attrs.underline != 0;
            cell.strike = found.attrs.strike != 0;
            cell.blink = found.attrs.blink != 0;
            if (found.chars[0] != 0 && !is_concealed) {
                cell.character.clear();
                for (int i = 0; i < VTERM_MAX_CHARS_PER_CELL && found.chars[i] != 0; ++i) {
                    cell.character += test::utf8(found.chars[i]);
                }
            }
        }
    }
    return grid;
}

} // namespace hueline::pictures
