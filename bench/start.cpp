// Built twice, with the library and without: what loading it costs is the difference.
#include <iostream>

int main() { std::cout << "ready\n"; }
