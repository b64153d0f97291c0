#include "../ReportingProgram.h"
#include "GreetingMessage.h"
#include "Printer.h"

#include <tessel/Tessel.h>

#include <vector>

namespace
{

class GreeterConfig : public tsl::ConsoleApplicationConfig
{
};

/// Greets everybody who is named on the command line, with the template from the ini file.
class Greeter : public ReportingProgram
{
public:
    Greeter() : ReportingProgram("greeter", new GreeterConfig) {}

    /// The printer is destroyed before the bus, so it must be unregistered, however the run has ended.
    ~Greeter() override { tsl::Support::GetAppDisp().Unregister(m_oGreetingPrinter); }

    static tsl::Application * Create() { return new Greeter; }

protected:
    tsl::Result PreRun() override
    {
        tsl::Result oResult = ReportingProgram::PreRun();
        if (oResult.IsError())
            return oResult;

        // Greetings are sent over the global bus, which also has the log file; failures of this program are sent
        // over the application's own bus.
        return tsl::Support::GetAppDisp().Register(
            m_oGreetingPrinter, {GreetingMessage::GetStaticClassDesc().GetClassId()});
    }

    tsl::Result Run() override
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

private:
    /// A failure that the processors report is this program's failure.
    tsl::Result Greet(tsl::ValueInt32 const & iNumber, tsl::ValueString const & sName,
        tsl::ValueConverterLayout const & oLayout)
    {
        tsl::ValueString sGreeting;
        sName.GetConverter().ConvertToText(sName, sGreeting, oLayout);
        return tsl::Support::DispatchMessage(GreetingMessage(iNumber, sGreeting));
    }

    GreetingPrinter m_oGreetingPrinter;
};

} // namespace

int main(int iCount, char ** pArguments)
{
    return Greeter::Start("greeter", &Greeter::Create, iCount, pArguments);
}
