#include "growth.h"

#include <tessel/Message.h>
#include <tessel/MessageDispatcher.h>
#include <tessel/Pipe.h>
#include <tessel/PlainProcessor.h>

#include <memory>

using namespace tsl;

namespace
{

/// A message whose class exists only as a description.
class Parcel : public Message
{
public:
    explicit Parcel(ClassDescription const & oClass) : m_oClass(oClass) {}

    ClassDescription const & GetClassDesc() const override { return m_oClass; }
    std::unique_ptr<AbstractNamedValueConstIterator<Value>> GetConstIterator() const override
    {
        return Message::GetConstIterator();
    }

protected:
    void DoCopy(Root const &) override {}

private:
    ClassDescription const & m_oClass;
};

class Counter : public PlainProcessor
{
public:
    void Process(Message const &, Result &) const override { ++m_iCount; }
    int GetCount() const { return m_iCount; }

private:
    mutable int m_iCount = 0;
};

using Classes = std::vector<std::unique_ptr<ClassDescription>>;

std::shared_ptr<Classes> MakeClasses(int n)
{
    auto pClasses = std::make_shared<Classes>();
    for (int i = 0; i < n; ++i)
        pClasses->push_back(std::make_unique<ClassDescription>(
            "class Parcel", 0, __FILE__, false, nullptr, &Message::GetStaticClassDesc()));
    return pClasses;
}

std::function<void()> RegisterTypes(int n)
{
    return [pClasses = MakeClasses(n)]
    {
        Counter oCounter;
        MessageDispatcher oDispatcher;
        Result oResult;
        for (auto const & pClass : *pClasses)
            growth::Require(oDispatcher.Register(oCounter, {pClass->GetClassId()}).IsOk());
        for (auto const & pClass : *pClasses)
            oDispatcher.Process(Parcel(*pClass), oResult);
        for (auto const & pClass : *pClasses)
            oDispatcher.Unregister(oCounter, {pClass->GetClassId()});
        growth::Require(oResult.IsOk() && oCounter.GetCount() == std::ssize(*pClasses));
    };
}

/// A bus and its processors, all of one type.
struct Bus
{
    explicit Bus(int n)
    {
        for (int i = 0; i < n; ++i)
        {
            vCounters.push_back(std::make_unique<Counter>());
            growth::Require(oDispatcher.Register(*vCounters.back(), {iType}).IsOk());
        }
    }

    std::shared_ptr<Classes> pClasses = MakeClasses(1);
    unsigned int iType = pClasses->front()->GetClassId();
    std::vector<std::unique_ptr<Counter>> vCounters;
    MessageDispatcher oDispatcher;
};

std::function<void()> RegisterProcessors(int n)
{
    return [n]
    {
        Bus oBus(n);
        for (auto const & pCounter : oBus.vCounters)
            oBus.oDispatcher.Unregister(*pCounter, {oBus.iType});
    };
}

std::function<void()> Dispatch(int n)
{
    return [pBus = std::make_shared<Bus>(n)]
    {
        constexpr int COUNT = 100;
        Parcel const oParcel(*pBus->pClasses->front());
        int const iBefore = pBus->vCounters.back()->GetCount();
        Result oResult;
        for (int i = 0; i < COUNT; ++i)
            pBus->oDispatcher.Process(oParcel, oResult);
        growth::Require(oResult.IsOk() && pBus->vCounters.back()->GetCount() == iBefore + COUNT);
    };
}

std::function<void()> FillPipe(int n)
{
    return [n]
    {
        DefaultPipe<String, CriticalSectionMutex, CloneByCopyConstructor<String>> oPipe;
        for (int i = 0; i < n; ++i)
            oPipe.Send("an item");
        for (int i = 0; i < n; ++i)
            growth::Require(std::unique_ptr<String>(oPipe.Receive()) != nullptr);
    };
}

} // namespace

std::vector<growth::Work> growth::GetBusWorks()
{
    return {
        {"bus with n types", Order::eLinearLog, 500, &RegisterTypes},
        {"n processors of a type registered with a bus", Order::eSquare, 250, &RegisterProcessors},
        {"100 messages to n processors", Order::eLinear, 500, &Dispatch},
        {"pipe with n items", Order::eLinear, 2000, &FillPipe},
    };
}
