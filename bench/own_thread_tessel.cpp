// A step of a machine on a thread of its own, compared with a bare thread.

#include <benchmark/benchmark.h>

#include <tessel/TaskContextThread.h>
#include <tessel/TaskFactory.h>
#include <tessel/TaskProcessor.h>
#include <tessel/TaskTransition.h>

#include <atomic>
#include <thread>

#include <pthread.h>

namespace
{

std::atomic<int> g_iSteps{0};

/// A machine that only counts its steps.
class Machine : public tsl::TaskProcessor
{
public:
    Machine() : TaskProcessor("Machine", nullptr)
    {
        tsl::TaskFactory::Instance().Register(0, &Create);
        // This transition is valid.
        static_cast<void>(m_oTransitions.AddTransition(TASK_INIT, TR_PROCEED, 0));
    }

    int GetTaskID() const override { return 1; }
    tsl::TaskTransitionList const & GetTaskTransitionList() const override { return m_oTransitions; }

private:
    class Idle : public Task
    {
    public:
        explicit Idle(tsl::TaskProcessor * pParent) : Task("Idle", pParent) {}
        int GetTaskID() const override { return 0; }
        tsl::MessageFilter const & GetDefinedInputFilter() const override { return m_oFilter; }

    protected:
        int DoProcess() override
        {
            g_iSteps.fetch_add(1, std::memory_order_relaxed);
            return TR_REMAIN;
        }

    private:
        tsl::MessageFilterNoMessage m_oFilter;
    };

    static Task * Create(TaskProcessor * pParent) { return new Idle(pParent); }

    tsl::TaskTransitionList m_oTransitions;
};

} // namespace

static void StepOnThread(benchmark::State & oState)
{
    tsl::TaskContextThread oContext(new Machine);
    int const iFirst = g_iSteps;
    for (auto _ : oState)
    {
        // A call does nothing while the thread of the last step runs.
        int const iBefore = g_iSteps.load(std::memory_order_relaxed);
        for (oContext.Process(); g_iSteps.load(std::memory_order_relaxed) == iBefore; oContext.Process())
            std::this_thread::yield();
    }
    oState.SetItemsProcessed(g_iSteps - iFirst);
}
BENCHMARK(StepOnThread)->UseRealTime()->Name("own.step on a thread/tessel:TaskContextThread");

static void * CountStep(void *)
{
    g_iSteps.fetch_add(1, std::memory_order_relaxed);
    return nullptr;
}

static void CreateAndJoin(benchmark::State & oState)
{
    for (auto _ : oState)
    {
        pthread_t hThread = {};
        if (::pthread_create(&hThread, nullptr, &CountStep, nullptr) != 0)
        {
            oState.SkipWithError("no thread");
            break;
        }
        ::pthread_join(hThread, nullptr);
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(CreateAndJoin)->UseRealTime()->Name("own.step on a thread/limit:pthread_create and pthread_join");

static void UseVariables(benchmark::State & oState)
{
    struct Context : tsl::TaskContext
    {
        using TaskContext::GetVar;
        using TaskContext::SetVar;
        using TaskContext::TaskContext;
    };
    Context oContext(new Machine);
    int iValue = 0;
    for (auto _ : oState)
    {
        oContext.SetVar("a number", ++iValue);
        oContext.SetVar("a text", "fifteen letters");
        benchmark::DoNotOptimize(oContext.GetVar("a number", 0));
        benchmark::DoNotOptimize(oContext.GetVar("a text", ""));
    }
}
BENCHMARK(UseVariables)->Name("own.set and get a number and a text/tessel:TaskContext");
