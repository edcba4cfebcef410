#include "examples/files.hpp"
#include "support/screen.hpp"

namespace {

using namespace hueline::test;

std::string sorted(std::vector<std::string> lines)
{
    std::sort(lines.begin(), lines.end());
    std::string text;
    for (std::string const& line : lines) {
        text += line + "\n";
    }
    return text;
}

std::vector<std::string> lines_of(std::string const& text)
{
    std::vector<std::string> lines;
    for (std::size_t at = 0; at < text.size();) {
        std::size_t const end = text.find('\n', at);
        lines.push_back(text.substr(at, end - at));
        at = end + 1;
    }
    return lines;
}

TEST(Download, WritesEachLineOnceInAnyOrder)
{
    std::vector<std::string> without_bars = ordinary;
    without_bars.emplace_back("HUELINE_PROGRESS=off");
    Outcome const run = run_program(on_pipes, {EXAMPLE, "0"}, {.environment = without_bars});
    EXPECT_EQ(sorted(lines_of(run.err)), contents_of("download.expected"));
    EXPECT_EQ(run.status, 0);
}

TEST(Download, LeavesLinesAndTheBarOfAllFilesOnATerminal)
{
    Outcome const run = run_program({Sink::pipe, Sink::terminal}, {EXAMPLE, "1000"}, {.environment = ordinary});
    Screen const screen{run.err};
    std::vector<std::string> lines;
    for (int row = 0; row < 6; ++row) {
        lines.push_back(screen.text(row));
    }
    EXPECT_EQ(sorted(lines), contents_of("download.expected"));
    EXPECT_EQ(screen.text(6).substr(0, 10), "files [###");
    EXPECT_NE(screen.text(6).find("] 100% 5/5 "), std::string::npos);
    EXPECT_EQ(screen.text(7), "");
    EXPECT_NE(run.err.find("modules.tar.zst ["), std::string::npos); // shown in between
    EXPECT_TRUE(screen.cursor_visible());
}

TEST(Download, HasNoControlCharacterInALog)
{
    Outcome const run = run_program(on_pipes, {EXAMPLE, "100"}, {.environment = ordinary});
    EXPECT_EQ(run.err.find('\x1b'), std::string::npos);
    EXPECT_EQ(run.err.find('\r'), std::string::npos);
    EXPECT_NE(run.err.find("initrd.img: connection lost, going on from byte 14680064\n"), std::string::npos);
    EXPECT_NE(run.err.find("initrd.img: 58%, 14.0 MiB of 24.0 MiB\n"), std::string::npos);
    EXPECT_NE(run.err.find("files: done, 5 in "), std::string::npos);
}

} // namespace
