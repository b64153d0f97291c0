// Prints how much memory objects need, compared with what a program would use without the library: their own size
// and their memory on the heap, its overhead included. Also prints the size of a program that only starts.

#include "ChildProgram.h"

#include <tessel/IniFile.h>
#include <tessel/Message.h>
#include <tessel/MessageDispatcher.h>
#include <tessel/NamedValue.h>
#include <tessel/Result.h>
#include <tessel/String.h>
#include <tessel/Task.h>
#include <tessel/ValueInt32.h>
#include <tessel/ValueString.h>

#include <any>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <malloc.h>

static std::size_t g_iHeap = 0;

[[gnu::noinline]] void * operator new(std::size_t iSize)
{
    if (void * const pMemory = std::malloc(iSize))
    {
        g_iHeap += ::malloc_usable_size(pMemory) + sizeof(std::size_t);
        return pMemory;
    }
    throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void * pMemory) noexcept
{
    if (pMemory)
        g_iHeap -= ::malloc_usable_size(pMemory) + sizeof(std::size_t);
    std::free(pMemory);
}

[[gnu::noinline]] void operator delete(void * pMemory, std::size_t) noexcept
{
    operator delete(pMemory);
}

using namespace tsl;

namespace
{

constexpr int COUNT = 10'000;
constexpr char const * TEXT = "a text of a few dozen characters";

void Print(char const * sWhat, std::size_t iOwn, double fHeap)
{
    std::printf("%-58s %8zu %10.1f\n", sWhat, iOwn, fHeap);
}

/// The size of an object and of its memory on the heap, after others of its class existed.
template<class Make>
void PrintObject(char const * sWhat, Make fMake)
{
    auto const oFirst = fMake();
    std::size_t const iBefore = g_iHeap;
    auto const oObject = fMake();
    Print(sWhat, sizeof oObject, static_cast<double>(g_iHeap - iBefore));
}

/// The memory that one of many elements needs in its container.
void PrintElement(char const * sWhat, std::function<std::shared_ptr<void>()> const & fMakeMany)
{
    static_cast<void>(fMakeMany());
    std::size_t const iBefore = g_iHeap;
    std::shared_ptr<void> const pMany = fMakeMany();
    Print(sWhat, 0, static_cast<double>(g_iHeap - iBefore) / COUNT);
}

class NoteMessage : public Message
{
public:
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override
    {
        return Message::GetConstIterator();
    }

protected:
    void DoCopy(Root const &) override {}
};

class IdleTask : public Task
{
public:
    IdleTask() : Task("a task", nullptr) {}
    int GetTaskID() const override { return 0; }
    MessageFilter const & GetDefinedInputFilter() const override { std::abort(); }

protected:
    int DoProcess() override { return TR_REMAIN; }
};

class IdleProcessor : public MessageProcessor
{
public:
    void Process(Message const &, Result &) const override {}
    MessageProcessorConfig const & GetConfig() const override { std::abort(); }
    Result SetConfig(MessageProcessorConfig const &) override { return Result(); }
    Result Open() override { return Result(); }
    void Close() override {}

protected:
    void DoCopy(Root const &) override {}
};

/// What a program would use without the library.
struct PlainFailure
{
    int iCode;
    int iLine;
    std::string sFile;
    std::string sText;
    std::unique_ptr<PlainFailure> pPrevious;
};

struct PlainObject
{
    virtual ~PlainObject() = default;
};

struct PlainState : PlainObject
{
    std::string sName = "a task";
    void * pParent = nullptr;
};

std::unique_ptr<PlainFailure> MakePlainFailure()
{
    return std::make_unique<PlainFailure>(PlainFailure{1, 2, "src/tessel/IniFile.cpp", TEXT, nullptr});
}

void PrintResults()
{
    auto const fFail = [] { return MakeResult(1, TEXT); };
    PrintObject("success: Result", [] { return Result(); });
    PrintObject("    std::unique_ptr of a struct", [] { return std::unique_ptr<PlainFailure>(); });
    PrintObject("failure: Result", fFail);
    PrintObject("    std::unique_ptr of a struct", &MakePlainFailure);
    PrintObject("failure with a cause: Result", [&] { return MakeResult(1, TEXT, fFail()); });
    PrintObject("    std::unique_ptr of a struct",
        []
        {
            auto pFailure = MakePlainFailure();
            pFailure->pPrevious = MakePlainFailure();
            return pFailure;
        });
}

void PrintValues()
{
    PrintObject("empty text: String", [] { return String(); });
    PrintObject("    std::string", [] { return std::string(); });
    PrintObject("text of 32 bytes: String", [] { return String(TEXT); });
    PrintObject("    std::string", [] { return std::string(TEXT); });
    PrintObject("text of 32 bytes: ValueString", [] { return ValueString(TEXT); });
    PrintObject("    std::any", [] { return std::any(std::string(TEXT)); });
    PrintObject("number: ValueInt32", [] { return ValueInt32(1); });
    PrintObject("    std::any", [] { return std::any(1); });
    PrintObject("named number: NamedValue", [] { return NamedValue("a name", ValueInt32(1)); });
    PrintObject("    std::pair of std::string and std::any",
        [] { return std::pair<std::string, std::any>("a name", 1); });
}

void PrintObjects()
{
    PrintObject("message: Message", [] { return NoteMessage(); });
    PrintObject("    struct with a virtual destructor", [] { return PlainObject(); });
    PrintObject("task: Task", [] { return IdleTask(); });
    PrintObject("    struct with a name and a parent", [] { return PlainState(); });
}

std::string GetKeyName(int i)
{
    return "Key" + std::to_string(i);
}

void PrintKeys()
{
    char const * const sFile = "bench_memory.ini";
    {
        std::ofstream oFile(sFile);
        oFile << "[Chapter]\n";
        for (int i = 0; i < COUNT; ++i)
            oFile << GetKeyName(i) << "=a value\n";
    }
    PrintElement("key of a chapter of 10,000: IniFile",
        [&]
        {
            auto const pFile = std::make_shared<IniFile>();
            if (pFile->Open(sFile).IsError())
                std::abort();
            return pFile;
        });
    std::remove(sFile);
    PrintElement("    std::unordered_map of std::string",
        []
        {
            auto const pKeys = std::make_shared<std::unordered_map<std::string, std::string>>();
            for (int i = 0; i < COUNT; ++i)
                pKeys->emplace(GetKeyName(i), "a value");
            return pKeys;
        });
}

void PrintProcessors()
{
    static std::vector<IdleProcessor> const vProcessors(COUNT);
    PrintElement("one of 10,000 processors of a type: MessageDispatcher",
        []
        {
            auto const pDispatcher = std::make_shared<MessageDispatcher>();
            for (IdleProcessor const & oProcessor : vProcessors)
                if (pDispatcher->Register(oProcessor, {Message::GetStaticClassDesc().GetClassId()}).IsError())
                    std::abort();
            return pDispatcher;
        });
    PrintElement("    std::set of pointers",
        []
        {
            auto const pSet = std::make_shared<std::set<MessageProcessor const *>>();
            for (IdleProcessor const & oProcessor : vProcessors)
                pSet->insert(&oProcessor);
            return pSet;
        });
}

void PrintProgram(char const * sWhat, char const * sProgram)
{
    int iResident = 0;
    int iOwn = 0;
    std::FILE * const pOutput = ::popen(('"' + tslbench::FindChild(sProgram) + '"').c_str(), "r");
    bool const bRead = pOutput && std::fscanf(pOutput, "%d %d", &iResident, &iOwn) == 2;
    if (!pOutput || ::pclose(pOutput) != 0 || !bRead)
        std::abort();
    std::printf("%-58s %8d %10d\n", sWhat, iResident, iOwn);
}

} // namespace

int main()
{
    std::printf("%-58s %8s %10s\n", "bytes", "object", "heap");
    PrintResults();
    PrintValues();
    PrintObjects();
    PrintKeys();
    PrintProcessors();

    std::printf("\n%-58s %8s %10s\n", "KiB", "resident", "own");
    PrintProgram("program that only starts", "start_resident");
    PrintProgram("    without the library", "plain_resident");
}
