// Uses both interfaces over its whole life, which ends as its argument says.

#include "kestry/hueline_stream.hpp"

#include "output.hpp"

#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <string_view>

#include <sys/wait.h>
#include <unistd.h>

namespace program {

std::ostream& standard_output() { return std::cout; }

} // namespace program

namespace {

using namespace kestry::Hueline;

void at_exit() { std::cout << underline << "at exit\n"; }

// Nothing is flushed after it.
void at_quick_exit() { std::cout << underline << "at quick exit\n" << std::flush; }

// A child that ends as any program does, while its parent waits.
void fork_a_child()
{
    std::cout << std::flush;
    pid_t const child = fork();
    if (child == 0) {
        std::cout << kestry::Hueline::reverse << "child\n";
        std::exit(0);
    }
    waitpid(child, nullptr, 0);
}

} // namespace

int main(int argc, char** argv)
{
    std::string_view const ending = argc > 1 ? argv[1] : "";
    std::atexit(at_exit);
    std::at_quick_exit(at_quick_exit);
    std::cout << magenta << "main\n";
    if (ending == "exit") {
        std::exit(0);
    }
    if (ending == "quick_exit") {
        std::quick_exit(0);
    }
    if (ending == "fclose") {
        std::fclose(stdout);
    }
    if (ending == "fork") {
        fork_a_child();
        std::cout << crossed << "parent\n";
    }
}
