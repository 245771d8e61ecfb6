#include "support/Capture.h"

#include "support/Scratch.h"

#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <filesystem>
#include <random>

namespace KelvoBase::test
{

TraceCapture::TraceCapture(unsigned int level)
    : mPath((std::filesystem::temp_directory_path() / ("kelvobase-trace-" + std::to_string(std::random_device()())))
                .string())
{
    TraceStream::instance().clear();
    TraceStream::instance().traceto(level, mPath, TraceArea::All());
}

TraceCapture::~TraceCapture()
{
    TraceStream::instance().traceto(Trace::fail, "cerr", TraceArea::All());
    std::error_code ignored;
    std::filesystem::remove(mPath, ignored);
}

std::string TraceCapture::text() const
{
    TraceStream::instance().flush();
    return textIn(mPath);
}

} // namespace KelvoBase::test
