// hexview: shows any file as hexdump -C does, each kind of byte in a colour of its own.
//
//     hexview [FILE]
//
// Without FILE it reads standard input. The exit status is 0 if all was shown, 1 if not, and 2 for a
// wrong command line.
#include <kestry/kit/hexview.hpp>
#include <kestry/kit/text.hpp>

#include <cerrno>
#include <cstring>
#include <iostream>
#include <string>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace {

// A name may come from anywhere, and its bytes may be escape sequences.
int trouble(std::string const& what, std::string const& name, std::string const& reason)
{
    std::cerr << "hexview: cannot " + what + ' ' + kestry::kit::escape_untrusted(name) + ": " + reason + '\n';
    return 1;
}

} // namespace

int main(int argc, char* argv[])
{
    using namespace kestry::kit;
    if (argc > 2) {
        std::cerr << "usage: hexview [FILE]\n";
        return 2;
    }
    std::string const name = argc == 2 ? argv[1] : "standard input";
    int const file = argc == 2 ? open(argv[1], O_RDONLY | O_CLOEXEC) : STDIN_FILENO;
    if (file < 0) {
        return trouble("open", name, std::strerror(errno));
    }
    std::cout.exceptions(std::ios_base::badbit); // at once, while errno still has the reason
    std::cerr.tie(nullptr);                      // a message does not try the failed output again
    try {
        hexdump_file(std::cout, file, {.layout = hex_layout::hexdump_c, .colored = true});
        std::cout.flush();
    } catch (std::ios_base::failure const&) {
        return trouble("write to", "standard output", std::strerror(errno));
    } catch (std::system_error const& error) {
        return trouble("read", name, error.code().message());
    }
}
