/// \file
/// A terminal that reflows its lines when it becomes narrower or wider, as most of today do. Screen is one that cuts.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "support/screen.hpp"

namespace hueline::test {

/// Knows CR, LF, VT, ESC 7 and 8, CUU, CUD, CUF, EL 0, ED 0 and IL; colours and private modes leave no trace. Each
/// character takes a column. A line that was cut in two by the right edge is one line; cells that were never
/// written, or erased, at the end of a line are no part of it.
class ReflowingScreen {
public:
    ReflowingScreen(int rows, int cols);

    /// A "\n" in bytes also returns the cursor to the left.
    void write(std::string_view bytes);

    /// The cursor stays at its character, and on the screen; else the last row is the last row.
    void resize(int rows, int cols);

    /// A row of the screen without its trailing blanks.
    std::string text(int row) const;

    Position cursor() const;

    /// The lines above that of the cursor, those that have left the screen among them, without trailing blanks.
    std::vector<std::string> lines_above() const;

private:
    struct Row {
        std::vector<std::string> cells; // empty where nothing was written
        bool goes_on = false;           // in the next row
    };

    Row blank() const { return {std::vector<std::string>(columns), false}; }
    void down();
    void put(std::string const& character);
    void control(char final, std::size_t parameter);
    std::size_t escape(std::string_view bytes);

    std::vector<Row> rows; // those that have left the screen come first
    std::size_t top = 0;   // the screen's first
    std::size_t height;
    std::size_t columns;
    std::size_t row = 0; // of the cursor, among all
    std::size_t col = 0;
    bool waits = false;        // after the last column
    std::size_t saved_row = 0; // of the screen
    std::size_t saved_col = 0;
};

} // namespace hueline::test
