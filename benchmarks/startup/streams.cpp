// The yardstick: a C++ program that writes one line through the standard streams.
#include <iostream>

int main()
{
    std::cout << "tool, Version 1\n";
    return 0;
}
