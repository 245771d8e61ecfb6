#include <Poco/Util/Application.h>
#include <Poco/Util/Option.h>
#include <Poco/Util/OptionSet.h>

#include <iostream>

class Tool : public Poco::Util::Application
{
    void defineOptions(Poco::Util::OptionSet& options) override
    {
        Application::defineOptions(options);
        options.addOption(Poco::Util::Option("limit", "l", "stop there").argument("number"));
        options.addOption(Poco::Util::Option("version", "v", "version"));
    }
    void handleOption(const std::string& name, const std::string&) override { mVersion = name == "version"; }
    int main(const std::vector<std::string>&) override
    {
        if (mVersion) {
            std::cout << "tool, Version 1\n";
        }
        return EXIT_OK;
    }
    bool mVersion = false;
};

POCO_APP_MAIN(Tool)
