#pragma once

#include <tessel/CmdLineParser.h>
#include <tessel/Configuration.h>
#include <tessel/Described.h>
#include <tessel/Export.h>
#include <tessel/MessageDispatcher.h>
#include <tessel/Result.h>
#include <tessel/SingletonTemplate.h>
#include <tessel/ValueString.h>

#include <list>
#include <memory>

namespace tsl
{

class Message;

/// The configuration of an application, which holds its command line. Copies share one parser.
class TSL_EXPORT ApplicationConfig
    : public Described<ApplicationConfig, Configuration, ClassDescription::eAbstract>
{
public:
    ApplicationConfig(ApplicationConfig const & oSource) = default;
    ApplicationConfig & operator=(ApplicationConfig const & oSource) = default;

    ~ApplicationConfig() override = default;

    /// Code 1 for an option without a name.
    [[nodiscard]] Result SetCmdLine(int iCount, char ** pArguments);

    CmdLineParser const & GetCmdLineParser() const { return m_oCmdLineParser; }

    /// Not in service: always assertion failures.
    bool GetEnvironment(ValueString const & sName, ValueString & sValue) const;
    void GetEnvironmentNames(std::list<ValueString> & oNames) const;

protected:
    ApplicationConfig() = default;

    void DoCopy(Root const &) override {}

private:
    CmdLineParser m_oCmdLineParser;
};

extern template ClassDescription const &
Described<ApplicationConfig, Configuration, ClassDescription::eAbstract>::GetStaticClassDesc();

/// The frame of a program. A program derives from ConsoleApplication, implements Run, and hands control to
/// Main from its entry point.
///
/// The application has a bus of its own, beside the global one: the failures of the run cycle go there.
/// The object is a singleton and deleted at the end of the library. Main runs on the calling thread.
class TSL_EXPORT Application
    : public Described<Application, Singleton<Application>, ClassDescription::eAbstract>
{
public:
    Application(Application const &) = delete;
    Application & operator=(Application const &) = delete;

    ~Application() override;

    /// The one application, made by the function on the first call; later calls do not look at it.
    static Application & Instance(Application * (*fCreator)());

    /// Takes the arguments of the process, runs PreRun, Run and PostRun, and returns the error code of the
    /// last Result as the exit code.
    ///
    /// A command line with an error runs none of them. Run is left out after a failing PreRun; PostRun is
    /// not. Each failure is reported as a ResultMessage on the application's bus. The exit code is that of
    /// PostRun, so one that is to tell of a failing Run has to pass it on. A Result that a step throws
    /// counts as returned; an Exception passes through, and PostRun does not run.
    int Main(int iCount, char ** pArguments);

    /// Puts a message on the application's bus and returns what the processors have left.
    Result DispatchMessage(Message const & oMessage);

    /// The same, under the name that the headers of some systems turn the other into.
    Result DispatchMessageA(Message const & oMessage) { return DispatchMessage(oMessage); }

    /// Reports a Result as a ResultMessage on the application's bus.
    void ProcessError(Result const & oResult);

protected:
    /// Takes the configuration over. Null is an assertion failure.
    explicit Application(ApplicationConfig * pConfig);

    /// Opens the bus. An override calls this one.
    [[nodiscard]] virtual Result PreRun();

    /// The program's work.
    [[nodiscard]] virtual Result Run() = 0;

    /// Closes the bus. An override calls this one.
    [[nodiscard]] virtual Result PostRun();

    ApplicationConfig const & GetConfig() const { return *m_pConfig; }
    MessageDispatcher & GetDispatcher() { return m_oDispatcher; }

private:
    struct Private;

    MessageDispatcher m_oDispatcher;
    std::unique_ptr<ApplicationConfig> m_pConfig;
};

extern template ClassDescription const &
Described<Application, Singleton<Application>, ClassDescription::eAbstract>::GetStaticClassDesc();

extern template class Singleton<Application>;

} // namespace tsl
