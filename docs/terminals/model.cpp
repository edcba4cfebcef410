// hueline-model: the terminal emulator of the tests, for terminals.py to ask.
//
// Reads commands from standard input, a line each, and answers each with a line:
//
//     bytes 1b5b31   feeds these bytes
//     cell 3 7       the attributes of a cell, counted from 0: its character, letters for what it is, ink and ground
//     cursor         row and column, counted from 0, and "shown" or "hidden"
#include "support/screen.hpp"

#include <array>
#include <cstdio>
#include <iostream>
#include <sstream>
#include <string>

namespace {

using hueline::test::Screen;

std::string hexadecimal(int r, int g, int b)
{
    std::array<char, 7> digits = {};
    std::snprintf(digits.data(), digits.size(), "%02x%02x%02x", r & 0xff, g & 0xff, b & 0xff);
    return digits.data();
}

std::string cell(Screen const& screen, int row, int col)
{
    auto const found = screen.cell(row, col);
    std::string letters;
    letters += found.bold ? "b" : "";
    letters += found.italic ? "i" : "";
    letters += found.underline ? "u" : "";
    letters += found.blink ? "k" : "";
    letters += found.reverse ? "r" : "";
    letters += found.strike ? "s" : "";
    auto const& ink = found.foreground;
    auto const& ground = found.background;
    return (found.character.empty() || found.character == " " ? "-" : found.character) + ' ' +
           (letters.empty() ? "-" : letters) + ' ' + hexadecimal(ink.r, ink.g, ink.b) + ' ' +
           hexadecimal(ground.r, ground.g, ground.b);
}

std::string obeyed(Screen& screen, std::string const& line)
{
    std::istringstream words(line);
    std::string name;
    words >> name;
    if (name == "bytes") {
        std::string digits;
        words >> digits;
        std::string bytes;
        for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
            bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
        }
        screen.write(bytes);
        return "fed";
    }
    if (name == "cell") {
        int row = 0;
        int col = 0;
        words >> row >> col;
        return cell(screen, row, col);
    }
    if (name == "cursor") {
        auto const at = screen.cursor();
        return std::to_string(at.row) + ' ' + std::to_string(at.col) + (screen.cursor_visible() ? " shown" : " hidden");
    }
    return "unknown";
}

} // namespace

int main()
{
    Screen screen("");
    for (std::string line; std::getline(std::cin, line);) {
        std::cout << obeyed(screen, line) << std::endl;
    }
}
