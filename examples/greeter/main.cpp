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

/// Greets everybody who is named on the command line, with the template from the ini file.
class Greeter : public tsl::ConsoleApplication
{
public:
    Greeter() : ConsoleApplication(new GreeterConfig) {}

    /// The printers are destroyed before both buses, so they must be unregistered, however the run has ended.
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

        // Greetings are sent over the global bus, which also has the log file; failures of this program are sent
        // over the application's own bus.
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

    /// The exit code is that of PostRun, so it returns a failure of Run.
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

    /// A failure that the processors report is this program's failure.
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
    // Without the program's own name: it is no name to greet, and if it begins with a slash it would be an option.
    tsl::ConsoleApplication & oGreeter = tsl::ConsoleApplication::Instance(&Greeter::Create);
    try
    {
        return oGreeter.Main(iCount - 1, pArguments + 1);
    }
    catch (tsl::Exception const & oException)
    {
        // For instance a wrong template. The log file has the failure already.
        std::cerr << "greeter: " << oException.GetText() << std::endl;
        return oException.GetResult().GetErrorCode();
    }
}
