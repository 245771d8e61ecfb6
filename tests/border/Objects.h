#pragma once

/// \file
/// The objects of which a process has one, whoever asks. The header is compiled into the test and into each module, so
/// that each looks from its own side of the border.

#include <kelvobase/AnyFactory.h>
#include <kelvobase/Application.h>
#include <kelvobase/Globals.h>
#include <kelvobase/System.h>
#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <map>
#include <string>

namespace KelvoBase::test
{

using ObjectOf = const void* (*)();

inline const std::map<std::string, ObjectOf>& objects()
{
    static const std::map<std::string, ObjectOf> all = {
        {"AnyFactory", [] { return static_cast<const void*>(&AnyFactory::instance()); }},
        {"Application", [] { return static_cast<const void*>(Application::instance()); }},
        {"haveCerr", [] { return static_cast<const void*>(&haveCerr); }},
        {"System", [] { return static_cast<const void*>(&System::instance()); }},
        {"System::defaultCmdOutput", [] { return static_cast<const void*>(&System::defaultCmdOutput); }},
        {"TraceArea::All", [] { return static_cast<const void*>(&TraceArea::All()); }},
        {"TraceAreaMgr", [] { return static_cast<const void*>(TraceAreaMgr::instance()); }},
        {"TraceStream", [] { return static_cast<const void*>(&TraceStream::instance()); }},
    };
    return all;
}

} // namespace KelvoBase::test
