// copy SOURCE TARGET: copies a file and shows how far it is. Exit status: 0 copied, 1 not, 2 wrong command line.
//
// A target that exists stays as it is until the copy is complete. What is half done is removed, at a signal too.
#include <kestry/kit/progress.hpp>
#include <kestry/kit/text.hpp>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <system_error>

#include <unistd.h>

namespace fs = std::filesystem;
namespace progress = kestry::kit::progress;

std::string half_done; // what a failure and a signal remove
void (*before[NSIG])(int) = {};

extern "C" void remove_and_raise(int signal)
{
    ::unlink(half_done.c_str());
    std::signal(signal, before[signal]);
    std::raise(signal);
}

void check(bool fine, std::string const& attempt, fs::path const& file)
{
    if (!fine) {
        auto const name = kestry::kit::escape_untrusted(file.string());
        throw std::system_error(errno, std::generic_category(), "cannot " + attempt + ' ' + name);
    }
}

void copy_with_bar(fs::path const& source, fs::path const& target)
{
    std::ifstream input(source, std::ios_base::binary);
    check(input.is_open() && (input.peek(), !input.bad()), "read", source);
    input.clear();                                                            // an empty one is at its end
    bool const replaces = !fs::exists(target) || fs::is_regular_file(target); // not a device, not a pipe
    std::string const written = target.string() + (replaces ? ".part" : "");
    check((errno = EEXIST, !replaces || !fs::exists(written)), "make", written); // somebody else's stays
    std::ofstream output(written, std::ios_base::binary);
    check(output.is_open(), "make", written);
    half_done = replaces ? written : "";
    for (int const signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM, SIGXFSZ}) {
        if ((before[signal] = std::signal(signal, remove_and_raise)) == SIG_IGN) { // under nohup, say
            std::signal(signal, SIG_IGN);
        }
    }
    auto const size = fs::is_regular_file(source) ? fs::file_size(source) : progress::unknown;
    progress::multi_progress group;
    auto const bar = group.add(source.filename().string(), size, progress::unit::bytes);
    for (std::string buffer(65536, ' '); input && output;) {
        input.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        output.write(buffer.data(), input.gcount());
        bar.inc(static_cast<std::uint64_t>(input.gcount()));
    }
    check(input.eof() || !output, "read", source);
    check((output.close(), output.good()), "write", written); // some file systems say only here that they are full
    fs::rename(written, target);
}

int main(int argc, char* argv[])
try {
    if (argc != 3) {
        std::cerr << "usage: copy SOURCE TARGET\n";
        return 2;
    }
    progress::wipe_on_signals();
    copy_with_bar(argv[1], fs::weakly_canonical(argv[2])); // of a link, what it leads to
} catch (std::exception const& problem) {
    ::unlink(half_done.c_str());
    std::cerr << "copy: " << problem.what() << '\n';
    return 1;
}
