/// \file
/// Files and lines of text.
#pragma once

#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace hueline::pictures {

/// Throws std::runtime_error if there is no such file.
inline std::string contents_of(std::string const& name)
{
    std::ifstream file(name, std::ios_base::binary);
    if (!file) {
        throw std::runtime_error("cannot read " + name);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The lines of a text, without their line ends.
inline std::vector<std::string> lines_of(std::string const& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

} // namespace hueline::pictures
