#include "roles.hpp"

#include "contrast.hpp"
#include "files.hpp"
#include "support/readable.hpp"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <string_view>

namespace hueline::pictures {

namespace {

Rgb constexpr black = {0, 0, 0};
Rgb constexpr white = {0xff, 0xff, 0xff};

Rgb color_of(std::string const& digits)
{
    if (digits.size() != 7 || digits[0] != '#') {
        throw std::runtime_error("no colour: " + digits);
    }
    auto const part = [&](std::size_t at) {
        return static_cast<std::uint8_t>(std::stoi(digits.substr(at, 2), nullptr, 16));
    };
    return {part(1), part(3), part(5)};
}

bool is_dark(Rgb ground) { return contrast(ground, white) > contrast(ground, black); }

// The cell in which the text of a line begins, after the sequences before it.
Cell first_cell(std::string const& line, Palette const& palette)
{
    Terminal terminal(1, 80, palette);
    terminal.feed(line);
    return terminal.grid()[0][0];
}

double contrast_of(std::string const& line, Palette const& palette)
{
    Cell const cell = first_cell(line, palette);
    return contrast(cell.ink, cell.ground);
}

std::string one_decimal(double ratio)
{
    char text[16];
    std::snprintf(text, sizeof text, "%.1f", ratio);
    return text;
}

// Cut, not rounded: 4.49 is less than 4.5.
std::string shown(double ratio)
{
    std::string const digits = one_decimal(static_cast<int>(ratio * 10) / 10.0);
    return ratio < legible ? "**" + digits + "**" : digits;
}

// "at least | at most | how many can be read | "
std::string range(std::string const& line, std::vector<OwnColors> const& terminals,
                  std::function<Palette(Palette const&)> const& ground)
{
    auto const ratio = [&](OwnColors const& own) { return contrast_of(line, ground(own.palette)); };
    auto const [least, most] = std::minmax_element(terminals.begin(), terminals.end(),
                                                   [&](auto const& a, auto const& b) { return ratio(a) < ratio(b); });
    auto const count =
        std::count_if(terminals.begin(), terminals.end(), [&](OwnColors const& own) { return ratio(own) >= legible; });
    return shown(ratio(*least)) + " (" + least->terminal + ") | " + shown(ratio(*most)) + " (" + most->terminal +
           ") | " + std::to_string(count) + " of " + std::to_string(terminals.size()) + " | ";
}

// The sequences at the head of a line that are still in force where its text begins.
std::string in_force(std::string const& line)
{
    std::size_t end = 0;
    while (line.compare(end, 2, "\x1b[") == 0) {
        end = line.find('m', end) + 1;
    }
    std::string const head = line.substr(0, end);
    std::size_t const reset = head.rfind("\x1b[00m");
    return test::readable(reset == std::string::npos ? head : head.substr(reset));
}

// What a line says, without its control sequences (ECMA-48 5.4).
std::string words_of(std::string const& line)
{
    std::string words;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line.compare(i, 2, "\x1b[") != 0) {
            words += line[i];
            continue;
        }
        i = std::min(line.find_first_not_of("0123456789;", i + 2), line.size());
    }
    return words;
}

// What a line shows the decoration of: what comes after two blanks, or all of it.
std::string role_of(std::string const& line)
{
    std::string const words = words_of(line);
    std::size_t const blanks = words.rfind("  ");
    return blanks == std::string::npos ? words : words.substr(blanks + 2);
}

std::string table_of(Recording const& recording, std::vector<OwnColors> const& terminals)
{
    std::string rows =
        "| role | in force | dark, at least | at most | legible in | light, at least | at most | legible in |\n"
        "|---|---|---|---|---|---|---|---|\n";
    for (std::string const& line : lines_of(recording.terminal)) {
        rows += "| `" + role_of(line) + "` | `" + in_force(line) + "` | " + range(line, terminals, on_dark) +
                range(line, terminals, on_light);
        rows.pop_back();
        rows += '\n';
    }
    return rows;
}

// "\e" and "\n" of a result as the bytes that they stand for.
std::string unescaped(std::string text)
{
    for (std::string_view const escape : {"\\e", "\\n"}) {
        for (std::size_t at = text.find(escape); at != std::string::npos; at = text.find(escape, at)) {
            text.replace(at, 2, escape == "\\e" ? "\x1b" : "\n");
        }
    }
    return text;
}

std::string table_of_own(std::vector<std::string> const& results)
{
    std::string rows = "| role | in force | ground | contrast |\n|---|---|---|---|\n";
    for (std::string const& line : results) {
        std::string const words = words_of(line);
        bool const is_for_dark = words.find("dark") != std::string::npos;
        double const ratio = contrast_of(line, {.ground = is_for_dark ? black : white});
        if (ratio < legible) {
            throw std::runtime_error("the role is hard to read: " + words);
        }
        rows += "| `" + words.substr(0, words.find(' ')) + "` | `" + in_force(line) + "` | " +
                (is_for_dark ? "black" : "white") + " | " + shown(ratio) + " |\n";
    }
    return rows;
}

} // namespace

std::vector<OwnColors> own_colors(std::string const& table)
{
    std::vector<OwnColors> found;
    for (std::string const& line : lines_of(table)) {
        if (line.starts_with('#')) {
            continue;
        }
        std::vector<std::string> fields = {""};
        for (char const c : line) {
            if (c == '\t') {
                fields.emplace_back();
            } else {
                fields.back() += c;
            }
        }
        if (fields.size() != 20) {
            throw std::runtime_error("not the colours of a terminal: " + line);
        }
        OwnColors own = {.terminal = fields[0]};
        own.palette.bold_is_bright = fields[1] == "yes";
        own.palette.ink = color_of(fields[2]);
        own.palette.ground = color_of(fields[3]);
        std::transform(fields.begin() + 4, fields.end(), own.palette.named.begin(), color_of);
        found.push_back(own);
    }
    return found;
}

Palette on_dark(Palette const& own)
{
    Palette palette = own;
    if (!is_dark(own.ground)) {
        palette.ink = white;
        palette.ground = black;
    }
    return palette;
}

Palette on_light(Palette const& own)
{
    Palette palette = own;
    if (is_dark(own.ground)) {
        palette.ink = black;
        palette.ground = white;
    }
    return palette;
}

std::string roles_page(std::string const& text, std::vector<Recording> const& roles,
                       std::vector<OwnColors> const& terminals)
{
    std::string const on_a_terminal = "on a terminal: ";
    std::string filled;
    std::string result; // of the last snippet
    bool in_result = false;
    for (std::string const& line : lines_of(text)) {
        if (line.starts_with(on_a_terminal)) {
            result = line.substr(on_a_terminal.size());
            in_result = true;
        } else if (in_result && line.starts_with(' ')) {
            result += line.substr(line.find_first_not_of(' '));
        } else {
            in_result = false;
        }
        if (line == "{{own}}") {
            filled += table_of_own(lines_of(unescaped(result)));
            continue;
        }
        if (!line.starts_with("{{roles ")) {
            filled += line + '\n';
            continue;
        }
        std::string const name = line.substr(8, line.size() - 10);
        auto const found = std::find_if(roles.begin(), roles.end(), [&](Recording const& r) { return r.name == name; });
        if (found == roles.end()) {
            throw std::runtime_error("the page asks for unknown roles: " + name);
        }
        filled += table_of(*found, terminals);
    }
    return filled;
}

} // namespace hueline::pictures
