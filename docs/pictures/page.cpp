#include "page.hpp"

#include "files.hpp"
#include "support/readable.hpp"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace hueline::pictures {

namespace {

// What is quoted of a long text.
std::size_t constexpr most_lines = 12;
std::size_t constexpr most_characters = 110;

std::string fenced(std::string const& language, std::string const& text)
{
    return "```" + language + '\n' + text + "```\n";
}

std::string image(Recording const& recording)
{
    return "![" + recording.title + "](images/" + recording.name + ".svg)\n";
}

// The lines of a text with escapes for its control characters. A line also ends before each "\r", which stands at the
// start of a frame.
std::vector<std::string> readable_lines(std::string const& text)
{
    std::string broken;
    for (char const c : text) {
        broken += c == '\r' && !broken.empty() && broken.back() != '\n' ? "\n\r" : std::string(1, c);
    }
    std::vector<std::string> lines = lines_of(broken);
    for (std::string& line : lines) {
        line = test::readable(line);
        if (line.size() > most_characters) {
            line = line.substr(0, most_characters) + " ...";
        }
    }
    return lines;
}

std::string in_a_pipe(Recording const& recording)
{
    if (recording.pipe.empty()) {
        return "A pipe receives nothing.\n";
    }
    std::vector<std::string> const lines = readable_lines(recording.pipe);
    bool const is_long = lines.size() > most_lines;
    std::size_t const shown = is_long ? most_lines - 1 : lines.size();
    std::string text;
    for (std::size_t i = 0; i < shown; ++i) {
        text += lines[i] + '\n';
    }
    if (is_long) {
        text += "... and " + std::to_string(lines.size() - shown) + " more\n";
    }
    return "A pipe receives:\n\n" + fenced("text", text);
}

std::string shown(Recording const& recording, std::string const& part)
{
    std::string const code = fenced(recording.language, recording.code);
    if (part == "picture") {
        return image(recording);
    }
    if (part == "code") {
        return code;
    }
    if (part == "pipe") {
        return in_a_pipe(recording);
    }
    if (part.empty()) {
        return image(recording) + '\n' + code + '\n' + in_a_pipe(recording);
    }
    throw std::runtime_error("the page asks for an unknown part: " + part);
}

} // namespace

std::string page(std::string const& text, std::vector<Recording> const& recordings)
{
    std::string filled;
    std::set<std::string> missing;
    for (Recording const& recording : recordings) {
        missing.insert(recording.name);
    }
    for (std::string const& line : lines_of(text)) {
        if (!line.starts_with("{{") || !line.ends_with("}}")) {
            filled += line + '\n';
            continue;
        }
        std::string const wanted = line.substr(2, line.size() - 4);
        std::size_t const blank = std::min(wanted.find(' '), wanted.size());
        std::string const name = wanted.substr(0, blank);
        auto const found = std::find_if(recordings.begin(), recordings.end(),
                                        [&](Recording const& recording) { return recording.name == name; });
        if (found == recordings.end()) {
            throw std::runtime_error("the page asks for an unknown picture: " + name);
        }
        filled += shown(*found, blank == wanted.size() ? "" : wanted.substr(blank + 1));
        missing.erase(name);
    }
    if (!missing.empty()) {
        throw std::runtime_error("the page does not show the picture " + *missing.begin());
    }
    return filled;
}

} // namespace hueline::pictures
