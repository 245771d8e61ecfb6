#include <CLI/CLI.hpp>

int main(int argc, char** argv)
{
    CLI::App app("Says its version.", "tool");
    int limit = 10;
    app.add_option("-l,--limit", limit, "stop there");
    app.set_version_flag("--version", "tool, Version 1");
    CLI11_PARSE(app, argc, argv);
    return 0;
}
