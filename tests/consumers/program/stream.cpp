#include <kestry/hueline_stream.hpp>

#include <iostream>

std::string failed_in_classic_red();

int main()
{
    using namespace kestry::Hueline;
    std::cout << colorize << red << "failed" << normal << '\n' << failed_in_classic_red() << '\n';
}
