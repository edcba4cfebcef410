/// \file
/// Rows at the bottom of a terminal, as bytes: a pure function of what stands there and what is to stand there.
#ifndef KESTRY_KIT_PROGRESS_BLOCK_HPP
#define KESTRY_KIT_PROGRESS_BLOCK_HPP

#include "progress_row.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kestry::kit::detail {

/// A block of rows below the cursor.
///
/// Between frames the cursor rests in a line of its own above the rows, and not in the rows or after them:
///   - a terminal that reflows, and one that cuts, keep the cursor in its line when they are resized, so
///     the next frame knows without counting where its rows were, and all that is below may be erased;
///   - what others write is in nobody's way, and moves the block down by as many lines as it has. A frame leaves the
///     line and the cursor's column in it as they are, so half a line that others wrote can be continued.
/// No frame depends on the one before for more than the rows that it leaves out.
class progress_block {
public:
    struct extent {
        std::size_t columns = 80;
        std::size_t rows = 24;

        bool operator==(extent const&) const = default;
    };

    /// Whether the program has hidden the cursor: a frame leaves it so.
    enum class cursor : unsigned char { shown, hidden };

    /// Returns a frame: lines stand above, each ended by "\n", and then the rows, fewer than there are on the screen.
    /// Empty if nothing is to change. now is in seconds.
    std::string frame(std::string_view lines, std::vector<progress_text> const& rows, extent size, double now,
                      cursor before = cursor::shown);

    /// Returns what erases the rows. The next frame draws them all.
    std::string wiped();

    /// What was drawn has become somebody else's.
    void forget() noexcept { drawn.clear(); }

    /// Whether there are rows on the screen.
    bool is_drawn() const noexcept { return !drawn.empty(); }

    /// Those rows, and the size of the screen that they were drawn for.
    std::vector<progress_text> const& rows() const noexcept { return drawn; }
    extent size() const noexcept { return drawn_in; }

private:
    std::string changes(std::vector<progress_text> const& rows) const;

    std::vector<progress_text> drawn;
    extent drawn_in = {};
    double drawn_whole = 0;
};

} // namespace kestry::kit::detail

#endif
