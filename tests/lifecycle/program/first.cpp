// Linked first: what is static here is constructed before anything else in the program, before any of its files has had
// the standard streams initialised too, and destroyed after everything else.

#include "kestry/hueline_stream.hpp"

#include "output.hpp"

#include <cstdlib>
#include <ostream>

namespace program {

namespace {

using namespace kestry::Hueline;

// Registered before the destructor of the object, so called after it.
void say_last_words() { standard_output() << colorize << reset << blue << "the last words\n"; }

class First {
public:
    First()
    {
        std::atexit(say_last_words);
        standard_output() << colorize << red << "first\n";
    }
    ~First() { standard_output() << cyan << "first's end, without colour: the guard in second.cpp took it\n"; }
};

First const first;

} // namespace

} // namespace program
