// One message to 1, 4 and 16 processors of its type.

#include "r04_work_tessel.h"

#include <benchmark/benchmark.h>

#include <tessel/Described.h>
#include <tessel/Message.h>
#include <tessel/MessageDispatcher.h>
#include <tessel/PlainProcessor.h>

#include <memory>
#include <vector>

namespace
{

class NumberMessage : public tsl::Described<NumberMessage, tsl::Message>
{
public:
    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override
    {
        return tsl::Message::GetConstIterator();
    }

    long iValue = 1;

protected:
    void DoCopy(tsl::Root const & oSource) override
    {
        iValue = static_cast<NumberMessage const &>(oSource).iValue;
    }
};

class NumberProcessor : public tsl::PlainProcessor
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result &) const override
    {
        tslbench::Receive(static_cast<NumberMessage const &>(oMessage).iValue);
    }
};

void Dispatch(benchmark::State & oState)
{
    // The bus calls its processors when it is destroyed, so it is destroyed first.
    std::vector<std::unique_ptr<NumberProcessor>> vProcessors;
    tsl::MessageDispatcher oDispatcher;
    for (int i = 0; i < oState.range(0); ++i)
    {
        vProcessors.push_back(std::make_unique<NumberProcessor>());
        tsl::Result const oResult =
            oDispatcher.Register(*vProcessors.back(), {NumberMessage::GetStaticClassDesc().GetClassId()});
        if (oResult.IsError())
            oState.SkipWithError("cannot register");
    }

    NumberMessage const oMessage;
    for (auto _ : oState)
    {
        tsl::Result oResult;
        oDispatcher.Process(oMessage, oResult);
        benchmark::DoNotOptimize(oResult);
    }
    oState.SetItemsProcessed(oState.iterations());
}
BENCHMARK(Dispatch)->Name("R04/tessel:MessageDispatcher")->Arg(1)->Arg(4)->Arg(16);

} // namespace
