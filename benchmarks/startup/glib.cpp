#include <glib.h>

#include <iostream>

int main(int argc, char** argv)
{
    int limit = 10;
    gboolean version = FALSE;
    GOptionEntry entries[] = {{"limit", 'l', 0, G_OPTION_ARG_INT, &limit, "stop there", "number"},
                              {"version", 0, 0, G_OPTION_ARG_NONE, &version, "version", nullptr},
                              {nullptr, 0, 0, G_OPTION_ARG_NONE, nullptr, nullptr, nullptr}};
    GOptionContext* context = g_option_context_new("");
    g_option_context_add_main_entries(context, entries, nullptr);
    g_option_context_parse(context, &argc, &argv, nullptr);
    g_option_context_free(context);
    if (version) {
        std::cout << "tool, Version 1\n";
    }
    return 0;
}
