/// \file
/// The files that stand beside the examples, and how the examples are run.
#pragma once

#include "support/testing.hpp"

namespace hueline::test {

inline std::filesystem::path const examples = EXAMPLES_FOLDER;

/// Changes of the environment after which bars are drawn as on any terminal, without colour and in ASCII.
inline std::vector<std::string> const ordinary = {"NO_COLOR=1", "CI",   "HUELINE_PROGRESS", "TERM=xterm",
                                                  "LC_ALL=C",   "LANG", "LC_CTYPE"};

/// Runs the example, which says nothing but this.
inline void expect_refusal(std::vector<std::string> argv, std::string const& said, int status, Sink out = Sink::pipe)
{
    argv.insert(argv.begin(), EXAMPLE);
    Outcome const run = run_program({out, Sink::pipe}, argv);
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, said);
    EXPECT_EQ(run.status, status);
}

/// The same with standard input given by the shell, "<&-" for example.
inline void expect_refusal_of_input(std::string const& redirection, std::string const& said, int status)
{
    Outcome const run = run_program(on_pipes, {"sh", "-c", "\"$0\" " + redirection, EXAMPLE});
    EXPECT_EQ(run.out, "");
    EXPECT_EQ(run.err, said);
    EXPECT_EQ(run.status, status);
}

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
