// colour_policy: colour as --color=WHEN and the environment want it, for each of the standard streams.
//
//     colour_policy [--color[=WHEN]]
//
// Says for standard output and for standard error what was decided, and why; in green where there is
// colour. The manipulators never colour a pipe, not even with --color=always: their gate also asks for a
// terminal. The string interface and the styles of the kit do as they are told.
#include <kestry/hueline_stream.hpp>

#include <kestry/kit/policy.hpp>

#include <iostream>
#include <stdexcept>

int main(int argc, char* argv[])
{
    using namespace kestry::Hueline;
    using namespace kestry::kit;
    try {
        color_policy const policy = color_policy::from_args(argc, argv);
        use_in_streams(policy);
        use_in_strings(policy.out()); // for the parts of a program that have the other header
        std::cout << green << "standard output: " << to_string(policy.out()) << normal << '\n';
        std::cerr << green << "standard error: " << to_string(policy.err()) << normal << '\n';
    } catch (std::invalid_argument const& misuse) {
        std::cerr << "colour_policy: " << misuse.what() << '\n';
        return 2;
    }
}
