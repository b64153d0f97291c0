// An application whose steps do what the chapters of its ini file say that have their names: fail=CODE,
// throw=CODE (a Result) or assert=0. Prints the steps that ran and what came on the application's own bus.
// With "plain" as the first argument the application is none of the console.

#include "../TestMessages.h"

#include <tessel/Tessel.h>

#include <cstdlib>
#include <iostream>
#include <string>

namespace
{

class Config : public tsl::ConsoleApplicationConfig
{
};

/// Prints the code, the text and the size of the history of a Result.
void Print(tsl::Message const & oMessage, tsl::Result &)
{
    tsl::Result const & oResult = dynamic_cast<tsl::ResultMessage const &>(oMessage).GetResult();
    std::cout << "message " << oResult.GetErrorCode() << " " << oResult.GetText().s_str() << " "
              << oResult.GetHistorySize() << "\n";
}

class RunCycle : public tsl::ConsoleApplication
{
public:
    RunCycle() : ConsoleApplication(new Config)
    {
        if (GetDispatcher().Register(m_oPrinter, {tsl::Message::GetBaseType()}).IsError())
            std::abort();
    }

    ~RunCycle() override
    {
        // The printer goes before the bus does.
        GetDispatcher().Unregister(m_oPrinter);
        std::cout << "gone" << std::endl;
    }

    static tsl::Application * Create() { return new RunCycle; }

protected:
    tsl::Result PreRun() override { return DoStep("PreRun", ConsoleApplication::PreRun()); }
    tsl::Result Run() override { return DoStep("Run", tsl::Result()); }
    tsl::Result PostRun() override { return DoStep("PostRun", ConsoleApplication::PostRun()); }

private:
    tsl::Result DoStep(char const * sStep, tsl::Result const & oBase)
    {
        std::cout << sStep << "\n";
        tsl::IniFile const & oIni = tsl::Support::GetAppIni();
        int iCode = 0;
        if (oIni.GetInt32(sStep, "fail", iCode))
            return MakeFailure(sStep, iCode);
        if (oIni.GetInt32(sStep, "throw", iCode))
            throw MakeFailure(sStep, iCode);
        if (oIni.GetInt32(sStep, "assert", iCode))
            tsl::XAssertionFailed("false", "Unknown");
        return oBase;
    }

    static tsl::Result MakeFailure(char const * sText, int iCode)
    {
        return {iCode, sText, tsl::Result(90 + iCode, "cause", tsl::Result::eCategoryDefault)};
    }

    tsltest::TestProcessor m_oPrinter{&Print};
};

class PlainApplication : public tsl::Application
{
public:
    PlainApplication() : Application(new Config) {}

    static tsl::Application * Create() { return new PlainApplication; }

protected:
    tsl::Result Run() override { return tsl::Result(); }
};

tsl::Application * CreateNothing()
{
    return nullptr;
}

} // namespace

int main(int iCount, char ** pArguments)
{
    try
    {
        bool const bPlain = iCount > 1 && std::string(pArguments[1]) == "plain";
        tsl::ConsoleApplication & oApplication =
            tsl::ConsoleApplication::Instance(bPlain ? &PlainApplication::Create : &RunCycle::Create);
        if (&tsl::Application::Instance(&CreateNothing) != &oApplication)
            return 99;
        return oApplication.Main(iCount, pArguments);
    }
    catch (tsl::Exception const & oException)
    {
        std::cout << "exception " << oException.GetResult().GetErrorCode() << std::endl;
        return 98;
    }
}
