// hexview: shows any file as columns of offsets, bytes in hexadecimal, and text.
//
//     hexview [FILE]
//
// Without FILE it reads standard input. The exit status is 0 if all was shown, 1 if not, and 2 for a
// wrong command line.
#include <kestry/hueline_stream.hpp>

#include <kestry/kit/policy.hpp>

#include <fstream>
#include <iostream>
#include <string>
#include <vector>

namespace {

using namespace kestry::Hueline;

// clang-format off
std::size_t constexpr bytes_per_line = 16; // a dump of up to 19 bytes is never cut
int constexpr hex_width = 3 * bytes_per_line; // two digits and a blank each
// clang-format on

// Text as it can be shown anywhere: a control character might be the start of an escape sequence, and
// what a byte above 0x7e means is the terminal's to say.
std::string printable(std::vector<unsigned char> const& bytes)
{
    std::string text;
    for (unsigned char const b : bytes) {
        text += b >= 0x20 && b <= 0x7e ? static_cast<char>(b) : '.';
    }
    return text;
}

// The width comes after the colour: a colour is written as text, and would be filled up itself.
void show_line(unsigned long offset, std::vector<unsigned char> const& bytes)
{
    // clang-format off
    std::cout << yellow << HexDump(offset) << "  "
              << cyan << std::left << myfillandw{' ', hex_width} << HexDump(bytes) << ' '
              << green << printable(bytes) << normal << '\n';
    // clang-format on
}

// Returns whether all has been read and written.
bool show(std::istream& input)
{
    unsigned long offset = 0;
    std::vector<unsigned char> line;
    for (char c = 0; std::cout && input.get(c);) {
        line.push_back(static_cast<unsigned char>(c));
        if (line.size() == bytes_per_line) {
            show_line(offset, line);
            offset += bytes_per_line;
            line.clear();
        }
    }
    if (!line.empty()) {
        show_line(offset, line);
    }
    return input.eof() && std::cout.flush();
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc > 2) {
        std::cerr << "usage: hexview [FILE]\n";
        return 2;
    }
    kestry::kit::use_in_streams(kestry::kit::color_policy::from_environment());
    std::ifstream file;
    if (argc == 2) {
        file.open(argv[1], std::ios_base::binary);
    }
    if (!show(argc == 2 ? file : std::cin)) {
        std::cerr << "hexview: cannot read the file or write it out\n";
        return 1;
    }
}
