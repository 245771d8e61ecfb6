// Asks a system with faults, step by step. A first kind of words brings the faults about.

#include "support/FakePlatform.h"
#include "system/SystemSteps.h"

#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

namespace
{

using namespace KelvoBase;
using namespace KelvoBase::test;

/// Says at the very end who still uses the network; to be made before the system is.
struct NetworkReport
{
    ~NetworkReport() { std::cout << "network users left: " << fakePlatform().networkUsers << std::endl; }
};

/// Whether `word` is a fault.
bool bringAbout(const std::string& word)
{
    FakePlatform& fake = fakePlatform();
    const std::map<std::string, std::function<void()>> faults = {
        {"no-user", [&] { fake.userName.reset(); }},
        {"empty-user", [&] { fake.userName = ""; }},
        {"other-user", [&] { fake.userName = "other"; }},
        {"no-host", [&] { fake.hostName.reset(); }},
        {"other-host", [&] { fake.hostName = "elsewhere"; }},
        {"no-os", [&] { fake.osName.reset(); }},
        {"other-os", [&] { fake.osName = "Other 2.0"; }},
        {"no-network", [&] { fake.networkStarts = false; }},
        {"watch-network", [] { static const NetworkReport report; }},
        {"trace", [] { TraceStream::instance().traceto(Trace::fail, "cerr", TraceArea::All()); }},
        {"trace-crit", [] { TraceStream::instance().traceto(Trace::crit, "cerr", std::bitset<64>()); }},
    };
    const auto fault = faults.find(word);
    if (fault == faults.end()) {
        return false;
    }
    fault->second();
    return true;
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        if (bringAbout(argv[i])) {
            continue;
        }
        if (const int status = runStep(argv[i]); status != 0) {
            return status;
        }
    }
    return 0;
}
