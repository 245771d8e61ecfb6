#include <boost/program_options.hpp>

#include <iostream>

namespace po = boost::program_options;

int main(int argc, char** argv)
{
    po::options_description options("Says its version.");
    options.add_options()("limit,l", po::value<int>()->default_value(10), "stop there")("version", "version");
    po::variables_map values;
    po::store(po::parse_command_line(argc, argv, options), values);
    if (values.count("version") != 0) {
        std::cout << "tool, Version 1\n";
    }
    return 0;
}
