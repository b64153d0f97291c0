#pragma once

#include <tessel/Application.h>
#include <tessel/Described.h>
#include <tessel/Export.h>

namespace tsl
{

/// The configuration of a ConsoleApplication. A program derives its own from it. One thread at a time uses it.
class TSL_EXPORT ConsoleApplicationConfig
    : public Described<ConsoleApplicationConfig, ApplicationConfig, ClassDescription::eAbstract>
{
public:
    ConsoleApplicationConfig(ConsoleApplicationConfig const & oSource) = default;
    ConsoleApplicationConfig & operator=(ConsoleApplicationConfig const & oSource) = default;

    ~ConsoleApplicationConfig() override = default;

protected:
    ConsoleApplicationConfig() = default;

    void DoCopy(Root const &) override {}
};

template<>
TSL_EXPORT ClassDescription const &
Described<ConsoleApplicationConfig, ApplicationConfig, ClassDescription::eAbstract>::GetStaticClassDesc();

/// The run cycle of a console program: derive from it, implement Run, and call Main; see Application.
///
///     class Hello : public tsl::ConsoleApplication
///     {
///     public:
///         Hello() : ConsoleApplication(new HelloConfig) {}
///         static tsl::Application * Create() { return new Hello; }
///     protected:
///         tsl::Result Run() override;
///     };
///     // in main: return tsl::ConsoleApplication::Instance(&Hello::Create).Main(iCount - 1, ppArguments + 1);
class TSL_EXPORT ConsoleApplication
    : public Described<ConsoleApplication, Application, ClassDescription::eAbstract>
{
public:
    ~ConsoleApplication() override = default;

    /// The one application; see Application::Instance. It must be a ConsoleApplication: an assertion failure
    /// otherwise.
    static ConsoleApplication & Instance(Application * (*fCreator)());

protected:
    /// Owns the configuration from now on. Null is an assertion failure.
    explicit ConsoleApplication(ConsoleApplicationConfig * pConfig);

    [[nodiscard]] Result PreRun() override;
    [[nodiscard]] Result PostRun() override;

    /// The reference holds as long as the application.
    ConsoleApplicationConfig const & GetConfig() const { return *m_pConfig; }

private:
    // The configuration that the base class owns.
    ConsoleApplicationConfig * m_pConfig;
};

template<>
TSL_EXPORT ClassDescription const &
Described<ConsoleApplication, Application, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
