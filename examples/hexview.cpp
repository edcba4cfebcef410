// hexview: shows any file as hexdump -C does, each kind of byte in a colour of its own.
//
//     hexview [FILE]
//
// Without FILE it reads standard input. The exit status is 0 if all was shown, 1 if not, and 2 for a
// wrong command line.
#include <kestry/kit/hexview.hpp>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

int main(int argc, char* argv[])
{
    using namespace kestry::kit;
    if (argc > 2) {
        std::cerr << "usage: hexview [FILE]\n";
        return 2;
    }
    int const file = argc == 2 ? open(argv[1], O_RDONLY | O_CLOEXEC) : STDIN_FILENO;
    if (file < 0) {
        std::cerr << "hexview: cannot open the file: " << std::strerror(errno) << '\n';
        return 1;
    }
    try {
        hexdump_file(std::cout, file, {.layout = hex_layout::hexdump_c, .colored = true});
    } catch (std::system_error const& error) {
        std::cerr << "hexview: cannot read the file: " << error.code().message() << '\n';
        return 1;
    }
    if (!std::cout.flush()) {
        std::cerr << "hexview: cannot write to standard output\n";
        return 1;
    }
}
