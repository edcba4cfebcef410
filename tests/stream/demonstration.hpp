/// \file
/// The long demonstrations, told a second time: slowly, and without the library.
#pragma once

#include "recorder.hpp"

#include "support/readable.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

namespace hueline::test {

/// The stream that a demonstration is written to.
struct Target {
    bool is_terminal = true; ///< A standard stream on a terminal.
    bool colorized = true;
    bool no_frills = false;
    bool shows_grid = true; ///< Standard output goes to the same place.
    bool uppercase = false; ///< The caller has set std::uppercase.
};

/// Writes what a stream should receive, and keeps a rendition of its own.
class Demonstration {
public:
    explicit Demonstration(Target given = {}) : target(given) {}

    std::string text; ///< What the stream receives, with a flush_mark for each flush.
    std::string grid; ///< What standard output receives past the stream, unless that is the same place.

    /// The text alone.
    std::string bytes() const
    {
        std::string without_marks = text;
        without_marks.erase(std::remove(without_marks.begin(), without_marks.end(), flush_mark), without_marks.end());
        return without_marks;
    }

    // -----------------------------------------------------------------------------------------
    // The words that the demonstrations are made of
    // -----------------------------------------------------------------------------------------

    bool colors() const { return target.is_terminal && target.colorized && !target.no_frills; }
    void say(std::string_view words) { text += words; }
    void flush() { text += flush_mark; }
    void end_line()
    {
        text += '\n';
        flush();
    }
    void say_cell(std::string_view word) { say((std::string(word) + "          ").substr(0, 10)); }

    void control(std::string_view sequence)
    {
        if (colors()) {
            text += sequence;
        }
    }

    void adjust()
    {
        control("\x1b[00m");
        control(now.bold ? "\x1b[1m" : "");
        control(now.faint ? "\x1b[2m" : "");
        control(now.italic ? "\x1b[3m" : "");
        control(now.underline ? "\x1b[4m" : "");
        control(now.blink ? "\x1b[5m" : "");
        control(now.reverse ? "\x1b[7m" : "");
        control(now.foreground);
        control(now.background);
    }

    void normal()
    {
        control("\x1b[00m");
        control("\x1b[25h");
    }

    void reset()
    {
        normal();
        now = Rendition();
    }

    void colorize() { target.colorized = true; }

    // These are remembered everywhere ...
    void bold() { remember(now.bold, true); }
    void thin() { remember(now.bold, false); }
    void dark() { remember(now.faint, true); }
    void lite() { remember(now.faint, false); }

    // ... and these where they show.
    void italic() { change(now.italic, true); }
    void underline() { change(now.underline, true); }
    void blink() { change(now.blink, true); }
    void foreground(std::string const& sequence) { change(now.foreground, sequence); }
    void background(std::string const& sequence) { change(now.background, sequence); }

    void green() { foreground("\x1b[32m"); }
    void white() { foreground("\x1b[37m"); }
    void on_grey() { background("\x1b[40m"); }
    void on_red() { background("\x1b[41m"); }
    void color(int n) { foreground("\x1b[38;5;" + std::to_string(n) + "m"); }
    void on_color(int n) { background("\x1b[48;5;" + std::to_string(n) + "m"); }

    void push()
    {
        if (colors()) {
            saved = now;
            saved.background = now.foreground;
        }
    }

    void pull()
    {
        if (colors()) {
            now = saved;
        }
    }

    // -----------------------------------------------------------------------------------------
    // The demonstrations
    // -----------------------------------------------------------------------------------------

    void supported_m_codes()
    {
        if (!colors()) {
            return;
        }
        heading();
        say(" first 108 m codes: ");
        end_line();
        std::string& standard_output = target.shows_grid ? text : grid;
        for (int code = 0; code <= 108; ++code) {
            char number[8];
            std::snprintf(number, sizeof number, "%3d", code);
            standard_output += "\x1b[" + std::to_string(code) + "m " + number + "\x1b[m";
            bool const ends_row = code == 9 || code == 19 || code == 29 || code == 39 || code == 49 || code == 59 ||
                                  code == 69 || code == 79 || code == 89 || code == 99 || code == 108;
            standard_output += ends_row ? "\n" : "";
        }
        end_line();
    }

    void normal_reset()
    {
        heading();
        white();
        say("white ");
        on_red();
        say("on_red ");
        end_line();
        italic();
        say("white ");
        underline();
        say("on_red ");
        end_line();
        around("adjust", &Demonstration::adjust);
        around("normal", &Demonstration::normal);
        around("adjust", &Demonstration::adjust);
        around("reset", &Demonstration::reset);
        around("adjust", &Demonstration::adjust);
        end_line();
    }

    void matrix()
    {
        char const* const names[8] = {"black", "red", "green", "yellow", "blue", "magenta", "cyan", "white"};
        white();
        on_grey();
        say(target.no_frills ? " no frills mode is on " : " no frills mode is off ");
        end_line();
        say(colors() ? " use color mode is on " : " use color mode is off ");
        end_line();
        if (!colors()) {
            say(" (you should not be seeing color) ");
            end_line();
        }
        for (int row = 0; row < 8; ++row) {
            white();
            on_grey();
            say(" on_");
            say_cell(names[row]);
            flush();
            background("\x1b[4" + std::to_string(row) + "m");
            for (int column = 0; column < 8; ++column) {
                foreground("\x1b[3" + std::to_string(column) + "m");
                say(" ");
                say_cell(names[column]);
                flush();
            }
            end_line();
        }
        white();
        on_grey();
        end_line();
    }

    void palette_of_16()
    {
        heading();
        say(" 0-  7:  standard colors (as in ESC [ 30–37 m)");
        end_line();
        palette_block(0, 7);
        heading();
        say("8- 15:  high intensity colors (as in ESC [ 90–97 m)");
        end_line();
        palette_block(8, 15);
        end_line();
    }

    void greyscale()
    {
        reset();
        say("reset ");
        colorize();
        say("colorize ");
        greys();
        heading();
        greys();
    }

    void cube()
    {
        heading();
        say("16-231:  6 × 6 × 6 cube (216 colors): 16 + 36 × r + 6 × g + b (0 ≤ r, g, b ≤ 5)");
        end_line();
        for (int r = 0; r < 16; ++r) {
            on_color(r);
            flush();
            for (int g = 0; g < 6; ++g) {
                for (int b = 0; b < 5; ++b) {
                    color(16 + 36 * r + 6 * g + b);
                    say_cell(std::to_string(r) + ", " + std::to_string(g) + ", " + std::to_string(b));
                    flush();
                }
                end_line();
            }
        }
        end_line();
    }

    void status_line()
    {
        control("\x1b[25i");
        for (std::size_t i = 0; i < 50; ++i) {
            for (int times = 1; times <= 3; ++times) {
                say("\r\x1b[40m\x1b[32m[");
                for (std::size_t cell = 0; cell < i; ++cell) {
                    say("\x1b[40m\x1b[36m#");
                }
                bool const spins = i > 0 && i < 49;
                if (spins) {
                    say("\x1b[40m\x1b[93m");
                    say(std::string_view("/-\\|").substr(spun++ % 4, 1));
                }
                for (std::size_t cell = i + (spins ? 1 : 0); cell < 49; ++cell) {
                    say("\x1b[40m\x1b[37m.");
                }
                say("\x1b[40m\x1b[32m]");
                flush();
            }
        }
        control("\x1b[25h");
    }

    void progress_line()
    {
        char const* const percentages[50] = {
            "0",  "2",  "4",  "6",  "8",  "10", "12", "14", "16", "18", "20", "22", "24", "26", "28", "30", "32",
            "34", "36", "38", "40", "42", "44", "46", "48", "51", "53", "55", "57", "59", "61", "63", "65", "67",
            "69", "71", "73", "75", "77", "79", "81", "83", "85", "87", "89", "91", "93", "95", "97", "100"};
        control("\x1b[25i");
        for (std::string_view const percentage : percentages) {
            for (int times = 1; times <= 3; ++times) {
                say("\r\x1b[40m\x1b[32m(\x1b[40m\x1b[36mcompleted \x1b[40m\x1b[37m");
                say(percentage);
                say("%\x1b[40m\x1b[32m)");
                flush();
            }
        }
        control("\x1b[25h");
    }

    void version_short()
    {
        say("Hueline ver. ");
        white();
        say("0.2.2-r0");
    }

    void version()
    {
        push();
        reset();
        green();
        say("Kestry Hueline Library (Hueline)");
        end_line();
        thin();
        say("hueline version 0.2.2-r0 <hueline@kestry.example>");
        end_line();
        dark();
        say("Copyright (C) 2026 Kestry. All rights reserved.");
        end_line();
        lite();
        green();
        version_short();
        end_line();
        end_line();

        supported_m_codes();
        status_line();
        wipe_line();
        progress_line();
        wipe_line();

        bold();
        lite();
        matrix();
        bold();
        dark();
        matrix();
        thin();
        lite();
        matrix();
        thin();
        dark();
        matrix();
        italic();
        matrix();
        underline();
        matrix();
        blink();
        matrix();
        reset();
        matrix();

        greyscale();
        cube();
        palette_of_16();
        pull();
    }

private:
    struct Rendition {
        bool bold = true;
        bool faint = false;
        bool italic = false;
        bool underline = false;
        bool blink = false;
        bool reverse = false;
        std::string foreground = {};
        std::string background = {};
    };

    void remember(bool& flag, bool on)
    {
        flag = on;
        adjust();
    }

    template <class Field, class Value>
    void change(Field& field, Value const& value)
    {
        if (colors()) {
            field = value;
            adjust();
        }
    }

    void heading()
    {
        reset();
        say("reset ");
        colorize();
        say("colorize ");
        dark();
        say("dark ");
        thin();
        say("thin ");
        end_line();
    }

    void around(std::string const& name, void (Demonstration::*act)())
    {
        say(" before " + name + " ");
        end_line();
        (this->*act)();
        end_line();
        say(" after " + name + " ");
        end_line();
    }

    void palette_block(int first, int last)
    {
        for (int b = first; b <= last; ++b) {
            on_color(b);
            flush();
            for (int f = first; f <= last; ++f) {
                color(f);
                say("color     ");
                flush();
            }
            end_line();
        }
    }

    void greys()
    {
        std::string_view const digits = target.uppercase ? "0123456789ABCDEF" : "0123456789abcdef";
        say(" 232-255:  grayscale from black to white in 24 steps");
        end_line();
        for (int b = 0; b < 8; ++b) {
            on_color(b);
            flush();
            for (unsigned c = 232; c <= 255; ++c) {
                color(static_cast<int>(c));
                say(" ");
                text += digits[c / 16];
                text += digits[c % 16];
                say(" ");
                flush();
                if (c == 243 || c == 255) {
                    end_line();
                }
            }
        }
    }

    void wipe_line()
    {
        say("\r");
        control("\x1b[0K");
    }

    Target target;
    Rendition now;
    Rendition saved;
    std::size_t spun = 0;
};

/// Where two long texts part, with what stands there; nothing if they are the same.
inline std::string difference(std::string_view expected, std::string_view got)
{
    if (expected == got) {
        return "";
    }
    auto const parting = std::mismatch(expected.begin(), expected.end(), got.begin(), got.end());
    auto const at = static_cast<std::size_t>(parting.first - expected.begin());
    std::size_t const from = at - std::min<std::size_t>(at, 60);
    return "at byte " + std::to_string(at) + "\nexpected: ..." + readable(expected.substr(from, 140)) +
           "...\ngot:      ..." + readable(got.substr(from, 140)) + "...";
}

} // namespace hueline::test
