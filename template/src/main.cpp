#include "TickMessage.h"
#include "Ticker.h"

#include <tessel/Tessel.h>

#include <iostream>
#include <memory>
#include <vector>

namespace
{

void Print(tsl::Result const & oFailure)
{
    std::cerr << "ticker: " << oFailure.GetTextWithCauses().c_str() << std::endl;
}

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
        Print(m_oFailure);
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
    /// The library takes an ini file with a mistake for an empty one; this program says so and does not run.
    tsl::Result PreRun() override
    {
        tsl::IniFile oFile;
        tsl::Result const oResult = oFile.Open(tsl::Support::GetAppIniFileName());
        bool const bMissing = oResult.GetErrorCode() == tsl::ERR::eNotFound;
        return oResult.IsOk() || bMissing ? ConsoleApplication::PreRun() : oResult;
    }

    tsl::Result Run() override
    {
        std::vector<tsl::String> vOptions;
        GetConfig().GetCmdLineParser().GetOptions(vOptions);
        if (!vOptions.empty())
            return tsl::MakeResult(
                tsl::ERR::eBadData, tsl::String("There is no option '") + vOptions[0] + "'.");

        int iCount = 0;
        tsl::Result oResult = GetCount(iCount);
        if (oResult.IsOk())
            oResult = Tick(iCount);
        if (oResult.IsError() || std::cout.flush())
            return oResult;
        return tsl::MakeResult(
            tsl::ERR::eSubsystem, "The output cannot be written.", tsl::OS::GetLastError());
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
        tsl::String sCount;
        tsl::Result oReason;
        tsl::IniFile const & oIni = tsl::Support::GetAppIni();
        if (vWords.empty())
        {
            // Without the key no tick; a text that is no number is a mistake.
            if (oIni.GetString("Ticker", "Count", sCount)
                && !oIni.GetInt32("Ticker", "Count", iCount, oReason))
                return oReason;
        }
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
    try
    {
        // Without the program's own name, which is no parameter.
        return tsl::ConsoleApplication::Instance(&TickerApplication::Create)
            .Main(iCount - 1, ppArguments + 1);
    }
    catch (tsl::Exception const & oException)
    {
        Print(oException.GetResult());
        return oException.GetResult().GetErrorCode();
    }
}
