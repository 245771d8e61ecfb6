/// \file
/// Takes the table of citations through steps in a process that has not made it yet:
///
///     areas         starts the registry of trace areas
///     trace         traces failures of all areas to standard output
///     traceApp      traces failures of one area
///     traceCrit     traces what is more important than failures
///     make          asks for the table; "made", or "again" for the same object
///     search KEY    what the table answers
///     get KEY       the same, or its failure

#include <kelvobase/Exceptions.h>
#include <kelvobase/Literature.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <iostream>
#include <string>
#include <utility>

using namespace KelvoBase;

namespace
{

const LiteratureMgr* made = nullptr;

void make()
{
    const LiteratureMgr* const now = &LiteratureMgr::instance();
    std::cout << (std::exchange(made, now) == now ? "again" : "made") << std::endl;
}

void show(const Literature* literature)
{
    std::cout << (literature == nullptr ? "null" : literature->print()) << std::endl;
}

void get(const std::string& key)
{
    try {
        show(LiteratureMgr::instance().getLiterature(key));
    } catch (const NotImplementedException& e) {
        std::cout << "refused: " << e.what() << std::endl;
    }
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i < argc; ++i) {
        const std::string step = argv[i];
        if (step == "areas") {
            TraceAreaMgr::startup();
        } else if (step == "trace") {
            TraceStream::instance().traceto(Trace::fail, "cout", TraceArea::All());
        } else if (step == "traceApp") {
            TraceStream::instance().traceto(Trace::fail, "cout", TraceArea::App());
        } else if (step == "traceCrit") {
            TraceStream::instance().traceto(Trace::crit, "cout", TraceArea::All());
        } else if (step == "make") {
            make();
        } else if (step == "search" && i + 1 < argc) {
            show(LiteratureMgr::instance().search(argv[++i]));
        } else if (step == "get" && i + 1 < argc) {
            get(argv[++i]);
        } else {
            std::cerr << "unknown step " << step << std::endl;
            return 2;
        }
    }
    return 0;
}
