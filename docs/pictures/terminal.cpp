#include "terminal.hpp"

#include "support/utf8.hpp"

#include <stdexcept>
#include <utility>

#include <vterm.h>

namespace hueline::pictures {

namespace {

// What libvterm has in the second cell of a wide character.
std::uint32_t constexpr second_cell = 0xffffffff;

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

// A colour of the palette from 16 on, as xterm and every terminal of docs/terminals.md have it; libvterm 0.1.4 has another
// cube.
Rgb cube_color(int n)
{
    static std::uint8_t constexpr steps[] = {0, 95, 135, 175, 215, 255};
    if (n >= 232) {
        auto const grey = static_cast<std::uint8_t>(8 + 10 * (n - 232));
        return {grey, grey, grey};
    }
    return {steps[(n - 16) / 36], steps[(n - 16) / 6 % 6], steps[(n - 16) % 6]};
}

// SGR codes with the colours of the palette from 16 on as 24-bit colours.
std::string without_palette(std::vector<int> const& codes)
{
    std::string written;
    for (std::size_t i = 0; i < codes.size(); ++i) {
        written += (i == 0 ? "" : ";") + std::to_string(codes[i]);
        bool const has_number = (codes[i] == 38 || codes[i] == 48) && i + 2 < codes.size() && codes[i + 1] == 5;
        if (has_number && codes[i + 2] >= 16 && codes[i + 2] < 256) {
            Rgb const color = cube_color(codes[i + 2]);
            written += ";2;" + std::to_string(color.r) + ';' + std::to_string(color.g) + ';' + std::to_string(color.b);
            i += 2;
        }
    }
    return written;
}

} // namespace

void Terminal::Free::operator()(VTerm* freed) const { vterm_free(freed); }

Terminal::Terminal(int height, int width, Palette const& palette)
    : terminal(vterm_new(height, width)), rows(height), cols(width)
{
    vterm_set_utf8(terminal.get(), 1);
    VTermState* const state = vterm_obtain_state(terminal.get());
    VTermColor const ink = vterm_color(palette.ink);
    VTermColor const ground = vterm_color(palette.ground);
    vterm_state_set_default_colors(state, &ink, &ground);
    for (int i = 0; i < 16; ++i) {
        VTermColor const color = vterm_color(palette.named[static_cast<std::size_t>(i)]);
        vterm_state_set_palette_color(state, i, &color);
    }
    vterm_state_set_bold_highbright(state, palette.bold_is_bright ? 1 : 0);
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
    std::vector<int> const codes = numbers(sequence.substr(2, sequence.size() - 3));
    select(codes);
    int const font = 10 + (pen.faint ? 1 : 0) + (pen.concealed ? 2 : 0);
    return "\x1b[" + without_palette(codes) + "m\x1b[" + std::to_string(font) + "m";
}

void Terminal::select(std::vector<int> const& codes)
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
            if (found.chars[0] == second_cell) {
                cell.character.clear();
            } else if (found.chars[0] != 0 && !is_concealed) {
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
