#include "tour_layout.hpp"

#include <kestry/kit/text.hpp>

#include <algorithm>

namespace demo {

namespace kit = kestry::kit;

Lines lines_of(std::string_view text)
{
    Lines lines;
    while (!text.empty()) {
        std::size_t const end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

std::size_t widest(Lines const& lines)
{
    std::size_t width = 0;
    for (std::string const& line : lines) {
        width = std::max(width, kit::display_width(line));
    }
    return width;
}

Lines folded(std::string_view line, std::size_t width, std::size_t further)
{
    std::size_t const indentation = std::min(line.find_first_not_of(' '), line.size()) + further;
    std::string const blanks(std::min(indentation, width / 2), ' '); // there is room for some text in each row
    Lines rows;
    std::string row(line);
    while (row.size() > width) {
        std::size_t const start = row.find_first_not_of(' ');
        std::size_t cut = row.rfind(" <<", width);
        if (cut == std::string::npos || cut <= start) {
            cut = row.rfind(' ', width);
        }
        bool const is_within = cut != std::string::npos && cut > start;
        rows.push_back(row.substr(0, is_within ? cut : width));
        row.replace(0, is_within ? cut + 1 : width, blanks);
    }
    rows.push_back(row);
    return rows;
}

Lines folded_code(Lines const& lines, std::size_t width)
{
    std::size_t constexpr further = 4;
    Lines rows;
    for (std::string const& line : lines) {
        Lines const more = folded(line, width, further);
        rows.insert(rows.end(), more.begin(), more.end());
    }
    return rows;
}

Lines body_of_function(std::string_view source, std::string_view name)
{
    std::string_view text = source;
    text.remove_prefix(text.find("\nvoid " + std::string(name) + '('));
    text.remove_prefix(text.find("\n{\n") + 3);
    Lines lines = lines_of(text.substr(0, text.find("\n}\n")));
    for (std::string& line : lines) {
        line.erase(0, std::min<std::size_t>(4, line.size()));
    }
    return lines;
}

Lines last_states(std::string_view text)
{
    Lines lines = lines_of(text);
    for (std::string& line : lines) {
        line.erase(0, line.rfind('\r') + 1);
    }
    return lines;
}

Lines beside(Lines const& code, Lines const& result, std::size_t column)
{
    std::size_t const count = std::max(code.size(), result.size());
    Lines rows;
    for (std::size_t i = 0; i < count; ++i) {
        std::size_t const skipped = count - result.size();
        rows.push_back(kit::pad(i < code.size() ? code[i] : "", column) + (i >= skipped ? result[i - skipped] : ""));
    }
    return rows;
}

} // namespace demo
