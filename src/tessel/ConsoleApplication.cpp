#include <tessel/ConsoleApplication.h>

#include <tessel/Assertion.h>

namespace tsl
{

template<>
constexpr ClassSource CLASS_SOURCE<ConsoleApplicationConfig>{};
template<>
ClassDescription const &
Described<ConsoleApplicationConfig, ApplicationConfig, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

ConsoleApplication::ConsoleApplication(ConsoleApplicationConfig * pConfig)
    : Described(pConfig), m_pConfig(pConfig)
{
    if (m_pConfig == nullptr)
        XAssertionFailed(
            "m_pConfig!=NULL", "ConsoleApplication::ConsoleApplication : pConfig darf nicht NULL sein!");
}

template<>
constexpr ClassSource CLASS_SOURCE<ConsoleApplication>{};
template<>
ClassDescription const &
Described<ConsoleApplication, Application, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

static ConsoleApplication & AssertConsole(Application & oApplication)
{
    auto * const pConsole = dynamic_cast<ConsoleApplication *>(&oApplication);
    if (!pConsole)
        XAssertionFailed(
            "pConsole", "ConsoleApplication::Instance : Application ist keine ConsoleApplication!");
    return *pConsole;
}

ConsoleApplication & ConsoleApplication::Instance(Application * (*fCreator)())
{
    static ConsoleApplication & oRef = AssertConsole(Application::Instance(fCreator));
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
