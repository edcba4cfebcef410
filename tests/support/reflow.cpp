#include "support/reflow.hpp"

#include <algorithm>
#include <charconv>

namespace hueline::test {

namespace {

std::string trimmed(std::vector<std::string> const& cells)
{
    std::string text;
    for (std::string const& cell : cells) {
        text += cell.empty() ? " " : cell;
    }
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::size_t length_of_character(char first)
{
    auto const byte = static_cast<unsigned char>(first);
    return byte < 0xc0 ? 1 : byte < 0xe0 ? 2 : byte < 0xf0 ? 3 : 4;
}

std::size_t used(std::vector<std::string> const& cells)
{
    std::size_t end = cells.size();
    while (end > 0 && cells[end - 1].empty()) {
        --end;
    }
    return end;
}

} // namespace

ReflowingScreen::ReflowingScreen(int height_in_rows, int cols)
    : height(static_cast<std::size_t>(height_in_rows)), columns(static_cast<std::size_t>(cols))
{
    rows.assign(height, blank());
}

void ReflowingScreen::down()
{
    waits = false;
    if (row + 1 == top + height) {
        rows.push_back(blank());
        ++top;
    }
    ++row;
}

void ReflowingScreen::put(std::string const& character)
{
    if (waits) {
        rows[row].goes_on = true;
        down();
        col = 0;
    }
    rows[row].cells[col] = character;
    waits = col + 1 == columns;
    col += waits ? 0 : 1;
}

void ReflowingScreen::control(char final, std::size_t parameter)
{
    std::size_t const n = std::max<std::size_t>(parameter, 1);
    waits = final == 'm' || final == 'h' || final == 'l' ? waits : false;
    switch (final) {
    case 'A':
        row -= std::min(n, row - top);
        break;
    case 'B':
        row = std::min(row + n, top + height - 1);
        break;
    case 'C':
        col = std::min(col + n, columns - 1);
        break;
    case 'J':
        std::fill(rows.begin() + static_cast<std::ptrdiff_t>(row) + 1, rows.end(), blank());
        [[fallthrough]];
    case 'K':
        std::fill(rows[row].cells.begin() + static_cast<std::ptrdiff_t>(col), rows[row].cells.end(), "");
        rows[row].goes_on = false;
        break;
    case 'L':
        for (std::size_t i = 0; i < std::min(n, top + height - row); ++i) {
            rows.pop_back();
            rows.insert(rows.begin() + static_cast<std::ptrdiff_t>(row), blank());
        }
        col = 0;
        break;
    default:
        break;
    }
}

// Returns how many bytes the sequence takes.
std::size_t ReflowingScreen::escape(std::string_view bytes)
{
    if (bytes.size() < 2) {
        return bytes.size();
    }
    if (bytes[1] == '7') {
        saved_row = row - top;
        saved_col = col;
        return 2;
    }
    if (bytes[1] == '8') {
        row = top + std::min(saved_row, height - 1);
        col = std::min(saved_col, columns - 1);
        waits = false;
        return 2;
    }
    std::size_t const end = bytes.find_first_not_of("0123456789;?", 2);
    if (bytes[1] != '[' || end == bytes.npos) {
        return 1;
    }
    std::size_t parameter = 0;
    std::from_chars(bytes.data() + 2, bytes.data() + end, parameter);
    control(bytes[end], parameter);
    return end + 1;
}

void ReflowingScreen::write(std::string_view bytes)
{
    while (!bytes.empty()) {
        std::size_t taken = 1;
        switch (bytes.front()) {
        case '\r':
            col = 0;
            waits = false;
            break;
        case '\n':
            col = 0;
            [[fallthrough]];
        case '\v':
            down();
            break;
        case '\x1b':
            taken = escape(bytes);
            break;
        default:
            taken = std::min(length_of_character(bytes.front()), bytes.size());
            put(std::string(bytes.substr(0, taken)));
            break;
        }
        bytes.remove_prefix(taken);
    }
}

void ReflowingScreen::resize(int new_rows, int new_cols)
{
    auto const new_columns = static_cast<std::size_t>(new_cols);
    std::size_t last = rows.size() - 1;
    while (last > row && used(rows[last].cells) == 0) {
        --last;
    }
    std::vector<Row> reflowed;
    std::size_t new_row = 0;
    std::size_t new_col = 0;
    for (std::size_t first = 0; first <= last;) {
        std::vector<std::string> line;
        std::size_t cursor = std::string::npos;
        std::size_t i = first;
        for (bool more = true; more; ++i) {
            if (i == row) {
                cursor = line.size() + col;
            }
            line.insert(line.end(), rows[i].cells.begin(), rows[i].cells.end());
            more = rows[i].goes_on && i < last;
        }
        first = i;
        line.resize(used(line));
        std::size_t const begin = reflowed.size();
        for (std::size_t at = 0; at == 0 || at < line.size(); at += new_columns) {
            std::size_t const end = std::min(at + new_columns, line.size());
            std::vector<std::string> cells(line.begin() + static_cast<std::ptrdiff_t>(at),
                                           line.begin() + static_cast<std::ptrdiff_t>(end));
            cells.resize(new_columns);
            reflowed.push_back({std::move(cells), end < line.size()});
        }
        if (cursor != std::string::npos) {
            new_row = std::min(begin + cursor / new_columns, reflowed.size() - 1);
            new_col = std::min(cursor - (new_row - begin) * new_columns, new_columns - 1);
        }
    }
    height = static_cast<std::size_t>(new_rows);
    columns = new_columns;
    row = new_row;
    col = new_col;
    waits = false;
    top = std::min(reflowed.size() - std::min(reflowed.size(), height), row);
    rows = std::move(reflowed);
    rows.resize(top + height, blank());
}

std::string ReflowingScreen::text(int of) const { return trimmed(rows[top + static_cast<std::size_t>(of)].cells); }

Position ReflowingScreen::cursor() const { return {static_cast<int>(row - top), static_cast<int>(col)}; }

std::vector<std::string> ReflowingScreen::lines_above() const
{
    std::vector<std::string> lines;
    std::vector<std::string> line;
    for (std::size_t i = 0; i < row; ++i) {
        line.insert(line.end(), rows[i].cells.begin(), rows[i].cells.end());
        if (!rows[i].goes_on) {
            lines.push_back(trimmed(line));
            line.clear();
        }
    }
    return lines;
}

} // namespace hueline::test
