#pragma once

#include <tessel/Described.h>
#include <tessel/SingletonTemplate.h>

#include <memory>

namespace tsl
{

/// Reads the debug switches from the application's ini file, once, and answers for each log point. Any
/// thread may ask.
class GlobalDebugSwitchRegistry
    : public Described<GlobalDebugSwitchRegistry, Singleton<GlobalDebugSwitchRegistry>>
{
public:
    ~GlobalDebugSwitchRegistry() override;

    static GlobalDebugSwitchRegistry & Instance();

    /// Whether the one object has been deleted, at the end of the library.
    static bool IsGone();

    /// What Support::RegisterLogPoint tells.
    int RegisterLogPoint(int * pLevel, char const * sIdentifier, char const * sFile, int iLine);

private:
    GlobalDebugSwitchRegistry();

    static GlobalDebugSwitchRegistry * CreateSingletonInstance();

    struct Private;
    std::unique_ptr<Private> m;
};

extern template ClassDescription const &
Described<GlobalDebugSwitchRegistry, Singleton<GlobalDebugSwitchRegistry>>::GetStaticClassDesc();

extern template class Singleton<GlobalDebugSwitchRegistry>;

} // namespace tsl
