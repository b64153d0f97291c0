#include "GreetingMessage.h"
#include "Printer.h"

#include <tessel/Tessel.h>

#include <iostream>
#include <vector>

namespace
{

class GreeterConfig : public tsl::ConsoleApplicationConfig
{
};

/// Greets everybody who is named on the command line, by the template that the ini file gives.
class Greeter : public tsl::ConsoleApplication
{
public:
    Greeter() : ConsoleApplication(new GreeterConfig) {}

    /// The printers go before both buses do, which must not find them any more, however the run has ended.
    ~Greeter() override
    {
        tsl::Support::GetAppDisp().Unregister(m_oGreetingPrinter);
        GetDispatcher().Unregister(m_oFailurePrinter);
    }

    static tsl::Application * Create() { return new Greeter; }

protected:
    tsl::Result PreRun() override
    {
        tsl::Result oResult = ConsoleApplication::PreRun();
        if (oResult.IsError())
            return oResult;

        // Greetings travel over the bus of the whole process, where the log file listens, too; failures
        // of this program come on the application's own bus.
        oResult = tsl::Support::GetAppDisp().Register(
            m_oGreetingPrinter, {GreetingMessage::GetStaticClassDesc().GetClassId()});
        if (oResult.IsError())
            return oResult;
        return GetDispatcher().Register(
            m_oFailurePrinter, {tsl::ResultMessage::GetStaticClassDesc().GetClassId()});
    }

    tsl::Result Run() override
    {
        m_oOutcome = GreetAll();
        return m_oOutcome;
    }

    /// The exit code is that of PostRun, so a failure of Run is passed on here.
    tsl::Result PostRun() override
    {
        tsl::Result oResult = ConsoleApplication::PostRun();
        if (m_oOutcome.IsError())
            oResult = tsl::MakeResult(m_oOutcome.GetErrorCode(), "Nobody was greeted.", m_oOutcome);
        return oResult;
    }

private:
    tsl::Result GreetAll()
    {
        std::vector<tsl::String> vNames;
        GetConfig().GetCmdLineParser().GetParameters(vNames);
        if (vNames.empty())
            return tsl::MakeResult(tsl::ERR::eBadData, "Whom shall I greet? Give me at least one name.");

        tsl::ValueStringConverterLayout oLayout;
        tsl::String sFormat("Hello, ${%s}!");
        static_cast<void>(tsl::Support::GetAppIni().GetString("Greeter", "Format", sFormat));
        oLayout.SetFormat(sFormat);

        tsl::ValueInt32 iCount(0);
        for (tsl::String const & sName : vNames)
        {
            tsl::Trace("Greeter", [&] { return tsl::String("About to greet ") + sName; });
            tsl::Result oResult = Greet(++iCount, sName, oLayout);
            if (oResult.IsError())
                return oResult;
        }
        return tsl::Result();
    }

    /// What the processors leave in the Result of the bus is this program's failure.
    tsl::Result Greet(tsl::ValueInt32 const & iNumber, tsl::ValueString const & sName,
        tsl::ValueConverterLayout const & oLayout)
    {
        tsl::ValueString sGreeting;
        sName.GetConverter().ConvertToText(sName, sGreeting, oLayout);
        return tsl::Support::DispatchMessage(GreetingMessage(iNumber, sGreeting));
    }

    GreetingPrinter m_oGreetingPrinter;
    FailurePrinter m_oFailurePrinter;
    tsl::Result m_oOutcome;
};

} // namespace

int main(int iCount, char ** pArguments)
{
    // Without the program's own name: it is no name to greet, and one that begins with a slash would read
    // as an option.
    tsl::ConsoleApplication & oGreeter = tsl::ConsoleApplication::Instance(&Greeter::Create);
    try
    {
        return oGreeter.Main(iCount - 1, pArguments + 1);
    }
    catch (tsl::Exception const & oException)
    {
        // A template that cannot be used, for instance; the log file has it already.
        std::cerr << "greeter: " << oException.GetText() << std::endl;
        return oException.GetResult().GetErrorCode();
    }
}
