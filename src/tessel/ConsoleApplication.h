#pragma once

#include <tessel/Application.h>
#include <tessel/Export.h>

namespace tsl
{

/// The configuration of a ConsoleApplication; a program derives its own from it.
class TSL_EXPORT ConsoleApplicationConfig : public ApplicationConfig
{
public:
    ConsoleApplicationConfig(ConsoleApplicationConfig const & oSource) = default;
    ConsoleApplicationConfig & operator=(ConsoleApplicationConfig const & oSource) = default;

    ClassDescription const & GetClassDesc() const override;
    ~ConsoleApplicationConfig() override = default;
    static ClassDescription const & GetStaticClassDesc();
    static Root * CreateNew();

protected:
    ConsoleApplicationConfig() = default;

    void DoCopy(Root const &) override {}
};

/// The frame of a console program: derive from it, implement Run, and call Main.
class TSL_EXPORT ConsoleApplication : public Application
{
public:
    ClassDescription const & GetClassDesc() const override;
    ~ConsoleApplication() override = default;
    static ClassDescription const & GetStaticClassDesc();

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

} // namespace tsl
