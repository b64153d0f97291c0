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

/// The configuration of an application, which has its command line. Copies share one parser. One thread at a time
/// uses it.
class TSL_EXPORT ApplicationConfig
    : public Described<ApplicationConfig, Configuration, ClassDescription::eAbstract>
{
public:
    ApplicationConfig(ApplicationConfig const & oSource) = default;
    ApplicationConfig & operator=(ApplicationConfig const & oSource) = default;

    ~ApplicationConfig() override = default;

    /// See CmdLineParser::SetCmdLine. Code 1 for an option without a name.
    [[nodiscard]] Result SetCmdLine(int iCount, char ** pArguments);

    /// The command line, valid as long as the configuration.
    CmdLineParser const & GetCmdLineParser() const { return m_oCmdLineParser; }

    /// Not supported: both are always assertion failures.
    bool GetEnvironment(ValueString const & sName, ValueString & sValue) const;
    void GetEnvironmentNames(std::list<ValueString> & oNames) const;

protected:
    ApplicationConfig() = default;

    void DoCopy(Root const &) override {}

private:
    CmdLineParser m_oCmdLineParser;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ApplicationConfig, Configuration, ClassDescription::eAbstract>::GetStaticClassDesc();

/// The run cycle of a program: parse the command line, PreRun, Run, PostRun. A program derives from
/// ConsoleApplication, which has an example, and calls Main from its entry point.
///
/// The application has a bus of its own besides the global one, to which the failures of the run cycle are sent.
/// The object is a singleton, which is deleted at the end of the library. Main runs on the calling thread.
class TSL_EXPORT Application
    : public Described<Application, Singleton<Application>, ClassDescription::eAbstract>
{
public:
    Application(Application const &) = delete;
    Application & operator=(Application const &) = delete;

    ~Application() override;

    /// The one application. The first call makes it with the function; later calls ignore the argument.
    static Application & Instance(Application * (*fCreator)());

    /// Parses the arguments, calls PreRun, Run and PostRun, and returns the error code of the last Result as the
    /// exit code.
    ///
    /// After a bad command line it calls none of them. If PreRun fails, Run is not called but PostRun is. Each
    /// failure is reported as a ResultMessage on the application's bus. The exit code is that of PostRun; so if a
    /// failure of Run should decide it, PostRun must return that failure. A thrown Result counts as returned. An
    /// Exception reaches the caller, and PostRun is not called.
    int Main(int iCount, char ** pArguments);

    /// Sends a message over the application's bus and returns what the processors have reported.
    Result DispatchMessage(Message const & oMessage);

    /// The same; the headers of some systems define DispatchMessage as a macro for this name.
    Result DispatchMessageA(Message const & oMessage) { return DispatchMessage(oMessage); }

    /// Reports a Result as a ResultMessage on the application's bus.
    void ProcessError(Result const & oResult);

protected:
    /// Owns the configuration from now on. Null is an assertion failure.
    explicit Application(ApplicationConfig * pConfig);

    /// Opens the bus. An override must call it.
    [[nodiscard]] virtual Result PreRun();

    /// The program's work.
    [[nodiscard]] virtual Result Run() = 0;

    /// Closes the bus. An override must call it.
    [[nodiscard]] virtual Result PostRun();

    /// Both references hold as long as the application.
    ApplicationConfig const & GetConfig() const { return *m_pConfig; }
    MessageDispatcher & GetDispatcher() { return m_oDispatcher; }

private:
    struct Private;

    MessageDispatcher m_oDispatcher;
    std::unique_ptr<ApplicationConfig> m_pConfig;
};

template<>
TSL_EXPORT ClassDescription const &
Described<Application, Singleton<Application>, ClassDescription::eAbstract>::GetStaticClassDesc();

template<>
TSL_EXPORT ClassDescription const & Singleton<Application>::GetStaticClassDesc();
template<>
TSL_EXPORT Application & Singleton<Application>::Instance(Application * (*fCreator)());
TSL_EXTERN_TEMPLATE(class Singleton<Application>);

} // namespace tsl
