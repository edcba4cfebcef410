// copy: copies a file and shows how far it is.
//
//     copy SOURCE TARGET     exit status: 0 copied, 1 not copied, 2 wrong command line
//
// A target that exists stays as it is until the copy is complete. What is half done is removed, at a signal too.
#include <kestry/kit/progress.hpp>
#include <kestry/kit/text.hpp>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string>

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

// Whether all went well with a file; if not, errno still has the reason.
void check(bool fine, std::string const& attempt, fs::path const& file)
{
    if (!fine) {
        std::string const reason = std::strerror(errno);
        throw std::runtime_error("cannot " + attempt + ' ' + kestry::kit::escape_untrusted(file.string()) + ": " +
                                 reason);
    }
}

void copy(fs::path const& source, fs::path const& target)
{
    std::error_code error; // a pipe has no size, a target that does not exist yet is no other file
    if (fs::equivalent(source, target, error)) {
        throw std::runtime_error("source and target are the same file");
    }
    auto const size = fs::file_size(source, error);
    std::ifstream input(source, std::ios_base::binary);
    check(input.is_open(), "open", source);
    check((input.peek(), !input.bad()), "read", source);
    input.clear();                                                            // an empty one is at its end
    bool const replaces = !fs::exists(target) || fs::is_regular_file(target); // not a device, not a pipe
    std::string const written = replaces ? fs::weakly_canonical(target).string() + ".part" : target.string();
    std::ofstream output(written, std::ios_base::binary);
    check(output.is_open(), "open", written);
    half_done = replaces ? written : "";
    for (int const signal : {SIGHUP, SIGINT, SIGTERM}) {
        before[signal] = std::signal(signal, remove_and_raise);
        if (before[signal] == SIG_IGN) { // under nohup, say
            std::signal(signal, SIG_IGN);
        }
    }
    progress::multi_progress group;
    auto const bar = group.add(source.filename().string(), error ? progress::unknown : size, progress::unit::bytes);
    for (std::string buffer(65536, ' '); input && output;) {
        input.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
        output.write(buffer.data(), input.gcount());
        bar.inc(static_cast<std::uint64_t>(input.gcount()));
    }
    check(input.eof() || !output, "read", source);
    output.close(); // some file systems say only here that they are full
    check(output.good(), "write", written);
    fs::rename(written, replaces ? fs::weakly_canonical(target) : fs::path(written));
}

int main(int argc, char* argv[])
try {
    if (argc != 3) {
        std::cerr << "usage: copy SOURCE TARGET\n";
        return 2;
    }
    progress::wipe_on_signals();
    copy(argv[1], argv[2]);
} catch (std::exception const& problem) {
    ::unlink(half_done.c_str());
    std::cerr << "copy: " << problem.what() << '\n';
    return 1;
}
