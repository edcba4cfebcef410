/// \file
/// How often a piece of a test wrote to a descriptor, and what each time.
#pragma once

#include <array>
#include <cerrno>
#include <functional>
#include <string>
#include <system_error>

#include <sys/socket.h>
#include <unistd.h>

namespace hueline::test {

/// Runs body, and returns what each write(2) to the descriptor held, in brackets: "[one][two]". The descriptor leads to
/// a socket that keeps messages apart meanwhile, and takes 128 KiB of them.
inline std::string writes_to(int descriptor, std::function<void()> const& body)
{
    auto const checked = [](int result, char const* call) {
        if (result < 0) {
            throw std::system_error(errno, std::generic_category(), call);
        }
        return result;
    };
    std::array<int, 2> ends = {};
    checked(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()), "socketpair");
    int const before = dup(descriptor); // none if it is closed
    checked(dup2(ends[1], descriptor), "dup2");
    close(ends[1]);
    body();
    if (before >= 0) {
        dup2(before, descriptor);
        close(before);
    } else {
        close(descriptor);
    }

    std::string all;
    std::string message(1 << 17, '\0');
    ssize_t n = 0;
    while ((n = recv(ends[0], message.data(), message.size(), MSG_DONTWAIT)) > 0) {
        all += '[' + message.substr(0, static_cast<std::size_t>(n)) + ']';
    }
    close(ends[0]);
    return all;
}

} // namespace hueline::test
