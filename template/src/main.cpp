#include "TickMessage.h"
#include "Ticker.h"

#include <tessel/Tessel.h>

#include <iostream>
#include <memory>
#include <vector>

namespace
{

/// Prints failures, and keeps the last one.
class FailurePrinter : public tsl::PlainProcessor
{
public:
    void Process(tsl::Message const & oMessage, tsl::Result &) const override
    {
        auto const * const pFailure = dynamic_cast<tsl::ResultMessage const *>(&oMessage);
        if (!pFailure)
            return;
        m_oFailure = pFailure->GetResult();
        std::cerr << "ticker: " << m_oFailure.GetTextWithCauses().c_str() << std::endl;
    }

    tsl::Result const & GetFailure() const { return m_oFailure; }

private:
    mutable tsl::Result m_oFailure;
};

class TickerConfig : public tsl::ConsoleApplicationConfig
{
};

/// Prints the ticks. Their number is on the command line, or else in the ini file.
class TickerApplication : public tsl::ConsoleApplication
{
public:
    TickerApplication() : ConsoleApplication(new TickerConfig)
    {
        // Not in PreRun: a wrong command line is reported before it. A message class can always be registered.
        static_cast<void>(
            GetDispatcher().Register(m_oPrinter, {tsl::ResultMessage::GetStaticClassDesc().GetClassId()}));
    }
    ~TickerApplication() override { GetDispatcher().Unregister(m_oPrinter); }

    static tsl::Application * Create() { return new TickerApplication; }

protected:
    tsl::Result Run() override
    {
        int iCount = 0;
        tsl::Result const oResult = GetCount(iCount);
        return oResult.IsOk() ? Tick(iCount) : oResult;
    }

    /// The exit code is that of PostRun, so it returns the failure that was printed, and does not print it again.
    tsl::Result PostRun() override
    {
        tsl::Result const oResult = ConsoleApplication::PostRun();
        if (m_oPrinter.GetFailure().IsOk())
            return oResult;
        GetDispatcher().Unregister(m_oPrinter);
        return m_oPrinter.GetFailure();
    }

private:
    tsl::Result GetCount(int & iCount) const
    {
        std::vector<tsl::String> vWords;
        GetConfig().GetCmdLineParser().GetParameters(vWords);
        tsl::ValueInt32 iValue;
        if (vWords.empty())
            static_cast<void>(tsl::Support::GetAppIni().GetInt32("Ticker", "Count", iCount));
        else if (iValue.GetConverter().ConvertFromText(vWords[0], iValue).IsOk())
            iCount = iValue.AsInt32();
        else
            return tsl::MakeResult(tsl::ERR::eBadData, tsl::String("'") << vWords[0] << "' is no number.");
        return iCount >= 0 ? tsl::Result()
                           : tsl::MakeResult(tsl::ERR::eOutOfRange, "The number is negative.");
    }

    static tsl::Result Tick(int iCount)
    {
        tsl::TaskContext oContext(new Ticker(iCount));
        for (;;)
        {
            oContext.Process();
            std::unique_ptr<tsl::Message> const pMessage(oContext.ReadMessage());
            if (auto const * const pTick = dynamic_cast<TickMessage const *>(pMessage.get()))
                std::cout << "tick " << pTick->GetNumber() << std::endl;
            else if (auto const * const pEnd = dynamic_cast<tsl::ResultMessage const *>(pMessage.get()))
                return pEnd->GetResult();
        }
    }

    FailurePrinter m_oPrinter;
};

} // namespace

int main(int iCount, char ** ppArguments)
{
    // Without the program's own name, which is no parameter.
    return tsl::ConsoleApplication::Instance(&TickerApplication::Create).Main(iCount - 1, ppArguments + 1);
}
