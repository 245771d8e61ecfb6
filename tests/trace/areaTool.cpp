/// \file
/// Works through its arguments as steps, in a process that has not asked for any area yet:
///
///     startup, teardown   of the registry
///     App, KelvoBase      prints what the accessor gives, in hexadecimal, or its failure
///     mask=NAME           the same of `getTraceAreaMask`
///     rename=FROM=TO      renames a file

#include <kelvobase/Exceptions.h>
#include <kelvobase/TraceArea.h>

#include <bitset>
#include <cstdio>
#include <iostream>
#include <string>

namespace
{

using namespace KelvoBase;

const std::bitset<64>& areaOf(const std::string& step)
{
    if (step == "App") {
        return TraceArea::App();
    }
    if (step == "KelvoBase") {
        return TraceArea::KelvoBase();
    }
    return TraceAreaMgr::instance()->getTraceAreaMask(step.substr(step.find('=') + 1));
}

void take(const std::string& step)
{
    if (step == "startup") {
        TraceAreaMgr::startup();
    } else if (step == "teardown") {
        TraceAreaMgr::teardown();
    } else if (step.starts_with("rename=")) {
        const std::string names = step.substr(7);
        const std::size_t sign = names.find('=');
        std::cout << (std::rename(names.substr(0, sign).c_str(), names.substr(sign + 1).c_str()) == 0 ? ""
                                                                                                      : "failed\n");
    } else {
        const auto bits = areaOf(step).to_ullong();
        std::cout << step << ' ' << std::hex << bits << '\n';
    }
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        try {
            take(argv[i]);
        } catch (const ExceptionBase& e) {
            std::cout << argv[i] << ": " << e.what() << '\n';
        }
    }
    return 0;
}
