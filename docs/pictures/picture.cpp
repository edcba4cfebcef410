#include "picture.hpp"

#include "svg.hpp"
#include "terminal.hpp"

#include <algorithm>
#include <string_view>
#include <vector>

namespace hueline::pictures {

namespace {

int constexpr last_frame_ms = 2000; // time to read it

// The frames of a moving picture: each begins with a "\r". A still one is all in one piece.
std::vector<std::string_view> pieces_of(Recording const& recording)
{
    std::string_view rest = recording.terminal;
    if (recording.frame_ms == 0) {
        return {rest};
    }
    std::vector<std::string_view> pieces;
    while (!rest.empty()) {
        std::string_view const piece = rest.substr(0, rest.find('\r', 1));
        pieces.push_back(piece);
        rest.remove_prefix(piece.size());
    }
    return pieces;
}

// An indicator that only turns has no end to look at.
bool comes_round(std::vector<Frame> const& frames)
{
    return std::any_of(frames.begin(), frames.end() - 1,
                       [&](Frame const& frame) { return frame.grid == frames.back().grid; });
}

bool is_used(Cell const& cell, Rgb ground)
{
    return cell.character != " " || cell.ground != ground || cell.underline || cell.strike;
}

bool is_blank(Frame const& frame, Rgb ground)
{
    auto const is_cell_used = [&](Cell const& cell) { return is_used(cell, ground); };
    return std::none_of(frame.grid.begin(), frame.grid.end(),
                        [&](Row const& row) { return std::any_of(row.begin(), row.end(), is_cell_used); });
}

struct Size {
    std::size_t rows = 1;
    std::size_t cols = 1;
};

Size used_size(std::vector<Frame> const& frames, Rgb ground)
{
    Size size;
    for (Frame const& frame : frames) {
        for (std::size_t row = 0; row < frame.grid.size(); ++row) {
            for (std::size_t col = 0; col < frame.grid[row].size(); ++col) {
                if (is_used(frame.grid[row][col], ground)) {
                    size.rows = std::max(size.rows, row + 1);
                    size.cols = std::max(size.cols, col + 1);
                }
            }
        }
    }
    return size;
}

void cut(std::vector<Frame>& frames, Size size)
{
    for (Frame& frame : frames) {
        frame.grid.resize(size.rows);
        for (Row& row : frame.grid) {
            row.resize(size.cols);
        }
    }
}

} // namespace

std::string picture_of(Recording const& recording, Palette const& palette)
{
    // As high as it takes: on a terminal that scrolled, the first lines would be gone.
    auto const lines = std::count(recording.terminal.begin(), recording.terminal.end(), '\n');
    Terminal terminal(std::max(24, static_cast<int>(lines) + 1), recording.cols, palette);

    std::vector<Frame> frames;
    for (std::string_view const piece : pieces_of(recording)) {
        terminal.feed(piece);
        Grid const grid = terminal.grid();
        if (!frames.empty() && frames.back().grid == grid) {
            frames.back().ms += recording.frame_ms;
            continue;
        }
        frames.push_back({grid, recording.frame_ms});
    }
    if (frames.size() > 1 && is_blank(frames.front(), palette.ground)) { // what comes before the first "\r"
        frames.erase(frames.begin());
    }
    if (!comes_round(frames)) {
        frames.back().ms = last_frame_ms;
    }

    Size size = used_size(frames, palette.ground);
    if (recording.rows != 0) {
        size.rows = std::min(size.rows, static_cast<std::size_t>(recording.rows));
    }
    cut(frames, size);
    return svg(frames, recording.title, palette.ground);
}

} // namespace hueline::pictures
