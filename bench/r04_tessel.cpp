// One message to 1, 4 and 16 processors of its type.

#include "r04_work_tessel.h"

#include <benchmark/benchmark.h>

#include <tessel/Message.h>
#include <tessel/MessageDispatcher.h>

#include <memory>
#include <vector>

namespace
{

class NumberMessage : public tsl::Message
{
public:
    tsl::ClassDescription const & GetClassDesc() const override { return GetStaticClassDesc(); }

    static tsl::ClassDescription const & GetStaticClassDesc()
    {
        static tsl::ClassDescription const & oDescription = tsl::DescribeClass<NumberMessage>(
            &tsl::Message::GetStaticClassDesc(), tsl::ClassDescription::eConcrete, &CreateNew);
        return oDescription;
    }

    static tsl::Root * CreateNew() { return new NumberMessage; }

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

class NumberProcessor : public tsl::MessageProcessor
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result &) const override
    {
        tslbench::Receive(static_cast<NumberMessage const &>(oMessage).iValue);
    }

    tsl::MessageProcessorConfig const & GetConfig() const override { return m_oConfig; }
    tsl::Result SetConfig(tsl::MessageProcessorConfig const &) override { return tsl::Result(); }
    tsl::Result Open() override { return tsl::Result(); }
    void Close() override {}

protected:
    void DoCopy(tsl::Root const &) override {}

private:
    tsl::MessageDispatcherConfig m_oConfig;
};

void Dispatch(benchmark::State & oState)
{
    // The bus tells its processors when it goes away, so it goes first.
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
