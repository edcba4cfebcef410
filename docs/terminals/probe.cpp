// hueline-probe: runs inside a terminal and writes what terminals.py asks for, with the library.
//
//     hueline-probe <socket>
//
// Reads commands from the socket, a line each, and answers each with a line:
//
//     cup 3 7        inserts csi::cup{3, 7} into std::cout, and so on for each name in the table below
//     text WORDS     writes the rest of the line
//     raw 1b5b63     writes these bytes
//     ask MS         waits until the terminal's input has been quiet for so many milliseconds, and answers with the
//                    bytes in hexadecimal
//     until C MS     as ask, but no longer than up to the character C
//     width TEXT     answers with the columns that the kit counts for the rest of the line
//     environment    answers with TERM, COLORTERM, and the rows and columns of the terminal
#include "kestry/hueline_stream.hpp"

#include "kestry/kit/line.hpp"
#include "kestry/kit/text.hpp"

#include <array>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <iostream>
#include <map>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <termios.h>
#include <unistd.h>

namespace {

using namespace kestry::Hueline;
using std::cout;
using Numbers = std::array<int, 3>;
using Write = std::function<void(Numbers const&)>;

// clang-format off
std::map<std::string, Write> const writers = {
    {"normal",    [](Numbers const&) { cout << normal; }},
    {"reset",     [](Numbers const&) { cout << reset; }},
    {"thin",      [](Numbers const&) { cout << thin; }},
    {"bold",      [](Numbers const&) { cout << bold; }},
    {"dark",      [](Numbers const&) { cout << dark; }},
    {"italic",    [](Numbers const&) { cout << italic; }},
    {"underline", [](Numbers const&) { cout << underline; }},
    {"blink",     [](Numbers const&) { cout << blink; }},
    {"reverse",   [](Numbers const&) { cout << kestry::Hueline::reverse; }},
    {"concealed", [](Numbers const&) { cout << concealed; }},
    {"crossed",   [](Numbers const&) { cout << crossed; }},
    {"next",      [](Numbers const& n) { kestry::Hueline::next(cout, n[0], false); }},
    {"on_next",   [](Numbers const& n) { kestry::Hueline::next(cout, n[0], true); }},
    {"color",     [](Numbers const& n) { cout << color{n[0]}; }},
    {"on_color",  [](Numbers const& n) { cout << on_color{n[0]}; }},
    {"rgb",       [](Numbers const& n) { cout << rgb{n[0], n[1], n[2]}; }},
    {"on_rgb",    [](Numbers const& n) { cout << on_rgb{n[0], n[1], n[2]}; }},
    {"show",      [](Numbers const&) { cout << csi::show; }},
    {"hide",      [](Numbers const&) { cout << csi::hide; }},
    {"cr",        [](Numbers const&) { cout << csi::cr; }},
    {"lf",        [](Numbers const&) { cout << csi::lf; }},
    {"cls",       [](Numbers const&) { cout << csi::cls; }},
    {"dsr",       [](Numbers const&) { cout << csi::dsr; }},
    {"scp",       [](Numbers const&) { cout << csi::scp; }},
    {"rcp",       [](Numbers const&) { cout << csi::rcp; }},
    {"ed",        [](Numbers const& n) { cout << csi::ed{n[0]}; }},
    {"el",        [](Numbers const& n) { cout << csi::el{n[0]}; }},
    {"cuu",       [](Numbers const& n) { cout << csi::cuu{n[0]}; }},
    {"cud",       [](Numbers const& n) { cout << csi::cud{n[0]}; }},
    {"cuf",       [](Numbers const& n) { cout << csi::cuf{n[0]}; }},
    {"cub",       [](Numbers const& n) { cout << csi::cub{n[0]}; }},
    {"cnl",       [](Numbers const& n) { cout << csi::cnl{n[0]}; }},
    {"cpl",       [](Numbers const& n) { cout << csi::cpl{n[0]}; }},
    {"cha",       [](Numbers const& n) { cout << csi::cha{n[0]}; }},
    {"su",        [](Numbers const& n) { cout << csi::su{n[0]}; }},
    {"sd",        [](Numbers const& n) { cout << csi::sd{n[0]}; }},
    {"sgr",       [](Numbers const& n) { cout << csi::sgr{n[0]}; }},
    {"cup",       [](Numbers const& n) { cout << csi::cup{n[0], n[1]}; }},
    {"hvp",       [](Numbers const& n) { cout << csi::hvp{n[0], n[1]}; }},
    {"hide_cursor", [](Numbers const&) { cout << kestry::kit::hide_cursor; }},
    {"show_cursor", [](Numbers const&) { cout << kestry::kit::show_cursor; }},
};
// clang-format on

std::string hexadecimal(std::string const& bytes)
{
    std::string digits;
    for (char const c : bytes) {
        digits += HexDump::raw_data_byte(static_cast<unsigned char>(c));
    }
    return digits;
}

std::string bytes_of(std::string const& digits)
{
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(digits.substr(i, 2), nullptr, 16));
    }
    return bytes;
}

std::string answer(int quiet_ms, std::optional<char> last)
{
    std::string received;
    pollfd input = {STDIN_FILENO, POLLIN, 0};
    while (poll(&input, 1, quiet_ms) > 0) {
        char c = 0;
        if (read(STDIN_FILENO, &c, 1) != 1) {
            break;
        }
        received += c;
        if (c == last) {
            break;
        }
    }
    return received;
}

std::string variable(char const* name)
{
    char const* const value = std::getenv(name);
    return value == nullptr || *value == '\0' ? "-" : value;
}

std::string environment()
{
    winsize size = {};
    ioctl(STDOUT_FILENO, TIOCGWINSZ, &size);
    return variable("TERM") + ' ' + variable("COLORTERM") + ' ' + std::to_string(size.ws_row) + ' ' +
           std::to_string(size.ws_col);
}

std::string obeyed(std::string const& line)
{
    std::istringstream words(line);
    std::string name;
    words >> name;
    if (name == "environment") {
        return environment();
    }
    if (name == "ask") {
        int ms = 0;
        words >> ms;
        return hexadecimal(answer(ms, std::nullopt));
    }
    if (name == "until") {
        char last = '\0';
        int ms = 0;
        words >> last >> ms;
        return hexadecimal(answer(ms, last));
    }
    if (name == "width") {
        return std::to_string(kestry::kit::display_width(line.substr(6)));
    }
    if (name == "text") {
        cout << line.substr(5) << std::flush;
        return "written";
    }
    if (name == "raw") {
        std::string digits;
        words >> digits;
        cout << bytes_of(digits) << std::flush;
        return "written";
    }
    auto const writer = writers.find(name);
    if (writer == writers.end()) {
        return "unknown";
    }
    Numbers numbers = {};
    for (int& number : numbers) {
        words >> number;
    }
    writer->second(numbers);
    cout.flush();
    return "written";
}

int connected(char const* path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
    int const made = socket(AF_UNIX, SOCK_STREAM, 0);
    return connect(made, reinterpret_cast<sockaddr const*>(&address), sizeof address) == 0 ? made : -1;
}

bool send_line(int to, std::string const& line)
{
    std::string const sent = line + '\n';
    return write(to, sent.data(), sent.size()) == static_cast<ssize_t>(sent.size());
}

} // namespace

int main(int argc, char* argv[])
{
    int const commands = argc == 2 ? connected(argv[1]) : -1;
    if (commands < 0) {
        std::cerr << "usage: hueline-probe <socket that terminals.py listens on>\n";
        return 2;
    }
    termios as_found = {};
    tcgetattr(STDIN_FILENO, &as_found);
    termios raw = as_found;
    cfmakeraw(&raw);
    tcsetattr(STDIN_FILENO, TCSANOW, &raw);
    cout << colorize;

    std::string line;
    char c = 0;
    while (read(commands, &c, 1) == 1) {
        if (c != '\n') {
            line += c;
            continue;
        }
        if (!send_line(commands, obeyed(line))) {
            break;
        }
        line.clear();
    }
    tcsetattr(STDIN_FILENO, TCSANOW, &as_found);
    return EXIT_SUCCESS;
}
