#include <kelvobase/Application.h>
#include <kelvobase/XMLCreator.h>

class Tool : public KelvoBase::Application
{
public:
    Tool() : Application("tool", 1.0, "Measured", "Says its version.")
    {
        defineOption("limit", 'l', false).setHelp("stop there").setArg("number", new KelvoBase::ScalarAny<int>(10));
    }
    void postParseInit() override {}
    int runMain() override { return 0; }

private:
    KelvoBase::XMLCreator mCreator{};
};

int main(int argc, char** argv)
{
    return Tool().mainImpl(argc, argv);
}
