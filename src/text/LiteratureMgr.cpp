#include "trace/Message.h"

#include <kelvobase/ConfigFile.h>
#include <kelvobase/Exceptions.h>
#include <kelvobase/Literature.h>

#include <exception>

namespace KelvoBase
{

namespace
{

constexpr char fileName[] = "Literature.ini";

std::ostream& complain()
{
    return traceMessage(Trace::fail, TraceArea::All());
}

/// Whether there is a file, and whether it can be parsed, is all that is found out.
void tryFile()
{
    ConfigFile file;
    file.parseConfigFiles(fileName);
}

} // namespace

LiteratureMgr& LiteratureMgr::instance()
{
    static LiteratureMgr manager;
    return manager;
}

LiteratureMgr::LiteratureMgr()
{
    try {
        // Required: what was read is dropped. Filling the table from it would settle a format for citations
        // that users' files do not have.
        tryFile();
    } catch (const std::exception& e) {
        // Required: told and forgotten; let out, it would end tools that never ask for a citation.
        complain() << "LiteratureMgr(): Initialization failed!" << std::endl;
        complain() << "LiteratureMgr(): This will likely cause problems." << std::endl;
        complain() << '\t' << e.what() << std::endl;
    }
}

LiteratureMgr::~LiteratureMgr() = default;

Literature* LiteratureMgr::search(const std::string& key) const
{
    const auto found = mLiterature.find(key);
    return found == mLiterature.end() ? nullptr : found->second;
}

Literature* LiteratureMgr::getLiterature(const std::string& /*key*/) const
{
    // Required: a null pointer would reach callers that count on an exception.
    throw NotImplementedException("LiteratureMgr::getLiterature()");
}

} // namespace KelvoBase
