/// \file
/// The files that stand beside the examples.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

inline std::filesystem::path const examples = EXAMPLES_FOLDER;

/// Returns the contents of a file in examples/.
inline std::string contents_of(std::string const& name)
{
    std::ifstream file(examples / name, std::ios_base::binary);
    if (!file) {
        throw std::runtime_error("cannot open " + (examples / name).string());
    }
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// readable(), with its lines on lines of their own: as the files for terminals are written.
inline std::string readable_lines(std::string_view bytes)
{
    std::string text;
    while (!bytes.empty()) {
        std::size_t const end = bytes.find('\n');
        text += readable(bytes.substr(0, end));
        text += end == bytes.npos ? "" : "\n";
        bytes.remove_prefix(end == bytes.npos ? bytes.size() : end + 1);
    }
    return text;
}

} // namespace hueline::test
