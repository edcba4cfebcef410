#include <kestry/kit/policy.hpp>

#include <iostream>

int main() { std::cout << kestry::kit::to_string(kestry::kit::color_depth::ansi256) << '\n'; }
