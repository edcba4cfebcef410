/// \file
/// What a person sees on a terminal that has received some bytes.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

struct VTerm;

namespace hueline::test {

struct Color {
    bool is_default = true;
    int index = -1; ///< Of the 256-colour palette; -1 for a default or a true colour.
    int r = 0;
    int g = 0;
    int b = 0;

    bool operator==(Color const&) const = default;
};

struct Cell {
    std::string character = {}; ///< UTF-8; empty where nothing was written. Concealed text has its own.
    bool is_second = false;     ///< Of a wide character, which stands in the cell before.
    bool bold = false;
    bool faint = false;
    bool concealed = false;
    bool italic = false;
    bool underline = false;
    bool blink = false;
    bool reverse = false;
    bool strike = false;
    Color foreground = {};
    Color background = {};
};

struct Position {
    int row = 0; ///< From 0.
    int col = 0; ///< From 0.

    bool operator==(Position const&) const = default;
};

/// A terminal: libvterm, and what libvterm 0.1.4 leaves out. That knows no faint (SGR 2) and no concealed text (SGR 8), but
/// alternative fonts (SGR 10 to 19), which nothing in this project uses. So each SGR sequence is followed by one that selects
/// a font: 1 for faint, 2 for concealed, 3 for both. libvterm then carries them along with each cell, wherever the cell goes.
///
/// It takes "CSI s" and "CSI u" for something else than saving and restoring the cursor: it is given DECSC and DECRC. It
/// takes "CSI 25 i" as unknown.
class Screen {
public:
    /// A "\n" in bytes also returns the cursor to the left: the tests' terminals are raw, a person's
    /// is not. The bytes may end in the middle of a sequence.
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

    // What libvterm is not told, or would not tell.
    struct Pen {
        bool faint = false;
        bool concealed = false;
    };

    std::string translated(std::string_view sequence);
    void select(std::vector<int> const& codes);

    std::unique_ptr<Told> told;
    std::unique_ptr<VTerm, Free> terminal;
    int cols;
    Pen pen = {};
    Pen saved = {};
    std::string begun = {}; // a sequence that has not come to its end
};

} // namespace hueline::test
