// Child processes under hard conditions: 1 GiB of output on both streams, and a start in a program that has 1,000
// open descriptors and a limit of a million, or the highest limit of the machine.

#include "ChildProgram.h"

#include <tessel/CmdLine.h>
#include <tessel/OS.h>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

using namespace tsl;

static constexpr long OUTPUT = 1L << 30;

static std::size_t TakeBytes(CmdLine & oChild)
{
    std::size_t iBytes = 0;
    while (std::unique_ptr<String> const pLine{oChild.ReceiveStdOut()})
        iBytes += pLine->GetLength() + 1;
    while (std::unique_ptr<String> const pLine{oChild.ReceiveStdErr()})
        iBytes += pLine->GetLength() + 1;
    return iBytes;
}

static double GetResidentMegabytes()
{
    long iPages = 0;
    std::ifstream("/proc/self/statm") >> iPages >> iPages;
    return static_cast<double>(iPages) * static_cast<double>(::sysconf(_SC_PAGESIZE)) / (1 << 20);
}

static void ReadMuchOutput(benchmark::State & oState)
{
    std::string const sCommand = tslbench::FindChild("emit_lines") + ' ' + std::to_string(OUTPUT) + " mixed";
    double fResident = 0;
    std::size_t iBytes = 0;
    for (auto _ : oState)
    {
        CmdLine oChild;
        oChild.SetMode(CmdLine::eModeRedirect | CmdLine::eModeReaderThreads);
        oChild.SetCommand(sCommand);
        int iProcessId = 0;
        if (oChild.Run(iProcessId).IsError())
        {
            oState.SkipWithError("the child cannot be started");
            break;
        }
        while (oChild.IsRunning())
        {
            iBytes += TakeBytes(oChild);
            fResident = std::max(fResident, GetResidentMegabytes());
            OS::Sleep(1);
        }
        iBytes += TakeBytes(oChild);
    }
    if (iBytes < static_cast<std::size_t>(OUTPUT * oState.iterations()))
        oState.SkipWithError("output is missing");
    oState.SetBytesProcessed(static_cast<long>(iBytes));
    oState.counters["resident_MiB"] = fResident;
}
BENCHMARK(ReadMuchOutput)
    ->Name("own.1 GiB of a child in lines of 1 to 100,000 bytes on both streams/tessel")
    ->UseRealTime()
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

/// Opens 1,000 descriptors and raises the limit, until the end of the scope.
class ManyDescriptors
{
public:
    ManyDescriptors()
    {
        ::getrlimit(RLIMIT_NOFILE, &m_oFormer);
        rlimit const oLimit{std::min<rlim_t>(1'000'000, m_oFormer.rlim_max), m_oFormer.rlim_max};
        if (::setrlimit(RLIMIT_NOFILE, &oLimit) == 0)
            m_iLimit = oLimit.rlim_cur;
        while (m_vOpen.size() < 1000)
            m_vOpen.push_back(::open("/dev/null", O_RDONLY));
    }

    ~ManyDescriptors()
    {
        std::for_each(m_vOpen.begin(), m_vOpen.end(), &::close);
        ::setrlimit(RLIMIT_NOFILE, &m_oFormer);
    }

    ManyDescriptors(ManyDescriptors const &) = delete;
    ManyDescriptors & operator=(ManyDescriptors const &) = delete;

    double GetLimit() const { return static_cast<double>(m_iLimit); }

private:
    rlimit m_oFormer{};
    rlim_t m_iLimit = 0;
    std::vector<int> m_vOpen;
};

static void StartBesideManyDescriptors(benchmark::State & oState)
{
    ManyDescriptors const oDescriptors;
    for (auto _ : oState)
    {
        CmdLine oChild;
        oChild.SetCommand("/bin/true");
        int iProcessId = 0;
        if (oChild.Run(iProcessId).IsError() || oChild.WaitTermination() != CmdLine::eWaitTerminated)
        {
            oState.SkipWithError("the child has failed");
            break;
        }
    }
    oState.counters["limit"] = oDescriptors.GetLimit();
}
BENCHMARK(StartBesideManyDescriptors)
    ->Name("own.start of a child beside 1,000 open descriptors/tessel")
    ->UseRealTime()
    ->Unit(benchmark::kMicrosecond);
