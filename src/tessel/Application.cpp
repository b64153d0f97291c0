#include <tessel/Application.h>

#include <tessel/Assertion.h>
#include <tessel/ResultMessage.h>

namespace tsl
{

template<>
ClassDescription const & Singleton<Application>::GetStaticClassDesc()
{
    static ClassDescription const & oDescription = Private::Describe();
    return oDescription;
}

template<>
Application & Singleton<Application>::Instance(Application * (*fCreator)())
{
    static Application & oObject = *RegisterSingletonObject(Private::InstanceEx(fCreator));
    return oObject;
}

template class Singleton<Application>;

template<>
constexpr ClassSource CLASS_SOURCE<ApplicationConfig>{};
template<>
ClassDescription const &
Described<ApplicationConfig, Configuration, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

Result ApplicationConfig::SetCmdLine(int iCount, char ** pArguments)
{
    return m_oCmdLineParser.SetCmdLine(iCount, pArguments);
}

bool ApplicationConfig::GetEnvironment(ValueString const &, ValueString &) const
{
    XAssertionFailed("false", "Unknown");
}

void ApplicationConfig::GetEnvironmentNames(std::list<ValueString> &) const
{
    XAssertionFailed("false", "Unknown");
}

struct TSL_HIDDEN Application::Private
{
    static Result RunStep(Application & oApplication, Result (Application::*fStep)())
    {
        try
        {
            return (oApplication.*fStep)();
        }
        catch (Result & oThrown)
        {
            return oThrown;
        }
    }
};

Application::Application(ApplicationConfig * pConfig) : m_pConfig(pConfig)
{
    if (m_pConfig == nullptr)
        XAssertionFailed("m_pConfig!=NULL", "Application::Application : pConfig darf nicht NULL sein!");
}

template<>
constexpr ClassSource CLASS_SOURCE<Application>{};
template<>
ClassDescription const &
Described<Application, Singleton<Application>, ClassDescription::eAbstract>::GetStaticClassDesc()
{
    return TesselDetails::DescriptionOf<Described>::Get();
}

Application::~Application() = default;

Application & Application::Instance(Application * (*fCreator)())
{
    static Application & oRef = Singleton<Application>::Instance(fCreator);
    return oRef;
}

int Application::Main(int iCount, char ** pArguments)
{
    Result oResult = m_pConfig->SetCmdLine(iCount, pArguments);
    if (oResult.IsError())
    {
        ProcessError(oResult);
        return oResult.GetErrorCode();
    }

    oResult = Private::RunStep(*this, &Application::PreRun);
    if (oResult.IsOk())
        oResult = Private::RunStep(*this, &Application::Run);
    if (oResult.IsError())
        ProcessError(oResult);

    // Assigned to the same Result, so that after two failures its history has both.
    oResult = Private::RunStep(*this, &Application::PostRun);
    if (oResult.IsError())
        ProcessError(oResult);
    return oResult.GetErrorCode();
}

Result Application::DispatchMessage(Message const & oMessage)
{
    Result oResult;
    m_oDispatcher.Process(oMessage, oResult);
    return oResult;
}

void Application::ProcessError(Result const & oResult)
{
    // A failure of the report could be reported to nobody.
    static_cast<void>(DispatchMessage(ResultMessage(oResult)));
}

Result Application::PreRun()
{
    return m_oDispatcher.Open();
}

Result Application::PostRun()
{
    m_oDispatcher.Close();
    return Result::Null();
}

} // namespace tsl
