// Built without a library, with this one and with an empty one: what loading it costs is the difference.
#include <iostream>

int main() { std::cout << "ready\n"; }
