#include "kestry/kit/policy.hpp"

#include <iostream>

#include <unistd.h>

namespace kestry::kit {

namespace {

// The stream's word holds 0 as long as nothing has been said, otherwise the depth and one.
constexpr long word_of(color_depth depth) { return static_cast<long>(depth) + 1; }
constexpr color_depth depth_in(long word) { return static_cast<color_depth>(word - 1); }

// Made at first use, so that it is there for the constructors of static objects too. The standard streams are given
// their word at once: one that grows while another thread looks at it would move.
int depth_index()
{
    static int const index = [] {
        static std::ios_base::Init const streams; // may be asked for by a static object of a file without <iostream>
        int const made = std::ios_base::xalloc();
        for (std::ostream* const os : {&std::cout, &std::cerr, &std::clog}) {
            os->iword(made);
        }
        return made;
    }();
    return index;
}

// Any thread may write to a standard stream, so it may be the first to ask.
long load(std::ostream& os) { return __atomic_load_n(&os.iword(depth_index()), __ATOMIC_RELAXED); }
void store(std::ostream& os, long word) { __atomic_store_n(&os.iword(depth_index()), word, __ATOMIC_RELAXED); }

} // namespace

void set_depth(std::ostream& os, color_depth depth) { store(os, word_of(depth)); }

color_depth depth_of(std::ostream& os)
{
    long const word = load(os);
    if (word != 0) {
        return depth_in(word);
    }
    if (&os != &std::cout && &os != &std::cerr && &os != &std::clog) {
        return color_depth::truecolor;
    }
    int const descriptor = &os == &std::cout ? STDOUT_FILENO : STDERR_FILENO;
    color_depth const depth = color_policy::from_environment().of(descriptor).depth;
    set_depth(os, depth);
    return depth;
}

} // namespace kestry::kit
