#include <cxxopts.hpp>
#include <iostream>

int main(int argc, char** argv)
{
    cxxopts::Options options("tool", "Says its version.");
    options.add_options()("l,limit", "stop there", cxxopts::value<int>()->default_value("10"))("version", "version");
    if (options.parse(argc, argv).count("version") != 0) {
        std::cout << "tool, Version 1\n";
    }
    return 0;
}
