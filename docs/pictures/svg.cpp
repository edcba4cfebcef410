#include "svg.hpp"

#include <algorithm>
#include <cstdio>
#include <map>
#include <tuple>

namespace hueline::pictures {

namespace {

// Of a cell, in pixels. The fonts that are asked for are as wide as three fifths of their size.
int constexpr cell_width = 9;
int constexpr cell_height = 18;
int constexpr font_size = 15;
int constexpr base_line = 14;
int constexpr margin = 12;

char const* const fonts = "ui-monospace,SFMono-Regular,Menlo,Consolas,'DejaVu Sans Mono','Liberation Mono',monospace";

std::string hex(Rgb color)
{
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", color.r, color.g, color.b);
    return text;
}

std::string escaped(std::string const& text)
{
    std::string safe;
    for (char const c : text) {
        switch (c) {
        case '&':
            safe += "&amp;";
            break;
        case '<':
            safe += "&lt;";
            break;
        case '>':
            safe += "&gt;";
            break;
        case '"':
            safe += "&quot;";
            break;
        default:
            safe += c;
        }
    }
    return safe;
}

std::string number(std::size_t n) { return std::to_string(n); }

// What decides how the character of a cell is drawn.
struct Letter {
    Rgb ink;
    bool bold;
    bool italic;
    bool blink;

    auto operator<=>(Letter const&) const = default;
};

Letter letter(Cell const& cell) { return {cell.ink, cell.bold, cell.italic, cell.blink}; }

bool is_blank(Cell const& cell) { return cell.character == " "; }

// The classes of the picture's style sheet: a, b, ... z, ba, bb, ...
class Classes {
public:
    std::string const& name(Letter const& style)
    {
        auto const [found, is_new] = names.try_emplace(style);
        if (is_new) {
            found->second = next_name();
        }
        return found->second;
    }

    std::string rules() const
    {
        std::map<std::string, std::string> sorted;
        for (auto const& [style, name] : names) {
            std::string rule = "." + name + "{fill:" + hex(style.ink);
            rule += style.bold ? ";font-weight:bold" : "";
            rule += style.italic ? ";font-style:italic" : "";
            rule += style.blink ? ";animation:blink 1s step-end infinite" : "";
            sorted[name] = rule + "}\n";
        }
        std::string all;
        for (auto const& [name, rule] : sorted) {
            all += rule;
        }
        return all;
    }

    bool blinks() const
    {
        return std::any_of(names.begin(), names.end(), [](auto const& entry) { return entry.first.blink; });
    }

private:
    std::string next_name() const
    {
        std::string name;
        for (std::size_t n = names.size() - 1; name.empty() || n > 0; n /= 26) {
            name.insert(name.begin(), static_cast<char>('a' + n % 26));
        }
        return name;
    }

    std::map<Letter, std::string> names;
};

// The places of one kind, collected so that they are one path.
struct Paths {
    std::map<Rgb, std::string> grounds;
    std::map<Letter, std::string> lines; // under and through the text
};

std::string box(std::size_t x, std::size_t y, std::size_t width, std::size_t height)
{
    return "M" + number(x) + " " + number(y) + "h" + number(width) + "v" + number(height) + "h-" + number(width) + "z";
}

// Calls what with the first cell of each run of cells of the same kind, and with the one past its end.
template <class Kind, class What>
void for_each_run(Row const& row, Kind kind, What what)
{
    for (std::size_t first = 0; first < row.size();) {
        std::size_t end = first + 1;
        while (end < row.size() && kind(row[end]) == kind(row[first])) {
            ++end;
        }
        what(first, end);
        first = end;
    }
}

void add_paths(Row const& row, std::size_t y, Rgb under, Paths& paths)
{
    for_each_run(
        row, [](Cell const& cell) { return cell.ground; },
        [&](std::size_t first, std::size_t end) {
            if (row[first].ground != under) {
                paths.grounds[row[first].ground] += box(first * cell_width, y, (end - first) * cell_width, cell_height);
            }
        });
    auto const decoration = [](Cell const& cell) { return std::make_tuple(cell.underline, cell.strike, letter(cell)); };
    for_each_run(row, decoration, [&](std::size_t first, std::size_t end) {
        std::string& lines = paths.lines[letter(row[first])];
        std::size_t const width = (end - first) * cell_width;
        if (row[first].underline) {
            lines += box(first * cell_width, y + base_line + 2, width, 1);
        }
        if (row[first].strike) {
            lines += box(first * cell_width, y + base_line - 5, width, 1);
        }
    });
}

bool is_wide(Row const& row, std::size_t i) { return i + 1 < row.size() && row[i + 1].character.empty(); }

// The texts of a row. Blanks between characters of one kind belong to them, all others are left out. A wide character is a
// text of its own: fonts differ in how wide they make it, and it is stretched to its two cells.
std::string texts(Row const& row, std::size_t y, Classes& classes)
{
    std::string all;
    for (std::size_t first = 0; first < row.size(); ++first) {
        if (is_blank(row[first]) || row[first].character.empty()) {
            continue;
        }
        Letter const kind = letter(row[first]);
        bool const wide = is_wide(row, first);
        std::size_t end = first + (wide ? 2 : 1);
        auto const goes_on = [&](std::size_t i) {
            return i < row.size() && !is_wide(row, i) && (is_blank(row[i]) || letter(row[i]) == kind);
        };
        for (std::size_t i = end; !wide && goes_on(i); ++i) {
            end = is_blank(row[i]) ? end : i + 1;
        }
        std::string text;
        for (std::size_t i = first; i < end; ++i) {
            text += row[i].character;
        }
        all += "<text class=\"" + classes.name(kind) + "\" x=\"" + number(first * cell_width) + "\" y=\"" +
               number(y + base_line) + "\"";
        if (end - first > 1) { // a single character has no room to adjust
            all += " textLength=\"" + number((end - first) * cell_width) + "\"";
        }
        if (wide) {
            all += " lengthAdjust=\"spacingAndGlyphs\"";
        }
        all += ">" + escaped(text) + "</text>\n";
        first = end - 1;
    }
    return all;
}

// Draws a row of cells at a time, some of them far below the window.
class Canvas {
public:
    Canvas(Rgb ground, Classes& shared) : under(ground), classes(shared) {}

    void add(Row const& row, std::size_t y)
    {
        add_paths(row, y, under, paths);
        characters += texts(row, y, classes);
    }

    // Grounds first: characters stand on them.
    std::string drawn() const
    {
        std::string all;
        for (auto const& [ground, path] : paths.grounds) {
            all += "<path fill=\"" + hex(ground) + "\" d=\"" + path + "\"/>\n";
        }
        for (auto const& [style, path] : paths.lines) {
            if (!path.empty()) {
                all += "<path class=\"" + classes.name(style) + "\" d=\"" + path + "\"/>\n";
            }
        }
        return all + characters;
    }

private:
    Rgb under;
    Classes& classes;
    Paths paths = {};
    std::string characters = {};
};

// Per cent of a whole, with no more digits than it needs.
std::string percentage(int part, int whole)
{
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", 100.0 * part / whole);
    std::string digits = text;
    digits.erase(digits.find_last_not_of('0') + 1);
    return digits.ends_with('.') ? digits.substr(0, digits.size() - 1) : digits;
}

bool is_static(std::vector<Frame> const& frames, std::size_t row)
{
    return std::all_of(frames.begin(), frames.end(),
                       [&](Frame const& frame) { return frame.grid[row] == frames.front().grid[row]; });
}

// Where each frame is on the strip. Frames that look alike are on it once.
std::vector<std::size_t> places_of(std::vector<Frame> const& frames)
{
    std::map<Grid, std::size_t> known;
    std::vector<std::size_t> places;
    for (Frame const& frame : frames) {
        places.push_back(known.try_emplace(frame.grid, known.size()).first->second);
    }
    return places;
}

std::string keyframes(std::vector<Frame> const& frames, std::vector<std::size_t> const& places, std::size_t height)
{
    int whole = 0;
    for (Frame const& frame : frames) {
        whole += frame.ms;
    }
    std::string rules = ".strip{animation:strip " + std::to_string(whole) + "ms step-end infinite}\n@keyframes strip{";
    int start = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        rules += percentage(start, whole) + "%{transform:translateY(-" + number(places[i] * height) + "px)}";
        start += frames[i].ms;
    }
    return rules + "}\n";
}

// The rows that never change.
std::string still_rows(std::vector<Frame> const& frames, Rgb ground, Classes& classes)
{
    Canvas canvas(ground, classes);
    Grid const& grid = frames.front().grid;
    for (std::size_t row = 0; row < grid.size(); ++row) {
        if (is_static(frames, row)) {
            canvas.add(grid[row], row * cell_height);
        }
    }
    return canvas.drawn();
}

// The other rows of each different frame, one frame below the other.
std::string strip(std::vector<Frame> const& frames, std::vector<std::size_t> const& places, std::size_t height,
                  Rgb ground, Classes& classes)
{
    Canvas canvas(ground, classes);
    std::size_t next_place = 0;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        if (places[i] != next_place) { // it is there already
            continue;
        }
        Grid const& grid = frames[i].grid;
        for (std::size_t row = 0; row < grid.size(); ++row) {
            if (!is_static(frames, row)) {
                canvas.add(grid[row], next_place * height + row * cell_height);
            }
        }
        ++next_place;
    }
    return canvas.drawn();
}

std::string attribute(char const* name, std::string const& value)
{
    return " " + std::string(name) + "=\"" + escaped(value) + "\"";
}

std::string sized(std::size_t width, std::size_t height)
{
    return attribute("width", number(width)) + attribute("height", number(height));
}

} // namespace

std::string svg(std::vector<Frame> const& frames, std::string const& title, Rgb ground)
{
    Grid const& first = frames.front().grid;
    std::size_t const width = first.front().size() * cell_width;
    std::size_t const height = first.size() * cell_height;
    std::vector<std::size_t> const places = places_of(frames);
    bool const moves = frames.size() > 1;

    // First what is drawn, for it decides about the style sheet.
    Classes classes;
    std::string cells = still_rows(frames, ground, classes);
    if (moves) {
        std::string const place = "translate(0,-" + number(places[frames.size() * 3 / 5] * height) + ")";
        cells += "<g class=\"strip\"" + attribute("transform", place) + ">\n" +
                 strip(frames, places, height, ground, classes) + "</g>\n";
    }

    std::string style = "text{white-space:pre}\npath{shape-rendering:crispEdges}\n" + classes.rules();
    if (moves) {
        style += keyframes(frames, places, height);
    }
    if (classes.blinks()) {
        style += "@keyframes blink{50%{fill-opacity:0}}\n";
    }
    if (moves || classes.blinks()) {
        style += "@media(prefers-reduced-motion:reduce){*{animation:none!important}}\n";
    }

    std::size_t const outer_width = width + 2 * margin;
    std::size_t const outer_height = height + 2 * margin;
    std::string const view_box = "0 0 " + number(outer_width) + " " + number(outer_height);
    return "<svg xmlns=\"http://www.w3.org/2000/svg\"" + sized(outer_width, outer_height) +
           attribute("viewBox", view_box) + " role=\"img\"" + attribute("font-family", fonts) +
           attribute("font-size", number(font_size)) + " xml:space=\"preserve\">\n" + "<title>" + escaped(title) +
           "</title>\n" + "<style>\n" + style + "</style>\n" + "<rect" + sized(outer_width, outer_height) +
           " rx=\"8\"" + attribute("fill", hex(ground)) + "/>\n" + "<svg" + attribute("x", number(margin)) +
           attribute("y", number(margin)) + sized(width, height) + ">\n" + cells + "</svg>\n" + "</svg>\n";
}

} // namespace hueline::pictures
