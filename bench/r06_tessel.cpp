// One message of 104 bytes: sent as a copy through a pipe, received and deleted.

#include "r06_work_tessel.h"

#include <benchmark/benchmark.h>

#include <tessel/Described.h>
#include <tessel/Message.h>
#include <tessel/Pipe.h>

#include <array>
#include <chrono>
#include <memory>
#include <thread>

namespace
{

class Order : public tsl::Described<Order, tsl::Message>
{
public:
    std::unique_ptr<AbstractNamedValueConstIterator<tsl::Value>> GetConstIterator() const override
    {
        return tsl::Message::GetConstIterator();
    }

    long iId = 1;
    std::array<char, 88> sBody{"the text of the order"};

protected:
    void DoCopy(tsl::Root const & oSource) override { *this = static_cast<Order const &>(oSource); }
};

/// Polls: a pipe never waits.
void ReceiveOne(tsl::PipeDebMessage & oPipe)
{
    std::unique_ptr<tsl::Message> pMessage(oPipe.Receive());
    while (!pMessage)
    {
        std::this_thread::yield();
        pMessage.reset(oPipe.Receive());
    }
    tslbench::Consume(static_cast<Order const &>(*pMessage).iId);
}

void SameThread(benchmark::State & oState)
{
    tsl::PipeDebMessage oPipe("bench");
    Order const oOrder;
    for (auto _ : oState)
    {
        oPipe.Send(oOrder);
        ReceiveOne(oPipe);
    }
    oState.SetItemsProcessed(oState.iterations());
}

void Bursts(benchmark::State & oState)
{
    constexpr int iLength = 64;
    tsl::PipeDebMessage oPipe("bench");
    Order const oOrder;
    for (auto _ : oState)
    {
        for (int i = 0; i < iLength; ++i)
            oPipe.Send(oOrder);
        for (int i = 0; i < iLength; ++i)
            ReceiveOne(oPipe);
    }
    oState.SetItemsProcessed(oState.iterations() * iLength);
}

void TwoThreads(benchmark::State & oState)
{
    constexpr int iCount = 100'000;
    for (auto _ : oState)
    {
        tsl::PipeDebMessage oPipe("bench");
        auto const oBegin = std::chrono::steady_clock::now();
        std::thread oProducer(
            [&oPipe]
            {
                Order const oOrder;
                for (int i = 0; i < iCount; ++i)
                    oPipe.Send(oOrder);
            });
        for (int i = 0; i < iCount; ++i)
            ReceiveOne(oPipe);
        std::chrono::duration<double> const oTime = std::chrono::steady_clock::now() - oBegin;
        oProducer.join();
        oState.SetIterationTime(oTime.count());
    }
    oState.SetItemsProcessed(oState.iterations() * iCount);
}

void RoundTrip(benchmark::State & oState)
{
    constexpr int iCount = 4'000;
    for (auto _ : oState)
    {
        tsl::PipeDebMessage oForth("forth");
        tsl::PipeDebMessage oBack("back");
        Order const oOrder;
        std::thread oOther(
            [&]
            {
                for (int i = 0; i < iCount; ++i)
                {
                    ReceiveOne(oForth);
                    oBack.Send(oOrder);
                }
            });
        auto const oBegin = std::chrono::steady_clock::now();
        for (int i = 0; i < iCount; ++i)
        {
            oForth.Send(oOrder);
            ReceiveOne(oBack);
        }
        std::chrono::duration<double> const oTime = std::chrono::steady_clock::now() - oBegin;
        oOther.join();
        oState.SetIterationTime(oTime.count());
    }
    oState.SetItemsProcessed(oState.iterations() * iCount);
}

BENCHMARK(SameThread)->Name("R06.same thread/tessel:PipeDebMessage");
BENCHMARK(Bursts)->Name("R06.same thread, bursts of 64/tessel:PipeDebMessage");
BENCHMARK(TwoThreads)
    ->Name("R06.1 producer 1 consumer/tessel:PipeDebMessage (looks and yields)")
    ->UseManualTime();
BENCHMARK(RoundTrip)
    ->Name("R06.round trip between 2 threads/tessel:PipeDebMessage (looks and yields)")
    ->UseManualTime();

} // namespace
