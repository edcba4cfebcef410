// A guard and a dump that live as long as the program does.

#include "kestry/hueline_stream.hpp"

#include <iostream>
#include <string>

namespace program {

namespace {

using namespace kestry::Hueline;

class Second {
public:
    Second() { std::cout << italic << dump << "second\n"; }
    ~Second() { std::cout << noitalic << dump << "second's end\n"; }

private:
    UseColorMode const forced;
    HexDump const dump{std::string("AB")};
};

Second const second;

} // namespace

} // namespace program
