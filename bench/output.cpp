#include "output.hpp"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <streambuf>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace hueline::bench {

namespace {

int checked(int result, char const* what)
{
    if (result < 0) {
        throw std::system_error{errno, std::generic_category(), what};
    }
    return result;
}

// The other end stays open as long as the process lives, and nobody reads it: nothing is written.
int open_terminal()
{
    int const master = checked(posix_openpt(O_RDWR | O_NOCTTY), "posix_openpt");
    checked(grantpt(master), "grantpt");
    checked(unlockpt(master), "unlockpt");
    return checked(open(ptsname(master), O_RDWR | O_NOCTTY), "open the terminal");
}

int open_file()
{
    char name[] = "/tmp/hueline-bench-XXXXXX";
    int const file = checked(mkstemp(name), "mkstemp");
    checked(unlink(name), "unlink");
    return file;
}

class Discard : public std::streambuf {
    std::streamsize xsputn(char const*, std::streamsize size) override { return size; }
    int_type overflow(int_type c) override { return traits_type::not_eof(c); }
};

} // namespace

void set_output(Output output)
{
    static int const terminal = open_terminal();
    static int const file = open_file();
    checked(dup2(output == Output::terminal ? terminal : file, STDOUT_FILENO), "dup2");
}

void discard_cout()
{
    static Discard discard;
    std::cout.rdbuf(&discard);
}

} // namespace hueline::bench
