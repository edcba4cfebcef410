/// \file
/// What a person sees on a terminal that has received some bytes.
#pragma once

#include <memory>
#include <string>
#include <string_view>

struct VTerm;

namespace hueline::test {

struct Colour {
    bool is_default = true;
    int index = -1; ///< Of the 256-colour palette; -1 for a default or a true colour.
    int r = 0;
    int g = 0;
    int b = 0;

    bool operator==(Colour const&) const = default;
};

struct Cell {
    std::string character = {}; ///< UTF-8; empty where nothing was written.
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool blink = false;
    bool reverse = false;
    bool strike = false;
    Colour foreground = {};
    Colour background = {};
};

struct Position {
    int row = 0; ///< From 0.
    int col = 0; ///< From 0.

    bool operator==(Position const&) const = default;
};

/// A terminal. Its libvterm (0.1.4) knows no faint and no concealed text, and takes "CSI 25 i" and
/// "CSI u" as unknown and "CSI s" as margins.
class Screen {
public:
    /// A "\n" in bytes also returns the cursor to the left: the tests' terminals are raw, a person's
    /// is not.
    explicit Screen(std::string_view bytes, int rows = 24, int cols = 80);

    /// Throws std::out_of_range outside of the screen.
    Cell cell(int row, int col) const;

    /// A row without its trailing blanks.
    std::string text(int row) const;

    Position cursor() const;
    bool cursor_visible() const;

private:
    struct Free {
        void operator()(VTerm* terminal) const;
    };

    std::unique_ptr<VTerm, Free> terminal;
    int cols;
    bool shows_cursor = true;
};

} // namespace hueline::test
