#include "TickMessage.h"
#include "Ticker.h"

#include <tessel/Tessel.h>

#include <iostream>
#include <memory>
#include <vector>

namespace
{

class TickerConfig : public tsl::ConsoleApplicationConfig
{
};

/// Prints the ticks. Their number is on the command line, or else in the ini file.
class TickerApplication : public tsl::ConsoleApplication
{
public:
    TickerApplication() : ConsoleApplication(new TickerConfig) {}

    static tsl::Application * Create() { return new TickerApplication; }

protected:
    tsl::Result Run() override
    {
        int iCount = 0;
        m_oOutcome = GetCount(iCount);
        if (m_oOutcome.IsOk())
            m_oOutcome = Tick(iCount);
        if (m_oOutcome.IsError())
            std::cerr << "ticker: " << m_oOutcome.GetText().s_str() << std::endl;
        return m_oOutcome;
    }

    /// The exit code is that of PostRun, so it returns the result of Run.
    tsl::Result PostRun() override
    {
        tsl::Result const oResult = ConsoleApplication::PostRun();
        return m_oOutcome.IsError() ? m_oOutcome : oResult;
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

    tsl::Result m_oOutcome;
};

} // namespace

int main(int iCount, char ** ppArguments)
{
    // Without the program's own name, which is no parameter.
    return tsl::ConsoleApplication::Instance(&TickerApplication::Create).Main(iCount - 1, ppArguments + 1);
}
