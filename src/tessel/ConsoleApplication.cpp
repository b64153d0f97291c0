#include <tessel/ConsoleApplication.h>

#include <tessel/Assertion.h>

namespace tsl
{

ClassDescription const & ConsoleApplicationConfig::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ConsoleApplicationConfig::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ConsoleApplicationConfig>(
        &ApplicationConfig::GetStaticClassDesc(), ClassDescription::eAbstract, &CreateNew);
    return oDescription;
}

Root * ConsoleApplicationConfig::CreateNew()
{
    XAssertionFailed("false", "Unknown");
}

ConsoleApplication::ConsoleApplication(ConsoleApplicationConfig * pConfig)
    : Application(pConfig), m_pConfig(pConfig)
{
    if (m_pConfig == nullptr)
        XAssertionFailed(
            "m_pConfig!=NULL", "ConsoleApplication::ConsoleApplication : pConfig darf nicht NULL sein!");
}

ClassDescription const & ConsoleApplication::GetClassDesc() const
{
    return GetStaticClassDesc();
}

ClassDescription const & ConsoleApplication::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = DescribeClass<ConsoleApplication>(
        &Application::GetStaticClassDesc(), ClassDescription::eAbstract, nullptr);
    return oDescription;
}

static ConsoleApplication & DemandConsole(Application & oApplication)
{
    auto * const pConsole = dynamic_cast<ConsoleApplication *>(&oApplication);
    if (!pConsole)
        XAssertionFailed(
            "pConsole", "ConsoleApplication::Instance : Application ist keine ConsoleApplication!");
    return *pConsole;
}

ConsoleApplication & ConsoleApplication::Instance(Application * (*fCreator)())
{
    static ConsoleApplication & oRef = DemandConsole(Application::Instance(fCreator));
    return oRef;
}

Result ConsoleApplication::PreRun()
{
    return Application::PreRun();
}

Result ConsoleApplication::PostRun()
{
    return Application::PostRun();
}

} // namespace tsl
