#pragma once

#include <tessel/Described.h>
#include <tessel/SingletonTemplate.h>

#include <memory>

namespace tsl
{

/// Reads the debug switches from the program's ini file, once, and returns the level of each log point. Any thread
/// may use it.
class GlobalDebugSwitchRegistry
    : public Described<GlobalDebugSwitchRegistry, Singleton<GlobalDebugSwitchRegistry>>
{
public:
    ~GlobalDebugSwitchRegistry() override;

    static GlobalDebugSwitchRegistry & Instance();

    /// Whether the object has been deleted, while the library is being unloaded.
    static bool IsGone();

    /// See Support::RegisterLogPoint.
    int RegisterLogPoint(int * pLevel, char const * sIdentifier, char const * sFile, int iLine);

private:
    GlobalDebugSwitchRegistry();

    static GlobalDebugSwitchRegistry * CreateSingletonInstance();

    struct Private;
    std::unique_ptr<Private> m;
};

template<>
ClassDescription const &
Described<GlobalDebugSwitchRegistry, Singleton<GlobalDebugSwitchRegistry>>::GetStaticClassDesc();

TSL_EXTERN_TEMPLATE(class Singleton<GlobalDebugSwitchRegistry>);

} // namespace tsl
