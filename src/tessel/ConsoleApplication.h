#pragma once

#include <tessel/Application.h>
#include <tessel/Described.h>
#include <tessel/Export.h>

namespace tsl
{

/// The configuration of a ConsoleApplication; a program derives its own from it.
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

extern template ClassDescription const &
Described<ConsoleApplicationConfig, ApplicationConfig, ClassDescription::eAbstract>::GetStaticClassDesc();

/// The frame of a console program: derive from it, implement Run, and call Main.
class TSL_EXPORT ConsoleApplication
    : public Described<ConsoleApplication, Application, ClassDescription::eAbstract>
{
public:
    ~ConsoleApplication() override = default;

    /// The one application. One that is no ConsoleApplication is an assertion failure.
    static ConsoleApplication & Instance(Application * (*fCreator)());

protected:
    /// Takes the configuration over. Null is an assertion failure.
    explicit ConsoleApplication(ConsoleApplicationConfig * pConfig);

    [[nodiscard]] Result PreRun() override;
    [[nodiscard]] Result PostRun() override;

    ConsoleApplicationConfig const & GetConfig() const { return *m_pConfig; }

private:
    // The object that the base owns, under its own type.
    ConsoleApplicationConfig * m_pConfig;
};

extern template ClassDescription const &
Described<ConsoleApplication, Application, ClassDescription::eAbstract>::GetStaticClassDesc();

} // namespace tsl
