/// \file
/// What a person sees on a terminal that has received some bytes.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

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

    /// More bytes, as in the constructor.
    void write(std::string_view bytes);

    /// Cuts what no longer fits on the right. The lowest row with text stays on the screen, even if the cursor does not.
    void resize(int rows, int cols);

    /// Throws std::out_of_range outside of the screen.
    Cell cell(int row, int col) const;

    /// A row without its trailing blanks.
    std::string text(int row) const;

    Position cursor() const;
    bool cursor_visible() const;

    /// The rows above that of the cursor, those that have left the screen among them, without trailing blanks.
    std::vector<std::string> lines_above() const;

private:
    struct Free {
        void operator()(VTerm* terminal) const;
    };

    // What libvterm tells: where it is told to, whatever is moved.
    struct Told {
        bool shows_cursor = true;
        std::vector<std::string> scrolled = {};
    };
    struct Callbacks;

    std::unique_ptr<Told> told;
    std::unique_ptr<VTerm, Free> terminal;
    int cols;
};

} // namespace hueline::test
