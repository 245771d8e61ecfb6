/// \file
/// How often the trace writes, what a full device does to it, and the record as a look into the process finds it.

#include "support/Scratch.h"

#include <kelvobase/TraceArea.h>
#include <kelvobase/TraceStream.h>

#include <gtest/gtest.h>

#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cinttypes>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace KelvoBase::test
{

namespace
{

/// What a scenario of the tool writes to standard error, write by write: the socket keeps them apart.
std::vector<std::string> writesOf(const char* scenario)
{
    std::array<int, 2> ends{};
    EXPECT_EQ(socketpair(AF_UNIX, SOCK_SEQPACKET, 0, ends.data()), 0);
    const pid_t child = fork();
    if (child == 0) {
        dup2(ends[1], STDERR_FILENO);
        close(ends[0]);
        close(ends[1]);
        execl(TRACE_TOOL, TRACE_TOOL, scenario, nullptr);
        _exit(127);
    }
    close(ends[1]);
    std::vector<std::string> writes;
    std::array<char, 4096> packet{};
    for (ssize_t size = 0; (size = recv(ends[0], packet.data(), packet.size(), 0)) > 0;) {
        writes.emplace_back(packet.data(), static_cast<std::size_t>(size));
    }
    close(ends[0]);
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    return writes;
}

/// Every place in this process's writable memory where `mark` stands, with `count` bytes from there. Areas that are
/// larger than all a test could need are the shadow memory of a sanitizer.
std::vector<std::string> findInMemory(const std::string& mark, std::size_t count)
{
    constexpr std::uintmax_t largestArea = 256UL << 20;
    std::vector<std::string> found;
    std::ifstream maps("/proc/self/maps");
    std::FILE* memory = std::fopen("/proc/self/mem", "rb");
    for (std::string line; memory != nullptr && std::getline(maps, line);) {
        std::uintmax_t begin = 0;
        std::uintmax_t end = 0;
        std::array<char, 5> rights{};
        if (std::sscanf(line.c_str(), "%" SCNxMAX "-%" SCNxMAX " %4s", &begin, &end, rights.data()) != 3 ||
            rights[1] != 'w' || end - begin > largestArea || fseeko(memory, static_cast<off_t>(begin), SEEK_SET) != 0) {
            continue;
        }
        std::string area(end - begin, '\0');
        area.resize(std::fread(area.data(), 1, area.size(), memory));
        for (auto i = area.find(mark); i != std::string::npos; i = area.find(mark, i + 1)) {
            found.push_back(area.substr(i, count));
        }
    }
    if (memory != nullptr) {
        std::fclose(memory);
    }
    return found;
}

} // namespace

TEST(TraceStreamPosix, LineOnStandardErrorIsWrittenAtOnce)
{
    const std::vector<std::string> expected = {
        "level 0 of the trace\n",         "|-- level 1 of the trace\n",   "|---- level 2 of the trace\n",
        "|------ level 3 of the trace\n", "|------ two\n|------ lines\n",
    };
    EXPECT_EQ(writesOf("lines"), expected);
}

TEST(TraceStreamPosix, FullDeviceIsNoticedByTheNextVisibleCharacter)
{
    TraceStream& trace = TraceStream::instance();
    trace.traceto(Trace::fail, "/dev/full", TraceArea::All());
    trace.setNextTraceConditions(Trace::fail, TraceArea::All());
    trace << "written to nowhere" << std::endl;
    EXPECT_TRUE(trace.good());
    trace.setNextTraceConditions(Trace::warn, TraceArea::All());
    trace << "suppressed" << std::endl;
    EXPECT_TRUE(trace.good());
    trace.setNextTraceConditions(Trace::fail, TraceArea::All());
    trace << "refused";
    EXPECT_TRUE(trace.bad());
    trace.traceto(Trace::fail, "cerr", TraceArea::All());
    trace.clear();
}

TEST(TraceStreamPosix, RecordIsFoundInTheMemoryOfTheProcess)
{
    const ScratchDirectory directory;
    TraceStream& trace = TraceStream::instance();
    trace.traceto(Trace::fail, (directory / "trace").string(), TraceArea::All());
    trace.setNextTraceConditions(Trace::verbose, TraceArea::All());
    trace << "kept though "
          << "suppressed: " << getpid() << std::endl;
    const std::string text = "kept though suppressed: " + std::to_string(getpid()) + "\n\n<T>\n";
    int records = 0;
    for (const std::string& block : findInMemory("\n<BE", 32768)) {
        if (block.size() == 32768 && block.compare(5, 4, "IN> ") == 0) {
            records += block.find(text, 9) != std::string::npos;
        }
    }
    EXPECT_EQ(records, 1);
}

} // namespace KelvoBase::test
