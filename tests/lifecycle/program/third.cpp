// The string interface: a switch that is on for the whole program, and a dump that is coloured by it.

#include "kestry/hueline_classic.hpp"

#include <iostream>
#include <string>

namespace program {

namespace {

using kestry::HexColor;
using kestry::Hueline;

class Third {
public:
    Third()
    {
        color.useColor(true);
        std::cout << Hueline::color(HexColor::blue, "third\n");
    }
    ~Third() { std::cout << Hueline::color(HexColor::yellow, "third's end\n"); }

private:
    Hueline color;
};

Third const third;

// Destroyed first; puts the switch back to on.
class Dump : public kestry::HexDump {
public:
    Dump() : HexDump(std::string("C")) { std::cout << *this << '\n'; }
    ~Dump() override { std::cout << *this << "dump's end\n"; }
};

Dump const dump;

} // namespace

} // namespace program
